#include "dxf/object_kinds.h"

#include "dxf/tag_list.h"
#include "form/numbers.h"

namespace korra {

std::unique_ptr<KdDbObject> newObject(Kind::Place place, std::string_view type, const TagList& tags)
{
    const long long flags = parseWhole(tags.valueOf(70)).value_or(0);
    if (const Kind* const kind = kindNamed(place, type, flags))
        return newOfKind(*kind);
    std::unique_ptr<KdDbObject> unknown;
    if (place == Kind::Place::entity)
        unknown = std::make_unique<UnknownEntity>();
    else
        unknown = std::make_unique<UnknownObject>();
    ObjectAccess::extras(*unknown).fileType = type;
    return unknown;
}

std::unique_ptr<KdDbObject> newOfKind(const Kind& kind)
{
    return std::unique_ptr<KdDbObject>(kind.make());
}

bool isUnknown(const KdDbObject& object)
{
    const KdRxClass* const description = object.isA();
    return description == UnknownEntity::desc() || description == UnknownObject::desc();
}

std::string_view typeName(const KdDbObject& object)
{
    if (const Kind* const kind = kindOf(object))
        return kind->fileName;
    const ObjectExtras* const extras = ObjectAccess::extras(object);
    return extras ? extras->fileType : std::string_view();
}

std::string nameOf(const KdDbObject& object)
{
    return std::string(typeName(object)) + ' ' + formatHandle(object.objectId().handle().value());
}

} // namespace korra
