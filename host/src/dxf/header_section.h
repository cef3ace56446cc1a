#pragma once

#include "dxf/tag_list.h"
#include "form/header.h"

#include <string>
#include <string_view>

namespace korra {

/// Reads the variables of the header section, and the encoding that they tell.
///
/// A drawing of version AC1021 or later is UTF-8, an earlier one in its $DWGCODEPAGE, without it in
/// ANSI_1252; one that tells neither is UTF-8, and so is one with a byte order mark.
/// What is no UTF-8 in such a drawing is read in that code page too: programs mix them.
/// @param section  tags of the section from its 0/SECTION on
DrawingHeader readHeader(const TagList& section, bool byteOrderMark);

/// The section's tags brought up to date: a variable that is the same keeps its text.
/// @param section  as it was read, 0/SECTION first
std::string headerWritten(std::string_view section, const DrawingHeader& header,
                          std::string_view lineEnd);

} // namespace korra
