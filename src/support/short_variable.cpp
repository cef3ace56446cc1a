#include "support/short_variable.h"

#include "kd/ed.h"

namespace support {

int readShortVariable(const wchar_t* name)
{
    resbuf value{};
    kdedGetVar(name, &value);
    return value.resval.rint;
}

void writeShortVariable(const wchar_t* name, int value)
{
    resbuf buffer{};
    buffer.restype = RTSHORT;
    buffer.resval.rint = static_cast<short>(value);
    kdedSetVar(name, &buffer);
}

} // namespace support
