#include "kd/ge/angle.h"

#include <cmath>

double KdGe::normalAngle(double angle)
{
    const double rest = std::fmod(angle, kFullTurn);
    const double normal = rest < 0.0 ? rest + kFullTurn : rest;
    // A tiny negative rest plus a full turn rounds to the full turn itself.
    return normal >= kFullTurn ? 0.0 : normal + 0.0;
}

double KdGe::directionAngle(double x, double y)
{
    return normalAngle(std::atan2(y, x));
}
