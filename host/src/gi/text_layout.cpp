#include "gi/text_layout.h"

#include "gi/fonts.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

namespace korra {

namespace {

/// The host slants no text farther.
constexpr double kMostOblique = 85.0 * 3.14159265358979323846 / 180.0;

bool isDigit(wchar_t character)
{
    return character >= L'0' && character <= L'9';
}

/// The character of a code behind "%%"; 0 where the code only switches a line over or under.
wchar_t codeCharacter(wchar_t code)
{
    switch (code) {
    case L'd':
    case L'D':
        return L'\u00B0';
    case L'p':
    case L'P':
        return L'\u00B1';
    case L'c':
    case L'C':
        return L'\u00D8';
    default:
        return code == L'%' ? L'%' : L'\0';
    }
}

bool isSwitch(wchar_t code)
{
    return std::wcschr(L"oOuUkK", code) != nullptr && code != L'\0';
}

/// Reads one code; `rest` begins with "%%". @return characters taken; 0 when it is no code
std::size_t readControlCode(std::wstring_view rest, std::wstring& shown)
{
    if (rest.size() < 3)
        return 0;
    if (rest.size() >= 5 && isDigit(rest[2]) && isDigit(rest[3]) && isDigit(rest[4])) {
        const int number = (rest[2] - L'0') * 100 + (rest[3] - L'0') * 10 + (rest[4] - L'0');
        if (number > 0)
            shown += static_cast<wchar_t>(number);
        return 5;
    }
    const wchar_t character = codeCharacter(rest[2]);
    if (character == L'\0' && !isSwitch(rest[2]))
        return 0;
    if (character != L'\0')
        shown += character;
    return 3;
}

} // namespace

std::wstring withoutControlCodes(std::wstring_view text)
{
    std::wstring shown;
    while (!text.empty()) {
        const std::size_t taken =
            text.starts_with(L"%%") ? readControlCode(text, shown) : std::size_t{0};
        if (taken == 0)
            shown += text.front();
        text.remove_prefix(std::max<std::size_t>(taken, 1));
    }
    return shown;
}

double textWidth(std::wstring_view text, KdDbObjectId style, double height, double widthFactor)
{
    const Font& font = fontOfStyle(style);
    double width = 0.0;
    for (const wchar_t character : text)
        width += font.advance(character);
    return width * height * widthFactor;
}

/// Where a single line of text stands: its size, direction and anchor in the plane of the text.
class TextPlacement {
public:
    TextPlacement(const KdDbText& text, std::wstring_view shown);

    TextRun run() const;

private:
    static constexpr short kAligned = 3;
    static constexpr short kMiddle = 4;
    static constexpr short kFit = 5;
    static constexpr short kBackwards = 2;
    static constexpr short kUpsideDown = 4;

    void stretchBetweenPoints();
    double leftOfAnchor() const;
    double belowAnchor() const;

    const KdDbText& text_;
    std::wstring shown_;
    double height_;
    double width_; ///< before the width factor
    double widthFactor_;
    double rotation_;
    KdGePoint3d anchor_;
};

TextPlacement::TextPlacement(const KdDbText& text, std::wstring_view shown)
    : text_(text),
      shown_(withoutControlCodes(shown)),
      height_(text.height()),
      width_(textWidth(shown_, text.textStyle(), text.height(), 1.0)),
      widthFactor_(text.widthFactor()),
      rotation_(text.rotation()),
      anchor_(text.position_)
{
    const short mode = text.horizontalMode();
    if (mode == kAligned || mode == kFit)
        stretchBetweenPoints();
    else if (mode != 0 || text.verticalMode() != 0)
        anchor_ = text.alignment_;
}

void TextPlacement::stretchBetweenPoints()
{
    const KdGeVector3d span = text_.alignment_ - text_.position_;
    const double length = std::hypot(span.x, span.y);
    if (length == 0.0 || width_ == 0.0)
        return;
    rotation_ = std::atan2(span.y, span.x);
    if (text_.horizontalMode() == kFit) {
        widthFactor_ = length / width_;
        return;
    }
    const double growth = length / (width_ * widthFactor_);
    width_ *= growth;
    height_ *= growth;
}

double TextPlacement::leftOfAnchor() const
{
    switch (text_.horizontalMode()) {
    case 1:
    case kMiddle:
        return width_ * widthFactor_ / 2.0;
    case 2:
        return width_ * widthFactor_;
    default:
        return 0.0;
    }
}

double TextPlacement::belowAnchor() const
{
    switch (text_.verticalMode()) {
    case 1:
        return -fontOfStyle(text_.textStyle()).descent() * height_;
    case 2:
        return height_ / 2.0;
    case 3:
        return height_;
    default:
        return text_.horizontalMode() == kMiddle ? height_ / 2.0 : 0.0;
    }
}

TextRun TextPlacement::run() const
{
    const KdGeScale3d turnedOver((text_.generation_ & kBackwards) != 0 ? -1.0 : 1.0,
                                 (text_.generation_ & kUpsideDown) != 0 ? -1.0 : 1.0, 1.0);
    const KdGeMatrix3d frame = KdGeMatrix3d::planeToWorld(text_.normal()) *
                               KdGeMatrix3d::translation(anchor_.asVector()) *
                               KdGeMatrix3d::rotation(rotation_, KdGeVector3d::kZAxis) *
                               KdGeMatrix3d::scaling(turnedOver) *
                               KdGeMatrix3d::translation({-leftOfAnchor(), -belowAnchor(), 0.0}) *
                               letterShape(text_.oblique(), widthFactor_);
    return {shown_, text_.textStyle(), height_, width_, frame};
}

KdGeMatrix3d letterShape(double oblique, double widthFactor)
{
    KdGeMatrix3d shape = KdGeMatrix3d::scaling(KdGeScale3d(widthFactor, 1.0, 1.0));
    shape(0, 1) = std::tan(std::clamp(oblique, -kMostOblique, kMostOblique));
    return shape;
}

TextRun layOutText(const KdDbText& text)
{
    return layOutText(text, text.textString());
}

TextRun layOutText(const KdDbText& text, std::wstring_view shown)
{
    return TextPlacement(text, shown).run();
}

} // namespace korra
