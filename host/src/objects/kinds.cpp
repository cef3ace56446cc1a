#include "objects/kinds.h"

#include "kd/db.h"
#include "objects/object_access.h"

#include <algorithm>
#include <array>

namespace korra {
namespace {

using Place = Kind::Place;

template <class T>
constexpr Kind kind(Place place, std::string_view fileName, bool (*fits)(long long) = nullptr)
{
    return {fileName, place, &T::desc, []() -> KdDbObject* { return new T; }, fits};
}

template <class T>
constexpr Kind kept(std::string_view fileName, bool (*fits)(long long) = nullptr)
{
    Kind kept = kind<T>(Place::entity, fileName, fits);
    kept.isKept = true;
    return kept;
}

/// A dimension's kind is in the lowest bits of its flags.
template <long long... kinds>
bool isDimension(long long flags)
{
    return (((flags & 7) == kinds) || ...);
}

bool isOtherDimension(long long flags)
{
    return (flags & 7) > 5;
}

constexpr long long kThreeDimensional = 8;
constexpr long long kMesh = 16;
constexpr long long kFaces = 64;
constexpr long long kMeshOrFaces = kMesh | kFaces;

bool isFlatPolyline(long long flags)
{
    return (flags & (kThreeDimensional | kMeshOrFaces)) == 0;
}

bool isSpatialPolyline(long long flags)
{
    return (flags & kThreeDimensional) != 0 && (flags & kMeshOrFaces) == 0;
}

bool isMesh(long long flags)
{
    return (flags & kMesh) != 0;
}

bool isOfFaces(long long flags)
{
    return (flags & kMeshOrFaces) == kFaces;
}

constexpr std::array kKinds = {
    kind<KdDbLine>(Place::entity, "LINE"),
    kind<KdDbArc>(Place::entity, "ARC"),
    kind<KdDbCircle>(Place::entity, "CIRCLE"),
    kind<KdDbEllipse>(Place::entity, "ELLIPSE"),
    kind<KdDbSpline>(Place::entity, "SPLINE"),
    kind<KdDbXline>(Place::entity, "XLINE"),
    kind<KdDbRay>(Place::entity, "RAY"),
    kind<KdDbSolid>(Place::entity, "SOLID"),
    kind<KdDbTrace>(Place::entity, "TRACE"),
    kind<KdDbFace>(Place::entity, "3DFACE"),
    kind<KdDbLeader>(Place::entity, "LEADER"),
    kind<KdDbPolyline>(Place::entity, "LWPOLYLINE"),
    kind<KdDb2dPolyline>(Place::entity, "POLYLINE", isFlatPolyline),
    kind<KdDb3dPolyline>(Place::entity, "POLYLINE", isSpatialPolyline),
    kind<KdDbVertex>(Place::entity, "VERTEX"),
    kind<KdDbPoint>(Place::entity, "POINT"),
    kind<KdDbText>(Place::entity, "TEXT"),
    kind<KdDbMText>(Place::entity, "MTEXT"),
    kind<KdDbBlockReference>(Place::entity, "INSERT"),
    kind<KdDbAttributeDefinition>(Place::entity, "ATTDEF"),
    kind<KdDbAttribute>(Place::entity, "ATTRIB"),
    kind<KdDbViewport>(Place::entity, "VIEWPORT"),
    kind<KdDbRotatedDimension>(Place::entity, "DIMENSION", isDimension<0>),
    kind<KdDbAlignedDimension>(Place::entity, "DIMENSION", isDimension<1>),
    kind<KdDbAngularDimension>(Place::entity, "DIMENSION", isDimension<2, 5>),
    kind<KdDbDiametricDimension>(Place::entity, "DIMENSION", isDimension<3>),
    kind<KdDbRadialDimension>(Place::entity, "DIMENSION", isDimension<4>),
    kind<KdDbDimension>(Place::entity, "DIMENSION", isOtherDimension),
    kept<KdDbRegion>("REGION"),
    kept<KdDbPolygonMesh>("POLYLINE", isMesh),
    kept<KdDbPolyFaceMesh>("POLYLINE", isOfFaces),
    kept<KdDb3dSolid>("3DSOLID"),
    kept<KdDbBody>("BODY"),
    kept<KdDbHatch>("HATCH"),
    kept<KdDbSequenceEnd>("SEQEND"),
    kept<KdDbMline>("MLINE"),
    kept<KdDbFcf>("TOLERANCE"),
    kind<KdDbDictionary>(Place::object, "DICTIONARY"),
    kind<KdDbLayout>(Place::object, "LAYOUT"),
    kind<KdDbSortentsTable>(Place::object, "SORTENTSTABLE"),
};

template <class Table, class Record>
constexpr std::array<Kind, 2> tableKinds(std::string_view fileName)
{
    return {kind<Table>(Place::table, fileName), kind<Record>(Place::record, fileName)};
}

/// Tables and their records, by TableKind.
constexpr std::array<std::array<Kind, 2>, kTableKinds> kTables = {
    tableKinds<KdDbBlockTable, KdDbBlockTableRecord>("BLOCK_RECORD"),
    tableKinds<KdDbDimStyleTable, KdDbDimStyleTableRecord>("DIMSTYLE"),
    tableKinds<KdDbLayerTable, KdDbLayerTableRecord>("LAYER"),
    tableKinds<KdDbLinetypeTable, KdDbLinetypeTableRecord>("LTYPE"),
    tableKinds<KdDbRegAppTable, KdDbRegAppTableRecord>("APPID"),
    tableKinds<KdDbTextStyleTable, KdDbTextStyleTableRecord>("STYLE"),
    tableKinds<KdDbUCSTable, KdDbUCSTableRecord>("UCS"),
    tableKinds<KdDbViewportTable, KdDbViewportTableRecord>("VPORT"),
};

template <class Fits>
std::optional<TableKind> findTable(Fits fits)
{
    const auto found =
        std::ranges::find_if(kTables, [&](const auto& rows) { return fits(rows.front()); });
    if (found == kTables.end())
        return std::nullopt;
    return static_cast<TableKind>(found - kTables.begin());
}

} // namespace

const Kind* kindOf(const KdDbObject& object)
{
    const ObjectExtras* const extras = ObjectAccess::extras(object);
    if (extras && !extras->fileType.empty())
        return nullptr;
    const KdRxClass* const description = object.isA();
    const auto isOfClass = [=](const Kind& row) { return row.description() == description; };
    if (const auto* const found = std::ranges::find_if(kKinds, isOfClass); found != kKinds.end())
        return found;
    for (const auto& rows : kTables) {
        if (const auto* const found = std::ranges::find_if(rows, isOfClass); found != rows.end())
            return found;
    }
    return nullptr;
}

const Kind* kindNamed(Kind::Place place, std::string_view fileName, long long flags)
{
    const auto* const found = std::ranges::find_if(kKinds, [&](const Kind& row) {
        return row.place == place && row.fileName == fileName && (!row.fits || row.fits(flags));
    });
    return found == kKinds.end() ? nullptr : found;
}

const wchar_t* standardName(TableKind table, NamedBy by)
{
    switch (table) {
    case TableKind::layer:
        return L"0";
    case TableKind::linetype:
        return by == NamedBy::layer ? L"Continuous" : L"ByLayer";
    case TableKind::textStyle:
    case TableKind::dimStyle:
        return L"Standard";
    default:
        return nullptr;
    }
}

const Kind& kindOfTable(TableKind table)
{
    return kTables[static_cast<std::size_t>(table)].front();
}

const Kind& kindOfRecords(TableKind table)
{
    return kTables[static_cast<std::size_t>(table)].back();
}

std::optional<TableKind> tableKindOf(const KdDbObject& table)
{
    return findTable([&](const Kind& row) { return row.description() == table.isA(); });
}

std::optional<TableKind> tableKindNamed(std::string_view fileName)
{
    return findTable([&](const Kind& row) { return row.fileName == fileName; });
}

} // namespace korra
