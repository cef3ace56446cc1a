#pragma once

/// How near two values must be to count as equal.
class KdGeTol {
public:
    /// Largest distance of equal points, drawing units.
    double equalPoint() const { return equalPoint_; }

    /// Largest length of the difference of equal vectors.
    double equalVector() const { return equalVector_; }

    KdGeTol& setEqualPoint(double distance)
    {
        equalPoint_ = distance;
        return *this;
    }

    KdGeTol& setEqualVector(double length)
    {
        equalVector_ = length;
        return *this;
    }

private:
    double equalPoint_ = 1e-10;
    double equalVector_ = 1e-10;
};

/// What geometry shares across the host.
struct KdGeContext {
    /// The tolerance of every comparison that names none.
    static KdGeTol gTol;
};
