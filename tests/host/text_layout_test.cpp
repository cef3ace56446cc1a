#include "dxf_samples.h"
#include "gi/text_codes.h"
#include "support/ge_samples.h"
#include "support/host_test.h"
#include "support/objects.h"

#include "entities/style_font.h"
#include "entities/text_layout.h"
#include "gi/installed_fonts.h"
#include "gi/mtext_lines.h"
#include "objects/object_access.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H

#include <fstream>

using namespace tests;

namespace {

/// The width of a text straight from the font file, in heights of a capital.
double widthInCapitals(const std::string& file, std::wstring_view text)
{
    FT_Library library = nullptr;
    FT_Face face = nullptr;
    FT_Init_FreeType(&library);
    EXPECT_EQ(FT_New_Face(library, file.c_str(), 0, &face), 0);
    FT_Fixed sum = 0;
    for (const wchar_t character : text) {
        FT_Fixed advance = 0;
        FT_Get_Advance(face, FT_Get_Char_Index(face, static_cast<FT_ULong>(character)),
                       FT_LOAD_NO_SCALE, &advance);
        sum += advance;
    }
    FT_Load_Char(face, 'H', FT_LOAD_NO_SCALE);
    const auto capital = static_cast<double>(face->glyph->metrics.horiBearingY);
    FT_Done_FreeType(library); // with the face
    return static_cast<double>(sum) / capital;
}

class TextLayoutTest : public HostTest {
protected:
    static KdDbObjectId style(const wchar_t* font)
    {
        const auto id = addRecord<KdDbTextStyleTable, KdDbTextStyleTableRecord>(font);
        Open<KdDbTextStyleTableRecord>(id)->setFileName(font);
        return id;
    }
};

TEST_F(TextLayoutTest, WidthIsThatOfTheFontItself)
{
    const KdDbObjectId serif = style(L"DejaVu Serif");
    const std::string& file = korra::fontOfStyle(serif).file();
    ASSERT_NE(file.find("Serif"), std::string::npos);
    for (const wchar_t* text : {L"", L"H", L"Welle Ø30", L" i  W", L"Чертёж"})
        EXPECT_DOUBLE_EQ(korra::textWidth(text, serif, 3.5, 0.8),
                         widthInCapitals(file, text) * 3.5 * 0.8);
}

TEST_F(TextLayoutTest, FontsThatAreNotThereHaveASubstitute)
{
    const std::string substitute = korra::fontOfStyle(KdDbObjectId()).file();
    ASSERT_TRUE(std::ifstream(substitute).good());
    for (const wchar_t* font : {L"no such family", L"txt.shx", L"dejavu serif.shx"})
        EXPECT_EQ(korra::fontOfStyle(style(font)).file(), substitute);

    const std::string serif = korra::findInstalledFont(L"DejaVu Serif").file;
    const std::string name = serif.substr(serif.find_last_of('/') + 1);
    EXPECT_EQ(
        korra::findInstalledFont(L"c:\\fonts\\" + std::wstring(name.begin(), name.end())).file,
        serif);
}

TEST_F(TextLayoutTest, ControlCodesBecomeCharacters)
{
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"%%c30", L"\u00D830"}, {L"45%%D", L"45\u00B0"},  {L"%%p0.1", L"\u00B10.1"},
        {L"5%%%", L"5%"},        {L"%%uline%%u", L"line"}, {L"%%065%%066", L"AB"},
        {L"%%", L"%%"},          {L"%%z", L"%%z"},         {L"%%%%p", L"%%p"},
        {L"100%", L"100%"},      {L"%%06", L"%%06"},       {L"", L""}};
    for (const auto& [given, shown] : cases)
        EXPECT_EQ(korra::withoutControlCodes(given), shown);
}

TEST_F(TextLayoutTest, AlignmentPutsTheSaidPlaceOnThePoint)
{
    // Horizontal and vertical mode, then the place in parts of width and height.
    const std::tuple<short, short, double, double> cases[] = {{0, 2, 0, 0.5}, {1, 0, 0.5, 0},
                                                              {2, 0, 1, 0},   {4, 0, 0.5, 0.5},
                                                              {2, 3, 1, 1},   {1, 2, 0.5, 0.5}};
    const KdGePoint3d at(10, 20, 0);
    for (const auto& [horizontal, vertical, x, y] : cases) {
        KdDbText text({0, 0, 0}, L"Aligned", 2.5, 0.7);
        text.setHorizontalMode(horizontal);
        text.setVerticalMode(vertical);
        text.setAlignmentPoint(at);
        text.setWidthFactor(0.8);
        const korra::TextRun run = korra::layOutText(text);
        const KdGePoint3d place = run.frame * KdGePoint3d(run.width * x, run.height * y, 0);
        EXPECT_LT(place.distanceTo(at), 1e-12) << horizontal << ", " << vertical;
        EXPECT_TRUE(text.position().isEqualTo(run.frame * KdGePoint3d()));
    }
}

