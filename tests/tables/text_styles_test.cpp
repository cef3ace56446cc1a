#include "orvex/text_styles.h"

#include "support/room_test.h"
#include "tables/messages.h"

#include <optional>

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

Call windowsFont(const wchar_t* face, const wchar_t* name = L"Notes")
{
    return {.name = name,
            .useWindowsFont = 1,
            .fontFile = L"ignored",
            .bigFontFile = L"ignored",
            .windowsFont = face};
}

/// What the host keeps of a style, as one line: files, typeface with its marks, width, degrees.
std::string styleText(const wchar_t* name = L"Notes")
{
    const KdDbObjectId id = TxtStyleMgr::GetTxtStyleId(name, drawing());
    if (id.isNull())
        return "none";
    const Open<KdDbTextStyleTableRecord> style(id, KdDb::kForRead);
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
    TextStylesTest()
    {
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

    // What the style was before, if it was; what it is given; what it is then.
    const std::tuple<std::optional<Call>, Call, const char*> cases[] = {
        {{}, {}, "[plain.shx|] [ 0 0 0] 2 15"},
        {{}, twoFiles, "[plain.shx|big.shx] [ 0 0 0] 2 15"},
        {{}, windowsFont(L"dejavu SANS"), "[|] [DejaVu Sans 0 2 0] 2 15"},
        {{}, windowsFont(L"Not Installed"), "[|] [Not Installed 0 2 0] 2 15"},
        {{}, windowsFont(L"nowhere.sHx"), "[nowhere.sHx|] [ 0 0 0] 2 15"},
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

TEST_F(TextStylesTest, MakingAndChangingSayWhatIsWrong)
{
    make({});
    make({.name = L"100%s%d"});
    const std::string before = styleText();
    const wchar_t* const tooLong = L"A face name of over 31 letters..";
    const std::tuple<int (*)(const Call&), Call, std::string> cases[] = {
        {make, {.name = L"NOTES", .widthFactor = 9}, localised(106, L"NOTES")},
        {make, {.name = L"100%s%d"}, localised(106, L"100%s%d")},
        {make, {.name = L""}, ""},
        {make, windowsFont(L"", L"New"), "\nWINDOWS Font can't be empty！"},
        {make, windowsFont(tooLong, L"New"), ""},
        {make, {.name = L"New", .fontFile = L"no.shx"}, "\nFont file no.shx can not be found！"},
        {change, {.name = L"New"}, "\ncurrent db can not found \"New\" font！！"},
        {change, windowsFont(L""), localised(107, L"")},
        {change, windowsFont(tooLong), ""},
        {change, {.fontFile = L"no.shx"}, "\nfont file no.shx can not be found！"},
        {change, {.bigFontFile = L"no.shx"}, "\nbig file name no.shx can not be found！"},
    };

    for (const auto& [service, call, message] : cases) {
        EXPECT_EQ(service(call), 0);
        EXPECT_EQ(printed(), message);
        EXPECT_EQ(styleText() + styleText(L"New"), before + "none") << message;
    }
    const Open<KdDbObject> reader(TxtStyleMgr::GetTxtStyleId(L"Notes", drawing()), KdDb::kForRead);
    EXPECT_EQ(change({}), 0) << "the style cannot be written";
}

TEST_F(TextStylesTest, MakingLeavesAMissingBigFontOut)
{
    EXPECT_EQ(make({.bigFontFile = L"no.shx"}), 1);
    EXPECT_EQ(printed(), "\nBig font file no.shx can not be found！");
    EXPECT_EQ(styleText(), "[plain.shx|] [ 0 0 0] 0.7 30");
}

TEST_F(TextStylesTest, FilesTakeThePlaceOfAFontOfTheDefaultCharacterSet)
{
    make(windowsFont(L"DejaVu Sans"));
    EXPECT_THAT(tracedCalls([] { change({}); }),
                Contains(HasSubstr("setFont(\"\", 0, 0, 1, 2, 0)")));
}

TEST_F(TextStylesTest, AStyleForDrawingIsNeverUnderlined)
{
    make({});
    KdDbObjectId id;
    EXPECT_EQ(rx_getTextStyleId(L"notes", drawing(), id), Kdapi::eOk);
    for (const auto& [record, xScale] : {std::pair(id, 0.7), {KdDbObjectId(), 1.0}}) {
        KdGiTextStyle style;
        style.setUnderlined(true);
        EXPECT_EQ(rx_getTextStyle(style, record) == Kdapi::eOk, record == id);
        EXPECT_DOUBLE_EQ(style.xScale(), xScale);
        EXPECT_FALSE(style.isUnderlined());
    }
}

TEST_F(TextStylesTest, AnIdComesWithTheHostsStatus)
{
    KdDbObjectId id;
    EXPECT_EQ(rx_getTextStyleId(L"Lost", drawing(), id), Kdapi::eKeyNotFound);
    const Open<KdDbObject> writer(drawing()->textStyleTableId());
    EXPECT_EQ(rx_getTextStyleId(L"Standard", drawing(), id), Kdapi::eWasOpenForWrite);
    EXPECT_EQ(make({}), 0);
    EXPECT_EQ(change({.name = L"Standard"}), 0);
}

} // namespace
