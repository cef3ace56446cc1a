#include "korra/modules.h"

#include "rx/module_linker.h"

#include "kd/ed.h"
#include "platform/gate.h"
#include "platform/modules.h"
#include "platform/text.h"

#include <stdexcept>

namespace {

using korra::rx::LoadOutcome;

/// What became of a module, in words that follow its name.
std::string inWords(LoadOutcome outcome)
{
    switch (outcome) {
    case LoadOutcome::loaded:
        return "loaded";
    case LoadOutcome::alreadyLoaded:
        return "already loaded";
    case LoadOutcome::notFound:
        return "no such module file";
    case LoadOutcome::cannotLoad:
        return "cannot be loaded: " + platform::whyNotLoaded();
    case LoadOutcome::noModule:
        return "is no extension module: it exports no entry points";
    case LoadOutcome::otherVersion:
        return "was made for another version of the host's interface";
    case LoadOutcome::oneDocument:
        return "works with one document only and several are open";
    case LoadOutcome::refused:
        return "its initialisation failed";
    }
    return {};
}

bool isLoaded(LoadOutcome outcome)
{
    return outcome == LoadOutcome::loaded || outcome == LoadOutcome::alreadyLoaded;
}

} // namespace

korra::FileOutcome korra::loadModule(const std::string& name)
{
    const platform::TurnOf turn(platform::Party::host);
    try {
        const LoadOutcome outcome = rx::loadModule(platform::fromUtf8(name).c_str());
        if (isLoaded(outcome))
            return {true, {}};
        return {false, name + ": " + inWords(outcome)};
    } catch (const std::runtime_error& error) {
        return {false, error.what()};
    }
}

bool kdrxLoadModule(const wchar_t* name, bool printit, bool)
{
    return platform::throwingGate("kdrxLoadModule", name).guard(false, [&]() -> bool {
        const LoadOutcome outcome = korra::rx::loadModule(name);
        if (printit)
            kdutPrintf(L"\n%s: %S", name ? name : L"", inWords(outcome).c_str());
        return isLoaded(outcome);
    });
}

bool kdrxUnloadModule(const wchar_t* name, bool)
{
    return platform::gate("kdrxUnloadModule", name).guard(false, [&] {
        return name && korra::rx::unloadModule(name);
    });
}
