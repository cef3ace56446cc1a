#include "orvex/dim_override.h"

#include "support/library_test.h"
#include "support/opened.h"
#include "support/resbuf_list.h"

#include "platform/text.h"

#include <sstream>

using support::ResbufList;

namespace {

/// The "ACAD" data of an object as one line: s: a string, i: an integer, r: a real, { and }.
std::string dataText(const KdDbObject& object)
{
    std::ostringstream text;
    const ResbufList data(object.xData(L"ACAD"));
    for (const resbuf* node = data.get(); node; node = node->rbnext) {
        if (node->restype == 1001)
            continue;
        text << (text.tellp() ? " " : "");
        if (node->restype == 1070)
            text << "i:" << node->resval.rint;
        else if (node->restype == 1040)
            text << "r:" << node->resval.rreal;
        else if (node->restype == 1000)
            text << "s:" << platform::toUtf8(node->resval.rstring);
        else
            text << char(node->resval.rstring[0]);
    }
    return text.str();
}

resbuf* newNode(const std::string& token)
{
    const std::wstring wide(token.begin(), token.end());
    if (token[0] == 'i')
        return kdutBuildList(1070, std::stoi(token.substr(2)), 0);
    if (token[0] == 'r')
        return kdutBuildList(1040, std::stod(token.substr(2)), 0);
    return token[0] == 's' ? kdutBuildList(1000, wide.c_str() + 2, 0)
                           : kdutBuildList(1002, wide.c_str(), 0);
}

/// Writes the "ACAD" data that a line in the form of dataText() stands for.
void setData(KdDbObject& object, const std::string& line)
{
    ResbufList data(kdutBuildList(1001, L"ACAD", 0));
    resbuf** end = &data.get()->rbnext;
    std::istringstream tokens(line);
    for (std::string token; tokens >> token; end = &(*end)->rbnext)
        *end = newNode(token);
    ASSERT_EQ(object.setXData(data.get()), Kdapi::eOk) << line;
}

class DimOverrideTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        dimension_ = addEntity(newDimension());
    }

    std::string data() const { return dataText(*Open<KdDbDimension>(dimension_, KdDb::kForRead)); }

    void store(const std::string& line) const { setData(*Open<KdDbDimension>(dimension_), line); }

    /// Overrides a variable and closes the dimension.
    template <class Value>
    Kdapi::ErrorStatus override(const wchar_t* name, Value value) const
    {
        return DimStyleMgr::OverrideDimVariable(Open<KdDbDimension>(dimension_).get(), name, value);
    }

    KdDbObjectId dimension_;
};

