#include "entities/text_layout.h"

#include "entities/style_font.h"
#include "gi/text_codes.h"

#include <algorithm>
#include <cmath>

namespace korra {

namespace {

/// The host slants no text farther.
constexpr double kMostOblique = 85.0 * 3.14159265358979323846 / 180.0;

} // namespace

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
