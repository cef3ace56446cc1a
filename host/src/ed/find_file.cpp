#include "ed/editor.h"
#include "kd/ed.h"
#include "korra/host.h"
#include "platform/gate.h"
#include "platform/modules.h"
#include "platform/text.h"

#include <algorithm>
#include <filesystem>
#include <optional>

namespace fs = std::filesystem;

namespace korra::ed {
namespace {

constexpr char kSupportFolder[] = "support";

std::optional<fs::path> existing(const fs::path& file)
{
    std::error_code error;
    return fs::is_regular_file(file, error) ? std::optional(file) : std::nullopt;
}

/// The file of a folder that has the name but for case.
std::optional<fs::path> findInAnyCase(const fs::path& file)
{
    const std::wstring name = platform::fromUtf8(file.filename().native());
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(file.parent_path(), error)) {
        const std::wstring candidate = platform::fromUtf8(entry.path().filename().native());
        if (platform::compareNoCase(candidate, name) == 0 && existing(entry.path()))
            return entry.path();
    }
    return std::nullopt;
}

std::optional<fs::path> find(const fs::path& name)
{
    std::vector<std::string> folders = editor().supportFolders;
    folders.push_back((fs::path(platform::programFolder()) / kSupportFolder).native());
    for (const std::string& folder : folders) {
        const fs::path file = fs::path(folder) / name; // a full path alone, when it is one
        auto found = existing(file);
        if (!found)
            found = findInAnyCase(file);
        if (found)
            return fs::absolute(*found).lexically_normal();
    }
    return std::nullopt;
}

} // namespace
} // namespace korra::ed

using namespace korra::ed;

void korra::addSupportFolder(const std::string& folder)
{
    editor().supportFolders.push_back(folder);
}

std::optional<std::string> korra::findSupportFile(const std::string& name)
{
    const auto found = find(name);
    return found ? std::optional(found->native()) : std::nullopt;
}

int kdedFindFile(const wchar_t* name, wchar_t* result, std::size_t size)
{
    return platform::gate("kdedFindFile", name).guard(RTERROR, [&] {
        if (!name || !*name || !result || !runningEditor())
            return RTERROR;
        const auto found = find(platform::toBytes(name));
        if (!found)
            return RTERROR;
        const std::wstring path = platform::fromUtf8(found->native());
        if (path.size() >= size)
            return RTERROR;
        *std::ranges::copy(path, result).out = L'\0';
        return RTNORM;
    });
}
