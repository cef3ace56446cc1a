#include "dxf_samples.h"
#include "support/host_test.h"
#include "support/objects.h"

#include "dimensions/dimension_overrides.h"
#include "tables/dimension_variables.h"

#include <limits>
#include <sstream>

using namespace tests;
using korra::ObjectAccess;
using korra::TypedValue;

namespace {

using Nodes = std::vector<TypedValue>;

/// Extended data from one line: @ an application, i an integer, r a real, { and }; else a text.
Nodes nodes(const std::string& line)
{
    Nodes result;
    std::istringstream tokens(line);
    for (std::string token; tokens >> token;) {
        const std::wstring text(token.begin(), token.end());
        if (token[0] == '@')
            result.push_back({1001, text.substr(1)});
        else if (token[0] == 'i')
            result.push_back({1070, static_cast<short>(std::stoi(token.substr(1)))});
        else if (token[0] == 'r')
            result.push_back({1040, std::stod(token.substr(1))});
        else if (token == "{" || token == "}")
            result.push_back({1002, text});
        else
            result.push_back({1000, text});
    }
    return result;
}

KdDbObjectId addDimension(const std::string& data)
{
    auto* dimension = new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0});
    ObjectAccess::extras(*dimension).xData = nodes(data);
    return addEntity(dimension);
}

const Nodes& dataOf(KdDbDimension& dimension)
{
    return ObjectAccess::extras(dimension).xData;
}

class DimensionOverridesTest : public HostTest {};

TEST_F(DimensionOverridesTest, SetterReplacesTheFirstPairElseAppendsToTheFirstSection)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"no data", "", "@ACAD DSTYLE { i147 r2.5 }"},
        {"another application's data", "@OTHER DSTYLE { i147 r1 }",
         "@OTHER DSTYLE { i147 r1 } @ACAD DSTYLE { i147 r2.5 }"},
        {"no section", "@ACAD note @OTHER i7", "@ACAD note DSTYLE { i147 r2.5 } @OTHER i7"},
        {"a pair", "@ACAD DSTYLE { i147 r1 i40 r9 }", "@ACAD DSTYLE { i147 r2.5 i40 r9 }"},
        {"two pairs", "@ACAD DSTYLE { i147 r1 i147 r3 }", "@ACAD DSTYLE { i147 r2.5 i147 r3 }"},
        {"a pair in the second section", "@ACAD DSTYLE { } DSTYLE { i147 r3 }",
         "@ACAD DSTYLE { } DSTYLE { i147 r2.5 }"},
        {"two sections without it", "@ACAD DSTYLE { i40 r9 } DSTYLE { }",
         "@ACAD DSTYLE { i40 r9 i147 r2.5 } DSTYLE { }"},
        {"no closing node", "@ACAD DSTYLE { i40 r9", "@ACAD DSTYLE { i40 r9 i147 r2.5"},
        {"no closing node before another application", "@ACAD DSTYLE { @OTHER i7",
         "@ACAD DSTYLE { i147 r2.5 @OTHER i7"},
        {"nothing behind the name", "@ACAD DSTYLE", "@ACAD DSTYLE { i147 r2.5"},
        {"a value that looks like the code", "@ACAD DSTYLE { i271 i147 i40 r9 }",
         "@ACAD DSTYLE { i271 i147 i40 r9 i147 r2.5 }"},
        {"a code without its value", "@ACAD DSTYLE { i40 r9 i147 }",
         "@ACAD DSTYLE { i40 r9 i147 r2.5 i147 }"},
        {"a pair that nobody knows, name in small letters", "@ACAD dstyle { i999 x }",
         "@ACAD dstyle { i999 x i147 r2.5 }"},
    };
    for (const auto& [what, before, after] : cases) {
        const Open<KdDbDimension> dimension(addDimension(before));
        EXPECT_EQ(dimension->setDimgap(2.5), Kdapi::eOk) << what;
        EXPECT_EQ(dataOf(*dimension), nodes(after)) << what;
        EXPECT_EQ(dimension->dimgap(), 2.5) << what;
    }
}

TEST_F(DimensionOverridesTest, EachValueHasTheCodeAndTypeOfItsVariable)
{
    const Open<KdDbDimension> dimension(addDimension(""));
    dimension->setDimdec(3);
    dimension->setDimadec(-1);
    dimension->setDimtdec(2);
    dimension->setDimtix(true);
    dimension->setDimtoh(false);
    dimension->setDimtih(false);
    dimension->setDimtofl(true);
    dimension->setDimatfit(1);
    dimension->setDimtad(3);
    dimension->setDimtvp(-0.5);
    dimension->setDimse1(true);
    dimension->setDimse2(true);
    dimension->setDimsd1(true);
    dimension->setDimsd2(true);
    dimension->setDimjust(2);
    dimension->setDimlfac(-2.0);
    dimension->setDimscale(2.0);
    EXPECT_EQ(dataOf(*dimension),
              nodes("@ACAD DSTYLE { i271 i3 i179 i-1 i272 i2 i174 i1 i74 i0 i73 i0 i172 i1 i289 i1 "
                    "i77 i3 i145 r-0.5 i75 i1 i76 i1 i281 i1 i282 i1 i280 i2 i144 r-2 i40 r2 }"));
    EXPECT_EQ(dimension->dimadec(), -1);
    EXPECT_FALSE(dimension->dimtih());
    EXPECT_EQ(dimension->dimtvp(), -0.5);
}

