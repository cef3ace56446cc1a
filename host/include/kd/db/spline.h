#pragma once

#include "kd/db/curves.h"

/// A rational B-spline of any degree and knots, or a cubic one through fit points.
class KdDbSpline : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbSpline)
public:
    KdDbSpline() = default;

    /// @param knots    never falling; as many as control points, degree and one
    /// @param weights  above 0, one for each control point; none: all alike
    KdDbSpline(int degree, const KdArray<KdGePoint3d>& controlPoints, const KdArray<double>& knots,
               const KdArray<double>& weights = {});

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    int edgeCount() const override { return 1; }

    KdDbEntity* newEdge(int marker) const override;

private:
    /// Gives a spline that only has fit points its control points: the curve through the images of
    /// the fit points would be another one than the image of the curve.
    void fixControlPoints();

    int degree_ = 3;
    short flags_ = 0;
    KdGeVector3d normal_ = KdGeVector3d::kZAxis; ///< of the plane of a flat one
    double knotTolerance_ = 1e-7;
    double controlTolerance_ = 1e-7;
    double fitTolerance_ = 1e-10;
    KdGeVector3d startTangent_; ///< of a fitted spline; zero: none given
    KdGeVector3d endTangent_;
    std::vector<double> knots_;
    std::vector<double> weights_; ///< none: all alike
    std::vector<KdGePoint3d> controlPoints_;
    std::vector<KdGePoint3d> fitPoints_; ///< without control points the spline goes through them
};
