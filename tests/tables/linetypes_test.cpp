#include "orvex/linetypes.h"
#include "orvex/system_variables.h"

#include "support/host_test.h"
#include "support/modules.h"
#include "support/opened.h"
#include "support/support_folder.h"

using namespace tests;
using support::Opened;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

// Both files define A, at different sizes; B and the damaged D are in one of them only.
constexpr const char* kMetricFile = "*A,metric\nA,10,-2\n*D,damaged\nA,ten\n";
constexpr const char* kImperialFile = "*A,imperial\nA,1,-0.5\n*B,imperial alone\nA,3,-1\n"
                                      "*D,whole\nA,1,-1\n";

KdDbDatabase* drawing()
{
    return kddbHostApplicationServices()->workingDatabase();
}

/// The length of a linetype's pattern; -1 when the drawing lacks it.
double patternLength(const wchar_t* name)
{
    KdDbObjectId id;
    if (QmLTypeMgr::GetLTypeId(id, name, drawing()) != Kdapi::eOk)
        return -1;
    return Opened<KdDbLinetypeTableRecord>(id, KdDb::kForRead)->patternLength();
}

int fileDialogs()
{
    int value = -1;
    QmSysVarMgr::GetSysIntValue(value, L"FILEDIA");
    return value;
}

class LinetypesTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        folder_.use();
    }

    void writeBothFiles() const
    {
        folder_.write("korraiso.lin", kMetricFile);
        folder_.write("korra.lin", kImperialFile);
    }

    int load(const wchar_t* name, KdDb::MeasurementValue measurement, int reload = 0) const
    {
        return QmLTypeMgr::LoadLType(name, measurement, drawing(), reload);
    }

    SupportFolder folder_;
};

TEST_F(LinetypesTest, LooksUpByNameInAnyCaseButNotTrimmed)
{
    EXPECT_EQ(QmLTypeMgr::IsLTypeExist(L"continuous", drawing()), 1);
    EXPECT_EQ(QmLTypeMgr::IsLTypeExist(L" Continuous", drawing()), 0);
    EXPECT_EQ(QmLTypeMgr::IsLTypeExist(L"", drawing()), 0);

    KdDbObjectId id;
    EXPECT_EQ(QmLTypeMgr::GetLTypeId(id, L"CONTINUOUS", drawing()), Kdapi::eOk);
    const KdDbObjectId continuous = drawing()->continuousLinetype();
    EXPECT_EQ(id, continuous);
    EXPECT_EQ(QmLTypeMgr::GetLTypeId(id, L"missing", drawing()), Kdapi::eKeyNotFound);
    EXPECT_EQ(id, continuous) << "untouched";
}

TEST_F(LinetypesTest, SaysWhyALinetypeHasNoId)
{
    const KdDbObjectId continuous = drawing()->continuousLinetype();
    KdDbObjectId id;
    {
        const Opened<KdDbLinetypeTableRecord> writer(continuous, KdDb::kForWrite);
        EXPECT_EQ(QmLTypeMgr::GetLTypeId(id, L"Continuous", drawing()), Kdapi::eWasOpenForWrite);
        EXPECT_EQ(QmLTypeMgr::IsLTypeExist(L"Continuous", drawing()), 1);
    }
    const Opened<KdDbObject> writer(drawing()->linetypeTableId(), KdDb::kForWrite);
    EXPECT_EQ(QmLTypeMgr::GetLTypeId(id, L"Continuous", drawing()), 16);
    EXPECT_EQ(QmLTypeMgr::IsLTypeExist(L"Continuous", drawing()), 0);
    CStringArray names;
    EXPECT_EQ(QmLTypeMgr::GetLTypeFromDrawing(names, drawing()), 0);
    EXPECT_TRUE(id.isNull());
}

TEST_F(LinetypesTest, ListsEveryNameBehindWhatIsThere)
{
    CStringArray names;
    names.Add(L"first");
    EXPECT_EQ(QmLTypeMgr::GetLTypeFromDrawing(names, nullptr), 0);
    EXPECT_EQ(QmLTypeMgr::GetLTypeFromDrawing(names, drawing()), 1);
    EXPECT_EQ(names[0], L"first");
    std::vector<std::string> listed;
    for (INT_PTR i = 1; i < names.GetSize(); ++i)
        listed.push_back(narrow(names[i].MakeUpper()));
    EXPECT_THAT(listed, ::testing::UnorderedElementsAre("BYBLOCK", "BYLAYER", "CONTINUOUS"));
}

struct Loading {
    const char* what;
    const wchar_t* name;
    KdDb::MeasurementValue measurement;
    int result;
    double length;
};

TEST_F(LinetypesTest, LoadsFromTheFileOfTheUnitsElseFromTheOther)
{
    const Loading cases[] = {
        {"metric first", L"A", KdDb::kMetric, 1, 12},
        {"imperial first", L"A", KdDb::kEnglish, 1, 1.5},
        {"any other number is imperial", L"A", KdDb::MeasurementValue(2), 1, 1.5},
        {"blanks around the name", L" \tA ", KdDb::kMetric, 1, 12},
        {"only in the other file", L"B", KdDb::kMetric, 1, 4},
        {"a damaged definition ends the search", L"D", KdDb::kMetric, 0, -1},
        {"blanks alone", L"  ", KdDb::kMetric, 0, -1},
        {"no name", L"", KdDb::kEnglish, 0, -1},
    };
    for (const Loading& loading : cases) {
        SCOPED_TRACE(loading.what);
        startFreshHost();
        folder_.use();
        writeBothFiles();
        EXPECT_EQ(load(loading.name, loading.measurement), loading.result);
        EXPECT_DOUBLE_EQ(patternLength(CString(loading.name).Trim()), loading.length);
        EXPECT_EQ(printed(), "");
        EXPECT_EQ(fileDialogs(), 1);
    }
}

