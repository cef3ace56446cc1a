#include "ed/user_system.h"

#include "db/contents.h"
#include "ed/editor.h"
#include "ed/views.h"
#include "kd/ed.h"
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

/// A header variable of the current space: those of the sheets begin with P.
std::string headerName(const KdDbDatabase& database, const char* name)
{
    return std::string(isSheetCurrent(database) ? "$P" : "$") + name;
}

KdGePoint3d readHeader(const KdDbDatabase& database, const char* name,
                       const KdGeVector3d& byDefault)
{
    return database.contents().header.point(headerName(database, name),
                                            KdGePoint3d::kOrigin + byDefault);
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
    const KdGePoint3d origin = readHeader(database, "UCSORG", {});
    const KdGeVector3d x = readHeader(database, "UCSXDIR", KdGeVector3d::kXAxis).asVector();
    const KdGeVector3d y = readHeader(database, "UCSYDIR", KdGeVector3d::kYAxis).asVector();
    return systemOf(origin, x, y).value_or(KdGeMatrix3d::kIdentity);
}

void setUserSystem(KdDbDatabase& database, const KdGeMatrix3d& toWorld, std::wstring_view name)
{
    KdGePoint3d origin;
    KdGeVector3d x, y, z;
    toWorld.getCoordSystem(origin, x, y, z);
    DrawingHeader& header = database.contents().header;
    header.setText(headerName(database, "UCSNAME"), name, 2);
    header.setPoint(headerName(database, "UCSORG"), origin);
    header.setPoint(headerName(database, "UCSXDIR"), KdGePoint3d::kOrigin + x);
    header.setPoint(headerName(database, "UCSYDIR"), KdGePoint3d::kOrigin + y);
}

std::wstring userSystemName(const KdDbDatabase& database)
{
    return database.contents().header.text(headerName(database, "UCSNAME"), L"");
}

bool restoreUserSystem(KdDbDatabase& database, std::wstring_view name)
{
    const auto* const record =
        ObjectAccess::live<KdDbUCSTableRecord>(database.contents().record(TableKind::ucs, name));
    if (!record)
        return false;
    const auto matrix = systemOf(record->origin(), record->xAxis(), record->yAxis());
    setUserSystem(database, matrix.value_or(KdGeMatrix3d::kIdentity), record->name());
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
    const KdDbObjectId id = ObjectAccess::adopt(database, record.release(), table, {}, false);
    ObjectAccess::records(*ObjectAccess::live<KdDbUCSTable>(table)).push_back(id);
    setUserSystem(database, userToWorld(database), name);
    return true;
}

} // namespace korra::ed

Kdapi::ErrorStatus kdedGetCurrentUCS(KdGeMatrix3d& matrix)
{
    const bool failing = platform::gate("kdedGetCurrentUCS");
    const KdDbDatabase* const database = korra::ed::currentDatabase();
    if (failing || !database)
        return Kdapi::eNoDocument;
    matrix = korra::ed::userToWorld(*database);
    return Kdapi::eOk;
}

Kdapi::ErrorStatus kdedSetCurrentUCS(const KdGeMatrix3d& matrix)
{
    const bool failing = platform::gate("kdedSetCurrentUCS");
    KdDbDatabase* const database = korra::ed::currentDatabase();
    if (failing || !database)
        return Kdapi::eNoDocument;
    KdGePoint3d origin;
    KdGeVector3d x, y, z;
    matrix.getCoordSystem(origin, x, y, z);
    const auto system = korra::ed::systemOf(origin, x, y);
    if (!system || !korra::ed::isUpward(z, x.crossProduct(y)))
        return Kdapi::eInvalidInput;
    korra::ed::setUserSystem(*database, *system);
    return Kdapi::eOk;
}
