// Support files.

#include "support/room_test.h"

#include "platform/text.h"

#include <filesystem>

namespace {

namespace fs = std::filesystem;

class SupportFiles : public HostTest {
protected:
    /// The file found; empty when there is none.
    static fs::path find(const std::wstring& name)
    {
        wchar_t path[260] = L"?";
        const int result = kdedFindFile(name.c_str(), path, std::size(path));
        EXPECT_EQ(std::wstring(path) == L"?", result != RTNORM);
        return result == RTNORM ? platform::toUtf8(path) : "";
    }
};

TEST_F(SupportFiles, AddedFoldersGoBeforeTheHostsOwn)
{
    const SupportFolder folder;
    folder.write("Own.SHX", "x");
    folder.write("korraiso.lin", "x");
    fs::create_directory(folder.pathOf("korra.lin"));
    const fs::path own = find(L"korraiso.lin");
    EXPECT_EQ(own.parent_path().filename(), "support");
    EXPECT_EQ(find(L"own.shx"), "");
    folder.use();
    EXPECT_EQ(find(L"korraiso.lin"), folder.pathOf("korraiso.lin"));
    EXPECT_EQ(find(L"own.shx"), folder.pathOf("Own.SHX"));
    EXPECT_EQ(find(L"korra.lin"), own.parent_path() / "korra.lin") << "a folder is no file";
    EXPECT_EQ(find(platform::fromUtf8(folder.pathOf("Own.SHX"))), folder.pathOf("Own.SHX"));
    EXPECT_EQ(find(L""), "");
}

TEST_F(SupportFiles, APathThatDoesNotFitIsNotGiven)
{
    const std::size_t length = find(L"korra.lin").native().size();
    std::vector<wchar_t> path(length + 1);
    EXPECT_EQ(kdedFindFile(L"korra.lin", path.data(), length), RTERROR);
    EXPECT_EQ(kdedFindFile(L"korra.lin", path.data(), length + 1), RTNORM);
    EXPECT_EQ(kdedFindFile(L"korra.lin", nullptr, 260), RTERROR);
}

} // namespace
