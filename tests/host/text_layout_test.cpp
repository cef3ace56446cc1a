#include "dxf_samples.h"
#include "gi/text_codes.h"
#include "support/ge_samples.h"

#include "entities/style_font.h"
#include "entities/text_layout.h"
#include "gi/installed_fonts.h"
#include "gi/mtext_lines.h"
#include "objects/object_access.h"

#include <fstream>

namespace {

using Lines = std::vector<std::wstring>;

class TextLayoutTest : public HostTest {
protected:
    static KdDbObjectId style(const wchar_t* font)
    {
        const auto id = addTextStyle(font);
        Open<KdDbTextStyleTableRecord>(id)->setFileName(font);
        return id;
    }
};

TEST_F(TextLayoutTest, WidthIsThatOfTheFontInCapitals)
{
    const KdDbObjectId serif = style(L"DejaVu Serif");
    EXPECT_THAT(korra::fontOfStyle(serif).file(), HasSubstr("DejaVuSerif.ttf"));
    // Units of the font: its advances over the height of its H.
    for (const auto& [text, units] : {std::pair(L"", 0.0),
                                      {L"H", 1786.0},
                                      {L"Hi", 1786.0 + 655},
                                      {L" W", 651.0 + 2105},
                                      {L"\u00D8Ч", 1679.0 + 1583}})
        EXPECT_DOUBLE_EQ(korra::textWidth(text, serif, 3.5, 0.8), units / 1493 * 3.5 * 0.8);
}

TEST_F(TextLayoutTest, FontsThatAreNotThereHaveASubstitute)
{
    const std::string substitute = korra::fontOfStyle(KdDbObjectId()).file();
    ASSERT_TRUE(std::ifstream(substitute).good());
    for (const wchar_t* font : {L"no such family", L"dejavu serif.shx"})
        EXPECT_EQ(korra::fontOfStyle(style(font)).file(), substitute);

    const std::string serif = korra::findInstalledFont(L"DejaVu Serif").file;
    const std::string path = "c:\\fonts\\" + serif.substr(serif.find_last_of('/') + 1);
    EXPECT_EQ(korra::findInstalledFont(std::wstring(path.begin(), path.end())).file, serif);
}

TEST_F(TextLayoutTest, ControlCodesBecomeCharacters)
{
    EXPECT_EQ(korra::withoutControlCodes(L"%%c30 45%%D %%p0.1"), L"\u00D830 45\u00B0 \u00B10.1");
    EXPECT_EQ(korra::withoutControlCodes(L"%%uli%%u %%065%%066 5%%%"), L"li AB 5%");
    EXPECT_EQ(korra::withoutControlCodes(L"%%%%p 100%"), L"%%p 100%");
    EXPECT_EQ(korra::withoutControlCodes(L"%%z%%06%%"), L"%%z%%06%%") << "no codes";
}

TEST_F(TextLayoutTest, AlignmentPutsTheSaidPlaceOnThePoint)
{
    // Horizontal and vertical mode, then the place in parts of width and height.
    const double below = -korra::fontOfStyle({}).descent();
    const std::tuple<short, short, double, double> cases[] = {
        {0, 1, 0, below}, {0, 2, 0, 0.5}, {2, 0, 1, 0}, {4, 0, 0.5, 0.5}, {2, 3, 1, 1}};
    for (const auto& [horizontal, vertical, x, y] : cases) {
        KdDbText text({0, 0, 0}, L"Aligned", 2.5, 0.7);
        text.setHorizontalMode(horizontal);
        text.setVerticalMode(vertical);
        text.setAlignmentPoint({10, 20, 0});
        text.setWidthFactor(0.8);
        const korra::TextRun run = korra::layOutText(text);
        const KdGePoint3d place = run.frame * KdGePoint3d(run.width * x, run.height * y, 0);
        EXPECT_LT(place.distanceTo({10, 20, 0}), 1e-12) << horizontal << ", " << vertical;
        EXPECT_TRUE(text.position().isEqualTo(run.frame * KdGePoint3d()));
    }
}

TEST_F(TextLayoutTest, FitAndAlignedTextRunsFromPointToPoint)
{
    // The mode "fit" keeps the height, "aligned" the proportions.
    const double proportional = 13.0 / korra::textWidth(L"between", {}, 1.0, 1.0);
    for (const auto& [mode, height] : {std::pair(short{3}, proportional), {short{5}, 2.0}}) {
        KdDbText text({1, 1, 0}, L"between", 2.0);
        text.setHorizontalMode(mode);
        text.setAlignmentPoint({13, 6, 0});
        const auto corners = korra::layOutText(text).corners();
        EXPECT_LT(corners[0].distanceTo({1, 1, 0}), 1e-12) << mode;
        EXPECT_LT(corners[1].distanceTo({13, 6, 0}), 1e-12) << mode;
        EXPECT_NEAR(corners[3].distanceTo(corners[0]), height, 1e-12) << mode;
    }
}

TEST_F(TextLayoutTest, BackwardTextRunsBackFromItsPointAndTextUpsideDownHangsFromIt)
{
    // Generation flags, the directions of the line and of the letters' height.
    for (const auto& [flags, along, up] :
         {std::tuple("2", -1, 1), std::tuple("4", 1, -1), std::tuple("6", -1, -1)}) {
        const auto drawing = dxf::readWhole(dxf::withEntities(
            std::string("0 TEXT; 5 A; 8 0; 10 3; 20 4; 40 2; 1 word; 71 ") + flags));
        const auto corners = korra::layOutText(*dxf::find<KdDbText>(*drawing, 0xA)).corners();
        EXPECT_LT(corners[0].distanceTo({3, 4, 0}), 1e-12);
        EXPECT_GT((corners[1].x - 3) * along, 3.0) << flags;
        EXPECT_NEAR(corners[3].y - 4, 2 * up, 1e-12) << flags;
    }
}

TEST_F(TextLayoutTest, ValuesThatMeanNothingAreRefused)
{
    KdDbText text({1, 2, 0}, L"word", 2.0);
    KdDbMText lines;
    const Kdapi::ErrorStatus refused[] = {
        text.setTextString(nullptr), text.setHeight(0.0),        text.setWidthFactor(0.0),
        text.setHorizontalMode(-1),  text.setHorizontalMode(6),  text.setVerticalMode(-1),
        text.setVerticalMode(4),     lines.setContents(nullptr), lines.setTextHeight(0.0),
        lines.setWidth(-0.5),        lines.setAttachment(0),     lines.setAttachment(10),
        lines.setNormal({0, 0, 0})};
    EXPECT_THAT(refused, Each(Kdapi::eInvalidInput));
    EXPECT_EQ(lines.setTextStyle({}), Kdapi::eNullObjectId);
}

TEST_F(TextLayoutTest, ATurnedPlaneKeepsTheRotationAndFilesMayGiveItAsAnAngle)
{
    KdDbMText text;
    text.setRotation(0.7);
    EXPECT_EQ(text.setNormal({0, 3, 4}), Kdapi::eOk);
    EXPECT_NEAR(text.rotation(), 0.7, 1e-12);
    const auto drawing = dxf::readWhole(
        dxf::withEntities("0 MTEXT; 5 A; 8 0; 10 1; 20 1; 40 2; 1 a\\Pb; 44 1.5; 50 90"));
    const auto* const read = dxf::find<KdDbMText>(*drawing, 0xA);
    EXPECT_NEAR(read->rotation(), kPi / 2, 1e-12);
    EXPECT_NEAR(read->actualHeight(), 2 + 1.5 * 2 * 5 / 3, 1e-12);
}

TEST_F(TextLayoutTest, FormCodesOfMultilineTextAreRead)
{
    const std::pair<const wchar_t*, Lines> cases[] = {
        {L"a\\Pb\\~c", {L"a", L"b\u00A0c"}},
        {L"\\{x\\}\\\\", {L"{x}\\"}},
        {L"{\\fArial|b0;\\H2.5;bold}", {L"bold"}},
        {L"\\A1;\\Lunder\\l", {L"under"}},
        {L"\\S1/2; \\S+0.1^-0.2;", {L"1/2 +0.1 -0.2"}},
        {L"%%c5 \\U+2300\\U+12", {L"\u00D85 \u2300U+12"}},
        {L"\\H2.5", {L""}}, // an argument without its end
        {L"tab^Ik^Jnew", {L"tab k", L"new"}}};
    for (const auto& [contents, lines] : cases)
        EXPECT_EQ(korra::readParagraphs(contents), lines);
}

TEST_F(TextLayoutTest, LinesAreBrokenAtBlanksWithinTheFrame)
{
    const auto letters = [](std::wstring_view text) { return static_cast<double>(text.size()); };
    const std::tuple<const wchar_t*, double, Lines> cases[] = {
        {L"one two three", 7, {L"one two", L"three"}},
        {L"one two three", 0, {L"one two three"}},
        {L"incomprehensible it", 5, {L"incomprehensible", L"it"}},
        {L"ab  ", 3, {L"ab  "}}};
    for (const auto& [text, width, lines] : cases)
        EXPECT_EQ(korra::wrapped(text, width, letters), lines);
}

TEST_F(TextLayoutTest, AttachmentPutsTheSaidPlaceOfTheBoxOnTheLocation)
{
    for (short attachment = 1; attachment <= 9; ++attachment) {
        KdDbMText text;
        text.setContents(L"first line\\Psecond");
        text.setTextHeight(2.0);
        text.setLocation({5, 6, 0});
        text.setRotation(kPi / 2);
        text.setAttachment(attachment);
        const auto runs = korra::layOutMText(text);
        ASSERT_EQ(runs.size(), 2u);
        const int column = (attachment - 1) % 3;
        const int row = (attachment - 1) / 3;
        const KdGePoint3d onLine = runs[0].frame * KdGePoint3d(runs[0].width * column / 2.0, 0, 0);
        EXPECT_NEAR(onLine.y, 6.0, 1e-12) << attachment; // lines run upwards
        const double top = (runs[0].frame * KdGePoint3d(0, 2.0, 0)).x;
        const double bottom = (runs[1].frame * KdGePoint3d()).x;
        EXPECT_NEAR(bottom - top, text.actualHeight(), 1e-12);
        EXPECT_NEAR(top + (bottom - top) * row / 2.0, 5.0, 1e-12) << attachment;
    }
}

TEST_F(TextLayoutTest, MultilineTextMeasuresItsLongestLineWithBlanks)
{
    KdDbMText text;
    text.setTextHeight(3.0);
    text.setContents(L" AB\\PA");
    EXPECT_DOUBLE_EQ(text.actualWidth(), korra::textWidth(L" AB", {}, 3.0, 1.0));
    EXPECT_DOUBLE_EQ(text.actualHeight(), 3.0 + 5.0);
    text.setContents(L"");
    EXPECT_EQ(text.actualHeight(), 0.0);
    KdDbExtents box;
    EXPECT_EQ(text.getGeomExtents(box), Kdapi::eInvalidExtents);
}

} // namespace
