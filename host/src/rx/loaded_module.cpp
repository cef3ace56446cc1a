#include "rx/loaded_module.h"

#include "platform/gate.h"

#include <utility>

namespace korra::rx {
namespace {

LoadedModule* receiver = nullptr;

} // namespace

LoadedModule* moduleBeingSent()
{
    return receiver;
}

KdRx::AppRetCode sendMessage(LoadedModule& module, KdRx::AppMsgCode code)
{
    struct Receiving {
        explicit Receiving(LoadedModule& now) : before(std::exchange(receiver, &now)) {}

        ~Receiving() { receiver = before; }

        LoadedModule* before;
    };

    platform::note("kdrxEntryPoint", module.name, code);
    const Receiving receiving(module);
    const platform::TurnOf turn(platform::Party::module);
    return module.entryPoint(code, &module);
}

} // namespace korra::rx
