#pragma once

#include "kd/ed.h"

#include <string>
#include <string_view>

namespace korra::rx {

/// A command as a module or the host itself registered it.
struct Command {
    std::wstring group;
    std::wstring globalName;
    std::wstring localName;
    std::int32_t flags;
    KdRxFunctionPtr function;
    KdEdUIContext* context;
    HINSTANCE resources; ///< where the command's own resources lie; null for nowhere
};

/// The service "KDAPI_REGISTERED_COMMANDS".
KdEdCommandStack& commandStack();

/// The command that a typed name means, its local or its global one, without regard to case; of
/// several the one that was added last. Null when there is none; good until commands change.
const Command* findCommand(std::wstring_view typedName);

/// Takes every command away.
void forgetCommands();

} // namespace korra::rx
