#include "kd/ap.h"
#include "kd/rx.h"
#include "korra/modules.h"
#include "support/host_test.h"
#include "support/modules.h"
#include "support/support_folder.h"

#include <afxwin.h>
#include <dlfcn.h>

#include <filesystem>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The library as the host loads it: this program does not link it.
class OrvexbaseTest : public tests::HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        ASSERT_FALSE(tests::isMapped("Orvexbase.krx"));
    }

    static void load() { ASSERT_TRUE(kdrxLoadModule(L"Orvexbase", false, false)); }

    static bool unload() { return kdrxUnloadModule(L"Orvexbase.krx", false); }
};

TEST_F(OrvexbaseTest, LoadsItsLanguageThenDeclaresItself)
{
    EXPECT_THAT(tests::tracedOperations([] { load(); }),
                ElementsAre("kdrxLoadModule", "KdApDocManager::addReactor", "GetModuleFileNameW",
                            "LoadLibraryW", "AfxInitExtensionModule", "InitKdUiDLL",
                            "kdrxEntryPoint", "KdRxRegistry::at",
                            "KdRxDynamicLinker::unlockApplication", "KdRxRegistry::at",
                            "KdRxDynamicLinker::registerAppMDIAware", "kdrxEntryPoint"));
}

TEST_F(OrvexbaseTest, TakesEverythingBackWhenItIsUnloaded)
{
    load();
    korra::newDocument();
    korra::closeDocument(*kdDocManagerPtr()->curDocument()); // forgotten at once
    EXPECT_THAT(tests::tracedOperations([] { EXPECT_TRUE(unload()); }),
                ElementsAre("kdrxUnloadModule", "kdrxEntryPoint", "kdrxEntryPoint",
                            "AfxTermExtensionModule", "FreeLibrary",
                            "KdApDocManager::removeReactor"));
    EXPECT_FALSE(tests::isMapped("Orvexbase.krx"));
    EXPECT_FALSE(tests::isMapped("OrvexbaseRes.dll"));
    CString text;
    EXPECT_FALSE(text.LoadString(101));
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
    const auto calls = tests::tracedCalls([&] {
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
    EXPECT_TRUE(tests::isMapped("OrvexbaseRes.dll"));
    CString text;
    EXPECT_FALSE(text.LoadString(101)) << "not in the resource chain";

    const auto calls = tests::tracedCalls([] { EXPECT_TRUE(unload()); });
    EXPECT_THAT(tests::only(calls, {"AfxTermExtensionModule"}), IsEmpty());
    EXPECT_FALSE(tests::isMapped("OrvexbaseRes.dll"));
}

TEST_F(OrvexbaseTest, StopsTheHostWithoutItsLanguage)
{
    const tests::SupportFolder folder;
    const std::filesystem::path module = folder.pathOf("Orvexbase.krx");
    std::filesystem::copy_file(ORVEX_BIN_DIR "/Orvexbase.krx", module);
    const auto outcome = korra::loadModule(module);
    const std::filesystem::path tried = folder.pathOf("OrvexbaseRes.dll");
    EXPECT_THAT(korra::fatalStops(),
                ElementsAre(L"can not load language file  \"" + tried.wstring() + L"\" !"));
    EXPECT_TRUE(outcome.done) << outcome.message;
    EXPECT_TRUE(unload());
}

TEST_F(OrvexbaseTest, LoadingLeavesNothingWhateverFails)
{
    tests::sweepFaults<int>(
        [] { return 0; }, [](int&) { kdrxLoadModule(L"Orvexbase", false, false); },
        [](int&) { EXPECT_EQ(tests::isMapped("Orvexbase.krx"), !tests::loadedModules().empty()); });
}

} // namespace
