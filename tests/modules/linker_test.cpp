#include "kd/ap.h"
#include "kd/rx.h"
#include "korra/modules.h"
#include "support/host_test.h"
#include "support/modules.h"

#include <filesystem>
#include <fstream>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class LinkerTest : public tests::HostTest {};

TEST_F(LinkerTest, AModuleComesAndGoesInTheLoadersOrder)
{
    const auto coming =
        tests::tracedCalls([] { EXPECT_TRUE(kdrxLoadModule(L"probe", false, false)); });
    EXPECT_THAT(tests::only(coming, {"static initialisation", "DllMain", "kdrxGetApiVersion",
                                     "message", "static destruction"}),
                ElementsAre("static initialisation()", "DllMain(1)", "kdrxGetApiVersion()",
                            HasSubstr("message(1"), HasSubstr("message(3")));

    const auto going =
        tests::tracedCalls([] { EXPECT_TRUE(kdrxUnloadModule(L"PROBE.KRX", false)); });
    EXPECT_THAT(tests::only(going, {"message", "FreeLibrary", "DllMain", "static destruction"}),
                ElementsAre(HasSubstr("message(4"), HasSubstr("message(2"), "FreeLibrary()",
                            "DllMain(0)", "static destruction()"));
}

TEST_F(LinkerTest, EveryDocumentIsToldOfWhenItIsOpenedBeforeOrAfterTheModule)
{
    KdApDocument* const first = kdDocManagerPtr()->curDocument();
    KdApDocument* const second = korra::newDocument();
    const auto names = [](const KdApDocument* document) {
        return tests::narrow((L"\"" + std::wstring(document->fileName()) + L"\"").c_str());
    };
    const std::string firstName = names(first);
    const std::string secondName = names(second);

    const auto loading = tests::tracedCalls([] { kdrxLoadModule(L"probe", false, false); });
    EXPECT_THAT(tests::only(loading, {"message"}),
                ElementsAre(HasSubstr("message(1"), "message(3, " + firstName + ")",
                            "message(3, " + secondName + ")"));
    EXPECT_EQ(kdDocManagerPtr()->curDocument(), second);

    KdApDocument* third = nullptr;
    const auto opening = tests::tracedCalls([&] { third = korra::newDocument(); });
    EXPECT_THAT(tests::only(opening, {"message"}), ElementsAre("message(3, " + names(third) + ")"));

    const auto closing = tests::tracedCalls([&] { korra::closeDocument(*first); });
    EXPECT_THAT(tests::only(closing, {"message"}), ElementsAre("message(4, " + firstName + ")"));
}

TEST_F(LinkerTest, WhatCannotBeLoadedIsSaidAndLeavesNothingBehind)
{
    const std::string broken = ::testing::TempDir() + "broken.krx";
    std::ofstream(broken) << "this is no module";

    const struct {
        std::string name;
        const char* message;
    } cases[] = {
        {"probe_missing", "no such module file"},
        {"", "no such module file"},
        {"/nowhere/probe.krx", "no such module file"},
        {broken, "cannot be loaded"},
        {ORVEX_BIN_DIR "/OrvexbaseRes.dll", "is no extension module"},
        {"probe_old", "another version"},
        {"probe_refusing", "its initialisation failed"},
    };

    for (const auto& each : cases) {
        const korra::FileOutcome outcome = korra::loadModule(each.name);
        EXPECT_FALSE(outcome.done) << each.name;
        EXPECT_THAT(outcome.message, HasSubstr(each.message)) << each.name;
        EXPECT_THAT(tests::loadedModules(), IsEmpty()) << each.name;
    }
    std::filesystem::remove(broken);
}

TEST_F(LinkerTest, AModuleForOneDocumentIsRefusedWhenMoreAreOpen)
{
    EXPECT_TRUE(korra::loadModule("probe_locked").done);
    EXPECT_FALSE(kdrxUnloadModule(L"probe_locked.krx", false)) << "it is locked";
    EXPECT_THAT(tests::loadedModules(), ElementsAre("probe_locked.krx"));

    tests::startFreshHost();
    korra::newDocument();
    EXPECT_THAT(korra::loadModule("probe_locked").message, HasSubstr("one document"));
    EXPECT_THAT(tests::loadedModules(), IsEmpty());
}

TEST_F(LinkerTest, ASecondLoadOfAModuleDoesNothing)
{
    kdrxLoadModule(L"probe", false, false);
    const auto again = tests::tracedCalls(
        [] { EXPECT_TRUE(kdrxLoadModule(ORVEX_WIDE(ORVEX_BIN_DIR) L"/probe.krx", true, false)); });
    EXPECT_THAT(tests::only(again, {"LoadLibraryW", "message"}), IsEmpty());
    EXPECT_THAT(printed(), HasSubstr("already loaded"));
    EXPECT_FALSE(kdrxUnloadModule(L"probe", false)) << "a module is named with its extension";
}

TEST_F(LinkerTest, ModulesAreFoundInAddedFolders)
{
    const std::string folder = ::testing::TempDir() + "module folder";
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(ORVEX_BIN_DIR "/probe.krx", folder + "/elsewhere.krx",
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_FALSE(korra::loadModule("elsewhere").done);
    korra::addModuleFolder(folder);
    EXPECT_TRUE(korra::loadModule("elsewhere").done);
    EXPECT_THAT(tests::loadedModules(), ElementsAre("elsewhere.krx"));
    korra::stopHost();
    korra::startHost();
    EXPECT_FALSE(korra::loadModule("elsewhere").done);
    std::filesystem::remove_all(folder);
}

TEST_F(LinkerTest, ALoadThatFailsAnywhereEndsLoadedOrGone)
{
    tests::sweepFaults<int>(
        [] { return 0; }, [](int&) { kdrxLoadModule(L"probe", false, false); },
        [](int&) { EXPECT_EQ(tests::isMapped("probe.krx"), !tests::loadedModules().empty()); });
}

} // namespace
