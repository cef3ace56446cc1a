#include "drawing/layouts.h"

#include "blocks/spaces.h"
#include "kd/db.h"

#include "platform/text.h"
#include "tables/drawing_settings.h"

#include <algorithm>

namespace korra {
namespace {

/// The first entry of a dictionary under a name that is a dictionary itself.
KdDbObjectId dictionaryIn(KdDbObjectId dictionary, std::wstring_view name)
{
    auto* const outer = ObjectAccess::live<KdDbDictionary>(dictionary);
    if (!outer)
        return {};
    for (const auto& entry : ObjectAccess::entries(*outer)) {
        if (platform::compareNoCase(entry.name, name) == 0 &&
            ObjectAccess::live<KdDbDictionary>(entry.id))
            return entry.id;
    }
    return {};
}

void rename(KdDbBlockTableRecord& block, std::wstring name)
{
    ObjectAccess::willChange(block);
    ObjectAccess::setName(block, std::move(name));
}

} // namespace

KdDbObjectId layoutDictionaryOf(const DatabaseContents& contents)
{
    return dictionaryIn(contents.namedObjects, kLayoutDictionary);
}

std::vector<KdDbLayout*> layoutsOf(const DatabaseContents& contents)
{
    std::vector<KdDbLayout*> layouts;
    auto* const dictionary = ObjectAccess::live<KdDbDictionary>(layoutDictionaryOf(contents));
    if (!dictionary)
        return layouts;
    for (const auto& entry : ObjectAccess::entries(*dictionary)) {
        if (auto* const layout = ObjectAccess::live<KdDbLayout>(entry.id))
            layouts.push_back(layout);
    }
    std::ranges::stable_sort(layouts, {}, &KdDbLayout::getTabOrder);
    return layouts;
}

KdDbLayout* currentLayout(const DatabaseContents& contents)
{
    const KdDbObjectId space =
        contents.record(TableKind::block, contents.database.tilemode() ? kModelSpace : kPaperSpace);
    for (KdDbLayout* layout : layoutsOf(contents)) {
        if (layout->getBlockTableRecordId() == space)
            return layout;
    }
    return nullptr;
}

Kdapi::ErrorStatus setCurrentLayout(DatabaseContents& contents, std::wstring_view name)
{
    const auto all = layoutsOf(contents);
    const auto layout = std::ranges::find_if(all, [name](const KdDbLayout* candidate) {
        return platform::compareNoCase(candidate->getLayoutName(), name) == 0;
    });
    if (layout == all.end())
        return Kdapi::eKeyNotFound;
    auto* const wanted =
        ObjectAccess::live<KdDbBlockTableRecord>((*layout)->getBlockTableRecordId());
    if (!wanted)
        return Kdapi::eKeyNotFound;

    const bool modelTab = platform::compareNoCase(wanted->name(), kModelSpace) == 0;
    if (KdDbBlockTableRecord* shown = contents.block(kPaperSpace); !modelTab && shown != wanted) {
        std::wstring shownName = std::wstring(kPaperSpace);
        if (shown) {
            shownName = shown->name();
            rename(*shown, wanted->name());
        }
        rename(*wanted, std::move(shownName));
    }
    contents.enteredViewport.setNull();
    DrawingSettings(contents.database).set(settings::kTileMode, modelTab ? 1 : 0);
    return Kdapi::eOk;
}

} // namespace korra

KdDbObjectId KdDbDatabase::paperSpaceVportId() const
{
    const auto layouts = korra::layoutsOf(*contents_);
    const bool modelTab = tilemode();
    for (const KdDbLayout* layout : layouts) {
        const bool wanted =
            modelTab ? layout->getTabOrder() > 0 : layout == korra::currentLayout(*contents_);
        const auto* const sheet =
            korra::ObjectAccess::live<KdDbBlockTableRecord>(layout->getBlockTableRecordId());
        if (!wanted || !sheet)
            continue;
        const auto viewports = korra::viewportsOf(*sheet);
        return viewports.empty() ? KdDbObjectId() : viewports.front();
    }
    return {};
}
