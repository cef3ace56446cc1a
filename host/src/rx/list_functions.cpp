#include "rx/list_functions.h"

#include "kd/ap.h"
#include "kd/ed.h"
#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace korra::rx {
namespace {

/// A list-processing function; a module defines it in one document.
struct ListFunction {
    const KdApDocument* document;
    LoadedModule* module;
    std::wstring name;
    short code;
    int (*bound)() = nullptr; ///< null: the module is sent the message to invoke it
};

std::vector<ListFunction> functions;
short codeBeingInvoked = -1;

const KdApDocument* currentDocument()
{
    KdApDocManager* const manager = kdDocManagerPtr();
    return manager ? manager->curDocument() : nullptr;
}

/// True for a function that the module which is handling a message has defined in this document.
bool isOfReceiver(const ListFunction& function, short code)
{
    return function.document == currentDocument() && function.module == moduleBeingSent() &&
           function.code == code;
}

/// The code that a function hears of, for as long as it is invoked.
class Invoking {
public:
    explicit Invoking(short code) : before_(std::exchange(codeBeingInvoked, code)) {}

    ~Invoking() { codeBeingInvoked = before_; }

    Invoking(const Invoking&) = delete;
    Invoking& operator=(const Invoking&) = delete;

private:
    short before_;
};

} // namespace

bool invokeFunction(std::wstring_view name)
{
    const auto found = std::find_if(functions.begin(), functions.end(), [&](const auto& each) {
        return each.document == currentDocument() && platform::compareNoCase(each.name, name) == 0;
    });
    if (found == functions.end())
        return false;
    const ListFunction function = *found; // the call may change the list
    const Invoking invoking(function.code);
    if (function.bound) {
        const platform::TurnOf turn(platform::Party::module);
        function.bound();
    } else {
        sendMessage(*function.module, KdRx::kInvkSubrMsg);
    }
    return true;
}

void forgetFunctionsOf(const LoadedModule& module)
{
    std::erase_if(functions, [&](const auto& each) { return each.module == &module; });
}

} // namespace korra::rx

using namespace korra::rx;

int kdedDefun(const wchar_t* name, short code)
{
    return platform::gate("kdedDefun", name, code).guard(RTERROR, [&] {
        if (!name || !moduleBeingSent())
            return RTERROR;
        functions.push_back({currentDocument(), moduleBeingSent(), name, code});
        return RTNORM;
    });
}

int kdedUndef(const wchar_t* name, short code)
{
    return platform::gate("kdedUndef", name, code).afterwards(RTERROR, [&] {
        const auto erased = std::erase_if(functions, [&](const auto& each) {
            return name && isOfReceiver(each, code) &&
                   platform::compareNoCase(each.name, name) == 0;
        });
        return erased ? RTNORM : RTERROR;
    });
}

int kdedRegFunc(int (*function)(), short code)
{
    return platform::gate("kdedRegFunc", code).guard(RTERROR, [&] {
        const auto found = std::find_if(functions.begin(), functions.end(),
                                        [&](const auto& each) { return isOfReceiver(each, code); });
        if (found == functions.end())
            return RTERROR;
        found->bound = function;
        return RTNORM;
    });
}

int kdedGetFunCode()
{
    return platform::gate("kdedGetFunCode").always([] { return codeBeingInvoked; });
}
