#include "ge/common_points.h"

#include "ge/box_tree.h"
#include "ge/part_meeting.h"
#include "ge/resolvable.h"

#include <algorithm>
#include <cmath>

namespace korra {
namespace {

std::vector<CurvePart> partsOf(const CurveSet& curves)
{
    std::vector<CurvePart> parts;
    for (std::size_t piece = 0; piece < curves.size(); ++piece)
        appendParts(*curves[piece], piece, parts);
    return parts;
}

/// Calls `visit` with every pair of parts whose boxes come within a distance.
template <class Visit>
void eachPair(const std::vector<CurvePart>& first, const std::vector<CurvePart>& second,
              double distance, Visit visit)
{
    std::vector<BoxTree::Leaf> leaves;
    std::vector<std::uint32_t> unbounded;
    for (std::uint32_t i = 0; i < second.size(); ++i) {
        if (second[i].box.isEmpty())
            unbounded.push_back(i);
        else
            leaves.push_back({second[i].box, i});
    }
    const BoxTree tree(std::move(leaves));
    for (const CurvePart& part : first) {
        for (const std::uint32_t item : unbounded)
            visit(part, second[item]);
        tree.search(
            [&](const KdGeExtents3d& box) {
                return part.box.isEmpty() || part.box.meets(box, distance);
            },
            [&](std::uint32_t item) { visit(part, second[item]); });
    }
}

/// What runs end to end on the first curve, joined: where one run goes over into the next is no
/// end.
class JoinedRuns {
public:
    JoinedRuns(const CurveSet& first, std::vector<CommonRun> runs, double tolerance)
        : first_(first), tolerance_(tolerance)
    {
        std::ranges::sort(runs, {}, &CommonRun::from);
        for (const CommonRun& run : runs) {
            if (!runs_.empty() && goesOver(runs_.back().to, run.from))
                runs_.back().to = std::max(runs_.back().to, run.to);
            else
                runs_.push_back(run);
        }
    }

    /// True for a place inside a run, where the curves do not come together or part.
    bool isInside(const Contact& contact) const
    {
        if (closesAt(contact.point))
            return true;
        const auto behind = std::ranges::upper_bound(runs_, contact.place, {}, &CommonRun::from);
        if (behind == runs_.begin())
            return false;
        const CommonRun& run = *(behind - 1);
        return contact.place <= run.to && !isAt(run.from, contact.point) &&
               !isAt(run.to, contact.point);
    }

private:
    KdGePoint3d pointAt(const CurvePlace& place) const
    {
        return first_[place.piece]->evalPoint(place.param);
    }

    bool isAt(const CurvePlace& place, const KdGePoint3d& point) const
    {
        return pointAt(place).distanceTo(point) <= tolerance_;
    }

    /// True where nothing of the curve lies between two places.
    bool goesOver(const CurvePlace& from, const CurvePlace& to) const
    {
        if (to <= from)
            return true;
        if (pointAt(from).distanceTo(pointAt(to)) > tolerance_)
            return false;
        double between = 0.0;
        for (std::size_t piece = from.piece; piece <= to.piece; ++piece) {
            const KdGeCurve3d& curve = *first_[piece];
            const double low = piece == from.piece ? from.param : curve.startParam();
            const double high = piece == to.piece ? to.param : curve.endParam();
            between += curve.length(low, high);
            if (!(between <= tolerance_))
                return false;
        }
        return true;
    }

    /// True where curves that close begin and end within runs.
    bool closesAt(const KdGePoint3d& point) const
    {
        return !runs_.empty() && first_.front()->isBounded() && first_.back()->isBounded() &&
               isAt(runs_.front().from, point) && isAt(runs_.back().to, point) &&
               first_.front()->startPoint().distanceTo(point) <= tolerance_ &&
               first_.back()->endPoint().distanceTo(point) <= tolerance_;
    }

    const CurveSet& first_;
    double tolerance_;
    std::vector<CommonRun> runs_;
};

/// Leaves each point once, the best known of those that are the same, in the first curve's order.
void leaveEachOnce(std::vector<Contact>& contacts)
{
    // Points that are the same lie beside each other along any direction; along one that no drawing
    // is made in, few others lie between.
    const KdGeVector3d oblique(0.6180339887, 0.4142135624, 0.2599210499);
    const auto along = [&](const Contact& contact) {
        return contact.point.asVector().dotProduct(oblique);
    };
    std::ranges::sort(contacts, {}, along);
    double reach = 0.0;
    for (const Contact& contact : contacts)
        reach = std::max(reach, contact.reach);
    std::vector<bool> known(contacts.size());
    const auto goesBefore = [](const Contact& a, const Contact& b) {
        return a.reach != b.reach ? a.reach < b.reach : a.place < b.place;
    };
    for (std::size_t i = 0; i < contacts.size(); ++i) {
        for (std::size_t j = i + 1;
             j < contacts.size() && along(contacts[j]) - along(contacts[i]) <= reach; ++j) {
            const double same = std::max(contacts[i].reach, contacts[j].reach);
            if (contacts[i].point.distanceTo(contacts[j].point) <= same)
                known[goesBefore(contacts[i], contacts[j]) ? j : i] = true;
        }
    }
    std::vector<Contact> left;
    for (std::size_t i = 0; i < contacts.size(); ++i) {
        if (!known[i])
            left.push_back(contacts[i]);
    }
    std::ranges::sort(left, {}, &Contact::place);
    contacts = std::move(left);
}

} // namespace

CurveSet piecesOf(const KdGeCurve3d& curve)
{
    const auto* const composite = dynamic_cast<const KdGeCompositeCurve3d*>(&curve);
    if (!composite)
        return {&curve};
    CurveSet pieces;
    for (int i = 0; i < composite->numPieces(); ++i)
        pieces.push_back(&composite->piece(i));
    return pieces;
}

std::vector<KdGePoint3d> commonPoints(const CurveSet& first, const CurveSet& second,
                                      const CurveSet& reported, const KdGeTol& tol)
{
    const std::vector<CurvePart> firstParts = partsOf(first);
    const std::vector<CurvePart> secondParts = partsOf(second);
    Meetings found;
    eachPair(firstParts, secondParts, tol.equalPoint(),
             [&](const CurvePart& a, const CurvePart& b) { meet(a, b, tol, found); });
    double tolerance = tol.equalPoint();
    for (const Contact& contact : found.contacts)
        tolerance = std::max(tolerance, roundingOf(largestCoordinate(contact.point)));
    const JoinedRuns runs(first, std::move(found.runs), tolerance);
    std::erase_if(found.contacts, [&](const Contact& contact) { return runs.isInside(contact); });
    if (&reported != &first) {
        for (Contact& contact : found.contacts)
            contact.point = reported[contact.place.piece]->evalPoint(contact.place.param);
    }
    leaveEachOnce(found.contacts);
    std::vector<KdGePoint3d> points;
    for (const Contact& contact : found.contacts)
        points.push_back(contact.point);
    return points;
}

} // namespace korra
