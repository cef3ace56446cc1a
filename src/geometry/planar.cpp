#include "orvex/planar.h"

#include "geometry/directions.h"
#include "support/opened.h"

#include <cmath>

using support::Opened;

namespace {

constexpr double kFullTurn = 6.283185307179586;

} // namespace

double NormAngle(double& angle)
{
    constexpr double kMostTurns = 1e6; // that are taken one by one; far beyond, that never ends
    if (!std::isfinite(angle))
        return angle;
    if (std::abs(angle) > kMostTurns * kFullTurn)
        angle = std::fmod(angle, kFullTurn);
    while (angle >= kFullTurn)
        angle -= kFullTurn;
    while (angle < 0.0)
        angle += kFullTurn;
    return angle;
}

int BetweenArc(double angle, double startAngle, double endAngle)
{
    constexpr double kTolerance = 0.01;
    NormAngle(angle);
    NormAngle(startAngle);
    NormAngle(endAngle);
    if (std::abs(angle - startAngle) < kTolerance || std::abs(angle - endAngle) < kTolerance)
        return 1;
    if (startAngle > endAngle) // through angle 0
        return angle > startAngle || angle < endAngle;
    return startAngle < angle && angle < endAngle;
}

double GetArcStartAngle(double firstAngle, double secondAngle, double throughAngle)
{
    const auto fromFirst = [firstAngle](double angle) {
        return firstAngle > angle ? angle + kFullTurn : angle;
    };
    return fromFirst(secondAngle) >= fromFirst(throughAngle) ? firstAngle : secondAngle;
}

double GetArcStartAngle(const KdGePoint3d& center, const KdGePoint3d& firstPoint,
                        const KdGePoint3d& secondPoint, const KdGePoint3d& throughPoint)
{
    const double firstAngle = directionAngle(center, firstPoint);
    const double secondAngle = directionAngle(center, secondPoint);
    const double throughAngle = directionAngle(center, throughPoint);
    return GetArcStartAngle(firstAngle, secondAngle, throughAngle);
}

int PointOnLine(const KdGePoint3d& lineStart, const KdGePoint3d& lineEnd, const KdGePoint3d& point)
{
    constexpr double kTolerance = 0.001;
    const double toEnd = lineEnd.distanceTo(point);
    const double toStart = lineStart.distanceTo(point);
    return std::abs(toEnd + toStart - lineStart.distanceTo(lineEnd)) < kTolerance;
}

double Dist_PntToLine(const KdGePoint3d& point, const KdGePoint3d& lineStart,
                      const KdGePoint3d& lineEnd, KdGePoint3d& foot)
{
    const KdGePoint3d from = point; // the foot may take its place
    GetPerpendPoint(from, lineStart, lineEnd, foot);
    return foot.distanceTo(from);
}

bool GetPerpendPoint(const KdGePoint3d& point, const KdGePoint3d& lineStart,
                     const KdGePoint3d& lineEnd, KdGePoint3d& foot)
{
    const KdGeLine3d line(lineStart, lineEnd);
    const KdGePlane plane(point, lineEnd - lineStart);
    return plane.intersectWith(line, foot, KdGeContext::gTol);
}

bool GetPerpendPoint(const KdGePoint3d& point, KdDbObjectId lineId, KdGePoint3d& foot)
{
    const Opened<KdDbEntity> entity(lineId, KdDb::kForRead);
    const KdDbLine* const line = KdDbLine::cast(entity.get());
    return line && GetPerpendPoint(point, line->startPoint(), line->endPoint(), foot);
}

void GetMirrorPoint(const KdGePoint3d& point, const KdGePoint3d& axisPoint,
                    const KdGeVector3d& axisDirection, KdGePoint3d& mirrored)
{
    KdGePoint3d foot; // stays the origin for an axis without direction
    GetPerpendPoint(point, axisPoint, axisPoint + axisDirection, foot);
    mirrored = foot + (foot - point);
}

void GetMidPoint(const KdGePoint3d& first, const KdGePoint3d& second, KdGePoint3d& mid)
{
    mid.set((first.x + second.x) * 0.5, (first.y + second.y) * 0.5, (first.z + second.z) * 0.5);
}

void ZBXTransform(const KdGePoint3d& point, KdGePoint3d& local, const KdGePoint3d& origin,
                  double angle)
{
    const double dx = point.x - origin.x;
    const double dy = point.y - origin.y;
    const double sine = std::sin(angle);
    const double cosine = std::cos(angle);
    local.set(sine * dy + cosine * dx, cosine * dy - sine * dx, origin.z);
}
