#include "sinks/pick_sink.h"

#include "ge/box_image.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace korra {
namespace {

/// Chords this far off are good enough to see that a curve is not under the box, pixels.
constexpr double kCoarse = 0.25;

/// The distance of what is under the box is true to this, pixels.
constexpr double kFine = 1e-6;

/// Distances that differ by less are equal, pixels.
constexpr double kSameDistance = 1e-9;

/// What is nearer to the eye of a perspective than this part of the focal length is not seen.
constexpr double kNearest = 1e-3;

double distanceFromOrigin(double ax, double ay, double bx, double by)
{
    const double dx = bx - ax;
    const double dy = by - ay;
    const double square = dx * dx + dy * dy;
    const double along = square > 0.0 ? std::clamp(-(ax * dx + ay * dy) / square, 0.0, 1.0) : 0.0;
    return std::hypot(ax + along * dx, ay + along * dy);
}

/// Cuts the part of a segment that lies beyond one side of the box off; Liang and Barsky's step.
bool clipSide(double direction, double room, double& from, double& to)
{
    if (direction == 0.0)
        return room >= 0.0;
    const double at = room / direction;
    if (direction < 0.0)
        from = std::max(from, at);
    else
        to = std::min(to, at);
    return from <= to;
}

bool meetsBox(double ax, double ay, double bx, double by, double reach)
{
    double from = 0.0;
    double to = 1.0;
    return clipSide(ax - bx, ax + reach, from, to) && clipSide(bx - ax, reach - ax, from, to) &&
           clipSide(ay - by, ay + reach, from, to) && clipSide(by - ay, reach - ay, from, to);
}

} // namespace

PickSink::PickSink(const KdGeMatrix3d& toPixels, const KdGePoint2d& pick, double reach, Keep keep)
    : DrawSink({.looks = false, .order = true, .hidden = false}),
      toPixels_(KdGeMatrix3d::translation({-pick.x, -pick.y, 0.0}) * toPixels),
      reach_(reach),
      keep_(keep)
{
    transformChanged();
}

void PickSink::transformChanged()
{
    image_ = toPixels_ * transform();
    perspective_ = !image_.isAffine();
}

double PickSink::depth(const KdGePoint3d& point) const
{
    const auto& e = image_.entry;
    return e[3][0] * point.x + e[3][1] * point.y + e[3][2] * point.z + e[3][3];
}

bool PickSink::isSeen(const KdGePoint3d& point) const
{
    return !perspective_ || depth(point) >= kNearest;
}

PickSink::Pixel PickSink::project(const KdGePoint3d& point) const
{
    const auto& e = image_.entry;
    const Pixel pixel = {e[0][0] * point.x + e[0][1] * point.y + e[0][2] * point.z + e[0][3],
                         e[1][0] * point.x + e[1][1] * point.y + e[1][2] * point.z + e[1][3]};
    if (!perspective_)
        return pixel;
    const double divisor = depth(point);
    return {pixel.x / divisor, pixel.y / divisor};
}

void PickSink::segment(const KdGePoint3d& start, const KdGePoint3d& end)
{
    if (const auto distance = segmentDistance(start, end, reach_))
        addHit(*distance);
}

std::optional<double> PickSink::segmentDistance(KdGePoint3d start, KdGePoint3d end,
                                                double reach) const
{
    const bool startSeen = isSeen(start);
    const bool endSeen = isSeen(end);
    if (!startSeen && !endSeen)
        return std::nullopt;
    if (startSeen != endSeen) {
        const double along = (kNearest - depth(start)) / (depth(end) - depth(start));
        (startSeen ? end : start) = start + (end - start) * along;
    }
    return distanceUnderBox(project(start), project(end), reach);
}

std::optional<double> PickSink::distanceUnderBox(const Pixel& a, const Pixel& b, double reach)
{
    if ((a.x > reach && b.x > reach) || (a.x < -reach && b.x < -reach) ||
        (a.y > reach && b.y > reach) || (a.y < -reach && b.y < -reach))
        return std::nullopt;
    if (!meetsBox(a.x, a.y, b.x, b.y, reach))
        return std::nullopt;
    return distanceFromOrigin(a.x, a.y, b.x, b.y);
}

