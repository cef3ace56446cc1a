#include "support/resource_handle.h"

namespace {
HINSTANCE resourceHandle = nullptr;
}

HINSTANCE moduleResourceHandle()
{
    return resourceHandle;
}

void setModuleResourceHandle(HINSTANCE library)
{
    resourceHandle = library;
}
