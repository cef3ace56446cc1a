// Support files, colours of the screen, and list-processing functions that are called by name.

#include "support/host_test.h"

#include "kd/resbuf.h"
#include "platform/text.h"

#include <afxwin.h>

#include <filesystem>
#include <fstream>

namespace tests {
namespace {

namespace fs = std::filesystem;

class SupportFiles : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        // Tests may run side by side: each has a folder of its own.
        folder_ = fs::temp_directory_path() /
                  (std::string("support files of ") +
                   ::testing::UnitTest::GetInstance()->current_test_info()->name());
        fs::create_directories(folder_ / "korra.lin");
        std::ofstream(folder_ / "Own.SHX") << "x";
        std::ofstream(folder_ / "korraiso.lin") << "x";
    }

    void TearDown() override
    {
        fs::remove_all(folder_);
        HostTest::TearDown();
    }

    /// The file found, UTF-8; empty when there is none.
    static std::string find(const std::wstring& name)
    {
        wchar_t path[260] = L"?";
        const int result = kdedFindFile(name.c_str(), path, std::size(path));
        EXPECT_EQ(std::wstring(path) == L"?", result != RTNORM);
        return result == RTNORM ? platform::toUtf8(path) : "";
    }

    fs::path folder_;
};

TEST_F(SupportFiles, AddedFoldersGoBeforeTheHostsOwn)
{
    const fs::path own = find(L"korraiso.lin");
    EXPECT_EQ(own.parent_path().filename(), "support");
    EXPECT_EQ(find(L"own.shx"), "");
    korra::addSupportFolder(folder_.native());
    EXPECT_EQ(find(L"korraiso.lin"), folder_ / "korraiso.lin");
    EXPECT_EQ(find(L"own.shx"), folder_ / "Own.SHX");
    // A folder is no file.
    EXPECT_EQ(find(L"korra.lin"), own.parent_path() / "korra.lin");
    EXPECT_EQ(find(platform::fromUtf8((folder_ / "Own.SHX").native())), folder_ / "Own.SHX");
    EXPECT_EQ(find(L""), "");
}

TEST_F(SupportFiles, APathThatDoesNotFitIsNotGiven)
{
    const std::size_t length = find(L"korra.lin").size();
    std::vector<wchar_t> path(length + 1);
    EXPECT_EQ(kdedFindFile(L"korra.lin", path.data(), length), RTERROR);
    EXPECT_EQ(kdedFindFile(L"korra.lin", path.data(), length + 1), RTNORM);
    EXPECT_EQ(kdedFindFile(L"korra.lin", nullptr, 260), RTERROR);
}

class Invoking : public HostTest {
protected:
    /// Calls a function with one short argument. @return its short result; nullopt when it gave
    /// none
    static std::optional<int> invoke(const wchar_t* name, int argument, int expected = RTNORM)
    {
        resbuf* const arguments = kdutBuildList(RTSTR, name, RTSHORT, argument, 0);
        resbuf* result = nullptr;
        EXPECT_EQ(kdedInvoke(arguments, &result), expected);
        kdutRelRb(arguments);
        std::optional<int> value;
        if (result && result->restype == RTSHORT)
            value = result->resval.rint;
        kdutRelRb(result);
        return value;
    }
};

TEST_F(Invoking, TheColorQuestionTakesNumbersAndNamesUntilOneIsGood)
{
    korra::queueInput("300");
    korra::queueInput("blue");
    korra::queueInput("5");
    EXPECT_EQ(invoke(L"KORRA_COLORDLG", 7), 5);
    EXPECT_THAT(printed(), ::testing::HasSubstr("Not a colour."));
    korra::queueInput("bylayer");
    EXPECT_EQ(invoke(L"korra_colordlg", 7), 256);
    korra::queueInput("");
    EXPECT_EQ(invoke(L"korra_colordlg", 0), 0);
    korra::queueInput("\\esc");
    EXPECT_EQ(invoke(L"korra_colordlg", 7), std::nullopt);
    EXPECT_EQ(invoke(L"korra_colordlg", 7), std::nullopt); // the input has ended
}

TEST_F(Invoking, UnknownFunctionsAndWrongArgumentsAreErrors)
{
    EXPECT_EQ(invoke(L"no_such_function", 7, RTERROR), std::nullopt);
    EXPECT_EQ(invoke(L"korra_colordlg", 257, RTERROR), std::nullopt);
    resbuf* result = nullptr;
    EXPECT_EQ(kdedInvoke(nullptr, &result), RTERROR);
}

TEST_F(Invoking, TheScreenHasAFrameAndBackgroundsThatThePaletteKnows)
{
    EXPECT_EQ(kdedGetKdapiFrame()->GetSafeHwnd(), kdsw_kdapiMainWnd());
    KdColorSettings settings{};
    EXPECT_TRUE(kdedGetCurrentColors(&settings));
    EXPECT_NE(settings.modelBackground, settings.sheetBackground);
    EXPECT_FALSE(kdedGetCurrentColors(nullptr));
}

} // namespace
} // namespace tests
