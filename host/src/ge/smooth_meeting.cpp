#include "ge/smooth_meeting.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace korra {
namespace {

/// A piece of a part between two parameters; it stays within `sag` of its chord.
struct Span {
    double from = 0.0;
    double to = 0.0;
    KdGePoint3d start;
    KdGePoint3d end;
    double sag = 0.0;

    double middle() const { return from + (to - from) / 2.0; }

    KdGeVector3d chord() const { return end - start; }
};

struct SpanPair {
    Span first;
    Span second;
};

/// Pairs beside each other that cannot be told apart.
struct Cluster {
    SpanPair low;  ///< first along the first part
    SpanPair high; ///< last there
};

Span spanOf(const CurvePart& part, double from, double to)
{
    return {from, to, part.point(from), part.point(to), part.sagOf(from, to)};
}

/// True where all of the second span lies on one side of the first, farther than a reach.
bool isBeside(const Span& first, const Span& second, double reach)
{
    const KdGeVector3d along = first.chord();
    KdGeVector3d apart = ((second.start - first.start) + (second.end - first.end)) / 2.0;
    if (along.lengthSqrd() > 0.0)
        apart -= along * (apart.dotProduct(along) / along.lengthSqrd());
    const double distance = apart.length();
    const double half = std::abs(second.chord().dotProduct(apart)) / 2.0;
    return distance * distance - half > reach * distance;
}

bool canMeet(const SpanPair& pair, double tolerance)
{
    const double reach = pair.first.sag + pair.second.sag + tolerance;
    KdGeExtents3d first;
    first.addPoint(pair.first.start);
    first.addPoint(pair.first.end);
    KdGeExtents3d second;
    second.addPoint(pair.second.start);
    second.addPoint(pair.second.end);
    return first.meets(second, reach) && !isBeside(pair.first, pair.second, reach) &&
           !isBeside(pair.second, pair.first, reach);
}

/// The sine of the angle that a span's tangent turns away from that in its middle; 1 where it turns
/// back or vanishes, as in a cusp.
double turnOf(const CurvePart& part, const Span& span)
{
    const KdGeVector3d middle = part.tangent(span.middle());
    double turn = 0.0;
    for (const double end : {span.from, span.to}) {
        const KdGeVector3d tangent = part.tangent(end);
        const double size = tangent.length() * middle.length();
        if (!(tangent.dotProduct(middle) > 0.0))
            return 1.0;
        turn = std::max(turn, tangent.crossProduct(middle).length() / size);
    }
    return turn;
}

/// Finds the common points of two parts by halving what may meet, until it meets at an angle that
/// is wide beside all that the spans turn, or is too flat to be told from its chord.
class SmoothMeeting {
public:
    SmoothMeeting(const CurvePart& first, const CurvePart& second, double tolerance)
        : first_(first), second_(second), tolerance_(tolerance)
    {
    }

    std::vector<SmoothContact> run()
    {
        std::vector<SpanPair> pairs;
        for (const Span& first : quarters(first_)) {
            for (const Span& second : quarters(second_))
                keep({first, second}, pairs);
        }
        for (int level = 0; level < kMostLevels && !pairs.empty() && pairs.size() <= kMostPairs;
             ++level) {
            std::vector<SpanPair> halves;
            for (const SpanPair& pair : pairs)
                halve(pair, halves);
            pairs = std::move(halves);
        }
        alike_.insert(alike_.end(), pairs.begin(), pairs.end());
        for (const Cluster& cluster : clusters())
            settle(cluster);
        return std::move(contacts_);
    }

private:
    /// Of one level. Curves of degree 25 have 625 points in common, and what needs more pairs than
    /// this lies side by side without an end.
    static constexpr std::size_t kMostPairs = 1024;

    /// Behind so many halvings, of either part, nothing but rounding is left.
    static constexpr int kMostLevels = 120;

    /// Of the tolerance: what a chord may leave out before a span counts as straight.
    static constexpr double kFlat = 1.0 / 64.0;

