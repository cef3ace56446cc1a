#include "orvex/dim_styles.h"
#include "orvex/text_styles.h"

#include "support/host_test.h"
#include "support/modules.h"
#include "support/opened.h"
#include "tables/messages.h"

#include "kd/ap.h"

using namespace tests;
using support::Opened;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Style = KdDbDimStyleTableRecord;

namespace {

KdDbDatabase* drawing()
{
    return kddbHostApplicationServices()->workingDatabase();
}

/// One call of a service that makes or changes a style.
struct Call {
    const wchar_t* name = L"House";
    const wchar_t* textStyle = L"";
    double textHeight = 0;
    double arrowSize = 0;
    unsigned int decimals = 2;
    double toleranceFactor = 0;
    double extensionBeyond = 2;
    double textGap = 1;
    int insideHorizontal = 0;
    int outsideHorizontal = 1;
};

using Service = decltype(DimStyleMgr::CreateDimStyle);

int run(Service service, const Call& call, KdDbDatabase* database = nullptr)
{
    return service(call.name, call.textStyle, call.textHeight, call.arrowSize, call.decimals,
                   call.toleranceFactor, call.extensionBeyond, call.textGap, call.insideHorizontal,
                   call.outsideHorizontal, database);
}

int make(const Call& call)
{
    return run(DimStyleMgr::CreateDimStyle, call);
}

int change(const Call& call)
{
    return run(DimStyleMgr::ModifyDimStyle, call);
}

KdDbObjectId styleId(const wchar_t* name = L"House")
{
    return DimStyleMgr::GetDimStyleId(name, drawing());
}

/// What depends on the caller, as one line: DIMTXT DIMASZ DIMDEC DIMTFAC DIMEXE DIMGAP DIMTIH
/// DIMTOH DIMTDEC.
std::string sizesText(const wchar_t* name = L"House")
{
    const Opened<Style> style(styleId(name), KdDb::kForRead);
    if (!style)
        return "none";
    CString text;
    text.Format(L"%g %g %d %g %g %g %d %d %d", style->dimtxt(), style->dimasz(), style->dimdec(),
                style->dimtfac(), style->dimexe(), style->dimgap(), style->dimtih(),
                style->dimtoh(), style->dimtdec());
    return narrow(text);
}

/// What is always the same: DIMCLRD DIMCLRE DIMCLRT DIMDLI DIMEXO DIMJUST DIMTAD DIMAUNIT DIMTOFL
/// DIMTOLJ DIMFIT.
std::string fixedText()
{
    const Opened<Style> style(styleId(), KdDb::kForRead);
    CString text;
    text.Format(L"%d %d %d %g %g %d %d %d %d %d %d", style->dimclrd().colorIndex(),
                style->dimclre().colorIndex(), style->dimclrt().colorIndex(), style->dimdli(),
                style->dimexo(), style->dimjust(), style->dimtad(), style->dimaunit(),
                style->dimtofl(), style->dimtolj(), style->dimfit());
    return narrow(text);
}

constexpr const char* kFixed = "256 256 256 8 0 0 3 1 1 0 2";

/// Sets everything that is always the same to something else.
void disturbFixedValues()
{
    const Opened<Style> style(styleId(), KdDb::kForWrite);
    KdCmColor red;
    red.setColorIndex(1);
    style->setDimclrd(red);
    style->setDimclre(red);
    style->setDimclrt(red);
    style->setDimdli(1);
    style->setDimexo(1);
    style->setDimjust(1);
    style->setDimtad(0);
    style->setDimaunit(0);
    style->setDimtofl(false);
    style->setDimtolj(1);
    style->setDimfit(0);
}

void makeTextStyle(const wchar_t* name, bool ofShapes)
{
    ASSERT_EQ(TxtStyleMgr::CreateTextStyle(name, 1, 0, 1, L"", L"", L"DejaVu Sans", drawing()), 1);
    const Opened<KdDbTextStyleTableRecord> style(TxtStyleMgr::GetTxtStyleId(name, drawing()),
                                                 KdDb::kForWrite);
    style->setIsShapeFile(ofShapes);
}

std::string textStyleOf(const wchar_t* name)
{
    CString textStyle;
    EXPECT_EQ(DimStyleMgr::GetTextStyleFromDim(textStyle, name, drawing()), 1);
    return narrow(textStyle);
}

class DimStylesTest : public HostTest {};

// Making and changing -----------------------------------------------------------------------------

TEST_F(DimStylesTest, MakingFillsInWhatIsZero)
{
    struct {
        Call call;
        const char* sizes;
    } const cases[] = {
        {{}, "5 2.5 2 0.707 2 1 0 1 3"},
        {{.textHeight = 3, .arrowSize = 4, .toleranceFactor = 0.5}, "3 4 2 0.5 2 1 0 1 3"},
        {{.toleranceFactor = 0.00009}, "5 2.5 2 0.707 2 1 0 1 3"},
        {{.toleranceFactor = -1}, "5 2.5 2 0.707 2 1 0 1 3"},
        {{.toleranceFactor = 0.0001}, "5 2.5 2 0.0001 2 1 0 1 3"},
        {{.decimals = 0,
          .extensionBeyond = 0,
          .textGap = 0,
          .insideHorizontal = -2,
          .outsideHorizontal = 0},
         "5 2.5 0 0.707 0 0 1 0 3"},
    };

    for (const auto& [call, sizes] : cases) {
        startFreshHost();
        EXPECT_EQ(make(call), 1);
        EXPECT_EQ(sizesText(), sizes);
        EXPECT_EQ(fixedText(), kFixed);
        EXPECT_EQ(printed(), "");
    }
}

TEST_F(DimStylesTest, ChangingLeavesWhatIsZero)
{
    make({.textHeight = 3, .arrowSize = 4, .toleranceFactor = 0.5});

    struct {
        Call call;
        const char* sizes;
    } const cases[] = {
        {{.decimals = 5, .extensionBeyond = 0, .textGap = 0}, "3 4 5 0.5 2 1 0 1 4"},
        {{.textHeight = 6,
          .arrowSize = 7,
          .toleranceFactor = 0.00001,
          .extensionBeyond = 8,
          .textGap = 9,
          .insideHorizontal = 3,
          .outsideHorizontal = 0},
         "6 7 2 1e-05 8 9 1 0 4"},
    };

    for (const auto& [call, sizes] : cases) {
        disturbFixedValues();
        EXPECT_EQ(change(call), 1);
        EXPECT_EQ(sizesText(), sizes);
        EXPECT_EQ(fixedText(), kFixed);
        EXPECT_EQ(printed(), "");
    }
}

TEST_F(DimStylesTest, OtherDatabasesAreServedToo)
{
    KdDbDatabase other;
    EXPECT_EQ(run(DimStyleMgr::CreateDimStyle, {}, &other), 1);
    EXPECT_EQ(DimStyleMgr::FindDimStyle(L"House", drawing()), 0);
    EXPECT_EQ(run(DimStyleMgr::ModifyDimStyle, {.textHeight = 9}, &other), 1);
    double height = 0;
    EXPECT_EQ(DimStyleMgr::GetDimStyleTextHeight(L"House", height, &other), 1);
    EXPECT_DOUBLE_EQ(height, 9);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"House", 0, &other), 1);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimStyle(&other), L"House");
}

