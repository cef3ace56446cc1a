#include "dimensions/dimension_line.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace korra {

namespace {

constexpr double kQuarterTurn = 1.57079632679489661923;

/// Text whose middle is off the line by fewer heights than this interrupts it.
constexpr double kRaisedOffLine = 0.7;

double angleOf(const KdGeVector2d& direction)
{
    return std::atan2(direction.y, direction.x);
}

/// The direction or its opposite, whichever is read from below or from the right.
double readable(double angle, double horizontal)
{
    constexpr double kSlack = 1e-9;
    const double turned = KdGe::normalAngle(angle - horizontal);
    const bool isUpsideDown =
        turned > kQuarterTurn + kSlack && turned <= 3.0 * kQuarterTurn + kSlack;
    return isUpsideDown ? angle + 2.0 * kQuarterTurn : angle;
}

/// A stretch of the dimension line and the half that it belongs to.
struct Stretch {
    double from;
    double to;
    int half;
};

class LineDrawing {
public:
    LineDrawing(DimensionSheet& sheet, const DimensionLineParts& parts);

    bool draw();

private:
    void chooseFit();
    void placeText();
    void placeMovedText();
    void placeBesideExtension();
    double wayOfText() const;
    double textAngle(double way, bool isHorizontal) const;
    double angleAlong(double way) const;
    KdGeVector2d sideOfText(double way) const;

    /// How far the box of the text reaches along a direction, to either side of its middle.
    double reachAlong(const KdGeVector2d& direction) const;

    void drawLine() const;
    std::vector<Stretch> stretches() const;
    void drawBroken(double from, double to) const;
    void drawArrows() const;

    DimensionSheet& sheet_;
    const DimensionLook& look_;
    const DimensionLineParts& parts_;
    const DimensionPath& path_;
    const double length_;
    const double arrowLength_;
    const TextBox box_;

