#pragma once

#include <windows.h>

#include <optional>
#include <span>
#include <string_view>

/// Resources of modules: a module that has any exports one ResourceTable.
///
/// ```
/// PLATFORM_RESOURCES = {kStrings, kCursors};
/// ```
namespace platform {

struct StringResource {
    UINT id;
    const wchar_t* text;
};

struct CursorResource {
    UINT id;
};

struct ResourceTable {
    std::span<const StringResource> strings;
    std::span<const CursorResource> cursors;
};

/// The string resource of a module, null being the program; empty when it has none of that number.
///
/// The text belongs to the module and is gone when the module is.
std::optional<std::wstring_view> findString(HINSTANCE module, UINT id);

} // namespace platform

/// Begins the definition of a module's resources, once per module.
#define PLATFORM_RESOURCES                                                                         \
    extern "C" [[gnu::visibility("default")]] const platform::ResourceTable platformResources;     \
    const platform::ResourceTable platformResources
