#include "gi/installed_fonts.h"

#include "platform/text.h"

#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>

namespace korra {

namespace {

using Pattern = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;

std::optional<FontFile> fileOf(const FcPattern* pattern)
{
    FcChar8* file = nullptr;
    int face = 0;
    if (!pattern || FcPatternGetString(pattern, FC_FILE, 0, &file) != FcResultMatch)
        return std::nullopt;
    FcPatternGetInteger(pattern, FC_INDEX, 0, &face);
    return FontFile{reinterpret_cast<const char*>(file), face};
}

Pattern bestMatch(const char* family)
{
    Pattern wanted(FcPatternCreate(), FcPatternDestroy);
    FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    FcPatternAddBool(wanted.get(), FC_SCALABLE, FcTrue);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    return {FcFontMatch(nullptr, wanted.get(), &result), FcPatternDestroy};
}

/// fontconfig always offers some font: only one of the family asked for will do.
bool hasFamily(const FcPattern* pattern, const std::string& family)
{
    FcChar8* name = nullptr;
    for (int i = 0; pattern && FcPatternGetString(pattern, FC_FAMILY, i, &name) == FcResultMatch;
         ++i) {
        if (FcStrCmpIgnoreCase(name, reinterpret_cast<const FcChar8*>(family.c_str())) == 0)
            return true;
    }
    return false;
}

std::optional<FontFile> findFamily(const std::string& family)
{
    const Pattern match = bestMatch(family.c_str());
    return hasFamily(match.get(), family) ? fileOf(match.get()) : std::nullopt;
}

std::optional<FontFile> findFile(const std::wstring& baseName)
{
    const std::unique_ptr<FcObjectSet, decltype(&FcObjectSetDestroy)> wanted(
        FcObjectSetBuild(FC_FILE, FC_INDEX, nullptr), FcObjectSetDestroy);
    const Pattern any(FcPatternCreate(), FcPatternDestroy);
    const std::unique_ptr<FcFontSet, decltype(&FcFontSetDestroy)> fonts(
        FcFontList(nullptr, any.get(), wanted.get()), FcFontSetDestroy);
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        const auto font = fileOf(fonts->fonts[i]);
        if (!font)
            continue;
        const auto name = platform::fromUtf8(std::filesystem::path(font->file).filename().string());
        if (platform::compareNoCase(name, baseName) == 0)
            return font;
    }
    return std::nullopt;
}

std::wstring baseNameOf(std::wstring_view name)
{
    return std::wstring(name.substr(name.find_last_of(L"/\\") + 1));
}

} // namespace

FontFile findInstalledFont(std::wstring_view name)
{
    const std::wstring baseName = baseNameOf(name);
    const std::size_t dot = std::min(baseName.find_last_of(L'.'), baseName.size());
    const std::wstring extension = baseName.substr(dot);
    std::optional<FontFile> found;
    if (!extension.empty())
        found = findFile(baseName);
    const bool isShapeFont = platform::compareNoCase(extension, L".shx") == 0;
    if (!found && !baseName.empty() && !isShapeFont)
        found = findFamily(platform::toUtf8(baseName.substr(0, dot)));
    if (!found)
        found = fileOf(bestMatch("sans-serif").get());
    return found.value_or(FontFile{});
}

} // namespace korra
