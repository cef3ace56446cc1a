// Drawings in the binary form are read as if they had been written in the ASCII form.

#include "dxf_samples.h"

#include "support/host_test.h"

#include <bit>
#include <cmath>

using ::testing::EndsWith;
using ::testing::HasSubstr;

namespace tests::dxf {
namespace {

class BinaryDrawing : public HostTest {};

const std::string kSentinel("Drawing Binary DXF\r\n\x1A\0", 22);

std::string bits(std::uint64_t value, int bytes)
{
    std::string text;
    for (int byte = 0; byte < bytes; ++byte, value >>= 8)
        text += static_cast<char>(value & 0xFF);
    return text;
}

std::string bits(double value)
{
    return bits(std::bit_cast<std::uint64_t>(value), 8);
}

std::string text(const std::string& value)
{
    return value + '\0';
}

/// Drawings up to version 12 have codes of one byte, with a way to write longer ones.
enum class Codes { oneByte, twoBytes };

std::string tag(Codes codes, unsigned code, const std::string& value)
{
    if (codes == Codes::twoBytes)
        return bits(code, 2) + value;
    return (code < 255 ? bits(code, 1) : '\xFF' + bits(code, 2)) + value;
}

/// A drawing with an entity that has these tags.
std::string withTags(Codes codes, const std::vector<std::pair<unsigned, std::string>>& tagsOfEntity)
{
    std::string drawing = kSentinel;
    const auto add = [&](unsigned code, const std::string& value) {
        drawing += tag(codes, code, value);
    };
    add(999, text("made by hand"));
    add(0, text("SECTION"));
    add(2, text("ENTITIES"));
    add(0, text("THING"));
    for (const auto& [code, value] : tagsOfEntity)
        add(code, value);
    add(0, text("ENDSEC"));
    add(0, text("EOF"));
    return drawing;
}

std::string messageOf(const std::string& drawing)
{
    KdDbDatabase database(false);
    return korra::readDrawingText(database, drawing, "a.dxf").message;
}

TEST_F(BinaryDrawing, IsSavedAsAscii)
{
    for (const Codes codes : {Codes::oneByte, Codes::twoBytes}) {
        const std::string drawing =
            withTags(codes, {{5, text("AB")},
                             {8, text("0")},
                             {10, bits(0.1)},
                             {20, bits(-1.5e-300)},
                             {70, bits(-3, 2)},
                             {90, bits(-70000, 4)},
                             {1, text("two\r\nlines")},
                             {3, text("")},
                             {140, bits(1.0 / 3.0)},
                             {160, bits(-5000000000, 8)},
                             {179, bits(32767, 2)},
                             {210, bits(1.0)},
                             {289, bits(7, 2)},
                             {290, bits(1, 1)},
                             {310, bits(3, 1) + std::string("\0\x0A\xFF", 3)},
                             {330, text("CD")},
                             {370, bits(-1, 2)},
                             {390, text("EF")},
                             {420, bits(0x102030, 4)},
                             {450, bits(-2, 4)},
                             {460, bits(2.0)},
                             {1001, text("MINE")},
                             {1004, bits(0, 1)},
                             {1059, bits(-7.25)},
                             {1070, bits(5, 2)},
                             {1071, bits(-70000, 4)}});
        const std::string behind = codes == Codes::oneByte ? std::string(50, '\x1A') : "";
        const std::string ascii =
            file("999 made by hand; 0 SECTION; 2 ENTITIES; 0 THING; 5 AB; 8 0; 10 0.1\n"
                 "20 -1.5e-300; 70 -3; 90 -70000; 1 two^M^Jlines; 3 ; 140 0.3333333333333333\n"
                 "160 -5000000000; 179 32767; 210 1; 289 7; 290 1; 310 000AFF; 330 CD\n"
                 "370 -1; 390 EF; 420 1056816; 450 -2; 460 2; 1001 MINE; 1004 ; 1059 -7.25\n"
                 "1070 5; 1071 -70000; 0 ENDSEC; 0 EOF\n");
        EXPECT_EQ(korra::drawingText(*readWhole(drawing + behind)), ascii + behind);
        const std::string bare = replaced(drawing, tag(codes, 999, text("made by hand")), "");
        EXPECT_EQ(korra::drawingText(*readWhole(bare)), replaced(ascii, "999\nmade by hand\n", ""));
    }
}

TEST_F(BinaryDrawing, IsRefusedWhereItIsCutOffOrHoldsNoTag)
{
    const std::string good = withTags(Codes::twoBytes, {{10, bits(1.0)}, {310, bits(1, 1) + 'x'}});
    for (std::size_t size = kSentinel.size(); size < good.size(); ++size)
        EXPECT_THAT(messageOf(good.substr(0, size)), ::testing::StartsWith("a.dxf:")) << size;
    EXPECT_EQ(messageOf(good.substr(0, kSentinel.size() + 10)),
              "a.dxf: the file ends within a text, at byte 24");

    // Behind the comment and three tags.
    const std::pair<std::pair<unsigned, std::string>, const char*> cases[] = {
        {{10, bits(std::nan(""))}, "a.dxf: a number was expected, at byte 76"},
        {{85, bits(1, 2)}, "a.dxf: 85 is no group code of the binary form, at byte 68"},
        {{9999, text("")}, "a.dxf: 9999 is no group code of the binary form, at byte 68"},
        {{1, text(std::string(3 << 20, 'x'))},
         "a.dxf: a text is longer than a megabyte, at byte 68"},
    };
    for (const auto& [wrong, message] : cases)
        EXPECT_EQ(messageOf(withTags(Codes::twoBytes, {wrong})), message);
}

} // namespace
} // namespace tests::dxf
