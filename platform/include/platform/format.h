#pragma once

#include <cstdarg>
#include <string>

namespace platform {

/// Formats wide text by the rules of Windows' wide printf.
///
/// `%s`, `%c` take wide text, as do `%ls`, `%lc`; `%S`, `%hs`, `%C`, `%hc` take narrow text, read
/// as UTF-8. `%d` and `%ld` have 32 bits, `%lld` and `%I64d` 64, `%Id`, `%zd`, `%td` the size of a
/// pointer. `%p` prints 16 digits. Widths and precisions count characters, `*` takes them from the
/// arguments. A null text prints "(null)". A directive that Windows does not know is printed as it
/// stands, without its `%`. Numbers have a point, whatever the locale.
std::wstring format(const wchar_t* pattern, ...);

/// As format(), with its arguments in a list.
std::wstring formatList(const wchar_t* pattern, std::va_list arguments);

} // namespace platform
