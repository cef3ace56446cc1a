#include "ge/nurb_curve.h"

#include "kd/ge/linear3d.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace korra {
namespace {

bool isFinite(const KdGePoint3d& point)
{
    return std::isfinite(point.x) && std::isfinite(point.y) && std::isfinite(point.z);
}

bool isSound(const NurbCurve::Definition& given)
{
    const std::size_t count = given.controlPoints.size();
    const auto degree = static_cast<std::size_t>(given.degree);
    const auto isWeight = [](double weight) { return std::isfinite(weight) && weight > 0.0; };
    return given.degree >= 1 && given.degree <= NurbCurve::kMaxDegree && count > degree &&
           given.knots.size() == count + degree + 1 && std::ranges::is_sorted(given.knots) &&
           std::ranges::all_of(given.knots, [](double knot) { return std::isfinite(knot); }) &&
           given.knots[degree] < given.knots[count] &&
           (given.weights.empty() || given.weights.size() == count) &&
           std::ranges::all_of(given.weights, isWeight) &&
           std::ranges::all_of(given.controlPoints, isFinite);
}

/// Solves a system whose matrix has three diagonals, in place; the diagonal outweighs its
/// neighbours. Source: L. H. Thomas, 1949.
void solve(const std::vector<double>& below, std::vector<double>& diagonal,
           const std::vector<double>& above, std::vector<KdGeVector3d>& values)
{
    const std::size_t count = values.size();
    for (std::size_t i = 1; i < count; ++i) {
        const double factor = below[i] / diagonal[i - 1];
        diagonal[i] -= factor * above[i - 1];
        values[i] -= values[i - 1] * factor;
    }
    values[count - 1] /= diagonal[count - 1];
    for (std::size_t i = count - 1; i > 0; --i)
        values[i - 1] = (values[i - 1] - values[i] * above[i - 1]) / diagonal[i - 1];
}

/// Derivatives by chord length at points, of the spline of steady curvature through them.
std::vector<KdGeVector3d> tangentsAt(const std::vector<KdGePoint3d>& points,
                                     const std::vector<double>& params,
                                     const KdGeVector3d& startTangent,
                                     const KdGeVector3d& endTangent)
{
    const std::size_t last = points.size() - 1;
    std::vector<double> below(last + 1, 0.0);
    std::vector<double> diagonal(last + 1, 1.0);
    std::vector<double> above(last + 1, 0.0);
    std::vector<KdGeVector3d> tangents(last + 1);
    const auto slope = [&](std::size_t i) {
        return (points[i + 1] - points[i]) / (params[i + 1] - params[i]);
    };
    const bool startGiven = startTangent.length() > 0.0;
    const bool endGiven = endTangent.length() > 0.0;
    diagonal[0] = startGiven ? 1.0 : 2.0;
    above[0] = startGiven ? 0.0 : 1.0;
    tangents[0] = startGiven ? startTangent.normal() : slope(0) * 3.0;
    for (std::size_t i = 1; i < last; ++i) {
        const double before = params[i] - params[i - 1];
        const double behind = params[i + 1] - params[i];
        below[i] = behind;
        diagonal[i] = 2.0 * (before + behind);
        above[i] = before;
        tangents[i] = (slope(i - 1) * behind + slope(i) * before) * 3.0;
    }
    below[last] = endGiven ? 0.0 : 1.0;
    diagonal[last] = endGiven ? 1.0 : 2.0;
    tangents[last] = endGiven ? endTangent.normal() : slope(last - 1) * 3.0;
    solve(below, diagonal, above, tangents);
    return tangents;
}

} // namespace

std::unique_ptr<NurbCurve> NurbCurve::make(const Definition& given)
{
    if (!isSound(given))
        return nullptr;
    std::unique_ptr<NurbCurve> curve(new NurbCurve);
    curve->degree_ = given.degree;
    curve->origin_ = given.controlPoints.front();
    std::vector<Weighted> control;
    for (std::size_t i = 0; i < given.controlPoints.size(); ++i) {
        const double weight = given.weights.empty() ? 1.0 : given.weights[i];
        control.push_back({(given.controlPoints[i] - curve->origin_) * weight, weight});
    }
    const auto first = static_cast<std::size_t>(given.degree);
    for (std::size_t knot = first; knot < control.size(); ++knot) {
        if (given.knots[knot] < given.knots[knot + 1])
            curve->addPiece(control, knot, given.knots);
    }
    return curve;
}

