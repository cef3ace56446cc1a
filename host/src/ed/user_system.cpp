#include "ed/user_system.h"

#include "drawing/user_systems.h"
#include "ed/editor.h"
#include "kd/ed.h"
#include "objects/contents.h"
#include "platform/gate.h"

namespace korra::ed {
namespace {

/// Largest cosine of axes at a right angle: stored as decimals they are seldom true to the last
/// digit.
constexpr double kRightAngle = 1e-6;

bool isUpward(const KdGeVector3d& z, const KdGeVector3d& normal)
{
    return (z.normal() - normal.normal()).length() < kRightAngle;
}

} // namespace

std::optional<KdGeMatrix3d> systemOf(const KdGePoint3d& origin, const KdGeVector3d& xAxis,
                                     const KdGeVector3d& yAxis)
{
    if (xAxis.isZeroLength() || yAxis.isZeroLength() ||
        std::abs(xAxis.normal().dotProduct(yAxis.normal())) > kRightAngle)
        return std::nullopt;
    const KdGeVector3d x = xAxis.normal();
    const KdGeVector3d z = x.crossProduct(yAxis).normal();
    KdGeMatrix3d matrix;
    return matrix.setCoordSystem(origin, x, z.crossProduct(x), z);
}

KdGeMatrix3d userToWorld(const KdDbDatabase& database)
{
    const UserSystem system = currentUcs(database);
    return systemOf(system.origin, system.xAxis, system.yAxis).value_or(KdGeMatrix3d::kIdentity);
}

void setUserSystem(KdDbDatabase& database, const KdGeMatrix3d& toWorld, KdDbObjectId named)
{
    UserSystem system;
    KdGeVector3d zAxis;
    toWorld.getCoordSystem(system.origin, system.xAxis, system.yAxis, zAxis);
    system.named = named;
    setCurrentUcs(database, system);
}

bool restoreUserSystem(KdDbDatabase& database, std::wstring_view name)
{
    const auto* const record =
        ObjectAccess::live<KdDbUCSTableRecord>(database.contents().record(TableKind::ucs, name));
    if (!record)
        return false;
    const auto matrix = systemOf(record->origin(), record->xAxis(), record->yAxis());
    setUserSystem(database, matrix.value_or(KdGeMatrix3d::kIdentity), record->objectId());
    return true;
}

bool saveUserSystem(KdDbDatabase& database, const std::wstring& name)
{
    KdGePoint3d origin;
    KdGeVector3d x, y, z;
    userToWorld(database).getCoordSystem(origin, x, y, z);
    auto record = std::make_unique<KdDbUCSTableRecord>();
    if (record->setName(name.c_str()) != Kdapi::eOk)
        return false;
    record->setOrigin(origin);
    record->setXAxis(x);
    record->setYAxis(y);
    const KdDbObjectId table = database.UCSTableId();
    const KdDbObjectId id =
        ObjectAccess::append(*ObjectAccess::live<KdDbUCSTable>(table), record.get());
    static_cast<void>(record.release());
    setUserSystem(database, userToWorld(database), id);
    return true;
}

} // namespace korra::ed

using namespace korra::ed;

Kdapi::ErrorStatus kdedGetCurrentUCS(KdGeMatrix3d& matrix)
{
    return platform::gate("kdedGetCurrentUCS").guard(Kdapi::eNoDocument, [&] {
        const KdDbDatabase* const database = currentDatabase();
        if (!database)
            return Kdapi::eNoDocument;
        matrix = userToWorld(*database);
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus kdedSetCurrentUCS(const KdGeMatrix3d& matrix)
{
    return platform::gate("kdedSetCurrentUCS").guard(Kdapi::eNoDocument, [&] {
        KdDbDatabase* const database = currentDatabase();
        if (!database)
            return Kdapi::eNoDocument;
        KdGePoint3d origin;
        KdGeVector3d x, y, z;
        matrix.getCoordSystem(origin, x, y, z);
        const auto system = systemOf(origin, x, y);
        if (!system || !isUpward(z, x.crossProduct(y)))
            return Kdapi::eInvalidInput;
        setUserSystem(*database, *system);
        return Kdapi::eOk;
    });
}
