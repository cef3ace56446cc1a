#include "orvex/layers.h"
#include "orvex/linetypes.h"
#include "orvex/system_variables.h"

#include "support/host_test.h"
#include "support/modules.h"
#include "support/opened.h"
#include "support/support_folder.h"

using namespace tests;
using QmLayerMgr::LAYERINFO;
using support::Opened;
using ::testing::HasSubstr;

namespace {

KdDbDatabase* drawing()
{
    return kddbHostApplicationServices()->workingDatabase();
}

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

/// What the host keeps of a layer, as one line.
std::string layerText(const wchar_t* name)
{
    LAYERINFO layer;
    layer.name = name;
    EXPECT_EQ(QmLayerMgr::GetLayerInfo(layer, drawing()), 1);
    CString text;
    text.Format(L"%d %d %s", layer.colorIndex, layer.lineWeight,
                layer.lineType.MakeUpper().GetString());
    for (const auto& [set, mark] : {std::pair{layer.off, L" off"},
                                    {layer.vpdflt, L" vpdflt"},
                                    {layer.frozen, L" frozen"},
                                    {layer.locked, L" locked"},
                                    {layer.plottable, L" plottable"}}) {
        if (set)
            text += mark;
    }
    return narrow(text);
}

class LayersTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        folder_.use();
        folder_.write("korraiso.lin", "*A,metric\nA,10,-2\n");
        folder_.write("korra.lin", "*A,imperial\nA,1,-0.5\n*B,imperial alone\nA,3,-1\n");
    }

    SupportFolder folder_;
};

TEST_F(LayersTest, AMadeLayerReadsBack)
{
    LAYERINFO layer = layerOf(L"Größe 图层");
    layer.off = layer.vpdflt = layer.locked = true;
    layer.lineType = L"A";
    EXPECT_EQ(make(layer), 1);
    EXPECT_EQ(layerText(L"GRößE 图层"), "3 25 A off vpdflt locked plottable");
    layer = layerOf(L"Frozen");
    layer.frozen = true;
    layer.plottable = false;
    EXPECT_EQ(make(layer), 1);
    EXPECT_EQ(layerText(L"Frozen"), "3 25 CONTINUOUS frozen");
    EXPECT_EQ(printed(), "");
}

