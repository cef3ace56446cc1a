#include "ge/smooth_curve.h"

#include "kd/ge/linear3d.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korra {
namespace {

/// Cosine of the angle that a part may turn to count as simple: its distance from a point has one
/// least value.
constexpr double kSimpleTurn = 0.999;
constexpr int kHalvings = 24; // of a piece between breaks, where it is never simple

/// True where the tangent turns so little over a part that the part is nearly straight; never where
/// it vanishes, as in a cusp.
bool isSimple(const KdGeVector3d& start, const KdGeVector3d& middle, const KdGeVector3d& end)
{
    const auto along = [](const KdGeVector3d& a, const KdGeVector3d& b) {
        return a.dotProduct(b) > kSimpleTurn * a.length() * b.length();
    };
    return along(start, middle) && along(middle, end);
}

double distanceToBox(const KdGeExtents3d& box, const KdGePoint3d& point)
{
    double sum = 0.0;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        const double outside =
            std::max({box.minPoint()[axis] - point[axis], 0.0, point[axis] - box.maxPoint()[axis]});
        sum += outside * outside;
    }
    return std::sqrt(sum);
}

/// Looks for the nearest point of a curve where its parts can be nearer than what was found.
class NearestSearch {
public:
    NearestSearch(const SmoothCurve& curve, const KdGePoint3d& point) : curve_(curve), point_(point)
    {
    }

    double run(const std::vector<double>& breaks)
    {
        param_ = breaks.front();
        for (const double param : breaks)
            offer(param);
        for (std::size_t i = 1; i < breaks.size(); ++i)
            search(breaks[i - 1], breaks[i], kHalvings);
        return param_;
    }

private:
    void offer(double param)
    {
        const double distance = curve_.evalPoint(param).distanceTo(point_);
        if (distance < distance_) {
            distance_ = distance;
            param_ = param;
        }
    }

    void search(double from, double to, int halvings)
    {
        if (!(distanceToBox(curve_.boundOf(from, to), point_) < distance_))
            return;
        const double middle = from + (to - from) / 2.0;
        if (halvings == 0 || isSimple(curve_.firstDerivative(from), curve_.firstDerivative(middle),
                                      curve_.firstDerivative(to))) {
            offer(nearestOnSimple(from, to));
            return;
        }
        offer(middle);
        search(from, middle, halvings - 1);
        search(middle, to, halvings - 1);
    }

    /// The parameter of a point of a part where the distance is least; of several some one.
    double nearestOnSimple(double from, double to) const
    {
        // The slope of half the squared distance; the distance falls to the right while it is below
        // 0.
        const auto slope = [&](double param) {
            return (curve_.evalPoint(param) - point_).dotProduct(curve_.firstDerivative(param));
        };
        if (!(slope(from) < 0.0))
            return from;
        if (!(slope(to) > 0.0))
            return to;
        double low = from;
        double high = to;
        double param = from + (to - from) / 2.0;
        for (int step = 0; step < 100; ++step) {
            const KdGeVector3d offset = curve_.evalPoint(param) - point_;
            const KdGeVector3d tangent = curve_.firstDerivative(param);
            const double error = offset.dotProduct(tangent);
            (error < 0.0 ? low : high) = param;
            const double newton =
                param -
                error / (tangent.lengthSqrd() + offset.dotProduct(curve_.secondDerivative(param)));
            const double next = low < newton && newton < high ? newton : low + (high - low) / 2.0;
            const double moved = std::abs(next - param);
            param = next;
            if (!(moved > 1e-16 * std::max(std::abs(param), to - from)))
                break;
        }
        return param;
    }

    const SmoothCurve& curve_;
    const KdGePoint3d& point_;
    double param_ = 0.0;
    double distance_ = std::numeric_limits<double>::infinity();
};

/// Halves the chords of a curve's image until each is near enough to the image.
class Flattener {
public:
    Flattener(const SmoothCurve& curve, const KdGeMatrix3d& matrix, double tolerance,
              std::vector<KdGePoint3d>& vertices)
        : curve_(curve), matrix_(matrix), tolerance_(tolerance), vertices_(vertices)
    {
    }

