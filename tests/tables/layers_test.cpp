#include "orvex/layers.h"
#include "orvex/system_variables.h"

#include "tables/linetype_files_test.h"
#include "tables/messages.h"

using QmLayerMgr::LAYERINFO;

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

/// What changing a layer, by either name, reading it and at last making it come to.
std::vector<int> results(LAYERINFO layer, KdDbDatabase* database = drawing())
{
    return {QmLayerMgr::SetLayerInfo(layer, database), QmLayerMgr::ModifyLayer(layer, database),
            QmLayerMgr::GetLayerInfo(layer, database), QmLayerMgr::CreateLayer(layer, database)};
}

class LayersTest : public LinetypeFilesTest {};

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
    const std::tuple<int, int, std::string> cases[] = {
        {0, 25, "7 25"}, {1, 0, "1 0"},        {255, 211, "255 211"}, {256, 212, "7 -3"},
        {-4, 7, "7 -3"}, {-3, -1, "65533 -1"}, {-1, -3, "65535 -3"},  {65535, -4, "7 -3"},
    };
    make(layerOf(L"Walls", 5));
    for (const auto& [color, lineWeight, written] : cases) {
        LAYERINFO layer = layerOf(L"Walls", color, lineWeight);
        EXPECT_EQ(QmLayerMgr::ModifyLayer(layer, drawing()), 1);
        EXPECT_EQ(layerText(L"Walls"), written + " CONTINUOUS 00001");
        EXPECT_EQ(layer.colorIndex, color) << "the description is only read";
    }
}

TEST_F(LayersTest, ResultsTellMissingLayersFromFailures)
{
    const KdDbObjectId walls = makeLayer(L"Walls");
    const LAYERINFO layer = layerOf(L"Walls");
    EXPECT_THAT(results(layerOf(L"WALLS", 5, 50)), ElementsAre(1, 1, 1, -1));
    EXPECT_EQ(layerText(L"Walls"), "5 50 CONTINUOUS 00001");
    EXPECT_THAT(results(layerOf(L"Doors")), ElementsAre(-1, -1, -1, 1));
    EXPECT_EQ(QmLayerMgr::FindLayer(L"doors", drawing()), 1);
    EXPECT_THAT(results(layerOf(L"")), ElementsAre(-1, -1, -1, 0));
    EXPECT_THAT(results(layerOf(nullptr)), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(results(layer, nullptr), ElementsAre(0, 0, 0, 0));
    {
        const Open<KdDbObject> reader(walls, KdDb::kForRead);
        EXPECT_THAT(results(layer), ElementsAre(0, 0, 0, -1)) << "reading opens it for writing";
    }
    {
        const Open<KdDbObject> reader(drawing()->layerTableId(), KdDb::kForRead);
        EXPECT_THAT(results(layerOf(L"New")), ElementsAre(-1, -1, -1, 0));
    }
    const Open<KdDbObject> writer(drawing()->layerTableId());
    EXPECT_THAT(results(layer), ElementsAre(0, 0, 0, 0));
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
    const std::tuple<const wchar_t*, const char*, std::string> cases[] = {
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

// Single properties -------------------------------------------------------------------------------

/// Result and value of the colour, the linetype and the line weight of a layer, whether it is on;
/// then its colour and line weight as entities take them.
std::string properties(const wchar_t* name)
{
    unsigned short color = 9;
    const int colorRead = QmLayerMgr::GetLayerColor(color, name, drawing());
    CString linetype = L"kept";
    const int linetypeRead = QmLayerMgr::GetLayerLType(linetype, name, drawing());
    int weight = 99;
    const int weightRead = QmLayerMgr::GetLayerLWeight(weight, name, drawing());
    CString text;
    text.Format(L"%d %d, %d %s, %d %d, %d; %d %d", colorRead, color, linetypeRead,
                linetype.GetString(), weightRead, weight, QmLayerMgr::IsLayerOn(name, drawing()),
                GetColorIndexFromLayer(name, drawing()).colorIndex(),
                GetLineWeightFromLayer(name, drawing()));
    return narrow(text);
}

/// The same while somebody writes to an object.
std::string propertiesWithout(KdDbObjectId unreadable, const wchar_t* name)
{
    const Open<KdDbObject> writer(unreadable);
    return properties(name);
}

TEST_F(LayersTest, EachPropertyTellsInItsOwnWayWhatCannotBeRead)
{
    ASSERT_EQ(QmSysVarMgr::SetSysIntValue(60, L"LWDEFAULT"), 1);
    drawing()->setCecolor(colorOf(5));
    drawing()->setCelweight(KdDb::LineWeight(50));
    LAYERINFO off = layerOf(L"Off", 1, -3);
    off.off = true;
    make(off);
    const KdDbObjectId walls = makeLayer(L"Walls");

    {
        const Open<KdDbObject> othersMayRead(drawing()->layerTableId(), KdDb::kForRead);
        EXPECT_EQ(properties(L"Walls"), "1 3, 1 Continuous, 1 25, 1; 3 25");
        EXPECT_EQ(properties(L"Off"), "1 1, 1 Continuous, 1 60, 0; 1 -3");
        EXPECT_EQ(properties(L"Doors"), "0 1, 0 kept, 1 60, -1; 5 50");
        EXPECT_EQ(properties(nullptr), "0 1, -1 kept, 0 60, -1; 5 50");
    }
    EXPECT_EQ(propertiesWithout(walls, L"Walls"), "0 1, 0 kept, 0 99, 0; 256 -3");
    EXPECT_EQ(propertiesWithout(drawing()->continuousLinetype(), L"Walls"),
              "1 3, 0 kept, 1 25, 1; 3 25");
    EXPECT_EQ(propertiesWithout(drawing()->layerTableId(), L"Walls"),
              "0 1, 0 kept, 1 60, -1; 256 -3");
}

TEST_F(LayersTest, AnEntityIsLockedByItsLayer)
{
    KdDbLine line({0, 0, 0}, {1, 0, 0});
    const KdDbObjectId walls = makeLayer(L"Walls");
    line.setLayer(walls);
    EXPECT_EQ(LayerIsLocked(&line), 0);
    Open<KdDbLayerTableRecord>(walls)->setIsLocked(true);
    EXPECT_EQ(LayerIsLocked(&line), 1);
    EXPECT_EQ(LayerIsLocked(nullptr), 0);
}

} // namespace
