#include "platform/gate.h"
#include "platform/modules.h"
#include "platform/resources.h"
#include "support/localised_text.h"
#include "support/modules.h"
#include "support/resource_handle.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <afxwin.h>

#include <filesystem>
#include <map>
#include <string>

namespace {

/// A library held for the length of a scope.
class Library {
public:
    explicit Library(const wchar_t* path) : handle(LoadLibraryW(path)) {}

    ~Library() { FreeLibrary(handle); }

    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    const HINSTANCE handle;
};

TEST(Modules, KnowTheirOwnFilesAndGiveOnlyWhatTheyExportThemselves)
{
    wchar_t path[520];
    const std::wstring program = std::filesystem::canonical("/proc/self/exe").wstring();
    EXPECT_EQ(GetModuleFileNameW(nullptr, path, 520), program.size());
    EXPECT_EQ(std::wstring(path), program);
    EXPECT_EQ(GetModuleFileNameW(nullptr, path, 4), 4u) << "cut";
    EXPECT_EQ(std::wstring(path), program.substr(0, 3));

    const Library probe(L"probe.krx");
    EXPECT_TRUE(GetProcAddress(probe.handle, "kdrxEntryPoint"));
    EXPECT_FALSE(GetProcAddress(probe.handle, "kdrxSysRegistry")) << "exported by what it needs";
}

TEST(Modules, LeaveMemoryWhenNobodyHoldsThem)
{
    {
        const Library first(L"OrvexbaseRes.dll");
        const Library second(L"OrvexbaseRes.dll");
        EXPECT_EQ(first.handle, second.handle);
        EXPECT_TRUE(tests::isMapped("OrvexbaseRes.dll"));
    }
    EXPECT_FALSE(tests::isMapped("OrvexbaseRes.dll"));
    EXPECT_EQ(LoadLibraryW(L"no such library.dll"), nullptr);
    EXPECT_FALSE(FreeLibrary(nullptr));
}

TEST(Resources, AreReadFromTheirModule)
{
    const Library language(ORVEX_WIDE(ORVEX_BIN_DIR) L"/lang/en/OrvexbaseRes.dll");
    wchar_t buffer[32];
    EXPECT_EQ(LoadStringW(language.handle, 105, buffer, 32), 15);
    EXPECT_EQ(std::wstring(buffer), L"\nInvalid input!");
    EXPECT_EQ(LoadStringW(language.handle, 105, buffer, 5), 4);
    EXPECT_EQ(std::wstring(buffer), L"\nInv");
    EXPECT_EQ(LoadStringW(language.handle, 102, buffer, 32), 0);

    EXPECT_TRUE(LoadCursorW(language.handle, MAKEINTRESOURCEW(204)));
    EXPECT_FALSE(LoadCursorW(language.handle, MAKEINTRESOURCEW(205)));
}

/// The directives of each text of a language library, in order: "%s%d".
std::map<UINT, std::string> directives(const wchar_t* path)
{
    const Library language(path);
    std::map<UINT, std::string> found;
    for (UINT id = 0; id < 1000; ++id) {
        const auto text = platform::findString(language.handle, id);
        if (!text)
            continue;
        EXPECT_TRUE(text->starts_with(L'\n')) << id;
        std::string& directives = found[id];
        for (std::size_t at = text->find(L'%'); at != text->npos; at = text->find(L'%', at + 1))
            directives += {'%', static_cast<char>(text->at(at + 1))};
    }
    return found;
}

TEST(Resources, EveryLanguageHasTheSameTextsWithTheSameArguments)
{
    const auto english = directives(ORVEX_WIDE(ORVEX_BIN_DIR) L"/lang/en/OrvexbaseRes.dll");
    EXPECT_EQ(english.size(), 14u);
    EXPECT_EQ(directives(ORVEX_WIDE(ORVEX_BIN_DIR) L"/lang/zh/OrvexbaseRes.dll"), english);
}

TEST(ResourceChain, AsksTheNewestExtensionModuleFirst)
{
    const Library language(ORVEX_WIDE(ORVEX_BIN_DIR) L"/lang/en/OrvexbaseRes.dll");
    AFX_EXTENSION_MODULE record;
    ASSERT_TRUE(AfxInitExtensionModule(record, language.handle));
    new CDynLinkLibrary(record);

    CString text;
    EXPECT_TRUE(text.LoadString(101));
    EXPECT_FALSE(text.LoadString(9000));
    EXPECT_EQ(text, L"\nSpecify target position:") << "unchanged";
    {
        const Library probe(L"probe.krx"); // puts itself into the chain
        EXPECT_TRUE(text.LoadString(101));
        EXPECT_EQ(text, L"probe's own 101");
        EXPECT_TRUE(text.LoadString(language.handle, 101)) << "by module";
        EXPECT_EQ(text, L"\nSpecify target position:");
    }
    AfxTermExtensionModule(record);
    EXPECT_FALSE(text.LoadString(101));
}

TEST(LocalisedTexts, ComeFromTheLanguageLibraryElseTheChainElseTheProgram)
{
    const Library language(ORVEX_WIDE(ORVEX_BIN_DIR) L"/lang/zh/OrvexbaseRes.dll");
    EXPECT_EQ(localisedText(101, L"built in"), L"built in");
    EXPECT_EQ(localisedText(101, L"no \"%s\"", L"House"), L"no \"House\"");
    {
        const Library probe(L"probe.krx"); // puts itself into the chain
        EXPECT_EQ(localisedText(9000, L"built in"), L"9000");
        EXPECT_EQ(localisedText(9001, L"built in", L"A%sB"), L"100% \"A%sB\"");
        setModuleResourceHandle(language.handle);
        EXPECT_EQ(localisedText(101, L"built in"), L"\n请指定目标位置:");
        EXPECT_EQ(localisedText(9000, L"built in"), L"built in") << "another module's text";
        setModuleResourceHandle(nullptr);
    }
}

} // namespace
