#include "orvex/text_styles.h"

#include "support/drawing.h"
#include "support/host_test.h"
#include "support/modules.h"
#include "support/opened.h"
#include "support/support_folder.h"
#include "tables/messages.h"

#include <optional>

using namespace tests;
using support::Opened;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::EndsWith;

namespace {

/// One call of a service that makes or changes a style.
struct Call {
    const wchar_t* name = L"Notes";
    double widthFactor = 0.7;
    double obliqueDegrees = 30;
    int useWindowsFont = 0;
    const wchar_t* fontFile = L"plain.shx";
    const wchar_t* bigFontFile = L"";
    const wchar_t* windowsFont = L"";
};

using Service = decltype(TxtStyleMgr::CreateTextStyle);

int run(Service service, const Call& call)
{
    return service(call.name, call.widthFactor, call.obliqueDegrees, call.useWindowsFont,
                   call.fontFile, call.bigFontFile, call.windowsFont, drawing());
}

int make(const Call& call)
{
    return run(TxtStyleMgr::CreateTextStyle, call);
}

int change(const Call& call)
{
    return run(TxtStyleMgr::ModifyTextStyle, call);
}

Call windowsFont(const wchar_t* face)
{
    return {.useWindowsFont = 1,
            .fontFile = L"ignored",
            .bigFontFile = L"ignored",
            .windowsFont = face};
}

/// What the host keeps of a style, as one line: files, typeface with its marks, width, degrees.
std::string styleText(const wchar_t* name = L"Notes")
{
    const Opened<KdDbTextStyleTableRecord> style(TxtStyleMgr::GetTxtStyleId(name, drawing()),
                                                 KdDb::kForRead);
    if (!style)
        return "none";
    std::wstring typeface;
    bool bold = false, italic = false;
    int characterSet = 0, pitch = 0, family = 0;
    style->font(typeface, bold, italic, characterSet, pitch, family);
    CString text;
    text.Format(L"[%s|%s] [%s%s%s %d %d %d] %g %.15g", style->fileName().c_str(),
                style->bigFontFileName().c_str(), typeface.c_str(), bold ? L" bold" : L"",
                italic ? L" italic" : L"", characterSet, pitch, family, style->xScale(),
                style->obliquingAngle() * 180 / 3.141592653589793);
    return narrow(text);
}

class TextStylesTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        folder_.use();
        folder_.write("plain.shx", "shapes");
        folder_.write("big.shx", "shapes");
    }

    SupportFolder folder_;
};

TEST_F(TextStylesTest, AStyleHasTheFontsAndProportionsThatItWasGivenLast)
{
    const Call twoFiles{.bigFontFile = L"big.shx"};
    const Call installed = windowsFont(L"DejaVu Sans");

    struct {
        std::optional<Call> before; ///< none: the style is made
        Call call;
        const char* text;
    } const cases[] = {
        {{}, {}, "[plain.shx|] [ 0 0 0] 2 15"},
        {{}, twoFiles, "[plain.shx|big.shx] [ 0 0 0] 2 15"},
        {{}, windowsFont(L"dejavu SANS"), "[|] [DejaVu Sans 0 2 0] 2 15"},
        {{}, windowsFont(L"Not Installed"), "[|] [Not Installed 0 2 0] 2 15"},
        {{}, windowsFont(L"plain.sHx"), "[plain.sHx|] [ 0 0 0] 2 15"},
        {{}, windowsFont(L"nowhere.shx"), "[nowhere.shx|] [ 0 0 0] 2 15"},
        {twoFiles, installed, "[|] [DejaVu Sans 0 2 0] 2 15"},
        {Call(), windowsFont(L"plain.shx"), "[|] [plain.shx 0 2 0] 2 15"},
        {installed, twoFiles, "[plain.shx|big.shx] [ 0 0 0] 2 15"},
        {twoFiles, {}, "[plain.shx|] [ 0 0 0] 2 15"},
    };

    for (auto [before, call, text] : cases) {
        startFreshHost();
        folder_.use();
        if (before) {
            ASSERT_EQ(make(*before), 1);
        }
        call.widthFactor = 2;
        call.obliqueDegrees = 15;
        EXPECT_EQ(before ? change(call) : make(call), 1);
        EXPECT_EQ(styleText(), text);
        EXPECT_EQ(printed(), "");
    }
}

