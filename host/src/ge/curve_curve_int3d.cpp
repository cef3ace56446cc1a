#include "kd/ge/curve_curve_int3d.h"

#include "kd/ge/circ_arc3d.h"
#include "kd/ge/composite_curve3d.h"
#include "kd/ge/plane.h"

#include <algorithm>
#include <array>
#include <limits>

namespace {

/// A straight or circular part of a curve.
struct Part {
    const KdGeCurve3d* curve;
    const KdGeLinearEnt3d* line; ///< null for an arc
    const KdGeCircArc3d* arc;    ///< null for a straight part
    KdGeExtents3d box;           ///< empty for an unbounded line
};

void addParts(const KdGeCurve3d& curve, std::vector<Part>& parts)
{
    if (const auto* const composite = dynamic_cast<const KdGeCompositeCurve3d*>(&curve)) {
        for (int i = 0; i < composite->numPieces(); ++i)
            addParts(composite->piece(i), parts);
        return;
    }
    const auto* const line = dynamic_cast<const KdGeLinearEnt3d*>(&curve);
    const auto* const arc = dynamic_cast<const KdGeCircArc3d*>(&curve);
    if (line || arc)
        parts.push_back({&curve, line, arc, curve.extents()});
}

double largestCoordinate(const KdGeExtents3d& box)
{
    double largest = 0.0;
    for (unsigned int axis = 0; axis < 3 && !box.isEmpty(); ++axis)
        largest =
            std::max({largest, std::abs(box.minPoint()[axis]), std::abs(box.maxPoint()[axis])});
    return largest;
}

/// The tolerance, raised to what doubles of the parts' size can tell apart.
KdGeTol resolvable(const Part& a, const Part& b, const KdGeTol& tol)
{
    constexpr double kRoundings = 16.0 * std::numeric_limits<double>::epsilon();
    const double noise = kRoundings * std::max(largestCoordinate(a.box), largestCoordinate(b.box));
    const double shorter = std::min(a.box.minPoint().distanceTo(a.box.maxPoint()),
                                    b.box.minPoint().distanceTo(b.box.maxPoint()));
    KdGeTol raised = tol;
    raised.setEqualPoint(std::max(tol.equalPoint(), noise));
    if (noise < shorter) // a direction between points that far apart is known to noise / shorter
        raised.setEqualVector(std::max(tol.equalVector(), noise / shorter));
    return raised;
}

/// Finds the common points of two parts.
///
/// Their ends are tried first, then the points where the unbounded line or full circle of one
/// meets that of the other; what lies on both parts is a common point. Ends come first because a
/// tangent joint is ill-conditioned: there only the end itself is known to full precision.
class PairIntersector {
public:
    PairIntersector(const Part& a, const Part& b, const KdGeTol& tol,
                    std::vector<KdGePoint3d>& points)
        : a_(a), b_(b), tol_(resolvable(a, b, tol)), points_(points)
    {
    }

    void run()
    {
        const bool apart =
            !a_.box.isEmpty() && !b_.box.isEmpty() && !a_.box.meets(b_.box, tol_.equalPoint());
        if (apart)
            return;
        if (runAlong()) {
            addTouchingEnds();
            return;
        }
        addEnds(a_);
        addEnds(b_);
        if (a_.line && b_.line)
            lineLine(*a_.line, *b_.line);
        else if (a_.line)
            lineCircle(KdGeLine3d(a_.line->pointOnLine(), a_.line->derivative()), *b_.arc);
        else if (b_.line)
            lineCircle(KdGeLine3d(b_.line->pointOnLine(), b_.line->derivative()), *a_.arc);
        else
            circleCircle(*a_.arc, *b_.arc);
    }

private:
    struct End {
        KdGePoint3d point;
        KdGeVector3d inward; ///< the direction in which the part leaves this end
    };

    static std::array<End, 2> ends(const KdGeCurve3d& curve)
    {
        const double start = curve.startParam();
        const double end = curve.endParam();
        return {{{curve.evalPoint(start), curve.firstDerivative(start)},
                 {curve.evalPoint(end), -curve.firstDerivative(end)}}};
    }

    /// True where both parts lie on one line or one circle.
    bool runAlong() const
    {
        if (a_.line && b_.line)
            return a_.line->derivative().isParallelTo(b_.line->derivative(), tol_);
        return a_.arc && b_.arc && coplanar(*a_.arc, *b_.arc) &&
               a_.arc->center().isEqualTo(b_.arc->center(), tol_) &&
               std::abs(a_.arc->radius() - b_.arc->radius()) <= tol_.equalPoint();
    }

