// A save replaces a file whole or leaves it as it was.

#include "dxf_samples.h"

#include "support/host_test.h"
#include "support/support_folder.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <iterator>

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