TEST_F(TextStylesTest, MakingSaysWhatIsWrong)
{
    make({.name = L"Taken"});
    make({.name = L"100%s%d"});

    struct {
        Call call;
        int result;
        std::string message;
    } const cases[] = {
        {{.name = L"TAKEN", .widthFactor = 9}, 0, localised(106, L"TAKEN")},
        {{.name = L"100%s%d"}, 0, localised(106, L"100%s%d")},
        {{.name = L"", .widthFactor = 9}, 0, ""},
        {windowsFont(L""), 0, "\nWINDOWS Font can't be empty！"},
        {windowsFont(L"A face name of over 31 letters.."), 0, ""},
        {{.fontFile = L"lost.shx"}, 0, "\nFont file lost.shx can not be found！"},
        {{.bigFontFile = L"lost.shx"}, 1, "\nBig font file lost.shx can not be found！"},
    };

    for (const auto& [call, result, message] : cases) {
        EXPECT_EQ(make(call), result);
        EXPECT_EQ(printed(), message);
        EXPECT_EQ(styleText(), result ? "[plain.shx|] [ 0 0 0] 0.7 30" : "none");
    }
    EXPECT_EQ(styleText(L"Taken"), "[plain.shx|] [ 0 0 0] 0.7 30");
}

TEST_F(TextStylesTest, ChangingSaysWhatIsWrongAndChangesNothing)
{
    make({});
    const std::string before = styleText();

    struct {
        Call call;
        std::string message;
    } const cases[] = {
        {{.name = L"Lost", .widthFactor = 9}, "\ncurrent db can not found \"Lost\" font！！"},
        {windowsFont(L""), localised(107, L"")},
        {windowsFont(L"A face name of over 31 letters.."), ""},
        {{.widthFactor = 9, .fontFile = L"lost.shx"}, "\nfont file lost.shx can not be found！"},
        {{.widthFactor = 9, .bigFontFile = L"lost.shx"},
         "\nbig file name lost.shx can not be found！"},
    };

    for (const auto& [call, message] : cases) {
        EXPECT_EQ(change(call), 0);
        EXPECT_EQ(printed(), message);
        EXPECT_EQ(styleText(), before);
    }
    const Opened<KdDbObject> reader(TxtStyleMgr::GetTxtStyleId(L"Notes", drawing()),
                                    KdDb::kForRead);
    EXPECT_EQ(change({}), 0) << "the style cannot be written";
}

TEST_F(TextStylesTest, BuiltInTextsStandForMissingResources)
{
    const auto notes = [&] { folder_.use(), make({}); };
    EXPECT_THAT(outcomesOfFailures(notes, [] { return make({}); }),
                Contains("0\n当前数据库中已经存在 \"Notes\"的字体样式!"));
    EXPECT_THAT(outcomesOfFailures(notes, [] { return change(windowsFont(L"")); }),
                Contains("0\nwindow font can't be empty!"));
}

TEST_F(TextStylesTest, RefusedFontsAreToldWithTheHostsReason)
{
    const auto folder = [&] { folder_.use(); };
    const auto notes = [&] { folder_.use(), make({}); };
    const std::string reason = narrow(kdapiErrorStatusText(Kdapi::eInvalidInput));
    const std::string notOpen = narrow(kdapiErrorStatusText(Kdapi::eNotOpenForWrite));
    EXPECT_THAT(outcomesOfFailures(folder, [] { return make(windowsFont(L"DejaVu Sans")); }),
                Contains("0\nsetFont WINDOWS Font DejaVu Sans error " + reason + "!"));
    EXPECT_THAT(outcomesOfFailures(folder, [] { return make(windowsFont(L"plain.shx")); }),
                Contains("1\nsetFileName WINDOWS Font plain.shx error " + notOpen + "!"));
    EXPECT_THAT(outcomesOfFailures(notes, [] { return change(windowsFont(L"DejaVu Sans")); }),
                Contains("1\nsetFont WINDOWS Font DejaVu Sans error " + reason + "!"));
    EXPECT_THAT(outcomesOfFailures(notes, [] { return change({.bigFontFile = L"big.shx"}); }),
                Contains("1\nsetBigFontFileName big.shx error " + notOpen + "!"));
}

