#include "orvex/linetypes.h"

#include "support/variables.h"
#include "tables/linetype_files_test.h"
#include "tables/messages.h"

#include <dlfcn.h>

namespace {

/// The length of a linetype's pattern; -1 when the drawing lacks it.
double patternLength(const wchar_t* name)
{
    KdDbObjectId id;
    if (QmLTypeMgr::GetLTypeId(id, name, drawing()) != Kdapi::eOk)
        return -1;
    return Open<KdDbLinetypeTableRecord>(id, KdDb::kForRead)->patternLength();
}

/// An operation of the host that one of this program stands before.
template <class Operation>
Operation* hostsOwn(const char* symbol)
{
    return reinterpret_cast<Operation*>(dlsym(RTLD_NEXT, symbol));
}

/// While it holds "FILEDIA" is the text "on", and no variable of the host's.
bool fileDialogsAreText = false;

/// What "FILEDIA" was set to.
std::vector<std::wstring> fileDialogsWritten;

class LinetypesTest : public LinetypeFilesTest {
protected:
    static int load(const wchar_t* name, KdDb::MeasurementValue measurement, int reload = 0)
    {
        return QmLTypeMgr::LoadLType(name, measurement, drawing(), reload);
    }
};

/// Whether the drawing has a linetype, and the status of its id.
std::pair<int, int> lookUp(const wchar_t* name)
{
    const KdDbObjectId continuous = drawing()->continuousLinetype();
    KdDbObjectId id;
    const Kdapi::ErrorStatus status = QmLTypeMgr::GetLTypeId(id, name, drawing());
    EXPECT_EQ(id, status == Kdapi::eOk ? continuous : KdDbObjectId()) << "else untouched";
    return {QmLTypeMgr::IsLTypeExist(name, drawing()), status};
}

TEST_F(LinetypesTest, LooksUpByNameInAnyCaseButNotTrimmed)
{
    EXPECT_EQ(lookUp(L"CONTINUOUS"), std::pair(1, 0));
    EXPECT_EQ(lookUp(L" Continuous"), std::pair(0, int(Kdapi::eKeyNotFound)));
    const Open<KdDbObject> writer(drawing()->continuousLinetype());
    EXPECT_EQ(lookUp(L"Continuous"), std::pair(1, int(Kdapi::eWasOpenForWrite)));
}

TEST_F(LinetypesTest, ListsEveryNameOfATableThatCanBeRead)
{
    CStringArray names;
    EXPECT_EQ(QmLTypeMgr::GetLTypeFromDrawing(names, drawing()), 1);
    const Open<KdDbObject> writer(drawing()->linetypeTableId());
    EXPECT_EQ(QmLTypeMgr::GetLTypeFromDrawing(names, drawing()), 0);
    ASSERT_EQ(names.GetSize(), 3);
    EXPECT_EQ(names[0] + names[1] + names[2], L"ByBlockByLayerContinuous");
}

TEST_F(LinetypesTest, LoadsFromTheFileOfTheUnitsElseFromTheOther)
{
    const std::tuple<const char*, const wchar_t*, KdDb::MeasurementValue, int, double> cases[] = {
        {"metric first", L"A", KdDb::kMetric, 1, 12},
        {"imperial first", L"A", KdDb::kEnglish, 1, 1.5},
        {"any other number is imperial", L"A", KdDb::MeasurementValue(2), 1, 1.5},
        {"blanks around the name", L" \tA ", KdDb::kMetric, 1, 12},
        {"only in the other file", L"B", KdDb::kMetric, 1, 4},
        {"a damaged definition ends the search", L"D", KdDb::kMetric, 0, -1},
        {"blanks alone", L"  ", KdDb::kMetric, 0, -1},
    };

    for (const auto& [what, name, measurement, result, length] : cases) {
        SCOPED_TRACE(what);
        startFreshHost();
        folder_.use();
        EXPECT_EQ(load(name, measurement), result);
        EXPECT_DOUBLE_EQ(patternLength(CString(name).Trim()), length);
        EXPECT_EQ(printed(), "");
        EXPECT_EQ(variable(L"FILEDIA"), "1");
    }
}

TEST_F(LinetypesTest, LoadsAgainOnlyWhenTold)
{
    ASSERT_EQ(load(L"A", KdDb::kMetric), 1);
    EXPECT_THAT(tracedOperations([&] { EXPECT_EQ(load(L" a ", KdDb::kEnglish), 1); }),
                Not(Contains("kdedFindFile")));
    EXPECT_DOUBLE_EQ(patternLength(L"A"), 12);
    fileDialogsWritten.clear();
    EXPECT_EQ(load(L"A", KdDb::kEnglish, 1), 1);
    EXPECT_DOUBLE_EQ(patternLength(L"A"), 1.5);
    EXPECT_THAT(fileDialogsWritten, ElementsAre(L"0", L"1")) << "off and on";
}

TEST_F(LinetypesTest, SaysWhichFilesAreMissingAndInWhichALinetypeIs)
{
    const std::string metric = folder_.pathOf("korraiso.lin");
    const std::string imperial = folder_.pathOf("korra.lin");
    EXPECT_EQ(load(L" Zigzag", KdDb::kMetric), 0);
    EXPECT_EQ(printed(), missingLinetype("Zigzag", metric, imperial));
    EXPECT_EQ(load(L"Zigzag", KdDb::kEnglish), 0);
    EXPECT_EQ(printed(), missingLinetype("Zigzag", imperial, metric));

    const SupportFolder alone;
    startFreshHost();
    alone.use();
    alone.write("korra.lin", kImperialLinetypes);
    const std::string noMetricFile = "\nlineType file \"korraiso.lin\" scan not be found！";
    EXPECT_EQ(load(L"B", KdDb::kMetric), 1);
    EXPECT_EQ(printed(), noMetricFile);
    EXPECT_EQ(load(L"Zigzag", KdDb::kEnglish), 0);
    EXPECT_EQ(printed(), noMetricFile + missingLinetype("Zigzag", alone.pathOf("korra.lin"), ""));
}

TEST_F(LinetypesTest, FileDialogsThatAreATextComeBackAsText)
{
    fileDialogsWritten.clear();
    fileDialogsAreText = true;
    EXPECT_EQ(load(L"A", KdDb::kMetric), 1);
    fileDialogsAreText = false;
    EXPECT_THAT(fileDialogsWritten, ElementsAre(L"on"));
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

} // namespace

// These two stand before the host's in this program.

int kdedGetVar(const wchar_t* name, resbuf* result)
{
    if (!fileDialogsAreText || std::wstring_view(name) != L"FILEDIA")
        return hostsOwn<decltype(kdedGetVar)>("_Z10kdedGetVarPKwP6resbuf")(name, result);
    result->restype = RTSTR;
    result->resval.rstring = kdapi_copyString(L"on");
    return RTNORM;
}

int kdedSetVar(const wchar_t* name, const resbuf* value)
{
    const bool isFileDialogs = std::wstring_view(name) == L"FILEDIA";
    if (isFileDialogs)
        fileDialogsWritten.push_back(value->restype == RTSTR ? value->resval.rstring
                                                             : std::to_wstring(value->resval.rint));
    return isFileDialogs && fileDialogsAreText
               ? RTNORM
               : hostsOwn<decltype(kdedSetVar)>("_Z10kdedSetVarPKwPK6resbuf")(name, value);
}
