#include "ge/part_meeting.h"

#include "ge/resolvable.h"
#include "ge/smooth_meeting.h"

#include <algorithm>
#include <cmath>

namespace korra {
namespace {

double largestOf(const KdGeExtents3d& box)
{
    if (box.isEmpty())
        return 0.0;
    return std::max(largestCoordinate(box.minPoint()), largestCoordinate(box.maxPoint()));
}

/// The tolerance, raised to what doubles of the parts' size can tell apart.
KdGeTol resolvable(const CurvePart& a, const CurvePart& b, const KdGeTol& tol)
{
    const double noise = roundingOf(std::max(largestOf(a.box), largestOf(b.box)));
    const double shorter = std::min(a.box.minPoint().distanceTo(a.box.maxPoint()),
                                    b.box.minPoint().distanceTo(b.box.maxPoint()));
    KdGeTol raised = tol;
    raised.setEqualPoint(std::max(tol.equalPoint(), noise));
    if (noise < shorter) // a direction between points that far apart is known to noise / shorter
        raised.setEqualVector(std::max(tol.equalVector(), noise / shorter));
    return raised;
}

/// What of a line without an end comes near a box.
KdGeLineSeg3d clipped(const CurvePart& line, const KdGeExtents3d& box, double margin)
{
    const KdGePoint3d middle = box.minPoint() + (box.maxPoint() - box.minPoint()) / 2.0;
    const double reach = box.minPoint().distanceTo(box.maxPoint()) / 2.0 + margin;
    const double span = line.line->derivative().length();
    const double foot = (middle - line.line->pointOnLine()).dotProduct(line.line->direction());
    return {line.point(std::clamp((foot - reach) / span, line.from, line.to)),
            line.point(std::clamp((foot + reach) / span, line.from, line.to))};
}

/// Finds what two parts have in common.
///
/// Their ends are tried first, then what they run along each other, then the points where they
/// cross: of lines and arcs those where the unbounded line or full circle of one meets that of the
/// other, as far as they lie on both parts. Ends come first because a tangent joint is
/// ill-conditioned: there only the end itself is known to full precision.
class PartMeeting {
public:
    PartMeeting(const CurvePart& a, const CurvePart& b, const KdGeTol& tol, Meetings& found)
        : a_(a), b_(b), tol_(resolvable(a, b, tol)), found_(found)
    {
    }

    void run()
    {
        const bool apart =
            !a_.box.isEmpty() && !b_.box.isEmpty() && !a_.box.meets(b_.box, tol_.equalPoint());
        if (apart)
            return;
        std::vector<double> ends = commonEnds();
        for (const double end : ends)
            addAt(end, a_.point(end), 0.0);
        const bool alike = areOnOneCurve();
        const bool smooth = a_.smooth || b_.smooth;
        if ((alike || smooth) && addRuns(std::move(ends)))
            return;
        if (smooth)
            addSmooth();
        else if (!alike)
            addClosed();
    }

private:
    /// Parameters of the first part at the ends of both that lie on both.
    std::vector<double> commonEnds() const
    {
        std::vector<double> result;
        for (const double end : a_.ends()) {
            if (b_.isOn(a_.point(end), tol_))
                result.push_back(end);
        }
        for (const double end : b_.ends()) {
            const KdGePoint3d point = b_.point(end);
            const double param = a_.nearestParam(point);
            if (a_.point(param).distanceTo(point) <= tol_.equalPoint())
                result.push_back(param);
        }
        return result;
    }

    /// True where both parts lie on one direction of lines or on one circle.
    bool areOnOneCurve() const
    {
        if (a_.line && b_.line)
            return a_.line->derivative().isParallelTo(b_.line->derivative(), tol_);
        return a_.arc && b_.arc && coplanar(*a_.arc, *b_.arc) &&
               a_.arc->center().isEqualTo(b_.arc->center(), tol_) &&
               std::abs(a_.arc->radius() - b_.arc->radius()) <= tol_.equalPoint();
    }

