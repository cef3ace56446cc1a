#include "ed/picking.h"

#include "blocks/draw_block.h"
#include "ed/editor.h"
#include "ed/prompts.h"
#include "ed/user_system.h"
#include "ed/views.h"
#include "kd/ed.h"
#include "objects/contents.h"
#include "objects/object_slots.h"
#include "platform/gate.h"
#include "rx/result_buffer.h"
#include "tables/drawing_settings.h"

namespace korra::ed {
namespace {

std::vector<PickHit> hitsIn(KdDbObjectId block, const KdGeMatrix3d& toPixels,
                            const KdGePoint3d& world, const KdGeMatrix3d& worldToPixel,
                            PickSink::Keep keep)
{
    const KdGePoint3d pixel = worldToPixel * world;
    PickSink sink(toPixels, {pixel.x, pixel.y}, pickReach(), keep);
    drawBlockContents(block, sink);
    return sink.hits();
}

} // namespace

double pickReach()
{
    return editor().hostSettings.get(host_settings::kPickBox);
}

PickedPieces piecesAt(const KdDbDatabase& database, const KdGePoint3d& userPoint,
                      PickSink::Keep keep, PickDepth depth)
{
    const KdGePoint3d world = userToWorld(database) * userPoint;
    const KdGeMatrix3d toPixels = worldToPixels(database);
    PickedPieces pieces;
    pieces.hits = hitsIn(database.currentSpaceId(), toPixels, world, toPixels, keep);
    if (!pieces.isEmpty() || depth == PickDepth::currentSpace || !isSheetCurrent(database))
        return pieces;
    const KdDbViewport* const viewport = floatingViewportAt(database, world);
    const KdDbBlockTableRecord* const model = database.contents().block(L"*Model_Space");
    if (!viewport || !model)
        return pieces;
    pieces.viewport = viewport->objectId();
    pieces.spaceFromHit = modelToSheet(*viewport);
    pieces.hits = hitsIn(model->objectId(), toPixels * pieces.spaceFromHit, world, toPixels, keep);
    return pieces;
}

KdDbObjectId topLevelEntity(const PickHit& hit)
{
    if (!hit.containers.empty())
        return hit.containers.back();
    const auto* const vertex = ObjectAccess::live<KdDbVertex>(hit.entity);
    return vertex ? vertex->ownerId() : hit.entity;
}

namespace {

/// What a nested pick hands back.
struct NestedPick {
    KdDbObjectId entity;
    KdGePoint3d point; ///< user coordinates
    std::int64_t marker = 0;
    KdGeMatrix3d transform;
    std::vector<KdDbObjectId> containers; ///< innermost first, a viewport last
};

bool pickAt(const KdGePoint3d& point, PickDepth depth, NestedPick& pick)
{
    const PickedPieces pieces = piecesAt(*currentDatabase(), point, PickSink::Keep::nearest, depth);
    if (pieces.isEmpty())
        return false;
    const PickHit& hit = pieces.hits.front();
    pick = {hit.entity, point, hit.marker, hit.transform, hit.containers};
    if (!pieces.viewport.isNull())
        pick.containers.push_back(pieces.viewport);
    currentDocument()->editor->lastPoint = point;
    return true;
}

/// A miss, Enter, Space and a secondary click are all the same answer; the held key tells them
/// apart.
int askPick(std::wstring_view prompt, PickDepth depth, NestedPick& pick)
{
    const PromptRules rules = takeRules();
    while (true) {
        const InputEvent event = ask(prompt);
        if (isCancel(event))
            return RTCAN;
        if (isKeyword(event, rules))
            return RTKWORD;
        if (const auto* const click = event.as<PointEvent>())
            return pickAt(click->point, depth, pick) ? RTNORM : RTERROR;
        if (isFreeText(event, rules))
            return RTSTR;
        if (!event.is<TextEvent>())
            return RTERROR;
        printLine(L"Not a point or an entity.");
    }
}

resbuf* newChain(const std::vector<KdDbObjectId>& containers)
{
    ResbufBuilder chain;
    for (const KdDbObjectId id : containers)
        runningSlots()->writeName(*id.slot(), chain.append(RTENAME).resval.rlname);
    return chain.release();
}

int nestedPick(const wchar_t* prompt, kds_name picked, kds_point point, int pickFlag,
               kds_matrix transform, resbuf** containers, PickDepth depth, std::int64_t* marker)
{
    if (!picked || !point || !transform || !containers || !currentDocument())
        return RTERROR;
    NestedPick pick;
    const int status =
        pickFlag ? (pickAt({point[0], point[1], point[2]}, depth, pick) ? RTNORM : RTERROR)
                 : askPick(prompt ? prompt : L"\nSelect object: ", depth, pick);
    if (status != RTNORM)
        return status;
    runningSlots()->writeName(*pick.entity.slot(), picked);
    for (unsigned int axis = 0; axis < 3; ++axis)
        point[axis] = pick.point[axis];
    for (unsigned int row = 0; row < 4; ++row) {
        for (unsigned int column = 0; column < 4; ++column)
            transform[row][column] = pick.transform(row, column);
    }
    *containers = newChain(pick.containers);
    if (marker)
        *marker = pick.marker;
    return RTNORM;
}

} // namespace
} // namespace korra::ed

using namespace korra::ed;

int kdedNEntSelPEx(const wchar_t* prompt, kds_name picked, kds_point point, int pickFlag,
                   kds_matrix transform, resbuf** containers, unsigned int spaceFlag,
                   std::int64_t* marker)
{
    if (containers)
        *containers = nullptr;
    return platform::gate("kdedNEntSelPEx", prompt, pickFlag, spaceFlag).guard(RTERROR, [&] {
        return nestedPick(prompt, picked, point, pickFlag, transform, containers,
                          spaceFlag ? PickDepth::throughViewports : PickDepth::currentSpace,
                          marker);
    });
}

int kdedNEntSelP(const wchar_t* prompt, kds_name picked, kds_point point, int pickFlag,
                 kds_matrix transform, resbuf** containers)
{
    if (containers)
        *containers = nullptr;
    return platform::gate("kdedNEntSelP", prompt, pickFlag).guard(RTERROR, [&] {
        return nestedPick(prompt, picked, point, pickFlag, transform, containers,
                          PickDepth::currentSpace, nullptr);
    });
}
