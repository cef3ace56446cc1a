#include "kd/ap.h"
#include "kd/rx.h"
#include "korra/modules.h"
#include "support/library_test.h"
#include "support/support_folder.h"

#include <afxwin.h>
#include <dlfcn.h>

#include <filesystem>

namespace {

/// The library as the host loads it: this program does not link it.
class OrvexbaseTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        ASSERT_FALSE(isMapped("Orvexbase.krx"));
    }

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

TEST_F(OrvexbaseTest, AnswersTheVersionAndUnknownMessages)
{
    load();
    void* const library = dlopen(ORVEX_BIN_DIR "/Orvexbase.krx", RTLD_NOW | RTLD_NOLOAD);
    const auto version = reinterpret_cast<unsigned (*)()>(dlsym(library, "kdrxGetApiVersion"));
    const auto entry =
        reinterpret_cast<int (*)(std::uint32_t, void*)>(dlsym(library, "kdrxEntryPoint"));
    ASSERT_TRUE(version && entry);
    EXPECT_EQ(version(), 132710400u);

    int packet = 0;
    const auto calls = tracedCalls([&] {
        for (const std::uint32_t code :
             {0u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 10u, 11u, 12u, 13u, 14u, 15u, 16u, 17u, 0xFFFFFFFFu})
            EXPECT_EQ(entry(code, &packet), 0) << code;
    });
    EXPECT_THAT(calls, ElementsAre("kdedGetFunCode() = -1")) << "that of code 5";
    dlclose(library);
}

TEST_F(OrvexbaseTest, FreesItsLanguageAlsoWhenTheFrameworkRefusedIt)
{
    // Calls in order: load, file name, language library, framework.
    platform::failCall(4, platform::Fault::status);
    load();
    EXPECT_TRUE(platform::faultDelivered());
    platform::releaseCalls();
    EXPECT_TRUE(isMapped("OrvexbaseRes.dll"));
    CString text;
    EXPECT_FALSE(text.LoadString(101)) << "not in the resource chain";

    const auto calls = tracedCalls([] { EXPECT_TRUE(unload()); });
    EXPECT_THAT(only(calls, {"AfxTermExtensionModule"}), IsEmpty());
    EXPECT_FALSE(isMapped("OrvexbaseRes.dll"));
}

TEST_F(OrvexbaseTest, StopsTheHostWithoutItsLanguage)
{
    const SupportFolder folder;
    std::filesystem::copy_file(ORVEX_BIN_DIR "/Orvexbase.krx", folder.pathOf("Orvexbase.krx"));
    EXPECT_TRUE(korra::loadModule(folder.pathOf("Orvexbase.krx")).done);
    EXPECT_THAT(korra::fatalStops(), ElementsAre(HasSubstr(L"can not load language file")));
    EXPECT_TRUE(unload());
}

TEST_F(OrvexbaseTest, LoadingLeavesNothingWhateverFails)
{
    sweepFaults<int>([] { return 0; }, [](int&) { kdrxLoadModule(L"Orvexbase", false, false); },
                     [](int&) { EXPECT_EQ(isMapped("Orvexbase.krx"), !loadedModules().empty()); });
}

} // namespace
