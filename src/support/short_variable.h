#pragma once

namespace support {

/// The value of an integer system variable, its 16 bits sign-extended; 0 when it cannot be read.
int readShortVariable(const wchar_t* name);

/// Writes the low 16 bits of a value to an integer system variable; nothing when it is refused.
void writeShortVariable(const wchar_t* name, int value);

} // namespace support
