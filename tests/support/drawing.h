#pragma once

#include "kd/db.h"

#include <gtest/gtest.h>

namespace tests {

/// The working database of the host that runs at the moment.
inline KdDbDatabase* drawing()
{
    return kddbHostApplicationServices()->workingDatabase();
}

inline KdCmColor colorOf(std::uint16_t index)
{
    KdCmColor color;
    color.setColorIndex(index);
    return color;
}

/// Height of dimension texts by the current variables, which may differ from the current style.
inline double currentDimensionTextHeight()
{
    KdDbDimStyleTableRecord variables;
    EXPECT_EQ(drawing()->getDimstyleData(&variables), Kdapi::eOk);
    return variables.dimtxt();
}

} // namespace tests
