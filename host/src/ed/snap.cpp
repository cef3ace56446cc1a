#include "blocks/draw_block.h"
#include "ed/editor.h"
#include "ed/picking.h"
#include "ed/user_system.h"
#include "ed/views.h"
#include "ge/curve_image.h"
#include "kd/ed.h"
#include "objects/object_access.h"
#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

namespace korra::ed {
namespace {

/// Every pair of pieces may cross: beyond this many, the nearest stand for all.
constexpr std::size_t kMostCrossing = 64;

/// Distances that differ by less are equal, pixels.
constexpr double kSameDistance = 1e-6;

/// A piece of graphics under the pick box, ready to be snapped to.
struct SnapPiece {
    PickHit hit;
    KdGeMatrix3d toSpace;               ///< from the hit entity to the current space
    std::unique_ptr<KdGeCurve3d> curve; ///< in the hit entity's coordinates; null for no curve
};

using Points = std::vector<KdGePoint3d>;

/// The curve of the part that was hit.
std::unique_ptr<KdGeCurve3d> curveOf(const PickHit& hit)
{
    const KdDbEntity* entity = ObjectAccess::live<KdDbEntity>(hit.entity);
    if (KdDbVertex::cast(entity))
        entity = ObjectAccess::live<KdDbEntity>(entity->ownerId());
    if (!KdDbCurve::cast(entity))
        return nullptr;
    const std::unique_ptr<KdDbEntity> edge(entity->newEdge(static_cast<int>(hit.marker)));
    const auto* const curve = KdDbCurve::cast(edge.get());
    return curve ? curve->geometry() : nullptr;
}

void addPieces(const std::vector<PickHit>& hits, const KdGeMatrix3d& toSpace,
               std::vector<SnapPiece>& pieces)
{
    for (const PickHit& hit : hits)
        pieces.push_back({hit, toSpace * hit.transform, curveOf(hit)});
}

/// What lies under the pick box; a dimension, picked whole otherwise, by the parts of its graphics.
std::vector<SnapPiece> piecesUnderBox(const KdDbDatabase& database, const KdGePoint3d& userPoint)
{
    const PickedPieces picked =
        piecesAt(database, userPoint, PickSink::Keep::all, PickDepth::throughViewports);
    std::vector<SnapPiece> pieces;
    addPieces(picked.hits, picked.spaceFromHit, pieces);
    const KdGeMatrix3d toPixels = worldToPixels(database);
    const KdGePoint3d pixel = toPixels * (userToWorld(database) * userPoint);
    for (const PickHit& hit : picked.hits) {
        const auto* const dimension = ObjectAccess::live<KdDbDimension>(hit.entity);
        if (!dimension)
            continue;
        const KdGeMatrix3d toSpace = picked.spaceFromHit * hit.transform;
        PickSink parts(toPixels * toSpace, {pixel.x, pixel.y}, pickReach(), PickSink::Keep::all);
        drawBlockContents(dimension->dimBlockId(), parts);
        addPieces(parts.hits(), toSpace, pieces);
    }
    return pieces;
}

void addEnds(const SnapPiece& piece, Points& points)
{
    if (!piece.curve || piece.curve->isClosed())
        return;
    KdGePoint3d end;
    if (piece.curve->hasStartPoint(end))
        points.push_back(piece.toSpace * end);
    if (piece.curve->hasEndPoint(end))
        points.push_back(piece.toSpace * end);
}

void addMiddle(const SnapPiece& piece, Points& points)
{
    if (!piece.curve || !piece.curve->isBounded() || piece.curve->isClosed())
        return;
    const KdGeCurve3d& curve = *piece.curve;
    const double middle = curve.paramAtLength(curve.startParam(), curve.length() / 2.0);
    points.push_back(piece.toSpace * curve.evalPoint(middle));
}

/// The insertion points of the references around a piece, in its block.
void addReferences(const SnapPiece& piece, Points& points)
{
    const auto& containers = piece.hit.containers;
    KdGeMatrix3d toSpace = piece.toSpace * piece.hit.transform.inverse();
    for (auto id = containers.rbegin(); id != containers.rend(); ++id) {
        const auto* const reference = ObjectAccess::live<KdDbBlockReference>(*id);
        if (!reference)
            return;
        points.push_back(toSpace * reference->position());
        toSpace *= reference->blockTransform();
    }
}

void addInsertions(const SnapPiece& piece, Points& points)
{
    addReferences(piece, points);
    if (const auto* const text = ObjectAccess::live<KdDbText>(piece.hit.entity)) {
        const bool aligned = text->horizontalMode() != 0 || text->verticalMode() != 0;
        points.push_back(piece.toSpace * (aligned ? text->alignmentPoint() : text->position()));
    }
    if (const auto* const text = ObjectAccess::live<KdDbMText>(piece.hit.entity))
        points.push_back(piece.toSpace * text->location());
}

void addNode(const SnapPiece& piece, Points& points)
{
    if (const auto* const point = ObjectAccess::live<KdDbPoint>(piece.hit.entity))
        points.push_back(piece.toSpace * point->position());
}

/// The curves of the nearest pieces in the current space; one that is seen in perspective is left
/// out.
std::vector<std::unique_ptr<KdGeCurve3d>> nearestCurves(const std::vector<SnapPiece>& pieces)
{
    std::vector<const SnapPiece*> nearest;
    for (const SnapPiece& piece : pieces) {
        if (piece.curve)
            nearest.push_back(&piece);
    }
    std::stable_sort(nearest.begin(), nearest.end(), [](const auto* left, const auto* right) {
        return left->hit.distance < right->hit.distance;
    });
    nearest.resize(std::min(nearest.size(), kMostCrossing));

    std::vector<std::unique_ptr<KdGeCurve3d>> curves;
    for (const SnapPiece* piece : nearest) {
        if (auto curve = imageOf(*piece->curve, piece->toSpace))
            curves.push_back(std::move(curve));
    }
    return curves;
}

Points crossings(const std::vector<SnapPiece>& pieces)
{
    Points points;
    const auto curves = nearestCurves(pieces);
    for (std::size_t i = 0; i < curves.size(); ++i) {
        for (std::size_t j = i + 1; j < curves.size(); ++j) {
            const KdGeCurveCurveInt3d met(*curves[i], *curves[j]);
            for (int k = 0; k < met.numIntPoints(); ++k)
                points.push_back(met.intPoint(k));
        }
    }
    return points;
}

template <void (*add)(const SnapPiece&, Points&)>
Points ofEach(const std::vector<SnapPiece>& pieces)
{
    Points points;
    for (const SnapPiece& piece : pieces)
        add(piece, points);
    return points;
}

using SnapMode = Points (*)(const std::vector<SnapPiece>&);

struct NamedMode {
    std::wstring_view name;
    SnapMode points;
};

constexpr std::array<NamedMode, 5> kModes = {{
    {L"END", ofEach<addEnds>},
    {L"MID", ofEach<addMiddle>},
    {L"INT", crossings},
    {L"INS", ofEach<addInsertions>},
    {L"NOD", ofEach<addNode>},
}};

SnapMode findMode(std::wstring_view name)
{
    name = platform::trimmedLeft(platform::trimmedRight(name));
    for (const NamedMode& mode : kModes) {
        if (platform::compareNoCase(mode.name, name) == 0)
            return mode.points;
    }
    return nullptr;
}

/// The modes of a list with commas; empty when one of them is unknown.
std::vector<SnapMode> readModes(std::wstring_view list)
{
    std::vector<SnapMode> modes;
    while (true) {
        const std::size_t comma = list.find(L',');
        const SnapMode mode = findMode(list.substr(0, comma));
        if (!mode)
            return {};
        modes.push_back(mode);
        if (comma == std::wstring_view::npos)
            return modes;
        list.remove_prefix(comma + 1);
    }
}

/// The candidate whose image is nearest; of equally near ones that of the mode named first.
std::optional<KdGePoint3d> snapped(const KdDbDatabase& database, const KdGePoint3d& userPoint,
                                   const std::vector<SnapMode>& modes)
{
    const KdGeMatrix3d toPixels = worldToPixels(database);
    const KdGePoint3d pick = toPixels * (userToWorld(database) * userPoint);
    const std::vector<SnapPiece> pieces = piecesUnderBox(database, userPoint);
    std::optional<KdGePoint3d> best;
    double nearest = std::numeric_limits<double>::infinity();
    for (const SnapMode mode : modes) {
        for (const KdGePoint3d& candidate : mode(pieces)) {
            const KdGePoint3d pixel = toPixels * candidate;
            const double distance = std::hypot(pixel.x - pick.x, pixel.y - pick.y);
            if (distance < nearest - kSameDistance) {
                nearest = distance;
                best = candidate;
            }
        }
    }
    return best;
}

} // namespace
} // namespace korra::ed

using namespace korra::ed;

int kdedOsnap(const kds_point point, const wchar_t* modes, kds_point result)
{
    if (!point || !result)
        return RTERROR;
    std::copy_n(point, 3, result);
    return platform::gate("kdedOsnap", modes).guard(RTERROR, [&] {
        const KdDbDatabase* const database = currentDatabase();
        std::optional<KdGePoint3d> found;
        if (database && modes)
            found = snapped(*database, {point[0], point[1], point[2]}, readModes(modes));
        if (!found)
            return RTERROR;
        const KdGePoint3d answer = userToWorld(*database).inverse() * *found;
        for (unsigned int axis = 0; axis < 3; ++axis)
            result[axis] = answer[axis];
        return RTNORM;
    });
}
