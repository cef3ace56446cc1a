#pragma once

#include "kd/db/curves.h"

namespace korra {

/// What lines without an end share; a class of the program, none of the interface.
class UnboundedLine : public KdDbCurve {
public:
    KdGePoint3d basePoint() const { return base_; }

    KdGeVector3d unitDir() const { return direction_; }

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

protected:
    UnboundedLine() = default;

    UnboundedLine(const KdGePoint3d& base, const KdGeVector3d& direction)
        : base_(base), direction_(direction.normal())
    {
    }

    KORRA_OWN()

    int edgeCount() const override { return 1; }

    bool hasDirection() const { return direction_.length() > 0.0; }

    void describeAs(const char* marker, ObjectVisitor& visitor);

private:
    KdGePoint3d base_;
    KdGeVector3d direction_ = KdGeVector3d::kXAxis; ///< unit, except where a file gave another one
};

} // namespace korra

/// A line without ends through a point.
class KdDbXline : public korra::UnboundedLine {
    KDRX_DECLARE_MEMBERS(KdDbXline)
public:
    KdDbXline() = default;

    KdDbXline(const KdGePoint3d& base, const KdGeVector3d& direction)
        : UnboundedLine(base, direction)
    {
    }

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    KdDbEntity* newEdge(int marker) const override;
};

/// A line from a point without an end.
class KdDbRay : public korra::UnboundedLine {
    KDRX_DECLARE_MEMBERS(KdDbRay)
public:
    KdDbRay() = default;

    KdDbRay(const KdGePoint3d& base, const KdGeVector3d& direction) : UnboundedLine(base, direction)
    {
    }

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    KdDbEntity* newEdge(int marker) const override;
};
