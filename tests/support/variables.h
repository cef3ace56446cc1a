#pragma once

#include "kd/ed.h"
#include "platform/text.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace tests {

/// The value of a system variable as text, "3", "0.5", "1,2,3" or "Model"; "none" where it cannot
/// be read.
inline std::string variable(const wchar_t* name)
{
    resbuf value{};
    if (kdedGetVar(name, &value) != RTNORM)
        return "none";
    std::ostringstream text;
    text.precision(17);
    const double* const point = value.resval.rpoint;
    switch (value.restype) {
    case RTSHORT:
        text << value.resval.rint;
        break;
    case RTREAL:
        text << value.resval.rreal;
        break;
    case RTSTR:
        text << platform::toUtf8(value.resval.rstring);
        kdapi_free(value.resval.rstring);
        break;
    default:
        text << point[0] << ',' << point[1] << ',' << point[2];
    }
    return text.str();
}

} // namespace tests
