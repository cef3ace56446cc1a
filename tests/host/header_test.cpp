// The settings that a drawing carries in its header, and the numbers in their texts.

#include "form/header.h"
#include "form/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

using korra::DrawingHeader;

namespace tests {
namespace {

DrawingHeader sample()
{
    DrawingHeader header;
    header.append({"$LTSCALE", {{40, "  2.50 "}}});
    header.append({"$TILEMODE", {{70, "     1"}}});
    header.append({"$CLAYER", {{8, "Wand"}}});
    header.append({"$LIMMAX", {{10, "297.0"}, {20, "210.0"}}});
    return header;
}

TEST(DrawingHeaderTest, ReadsWhatIsThereAndElseTheDefault)
{
    const DrawingHeader header = sample();
    EXPECT_EQ(header.real("$LTSCALE", 1.0), 2.5);
    EXPECT_EQ(header.real("$DIMSCALE", 7.0), 7.0);
    EXPECT_EQ(header.integer("$TILEMODE", 0), 1);
    EXPECT_EQ(header.integer("$CLAYER", -3), -3); // no number
    EXPECT_EQ(header.text("$CLAYER", L"0"), L"Wand");
    EXPECT_EQ(header.text("$CELTYPE", L"ByLayer"), L"ByLayer");
    EXPECT_EQ(header.point("$LIMMAX", {1, 1, 1}), KdGePoint3d(297, 210, 0));
    EXPECT_EQ(header.point("$EXTMAX", {1, 1, 1}), KdGePoint3d(1, 1, 1));
}

TEST(DrawingHeaderTest, SettersKeepPlaceAndEqualText)
{
    DrawingHeader header = sample();
    header.setReal("$LTSCALE", 2.5, 40);
    header.setInteger("$TILEMODE", 0, 70);
    header.setText("$CLAYER", L"Wand", 8);
    header.setPoint("$LIMMAX", KdGePoint2d(297, 100));
    header.setReal("$DIMSCALE", 0.1, 40);
    ASSERT_EQ(header.variables().size(), 5u);
    EXPECT_EQ(header.variables()[0].values[0].text, "  2.50 ");
    EXPECT_EQ(header.variables()[1].values[0].text, "0");
    EXPECT_EQ(header.variables()[2].values[0].text, "Wand");
    EXPECT_EQ(header.variables()[3].values,
              (std::vector<korra::HeaderValue>{{10, "297.0"}, {20, "100"}}));
    EXPECT_EQ(header.variables()[4].name, "$DIMSCALE");
    EXPECT_EQ(header.variables()[4].values[0], (korra::HeaderValue{40, "0.1"}));
}

TEST(DrawingNumbersTest, WrittenNumbersReadBackEqual)
{
    std::mt19937_64 random(4711);
    for (int round = 0; round < 20000; ++round) {
        const double value =
            std::ldexp(static_cast<double>(random()), static_cast<int>(random() % 160) - 120);
        EXPECT_EQ(korra::parseReal(korra::formatReal(value)), value);
    }
    for (const double value : {0.0, -0.0, 1.0, 0.1, 1e300, 5e-324})
        EXPECT_EQ(korra::parseReal(korra::formatReal(value)), value);
    EXPECT_EQ(korra::formatReal(0.1), "0.1");
    EXPECT_EQ(korra::formatReal(-0.0), "0");
}

TEST(DrawingNumbersTest, RoundDegreesAreWrittenRound)
{
    for (int degrees = -720; degrees <= 720; ++degrees)
        EXPECT_EQ(korra::formatDegrees(korra::degreesToRadians(degrees)), std::to_string(degrees));
    EXPECT_EQ(korra::formatDegrees(korra::degreesToRadians(22.5)), "22.5");
    EXPECT_EQ(korra::formatDegrees(std::acos(-1.0)), "180");
}

TEST(DrawingNumbersTest, OnlyWholeTextsAreNumbers)
{
    for (const char* text :
         {"", " ", "1 2", "1x", "x1", "+", "+-1", "--1", "inf", "nan", "1e400", "0x10"})
        EXPECT_EQ(korra::parseReal(text), std::nullopt) << text;
    EXPECT_EQ(korra::parseReal("\t+1.5e2 "), 150.0);
    EXPECT_EQ(korra::parseReal("1e-400"), 0.0);
    for (const char* text : {"", "1.0", "99999999999999999999", "1e3"})
        EXPECT_EQ(korra::parseWhole(text), std::nullopt) << text;
    for (const char* text : {"", "G", "-1", "8000000000000000", "10000000000000000"})
        EXPECT_EQ(korra::parseHandle(text), std::nullopt) << text;
    EXPECT_EQ(korra::parseHandle("1aF"), 0x1AFu);
}

} // namespace
} // namespace tests
