#include "db/contents.h"

#include "platform/text.h"

#include <algorithm>

namespace korra {
namespace {

/// Header variables of the coordinate system of one space.
struct UcsVariables {
    const char* name;
    const char* origin;
    const char* xAxis;
    const char* yAxis;
};

constexpr UcsVariables kModelUcs = {"$UCSNAME", "$UCSORG", "$UCSXDIR", "$UCSYDIR"};
constexpr UcsVariables kPaperUcs = {"$PUCSNAME", "$PUCSORG", "$PUCSXDIR", "$PUCSYDIR"};
constexpr int kUcsNameCode = 2;

const UcsVariables& ucsVariables(const KdDbDatabase& database)
{
    const bool onSheet = !database.tilemode() && database.contents().enteredViewport.isNull();
    return onSheet ? kPaperUcs : kModelUcs;
}

/// The first entry of a dictionary under a name that is a dictionary itself.
KdDbObjectId dictionaryIn(KdDbObjectId dictionary, std::wstring_view name)
{
    auto* outer = ObjectAccess::live<KdDbDictionary>(dictionary);
    if (!outer)
        return {};
    for (const auto& entry : ObjectAccess::entries(*outer)) {
        if (entry.name == name && ObjectAccess::live<KdDbDictionary>(entry.id))
            return entry.id;
    }
    return {};
}

void rename(KdDbBlockTableRecord& block, std::wstring name)
{
    ObjectAccess::name(block) = std::move(name);
    ObjectAccess::markChanged(block);
}

} // namespace

KdDbObjectId DatabaseContents::layoutDictionary() const
{
    return dictionaryIn(namedObjects, kLayoutDictionary);
}

std::vector<KdDbLayout*> DatabaseContents::layouts() const
{
    std::vector<KdDbLayout*> layouts;
    auto* dictionary = ObjectAccess::live<KdDbDictionary>(layoutDictionary());
    if (!dictionary)
        return layouts;
    for (const auto& entry : ObjectAccess::entries(*dictionary)) {
        if (auto* layout = ObjectAccess::live<KdDbLayout>(entry.id))
            layouts.push_back(layout);
    }
    std::ranges::stable_sort(layouts, {}, &KdDbLayout::getTabOrder);
    return layouts;
}

KdDbLayout* DatabaseContents::currentLayout() const
{
    const KdDbObjectId space =
        record(TableKind::block, database.tilemode() ? kModelSpace : kPaperSpace);
    for (KdDbLayout* layout : layouts()) {
        if (layout->getBlockTableRecordId() == space)
            return layout;
    }
    return nullptr;
}

Kdapi::ErrorStatus DatabaseContents::setCurrentLayout(std::wstring_view name)
{
    const auto all = layouts();
    const auto layout = std::ranges::find_if(all, [name](const KdDbLayout* candidate) {
        return platform::compareNoCase(candidate->getLayoutName(), name) == 0;
    });
    if (layout == all.end())
        return Kdapi::eKeyNotFound;
    auto* wanted = ObjectAccess::live<KdDbBlockTableRecord>((*layout)->getBlockTableRecordId());
    if (!wanted)
        return Kdapi::eKeyNotFound;

    const bool modelTab = platform::compareNoCase(wanted->name(), kModelSpace) == 0;
    if (KdDbBlockTableRecord* shown = block(kPaperSpace); !modelTab && shown != wanted) {
        std::wstring shownName = std::wstring(kPaperSpace);
        if (shown) {
            shownName = shown->name();
            rename(*shown, wanted->name());
        }
        rename(*wanted, std::move(shownName));
    }
    enteredViewport.setNull();
    header.setInteger("$TILEMODE", modelTab ? 1 : 0);
    return Kdapi::eOk;
}

UserSystem currentUcs(const KdDbDatabase& database)
{
    const DatabaseContents& contents = database.contents();
    const UcsVariables& variables = ucsVariables(database);
    UserSystem system;
    system.origin = contents.header.point(variables.origin, system.origin);
    system.xAxis = contents.header.point(variables.xAxis, KdGePoint3d(1.0, 0.0, 0.0)).asVector();
    system.yAxis = contents.header.point(variables.yAxis, KdGePoint3d(0.0, 1.0, 0.0)).asVector();
    const std::wstring name = contents.header.text(variables.name, L"");
    if (!name.empty())
        system.named = contents.record(TableKind::ucs, name);
    return system;
}

void setCurrentUcs(KdDbDatabase& database, const UserSystem& system)
{
    DrawingHeader& header = database.contents().header;
    const UcsVariables& variables = ucsVariables(database);
    const auto* named = ObjectAccess::live<KdDbUCSTableRecord>(system.named);
    header.setText(variables.name, named ? named->name() : L"", kUcsNameCode);
    header.setPoint(variables.origin, system.origin);
    header.setPoint(variables.xAxis, KdGePoint3d::kOrigin + system.xAxis);
    header.setPoint(variables.yAxis, KdGePoint3d::kOrigin + system.yAxis);
}

} // namespace korra

KdDbObjectId KdDbDatabase::paperSpaceVportId() const
{
    const auto layouts = contents_->layouts();
    const bool modelTab = tilemode();
    for (const KdDbLayout* layout : layouts) {
        const bool wanted =
            modelTab ? layout->getTabOrder() > 0 : layout == contents_->currentLayout();
        const auto* sheet =
            korra::ObjectAccess::live<KdDbBlockTableRecord>(layout->getBlockTableRecordId());
        if (!wanted || !sheet)
            continue;
        const auto viewports = korra::viewportsOf(*sheet);
        return viewports.empty() ? KdDbObjectId() : viewports.front();
    }
    return {};
}