TEST_F(DimStylesTest, TextStylesOfShapesAndUnknownOnesAreTheCurrentOne)
{
    makeTextStyle(L"Notes", false);
    makeTextStyle(L"Shapes", true);
    makeTextStyle(L"Current", false);
    TxtStyleMgr::SetCurrentTextStyle(L"Current", drawing());

    struct {
        const wchar_t* given;
        const char* used;
    } const cases[] = {
        {L"", "Current"}, {L"NOTES", "Notes"}, {L"Shapes", "Current"}, {L"Lost", "Current"}};

    for (const auto& [given, used] : cases) {
        make({.name = given, .textStyle = given});
        make({.name = L"House"});
        EXPECT_EQ(change({.textStyle = given}), 1);
        EXPECT_EQ(textStyleOf(L"House"), used);
        if (*given) {
            EXPECT_EQ(textStyleOf(given), used);
        }
    }
    const Opened<KdDbObject> writer(TxtStyleMgr::GetTxtStyleId(L"Notes", drawing()),
                                    KdDb::kForWrite);
    EXPECT_EQ(change({.textStyle = L"Notes"}), 1);
    EXPECT_EQ(textStyleOf(L"House"), "Current") << "the other one cannot be read";
}

TEST_F(DimStylesTest, MakingAndChangingSayWhichNameIsWrong)
{
    make({});
    const std::string before = sizesText();
    EXPECT_EQ(make({.name = L"HOUSE", .textHeight = 9}), 0);
    EXPECT_EQ(printed(), localised(106, L"HOUSE"));
    EXPECT_EQ(change({.name = L"Lost"}), 0);
    EXPECT_EQ(printed(), localised(108, L"Lost"));
    EXPECT_EQ(make({.name = L""}), 0);
    EXPECT_EQ(change({.name = L""}), 0);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(sizesText(), before);

    const auto house = [] { make({}); };
    EXPECT_THAT(outcomesOfFailures(house, [] { return make({}); }),
                Contains("0\n当前数据库中已经存在 \"House\"的字体样式!"));
    EXPECT_THAT(outcomesOfFailures(house, [] { return change({.name = L"Lost"}); }),
                Contains("0\n当前数据库中不存在 \"Lost\" 的标注样式!"));
}

