#include "orvex/layers.h"
#include "orvex/system_variables.h"

#include "support/drawing.h"
#include "support/host_test.h"
#include "support/modules.h"
#include "support/opened.h"
#include "support/support_folder.h"
#include "tables/messages.h"

using namespace tests;
using QmLayerMgr::LAYERINFO;
using support::Opened;
using ::testing::HasSubstr;

namespace {

LAYERINFO layerOf(const wchar_t* name, int color = 3, int lineWeight = 25)
{
    LAYERINFO layer;
    layer.name = name;
    layer.colorIndex = color;
    layer.lineWeight = lineWeight;
    layer.plottable = true;
    layer.measurement = KdDb::kMetric;
    return layer;
}

int make(LAYERINFO layer)
{
    return QmLayerMgr::CreateLayer(layer, drawing());
}

KdDbObjectId makeLayer(const wchar_t* name)
{
    EXPECT_EQ(make(layerOf(name)), 1);
    return QmLayerMgr::GetLayerId(name, drawing());
}

/// What the host keeps of a layer, as one line: colour, line weight, linetype, then 1 or 0 for off,
/// frozen in new viewports, frozen, locked, plottable.
std::string layerText(const wchar_t* name)
{
    LAYERINFO layer;
    layer.name = name;
    EXPECT_EQ(QmLayerMgr::GetLayerInfo(layer, drawing()), 1);
    CString text;
    text.Format(L"%d %d %s %d%d%d%d%d", layer.colorIndex, layer.lineWeight,
                layer.lineType.MakeUpper().GetString(), layer.off, layer.vpdflt, layer.frozen,
                layer.locked, layer.plottable);
    return narrow(text);
}

class LayersTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        folder_.use();
        folder_.write("korraiso.lin", "*A,metric\nA,10,-2\n");
        folder_.write("korra.lin", "*B,imperial alone\nA,3,-1\n*D,damaged\nA,three\n");
    }

    SupportFolder folder_;
};

TEST_F(LayersTest, AMadeLayerReadsBack)
{
    LAYERINFO layer = layerOf(L"Größe 图层");
    layer.off = layer.vpdflt = layer.locked = true;
    layer.lineType = L"A";
    EXPECT_EQ(make(layer), 1);
    EXPECT_EQ(layerText(L"GRößE 图层"), "3 25 A 11011");
    layer = layerOf(L"Frozen");
    layer.frozen = true;
    layer.plottable = false;
    EXPECT_EQ(make(layer), 1);
    EXPECT_EQ(layerText(L"Frozen"), "3 25 CONTINUOUS 00100");
    EXPECT_EQ(printed(), "");
}

TEST_F(LayersTest, WritesOnlyWhatTheHostKnows)
{
    struct {
        int color, lineWeight;
        const char* text;
    } const cases[] = {
        {0, 25, "7 25 CONTINUOUS 00001"},       {1, 0, "1 0 CONTINUOUS 00001"},
        {255, 211, "255 211 CONTINUOUS 00001"}, {256, 212, "7 -3 CONTINUOUS 00001"},
        {-4, 7, "7 -3 CONTINUOUS 00001"},       {-3, -1, "65533 -1 CONTINUOUS 00001"},
        {-1, -3, "65535 -3 CONTINUOUS 00001"},  {65535, -4, "7 -3 CONTINUOUS 00001"},
    };

    make(layerOf(L"Changed", 5));
    int number = 0;
    for (const auto& [color, lineWeight, text] : cases) {
        CString name;
        name.Format(L"Made %d", ++number);
        LAYERINFO layer = layerOf(name, color, lineWeight);
        EXPECT_EQ(make(layer), 1);
        EXPECT_EQ(layerText(name), text);
        layer.name = L"Changed";
        EXPECT_EQ(QmLayerMgr::ModifyLayer(layer, drawing()), 1);
        EXPECT_EQ(layerText(L"Changed"), text);
        EXPECT_EQ(layer.colorIndex, color) << "the description is only read";
    }
}

