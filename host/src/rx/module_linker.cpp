#include "rx/module_linker.h"

#include "rx/list_functions.h"
#include "rx/loaded_module.h"

#include "platform/gate.h"
#include "platform/modules.h"
#include "platform/text.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

KDRX_DEFINE_MEMBERS(KdRxDynamicLinker, KdRxObject)

namespace korra::rx {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kInterfaceVersion = 0x07E90000;
constexpr const char* kModuleExtension = ".krx";

using ApiVersion = unsigned();

std::vector<std::unique_ptr<LoadedModule>> modules; ///< in the order of loading
std::vector<std::string> folders;
EachDocument eachDocument = [](const auto&) {};

/// Takes a module out of the list and of memory.
void discard(const LoadedModule& module)
{
    forgetFunctionsOf(module);
    const HINSTANCE handle = module.handle;
    std::erase_if(modules, [&](const auto& each) { return each.get() == &module; });
    FreeLibrary(handle);
}

/// Discards a module at the end of the scope, unless it was found to work.
class Newcomer {
public:
    explicit Newcomer(LoadedModule& module) : module_(&module) {}

    ~Newcomer()
    {
        if (module_)
            discard(*module_);
    }

    Newcomer(const Newcomer&) = delete;
    Newcomer& operator=(const Newcomer&) = delete;

    void keep() { module_ = nullptr; }

private:
    LoadedModule* module_;
};

std::optional<fs::path> findIn(const fs::path& folder, const fs::path& name)
{
    fs::path extended = name;
    extended += kModuleExtension;
    for (const fs::path& candidate : {folder / name, folder / extended}) {
        std::error_code error;
        if (fs::is_regular_file(candidate, error))
            return candidate;
    }
    return std::nullopt;
}

std::optional<fs::path> findModule(const fs::path& name)
{
    if (name.has_parent_path())
        return findIn(fs::path(), name);
    if (const auto found = findIn(platform::programFolder(), name))
        return found;
    for (const std::string& folder : folders) {
        if (const auto found = findIn(folder, name))
            return found;
    }
    return std::nullopt;
}

LoadedModule* findByName(std::wstring_view name)
{
    const auto found = std::find_if(modules.begin(), modules.end(), [&](const auto& each) {
        return platform::compareNoCase(each->name, name) == 0;
    });
    return found == modules.end() ? nullptr : found->get();
}

LoadedModule* findByPacket(const void* packet)
{
    const auto found = std::find_if(modules.begin(), modules.end(),
                                    [&](const auto& each) { return each.get() == packet; });
    return found == modules.end() ? nullptr : found->get();
}

std::size_t countDocuments()
{
    std::size_t count = 0;
    eachDocument([&] { ++count; });
    return count;
}

template <class Function>
Function* exported(HINSTANCE module, const char* name)
{
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

unsigned versionOf(ApiVersion* answer)
{
    const platform::TurnOf turn(platform::Party::module);
    return answer();
}

/// Asks a module in memory for its version and initialises it.
LoadOutcome initialise(LoadedModule& module)
{
    const auto version = exported<ApiVersion>(module.handle, "kdrxGetApiVersion");
    module.entryPoint = exported<EntryPoint>(module.handle, "kdrxEntryPoint");
    if (!version || !module.entryPoint)
        return LoadOutcome::noModule;
    if (versionOf(version) != kInterfaceVersion)
        return LoadOutcome::otherVersion;
    if (sendMessage(module, KdRx::kInitAppMsg) != KdRx::kRetOK)
        return LoadOutcome::refused;
    if (!module.multiDocumentAware && countDocuments() > 1) {
        sendMessage(module, KdRx::kUnloadAppMsg);
        return LoadOutcome::oneDocument;
    }
    eachDocument([&] { sendMessage(module, KdRx::kLoadDwgMsg); });
    return LoadOutcome::loaded;
}

/// As initialise(). What the module throws is told in an exception that outlives it.
/// @throw std::runtime_error
LoadOutcome tryToInitialise(LoadedModule& module)
{
    const auto told = [&](const std::string& why) {
        return std::runtime_error(platform::toUtf8(module.name) + ": threw while it started" + why);
    };
    try {
        return initialise(module);
    } catch (const std::exception& error) {
        throw told(std::string(": ") + error.what());
    } catch (...) {
        throw told({});
    }
}

void end(LoadedModule& module)
{
    eachDocument([&] { sendMessage(module, KdRx::kUnloadDwgMsg); });
    sendMessage(module, KdRx::kUnloadAppMsg);
    discard(module);
}

class DynamicLinker final : public KdRxDynamicLinker {
public:
    bool unlockApplication(void* packet) override
    {
        return platform::gate("KdRxDynamicLinker::unlockApplication", packet).guard(false, [&] {
            LoadedModule* const module = findByPacket(packet);
            if (!module)
                return false;
            module->unlocked = true;
            return true;
        });
    }

    bool registerAppMDIAware(void* packet) override
    {
        return platform::gate("KdRxDynamicLinker::registerAppMDIAware", packet).guard(false, [&] {
            LoadedModule* const module = findByPacket(packet);
            if (!module)
                return false;
            module->multiDocumentAware = true;
            return true;
        });
    }
};

} // namespace

KdRxDynamicLinker& dynamicLinker()
{
    static DynamicLinker linker;
    return linker;
}

void startLinker(EachDocument documents)
{
    eachDocument = std::move(documents);
}

void stopLinker()
{
    while (!modules.empty())
        end(*modules.back());
    folders.clear();
    eachDocument = [](const auto&) {};
}

void addModuleFolder(const std::string& folder)
{
    folders.push_back(folder);
}

LoadOutcome loadModule(const wchar_t* name)
{
    const std::optional<fs::path> file = findModule(platform::toBytes(name ? name : L""));
    if (!file)
        return LoadOutcome::notFound;
    const std::wstring fileName = platform::fromUtf8(file->filename().native());
    if (findByName(fileName))
        return LoadOutcome::alreadyLoaded;
    const HINSTANCE handle = LoadLibraryW(platform::fromUtf8(file->native()).c_str());
    if (!handle)
        return LoadOutcome::cannotLoad;

    modules.push_back(std::make_unique<LoadedModule>(LoadedModule{fileName, handle}));
    LoadedModule& module = *modules.back();
    Newcomer newcomer(module);
    const LoadOutcome outcome = tryToInitialise(module);
    if (outcome == LoadOutcome::loaded)
        newcomer.keep();
    return outcome;
}

bool unloadModule(std::wstring_view name)
{
    LoadedModule* const module = findByName(name);
    if (!module || !module->unlocked)
        return false;
    end(*module);
    return true;
}

// By index, here and below: a module may load others while it handles the message.

void sendDocumentOpened()
{
    for (std::size_t i = 0; i < modules.size(); ++i)
        sendMessage(*modules[i], KdRx::kLoadDwgMsg);
}

void sendDocumentClosing()
{
    for (std::size_t i = 0; i < modules.size(); ++i)
        sendMessage(*modules[i], KdRx::kUnloadDwgMsg);
}

} // namespace korra::rx

KdArray<wchar_t*>* kdrxLoadedApps()
{
    return platform::throwingGate("kdrxLoadedApps").guard(nullptr, [&]() -> KdArray<wchar_t*>* {
        auto* const names = new KdArray<wchar_t*>;
        for (const auto& module : korra::rx::modules) {
            auto* const name = new wchar_t[module->name.size() + 1];
            name[module->name.copy(name, module->name.size())] = L'\0';
            names->append(name);
        }
        return names;
    });
}
