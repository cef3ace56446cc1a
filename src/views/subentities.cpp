#include "orvex/subentities.h"

#include "orvex/coordinates.h"
#include "pick_support.h"
#include "support/opened.h"
#include "support/resbuf_list.h"

#include "kd/ed.h"

#include <algorithm>
#include <array>
#include <memory>

using support::Opened;
using support::ResbufList;

namespace {

/// The first nodes of a description list, null behind its end.
///
/// They are: list start, method, entity name, marker; for picks then the point descriptor: list
/// start, kind, point, and perhaps a direction.
std::array<const resbuf*, 8> descriptionNodes(const resbuf* list)
{
    std::array<const resbuf*, 8> nodes{};
    for (const resbuf*& node : nodes) {
        node = list;
        list = list ? list->rbnext : nullptr;
    }
    return nodes;
}

bool hasPointDescriptor(int method)
{
    return method == 1 || method == 4;
}

} // namespace

int extractEntityInfo(resbuf* list, int& method, kds_name name1, kds_name name2, short& marker,
                      KdGePoint3d& pickPt, KdGeVector3d& direction)
{
    const auto nodes = descriptionNodes(list);
    if (!nodes[3] || nodes[0]->restype != RTLB)
        return 0;
    method = nodes[1]->resval.rint;
    std::copy_n(nodes[2]->resval.rlname, 2, name1);
    std::copy_n(nodes[2]->resval.rlname, 2, name2);
    marker = nodes[3]->resval.rint;
    if (!hasPointDescriptor(method))
        return 1;
    if (const resbuf* const point = nodes[6])
        pickPt.set(point->resval.rpoint[0], point->resval.rpoint[1], point->resval.rpoint[2]);
    if (const resbuf* const vector = nodes[7]; vector && vector->restype == RT3DPOINT)
        direction.set(vector->resval.rpoint[0], vector->resval.rpoint[1], vector->resval.rpoint[2]);
    return 1;
}

namespace {

/// A selection at one point, freed at the end of the scope.
class SelectionAt {
public:
    explicit SelectionAt(const KdGePoint3d& pt)
    {
        const kds_point at{pt.x, pt.y, pt.z};
        status_ = kdedSSGet(nullptr, at, nullptr, nullptr, set_);
    }

    ~SelectionAt()
    {
        if (status_ == RTNORM)
            kdedSSFree(set_);
    }

    SelectionAt(const SelectionAt&) = delete;
    SelectionAt& operator=(const SelectionAt&) = delete;

    int status() const { return status_; }

    /// Gives the description of the first member. @return the host's status
    int describe(ResbufList& list) const { return kdedSSNameX(list.link(), set_, 0); }

private:
    kds_name set_{};
    int status_;
};

/// What the host tells of the selection at a point.
struct PickedPart {
    kds_name name{};
    short marker = 0;
    KdGePoint3d point; ///< the origin when the selection has none
};

/// Selects at a point. @return RTNORM; RTCAN; RTNONE for everything else
int selectPart(const KdGePoint3d& pt, PickedPart& part)
{
    ResbufList description;
    {
        const SelectionAt selection(pt);
        if (selection.status() != RTNORM)
            return selection.status() == RTCAN ? RTCAN : RTNONE;
        if (selection.describe(description) != RTNORM)
            return RTNONE;
    }
    int method = 0;
    kds_name again{};
    KdGeVector3d direction;
    const int read = extractEntityInfo(description.get(), method, part.name, again, part.marker,
                                       part.point, direction);
    return read ? RTNORM : RTNONE;
}

/// Picks the innermost entity at a point without asking.
/// @param name  of the entity
/// @return its id; null when there is none
KdDbObjectId pickAt(const KdGePoint3d& pt, kds_name name, KdGeMatrix3d& transform)
{
    kds_point at{pt.x, pt.y, pt.z};
    kds_matrix rows{};
    ResbufList chain;
    if (kdedNEntSelP(nullptr, name, at, 1, rows, chain.link()) != RTNORM)
        return {};
    transKdsMetrixToKdGeMetrix(transform, rows);
    return pick::idOf(name);
}

} // namespace

int GetSubEntByPt(KdDbObjectId id, KdGePoint3d pt, KdDbEntity*& subEnt, KdGeMatrix3d* xform)
{
    if (id.isNull() || !id.isValid())
        return RTNONE;
    PickedPart part;
    const int selected = selectPart(pt, part);
    if (selected != RTNORM)
        return selected;
    KdGeMatrix3d transform;
    const Opened<KdDbEntity> entity(pickAt(pt, part.name, transform), KdDb::kForRead);
    if (!entity)
        return RTCAN;

    KdArray<KdDbFullSubentPath> edges;
    entity->getSubentPathsAtGsMarker(KdDb::kEdgeSubentType, part.marker, part.point,
                                     KdGeMatrix3d::kIdentity, edges);
    if (edges.length() > 1)
        return RTNORM;
    std::unique_ptr<KdDbEntity> copy(edges.isEmpty() ? static_cast<KdDbEntity*>(entity->clone())
                                                     : entity->subentPtr(edges[0]));
    if (copy)
        copy->transformBy(transform);
    subEnt = copy.release();
    if (xform)
        *xform = transform;
    return RTNORM;
}