TEST_F(DimStylesTest, MakingAndChangingNeedTheTableAndTheStyleForWriting)
{
    make({});
    {
        const Opened<KdDbObject> reader(styleId(), KdDb::kForRead);
        EXPECT_EQ(change({}), 0);
    }
    const Opened<KdDbObject> reader(drawing()->dimStyleTableId(), KdDb::kForRead);
    EXPECT_EQ(make({.name = L"New"}), 0);
    EXPECT_EQ(change({}), 0);
}

// The current style -------------------------------------------------------------------------------

double currentTextHeight()
{
    Style variables;
    EXPECT_EQ(drawing()->getDimstyleData(&variables), Kdapi::eOk);
    return variables.dimtxt();
}

TEST_F(DimStylesTest, TheCurrentVariablesChangeOnlyWhenTold)
{
    const double before = currentTextHeight();
    make({.textHeight = 9});
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"HOUSE", 0, nullptr), 1);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimStyle(drawing()), L"House");
    EXPECT_DOUBLE_EQ(currentTextHeight(), before);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"House", -1, drawing()), 1);
    EXPECT_DOUBLE_EQ(currentTextHeight(), 9);

    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"Lost", 1, drawing()), 0);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"", 1, drawing()), 0);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimStyle(drawing()), L"House");
}

TEST_F(DimStylesTest, AStyleThatCannotBeReadBecomesCurrentAllTheSame)
{
    const double before = currentTextHeight();
    make({.textHeight = 9});
    const KdDbObjectId house = styleId();
    const Opened<KdDbObject> writer(house, KdDb::kForWrite);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"House", 1, drawing()), 0);
    EXPECT_EQ(drawing()->dimstyle(), house);
    EXPECT_DOUBLE_EQ(currentTextHeight(), before);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimStyle(drawing()), L"");
}

TEST_F(DimStylesTest, MakingCurrentCopiesBeforeItClosesTheStyle)
{
    make({});
    EXPECT_THAT(only(tracedCalls([] { DimStyleMgr::SetCurrentDimStyle(L"House", 1, nullptr); }),
                     {"KdDbSymbolTable::getAt", "KdDbDatabase::setDimstyle",
                      "KdDbDatabase::setDimstyleData"}),
                ElementsAre(::testing::StartsWith("KdDbSymbolTable::getAt"),
                            ::testing::StartsWith("KdDbDatabase::setDimstyle("),
                            ::testing::StartsWith("KdDbDatabase::setDimstyleData(")));
}

// Look-ups ----------------------------------------------------------------------------------------

TEST_F(DimStylesTest, LooksUpByNameInAnyCase)
{
    make({});
    const KdDbObjectId house = styleId();
    KdDbObjectId id = house;
    EXPECT_EQ(DimStyleMgr::GetDimStyleId(id, nullptr, drawing()), 0);
    EXPECT_EQ(id, house) << "untouched";
    EXPECT_EQ(DimStyleMgr::GetDimStyleId(id, L"HOUSE", drawing()), 1);
    EXPECT_EQ(id, house);
    EXPECT_EQ(DimStyleMgr::GetDimStyleId(id, L"Lost", drawing()), 0);
    EXPECT_TRUE(id.isNull());
    EXPECT_EQ(DimStyleMgr::FindDimStyle(L"house", drawing()), 1);
    EXPECT_EQ(DimStyleMgr::DimISExist(L"Lost", drawing()), 0);
    const Opened<KdDbObject> writer(house, KdDb::kForWrite);
    EXPECT_EQ(DimStyleMgr::DimISExist(L"house", drawing()), 1);
    EXPECT_TRUE(DimStyleMgr::GetDimStyleId(L"House", drawing()).isNull()) << "cannot be read";
}

