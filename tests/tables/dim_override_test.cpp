#include "orvex/dim_override.h"

#include "support/host_test.h"
#include "support/opened.h"
#include "support/resbuf_list.h"

#include "platform/text.h"

#include <sstream>

using namespace tests;
using support::Opened;
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
    switch (token[0]) {
    case 'i':
        return kdutBuildList(1070, std::stoi(token.substr(2)), 0);
    case 'r':
        return kdutBuildList(1040, std::stod(token.substr(2)), 0);
    case 's':
        return kdutBuildList(1000, wide.c_str() + 2, 0);
    default:
        return kdutBuildList(1002, wide.c_str(), 0);
    }
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

KdDbObjectId addDimension()
{
    auto* dimension = new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0});
    dimension->setDimensionStyle(kddbHostApplicationServices()->workingDatabase()->dimstyle());
    return addEntity(dimension);
}

class DimOverrideTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        dimension_ = addDimension();
    }

    std::string data() const
    {
        return dataText(*Opened<KdDbDimension>(dimension_, KdDb::kForRead));
    }

    void store(const std::string& line) const
    {
        setData(*Opened<KdDbDimension>(dimension_, KdDb::kForWrite), line);
    }

    /// Overrides a variable and closes the dimension.
    template <class Value>
    Kdapi::ErrorStatus override(const wchar_t* name, Value value) const
    {
        const Opened<KdDbDimension> dimension(dimension_, KdDb::kForWrite);
        return DimStyleMgr::OverrideDimVariable(dimension.get(), name, value);
    }

    void remove(short code) const
    {
        DimStyleMgr::DeleteDimVarsOverride(Opened<KdDbDimension>(dimension_, KdDb::kForWrite).get(),
                                           code);
    }

    KdDbObjectId dimension_;
};

struct Removal {
    const char* what;
    short code;
    const char* before;
    const char* after;
};

const Removal kRemovals[] = {
    {"every pair of the code", 40, "s:DSTYLE { i:40 r:2 i:147 r:1 i:40 r:3 }",
     "s:DSTYLE { i:147 r:1 }"},
    {"no value that holds the number", 147, "s:DSTYLE { i:271 i:147 i:147 r:0.5 i:77 i:147 }",
     "s:DSTYLE { i:271 i:147 i:77 i:147 }"},
    {"every section", 40, "s:DSTYLE { i:40 r:2 } s:DSTYLE { i:40 r:3 i:76 i:1 }",
     "s:DSTYLE { } s:DSTYLE { i:76 i:1 }"},
    {"nothing outside a section", 40, "i:40 r:1 s:DSTYLE { i:40 r:2 } i:40 r:3",
     "i:40 r:1 s:DSTYLE { } i:40 r:3"},
    {"a name in small letters", 40, "s:dstyle { i:40 r:2 }", "s:dstyle { }"},
    {"an opening node of any kind", 40, "s:DSTYLE i:40 i:40 r:2 }", "s:DSTYLE i:40 }"},
    {"no closing node", 40, "s:DSTYLE { i:271 i:3 i:40 r:2", "s:DSTYLE { i:271 i:3"},
    {"a closing node missing between sections", 40,
     "s:DSTYLE { i:40 r:2 s:DSTYLE { i:40 r:3 i:147 r:1 }", "s:DSTYLE { s:DSTYLE { i:147 r:1 }"},
    {"a text value that is the section's name", 40, "s:DSTYLE { i:3 s:DSTYLE i:40 r:2 }",
     "s:DSTYLE { i:3 s:DSTYLE }"},
    {"no pair cut off by the end", 40, "s:DSTYLE { i:40 r:2 i:40", "s:DSTYLE { i:40"},
    {"no pair cut off by the closing node", 40, "s:DSTYLE { i:40 } i:1", "s:DSTYLE { i:40 } i:1"},
    {"nothing behind the name", 40, "s:DSTYLE", "s:DSTYLE"},
    {"unknown data", 40, "s:OTHER { i:40 r:2 }", "s:OTHER { i:40 r:2 }"},
};

TEST_F(DimOverrideTest, RemovalTakesWholePairsOfEverySectionAndNothingElse)
{
    for (const Removal& removal : kRemovals) {
        SCOPED_TRACE(removal.what);
        store(removal.before);
        remove(removal.code);
        EXPECT_EQ(data(), removal.after);
    }
}

