#pragma once

#include "kd/ed.h"
#include "kd/rx.h"

#include <windows.h>

#include <span>

/// What a module registers with the host, in tables of pointers; null entries are skipped.
namespace frame {

/// A custom object class.
struct ClassEntry {
    KdRxClass* (*description)();
    void (*initialise)();
    bool registered;
};

/// A command.
struct CommandEntry {
    const wchar_t* group;
    const wchar_t* globalName;
    const wchar_t* localName; ///< null: the string resource `nameId`
    std::int32_t flags;
    KdRxFunctionPtr function;
    KdEdUIContext* context;
    UINT nameId;
};

/// A list-processing function; its code is its place among the entries that are not null.
struct FunctionEntry {
    const wchar_t* name; ///< null: the string resource `nameId`
    int (*function)();
    bool callable; ///< bind it, so that the host calls it without a message
    UINT nameId;
};

template <class Entry>
using Table = std::span<Entry* const>;

/// A service of the host's registry; null when it is missing or of another class.
template <class Service>
Service* findService(const wchar_t* key)
{
    return Service::cast(kdrxSysRegistry()->at(key));
}

/// Initialises every class and has the host rebuild its class tree if there was one.
void registerClasses(Table<ClassEntry> classes);

/// Deletes every registered class, derived ones before their bases.
void unregisterClasses(Table<ClassEntry> classes);

/// @param resources  the module's resources; a command of its own is given them
void addCommands(Table<CommandEntry> commands, HINSTANCE resources);
void removeCommands(Table<CommandEntry> commands);

void defineFunctions(Table<FunctionEntry> functions, HINSTANCE resources);
void undefineFunctions(Table<FunctionEntry> functions, HINSTANCE resources);

/// Calls the function whose code the host names.
void invokeFunction(Table<FunctionEntry> functions);

} // namespace frame
