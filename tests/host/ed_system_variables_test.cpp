#include "ed/system_variables.h"

#include "support/host_test.h"

#include <set>

using namespace tests;

namespace {

using korra::ed::SystemVariable;

class SystemVariablesTest : public HostTest {
protected:
    /// A node that is freed with the text it holds.
    struct Buffer {
        explicit Buffer(int type = RTNONE) : node(kdutNewRb(type == RTNONE ? RTSHORT : type)) {}

        ~Buffer() { kdutRelRb(node); }

        Buffer(const Buffer&) = delete;
        Buffer& operator=(const Buffer&) = delete;
        resbuf* node;
    };

    static short type(const wchar_t* name)
    {
        Buffer buffer;
        return kdedGetVar(name, buffer.node) == RTNORM ? buffer.node->restype : short{RTNONE};
    }

    static short number(const wchar_t* name)
    {
        Buffer buffer;
        EXPECT_EQ(kdedGetVar(name, buffer.node), RTNORM);
        return buffer.node->resval.rint;
    }

    static double real(const wchar_t* name)
    {
        Buffer buffer;
        EXPECT_EQ(kdedGetVar(name, buffer.node), RTNORM);
        return buffer.node->resval.rreal;
    }

    static KdGePoint3d point(const wchar_t* name)
    {
        Buffer buffer;
        EXPECT_EQ(kdedGetVar(name, buffer.node), RTNORM);
        const double* const p = buffer.node->resval.rpoint;
        return {p[0], p[1], p[2]};
    }

