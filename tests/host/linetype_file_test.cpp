// Linetype files: what is a definition, what is refused, and what loading one changes.

#include "dxf_samples.h"

#include "db/linetype_file.h"
#include "platform/modules.h"
#include "platform/text.h"
#include "support/host_test.h"

#include <filesystem>
#include <fstream>

using ::testing::ElementsAre;

namespace tests {
namespace {

constexpr wchar_t kFile[] = L";; comment\n"
                            L"*DASHED, Dashed __ __ \n"
                            L"\n"
                            L" A , .5 , -.25 ; behind\n"
                            L"*DOT\r\n"
                            L"a,0,-.25\r\n"
                            L"*CUT,no pattern\n"
                            L"*FENCE,with a shape\n"
                            L"A,.25,-.1,[CIRC1,shapes,x=-.1,s=.1],-.1,1\n"
                            L"*WORD\n"
                            L"A,1,-1e\n"
                            L"*COMMA\n"
                            L"A,0,5,0,25\n"
                            L"*ALIGNED\n"
                            L"B,1,-1\n"
                            L"*GAPFIRST\n"
                            L"A,-1,1\n"
                            L"*SHORT\n"
                            L"A,1\n"
                            L"*OPEN\n"
                            L"A,1,-1,\n"
                            L"*LONG\n"
                            L"A,1,-1,1,-1,1,-1,1,-1,1,-1,1,-1,1\n"
                            L"*DASHED,again\n"
                            L"A,9,-9\n"
                            L"*LAST";

TEST(LinetypeFile, FindsTheFirstDefinitionOfANameInAnyCase)
{
    korra::LinetypeDefinition found;
    ASSERT_EQ(korra::findLinetype(kFile, L"dashed", found), Kdapi::eOk);
    EXPECT_EQ(found.name, L"DASHED");
    EXPECT_EQ(found.comments, L"Dashed __ __");
    EXPECT_THAT(found.dashes, ElementsAre(0.5, -0.25));
    ASSERT_EQ(korra::findLinetype(kFile, L"DOT", found), Kdapi::eOk);
    EXPECT_THAT(found.dashes, ElementsAre(0.0, -0.25));
    EXPECT_EQ(korra::findLinetype(kFile, L"DASH", found), Kdapi::eUndefinedLineType);
    EXPECT_EQ(static_cast<int>(Kdapi::eUndefinedLineType), 162);
}

TEST(LinetypeFile, RefusesDamagedAndComplexDefinitions)
{
    for (const wchar_t* name : {L"CUT", L"FENCE", L"WORD", L"COMMA", L"ALIGNED", L"GAPFIRST",
                                L"SHORT", L"OPEN", L"LONG", L"LAST"}) {
        korra::LinetypeDefinition found;
        EXPECT_EQ(korra::findLinetype(kFile, name, found), Kdapi::eBadLineTypeDefinition)
            << platform::toUtf8(name);
        EXPECT_TRUE(found.dashes.empty());
    }
}

class LinetypeLoading : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        folder_ = std::filesystem::temp_directory_path() /
                  ("linetypes" + std::to_string(::testing::UnitTest::GetInstance()->random_seed()) +
                   ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(folder_);
    }

    void TearDown() override
    {
        std::filesystem::remove_all(folder_);
        HostTest::TearDown();
    }

    std::wstring write(const char* name, const std::string& bytes)
    {
        std::ofstream(folder_ / name, std::ios::binary) << bytes;
        return platform::fromUtf8((folder_ / name).native());
    }

    static std::wstring supportFile(const char* name)
    {
        return platform::fromUtf8(platform::programFolder() + "/support/" + name);
    }

    static std::vector<double> pattern(KdDbDatabase& drawing, const wchar_t* name)
    {
        std::vector<double> dashes;
        KdDbLinetypeTableRecord* record = nullptr;
        kddbOpenObject(record, drawing.contents().record(korra::TableKind::linetype, name),
                       KdDb::kForRead);
        for (int i = 0; record && i < record->numDashes(); ++i)
            dashes.push_back(record->dashLengthAt(i));
        if (record)
            record->close();
        return dashes;
    }

