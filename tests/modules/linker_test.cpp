#include "kd/ap.h"
#include "kd/rx.h"
#include "korra/modules.h"
#include "support/room_test.h"

#include <filesystem>

namespace {

class LinkerTest : public HostTest {};

TEST_F(LinkerTest, AModuleComesAndGoesInTheLoadersOrder)
{
    const auto coming = tracedCalls([] { EXPECT_TRUE(kdrxLoadModule(L"probe", false, false)); });
    EXPECT_THAT(only(coming, {"static initialisation", "DllMain", "kdrxGetApiVersion", "message",
                              "static destruction"}),
                ElementsAre("static initialisation()", "DllMain(1)", "kdrxGetApiVersion()",
                            HasSubstr("message(1"), HasSubstr("message(3")));

    const auto again = tracedCalls([] { EXPECT_TRUE(kdrxLoadModule(L"probe.krx", true, false)); });
    EXPECT_THAT(only(again, {"LoadLibraryW", "message"}), IsEmpty());
    EXPECT_FALSE(kdrxUnloadModule(L"probe", false)) << "a module is named with its extension";

    const auto going = tracedCalls([] { EXPECT_TRUE(kdrxUnloadModule(L"PROBE.KRX", false)); });
    EXPECT_THAT(only(going, {"message", "DllMain", "static destruction"}),
                ElementsAre(HasSubstr("message(4"), HasSubstr("message(2"), "DllMain(0)",
                            "static destruction()"));
}

TEST_F(LinkerTest, EveryDocumentIsToldOfWhenItIsOpenedBeforeOrAfterTheModule)
{
    KdApDocument* const first = kdDocManagerPtr()->curDocument();
    KdApDocument* const second = korra::newDocument();
    const auto message = [](int code, const KdApDocument* document) {
        return "message(" + std::to_string(code) + ", \"" + narrow(document->fileName()) + "\")";
    };
    const std::string firstLeaves = message(4, first);

    const auto loading = tracedCalls([] { kdrxLoadModule(L"probe", false, false); });
    EXPECT_THAT(only(loading, {"message"}),
                ElementsAre(HasSubstr("message(1"), message(3, first), message(3, second)));
    EXPECT_EQ(kdDocManagerPtr()->curDocument(), second);

    KdApDocument* third = nullptr;
    const auto opening = tracedCalls([&] { third = korra::newDocument(); });
    EXPECT_THAT(only(opening, {"message"}), ElementsAre(message(3, third)));

    const auto closing = tracedCalls([&] { korra::closeDocument(*first); });
    EXPECT_THAT(only(closing, {"message"}), ElementsAre(firstLeaves));
}

TEST_F(LinkerTest, WhatCannotBeLoadedIsSaidAndLeavesNothingBehind)
{
    const SupportFolder folder;
    folder.write("broken.krx", "this is no module");

    const std::pair<std::string, const char*> cases[] = {
        {"probe_missing", "no such module file"},
        {"", "no such module file"},
        {folder.pathOf("broken.krx"), "cannot be loaded"},
        {ORVEX_BIN_DIR "/OrvexbaseRes.dll", "is no extension module"},
        {"probe_old", "another version"},
        {"probe_refusing", "its initialisation failed"},
        {"probe_throwing", "probe_throwing.krx: threw while it started: no licence"},
    };

    for (const auto& [name, message] : cases) {
        const korra::FileOutcome outcome = korra::loadModule(name);
        EXPECT_FALSE(outcome.done) << name;
        EXPECT_THAT(outcome.message, HasSubstr(message)) << name;
        EXPECT_THAT(loadedModules(), IsEmpty()) << name;
    }
}

TEST_F(LinkerTest, AModuleForOneDocumentStaysAndIsRefusedWhenMoreAreOpen)
{
    EXPECT_TRUE(korra::loadModule("probe_locked").done);
    EXPECT_FALSE(kdrxUnloadModule(L"probe_locked.krx", false)) << "it is locked";
    EXPECT_THAT(loadedModules(), ElementsAre("probe_locked.krx"));
    auto* const linker = KdRxDynamicLinker::cast(kdrxSysRegistry()->at(L"DynamicLinker"));
    EXPECT_FALSE(linker->unlockApplication(this) || linker->registerAppMDIAware(this));

    startFreshHost();
    korra::newDocument();
    EXPECT_THAT(korra::loadModule("probe_locked").message, HasSubstr("one document"));
    EXPECT_THAT(loadedModules(), IsEmpty());
}

TEST_F(LinkerTest, ModulesAreFoundInAddedFolders)
{
    const SupportFolder folder;
    std::filesystem::copy_file(ORVEX_BIN_DIR "/probe.krx", folder.pathOf("elsewhere.krx"));
    EXPECT_FALSE(korra::loadModule("elsewhere").done);
    korra::addModuleFolder(folder.pathOf(""));
    EXPECT_TRUE(korra::loadModule("elsewhere").done);
}

} // namespace
