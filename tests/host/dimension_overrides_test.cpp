#include "support/host_test.h"
#include "support/objects.h"

#include "objects/contents.h"

#include <cmath>
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
        else
            result.push_back({short(token == "{" || token == "}" ? 1002 : 1000), text});
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
        {"two pairs", "@ACAD DSTYLE { i147 r1 i147 r3 }", "@ACAD DSTYLE { i147 r2.5 i147 r3 }"},
        {"a pair in the second section", "@ACAD DSTYLE { } DSTYLE { i147 r3 }",
         "@ACAD DSTYLE { } DSTYLE { i147 r2.5 }"},
        {"no closing node before another application", "@ACAD DSTYLE { @OTHER i7",
         "@ACAD DSTYLE { i147 r2.5 @OTHER i7"},
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

TEST_F(DimensionOverridesTest, OutOfRangeValuesAreRefusedAndChangeNothing)
{
    const Open<KdDbDimension> dimension(addDimension(""));
    EXPECT_EQ(dimension->setDimdec(9), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimlfac(0.0), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimgap(HUGE_VAL), Kdapi::eInvalidInput);
    EXPECT_EQ(dataOf(*dimension), Nodes());
}

TEST_F(DimensionOverridesTest, OverridesOfTheWrongTypeAreNotTaken)
{
    const Open<KdDbDimension> dimension(addDimension("@ACAD DSTYLE { i271 six i147 i2 i77 i99 }"),
                                        KdDb::kForRead);
    EXPECT_EQ(dimension->dimdec(), 4);
    EXPECT_EQ(dimension->dimgap(), 2.0); // a whole number will do for a real
    EXPECT_EQ(dimension->dimtad(), 0);
}

TEST_F(DimensionOverridesTest, AnOverrideBringsTheRecordOfItsApplication)
{
    const auto application = [&] {
        return database().contents().record(korra::TableKind::regApp, L"ACAD");
    };
    erase(application());
    const Open<KdDbDimension> dimension(addDimension(""));
    dimension->setDimensionText(L"wide");
    EXPECT_TRUE(application().isNull());
    dimension->setDimgap(2.5);
    EXPECT_FALSE(application().isNull());
}

} // namespace