TEST_F(DimOverrideTest, RemovalTakesWholePairsOfEverySectionAndNothingElse)
{
    const std::tuple<const char*, const char*, const char*> removals[] = {
        {"every pair of the code", "s:DSTYLE { i:40 r:2 i:147 r:1 i:40 r:3 }",
         "s:DSTYLE { i:147 r:1 }"},
        {"no value that holds the number", "s:DSTYLE { i:271 i:40 i:40 r:0.5 i:77 i:40 }",
         "s:DSTYLE { i:271 i:40 i:77 i:40 }"},
        {"every section", "s:DSTYLE { i:40 r:2 } s:DSTYLE { i:40 r:3 i:76 i:1 }",
         "s:DSTYLE { } s:DSTYLE { i:76 i:1 }"},
        {"nothing outside a section", "i:40 r:1 s:DSTYLE { i:40 r:2 } i:40 r:3",
         "i:40 r:1 s:DSTYLE { } i:40 r:3"},
        {"no closing node", "s:DSTYLE { i:271 i:3 i:40 r:2", "s:DSTYLE { i:271 i:3"},
        {"a closing node missing between sections",
         "s:DSTYLE { i:40 r:2 s:DSTYLE { i:40 r:3 i:147 r:1 }",
         "s:DSTYLE { s:DSTYLE { i:147 r:1 }"},
        {"no pair cut off by the end", "s:DSTYLE { i:40 r:2 i:40", "s:DSTYLE { i:40"},
        {"unknown data", "s:OTHER { i:40 r:2 }", "s:OTHER { i:40 r:2 }"},
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
    store("s:DSTYLE { i:40 r:2 }");
    const Open<KdDbDimension> reader(dimension_, KdDb::kForRead);
    {
        const Open<KdDbDimension> other(dimension_, KdDb::kForRead);
        DimStyleMgr::DeleteDimVarsOverride(reader.get(), 40);
        EXPECT_EQ(dataText(*reader), "s:DSTYLE { i:40 r:2 }");
    }
    DimStyleMgr::DeleteDimVarsOverride(reader.get(), 40);
    EXPECT_EQ(dataText(*reader), "s:DSTYLE { }");
    EXPECT_TRUE(reader->isReadEnabled());
    EXPECT_FALSE(reader->isWriteEnabled());
}

TEST_F(DimOverrideTest, StoresEachVariableOnlyWhenItDiffersFromTheStyle)
{
    // Name, value of the style, another one and how that is stored.
    const std::tuple<const wchar_t*, double, double, std::string> variables[] = {
        {L"DIMDEC", 4, 5, "i:271 i:5"},          {L"dimadec", 0, 5, "i:179 i:5"},
        {L"DimTDec", 4, 5, "i:272 i:5"},         {L"dimatfit", 3, 1, "i:289 i:1"},
        {L"dimtad", 0, 4, "i:77 i:4"},           {L"dimjust", 0, 2, "i:280 i:2"},
        {L"DIMGAP", 0.09, 7.25, "i:147 r:7.25"}, {L"dimtvp", 0, 7.25, "i:145 r:7.25"},
        {L"dimlfac", 1, 7.25, "i:144 r:7.25"},   {L"dimSCALE", 1, 7.25, "i:40 r:7.25"},
        {L"dimtix", 0, 1, "i:174 i:1"},          {L"dimtoh", 1, 0, "i:74 i:0"},
        {L"dimtih", 1, 0, "i:73 i:0"},           {L"dimtofl", 0, 1, "i:172 i:1"},
        {L"dimse1", 0, 1, "i:75 i:1"},           {L"dimse2", 0, 1, "i:76 i:1"},
        {L"dimsd1", 0, 1, "i:281 i:1"},          {L"dimsd2", 0, 1, "i:282 i:1"},
    };

    for (const auto& [name, ofStyle, other, pair] : variables) {
        store("s:DSTYLE { i:999 s:kept }");
        EXPECT_EQ(override(name, other), Kdapi::eOk);
        EXPECT_EQ(data(), "s:DSTYLE { i:999 s:kept " + pair + " }");
        EXPECT_EQ(override(name, ofStyle), Kdapi::eOk);
        EXPECT_EQ(data(), "s:DSTYLE { i:999 s:kept }");
    }
}

TEST_F(DimOverrideTest, ComparesBeforeItConverts)
{
    using Value = std::variant<short, int, double, bool>;
    constexpr short four = 4;
    const std::tuple<const wchar_t*, Value, std::string> cases[] = {
        // the style has DIMDEC 4, DIMTAD 0, DIMTIH on, DIMSE2 off, DIMSCALE 1
        {L"dimdec", 4.7, "i:271 i:4 "},
        {L"dimdec", -0.7, "i:271 i:0 "},
        {L"dimdec", 4.0, ""},
        {L"dimtad", true, "i:77 i:1 "},
        {L"dimtih", four, "i:73 i:1 "},
        {L"dimtih", true, ""},
        {L"dimtih", false, "i:73 i:0 "},
        {L"dimtih", 0.5, "i:73 i:1 "},
        {L"dimse2", 1e-300, "i:76 i:1 "},
        {L"dimscale", 1, ""},
        {L"dimscale", 1.0 + 1e-15, "i:40 r:1 "},
    };

    for (const auto& [name, value, after] : cases) {
        store("s:DSTYLE { }");
        std::visit(
            [&, variable = name](auto typed) { EXPECT_EQ(override(variable, typed), Kdapi::eOk); },
            value);
        EXPECT_EQ(data(), "s:DSTYLE { " + after + "}") << platform::toUtf8(name);
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
        failEachCall([&] { store("s:DSTYLE { i:40 r:3 i:147 r:1 }"); }, overrideScale,
                     [&] { EXPECT_THAT(data(), HasSubstr("i:147 r:1")); });
    }
}

} // namespace