std::unique_ptr<NurbCurve> NurbCurve::through(const std::vector<KdGePoint3d>& given,
                                              const KdGeVector3d& startTangent,
                                              const KdGeVector3d& endTangent)
{
    std::vector<KdGePoint3d> points;
    std::vector<double> params;
    for (const KdGePoint3d& point : given) {
        const double chord = points.empty() ? 0.0 : points.back().distanceTo(point);
        if (!isFinite(point) || !std::isfinite(chord))
            return nullptr;
        if (!points.empty() && chord == 0.0)
            continue;
        params.push_back(points.empty() ? 0.0 : params.back() + chord);
        points.push_back(point);
    }
    if (points.size() < 2)
        return nullptr;
    const auto tangents = tangentsAt(points, params, startTangent, endTangent);
    std::unique_ptr<NurbCurve> curve(new NurbCurve);
    curve->origin_ = points.front();
    curve->breaks_ = params;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const double third = (params[i] - params[i - 1]) / 3.0;
        const KdGeVector3d start = points[i - 1] - curve->origin_;
        const KdGeVector3d end = points[i] - curve->origin_;
        for (const KdGeVector3d& point :
             {start, start + tangents[i - 1] * third, end - tangents[i] * third, end})
            curve->pieces_.push_back({point, 1.0});
    }
    return curve;
}

/// Adds the Bézier points of the piece from a knot to the next one: values of its blossom.
/// Source: L. Ramshaw, "Blossoming: a connect-the-dots approach to splines", 1987.
void NurbCurve::addPiece(const std::vector<Weighted>& control, std::size_t knot,
                         const std::vector<double>& knots)
{
    const auto degree = static_cast<std::size_t>(degree_);
    const double from = knots[knot];
    const double to = knots[knot + 1];
    if (breaks_.empty())
        breaks_.push_back(from);
    breaks_.push_back(to);
    for (std::size_t ends = 0; ends <= degree; ++ends) {
        std::vector<Weighted> row(control.begin() + static_cast<std::ptrdiff_t>(knot - degree),
                                  control.begin() + static_cast<std::ptrdiff_t>(knot + 1));
        for (std::size_t level = 1; level <= degree; ++level) {
            const double param = level <= ends ? to : from;
            for (std::size_t i = degree; i >= level; --i) {
                const double low = knots[knot - degree + i];
                const double high = knots[knot + 1 + i - level];
                row[i] = between(row[i - 1], row[i], (param - low) / (high - low));
            }
        }
        pieces_.push_back(row[degree]);
    }
}

NurbCurve::Definition NurbCurve::definition() const
{
    Definition result;
    result.degree = degree_;
    result.knots.push_back(breaks_.front());
    for (const double param : breaks_)
        result.knots.insert(result.knots.end(), static_cast<std::size_t>(degree_), param);
    result.knots.push_back(breaks_.back());
    const auto step = static_cast<std::size_t>(degree_) + 1;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        if (i > 0 && i % step == 0)
            continue; // where the piece before it ends
        result.controlPoints.push_back(origin_ + pieces_[i].projected());
        result.weights.push_back(pieces_[i].weight);
    }
    return result;
}

std::unique_ptr<KdGeCurve3d> NurbCurve::clone() const
{
    return std::make_unique<NurbCurve>(*this);
}

std::size_t NurbCurve::pieceAt(double param) const
{
    const auto behind = std::upper_bound(breaks_.begin() + 1, breaks_.end() - 1, param);
    return static_cast<std::size_t>(behind - breaks_.begin()) - 1;
}

std::span<const NurbCurve::Weighted> NurbCurve::piece(std::size_t index) const
{
    const auto count = static_cast<std::size_t>(degree_) + 1;
    return {pieces_.data() + index * count, count};
}

/// De Casteljau's scheme; the derivatives are differences of its last rows. Those of the curve
/// follow from those in four dimensions by the product rule.
NurbCurve::Derivatives NurbCurve::evaluate(double param, int order) const
{
    const std::size_t index = pieceAt(param);
    const auto given = piece(index);
    const double width = breaks_[index + 1] - breaks_[index];
    const double part = (param - breaks_[index]) / width;
    const auto degree = static_cast<std::size_t>(degree_);
    std::array<Weighted, kMaxDegree + 1> row;
    std::ranges::copy(given, row.begin());

    Weighted second{{}, 0.0};
    Weighted first{{}, 0.0};
    for (std::size_t left = degree; left > 0; --left) {
        if (left == 2 && order > 1) {
            const double factor = static_cast<double>(degree * (degree - 1)) / (width * width);
            second = {((row[2].point - row[1].point) - (row[1].point - row[0].point)) * factor,
                      ((row[2].weight - row[1].weight) - (row[1].weight - row[0].weight)) * factor};
        }
        if (left == 1 && order > 0) {
            const double factor = static_cast<double>(degree) / width;
            first = {(row[1].point - row[0].point) * factor,
                     (row[1].weight - row[0].weight) * factor};
        }
        for (std::size_t i = 0; i < left; ++i)
            row[i] = between(row[i], row[i + 1], part);
    }
    const double weight = row[0].weight;
    Derivatives result;
    result.point = row[0].projected();
    result.first = (first.point - result.point * first.weight) / weight;
    result.second =
        (second.point - result.first * (2.0 * first.weight) - result.point * second.weight) /
        weight;
    return result;
}

