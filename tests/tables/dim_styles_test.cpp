#include "orvex/dim_styles.h"

#include "support/drawing.h"
#include "support/host_test.h"
#include "support/modules.h"
#include "support/objects.h"
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

KdDbObjectId styleId()
{
    return DimStyleMgr::GetDimStyleId(L"House", drawing());
}

/// What depends on the caller, as one line: DIMTXT DIMASZ DIMDEC DIMTFAC DIMEXE DIMGAP DIMTIH
/// DIMTOH DIMTDEC; then what is always the same: DIMCLRD DIMCLRE DIMCLRT DIMDLI DIMEXO DIMJUST
/// DIMTAD DIMAUNIT DIMTOFL DIMTOLJ DIMFIT.
std::string styleText()
{
    const Opened<Style> style(styleId(), KdDb::kForRead);
    CString text;
    text.Format(L"%g %g %d %g %g %g %d %d %d, %d %d %d %g %g %d %d %d %d %d %d", style->dimtxt(),
                style->dimasz(), style->dimdec(), style->dimtfac(), style->dimexe(),
                style->dimgap(), style->dimtih(), style->dimtoh(), style->dimtdec(),
                style->dimclrd().colorIndex(), style->dimclre().colorIndex(),
                style->dimclrt().colorIndex(), style->dimdli(), style->dimexo(), style->dimjust(),
                style->dimtad(), style->dimaunit(), style->dimtofl(), style->dimtolj(),
                style->dimfit());
    return narrow(text);
}

KdDbObjectId addTextStyle(const wchar_t* name)
{
    return addRecord<KdDbTextStyleTable, KdDbTextStyleTableRecord>(name);
}

std::string textStyleOf(const wchar_t* name)
{
    CString textStyle;
    EXPECT_EQ(DimStyleMgr::GetTextStyleFromDim(textStyle, name, drawing()), 1);
    return narrow(textStyle);
}

class DimStylesTest : public HostTest {};

// Making and changing -----------------------------------------------------------------------------

TEST_F(DimStylesTest, MakingFillsInWhatIsZeroAndChangingLeavesIt)
{
    const Call zeros{.decimals = 0,
                     .extensionBeyond = 0,
                     .textGap = 0,
                     .insideHorizontal = -2,
                     .outsideHorizontal = 0};
    const Call sizes{.textHeight = 6,
                     .arrowSize = 7,
                     .toleranceFactor = 0.00009,
                     .extensionBeyond = 8,
                     .textGap = 9};

    struct {
        bool making;
        Call call;
        std::string text;
    } const cases[] = {
        {true, {}, "5 2.5 2 0.707 2 1 0 1 3"},
        {true, {.toleranceFactor = 0.0001}, "5 2.5 2 0.0001 2 1 0 1 3"},
        {true, {.toleranceFactor = -1}, "5 2.5 2 0.707 2 1 0 1 3"},
        {true, zeros, "5 2.5 0 0.707 0 0 1 0 3"},
        {true, sizes, "6 7 2 0.707 8 9 0 1 3"},
        {false, zeros, "0.18 0.18 0 1 0.18 0.09 1 0 4"},
        {false, sizes, "6 7 2 9e-05 8 9 0 1 4"},
    };

    for (const auto& [making, call, text] : cases) {
        startFreshHost();
        if (!making) {
            const auto house = addRecord<KdDbDimStyleTable, Style>(L"House");
            Opened<Style>(house, KdDb::kForWrite)->setDimjust(1);
        }
        EXPECT_EQ(making ? make(call) : change(call), 1);
        EXPECT_EQ(styleText(), text + ", 256 256 256 8 0 0 3 1 1 0 2");
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
    const KdDbObjectId notes = addTextStyle(L"Notes");
    Open<KdDbTextStyleTableRecord>(addTextStyle(L"Shapes"))->setIsShapeFile(true);
    drawing()->setTextstyle(addTextStyle(L"Current"));

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
    const Opened<KdDbObject> writer(notes, KdDb::kForWrite);
    EXPECT_EQ(change({.textStyle = L"Notes"}), 1);
    EXPECT_EQ(textStyleOf(L"House"), "Current") << "the other one cannot be read";
}

TEST_F(DimStylesTest, MakingAndChangingSayWhichNameIsWrong)
{
    make({});
    const std::string before = styleText();
    EXPECT_EQ(make({.name = L"HOUSE", .textHeight = 9}), 0);
    EXPECT_EQ(printed(), localised(106, L"HOUSE"));
    EXPECT_EQ(change({.name = L"Lost"}), 0);
    EXPECT_EQ(printed(), localised(108, L"Lost"));
    EXPECT_EQ(change({.name = L"100%d"}), 0);
    EXPECT_EQ(printed(), localised(108, L"100%d"));
    EXPECT_EQ(make({.name = L""}), 0);
    EXPECT_EQ(change({.name = L""}), 0);
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(styleText(), before);

    EXPECT_THAT(outcomesOfFailures([] {}, [] { return change({.name = L"Lost"}); }),
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

TEST_F(DimStylesTest, TheCurrentVariablesChangeOnlyWhenTold)
{
    const double before = currentDimensionTextHeight();
    make({.textHeight = 9});
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"HOUSE", 0, nullptr), 1);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimStyle(drawing()), L"House");
    EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), before);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"House", -1, drawing()), 1);
    EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), 9);

    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"", 1, drawing()), 0);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimStyle(drawing()), L"House");
}

