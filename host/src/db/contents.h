#pragma once

#include "dxf/file_form.h"
#include "dxf/header.h"
#include "fields.h"
#include "object_access.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace korra {

class ObjectSlots;

inline constexpr wchar_t kModelSpace[] = L"*Model_Space";
inline constexpr wchar_t kPaperSpace[] = L"*Paper_Space"; ///< the block of the current sheet
inline constexpr wchar_t kLayoutDictionary[] = L"ACAD_LAYOUT";

/// Everything a database holds.
struct DatabaseContents {
    explicit DatabaseContents(KdDbDatabase& owner);

    KdDbDatabase& database;

    /// Where the slots lie: the running host's store, or one of its own without a host.
    std::shared_ptr<ObjectSlots> store;
    DrawingHeader header;
    FileForm form;

    std::vector<ObjectSlot*> slots; ///< in the order in which the objects came
    std::unordered_map<std::uint64_t, ObjectSlot*> byHandle;
    std::uint64_t nextHandle = 1;

    std::array<KdDbObjectId, kTableKinds> tables; ///< by TableKind
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

    /// The record, or null for an object of another kind.
    KdDbBlockTableRecord* block(std::wstring_view name) const;

    /// Makes what every drawing has and this one lacks: tables, model space, a sheet, layer "0",
    /// the standard styles, linetypes and application name, the layout dictionary. Reading ends
    /// with it too, so that every database is whole.
    void completeDrawing();

    /// Deletes every object and forgets all that was read: the database is empty.
    void clear();

    /// The dictionary of the layouts; null when there is none.
    KdDbObjectId layoutDictionary() const;

    /// Layouts in the order of their tabs, the model tab first; erased ones excluded.
    std::vector<KdDbLayout*> layouts() const;

    /// The layout whose tab is current; null in a drawing that is not complete.
    KdDbLayout* currentLayout() const;

    /// Makes a layout current, by name without regard to case. The block of the current sheet is
    /// the one named "*Paper_Space", so the blocks trade names; the model tab only sets the tile
    /// mode.
    /// @return eOk; eKeyNotFound, nothing changed
    Kdapi::ErrorStatus setCurrentLayout(std::wstring_view name);

    /// A table's kind; nullopt for an object that is no table.
    static std::optional<TableKind> kindOf(const KdDbObject& table);
};

/// A coordinate system as a drawing carries it.
struct UserSystem {
    KdGePoint3d origin;
    KdGeVector3d xAxis = KdGeVector3d::kXAxis;
    KdGeVector3d yAxis = KdGeVector3d::kYAxis;
    KdDbObjectId named; ///< the saved system that it is; null when it has no name
};

/// The current coordinate system of a drawing: that of the sheet while a sheet is current, else
/// that of model space. A saved system of the header that is not in the table is no name.
UserSystem currentUcs(const KdDbDatabase& database);
void setCurrentUcs(KdDbDatabase& database, const UserSystem& system);

/// Entities of a block that are not erased, first drawn first.
std::vector<KdDbObjectId> drawOrder(const KdDbBlockTableRecord& block);

/// Viewports of a sheet that are not erased, the sheet's own one first.
std::vector<KdDbObjectId> viewportsOf(const KdDbBlockTableRecord& sheet);

/// True for model space and the sheets, by name.
bool isSpaceName(std::wstring_view blockName);

/// Databases that live now, in the order of their making.
const std::vector<KdDbDatabase*>& liveDatabases();

} // namespace korra