KdGePoint3d NurbCurve::evalPoint(double param) const
{
    return origin_ + evaluate(param, 0).point;
}

KdGeVector3d NurbCurve::firstDerivative(double param) const
{
    return evaluate(param, 1).first;
}

KdGeVector3d NurbCurve::secondDerivative(double param) const
{
    return evaluate(param, 2).second;
}

/// The control points of a part are values of the piece's blossom.
std::size_t NurbCurve::hullOf(double from, double to,
                              std::array<KdGeVector3d, kMaxDegree + 1>& hull) const
{
    const std::size_t index = pieceAt(from + (to - from) / 2.0);
    const auto given = piece(index);
    const double width = breaks_[index + 1] - breaks_[index];
    const double low = (from - breaks_[index]) / width;
    const double high = (to - breaks_[index]) / width;
    const auto degree = static_cast<std::size_t>(degree_);
    for (std::size_t ends = 0; ends <= degree; ++ends) {
        std::array<Weighted, kMaxDegree + 1> row;
        std::ranges::copy(given, row.begin());
        for (std::size_t left = degree; left > 0; --left) {
            for (std::size_t i = 0; i < left; ++i)
                row[i] = between(row[i], row[i + 1], left <= ends ? high : low);
        }
        hull[ends] = row[0].projected();
    }
    return degree + 1;
}

KdGeExtents3d NurbCurve::boundOf(double from, double to) const
{
    std::array<KdGeVector3d, kMaxDegree + 1> hull;
    const std::size_t count = hullOf(from, to, hull);
    KdGeExtents3d box;
    for (std::size_t i = 0; i < count; ++i)
        box.addPoint(origin_ + hull[i]);
    return box;
}

double NurbCurve::sagOf(double from, double to) const
{
    std::array<KdGeVector3d, kMaxDegree + 1> hull;
    const std::size_t count = hullOf(from, to, hull);
    const KdGeLineSeg3d chord(KdGePoint3d::kOrigin + hull[0],
                              KdGePoint3d::kOrigin + hull[count - 1]);
    double sag = 0.0;
    for (std::size_t i = 1; i + 1 < count; ++i)
        sag = std::max(sag, chord.distanceTo(KdGePoint3d::kOrigin + hull[i]));
    return sag;
}

bool NurbCurve::transformBy(const KdGeMatrix3d& matrix)
{
    if (!matrix.isAffine())
        return false;
    origin_.transformBy(matrix);
    for (Weighted& control : pieces_)
        control.point = matrix * control.point;
    forgetLength();
    return true;
}

void NurbCurve::reverse()
{
    std::ranges::reverse(pieces_);
    std::ranges::reverse(breaks_);
    for (double& param : breaks_)
        param = -param;
    forgetLength();
}

/// The largest coordinate of an axis, times a side of 1 or -1: parts whose bound does not reach
/// above what was found are passed over, the others halved.
double NurbCurve::highest(unsigned int axis, double side) const
{
    const auto height = [&](double param) { return side * evaluate(param, 0).point[axis]; };
    double best = height(startParam());
    double size = std::abs(origin_[axis]);
    for (const Weighted& control : pieces_)
        size = std::max(size, std::abs(control.projected()[axis]));
    const double noise = 8.0 * std::numeric_limits<double>::epsilon() * size;
    const auto look = [&](const auto& again, double from, double to, int halvings) -> void {
        const KdGeExtents3d bound = boundOf(from, to);
        const KdGePoint3d& corner = side > 0.0 ? bound.maxPoint() : bound.minPoint();
        const double top = side * (corner - origin_)[axis];
        if (!(top > best + noise) || halvings == 0)
            return;
        const double middle = from + (to - from) / 2.0;
        best = std::max(best, height(middle));
        again(again, from, middle, halvings - 1);
        again(again, middle, to, halvings - 1);
    };
    constexpr int kHalvings = 30; // a part of 1e-9 misses the top by its square
    for (const double param : breaks_)
        best = std::max(best, height(param));
    for (std::size_t i = 1; i < breaks_.size(); ++i)
        look(look, breaks_[i - 1], breaks_[i], kHalvings);
    return origin_[axis] + side * best;
}

KdGeExtents3d NurbCurve::extentsUnder(const KdGeMatrix3d& matrix) const
{
    NurbCurve image(*this);
    if (!image.transformBy(matrix))
        return {};
    KdGePoint3d low;
    KdGePoint3d high;
    for (unsigned int axis = 0; axis < 3; ++axis) {
        low[axis] = image.highest(axis, -1.0);
        high[axis] = image.highest(axis, 1.0);
    }
    KdGeExtents3d box;
    box.addPoint(low);
    box.addPoint(high);
    return box;
}

} // namespace korra
