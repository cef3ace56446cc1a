#include "orvex/outlines.h"

#include "support/pieces.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

using support::Pieces;

namespace {

using Points = std::vector<KdGePoint3d>;

constexpr double kPi = 3.141592653589793;

std::unique_ptr<KdDbPolyline> newPolyline(const Points& points)
{
    auto polyline = std::make_unique<KdDbPolyline>(static_cast<unsigned int>(points.size()));
    for (const KdGePoint3d& point : points)
        polyline->addVertexAt(polyline->numVerts(), {point.x, point.y}, 0.0, -1.0, -1.0, 0);
    return polyline;
}

double diagonalInPlane(const KdDbCurve& curve)
{
    KdDbExtents extents;
    curve.getGeomExtents(extents);
    const KdGeVector3d diagonal = extents.maxPoint() - extents.minPoint();
    return std::hypot(diagonal.x, diagonal.y);
}

std::unique_ptr<KdDbPolyline> newBounding(const KdDbCurve& curve)
{
    constexpr double kMostSteps = 1e5; // a curve seen edge-on has a length and hardly a diagonal
    double step = diagonalInPlane(curve) / 40.0;
    if (!curve.isKindOf(KdDbEllipse::desc()) && !curve.isKindOf(KdDbSpline::desc()))
        return nullptr;

    double startParam = 0.0, endParam = 0.0, startDistance = 0.0, endDistance = 0.0;
    curve.getEndParam(endParam);
    curve.getDistAtParam(endParam, endDistance);
    curve.getStartParam(startParam);
    curve.getDistAtParam(startParam, startDistance);
    const double length = endDistance - startDistance;
    step = std::max(std::min(step, length / 20.0), length / kMostSteps);

    Points points;
    KdGePoint3d point;
    curve.getStartPoint(point);
    points.push_back(point);
    for (double distance = 0.0; distance < length; distance += step) {
        curve.getPointAtDist(distance, point);
        points.push_back(point);
    }
    curve.getEndPoint(point);
    points.push_back(point);
    return newPolyline(points);
}

/// A circle as two half circles.
std::unique_ptr<KdDbPolyline> newHalves(const KdDbCircle& circle)
{
    auto polyline = std::make_unique<KdDbPolyline>();
    for (const double param : {0.0, kPi}) {
        KdGePoint3d point;
        circle.getPointAtParam(param, point);
        polyline->addVertexAt(polyline->numVerts(), {point.x, point.y}, 1.0);
    }
    polyline->setClosed(true);
    return polyline;
}

std::unique_ptr<KdDbPolyline> newSegment(const KdDbArc& arc)
{
    const KdGePoint3d center = arc.center();
    const auto at = [&](double angle) {
        return KdGePoint2d(center.x + arc.radius() * std::cos(angle),
                           center.y + arc.radius() * std::sin(angle));
    };
    double sweep = arc.endAngle() - arc.startAngle();
    if (sweep < 0.0)
        sweep += 2.0 * kPi;
    auto polyline = std::make_unique<KdDbPolyline>(2U);
    polyline->addVertexAt(0, at(arc.startAngle()), std::tan(sweep * 0.25));
    polyline->addVertexAt(1, at(arc.endAngle()), 0.0);
    return polyline;
}

/// An edge that is no line as a polyline; null for what has no outline.
std::unique_ptr<KdDbPolyline> newPolylineOf(const KdDbEntity& edge)
{
    if (const KdDbCircle* const circle = KdDbCircle::cast(&edge))
        return newHalves(*circle);
    if (const KdDbArc* const arc = KdDbArc::cast(&edge))
        return newSegment(*arc);
    const KdDbCurve* const curve = KdDbCurve::cast(&edge);
    return curve ? newBounding(*curve) : nullptr;
}

/// How many points stand for an arc: more where the turn from its end on to its start is wide, and
/// where the radius is large.
int sampleCount(const KdGeCircArc2d& arc)
{
    double turn = arc.startAng() - arc.endAng();
    if (turn < 0.0)
        turn += 2.0 * kPi;
    const double width = turn * 0.5 * kPi;
    const double byWidth = std::trunc(std::max(width * 8.99, 2.0));
    const double byRadius = std::trunc(std::sqrt(arc.radius() * 1000.0 / 1.3) * 0.3222 * width);
    const double count = byRadius < byWidth ? byWidth : std::min(byRadius, 100.0);
    return count > 2.0 ? static_cast<int>(count) : 2; // also where it is no number
}

/// Walks the edges of a region one after the other.
class OutlineWalk {
public:
    /// @param firstIsBackwards  whether the first edge is walked from its end to its start
    explicit OutlineWalk(bool firstIsBackwards) : firstIsBackwards_(firstIsBackwards) {}

