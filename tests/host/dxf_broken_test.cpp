// Files that are no whole drawing: each ends in one message with its line, and in an empty
// database.

#include "dxf_samples.h"

#include "support/host_test.h"

#include <functional>

namespace tests::dxf {
namespace {

class BrokenDrawing : public HostTest {};

struct Broken {
    const char* name;
    std::string text;
    std::string message; ///< behind "broken.dxf:"
};

void expectRefused(const Broken& broken)
{
    KdDbDatabase database(false);
    const korra::FileOutcome outcome = korra::readDrawingText(database, broken.text, "broken.dxf");
    EXPECT_FALSE(outcome.done) << broken.name;
    EXPECT_EQ(outcome.message, "broken.dxf:" + broken.message) << broken.name;
    EXPECT_TRUE(database.contents().slots.empty()) << broken.name;
    EXPECT_TRUE(database.contents().header.variables().empty()) << broken.name;
}

/// A line in which one tag is something else; the tag's value is the fifth line from its beginning.
Broken lineWith(const char* tag, const char* message)
{
    return {tag, withEntities(std::string("0 LINE; 8 0; ") + tag + "; 21 1.0"), message};
}

TEST_F(BrokenDrawing, NumbersThatAreNone)
{
    for (const Broken& broken : {
             lineWith("39 abc", "10: a number was expected, not \"abc\""),
             lineWith("39 1.0.0", "10: a number was expected, not \"1.0.0\""),
             lineWith("39", "10: a number was expected, not \"\""),
             lineWith("39 nan", "10: a number was expected, not \"nan\""),
             lineWith("39 -inf", "10: a number was expected, not \"-inf\""),
             lineWith("39 1e999", "10: a number was expected, not \"1e999\""),
             lineWith("62 300", "10: a colour was expected, not \"300\""),
             lineWith("62 -1", "10: a colour was expected, not \"-1\""),
             lineWith("60 70000", "10: a whole number in range was expected, not \"70000\""),
             lineWith("60 1.5", "10: a whole number in range was expected, not \"1.5\""),
             lineWith("10 1.0", "10: a point with a y coordinate was expected, not \"1.0\""),
             lineWith("5 XYZ", "10: a handle was expected, not \"XYZ\""),
             lineWith("5 FFFFFFFFFFFFFFFF", "10: a handle was expected, not \"FFFFFFFFFFFFFFFF\""),
             lineWith("1070 40000", "10: a value of extended data was expected, not \"40000\""),
             lineWith("1004 ABC", "10: a value of extended data was expected, not \"ABC\""),
             lineWith("102 {GROUP", "10: the end of the group was expected, not \"{GROUP\""),
         })
        expectRefused(broken);
}

TEST_F(BrokenDrawing, FilesThatAreNoDrawing)
{
    const std::string line = withEntities("0 LINE; 8 0");
    const std::string longLine(std::size_t{3} << 20, 'x');
    for (const Broken& broken : std::vector<Broken>{
             {"empty", "", "1: the file is empty"},
             {"garbage", "hello\nworld\n", "1: \"hello\" is no group code"},
             {"no line ends", longLine, "1: the line is longer than a megabyte"},
             {"long value", "999\n" + longLine + "\n" + line,
              "2: the line is longer than a megabyte"},
             {"binary", std::string("AC10\0\0", 6), "1: the file is binary: a zero byte"},
             {"binary later", replaced(line, "LINE", std::string("LI\0NE", 5)),
              "6: the file is binary: a zero byte"},
             {"no section", "  9\n$ACADVER\n", "1: a drawing begins with a section"},
             {"only an end", "  0\nEOF\n", "2: SECTION was expected, not \"EOF\""},
             {"negative code", replaced(line, "  8\n", " -8\n"), "7: \" -8\" is no group code"},
             {"code and text", replaced(line, "  8\n", "8x\n"), "7: \"8x\" is no group code"},
             {"old line ends", replaced(line, "LINE\n", "LINE\r"),
              "9: \"ENDSEC\" is no group code"},
         })
        expectRefused(broken);
}

TEST_F(BrokenDrawing, FramesThatAreNotClosed)
{
    const std::string modern = file(kModernSample);
    for (const Broken& broken : std::vector<Broken>{
             {"no EOF", "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n",
              "6: the file ends without EOF"},
             {"half a tag", "  0\nSECTION\n  2\nENTITIES\n  0\n",
              "5: the file ends behind a group code"},
             {"no ENDSEC", file("0 SECTION; 2 ENTITIES\n0 LINE\n0 EOF"),
              "8: ENDSEC was expected, not \"EOF\""},
             {"no ENDSEC before a section", file("0 SECTION; 2 A\n0 SECTION; 2 B\n0 ENDSEC\n0 EOF"),
              "6: ENDSEC was expected, not \"SECTION\""},
             {"no ENDTAB", file("0 SECTION; 2 TABLES\n0 TABLE; 2 LAYER\n0 ENDSEC\n0 EOF"),
              "10: ENDTAB was expected, not \"ENDSEC\""},
             {"no ENDBLK",
              file("0 SECTION; 2 BLOCKS\n0 BLOCK; 2 A\n0 BLOCK; 2 B"
                   "\n0 ENDBLK\n0 ENDSEC\n0 EOF"),
              "10: ENDBLK was expected, not \"BLOCK\""},
             {"no SEQEND", withEntities("0 POLYLINE; 70 0\n0 VERTEX\n0 LINE"),
              "12: SEQEND was expected, not \"LINE\""},
             {"no SEQEND of a mesh", withEntities("0 POLYLINE; 70 16\n0 LINE"),
              "10: SEQEND was expected, not \"LINE\""},
             {"no SEQEND of attributes", withEntities("0 INSERT; 66 1; 2 A\n0 LINE"),
              "12: SEQEND was expected, not \"LINE\""},
             {"wrong record",
              file("0 SECTION; 2 TABLES\n0 TABLE; 2 LAYER\n0 STYLE\n0 ENDTAB"
                   "\n0 ENDSEC\n0 EOF"),
              "10: the table LAYER cannot hold \"STYLE\""},
             {"section twice",
              file("0 SECTION; 2 ENTITIES\n0 ENDSEC\n0 SECTION; 2 ENTITIES\n"
                   "0 ENDSEC\n0 EOF"),
              "8: the section ENTITIES comes twice"},
             {"no section name", file("0 SECTION\n0 ENDSEC\n0 EOF"), "2: a section has no name"},
         })
        expectRefused(broken);
}

TEST_F(BrokenDrawing, EveryTruncationOfAWholeDrawing)
{
    const std::string text = file(kModernSample);
    for (std::size_t size = 0; size + 4 < text.size(); size += 7) { // up to "EOF\n"
        KdDbDatabase database(false);
        const auto outcome = korra::readDrawingText(database, text.substr(0, size), "cut.dxf");
        ASSERT_FALSE(outcome.done) << size;
        ASSERT_EQ(outcome.message.substr(0, 8), "cut.dxf:") << size;
        ASSERT_TRUE(database.contents().slots.empty()) << size;
    }
}

std::string block(const std::string& name, const std::string& contents)
{
    return "0 BLOCK; 2 " + name + "\n" + contents + "0 ENDBLK\n";
}

std::string withBlocks(const std::string& blocks)
{
    return file("0 SECTION; 2 BLOCKS\n" + blocks + "0 ENDSEC\n0 EOF\n");
}

TEST_F(BrokenDrawing, HandlesAndBlocksThatComeTwice)
{
    expectRefused(
        {"handle", withEntities("0 LINE; 5 1A\n0 LINE; 5 1a"), "12: the handle 1A is used twice"});
    expectRefused({"handle of an end", withBlocks("0 BLOCK; 5 1; 2 A\n0 ENDBLK; 5 1\n"),
                   "14: the handle 1 is used twice"});
    expectRefused({"block", withBlocks(block("A", "") + block("a", "")),
                   "12: the block \"a\" is defined twice"});
}

TEST_F(BrokenDrawing, BlocksThatContainThemselves)
{
    expectRefused({"directly", withBlocks(block("OK", "") + block("A", "0 INSERT; 2 a\n")),
                   "12: the block \"A\" contains itself"});
    expectRefused({"in a circle",
                   withBlocks(block("A", "0 INSERT; 2 B\n") + block("B", "0 INSERT; 2 C\n") +
                              block("C", "0 LINE\n0 INSERT; 2 B\n")),
                   "16: the block \"B\" contains itself"});
    expectRefused({"by a dimension", withBlocks(block("*D1", "0 DIMENSION; 2 *D1; 70 0\n")),
                   "6: the block \"*D1\" contains itself"});
    expectRefused({"model space", withEntities("0 LINE\n0 INSERT; 2 *Model_Space"),
                   "8: the block \"*Model_Space\" contains itself"});
}

/// Blocks of which each shows the one before it, once or twice.
std::string chainOfBlocks(int length, bool twice = false)
{
    std::string name = "B0";
    std::string blocks = block(name, "0 LINE\n");
    for (int index = 1; index < length; ++index) {
        std::string inner = "0 INSERT; 2 ";
        inner.append(name).append("\n");
        if (twice)
            inner += std::string(inner);
        name.assign("B").append(std::to_string(index));
        blocks += block(name, inner);
    }
    return withBlocks(blocks);
}

TEST_F(BrokenDrawing, BlocksThatNestTooDeep)
{
    readWhole(chainOfBlocks(500));
    KdDbDatabase database(false);
    const auto outcome = korra::readDrawingText(database, chainOfBlocks(100000), "deep.dxf");
    EXPECT_FALSE(outcome.done);
    EXPECT_THAT(outcome.message, ::testing::HasSubstr(" nests more than 500 blocks deep"));
    EXPECT_TRUE(database.contents().slots.empty());
}

TEST_F(BrokenDrawing, ManyReferencesToOneBlockAreNoDepth)
{
    readWhole(chainOfBlocks(60, true));
}

TEST_F(BrokenDrawing, HugeCountsAreNotBelieved)
{
    const auto database =
        readWhole(withEntities("0 LWPOLYLINE; 5 A; 90 2147483647; 70 1; 10 1; 20 2"));
    EXPECT_EQ(find<KdDbPolyline>(*database, 0xA)->numVerts(), 1u);
}

TEST_F(BrokenDrawing, MessagesAreOneLineWhateverTheFileSays)
{
    KdDbDatabase database(false);
    const auto outcome = korra::readDrawingText(
        database, withEntities("0 LINE; 39 \x1B[31m\xFF" + std::string(500, 'z')), "x.dxf");
    EXPECT_FALSE(outcome.done);
    EXPECT_LT(outcome.message.size(), 120u);
    for (const char c : outcome.message)
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

} // namespace
} // namespace tests::dxf
