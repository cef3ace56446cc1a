// Files that are no whole drawing: each ends in one message with its line, and in an empty
// database.

#include "dxf_samples.h"

#include "support/host_test.h"

#include <random>

namespace tests::dxf {
namespace {

class BrokenDrawing : public HostTest {};

/// The message behind the file's name; empty when the text was read.
std::string messageOf(KdDbDatabase& database, const std::string& text)
{
    const korra::FileOutcome outcome = korra::readDrawingText(database, text, "broken.dxf");
    EXPECT_EQ(outcome.done, outcome.message.empty());
    if (outcome.done)
        return "";
    EXPECT_TRUE(database.contents().slots.empty());
    EXPECT_TRUE(database.contents().header.variables().empty());
    EXPECT_EQ(outcome.message.substr(0, 11), "broken.dxf:");
    return outcome.message.substr(std::min<std::size_t>(outcome.message.size(), 11));
}

std::string refusal(const std::string& text)
{
    KdDbDatabase database(false);
    return messageOf(database, text);
}

/// The refusal of a line whose fifth line from its beginning is the value of this tag.
std::string refusalOf(const std::string& tag)
{
    return refusal(withEntities("0 LINE; 8 0; " + tag + "; 21 1.0"));
}

TEST_F(BrokenDrawing, NumbersThatAreNone)
{
    EXPECT_EQ(refusalOf("39 abc"), "10: a number was expected, not \"abc\"");
    EXPECT_EQ(refusalOf("39"), "10: a number was expected, not \"\"");
    EXPECT_EQ(refusalOf("39 1e999"), "10: a number was expected, not \"1e999\"");
    EXPECT_EQ(refusalOf("62 300"), "10: a colour was expected, not \"300\"");
    EXPECT_EQ(refusalOf("62 -1"), "10: a colour was expected, not \"-1\"");
    EXPECT_EQ(refusalOf("60 70000"), "10: a whole number in range was expected, not \"70000\"");
    EXPECT_EQ(refusalOf("10 1.0"), "10: a point with a y coordinate was expected, not \"1.0\"");
    EXPECT_EQ(refusalOf("5 XYZ"), "10: a handle was expected, not \"XYZ\"");
    EXPECT_EQ(refusalOf("1070 40000"), "10: a value of extended data was expected, not \"40000\"");
    EXPECT_EQ(refusalOf("1004 ABC"), "10: a value of extended data was expected, not \"ABC\"");
    EXPECT_EQ(refusalOf("102 {GROUP"), "10: the end of the group was expected, not \"{GROUP\"");
}

TEST_F(BrokenDrawing, FilesThatAreNoDrawing)
{
    const std::string line = withEntities("0 LINE; 8 0");
    EXPECT_EQ(refusal(""), "1: the file is empty");
    EXPECT_EQ(refusal("hello\nworld\n"), "1: \"hello\" is no group code");
    EXPECT_EQ(refusal("999\n" + std::string(std::size_t{3} << 20, 'x')),
              "2: the line is longer than a megabyte");
    EXPECT_EQ(refusal(std::string("AC10\0\0", 6)), "1: the file is binary: a zero byte");
    EXPECT_EQ(refusal(replaced(line, "LINE", std::string("LI\0NE", 5))),
              "6: the file is binary: a zero byte");
    EXPECT_EQ(refusal("  9\n$ACADVER\n"), "1: a drawing begins with a section");
    EXPECT_EQ(refusal("  0\nEOF\n"), "2: SECTION was expected, not \"EOF\"");
    EXPECT_EQ(refusal(replaced(line, "  8\n", " -8\n")), "7: \" -8\" is no group code");
    EXPECT_EQ(refusal(replaced(line, "LINE\n", "LINE\r")), "9: \"ENDSEC\" is no group code");
}

TEST_F(BrokenDrawing, FramesThatAreNotClosed)
{
    const struct {
        const char* notes;
        const char* message;
    } cases[] = {
        {"0 SECTION; 2 ENTITIES\n0 LINE", "8: ENDSEC was expected, not \"EOF\""},
        {"0 SECTION; 2 A\n0 SECTION; 2 B", "6: ENDSEC was expected, not \"SECTION\""},
        {"0 SECTION; 2 TABLES\n0 TABLE; 2 LAYER\n0 ENDSEC",
         "10: ENDTAB was expected, not \"ENDSEC\""},
        {"0 SECTION; 2 TABLES\n0 TABLE; 2 LAYER\n0 STYLE",
         "10: the table LAYER cannot hold \"STYLE\""},
        {"0 SECTION; 2 BLOCKS\n0 BLOCK; 2 A\n0 BLOCK; 2 B",
         "10: ENDBLK was expected, not \"BLOCK\""},
        {"0 SECTION; 2 ENTITIES\n0 POLYLINE; 70 0\n0 VERTEX\n0 LINE",
         "12: SEQEND was expected, not \"LINE\""},
        {"0 SECTION; 2 ENTITIES\n0 POLYLINE; 70 16\n0 LINE",
         "10: SEQEND was expected, not \"LINE\""},
        {"0 SECTION; 2 ENTITIES\n0 INSERT; 66 1; 2 A\n0 LINE",
         "12: SEQEND was expected, not \"LINE\""},
        {"0 SECTION; 2 ENTITIES\n0 ENDSEC\n0 SECTION; 2 ENTITIES\n0 ENDSEC",
         "8: the section ENTITIES comes twice"},
        {"0 SECTION\n0 ENDSEC", "2: a section has no name"},
    };

    for (const auto& each : cases)
        EXPECT_EQ(refusal(file(std::string(each.notes) + "\n0 EOF")), each.message);
    EXPECT_EQ(refusal(file("0 SECTION; 2 A\n0 ENDSEC")), "6: the file ends without EOF");
    EXPECT_EQ(refusal("  0\nSECTION\n  2\n"), "3: the file ends behind a group code");
}

TEST_F(BrokenDrawing, EveryTruncationOfAWholeDrawing)
{
    const std::string text = file(kModernSample);
    for (std::size_t size = 0; size + 4 < text.size() && !HasFailure(); size += 7) // up to "EOF\n"
        EXPECT_NE(refusal(text.substr(0, size)), "") << size;
}

std::string block(const std::string& name, const std::string& contents = "")
{
    return "0 BLOCK; 2 " + name + "\n" + contents + "0 ENDBLK\n";
}

std::string withBlocks(const std::string& blocks)
{
    return file("0 SECTION; 2 BLOCKS\n" + blocks + "0 ENDSEC\n0 EOF\n");
}

TEST_F(BrokenDrawing, HandlesAndBlocksThatComeTwice)
{
    EXPECT_EQ(refusal(withEntities("0 LINE; 5 1A\n0 LINE; 5 1a")),
              "12: the handle 1A is used twice");
    EXPECT_EQ(refusal(withBlocks("0 BLOCK; 5 1; 2 A\n0 ENDBLK; 5 1\n")),
              "14: the handle 1 is used twice");
    EXPECT_EQ(refusal(withBlocks(block("A") + block("a"))), "12: the block \"a\" is defined twice");
}

TEST_F(BrokenDrawing, BlocksThatContainThemselves)
{
    EXPECT_EQ(refusal(withBlocks(block("OK") + block("A", "0 INSERT; 2 a\n"))),
              "12: the block \"A\" contains itself");
    EXPECT_EQ(refusal(withBlocks(block("A", "0 INSERT; 2 B\n") + block("B", "0 INSERT; 2 C\n") +
                                 block("C", "0 LINE\n0 INSERT; 2 B\n"))),
              "16: the block \"B\" contains itself");
    EXPECT_EQ(refusal(withBlocks(block("*D1", "0 DIMENSION; 2 *D1; 70 0\n"))),
              "6: the block \"*D1\" contains itself");
    EXPECT_EQ(refusal(withEntities("0 LINE\n0 INSERT; 2 *Model_Space")),
              "8: the block \"*Model_Space\" contains itself");
}

/// Blocks of which each shows the one before it, `times` times.
std::string chainOfBlocks(int length, int times)
{
    std::string blocks = block("B0", "0 LINE\n");
    for (int index = 1; index < length; ++index) {
        std::string references;
        for (int time = 0; time < times; ++time)
            references.append("0 INSERT; 2 B").append(std::to_string(index - 1)).append("\n");
        blocks += block("B" + std::to_string(index), references);
    }
    return withBlocks(blocks);
}

TEST_F(BrokenDrawing, BlocksThatNestTooDeepOrShowTooMuch)
{
    readWhole(chainOfBlocks(500, 1));
    readWhole(chainOfBlocks(24, 2)); // many references to one block are no depth
    EXPECT_THAT(refusal(chainOfBlocks(60, 2)),
                ::testing::HasSubstr("the block \"B25\" shows more than 100000000 entities"));
    EXPECT_EQ(refusal(withBlocks(block("A", "0 LINE\n") +
                                 block("B", "0 INSERT; 2 A; 70 20000; 71 5000; 44 1; 45 1\n"))),
              "14: the block \"B\" shows more than 100000000 entities");
    EXPECT_THAT(refusal(chainOfBlocks(100000, 1)),
                ::testing::HasSubstr(" nests more than 500 blocks deep"));
}

TEST_F(BrokenDrawing, HugeCountsAreNotBelieved)
{
    const auto database =
        readWhole(withEntities("0 LWPOLYLINE; 5 A; 90 2147483647; 70 1; 10 1; 20 2"));
    EXPECT_EQ(find<KdDbPolyline>(*database, 0xA)->numVerts(), 1u);
}

TEST_F(BrokenDrawing, MessagesAreOneLineWhateverTheFileSays)
{
    const std::string message = refusalOf("39 \x1B[31m\xFF" + std::string(500, 'z'));
    EXPECT_LT(message.size(), 120u);
    for (const char c : message)
        EXPECT_TRUE(c >= ' ' && c <= '~');
}

TEST_F(BrokenDrawing, FilesThatCannotBeRead)
{
    for (const char* path : {"/no/such/file.dxf", "/tmp"}) {
        KdDbDatabase database(false);
        const auto outcome = korra::readDrawing(database, path);
        EXPECT_FALSE(outcome.done);
        EXPECT_EQ(outcome.message.find(std::string(path) + ": cannot be read: "), 0u);
    }
}

// Mutated drawings: each is refused with a line, or is whole and stays what it is once written.

using Random = std::mt19937_64;

std::size_t pick(Random& random, std::size_t count)
{
    return static_cast<std::size_t>(random() % count);
}

/// One small harm: to a byte, a line, or a stretch.
void harm(std::string& text, Random& random)
{
    constexpr std::string_view kLines[] = {
        "  0",          "SECTION",  "ENDSEC", "1e999",  "-1",  "  5",  "50",
        "*Model_Space", "{",        "102",    "100",    "101", "\\U+", "EOF",
        "99999999999",  "\xFF\xFE", "BLOCK",  "SEQEND", "nan", ""};
    const std::size_t place = pick(random, text.size());
    const std::size_t lineBegin = text.rfind('\n', place) + 1;
    const std::size_t lineEnd = std::min(text.find('\n', place), text.size());
    switch (pick(random, 5)) {
    case 0:
        text[place] = static_cast<char>(random());
        break;
    case 1:
        if (lineBegin <= lineEnd)
            text.replace(lineBegin, lineEnd - lineBegin, kLines[pick(random, std::size(kLines))]);
        break;
    case 2:
        text.erase(place, pick(random, 40));
        break;
    case 3:
        text.insert(place, text.substr(pick(random, text.size()), pick(random, 200)));
        break;
    default: { // swap two neighbouring tags, or a code for a value
        const std::size_t next = text.find('\n', lineEnd + 1);
        if (lineBegin <= lineEnd && next != text.npos)
            text = text.substr(0, lineBegin) + text.substr(lineEnd + 1, next - lineEnd) +
                   text.substr(lineBegin, lineEnd + 1 - lineBegin) + text.substr(next + 1);
    }
    }
}

/// True when the text was read; what is written of it then reads back and is written the same.
bool survives(const std::string& text)
{
    KdDbDatabase database(false);
    const std::string message = messageOf(database, text);
    EXPECT_EQ(message.find('\n'), message.npos);
    if (!message.empty())
        return false;
    const std::string written = korra::drawingText(database);
    EXPECT_EQ(korra::drawingText(*readWhole(written)), written);
    return true;
}

TEST_F(BrokenDrawing, MutationsAreRefusedOrWhole)
{
    constexpr int kRounds = 3000;
    Random random(20240229); // the same harm in every run
    int read = 0;
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        std::string text = file(round % 2 == 0 ? kModernSample : kEarlySample);
        for (std::size_t count = 1 + pick(random, 3); count > 0; --count)
            harm(text, random);
        SCOPED_TRACE(round);
        read += survives(text) ? 1 : 0;
    }
    EXPECT_GT(read, kRounds / 20); // both ways are gone
    EXPECT_LT(read, kRounds * 19 / 20);
}

} // namespace
} // namespace tests::dxf
