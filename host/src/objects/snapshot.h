#pragma once

#include "objects/object_access.h"

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace korra {

/// One value of what an object consists of.
using FieldValue = SoundVariant<long long, double, std::wstring, KdGePoint3d, KdGeVector3d,
                                KdGePoint2d, KdDbObjectId, KdDbHandle, KdCmColor, std::string_view,
                                std::vector<TypedValue>, OwnedObjects::Objects>;

/// The values of an object in the order in which it names them; a list begins with the count of its
/// elements.
using FieldValues = std::vector<FieldValue>;

/// How much of an object is meant.
enum class Extent {
    contents,  ///< its fields, extended data and references: what a copy takes
    everything ///< also its source, its owner and what it owns: what taking a change back needs
};

FieldValues valuesOf(const KdDbObject& object, Extent extent);

/// Gives an object the values of another one of the same class, or those that it had itself.
void giveValues(KdDbObject& object, FieldValues values, Extent extent);

} // namespace korra
