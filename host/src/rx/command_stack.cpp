#include "rx/command_stack.h"

#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>
#include <vector>

KDRX_DEFINE_MEMBERS(KdEdCommandStack, KdRxObject)

namespace korra::rx {
namespace {

std::vector<Command> commands; ///< in the order of adding

bool sameName(std::wstring_view left, std::wstring_view right)
{
    return platform::compareNoCase(left, right) == 0;
}

auto findRegistered(std::wstring_view group, std::wstring_view globalName)
{
    return std::find_if(commands.begin(), commands.end(), [&](const Command& each) {
        return sameName(each.group, group) && sameName(each.globalName, globalName);
    });
}

class CommandStack final : public KdEdCommandStack {
public:
    Kdapi::ErrorStatus addCommand(const wchar_t* group, const wchar_t* globalName,
                                  const wchar_t* localName, std::int32_t flags,
                                  KdRxFunctionPtr function, KdEdUIContext* context, int,
                                  HINSTANCE resources) override
    {
        return platform::gate("KdEdCommandStack::addCommand", group, globalName)
            .guard(Kdapi::eInvalidInput, [&] {
                if (!group || !globalName || !*globalName || !function)
                    return Kdapi::eInvalidInput;
                if (findRegistered(group, globalName) != commands.end())
                    return Kdapi::eDuplicateKey;
                commands.push_back({group, globalName, localName ? localName : globalName, flags,
                                    function, context, resources});
                return Kdapi::eOk;
            });
    }

    Kdapi::ErrorStatus removeCmd(const wchar_t* group, const wchar_t* globalName) override
    {
        return platform::gate("KdEdCommandStack::removeCmd", group, globalName)
            .afterwards(Kdapi::eKeyNotFound, [&] {
                if (!group || !globalName)
                    return Kdapi::eKeyNotFound;
                const auto command = findRegistered(group, globalName);
                if (command == commands.end())
                    return Kdapi::eKeyNotFound;
                commands.erase(command);
                return Kdapi::eOk;
            });
    }
};

} // namespace

KdEdCommandStack& commandStack()
{
    static CommandStack stack;
    return stack;
}

const Command* findCommand(std::wstring_view typedName)
{
    const auto command = std::find_if(commands.rbegin(), commands.rend(), [&](const auto& each) {
        return sameName(each.globalName, typedName) || sameName(each.localName, typedName);
    });
    return command == commands.rend() ? nullptr : &*command;
}

void forgetCommands()
{
    commands.clear();
}

} // namespace korra::rx
