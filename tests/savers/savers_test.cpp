#include "orvex/savers.h"
#include "orvex/system_variables.h"

#include "support/drawing.h"
#include "support/host_test.h"
#include "support/objects.h"

#include "kd/ap.h"

using namespace tests;
using ::testing::ElementsAre;

namespace {

/// CMDECHO and OSMODE.
std::vector<int> variables()
{
    std::vector<int> values(2, -1);
    EXPECT_TRUE(CSysVar::GetVar(L"CMDECHO", values[0]));
    EXPECT_TRUE(CSysVar::GetVar(L"OSMODE", values[1]));
    return values;
}

void setVariables(int commandEcho, int snapModes)
{
    EXPECT_TRUE(CSysVar::SetVar(L"CMDECHO", commandEcho));
    EXPECT_TRUE(CSysVar::SetVar(L"OSMODE", snapModes));
}

/// Adds a named coordinate system with its origin at (x, 0, 0) and makes it current.
KdDbObjectId useNamedUcs(double x)
{
    const auto ucs = addRecord<KdDbUCSTable, KdDbUCSTableRecord>(L"Named");
    Open<KdDbUCSTableRecord>(ucs)->setOrigin({x, 0, 0});
    KdDbObjectId viewport;
    Open<KdDbViewportTable>(drawing()->viewportTableId())->getAt(L"*ACTIVE", viewport);
    Open<KdDbViewportTableRecord>(viewport)->setUcs(ucs);
    return ucs;
}

KdGeMatrix3d movedBy(double x)
{
    return KdGeMatrix3d::translation({x, 0, 0});
}

void useUcs(bool named, double x)
{
    if (named)
        useNamedUcs(x);
    else
        kdedSetCurrentUCS(movedBy(x));
}

KdGeMatrix3d currentUcs()
{
    KdGeMatrix3d matrix;
    EXPECT_EQ(kdedGetCurrentUCS(matrix), Kdapi::eOk);
    return matrix;
}

class SaversTest : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        setVariables(1, 37);
    }
};

TEST_F(SaversTest, SystemVariablesComeBackFromEveryScope)
{
    try {
        const CQM_CmdechoServer echo(0);
        const CQM_OsnapServer snap(512);
        EXPECT_THAT(variables(), ElementsAre(0, 512));
        const CQM_OsnapServer nested(65536 + 3);
        EXPECT_THAT(variables(), ElementsAre(0, 3)) << "the low 16 bits";
        throw 1;
    } catch (int) {
    }
    EXPECT_THAT(variables(), ElementsAre(1, 37));
    {
        const CCmdEcho quiet;
        EXPECT_THAT(variables(), ElementsAre(0, 37));
    }
    EXPECT_THAT(variables(), ElementsAre(1, 37));
}

TEST_F(SaversTest, SaversWithoutAValueOnlyPutBack)
{
    {
        const CQM_CmdechoServer echo;
        const CQM_OsnapServer snap;
        const CQM_OrthomodeServer ortho;
        EXPECT_THAT(variables(), ElementsAre(1, 37));
        setVariables(0, 5);
        database().setOrthomode(true);
    }
    EXPECT_THAT(variables(), ElementsAre(1, 37));
    EXPECT_FALSE(database().orthomode());
}

TEST_F(SaversTest, ACopyRestoresTheSameValueOnceMoreAndCopyingSetsNothing)
{
    const CQM_CmdechoServer echo(0);
    std::unique_ptr<CQM_CmdechoServer> copy;
    EXPECT_THAT(tracedOperations([&] {
                    copy = std::make_unique<CQM_CmdechoServer>(echo);
                    *copy = echo;
                }),
                ::testing::IsEmpty());
    copy.reset();
    EXPECT_THAT(variables(), ElementsAre(1, 37));
}

TEST_F(SaversTest, OrthoModeCanChangeMeanwhile)
{
    CQM_OrthomodeServer outer(true);
    EXPECT_TRUE(database().orthomode());
    {
        CQM_OrthomodeServer inner(false);
        EXPECT_FALSE(database().orthomode());
        inner.ResetOrthomode(true);
        EXPECT_TRUE(database().orthomode());
        outer.ResetOrthomode(false);
    }
    EXPECT_TRUE(database().orthomode()) << "what the inner one found";
}

TEST_F(SaversTest, RestoresIntoTheDatabaseThatIsWorkingThen)
{
    KdDbDatabase& first = database();
    KdDbDatabase other;
    other.setOrthomode(true);
    {
        const CQM_OrthomodeServer ortho;
        kddbHostApplicationServices()->setWorkingDatabase(&other);
    }
    EXPECT_FALSE(other.orthomode());
    kddbHostApplicationServices()->setWorkingDatabase(&first);
}

