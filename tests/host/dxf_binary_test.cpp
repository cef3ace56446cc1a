// Drawings in the binary form are read as if they had been written in the ASCII form.

#include "dxf_samples.h"

#include <bit>
#include <cmath>

namespace tests::dxf {
namespace {

const std::string kSentinel("Drawing Binary DXF\r\n\x1A\0", 22);

/// Drawings up to version 12 have codes of one byte, with a way to write longer ones.
enum class Codes { oneByte, twoBytes };

std::string bits(std::uint64_t value, int bytes)
{
    std::string text;
    for (int byte = 0; byte < bytes; ++byte, value >>= 8)
        text += static_cast<char>(value & 0xFF);
    return text;
}

class BinaryDrawing : public HostTest {
protected:
    std::string tag(unsigned code, const std::string& value) const
    {
        if (codes_ == Codes::twoBytes)
            return bits(code, 2) + value;
        return (code < 255 ? bits(code, 1) : '\xFF' + bits(code, 2)) + value;
    }

    std::string text(unsigned code, const std::string& value) const
    {
        return tag(code, value + '\0');
    }

    std::string real(unsigned code, double value) const
    {
        return tag(code, bits(std::bit_cast<std::uint64_t>(value), 8));
    }

    std::string whole(unsigned code, std::int64_t value, int bytes) const
    {
        return tag(code, bits(static_cast<std::uint64_t>(value), bytes));
    }

    std::string bytes(unsigned code, const std::string& value) const
    {
        return tag(code, bits(value.size(), 1) + value);
    }

    /// A drawing with an entity that has these tags.
    std::string withTags(const std::string& tagsOfEntity) const
    {
        return kSentinel + text(999, "made by hand") + text(0, "SECTION") + text(2, "ENTITIES") +
               text(0, "THING") + tagsOfEntity + text(0, "ENDSEC") + text(0, "EOF");
    }

    Codes codes_ = Codes::twoBytes;
};

std::string messageOf(const std::string& drawing)
{
    KdDbDatabase database(false);
    return korra::readDrawingText(database, drawing, "a.dxf").message;
}

TEST_F(BinaryDrawing, IsSavedAsAscii)
{
    for (const Codes codes : {Codes::oneByte, Codes::twoBytes}) {
        codes_ = codes;
        const std::string drawing = withTags(
            text(5, "AB") + text(8, "EOF") + real(10, 0.1) + real(20, -1.5e-300) +
            whole(70, -3, 2) + whole(90, -70000, 4) + text(1, "two\r\nlines") + text(3, "") +
            real(140, 1.0 / 3.0) + whole(160, -5000000000, 8) + whole(179, 32767, 2) +
            real(210, 1.0) + whole(289, 7, 2) + whole(290, 1, 1) +
            bytes(310, std::string("\0\x0A\xFF", 3)) + text(330, "CD") + whole(370, -1, 2) +
            text(390, "EF") + whole(420, 0x102030, 4) + whole(450, -2, 4) + real(460, 2.0) +
            text(481, "GH") + text(1001, "MINE") + bytes(1004, "") + real(1059, -7.25) +
            whole(1070, 5, 2) + whole(1071, -70000, 4));
        const std::string behind = codes == Codes::oneByte ? std::string(50, '\x1A') : "";
        const std::string ascii = file(
            "999 made by hand; 0 SECTION; 2 ENTITIES; 0 THING; 5 AB; 8 EOF; 10 0.1\n"
            "20 -1.5e-300; 70 -3; 90 -70000; 1 two^M^Jlines; 3 ; 140 0.3333333333333333\n"
            "160 -5000000000; 179 32767; 210 1; 289 7; 290 1; 310 000AFF; 330 CD\n"
            "370 -1; 390 EF; 420 1056816; 450 -2; 460 2; 481 GH; 1001 MINE; 1004 ; 1059 -7.25\n"
            "1070 5; 1071 -70000; 0 ENDSEC; 0 EOF\n");
        EXPECT_EQ(korra::drawingText(*readWhole(drawing + behind)), ascii + behind);
        const std::string bare = replaced(drawing, text(999, "made by hand"), "");
        EXPECT_EQ(korra::drawingText(*readWhole(bare)), replaced(ascii, "999\nmade by hand\n", ""));
    }
}

TEST_F(BinaryDrawing, IsRefusedWhereItIsCutOffOrHoldsNoTag)
{
    const std::string good = withTags(real(10, 1.0) + bytes(310, "x"));
    for (std::size_t size = kSentinel.size(); size < good.size(); ++size)
        EXPECT_THAT(messageOf(good.substr(0, size)), StartsWith("a.dxf:")) << size;
    EXPECT_EQ(messageOf(good.substr(0, kSentinel.size() + 10)),
              "a.dxf: the file ends within a text, at byte 24");

    // Behind the comment and three tags.
    const std::pair<std::string, const char*> cases[] = {
        {real(10, std::nan("")), "a.dxf: a number was expected, at byte 76"},
        {whole(85, 1, 2), "a.dxf: 85 is no group code of the binary form, at byte 68"},
        {text(9999, ""), "a.dxf: 9999 is no group code of the binary form, at byte 68"},
        {text(1, std::string(3 << 20, 'x')), "a.dxf: a text is longer than a megabyte, at byte 68"},
    };
    for (const auto& [wrong, message] : cases)
        EXPECT_EQ(messageOf(withTags(wrong)), message);
}

} // namespace
} // namespace tests::dxf
