#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// Angles, points and lines: what a drafting command asks of them again and again.
///
/// Angles are radians, counter-clockwise; lines are unbounded where nothing else is said. An output
/// may be the same object as an input.

/// Brings an angle into the full turn from 0 on, adding or taking away one turn after the other:
/// the result is that of these sums, to the last bit. So a negative angle too small to count beside
/// a turn becomes the full turn itself.
/// @param angle  also the result; beyond a million turns the remainder counts, and what is not
///               finite stays as it is
/// @return the new angle
ORVEX_API double NormAngle(double& angle);

/// Whether an angle lies on the arc from a start to an end angle, or within 0.01 of either.
///
/// All three are normalised first. The tolerance does not reach across angle 0: just above it is
/// not near just below the full turn.
/// @return 1 or 0
ORVEX_API int BetweenArc(double angle, double startAngle, double endAngle);

/// The start, counter-clockwise, of an arc that is known by its two ends and a direction through
/// which it passes: one of the two ends.
/// @param firstAngle, secondAngle, throughAngle  in [0, 2π); they are not normalised
ORVEX_API double GetArcStartAngle(double firstAngle, double secondAngle, double throughAngle);

/// As GetArcStartAngle() above, with the directions from the center to the points.
ORVEX_API double GetArcStartAngle(const KdGePoint3d& center, const KdGePoint3d& firstPoint,
                                  const KdGePoint3d& secondPoint, const KdGePoint3d& throughPoint);

/// Whether a point lies on a segment, its ends included: the way from end to end by the point is
/// less than 0.001 longer.
/// @return 1 or 0
ORVEX_API int PointOnLine(const KdGePoint3d& lineStart, const KdGePoint3d& lineEnd,
                          const KdGePoint3d& point);

/// The distance of a point from a line.
/// @param foot  the point of the line that is nearest; where the line's points coincide it stays,
///              and the distance is measured to it
ORVEX_API double Dist_PntToLine(const KdGePoint3d& point, const KdGePoint3d& lineStart,
                                const KdGePoint3d& lineEnd, KdGePoint3d& foot);

/// The foot of the perpendicular from a point to a line.
/// @return false, the foot untouched, where the line's points coincide
ORVEX_API bool GetPerpendPoint(const KdGePoint3d& point, const KdGePoint3d& lineStart,
                               const KdGePoint3d& lineEnd, KdGePoint3d& foot);

/// The foot of the perpendicular from a point to the line through a line entity.
/// @return false, the foot untouched, also when the id cannot be opened or is no line
ORVEX_API bool GetPerpendPoint(const KdGePoint3d& point, KdDbObjectId lineId, KdGePoint3d& foot);

/// The image of a point reflected in an axis; in the origin for an axis without direction.
ORVEX_API void GetMirrorPoint(const KdGePoint3d& point, const KdGePoint3d& axisPoint,
                              const KdGeVector3d& axisDirection, KdGePoint3d& mirrored);

/// The point halfway between two points.
ORVEX_API void GetMidPoint(const KdGePoint3d& first, const KdGePoint3d& second, KdGePoint3d& mid);

/// A point as a frame in the plane has it whose x axis makes an angle with that of the world.
/// @param local  z is that of the frame's origin, whatever the point's
ORVEX_API void ZBXTransform(const KdGePoint3d& point, KdGePoint3d& local, const KdGePoint3d& origin,
                            double angle);
