#include "ed/editor.h"
#include "ed/picking.h"
#include "kd/ed.h"
#include "objects/object_slots.h"
#include "platform/gate.h"
#include "rx/result_buffer.h"

namespace korra::ed {
namespace {

/// How a member was selected, and what the descriptor of a pick is.
constexpr short kByPick = 1;
constexpr short kPointDescriptor = 0;

void describe(const Selected& member, ResbufBuilder& list)
{
    list.append(RTLB);
    list.append(RTSHORT).resval.rint = kByPick;
    runningSlots()->writeName(*member.entity.slot(), list.append(RTENAME).resval.rlname);
    list.append(RTSHORT).resval.rint = static_cast<short>(member.marker);
    list.append(RTLB);
    list.append(RTSHORT).resval.rint = kPointDescriptor;
    resbuf& point = list.append(RT3DPOINT);
    for (unsigned int axis = 0; axis < 3; ++axis)
        point.resval.rpoint[axis] = member.point[axis];
    list.append(RTLE);
    list.append(RTLE);
}

} // namespace
} // namespace korra::ed

using namespace korra::ed;

int kdedSSGet(const wchar_t* mode, const void* first, const void* second, const resbuf* filter,
              kds_name set)
{
    const KdDbDatabase* const database = currentDatabase();
    return platform::gate("kdedSSGet", mode).guard(RTERROR, [&] {
        if (!database || !set)
            return RTERROR;
        if (mode || !first || second || filter)
            return RTERROR;
        const auto* const given = static_cast<const double*>(first);
        const KdGePoint3d point(given[0], given[1], given[2]);
        const PickedPieces pieces =
            piecesAt(*database, point, korra::PickSink::Keep::nearest, PickDepth::currentSpace);
        if (pieces.isEmpty())
            return RTERROR;
        const korra::PickHit& hit = pieces.hits.front();
        editor().selectionSets.add({{topLevelEntity(hit), hit.marker, point}}, set);
        return RTNORM;
    });
}

int kdedSSFree(const kds_name set)
{
    return platform::gate("kdedSSFree").afterwards(RTERROR, [&] {
        return set && runningEditor() && editor().selectionSets.remove(set) ? RTNORM : RTERROR;
    });
}

int kdedSSNameX(resbuf** list, const kds_name set, std::int64_t index)
{
    return platform::gate("kdedSSNameX", index).guard(RTERROR, [&] {
        if (!list || !set || !runningEditor())
            return RTERROR;
        const std::vector<Selected>* const members = editor().selectionSets.find(set);
        if (!members || index < 0 || index >= static_cast<std::int64_t>(members->size()))
            return RTERROR;
        korra::ResbufBuilder description;
        describe((*members)[static_cast<std::size_t>(index)], description);
        *list = description.release();
        return RTNORM;
    });
}
