#include "platform/installed_families.h"

#include "platform/text.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>

namespace platform {
namespace {

/// Ends what a C library made.
template <auto function>
struct EndWith {
    template <class T>
    void operator()(T* object) const
    {
        function(object);
    }
};

using Pattern = std::unique_ptr<FcPattern, EndWith<FcPatternDestroy>>;
using ObjectSet = std::unique_ptr<FcObjectSet, EndWith<FcObjectSetDestroy>>;
using FontSet = std::unique_ptr<FcFontSet, EndWith<FcFontSetDestroy>>;
using Library = std::unique_ptr<std::remove_pointer_t<FT_Library>, EndWith<FT_Done_FreeType>>;
using Face = std::unique_ptr<std::remove_pointer_t<FT_Face>, EndWith<FT_Done_Face>>;

constexpr LONG kRegular = 400;

FontSet scalableFonts()
{
    const Pattern scalable(FcPatternCreate());
    FcPatternAddBool(scalable.get(), FC_SCALABLE, FcTrue);
    const ObjectSet wanted(FcObjectSetBuild(FC_FAMILY, FC_FILE, FC_INDEX, nullptr));
    return FontSet(FcFontList(nullptr, scalable.get(), wanted.get()));
}

Face openFace(FT_Library library, const FcPattern* pattern)
{
    FcChar8* file = nullptr;
    int index = 0;
    FT_Face face = nullptr;
    if (FcPatternGetString(pattern, FC_FILE, 0, &file) == FcResultMatch)
        FcPatternGetInteger(pattern, FC_INDEX, 0, &index);
    if (file)
        FT_New_Face(library, reinterpret_cast<const char*>(file), index, &face);
    return Face(face);
}

/// What a font declares of itself, its family left open; nullopt for one that cannot be opened.
std::optional<InstalledStyle> styleOf(FT_Library library, const FcPattern* pattern)
{
    const Face face = openFace(library, pattern);
    if (!face)
        return std::nullopt;
    InstalledStyle style;
    style.italic = (face->style_flags & FT_STYLE_FLAG_ITALIC) != 0;
    style.fixedPitch = FT_IS_FIXED_WIDTH(face.get()) != 0;
    style.ascent = face->ascender;
    style.descent = -face->descender;
    const auto* const table =
        static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(face.get(), FT_SFNT_OS2));
    if (!table)
        return style;
    style.weight = table->usWeightClass;
    constexpr FT_UShort kFirstWithCodePages = 1;
    if (table->version >= kFirstWithCodePages)
        style.characterSet = characterSetOf(static_cast<DWORD>(table->ulCodePageRange1));
    return style;
}

std::vector<std::wstring> familiesOf(const FcPattern* pattern)
{
    std::vector<std::wstring> families;
    FcChar8* name = nullptr;
    for (int i = 0; FcPatternGetString(pattern, FC_FAMILY, i, &name) == FcResultMatch; ++i) {
        std::wstring family = fromUtf8(reinterpret_cast<const char*>(name));
        if (toUtf16(family).size() < LF_FACESIZE)
            families.push_back(std::move(family));
    }
    return families;
}

/// Families by name, the style that stands for each first: upright, then the nearest to regular.
bool goesBefore(const InstalledStyle& left, const InstalledStyle& right)
{
    if (const int order = compareNoCase(left.family, right.family); order != 0)
        return order < 0;
    return std::tuple(left.italic, std::abs(left.weight - kRegular)) <
           std::tuple(right.italic, std::abs(right.weight - kRegular));
}

std::vector<InstalledStyle> findStyles()
{
    std::vector<InstalledStyle> styles;
    FT_Library freeType = nullptr;
    FT_Init_FreeType(&freeType);
    const Library library(freeType);
    const FontSet fonts = library ? scalableFonts() : nullptr;
    for (int i = 0; fonts && i < fonts->nfont; ++i) {
        auto style = styleOf(library.get(), fonts->fonts[i]);
        if (!style)
            continue;
        for (std::wstring& family : familiesOf(fonts->fonts[i])) {
            style->family = std::move(family);
            styles.push_back(*style);
        }
    }
    std::ranges::stable_sort(styles, goesBefore);
    for (std::size_t i = 0; i < styles.size(); ++i)
        styles[i].standsForFamily =
            i == 0 || compareNoCase(styles[i - 1].family, styles[i].family) != 0;
    return styles;
}

} // namespace

const std::vector<InstalledStyle>& installedStyles()
{
    static const std::vector<InstalledStyle> styles = findStyles();
    return styles;
}

BYTE characterSetOf(DWORD codePages)
{
    struct CodePage {
        unsigned int bit;
        BYTE characterSet;
    };

    constexpr std::array<CodePage, 15> kInOrder = {{{31, SYMBOL_CHARSET},
                                                    {18, GB2312_CHARSET},
                                                    {20, CHINESEBIG5_CHARSET},
                                                    {17, SHIFTJIS_CHARSET},
                                                    {19, HANGUL_CHARSET},
                                                    {0, ANSI_CHARSET},
                                                    {1, EASTEUROPE_CHARSET},
                                                    {2, RUSSIAN_CHARSET},
                                                    {3, GREEK_CHARSET},
                                                    {4, TURKISH_CHARSET},
                                                    {5, HEBREW_CHARSET},
                                                    {6, ARABIC_CHARSET},
                                                    {7, BALTIC_CHARSET},
                                                    {8, VIETNAMESE_CHARSET},
                                                    {16, THAI_CHARSET}}};
    for (const CodePage& page : kInOrder) {
        if ((codePages >> page.bit & 1) != 0)
            return page.characterSet;
    }
    return ANSI_CHARSET;
}

} // namespace platform
