#include "orvex/savers.h"

#include "support/named_records.h"
#include "support/room_test.h"

#include <memory>

namespace {

/// The current layer, text style and dimension style.
std::vector<std::string> current()
{
    return {narrow(QmLayerMgr::GetCurrentLayer(drawing())),
            narrow(TxtStyleMgr::GetCurrentTextStyle(drawing())),
            narrow(DimStyleMgr::GetCurrentDimStyle(drawing()))};
}

void setCurrent(const wchar_t* name)
{
    EXPECT_EQ(QmLayerMgr::SetCurrentLayer(name, drawing()), 1);
    EXPECT_EQ(TxtStyleMgr::SetCurrentTextStyle(name, drawing()), 1);
    EXPECT_EQ(DimStyleMgr::SetCurrentDimStyle(name, 1, nullptr), 1);
}

/// Sets the current variable aside from the current style.
void setTextHeight(double height)
{
    KdDbDimStyleTableRecord variables;
    drawing()->getDimstyleData(&variables);
    variables.setDimtxt(height);
    drawing()->setDimstyleData(&variables);
}

/// Adds what the savers switch to.
void addTables()
{
    addNamedRecords(L"First", 1);
    addNamedRecords(L"Second", 2);
    setCurrent(L"First");
    korra::takePrintedText();
}

/// One saver of each kind.
struct Savers {
    Savers() = default;

    explicit Savers(const wchar_t* name) : layer(name), textStyle(name), dimStyle(name) {}

    CQM_LayerServer layer;
    CQM_TextStyleServer textStyle;
    CQM_DimStyleServer dimStyle;
};

class TableSaversTest : public HostTest {
protected:
    TableSaversTest() { addTables(); }
};

TEST_F(TableSaversTest, NestedSaversEndWithWhatTheOutermostFound)
{
    setTextHeight(7.5);
    try {
        const Savers outer(L"Second");
        EXPECT_THAT(current(), Each("Second"));
        EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), 2);
        const Savers inner(L"First");
        EXPECT_THAT(current(), Each("First"));
        throw 1;
    } catch (int) {
    }
    EXPECT_THAT(current(), Each("First"));
    EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), 7.5) << "what differs from the style";
}

TEST_F(TableSaversTest, SaversWithoutANameAndWithAnUnknownOneOnlyPutBack)
{
    setTextHeight(7.5);
    for (const wchar_t* name : {static_cast<const wchar_t*>(nullptr), L"Lost"}) {
        {
            const Savers savers = name ? Savers(name) : Savers();
            EXPECT_THAT(current(), Each("First"));
            EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), 7.5);
            setCurrent(L"Second");
        }
        EXPECT_THAT(current(), Each("First"));
        EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), 7.5);
    }
}

TEST_F(TableSaversTest, RestoreIntoTheDatabaseThatIsWorkingThen)
{
    KdDbDatabase& first = database();
    kddbHostApplicationServices()->setWorkingDatabase(nullptr);
    Savers(L"Second"); // nothing happens
    kddbHostApplicationServices()->setWorkingDatabase(&first);
    EXPECT_THAT(current(), Each("First"));
    KdDbDatabase other;
    {
        const Savers savers(L"Second");
        const CQM_OrthomodeServer ortho;
        kddbHostApplicationServices()->setWorkingDatabase(&other);
        addTables();
        setCurrent(L"Second");
        other.setOrthomode(true);
    }
    EXPECT_THAT(current(), Each("First"));
    EXPECT_FALSE(other.orthomode());
    kddbHostApplicationServices()->setWorkingDatabase(&first);
    EXPECT_THAT(current(), Each("Second"));
}

TEST_F(TableSaversTest, CopiesRestoreOnceMoreAndChangeNothingThemselves)
{
    setTextHeight(7.5);
    auto original = std::make_unique<CQM_DimStyleServer>(L"Second");
    auto copy = std::make_unique<CQM_DimStyleServer>(*original);
    EXPECT_EQ(current().back(), "Second");
    original.reset();
    EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), 7.5);
    auto assigned = std::make_unique<CQM_DimStyleServer>();
    *assigned = *copy;
    *assigned = *assigned;
    for (auto* saver : {&copy, &assigned}) {
        setCurrent(L"Second");
        saver->reset();
        EXPECT_EQ(current().back(), "First");
        EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), 7.5);
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
    EXPECT_DOUBLE_EQ(currentDimensionTextHeight(), 1) << "the style's own";
}

TEST_F(TableSaversTest, DimensionStylesAreKeptAndRestoredInOneOrder)
{
    std::vector<std::string> steps =
        tracedOperations([] { const CQM_DimStyleServer saver(L"Second"); });
    std::erase_if(steps, [](const std::string& step) {
        return step.find("Dimstyle") == step.npos && !step.ends_with("::getName");
    });
    const std::string set = "KdDbDatabase::setDimstyle", setData = "KdDbDatabase::setDimstyleData";
    EXPECT_THAT(steps,
                ElementsAre("KdDbDatabase::getDimstyleData", "KdDbSymbolTableRecord::getName", set,
                            setData, set, setData, setData));
}

} // namespace
