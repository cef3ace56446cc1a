#pragma once

#include <string>
#include <string_view>

namespace korra {

/// The text that the control codes %%d, %%p, %%c, %%% and %%nnn mean; %%o and %%u are passed over.
std::wstring withoutControlCodes(std::wstring_view text);

/// The text with codes for what they mean, so that withoutControlCodes() gives the text again.
std::wstring withControlCodes(std::wstring_view text);

} // namespace korra
