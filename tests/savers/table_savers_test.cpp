#include "orvex/dim_styles.h"
#include "orvex/layers.h"
#include "orvex/savers.h"
#include "orvex/text_styles.h"

#include "support/host_test.h"
#include "support/modules.h"

#include <memory>

using namespace tests;
using ::testing::ElementsAre;
using ::testing::StartsWith;

namespace {

KdDbDatabase* working()
{
    return kddbHostApplicationServices()->workingDatabase();
}

CString layer()
{
    return QmLayerMgr::GetCurrentLayer(working());
}

CString textStyle()
{
    return TxtStyleMgr::GetCurrentTextStyle(working());
}

CString dimStyle()
{
    return DimStyleMgr::GetCurrentDimStyle(working());
}

/// Height of dimension texts by the current variables.
double textHeight()
{
    KdDbDimStyleTableRecord variables;
    EXPECT_EQ(working()->getDimstyleData(&variables), Kdapi::eOk);
    return variables.dimtxt();
}

/// Sets the current variable aside from the current style.
void setTextHeight(double height)
{
    KdDbDimStyleTableRecord variables;
    working()->getDimstyleData(&variables);
    variables.setDimtxt(height);
    working()->setDimstyleData(&variables);
}

/// Adds what the savers switch to: a layer, a text style and a dimension style for each name.
void addTables()
{
    for (const wchar_t* name : {L"First", L"Second"}) {
        QmLayerMgr::LAYERINFO info;
        info.name = name;
        EXPECT_EQ(QmLayerMgr::CreateLayer(info, working()), 1);
        EXPECT_EQ(TxtStyleMgr::CreateTextStyle(name, 1, 0, 1, L"", L"", L"DejaVu Sans", working()),
                  1);
    }
    EXPECT_EQ(DimStyleMgr::CreateDimStyle(L"First", L"", 1, 0, 2, 0, 2, 1, 0, 1, nullptr), 1);
    EXPECT_EQ(DimStyleMgr::CreateDimStyle(L"Second", L"", 2, 0, 2, 0, 2, 1, 0, 1, nullptr), 1);
    QmLayerMgr::SetCurrentLayer(L"First", working());
    TxtStyleMgr::SetCurrentTextStyle(L"First", working());
    DimStyleMgr::SetCurrentDimStyle(L"First", 1, nullptr);
    korra::takePrintedText();
}

class TableSaversTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        addTables();
    }
};

void expectCurrent(const wchar_t* name)
{
    EXPECT_EQ(layer(), name);
    EXPECT_EQ(textStyle(), name);
    EXPECT_EQ(dimStyle(), name);
}

TEST_F(TableSaversTest, NestedSaversEndWithWhatTheOutermostFound)
{
    setTextHeight(7.5);
    try {
        const CQM_LayerServer layers(L"Second");
        const CQM_TextStyleServer texts(L"Second");
        const CQM_DimStyleServer dimensions(L"Second");
        expectCurrent(L"Second");
        EXPECT_DOUBLE_EQ(textHeight(), 2);
        const CQM_LayerServer innerLayers(L"0");
        const CQM_TextStyleServer innerTexts(L"Standard");
        const CQM_DimStyleServer innerDimensions(L"Standard");
        EXPECT_EQ(layer(), L"0");
        throw 1;
    } catch (int) {
    }
    expectCurrent(L"First");
    EXPECT_DOUBLE_EQ(textHeight(), 7.5) << "what differs from the style";
}

TEST_F(TableSaversTest, UnknownNamesChangeNothingAndComeBackAllTheSame)
{
    {
        const CQM_LayerServer layers(L"Lost");
        const CQM_TextStyleServer texts(L"Lost");
        const CQM_DimStyleServer dimensions(L"Lost");
        expectCurrent(L"First");
        QmLayerMgr::SetCurrentLayer(L"Second", working());
        TxtStyleMgr::SetCurrentTextStyle(L"Second", working());
        DimStyleMgr::SetCurrentDimStyle(L"Second", 1, nullptr);
    }
    expectCurrent(L"First");
    EXPECT_DOUBLE_EQ(textHeight(), 1);
}