    bool arrowsInside_ = true;
    bool textInside_ = true;
    double angle_ = 0.0;   ///< of the text
    KdGePoint2d center_;   ///< of the text
    double textWay_ = 0.0; ///< where the text stands along the line
};

LineDrawing::LineDrawing(DimensionSheet& sheet, const DimensionLineParts& parts)
    : sheet_(sheet),
      look_(sheet.look()),
      parts_(parts),
      path_(parts.path),
      length_(parts.path.length()),
      arrowLength_(look_.tickSize > 0.0 ? 0.0 : look_.arrowSize),
      box_(sheet.measure(parts.text))
{
}

bool LineDrawing::draw()
{
    angle_ = textAngle(length_ / 2.0, look_.horizontalInside);
    chooseFit();
    if (parts_.moved)
        placeMovedText();
    else if (look_.justify >= 3 && parts_.outward != KdGeVector2d::kIdentity)
        placeBesideExtension();
    else
        placeText();
    drawLine();
    drawArrows();
    sheet_.text(parts_.text, center_, angle_);
    return arrowsInside_;
}

double LineDrawing::textAngle(double way, bool isHorizontal) const
{
    return isHorizontal ? sheet_.horizontal() : angleAlong(way);
}

double LineDrawing::angleAlong(double way) const
{
    return readable(angleOf(path_.direction(way)), sheet_.horizontal());
}

double LineDrawing::reachAlong(const KdGeVector2d& direction) const
{
    const double turn = angleOf(direction) - angle_;
    return (std::abs(std::cos(turn)) * box_.width + std::abs(std::sin(turn)) * box_.height) / 2.0;
}

/// DIMATFIT says which of text and arrows goes outside first where both do not fit: 0 both, 1 the
/// arrows, 2 the text, 3 whichever leaves the other inside.
void LineDrawing::chooseFit()
{
    const double slack = 1e-9 * length_;
    const double textRoom =
        parts_.text.empty() ? 0.0 : 2.0 * (reachAlong(path_.direction(length_ / 2.0)) + look_.gap);
    const double arrowRoom = arrowLength_ * (int(parts_.arrows[0]) + int(parts_.arrows[1]));
    const auto fits = [&](double room) { return room <= length_ + slack; };
    if (fits(textRoom + arrowRoom) || arrowRoom == 0.0) {
        textInside_ = fits(textRoom) || look_.forceTextInside;
        return;
    }
    arrowsInside_ = false;
    if (look_.forceTextInside)
        return;
    const bool arrowsStay = look_.fit == 2 || (look_.fit == 3 && !fits(textRoom));
    const bool textStays = look_.fit == 1 || look_.fit == 3;
    arrowsInside_ = arrowsStay && fits(arrowRoom);
    textInside_ = !arrowsInside_ && textStays && fits(textRoom);
}

double LineDrawing::wayOfText() const
{
    const double reach = reachAlong(path_.direction(length_ / 2.0));
    if (!textInside_) {
        const double stub = arrowsInside_ ? arrowLength_ : 2.0 * arrowLength_;
        return length_ + std::max(stub, parts_.leader) + look_.gap + reach;
    }
    const double margin = (arrowsInside_ ? arrowLength_ : 0.0) + look_.gap + reach;
    if (look_.justify == 1)
        return margin;
    return look_.justify == 2 ? length_ - margin : length_ / 2.0;
}

/// The side of the line on which text stands that is not in the line.
KdGeVector2d LineDrawing::sideOfText(double way) const
{
    const KdGeVector2d normal = path_.direction(way).perpVector();
    if (look_.vertical == 2)
        return normal.dotProduct(parts_.outward) < 0.0 ? -normal : normal;
    const KdGeVector2d up(-std::sin(angle_), std::cos(angle_));
    const KdGeVector2d above = normal.dotProduct(up) < 0.0 ? -normal : normal;
    return look_.vertical == 4 ? -above : above;
}

void LineDrawing::placeText()
{
    if (!textInside_)
        angle_ = textAngle(length_, look_.horizontalOutside);
    textWay_ = wayOfText();
    if (!(textInside_ ? look_.horizontalInside : look_.horizontalOutside))
        angle_ = angleAlong(textWay_);
    center_ = path_.at(textWay_);
    if (look_.vertical == 0) {
        center_ = center_ + sideOfText(textWay_) * look_.textRaise;
        return;
    }
    // Text that does not run along the line has no side of it: it stands in the line.
    const KdGeVector2d along = path_.direction(textWay_);
    const bool runsAlong = std::abs(std::sin(angleOf(along) - angle_)) < 1e-6;
    if (runsAlong)
        center_ = center_ + sideOfText(textWay_) * (look_.gap + box_.height / 2.0);
}

/// DIMJUST 3 and 4: along the first or second extension line, beyond the dimension line.
void LineDrawing::placeBesideExtension()
{
    textInside_ = true;
    const double way = look_.justify == 3 ? 0.0 : length_;
    const KdGeVector2d normal = path_.direction(way).perpVector();
    const KdGeVector2d beyond = normal.dotProduct(parts_.outward) < 0.0 ? -normal : normal;
    angle_ = readable(angleOf(beyond), sheet_.horizontal());
    const KdGeVector2d up(-std::sin(angle_), std::cos(angle_));
    textWay_ = way;
    center_ = path_.at(way) + beyond * (look_.extensionBeyond + look_.gap + box_.width / 2.0) +
              up * (look_.vertical == 0 ? 0.0 : look_.gap + box_.height / 2.0);
}

void LineDrawing::placeMovedText()
{
    center_ = *parts_.moved;
    textWay_ = path_.wayOf(center_);
    textInside_ = textWay_ >= 0.0 && textWay_ <= length_;
    angle_ = textAngle(textWay_, textInside_ ? look_.horizontalInside : look_.horizontalOutside);
}

void LineDrawing::drawLine() const
{
    const KdGeVector2d along = path_.direction(textWay_);
    const KdGePoint2d onLine = path_.at(textWay_);
    const double raise = std::abs((center_ - onLine).dotProduct(along.perpVector()));
    const double reach = reachAlong(along) + look_.gap;
    const double allowed =
        std::max(reachAlong(along.perpVector()), kRaisedOffLine * look_.textHeight);
    const bool isInLine = !parts_.text.empty() && raise < allowed;
    const double from = isInLine ? textWay_ - reach : textWay_;
    const double to = isInLine ? textWay_ + reach : textWay_;
    for (const Stretch& stretch : stretches()) {
        if (look_.hideLine[stretch.half])
            continue;
        drawBroken(stretch.from, std::min(stretch.to, from));
        drawBroken(std::max(stretch.from, to), stretch.to);
    }
}

void LineDrawing::drawBroken(double from, double to) const
{
    if (to - from > 1e-9 * length_)
        path_.draw(sheet_, from, to);
}

/// The line before anything is taken out for the text; it parts into halves where the text stands.
std::vector<Stretch> LineDrawing::stretches() const
{
    const double stub = arrowsInside_ ? look_.lineBeyond : 2.0 * arrowLength_;
    const double first = parts_.arrows[0] && !look_.noOutsideLines ? -stub : 0.0;
    double last = parts_.arrows[1] && !look_.noOutsideLines ? length_ + stub : length_;
    double start = first;
    if (!parts_.text.empty() && textWay_ > length_)
        last = std::max(last, textWay_ + reachAlong(path_.direction(textWay_)));
    if (!parts_.text.empty() && textWay_ < 0.0)
        start = std::min(start, textWay_ - reachAlong(path_.direction(textWay_)));

    const bool halvesAlike = look_.hideLine[0] == look_.hideLine[1];
    if (arrowsInside_ && halvesAlike)
        return {{start, last, 0}};
    const double split = textWay_ > 0.0 && textWay_ < length_ ? textWay_ : length_ / 2.0;
    std::vector<Stretch> result = {{start, 0.0, 0}, {length_, last, 1}};
    if (arrowsInside_ || look_.forceLine) {
        result.push_back({0.0, split, 0});
        result.push_back({split, length_, 1});
    }
    return result;
}

void LineDrawing::drawArrows() const
{
    const double side = arrowsInside_ ? 1.0 : -1.0;
    if (parts_.arrows[0] && !look_.hideLine[0])
        sheet_.arrow(path_.at(0.0), path_.direction(0.0) * side);
    if (parts_.arrows[1] && !look_.hideLine[1])
        sheet_.arrow(path_.at(length_), path_.direction(length_) * -side);
}

} // namespace

bool drawDimensionLine(DimensionSheet& sheet, const DimensionLineParts& parts)
{
    return LineDrawing(sheet, parts).draw();
}

} // namespace korra
