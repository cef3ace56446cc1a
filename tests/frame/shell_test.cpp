#include "orvex/shell.h"

#include "kd/rx.h"
#include "support/room_test.h"

namespace {

class ShellTest : public HostTest {};

TEST_F(ShellTest, AMissingLanguageLibraryStopsTheHostWhenTold)
{
    EXPECT_EQ(loadLangResourceDLL(nullptr, 0), nullptr); // beside the program there is none
    EXPECT_THAT(korra::fatalStops(), IsEmpty());
    EXPECT_EQ(loadLangResourceDLL(nullptr, 1), nullptr);
    EXPECT_THAT(korra::fatalStops(), SizeIs(1));
}

TEST_F(ShellTest, AModuleIsKnownByItsFileNameInAnyCaseAndLoadedOnce)
{
    EXPECT_TRUE(orvex_ArxLoad(L"Orvexbase.krx"));
    EXPECT_TRUE(isModuleLoaded(L"ORVEXBASE.KRX"));
    EXPECT_FALSE(isModuleLoaded(L"Orvexbase"));
    EXPECT_FALSE(isModuleLoaded(nullptr));
    const auto again = tracedCalls([] { EXPECT_TRUE(orvex_ArxLoad(L"orvexbase.KRX")); });
    EXPECT_THAT(again, ElementsAre("kdrxLoadedApps() = object"));
    EXPECT_FALSE(orvex_ArxLoad(L"missing.krx"));
}

TEST_F(ShellTest, LoadingLetsNoExceptionOut)
{
    sweepFaults<bool>(
        [] { return false; },
        [](bool& loaded) { EXPECT_NO_THROW(loaded = orvex_ArxLoad(L"Orvexbase.krx")); },
        [](bool& loaded) { EXPECT_EQ(loaded, !loadedModules().empty()); });
}

TEST_F(ShellTest, ASentCommandIsMeasuredInUtf16AndTyped)
{
    const auto calls = tracedCalls([] {
        for (const wchar_t* text : {L"", L"SETVAR CECOLOR 1", L"0 ", L"\U0001F4D0\x7EBF"})
            sendCommandToAutoCAD(text);
    });
    EXPECT_THAT(only(calls, {"WM_COPYDATA"}),
                ElementsAre("WM_COPYDATA(1, 2)", "WM_COPYDATA(1, 34)", "WM_COPYDATA(1, 6)",
                            "WM_COPYDATA(1, 8)"));
    korra::runCommands();
    EXPECT_EQ(variable(L"CECOLOR"), "10");
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
