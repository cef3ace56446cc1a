#include "kd/ap.h"
#include "kd/rx.h"
#include "korra/modules.h"
#include "support/host_test.h"
#include "support/modules.h"

#include <afxwin.h>
#include <dlfcn.h>

#include <filesystem>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
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

std::vector<std::string> operationsOf(const std::vector<std::string>& calls)
{
    std::vector<std::string> operations;
    for (const std::string& call : calls)
        operations.push_back(call.substr(0, call.find('(')));
    return operations;
}

TEST_F(OrvexbaseTest, LoadsItsLanguageThenDeclaresItself)
{
    const auto calls = tests::tracedCalls([] { load(); });
    EXPECT_THAT(operationsOf(calls),
                ElementsAre("kdrxLoadModule", "LoadLibraryW", "KdApDocManager::addReactor",
                            "GetModuleFileNameW", "LoadLibraryW", "AfxInitExtensionModule",
                            "InitKdUiDLL", "GetProcAddress", "GetProcAddress", "kdrxEntryPoint",
                            "KdRxRegistry::at", "KdRxDynamicLinker::unlockApplication",
                            "KdRxRegistry::at", "KdRxDynamicLinker::registerAppMDIAware",
                            "kdrxEntryPoint"));
    EXPECT_THAT(calls, ::testing::Contains("LoadLibraryW(\"" ORVEX_BIN_DIR "/OrvexbaseRes.dll\")"));
}

TEST_F(OrvexbaseTest, TakesEverythingBackWhenItIsUnloaded)
{
    load();
    const auto calls = tests::tracedCalls([] { EXPECT_TRUE(unload()); });
    EXPECT_THAT(operationsOf(calls),
                ElementsAre("kdrxUnloadModule", "kdrxEntryPoint", "kdrxEntryPoint", "FreeLibrary",
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
    EXPECT_THAT(calls, ElementsAre("kdedGetFunCode()")) << "that of code 5";
    dlclose(library);
}

TEST_F(OrvexbaseTest, ForgetsDocumentsThatGo)
{
    load();
    korra::newDocument();
    korra::closeDocument(*kdDocManagerPtr()->curDocument());
    EXPECT_TRUE(unload());
}

TEST_F(OrvexbaseTest, FreesItsLanguageAlsoWhenTheFrameworkRefusedIt)
{
    // Calls in order: load, library, file name, language library, framework.
    platform::failCall(5, platform::Fault::status);
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
    const std::string folder = ::testing::TempDir() + "bare";
    std::filesystem::create_directories(folder);
    std::filesystem::copy_file(ORVEX_BIN_DIR "/Orvexbase.krx", folder + "/Orvexbase.krx",
                               std::filesystem::copy_options::overwrite_existing);
    const auto outcome = korra::loadModule(folder + "/Orvexbase.krx");
    const std::wstring tried = std::filesystem::canonical(folder).wstring() + L"/OrvexbaseRes.dll";
    EXPECT_THAT(korra::fatalStops(),
                ElementsAre(L"can not load language file  \"" + tried + L"\" !"));
    EXPECT_TRUE(outcome.done) << outcome.message;
    EXPECT_TRUE(unload());
    std::filesystem::remove_all(folder);
}

TEST_F(OrvexbaseTest, LoadingLeavesNothingWhateverFails)
{
    tests::sweepFaults<int>(
        [] { return 0; }, [](int&) { kdrxLoadModule(L"Orvexbase", false, false); },
        [](int&) { EXPECT_EQ(tests::isMapped("Orvexbase.krx"), !tests::loadedModules().empty()); });
}

} // namespace
