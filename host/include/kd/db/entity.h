#pragma once

#include "kd/db/color.h"
#include "kd/db/object.h"
#include "kd/ge.h"
#include "kd/own/own.h"
#include "kd/own/shown_block.h"

#include <memory>
#include <optional>
#include <vector>

class KdDbEntity;

namespace korra {

/// Free-standing entities that belong to nobody else.
using Pieces = std::vector<std::unique_ptr<KdDbEntity>>;

} // namespace korra

/// The box around geometry: empty until something was added.
class KdDbExtents {
public:
    KdDbExtents() = default;
    KdDbExtents(const KdGePoint3d& minimum, const KdGePoint3d& maximum);

    bool isEmpty() const { return empty_; }

    /// The origin while the extents are empty.
    const KdGePoint3d& minPoint() const { return minimum_; }

    const KdGePoint3d& maxPoint() const { return maximum_; }

    void addPoint(const KdGePoint3d& point);
    void addExt(const KdDbExtents& other);

private:
    KdGePoint3d minimum_;
    KdGePoint3d maximum_;
    bool empty_ = true;
};

/// A part of an entity's graphics: an edge or a face by number.
class KdDbSubentId {
public:
    KdDbSubentId() = default;

    KdDbSubentId(KdDb::SubentType type, std::int64_t index) : type_(type), index_(index) {}

    KdDb::SubentType type() const { return type_; }

    std::int64_t index() const { return index_; }

private:
    KdDb::SubentType type_ = KdDb::kNullSubentType;
    std::int64_t index_ = 0;
};

/// A subentity with the entity that has it.
class KdDbFullSubentPath {
public:
    KdDbFullSubentPath() = default;

    KdDbFullSubentPath(KdDbObjectId entity, KdDbSubentId subentity)
        : entity_(entity), subentity_(subentity)
    {
    }

    KdDbObjectId entityId() const { return entity_; }

    const KdDbSubentId& subentId() const { return subentity_; }

private:
    KdDbObjectId entity_;
    KdDbSubentId subentity_;
};

/// An object with graphics, a part of a block.
class KdDbEntity : public KdDbObject {
    KDRX_DECLARE_MEMBERS(KdDbEntity)
public:
    ~KdDbEntity() override;

    /// The block, or the entity, that the entity is part of.
    KdDbObjectId blockId() const { return ownerId(); }

    KdDbObjectId layerId() const { return layer_; }

    Kdapi::ErrorStatus setLayer(KdDbObjectId layer);

    KdCmColor color() const { return color_; }

    Kdapi::ErrorStatus setColor(const KdCmColor& color);

    KdDbObjectId linetypeId() const { return linetype_; }

    Kdapi::ErrorStatus setLinetype(KdDbObjectId linetype);

    double linetypeScale() const { return linetypeScale_; }

    Kdapi::ErrorStatus setLinetypeScale(double scale);

    KdDb::LineWeight lineWeight() const { return static_cast<KdDb::LineWeight>(lineWeight_); }

    Kdapi::ErrorStatus setLineWeight(KdDb::LineWeight weight);

    KdDb::Visibility visibility() const { return static_cast<KdDb::Visibility>(visibility_); }

    Kdapi::ErrorStatus setVisibility(KdDb::Visibility visibility);

    /// Layer, colour, linetype, its scale and the line weight as the database has them current.
    void setDatabaseDefaults(KdDbDatabase* database);

    /// The exact box of the graphics in the coordinates of the owning block.
    /// @return eOk; eInvalidExtents, the box untouched, for an entity without graphics
    Kdapi::ErrorStatus getGeomExtents(KdDbExtents& extents) const;

