#include "orvex/picking.h"

#include "orvex/coordinates.h"
#include "orvex/viewports.h"
#include "pick_support.h"
#include "support/opened.h"
#include "support/resbuf_list.h"
#include "support/short_variable.h"

#include "kd/ed.h"

#include <algorithm>

using support::Opened;
using support::ResbufList;

namespace {

constexpr int kPaperSpaceViewport = 1; // what "CVPORT" holds while the sheet itself is current

void copyName(const kds_name from, kds_name to)
{
    std::copy_n(from, 2, to);
}

/// Puts a viewport's model-to-paper matrix in front of a transform.
void lookThrough(KdDbViewport& viewport, double (*transform)[4])
{
    KdGeMatrix3d modelToPaper;
    ms2ps(&viewport, modelToPaper);
    KdGeMatrix3d nested;
    transKdsMetrixToKdGeMetrix(nested, transform);
    KdGeMatrix3d whole = modelToPaper * nested;
    transKdGeMetrixToKdsMetrix(transform, whole);
}

} // namespace

int ads_nentselp_Ex(const wchar_t* prompt, kds_name entres, kds_name viewportName, double* ptres,
                    int pickflag, double (*xformres)[4], resbuf** refstkres)
{
    const bool onSheet = support::readShortVariable(L"CVPORT") == kPaperSpaceViewport;
    std::int64_t marker = -1;
    const int status = kdedNEntSelPEx(prompt, entres, ptres, pickflag, xformres, refstkres,
                                      onSheet ? 1u : 0u, &marker);
    if (status != RTNORM || !onSheet)
        return status;

    const resbuf* const outermost = pick::outermost(*refstkres);
    const std::int64_t* const outermostName = outermost ? outermost->resval.rlname : entres;
    const Opened<KdDbViewport> viewport(pick::idOf(outermostName), KdDb::kForRead);
    if (viewport) {
        lookThrough(*viewport, xformres);
        copyName(outermostName, viewportName);
    }
    return status;
}

int ads_entsel_Ex(const wchar_t* prompt, kds_name entres, double* ptres)
{
    kds_name viewportName{};
    kds_matrix transform{};
    ResbufList chain;
    const int status =
        ads_nentselp_Ex(prompt, entres, viewportName, ptres, 0, transform, chain.link());
    if (status != RTNORM)
        return status;
    const resbuf* const top = pick::topLevel(chain.get());
    if (top && !pick::isViewport(pick::idOf(top->resval.rlname)))
        copyName(top->resval.rlname, entres);
    return status;
}

namespace {

/// What an empty prompt means to the host: its own.
const wchar_t* hostPrompt(const CString& prompt)
{
    return prompt.IsEmpty() ? nullptr : prompt.GetString();
}

/// A picked point in the world, snapped before when Ctrl is held.
KdGePoint3d pickedPoint(kds_point picked)
{
    if (GetKeyState(VK_CONTROL) < 0)
        kdedOsnap(picked, L"INT,MID,END,INS,NOD", picked);
    KdGePoint3d world;
    UCS2WCS(KdGePoint3d(picked[0], picked[1], picked[2]), world);
    return world;
}

/// What a pick that the host ended with RTERROR was: a miss, or an end without a pick. The host
/// answers alike; the keys that are held tell.
int endOfPick()
{
    if (pick::isPrimaryButtonHeld())
        return RTERROR;
    const bool ended =
        pick::isKeyHeld(VK_SPACE) || pick::isKeyHeld(VK_RETURN) || pick::isSecondaryButtonHeld();
    return ended ? RTNONE : RTERROR;
}

} // namespace

int EntSel_(const CString& prompt, KdDbObjectId& id, KdGePoint3d& pt)
{
    kds_name name{};
    kds_point picked{};
    const int status = ads_entsel_Ex(hostPrompt(prompt), name, picked);
    if (status == RTERROR)
        return endOfPick();
    if (status != RTNORM)
        return status;
    kddbGetObjectId(id, name);
    pt = pickedPoint(picked);
    return RTNORM;
}

namespace {

/// What a nested pick gives, in the host's form.
struct NestedPick {
    kds_name name{};
    kds_name viewportName{}; ///< stays zero, which names nothing, without a viewport
    kds_point point{};
    kds_matrix transform{};

    int ask(const wchar_t* prompt, int pickFlag)
    {
        ResbufList chain;
        return ads_nentselp_Ex(prompt, name, viewportName, point, pickFlag, transform,
                               chain.link());
    }
};

void toUserPoint(const KdGePoint3d& world, kds_point user)
{
    KdGePoint3d point;
    WCS2UCS(world, point);
    user[0] = point.x;
    user[1] = point.y;
    user[2] = point.z;
}

} // namespace

int NEntSelP(const CString& prompt, KdDbObjectId& id, KdDbObjectId& viewportId, KdGePoint3d& pt,
             int pickflag, KdGeMatrix3d& xform)
{
    NestedPick picked;
    if (pickflag)
        toUserPoint(pt, picked.point);
    const int status = picked.ask(hostPrompt(prompt), pickflag);
    if (status != RTNORM)
        return status;
    const Kdapi::ErrorStatus named = kddbGetObjectId(id, picked.name);
    if (named != Kdapi::eOk) {
        kdutPrintf(L"\nFailure: %s", kdapiErrorStatusText(named));
        return RTNORM;
    }
    pt = pickedPoint(picked.point);
    transKdsMetrixToKdGeMetrix(xform, picked.transform);
    viewportId = pick::idOf(picked.viewportName);
    return RTNORM;
}

namespace {

/// Makes a vertex picked at the top level the nested entity of its polyline.
void liftVertex(KdDbObjectId& id)
{
    const Opened<KdDbVertex> vertex(id, KdDb::kForRead);
    if (vertex)
        id = vertex->ownerId();
}

} // namespace

int EntSelEx(const CString& prompt, KdDbObjectId& id, KdDbObjectId& viewportId, KdGePoint3d& pt,
             KdDbObjectId& nestedId, KdGeMatrix3d& xform)
{
    const int picked = EntSel_(prompt, id, pt);
    if (picked != RTNORM)
        return picked;
    const int status = NEntSelP(L"", nestedId, viewportId, pt, 1, xform);
    if (nestedId.isNull())
        nestedId = id;
    if (nestedId == id)
        liftVertex(id);
    return status;
}

int EntSelExEx(const CString& prompt, KdDbObjectId& id, KdDbObjectId& viewportId, KdGePoint3d& pt,
               KdDbObjectId& nestedId, KdGeMatrix3d& xform)
{
    const int status = EntSelEx(prompt, id, viewportId, pt, nestedId, xform);
    if (status != RTCAN && status != RTNORM)
        pt = getCurSelPt();
    return status;
}

KdGePoint3d getCurSelPt()
{
    constexpr int kTrackAndEcho = 9; // give cursor movements too, and draw the cursor
    resbuf event{};
    int kind = 0;
    while (event.restype != RT3DPOINT)
        kdedGrRead(kTrackAndEcho, &kind, &event);
    double* const point = event.resval.rpoint;
    rx_uc2wc(point, point, false);
    return KdGePoint3d(point[0], point[1], point[2]);
}
