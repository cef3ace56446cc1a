// Boxes decide what is drawn at all: picks and extents must be those of a walk over everything.

#include "dxf_samples.h"

#include "blocks/draw_block.h"
#include "gi/extents_sink.h"
#include "host/recording_sink.h"
#include "sinks/pick_sink.h"

#include <random>
#include <span>

namespace tests::dxf {
namespace {

using korra::ExtentsSink;
using korra::PickSink;

/// A sink that looks at everything, whatever the boxes say.
template <class Sink>
struct Thorough : Sink {
    using Sink::Sink;

    bool wants(const KdGeExtents3d&) override { return true; }
};

/// Lines, a text and a dimension in blocks that show each other: turned, mirrored, in an array, at
/// the end on the tab's two spaces.
constexpr std::string_view kNested = R"(0 SECTION; 2 TABLES
0 TABLE; 2 STYLE; 70 1; 0 STYLE; 5 9; 2 Standard; 3 txt; 0 ENDTAB; 0 ENDSEC
0 SECTION; 2 BLOCKS
0 BLOCK; 5 10; 2 Part; 10 1; 20 2
0 LINE; 5 11; 8 Aids; 10 0; 20 0; 11 5; 21 3
0 TEXT; 5 12; 10 2; 20 2; 40 4; 1 Orvex base library
0 CIRCLE; 5 13; 10 1; 20 1; 40 2; 0 ENDBLK
0 BLOCK; 5 20; 2 Middle
0 INSERT; 5 21; 2 Part; 10 4; 20 1; 41 -2; 42 1; 50 30
0 INSERT; 5 22; 2 Part; 10 9; 20 9; 70 4; 71 3; 44 25; 45 -20; 50 10; 0 ENDBLK
0 ENDSEC
0 SECTION; 2 ENTITIES
0 INSERT; 5 31; 66 1; 2 Middle; 10 5; 20 5
0 ATTRIB; 5 3A; 8 Aids; 10 -160; 20 -160; 40 5; 1 note; 2 TAG; 0 SEQEND; 5 3B
0 INSERT; 5 32; 2 Middle; 10 30; 20 20; 41 .5; 42 .5; 43 .5; 210 .6; 220 0; 230 .8
0 LINE; 5 33; 10 -5; 20 -5; 11 40; 21 30
0 DIMENSION; 5 34; 70 0; 13 0; 23 -3; 14 10; 24 -3; 10 5; 20 -8
0 POLYLINE; 5 35; 66 1; 0 VERTEX; 5 36; 10 8; 20 1; 0 VERTEX; 5 37; 10 9; 20 30; 0 SEQEND; 5 38
0 ENDSEC; 0 EOF)";

class BlockBoxesTest : public HostTest {
public:
    BlockBoxesTest()
    {
        database_ = readWhole(file(kNested));
        part_ = block(L"Part");
        spaces_ = {block(L"*Model_Space"), block(L"Middle"), part_};
        for (const std::uint64_t handle :
             {0x11, 0x12, 0x13, 0x21, 0x22, 0x31, 0x32, 0x34, 0x35, 0x36})
            entities_.push_back(find<KdDbEntity>(*database_, handle)->objectId());
        Open<KdDbEntity>(entities_[7])->setColor(colorOf(1)); // makes the dimension's graphics
    }

    KdDbObjectId block(const wchar_t* name) const
    {
        return database_->contents().block(name)->objectId();
    }

    double any(double from, double to)
    {
        return std::uniform_real_distribution<double>(from, to)(random_);
    }

    template <class T>
    const T& anyOf(const std::vector<T>& values)
    {
        return values[random_() % values.size()];
    }

    void append()
    {
        const KdDbObjectId block = anyOf(spaces_);
        if (block.isErased())
            return;
        std::unique_ptr<KdDbEntity> entity;
        if (random_() % 4 == 0)
            entity.reset(new KdDbBlockReference({any(0, 30), any(0, 30), 0}, part_));
        else
            entity.reset(new KdDbLine({any(-9, 9), any(-9, 9), any(-9, 9)}, {any(0, 30), 5, 0}));
        if (Open<KdDbBlockTableRecord>(block)->appendKdDbEntity(entity.get()) != Kdapi::eOk)
            return; // the block would contain itself
        entities_.push_back(entity->objectId());
        entity.release()->close();
    }

    void move()
    {
        const KdDbObjectId id = anyOf(entities_);
        if (!id.isErased())
            Open<KdDbEntity>(id)->transformBy(
                KdGeMatrix3d::translation({any(-20, 20), any(-20, 20), 0}));
    }

    void eraseOrBringBack()
    {
        const KdDbObjectId id = random_() % 3 == 0 ? part_ : anyOf(entities_);
        KdDbObject* object = nullptr;
        ASSERT_EQ(kddbOpenObject(object, id, KdDb::kForWrite, true), Kdapi::eOk);
        object->erase(!id.isErased());
        object->close();
    }

    void moveBasePoint()
    {
        if (const KdDbObjectId id = spaces_[1 + random_() % 2]; !id.isErased())
            Open<KdDbBlockTableRecord>(id)->setOrigin({any(-9, 9), any(-9, 9), 0});
    }

