#include "orvex/dim_styles.h"

#include "support/room_test.h"
#include "tables/messages.h"

#include "kd/ap.h"

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
    const Open<Style> style(styleId(), KdDb::kForRead);
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

std::string textStyleOf(const wchar_t* name)
{
    CString textStyle = L"kept";
    DimStyleMgr::GetTextStyleFromDim(textStyle, name, drawing());
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

    const std::tuple<bool, Call, std::string> cases[] = {
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
            Open<Style>(house)->setDimjust(1);
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
    EXPECT_EQ(run(DimStyleMgr::ModifyDimStyle, {}, &other), 1);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"House", 0, &other), 1);
    EXPECT_EQ(DimStyleMgr::GetCurrentDimStyle(&other), L"House");
    EXPECT_EQ(DimStyleMgr::FindDimStyle(L"House", drawing()), 0);
}

TEST_F(DimStylesTest, TextStylesOfShapesAndUnknownOnesAreTheCurrentOne)
{
    addTextStyle(L"Notes");
    Open<KdDbTextStyleTableRecord>(addTextStyle(L"Shapes"))->setIsShapeFile(true);
    drawing()->setTextstyle(addTextStyle(L"Current"));
    const std::pair<const wchar_t*, const char*> cases[] = {
        {L"", "Current"}, {L"NOTES", "Notes"}, {L"Shapes", "Current"}, {L"Lost", "Current"}};

    make({});
    for (const auto& [given, used] : cases) {
        CString name = CString(L"Of ") + given;
        make({.name = name, .textStyle = given});
        EXPECT_EQ(change({.textStyle = given}), 1);
        EXPECT_EQ(textStyleOf(name) + ' ' + textStyleOf(L"House"), used + std::string(" ") + used);
    }
}

TEST_F(DimStylesTest, MakingAndChangingSayWhichNameIsWrong)
{
    make({});
    const std::string before = styleText();
    const std::tuple<int (*)(const Call&), Call, std::string> cases[] = {
        {make, {.name = L"HOUSE", .textHeight = 9}, localised(106, L"HOUSE")},
        {change, {.name = L"Lost"}, localised(108, L"Lost")},
        {change, {.name = L"100%d"}, localised(108, L"100%d")},
        {make, {.name = L""}, ""},
        {change, {.name = L""}, ""},
    };
    for (const auto& [service, call, message] : cases) {
        EXPECT_EQ(service(call), 0);
        EXPECT_EQ(printed(), message);
        EXPECT_EQ(styleText(), before);
    }
}

TEST_F(DimStylesTest, MakingAndChangingNeedTheTableAndTheStyleForWriting)
{
    make({});
    for (const KdDbObjectId read : {styleId(), drawing()->dimStyleTableId()}) {
        const Open<KdDbObject> reader(read, KdDb::kForRead);
        EXPECT_EQ(change({}), 0);
        EXPECT_EQ(make({.name = L"New"}), read == styleId());
    }
}

// The current style -------------------------------------------------------------------------------

TEST_F(DimStylesTest, TheCurrentVariablesChangeOnlyWhenToldAndWhenTheStyleCanBeRead)
{
    const double before = currentDimensionTextHeight();
    make({.textHeight = 9});
    const KdDbObjectId house = styleId();
    {
        const Open<KdDbObject> writer(house);
        EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"House", 1, drawing()), 0);
    }
    EXPECT_EQ(drawing()->dimstyle(), house) << "current all the same";
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"HOUSE", 0, nullptr), 1);
    EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), before);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"House", -1, drawing()), 1);
    EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), 9);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(L"", 1, drawing()), 0);
}

// Single values -----------------------------------------------------------------------------------

/// Result and value of a style's text colour, text height and text style, then of the colours of
/// its dimension lines and extension lines.
std::string values(const wchar_t* name)
{
    unsigned short text = 99, dimension = 99, extension = 99;
    double height = 99;
    CString textStyle = L"kept";
    const int results[] = {DimStyleMgr::GetDimStyleTextColor(name, text, drawing()),
                           DimStyleMgr::GetDimStyleTextHeight(name, height, drawing()),
                           DimStyleMgr::GetTextStyleFromDim(textStyle, name, drawing()),
                           DimStyleMgr::GetCurrentDimclrd(dimension, name, drawing()),
                           DimStyleMgr::GetCurrentDimclre(extension, name, drawing())};
    CString line;
    line.Format(L"%d %d, %d %g, %d %s; %d %d, %d %d", results[0], text, results[1], height,
                results[2], textStyle.GetString(), results[3], dimension, results[4], extension);
    return narrow(line);
}