TEST_F(SaversTest, TheDocumentIsLockedForAScope)
{
    const KdApDocument* document = kdDocManagerPtr()->curDocument();
    const KdAp::DocLockMode before = document->lockMode();
    {
        const CQM_DocLockServer lock;
        const CQM_DocLockServer nested;
        EXPECT_EQ(document->lockMode(), KdAp::kWrite);
    }
    EXPECT_EQ(document->lockMode(), before);
}

TEST_F(SaversTest, WithoutADocumentNothingIsLocked)
{
    korra::closeDocument(*kdDocManagerPtr()->curDocument());
    const CQM_DocLockServer lock;
    EXPECT_EQ(kdDocManagerPtr()->curDocument(), nullptr);
}

TEST_F(SaversTest, TheWorkingDatabaseComesBackWhenItWasReplaced)
{
    KdDbDatabase* const before = drawing();
    KdDbDatabase other;
    {
        const CQM_DatabaseServer server(&other);
        EXPECT_EQ(drawing(), &other);
    }
    EXPECT_EQ(drawing(), before);

    for (KdDbDatabase* given : {static_cast<KdDbDatabase*>(nullptr), before}) {
        {
            const CQM_DatabaseServer server(given);
            EXPECT_EQ(drawing(), before);
            kddbHostApplicationServices()->setWorkingDatabase(&other);
        }
        EXPECT_EQ(drawing(), &other) << "nothing is restored";
        kddbHostApplicationServices()->setWorkingDatabase(before);
    }
}

TEST_F(SaversTest, ANamedSystemComesBackThroughTheActiveViewport)
{
    const KdDbObjectId named = useNamedUcs(5);
    ASSERT_EQ(database().ucsname(), named);
    const auto operations = tracedOperations([] {
        const CQM_UcsServer server(movedBy(10));
        EXPECT_TRUE(drawing()->ucsname().isNull());
    });
    EXPECT_THAT(operations, ::testing::Contains("KdDbViewportTableRecord::setUcs").Times(1));
    EXPECT_EQ(database().ucsname(), named);
}

TEST_F(SaversTest, SystemsThatCanComeBackAreReplaced)
{
    struct {
        const char* what;
        double before;
        bool named, readable;
        double during, after;
    } const cases[] = {{"the world", 0, false, true, 0, 20},
                       {"a matrix", 5, false, true, 10, 5},
                       {"a matrix that cannot be read", 5, false, false, 5, 20},
                       {"a name", 5, true, true, 10, 5},
                       {"a name, with a matrix that cannot be read", 5, true, false, 10, 5}};

    for (const auto& [what, before, named, readable, during, after] : cases) {
        SCOPED_TRACE(what);
        startFreshHost();
        useUcs(named, before);
        if (!readable)
            platform::failCall(1, platform::Fault::status);
        {
            const CQM_UcsServer server(movedBy(10));
            EXPECT_TRUE(readable || platform::faultDelivered());
            platform::releaseCalls();
            EXPECT_EQ(currentUcs(), movedBy(during));
            kdedSetCurrentUCS(movedBy(20));
        }
        EXPECT_EQ(currentUcs(), movedBy(after));
    }
}

TEST_F(SaversTest, RecoverRestoresOnce)
{
    for (const bool named : {false, true}) {
        useUcs(named, 5);
        {
            CQM_UcsServer server(movedBy(10));
            server.Recover();
            EXPECT_EQ(currentUcs(), movedBy(5));
            kdedSetCurrentUCS(movedBy(20));
            server.Recover();
        }
        EXPECT_EQ(currentUcs(), movedBy(20));
    }
}

TEST_F(SaversTest, LeaveNothingOpenWhateverFails)
{
    const auto nothing = [] { return 0; };
    sweepFaults<int>(nothing, [](int) { const CQM_CmdechoServer saver(0); });
    sweepFaults<int>(nothing, [](int) { const CCmdEcho saver; });
    sweepFaults<int>(nothing, [](int) { const CQM_OsnapServer saver(1); });
    sweepFaults<int>(nothing, [](int) { const CQM_OrthomodeServer saver(true); });
    sweepFaults<int>(nothing, [](int) { const CQM_DocLockServer saver; });
    for (const bool named : {false, true}) {
        sweepFaults<int>([=] { return useUcs(named, 5), 0; },
                         [](int) { const CQM_UcsServer saver(movedBy(10)); });
    }
}

} // namespace
