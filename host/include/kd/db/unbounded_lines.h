#pragma once

#include "kd/db/curves.h"

/// A line without ends through a point.
class KdDbXline : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbXline)
public:
    KdDbXline() = default;

    KdDbXline(const KdGePoint3d& base, const KdGeVector3d& direction)
        : base_(base), direction_(direction.normal())
    {
    }

    KdGePoint3d basePoint() const { return base_; }

    KdGeVector3d unitDir() const { return direction_; }

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    int edgeCount() const override { return 1; }

    KdDbEntity* newEdge(int marker) const override;

private:
    KdGePoint3d base_;
    KdGeVector3d direction_ = KdGeVector3d::kXAxis; ///< unit, except where a file gave another one
};

/// A line from a point without an end.
class KdDbRay : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbRay)
public:
    KdDbRay() = default;

    KdDbRay(const KdGePoint3d& base, const KdGeVector3d& direction)
        : base_(base), direction_(direction.normal())
    {
    }

    KdGePoint3d basePoint() const { return base_; }

    KdGeVector3d unitDir() const { return direction_; }

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    int edgeCount() const override { return 1; }

    KdDbEntity* newEdge(int marker) const override;

private:
    KdGePoint3d base_;
    KdGeVector3d direction_ = KdGeVector3d::kXAxis; ///< unit, except where a file gave another one
};
