#include "rx/command_stack.h"
#include "rx/module_linker.h"

#include "platform/gate.h"

#include <string_view>

namespace {

class SystemRegistry final : public KdRxRegistry {
public:
    KdRxObject* at(const wchar_t* key) const override
    {
        return platform::gate("KdRxRegistry::at", key).guard(nullptr, [&]() -> KdRxObject* {
            if (!key)
                return nullptr;
            if (std::wstring_view(key) == L"DynamicLinker")
                return &korra::rx::dynamicLinker();
            if (std::wstring_view(key) == L"KDAPI_REGISTERED_COMMANDS")
                return &korra::rx::commandStack();
            return nullptr;
        });
    }
};

} // namespace

KdRxRegistry* kdrxSysRegistry()
{
    static SystemRegistry registry;
    return &registry;
}
