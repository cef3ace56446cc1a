#include "kd/ap.h"
#include "kd/rx.h"
#include "korra/modules.h"
#include "platform/text.h"
#include "support/room_test.h"

#include <filesystem>

namespace {

/// The library as the host loads it: this program does not link it.
class OrvexbaseTest : public HostTest {
protected:
    OrvexbaseTest() { EXPECT_FALSE(isMapped("Orvexbase.krx")); }

    static void load() { ASSERT_TRUE(kdrxLoadModule(L"Orvexbase", false, false)); }

    static bool unload() { return kdrxUnloadModule(L"Orvexbase.krx", false); }
};

TEST_F(OrvexbaseTest, LoadsItsLanguageAndDeclaresItselfAndTakesAllOfItBack)
{
    EXPECT_THAT(tracedOperations([] { load(); }),
                ElementsAre("kdrxLoadModule", "KdApDocManager::addReactor", "GetModuleFileNameW",
                            "LoadLibraryW", "AfxInitExtensionModule", "InitKdUiDLL",
                            "kdrxEntryPoint", "KdRxRegistry::at",
                            "KdRxDynamicLinker::unlockApplication", "KdRxRegistry::at",
                            "KdRxDynamicLinker::registerAppMDIAware", "kdrxEntryPoint"));
    korra::newDocument();
    korra::closeDocument(*kdDocManagerPtr()->curDocument()); // forgotten at once
    EXPECT_THAT(tracedOperations([] { EXPECT_TRUE(unload()); }),
                ElementsAre("kdrxUnloadModule", "kdrxEntryPoint", "kdrxEntryPoint",
                            "AfxTermExtensionModule", "FreeLibrary",
                            "KdApDocManager::removeReactor"));
    EXPECT_FALSE(isMapped("Orvexbase.krx") || isMapped("OrvexbaseRes.dll"));
}

TEST_F(OrvexbaseTest, StopsTheHostWithoutItsLanguage)
{
    const SupportFolder folder;
    std::filesystem::copy_file(ORVEX_BIN_DIR "/Orvexbase.krx", folder.pathOf("Orvexbase.krx"));
    EXPECT_TRUE(korra::loadModule(folder.pathOf("Orvexbase.krx")).done);
    const std::string tried = folder.pathOf("OrvexbaseRes.dll");
    EXPECT_THAT(korra::fatalStops(), ElementsAre(L"can not load language file  \"" +
                                                 platform::fromUtf8(tried) + L"\" !"));
    EXPECT_TRUE(unload());
}

TEST_F(OrvexbaseTest, LoadingLeavesNothingWhateverFails)
{
    sweepFaults<int>([] { return 0; }, [](int&) { kdrxLoadModule(L"Orvexbase", false, false); },
                     [](int&) { EXPECT_EQ(isMapped("Orvexbase.krx"), !loadedModules().empty()); });
}

} // namespace
