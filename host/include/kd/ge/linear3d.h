#pragma once

#include "kd/ge/curve3d.h"

/// A straight curve; the parameter counts multiples of `derivative` from `pointOnLine`.
class KdGeLinearEnt3d : public KdGeCurve3d {
public:
    const KdGePoint3d& pointOnLine() const { return origin_; }

    /// The unit direction; the zero vector where the two defining points coincide exactly.
    KdGeVector3d direction() const;

    /// The vector that one unit of parameter spans, of any length.
    const KdGeVector3d& derivative() const { return span_; }

    KdGePoint3d evalPoint(double param) const override { return origin_ + span_ * param; }

    KdGeVector3d firstDerivative(double param) const override;
    using KdGeCurve3d::length;
    double length(double fromParam, double toParam,
                  double tol = KdGeContext::gTol.equalPoint()) const override;

    /// The datum itself where the curve has no length.
    double paramAtLength(double datumParam, double length, bool forward = true,
                         double tol = KdGeContext::gTol.equalPoint()) const override;
    double nearestParam(const KdGePoint3d& point) const override;

protected:
    KdGeLinearEnt3d(const KdGePoint3d& origin, const KdGeVector3d& span)
        : origin_(origin), span_(span)
    {
    }

    KdGePoint3d origin_;
    KdGeVector3d span_;
};

/// An unbounded line.
class KdGeLine3d : public KdGeLinearEnt3d {
public:
    /// The world x axis.
    KdGeLine3d() : KdGeLinearEnt3d(KdGePoint3d::kOrigin, KdGeVector3d::kXAxis) {}

    KdGeLine3d(const KdGePoint3d& point, const KdGeVector3d& direction)
        : KdGeLinearEnt3d(point, direction)
    {
    }

    /// The line through two points, parameter 0 at the first and 1 at the second.
    KdGeLine3d(const KdGePoint3d& first, const KdGePoint3d& second)
        : KdGeLinearEnt3d(first, second - first)
    {
    }

    std::unique_ptr<KdGeCurve3d> clone() const override;
    double startParam() const override;
    double endParam() const override;
    bool transformBy(const KdGeMatrix3d& matrix) override;

    void reverse() override { span_.negate(); }

    KdGeExtents3d extentsUnder(const KdGeMatrix3d& matrix) const override;

protected:
    void flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                     std::vector<KdGePoint3d>& vertices) const override;
};

/// A straight segment, parameter 0 at its start and 1 at its end; it may have no length.
class KdGeLineSeg3d : public KdGeLinearEnt3d {
public:
    /// From the origin to the unit point of the x axis.
    KdGeLineSeg3d() : KdGeLineSeg3d(KdGePoint3d::kOrigin, KdGePoint3d(1.0, 0.0, 0.0)) {}

    KdGeLineSeg3d(const KdGePoint3d& start, const KdGePoint3d& end)
        : KdGeLinearEnt3d(start, end - start), end_(end)
    {
    }

    std::unique_ptr<KdGeCurve3d> clone() const override;

    double startParam() const override { return 0.0; }

    double endParam() const override { return 1.0; }

    /// Exactly the given points at 0 and 1.
    KdGePoint3d evalPoint(double param) const override;
    bool transformBy(const KdGeMatrix3d& matrix) override;

    void reverse() override { *this = KdGeLineSeg3d(end_, origin_); }

    KdGeExtents3d extentsUnder(const KdGeMatrix3d& matrix) const override;

protected:
    void flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                     std::vector<KdGePoint3d>& vertices) const override;

private:
    KdGePoint3d end_;
};

/// A line with a start and no end; parameter 0 at its start.
class KdGeRay3d : public KdGeLinearEnt3d {
public:
    /// The positive half of the world x axis.
    KdGeRay3d() : KdGeLinearEnt3d(KdGePoint3d::kOrigin, KdGeVector3d::kXAxis) {}

    KdGeRay3d(const KdGePoint3d& start, const KdGeVector3d& direction)
        : KdGeLinearEnt3d(start, direction)
    {
    }

    std::unique_ptr<KdGeCurve3d> clone() const override;

    double startParam() const override { return 0.0; }

    double endParam() const override;
    bool transformBy(const KdGeMatrix3d& matrix) override;

    /// The same points; a ray that ends where it started would have no start.
    void reverse() override {}

    KdGeExtents3d extentsUnder(const KdGeMatrix3d& matrix) const override;

protected:
    void flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                     std::vector<KdGePoint3d>& vertices) const override;
};