    void changeFont()
    {
        const Open<KdDbTextStyleTableRecord> style(find<KdDbObject>(*database_, 9)->objectId());
        style->setFont(random_() % 2 == 0 ? L"DejaVu Sans" : L"DejaVu Sans Mono", false, false, 0,
                       0, 0);
    }

    void takeBack()
    {
        KdDbTransactionManager* const manager = database_->transactionManager();
        const std::size_t before = entities_.size();
        manager->startTransaction();
        move();
        append();
        moveBasePoint();
        expectSame("in the transaction");
        manager->abortTransaction();
        entities_.resize(before);
    }

    template <class Sink>
    std::vector<korra::PickHit> picked(const KdGeMatrix3d& view, const KdGePoint2d& at) const
    {
        Sink sink(view, at, 40.0, PickSink::Keep::all);
        korra::drawBlockContents(spaces_[0], sink);
        return sink.hits();
    }

    template <class Sink>
    KdGeExtents3d extents(const KdGeMatrix3d& frame) const
    {
        Sink sink(frame);
        korra::drawBlockContents(spaces_[0], sink);
        return sink.extents();
    }

    void expectSame(const std::string& when)
    {
        KdGeMatrix3d view = KdGeMatrix3d::rotation(any(0, 6), {any(-1, 1), any(-1, 1), 1}) *
                            KdGeMatrix3d::scaling(10.0);
        EXPECT_TRUE(same(extents<ExtentsSink>(view), extents<Thorough<ExtentsSink>>(view))) << when;
        if (random_() % 2 == 0)
            view(3, 2) = -0.002; // through a lens
        const KdGePoint2d at(any(-100, 400), any(-100, 400));
        const auto hits = picked<PickSink>(view, at);
        const auto all = picked<Thorough<PickSink>>(view, at);
        met_ += all.size();
        const auto parts = [](const korra::PickHit& hit) {
            return std::tie(hit.entity, hit.marker, hit.containers, hit.transform, hit.distance);
        };
        EXPECT_TRUE(std::ranges::equal(hits, all, {}, parts, parts))
            << when << ": " << hits.size() << " of " << all.size();
    }

    static bool same(const KdGeExtents3d& a, const KdGeExtents3d& b)
    {
        return a.minPoint().isEqualTo(b.minPoint()) && a.maxPoint().isEqualTo(b.maxPoint());
    }

    std::mt19937 random_{7};
    std::unique_ptr<KdDbDatabase> database_;
    KdDbObjectId part_;
    std::vector<KdDbObjectId> spaces_; ///< what grows: model space and blocks in it
    std::vector<KdDbObjectId> entities_;
    std::size_t met_ = 0;
};

TEST_F(BlockBoxesTest, WhateverChangesIsSeenByTheNextPick)
{
    const std::vector<std::pair<const char*, void (BlockBoxesTest::*)()>> changes = {
        {"append", &BlockBoxesTest::append},
        {"move", &BlockBoxesTest::move},
        {"erase or bring back", &BlockBoxesTest::eraseOrBringBack},
        {"base point", &BlockBoxesTest::moveBasePoint},
        {"font", &BlockBoxesTest::changeFont},
        {"abort", &BlockBoxesTest::takeBack}};
    expectSame("as read");
    for (const double way : {900.0, -900.0}) {
        Open<KdDbVertex>(entities_[9])->transformBy(KdGeMatrix3d::translation({way, 0, 0}));
        expectSame("vertex");
    }
    for (int step = 0; step < 600 && !HasFailure(); ++step) {
        const auto& [name, change] = anyOf(changes);
        (this->*change)();
        expectSame("step " + std::to_string(step) + ", " + name);
    }
    EXPECT_GT(met_, 1000u);
}

TEST_F(BlockBoxesTest, WhatIsHiddenHasABoxAllTheSame)
{
    const Open<KdDbLayerTableRecord> layer(
        database_->contents().record(korra::TableKind::layer, L"Aids"));
    for (const bool isOff : {true, false}) {
        layer->setIsOff(isOff);
        if (isOff)
            changeFont(); // everything is measured anew
        const auto hits = picked<PickSink>(KdGeMatrix3d::scaling(10.0), {-1580, -1580});
        EXPECT_EQ(hits.empty(), isOff);
    }
}

TEST_F(BlockBoxesTest, ManyChangesAtOnceAreSeenToo)
{
    spaces_.resize(1);
    const std::size_t before = entities_.size();
    for (int count = 0; count < 1200; ++count)
        append();
    expectSame("many new ones");
    for (const int moves : {1200, 300}) { // more than are remembered, and fewer
        for (int count = 0; count < moves; ++count)
            move();
        for (int count = 0; count < 3; ++count)
            expectSame("many moved ones");
    }
    const std::vector<KdDbObjectId> drawn = drawnBlock(spaces_[0]).entities;
    for (const KdDbObjectId id : std::span(entities_).subspan(before))
        EXPECT_EQ(std::ranges::count(drawn, id), 1) << id.handle().value();
}

} // namespace
} // namespace tests::dxf
