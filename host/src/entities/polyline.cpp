#include "entities/curve_entity.h"
#include "ge/resolvable.h"
#include "gi/draw_sink.h"
#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"
#include "platform/gate.h"

#include <algorithm>

KDRX_DEFINE_MEMBERS(KdDbPolyline, KdDbCurve)

namespace {

/// @return eOk where a segment of the kind starts at the vertex; eInvalidIndex; eNotApplicable
Kdapi::ErrorStatus segmentStatus(const KdDbPolyline& polyline, unsigned int index,
                                 KdDbPolyline::SegType kind)
{
    if (index >= polyline.numVerts())
        return Kdapi::eInvalidIndex;
    return polyline.segType(index) == kind ? Kdapi::eOk : Kdapi::eNotApplicable;
}

} // namespace

Kdapi::ErrorStatus KdDbPolyline::setClosed(bool closed)
{
    return set("KdDbPolyline::setClosed", flags_,
               static_cast<short>(closed ? flags_ | 1 : flags_ & ~1));
}

bool KdDbPolyline::hasBulges() const
{
    for (unsigned int index = 0; index < segmentCount(); ++index) {
        if (segType(index) == kArc)
            return true;
    }
    return false;
}

Kdapi::ErrorStatus KdDbPolyline::addVertexAt(unsigned int index, const KdGePoint2d& point,
                                             double bulge, double startWidth, double endWidth,
                                             int identifier)
{
    return platform::gate("KdDbPolyline::addVertexAt", objectId(), index, point, bulge)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (const auto status = beginChange())
                return status;
            if (index > vertices_.size())
                return Kdapi::eInvalidIndex;
            vertices_.insert(vertices_.begin() + index,
                             Vertex{point, bulge, startWidth, endWidth, identifier});
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbPolyline::getPointAt(unsigned int index, KdGePoint3d& point) const
{
    return platform::gate("KdDbPolyline::getPointAt", objectId(), index)
        .guard(Kdapi::eInvalidIndex, [&] {
            if (index >= vertices_.size())
                return Kdapi::eInvalidIndex;
            point = mapped(vertices_[index], place_.toBlock());
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbPolyline::getBulgeAt(unsigned int index, double& bulge) const
{
    return platform::gate("KdDbPolyline::getBulgeAt", objectId(), index)
        .guard(Kdapi::eInvalidIndex, [&] {
            if (index >= vertices_.size())
                return Kdapi::eInvalidIndex;
            bulge = vertices_[index].bulge;
            return Kdapi::eOk;
        });
}

KdDbPolyline::SegType KdDbPolyline::segType(unsigned int index) const
{
    if (numVerts() == 1 && index == 0)
        return kPoint;
    if (index >= segmentCount())
        return kEmpty;
    if (vertices_[index].point.isEqualTo(vertexBehind(index).point))
        return kCoincident;
    return korra::isBulged(vertices_[index].bulge) ? kArc : kLine;
}

Kdapi::ErrorStatus KdDbPolyline::getLineSegAt(unsigned int index, KdGeLineSeg3d& segment) const
{
    return platform::gate("KdDbPolyline::getLineSegAt", objectId(), index)
        .guard(Kdapi::eInvalidIndex, [&] {
            if (const auto status = segmentStatus(*this, index, kLine))
                return status;
            const KdGeMatrix3d toBlock = place_.toBlock();
            segment = KdGeLineSeg3d(mapped(vertices_[index], toBlock),
                                    mapped(vertexBehind(index), toBlock));
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbPolyline::getArcSegAt(unsigned int index, KdGeCircArc3d& arc) const
{
    return platform::gate("KdDbPolyline::getArcSegAt", objectId(), index)
        .guard(Kdapi::eInvalidIndex, [&] {
            if (const auto status = segmentStatus(*this, index, kArc))
                return status;
            const KdGeMatrix3d toBlock = place_.toBlock();
            arc = KdGeCircArc3d::fromBulge(mapped(vertices_[index], toBlock),
                                           mapped(vertexBehind(index), toBlock),
                                           vertices_[index].bulge, normal());
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbPolyline::getArcSegAt(unsigned int index, KdGeCircArc2d& arc) const
{
    return platform::gate("KdDbPolyline::getArcSegAt", objectId(), index)
        .guard(Kdapi::eInvalidIndex, [&] {
            if (const auto status = segmentStatus(*this, index, kArc))
                return status;
            arc = KdGeCircArc2d::fromBulge(vertices_[index].point, vertexBehind(index).point,
                                           vertices_[index].bulge);
            return Kdapi::eOk;
        });
}

bool KdDbPolyline::onSegAt(unsigned int index, const KdGePoint2d& point, double& param) const
{
    return platform::gate("KdDbPolyline::onSegAt", objectId(), index).guard(false, [&] {
        // In the plane itself, at elevation 0: the given point has no other coordinate.
        const KdGeMatrix3d flat = KdGeMatrix3d::translation({0.0, 0.0, -elevation()});
        const auto curve = segment(index, flat);
        if (!curve)
            return false;
        const KdGePoint3d given(point.x, point.y, 0.0);
        const double nearest = curve->nearestParam(given);
        if (curve->evalPoint(nearest).distanceTo(given) > korra::resolvableDistance(given))
            return false;
        param = index + (nearest - curve->startParam()) / (curve->endParam() - curve->startParam());
        return true;
    });
}

std::unique_ptr<KdGeCurve3d> KdDbPolyline::geometry() const
{
    const KdGeMatrix3d toBlock = place_.toBlock();
    std::vector<std::unique_ptr<KdGeCurve3d>> pieces;
    for (unsigned int index = 0; index < segmentCount(); ++index)
        pieces.push_back(segment(index, toBlock));
    if (pieces.empty())
        return nullptr;
    return std::make_unique<KdGeCompositeCurve3d>(std::move(pieces));
}

Kdapi::ErrorStatus KdDbPolyline::transformBy(const KdGeMatrix3d& matrix)
{
    const bool hasArcs = std::ranges::any_of(vertices_, korra::isBulged, &Vertex::bulge);
    return transform(matrix, hasArcs ? Takes::similarities : Takes::affineMaps, [&] {
        const double oldElevation = elevation();
        const korra::PlaneImage image = place_.transformBy(matrix);
        for (Vertex& vertex : vertices_) {
            const KdGePoint3d moved =
                image.map * KdGePoint3d(vertex.point.x, vertex.point.y, oldElevation);
            vertex.point = KdGePoint2d(moved.x, moved.y);
            if (vertex.startWidth > 0.0)
                vertex.startWidth *= image.scale;
            if (vertex.endWidth > 0.0)
                vertex.endWidth *= image.scale;
        }
        constantWidth_ *= image.scale;
        return Kdapi::eOk;
    });
}

void KdDbPolyline::draw(korra::DrawSink& sink) const
{
    const KdGeMatrix3d toBlock = place_.toBlock();
    for (unsigned int index = 0; index < segmentCount(); ++index) {
        sink.marker(index + 1);
        const KdGePoint3d start = mapped(vertices_[index], toBlock);
        const KdGePoint3d end = mapped(vertexBehind(index), toBlock);
        if (segType(index) == kArc)
            sink.curve(KdGeCircArc3d::fromBulge(start, end, vertices_[index].bulge, normal()));
        else
            sink.segment(start, end);
    }
}

int KdDbPolyline::edgeCount() const
{
    return static_cast<int>(segmentCount());
}

KdDbEntity* KdDbPolyline::newEdge(int marker) const
{
    const auto index = static_cast<unsigned int>(marker - 1);
    const auto curve = segment(index, place_.toBlock());
    return curve ? korra::newCurveEntity(*curve) : nullptr;
}

std::optional<korra::Pieces> KdDbPolyline::newPieces() const
{
    korra::Pieces pieces;
    for (int marker = 1; marker <= edgeCount(); ++marker)
        pieces.push_back(std::unique_ptr<KdDbEntity>(newEdge(marker)));
    return pieces;
}

std::unique_ptr<KdDbVertexCurve> KdDbPolyline::newOldPolyline() const
{
    std::unique_ptr<KdDbVertexCurve> polyline = std::make_unique<KdDb2dPolyline>();
    polyline->place_ = place_;
    polyline->flags_ = flags_;
    const auto widthOf = [this](double own) { return own < 0.0 ? constantWidth_ : own; };
    for (const Vertex& vertex : vertices_) {
        auto part = std::make_unique<KdDbVertex>(
            KdGePoint3d(vertex.point.x, vertex.point.y, elevation()), vertex.bulge);
        part->startWidth_ = widthOf(vertex.startWidth);
        part->endWidth_ = widthOf(vertex.endWidth);
        polyline->vertices_.reserveOne();
        polyline->vertices_.append(part.release());
    }
    return polyline;
}

void KdDbPolyline::describe(korra::ObjectVisitor& visitor)
{
    KdDbCurve::describe(visitor);
    visitor.behindMarker(2, "Polyline");
    visitor.derived(90, static_cast<long long>(vertices_.size()));
    visitor.integer(70, flags_);
    visitor.real(43, constantWidth_, 0.0);
    place_.describeElevation(visitor);
    place_.describeThickness(visitor);
    visitor.list(10, vertices_, [](korra::ObjectVisitor& each, Vertex& vertex) {
        each.point(10, vertex.point);
        each.real(40, vertex.startWidth, -1.0);
        each.real(41, vertex.endWidth, -1.0);
        each.real(42, vertex.bulge, 0.0);
        each.integer(91, vertex.identifier, 0);
    });
    place_.describeNormal(visitor);
}

unsigned int KdDbPolyline::segmentCount() const
{
    if (numVerts() < 2)
        return 0;
    return isClosed() ? numVerts() : numVerts() - 1;
}

const KdDbPolyline::Vertex& KdDbPolyline::vertexBehind(unsigned int index) const
{
    return vertices_[(index + 1) % vertices_.size()];
}

KdGePoint3d KdDbPolyline::mapped(const Vertex& vertex, const KdGeMatrix3d& map) const
{
    return map * KdGePoint3d(vertex.point.x, vertex.point.y, elevation());
}

std::unique_ptr<KdGeCurve3d> KdDbPolyline::segment(unsigned int index,
                                                   const KdGeMatrix3d& map) const
{
    if (index >= segmentCount())
        return nullptr;
    const KdGePoint3d start = mapped(vertices_[index], map);
    const KdGePoint3d end = mapped(vertexBehind(index), map);
    if (segType(index) != kArc)
        return std::make_unique<KdGeLineSeg3d>(start, end);
    return std::make_unique<KdGeCircArc3d>(
        KdGeCircArc3d::fromBulge(start, end, vertices_[index].bulge, map * KdGeVector3d::kZAxis));
}
