// A save replaces a file whole or leaves it as it was.

#include "dxf_samples.h"

#include "support/host_test.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace tests::dxf {
namespace {

namespace fs = std::filesystem;

/// A folder of its own, and whole drawings to save into it.
class DrawingSaving : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        std::string pattern = (fs::temp_directory_path() / "saving-XXXXXX").string();
        folder_ = mkdtemp(pattern.data());
    }

    void TearDown() override
    {
        fs::remove_all(folder_);
        HostTest::TearDown();
    }

    std::string path(const char* name) const { return (folder_ / name).string(); }

    static void write(const std::string& path, const std::string& text)
    {
        std::ofstream(path, std::ios::binary) << text;
    }

    static std::string contents(const std::string& path)
    {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::size_t filesInFolder() const
    {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(folder_), fs::directory_iterator()));
    }

    fs::path folder_;
};

TEST_F(DrawingSaving, WritesWhatReadsBack)
{
    const std::string text = file(kModernSample);
    write(path("a.dxf"), text);
    KdDbDatabase database(false);
    ASSERT_TRUE(korra::readDrawing(database, path("a.dxf")).done);
    const auto outcome = korra::writeDrawing(database, path("b.dxf"));
    EXPECT_TRUE(outcome.done) << outcome.message;
    EXPECT_EQ(contents(path("b.dxf")), text);
    EXPECT_EQ(filesInFolder(), 2u);
}

TEST_F(DrawingSaving, ReplacesTheFileBehindALinkAndKeepsItsPermissions)
{
    write(path("real.dxf"), "old");
    ASSERT_EQ(chmod(path("real.dxf").c_str(), 0640), 0);
    fs::create_symlink(path("real.dxf"), path("link.dxf"));
    const auto database = readWhole(file(kModernSample));
    EXPECT_TRUE(korra::writeDrawing(*database, path("link.dxf")).done);
    EXPECT_EQ(contents(path("real.dxf")), file(kModernSample));
    EXPECT_TRUE(fs::is_symlink(path("link.dxf")));
    EXPECT_EQ(static_cast<unsigned>(fs::status(path("real.dxf")).permissions()), 0640u);
}

TEST_F(DrawingSaving, AFailureLeavesTheOldFileAndNothingElse)
{
    const auto database = readWhole(file(kModernSample));
    write(path("old.dxf"), "old");

    // Files may not grow beyond a few bytes: the disk is full, as far as the save can tell.
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit tight{100, before.rlim_max};
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &tight);
    const auto outcome = korra::writeDrawing(*database, path("old.dxf"));
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_FALSE(outcome.done);
    EXPECT_EQ(outcome.message.find(path("old.dxf") + ": cannot be written: "), 0u);
    EXPECT_EQ(contents(path("old.dxf")), "old");
    EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(DrawingSaving, RefusesWhatIsNoPlaceForADrawing)
{
    const auto database = readWhole(file(kModernSample));
    fs::create_directory(path("folder"));
    for (const std::string& place :
         {path("folder"), path("missing/a.dxf"), std::string("/dev/null")})
        EXPECT_FALSE(korra::writeDrawing(*database, place).done) << place;
    EXPECT_TRUE(fs::is_directory(path("folder")));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    EXPECT_EQ(filesInFolder(), 1u);
}

} // namespace
} // namespace tests::dxf