TEST_F(LayersTest, MakesNoLayerTwiceAndChangesNoneThatIsMissing)
{
    make(layerOf(L"Walls"));
    EXPECT_EQ(make(layerOf(L"WALLS", 5, 50)), -1);
    EXPECT_EQ(layerText(L"Walls"), "3 25 CONTINUOUS 00001");

    LAYERINFO missing = layerOf(L"Doors", 5, 50);
    missing.lineType = L"kept";
    EXPECT_EQ(QmLayerMgr::SetLayerInfo(missing, drawing()), -1);
    EXPECT_EQ(QmLayerMgr::ModifyLayer(missing, drawing()), -1);
    EXPECT_EQ(QmLayerMgr::GetLayerInfo(missing, drawing()), -1);
    EXPECT_EQ(missing.colorIndex, 5);
    EXPECT_EQ(missing.lineType, L"kept");
    EXPECT_EQ(QmLayerMgr::FindLayer(L"Doors", drawing()), 0);
    EXPECT_EQ(QmLayerMgr::FindLayer(L"walls", drawing()), 1);
}

TEST_F(LayersTest, FailsWithoutANameADatabaseOrATable)
{
    LAYERINFO zero = layerOf(L"0");
    EXPECT_EQ(make(layerOf(L"")), 0);
    for (auto [layer, database] : {std::pair(layerOf(nullptr), drawing()),
                                   std::pair(zero, static_cast<KdDbDatabase*>(nullptr))}) {
        EXPECT_EQ(QmLayerMgr::CreateLayer(layer, database), 0);
        EXPECT_EQ(QmLayerMgr::SetLayerInfo(layer, database), 0);
        EXPECT_EQ(QmLayerMgr::ModifyLayer(layer, database), 0);
        EXPECT_EQ(QmLayerMgr::GetLayerInfo(layer, database), 0);
    }
    {
        const Opened<KdDbObject> reader(drawing()->layerTableId(), KdDb::kForRead);
        EXPECT_EQ(make(layerOf(L"New")), 0) << "the table cannot be written";
    }
    const Opened<KdDbObject> writer(drawing()->layerTableId(), KdDb::kForWrite);
    EXPECT_EQ(make(layerOf(L"New")), 0);
    EXPECT_EQ(QmLayerMgr::SetLayerInfo(zero, drawing()), 0);
    EXPECT_EQ(QmLayerMgr::GetLayerInfo(zero, drawing()), 0);
}

TEST_F(LayersTest, ReadingOpensTheLayerForWriting)
{
    const Opened<KdDbObject> reader(makeLayer(L"Walls"), KdDb::kForRead);
    LAYERINFO layer = layerOf(L"Walls", 99);
    EXPECT_EQ(QmLayerMgr::GetLayerInfo(layer, drawing()), 0);
    EXPECT_EQ(layer.colorIndex, 99);
}

TEST_F(LayersTest, WithoutALinetypeTheOtherPropertiesAreReadAndWritten)
{
    makeLayer(L"Walls");
    LAYERINFO layer = layerOf(L"Walls", 5, 50);
    {
        const Opened<KdDbObject> writer(drawing()->linetypeTableId(), KdDb::kForWrite);
        EXPECT_EQ(QmLayerMgr::SetLayerInfo(layer, drawing()), 0);
    }
    EXPECT_EQ(layerText(L"Walls"), "5 50 CONTINUOUS 00001");

    layer = layerOf(L"Walls", 0, 0);
    layer.lineType = L"kept";
    const Opened<KdDbObject> writer(drawing()->continuousLinetype(), KdDb::kForWrite);
    EXPECT_EQ(QmLayerMgr::GetLayerInfo(layer, drawing()), 0);
    EXPECT_EQ(layer.colorIndex, 5);
    EXPECT_EQ(layer.lineType, L"kept");
}

// Linetypes of layers -----------------------------------------------------------------------------

/// Gives a new layer a linetype, by making it or by changing it.
std::string linetypeOf(bool byMaking, const wchar_t* linetype)
{
    LAYERINFO layer = layerOf(L"Walls");
    if (!byMaking)
        make(layer);
    layer.lineType = linetype;
    EXPECT_EQ(byMaking ? make(layer) : QmLayerMgr::SetLayerInfo(layer, drawing()), 1);
    CString name;
    EXPECT_EQ(QmLayerMgr::GetLayerLType(name, L"Walls", drawing()), 1);
    return narrow(name.MakeUpper());
}

