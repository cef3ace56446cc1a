#pragma once

#include "form/file_form.h"
#include "form/header.h"
#include "objects/change_feed.h"
#include "objects/handle_table.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/record_names.h"

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace korra {

class ObjectSlots;

/// Everything a database holds.
struct DatabaseContents {
    explicit DatabaseContents(KdDbDatabase& owner);
    ~DatabaseContents();
    DatabaseContents(const DatabaseContents&) = delete;
    DatabaseContents& operator=(const DatabaseContents&) = delete;

    KdDbDatabase& database;

    /// Where the slots lie: the running host's store, or one of its own without a host.
    std::shared_ptr<ObjectSlots> store;
    std::unique_ptr<KdDbTransactionManager> transactions;
    DrawingHeader header;
    FileForm form;

    std::vector<ObjectSlot*> slots; ///< in the order in which the objects came
    HandleTable byHandle;
    std::uint64_t nextHandle = 1;

    std::array<KdDbObjectId, kTableKinds> tables;       ///< by TableKind
    mutable std::array<RecordNames, kTableKinds> names; ///< of the tables' records
    ChangeFeed changes;
    KdDbObjectId namedObjects;
    bool noDocument = false;

    /// completeDrawing() had to make the "*Active" record: no view was chosen yet.
    bool activeViewMade = false;

    /// The floating viewport that the user works in; null on the sheet itself and on the model tab.
    /// While it is set the current space is model space.
    KdDbObjectId enteredViewport;

    KdDbObjectId table(TableKind kind) const { return tables[static_cast<std::size_t>(kind)]; }

    /// The record of a table by name, erased ones excluded; null when there is none.
    KdDbObjectId record(TableKind kind, std::wstring_view name) const;

    /// How the records of a table are found; null for what is no table of the database.
    RecordNames* namesIn(KdDbObjectId table) const;

    /// The first handle from one on that no object has; behind the last one the search begins anew.
    std::uint64_t freeHandle(std::uint64_t from) const;

    /// The record, or null for an object of another kind.
    KdDbBlockTableRecord* block(std::wstring_view name) const;

    /// Deletes every object and forgets all that was read: the database is empty.
    void clear();
};

/// The record of a table by name; null when there is none. One that is not erased goes before one
/// that is.
KdDbObjectId recordNamed(const KdDbSymbolTable& table, std::wstring_view name, Erased erased);

/// Databases that live now, in the order of their making.
const std::vector<KdDbDatabase*>& liveDatabases();

} // namespace korra