TEST_F(DimOverrideTest, RemovalWritesBackEvenWhenNothingWasRemoved)
{
    store("s:DSTYLE { i:147 r:1 }");
    EXPECT_THAT(tracedOperations([&] { remove(40); }), ::testing::Contains("KdDbObject::setXData"));
}

TEST_F(DimOverrideTest, RemovalWritesNothingWithoutData)
{
    EXPECT_THAT(tracedOperations([&] { remove(40); }),
                ::testing::Not(::testing::Contains("KdDbObject::setXData")));
}

TEST_F(DimOverrideTest, RemovalUpgradesAReaderForItsOwnTime)
{
    store("s:DSTYLE { i:40 r:2 }");
    const Opened<KdDbDimension> reader(dimension_, KdDb::kForRead);
    DimStyleMgr::DeleteDimVarsOverride(reader.get(), 40);
    EXPECT_EQ(dataText(*reader), "s:DSTYLE { }");
    EXPECT_TRUE(reader->isReadEnabled());
    EXPECT_FALSE(reader->isWriteEnabled());
}

TEST_F(DimOverrideTest, RemovalChangesNothingWhileOthersRead)
{
    store("s:DSTYLE { i:40 r:2 }");
    const Opened<KdDbDimension> reader(dimension_, KdDb::kForRead);
    const Opened<KdDbDimension> other(dimension_, KdDb::kForRead);
    DimStyleMgr::DeleteDimVarsOverride(reader.get(), 40);
    EXPECT_EQ(dataText(*reader), "s:DSTYLE { i:40 r:2 }");
}

TEST_F(DimOverrideTest, KnowsEachVariableByNameInAnyCase)
{
    struct {
        const wchar_t* name;
        const char* pair;
    } const variables[] = {{L"DIMDEC", "i:271 i:5"},     {L"dimadec", "i:179 i:5"},
                           {L"DimTDec", "i:272 i:5"},    {L"dimatfit", "i:289 i:1"},
                           {L"dimtad", "i:77 i:4"},      {L"dimjust", "i:280 i:2"},
                           {L"DIMGAP", "i:147 r:7.25"},  {L"dimtvp", "i:145 r:7.25"},
                           {L"dimlfac", "i:144 r:7.25"}, {L"dimSCALE", "i:40 r:7.25"}};

    for (const auto& [name, pair] : variables) {
        store("");
        const std::string text = pair;
        EXPECT_EQ(override(name, std::stod(text.substr(text.find_last_of(':') + 1))), Kdapi::eOk);
        EXPECT_EQ(data(), "s:DSTYLE { " + text + " }");
    }
}

TEST_F(DimOverrideTest, StoresAFlagOnlyWhenItDiffersFromTheStyle)
{
    struct {
        const wchar_t* name;
        short code;
        bool (KdDbDimStyleTableRecord::*styleValue)() const;
    } const flags[] = {{L"dimtix", 174, &KdDbDimStyleTableRecord::dimtix},
                       {L"dimtoh", 74, &KdDbDimStyleTableRecord::dimtoh},
                       {L"dimtih", 73, &KdDbDimStyleTableRecord::dimtih},
                       {L"dimtofl", 172, &KdDbDimStyleTableRecord::dimtofl},
                       {L"dimse1", 75, &KdDbDimStyleTableRecord::dimse1},
                       {L"dimse2", 76, &KdDbDimStyleTableRecord::dimse2},
                       {L"dimsd1", 281, &KdDbDimStyleTableRecord::dimsd1},
                       {L"dimsd2", 282, &KdDbDimStyleTableRecord::dimsd2}};

    for (const auto& [name, code, styleValue] : flags) {
        store("");
        const bool set =
            (Opened<KdDbDimStyleTableRecord>(database().dimstyle(), KdDb::kForRead).get()
                 ->*styleValue)();
        override(name, !set);
        EXPECT_EQ(data(),
                  "s:DSTYLE { i:" + std::to_string(code) + " i:" + (set ? "0" : "1") + " }");
        override(name, set);
        EXPECT_EQ(data(), "s:DSTYLE { }");
    }
}