TEST_F(DimStylesTest, SingleValuesHaveDefaultsOfTheirOwn)
{
    make({.textHeight = 9});
    DimStyleMgr::SetCurrentDimStyle(L"House", 0, nullptr);
    {
        const Open<Style> style(styleId());
        style->setDimclrt(colorOf(1));
        style->setDimclrd(colorOf(2));
        style->setDimclre(colorOf(5));
    }
    EXPECT_EQ(values(L"HOUSE"), "1 1, 1 9, 1 Standard; 1 2, 1 5");
    EXPECT_EQ(values(L"Lost"), "0 7, 0 3.5, 0 kept; 1 99, 1 99") << "no failure for line colours";
    for (const wchar_t* none : {L"", static_cast<const wchar_t*>(nullptr)})
        EXPECT_EQ(values(none), "0 7, 0 3.5, 0 kept; 1 2, 1 5") << "lines of the current style";
    const Open<KdDbObject> writer(styleId());
    for (const wchar_t* unreadable : {L"House", L""})
        EXPECT_EQ(values(unreadable), "0 7, 0 3.5, 0 kept; 0 99, 0 99");
}

// The overall scale -------------------------------------------------------------------------------

TEST_F(DimStylesTest, TheScaleIsReadAndSetInATransaction)
{
    const auto steps = [](const std::function<void()>& scenario) {
        std::vector<std::string> operations = tracedOperations(scenario);
        std::erase_if(operations, [](const std::string& each) {
            return each.find("Transaction") == each.npos && each != "KdDbSymbolTable::getAt" &&
                   each != "KdDbObject::close";
        });
        return operations;
    };
    const std::string find = "KdDbSymbolTable::getAt", close = "KdDbObject::close";
    const std::string manager = "KdDbTransactionManager::", start = manager + "startTransaction",
                      open = manager + "getObject", end = manager + "endTransaction";
    make({});
    EXPECT_THAT(steps([] { DimStyleMgr::SetDimScale(L"House", 2.5, drawing()); }),
                ElementsAre(find, close, start, open, close, end));
    EXPECT_THAT(steps([] { DimStyleMgr::GetDimStyleDimScale(L"House", drawing()); }),
                ElementsAre(start, find, close, open, close, end));
    EXPECT_THAT(steps([] { DimStyleMgr::GetDimStyleDimScale(L"Lost", drawing()); }),
                ElementsAre(start, find, close, end));
    EXPECT_THAT(steps([] { DimStyleMgr::SetDimScale(L"Lost", 2.5, drawing()); }),
                ElementsAre(find, close));
}

TEST_F(DimStylesTest, AScaleThatCannotBeReachedStopsTheHost)
{
    make({});
    EXPECT_EQ(DimStyleMgr::SetDimScale(L"House", 2.5, drawing()), 1);
    EXPECT_EQ(DimStyleMgr::SetDimScale(L"Lost", 2.5, drawing()), 0);
    EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"HOUSE", drawing()), 2.5);
    EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"Lost", drawing()), 1.0);
    EXPECT_THAT(korra::fatalStops(), IsEmpty()) << "an unknown style is none";

    for (const KdDbObjectId locked : {drawing()->dimStyleTableId(), styleId()}) {
        const Open<KdDbObject> writer(locked);
        EXPECT_DOUBLE_EQ(DimStyleMgr::GetDimStyleDimScale(L"House", drawing()), 1.0);
        EXPECT_EQ(DimStyleMgr::SetDimScale(L"House", 2.5, drawing()), 0);
    }
    const std::wstring reason = std::wstring(L": ") + kdapiErrorStatusText(Kdapi::eWasOpenForWrite);
    EXPECT_THAT(korra::fatalStops(),
                ElementsAre(L"!orvex_until@1911" + reason, L"!orvex_until@1946" + reason,
                            L"!orvex_until@1928" + reason, L"!orvex_until@1963" + reason));
    const KdApDocument& document = *kdDocManagerPtr()->curDocument();
    EXPECT_EQ(document.transactionManager()->numActiveTransactions(), 0);
    startFreshHost();
    EXPECT_THAT(korra::fatalStops(), IsEmpty()) << "a host begins without any";
}

} // namespace
