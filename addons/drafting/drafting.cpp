// The drafting add-on: one short command per main service of the library.

#include "commands.h"

#include "orvex/orvex.h"

namespace {

constexpr const wchar_t* kGroup = L"DRAFTING";

struct Command {
    const wchar_t* name;
    KdRxFunctionPtr run;
};

constexpr Command kCommands[] = {
    {L"DIMSET", dimset},     {L"PICKINFO", pickinfo}, {L"SEGMENT", segment},
    {L"LAYMAKE", laymake},   {L"LAYSET", layset},     {L"LAYLIST", laylist},
    {L"LTLOAD", ltload},     {L"LTLIST", ltlist},     {L"TSMAKE", tsmake},
    {L"TSSET", tsset},       {L"TSLIST", tslist},     {L"DSMAKE", dsmake},
    {L"DSSET", dsset},       {L"DSLIST", dslist},     {L"CURVEPTS", curvepts},
    {L"MKREGION", mkregion}, {L"OUTLINE", outline},   {L"ATTACH", attach},
    {L"CROSS", cross},
};

/// A service of the host's registry; null when it is missing.
template <class Service>
Service* service(const wchar_t* key)
{
    return Service::cast(kdrxSysRegistry()->at(key));
}

/// Tells the host that the add-on may be unloaded and works with several documents.
void introduce(void* packet)
{
    if (auto* const linker = service<KdRxDynamicLinker>(L"DynamicLinker")) {
        linker->unlockApplication(packet);
        linker->registerAppMDIAware(packet);
    }
}

void addCommands()
{
    auto* const commands = service<KdEdCommandStack>(L"KDAPI_REGISTERED_COMMANDS");
    for (const Command& command : kCommands) {
        if (commands)
            commands->addCommand(kGroup, command.name, command.name, 0, command.run);
    }
}

void removeCommands()
{
    auto* const commands = service<KdEdCommandStack>(L"KDAPI_REGISTERED_COMMANDS");
    for (const Command& command : kCommands) {
        if (commands)
            commands->removeCmd(kGroup, command.name);
    }
}

} // namespace

ORVEX_MODULE_API int kdrxEntryPoint(unsigned int message, void* packet)
{
    if (message == KdRx::kInitAppMsg) {
        introduce(packet);
        addCommands();
    } else if (message == KdRx::kUnloadAppMsg) {
        removeCommands();
    }
    return KdRx::kRetOK;
}

ORVEX_MODULE_API unsigned int kdrxGetApiVersion()
{
    return 0x07E90000; // the version of the host's interface
}
