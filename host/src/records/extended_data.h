#pragma once

#include "objects/object_access.h"

#include <optional>
#include <string_view>
#include <vector>

namespace korra {

/// Codes that extended data uses for what the host itself looks at.
inline constexpr short kXDataText = 1000;
inline constexpr short kXDataApplication = 1001;
inline constexpr short kXDataBracket = 1002; ///< "{" or "}"
inline constexpr short kXDataHandle = 1005;
inline constexpr short kXDataReal = 1040;
inline constexpr short kXDataShort = 1070;

/// The part [first, second) of the data that belongs to an application, its 1001 included; both are
/// the size when it has none. Names are compared without regard to case.
std::pair<std::size_t, std::size_t> applicationRange(const std::vector<TypedValue>& data,
                                                     std::wstring_view application);

/// Puts the data of one application, its 1001 first, in the place of what it had, else at the end;
/// with nothing behind the 1001 the application loses its data.
void replaceApplicationData(std::vector<TypedValue>& data, const std::vector<TypedValue>& section);

/// Gives a drawing the record of an application, without which no object may hold data of it. One
/// that the host made to complete the drawing is from now on a part of it, which is saved.
void registerApplication(KdDbDatabase& database, std::wstring_view application);

} // namespace korra