std::optional<double> PickSink::chainDistance(const KdGeCurve3d& curve, double tolerance,
                                              double reach)
{
    chain_.clear();
    if (perspective_)
        curve.flatten(KdGeMatrix3d::kIdentity, tolerance / magnification(curve), chain_);
    else
        curve.flatten(image_, tolerance, chain_);
    std::optional<double> nearest;
    for (std::size_t i = 1; i < chain_.size(); ++i) {
        const KdGePoint3d& start = chain_[i - 1];
        const KdGePoint3d& end = chain_[i];
        const auto distance = perspective_
                                  ? segmentDistance(start, end, reach)
                                  : distanceUnderBox({start.x, start.y}, {end.x, end.y}, reach);
        if (distance && (!nearest || *distance < *nearest))
            nearest = distance;
    }
    return nearest;
}

double PickSink::magnification(const KdGeCurve3d& curve) const
{
    const auto& e = image_.entry;
    const KdGeExtents3d box = curve.extents();
    const KdGePoint3d& low = box.minPoint();
    const KdGePoint3d& high = box.maxPoint();
    double nearest = e[3][3];
    for (unsigned int axis = 0; axis < 3; ++axis)
        nearest += std::min(e[3][axis] * low[axis], e[3][axis] * high[axis]);
    // The quotient rule at an image point not farther from the pick point than the box reaches.
    const auto row = [&](int i) { return std::hypot(e[i][0], e[i][1], e[i][2]); };
    return (std::hypot(row(0), row(1)) + 2.0 * (reach_ + kCoarse) * row(3)) /
           std::max(nearest, kNearest);
}

/// What is no number lies beside nothing.
bool PickSink::isBeside(const KdGeExtents3d& image, double reach)
{
    return image.isEmpty() || image.minPoint().x > reach || image.maxPoint().x < -reach ||
           image.minPoint().y > reach || image.maxPoint().y < -reach;
}

std::optional<KdGeExtents3d> PickSink::imageInPerspective(const KdGeExtents3d& box) const
{
    if (!isBounded(box))
        return std::nullopt;
    KdGeExtents3d image;
    int seen = 0;
    for (unsigned int corner = 0; corner < 8; ++corner) {
        KdGePoint3d point = box.minPoint();
        for (unsigned int axis = 0; axis < 3; ++axis) {
            if ((corner >> axis & 1U) != 0)
                point[axis] = box.maxPoint()[axis];
        }
        if (!isSeen(point))
            continue;
        const Pixel at = project(point);
        image.addPoint({at.x, at.y, 0.0});
        ++seen;
    }
    return seen == 0 || seen == 8 ? std::optional(image) : std::nullopt;
}

bool PickSink::wants(const KdGeExtents3d& box)
{
    const auto image = perspective_ ? imageInPerspective(box) : std::optional(imageOf(box, image_));
    return !image || !isBeside(*image, reach_ + kCoarse);
}

/// The distance of what can be seen of a line that goes on for ever.
std::optional<double> PickSink::lineDistance(const KdGeLinearEnt3d& line) const
{
    const auto& e = image_.entry;
    const KdGeVector3d& along = line.derivative();
    const auto rate = [&](int row) {
        return e[row][0] * along.x + e[row][1] * along.y + e[row][2] * along.z;
    };
    double from = line.startParam();
    double to = line.endParam();
    const double start = perspective_ ? depth(line.pointOnLine()) : 1.0;
    const double deeper = perspective_ ? rate(3) : 0.0;
    if (!clipSide(-deeper, start - kNearest, from, to))
        return std::nullopt;

    if (deeper == 0.0) { // its image goes on for ever, too
        const Pixel origin = project(line.pointOnLine());
        const double dx = rate(0) / start;
        const double dy = rate(1) / start;
        if (!clipSide(dx, reach_ - origin.x, from, to) ||
            !clipSide(-dx, reach_ + origin.x, from, to) ||
            !clipSide(dy, reach_ - origin.y, from, to) ||
            !clipSide(-dy, reach_ + origin.y, from, to))
            return std::nullopt;
        const double ends[] = {std::isfinite(from) ? from : 0.0, std::isfinite(to) ? to : 0.0};
        return distanceFromOrigin(origin.x + ends[0] * dx, origin.y + ends[0] * dy,
                                  origin.x + ends[1] * dx, origin.y + ends[1] * dy);
    }
    // In a perspective it ends where it vanishes.
    const Pixel vanishing = {rate(0) / deeper, rate(1) / deeper};
    const auto image = [&](double param) {
        return std::isfinite(param) ? project(line.evalPoint(param)) : vanishing;
    };
    return distanceUnderBox(image(from), image(to), reach_);
}

