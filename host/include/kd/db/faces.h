#pragma once

#include "kd/db/entity.h"
#include "kd/own/corners.h"

/// A filled area; its sides go from the first corner over the second and the fourth to the third.
class KdDbSolid : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbSolid)
public:
    KdDbSolid() = default;

    /// In the plane of the drawing, or parallel to it.
    KdDbSolid(const KdGePoint3d& first, const KdGePoint3d& second, const KdGePoint3d& third,
              const KdGePoint3d& fourth)
        : area_({first, second, third, fourth})
    {
    }

    KdGeVector3d normal() const { return area_.place().normal(); }

    double thickness() const { return area_.place().thickness(); }

    /// A corner by its place from 0 on, in the coordinates of the owning block.
    /// @return eInvalidIndex, the point untouched
    Kdapi::ErrorStatus getPointAt(unsigned short index, KdGePoint3d& point) const;

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

    bool isFilled() const override { return true; }

    int edgeCount() const override { return 4; }

    KdDbEntity* newEdge(int marker) const override;

private:
    korra::FlatArea area_;
};

/// A wide line; its corners are in the order of those of a solid.
class KdDbTrace : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbTrace)
public:
    KdDbTrace() = default;

    /// In the plane of the drawing, or parallel to it.
    KdDbTrace(const KdGePoint3d& first, const KdGePoint3d& second, const KdGePoint3d& third,
              const KdGePoint3d& fourth)
        : area_({first, second, third, fourth})
    {
    }

    KdGeVector3d normal() const { return area_.place().normal(); }

    double thickness() const { return area_.place().thickness(); }

    /// As KdDbSolid::getPointAt().
    Kdapi::ErrorStatus getPointAt(unsigned short index, KdGePoint3d& point) const;

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

    bool isFilled() const override { return true; }

    int edgeCount() const override { return 4; }

    KdDbEntity* newEdge(int marker) const override;

private:
    korra::FlatArea area_;
};

/// A face in space with three or four corners, one after the other around it; edges of it can be
/// invisible.
class KdDbFace : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbFace)
public:
    KdDbFace() = default;

    KdDbFace(const KdGePoint3d& first, const KdGePoint3d& second, const KdGePoint3d& third,
             const KdGePoint3d& fourth)
        : corners_({first, second, third, fourth})
    {
    }

    /// A corner by its place from 0 on. @return eInvalidIndex, the point untouched
    Kdapi::ErrorStatus getVertexAt(unsigned short index, KdGePoint3d& point) const;

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

    int edgeCount() const override { return 4; }

    KdDbEntity* newEdge(int marker) const override;

private:
    korra::Corners corners_;
    short hiddenEdges_ = 0; ///< a bit for each
};
