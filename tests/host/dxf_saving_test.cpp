// A save replaces a file whole or leaves it as it was.

#include "dxf_samples.h"

#include "dxf/atomic_file.h"
#include "support/changes.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <functional>
#include <iterator>
#include <limits>
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

constexpr double kInfinite = std::numeric_limits<double>::infinity();

TEST_F(DrawingSaving, MakesAFileOrReplacesTheOneBehindALinkAndKeepsItsPermissions)
{
    folder_.write("real.dxf", "old");
    ASSERT_EQ(chmod(path("real.dxf").c_str(), 02640), 0);
    fs::create_symlink(path("real.dxf"), path("link.dxf"));
    const auto database = readWhole(text_);
    EXPECT_TRUE(korra::writeDrawing(*database, path("link.dxf")).done);
    folder_.write("other", "");
    for (const char* made : {"new.dxf", "newer.dxf"}) {
        EXPECT_TRUE(korra::writeDrawing(*database, path(made)).done);
        EXPECT_EQ(fs::status(path(made)).permissions(), fs::status(path("other")).permissions());
    }
    EXPECT_TRUE(fs::is_symlink(path("link.dxf")));
    EXPECT_EQ(static_cast<unsigned>(fs::status(path("real.dxf")).permissions()), 02640u);
    EXPECT_EQ(folder_.contentsOf("real.dxf"), text_);
    EXPECT_EQ(folder_.contentsOf("new.dxf"), text_);
    EXPECT_EQ(filesInFolder(), 5);
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
    EXPECT_THAT(problems, Each(""));
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

/// The message of a save into a file that must stay as it is.
std::string refusalOf(const SupportFolder& folder, const KdDbDatabase& database)
{
    folder.write("old.dxf", "old");
    const korra::FileOutcome outcome = korra::writeDrawing(database, folder.pathOf("old.dxf"));
    EXPECT_FALSE(outcome.done);
    EXPECT_EQ(folder.contentsOf("old.dxf"), "old");
    return outcome.message.substr(std::min(outcome.message.find(": ") + 2, outcome.message.size()));
}

using Change = std::function<void(KdDbDatabase&)>;

template <class T>
Change changing(std::uint64_t handle, void (*change)(T& object))
{
    return [=](KdDbDatabase& drawing) { changeObject<T>(drawing, handle, change); };
}

TEST_F(DrawingSaving, RefusesWhatNobodyCouldReadAgainAndNamesTheObject)
{
    static const std::wstring tooLong(1 << 20, L'x');
    const std::pair<const char*, Change> cases[] = {
        {"LINE 46: a number is not finite", [](auto& drawing) { scaleEntities(drawing, 1e308); }},
        {"ATTRIB 59: an angle is not finite",
         changing<KdDbText>(0x59, [](auto& text) { text.setRotation(1e308); })},
        {"ATTRIB 59: a text is longer than a megabyte",
         changing<KdDbText>(0x59, [](auto& text) { text.setTextString(tooLong.c_str()); })},
        {"LINE 50: the colour 258 is none",
         changing<KdDbLine>(0x50, [](auto& line) { line.setColor(colorOf(258)); })},
        {"LAYER 11: the colour 32765 is none",
         changing<KdDbLayerTableRecord>(0x11, [](auto& layer) { layer.setColor(colorOf(32765)); })},
        {"LINE 50: a number is not finite", // in extended data
         changing<KdDbLine>(
             0x50,
             [](auto& line) {
                 korra::ObjectAccess::willChange(line);
                 korra::ObjectAccess::extras(line).xData.push_back({1040, kInfinite});
             })},
        {"BLOCK_RECORD 22: a number is not finite",
         changing<KdDbBlockTableRecord>(0x22,
                                        [](auto& block) {
                                            block.setOrigin({kInfinite, 0.0, 0.0});
                                        })},
        {"$DIMPOST: a text is longer than a megabyte",
         [](auto& drawing) { drawing.contents().header.setText("$DIMPOST", tooLong, 1); }},
        {"the block \"B25\" shows more than 100000000 entities",
         [](auto& drawing) {
             kddbHostApplicationServices()->setWorkingDatabase(&drawing);
             addEntityToBlock(L"B0", new KdDbPoint);
             for (int level = 1; level <= 27; ++level) {
                 const KdDbObjectId shown = blockId((L"B" + std::to_wstring(level - 1)).c_str());
                 for (int time = 0; time < 2; ++time)
                     addEntityToBlock((L"B" + std::to_wstring(level)).c_str(),
                                      new KdDbBlockReference(KdGePoint3d::kOrigin, shown));
             }
         }},
    };
    for (const auto& [message, change] : cases) {
        const auto database = readWhole(text_);
        change(*database);
        EXPECT_EQ(refusalOf(folder_, *database), std::string("cannot be saved: ") + message);
    }
}

TEST_F(DrawingSaving, GivesHandlesUpToTheLastAndThenTheFreeOnesFromTheFirst)
{
    for (const char* handle : {"7FFFFFFFFFFFFFFE", "7FFFFFFFFFFFFFFF"}) {
        const std::string text = file("0 SECTION; 2 HEADER; 9 $HANDSEED; 5 " + std::string(handle) +
                                      "; 0 ENDSEC; 0 SECTION; 2 ENTITIES; 0 LINE; 5 1; 0 LINE; 5 " +
                                      handle + "; 8 0; 0 ENDSEC; 0 EOF");
        const auto database = readToWorkOn(text);
        addEntityToBlock(L"New", new KdDbLine);
        addEntity(new KdDbBlockReference(KdGePoint3d::kOrigin, blockId(L"New")));
        const std::string written = korra::drawingText(*database);
        const auto again = readWhole(written);
        EXPECT_EQ(korra::drawingText(*again), written);
        EXPECT_NE(find<KdDbLine>(*again, std::stoull(handle, nullptr, 16)), nullptr);
    }
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
