#include "kd/ge/circ_arc3d.h"

#include "kd/ge/angle.h"

#include <algorithm>
#include <limits>
#include <numbers>

namespace {

KdGeVector3d unit(const KdGeVector3d& v)
{
    const double size = v.length();
    return size == 0.0 ? v : v / size;
}

/// The turn from one angle up to another, above 0 and at most a full turn.
double sweepBetween(double startAngle, double endAngle)
{
    const double sweep = KdGe::normalAngle(endAngle - startAngle);
    // Angles that differ from a full turn by their own rounding alone mean the full turn.
    const double size = std::max({1.0, std::abs(startAngle), std::abs(endAngle)});
    const double noise = 8.0 * std::numeric_limits<double>::epsilon() * size;
    return sweep <= noise || KdGe::kFullTurn - sweep <= noise ? KdGe::kFullTurn : sweep;
}

/// How far the highest point of a circle lies above a point of it, per unit of radius.
/// @param radial, tangent  heights of the unit vectors at that point
double climbToTop(double radial, double tangent)
{
    const double top = std::hypot(radial, tangent);
    // The quotient avoids the difference of two nearly equal numbers.
    return radial > 0.0 ? tangent * (tangent / (top + radial)) : top - radial;
}

/// Halves the chords of an arc's image until each is near enough to the image.
class Flattener {
public:
    Flattener(const KdGeCircArc3d& arc, const KdGeMatrix3d& matrix, double tolerance,
              std::vector<KdGePoint3d>& vertices)
        : arc_(arc), matrix_(matrix), tolerance_(tolerance), vertices_(vertices)
    {
    }

    void run()
    {
        const double parts = std::ceil(arc_.sweep() / kWidestSpan);
        double from = arc_.startParam();
        KdGePoint3d fromImage = image(from);
        for (double i = 1.0; i <= parts; ++i) {
            const double to = std::lerp(arc_.startParam(), arc_.endParam(), i / parts);
            const KdGePoint3d toImage = image(to);
            span(from, fromImage, to, toImage, kHalvings);
            from = to;
            fromImage = toImage;
        }
    }

private:
    static constexpr double kWidestSpan = std::numbers::pi / 4.0;
    static constexpr int kHalvings = 12; // 8 spans of 4,096 chords a turn

    KdGePoint3d image(double angle) const { return matrix_ * arc_.evalPoint(angle); }

    // In an affine image no point of the span is farther from the chord than the span's middle is
    // from the chord's, also where the image folds back on itself.
    void span(double from, const KdGePoint3d& fromImage, double to, const KdGePoint3d& toImage,
              int halvings)
    {
        const double middle = from + (to - from) / 2.0;
        const KdGePoint3d middleImage = image(middle);
        const KdGePoint3d chordMiddle = fromImage + (toImage - fromImage) / 2.0;
        if (halvings == 0 || !(middleImage.distanceTo(chordMiddle) > tolerance_)) {
            vertices_.push_back(toImage);
            return;
        }
        span(from, fromImage, middle, middleImage, halvings - 1);
        span(middle, middleImage, to, toImage, halvings - 1);
    }

    const KdGeCircArc3d& arc_;
    const KdGeMatrix3d& matrix_;
    double tolerance_;
    std::vector<KdGePoint3d>& vertices_;
};

} // namespace

KdGeCircArc3d::KdGeCircArc3d() : KdGeCircArc3d(KdGePoint3d::kOrigin, KdGeVector3d::kZAxis, 1.0) {}

KdGeCircArc3d::KdGeCircArc3d(const KdGePoint3d& center, const KdGeVector3d& normal, double radius)
    : KdGeCircArc3d(center, normal, normal.perpVector(), radius, 0.0, KdGe::kFullTurn)
{
}

KdGeCircArc3d::KdGeCircArc3d(const KdGePoint3d& center, const KdGeVector3d& normal,
                             const KdGeVector3d& refVec, double radius, double startAngle,
                             double endAngle)
    : center_(center),
      normal_(unit(normal)),
      radius_(radius),
      startAngle_(startAngle),
      sweep_(sweepBetween(startAngle, endAngle))
{
    const KdGeVector3d xAxis = unit(refVec);
    const KdGeVector3d yAxis = normal_.crossProduct(xAxis);
    radial_ = xAxis * std::cos(startAngle) + yAxis * std::sin(startAngle);
    tangent_ = normal_.crossProduct(radial_);
    start_ = center_ + radial_ * radius_;
}