TEST_F(LinetypesTest, LoadsAgainOnlyWhenTold)
{
    writeBothFiles();
    ASSERT_EQ(load(L"A", KdDb::kMetric), 1);
    EXPECT_THAT(tracedOperations([&] { EXPECT_EQ(load(L" a ", KdDb::kEnglish), 1); }),
                ::testing::Not(::testing::Contains("kdedFindFile")));
    EXPECT_DOUBLE_EQ(patternLength(L"A"), 12);
    EXPECT_EQ(load(L"A", KdDb::kEnglish, 1), 1);
    EXPECT_DOUBLE_EQ(patternLength(L"A"), 1.5);
}

TEST_F(LinetypesTest, SaysInWhichFilesALinetypeIsMissing)
{
    writeBothFiles();
    EXPECT_EQ(load(L" Zigzag", KdDb::kMetric), 0);
    EXPECT_EQ(printed(), "Can't load \"Zigzag\" linetype in file " +
                             folder_.pathOf("korraiso.lin") + " or " + folder_.pathOf("korra.lin") +
                             ", this type line type undefined !\n");
    EXPECT_EQ(load(L"Zigzag", KdDb::kEnglish), 0);
    EXPECT_THAT(printed(), HasSubstr("in file " + folder_.pathOf("korra.lin") + " or " +
                                     folder_.pathOf("korraiso.lin") + ","));
}

TEST_F(LinetypesTest, SaysWhichFileIsMissing)
{
    EXPECT_EQ(load(L"A", KdDb::kEnglish), 0);
    EXPECT_EQ(printed(), "\nlineType file \"korraiso.lin\" scan not be found！"
                         "\nlineType file \"korra.lin\" scan not be found！"
                         "Can't load \"A\" linetype in file  or , this type line type undefined "
                         "!\n");

    folder_.write("korra.lin", kImperialFile);
    EXPECT_EQ(load(L"B", KdDb::kMetric), 1);
    EXPECT_EQ(printed(), "\nlineType file \"korraiso.lin\" scan not be found！");

    EXPECT_EQ(load(L"Zigzag", KdDb::kEnglish), 0);
    EXPECT_EQ(printed(), "\nlineType file \"korraiso.lin\" scan not be found！"
                         "Can't load \"Zigzag\" linetype in file " +
                             folder_.pathOf("korra.lin") +
                             " or , this type line type undefined !\n");
}

TEST_F(LinetypesTest, FileDialogsAreOffWhileLoadingAlone)
{
    writeBothFiles();
    const auto calls = only(tracedCalls([&] { load(L"A", KdDb::kMetric); }),
                            {"kdedSetVar", "kdedFindFile", "KdDbDatabase::loadLineTypeFile"});
    ASSERT_EQ(calls.size(), 5u);
    EXPECT_THAT(calls.front(), HasSubstr("kdedSetVar(\"FILEDIA\""));
    EXPECT_THAT(calls[1], HasSubstr("korraiso.lin"));
    EXPECT_THAT(calls[2], HasSubstr("korra.lin"));
    EXPECT_THAT(calls.back(), HasSubstr("kdedSetVar(\"FILEDIA\""));
}

TEST_F(LinetypesTest, FileDialogsComeBackWhateverFails)
{
    writeBothFiles();
    platform::countCalls();
    load(L"A", KdDb::kMetric, 1);
    const std::size_t callsBeforeRestoring = platform::callsCounted() - 2;

    for (const platform::Fault fault : {platform::Fault::status, platform::Fault::thrown}) {
        for (std::size_t ordinal = 1; ordinal <= callsBeforeRestoring; ++ordinal) {
            startFreshHost();
            folder_.use();
            platform::failCall(ordinal, fault);
            try {
                load(L"A", KdDb::kMetric, 1);
            } catch (const platform::OrderedException&) {
            }
            EXPECT_TRUE(platform::faultDelivered());
            platform::releaseCalls();
            EXPECT_EQ(fileDialogs(), 1) << "call " << ordinal;
        }
    }
}

TEST_F(LinetypesTest, ExactlyTheHostsLineWeightsExist)
{
    std::vector<int> found;
    for (int weight = -10; weight <= 300; ++weight) {
        if (QmLineWeight::IsExistSysLWeight(weight) == 1)
            found.push_back(weight);
    }
    EXPECT_THAT(found, ElementsAre(-3, -2, -1, 0, 5, 9, 13, 15, 18, 20, 25, 30, 35, 40, 50, 53, 60,
                                   70, 80, 90, 100, 106, 120, 140, 158, 200, 211));
}

TEST_F(LinetypesTest, LeaveNothingOpenWhateverFails)
{
    writeBothFiles();
    const auto prepare = [&] { return folder_.use(), 0; };
    sweepFaults<int>(prepare, [&](int) {
        load(L"B", KdDb::kMetric);
        load(L"Zigzag", KdDb::kEnglish);
    });
    sweepFaults<int>(prepare, [&](int) {
        KdDbObjectId id;
        CStringArray names;
        QmLTypeMgr::IsLTypeExist(L"Continuous", drawing());
        QmLTypeMgr::GetLTypeId(id, L"Continuous", drawing());
        QmLTypeMgr::GetLTypeFromDrawing(names, drawing());
    });
}

} // namespace