TEST_F(DimStylesTest, ListsEveryNameBehindWhatIsThere)
{
    make({.name = L"标注"});
    CStringArray names;
    names.Add(L"first");
    EXPECT_EQ(DimStyleMgr::GetDimStyleNameFromDrawing(names, nullptr), 0);
    EXPECT_EQ(DimStyleMgr::GetDimStyleNameFromDrawing(names, drawing()), 1);
    ASSERT_EQ(names.GetSize(), 3);
    EXPECT_EQ(names[0], L"first");
    EXPECT_EQ(names[2], L"标注");
}

TEST_F(DimStylesTest, SingleValuesHaveDefaultsOfTheirOwn)
{
    make({.textHeight = 9});
    KdCmColor red;
    red.setColorIndex(1);
    Opened<Style>(styleId(), KdDb::kForWrite)->setDimclrt(red);
    unsigned short color = 0;
    double height = 0;
    EXPECT_EQ(DimStyleMgr::GetDimStyleTextColor(L"House", color, drawing()), 1);
    EXPECT_EQ(DimStyleMgr::GetDimStyleTextHeight(L"House", height, drawing()), 1);
    EXPECT_EQ(color, 1);
    EXPECT_DOUBLE_EQ(height, 9);

    const Opened<KdDbObject> writer(styleId(), KdDb::kForWrite);
    for (const wchar_t* name : {L"House", L"Lost", L""}) {
        EXPECT_EQ(DimStyleMgr::GetDimStyleTextColor(name, color, drawing()), 0);
        EXPECT_EQ(DimStyleMgr::GetDimStyleTextHeight(name, height, drawing()), 0);
        EXPECT_EQ(color, 7);
        EXPECT_DOUBLE_EQ(height, 3.5);
        color = 0;
        height = 0;
    }
    CString textStyle = L"kept";
    for (const wchar_t* name : {L"House", L"Lost", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(DimStyleMgr::GetTextStyleFromDim(textStyle, name, drawing()), 0);
    EXPECT_EQ(textStyle, L"kept");
}

TEST_F(DimStylesTest, LineColorsOfUnknownStylesAreNoFailure)
{
    make({});
    DimStyleMgr::SetCurrentDimStyle(L"House", 0, nullptr);
    KdCmColor red, blue;
    red.setColorIndex(1);
    blue.setColorIndex(5);
    {
        const Opened<Style> style(styleId(), KdDb::kForWrite);
        style->setDimclrd(red);
        style->setDimclre(blue);
    }
    for (const wchar_t* name : {L"House", L""}) {
        unsigned short color = 99;
        EXPECT_EQ(DimStyleMgr::GetCurrentDimclrd(color, name, drawing()), 1);
        EXPECT_EQ(color, 1);
        EXPECT_EQ(DimStyleMgr::GetCurrentDimclre(color, name, drawing()), 1);
        EXPECT_EQ(color, 5);
    }
    unsigned short color = 99;
    EXPECT_EQ(DimStyleMgr::GetCurrentDimclrd(color, L"Lost", drawing()), 1);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimclre(color, L"Lost", drawing()), 1);
    const Opened<KdDbObject> writer(styleId(), KdDb::kForWrite);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimclrd(color, L"House", drawing()), 0);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimclre(color, L"", drawing()), 0);
    EXPECT_EQ(color, 99);

    CString font = L"kept";
    EXPECT_EQ(DimStyleMgr::GetCurrentDimTextstyleFontName(font, L"House", drawing()), 1);
    EXPECT_EQ(font, L"kept");
}

// The overall scale -------------------------------------------------------------------------------

int runningTransactions()
{
    return kdDocManagerPtr()->curDocument()->transactionManager()->numActiveTransactions();
}