TEST_F(TextStylesTest, ChangingTakesTheOldFontAwayFirst)
{
    make({});
    const auto setters = [](const Call& call) {
        return only(tracedCalls([&] { change(call); }),
                    {"KdDbTextStyleTableRecord::setFileName",
                     "KdDbTextStyleTableRecord::setBigFontFileName",
                     "KdDbTextStyleTableRecord::setFont"});
    };
    using ::testing::MatchesRegex;
    EXPECT_THAT(setters(windowsFont(L"DejaVu Sans")),
                ElementsAre(MatchesRegex(R"(.*setFileName\(.*, ""\) = 0)"),
                            MatchesRegex(R"(.*setBigFontFileName\(.*, ""\) = 0)"),
                            EndsWith("setFont(\"DejaVu Sans\", 0, 0, 0, 2, 0) = 0")));
    EXPECT_THAT(setters({.bigFontFile = L"big.shx"}),
                ElementsAre(EndsWith("setFont(\"\", 0, 0, 1, 2, 0) = 0"),
                            MatchesRegex(R"(.*setFileName\(.*, "plain.shx"\) = 0)"),
                            MatchesRegex(R"(.*setBigFontFileName\(.*, "big.shx"\) = 0)")));
}

TEST_F(TextStylesTest, AStyleForDrawingIsNeverUnderlined)
{
    make({});
    KdDbObjectId id;
    EXPECT_EQ(rx_getTextStyleId(L"notes", drawing(), id), Kdapi::eOk);
    for (const KdDbObjectId record : {id, KdDbObjectId()}) {
        KdGiTextStyle style;
        style.setUnderlined(true);
        const Kdapi::ErrorStatus status = rx_getTextStyle(style, record);
        EXPECT_EQ(status == Kdapi::eOk, record == id);
        EXPECT_DOUBLE_EQ(style.xScale(), record == id ? 0.7 : 1.0);
        EXPECT_FALSE(style.isUnderlined());
    }
}

TEST_F(TextStylesTest, AnIdComesWithTheHostsStatus)
{
    KdDbObjectId id;
    EXPECT_EQ(rx_getTextStyleId(L"Lost", drawing(), id), Kdapi::eKeyNotFound);
    EXPECT_EQ(TxtStyleMgr::FindTextStyle(L"Standard", drawing()), 1);
    const Opened<KdDbObject> writer(drawing()->textStyleTableId(), KdDb::kForWrite);
    EXPECT_EQ(rx_getTextStyleId(L"Standard", drawing(), id), Kdapi::eWasOpenForWrite);
    EXPECT_EQ(make({}), 0);
    EXPECT_EQ(change({.name = L"Standard"}), 0);
    EXPECT_EQ(TxtStyleMgr::FindTextStyle(L"Standard", drawing()), 0);
}

TEST_F(TextStylesTest, LeaveNothingOpenWhateverFails)
{
    const auto folder = [&] { return folder_.use(), 0; };
    const auto notes = [&] { return folder_.use(), make({}); };
    const Call twoFiles{.bigFontFile = L"big.shx"};
    for (const Call& call : {twoFiles, windowsFont(L"DejaVu Sans"), windowsFont(L"plain.shx")}) {
        sweepFaults<int>(folder, [=](int) { make(call); });
        sweepFaults<int>(notes, [=](int) { change(call); });
    }
    sweepFaults<int>(notes, [](int) {
        make({});
        change({.name = L"Lost"});
        KdDbObjectId id;
        rx_getTextStyleId(L"Notes", drawing(), id);
        KdGiTextStyle style;
        rx_getTextStyle(style, id);
    });
}

} // namespace