    static std::vector<Span> quarters(const CurvePart& part)
    {
        constexpr double kQuarter = std::numbers::pi / 2.0;
        const double count = part.arc ? std::ceil((part.to - part.from) / kQuarter) : 1.0;
        std::vector<Span> spans;
        for (double i = 0.0; i < count; ++i) {
            const double width = (part.to - part.from) / count;
            spans.push_back(spanOf(part, part.from + width * i,
                                   i + 1.0 < count ? part.from + width * (i + 1.0) : part.to));
        }
        return spans;
    }

    void halve(const SpanPair& pair, std::vector<SpanPair>& halves)
    {
        const bool splitsFirst = pair.first.sag >= pair.second.sag;
        const Span& whole = splitsFirst ? pair.first : pair.second;
        const CurvePart& part = splitsFirst ? first_ : second_;
        const double middle = whole.middle();
        const KdGePoint3d point = part.point(middle);
        const Span halfSpans[] = {
            {whole.from, middle, whole.start, point, part.sagOf(whole.from, middle)},
            {middle, whole.to, point, whole.end, part.sagOf(middle, whole.to)}};
        for (const Span& half : halfSpans)
            keep(splitsFirst ? SpanPair{half, pair.second} : SpanPair{pair.first, half}, halves);
    }

    /// Keeps a pair for halving where it is neither settled nor apart.
    void keep(const SpanPair& pair, std::vector<SpanPair>& pairs)
    {
        if (!canMeet(pair, tolerance_))
            return;
        if (crossAtAnAngle(pair)) {
            double first = pair.first.middle();
            double second = pair.second.middle();
            if (findCrossing(first, second) && lies(first, pair.first) && lies(second, pair.second))
                offer(first, second, tolerance_);
        } else if (pair.first.sag + pair.second.sag <= tolerance_ * kFlat) {
            alike_.push_back(pair);
        } else {
            pairs.push_back(pair);
        }
    }

    /// True where the spans have one common point at most, to which Newton's steps lead.
    bool crossAtAnAngle(const SpanPair& pair) const
    {
        const KdGeVector3d first = first_.tangent(pair.first.middle());
        const KdGeVector3d second = second_.tangent(pair.second.middle());
        const double angle =
            first.crossProduct(second).length() / (first.length() * second.length());
        const auto isSlim = [&](const Span& span) {
            return span.sag * 8.0 <= span.chord().length() * angle;
        };
        return isSlim(pair.first) && isSlim(pair.second) &&
               angle > 4.0 * (turnOf(first_, pair.first) + turnOf(second_, pair.second));
    }

    /// True for a parameter of a span, or one little beside it, for rounding puts a point that is
    /// common to two spans outside both.
    static bool lies(double param, const Span& span)
    {
        const double margin = (span.to - span.from) / 16.0;
        return span.from - margin <= param && param <= span.to + margin;
    }

    /// Takes up a point where the parts come near enough.
    bool offer(double first, double second, double reach)
    {
        first = std::clamp(first, first_.from, first_.to);
        second = std::clamp(second, second_.from, second_.to);
        if (!(first_.point(first).distanceTo(second_.point(second)) <= tolerance_))
            return false;
        contacts_.push_back({first, reach});
        return true;
    }

    /// Follows two equations in both parameters to their root.
    /// @param step  adds what the parameters have to change by; false where there is no telling
    template <class Step>
    static bool newton(double& first, double& second, Step step)
    {
        constexpr int kMostSteps = 30;
        for (int i = 0; i < kMostSteps; ++i) {
            const double before[] = {first, second};
            if (!step() || !std::isfinite(first) || !std::isfinite(second))
                return false;
            if (std::abs(first - before[0]) <= kResolved * std::abs(first) &&
                std::abs(second - before[1]) <= kResolved * std::abs(second))
                break;
        }
        return true;
    }

    static constexpr double kResolved = std::numeric_limits<double>::epsilon();

    /// Where the parts come nearest to each other at an angle (C. F. Gauss's steps).
    bool findCrossing(double& first, double& second) const
    {
        return newton(first, second, [&] {
            const KdGeVector3d apart = first_.point(first) - second_.point(second);
            const KdGeVector3d a = first_.tangent(first);
            const KdGeVector3d b = second_.tangent(second);
            const double ab = a.dotProduct(b);
            const double determinant = a.lengthSqrd() * b.lengthSqrd() - ab * ab;
            if (!(determinant > 0.0))
                return false;
            const double towardsA = apart.dotProduct(a);
            const double towardsB = apart.dotProduct(b);
            first += (ab * towardsB - b.lengthSqrd() * towardsA) / determinant;
            second += (a.lengthSqrd() * towardsB - ab * towardsA) / determinant;
            return true;
        });
    }

