#include "blocks/spaces.h"
#include "ed/editor.h"
#include "ed/views.h"
#include "objects/contents.h"
#include "objects/host_opened.h"
#include "tables/drawing_settings.h"

namespace korra::ed {
namespace {

/// What the model tab and the sheet itself have as the number of their viewport.
constexpr short kModelNumber = 2;
constexpr short kSheetNumber = 1;

const KdDbBlockTableRecord* currentSheet(const KdDbDatabase& database)
{
    return database.tilemode() ? nullptr : database.contents().block(L"*Paper_Space");
}

} // namespace

std::vector<const KdDbViewport*> floatingViewports(const KdDbDatabase& database)
{
    std::vector<const KdDbViewport*> viewports;
    const KdDbBlockTableRecord* const sheet = currentSheet(database);
    if (!sheet)
        return viewports;
    for (const KdDbObjectId id : viewportsOf(*sheet)) {
        const auto* const viewport = ObjectAccess::live<KdDbViewport>(id);
        if (viewport && viewport->isOn() && id != database.paperSpaceVportId())
            viewports.push_back(viewport);
    }
    return viewports;
}

const KdDbViewport* floatingViewportAt(const KdDbDatabase& database, const KdGePoint3d& sheetPoint)
{
    const KdDbViewport* last = nullptr;
    for (const KdDbViewport* viewport : floatingViewports(database)) {
        const KdGeVector3d offset = sheetPoint - viewport->centerPoint();
        if (std::abs(offset.x) < viewport->width() / 2.0 &&
            std::abs(offset.y) < viewport->height() / 2.0)
            last = viewport;
    }
    return last;
}

void setTileMode(KdDbDatabase& database, bool on)
{
    if (database.tilemode() == on)
        return;
    DrawingSettings(database).set(settings::kTileMode, on ? 1 : 0);
    database.contents().enteredViewport.setNull();
}

short currentViewportNumber(const KdDbDatabase& database)
{
    if (database.tilemode())
        return kModelNumber;
    const auto* const entered =
        ObjectAccess::live<KdDbViewport>(database.contents().enteredViewport);
    return entered ? entered->number() : kSheetNumber;
}

bool setCurrentViewportNumber(KdDbDatabase& database, int number)
{
    if (database.tilemode())
        return number == kModelNumber;
    if (number == kSheetNumber) {
        database.contents().enteredViewport.setNull();
        return true;
    }
    for (const KdDbViewport* viewport : floatingViewports(database)) {
        if (viewport->number() == number) {
            database.contents().enteredViewport = viewport->objectId();
            return true;
        }
    }
    return false;
}

} // namespace korra::ed
