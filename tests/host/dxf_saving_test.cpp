// A save replaces a file whole or leaves it as it was.

#include "dxf_samples.h"

#include "dxf/atomic_file.h"
#include "support/host_test.h"
#include "support/support_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <iterator>
#include <thread>
#include <vector>

namespace tests::dxf {
namespace {

namespace fs = std::filesystem;

class DrawingSaving : public HostTest {
protected:
    std::string path(const char* name) const { return folder_.pathOf(name); }

    std::ptrdiff_t filesInFolder() const
    {
        return std::distance(fs::directory_iterator(path("")), fs::directory_iterator());
    }

    const SupportFolder folder_;
    const std::string text_ = file(kModernSample);
};

TEST_F(DrawingSaving, MakesAFileOrReplacesTheOneBehindALinkAndKeepsItsPermissions)
{
    folder_.write("real.dxf", "old");
    ASSERT_EQ(chmod(path("real.dxf").c_str(), 0640), 0);
    fs::create_symlink(path("real.dxf"), path("link.dxf"));
    const auto database = readWhole(text_);
    EXPECT_TRUE(korra::writeDrawing(*database, path("link.dxf")).done);
    EXPECT_TRUE(korra::writeDrawing(*database, path("new.dxf")).done);
    EXPECT_TRUE(fs::is_symlink(path("link.dxf")));
    EXPECT_EQ(static_cast<unsigned>(fs::status(path("real.dxf")).permissions()), 0640u);
    EXPECT_EQ(folder_.contentsOf("real.dxf"), text_);
    EXPECT_EQ(folder_.contentsOf("new.dxf"), text_);
    EXPECT_EQ(filesInFolder(), 3);
    KdDbDatabase again(false);
    EXPECT_TRUE(korra::readDrawing(again, path("link.dxf")).done);
}

TEST_F(DrawingSaving, ALinkToAFileThatIsNotThereStaysALink)
{
    const auto database = readWhole(text_);
    fs::create_directory(path("folder"));
    fs::create_symlink("folder/second.dxf", path("first.dxf"));
    fs::create_symlink("new.dxf", path("folder/second.dxf"));
    EXPECT_TRUE(korra::writeDrawing(*database, path("first.dxf")).done);
    EXPECT_TRUE(fs::is_symlink(path("first.dxf")));
    EXPECT_TRUE(fs::is_symlink(path("folder/second.dxf")));
    EXPECT_EQ(folder_.contentsOf("folder/new.dxf"), text_);

    fs::create_symlink("ring.dxf", path("ring.dxf"));
    EXPECT_FALSE(korra::writeDrawing(*database, path("ring.dxf")).done);
    EXPECT_TRUE(fs::is_symlink(path("ring.dxf")));
}

TEST_F(DrawingSaving, ClearsWhatKilledSavesLeftAndNothingElse)
{
    for (const char* name : {"a.dxf.tmp-killed", "a.dxf.tmp-living", "a.dxf.tmp-mynotes",
                             "b.dxf.tmp-killed", "a.dxf.tmp-six"})
        folder_.write(name, "x");
    fs::create_directory(path("a.dxf.tmp-folder"));
    const int living = open(path("a.dxf.tmp-living").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(living, LOCK_EX | LOCK_NB), 0);
    EXPECT_TRUE(korra::writeDrawing(*readWhole(text_), path("a.dxf")).done);
    EXPECT_FALSE(fs::exists(path("a.dxf.tmp-killed")));
    EXPECT_TRUE(fs::exists(path("a.dxf.tmp-living")));
    EXPECT_EQ(filesInFolder(), 6);
    close(living);
}

TEST_F(DrawingSaving, SavesOfOneFileAtTheSameTimeDoNotTakeEachOthersForLeftovers)
{
    std::vector<std::string> problems(4);
    std::vector<std::thread> savers;
    for (std::string& problem : problems) {
        savers.emplace_back([&problem, target = path("a.dxf")] {
            for (int time = 0; time < 100; ++time)
                problem += korra::replaceFile(target, "contents");
        });
    }
    for (std::thread& saver : savers)
        saver.join();
    EXPECT_THAT(problems, ::testing::Each(""));
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(DrawingSaving, AFailureLeavesTheOldFileAndNothingElse)
{
    const auto database = readWhole(text_);
    folder_.write("old.dxf", "old");

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
    EXPECT_EQ(folder_.contentsOf("old.dxf"), "old");
    EXPECT_EQ(filesInFolder(), 1);
}

TEST_F(DrawingSaving, RefusesWhatIsNoPlaceForADrawing)
{
    const auto database = readWhole(text_);
    fs::create_directory(path("folder"));
    for (const std::string& place :
         {path("folder"), path("missing/a.dxf"), std::string("/dev/null")})
        EXPECT_FALSE(korra::writeDrawing(*database, place).done) << place;
    EXPECT_EQ(filesInFolder(), 1);
}

} // namespace
} // namespace tests::dxf
