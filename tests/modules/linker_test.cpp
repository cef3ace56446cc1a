#include "kd/ap.h"
#include "kd/rx.h"
#include "korra/modules.h"
#include "support/host_test.h"
#include "support/modules.h"
#include "support/support_folder.h"

#include <filesystem>

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
    EXPECT_THAT(tests::only(going, {"message", "DllMain", "static destruction"}),
                ElementsAre(HasSubstr("message(4"), HasSubstr("message(2"), "DllMain(0)",
                            "static destruction()"));
}

TEST_F(LinkerTest, EveryDocumentIsToldOfWhenItIsOpenedBeforeOrAfterTheModule)
{
    KdApDocument* const first = kdDocManagerPtr()->curDocument();
    KdApDocument* const second = korra::newDocument();
    const auto message = [](int code, const KdApDocument* document) {
        return "message(" + std::to_string(code) + ", \"" + tests::narrow(document->fileName()) +
               "\")";
    };
    const std::string firstLeaves = message(4, first);

    const auto loading = tests::tracedCalls([] { kdrxLoadModule(L"probe", false, false); });
    EXPECT_THAT(tests::only(loading, {"message"}),
                ElementsAre(HasSubstr("message(1"), message(3, first), message(3, second)));
    EXPECT_EQ(kdDocManagerPtr()->curDocument(), second);

    KdApDocument* third = nullptr;
    const auto opening = tests::tracedCalls([&] { third = korra::newDocument(); });
    EXPECT_THAT(tests::only(opening, {"message"}), ElementsAre(message(3, third)));

    const auto closing = tests::tracedCalls([&] { korra::closeDocument(*first); });
    EXPECT_THAT(tests::only(closing, {"message"}), ElementsAre(firstLeaves));
}

TEST_F(LinkerTest, WhatCannotBeLoadedIsSaidAndLeavesNothingBehind)
{
    const tests::SupportFolder folder;
    folder.write("broken.krx", "this is no module");

    const struct {
        std::string name;
        const char* message;
    } cases[] = {
        {"probe_missing", "no such module file"},
        {"", "no such module file"},
        {"/nowhere/probe.krx", "no such module file"},
        {folder.pathOf("broken.krx"), "cannot be loaded"},
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
    const tests::SupportFolder folder;
    std::filesystem::copy_file(ORVEX_BIN_DIR "/probe.krx", folder.pathOf("elsewhere.krx"));
    EXPECT_FALSE(korra::loadModule("elsewhere").done);
    korra::addModuleFolder(folder.pathOf(""));
    EXPECT_TRUE(korra::loadModule("elsewhere").done);
    EXPECT_THAT(tests::loadedModules(), ElementsAre("elsewhere.krx"));
    korra::stopHost();
    korra::startHost();
    EXPECT_FALSE(korra::loadModule("elsewhere").done);
}

} // namespace