    void along(const KdDbEntity& edge)
    {
        if (const KdDbLine* const line = KdDbLine::cast(&edge))
            walk({line->startPoint(), line->endPoint()});
        else if (const auto polyline = newPolylineOf(edge))
            along(*polyline);
        isFirst_ = false;
    }

    /// The points so far, without the one where the walk stands.
    const Points& points() const { return points_; }

private:
    void along(const KdDbPolyline& polyline)
    {
        double bulge = 0.0;
        polyline.getBulgeAt(0, bulge);
        if (bulge == 0.0)
            return alongVertices(polyline);
        for (unsigned int segment = 0; segment < polyline.numVerts(); ++segment) {
            KdGeCircArc2d arc;
            if (polyline.getArcSegAt(segment, arc) == Kdapi::eOk)
                along(arc);
        }
    }

    void alongVertices(const KdDbPolyline& polyline)
    {
        Points vertices(polyline.numVerts());
        for (unsigned int index = 0; index < polyline.numVerts(); ++index)
            polyline.getPointAt(index, vertices[index]);
        walk(std::move(vertices));
    }

    void along(const KdGeCircArc2d& arc)
    {
        KdArray<KdGePoint2d> samples;
        arc.getSamplePoints(sampleCount(arc), samples);
        Points chain;
        for (const KdGePoint2d& sample : samples)
            chain.emplace_back(sample.x, sample.y, 0.0);
        last_.z = 0.0; // how near an arc is shows in the plane
        walk(std::move(chain));
    }

    /// Goes along a chain of points, from the end that is nearer; of equally near ones the start.
    void walk(Points chain)
    {
        if (chain.empty())
            return;
        if (isFirst_ ? firstIsBackwards_
                     : chain.front().distanceTo(last_) > chain.back().distanceTo(last_))
            std::reverse(chain.begin(), chain.end());
        last_ = chain.back();
        points_.insert(points_.end(), chain.begin(), chain.end() - 1);
    }

    Points points_;
    KdGePoint3d last_;
    bool isFirst_ = true;
    bool firstIsBackwards_;
};

/// Whether the first edge meets the second one with its start.
bool startsAtJoint(const KdDbEntity& first, const KdDbEntity& second)
{
    const KdDbCurve* const one = KdDbCurve::cast(&first);
    const KdDbCurve* const other = KdDbCurve::cast(&second);
    if (!one || !other)
        return false;
    KdGePoint3d joint, start, end;
    one->getStartPoint(joint);
    other->getStartPoint(start);
    other->getEndPoint(end);
    return joint.isEqualTo(start, KdGeContext::gTol) || joint.isEqualTo(end, KdGeContext::gTol);
}

} // namespace

KdDbPolyline* CreateBounding(KdDbCurve* curve)
{
    return curve ? newBounding(*curve).release() : nullptr;
}

int GetPolylineFromRegion(KdDbRegion* region, KdDbPolyline*& outline)
{
    if (!region)
        return 0;
    const Pieces edges(*region);
    const bool hasJoint = edges.length() >= 2;
    if (hasJoint && (!edges[0] || !edges[1]))
        return 0;
    OutlineWalk walk(hasJoint && startsAtJoint(*edges[0], *edges[1]));
    for (const KdDbEntity* edge : edges) {
        if (edge)
            walk.along(*edge);
    }
    Points points = walk.points();
    if (points.empty())
        return 0;
    points.push_back(points.front());
    outline = newPolyline(points).release();
    return 1;
}
