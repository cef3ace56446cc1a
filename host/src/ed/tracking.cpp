#include "ed/editor.h"
#include "ed/prompts.h"
#include "ed/user_system.h"
#include "kd/ed.h"
#include "platform/gate.h"

namespace {

using namespace korra;

/// What kdedGrRead() calls the kinds of input.
enum TrackedKind : int { kKey = 2, kPoint = 3, kMove = 5, kSecondaryClick = 25 };

constexpr int kReportMoves = 1;
constexpr wchar_t kEnterKey = 13;

int givePoint(TrackedKind kind, int& type, resbuf& result)
{
    const KdDbDatabase* const database = ed::currentDatabase();
    const KdGePoint3d world = ed::editor().cursor;
    const KdGePoint3d point = database ? ed::userToWorld(*database).inverse() * world : world;
    ed::editor().cursorReported = true;
    type = kind;
    result.restype = RT3DPOINT;
    for (unsigned int axis = 0; axis < 3; ++axis)
        result.resval.rpoint[axis] = point[axis];
    return RTNORM;
}

int giveKey(wchar_t key, int& type, resbuf& result)
{
    type = kKey;
    result.restype = RTSHORT;
    result.resval.rint = static_cast<short>(key);
    return RTNORM;
}

int giveNextTypedKey(int& type, resbuf& result)
{
    std::wstring& keys = ed::editor().keysToReport;
    const wchar_t key = keys.front();
    keys.erase(0, 1);
    return giveKey(key, type, result);
}

int giveEvent(const ed::InputEvent& event, int& type, resbuf& result)
{
    if (ed::isCancel(event))
        return RTCAN;
    if (event.is<ed::EnterEvent>())
        return giveKey(kEnterKey, type, result);
    if (const auto* const pressed = event.as<ed::KeyEvent>())
        return giveKey(pressed->key, type, result);
    if (const auto* const text = event.as<ed::TextEvent>()) {
        ed::editor().keysToReport = text->text + kEnterKey;
        return giveNextTypedKey(type, result);
    }
    if (event.is<ed::MoveEvent>())
        return givePoint(kMove, type, result);
    const auto* const click = event.as<ed::ButtonEvent>();
    const bool secondary = click && click->button == ed::Button::secondary;
    return givePoint(secondary ? kSecondaryClick : kPoint, type, result);
}

} // namespace

int kdedGrRead(int track, int* type, resbuf* result)
{
    if (platform::gate("kdedGrRead", track) || !type || !result || !ed::runningEditor())
        return RTERROR;
    EditorState& editor = ed::editor();
    if (!editor.keysToReport.empty())
        return giveNextTypedKey(*type, *result);
    const bool reportsMoves = (track & kReportMoves) != 0;
    // A tracking that begins tells first where the cursor is.
    if (reportsMoves && !editor.cursorReported && !editor.input.isMoveNext())
        return givePoint(kMove, *type, *result);
    while (true) {
        const ed::InputEvent event = ed::nextEvent();
        if (event.is<ed::EndEvent>() && reportsMoves)
            return givePoint(kMove, *type, *result);
        if (!event.is<ed::MoveEvent>() || reportsMoves)
            return giveEvent(event, *type, *result);
    }
}
