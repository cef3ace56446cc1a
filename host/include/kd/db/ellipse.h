#pragma once

#include "kd/db/curves.h"

/// An ellipse or an arc of one; angles are parameters: those of the circle that it is the image of.
class KdDbEllipse : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbEllipse)
public:
    KdDbEllipse() = default;

    /// @param majorAxis  from the centre to the end of the longer axis, at right angles to the
    /// normal
    /// @param radiusRatio  of the shorter axis to the longer one, above 0 and at most 1
    /// @param startAngle, endAngle  radians from the major axis; a full turn apart: all of it
    KdDbEllipse(const KdGePoint3d& center, const KdGeVector3d& normal,
                const KdGeVector3d& majorAxis, double radiusRatio, double startAngle = 0.0,
                double endAngle = KdGe::kFullTurn);

    KdGePoint3d center() const { return center_; }

    KdGeVector3d normal() const { return normal_; }

    KdGeVector3d majorAxis() const { return majorAxis_; }

    KdGeVector3d minorAxis() const;

    double radiusRatio() const { return radiusRatio_; }

    /// By any map: the image of an ellipse is an ellipse.
    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    int edgeCount() const override { return 1; }

    KdDbEntity* newEdge(int marker) const override;

private:
    KdGePoint3d center_;
    KdGeVector3d majorAxis_ = KdGeVector3d::kXAxis;
    KdGeVector3d normal_ = KdGeVector3d::kZAxis;
    double radiusRatio_ = 1.0;
    double startAngle_ = 0.0;
    double endAngle_ = KdGe::kFullTurn;
};
