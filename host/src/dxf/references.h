#pragma once

#include "form/encoding.h"
#include "objects/contents.h"
#include "objects/kinds.h"

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace korra {

/// The object of a class that the value of a tag refers to: by its handle; a record of a table, as
/// some programs write it, also by its name. Null where there is none.
/// @param kind  null: any class
/// @return nullopt for a value that is neither empty nor a handle and cannot be a name
std::optional<KdDbObjectId> referredTo(const DatabaseContents& contents, std::string_view bytes,
                                       const KdRxClass* kind);

/// What objects of a drawing refer to: records by name, objects by handle.
///
/// Set up when every object of the file has its slot and every record its name.
///
/// A name that no record has: a layer is made, for entities on it belong together; a linetype is
/// "ByLayer" ("Continuous" for a layer); a text or dimension style is "Standard"; a block, or
/// anything else, is nothing. The name itself stays in the object's tags until the object changes.
class References {
public:
    explicit References(DatabaseContents& contents) : contents_(contents) {}

    /// @param bytes  the name as the file has it
    /// @param by  who asks
    KdDbObjectId named(TableKind kind, std::string_view bytes, NamedBy by);

    /// What an object has that names no record of a kind: null where nothing stands for that.
    KdDbObjectId standard(TableKind kind, NamedBy by)
    {
        KdDbObjectId& known =
            standard_[static_cast<std::size_t>(by)][static_cast<std::size_t>(kind)];
        return known.isNull() ? known = findStandard(kind, by) : known;
    }

    /// As korra::referredTo().
    std::optional<KdDbObjectId> referredTo(std::string_view bytes, const KdRxClass* kind) const
    {
        return korra::referredTo(contents_, bytes, kind);
    }

    /// Null for a handle that no object has.
    KdDbObjectId at(std::uint64_t handle) const;

    /// The record of a name, made when there is none.
    KdDbObjectId recordOrNew(TableKind kind, std::wstring_view name);

    /// The table of a kind, made when there is none.
    KdDbSymbolTable& table(TableKind kind);

private:
    struct BytesHash {
        using is_transparent = void;

        std::size_t operator()(std::string_view text) const
        {
            return std::hash<std::string_view>()(text);
        }
    };

    using Known = std::unordered_map<std::string, KdDbObjectId, BytesHash, std::equal_to<>>;

    KdDbObjectId findStandard(TableKind kind, NamedBy by);
    KdDbObjectId substitute(TableKind kind, std::wstring_view name, NamedBy by);

    DatabaseContents& contents_;
    std::array<std::array<KdDbObjectId, kTableKinds>, 2> standard_; ///< by who asks
    std::array<Known, kTableKinds> known_; ///< names that were asked for, as the file has them
};

} // namespace korra