void PickSink::curve(const KdGeCurve3d& curve)
{
    const auto* const line = dynamic_cast<const KdGeLinearEnt3d*>(&curve);
    if (line && !curve.isBounded()) {
        if (const auto distance = lineDistance(*line))
            addHit(*distance);
        return;
    }
    if (!perspective_ && isBeside(curve.extentsUnder(image_), reach_))
        return;
    if (!chainDistance(curve, kCoarse, reach_ + kCoarse))
        return;
    if (const auto distance = chainDistance(curve, kFine, reach_ + kFine))
        addHit(*distance);
}

void PickSink::point(const KdGePoint3d& point)
{
    if (!isSeen(point))
        return;
    const Pixel at = project(point);
    if (std::abs(at.x) <= reach_ && std::abs(at.y) <= reach_)
        addHit(std::hypot(at.x, at.y));
}

void PickSink::text(const TextRun& run)
{
    const std::array<KdGePoint3d, 4> box = run.corners();
    if (!std::ranges::all_of(box, [this](const KdGePoint3d& corner) { return isSeen(corner); }))
        return;
    std::array<Pixel, 4> corners;
    std::ranges::transform(box, corners.begin(),
                           [this](const KdGePoint3d& corner) { return project(corner); });
    std::optional<double> nearest;
    int left = 0;
    int right = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const Pixel& a = corners[i];
        const Pixel& b = corners[(i + 1) % 4];
        const double side = a.x * b.y - a.y * b.x;
        left += side > 0.0;
        right += side < 0.0;
        const auto distance = distanceUnderBox(a, b, reach_);
        if (distance && (!nearest || *distance < *nearest))
            nearest = distance;
    }
    if (left == 4 || right == 4)
        nearest = 0.0;
    if (nearest)
        addHit(*nearest);
}

void PickSink::beginEntity(KdDbObjectId entity, const Traits&)
{
    entities_.push_back(entity);
    part_.setNull();
    marker_ = 1;
}

void PickSink::endEntity()
{
    entities_.pop_back();
    part_.setNull();
    marker_ = 1;
}

void PickSink::beginPart(KdDbObjectId part, PartRole role)
{
    part_ = part;
    partRole_ = role;
}

void PickSink::endPart()
{
    part_.setNull();
}

void PickSink::blockBegins(KdDbObjectId owner, BlockRole role)
{
    shown_.push_back({owner, role, transform()});
}

void PickSink::blockEnded()
{
    shown_.pop_back();
}

void PickSink::addHit(double distance)
{
    if (keep_ == Keep::nearest && !hits_.empty() &&
        distance > hits_.front().distance + kSameDistance)
        return;
    PickHit hit = hitHere(distance);
    if (keep_ == Keep::nearest)
        hits_.clear();
    else if (!hits_.empty() && isSamePiece(hits_.back(), hit)) {
        hits_.back().distance = std::min(hits_.back().distance, distance);
        return;
    }
    hits_.push_back(std::move(hit));
}

PickHit PickSink::hitHere(double distance) const
{
    PickHit hit;
    hit.distance = distance;
    const auto whole = std::ranges::find(shown_, BlockRole::dimension, &Shown::role);
    for (auto shown = shown_.begin(); shown != whole; ++shown)
        hit.containers.insert(hit.containers.begin(), shown->owner);
    if (whole != shown_.end()) {
        hit.entity = whole->owner;
        hit.transform = whole->transform;
        return hit;
    }
    hit.entity = part_.isNull() ? entities_.back() : part_;
    hit.marker = marker_;
    hit.transform = transform();
    if (!part_.isNull() && partRole_ == PartRole::attribute)
        hit.containers.insert(hit.containers.begin(), entities_.back());
    return hit;
}

bool PickSink::isSamePiece(const PickHit& left, const PickHit& right)
{
    return left.entity == right.entity && left.marker == right.marker &&
           left.containers == right.containers;
}

} // namespace korra
