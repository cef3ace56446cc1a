#pragma once

#include "kd/rx.h"

#include <functional>
#include <string>
#include <string_view>

namespace korra::rx {

/// What loading a module came to.
enum class LoadOutcome {
    loaded,
    alreadyLoaded,
    notFound,     ///< no file of that name
    cannotLoad,   ///< the system refuses the file
    noModule,     ///< it exports no entry points
    otherVersion, ///< it was made for another interface version
    oneDocument,  ///< it works with one document only and more are open
    refused       ///< its initialisation failed
};

/// Runs an action once per open document, in the order of opening, with that document current.
using EachDocument = std::function<void(const std::function<void()>& action)>;

/// The service "DynamicLinker".
KdRxDynamicLinker& dynamicLinker();

void startLinker(EachDocument eachDocument);

/// Unloads every module, locked ones too, the newest first, and forgets the added folders.
void stopLinker();

/// Adds a folder to the end of those in which modules are looked for by name.
void addModuleFolder(const std::string& folder);

/// Loads a module by path, or by a name beside the program or in an added folder; the name may lack
/// its extension.
///
/// After its process attach the module is asked for its version, initialised and told of every open
/// document. Whatever it cannot do, or throws, leaves it unloaded again.
/// @throw std::runtime_error that names the module, where it throws while it starts
LoadOutcome loadModule(const wchar_t* name);

/// Tells a module of the end of its documents and of its own, and lets it go.
/// @return false when no module of that name is loaded or it is locked
bool unloadModule(std::wstring_view name);

/// Tells every module that the current document was opened, or is about to be closed.
void sendDocumentOpened();
void sendDocumentClosing();

} // namespace korra::rx
