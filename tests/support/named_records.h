#pragma once

#include "orvex/dim_styles.h"
#include "orvex/layers.h"
#include "orvex/text_styles.h"

#include "support/drawing.h"

#include <gtest/gtest.h>

namespace tests {

/// Adds a layer, a text style and a dimension style of this name to the working database.
inline void addNamedRecords(const wchar_t* name, double dimensionTextHeight = 0)
{
    QmLayerMgr::LAYERINFO layer;
    layer.name = name;
    EXPECT_EQ(QmLayerMgr::CreateLayer(layer, drawing()), 1);
    EXPECT_EQ(TxtStyleMgr::CreateTextStyle(name, 1, 0, 1, L"", L"", L"DejaVu Sans", drawing()), 1);
    EXPECT_EQ(
        DimStyleMgr::CreateDimStyle(name, L"", dimensionTextHeight, 0, 2, 0, 2, 1, 0, 1, drawing()),
        1);
}

} // namespace tests