TEST_F(LayersTest, WritesOnlyWhatTheHostKnows)
{
    struct {
        int color, lineWeight;
        const char* text;
    } const cases[] = {
        {0, 25, "7 25 CONTINUOUS plottable"},       {1, 0, "1 0 CONTINUOUS plottable"},
        {255, 211, "255 211 CONTINUOUS plottable"}, {256, 212, "7 -3 CONTINUOUS plottable"},
        {-4, 7, "7 -3 CONTINUOUS plottable"},       {-3, -1, "65533 -1 CONTINUOUS plottable"},
        {-1, -3, "65535 -3 CONTINUOUS plottable"},  {65535, -4, "7 -3 CONTINUOUS plottable"},
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
    EXPECT_EQ(layerText(L"Walls"), "3 25 CONTINUOUS plottable");

    LAYERINFO missing = layerOf(L"Doors", 5, 50);
    missing.lineType = L"kept";
    EXPECT_EQ(QmLayerMgr::SetLayerInfo(missing, drawing()), -1);
    EXPECT_EQ(QmLayerMgr::ModifyLayer(missing, drawing()), -1);
    EXPECT_EQ(QmLayerMgr::GetLayerInfo(missing, drawing()), -1);
    EXPECT_EQ(missing.colorIndex, 5);
    EXPECT_EQ(missing.lineType, L"kept");
    EXPECT_EQ(QmLayerMgr::FindLayer(L"Doors", drawing()), 0);
}

TEST_F(LayersTest, FailsWithoutANameADatabaseOrATable)
{
    LAYERINFO nameless = layerOf(nullptr);
    LAYERINFO zero = layerOf(L"0");
    LAYERINFO empty = layerOf(L"");
    EXPECT_EQ(make(empty), 0);
    for (LAYERINFO* layer : {&nameless, &zero}) {
        KdDbDatabase* const database = layer == &nameless ? drawing() : nullptr;
        EXPECT_EQ(QmLayerMgr::CreateLayer(*layer, database), 0);
        EXPECT_EQ(QmLayerMgr::SetLayerInfo(*layer, database), 0);
        EXPECT_EQ(QmLayerMgr::ModifyLayer(*layer, database), 0);
        EXPECT_EQ(QmLayerMgr::GetLayerInfo(*layer, database), 0);
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
    EXPECT_EQ(layerText(L"Walls"), "5 50 CONTINUOUS plottable");

    layer = layerOf(L"Walls", 0, 0);
    layer.lineType = L"kept";
    const Opened<KdDbObject> writer(drawing()->continuousLinetype(), KdDb::kForWrite);
    EXPECT_EQ(QmLayerMgr::GetLayerInfo(layer, drawing()), 0);
    EXPECT_EQ(layer.colorIndex, 5);
    EXPECT_EQ(layer.lineType, L"kept");
}

// Linetypes of layers -----------------------------------------------------------------------------

/// Gives a new layer a linetype, by making it or by changing it.
std::string linetypeOf(bool byMaking, const wchar_t* linetype, KdDb::MeasurementValue measurement)
{
    LAYERINFO layer = layerOf(L"Walls");
    if (!byMaking)
        make(layer);
    layer.lineType = linetype;
    layer.measurement = measurement;
    EXPECT_EQ(byMaking ? make(layer) : QmLayerMgr::SetLayerInfo(layer, drawing()), 1);
    CString name;
    EXPECT_EQ(QmLayerMgr::GetLayerLType(name, L"Walls", drawing()), 1);
    return narrow(name.MakeUpper());
}

TEST_F(LayersTest, LinetypesThatTheDrawingLacksAreLoaded)
{
    for (const bool byMaking : {true, false}) {
        startFreshHost();
        folder_.use();
        EXPECT_EQ(linetypeOf(byMaking, L"B", KdDb::kMetric), "B");
        EXPECT_EQ(printed(), "");
    }
}

TEST_F(LayersTest, LinetypesInNoFileAreContinuousWithAMessage)
{
    const std::string message =
        "Can't load \"Zigzag\" linetype in file " + folder_.pathOf("korra.lin") + " or " +
        folder_.pathOf("korraiso.lin") + ", this type line type undefined !\n";
    for (const bool byMaking : {true, false}) {
        startFreshHost();
        folder_.use();
        EXPECT_EQ(linetypeOf(byMaking, L"Zigzag", KdDb::kEnglish), "CONTINUOUS");
        EXPECT_EQ(printed(), message);
    }
}

TEST_F(LayersTest, FilesThatAreMissingAreToldByBoth)
{
    for (const bool byMaking : {true, false}) {
        startFreshHost();
        EXPECT_EQ(linetypeOf(byMaking, L"B", KdDb::kMetric), "CONTINUOUS");
        EXPECT_EQ(printed(), "\nlineType file \"korraiso.lin\" scan not be found！"
                             "\nlineType file \"korra.lin\" scan not be found！"
                             "Can't load \"B\" linetype in file  or , this type line type "
                             "undefined !\n");
    }
}

TEST_F(LayersTest, DamagedDefinitionsAreContinuousWithoutAMessage)
{
    folder_.write("korra.lin", "*B,damaged\nA,three\n");
    EXPECT_EQ(linetypeOf(false, L"B", KdDb::kEnglish), "CONTINUOUS");
    EXPECT_EQ(printed(), "");
}

TEST_F(LayersTest, OnlyMakingTrimsTheNameAndSwitchesFileDialogsOff)
{
    EXPECT_THAT(tracedCalls([] { linetypeOf(true, L"B", KdDb::kMetric); }),
                ::testing::Contains(HasSubstr("kdedSetVar(\"FILEDIA\"")).Times(2));
    EXPECT_THAT(tracedCalls([] {
                    LAYERINFO layer = layerOf(L"Walls");
                    layer.lineType = L"A";
                    EXPECT_EQ(QmLayerMgr::SetLayerInfo(layer, drawing()), 1);
                }),
                ::testing::Not(::testing::Contains(HasSubstr("FILEDIA"))));

    LAYERINFO blank = layerOf(L"Walls");
    blank.lineType = L" B";
    EXPECT_EQ(QmLayerMgr::SetLayerInfo(blank, drawing()), 1);
    EXPECT_THAT(printed(), HasSubstr("Can't load \" B\" linetype"));
}

// Single properties -------------------------------------------------------------------------------

TEST_F(LayersTest, IdsAreThoseOfTheTable)
{
    const KdDbObjectId walls = makeLayer(L"Walls");
    KdDbObjectId id = walls;
    EXPECT_EQ(QmLayerMgr::GetLayerId(id, nullptr, drawing()), 0);
    EXPECT_EQ(id, walls) << "untouched";
    EXPECT_EQ(QmLayerMgr::GetLayerId(id, L"Doors", drawing()), 0);
    EXPECT_TRUE(id.isNull());
    EXPECT_EQ(QmLayerMgr::GetLayerId(id, L"walls", drawing()), 1);
    EXPECT_EQ(id, walls);
    EXPECT_EQ(QmLayerMgr::LayerIsExist(L"walls", drawing()), 1);
    EXPECT_EQ(QmLayerMgr::LayerIsExist(nullptr, drawing()), 0);

    Opened<KdDbObject>(walls, KdDb::kForWrite)->erase();
    EXPECT_EQ(QmLayerMgr::FindLayer(L"Walls", drawing()), 0);
}

TEST_F(LayersTest, ColorsAre1WhereNoneCanBeRead)
{
    const KdDbObjectId walls = makeLayer(L"Walls");
    unsigned short color = 0;
    EXPECT_EQ(QmLayerMgr::GetLayerColor(color, L"Walls", drawing()), 1);
    EXPECT_EQ(color, 3);
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"Doors"}) {
        color = 9;
        EXPECT_EQ(QmLayerMgr::GetLayerColor(color, name, drawing()), 0);
        EXPECT_EQ(color, 1);
    }
    const Opened<KdDbObject> writer(walls, KdDb::kForWrite);
    for (const KdDbObjectId id : {walls, KdDbObjectId()}) {
        color = 9;
        EXPECT_EQ(QmLayerMgr::GetLayerColor(color, id), 0);
        EXPECT_EQ(color, 1);
    }
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

    struct {
        const wchar_t* name;
        int result, weight;
    } const cases[] = {{nullptr, 0, 60}, {L"Doors", 1, 60}, {L"Default", 1, 60}, {L"Thin", 1, 5}};

    for (const auto& [name, result, expected] : cases) {
        int weight = 99;
        EXPECT_EQ(QmLayerMgr::GetLayerLWeight(weight, name, drawing()), result);
        EXPECT_EQ(weight, expected);
    }
    int weight = 99;
    EXPECT_EQ(QmLayerMgr::GetLayerLWeight(weight, KdDbObjectId()), 0);
    EXPECT_EQ(weight, 60);
}

