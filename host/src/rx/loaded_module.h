#pragma once

#include "kd/rx.h"

#include <windows.h>

#include <string>

namespace korra::rx {

/// What a module answers the host's messages with.
using EntryPoint = KdRx::AppRetCode(KdRx::AppMsgCode, void* packet);

/// An extension module that is loaded. Its address is the packet of the messages that it is sent.
struct LoadedModule {
    std::wstring name; ///< file name with extension
    HINSTANCE handle = nullptr;
    EntryPoint* entryPoint = nullptr;
    bool unlocked = false;
    bool multiDocumentAware = false;
};

/// The module that is handling a message now; null when none is.
LoadedModule* moduleBeingSent();

/// Sends one message to a module. @return its answer
KdRx::AppRetCode sendMessage(LoadedModule& module, KdRx::AppMsgCode code);

} // namespace korra::rx