    void run()
    {
        const std::vector<double> breaks = curve_.breaks();
        for (std::size_t i = 1; i < breaks.size(); ++i)
            span(breaks[i - 1], vertices_.back(), breaks[i], image(breaks[i]), kMostHalvings);
    }

private:
    static constexpr int kMostHalvings = 14;
    static constexpr int kLeastHalvings = 2; // an S may cross its chord where it is looked at

    KdGePoint3d image(double param) const { return matrix_ * curve_.evalPoint(param); }

    void span(double from, const KdGePoint3d fromImage, double to, const KdGePoint3d& toImage,
              int halvings)
    {
        const double middle = from + (to - from) / 2.0;
        const KdGePoint3d middleImage = image(middle);
        const KdGeLineSeg3d chord(fromImage, toImage);
        const bool isNear = [&] {
            if (halvings > kMostHalvings - kLeastHalvings)
                return false;
            const KdGePoint3d between[] = {image((from + middle) / 2.0), middleImage,
                                           image((middle + to) / 2.0)};
            return std::ranges::none_of(between, [&](const KdGePoint3d& point) {
                return chord.distanceTo(point) > tolerance_;
            });
        }();
        if (halvings == 0 || isNear) {
            vertices_.push_back(toImage);
            return;
        }
        span(from, fromImage, middle, middleImage, halvings - 1);
        span(middle, middleImage, to, toImage, halvings - 1);
    }

    const SmoothCurve& curve_;
    const KdGeMatrix3d& matrix_;
    double tolerance_;
    std::vector<KdGePoint3d>& vertices_;
};

} // namespace

SmoothCurve& SmoothCurve::operator=(const SmoothCurve& other)
{
    KdGeCurve3d::operator=(other);
    forgetLength();
    return *this;
}

ArcLength SmoothCurve::lengthOver(const std::vector<double>& breaks) const
{
    return {[this](double param) { return firstDerivative(param).length(); }, breaks};
}

const ArcLength& SmoothCurve::lengthFromStart() const
{
    if (!lengthFromStart_)
        lengthFromStart_ = std::make_unique<const ArcLength>(lengthOver(breaks()));
    return *lengthFromStart_;
}

double SmoothCurve::distanceAt(double param) const
{
    if (param == startParam())
        return 0.0;
    if (param == endParam())
        return lengthFromStart().total();
    if (param < startParam())
        return -lengthOver({param, startParam()}).total();
    if (param > endParam())
        return lengthFromStart().total() + lengthOver({endParam(), param}).total();
    return lengthFromStart().distanceAt(param);
}

double SmoothCurve::length(double fromParam, double toParam, double) const
{
    return std::abs(distanceAt(toParam) - distanceAt(fromParam));
}

double SmoothCurve::paramAtLength(double datumParam, double length, bool forward, double) const
{
    const double distance = distanceAt(datumParam) + (forward ? length : -length);
    const double total = lengthFromStart().total();
    if (distance >= 0.0 && distance <= total)
        return lengthFromStart().paramAt(distance);
    // Beyond an end: as far as the speed there goes, which is where the next step starts.
    const double end = distance < 0.0 ? startParam() : endParam();
    const double excess = distance < 0.0 ? distance : distance - total;
    const double speed = firstDerivative(end).length();
    double param = speed > 0.0 ? end + excess / speed : end;
    for (int step = 0; step < 50; ++step) {
        const double error = distanceAt(param) - distance;
        const double slope = firstDerivative(param).length();
        const double next = slope > 0.0 ? param - error / slope : param;
        if (!(std::abs(next - param) > 4e-16 * std::abs(param)))
            break;
        param = next;
    }
    return param;
}

double SmoothCurve::nearestParam(const KdGePoint3d& point) const
{
    return NearestSearch(*this, point).run(breaks());
}

double SmoothCurve::nearestParam(const KdGePoint3d& point, double from, double to) const
{
    return NearestSearch(*this, point).run({from, to});
}

void SmoothCurve::flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                              std::vector<KdGePoint3d>& vertices) const
{
    Flattener(*this, matrix, tolerance, vertices).run();
}

} // namespace korra
