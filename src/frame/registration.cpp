#include "frame/registration.h"

#include <afxwin.h>

namespace frame {
namespace {

constexpr int kNameCapacity = 132;                  // characters of a name from the resources
constexpr std::int32_t kHostResources = 0x00200000; // flag: the command gets no resources

/// A name that an entry gives itself or leaves to the resources.
CString nameOf(const wchar_t* given, UINT nameId, HINSTANCE resources)
{
    if (given)
        return given;
    wchar_t loaded[kNameCapacity] = L"";
    LoadStringW(resources, nameId, loaded, kNameCapacity);
    return loaded;
}

/// Calls an action with every function of a table and its code.
template <class Action>
void withCodes(Table<FunctionEntry> functions, Action action)
{
    short code = 0;
    for (const FunctionEntry* const each : functions) {
        if (each)
            action(*each, code++);
    }
}

void unregisterClass(ClassEntry& entry, Table<ClassEntry> classes)
{
    KdRxClass* const description = entry.description();
    entry.registered = false;
    for (ClassEntry* each : classes) {
        if (each && each->registered && each->description()->myParent() == description)
            unregisterClass(*each, classes);
    }
    deleteKdRxClass(description);
}

} // namespace

void registerClasses(Table<ClassEntry> classes)
{
    bool any = false;
    for (ClassEntry* each : classes) {
        if (!each)
            continue;
        each->initialise();
        each->registered = true;
        any = true;
    }
    if (any)
        kdrxBuildClassHierarchy();
}

void unregisterClasses(Table<ClassEntry> classes)
{
    for (ClassEntry* each : classes) {
        if (each && each->registered)
            unregisterClass(*each, classes);
    }
}

void addCommands(Table<CommandEntry> commands, HINSTANCE resources)
{
    for (const CommandEntry* const each : commands) {
        auto* const stack =
            each ? findService<KdEdCommandStack>(L"KDAPI_REGISTERED_COMMANDS") : nullptr;
        if (!stack)
            continue;
        stack->addCommand(each->group, each->globalName,
                          nameOf(each->localName, each->nameId, resources), each->flags,
                          each->function, each->context, -1,
                          each->flags & kHostResources ? nullptr : resources);
    }
}

void removeCommands(Table<CommandEntry> commands)
{
    for (const CommandEntry* const each : commands) {
        auto* const stack =
            each ? findService<KdEdCommandStack>(L"KDAPI_REGISTERED_COMMANDS") : nullptr;
        if (stack)
            stack->removeCmd(each->group, each->globalName);
    }
}

void defineFunctions(Table<FunctionEntry> functions, HINSTANCE resources)
{
    withCodes(functions, [resources](const FunctionEntry& entry, short code) {
        kdedDefun(nameOf(entry.name, entry.nameId, resources), code);
        if (entry.callable)
            kdedRegFunc(entry.function, code);
    });
}

void undefineFunctions(Table<FunctionEntry> functions, HINSTANCE resources)
{
    withCodes(functions, [resources](const FunctionEntry& entry, short code) {
        kdedUndef(nameOf(entry.name, entry.nameId, resources), code);
    });
}

void invokeFunction(Table<FunctionEntry> functions)
{
    const int wanted = kdedGetFunCode();
    withCodes(functions, [wanted](const FunctionEntry& entry, short code) {
        if (code == wanted)
            entry.function();
    });
}

} // namespace frame
