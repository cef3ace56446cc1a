// Files that are no whole drawing: each ends in one message with its line, and in an empty
// database.

#include "dxf_samples.h"

#include "support/changes.h"

namespace tests::dxf {
namespace {

class BrokenDrawing : public HostTest {};

/// The message behind the file's name; empty when the text was read.
std::string messageOf(KdDbDatabase& database, const std::string& text)
{
    const auto [done, message, notes] = korra::readDrawingText(database, text, "broken.dxf");
    EXPECT_EQ(done, message.empty());
    if (done)
        return "";
    EXPECT_TRUE(database.contents().slots.empty());
    EXPECT_TRUE(database.contents().header.variables().empty());
    EXPECT_THAT(message, StartsWith("broken.dxf:"));
    return message.substr(message.find(':') + 1);
}

std::string refusal(const std::string& text)
{
    KdDbDatabase database(false);
    return messageOf(database, text);
}

struct Refusal {
    std::string text;
    const char* message;
};

TEST_F(BrokenDrawing, ValuesThatAreNone)
{
    const Refusal tags[] = {
        {"39 1e999", "a number was expected, not \"1e999\""},
        {"62 258", "a colour was expected, not \"258\""},
        {"420 red", "a colour was expected, not \"red\""},
        {"60 70000", "a whole number in range was expected, not \"70000\""},
        {"10 1.0", "a point with a y coordinate was expected, not \"1.0\""},
        {"5 XYZ", "a handle was expected, not \"XYZ\""},
        {"1070 40000", "a value of extended data was expected, not \"40000\""},
        {"1004 ABC", "a value of extended data was expected, not \"ABC\""},
        {"102 {GROUP", "the end of the group was expected, not \"{GROUP\""},
    };
    for (const auto& [tag, message] : tags)
        EXPECT_EQ(refusal(withEntities("0 LINE; 8 0; " + tag + "; 21 1.0")),
                  "10: " + std::string(message));
    EXPECT_EQ(refusal(withEntities("0 LWPOLYLINE; 70 0; 10 1.0; 30 2.0")),
              "10: a point with a y coordinate was expected, not \"1.0\"");
    readWhole(withEntities("0 LINE; 62 257; 60 32767; 1070 -32768; 1071 70000; 1004; 420 -1"));
}

TEST_F(BrokenDrawing, FilesThatAreNoDrawing)
{
    const std::string megabyte(std::size_t{1} << 20, 'x');
    const Refusal cases[] = {
        {"", "1: the file is empty"},
        {"hello\nworld\n", "1: \"hello\" is no group code"},
        {"999\n" + megabyte + "\n", "2: the line is longer than a megabyte"},
        {std::string("AC10\0\0", 6), "1: the file is binary: a zero byte"},
        {"  0\nEOF\n", "2: SECTION was expected, not \"EOF\""},
        {" -8\n0\n", "1: \" -8\" is no group code"},
        {file("0 SECTION; 2 A; 0 ENDSEC"), "6: the file ends without EOF"},
        {"  0\nSECTION\n  2\n", "3: the file ends behind a group code"},
    };
    for (const auto& [text, message] : cases)
        EXPECT_EQ(refusal(text), message);
}

TEST_F(BrokenDrawing, FramesThatAreNotClosedAndWhatComesTwice)
{
    const Refusal cases[] = {
        {"0 SECTION; 0 ENDSEC", "2: a section has no name"},
        {"0 SECTION; 2 HEADER; 0 A; 9 $B; 0 ENDSEC", "6: ENDSEC was expected, not \"A\""},
        {"0 SECTION; 2 A; 0 SECTION; 2 B", "6: ENDSEC was expected, not \"SECTION\""},
        {"0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 0 ENDSEC",
         "10: ENDTAB was expected, not \"ENDSEC\""},
        {"0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 0 STYLE",
         "10: the table LAYER cannot hold \"STYLE\""},
        {"0 SECTION; 2 TABLES; 0 TABLE; 2 LAYER; 0 ENDTAB; 0 TABLE; 2 LAYER; 0 ENDTAB",
         "12: the table LAYER comes twice"},
        {"0 SECTION; 2 BLOCKS; 0 BLOCK; 2 A; 0 BLOCK; 2 B",
         "10: ENDBLK was expected, not \"BLOCK\""},
        {"0 SECTION; 2 BLOCKS; 0 BLOCK; 2 A; 0 ENDBLK; 0 BLOCK; 2 a; 0 ENDBLK",
         "12: the block \"a\" is defined twice"},
        {"0 SECTION; 2 ENTITIES; 0 LINE", "8: ENDSEC was expected, not \"EOF\""},
        {"0 SECTION; 2 ENTITIES; 0 POLYLINE; 70 0; 0 VERTEX; 0 LINE",
         "12: SEQEND was expected, not \"LINE\""},
        {"0 SECTION; 2 ENTITIES; 0 ENDSEC; 0 SECTION; 2 ENTITIES; 0 ENDSEC",
         "8: the section ENTITIES comes twice"},
    };
    for (const auto& [notes, message] : cases)
        EXPECT_EQ(refusal(file(notes + "; 0 EOF")), message);
}

std::string block(const std::string& name, const std::string& contents = "")
{
    return "0 BLOCK; 2 " + name + "\n" + contents + "0 ENDBLK\n";
}

std::string withBlocks(const std::string& blocks)
{
    return file("0 SECTION; 2 BLOCKS\n" + blocks + "0 ENDSEC\n0 EOF\n");
}

/// Blocks of which each shows the one behind it, `times` times; B0 is the last.
std::string chainOfBlocks(int length, int times)
{
    std::string blocks;
    for (int index = length - 1; index > 0; --index) {
        std::string references;
        for (int time = 0; time < times; ++time)
            references += "0 INSERT; 2 B" + std::to_string(index - 1) + "\n";
        blocks += block("B" + std::to_string(index), references);
    }
    return withBlocks(blocks + block("B0", "0 LINE\n"));
}

TEST_F(BrokenDrawing, BlocksThatContainThemselvesNestTooDeepOrShowTooMuch)
{
    const Refusal cases[] = {
        {withBlocks(block("A", "0 INSERT; 2 b\n") + block("B", "0 LINE\n0 INSERT; 2 A\n")),
         "6: the block \"A\" contains itself"},
        {withBlocks(block("*D1", "0 DIMENSION; 2 *D1; 70 0\n")),
         "6: the block \"*D1\" contains itself"},
        {withEntities("0 LINE\n0 INSERT; 2 *Model_Space"),
         "8: the block \"*Model_Space\" contains itself"},
        {withBlocks(block("A", "0 LINE\n") +
                    block("B", "0 INSERT; 2 A; 70 20000; 71 5000; 44 1; 45 1\n")),
         "14: the block \"B\" shows more than 100000000 entities"},
    };
    for (const auto& [text, message] : cases)
        EXPECT_EQ(refusal(text), message);

    readWhole(chainOfBlocks(500, 1));
    readWhole(chainOfBlocks(24, 2)); // many references to one block are no depth
    EXPECT_THAT(refusal(chainOfBlocks(60, 2)),
                EndsWith(" the block \"B25\" shows more than 100000000 entities"));
    EXPECT_THAT(refusal(chainOfBlocks(501, 1)),
                EndsWith(" the block \"B500\" nests more than 500 blocks deep"));
    EXPECT_NE(refusal(chainOfBlocks(20000, 1)), ""); // and the walk has no recursion
}

/// What is written of a drawing can be read and stays what it is.
bool isWhole(const KdDbDatabase& database)
{
    const std::string written = korra::drawingText(database);
    return korra::drawingText(*readWhole(written)) == written;
}

/// The text is refused in one line, or is whole, and stays so under changes.
bool isRefusedOrWhole(const std::string& text)
{
    KdDbDatabase database(false);
    const std::string message = messageOf(database, text);
    if (!message.empty())
        return message.find('\n') == message.npos;
    if (!isWhole(database))
        return false;
    scaleEntities(database, 1e300);
    const std::string refusal = refusedSave(database);
    return refusal.empty() ? isWhole(database) : refusal.starts_with("cannot be saved: ");
}

TEST_F(BrokenDrawing, WithoutALineOrWithAnotherInItsPlaceItIsRefusedOrWhole)
{
    for (const std::string& text : {file(kModernSample), file(kEarlySample)}) {
        for (std::size_t begin = 0, next = 0; begin < text.size(); begin = next) {
            next = text.find('\n', begin) + 1;
            for (const char* line : {"", "  5\n", "{\n"})
                EXPECT_TRUE(isRefusedOrWhole(text.substr(0, begin) + line + text.substr(next)))
                    << line << " at " << begin;
            EXPECT_TRUE(isRefusedOrWhole(text.substr(0, next))) << "ends at " << begin;
        }
    }
}

} // namespace
} // namespace tests::dxf