TEST_F(DimStylesTest, AStyleThatCannotBeReadBecomesCurrentAllTheSame)
{
    const double before = currentDimensionTextHeight();
    make({.textHeight = 9});
    const KdDbObjectId house = styleId();
    const Opened<KdDbObject> writer(house, KdDb::kForWrite);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"House", 1, drawing()), 0);
    EXPECT_EQ(drawing()->dimstyle(), house);
    EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), before);
}

// Single values -----------------------------------------------------------------------------------

TEST_F(DimStylesTest, SingleValuesHaveDefaultsOfTheirOwn)
{
    make({.textHeight = 9});
    Opened<Style>(styleId(), KdDb::kForWrite)->setDimclrt(colorOf(1));
    const auto colorAndHeight = [](const wchar_t* name, int result) {
        unsigned short color = 0;
        double height = 0;
        EXPECT_EQ(DimStyleMgr::GetDimStyleTextColor(name, color, drawing()), result);
        EXPECT_EQ(DimStyleMgr::GetDimStyleTextHeight(name, height, drawing()), result);
        return std::pair(int(color), height);
    };
    EXPECT_EQ(colorAndHeight(L"House", 1), std::pair(1, 9.0));
    const Opened<KdDbObject> writer(styleId(), KdDb::kForWrite);
    for (const wchar_t* name : {L"House", L"Lost", L""})
        EXPECT_EQ(colorAndHeight(name, 0), std::pair(7, 3.5));

    CString textStyle = L"kept";
    for (const wchar_t* name : {L"House", L"Lost", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(DimStyleMgr::GetTextStyleFromDim(textStyle, name, drawing()), 0);
    EXPECT_EQ(textStyle, L"kept");
}

TEST_F(DimStylesTest, LineColorsOfUnknownStylesAreNoFailure)
{
    make({});
    DimStyleMgr::SetCurrentDimStyle(L"House", 0, nullptr);
    {
        const Opened<Style> style(styleId(), KdDb::kForWrite);
        style->setDimclrd(colorOf(1));
        style->setDimclre(colorOf(5));
    }
    const auto lineColors = [](const wchar_t* name, int result) {
        std::vector<unsigned short> colors{99, 99};
        EXPECT_EQ(DimStyleMgr::GetCurrentDimclrd(colors[0], name, drawing()), result);
        EXPECT_EQ(DimStyleMgr::GetCurrentDimclre(colors[1], name, drawing()), result);
        return colors;
    };
    EXPECT_THAT(lineColors(L"House", 1), ElementsAre(1, 5));
    EXPECT_THAT(lineColors(L"", 1), ElementsAre(1, 5));
    EXPECT_THAT(lineColors(L"Lost", 1), ElementsAre(99, 99));
    const Opened<KdDbObject> writer(styleId(), KdDb::kForWrite);
    EXPECT_THAT(lineColors(L"House", 0), ElementsAre(99, 99));
    EXPECT_THAT(lineColors(L"", 0), ElementsAre(99, 99));

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
    const std::string start = "KdDbTransactionManager::startTransaction";
    const std::string lookUp = "KdDbSymbolTable::getAt";
    const std::string open = "KdDbTransactionManager::getObject";
    const std::string end = "KdDbTransactionManager::endTransaction";
    const auto operations = [&](const std::function<void()>& scenario) {
        std::vector<std::string> names = tracedOperations(scenario);
        std::erase_if(names, [&](const std::string& name) {
            return name != start && name != lookUp && name != open && name != end;
        });
        return names;
    };
    EXPECT_THAT(operations([] { DimStyleMgr::SetDimScale(L"House", 2.5, drawing()); }),
                ElementsAre(lookUp, start, open, end));
    EXPECT_THAT(operations([] {
                    EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"HOUSE", drawing()), 2.5);
                }),
                ElementsAre(start, lookUp, open, end));
    EXPECT_THAT(operations([] {
                    EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"Lost", drawing()), 1.0);
                }),
                ElementsAre(start, lookUp, end));
    EXPECT_THAT(operations([] { EXPECT_EQ(DimStyleMgr::SetDimScale(L"Lost", 2.5, drawing()), 0); }),
                ElementsAre(lookUp));
    EXPECT_EQ(runningTransactions(), 0);
    EXPECT_THAT(korra::fatalStops(), IsEmpty());
}

TEST_F(DimStylesTest, AScaleThatCannotBeReachedStopsTheHost)
{
    make({});
    for (const KdDbObjectId locked : {drawing()->dimStyleTableId(), styleId()}) {
        const Opened<KdDbObject> writer(locked, KdDb::kForWrite);
        EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"House", drawing()), 1.0);
        EXPECT_EQ(DimStyleMgr::SetDimScale(L"House", 2.5, drawing()), 0);
    }
    const std::wstring reason = std::wstring(L": ") + kdapiErrorStatusText(Kdapi::eWasOpenForWrite);
    EXPECT_THAT(korra::fatalStops(),
                ElementsAre(L"!orvex_until@1911" + reason, L"!orvex_until@1946" + reason,
                            L"!orvex_until@1928" + reason, L"!orvex_until@1963" + reason));
    EXPECT_EQ(runningTransactions(), 0);
}

// Faults ------------------------------------------------------------------------------------------

TEST_F(DimStylesTest, LeaveNothingOpenWhateverFails)
{
    const auto house = [] { return make({}); };
    sweepFaults<int>([] { return 0; }, [](int) { make({.textStyle = L"Standard"}); });
    sweepFaults<int>(house, [](int) {
        make({});
        change({.textStyle = L"Standard"});
        change({.name = L"Lost"});
        DimStyleMgr::SetCurrentDimStyle(L"House", 1, nullptr);
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