TEST_F(LayersTest, LinetypesThatTheDrawingLacksAreLoadedElseContinuous)
{
    struct {
        const wchar_t* linetype;
        const char* used;
        std::string message;
    } const cases[] = {
        {L"B", "B", ""},
        {L"Zigzag", "CONTINUOUS",
         missingLinetype("Zigzag", folder_.pathOf("korraiso.lin"), folder_.pathOf("korra.lin"))},
        {L"D", "CONTINUOUS", ""},
    };

    for (const auto& [linetype, used, message] : cases) {
        for (const bool byMaking : {true, false}) {
            startFreshHost();
            folder_.use();
            EXPECT_EQ(linetypeOf(byMaking, linetype), used);
            EXPECT_EQ(printed(), message);
        }
    }
}

TEST_F(LayersTest, OnlyMakingTrimsTheNameAndSwitchesFileDialogsOff)
{
    EXPECT_THAT(tracedCalls([] { linetypeOf(true, L"B"); }),
                ::testing::Contains(HasSubstr("kdedSetVar(\"FILEDIA\"")).Times(2));
    LAYERINFO blank = layerOf(L"Walls");
    blank.lineType = L" B";
    EXPECT_THAT(tracedCalls([&] { EXPECT_EQ(QmLayerMgr::SetLayerInfo(blank, drawing()), 1); }),
                ::testing::Not(::testing::Contains(HasSubstr("FILEDIA"))));
    EXPECT_THAT(printed(), HasSubstr("Can't load \" B\" linetype"));
}

// Single properties -------------------------------------------------------------------------------

TEST_F(LayersTest, ColorsAre1WhereNoneCanBeRead)
{
    const KdDbObjectId walls = makeLayer(L"Walls");
    const auto resultAndColor = [](const auto&... layer) {
        unsigned short color = 9;
        const int result = QmLayerMgr::GetLayerColor(color, layer...);
        return std::pair(result, int(color));
    };
    EXPECT_EQ(resultAndColor(L"Walls", drawing()), std::pair(1, 3));
    EXPECT_EQ(resultAndColor(L"Doors", drawing()), std::pair(0, 1));
    EXPECT_EQ(resultAndColor(nullptr, drawing()), std::pair(0, 1));
    EXPECT_EQ(resultAndColor(KdDbObjectId()), std::pair(0, 1));
    const Opened<KdDbObject> writer(walls, KdDb::kForWrite);
    EXPECT_EQ(resultAndColor(walls), std::pair(0, 1));
}

TEST_F(LayersTest, ResultsTellNullUnknownAndUnreadableApart)
{
    const KdDbObjectId walls = makeLayer(L"Walls");
    CString linetype = L"kept";
    int weight = 99;
    EXPECT_EQ(QmLayerMgr::GetLayerLType(linetype, nullptr, drawing()), -1);
    EXPECT_EQ(QmLayerMgr::GetLayerLType(linetype, L"Doors", drawing()), 0);
    EXPECT_EQ(QmLayerMgr::IsLayerOn(nullptr, drawing()), -1);
    EXPECT_EQ(QmLayerMgr::IsLayerOn(L"Doors", drawing()), -1);
    EXPECT_EQ(QmLayerMgr::IsLayerOn(L"Walls", drawing()), 1);
    {
        const Opened<KdDbLayerTableRecord> writer(walls, KdDb::kForWrite);
        EXPECT_EQ(QmLayerMgr::GetLayerLType(linetype, L"Walls", drawing()), 0);
        EXPECT_EQ(QmLayerMgr::IsLayerOn(L"Walls", drawing()), 0);
        EXPECT_EQ(QmLayerMgr::GetLayerLWeight(weight, L"Walls", drawing()), 0);
        EXPECT_EQ(weight, 99);
        writer->setIsOff(true);
    }
    EXPECT_EQ(linetype, L"kept");
    EXPECT_EQ(QmLayerMgr::IsLayerOn(L"Walls", drawing()), 0);
}

