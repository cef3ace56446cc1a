#include "kd/db/region.h"

#include "ge/plane_fit.h"
#include "ge/resolvable.h"
#include "gi/draw_sink.h"
#include "objects/object_access.h"
#include "objects/object_visitor.h"
#include "objects/setters.h"

#include <algorithm>

KDRX_DEFINE_MEMBERS(KdDbRegion, KdDbEntity)

namespace korra {
namespace {

using Edges = std::vector<std::unique_ptr<KdDbCurve>>;

std::unique_ptr<KdDbCurve> copyOf(const KdDbCurve& curve)
{
    return std::unique_ptr<KdDbCurve>(static_cast<KdDbCurve*>(curve.clone()));
}

bool areSame(const KdGePoint3d& a, const KdGePoint3d& b)
{
    return a.distanceTo(b) <= resolvableDistance(a);
}

/// Copies of the curves, of a polyline its segments. Empty where one of them has no length.
Edges edgesOf(const KdArray<KdDbCurve*>& curves)
{
    Edges edges;
    for (const KdDbCurve* curve : curves) {
        std::optional<Pieces> pieces = curve->newPieces();
        if (!pieces) {
            pieces.emplace();
            pieces->push_back(copyOf(*curve));
        }
        for (auto& piece : *pieces) {
            if (!KdDbCurve::cast(piece.get()))
                return {};
            edges.emplace_back(static_cast<KdDbCurve*>(piece.release()));
        }
    }
    const auto isBounded = [](const std::unique_ptr<KdDbCurve>& edge) {
        const KdGeCurve3d* const curve = edge->keptGeometry();
        return curve && curve->isBounded();
    };
    return std::ranges::all_of(edges, isBounded) ? std::move(edges) : Edges();
}

/// Follows edges from end to end, each in whichever direction continues the one before.
class Chains {
public:
    explicit Chains(const Edges& edges) : edges_(edges) {}

    /// True where every edge belongs to a chain that ends where it began.
    bool areClosed()
    {
        while (next_ < edges_.size()) {
            if (!follow())
                return false;
        }
        return true;
    }

private:
    const KdGeCurve3d& curve(std::size_t index) const { return *edges_[index]->keptGeometry(); }

    bool touches(std::size_t index, const KdGePoint3d& point) const
    {
        return index < edges_.size() && (areSame(curve(index).startPoint(), point) ||
                                         areSame(curve(index).endPoint(), point));
    }

    bool follow()
    {
        const KdGeCurve3d& first = curve(next_++);
        KdGePoint3d begin = first.startPoint();
        KdGePoint3d end = first.endPoint();
        if (areSame(begin, end))
            return true;
        if (!touches(next_, end))
            std::swap(begin, end);
        while (!areSame(begin, end)) {
            if (!touches(next_, end))
                return false;
            const KdGeCurve3d& edge = curve(next_++);
            end = areSame(edge.startPoint(), end) ? edge.endPoint() : edge.startPoint();
        }
        return true;
    }

    const Edges& edges_;
    std::size_t next_ = 0;
};

/// Whether edges lie in one plane.
/// @return eOk; eInvalidInput where they leave it; eDegenerateGeometry where they span none
Kdapi::ErrorStatus planarity(const Edges& edges)
{
    std::vector<KdGePoint3d> points;
    KdGeExtents3d box;
    for (const auto& edge : edges)
        box.addExt(edge->keptGeometry()->extents());
    const double size = box.minPoint().distanceTo(box.maxPoint());
    for (const auto& edge : edges)
        edge->keptGeometry()->flatten(KdGeMatrix3d::kIdentity, size / 1000.0, points);

    const PlaneFit fit = planeThrough(points);
    if (fit.normal.isZeroLength())
        return Kdapi::eDegenerateGeometry;
    return fit.isFlat ? Kdapi::eOk : Kdapi::eInvalidInput;
}

/// Lets an owner change its part, whoever has that open.
class PartWriting {
public:
    explicit PartWriting(const KdDbObject& part) : slot_(ObjectAccess::slot(part))
    {
        if (slot_)
            wasWriting_ = std::exchange(slot_->writing, true);
    }

    ~PartWriting()
    {
        if (slot_)
            slot_->writing = wasWriting_;
    }

    PartWriting(const PartWriting&) = delete;
    PartWriting& operator=(const PartWriting&) = delete;

private:
    ObjectSlot* slot_;
    bool wasWriting_ = false;
};

} // namespace
} // namespace korra

Kdapi::ErrorStatus KdDbRegion::createFromCurves(const KdArray<KdDbCurve*>& curves,
                                                KdArray<KdDbRegion*>& regions)
{
    return platform::gate("KdDbRegion::createFromCurves").guard(Kdapi::eInvalidInput, [&] {
        if (curves.contains(nullptr))
            return Kdapi::eNullObjectPointer;
        korra::Edges edges = korra::edgesOf(curves);
        if (edges.empty() || !korra::Chains(edges).areClosed())
            return Kdapi::eInvalidInput;
        if (const auto status = korra::planarity(edges))
            return status;
        auto region = std::make_unique<KdDbRegion>();
        for (auto& edge : edges) {
            region->edges_.reserveOne();
            region->edges_.append(edge.release());
        }
        regions.append(region.get());
        static_cast<void>(region.release());
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbRegion::transformBy(const KdGeMatrix3d& matrix)
{
    const bool hasArcs = std::ranges::any_of(edges_.objects(), [](const KdDbObject* edge) {
        return edge->isKindOf(KdDbArc::desc()) || edge->isKindOf(KdDbCircle::desc());
    });
    return transform(matrix, hasArcs ? Takes::similarities : Takes::affineMaps, [&] {
        for (KdDbCurve* edge : edges_.each()) {
            const korra::PartWriting writing(*edge);
            edge->transformBy(matrix);
        }
        return edges_.isEmpty() ? Kdapi::eNotApplicable : Kdapi::eOk;
    });
}

void KdDbRegion::draw(korra::DrawSink& sink) const
{
    std::int64_t marker = 0;
    for (const KdDbCurve* edge : edges_.each()) {
        sink.marker(++marker);
        edge->draw(sink);
    }
}

int KdDbRegion::edgeCount() const
{
    return static_cast<int>(edges_.size());
}

KdDbEntity* KdDbRegion::newEdge(int marker) const
{
    return korra::copyOf(*edges_[static_cast<std::size_t>(marker - 1)]).release();
}

std::optional<korra::Pieces> KdDbRegion::newPieces() const
{
    korra::Pieces pieces;
    for (const KdDbCurve* edge : edges_.each())
        pieces.push_back(korra::copyOf(*edge));
    return pieces;
}

void KdDbRegion::describe(korra::ObjectVisitor& visitor)
{
    KdDbEntity::describe(visitor);
    visitor.owned(edges_);
}
