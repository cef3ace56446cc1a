#include "orvex/viewports.h"

#include "support/opened.h"

#include "kd/ed.h"

#include <cmath>

using support::Opened;

namespace {

/// The view's axes as the columns of a matrix without translation.
///
/// Seen straight along the world's z axis the cross product gives no x axis: there the view keeps
/// the world's, and from below it is turned about y.
struct ViewAxes {
    explicit ViewAxes(const KdGeVector3d& direction)
        : x(KdGeVector3d::kZAxis.crossProduct(direction)), z(direction.normal())
    {
        if (!x.isZeroLength()) {
            x.normalize();
            y = z.crossProduct(x);
            return;
        }
        const double side = z.z < 0.0 ? -1.0 : 1.0;
        x = KdGeVector3d::kXAxis * side;
        y = KdGeVector3d::kYAxis;
        z = KdGeVector3d::kZAxis * side;
    }

    KdGeVector3d x;
    KdGeVector3d y;
    KdGeVector3d z;
};

/// Sheet coordinates to the display plane of the view.
KdGeMatrix3d sheetToDisplay(const KdDbViewport& viewport)
{
    const KdGePoint3d center = viewport.centerPoint();
    return KdGeMatrix3d::translation(-center.asVector()) *
           KdGeMatrix3d::scaling(viewport.viewHeight() / viewport.height(), center);
}

/// The display plane of the view to the world of model space.
KdGeMatrix3d displayToModel(const KdDbViewport& viewport)
{
    const ViewAxes axes(viewport.viewDirection());
    const KdGePoint2d viewCenter = viewport.viewCenter();
    const KdGePoint3d target = viewport.viewTarget();
    KdGeMatrix3d turn;
    turn.setCoordSystem(KdGePoint3d::kOrigin, axes.x, axes.y, axes.z);
    return KdGeMatrix3d::rotation(-viewport.twistAngle(), axes.z, target) *
           KdGeMatrix3d::translation(target.asVector()) * turn *
           KdGeMatrix3d::translation(KdGeVector3d(viewCenter.x, viewCenter.y, 0.0));
}

/// The camera's projection in the display system; the identity without perspective.
KdGeMatrix3d projection(const KdDbViewport& viewport)
{
    KdGeMatrix3d matrix;
    if (!viewport.isPerspectiveOn())
        return matrix;
    constexpr double kPerspective = 0.023809523809523808; // one 42nd of the film's diagonal
    const double focus = std::sqrt(std::pow(viewport.width() / viewport.height(), 2) + 1.0) *
                         viewport.lensLength() * viewport.viewHeight() * kPerspective;
    const double distance = viewport.viewDirection().length();
    matrix(2, 2) = (focus - (distance - focus)) / focus;
    matrix(2, 3) = (distance - focus) * (distance - focus) / focus;
    matrix(3, 2) = -1.0 / focus;
    matrix(3, 3) = distance / focus;
    return matrix;
}

using ViewportMatrix = void (*)(KdDbViewport*, KdGeMatrix3d&);

int matrixOf(KdDbObjectId id, KdGeMatrix3d& mat, ViewportMatrix compute)
{
    const Opened<KdDbViewport> viewport(id, KdDb::kForRead);
    if (!viewport)
        return 0;
    compute(viewport.get(), mat);
    return 1;
}

} // namespace

void ms2ps(KdDbViewport* vp, KdGeMatrix3d& mat)
{
    mat = sheetToDisplay(*vp).inverse() * projection(*vp) * displayToModel(*vp).inverse();
}

void ps2ms(KdDbViewport* vp, KdGeMatrix3d& mat)
{
    KdGeMatrix3d modelToPaper;
    ms2ps(vp, modelToPaper);
    mat = modelToPaper.inverse();
}

int ms2ps(KdDbObjectId& vpId, KdGeMatrix3d& mat)
{
    return matrixOf(vpId, mat, ms2ps);
}

int ps2ms(KdDbObjectId& vpId, KdGeMatrix3d& mat)
{
    return matrixOf(vpId, mat, ps2ms);
}

int ms2ps(KdGeMatrix3d& mat)
{
    return matrixOf(kdedGetCurViewportObjectId(), mat, ms2ps);
}

int ps2ms(KdGeMatrix3d& mat)
{
    return matrixOf(kdedGetCurViewportObjectId(), mat, ps2ms);
}

int isPointInViewPort(KdGePoint3d pt, const KdDbViewport* vp)
{
    if (!vp)
        return 0;
    KdDbExtents extents;
    vp->getGeomExtents(extents);
    const KdGePoint3d& low = extents.minPoint();
    const KdGePoint3d& high = extents.maxPoint();
    return low.x < pt.x && pt.x < high.x && low.y < pt.y && pt.y < high.y;
}

namespace {

/// The viewports of the layout that is current; none on the model tab.
KdArray<KdDbObjectId> viewportsOfCurrentLayout(const KdDbDatabase& database)
{
    const Opened<KdDbBlockTableRecord> space(database.currentSpaceId(), KdDb::kForRead);
    if (!space || !space->isLayout())
        return {};
    const Opened<KdDbLayout> layout(space->getLayoutId(), KdDb::kForRead);
    return layout ? layout->getViewportArray() : KdArray<KdDbObjectId>();
}

} // namespace

int getViewPortIdIdByPoint(KdDbObjectId& vpId, double& scale, const KdGePoint3d& pt,
                           KdDbDatabase* db)
{
    if (db->tilemode())
        return 0;
    if (kdedGetCurViewportObjectId() != db->paperSpaceVportId())
        return 0;
    int found = 0;
    for (const KdDbObjectId id : viewportsOfCurrentLayout(*db)) {
        const Opened<KdDbViewport> viewport(id, KdDb::kForRead);
        if (!isPointInViewPort(pt, viewport.get()))
            continue;
        scale = viewport->customScale();
        vpId = id;
        found = 1;
    }
    return found;
}
