#include "drawing/user_systems.h"
#include "kd/db.h"
#include "objects/object_access.h"
#include "objects/setters.h"

#include "platform/gate.h"
#include "platform/text.h"

using korra::ObjectAccess;

KDRX_DEFINE_MEMBERS(KdDbViewportTableRecord, KdDbSymbolTableRecord)

namespace {

bool isActiveOfWorkingDatabase(const KdDbViewportTableRecord& tile)
{
    return tile.database() && tile.database() == kddbHostApplicationServices()->workingDatabase() &&
           platform::compareNoCase(tile.name(), L"*Active") == 0;
}

} // namespace

void KdDbViewportTableRecord::describe(korra::ObjectVisitor& visitor)
{
    describeNamed(visitor, "ViewportTableRecord");
    visitor.point(12, center_);
    korra::storedVector(visitor, 16, direction_);
    visitor.point(17, target_);
    visitor.real(40, height_);
    visitor.real(41, aspect_);
    visitor.real(42, lensLength_);
    visitor.angle(51, twist_);
    visitor.point(110, ucsOrigin_, KdGePoint3d::kOrigin);
    visitor.vector(111, ucsXAxis_, KdGeVector3d::kXAxis);
    visitor.vector(112, ucsYAxis_, KdGeVector3d::kYAxis);
    visitor.reference(345, ucs_, korra::Reference::hard, KdDbUCSTableRecord::desc());
}

Kdapi::ErrorStatus KdDbViewportTableRecord::setCenterPoint(const KdGePoint2d& center)
{
    return set("KdDbViewportTableRecord::setCenterPoint", center_, center);
}

Kdapi::ErrorStatus KdDbViewportTableRecord::setHeight(double height)
{
    return platform::gate("KdDbViewportTableRecord::setHeight", objectId(), height)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (!(height > 0.0))
                return Kdapi::eInvalidView;
            if (const auto status = beginChange())
                return status;
            const double oldWidth = width();
            height_ = height;
            aspect_ = oldWidth / height_;
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbViewportTableRecord::setWidth(double width)
{
    return setIf("KdDbViewportTableRecord::setWidth", width > 0.0, aspect_, width / height_,
                 Kdapi::eInvalidView);
}

Kdapi::ErrorStatus KdDbViewportTableRecord::setTarget(const KdGePoint3d& target)
{
    return set("KdDbViewportTableRecord::setTarget", target_, target);
}

Kdapi::ErrorStatus KdDbViewportTableRecord::setViewDirection(const KdGeVector3d& direction)
{
    return platform::gate("KdDbViewportTableRecord::setViewDirection", objectId(), direction)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (direction.isZeroLength())
                return Kdapi::eInvalidView;
            return set("KdDbViewportTableRecord::setViewDirection", direction_, direction);
        });
}

Kdapi::ErrorStatus KdDbViewportTableRecord::setViewTwist(double radians)
{
    return set("KdDbViewportTableRecord::setViewTwist", twist_, radians);
}

Kdapi::ErrorStatus KdDbViewportTableRecord::setUcs(KdDbObjectId namedSystem)
{
    return platform::gate("KdDbViewportTableRecord::setUcs", objectId(), namedSystem)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (database() && namedSystem.database() && namedSystem.database() != database())
                return Kdapi::eWrongDatabase;
            KdDbObject* opened = nullptr;
            if (const auto status = ObjectAccess::open(opened, namedSystem, KdDb::kForRead))
                return status;
            const auto* const system = KdDbUCSTableRecord::cast(opened);
            ObjectAccess::close(*opened);
            if (!system)
                return Kdapi::eNotThatKindOfClass;
            if (const auto status = beginChange())
                return status;
            takeUcs(system->origin(), system->xAxis(), system->yAxis(), namedSystem);
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbViewportTableRecord::setUcs(const KdGePoint3d& origin,
                                                   const KdGeVector3d& xAxis,
                                                   const KdGeVector3d& yAxis)
{
    return platform::gate("KdDbViewportTableRecord::setUcs", objectId())
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (const auto status = beginChange())
                return status;
            takeUcs(origin, xAxis, yAxis, {});
            return Kdapi::eOk;
        });
}

void KdDbViewportTableRecord::takeUcs(const KdGePoint3d& origin, const KdGeVector3d& xAxis,
                                      const KdGeVector3d& yAxis, KdDbObjectId namedSystem)
{
    ucsOrigin_ = origin;
    ucsXAxis_ = xAxis;
    ucsYAxis_ = yAxis;
    ucs_ = namedSystem;
    if (isActiveOfWorkingDatabase(*this))
        korra::setCurrentUcs(*database(), {origin, xAxis, yAxis, namedSystem});
}
