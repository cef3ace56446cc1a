#pragma once

#include "kd/db/curves.h"

/// A line with an arrow that leads to an annotation; its curve runs from the arrow's tip on. The
/// arrow follows the dimension style and the overrides in the "ACAD" extended data.
class KdDbLeader : public KdDbCurve {
    KDRX_DECLARE_MEMBERS(KdDbLeader)
public:
    KdDbLeader() = default;

    /// A leader without vertices has no geometry, and with one neither.
    Kdapi::ErrorStatus appendVertex(const KdGePoint3d& vertex);

    int numVertices() const { return static_cast<int>(vertices_.size()); }

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    std::unique_ptr<KdGeCurve3d> geometry() const override;

    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

    /// Those of the straight pieces; a smooth leader is one.
    int edgeCount() const override;
    KdDbEntity* newEdge(int marker) const override;

private:
    void drawArrow(korra::DrawSink& sink, const KdGeCurve3d& curve) const;

    KdDbObjectId style_;
    KdDbObjectId annotation_;
    short hasArrow_ = 1;
    short isSmooth_ = 0;
    short annotationKind_ = 3;
    short hookDirection_ = 0;
    short hasHook_ = 0;
    double annotationHeight_ = 0.0;
    double annotationWidth_ = 0.0;
    std::vector<KdGePoint3d> vertices_;
    KdGeVector3d normal_ = KdGeVector3d::kZAxis;
    KdGeVector3d horizontal_ = KdGeVector3d::kXAxis;
    KdGeVector3d offsetFromBlock_;
    KdGeVector3d offsetFromText_;
};
