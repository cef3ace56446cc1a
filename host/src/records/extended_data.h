#pragma once

#include "objects/references.h"

#include <string_view>
#include <vector>

namespace korra {

/// Further codes of extended data that the host itself looks at.
inline constexpr short kXDataText = 1000;
inline constexpr short kXDataBracket = 1002; ///< "{" or "}"
inline constexpr short kXDataReal = 1040;
inline constexpr short kXDataShort = 1070;

/// The part [first, second) of the data that belongs to an application, its 1001 included; both are
/// the size when it has none. Names are compared without regard to case.
std::pair<std::size_t, std::size_t> applicationRange(const std::vector<TypedValue>& data,
                                                     std::wstring_view application);

/// Puts the data of one application, its 1001 first, in the place of what it had, else at the end;
/// with nothing behind the 1001 the application loses its data.
void replaceApplicationData(std::vector<TypedValue>& data, const std::vector<TypedValue>& section);

} // namespace korra
