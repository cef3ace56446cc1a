#pragma once

#include "kd/status.h"

#include <string>
#include <string_view>
#include <vector>

namespace korra {

/// A linetype as a linetype file defines it.
struct LinetypeDefinition {
    std::wstring name;
    std::wstring comments;
    std::vector<double> dashes; ///< drawing units: positive dash, negative gap, 0 dot
};

/// Finds a linetype in the text of a linetype file, by name without regard to case.
///
/// A definition is a line "*NAME,description" and a line "A," with 2 to 12 lengths, the first of
/// them a dash or dot and at least one a gap. What stands behind ";" is a comment.
/// @return eOk; eUndefinedLineType when the name has no definition; eBadLineTypeDefinition for one
///         that is not so, or that has shapes or texts in brackets
Kdapi::ErrorStatus findLinetype(std::wstring_view file, std::wstring_view name,
                                LinetypeDefinition& found);

} // namespace korra