    /// Moves the entity by a matrix; it must be open for writing.
    /// @return eOk; eNotOpenForWrite; eCannotScaleNonUniformly; eInvalidInput for a singular matrix
    virtual Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix);

    /// A free-standing copy moved by a matrix, which the caller owns. Of a circle or an arc that is
    /// scaled unevenly an arc of an ellipse.
    /// @param copy  written on success only
    /// @return eOk; eCannotScaleNonUniformly; eInvalidInput for a singular matrix
    Kdapi::ErrorStatus getTransformedCopy(const KdGeMatrix3d& matrix, KdDbEntity*& copy) const;

    /// The subentities of one type that lie at a graphics marker.
    /// @return eOk with an empty array where there is none; eNotApplicable for a type other than
    ///         edges
    Kdapi::ErrorStatus getSubentPathsAtGsMarker(KdDb::SubentType type, std::int64_t marker,
                                                const KdGePoint3d& pickPoint,
                                                const KdGeMatrix3d& viewTransform,
                                                KdArray<KdDbFullSubentPath>& paths) const;

    /// A free-standing entity that shows one subentity; the caller owns it; null for a path that
    /// is not of this entity.
    KdDbEntity* subentPtr(const KdDbFullSubentPath& path) const;

    /// Takes the entity apart: appends free-standing entities that together show what it shows,
    /// with its layer, colour, linetype and line weight. The caller owns them.
    /// @return eOk; eCannotExplode, nothing appended, for an entity that is not made of others
    Kdapi::ErrorStatus explode(KdArray<KdDbEntity*>& pieces) const;

    /// The plane that the entity lies in: through the first point of what it shows, its normal the
    /// entity's own where what it shows lies across that. Of a straight entity the plane of its
    /// line nearest to its own plane; of one that lies in no plane, and of one without a normal
    /// where there is a choice, that of its own normal or of the z axis.
    /// @return eOk; eNotApplicable, both untouched, for an entity that shows nothing
    Kdapi::ErrorStatus getPlane(KdGePlane& plane, KdDb::Planarity& planarity) const;

    /// Appends the points that the entity has in common with another, in this one's order: curves
    /// meet as they are, whatever else by what it shows, text by the boxes around its lines.
    /// @param type  kOnBothOperands
    /// @return eOk, also without a point; eNullObjectPointer; eNotApplicable for another type
    Kdapi::ErrorStatus intersectWith(const KdDbEntity* other, KdDb::Intersect type,
                                     KdArray<KdGePoint3d>& points, std::int64_t thisGsMarker = 0,
                                     std::int64_t otherGsMarker = 0) const;

    /// The same seen along a plane's normal: the points of this entity over which, or under which,
    /// the other lies.
    Kdapi::ErrorStatus intersectWith(const KdDbEntity* other, KdDb::Intersect type,
                                     const KdGePlane& projection, KdArray<KdGePoint3d>& points,
                                     std::int64_t thisGsMarker = 0,
                                     std::int64_t otherGsMarker = 0) const;

protected:
    KdDbEntity();

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    /// Draws the entity once, in the coordinates of the owning block.
    virtual void draw(korra::DrawSink& sink) const = 0;

    /// The block that the entity shows.
    virtual korra::ShownBlock shownBlock() const { return {}; }

    /// True where the inside of what the entity draws is filled.
    virtual bool isFilled() const { return false; }

    /// How many edges the entity has; markers run from 1.
    virtual int edgeCount() const { return 0; }

    /// A free-standing entity that shows the edge of a marker; null when there is none.
    virtual KdDbEntity* newEdge(int marker) const;

    /// What explode() gives, without layer and looks; nullopt for what is not made of others.
    virtual std::optional<korra::Pieces> newPieces() const;

    /// Which maps a kind of entity can follow.
    enum class Takes {
        affineMaps,
        similarities ///< it cannot be scaled differently in different directions
    };

    /// What every transformBy() is: `body` moves the fields when the entity can be changed so.
    template <class Body>
    Kdapi::ErrorStatus transform(const KdGeMatrix3d& matrix, Takes taken, Body body);

private:
    friend class korra::ObjectAccess;

    /// What intersectWith() is. @param projection  null: as they lie in space
    Kdapi::ErrorStatus addCommonPoints(const KdDbEntity* other, KdDb::Intersect type,
                                       const KdGePlane* projection,
                                       KdArray<KdGePoint3d>& points) const;

    /// Gives a part of the entity its layer and looks.
    void dress(KdDbEntity& part) const;

    Kdapi::ErrorStatus beginTransform(const KdGeMatrix3d& matrix, Takes taken);

    KdDbObjectId layer_;
    KdDbObjectId linetype_;
    double linetypeScale_ = 1.0;
    KdCmColor color_;
    short lineWeight_ = KdDb::kLnWtByLayer;
    short visibility_ = KdDb::kVisible;
};

/// Walks the entities of a block; the caller deletes it.
class KdDbBlockTableRecordIterator;
