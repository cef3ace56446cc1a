#pragma once

#include "objects/object_access.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>

namespace korra {

/// A name without regard to case.
std::wstring folded(std::wstring_view name);

/// Whether erased objects are looked at, too.
enum class Erased { passedOver, found };

/// Finds the records of a table by name, without going through the table.
///
/// New records are met by the next search; a record that gets another name says so. What is found
/// is compared with the name that the record has now, so that old names do no harm.
class RecordNames {
public:
    /// The record of a name; null when there is none. One that is not erased goes before one that
    /// is; of several the first counts, of erased ones the last.
    KdDbObjectId find(const KdDbSymbolTable& table, std::wstring_view name, Erased erased);

    /// A record of the table has got another name.
    void note(const KdDbSymbolTableRecord& record) noexcept;

    /// The list of records, or any of their names, may be another one.
    void forget() noexcept;

private:
    std::unordered_multimap<std::wstring, const KdDbSymbolTableRecord*> records_; ///< folded
    std::size_t met_ = 0; ///< of the table's list
};

} // namespace korra
