#include "platform/gate.h"
#include "platform/installed_families.h"
#include "platform/tally.h"
#include "platform/text.h"

#include <windows.h>

#include <algorithm>

/// A device context: nothing is drawn with it, it only stands for the screen's fonts.
struct HDC__ {
    explicit HDC__(platform::Tally& tally) : tallied(tally) {}

    platform::Tallied tallied;
};

namespace {

platform::Tally contexts("device context");

LOGFONTW descriptionOf(const platform::InstalledStyle& style)
{
    LOGFONTW font{};
    font.lfHeight = style.ascent + style.descent;
    font.lfWeight = style.weight;
    font.lfItalic = style.italic ? 0xFF : 0;
    font.lfCharSet = style.characterSet;
    font.lfPitchAndFamily = style.fixedPitch ? FIXED_PITCH : VARIABLE_PITCH;
    platform::copyUtf16(font.lfFaceName, LF_FACESIZE, style.family.c_str());
    return font;
}

TEXTMETRICW metricsOf(const platform::InstalledStyle& style)
{
    TEXTMETRICW metrics{};
    metrics.tmHeight = style.ascent + style.descent;
    metrics.tmAscent = style.ascent;
    metrics.tmDescent = style.descent;
    metrics.tmWeight = style.weight;
    metrics.tmItalic = style.italic ? 0xFF : 0;
    metrics.tmPitchAndFamily = style.fixedPitch ? FIXED_PITCH : VARIABLE_PITCH;
    metrics.tmCharSet = style.characterSet;
    return metrics;
}

/// Tells of the styles of a family, or of every family for null, until the callback answers 0.
int enumerate(LPCWSTR family, FONTENUMPROCW callback, LPARAM lParam)
{
    int answer = 1;
    for (const platform::InstalledStyle& style : platform::installedStyles()) {
        const bool wanted =
            family ? platform::compareNoCase(style.family, family) == 0 : style.standsForFamily;
        if (!wanted)
            continue;
        const LOGFONTW font = descriptionOf(style);
        const TEXTMETRICW metrics = metricsOf(style);
        const platform::TurnOf caller(platform::Party::module);
        answer = callback(&font, &metrics, TRUETYPE_FONTTYPE, lParam);
        if (answer == 0)
            break;
    }
    return answer;
}

} // namespace

HDC GetDC(HWND)
{
    return platform::gate("GetDC").guard(nullptr, [] { return new HDC__(contexts); });
}

int ReleaseDC(HWND, HDC context)
{
    return platform::gate("ReleaseDC").always([&] {
        const bool there = context != nullptr;
        delete context;
        return there ? 1 : 0;
    });
}

int EnumFontFamiliesW(HDC context, LPCWSTR family, FONTENUMPROCW callback, LPARAM lParam)
{
    return platform::gate("EnumFontFamiliesW", family).guard(0, [&] {
        return context && callback ? enumerate(family, callback, lParam) : 0;
    });
}

namespace platform {

/// @return false, the target an empty text, when the source is null or does not fit
bool copyUtf16(char16_t* target, std::size_t size, const wchar_t* source)
{
    target[0] = u'\0';
    if (!source)
        return false;
    const std::u16string units = toUtf16(source);
    if (units.size() >= size)
        return false;
    *std::ranges::copy(units, target).out = u'\0';
    return true;
}

} // namespace platform
