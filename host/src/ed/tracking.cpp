#include "ed/editor.h"
#include "ed/prompts.h"
#include "ed/user_system.h"
#include "kd/ed.h"
#include "platform/gate.h"

namespace korra::ed {
namespace {

/// What kdedGrRead() calls the kinds of input.
enum TrackedKind : int { kKey = 2, kPoint = 3, kMove = 5, kSecondaryClick = 25 };

constexpr int kReportMoves = 1;
constexpr wchar_t kEnterKey = 13;

int givePoint(TrackedKind kind, int& type, resbuf& result)
{
    const KdDbDatabase* const database = currentDatabase();
    const KdGePoint3d world = editor().cursor;
    const KdGePoint3d point = database ? userToWorld(*database).inverse() * world : world;
    editor().cursorReported = true;
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
    std::wstring& keys = editor().keysToReport;
    const wchar_t key = keys.front();
    keys.erase(0, 1);
    return giveKey(key, type, result);
}

int giveEvent(const InputEvent& event, int& type, resbuf& result)
{
    if (isCancel(event))
        return RTCAN;
    if (event.is<EnterEvent>())
        return giveKey(kEnterKey, type, result);
    if (const auto* const pressed = event.as<KeyEvent>())
        return giveKey(pressed->key, type, result);
    if (const auto* const text = event.as<TextEvent>()) {
        editor().keysToReport = text->text + kEnterKey;
        return giveNextTypedKey(type, result);
    }
    if (event.is<MoveEvent>())
        return givePoint(kMove, type, result);
    const auto* const click = event.as<ButtonEvent>();
    const bool secondary = click && click->button == Button::secondary;
    return givePoint(secondary ? kSecondaryClick : kPoint, type, result);
}

} // namespace
} // namespace korra::ed

using namespace korra::ed;

int kdedGrRead(int track, int* type, resbuf* result)
{
    return platform::gate("kdedGrRead", track).guard(RTERROR, [&]() -> int {
        if (!type || !result || !runningEditor())
            return RTERROR;
        korra::EditorState& state = editor();
        if (!state.keysToReport.empty())
            return giveNextTypedKey(*type, *result);
        const bool reportsMoves = (track & kReportMoves) != 0;
        // A tracking that begins tells first where the cursor is.
        if (reportsMoves && !state.cursorReported && !state.input.isMoveNext())
            return givePoint(kMove, *type, *result);
        while (true) {
            const InputEvent event = nextEvent();
            if (event.is<EndEvent>() && reportsMoves)
                return givePoint(kMove, *type, *result);
            if (!event.is<MoveEvent>() || reportsMoves)
                return giveEvent(event, *type, *result);
        }
    });
}
