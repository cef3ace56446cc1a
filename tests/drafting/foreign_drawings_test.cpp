// Drawings of others, with hundreds of named records in other scripts: listed, changed and saved.

#include "drafting_test.h"

#include "support/dxf_notes.h"

#include <sstream>

namespace {

constexpr int kRecords = 300;

/// A script in a code page: the same word in the file's bytes and in UTF-8.
struct Script {
    const char* codePage;
    const char* bytes;
    std::string word;
};

const Script kScripts[] = {
    {"ANSI_1251", "\xD1\xF2\xE5\xED\xE0", "Стена"},
    {"ANSI_936", "\xC7\xBD\x81\x5C", "墙乗"}, // the last byte is a backslash
};

constexpr char kLayer[] = "70      0; 62      3; 6 CONTINUOUS; 370     -3";

/// A drawing without an active view; its tables have kRecords records each, but for layer "0".
std::string drawingIn(const Script& script)
{
    int handle = 10000;
    std::ostringstream notes;
    notes << "0 SECTION; 2 HEADER; 9 $ACADVER; 1 AC1015; 9 $DWGCODEPAGE; 3 " << script.codePage
          << "; 9 $HANDSEED; 5 FFFFF; 0 ENDSEC; 0 SECTION; 2 TABLES";
    for (const auto& [table, handleCode, rest] :
         {std::tuple("LTYPE", 5, "70      0; 3; 72     65; 73      0; 40 0.0"),
          {"LAYER", 5, kLayer},
          {"STYLE", 5, "70      0; 40 0.0; 41 1.0; 50 0.0; 71      0; 3 txt; 4"},
          {"DIMSTYLE", 105, "70      0; 140 2.50"}}) {
        notes << "; 0 TABLE; 2 " << table << "; 5 " << ++handle << "; 70    300";
        for (int number = 0; number < kRecords; ++number)
            notes << "; 0 " << table << "; " << handleCode << ' ' << ++handle << "; 2 "
                  << script.bytes << number << "; " << rest;
        notes << "; 0 ENDTAB";
    }
    notes << "; 0 ENDSEC; 0 SECTION; 2 ENTITIES; 0 ENDSEC; 0 EOF";
    return dxf::file(notes.str());
}

/// Says no more: a difference in a text of this length takes minutes to be shown.
bool isWrittenAs(const std::string& text)
{
    return korra::drawingText(*drawing()) == text;
}

TEST_F(DraftingTest, TablesOfOthersAreListedAndSavedWithTheChangesOfARecordAlone)
{
    const SupportFolder folder;
    for (const Script& script : kScripts) {
        SCOPED_TRACE(script.codePage);
        const std::string text = drawingIn(script);
        folder.write("foreign.dxf", text);
        KdApDocument* document = nullptr;
        ASSERT_TRUE(korra::openDocument(folder.pathOf("foreign.dxf"), document).done);
        std::string names;
        for (int number = 0; number < kRecords; ++number)
            names += script.word + std::to_string(number) + '\n';
        for (const char* list : {"LAYLIST", "LTLIST", "TSLIST", "DSLIST"})
            EXPECT_THAT(run(list), HasSubstr(names)) << list;
        EXPECT_TRUE(isWrittenAs(text));

        const std::string name = script.word + "217";
        EXPECT_EQ(last("LAYSET", {name, "5", script.word + "12", "25"}), "layer " + name + " 1");
        const std::string word = script.bytes, record = "2 " + word + "217; ";
        const std::string changed = record + "70      0; 62 5; 6 " + word + "12; 370 25";
        EXPECT_TRUE(
            isWrittenAs(dxf::replaced(text, dxf::file(record + kLayer), dxf::file(changed))));
    }
}

} // namespace
