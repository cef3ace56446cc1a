#pragma once

#include "kd/db/text.h"
#include "kd/own/own.h"

#include <vector>

/// Walks objects that another object owns; the caller deletes it.
class KdDbObjectIterator {
public:
    ~KdDbObjectIterator();
    KdDbObjectIterator(const KdDbObjectIterator&) = delete;
    KdDbObjectIterator& operator=(const KdDbObjectIterator&) = delete;

    void start() { next_ = 0; }

    bool done() const { return next_ >= ids_.size(); }

    void step() { ++next_; }

    /// Null behind the last object.
    KdDbObjectId objectId() const { return done() ? KdDbObjectId() : ids_[next_]; }

    KORRA_OWN()
    explicit KdDbObjectIterator(std::vector<KdDbObjectId> ids);

private:
    std::vector<KdDbObjectId> ids_;
    std::size_t next_ = 0;
};

/// An insertion of a block definition.
class KdDbBlockReference : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbBlockReference)
public:
    KdDbBlockReference() = default;
    KdDbBlockReference(const KdGePoint3d& position, KdDbObjectId blockTableRecord);

    /// The insertion point in the coordinates of the owning block.
    KdGePoint3d position() const;

    KdGeScale3d scaleFactors() const { return scale_; }

    double rotation() const { return rotation_; } ///< radians, about the normal

    KdGeVector3d normal() const { return place_.normal(); }

    KdDbObjectId blockTableRecord() const { return block_; }

    Kdapi::ErrorStatus setScaleFactors(const KdGeScale3d& scale);
    Kdapi::ErrorStatus setRotation(double rotation);

    /// Maps the definition's coordinates to those of the owning block:
    /// entity system of the normal × position × rotation × scale × minus the base point.
    KdGeMatrix3d blockTransform() const;

    /// Gives the reference an attribute, which it owns; it stays open for writing.
    Kdapi::ErrorStatus appendAttribute(KdDbObjectId& id, KdDbAttribute* attribute);

    /// A new iterator over the attributes that are not erased; the caller deletes it.
    KdDbObjectIterator* attributeIterator() const;

    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

    korra::ShownBlock shownBlock() const override
    {
        return {block_, static_cast<double>(columns()) * rows()};
    }

private:
    friend class korra::ObjectAccess;

    // A file may say 0 for an array of one.
    int columns() const { return columns_ > 0 ? columns_ : 1; }

    int rows() const { return rows_ > 0 ? rows_ : 1; }

    /// From the cell's coordinates, base point at the origin, to those of the owning block.
    KdGeMatrix3d insertion() const;
    KdGeMatrix3d definitionToCell() const;

    KdDbObjectId block_;
    korra::PlanarPlace place_;
    KdGePoint3d position_; ///< in the entity coordinate system of the normal
    KdGeScale3d scale_;
    double rotation_ = 0.0;
    korra::Owned<KdDbAttribute> attributes_;

    short columns_ = 1; ///< of an array of cells; spacing along the turned axes, drawing units
    short rows_ = 1;
    double columnSpacing_ = 0.0;
    double rowSpacing_ = 0.0;
};
