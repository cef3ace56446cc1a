#include "support/host_test.h"

#include "db/object_access.h"
#include "gi/fonts.h"
#include "gi/installed_fonts.h"
#include "gi/mtext_lines.h"
#include "gi/text_layout.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H

#include <cmath>
#include <fstream>

using namespace tests;

namespace {

constexpr double kPi = 3.14159265358979323846;

/// Advance and capital height straight from the font file, in units of the em.
class FontFileMeasure {
public:
    explicit FontFileMeasure(const std::string& file)
    {
        FT_Init_FreeType(&library_);
        EXPECT_EQ(FT_New_Face(library_, file.c_str(), 0, &face_), 0);
    }

    ~FontFileMeasure()
    {
        FT_Done_Face(face_);
        FT_Done_FreeType(library_);
    }

    double width(std::wstring_view text) const
    {
        FT_Fixed sum = 0;
        for (const wchar_t character : text) {
            FT_Fixed advance = 0;
            FT_Get_Advance(face_, FT_Get_Char_Index(face_, static_cast<FT_ULong>(character)),
                           FT_LOAD_NO_SCALE, &advance);
            sum += advance;
        }
        return static_cast<double>(sum);
    }

    double capitalHeight() const
    {
        FT_Load_Char(face_, 'H', FT_LOAD_NO_SCALE);
        return static_cast<double>(face_->glyph->metrics.horiBearingY);
    }

private:
    FT_Library library_ = nullptr;
    FT_Face face_ = nullptr;
};

class TextLayoutTest : public HostTest {
protected:
    KdDbObjectId style(const wchar_t* name, const wchar_t* font)
    {
        KdDbTextStyleTable* table = nullptr;
        database().getSymbolTable(table, KdDb::kForWrite);
        auto* record = new KdDbTextStyleTableRecord;
        record->setName(name);
        record->setFileName(font);
        KdDbObjectId id;
        EXPECT_EQ(table->add(id, record), Kdapi::eOk);
        record->close();
        table->close();
        return id;
    }
};

TEST_F(TextLayoutTest, WidthIsThatOfTheFontItself)
{
    const KdDbObjectId serif = style(L"Serif", L"DejaVu Serif");
    const std::string& file = korra::fontOfStyle(serif).file();
    ASSERT_NE(file.find("Serif"), std::string::npos);
    const FontFileMeasure measure(file);
    for (const wchar_t* text : {L"H", L"Welle Ø30", L" i  W", L"Чертёж"}) {
        EXPECT_NEAR(korra::textWidth(text, serif, 3.5, 0.8),
                    measure.width(text) / measure.capitalHeight() * 3.5 * 0.8, 1e-9);
    }
    EXPECT_EQ(korra::textWidth(L"", serif, 3.5, 1.0), 0.0);
}

TEST_F(TextLayoutTest, FontsThatAreNotThereHaveASubstitute)
{
    const std::string substitute = korra::fontOfStyle(KdDbObjectId()).file();
    ASSERT_TRUE(std::ifstream(substitute).good());
    EXPECT_EQ(korra::fontOfStyle(style(L"A", L"no such family")).file(), substitute);
    EXPECT_EQ(korra::fontOfStyle(style(L"B", L"txt.shx")).file(), substitute);
    EXPECT_EQ(korra::fontOfStyle(style(L"C", L"dejavu serif.shx")).file(), substitute);

    const std::string serif = korra::findInstalledFont(L"DejaVu Serif").file;
    const std::string name = serif.substr(serif.find_last_of('/') + 1);
    const std::wstring upper(name.begin(), name.end());
    EXPECT_EQ(korra::findInstalledFont(L"c:\\fonts\\" + upper).file, serif);
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
    struct Case {
        short horizontal;
        short vertical;
        double x; ///< of the width
        double y; ///< of the height
    };

    const KdGePoint3d at(10, 20, 0);
    for (const Case& each : {Case{0, 2, 0, 0.5}, Case{1, 0, 0.5, 0}, Case{2, 0, 1, 0},
                             Case{4, 0, 0.5, 0.5}, Case{2, 3, 1, 1}, Case{1, 2, 0.5, 0.5}}) {
        KdDbText text({0, 0, 0}, L"Aligned", 2.5, 0.7);
        text.setHorizontalMode(each.horizontal);
        text.setVerticalMode(each.vertical);
        text.setAlignmentPoint(at);
        text.setWidthFactor(0.8);
        const korra::TextRun run = korra::layOutText(text);
        const KdGePoint3d place =
            run.frame * KdGePoint3d(run.width * each.x, run.height * each.y, 0);
        EXPECT_LT(place.distanceTo(at), 1e-12) << each.horizontal << each.vertical;
        EXPECT_TRUE(text.position().isEqualTo(run.frame * KdGePoint3d()));
    }
}

TEST_F(TextLayoutTest, FitAndAlignedTextRunsFromPointToPoint)
{
    for (const short mode : {short{3}, short{5}}) {
        KdDbText text({1, 1, 0}, L"between", 2.0);
        text.setHorizontalMode(mode);
        text.setAlignmentPoint({13, 6, 0});
        const auto corners = korra::layOutText(text).corners();
        EXPECT_LT(corners[0].distanceTo({1, 1, 0}), 1e-12);
        EXPECT_LT(corners[1].distanceTo({13, 6, 0}), 1e-12);
        const double height = corners[3].distanceTo(corners[0]);
        if (mode == 5)
            EXPECT_NEAR(height, 2.0, 1e-12);
        else
            EXPECT_NEAR(13.0 / height, korra::textWidth(L"between", {}, 1.0, 1.0), 1e-9);
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

TEST_F(TextLayoutTest, FormCodesOfMultilineTextAreRead)
{
    using Lines = std::vector<std::wstring>;
    const std::pair<const wchar_t*, Lines> cases[] = {
        {L"a\\Pb", {L"a", L"b"}},
        {L"{A}", {L"A"}},
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
    const auto letters = [](std::wstring_view text) { return static_cast<double>(text.size()); };
    using Lines = std::vector<std::wstring>;
    EXPECT_EQ(korra::wrapped(L"one two three", 7, letters), (Lines{L"one two", L"three"}));
    EXPECT_EQ(korra::wrapped(L"one two three", 0, letters), (Lines{L"one two three"}));
    EXPECT_EQ(korra::wrapped(L"incomprehensible it is", 5, letters),
              (Lines{L"incomprehensible", L"it is"}));
    EXPECT_EQ(korra::wrapped(L"", 5, letters), (Lines{L""}));
    EXPECT_EQ(korra::wrapped(L"ab  ", 3, letters), (Lines{L"ab  "}));
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
    text.setContents(L"AB");
    EXPECT_NEAR(text.actualWidth(), korra::textWidth(L"AB", {}, 3.0, 1.0), 1e-12);
    EXPECT_NEAR(text.actualHeight(), 3.0, 1e-12);
    text.setContents(L" AB\\PA");
    EXPECT_NEAR(text.actualWidth(), korra::textWidth(L" AB", {}, 3.0, 1.0), 1e-12);
    EXPECT_NEAR(text.actualHeight(), 3.0 + 5.0, 1e-12);
    text.setContents(L"");
    EXPECT_EQ(text.actualWidth(), 0.0);
    EXPECT_EQ(text.actualHeight(), 0.0);
    KdDbExtents box;
    EXPECT_EQ(text.getGeomExtents(box), Kdapi::eInvalidExtents);
}

} // namespace