TEST_F(LayersTest, TheDefaultLineWeightStandsForWhatHasNone)
{
    ASSERT_EQ(QmSysVarMgr::SetSysIntValue(60, L"LWDEFAULT"), 1);
    make(layerOf(L"Thin", 3, 5));
    make(layerOf(L"Default", 3, -3));

    const auto resultAndWeight = [](const auto&... layer) {
        int weight = 99;
        const int result = QmLayerMgr::GetLayerLWeight(weight, layer...);
        return std::pair(result, weight);
    };
    EXPECT_EQ(resultAndWeight(nullptr, drawing()), std::pair(0, 60));
    EXPECT_EQ(resultAndWeight(L"Doors", drawing()), std::pair(1, 60));
    EXPECT_EQ(resultAndWeight(L"Default", drawing()), std::pair(1, 60));
    EXPECT_EQ(resultAndWeight(L"Thin", drawing()), std::pair(1, 5));
    EXPECT_EQ(resultAndWeight(KdDbObjectId()), std::pair(0, 60));
}

TEST_F(LayersTest, CurrentEntityPropertiesStandForUnknownLayers)
{
    const KdDbObjectId walls = makeLayer(L"Walls");
    drawing()->setCecolor(colorOf(5));
    drawing()->setCelweight(KdDb::LineWeight(50));
    EXPECT_EQ(GetColorIndexFromLayer(L"Walls", drawing()), colorOf(3));
    EXPECT_EQ(GetColorIndexFromLayer(L"Doors", drawing()), colorOf(5));
    EXPECT_EQ(GetLineWeightFromLayer(L"Walls", drawing()), 25);
    EXPECT_EQ(GetLineWeightFromLayer(L"Doors", drawing()), 50);

    for (const KdDbObjectId unreadable : {walls, drawing()->layerTableId()}) {
        const Opened<KdDbObject> writer(unreadable, KdDb::kForWrite);
        EXPECT_EQ(GetColorIndexFromLayer(L"Walls", drawing()), KdCmColor());
        EXPECT_EQ(GetLineWeightFromLayer(L"Walls", drawing()), -3);
    }
}

TEST_F(LayersTest, AnEntityIsLockedByItsLayer)
{
    KdDbLine line({0, 0, 0}, {1, 0, 0});
    const KdDbObjectId walls = makeLayer(L"Walls");
    line.setLayer(walls);
    EXPECT_EQ(LayerIsLocked(&line), 0);
    EXPECT_EQ(LayerIsLocked(nullptr), 0);
    const Opened<KdDbLayerTableRecord> layer(walls, KdDb::kForWrite);
    layer->setIsLocked(true);
    EXPECT_EQ(LayerIsLocked(&line), 0) << "the layer cannot be read";
    layer->downgradeOpen();
    EXPECT_EQ(LayerIsLocked(&line), 1);
}

// Faults ------------------------------------------------------------------------------------------

TEST_F(LayersTest, LeaveNothingOpenWhateverFails)
{
    const auto walls = [&] { return folder_.use(), makeLayer(L"Walls"); };
    const auto nothing = [&] { return folder_.use(), 0; };
    LAYERINFO layer = layerOf(L"Walls");
    for (const wchar_t* name : {L"", L"B", L"Zigzag"}) {
        layer.lineType = name;
        sweepFaults<int>(nothing, [=](int) { make(layer); });
        sweepFaults<KdDbObjectId>(
            walls, [=](KdDbObjectId) { QmLayerMgr::SetLayerInfo(layer, drawing()); });
    }
    sweepFaults<KdDbObjectId>(walls, [](KdDbObjectId id) {
        LAYERINFO read = layerOf(L"Walls");
        QmLayerMgr::GetLayerInfo(read, drawing());
        unsigned short color = 0;
        QmLayerMgr::GetLayerColor(color, L"Walls", drawing());
        CString linetypeName;
        QmLayerMgr::GetLayerLType(linetypeName, L"Walls", drawing());
        int weight = 0;
        QmLayerMgr::GetLayerLWeight(weight, L"Walls", drawing());
        QmLayerMgr::GetLayerLWeight(weight, id);
        QmLayerMgr::IsLayerOn(L"Walls", drawing());
        GetColorIndexFromLayer(L"Walls", drawing());
        GetLineWeightFromLayer(L"Walls", drawing());
        KdDbLine line;
        line.setLayer(id);
        LayerIsLocked(&line);
    });
}

} // namespace
