#include "kd/db/faces.h"

#include "gi/draw_sink.h"
#include "kd/db/curves.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbSolid, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbTrace, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbFace, KdDbEntity)

namespace korra {

void Corners::transformBy(const KdGeMatrix3d& matrix)
{
    for (KdGePoint3d& point : points_)
        point.transformBy(matrix);
}

void Corners::describe(ObjectVisitor& visitor)
{
    int code = 10;
    for (KdGePoint3d& point : points_)
        visitor.point(code++, point);
}

void drawSides(const Corners::Points& corners, const Corners::Order& order, int hidden,
               DrawSink& sink)
{
    for (std::size_t side = 0; side < 4; ++side) {
        if (((hidden >> side) & 1) != 0)
            continue;
        sink.marker(static_cast<std::int64_t>(side) + 1);
        sink.segment(corners[order[side]], corners[order[(side + 1) % 4]]);
    }
}

KdDbEntity* newSide(const Corners::Points& corners, const Corners::Order& order, int marker)
{
    const auto side = static_cast<std::size_t>(marker - 1);
    return new KdDbLine(corners[order[side]], corners[order[(side + 1) % 4]]);
}

Corners::Points FlatArea::points() const
{
    Corners inBlock = corners_;
    inBlock.transformBy(place_.toBlock());
    return inBlock.points();
}

void FlatArea::transformBy(const KdGeMatrix3d& matrix)
{
    corners_.transformBy(place_.transformBy(matrix).map);
}

void FlatArea::describe(ObjectVisitor& visitor)
{
    visitor.behindMarker(2, "Trace");
    corners_.describe(visitor);
    place_.describeThickness(visitor);
    place_.describeNormal(visitor);
}

namespace {

constexpr Corners::Order kAround = {0, 1, 2, 3};

/// What gives a corner by its place.
Kdapi::ErrorStatus giveCorner(const char* operation, const KdDbEntity& entity,
                              const Corners::Points& corners, unsigned short index,
                              KdGePoint3d& point)
{
    return platform::gate(operation, entity.objectId(), static_cast<int>(index))
        .guard(Kdapi::eInvalidIndex, [&] {
            if (index >= corners.size())
                return Kdapi::eInvalidIndex;
            point = corners[index];
            return Kdapi::eOk;
        });
}

} // namespace
} // namespace korra

Kdapi::ErrorStatus KdDbSolid::getPointAt(unsigned short index, KdGePoint3d& point) const
{
    return korra::giveCorner("KdDbSolid::getPointAt", *this, area_.points(), index, point);
}

Kdapi::ErrorStatus KdDbSolid::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        area_.transformBy(matrix);
        return Kdapi::eOk;
    });
}

void KdDbSolid::draw(korra::DrawSink& sink) const
{
    korra::drawSides(area_.points(), korra::FlatArea::kOrder, 0, sink);
}

KdDbEntity* KdDbSolid::newEdge(int marker) const
{
    return korra::newSide(area_.points(), korra::FlatArea::kOrder, marker);
}

void KdDbSolid::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    area_.describe(visitor);
}

Kdapi::ErrorStatus KdDbTrace::getPointAt(unsigned short index, KdGePoint3d& point) const
{
    return korra::giveCorner("KdDbTrace::getPointAt", *this, area_.points(), index, point);
}

Kdapi::ErrorStatus KdDbTrace::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        area_.transformBy(matrix);
        return Kdapi::eOk;
    });
}

void KdDbTrace::draw(korra::DrawSink& sink) const
{
    korra::drawSides(area_.points(), korra::FlatArea::kOrder, 0, sink);
}

KdDbEntity* KdDbTrace::newEdge(int marker) const
{
    return korra::newSide(area_.points(), korra::FlatArea::kOrder, marker);
}

void KdDbTrace::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    area_.describe(visitor);
}

Kdapi::ErrorStatus KdDbFace::getVertexAt(unsigned short index, KdGePoint3d& point) const
{
    return korra::giveCorner("KdDbFace::getVertexAt", *this, corners_.points(), index, point);
}

Kdapi::ErrorStatus KdDbFace::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        corners_.transformBy(matrix);
        return Kdapi::eOk;
    });
}

void KdDbFace::draw(korra::DrawSink& sink) const
{
    korra::drawSides(corners_.points(), korra::kAround, hiddenEdges_, sink);
}

KdDbEntity* KdDbFace::newEdge(int marker) const
{
    return korra::newSide(corners_.points(), korra::kAround, marker);
}

void KdDbFace::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "Face");
    corners_.describe(visitor);
    visitor.integer(70, hiddenEdges_, 0);
}
