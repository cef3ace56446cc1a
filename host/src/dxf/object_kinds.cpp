#include "dxf/object_kinds.h"
#include "tables/table_kinds.h"

#include "dxf/tag_list.h"
#include "form/numbers.h"
#include "objects/contents.h"

#include <algorithm>
#include <array>

namespace korra {
namespace {

struct Kind {
    std::string_view type;
    KdRxClass* (*description)();
    KdDbObject* (*make)();
};

template <class T>
constexpr Kind kind(std::string_view type)
{
    return {type, &T::desc, []() -> KdDbObject* { return new T; }};
}

/// Kinds whose type alone says the class.
constexpr std::array kEntityKinds = {
    kind<KdDbLine>("LINE"),
    kind<KdDbArc>("ARC"),
    kind<KdDbCircle>("CIRCLE"),
    kind<KdDbPolyline>("LWPOLYLINE"),
    kind<KdDbPoint>("POINT"),
    kind<KdDbText>("TEXT"),
    kind<KdDbMText>("MTEXT"),
    kind<KdDbBlockReference>("INSERT"),
    kind<KdDbAttributeDefinition>("ATTDEF"),
    kind<KdDbAttribute>("ATTRIB"),
    kind<KdDbVertex>("VERTEX"),
    kind<KdDbViewport>("VIEWPORT"),
};

constexpr std::array kObjectKinds = {
    kind<KdDbDictionary>("DICTIONARY"),
    kind<KdDbLayout>("LAYOUT"),
    kind<KdDbSortentsTable>("SORTENTSTABLE"),
};

struct Table {
    std::string_view name;
    KdDbSymbolTable* (*makeTable)();
    KdDbSymbolTableRecord* (*makeRecord)();
};

template <class T, class Record>
constexpr Table table(std::string_view name)
{
    return {name, []() -> KdDbSymbolTable* { return new T; },
            []() -> KdDbSymbolTableRecord* { return new Record; }};
}

/// By TableKind.
constexpr std::array<Table, kTableKinds> kTables = {
    table<KdDbBlockTable, KdDbBlockTableRecord>("BLOCK_RECORD"),
    table<KdDbDimStyleTable, KdDbDimStyleTableRecord>("DIMSTYLE"),
    table<KdDbLayerTable, KdDbLayerTableRecord>("LAYER"),
    table<KdDbLinetypeTable, KdDbLinetypeTableRecord>("LTYPE"),
    table<KdDbRegAppTable, KdDbRegAppTableRecord>("APPID"),
    table<KdDbTextStyleTable, KdDbTextStyleTableRecord>("STYLE"),
    table<KdDbUCSTable, KdDbUCSTableRecord>("UCS"),
    table<KdDbViewportTable, KdDbViewportTableRecord>("VPORT"),
};

constexpr long long kThreeDimensional = 8;
constexpr long long kMeshOrFaces = 16 | 64;

template <class Kinds>
KdDbObject* makeKnown(const Kinds& kinds, std::string_view type)
{
    const auto found = std::ranges::find(kinds, type, &Kind::type);
    return found == kinds.end() ? nullptr : found->make();
}

long long flagsOf(const TagList& tags)
{
    return parseWhole(tags.valueOf(70)).value_or(0);
}

KdDbObject* newDimension(const TagList& tags)
{
    constexpr long long kKindMask = 7;
    switch (flagsOf(tags) & kKindMask) {
    case 0:
        return new KdDbRotatedDimension;
    case 1:
        return new KdDbAlignedDimension;
    case 3:
        return new KdDbDiametricDimension;
    case 4:
        return new KdDbRadialDimension;
    case 2:
    case 5: {
        auto* dimension = new KdDbAngularDimension;
        ObjectAccess::setThreePoint(*dimension, (flagsOf(tags) & kKindMask) == 5);
        return dimension;
    }
    default: {
        auto* dimension = new KdDbDimension;
        ObjectAccess::dimKind(*dimension) = static_cast<short>(flagsOf(tags) & kKindMask);
        return dimension;
    }
    }
}

KdDbObject* newPolyline(const TagList& tags)
{
    if ((flagsOf(tags) & kThreeDimensional) != 0)
        return new KdDb3dPolyline;
    return new KdDb2dPolyline;
}

std::unique_ptr<KdDbObject> unknown(KdDbObject* object, std::string_view type)
{
    ObjectAccess::extras(*object).fileType = type;
    return std::unique_ptr<KdDbObject>(object);
}

std::string_view knownTypeName(const KdDbObject& object)
{
    const auto isOfClass = [&](const Kind& each) { return each.description() == object.isA(); };
    if (const auto found = std::ranges::find_if(kEntityKinds, isOfClass);
        found != kEntityKinds.end())
        return found->type;
    if (const auto found = std::ranges::find_if(kObjectKinds, isOfClass);
        found != kObjectKinds.end())
        return found->type;
    if (KdDbDimension::cast(&object))
        return "DIMENSION";
    if (KdDbVertexCurve::cast(&object))
        return "POLYLINE";
    return {};
}

} // namespace

bool isMesh(const TagList& polyline)
{
    return (flagsOf(polyline) & kMeshOrFaces) != 0;
}

std::unique_ptr<KdDbObject> newEntity(std::string_view type, const TagList& tags)
{
    if (type == "DIMENSION")
        return std::unique_ptr<KdDbObject>(newDimension(tags));
    if (type == "POLYLINE" && !isMesh(tags))
        return std::unique_ptr<KdDbObject>(newPolyline(tags));
    if (KdDbObject* known = makeKnown(kEntityKinds, type))
        return std::unique_ptr<KdDbObject>(known);
    return unknown(new UnknownEntity, type);
}

std::unique_ptr<KdDbObject> newObject(std::string_view type)
{
    if (KdDbObject* known = makeKnown(kObjectKinds, type))
        return std::unique_ptr<KdDbObject>(known);
    return unknown(new UnknownObject, type);
}

std::string_view typeName(const KdDbObject& object)
{
    if (const std::string_view known = knownTypeName(object); !known.empty())
        return known;
    if (const auto* owner = KdDbSymbolTable::cast(ObjectAccess::object(object.ownerId())))
        return tableName(tableKindOf(*owner).value());
    const ObjectExtras* extras = ObjectAccess::extras(object);
    return extras ? std::string_view(extras->fileType) : std::string_view();
}

std::string_view tableName(TableKind kind)
{
    return kTables[static_cast<std::size_t>(kind)].name;
}

std::optional<TableKind> tableKind(std::string_view name)
{
    const auto found = std::ranges::find(kTables, name, &Table::name);
    if (found == kTables.end())
        return std::nullopt;
    return static_cast<TableKind>(found - kTables.begin());
}

KdDbSymbolTable* newTable(TableKind kind)
{
    return kTables[static_cast<std::size_t>(kind)].makeTable();
}

KdDbSymbolTableRecord* newRecord(TableKind kind)
{
    return kTables[static_cast<std::size_t>(kind)].makeRecord();
}

} // namespace korra