TEST_F(DimensionOverridesTest, OutOfRangeValuesAreRefusedAndChangeNothing)
{
    const double infinite = std::numeric_limits<double>::infinity();
    const KdDbObjectId id = addDimension("");
    {
        const Open<KdDbDimension> dimension(id);
        EXPECT_EQ(dimension->setDimdec(9), Kdapi::eInvalidInput);
        EXPECT_EQ(dimension->setDimdec(-1), Kdapi::eInvalidInput);
        EXPECT_EQ(dimension->setDimatfit(4), Kdapi::eInvalidInput);
        EXPECT_EQ(dimension->setDimtad(5), Kdapi::eInvalidInput);
        EXPECT_EQ(dimension->setDimjust(-1), Kdapi::eInvalidInput);
        EXPECT_EQ(dimension->setDimlfac(0.0), Kdapi::eInvalidInput);
        EXPECT_EQ(dimension->setDimscale(-1.0), Kdapi::eInvalidInput);
        EXPECT_EQ(dimension->setDimgap(infinite), Kdapi::eInvalidInput);
        EXPECT_EQ(dataOf(*dimension), Nodes());
        EXPECT_EQ(dimension->setDimgap(-1.0), Kdapi::eOk);
    }
    const Open<KdDbDimension> reader(id, KdDb::kForRead);
    EXPECT_EQ(reader->setDimgap(1.0), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(reader->dimgap(), -1.0);
}

TEST_F(DimensionOverridesTest, VariablesAreFoundByCodeAndNameAndHoldTheirDefault)
{
    for (const korra::DimensionVariable& variable : korra::dimensionVariables()) {
        const int byCode = korra::dimensionVariableIndex(variable.code);
        ASSERT_GE(byCode, 0) << variable.code;
        EXPECT_EQ(&korra::dimensionVariables()[static_cast<std::size_t>(byCode)], &variable)
            << variable.code;
        EXPECT_TRUE(korra::accepts(variable, variable.byDefault) ||
                    variable.kind == korra::DimensionKind::text ||
                    variable.kind == korra::DimensionKind::reference)
            << variable.code;
    }
    EXPECT_EQ(korra::dimensionVariableIndex(L"dimgap"), korra::dimensionVariableIndex(147));
    EXPECT_EQ(korra::dimensionVariableIndex(L"nothing"), -1);
}

TEST_F(DimensionOverridesTest, OverridesOfTheWrongTypeAreNotTaken)
{
    const Open<KdDbDimension> dimension(addDimension("@ACAD DSTYLE { i271 six i147 i2 i77 i99 }"),
                                        KdDb::kForRead);
    EXPECT_EQ(dimension->dimdec(), 4);
    EXPECT_EQ(dimension->dimgap(), 2.0); // a whole number will do for a real
    EXPECT_EQ(dimension->dimtad(), 0);
}

TEST_F(DimensionOverridesTest, AnOverrideBringsTheRecordOfItsApplicationIntoTheFile)
{
    const std::string file =
        dxf::withEntities("0 DIMENSION; 5 A; 8 0; 70 0; 10 0; 20 10; 13 0; 23 0; 14 40; 24 0");
    const auto override = [](KdDbDatabase& drawing) {
        dxf::changeObject<KdDbDimension>(drawing, 0xA, [](KdDbDimension& dimension) {
            EXPECT_EQ(dimension.setDimgap(2.5), Kdapi::eOk);
        });
    };
    const auto plain = dxf::readWhole(file);
    dxf::changeObject<KdDbDimension>(*plain, 0xA,
                                     [](auto& dimension) { dimension.setDimensionText(L"wide"); });
    EXPECT_THAT(korra::drawingText(*plain), ::testing::Not(::testing::HasSubstr("APPID")));
    override(*plain);
    const std::string text = korra::drawingText(*plain);
    EXPECT_THAT(text, ::testing::HasSubstr("APPID"));
    const auto again = dxf::readWhole(text);
    const auto registered = [&](const KdDbDatabase& drawing) {
        const std::string saved = korra::drawingText(drawing);
        std::size_t count = 0;
        for (std::size_t at = saved.find("\nAPPID"); at != saved.npos; ++count)
            at = saved.find("\nAPPID", at + 1);
        return count;
    };
    override(*again);
    EXPECT_EQ(registered(*again), registered(*plain));

    const auto unregistered = dxf::readWhole(file);
    const auto acad = [&] {
        return unregistered->contents().record(korra::TableKind::regApp, L"ACAD");
    };
    erase(acad());
    override(*unregistered);
    EXPECT_FALSE(acad().isNull());
    EXPECT_THAT(korra::drawingText(*unregistered), ::testing::HasSubstr("APPID"));
}

} // namespace