    static std::wstring text(const wchar_t* name)
    {
        Buffer buffer;
        EXPECT_EQ(kdedGetVar(name, buffer.node), RTNORM);
        return buffer.node->resval.rstring;
    }
};

TEST_F(SystemVariablesTest, EveryVariableReadsAsItsType)
{
    std::set<std::wstring> names;
    for (const SystemVariable& variable : korra::ed::systemVariables()) {
        EXPECT_EQ(type(variable.name.c_str()), variable.type) << korra::takePrintedText();
        EXPECT_TRUE(names.insert(variable.name).second) << "twice in the table";
    }
    EXPECT_GT(names.size(), 50u);
    EXPECT_EQ(type(L"cmdecho"), RTSHORT);
    EXPECT_EQ(type(L"NOSUCHNAME"), RTNONE);
    EXPECT_EQ(kdedGetVar(nullptr, nullptr), RTERROR);
}

TEST_F(SystemVariablesTest, AWriteIsTypedRangedAndKept)
{
    const struct {
        const char* name;
        const char* value;
        bool taken;
    } cases[] = {
        {"CMDECHO", "0", true},       {"CMDECHO", "2", false},
        {"CMDECHO", "0.5", false},    {"OSMODE", "-1", true},
        {"OSMODE", "40000", false},   {"LTSCALE", "2.5", true},
        {"LTSCALE", "0", false},      {"LTSCALE", "1e999", false},
        {"LIMMIN", "3,4", true},      {"INSBASE", "1,2,3", true},
        {"INSBASE", "1", false},      {"CLAYER", "0", true},
        {"CLAYER", "missing", false}, {"CECOLOR", "bylayer", true},
        {"CECOLOR", "255", true},     {"CECOLOR", "256", false},
        {"VIEWSIZE", "10", false},    {"SCREENSIZE", "1,1", false},
        {"UCSORG", "1,1,1", false},   {"DIMSTYLE", "Standard", false},
        {"TILEMODE", "2", false},     {"CTAB", "no such tab", false},
    };

    for (const auto& each : cases)
        EXPECT_EQ(korra::setVariable(each.name, each.value), each.taken)
            << each.name << " = " << each.value;

    EXPECT_EQ(number(L"CMDECHO"), 0);
    EXPECT_EQ(number(L"OSMODE"), -1);
    EXPECT_EQ(real(L"LTSCALE"), 2.5);
    EXPECT_EQ(point(L"LIMMIN"), KdGePoint3d(3, 4, 0));
    EXPECT_EQ(point(L"INSBASE"), KdGePoint3d(1, 2, 3));
    EXPECT_EQ(text(L"CECOLOR"), L"255");
}

TEST_F(SystemVariablesTest, AWriteOfAnotherTypeIsRefused)
{
    Buffer buffer(RTREAL);
    buffer.node->resval.rreal = 1.0;
    EXPECT_EQ(kdedSetVar(L"CMDECHO", buffer.node), RTERROR);
    EXPECT_EQ(kdedSetVar(L"LTSCALE", buffer.node), RTNORM);
    EXPECT_EQ(number(L"CMDECHO"), 1);
}

TEST_F(SystemVariablesTest, ThePlaneOfAPlanePointHasNoZ)
{
    Buffer buffer(RTPOINT);
    for (double& coordinate : buffer.node->resval.rpoint)
        coordinate = 7.0;
    EXPECT_EQ(kdedSetVar(L"LIMMAX", buffer.node), RTNORM);
    EXPECT_EQ(point(L"LIMMAX"), KdGePoint3d(7, 7, 0));
}

TEST_F(SystemVariablesTest, TheDrawingsOwnChangeWithTheDocumentTheHostsDoNot)
{
    ASSERT_TRUE(korra::setVariable("LTSCALE", "3"));
    ASSERT_TRUE(korra::setVariable("PICKBOX", "7"));
    KdApDocument* const second = korra::newDocument();
    EXPECT_EQ(real(L"LTSCALE"), 1.0);
    EXPECT_EQ(number(L"PICKBOX"), 7);
    korra::closeDocument(*second);
    EXPECT_EQ(real(L"LTSCALE"), 3.0);
}

TEST_F(SystemVariablesTest, SheetsKeepTheirOwnValues)
{
    ASSERT_TRUE(korra::setVariable("INSBASE", "1,2,3"));
    ASSERT_TRUE(korra::setVariable("TILEMODE", "0"));
    EXPECT_EQ(point(L"INSBASE"), KdGePoint3d());
    ASSERT_TRUE(korra::setVariable("INSBASE", "4,5,6"));
    ASSERT_TRUE(korra::setVariable("TILEMODE", "1"));
    EXPECT_EQ(point(L"INSBASE"), KdGePoint3d(1, 2, 3));
}

TEST_F(SystemVariablesTest, ViewVariablesFollowTheView)
{
    EXPECT_EQ(number(L"CVPORT"), 2);
    EXPECT_EQ(text(L"CTAB"), L"Model");
    EXPECT_EQ(point(L"SCREENSIZE"), KdGePoint3d(800, 600, 0));
    korra::queueInput("2,2");
    korra::queueInput("4,3");
    ASSERT_TRUE(korra::runCommand("ZOOM"));
    // Two units wide on a screen of 4:3 are higher than the one unit asked for.
    EXPECT_DOUBLE_EQ(real(L"VIEWSIZE"), 1.5);
    EXPECT_TRUE(point(L"VIEWCTR").isEqualTo({3, 2.5, 0}));
    EXPECT_EQ(point(L"VIEWDIR"), KdGePoint3d(0, 0, 1));
}

TEST_F(SystemVariablesTest, ExtentsAreThoseOfWhatIsShown)
{
    EXPECT_GT(point(L"EXTMIN").x, point(L"EXTMAX").x) << "nothing is shown";
    addEntity(new KdDbCircle({5, 5, 1}, KdGeVector3d::kZAxis, 2.0));
    EXPECT_TRUE(point(L"EXTMIN").isEqualTo({3, 3, 1}));
    EXPECT_TRUE(point(L"EXTMAX").isEqualTo({7, 7, 1}));
}

TEST_F(SystemVariablesTest, WithoutADocumentOnlyTheHostsOwnCanBeRead)
{
    korra::stopHost();
    korra::startHost();
    EXPECT_EQ(type(L"CMDECHO"), RTSHORT);
    EXPECT_EQ(type(L"LTSCALE"), RTNONE);
    EXPECT_EQ(type(L"VIEWSIZE"), RTNONE);
    EXPECT_FALSE(korra::setVariable("LTSCALE", "2"));
}

} // namespace
