// Linetype files: what is a definition, what is refused, and what loading one changes.

#include "dxf_samples.h"

#include "platform/modules.h"
#include "platform/text.h"
#include "tables/linetype_file.h"

namespace {

TEST(LinetypeFile, FindsTheFirstDefinitionOfANameInAnyCase)
{
    const wchar_t* file = L";; comment\n*DASHED, Dashed __ __ \n\n A , .5 , -.25 ; behind\n"
                          L"*DOT\r\na,0,-.25\r\n*DASHED,again\nA,9,-9\n";
    korra::LinetypeDefinition found;
    ASSERT_EQ(korra::findLinetype(file, L"dashed", found), Kdapi::eOk);
    EXPECT_EQ(found.name, L"DASHED");
    EXPECT_EQ(found.comments, L"Dashed __ __");
    EXPECT_THAT(found.dashes, ElementsAre(0.5, -0.25));
    ASSERT_EQ(korra::findLinetype(file, L"DOT", found), Kdapi::eOk);
    EXPECT_THAT(found.dashes, ElementsAre(0.0, -0.25));
    EXPECT_EQ(korra::findLinetype(file, L"DASH", found), Kdapi::eUndefinedLineType);
}

TEST(LinetypeFile, RefusesDamagedAndComplexDefinitions)
{
    for (const std::wstring pattern :
         {L"", L"*NEXT\nA,1,-1", L"A,.25,-.1,[CIRC1,shapes,x=-.1],-.1,1", L"A,1,-1e", L"A,0,5,0,25",
          L"B,1,-1", L"A,-1,1", L"A,1", L"A,1,-1,", L"A,1,-1,1,-1,1,-1,1,-1,1,-1,1,-1,1"}) {
        korra::LinetypeDefinition found;
        EXPECT_EQ(korra::findLinetype(L"*BAD,x\n" + pattern, L"BAD", found),
                  Kdapi::eBadLineTypeDefinition)
            << platform::toUtf8(pattern);
    }
}

class LinetypeLoading : public HostTest {
protected:
    std::wstring write(const char* name, const std::string& bytes) const
    {
        folder_.write(name, bytes);
        return platform::fromUtf8(folder_.pathOf(name));
    }

    Kdapi::ErrorStatus load(const wchar_t* name, const std::wstring& file) const
    {
        return database().loadLineTypeFile(name, file.c_str());
    }

    static std::vector<double> pattern(KdDbDatabase& drawing, const wchar_t* name)
    {
        const Open<KdDbLinetypeTableRecord> record(
            drawing.contents().record(korra::TableKind::linetype, name), KdDb::kForRead);
        std::vector<double> dashes;
        for (int i = 0; i < record->numDashes(); ++i)
            dashes.push_back(record->dashLengthAt(i));
        return dashes;
    }

    SupportFolder folder_;
};

TEST_F(LinetypeLoading, TheHostsFilesAreInTheirUnits)
{
    for (const auto& [name, unit] : {std::pair("korra.lin", 1.0), {"korraiso.lin", 25.4}}) {
        const std::string path = platform::programFolder() + "/support/" + name;
        EXPECT_EQ(load(L"DASHED", platform::fromUtf8(path)), Kdapi::eOk);
        EXPECT_THAT(pattern(database(), L"dashed"), ElementsAre(0.5 * unit, -0.25 * unit));
    }
}

TEST_F(LinetypeLoading, TellsWhatIsWrongAndLeavesTheLinetypeAsItWas)
{
    const std::wstring file = write("a.lin", "*AXIS,x\nA,1,-1\n");
    EXPECT_EQ(load(L"AXIS", file), Kdapi::eOk);
    {
        const Open<KdDbObject> reader(
            database().contents().record(korra::TableKind::linetype, L"AXIS"), KdDb::kForRead);
        EXPECT_EQ(load(L"AXIS", file), Kdapi::eWasOpenForRead);
    }
    write("a.lin", "*AXIS,x\nA,2,oops\n");
    EXPECT_EQ(load(L"AXIS", file), Kdapi::eBadLineTypeDefinition);
    EXPECT_THAT(pattern(database(), L"AXIS"), ElementsAre(1.0, -1.0));
    EXPECT_EQ(load(L"NONE", L"/nowhere/a.lin"), Kdapi::eFileNotFound);
    EXPECT_EQ(load(L"NONE", platform::fromUtf8(folder_.pathOf(""))), Kdapi::eFileAccess);
    EXPECT_EQ(load(nullptr, file), Kdapi::eInvalidInput);
}

TEST_F(LinetypeLoading, ReadsNamesInUtf8AndInTheDrawingsCodePage)
{
    EXPECT_EQ(load(L"虚线", write("a.lin", "\xEF\xBB\xBF*虚线,x\nA,1,-1\n")), Kdapi::eOk);
    const auto early = dxf::readWhole(dxf::file("0 SECTION; 2 HEADER; 9 $ACADVER; 1 AC1009; "
                                                "9 $DWGCODEPAGE; 3 ANSI_1251; 0 ENDSEC; 0 EOF\n"));
    const std::wstring cyrillic = write("b.lin", "*\xEE\xF1\xFC,x\nA,2,-1\n");
    EXPECT_EQ(early->loadLineTypeFile(L"ось", cyrillic.c_str()), Kdapi::eOk);
}

TEST_F(LinetypeLoading, ASimplePatternTakesThePlaceOfOneWithShapes)
{
    auto drawing = dxf::readWhole(dxf::file(
        "0 SECTION; 2 TABLES; 0 TABLE; 2 LTYPE; 70 1; 0 LTYPE; 5 7A; 2 FENCE; 70 0; 3 old\n"
        "72 65; 73 2; 40 2.0; 49 1.0; 74 4; 75 132; 340 0; 46 0.1; 49 -1.0; 74 0\n"
        "0 ENDTAB; 0 ENDSEC; 0 EOF\n"));
    const std::wstring file = write("a.lin", "*FENCE,new\nA,3,-1\n");
    ASSERT_EQ(drawing->loadLineTypeFile(L"FENCE", file.c_str()), Kdapi::eOk);
    const std::string text = korra::drawingText(*drawing);
    EXPECT_THAT(text, Not(HasSubstr(" 75\n")));
    EXPECT_THAT(pattern(*dxf::readWhole(text), L"FENCE"), ElementsAre(3.0, -1.0));
}

} // namespace
