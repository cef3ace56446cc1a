#include "platform/modules.h"

#include "platform/gate.h"
#include "platform/resources.h"
#include "platform/text.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <utility>

namespace {
namespace fs = std::filesystem;

std::string loadFailure;

/// A module's handle is what the dynamic linker keeps of it.
link_map* mapOf(HINSTANCE module)
{
    return reinterpret_cast<link_map*>(module ? module : platform::programModule());
}

/// A symbol that the module itself exports, and not one that it needs.
void* ownSymbol(HINSTANCE module, const char* name)
{
    link_map* const map = mapOf(module);
    void* const symbol = dlsym(map, name);
    Dl_info info;
    void* owner = nullptr;
    if (!symbol || !dladdr1(symbol, &info, &owner, RTLD_DL_LINKMAP))
        return nullptr;
    return owner == map ? symbol : nullptr;
}

fs::path fileOf(HINSTANCE module)
{
    const fs::path name = mapOf(module)->l_name;
    std::error_code error;
    return fs::canonical(name.empty() ? fs::path("/proc/self/exe") : name, error);
}

std::string findLibrary(const std::string& path)
{
    const std::string besideProgram = platform::programFolder() + '/' + path;
    const bool isBareName = path.find('/') == std::string::npos;
    return isBareName && fs::exists(besideProgram) ? besideProgram : path;
}

const platform::ResourceTable* resourcesOf(HINSTANCE module)
{
    return static_cast<const platform::ResourceTable*>(ownSymbol(module, "platformResources"));
}
} // namespace

HINSTANCE platform::programModule()
{
    static void* const program = dlopen(nullptr, RTLD_LAZY);
    return static_cast<HINSTANCE>(program);
}

std::string platform::programFolder()
{
    return fileOf(nullptr).parent_path();
}

std::string platform::whyNotLoaded()
{
    return loadFailure;
}

HMODULE LoadLibraryW(LPCWSTR path)
{
    loadFailure = "refused";
    return platform::gate("LoadLibraryW", path).guard(nullptr, [&]() -> HMODULE {
        if (!path)
            return nullptr;
        const std::string file = findLibrary(platform::toBytes(path));
        const platform::TurnOf loader(platform::Party::loader);
        void* const library = dlopen(file.c_str(), RTLD_NOW);
        if (!library)
            loadFailure = dlerror();
        return static_cast<HMODULE>(library);
    });
}

BOOL FreeLibrary(HMODULE module)
{
    return platform::gate("FreeLibrary").afterwards(FALSE, [&]() -> BOOL {
        const platform::TurnOf loader(platform::Party::loader);
        return module && dlclose(mapOf(module)) == 0;
    });
}

FARPROC GetProcAddress(HMODULE module, LPCSTR name)
{
    return platform::gate("GetProcAddress", name).guard(nullptr, [&] {
        return reinterpret_cast<FARPROC>(ownSymbol(module, name));
    });
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size)
{
    return platform::gate("GetModuleFileNameW").guard(0, [&]() -> DWORD {
        if (size == 0)
            return 0;
        const std::wstring path = platform::fromUtf8(fileOf(module).native());
        const std::size_t copied = path.copy(buffer, size - 1);
        buffer[copied] = L'\0';
        return copied < path.size() ? size : static_cast<DWORD>(copied);
    });
}

std::optional<std::wstring_view> platform::findString(HINSTANCE module, UINT id)
{
    const ResourceTable* resources = resourcesOf(module);
    if (!resources)
        return std::nullopt;
    const auto found = std::ranges::find(resources->strings, id, &StringResource::id);
    if (found == resources->strings.end())
        return std::nullopt;
    return found->text;
}

int LoadStringW(HINSTANCE module, UINT id, LPWSTR buffer, int size)
{
    return platform::gate("LoadStringW", id).guard(0, [&] {
        const auto text = platform::findString(module, id);
        if (!text || size <= 0)
            return 0;
        const std::size_t copied = text->copy(buffer, static_cast<std::size_t>(size) - 1);
        buffer[copied] = L'\0';
        return static_cast<int>(copied);
    });
}

HCURSOR LoadCursorW(HINSTANCE module, LPCWSTR name)
{
    const auto id = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(name));
    return platform::gate("LoadCursorW", id).guard(nullptr, [&]() -> HCURSOR {
        const platform::ResourceTable* const resources = resourcesOf(module);
        if (!resources)
            return nullptr;
        const auto found = std::ranges::find(resources->cursors, id, &platform::CursorResource::id);
        if (found == resources->cursors.end())
            return nullptr;
        return reinterpret_cast<HCURSOR>(const_cast<platform::CursorResource*>(&*found));
    });
}

DWORD GetFileAttributesW(LPCWSTR path)
{
    return platform::gate("GetFileAttributesW", path)
        .guard(INVALID_FILE_ATTRIBUTES, [&]() -> DWORD {
            struct stat found;
            if (!path || stat(platform::toBytes(path).c_str(), &found) != 0)
                return INVALID_FILE_ATTRIBUTES;
            return S_ISDIR(found.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : FILE_ATTRIBUTE_NORMAL;
        });
}
