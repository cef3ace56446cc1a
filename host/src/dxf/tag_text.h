#pragma once

#include "dxf/tag_list.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace korra {

/// The texts of values. @throw DrawingError for a value that nobody could read again
std::string realText(double value);
std::string degreesText(double radians);

/// Appends a value and the end of its line. @throw DrawingError for a line that nobody could read
void appendValue(std::string& text, std::string_view value, std::string_view lineEnd);

/// Appends a tag as drawing files are usually written: the code right-aligned in three places.
void appendTag(std::string& text, int code, std::string_view value, std::string_view lineEnd);

/// An object's bytes with a tag put behind one of its tags.
std::string withTag(const TagList& tags, std::size_t behind, int code, std::string_view value,
                    std::string_view lineEnd);

/// An object's bytes, given its handle unless they have one; 0 is none.
std::string withHandle(std::string_view bytes, std::uint64_t handle, std::string_view lineEnd);

/// An object's bytes with another value in one of its tags.
/// @param tags  of the bytes
std::string withValue(const TagList& tags, std::size_t tag, std::string_view value,
                      std::string_view lineEnd);

} // namespace korra
