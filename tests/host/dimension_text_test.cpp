#include "support/host_test.h"

#include "db/dimension_text.h"
#include "db/dimension_variables.h"
#include "db/object_access.h"

using namespace tests;
using korra::ObjectAccess;

namespace {

class DimensionTextTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        id_ = addEntity(new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0}));
    }

    const KdDbDimension& dimension() const
    {
        return *KdDbDimension::cast(ObjectAccess::object(id_));
    }

    /// Gives the style of the dimension its defaults with some variables changed.
    void restyle(const std::vector<std::pair<int, KdDbDimensionValue>>& changes) const
    {
        auto* style = ObjectAccess::live<KdDbDimStyleTableRecord>(dimension().dimensionStyle());
        ASSERT_NE(style, nullptr);
        std::vector<KdDbDimensionValue>& values = ObjectAccess::values(*style);
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = korra::defaultValue(korra::dimensionVariables()[i]);
        for (const auto& [code, value] : changes)
            values[static_cast<std::size_t>(korra::dimensionVariableIndex(code))] = value;
    }

private:
    KdDbObjectId id_;
};

TEST_F(DimensionTextTest, LengthsFollowTheStyle)
{
    struct Case {
        double measured;
        std::vector<std::pair<int, KdDbDimensionValue>> style;
        const wchar_t* text;
    };

    constexpr int kPost = 3;
    constexpr int kRound = 45;
    constexpr int kPlus = 47;
    constexpr int kMinus = 48;
    constexpr int kTolerance = 71;
    constexpr int kLimits = 72;
    constexpr int kZeros = 78;
    constexpr int kDecimals = 271;
    constexpr int kToleranceDecimals = 272;
    constexpr int kSeparator = 278;
    const Case cases[] = {
        {0.5, {{kDecimals, 2}}, L"R0.50"},
        {0.5, {{kDecimals, 2}, {kZeros, 4}}, L"R.50"},
        {0.5, {{kDecimals, 2}, {kZeros, 8}}, L"R0.5"},
        {30.0, {{kDecimals, 2}, {kZeros, 8}}, L"R30"},
        {300.0, {{kDecimals, 0}, {kZeros, 8}}, L"R300"},
        {12.3456, {{kDecimals, 3}, {kSeparator, int{L','}}}, L"R12,346"},
        {12.3456, {{kDecimals, 2}, {kRound, 0.25}}, L"R12.25"},
        {7.0, {{kDecimals, 0}, {kPost, L" mm"}}, L"R7 mm"},
        {7.0, {{kDecimals, 0}, {kPost, L"M<>x1"}}, L"M7x1"},
        {7.0, {{kDecimals, 0}, {kPost, L"<>H7"}}, L"R7H7"},
        {7.0,
         {{kDecimals, 0}, {kTolerance, 1}, {kPlus, 0.1}, {kMinus, 0.1}, {kToleranceDecimals, 2}},
         L"R7%%p0.10"},
        {7.0,
         {{kDecimals, 0}, {kTolerance, 1}, {kPlus, 0.2}, {kMinus, 0.1}, {kToleranceDecimals, 1}},
         L"R7\\S+0.2^ -0.1;"},
        {7.0, {{kDecimals, 1}, {kLimits, 1}, {kPlus, 0.2}, {kMinus, 0.1}}, L"R\\S7.2^ 6.9;"},
        {1e-9, {{kDecimals, 2}}, L"R0.00"},
    };
    for (const Case& each : cases) {
        restyle(each.style);
        EXPECT_EQ(korra::lengthText(dimension(), each.measured, L"R"), each.text);
    }
}

TEST_F(DimensionTextTest, AnglesFollowTheStyle)
{
    constexpr double kDegree = 3.14159265358979323846 / 180.0;
    constexpr int kZeros = 79;
    constexpr int kPrecision = 179;
    constexpr int kDecimals = 271;
    constexpr int kUnit = 275;

    struct Case {
        double degrees;
        int unit;
        int precision;
        int zeros;
        const wchar_t* text;
    };

    const Case cases[] = {
        {45.0, 0, 0, 0, L"45%%d"},          {45.25, 0, 3, 0, L"45.250%%d"},
        {45.25, 0, 3, 2, L"45.25%%d"},      {0.5, 0, 1, 1, L".5%%d"},
        {45.5, 0, -1, 0, L"45.50%%d"}, // the decimals of lengths
        {45.4, 1, 0, 0, L"45%%d"},          {45.5, 1, 2, 0, L"45%%d30'"},
        {45.999, 1, 2, 0, L"46%%d0'"},      {30.5041667, 1, 4, 0, L"30%%d30'15\""},
        {30.5, 1, 6, 0, L"30%%d30'0.00\""}, {90.0, 2, 1, 0, L"100.0g"},
        {180.0, 3, 2, 0, L"3.14r"},
    };
    for (const Case& each : cases) {
        restyle({{kUnit, each.unit},
                 {kPrecision, each.precision},
                 {kZeros, each.zeros},
                 {kDecimals, 2}});
        EXPECT_EQ(korra::angleText(dimension(), each.degrees * kDegree), each.text);
    }
}

} // namespace
