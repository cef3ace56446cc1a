#include "ed/colors.h"
#include "ed/editor.h"
#include "kd/ed.h"
#include "platform/gate.h"
#include "platform/text.h"
#include "rx/list_functions.h"

namespace korra::ed {
namespace {

/// A list-processing function that the host itself has.
struct HostFunction {
    const wchar_t* name;
    int (*call)(const resbuf* arguments, resbuf** result);
};

constexpr HostFunction kHostFunctions[] = {{L"korra_colordlg", invokeColorDialog}};

} // namespace
} // namespace korra::ed

using namespace korra::ed;

int kdedInvoke(const resbuf* arguments, resbuf** result)
{
    if (result)
        *result = nullptr;
    const bool isNamed = arguments && arguments->restype == RTSTR && arguments->resval.rstring;
    const wchar_t* const name = isNamed ? arguments->resval.rstring : nullptr;
    return platform::gate("kdedInvoke", name).guard(RTERROR, [&]() -> int {
        if (!name || !result || !runningEditor())
            return RTERROR;
        for (const HostFunction& function : kHostFunctions) {
            if (platform::compareNoCase(function.name, name) == 0)
                return function.call(arguments->rbnext, result);
        }
        return korra::rx::invokeFunction(name) ? RTNORM : RTERROR;
    });
}