TEST_F(TextLayoutTest, FitAndAlignedTextRunsFromPointToPoint)
{
    constexpr short kAligned = 3;
    constexpr short kFit = 5;
    const double alignedHeight = 13.0 / korra::textWidth(L"between", {}, 1.0, 1.0);
    for (const auto& [mode, height] : {std::pair(kAligned, alignedHeight), std::pair(kFit, 2.0)}) {
        KdDbText text({1, 1, 0}, L"between", 2.0);
        text.setHorizontalMode(mode);
        text.setAlignmentPoint({13, 6, 0});
        const auto corners = korra::layOutText(text).corners();
        EXPECT_LT(corners[0].distanceTo({1, 1, 0}), 1e-12) << mode;
        EXPECT_LT(corners[1].distanceTo({13, 6, 0}), 1e-12) << mode;
        EXPECT_NEAR(corners[3].distanceTo(corners[0]), height, 1e-12) << mode;
    }
}

TEST_F(TextLayoutTest, MirroredTextKeepsItsBox)
{
    KdDbText text({3, 4, 0}, L"Mirror", 2.0, 0.4);
    const auto before = korra::layOutText(text).corners();
    const KdGeMatrix3d mirror = KdGeMatrix3d::scaling(KdGeScale3d(-1, 1, 1));
    ASSERT_EQ(text.transformBy(mirror), Kdapi::eOk);
    const auto after = korra::layOutText(text).corners();
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_LT(after[i].distanceTo(mirror * before[i]), 1e-12);
}

TEST_F(TextLayoutTest, BackwardTextRunsBackFromItsPointAndTextUpsideDownHangsFromIt)
{
    // Generation flags, the directions of the line and of the letters' height.
    const std::tuple<const char*, double, double> cases[] = {
        {"0", 1, 1}, {"2", -1, 1}, {"4", 1, -1}, {"6", -1, -1}};
    for (const auto& [flags, along, up] : cases) {
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
    const std::pair<Kdapi::ErrorStatus, const char*> refused[] = {
        {text.setTextString(nullptr), "text"},      {text.setHeight(0.0), "height"},
        {text.setWidthFactor(0.0), "width factor"}, {text.setHorizontalMode(-1), "left of left"},
        {text.setHorizontalMode(6), "beyond fit"},  {text.setVerticalMode(-1), "below base line"},
        {text.setVerticalMode(4), "above top"},     {lines.setContents(nullptr), "contents"},
        {lines.setTextHeight(0.0), "text height"},  {lines.setWidth(-0.5), "width"},
        {lines.setAttachment(0), "attachment 0"},   {lines.setAttachment(10), "attachment 10"},
        {lines.setNormal({0, 0, 0}), "normal"}};
    for (const auto& [status, what] : refused)
        EXPECT_EQ(status, Kdapi::eInvalidInput) << what;
    EXPECT_EQ(text.setTextStyle({}), Kdapi::eNullObjectId);
    EXPECT_EQ(lines.setTextStyle({}), Kdapi::eNullObjectId);
    const Kdapi::ErrorStatus taken[] = {text.setHeight(0.5),       text.setWidthFactor(0.5),
                                        text.setHorizontalMode(0), text.setHorizontalMode(5),
                                        text.setVerticalMode(0),   text.setVerticalMode(3),
                                        lines.setTextHeight(0.5),  lines.setWidth(0.0),
                                        lines.setAttachment(1),    lines.setAttachment(9)};
    EXPECT_THAT(taken, ::testing::Each(Kdapi::eOk));
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
    using Lines = std::vector<std::wstring>;
    const std::pair<const wchar_t*, Lines> cases[] = {
        {L"a\\Pb", {L"a", L"b"}},
        {L"\\{x\\}\\\\", {L"{x}\\"}},
        {L"a\\~b", {L"a\u00A0b"}},
        {L"{\\fArial|b0;\\H2.5;bold}", {L"bold"}},
        {L"\\A1;\\Lunder\\l", {L"under"}},
        {L"\\S1/2; \\S+0.1^-0.2;", {L"1/2 +0.1 -0.2"}},
        {L"%%c5 \\U+2300", {L"\u00D85 \u2300"}},
        {L"\\U+12", {L"U+12"}},
        {L"\\H2.5", {L""}}, // an argument without its end
        {L"tail\\", {L"tail\\"}},
        {L"tab^Ik^Jnew", {L"tab k", L"new"}},
        {L"", {L""}}};
    for (const auto& [contents, lines] : cases)
        EXPECT_EQ(korra::readParagraphs(contents), lines);
}

TEST_F(TextLayoutTest, LinesAreBrokenAtBlanksWithinTheFrame)
{
    using Lines = std::vector<std::wstring>;
    const auto letters = [](std::wstring_view text) { return static_cast<double>(text.size()); };
    const std::tuple<const wchar_t*, double, Lines> cases[] = {
        {L"one two three", 7, {L"one two", L"three"}},
        {L"one two three", 0, {L"one two three"}},
        {L"incomprehensible it is", 5, {L"incomprehensible", L"it is"}},
        {L"", 5, {L""}},
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
    // Contents, longest line and height.
    const std::tuple<const wchar_t*, const wchar_t*, double> cases[] = {
        {L"AB", L"AB", 3.0}, {L" AB\\PA", L" AB", 3.0 + 5.0}, {L"", L"", 0.0}};
    KdDbMText text;
    text.setTextHeight(3.0);
    for (const auto& [contents, longest, height] : cases) {
        text.setContents(contents);
        EXPECT_DOUBLE_EQ(text.actualWidth(), korra::textWidth(longest, {}, 3.0, 1.0));
        EXPECT_DOUBLE_EQ(text.actualHeight(), height);
    }
    KdDbExtents box;
    EXPECT_EQ(text.getGeomExtents(box), Kdapi::eInvalidExtents);
}

} // namespace
