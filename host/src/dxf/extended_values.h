#pragma once

#include "dxf/tag_list.h"
#include "form/encoding.h"
#include "objects/object_access.h"

#include <optional>
#include <string>
#include <vector>

namespace korra {

/// One value of extended data with the tags that hold it.
struct ExtendedValue {
    TypedValue value;
    std::size_t firstTag = 0;
    std::size_t tagCount = 1;
};

/// Reads the extended data among an object's tags.
/// @param wrong  on failure the tag whose value is not what its code says
/// @return nullopt on failure
std::optional<std::vector<ExtendedValue>>
readExtendedData(const TagList& tags, const TextEncoding& encoding, std::size_t& wrong);

/// The tags of a value.
std::string extendedValueTags(const TypedValue& value, const TextEncoding& encoding,
                              std::string_view lineEnd);

} // namespace korra
