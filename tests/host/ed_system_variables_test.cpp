#include "ed/system_variables.h"

#include "support/room_test.h"

namespace {

class SystemVariablesTest : public HostTest {};

TEST_F(SystemVariablesTest, EveryVariableReadsAsItsType)
{
    for (const korra::ed::SystemVariable& each : korra::ed::systemVariables()) {
        resbuf value{};
        EXPECT_EQ(kdedGetVar(each.name.c_str(), &value), RTNORM) << korra::takePrintedText();
        EXPECT_EQ(value.restype, each.type) << korra::takePrintedText();
        if (value.restype == RTSTR)
            kdapi_free(value.resval.rstring);
    }
    EXPECT_EQ(variable(L"NOSUCHNAME"), "none");
}

TEST_F(SystemVariablesTest, ANewDrawingHasTheDefaultsOfTheFormat)
{
    const std::pair<const wchar_t*, const char*> defaults[] = {
        {L"cmdecho", "1"}, {L"CELTSCALE", "1"}, {L"TEXTSIZE", "2.5"}, {L"LUNITS", "2"},
        {L"LUPREC", "4"},  {L"ATTMODE", "1"},   {L"FILLMODE", "1"},   {L"LIMMAX", "12,9,0"}};
    for (const auto& [name, value] : defaults)
        EXPECT_EQ(variable(name), value);
}

TEST_F(SystemVariablesTest, AWriteIsTypedRangedAndKept)
{
    const std::tuple<const char*, const char*, bool> cases[] = {
        {"CMDECHO", "0", true},          {"CMDECHO", "2", false},
        {"CMDECHO", "0.5", false},       {"OSMODE", "-32768", true},
        {"OSMODE", "-1", true},          {"OSMODE", "40000", false},
        {"LTSCALE", "2.5", true},        {"LTSCALE", "0", false},
        {"LTSCALE", "1e999", false},     {"LIMMIN", "3,4", true},
        {"INSBASE", "1,2,3", true},      {"INSBASE", "1", false},
        {"CLAYER", "0", true},           {"CLAYER", "missing", false},
        {"CECOLOR", "bylayer", true},    {"CECOLOR", "255", true},
        {"CECOLOR", "256", false},       {"VIEWSIZE", "10", false},
        {"SCREENSIZE", "1,1", false},    {"UCSORG", "1,1,1", false},
        {"DIMSTYLE", "Standard", false}, {"TILEMODE", "2", false},
        {"CTAB", "no such tab", false},
    };

    for (const auto& [name, value, taken] : cases)
        EXPECT_EQ(korra::setVariable(name, value), taken) << name << " = " << value;
    const std::pair<const wchar_t*, const char*> kept[] = {
        {L"CMDECHO", "0"},    {L"OSMODE", "-1"},     {L"LTSCALE", "2.5"},
        {L"LIMMIN", "3,4,0"}, {L"INSBASE", "1,2,3"}, {L"CECOLOR", "255"}};
    for (const auto& [name, value] : kept)
        EXPECT_EQ(variable(name), value);
}

TEST_F(SystemVariablesTest, DrawingsAndSheetsHaveValuesOfTheirOwn)
{
    for (const auto& [name, value] :
         {std::pair("LTSCALE", "3"), {"PICKBOX", "7"}, {"INSBASE", "1,2,3"}})
        ASSERT_TRUE(korra::setVariable(name, value));
    KdApDocument* const second = korra::newDocument();
    EXPECT_EQ(variable(L"LTSCALE"), "1");
    EXPECT_EQ(variable(L"PICKBOX"), "7") << "the host's";
    korra::closeDocument(*second);
    EXPECT_EQ(variable(L"LTSCALE"), "3");

    ASSERT_TRUE(korra::setVariable("TILEMODE", "0"));
    EXPECT_EQ(variable(L"INSBASE"), "0,0,0");
    ASSERT_TRUE(korra::setVariable("INSBASE", "4,5,6"));
    ASSERT_TRUE(korra::setVariable("TILEMODE", "1"));
    EXPECT_EQ(variable(L"INSBASE"), "1,2,3");
}

TEST_F(SystemVariablesTest, ViewVariablesFollowTheViewAndWhatIsShown)
{
    EXPECT_EQ(variable(L"EXTMIN"), "1e+20,1e+20,1e+20") << "nothing is shown";
    addEntity(new KdDbCircle({5, 5, 1}, KdGeVector3d::kZAxis, 2.0));
    give({"2,2", "4,3"});
    ASSERT_TRUE(korra::runCommand("ZOOM"));
    const std::pair<const wchar_t*, const char*> variables[] = {
        {L"SCREENSIZE", "800,600,0"},
        {L"VIEWCTR", "3,2.5,0"},
        {L"VIEWDIR", "0,0,1"},
        {L"EXTMIN", "3,3,1"},
        {L"EXTMAX", "7,7,1"},
        // Two units wide on a screen of 4:3 are higher than the one unit asked for.
        {L"VIEWSIZE", "1.5"}};
    for (const auto& [name, value] : variables)
        EXPECT_EQ(variable(name), value);
}

TEST_F(SystemVariablesTest, WithoutADocumentOnlyTheHostsOwnCanBeRead)
{
    korra::stopHost();
    EXPECT_EQ(kdutPrintf(L"nobody"), RTERROR);
    korra::startHost();
    EXPECT_EQ(kdutPrintf(L"somebody"), RTNORM);
    EXPECT_EQ(variable(L"CMDECHO"), "1");
    EXPECT_EQ(variable(L"LTSCALE"), "none");
    EXPECT_EQ(variable(L"VIEWSIZE"), "none");
    EXPECT_FALSE(korra::setVariable("LTSCALE", "2"));
    EXPECT_EQ(kdedSetCurrentUCS({}), Kdapi::eNoDocument);
}

} // namespace
