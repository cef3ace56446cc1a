#include "kd/db/faces.h"

#include "gi/draw_sink.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

KDRX_DEFINE_MEMBERS(KdDbSolid, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbTrace, KdDbEntity)
KDRX_DEFINE_MEMBERS(KdDbFace, KdDbEntity)

namespace korra {

Kdapi::ErrorStatus FourCorners::giveCorner(const char* operation, unsigned short index,
                                           KdGePoint3d& point) const
{
    return platform::gate(operation, objectId(), static_cast<int>(index))
        .guard(Kdapi::eInvalidIndex, [&] {
            if (index >= corners_.size())
                return Kdapi::eInvalidIndex;
            point = corner(index);
            return Kdapi::eOk;
        });
}

void FourCorners::describeCorners(ObjectVisitor& visitor)
{
    for (int index = 0; index < 4; ++index)
        visitor.point(10 + index, corners_[static_cast<std::size_t>(index)]);
}

void FourCorners::draw(DrawSink& sink) const
{
    for (std::size_t edge = 0; edge < 4; ++edge) {
        if (!isEdgeShown(static_cast<int>(edge)))
            continue;
        sink.marker(static_cast<std::int64_t>(edge) + 1);
        sink.segment(corner(around()[edge]), corner(around()[(edge + 1) % 4]));
    }
}

KdDbEntity* FourCorners::newEdge(int marker) const
{
    const auto edge = static_cast<std::size_t>(marker - 1);
    return new KdDbLine(corner(around()[edge]), corner(around()[(edge + 1) % 4]));
}

const std::array<unsigned short, 4>& FlatArea::around() const
{
    static constexpr std::array<unsigned short, 4> kAround = {0, 1, 3, 2};
    return kAround;
}

KdGePoint3d FlatArea::corner(unsigned short index) const
{
    return place_.toBlock() * corners_[index];
}

Kdapi::ErrorStatus FlatArea::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        const PlaneImage image = place_.transformBy(matrix);
        for (KdGePoint3d& each : corners_)
            each.transformBy(image.map);
        return Kdapi::eOk;
    });
}

void FlatArea::describe(ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "Trace");
    describeCorners(visitor);
    place_.describeThickness(visitor);
    place_.describeNormal(visitor);
}

} // namespace korra

Kdapi::ErrorStatus KdDbSolid::getPointAt(unsigned short index, KdGePoint3d& point) const
{
    return giveCorner("KdDbSolid::getPointAt", index, point);
}

Kdapi::ErrorStatus KdDbTrace::getPointAt(unsigned short index, KdGePoint3d& point) const
{
    return giveCorner("KdDbTrace::getPointAt", index, point);
}

Kdapi::ErrorStatus KdDbFace::getVertexAt(unsigned short index, KdGePoint3d& point) const
{
    return giveCorner("KdDbFace::getVertexAt", index, point);
}

const std::array<unsigned short, 4>& KdDbFace::around() const
{
    static constexpr std::array<unsigned short, 4> kAround = {0, 1, 2, 3};
    return kAround;
}

Kdapi::ErrorStatus KdDbFace::transformBy(const KdGeMatrix3d& matrix)
{
    return transform(matrix, Takes::affineMaps, [&] {
        for (KdGePoint3d& each : corners_)
            each.transformBy(matrix);
        return Kdapi::eOk;
    });
}

void KdDbFace::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.behindMarker(2, "Face");
    describeCorners(visitor);
    visitor.integer(70, flags_, 0);
}