    /// Parts that run along each other do so from end to end of one or the other, for curves that
    /// have every derivative do not part elsewhere.
    bool addRuns(std::vector<double> ends)
    {
        std::ranges::sort(ends);
        bool found = false;
        for (std::size_t i = 1; i < ends.size(); ++i) {
            if (!runsAlong(ends[i - 1], ends[i]))
                continue;
            found_.runs.push_back({{a_.piece, ends[i - 1]}, {a_.piece, ends[i]}});
            found = true;
        }
        return found;
    }

    bool runsAlong(double from, double to) const
    {
        if (!(a_.curve->length(from, to) > tol_.equalPoint()))
            return false;
        const int samples = a_.smooth || b_.smooth ? 9 : 1;
        for (int i = 0; i < samples; ++i) {
            const double part = (2.0 * i + 1.0) / (2.0 * samples);
            if (!b_.isOn(a_.point(from + (to - from) * part), tol_))
                return false;
        }
        return true;
    }

    void addAt(double param, const KdGePoint3d& point, double reach)
    {
        found_.contacts.push_back({{a_.piece, param}, point, std::max(reach, tol_.equalPoint())});
    }

    /// Adds a point where it lies on both parts.
    /// @param reach  within this distance of a known point the point is the same one
    void add(const KdGePoint3d& point, double reach = 0.0)
    {
        const double param = a_.nearestParam(point);
        if (a_.point(param).distanceTo(point) <= tol_.equalPoint() && b_.isOn(point, tol_))
            addAt(param, point, reach);
    }

    void addSmooth()
    {
        if (a_.box.isEmpty() || b_.box.isEmpty()) {
            const bool first = a_.box.isEmpty();
            const CurvePart& line = first ? a_ : b_;
            const CurvePart& other = first ? b_ : a_;
            if (!line.line || other.box.isEmpty())
                return;
            const KdGeLineSeg3d segment = clipped(line, other.box, tol_.equalPoint());
            std::vector<CurvePart> parts;
            appendParts(segment, line.piece, parts);
            const CurvePart& part = parts.front();
            for (const SmoothContact& contact :
                 smoothContacts(first ? part : a_, first ? b_ : part, tol_.equalPoint()))
                add((first ? part : a_).point(contact.param), contact.reach);
            return;
        }
        for (const SmoothContact& contact : smoothContacts(a_, b_, tol_.equalPoint()))
            addAt(contact.param, a_.point(contact.param), contact.reach);
    }

    void addClosed()
    {
        if (a_.line && b_.line)
            lineLine(*a_.line, *b_.line);
        else if (a_.line)
            lineCircle(KdGeLine3d(a_.line->pointOnLine(), a_.line->derivative()), *b_.arc);
        else if (b_.line)
            lineCircle(KdGeLine3d(b_.line->pointOnLine(), b_.line->derivative()), *a_.arc);
        else
            circleCircle(*a_.arc, *b_.arc);
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
        // q·q + 2 q·(s - c) = 0. Along the line that is a quadratic in the line's parameter,
        // counted from where the line passes by the start: however far off it begins.
        const KdGeVector3d u = line.derivative();
        const KdGeLine3d near(line.closestPointTo(arc.startPoint()), u);
        const KdGeVector3d offset = near.pointOnLine() - arc.startPoint();
        const KdGeVector3d toStart = arc.startPoint() - arc.center();
        const double a = u.lengthSqrd();
        const double b = u.dotProduct(offset + toStart);
        const double c = offset.dotProduct(offset + toStart * 2.0);
        const double discriminant = b * b - a * c;
        const double tangency = 2.0 * arc.radius() * tol_.equalPoint();
        if (std::abs(discriminant) <= a * tangency) {
            add(near.evalPoint(-b / a), std::sqrt(tangency));
        } else if (discriminant > 0.0) {
            const double larger = -(b + std::copysign(std::sqrt(discriminant), b));
            add(near.evalPoint(larger / a));
            add(near.evalPoint(c / larger));
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

    const CurvePart& a_;
    const CurvePart& b_;
    KdGeTol tol_;
    Meetings& found_;
};

} // namespace

void meet(const CurvePart& first, const CurvePart& second, const KdGeTol& tol, Meetings& found)
{
    PartMeeting(first, second, tol, found).run();
}

} // namespace korra
