#pragma once

#include <windows.h>

/// The library's language library: set at process attach, null when it could not be loaded.
HINSTANCE moduleResourceHandle();
void setModuleResourceHandle(HINSTANCE library);
