/// A module whose tables are not empty: a base class, a derived one, commands (one ends the program
/// as a crash does) and functions.

#include "frame/registration.h"

#include "kd/ed.h"

#include "platform/gate.h"
#include "platform/resources.h"

#include <cstdlib>

namespace {

KdRxClass* baseClass = nullptr;
KdRxClass* derivedClass = nullptr;

frame::ClassEntry base{[] { return baseClass; },
                       [] { baseClass = new KdRxClass(L"ProbeBase", KdRxObject::desc()); }, false};
frame::ClassEntry derived{[] { return derivedClass; },
                          [] { derivedClass = new KdRxClass(L"ProbeDerived", baseClass); }, false};
frame::ClassEntry* const classes[] = {&base, nullptr, &derived};

constexpr auto runCommand = [] { platform::note("command"); };

void endAll()
{
    kdutPrintf(L"half a line");
    std::_Exit(EXIT_SUCCESS);
}

frame::CommandEntry named{L"PROBE", L"PROBEONE", L"ONE", 0, runCommand, nullptr, 0};
frame::CommandEntry loaded{L"PROBE", L"PROBETWO", nullptr, 0x00200000, runCommand, nullptr, 9001};
frame::CommandEntry ending{L"PROBE", L"ENDALL", nullptr, 0, endAll, nullptr, 0};
frame::CommandEntry* const commands[] = {&named, nullptr, &loaded, &ending};

/// A function that notes its name.
template <char Name>
int run()
{
    platform::note(Name == '1' ? "first function" : "second function");
    return 0;
}

frame::FunctionEntry first{L"probe-first", run<'1'>, false, 0};
frame::FunctionEntry second{nullptr, run<'2'>, true, 9002};
frame::FunctionEntry* const functions[] = {nullptr, &first, &second};

constexpr platform::StringResource kStrings[] = {{9001, L"two"}, {9002, L"probe-second"}};

HINSTANCE thisModule = nullptr;

} // namespace

PLATFORM_RESOURCES = {kStrings, {}};

extern "C" BOOL APIENTRY DllMain(HINSTANCE instance, DWORD, LPVOID)
{
    thisModule = instance;
    return TRUE;
}

extern "C" __attribute__((visibility("default"))) KdRx::AppRetCode
kdrxEntryPoint(KdRx::AppMsgCode code, void*)
{
    switch (code) {
    case KdRx::kInitAppMsg:
        frame::registerClasses(classes);
        frame::addCommands(commands, thisModule);
        break;
    case KdRx::kUnloadAppMsg:
        frame::unregisterClasses(classes);
        frame::removeCommands(commands);
        break;
    case KdRx::kLoadDwgMsg:
        frame::defineFunctions(functions, thisModule);
        break;
    case KdRx::kUnloadDwgMsg:
        frame::undefineFunctions(functions, thisModule);
        break;
    case KdRx::kInvkSubrMsg:
        frame::invokeFunction(functions);
        break;
    default:
        break;
    }
    return KdRx::kRetOK;
}

extern "C" __attribute__((visibility("default"))) unsigned int kdrxGetApiVersion()
{
    return 0x07E90000;
}