    /// Where the parts, side by side, have parallel tangents: the roots of how far the points lie
    /// apart along the second part, and of how much the unit tangents differ across it.
    bool findTangency(double& first, double& second) const
    {
        const auto curvature = [](const CurvePart& part, double param) {
            const KdGeVector3d tangent = part.tangent(param);
            const KdGeVector3d bend = part.secondDerivative(param);
            const double along = bend.dotProduct(tangent) / tangent.lengthSqrd();
            return (bend - tangent * along) / tangent.length();
        };
        const double sign = first_.tangent(first).dotProduct(second_.tangent(second)) < 0 ? -1 : 1;
        const KdGeVector3d across = (curvature(first_, first) / first_.tangent(first).length() -
                                     curvature(second_, second) / second_.tangent(second).length())
                                        .normal();
        return newton(first, second, [&] {
            const KdGeVector3d apart = first_.point(first) - second_.point(second);
            const KdGeVector3d a = first_.tangent(first);
            const KdGeVector3d b = second_.tangent(second);
            const double offset = apart.dotProduct(b);
            const double lean = (a.normal() - b.normal() * sign).dotProduct(across);
            const double offsetByA = a.dotProduct(b);
            const double offsetByB =
                apart.dotProduct(second_.secondDerivative(second)) - b.lengthSqrd();
            const double leanByA = curvature(first_, first).dotProduct(across);
            const double leanByB = -sign * curvature(second_, second).dotProduct(across);
            const double determinant = offsetByA * leanByB - offsetByB * leanByA;
            first += (offsetByB * lean - leanByB * offset) / determinant;
            second += (leanByA * offset - offsetByA * lean) / determinant;
            return determinant != 0.0;
        });
    }

    std::vector<Cluster> clusters()
    {
        std::ranges::sort(alike_, {}, [](const SpanPair& pair) { return pair.first.from; });
        std::vector<Cluster> result;
        for (const SpanPair& pair : alike_) {
            const auto touches = [&](const Cluster& cluster) {
                const Span& last = cluster.high.second;
                return pair.first.from <= cluster.high.first.to && pair.second.from <= last.to &&
                       last.from <= pair.second.to;
            };
            const auto known = std::ranges::find_if(result, touches);
            if (known == result.end())
                result.push_back({pair, pair});
            else if (pair.first.to >= known->high.first.to)
                known->high = pair;
        }
        return result;
    }

    void settle(const Cluster& cluster)
    {
        const double reach =
            std::max(tolerance_, cluster.low.first.start.distanceTo(cluster.high.first.end));
        const auto isInside = [&](double first) {
            return lies(first, spanOf(first_, cluster.low.first.from, cluster.high.first.to));
        };
        double first = (cluster.low.first.from + cluster.high.first.to) / 2.0;
        double second = (cluster.low.second.middle() + cluster.high.second.middle()) / 2.0;
        if (findTangency(first, second) && isInside(first) && offer(first, second, reach))
            return;
        bool crosses = false;
        for (const SpanPair& pair : {cluster.low, cluster.high}) {
            first = pair.first.middle();
            second = pair.second.middle();
            if (findCrossing(first, second) && isInside(first) && offer(first, second, tolerance_))
                crosses = true;
        }
        if (!crosses)
            offer(cluster.low.first.middle(), cluster.low.second.middle(), reach);
    }

    const CurvePart& first_;
    const CurvePart& second_;
    double tolerance_;
    std::vector<SpanPair> alike_; ///< too flat to be told from their chords, and side by side
    std::vector<SmoothContact> contacts_;
};

} // namespace

std::vector<SmoothContact> smoothContacts(const CurvePart& first, const CurvePart& second,
                                          double tolerance)
{
    return SmoothMeeting(first, second, tolerance).run();
}

} // namespace korra