    std::filesystem::path folder_;
};

TEST_F(LinetypeLoading, LoadsTheHostsOwnFilesInTheirUnits)
{
    EXPECT_EQ(database().loadLineTypeFile(L"dashed", supportFile("korra.lin").c_str()), Kdapi::eOk);
    EXPECT_THAT(pattern(database(), L"DASHED"), ElementsAre(0.5, -0.25));
    EXPECT_EQ(database().loadLineTypeFile(L"DASHED", supportFile("korraiso.lin").c_str()),
              Kdapi::eOk);
    EXPECT_THAT(pattern(database(), L"DASHED"), ElementsAre(12.7, -6.35));
    auto again = dxf::readWhole(korra::drawingText(database()));
    EXPECT_THAT(pattern(*again, L"DASHED"), ElementsAre(12.7, -6.35));
}

TEST_F(LinetypeLoading, EveryDefinitionOfTheHostsFilesIsSound)
{
    for (const char* name : {"korra.lin", "korraiso.lin"}) {
        std::ifstream file(platform::toUtf8(supportFile(name)));
        int count = 0;
        for (std::string line; std::getline(file, line);) {
            if (!line.starts_with('*'))
                continue;
            const std::wstring linetype = platform::fromUtf8(line.substr(1, line.find(',') - 1));
            EXPECT_EQ(database().loadLineTypeFile(linetype.c_str(), supportFile(name).c_str()),
                      Kdapi::eOk)
                << line;
            ++count;
        }
        EXPECT_GE(count, 24) << name;
    }
}

TEST_F(LinetypeLoading, TellsWhatIsWrongAndChangesNothing)
{
    const std::wstring file = write("a.lin", "*DASHED,x\nA,1,-1\n*BAD\nA,1,x\n");
    ASSERT_EQ(database().loadLineTypeFile(L"DASHED", file.c_str()), Kdapi::eOk);
    write("a.lin", "*DASHED,x\nA,2,oops\n");
    EXPECT_EQ(database().loadLineTypeFile(L"DASHED", file.c_str()), Kdapi::eBadLineTypeDefinition);
    EXPECT_THAT(pattern(database(), L"DASHED"), ElementsAre(1.0, -1.0));
    EXPECT_EQ(database().loadLineTypeFile(L"NONE", file.c_str()), Kdapi::eUndefinedLineType);
    EXPECT_EQ(database().loadLineTypeFile(L"DASHED", L"/nowhere/a.lin"), Kdapi::eFileNotFound);
    EXPECT_EQ(database().loadLineTypeFile(L"DASHED", platform::fromUtf8(folder_.native()).c_str()),
              Kdapi::eFileAccess);
    EXPECT_EQ(database().loadLineTypeFile(nullptr, file.c_str()), Kdapi::eInvalidInput);
}

TEST_F(LinetypeLoading, ARecordThatIsOpenIsNotRedefined)
{
    const std::wstring file = write("a.lin", "*DASHED,x\nA,1,-1\n");
    ASSERT_EQ(database().loadLineTypeFile(L"DASHED", file.c_str()), Kdapi::eOk);
    KdDbLinetypeTableRecord* record = nullptr;
    kddbOpenObject(record, database().contents().record(korra::TableKind::linetype, L"DASHED"),
                   KdDb::kForRead);
    EXPECT_EQ(database().loadLineTypeFile(L"DASHED", file.c_str()), Kdapi::eWasOpenForRead);
    record->close();
}

TEST_F(LinetypeLoading, ReadsNamesOfOtherScriptsInUtf8AndInTheDrawingsCodePage)
{
    const std::wstring utf8 = write("a.lin", "\xEF\xBB\xBF*虚线,x\nA,1,-1\n");
    EXPECT_EQ(database().loadLineTypeFile(L"虚线", utf8.c_str()), Kdapi::eOk);
    auto early = dxf::readWhole(dxf::file("0 SECTION; 2 HEADER; 9 $ACADVER; 1 AC1009; "
                                          "9 $DWGCODEPAGE; 3 ANSI_1251; 0 ENDSEC; 0 EOF\n"));
    const std::wstring cyrillic = write("b.lin", "*\xEE\xF1\xFC,x\nA,2,-1\n");
    EXPECT_EQ(early->loadLineTypeFile(L"ось", cyrillic.c_str()), Kdapi::eOk);
    EXPECT_THAT(pattern(*early, L"ОСЬ"), ElementsAre(2.0, -1.0));
}

TEST_F(LinetypeLoading, ASimplePatternTakesThePlaceOfOneWithShapes)
{
    auto drawing = dxf::readWhole(dxf::file(R"(0 SECTION; 2 TABLES
0 TABLE; 2 LTYPE; 70 1
0 LTYPE; 5 7A; 2 FENCE; 70 0; 3 old; 72 65; 73 2; 40 2.0
49 1.0; 74 4; 75 132; 340 0; 46 0.1; 49 -1.0; 74 0
0 ENDTAB
0 ENDSEC
0 EOF
)"));
    const std::wstring file = write("a.lin", "*FENCE,new\nA,3,-1\n");
    ASSERT_EQ(drawing->loadLineTypeFile(L"FENCE", file.c_str()), Kdapi::eOk);
    const std::string text = korra::drawingText(*drawing);
    EXPECT_THAT(text, ::testing::Not(::testing::HasSubstr(" 75\n")));
    EXPECT_THAT(pattern(*dxf::readWhole(text), L"FENCE"), ElementsAre(3.0, -1.0));
}

} // namespace
} // namespace tests
