#include "ed/computed_variables.h"

#include "drawing/layouts.h"
#include "ed/editor.h"
#include "ed/typed_values.h"
#include "ed/user_system.h"
#include "ed/views.h"
#include "objects/contents.h"
#include "platform/text.h"
#include "tables/drawing_settings.h"

#include <cmath>

namespace korra::ed {
namespace {

/// What EXTMIN and EXTMAX hold while the space shows nothing.
constexpr double kNoExtent = 1e20;

using Read = VariableValue (*)(const KdDbDatabase& database);
using Write = bool (*)(KdDbDatabase& database, const VariableValue& value);

SystemVariable computed(const wchar_t* name, short type, Read read, Write write = nullptr)
{
    SystemVariable variable{name, type, nullptr, nullptr};
    variable.read = [=]() -> std::optional<VariableValue> {
        const KdDbDatabase* const database = currentDatabase();
        return database ? std::optional(read(*database)) : std::nullopt;
    };
    if (write) {
        variable.write = [=](const VariableValue& value) {
            KdDbDatabase* const database = currentDatabase();
            return database && write(*database, value);
        };
    }
    return variable;
}

SystemVariable pointOf(const wchar_t* name, Read read, Write write = nullptr)
{
    return computed(name, RT3DPOINT, read, write);
}

SystemVariable realOf(const wchar_t* name, Read read)
{
    return computed(name, RTREAL, read);
}

SystemVariable shortOf(const wchar_t* name, Read read, Write write = nullptr)
{
    return computed(name, RTSHORT, read, write);
}

SystemVariable textOf(const wchar_t* name, Read read, Write write = nullptr)
{
    return computed(name, RTSTR, read, write);
}

constexpr int kByBlock = 0;
constexpr int kByLayer = 256;

VariableValue currentColor(const KdDbDatabase& database)
{
    const int index = DrawingSettings(database).get(settings::kColor);
    if (index == kByLayer)
        return std::wstring(L"BYLAYER");
    return index == kByBlock ? std::wstring(L"BYBLOCK") : std::to_wstring(index);
}

std::optional<int> colorIndexOf(const std::wstring& text)
{
    if (platform::compareNoCase(text, L"BYLAYER") == 0)
        return kByLayer;
    if (platform::compareNoCase(text, L"BYBLOCK") == 0)
        return kByBlock;
    const std::optional<double> number = readReal(text);
    const bool index =
        number && *number >= 1.0 && *number < kByLayer && *number == static_cast<int>(*number);
    return index ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

bool setCurrentColor(KdDbDatabase& database, const VariableValue& value)
{
    const std::optional<int> index = colorIndexOf(std::get<std::wstring>(value));
    if (index)
        DrawingSettings(database).set(settings::kColor, *index);
    return index.has_value();
}

/// A point and a direction of the world as the current user sees them.
KdGePoint3d inUserSystem(const KdDbDatabase& database, const KdGePoint3d& point)
{
    return userToWorld(database).inverse() * point;
}

KdGePoint3d inUserSystem(const KdDbDatabase& database, const KdGeVector3d& direction)
{
    return KdGePoint3d::kOrigin + userToWorld(database).inverse() * direction;
}

KdGePoint3d viewCenter(const KdDbDatabase& database)
{
    const View view = currentView(database);
    return inUserSystem(database,
                        displayToWorld(view) * KdGePoint3d(view.center.x, view.center.y, 0.0));
}

KdGePoint3d leastPoint(const KdDbDatabase& database)
{
    const KdGeExtents3d box = currentSpaceExtents(database);
    return box.isEmpty() ? KdGePoint3d(kNoExtent, kNoExtent, kNoExtent) : box.minPoint();
}

KdGePoint3d greatestPoint(const KdDbDatabase& database)
{
    const KdGeExtents3d box = currentSpaceExtents(database);
    return box.isEmpty() ? KdGePoint3d(-kNoExtent, -kNoExtent, -kNoExtent) : box.maxPoint();
}

/// A column of the matrix from the user system: 0 and 1 the axes, 3 the origin.
KdGePoint3d userColumn(const KdDbDatabase& database, unsigned int column)
{
    const KdGeMatrix3d matrix = userToWorld(database);
    return {matrix(0, column), matrix(1, column), matrix(2, column)};
}

VariableValue screenSize(const KdDbDatabase& database)
{
    const PixelSize pixels = currentPixels(database);
    return KdGePoint3d(pixels.width, pixels.height, 0.0);
}

VariableValue drawingName(const KdDbDatabase&)
{
    const std::wstring path = currentDocument()->fileName();
    return path.substr(path.find_last_of(L'/') + 1);
}

bool setTileModeTo(KdDbDatabase& database, const VariableValue& value)
{
    const short mode = std::get<short>(value);
    if (mode != 0 && mode != 1)
        return false;
    setTileMode(database, mode == 1);
    return true;
}

bool setLastPoint(KdDbDatabase&, const VariableValue& value)
{
    const auto& point = std::get<KdGePoint3d>(value);
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z))
        return false;
    currentDocument()->editor->lastPoint = point;
    return true;
}

std::vector<SystemVariable> tabVariables()
{
    return {
        textOf(
            L"CTAB",
            [](const KdDbDatabase& database) -> VariableValue {
                const KdDbLayout* const layout = currentLayout(database.contents());
                return std::wstring(layout ? layout->getLayoutName() : L"");
            },
            [](KdDbDatabase& database, const VariableValue& name) {
                return setCurrentLayout(database.contents(), std::get<std::wstring>(name)) ==
                       Kdapi::eOk;
            }),
        shortOf(
            L"CVPORT",
            [](const KdDbDatabase& database) -> VariableValue {
                return currentViewportNumber(database);
            },
            [](KdDbDatabase& database, const VariableValue& number) {
                return setCurrentViewportNumber(database, std::get<short>(number));
            }),
        shortOf(
            L"TILEMODE",
            [](const KdDbDatabase& database) -> VariableValue {
                return static_cast<short>(database.tilemode());
            },
            setTileModeTo),
        textOf(L"DWGNAME", drawingName),
    };
}

std::vector<SystemVariable> userSystemVariables()
{
    return {
        pointOf(L"UCSORG",
                [](const KdDbDatabase& db) -> VariableValue { return userColumn(db, 3); }),
        pointOf(L"UCSXDIR",
                [](const KdDbDatabase& db) -> VariableValue { return userColumn(db, 0); }),
        pointOf(L"UCSYDIR",
                [](const KdDbDatabase& db) -> VariableValue { return userColumn(db, 1); }),
        pointOf(
            L"LASTPOINT",
            [](const KdDbDatabase&) -> VariableValue {
                return currentDocument()->editor->lastPoint;
            },
            setLastPoint),
    };
}

std::vector<SystemVariable> viewVariables()
{
    return {
        pointOf(L"VIEWCTR", [](const KdDbDatabase& db) -> VariableValue { return viewCenter(db); }),
        realOf(L"VIEWSIZE",
               [](const KdDbDatabase& db) -> VariableValue { return currentView(db).height; }),
        pointOf(L"VIEWDIR",
                [](const KdDbDatabase& db) -> VariableValue {
                    return inUserSystem(db, currentView(db).direction);
                }),
        realOf(L"VIEWTWIST",
               [](const KdDbDatabase& db) -> VariableValue { return currentView(db).twist; }),
        shortOf(L"VIEWMODE",
                [](const KdDbDatabase& db) -> VariableValue {
                    return static_cast<short>(currentView(db).perspective);
                }),
        pointOf(L"TARGET",
                [](const KdDbDatabase& db) -> VariableValue {
                    return inUserSystem(db, currentView(db).target);
                }),
        realOf(L"LENSLENGTH",
               [](const KdDbDatabase& db) -> VariableValue { return currentView(db).lensLength; }),
        // Views of this host have no clipping planes.
        realOf(L"FRONTZ", [](const KdDbDatabase&) -> VariableValue { return 0.0; }),
        realOf(L"BACKZ", [](const KdDbDatabase&) -> VariableValue { return 0.0; }),
        computed(L"SCREENSIZE", RTPOINT, screenSize),
        pointOf(L"EXTMIN", [](const KdDbDatabase& db) -> VariableValue { return leastPoint(db); }),
        pointOf(L"EXTMAX",
                [](const KdDbDatabase& db) -> VariableValue { return greatestPoint(db); }),
    };
}

} // namespace

std::vector<SystemVariable> computedVariables()
{
    std::vector<SystemVariable> variables = {textOf(L"CECOLOR", currentColor, setCurrentColor)};
    for (const auto& part : {tabVariables(), userSystemVariables(), viewVariables()})
        variables.insert(variables.end(), part.begin(), part.end());
    return variables;
}

} // namespace korra::ed
