#pragma once

#include "objects/object_access.h"

#include <cstddef>
#include <string>
#include <vector>

namespace korra {

/// The values of an object in the order in which it names them; a list begins with the count of its
/// elements. They are packed, for there may be very many objects to note.
struct FieldValues {
    using Long = SoundVariant<std::wstring, std::vector<TypedValue>, OwnedObjects::Objects>;

    std::vector<std::byte> plain; ///< numbers, points, ids; whether a long value is empty
    std::vector<Long> longs;      ///< the long values that are not
};

/// How much of an object is meant.
enum class Extent {
    contents,  ///< its fields, extended data and references: what a copy takes
    everything ///< also its source, its owner and what it owns: what taking a change back needs
};

FieldValues valuesOf(const KdDbObject& object, Extent extent);

/// Gives an object the values of another one of the same class, or those that it had itself.
void giveValues(KdDbObject& object, FieldValues values, Extent extent);

} // namespace korra