TEST_F(TableSaversTest, SaversWithoutANameOnlyPutBack)
{
    setTextHeight(7.5);
    {
        const CQM_LayerServer layers;
        const CQM_TextStyleServer texts;
        const CQM_DimStyleServer dimensions;
        expectCurrent(L"First");
        EXPECT_DOUBLE_EQ(textHeight(), 7.5);
        QmLayerMgr::SetCurrentLayer(L"Second", working());
        TxtStyleMgr::SetCurrentTextStyle(L"Second", working());
        DimStyleMgr::SetCurrentDimStyle(L"Second", 1, nullptr);
    }
    expectCurrent(L"First");
    EXPECT_DOUBLE_EQ(textHeight(), 7.5);
}

TEST_F(TableSaversTest, RestoreIntoTheDatabaseThatIsWorkingThen)
{
    KdDbDatabase& first = database();
    KdDbDatabase other;
    {
        const CQM_LayerServer layers(L"Second");
        kddbHostApplicationServices()->setWorkingDatabase(&other);
        addTables();
        QmLayerMgr::SetCurrentLayer(L"0", &other);
    }
    EXPECT_EQ(layer(), L"First");
    kddbHostApplicationServices()->setWorkingDatabase(&first);
    EXPECT_EQ(layer(), L"Second");
}

TEST_F(TableSaversTest, WithoutADatabaseNothingHappens)
{
    KdDbDatabase* const before = working();
    kddbHostApplicationServices()->setWorkingDatabase(nullptr);
    {
        const CQM_LayerServer layers(L"Second");
        const CQM_TextStyleServer texts(L"Second");
        const CQM_DimStyleServer dimensions(L"Second");
    }
    kddbHostApplicationServices()->setWorkingDatabase(before);
    expectCurrent(L"First");
}

TEST_F(TableSaversTest, DimensionStylesAreKeptAndRestoredInOneOrder)
{
    const std::vector<std::string_view> steps = {
        "KdDbDatabase::getDimstyleData", "KdDbSymbolTableRecord::getName",
        "KdDbDatabase::setDimstyle", "KdDbDatabase::setDimstyleData"};
    EXPECT_THAT(only(tracedCalls([] { const CQM_DimStyleServer saver(L"Second"); }), steps),
                ElementsAre(StartsWith("KdDbDatabase::getDimstyleData("),
                            StartsWith("KdDbSymbolTableRecord::getName("),
                            StartsWith("KdDbDatabase::setDimstyle("),
                            StartsWith("KdDbDatabase::setDimstyleData("),
                            StartsWith("KdDbDatabase::setDimstyle("),
                            StartsWith("KdDbDatabase::setDimstyleData("),
                            StartsWith("KdDbDatabase::setDimstyleData(")));
}

TEST_F(TableSaversTest, CopiesRestoreOnceMoreAndChangeNothingThemselves)
{
    setTextHeight(7.5);
    auto original = std::make_unique<CQM_DimStyleServer>(L"Second");
    std::unique_ptr<CQM_DimStyleServer> copy, assigned;
    EXPECT_THAT(only(tracedCalls([&] { copy = std::make_unique<CQM_DimStyleServer>(*original); }),
                     {"KdDbDatabase::setDimstyle", "KdDbDatabase::setDimstyleData",
                      "KdDbDatabase::getDimstyleData"}),
                ::testing::IsEmpty());
    original.reset();
    EXPECT_DOUBLE_EQ(textHeight(), 7.5);
    assigned = std::make_unique<CQM_DimStyleServer>();
    *assigned = *copy;
    *assigned = *assigned;
    for (auto* saver : {&copy, &assigned}) {
        DimStyleMgr::SetCurrentDimStyle(L"Second", 1, nullptr);
        saver->reset();
        EXPECT_EQ(dimStyle(), L"First");
        EXPECT_DOUBLE_EQ(textHeight(), 7.5);
    }
}

TEST_F(TableSaversTest, VariablesThatCouldNotBeReadAreNotWrittenBack)
{
    setTextHeight(7.5);
    platform::failCall(1, platform::Fault::status);
    {
        const CQM_DimStyleServer saver;
        EXPECT_TRUE(platform::faultDelivered());
    }
    EXPECT_DOUBLE_EQ(textHeight(), 1) << "the style's own";
}

TEST_F(TableSaversTest, LeaveNothingOpenWhateverFails)
{
    const auto tables = [] { return addTables(), 0; };
    sweepFaults<int>(tables, [](int) { const CQM_LayerServer saver(L"Second"); });
    sweepFaults<int>(tables, [](int) { const CQM_TextStyleServer saver(L"Second"); });
    sweepFaults<int>(tables, [](int) {
        const CQM_DimStyleServer saver(L"Second");
        CQM_DimStyleServer copy(saver);
        copy = saver;
    });
}

} // namespace
