#include "ed/input_stream.h"

#include "platform/gate.h"
#include "platform/input.h"

#include <windows.h>

#include <utility>

namespace korra::ed {
namespace {

/// Holds these keys and buttons, and releases all others.
void hold(const HeldKeys& held)
{
    const bool swapped = platform::buttonsAreSwapped();
    platform::releaseKeys();
    platform::holdKey(VK_RETURN, held.enter);
    platform::holdKey(VK_SPACE, held.space);
    platform::holdKey(VK_CONTROL, held.control);
    platform::holdKey(swapped ? VK_RBUTTON : VK_LBUTTON, held.primary);
    platform::holdKey(swapped ? VK_LBUTTON : VK_RBUTTON, held.secondary);
}

} // namespace

void InputStream::lookAhead(Waiting waiting)
{
    const platform::TurnOf turn(platform::Party::host); // what the user did is lost by no fault
    if (!ahead_)
        ahead_ = queue_.next();
    const bool mayAsk = source_ && (waiting == Waiting::allowed || !source_->asksUser());
    if (!ahead_ && mayAsk)
        ahead_ = source_->next();
}

InputEvent InputStream::take()
{
    lookAhead(Waiting::allowed);
    const InputEvent event = std::exchange(ahead_, std::nullopt).value_or(InputEvent());
    hold(event.held);
    return event;
}

bool InputStream::isMoveNext()
{
    lookAhead(Waiting::avoided);
    return ahead_ && ahead_->is<MoveEvent>();
}

} // namespace korra::ed
