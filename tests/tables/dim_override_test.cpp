#include "orvex/dim_override.h"

#include "support/data_notes.h"
#include "support/opened.h"
#include "support/room_test.h"

namespace {

class DimOverrideTest : public HostTest {
protected:
    std::string data() const { return dataOf(*Open<KdDbDimension>(dimension_, KdDb::kForRead)); }

    void store(const std::string& line) const { setData(*Open<KdDbDimension>(dimension_), line); }

    /// Overrides a variable and closes the dimension.
    template <class Value>
    Kdapi::ErrorStatus override(const wchar_t* name, Value value) const
    {
        return DimStyleMgr::OverrideDimVariable(Open<KdDbDimension>(dimension_).get(), name, value);
    }

    const KdDbObjectId dimension_ = addEntity(newDimension());
};

TEST_F(DimOverrideTest, RemovalTakesWholePairsOfEverySectionAndNothingElse)
{
    const std::tuple<const char*, const char*, const char*> removals[] = {
        {"every pair of the code", "@ACAD DSTYLE { i40 r2 i147 r1 i40 r3 }",
         "@ACAD DSTYLE { i147 r1 }"},
        {"no value that holds the number", "@ACAD DSTYLE { i271 i40 i40 r0.5 i77 i40 }",
         "@ACAD DSTYLE { i271 i40 i77 i40 }"},
        {"every section", "@ACAD DSTYLE { i40 r2 } DSTYLE { i40 r3 i76 i1 }",
         "@ACAD DSTYLE { } DSTYLE { i76 i1 }"},
        {"nothing outside a section", "@ACAD i40 r1 DSTYLE { i40 r2 } i40 r3",
         "@ACAD i40 r1 DSTYLE { } i40 r3"},
        {"no closing node", "@ACAD DSTYLE { i271 i3 i40 r2", "@ACAD DSTYLE { i271 i3"},
        {"a closing node missing between sections",
         "@ACAD DSTYLE { i40 r2 DSTYLE { i40 r3 i147 r1 }", "@ACAD DSTYLE { DSTYLE { i147 r1 }"},
        {"no pair cut off by the end", "@ACAD DSTYLE { i40 r2 i40", "@ACAD DSTYLE { i40"},
        {"unknown data", "@ACAD OTHER { i40 r2 }", "@ACAD OTHER { i40 r2 }"},
    };

    for (const auto& [what, before, after] : removals) {
        SCOPED_TRACE(what);
        store(before);
        DimStyleMgr::DeleteDimVarsOverride(Open<KdDbDimension>(dimension_).get(), 40);
        EXPECT_EQ(data(), after);
    }
}

TEST_F(DimOverrideTest, RemovalUpgradesAReaderForItsOwnTimeUnlessOthersRead)
{
    store("@ACAD DSTYLE { i40 r2 }");
    const Open<KdDbDimension> reader(dimension_, KdDb::kForRead);
    {
        const Open<KdDbDimension> other(dimension_, KdDb::kForRead);
        DimStyleMgr::DeleteDimVarsOverride(reader.get(), 40);
        EXPECT_EQ(dataOf(*reader), "@ACAD DSTYLE { i40 r2 }");
    }
    DimStyleMgr::DeleteDimVarsOverride(reader.get(), 40);
    EXPECT_EQ(dataOf(*reader), "@ACAD DSTYLE { }");
    EXPECT_TRUE(reader->isReadEnabled());
    EXPECT_FALSE(reader->isWriteEnabled());
}

TEST_F(DimOverrideTest, StoresEachVariableOnlyWhenItDiffersFromTheStyle)
{
    // Name, value of the style, another one and how that is stored.
    const std::tuple<const wchar_t*, double, double, std::string> variables[] = {
        {L"DIMDEC", 4, 5, "i271 i5"},          {L"dimadec", 0, 5, "i179 i5"},
        {L"DimTDec", 4, 5, "i272 i5"},         {L"dimatfit", 3, 1, "i289 i1"},
        {L"dimtad", 0, 4, "i77 i4"},           {L"dimjust", 0, 2, "i280 i2"},
        {L"DIMGAP", 0.09, 7.25, "i147 r7.25"}, {L"dimtvp", 0, 7.25, "i145 r7.25"},
        {L"dimlfac", 1, 7.25, "i144 r7.25"},   {L"dimSCALE", 1, 7.25, "i40 r7.25"},
        {L"dimtix", 0, 1, "i174 i1"},          {L"dimtoh", 1, 0, "i74 i0"},
        {L"dimtih", 1, 0, "i73 i0"},           {L"dimtofl", 0, 1, "i172 i1"},
        {L"dimse1", 0, 1, "i75 i1"},           {L"dimse2", 0, 1, "i76 i1"},
        {L"dimsd1", 0, 1, "i281 i1"},          {L"dimsd2", 0, 1, "i282 i1"},
    };

    for (const auto& [name, ofStyle, other, pair] : variables) {
        store("@ACAD DSTYLE { i999 kept }");
        EXPECT_EQ(override(name, other), Kdapi::eOk);
        EXPECT_EQ(data(), "@ACAD DSTYLE { i999 kept " + pair + " }");
        EXPECT_EQ(override(name, ofStyle), Kdapi::eOk);
        EXPECT_EQ(data(), "@ACAD DSTYLE { i999 kept }");
    }
}

TEST_F(DimOverrideTest, ComparesBeforeItConverts)
{
    using Value = std::variant<short, int, double, bool>;
    constexpr short four = 4;
    const std::tuple<const wchar_t*, Value, std::string> cases[] = {
        // the style has DIMDEC 4, DIMTAD 0, DIMTIH on, DIMSE2 off, DIMSCALE 1
        {L"dimdec", 4.7, "i271 i4 "},
        {L"dimdec", -0.7, "i271 i0 "},
        {L"dimdec", 4.0, ""},
        {L"dimtad", true, "i77 i1 "},
        {L"dimtih", four, "i73 i1 "},
        {L"dimtih", true, ""},
        {L"dimtih", false, "i73 i0 "},
        {L"dimtih", 0.5, "i73 i1 "},
        {L"dimse2", 1e-300, "i76 i1 "},
        {L"dimscale", 1, ""},
        {L"dimscale", 1.0 + 1e-15, "i40 r1 "},
    };

    for (const auto& [name, value, after] : cases) {
        store("@ACAD DSTYLE { }");
        std::visit(
            [&, variable = name](auto typed) { EXPECT_EQ(override(variable, typed), Kdapi::eOk); },
            value);
        EXPECT_EQ(data(), "@ACAD DSTYLE { " + after + "}") << narrow(name);
    }
}

TEST_F(DimOverrideTest, RefusesWithoutChangingAnything)
{
    EXPECT_EQ(DimStyleMgr::OverrideDimVariable(nullptr, L"dimdec", 1), 20);
    EXPECT_EQ(override(L"dimtxt", 9.0), Kdapi::eOk);
    EXPECT_EQ(override(L"dimdec", 1e300), Kdapi::eInvalidInput);
    {
        const Open<KdDbObject> writer(database().dimstyle());
        EXPECT_EQ(override(L"dimdec", 5), Kdapi::eWasOpenForWrite);
    }
    EXPECT_EQ(data(), "");
    const Open<KdDbObject> reader(database().dimstyle(), KdDb::kForRead);
    EXPECT_EQ(override(L"dimdec", 5), Kdapi::eOk) << "others may read the style";
}

TEST_F(DimOverrideTest, KeepsTheOtherOverridesWhateverFails)
{
    for (const double value : {7.25, 1.0}) {
        const auto overrideScale = [&] {
            const support::Opened<KdDbDimension> dimension(dimension_, KdDb::kForWrite);
            if (dimension)
                DimStyleMgr::OverrideDimVariable(dimension.get(), L"dimscale", value);
        };
        failEachCall([&] { store("@ACAD DSTYLE { i40 r3 i147 r1 }"); }, overrideScale,
                     [&] { EXPECT_THAT(data(), HasSubstr("i147 r1")); });
    }
}

} // namespace
