#pragma once

namespace KdGe {

/// The full turn as a double.
inline constexpr double kFullTurn = 6.283185307179586;

/// The angle in [0, 2π), strictly below `kFullTurn`, that differs from an angle by full turns.
/// @param angle  radians
/// @return NaN where the angle is not finite
double normalAngle(double angle);

/// The angle of a direction, counter-clockwise from the x axis, strictly below `kFullTurn`.
/// @return 0 for the zero direction
double directionAngle(double x, double y);

} // namespace KdGe
