#include "drawing/complete_drawing.h"

#include "blocks/spaces.h"
#include "drawing/layouts.h"
#include "kd/db.h"

#include "platform/text.h"

#include <algorithm>

namespace korra {
namespace {

/// The sheet of a drawing that says nothing about it: A4, in millimetres.
constexpr double kSheetWidth = 297.0;
constexpr double kSheetHeight = 210.0;

constexpr wchar_t kModel[] = L"Model"; ///< the layout of model space

constexpr std::uint16_t kForegroundColor = 7;

template <class Table>
void completeTable(DatabaseContents& contents, TableKind kind)
{
    KdDbObjectId& id = contents.tables[static_cast<std::size_t>(kind)];
    if (!ObjectAccess::live<Table>(id))
        id = ObjectAccess::adopt(contents.database, new Table);
}

void completeTables(DatabaseContents& contents)
{
    completeTable<KdDbViewportTable>(contents, TableKind::viewport);
    completeTable<KdDbLinetypeTable>(contents, TableKind::linetype);
    completeTable<KdDbLayerTable>(contents, TableKind::layer);
    completeTable<KdDbTextStyleTable>(contents, TableKind::textStyle);
    completeTable<KdDbUCSTable>(contents, TableKind::ucs);
    completeTable<KdDbRegAppTable>(contents, TableKind::regApp);
    completeTable<KdDbDimStyleTable>(contents, TableKind::dimStyle);
    completeTable<KdDbBlockTable>(contents, TableKind::block);
}

/// Adds a record unless the table has one of the name.
/// @param dress  called with a new record before it is added
/// @return true when the record is new
template <class Record, class Dress>
bool completeRecord(DatabaseContents& contents, TableKind kind, const wchar_t* name, Dress dress)
{
    if (!contents.record(kind, name).isNull())
        return false;
    auto* const record = new Record;
    ObjectAccess::setName(*record, name);
    dress(*record);
    auto& table = static_cast<KdDbSymbolTable&>(*ObjectAccess::object(contents.table(kind)));
    ObjectAccess::append(table, record);
    return true;
}

constexpr auto kAsItIs = [](auto&) {};

void completeRecords(DatabaseContents& contents)
{
    for (const wchar_t* name : {L"ByBlock", L"ByLayer", L"Continuous"})
        completeRecord<KdDbLinetypeTableRecord>(contents, TableKind::linetype, name, kAsItIs);
    completeRecord<KdDbLayerTableRecord>(
        contents, TableKind::layer, L"0", [&](KdDbLayerTableRecord& layer) {
            KdCmColor color;
            color.setColorIndex(kForegroundColor);
            layer.setColor(color);
            layer.setLinetypeObjectId(contents.record(TableKind::linetype, L"Continuous"));
        });
    completeRecord<KdDbTextStyleTableRecord>(
        contents, TableKind::textStyle, L"Standard",
        [](KdDbTextStyleTableRecord& style) { ObjectAccess::fontFile(style) = L"txt"; });
    completeRecord<KdDbDimStyleTableRecord>(contents, TableKind::dimStyle, L"Standard", kAsItIs);
    completeRecord<KdDbRegAppTableRecord>(contents, TableKind::regApp, L"ACAD", kAsItIs);
    contents.activeViewMade |= completeRecord<KdDbViewportTableRecord>(
        contents, TableKind::viewport, L"*Active", [](KdDbViewportTableRecord& view) {
            view.setHeight(kSheetHeight);
            view.setWidth(kSheetHeight * 4.0 / 3.0);
            view.setCenterPoint(KdGePoint2d(kSheetWidth / 2.0, kSheetHeight / 2.0));
        });
    for (const wchar_t* name : {kModelSpace, kPaperSpace})
        completeRecord<KdDbBlockTableRecord>(contents, TableKind::block, name, kAsItIs);
}

void completeDictionaries(DatabaseContents& contents)
{
    if (!ObjectAccess::live<KdDbDictionary>(contents.namedObjects))
        contents.namedObjects = ObjectAccess::adopt(contents.database, new KdDbDictionary);
    if (!layoutDictionaryOf(contents).isNull())
        return;
    ObjectAccess::enter(*ObjectAccess::live<KdDbDictionary>(contents.namedObjects),
                        kLayoutDictionary, *new KdDbDictionary);
}

bool isModelSpace(const KdDbBlockTableRecord& block)
{
    return platform::compareNoCase(block.name(), kModelSpace) == 0;
}

/// The first of "Layout1", "Layout2" … that no layout has.
std::wstring freeLayoutName(const std::vector<KdDbLayout*>& layouts)
{
    for (int number = 1;; ++number) {
        std::wstring name = L"Layout" + std::to_wstring(number);
        const bool taken = std::ranges::any_of(layouts, [&](const KdDbLayout* layout) {
            return platform::compareNoCase(layout->getLayoutName(), name) == 0;
        });
        if (!taken)
            return name;
    }
}

KdDbLayout& makeLayout(DatabaseContents& contents, const KdDbBlockTableRecord& block)
{
    const auto layouts = layoutsOf(contents);
    auto* const layout = new KdDbLayout;
    if (isModelSpace(block)) {
        layout->setLayoutName(kModel);
    } else {
        layout->setLayoutName(freeLayoutName(layouts).c_str());
        ObjectAccess::tabOrder(*layout) =
            layouts.empty() ? 1 : std::max(layouts.back()->getTabOrder(), 0) + 1;
    }
    ObjectAccess::own(*ObjectAccess::object(layoutDictionaryOf(contents)), layout);
    return *layout;
}

bool hasNoBlock(const KdDbLayout& layout)
{
    return !ObjectAccess::live<KdDbBlockTableRecord>(layout.getBlockTableRecordId());
}

/// The layout that is bound to a block from either side; null when there is none.
KdDbLayout* layoutOf(const DatabaseContents& contents, const KdDbBlockTableRecord& block)
{
    const auto layouts = layoutsOf(contents);
    const auto bound =
        std::ranges::find(layouts, block.objectId(), &KdDbLayout::getBlockTableRecordId);
    if (bound != layouts.end())
        return *bound;
    if (auto* const named = ObjectAccess::live<KdDbLayout>(block.getLayoutId()))
        return named;
    const auto lost = std::ranges::find_if(layouts, [](const KdDbLayout* layout) {
        return hasNoBlock(*layout) && platform::compareNoCase(layout->getLayoutName(), kModel) == 0;
    });
    return isModelSpace(block) && lost != layouts.end() ? *lost : nullptr;
}

/// Enters a layout under its name; under a longer one where something else has that, which stays.
void enterLayout(KdDbDictionary& dictionary, KdDbLayout& layout)
{
    const auto isTaken = [&](const std::wstring& name) {
        return std::ranges::any_of(ObjectAccess::entries(dictionary), [&](const auto& entry) {
            return platform::compareNoCase(entry.name, name) == 0;
        });
    };
    std::wstring name = layout.getLayoutName();
    while (isTaken(name))
        name += L'_';
    ObjectAccess::enter(dictionary, name, layout);
}

/// Binds a space to its layout in both directions, and enters the layout under its name.
void completeLayout(DatabaseContents& contents, KdDbBlockTableRecord& block)
{
    KdDbLayout* layout = layoutOf(contents, block);
    if (!layout)
        layout = &makeLayout(contents, block);
    if (block.getLayoutId() != layout->objectId()) {
        ObjectAccess::willChange(block);
        ObjectAccess::layout(block) = layout->objectId();
    }
    if (layout->getBlockTableRecordId() != block.objectId()) {
        ObjectAccess::willChange(*layout);
        ObjectAccess::block(*layout) = block.objectId();
    }
    const auto layouts = layoutsOf(contents);
    if (std::ranges::find(layouts, layout) == layouts.end())
        enterLayout(*ObjectAccess::live<KdDbDictionary>(layoutDictionaryOf(contents)), *layout);
}

/// Gives a sheet that has at most floating viewports its own one, which shows the whole sheet.
void completeSheet(DatabaseContents& contents, KdDbBlockTableRecord& sheet)
{
    const auto viewports = viewportsOf(sheet);
    if (!viewports.empty() && ObjectAccess::live<KdDbViewport>(viewports.front())->number() <= 1)
        return;
    auto* const own = new KdDbViewport;
    const KdGePoint2d middle(kSheetWidth / 2.0, kSheetHeight / 2.0);
    own->setNumber(1);
    own->setCenterPoint(KdGePoint3d(middle.x, middle.y, 0.0));
    own->setWidth(kSheetWidth);
    own->setHeight(kSheetHeight);
    own->setViewCenter(middle);
    own->setViewHeight(kSheetHeight);
    own->setLayer(contents.record(TableKind::layer, L"0"));
    own->setLinetype(contents.record(TableKind::linetype, L"ByLayer"));
    ObjectAccess::append(sheet, own);
}

void completeSpaces(DatabaseContents& contents)
{
    auto& table =
        static_cast<KdDbSymbolTable&>(*ObjectAccess::object(contents.table(TableKind::block)));
    for (KdDbSymbolTableRecord* record : ObjectAccess::records(table).each()) {
        auto* const block = KdDbBlockTableRecord::cast(record);
        if (!block || block->isErased() || !isSpaceName(block->name()))
            continue;
        completeLayout(contents, *block);
        if (!isModelSpace(*block))
            completeSheet(contents, *block);
    }
}

} // namespace

void completeDrawing(DatabaseContents& contents)
{
    completeTables(contents);
    completeRecords(contents);
    completeDictionaries(contents);
    completeSpaces(contents);
}

} // namespace korra