TEST_F(DimOverrideTest, ComparesBeforeItConverts)
{
    {
        const Opened<KdDbDimStyleTableRecord> style(database().dimstyle(), KdDb::kForWrite);
        style->setDimdec(2);
        style->setDimtad(1);
        style->setDimse1(true);
        style->setDimse2(false);
        style->setDimgap(1.0);
    }

    struct {
        const wchar_t* name;
        std::variant<short, int, double, bool> value;
        const char* after;
    } const cases[] = {
        {L"dimdec", 2.7, "s:DSTYLE { i:271 i:2 }"},
        {L"dimdec", -0.7, "s:DSTYLE { i:271 i:0 }"},
        {L"dimdec", 2.0, "s:DSTYLE { }"},
        {L"dimdec", short{2}, "s:DSTYLE { }"},
        {L"dimtad", true, "s:DSTYLE { }"},
        {L"dimtad", false, "s:DSTYLE { i:77 i:0 }"},
        {L"dimse1", short{2}, "s:DSTYLE { i:75 i:1 }"},
        {L"dimse1", 1, "s:DSTYLE { }"},
        {L"dimse1", 0.5, "s:DSTYLE { i:75 i:1 }"},
        {L"dimse2", 0.0, "s:DSTYLE { }"},
        {L"dimse2", 1e-300, "s:DSTYLE { i:76 i:1 }"},
        {L"dimgap", 1, "s:DSTYLE { }"},
        {L"dimgap", true, "s:DSTYLE { }"},
        {L"dimgap", false, "s:DSTYLE { i:147 r:0 }"},
        {L"dimgap", 1.0 + 1e-15, "s:DSTYLE { i:147 r:1 }"},
    };

    for (const auto& [name, value, after] : cases) {
        store("s:DSTYLE { }");
        std::visit(
            [&, variable = name](auto typed) { EXPECT_EQ(override(variable, typed), Kdapi::eOk); },
            value);
        EXPECT_EQ(data(), after) << platform::toUtf8(name);
    }
}

TEST_F(DimOverrideTest, AStyleValueTakesAwayThePairAndLeavesTheOthers)
{
    const double gap =
        Opened<KdDbDimStyleTableRecord>(database().dimstyle(), KdDb::kForRead)->dimgap();
    store("s:DSTYLE { i:271 i:147 i:147 r:0.5 i:999 s:kept }");
    EXPECT_EQ(override(L"dimgap", gap), Kdapi::eOk);
    EXPECT_EQ(data(), "s:DSTYLE { i:271 i:147 i:999 s:kept }");
}

TEST_F(DimOverrideTest, RefusesWithoutChangingAnything)
{
    EXPECT_EQ(DimStyleMgr::OverrideDimVariable(nullptr, L"dimdec", 1), 20);
    EXPECT_EQ(override(L"dimtxt", 9.0), Kdapi::eOk);
    EXPECT_EQ(override(L"dimdec", 1e300), Kdapi::eInvalidInput);
    {
        const Opened<KdDbDimStyleTableRecord> writer(database().dimstyle(), KdDb::kForWrite);
        EXPECT_EQ(override(L"dimdec", 5), Kdapi::eWasOpenForWrite);
    }
    EXPECT_EQ(data(), "");
}

TEST_F(DimOverrideTest, LeavesNothingOpenWhateverFails)
{
    for (const double value : {7.25, 1.0}) {
        sweepFaults<KdDbObjectId>(
            [] {
                const KdDbObjectId id = addDimension();
                setData(*Opened<KdDbDimension>(id, KdDb::kForWrite),
                        "s:DSTYLE { i:40 r:3 i:147 r:1 }");
                return id;
            },
            [value](const KdDbObjectId& id) {
                const Opened<KdDbDimension> dimension(id, KdDb::kForWrite);
                if (dimension)
                    DimStyleMgr::OverrideDimVariable(dimension.get(), L"dimscale", value);
            },
            [](const KdDbObjectId& id) {
                const Opened<KdDbDimension> dimension(id, KdDb::kForRead);
                EXPECT_THAT(dataText(*dimension), ::testing::HasSubstr("i:147 r:1"));
            });
    }
}

} // namespace
