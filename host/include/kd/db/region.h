#pragma once

#include "kd/db/curves.h"

/// A part of a plane, told by the curves around it.
///
/// A region that a file brings is kept as it is there: it shows nothing, has no edges and does not
/// follow a transform.
class KdDbRegion : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbRegion)
public:
    KdDbRegion() = default;

    /// Makes one region from curves in one plane, each closed in itself or continued by the next
    /// ones until they close; of a polyline its segments count. Its edges are copies, in the order
    /// of the curves.
    /// @param regions  the region is appended; the caller owns it
    /// @return eOk; eInvalidInput where a chain does not close or leaves the plane, or there is no
    ///         curve; eNullObjectPointer; eDegenerateGeometry where the curves span no plane
    static Kdapi::ErrorStatus createFromCurves(const KdArray<KdDbCurve*>& curves,
                                               KdArray<KdDbRegion*>& regions);

    /// eCannotScaleNonUniformly where an edge refuses it.
    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;
    int edgeCount() const override;
    KdDbEntity* newEdge(int marker) const override;
    std::optional<korra::Pieces> newPieces() const override;

private:
    korra::Owned<KdDbCurve> edges_;
};