TEST_F(DimStylesTest, TheScaleIsReadAndSetInATransaction)
{
    make({});
    const std::vector<std::string_view> steps = {
        "KdDbTransactionManager::startTransaction", "KdDbSymbolTable::getAt",
        "KdDbTransactionManager::getObject", "KdDbTransactionManager::endTransaction"};
    const auto operations = [&](const std::function<void()>& scenario) {
        std::vector<std::string> names;
        for (const std::string& call : only(tracedCalls(scenario), steps))
            names.push_back(call.substr(call.find("::") + 2, call.find('(') - call.find("::") - 2));
        return names;
    };
    EXPECT_THAT(operations([] { DimStyleMgr::SetDimScale(L"House", 2.5, drawing()); }),
                ElementsAre("getAt", "startTransaction", "getObject", "endTransaction"));
    EXPECT_THAT(operations([] {
                    EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"HOUSE", drawing()), 2.5);
                }),
                ElementsAre("startTransaction", "getAt", "getObject", "endTransaction"));
    EXPECT_THAT(operations([] {
                    EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"Lost", drawing()), 1.0);
                }),
                ElementsAre("startTransaction", "getAt", "endTransaction"));
    EXPECT_THAT(operations([] { EXPECT_EQ(DimStyleMgr::SetDimScale(L"Lost", 2.5, drawing()), 0); }),
                ElementsAre("getAt"));
    EXPECT_EQ(runningTransactions(), 0);
    EXPECT_THAT(korra::fatalStops(), IsEmpty());
}

TEST_F(DimStylesTest, AScaleThatCannotBeReachedStopsTheHost)
{
    make({});
    const auto stop = [](int line, Kdapi::ErrorStatus status) {
        CString text;
        text.Format(L"!orvex_until@%d: %s", line, kdapiErrorStatusText(status));
        return std::wstring(text.GetString());
    };
    {
        const Opened<KdDbObject> writer(drawing()->dimStyleTableId(), KdDb::kForWrite);
        EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"House", drawing()), 1.0);
        EXPECT_EQ(DimStyleMgr::SetDimScale(L"House", 2.5, drawing()), 0);
    }
    const Opened<KdDbObject> writer(styleId(), KdDb::kForWrite);
    EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"House", drawing()), 1.0);
    EXPECT_EQ(DimStyleMgr::SetDimScale(L"House", 2.5, drawing()), 0);

    EXPECT_THAT(korra::fatalStops(), ElementsAre(stop(1911, Kdapi::eWasOpenForWrite),
                                                 stop(1946, Kdapi::eWasOpenForWrite),
                                                 stop(1928, Kdapi::eWasOpenForWrite),
                                                 stop(1963, Kdapi::eWasOpenForWrite)));
    EXPECT_EQ(runningTransactions(), 0);
}

// Faults ------------------------------------------------------------------------------------------

TEST_F(DimStylesTest, LeaveNothingOpenWhateverFails)
{
    const auto nothing = [] { return 0; };
    const auto house = [] { return make({}); };
    sweepFaults<int>(nothing, [](int) { make({.textStyle = L"Standard"}); });
    sweepFaults<int>(house, [](int) {
        make({});
        change({.textStyle = L"Standard"});
        change({.name = L"Lost"});
    });
    sweepFaults<int>(house, [](int) {
        DimStyleMgr::SetCurrentDimStyle(L"House", 1, nullptr);
        DimStyleMgr::GetCurrentDimStyle(drawing());
        DimStyleMgr::FindDimStyle(L"House", drawing());
        styleId();
        CStringArray names;
        DimStyleMgr::GetDimStyleNameFromDrawing(names, drawing());
    });
    sweepFaults<int>(house, [](int) {
        unsigned short color = 0;
        double height = 0;
        CString textStyle;
        DimStyleMgr::GetDimStyleTextColor(L"House", color, drawing());
        DimStyleMgr::GetDimStyleTextHeight(L"House", height, drawing());
        DimStyleMgr::GetTextStyleFromDim(textStyle, L"House", drawing());
        DimStyleMgr::GetCurrentDimclrd(color, L"", drawing());
        DimStyleMgr::GetCurrentDimclre(color, L"House", drawing());
    });
    sweepFaults<int>(
        house,
        [](int) {
            DimStyleMgr::GetDimStyleDimScale(L"House", drawing());
            DimStyleMgr::SetDimScale(L"House", 2.5, drawing());
        },
        [](int) { EXPECT_EQ(runningTransactions(), 0); });
}

} // namespace
