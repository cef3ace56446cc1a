#include "orvex/shell.h"
#include "orvex/system_variables.h"

#include "kd/rx.h"
#include "korra/console.h"
#include "support/host_test.h"
#include "support/modules.h"

#include <filesystem>

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class ShellTest : public tests::HostTest {};

TEST_F(ShellTest, TheLanguageLibraryLiesBesideTheModule)
{
    const auto calls = tests::tracedCalls([] {
        EXPECT_EQ(loadLangResourceDLL(nullptr, 0), nullptr); // beside the program there is none
    });
    const std::string program = std::filesystem::canonical("/proc/self/exe");
    const std::string tried = program.substr(0, program.size() - 4) + "Res.dll";
    EXPECT_THAT(calls, ElementsAre("GetModuleFileNameW()", "LoadLibraryW(\"" + tried + "\")"));
    EXPECT_EQ(printed(), "");
    EXPECT_THAT(korra::fatalStops(), IsEmpty());

    EXPECT_EQ(loadLangResourceDLL(nullptr, 1), nullptr);
    EXPECT_THAT(korra::fatalStops(), ElementsAre(std::wstring(L"can not load language file  \"") +
                                                 std::filesystem::path(tried).wstring() + L"\" !"));
    freeLangResourceDLL(nullptr);
}

TEST_F(ShellTest, AModuleIsKnownByItsFileNameInAnyCase)
{
    EXPECT_FALSE(isModuleLoaded(L"Orvexbase.krx"));
    ASSERT_TRUE(kdrxLoadModule(L"Orvexbase", false, false));
    EXPECT_TRUE(isModuleLoaded(L"ORVEXBASE.KRX"));
    EXPECT_FALSE(isModuleLoaded(L"Orvexbase"));
    EXPECT_FALSE(isModuleLoaded(nullptr));
}

TEST_F(ShellTest, AModuleThatIsLoadedIsNotLoadedAgain)
{
    const auto first =
        tests::tracedOperations([] { EXPECT_TRUE(orvex_ArxLoad(L"Orvexbase.krx")); });
    EXPECT_THAT(first, Contains("kdrxLoadModule"));
    const auto second =
        tests::tracedOperations([] { EXPECT_TRUE(orvex_ArxLoad(L"orvexbase.KRX")); });
    EXPECT_THAT(second, ElementsAre("kdrxLoadedApps"));
    EXPECT_FALSE(orvex_ArxLoad(L"missing.krx"));
}

TEST_F(ShellTest, LoadingLetsNoExceptionOut)
{
    tests::sweepFaults<bool>(
        [] { return false; },
        [](bool& loaded) { EXPECT_NO_THROW(loaded = orvex_ArxLoad(L"Orvexbase.krx")); },
        [](bool& loaded) { EXPECT_EQ(loaded, !tests::loadedModules().empty()); });
}

TEST_F(ShellTest, ASentCommandIsMeasuredInUtf16)
{
    const struct {
        const wchar_t* command;
        const char* copied;
    } cases[] = {
        {L"REGEN", "WM_COPYDATA(1, 12)"},
        {L"", "WM_COPYDATA(1, 2)"},
        {L"\U0001F4D0\x7EBF", "WM_COPYDATA(1, 8)"},
    };

    for (const auto& each : cases) {
        const auto calls = tests::tracedCalls([&] { sendCommandToAutoCAD(each.command); });
        EXPECT_THAT(tests::only(calls, {"WM_COPYDATA"}), ElementsAre(each.copied));
    }
}

TEST_F(ShellTest, ASentCommandIsTyped)
{
    sendCommandToAutoCAD(L"SETVAR CECOLOR 1");
    sendCommandToAutoCAD(L"0 ");
    EXPECT_TRUE(korra::runCommands());
    CString color;
    EXPECT_TRUE(CSysVar::GetVar(L"CECOLOR", color));
    EXPECT_EQ(color, L"10");
}

TEST_F(ShellTest, TheCaptionIsTheHosts)
{
    setTavroTitleCaption(L"Изделие 线");
    EXPECT_EQ(korra::mainWindowCaption(), "Изделие 线");
}

TEST_F(ShellTest, AMissingTextIsReported)
{
    EXPECT_EQ(Orvex::StringFromID(105), L"\nInvalid input!");
    EXPECT_EQ(printed(), "");
    EXPECT_EQ(Orvex::StringFromID(102), L"");
    EXPECT_EQ(printed(), "\nLoadString error! Please check the string id is right!");
}

TEST_F(ShellTest, FilesAndFoldersExist)
{
    EXPECT_EQ(Orvex::IsFileExist(L""), 0);
    EXPECT_EQ(Orvex::IsFileExist(L"/tmp"), 1);
    EXPECT_EQ(Orvex::IsFileExist(L"/proc/self/exe"), 1);
    EXPECT_EQ(Orvex::IsFileExist(L"/nowhere"), 0);
}

} // namespace
