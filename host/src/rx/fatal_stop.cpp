#include "rx/fatal_stop.h"

#include "kd/rx.h"
#include "platform/format.h"
#include "platform/gate.h"
#include "platform/text.h"

#include <cstdio>
#include <cstdlib>

namespace korra::rx {
namespace {
bool recording = false;
std::vector<std::wstring> stops;
} // namespace

void recordFatalStops(bool on)
{
    recording = on;
}

const std::vector<std::wstring>& recordedFatalStops()
{
    return stops;
}

void forgetFatalStops()
{
    stops.clear();
}

} // namespace korra::rx

void kdrx_abort(const wchar_t* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    std::wstring text = platform::formatList(format, arguments);
    va_end(arguments);

    platform::note("kdrx_abort", text);
    if (korra::rx::recording) {
        korra::rx::stops.push_back(std::move(text));
        return;
    }
    std::fprintf(stderr, "fatal stop: %s\n", platform::toUtf8(text).c_str());
    std::fflush(nullptr);
    // At once: nothing of what stopped the host may run again, not even to tidy up.
    std::_Exit(EXIT_FAILURE);
}
