#pragma once

#include "kd/db/curves.h"

#include <array>

namespace korra {

/// Four corners; of a triangle the last two are one. A class of the program, none of the interface.
class FourCorners : public KdDbEntity {
protected:
    FourCorners() = default;

    explicit FourCorners(const std::array<KdGePoint3d, 4>& corners) : corners_(corners) {}

    KORRA_OWN()
    /// The places of the corners around the outline.
    virtual const std::array<unsigned short, 4>& around() const = 0;

    virtual bool isEdgeShown(int edge) const
    {
        static_cast<void>(edge);
        return true;
    }

    /// A corner in the coordinates of the owning block.
    virtual KdGePoint3d corner(unsigned short index) const { return corners_[index]; }

    /// A corner by its place. @return eInvalidIndex, the point untouched
    Kdapi::ErrorStatus giveCorner(const char* operation, unsigned short index,
                                  KdGePoint3d& point) const;

    void describeCorners(ObjectVisitor& visitor);
    void draw(DrawSink& sink) const override;

    int edgeCount() const override { return 4; }

    KdDbEntity* newEdge(int marker) const override;

    std::array<KdGePoint3d, 4> corners_;
};

/// A filled area with straight sides in one plane: what solids and traces are.
class FlatArea : public FourCorners {
public:
    KdGeVector3d normal() const { return place_.normal(); }

    double thickness() const { return place_.thickness(); }

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

protected:
    FlatArea() = default;
    using FourCorners::FourCorners;

    KORRA_OWN()
    const std::array<unsigned short, 4>& around() const override;

    KdGePoint3d corner(unsigned short index) const override;

    bool isFilled() const override { return true; }

    void describe(ObjectVisitor& visitor) override;

private:
    PlanarPlace place_; ///< the corners are given in its coordinates
};

} // namespace korra

/// A filled area; its sides go from the first corner over the second and the fourth to the third.
class KdDbSolid : public korra::FlatArea {
    KDRX_DECLARE_MEMBERS(KdDbSolid)
public:
    KdDbSolid() = default;

    /// In the plane of the drawing, or parallel to it.
    KdDbSolid(const KdGePoint3d& first, const KdGePoint3d& second, const KdGePoint3d& third,
              const KdGePoint3d& fourth)
        : FlatArea({first, second, third, fourth})
    {
    }

    /// A corner by its place from 0 on, in the coordinates of the owning block.
    /// @return eInvalidIndex, the point untouched
    Kdapi::ErrorStatus getPointAt(unsigned short index, KdGePoint3d& point) const;
};

/// A wide line; its corners are in the order of those of a solid.
class KdDbTrace : public korra::FlatArea {
    KDRX_DECLARE_MEMBERS(KdDbTrace)
public:
    KdDbTrace() = default;

    KdDbTrace(const KdGePoint3d& first, const KdGePoint3d& second, const KdGePoint3d& third,
              const KdGePoint3d& fourth)
        : FlatArea({first, second, third, fourth})
    {
    }

    /// As KdDbSolid::getPointAt().
    Kdapi::ErrorStatus getPointAt(unsigned short index, KdGePoint3d& point) const;
};

/// A face in space with three or four corners, one after the other around it; edges of it can be
/// invisible.
class KdDbFace : public korra::FourCorners {
    KDRX_DECLARE_MEMBERS(KdDbFace)
public:
    KdDbFace() = default;

    KdDbFace(const KdGePoint3d& first, const KdGePoint3d& second, const KdGePoint3d& third,
             const KdGePoint3d& fourth)
        : FourCorners({first, second, third, fourth})
    {
    }

    /// A corner by its place from 0 on. @return eInvalidIndex, the point untouched
    Kdapi::ErrorStatus getVertexAt(unsigned short index, KdGePoint3d& point) const;

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    const std::array<unsigned short, 4>& around() const override;

    bool isEdgeShown(int edge) const override { return ((flags_ >> edge) & 1) == 0; }

    void describe(korra::ObjectVisitor& visitor) override;

private:
    short flags_ = 0; ///< a bit for each edge that is not shown
};
