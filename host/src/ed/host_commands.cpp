#include "ed/host_commands.h"

#include "drawing/layouts.h"
#include "ed/editor.h"
#include "ed/prompts.h"
#include "ed/regeneration.h"
#include "ed/system_variables.h"
#include "ed/user_system.h"
#include "ed/views.h"
#include "kd/ed.h"
#include "objects/contents.h"
#include "objects/host_opened.h"
#include "rx/command_stack.h"

#include <utility>

namespace korra::ed {
namespace {

KdDbDatabase& drawing()
{
    return *currentDatabase();
}

void setVariableCommand()
{
    std::wstring name;
    if (askText(L"\nVariable name: ", Blanks::inText, name) != RTNORM)
        return;
    const SystemVariable* const variable = findVariable(name);
    const auto current = variable ? variable->read() : std::nullopt;
    if (!current) {
        printLine(L"Unknown variable \"" + name + L"\".");
        return;
    }
    std::wstring text;
    const std::wstring prompt =
        L"\nNew value for " + variable->name + L" <" + textOf(*current) + L">: ";
    if (askText(prompt, Blanks::inText, text) != RTNORM || text.empty())
        return;
    if (!setVariable(*variable, text))
        printLine(variable->name + L" cannot be set to \"" + text + L"\".");
}

/// The system of an origin, a point on its x axis and one on the side of its y axis.
std::optional<KdGeMatrix3d> systemOfPoints(const KdGePoint3d& origin, const KdGePoint3d& onXAxis,
                                           const KdGePoint3d& beside)
{
    const KdGeVector3d x = onXAxis - origin;
    const KdGeVector3d z = x.crossProduct(beside - origin);
    if (z.isZeroLength())
        return std::nullopt;
    return systemOf(origin, x, z.crossProduct(x));
}

void restoreOrSaveSystem()
{
    std::wstring name;
    if (askText(L"\nName of the coordinate system: ", Blanks::inText, name) != RTNORM)
        return;
    if (!restoreUserSystem(drawing(), name) && !saveUserSystem(drawing(), name))
        printLine(L"\"" + name + L"\" cannot be the name of a coordinate system.");
}

void askSystem(const KdGePoint3d& origin)
{
    KdGePoint3d onXAxis;
    KdGePoint3d beside;
    if (askPoint(L"\nPoint on the x axis: ", onXAxis) != RTNORM ||
        askPoint(L"\nPoint on the side of the y axis: ", beside) != RTNORM)
        return;
    const auto system = systemOfPoints(origin, onXAxis, beside);
    if (system)
        setUserSystem(drawing(), userToWorld(drawing()) * *system);
    else
        printLine(L"The three points lie in one line.");
}

void userSystemCommand()
{
    editor().rules.keywords = Keywords(L"World Name");
    KdGePoint3d origin;
    const int status = askPoint(L"\nOrigin or [World/Name]: ", origin);
    if (status == RTNORM)
        askSystem(origin);
    else if (status == RTKWORD && editor().lastInput == L"World")
        setUserSystem(drawing(), KdGeMatrix3d::kIdentity);
    else if (status == RTKWORD)
        restoreOrSaveSystem();
}

void layoutCommand()
{
    std::wstring name;
    if (askText(L"\nLayout: ", Blanks::inText, name) != RTNORM)
        return;
    if (setCurrentLayout(drawing().contents(), name) != Kdapi::eOk)
        printLine(L"There is no layout \"" + name + L"\".");
}

bool isOnSheet()
{
    if (drawing().tilemode())
        printLine(L"Only a layout has viewports to enter and to leave.");
    return !drawing().tilemode();
}

void enterViewportCommand()
{
    KdGePoint3d point;
    if (!isOnSheet() || askPoint(L"\nPoint in a viewport: ", point) != RTNORM)
        return;
    // From inside a viewport, too, the next one is pointed at on the sheet.
    const KdDbObjectId before = std::exchange(drawing().contents().enteredViewport, {});
    const KdDbViewport* const viewport =
        floatingViewportAt(drawing(), userToWorld(drawing()) * point);
    if (!viewport)
        printLine(L"No viewport that is on lies there.");
    drawing().contents().enteredViewport = viewport ? viewport->objectId() : before;
}

void leaveViewportCommand()
{
    if (isOnSheet())
        drawing().contents().enteredViewport.setNull();
}

void zoomToCorners(const KdGePoint3d& first, const KdGePoint3d& second)
{
    const KdGeMatrix3d toDisplay = worldToDisplay(currentView(drawing())) * userToWorld(drawing());
    const KdGePoint3d a = toDisplay * first;
    const KdGePoint3d b = toDisplay * second;
    const KdGePoint2d middle(a.x + (b.x - a.x) / 2.0, a.y + (b.y - a.y) / 2.0);
    if (!setCurrentWindow(drawing(), middle, std::abs(b.x - a.x), std::abs(b.y - a.y)))
        printLine(L"The window has no size.");
}

void zoomCommand()
{
    editor().rules.keywords = Keywords(L"Extents");
    KdGePoint3d first;
    const int status = askPoint(L"\nFirst corner or [Extents]: ", first);
    if (status == RTKWORD && !zoomExtents(drawing()))
        printLine(L"There is nothing to be seen.");
    KdGePoint3d second;
    if (status == RTNORM && askPoint(L"\nOther corner: ", second) == RTNORM)
        zoomToCorners(first, second);
}

void regenerateCommand()
{
    // New graphics are new objects: the list grows on the way.
    const std::vector<ObjectSlot*> slots = drawing().contents().slots;
    for (ObjectSlot* const slot : slots)
        regenerate(KdDbObjectId(slot));
}

void quitCommand()
{
    editor().quitting = true;
}

struct HostCommand {
    const wchar_t* name;
    KdRxFunctionPtr function;
};

constexpr HostCommand kHostCommands[] = {
    {L"SETVAR", setVariableCommand},   {L"UCS", userSystemCommand},
    {L"LAYOUT", layoutCommand},        {L"MSPACE", enterViewportCommand},
    {L"PSPACE", leaveViewportCommand}, {L"ZOOM", zoomCommand},
    {L"REGEN", regenerateCommand},     {L"QUIT", quitCommand},
};

} // namespace

void registerHostCommands()
{
    for (const HostCommand& command : kHostCommands) {
        rx::commandStack().addCommand(L"KORRA_HOST", command.name, command.name, 0,
                                      command.function);
    }
}

} // namespace korra::ed
