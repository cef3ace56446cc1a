#include "support/data_notes.h"
#include "support/room_test.h"

#include "objects/contents.h"

#include <cmath>

namespace {

KdDbObjectId addDimension(const std::string& data)
{
    KdDbDimension* const dimension = newDimension();
    if (!data.empty())
        setData(*dimension, data);
    return addEntity(dimension);
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
    addRecord<KdDbRegAppTable, KdDbRegAppTableRecord>(L"OTHER");
    for (const auto& [what, before, after] : cases) {
        const Open<KdDbDimension> dimension(addDimension(before));
        EXPECT_EQ(dimension->setDimgap(2.5), Kdapi::eOk) << what;
        EXPECT_EQ(dataOf(*dimension), after) << what;
        EXPECT_EQ(dimension->dimgap(), 2.5) << what;
    }
}

TEST_F(DimensionOverridesTest, OutOfRangeValuesAreRefusedAndChangeNothing)
{
    const Open<KdDbDimension> dimension(addDimension(""));
    EXPECT_EQ(dimension->setDimdec(9), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimlfac(0.0), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimgap(HUGE_VAL), Kdapi::eInvalidInput);
    EXPECT_EQ(dataOf(*dimension), "");
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