TEST_F(LayersTest, TheCurrentLayerGoesByName)
{
    makeLayer(L"Walls");
    EXPECT_EQ(QmLayerMgr::GetCurrentLayer(drawing()), L"0");
    EXPECT_EQ(QmLayerMgr::SetCurrentLayer(L"WALLS", drawing()), 1);
    EXPECT_EQ(QmLayerMgr::GetCurrentLayer(drawing()), L"Walls");
    EXPECT_EQ(QmLayerMgr::SetCurrentLayer(L"Doors", drawing()), 0);
    EXPECT_EQ(QmLayerMgr::GetCurrentLayer(drawing()), L"Walls");
    const Opened<KdDbObject> writer(drawing()->clayer(), KdDb::kForWrite);
    EXPECT_EQ(QmLayerMgr::GetCurrentLayer(drawing()), L"");
}

TEST_F(LayersTest, ListsEveryNameBehindWhatIsThere)
{
    makeLayer(L"图层");
    CStringArray names;
    names.Add(L"one");
    names.Add(L"two");
    EXPECT_EQ(QmLayerMgr::GetLayerNameFromDrawing(names, nullptr), 0);
    EXPECT_EQ(QmLayerMgr::GetLayerNameFromDrawing(names, drawing()), 1);
    ASSERT_EQ(names.GetSize(), 4);
    EXPECT_EQ(names[0] + names[1] + names[2] + names[3], L"onetwo0图层");
}

