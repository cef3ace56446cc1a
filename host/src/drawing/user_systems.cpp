#include "drawing/user_systems.h"

#include "kd/db.h"
#include "objects/contents.h"

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

} // namespace

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
