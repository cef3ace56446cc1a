#include "entities/curve_entity.h"
#include "gi/draw_sink.h"
#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

#include <algorithm>

KDRX_DEFINE_MEMBERS(KdDbVertex, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbVertexCurve, KdDbCurve)
KDRX_DEFINE_MEMBERS(KdDb2dPolyline, KdDbVertexCurve)
KDRX_DEFINE_MEMBERS(KdDb3dPolyline, KdDbVertexCurve)

using korra::ObjectAccess;

namespace {

constexpr short kHasTangent = 2;

/// A control point of the frame from which a curve was fitted: it is not on the curve.
constexpr short kFrameVertex = 16;

/// A vertex of a curve in space.
constexpr short kInSpace = 32;

} // namespace

Kdapi::ErrorStatus KdDbVertex::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        position_.transformBy(matrix);
        return Kdapi::eOk;
    });
}

void KdDbVertex::contentsMayDiffer() const noexcept
{
    if (const auto* const polyline = KdDbCurve::cast(ObjectAccess::object(ownerId())))
        polyline->contentsMayDiffer();
}

void KdDbVertex::moveInPlane(const korra::PlaneImage& image)
{
    position_.transformBy(image.map);
    startWidth_ *= image.scale;
    endWidth_ *= image.scale;
    if ((flags_ & kHasTangent) != 0)
        tangent_ = image.angle(tangent_);
}

void KdDbVertex::draw(korra::DrawSink& sink) const
{
    sink.point(position_);
}

void KdDbVertex::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "Vertex");
    visitor.behindMarker(3, (flags_ & kInSpace) != 0 ? "3dPolylineVertex" : "2dVertex");
    visitor.point(10, position_);
    visitor.real(40, startWidth_, 0.0);
    visitor.real(41, endWidth_, 0.0);
    visitor.real(42, bulge_, 0.0);
    visitor.integer(70, flags_, 0);
    visitor.angle(50, tangent_, 0.0);
}

Kdapi::ErrorStatus KdDbVertexCurve::appendVertex(KdDbVertex* vertex)
{
    KdDbObjectId id;
    const auto status = appendVertex(id, vertex);
    if (status == Kdapi::eOk && !id.isNull())
        vertex->close();
    return status;
}

Kdapi::ErrorStatus KdDbVertexCurve::appendVertex(KdDbObjectId& id, KdDbVertex* vertex)
{
    return platform::gate("KdDbVertexCurve::appendVertex", objectId())
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (vertex && !isPlanar())
                vertex->flags_ |= kInSpace;
            return ObjectAccess::appendPart(*this, vertex, id);
        });
}

std::vector<KdDbVertexCurve::Segment> KdDbVertexCurve::segments() const
{
    std::vector<Segment> result;
    const KdDbVertex* first = nullptr;
    const KdDbVertex* last = nullptr;
    for (const KdDbVertex* vertex : vertices_.each()) {
        if (vertex->isErased() || (vertex->flags_ & kFrameVertex) != 0)
            continue;
        if (last)
            result.push_back({last, vertex});
        else
            first = vertex;
        last = vertex;
    }
    if (isClosed() && last != first)
        result.push_back({last, first});
    return result;
}

std::unique_ptr<KdGeCurve3d> KdDbVertexCurve::geometry() const
{
    std::vector<std::unique_ptr<KdGeCurve3d>> pieces;
    for (const Segment& segment : segments())
        pieces.push_back(segmentGeometry(*segment.from, *segment.to));
    if (pieces.empty())
        return nullptr;
    return std::make_unique<KdGeCompositeCurve3d>(std::move(pieces));
}

Kdapi::ErrorStatus KdDbVertexCurve::transformBy(const KdGeMatrix3d& matrix)
{
    const bool hasArcs =
        isPlanar() && std::ranges::any_of(vertices_.objects(), [](const KdDbObject* vertex) {
            return korra::isBulged(static_cast<const KdDbVertex*>(vertex)->bulge());
        });
    return transform(matrix, hasArcs ? Takes::similarities : Takes::affineMaps, [&] {
        if (!isPlanar()) {
            for (KdDbVertex* vertex : vertices_.each()) {
                ObjectAccess::willChange(*vertex);
                vertex->position_.transformBy(matrix);
            }
            return Kdapi::eOk;
        }
        for (KdDbVertex* vertex : vertices_.each()) {
            ObjectAccess::willChange(*vertex);
            vertex->position_.z = place_.elevation();
        }
        const korra::PlaneImage image = place_.transformBy(matrix);
        for (KdDbVertex* vertex : vertices_.each())
            vertex->moveInPlane(image);
        startWidth_ *= image.scale;
        endWidth_ *= image.scale;
        return Kdapi::eOk;
    });
}

void KdDbVertexCurve::draw(korra::DrawSink& sink) const
{
    std::int64_t marker = 0;
    for (const Segment& segment : segments()) {
        sink.beginPart(segment.from->objectId(), korra::PartRole::vertex);
        sink.marker(++marker);
        sink.curve(*segmentGeometry(*segment.from, *segment.to));
        sink.endPart();
    }
}

int KdDbVertexCurve::edgeCount() const
{
    return static_cast<int>(segments().size());
}

KdDbEntity* KdDbVertexCurve::newEdge(int marker) const
{
    const auto all = segments();
    const auto index = static_cast<std::size_t>(marker - 1);
    if (index >= all.size())
        return nullptr;
    return korra::newCurveEntity(*segmentGeometry(*all[index].from, *all[index].to));
}

std::optional<korra::Pieces> KdDbVertexCurve::newPieces() const
{
    korra::Pieces pieces;
    for (const Segment& segment : segments())
        pieces.push_back(std::unique_ptr<KdDbEntity>(
            korra::newCurveEntity(*segmentGeometry(*segment.from, *segment.to))));
    return pieces;
}

void KdDbVertexCurve::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, isPlanar() ? "2dPolyline" : "3dPolyline");
    visitor.derived(66, 1);
    place_.describeElevationPoint(visitor);
    place_.describeThickness(visitor);
    visitor.integer(70, flags_, 0);
    visitor.real(40, startWidth_, 0.0);
    visitor.real(41, endWidth_, 0.0);
    visitor.integer(75, curveType_, 0);
    place_.describeNormal(visitor);
    visitor.owned(vertices_);
}

std::unique_ptr<KdGeCurve3d> KdDb2dPolyline::segmentGeometry(const KdDbVertex& from,
                                                             const KdDbVertex& to) const
{
    const KdGePoint3d start = place_.pointAt({from.position().x, from.position().y});
    const KdGePoint3d end = place_.pointAt({to.position().x, to.position().y});
    if (!korra::isBulged(from.bulge()) || start.isEqualTo(end))
        return std::make_unique<KdGeLineSeg3d>(start, end);
    return std::make_unique<KdGeCircArc3d>(
        KdGeCircArc3d::fromBulge(start, end, from.bulge(), place_.normal()));
}

KdDb3dPolyline::KdDb3dPolyline()
{
    constexpr short kThreeDimensional = 8;
    flags_ = kThreeDimensional;
}

std::unique_ptr<KdGeCurve3d> KdDb3dPolyline::segmentGeometry(const KdDbVertex& from,
                                                             const KdDbVertex& to) const
{
    return std::make_unique<KdGeLineSeg3d>(from.position(), to.position());
}