    void addTouchingEnds()
    {
        if (a_.curve->isClosed(tol_) || b_.curve->isClosed(tol_))
            return; // a full circle has no ends
        for (const End& a : ends(*a_.curve))
            for (const End& b : ends(*b_.curve))
                if (a.point.isEqualTo(b.point, tol_) && a.inward.dotProduct(b.inward) < 0.0)
                    add(a.point);
    }

    void addEnds(const Part& part)
    {
        for (const End& end : ends(*part.curve))
            add(end.point);
    }

    /// Adds a point that lies on both parts.
    /// @param reach  within this distance of a known point the point is the same one
    void add(const KdGePoint3d& point, double reach = 0.0)
    {
        if (!a_.curve->isOn(point, tol_) || !b_.curve->isOn(point, tol_))
            return;
        const double same = std::max(reach, tol_.equalPoint());
        const auto isSame = [&](const KdGePoint3d& p) { return p.distanceTo(point) <= same; };
        if (std::none_of(points_.begin(), points_.end(), isSame))
            points_.push_back(point);
    }

    void lineLine(const KdGeLinearEnt3d& a, const KdGeLinearEnt3d& b)
    {
        const KdGeVector3d offset = b.pointOnLine() - a.pointOnLine();
        const KdGeVector3d across = a.derivative().crossProduct(b.derivative());
        const double param =
            offset.crossProduct(b.derivative()).dotProduct(across) / across.lengthSqrd();
        add(a.evalPoint(param));
    }

    bool coplanar(const KdGeCircArc3d& a, const KdGeCircArc3d& b) const
    {
        return a.normal().isParallelTo(b.normal(), tol_) &&
               KdGePlane(a.center(), a.normal()).distanceTo(b.center()) <= tol_.equalPoint();
    }

    void lineCircle(const KdGeLine3d& line, const KdGeCircArc3d& arc)
    {
        KdGePoint3d piercing;
        if (KdGePlane(arc.center(), arc.normal()).intersectWith(line, piercing, tol_)) {
            add(piercing);
            return;
        }
        // With q the offset from the arc's start s, and c its centre, the circle is
        // q·q + 2 q·(s - c) = 0. Along the line that is a quadratic in the line's parameter.
        const KdGeVector3d u = line.derivative();
        const KdGeVector3d offset = line.pointOnLine() - arc.startPoint();
        const KdGeVector3d toStart = arc.startPoint() - arc.center();
        const double a = u.lengthSqrd();
        const double b = u.dotProduct(offset + toStart);
        const double c = offset.dotProduct(offset + toStart * 2.0);
        const double discriminant = b * b - a * c;
        const double tangency = 2.0 * arc.radius() * tol_.equalPoint();
        if (std::abs(discriminant) <= a * tangency) {
            add(line.evalPoint(-b / a), std::sqrt(tangency));
        } else if (discriminant > 0.0) {
            const double larger = -(b + std::copysign(std::sqrt(discriminant), b));
            add(line.evalPoint(larger / a));
            add(line.evalPoint(c / larger));
        }
    }

    void circleCircle(const KdGeCircArc3d& a, const KdGeCircArc3d& b)
    {
        const KdGeVector3d between = b.center() - a.center();
        if (!coplanar(a, b) || between.length() <= tol_.equalPoint())
            return;
        // The difference of the two circles' equations is the line through their common points.
        const KdGeVector3d apart = a.startPoint() - b.startPoint();
        const KdGeVector3d toStart = b.startPoint() - b.center();
        const double height = apart.dotProduct(apart + toStart * 2.0) / 2.0;
        const KdGePoint3d foot = a.startPoint() + between * (height / between.lengthSqrd());
        lineCircle(KdGeLine3d(foot, a.normal().crossProduct(between)), a);
    }

    const Part& a_;
    const Part& b_;
    KdGeTol tol_;
    std::vector<KdGePoint3d>& points_;
};

} // namespace

KdGeCurveCurveInt3d::KdGeCurveCurveInt3d(const KdGeCurve3d& first, const KdGeCurve3d& second,
                                         const KdGeTol& tol)
{
    std::vector<Part> firstParts;
    std::vector<Part> secondParts;
    addParts(first, firstParts);
    addParts(second, secondParts);
    for (const Part& a : firstParts)
        for (const Part& b : secondParts)
            PairIntersector(a, b, tol, points_).run();
}