KdGeCircArc3d KdGeCircArc3d::fromBulge(const KdGePoint3d& start, const KdGePoint3d& end,
                                       double bulge, const KdGeVector3d& normal)
{
    // With b = tan(θ/4): sin(θ/2) = 2 / (b + 1/b), cos(θ/2) = (1/b - b) / (1/b + b).
    const double b = std::abs(bulge);
    const double sum = b + 1.0 / b;
    const double sine = 2.0 / sum;
    const double cosine = (1.0 / b - b) / sum;
    const KdGeVector3d chord = end - start;
    const KdGeVector3d along = unit(chord);

    KdGeCircArc3d arc;
    arc.normal_ = bulge < 0.0 ? -unit(normal) : unit(normal);
    const KdGeVector3d aside = arc.normal_.crossProduct(along);
    arc.radius_ = chord.length() * sum / 4.0;
    arc.radial_ = -(aside * cosine + along * sine);
    arc.tangent_ = along * cosine - aside * sine;
    arc.start_ = start;
    arc.center_ = start - arc.radial_ * arc.radius_;
    arc.sweep_ = 4.0 * std::atan(b);
    return arc;
}

KdGeVector3d KdGeCircArc3d::refVec() const
{
    return radial_ * std::cos(startAngle_) - tangent_ * std::sin(startAngle_);
}

bool KdGeCircArc3d::isFullCircle() const
{
    return sweep_ == KdGe::kFullTurn;
}

std::unique_ptr<KdGeCurve3d> KdGeCircArc3d::clone() const
{
    return std::make_unique<KdGeCircArc3d>(*this);
}

KdGePoint3d KdGeCircArc3d::evalPoint(double angle) const
{
    const double half = (angle - startAngle_) / 2.0;
    const double sine = std::sin(half);
    const KdGeVector3d chordDirection = tangent_ * std::cos(half) - radial_ * sine;
    return start_ + chordDirection * (2.0 * radius_ * sine);
}

KdGeVector3d KdGeCircArc3d::firstDerivative(double angle) const
{
    const double turn = angle - startAngle_;
    return (tangent_ * std::cos(turn) - radial_ * std::sin(turn)) * radius_;
}

double KdGeCircArc3d::length(double fromAngle, double toAngle, double) const
{
    return std::abs(toAngle - fromAngle) * radius_;
}

double KdGeCircArc3d::paramAtLength(double datumAngle, double length, bool forward, double) const
{
    if (radius_ == 0.0)
        return datumAngle;
    return datumAngle + (forward ? length : -length) / radius_;
}

double KdGeCircArc3d::nearestParam(const KdGePoint3d& point) const
{
    const KdGeVector3d offset = point - start_;
    const double turn =
        KdGe::directionAngle(offset.dotProduct(radial_) + radius_, offset.dotProduct(tangent_));
    if (turn <= sweep_)
        return startAngle_ + turn;
    return turn - sweep_ < KdGe::kFullTurn - turn ? endAng() : startAngle_;
}

bool KdGeCircArc3d::transformBy(const KdGeMatrix3d& matrix)
{
    const KdGeVector3d radial = matrix * radial_;
    const KdGeVector3d tangent = matrix * tangent_;
    const double factor = radial.length();
    const double slack = KdGeContext::gTol.equalVector() * factor;
    if (!matrix.isAffine() || factor == 0.0 || std::abs(tangent.length() - factor) > slack ||
        std::abs(radial.dotProduct(tangent)) > slack * factor)
        return false;

    radial_ = radial / factor;
    normal_ = unit(radial.crossProduct(tangent));
    tangent_ = normal_.crossProduct(radial_);
    radius_ *= factor;
    start_.transformBy(matrix);
    center_.transformBy(matrix);
    return true;
}

void KdGeCircArc3d::reverse()
{
    const KdGePoint3d end = endPoint();
    const KdGeVector3d radial = radial_ * std::cos(sweep_) + tangent_ * std::sin(sweep_);
    const KdGeVector3d tangent = radial_ * std::sin(sweep_) - tangent_ * std::cos(sweep_);
    startAngle_ = -endAng();
    start_ = end;
    radial_ = radial;
    tangent_ = tangent;
    normal_ = -normal_;
}

KdGeExtents3d KdGeCircArc3d::extentsUnder(const KdGeMatrix3d& matrix) const
{
    const KdGePoint3d start = matrix * start_;
    const KdGeVector3d radial = matrix * radial_;
    const KdGeVector3d tangent = matrix * tangent_;
    KdGePoint3d low = start;
    KdGePoint3d high = start;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        if (KdGe::directionAngle(radial[axis], tangent[axis]) <= sweep_)
            high[axis] += radius_ * climbToTop(radial[axis], tangent[axis]);
        if (KdGe::directionAngle(-radial[axis], -tangent[axis]) <= sweep_)
            low[axis] -= radius_ * climbToTop(-radial[axis], tangent[axis]);
    }
    KdGeExtents3d box;
    box.addPoint(low);
    box.addPoint(high);
    box.addPoint(matrix * endPoint());
    return box;
}

void KdGeCircArc3d::flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                                std::vector<KdGePoint3d>& vertices) const
{
    Flattener(*this, matrix, tolerance, vertices).run();
}
