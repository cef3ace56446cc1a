#include "dxf/object_kinds.h"

#include "dxf/tag_list.h"
#include "form/numbers.h"

namespace korra {

std::unique_ptr<KdDbObject> newObject(Kind::Place place, std::string_view type, const TagList& tags)
{
    const long long flags = parseWhole(tags.valueOf(70)).value_or(0);
    const Kind* const kind = kindNamed(place, type, flags);
    std::unique_ptr<KdDbObject> object;
    if (kind)
        object = newOfKind(*kind);
    else if (place == Kind::Place::entity)
        object = std::make_unique<UnknownEntity>();
    else
        object = std::make_unique<UnknownObject>();
    if (!kind || kind->isKept)
        ObjectAccess::extras(*object).fileType = type;
    return object;
}

std::unique_ptr<KdDbObject> newOfKind(const Kind& kind)
{
    return std::unique_ptr<KdDbObject>(kind.make());
}

bool isUnknown(const KdDbObject& object)
{
    const ObjectExtras* const extras = ObjectAccess::extras(object);
    return extras && !extras->fileType.empty();
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
