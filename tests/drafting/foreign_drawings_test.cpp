// Drawings of others, with hundreds of named records in other scripts: listed, changed and saved.

#include "drafting_test.h"

#include "support/support_folder.h"

#include <sstream>

using namespace tests;

namespace {

constexpr int kRecords = 300;

/// A script in a code page: the same word in the file's bytes and in UTF-8.
struct Script {
    const char* codePage;
    const char* version;
    const char* bytes;
    const char* word;
};

const Script kScripts[] = {
    {"ANSI_1251", "AC1015", "\xD1\xF2\xE5\xED\xE0", "Стена"},
    {"ANSI_936", "AC1015", "\xC7\xBD\x81\x5C", "墙乗"}, // the last byte is a backslash
    {"ANSI_1252", "AC1032", "Größe 墙", "Größe 墙"},    // from 2007 on the texts are UTF-8
};

std::string record(const char* type, int handle, const std::string& name, const char* rest)
{
    std::ostringstream text;
    text << "  0\n" << type << (type == std::string("DIMSTYLE") ? "\n105\n" : "\n  5\n");
    text << std::uppercase << std::hex << handle;
    text << "\n  2\n" << name << "\n 70\n     0\n" << rest;
    return text.str();
}

std::string layer(const std::string& name, int number, const char* rest)
{
    return record("LAYER", 0x10000 + number, name + std::to_string(number), rest);
}

constexpr char kPlainLayer[] = " 62\n     3\n  6\nCONTINUOUS\n370\n    -3\n";

/// A drawing without an active view; its tables have kRecords records each, but for layer "0".
std::string drawingIn(const Script& script)
{
    std::ostringstream text;
    text << "  0\nSECTION\n  2\nHEADER\n  9\n$ACADVER\n  1\n"
         << script.version << "\n  9\n$DWGCODEPAGE\n  3\n"
         << script.codePage << "\n  9\n$HANDSEED\n  5\nFFFFF\n  0\nENDSEC\n"
         << "  0\nSECTION\n  2\nTABLES\n";
    int base = 0;
    for (const auto& [type, rest] :
         {std::pair("LTYPE", "  3\n\n 72\n    65\n 73\n     0\n 40\n0.0\n"),
          std::pair("LAYER", kPlainLayer),
          std::pair("STYLE", " 40\n0.0\n 41\n1.0\n 50\n0.0\n 71\n     0\n  3\ntxt\n  4\n\n"),
          std::pair("DIMSTYLE", "140\n2.50\n")}) {
        text << "  0\nTABLE\n  2\n" << type << "\n  5\n" << ++base << "\n 70\n   300\n";
        const int firstHandle = 0x10000 * (type == std::string("LAYER") ? 1 : base + 2);
        for (int number = 0; number < kRecords; ++number)
            text << record(type, firstHandle + number, script.bytes + std::to_string(number), rest);
        text << "  0\nENDTAB\n";
    }
    text << "  0\nENDSEC\n  0\nSECTION\n  2\nENTITIES\n"
         << "  0\nLINE\n  5\nA0000\n  8\n"
         << script.bytes << "7\n 10\n1.0\n 20\n2.0\n 30\n0.0\n 11\n90.0\n 21\n4.0\n 31\n0.0\n"
         << "  0\nENDSEC\n  0\nEOF\n";
    return text.str();
}

std::string replaced(std::string text, const std::string& what, const std::string& by)
{
    const std::size_t place = text.find(what);
    EXPECT_NE(place, std::string::npos) << what;
    return place == std::string::npos ? text : text.replace(place, what.size(), by);
}

/// Line by line: a difference found in a text of this length by other means takes minutes to show.
void expectSameLines(const std::string& text, const std::string& expected, const char* where)
{
    std::istringstream lines(text), expectedLines(expected);
    std::string line, expectedLine;
    for (int number = 1; std::getline(expectedLines, expectedLine); ++number) {
        ASSERT_TRUE(std::getline(lines, line)) << where << " ends before line " << number;
        ASSERT_EQ(line, expectedLine) << where << ", line " << number;
    }
    EXPECT_FALSE(std::getline(lines, line)) << where << " goes on with " << line;
}

class ForeignDrawingsTest : public DraftingTest {
protected:
    void open(const std::string& text)
    {
        folder_.write("foreign.dxf", text);
        KdApDocument* document = nullptr;
        const auto outcome = korra::openDocument(folder_.pathOf("foreign.dxf"), document);
        ASSERT_TRUE(outcome.done) << outcome.message;
        printed();
    }

    SupportFolder folder_;
};

TEST_F(ForeignDrawingsTest, TablesAreListedAndSavedWithTheChangesOfARecordAlone)
{
    for (const Script& script : kScripts) {
        const std::string text = drawingIn(script);
        open(text);
        std::string names;
        for (int number = 0; number < kRecords; ++number)
            names += script.word + std::to_string(number) + '\n';
        for (const char* list : {"LAYLIST", "LTLIST", "TSLIST", "DSLIST"})
            EXPECT_THAT(run(list), ::testing::HasSubstr(names)) << list << ' ' << script.codePage;
        expectSameLines(korra::drawingText(*drawing()), text, script.codePage);

        const std::string name = script.word + std::string("217");
        EXPECT_EQ(last("LAYSET", {name, "5", script.word + std::string("12"), "25"}),
                  "layer " + name + " 1");
        const std::string rest = std::string(" 62\n5\n  6\n") + script.bytes + "12\n370\n25\n";
        expectSameLines(korra::drawingText(*drawing()),
                        replaced(text, layer(script.bytes, 217, kPlainLayer),
                                 layer(script.bytes, 217, rest.c_str())),
                        script.codePage);
    }
}

} // namespace
