#include "ed/colors.h"

#include "ed/editor.h"
#include "ed/prompts.h"
#include "ed/typed_values.h"
#include "kd/ed.h"
#include "platform/gate.h"
#include "platform/text.h"
#include "rx/result_buffer.h"
#include "tables/palette.h"

namespace korra::ed {
namespace {

constexpr int kByBlock = 0;
constexpr int kByLayer = 256;

// The screen: dark grey behind the model, white sheets.
constexpr std::uint32_t kModelBackground = 250;
constexpr std::uint32_t kSheetBackground = 255;

std::wstring nameOf(int index)
{
    if (index == kByBlock)
        return L"BYBLOCK";
    return index == kByLayer ? L"BYLAYER" : std::to_wstring(index);
}

/// The index that a text means: a number from 0 to 256, BYBLOCK, BYLAYER.
std::optional<int> indexOf(std::wstring_view text)
{
    for (const int index : {kByBlock, kByLayer}) {
        if (platform::compareNoCase(text, nameOf(index)) == 0)
            return index;
    }
    const std::optional<double> number = readReal(text);
    const bool isIndex = number && *number >= kByBlock && *number <= kByLayer &&
                         *number == static_cast<int>(*number);
    return isIndex ? std::optional(static_cast<int>(*number)) : std::nullopt;
}

} // namespace

std::optional<int> askColor(int current)
{
    const std::wstring prompt =
        L"\nColour (0 to 256, BYBLOCK, BYLAYER) <" + nameOf(current) + L">: ";
    for (;;) {
        const InputEvent event = ask(prompt);
        if (isCancel(event))
            return std::nullopt;
        if (isEnter(event))
            return current;
        const std::wstring* const text = typedText(event);
        if (const auto index = text ? indexOf(*text) : std::nullopt)
            return index;
        printLine(L"Not a colour.");
    }
}

int invokeColorDialog(const resbuf* arguments, resbuf** result)
{
    if (!arguments || arguments->restype != RTSHORT || arguments->resval.rint < kByBlock ||
        arguments->resval.rint > kByLayer)
        return RTERROR;
    if (const auto index = askColor(arguments->resval.rint)) {
        *result = newResbuf(RTSHORT);
        (*result)->resval.rint = static_cast<short>(*index);
    }
    return RTNORM;
}

} // namespace korra::ed

using namespace korra::ed;

bool kdedGetCurrentColors(KdColorSettings* settings)
{
    return platform::gate("kdedGetCurrentColors").guard(false, [&] {
        if (!settings)
            return false;
        *settings = {kModelBackground, kSheetBackground};
        return true;
    });
}