TEST_F(LayersTest, CurrentEntityPropertiesStandForUnknownLayers)
{
    const KdDbObjectId walls = makeLayer(L"Walls");
    KdCmColor green;
    green.setColorIndex(3);
    KdCmColor blue;
    blue.setColorIndex(5);
    drawing()->setCecolor(blue);
    drawing()->setCelweight(KdDb::LineWeight(50));
    EXPECT_EQ(GetColorIndexFromLayer(L"Walls", drawing()), green);
    EXPECT_EQ(GetColorIndexFromLayer(L"Doors", drawing()), blue);
    EXPECT_EQ(GetLineWeightFromLayer(L"Walls", drawing()), 25);
    EXPECT_EQ(GetLineWeightFromLayer(L"Doors", drawing()), 50);

    const auto unreadable = [](KdDbObjectId id) {
        const Opened<KdDbObject> writer(id, KdDb::kForWrite);
        EXPECT_EQ(GetColorIndexFromLayer(L"Walls", drawing()), KdCmColor());
        EXPECT_EQ(GetLineWeightFromLayer(L"Walls", drawing()), -3);
    };
    unreadable(walls);
    unreadable(drawing()->layerTableId());
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
    const auto linetype = [](const wchar_t* name) {
        LAYERINFO layer = layerOf(L"Walls");
        layer.lineType = name;
        return layer;
    };
    const auto nothing = [&] { return folder_.use(), 0; };
    for (const wchar_t* name : {L"", L"B", L"Zigzag"}) {
        sweepFaults<int>(nothing, [=](int) { make(linetype(name)); });
        sweepFaults<KdDbObjectId>(
            walls, [=](KdDbObjectId) { QmLayerMgr::SetLayerInfo(linetype(name), drawing()); });
    }
    sweepFaults<KdDbObjectId>(walls, [](KdDbObjectId id) {
        LAYERINFO layer = layerOf(L"Walls");
        QmLayerMgr::GetLayerInfo(layer, drawing());
        unsigned short color = 0;
        QmLayerMgr::GetLayerColor(color, L"Walls", drawing());
        CString linetypeName;
        QmLayerMgr::GetLayerLType(linetypeName, L"Walls", drawing());
        int weight = 0;
        QmLayerMgr::GetLayerLWeight(weight, L"Walls", drawing());
        QmLayerMgr::GetLayerLWeight(weight, id);
    });
    sweepFaults<KdDbObjectId>(walls, [](KdDbObjectId) {
        CStringArray names;
        QmLayerMgr::GetLayerNameFromDrawing(names, drawing());
        QmLayerMgr::SetCurrentLayer(L"Walls", drawing());
        QmLayerMgr::GetCurrentLayer(drawing());
        QmLayerMgr::IsLayerOn(L"Walls", drawing());
        GetColorIndexFromLayer(L"Walls", drawing());
        GetLineWeightFromLayer(L"Walls", drawing());
    });
}

} // namespace
