#include "kd/db/entity.h"

#include "gi/extents_sink.h"
#include "objects/contents.h"
#include "objects/setters.h"
#include "platform/gate.h"
#include "tables/drawing_settings.h"

#include <cmath>
#include <utility>

KDRX_DEFINE_MEMBERS(KdDbEntity, KdDbObject)

namespace {

/// True where a matrix scales every direction alike; it may mirror.
bool isSimilarity(const KdGeMatrix3d& matrix)
{
    KdGePoint3d origin;
    KdGeVector3d axes[3];
    matrix.getCoordSystem(origin, axes[0], axes[1], axes[2]);
    // Products of unit vectors turned in floating point stay well below this.
    constexpr double kRelative = 1e-9;
    const double size = axes[0].lengthSqrd();
    for (int i = 0; i < 3; ++i) {
        const KdGeVector3d& next = axes[(i + 1) % 3];
        if (std::abs(next.lengthSqrd() - size) > kRelative * size ||
            std::abs(axes[i].dotProduct(next)) > kRelative * size)
            return false;
    }
    return true;
}

} // namespace

KdDbExtents::KdDbExtents(const KdGePoint3d& minimum, const KdGePoint3d& maximum)
    : minimum_(minimum), maximum_(maximum), empty_(false)
{
}

void KdDbExtents::addPoint(const KdGePoint3d& point)
{
    KdGeExtents3d box;
    if (!empty_) {
        box.addPoint(minimum_);
        box.addPoint(maximum_);
    }
    box.addPoint(point);
    *this = KdDbExtents(box.minPoint(), box.maxPoint());
}

void KdDbExtents::addExt(const KdDbExtents& other)
{
    if (other.empty_)
        return;
    addPoint(other.minimum_);
    addPoint(other.maximum_);
}

KdDbEntity::KdDbEntity() = default;
KdDbEntity::~KdDbEntity() = default;

Kdapi::ErrorStatus KdDbEntity::setLayer(KdDbObjectId layer)
{
    return setReference("KdDbEntity::setLayer", layer_, layer, KdDbLayerTableRecord::desc());
}

Kdapi::ErrorStatus KdDbEntity::setColor(const KdCmColor& color)
{
    return set("KdDbEntity::setColor", color_, color);
}

Kdapi::ErrorStatus KdDbEntity::setLinetype(KdDbObjectId linetype)
{
    return setReference("KdDbEntity::setLinetype", linetype_, linetype,
                        KdDbLinetypeTableRecord::desc());
}

Kdapi::ErrorStatus KdDbEntity::setLinetypeScale(double scale)
{
    return setIf("KdDbEntity::setLinetypeScale", scale > 0.0, linetypeScale_, scale);
}

Kdapi::ErrorStatus KdDbEntity::setLineWeight(KdDb::LineWeight weight)
{
    return set("KdDbEntity::setLineWeight", lineWeight_, static_cast<short>(weight));
}

Kdapi::ErrorStatus KdDbEntity::setVisibility(KdDb::Visibility visibility)
{
    return set("KdDbEntity::setVisibility", visibility_, static_cast<short>(visibility));
}

void KdDbEntity::setDatabaseDefaults(KdDbDatabase* database)
{
    platform::gate("KdDbEntity::setDatabaseDefaults", objectId()).always([&] {
        if (!database || beginChange() != Kdapi::eOk)
            return;
        const korra::DrawingSettings current(*database);
        layer_ = database->clayer();
        linetype_ = database->celtype();
        linetypeScale_ = current.get(korra::settings::kEntityLinetypeScale);
        color_ = database->cecolor();
        lineWeight_ = static_cast<short>(database->celweight());
    });
}

Kdapi::ErrorStatus KdDbEntity::getGeomExtents(KdDbExtents& extents) const
{
    return platform::gate("KdDbEntity::getGeomExtents", objectId())
        .guard(Kdapi::eInvalidExtents, [&] {
            korra::ExtentsSink sink;
            draw(sink);
            if (sink.extents().isEmpty())
                return Kdapi::eInvalidExtents;
            extents = KdDbExtents(sink.extents().minPoint(), sink.extents().maxPoint());
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbEntity::beginTransform(const KdGeMatrix3d& matrix, Takes taken)
{
    if (const auto status = beginChange())
        return status;
    if (!matrix.isAffine() || matrix.isSingular())
        return Kdapi::eInvalidInput;
    if (taken == Takes::similarities && !isSimilarity(matrix))
        return Kdapi::eCannotScaleNonUniformly;
    return Kdapi::eOk;
}

Kdapi::ErrorStatus KdDbEntity::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [] { return Kdapi::eNotApplicable; });
}

Kdapi::ErrorStatus KdDbEntity::getSubentPathsAtGsMarker(KdDb::SubentType type, std::int64_t marker,
                                                        const KdGePoint3d&, const KdGeMatrix3d&,
                                                        KdArray<KdDbFullSubentPath>& paths) const
{
    return platform::gate("KdDbEntity::getSubentPathsAtGsMarker", objectId(), type, marker)
        .guard(Kdapi::eNotApplicable, [&] {
            paths.removeAll();
            if (type != KdDb::kEdgeSubentType)
                return Kdapi::eNotApplicable;
            if (marker >= 1 && marker <= edgeCount())
                paths.append(KdDbFullSubentPath(objectId(), KdDbSubentId(type, marker)));
            return Kdapi::eOk;
        });
}

KdDbEntity* KdDbEntity::subentPtr(const KdDbFullSubentPath& path) const
{
    return platform::gate("KdDbEntity::subentPtr", objectId()).guard(nullptr, [&]() -> KdDbEntity* {
        const KdDbSubentId& part = path.subentId();
        if (path.entityId() != objectId() || part.type() != KdDb::kEdgeSubentType ||
            part.index() < 1 || part.index() > edgeCount())
            return nullptr;
        KdDbEntity* edge = newEdge(static_cast<int>(part.index()));
        if (edge)
            dress(*edge);
        return edge;
    });
}

void KdDbEntity::dress(KdDbEntity& part) const
{
    part.layer_ = layer_;
    part.linetype_ = linetype_;
    part.linetypeScale_ = linetypeScale_;
    part.color_ = color_;
    part.lineWeight_ = lineWeight_;
}

Kdapi::ErrorStatus KdDbEntity::explode(KdArray<KdDbEntity*>& pieces) const
{
    return platform::gate("KdDbEntity::explode", objectId()).guard(Kdapi::eCannotExplode, [&] {
        std::optional<korra::Pieces> made = newPieces();
        if (!made)
            return Kdapi::eCannotExplode;
        KdArray<KdDbEntity*> all(pieces);
        for (const auto& piece : *made) {
            dress(*piece);
            all.append(piece.get());
        }
        for (auto& piece : *made)
            static_cast<void>(piece.release());
        std::swap(pieces, all);
        return Kdapi::eOk;
    });
}

KdDbEntity* KdDbEntity::newEdge(int) const
{
    return nullptr;
}

std::optional<korra::Pieces> KdDbEntity::newPieces() const
{
    return std::nullopt;
}

void KdDbEntity::describe(korra::ObjectVisitor& visitor)
{
    KdDbObject::describe(visitor);
    visitor.behindMarker(1, "Entity");
    visitor.name(8, layer_, korra::TableKind::layer);
    visitor.name(6, linetype_, korra::TableKind::linetype);
    visitor.color(62, color_);
    visitor.integer(370, lineWeight_, KdDb::kLnWtByLayer);
    visitor.real(48, linetypeScale_, 1.0);
    visitor.integer(60, visibility_, KdDb::kVisible);
}
