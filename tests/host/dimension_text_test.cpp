#include "dimension_test.h"

#include "dimensions/dimension_text.h"

#include <numbers>

namespace {

class DimensionTextTest : public DimensionTest {};

TEST_F(DimensionTextTest, LengthsFollowTheStyle)
{
    const std::tuple<double, Changes, const wchar_t*> cases[] = {
        {0.5, {{L"dimdec", 2}}, L"R0.50"},
        {0.5, {{L"dimdec", 2}, {L"dimzin", 4}}, L"R.50"},
        {0.5, {{L"dimdec", 2}, {L"dimzin", 8}}, L"R0.5"},
        {300.0, {{L"dimdec", 0}, {L"dimzin", 8}}, L"R300"},
        {12.3456, {{L"dimdec", 3}, {L"dimdsep", int{L','}}}, L"R12,346"},
        {12.3456, {{L"dimdec", 2}, {L"dimrnd", 0.25}}, L"R12.25"},
        {7.0, {{L"dimdec", 0}, {L"dimpost", L" mm"}}, L"R7 mm"},
        {7.0, {{L"dimdec", 0}, {L"dimpost", L"M<>x1"}}, L"M7x1"},
        {7.0,
         {{L"dimdec", 0}, {L"dimtol", 1}, {L"dimtp", 0.1}, {L"dimtm", 0.1}, {L"dimtdec", 2}},
         L"R7%%p0.10"},
        {7.0,
         {{L"dimdec", 0}, {L"dimtol", 1}, {L"dimtp", 0.2}, {L"dimtm", 0.1}, {L"dimtdec", 1}},
         L"R7\\S+0.2^ -0.1;"},
        {7.0, {{L"dimdec", 1}, {L"dimlim", 1}, {L"dimtp", 0.2}, {L"dimtm", 0.1}}, L"R\\S7.2^ 6.9;"},
        {0.0, {{L"dimdec", 1}, {L"dimlim", 1}, {L"dimtm", 1e-9}}, L"R\\S0.0^ 0.0;"},
    };
    for (const auto& [measured, style, text] : cases) {
        restyle(style);
        EXPECT_EQ(korra::lengthText(dimension(), measured, L"R"), text);
    }
}

TEST_F(DimensionTextTest, AnglesFollowTheStyle)
{
    // Degrees, unit, decimals and suppressed zeros.
    const std::tuple<double, int, int, int, const wchar_t*> cases[] = {
        {45.0, 0, 0, 0, L"45%%d"},          {45.25, 0, 3, 0, L"45.250%%d"},
        {45.25, 0, 3, 2, L"45.25%%d"},      {0.5, 0, 1, 1, L".5%%d"},
        {45.5, 0, -1, 0, L"45.50%%d"}, // the decimals of lengths
        {45.4, 1, 0, 0, L"45%%d"},          {45.5, 1, 2, 0, L"45%%d30'"},
        {45.999, 1, 2, 0, L"46%%d0'"},      {30.5041667, 1, 4, 0, L"30%%d30'15\""},
        {30.5, 1, 6, 0, L"30%%d30'0.00\""}, {90.0, 2, 1, 0, L"100.0g"},
        {180.0, 3, 2, 0, L"3.14r"},
    };
    for (const auto& [degrees, unit, precision, zeros, text] : cases) {
        restyle(
            {{L"dimaunit", unit}, {L"dimadec", precision}, {L"dimazin", zeros}, {L"dimdec", 2}});
        EXPECT_EQ(korra::angleText(dimension(), degrees / 180.0 * std::numbers::pi), text);
    }
}

} // namespace
