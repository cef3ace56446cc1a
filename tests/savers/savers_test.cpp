#include "orvex/savers.h"
#include "orvex/system_variables.h"

#include "support/host_test.h"
#include "support/opened.h"

#include "kd/ap.h"

using namespace tests;
using support::Opened;

namespace {

int variable(const wchar_t* name)
{
    int value = -1;
    EXPECT_TRUE(CSysVar::GetVar(name, value));
    return value;
}

void setVariable(const wchar_t* name, int value)
{
    EXPECT_TRUE(CSysVar::SetVar(name, value));
}

KdDbDatabase* workingDatabase()
{
    return kddbHostApplicationServices()->workingDatabase();
}

KdDbObjectId activeViewport()
{
    const Opened<KdDbViewportTable> table([](KdDbViewportTable*& opened) {
        return workingDatabase()->getSymbolTable(opened, KdDb::kForRead);
    });
    KdDbObjectId id;
    EXPECT_EQ(table->getAt(L"*ACTIVE", id), Kdapi::eOk);
    return id;
}

/// Adds a named coordinate system with its origin at (x, 0, 0) and makes it current.
KdDbObjectId useNamedUcs(double x)
{
    KdDbObjectId id;
    {
        const Opened<KdDbUCSTable> table([](KdDbUCSTable*& opened) {
            return workingDatabase()->getSymbolTable(opened, KdDb::kForWrite);
        });
        auto* record = new KdDbUCSTableRecord;
        record->setName(L"Named");
        record->setOrigin({x, 0, 0});
        EXPECT_EQ(table->add(id, record), Kdapi::eOk);
        record->close();
    }
    Opened<KdDbViewportTableRecord>(activeViewport(), KdDb::kForWrite)->setUcs(id);
    return id;
}

KdGeMatrix3d movedBy(double x)
{
    return KdGeMatrix3d::translation({x, 0, 0});
}

KdGeMatrix3d currentUcs()
{
    KdGeMatrix3d matrix;
    EXPECT_EQ(kdedGetCurrentUCS(matrix), Kdapi::eOk);
    return matrix;
}

/// Runs with the next reading of the current coordinate system failing.
template <class Scenario>
void withUnreadableUcs(Scenario scenario)
{
    platform::failCall(1, platform::Fault::status);
    scenario();
    EXPECT_TRUE(platform::faultDelivered());
    platform::releaseCalls();
}

class SaversTest : public HostTest {};

TEST_F(SaversTest, SystemVariablesComeBackFromEveryScope)
{
    setVariable(L"CMDECHO", 1);
    setVariable(L"OSMODE", 37);
    try {
        const CQM_CmdechoServer echo(0);
        const CQM_OsnapServer snap(512);
        EXPECT_EQ(variable(L"CMDECHO"), 0);
        EXPECT_EQ(variable(L"OSMODE"), 512);
        const CQM_OsnapServer nested(65536 + 3);
        EXPECT_EQ(variable(L"OSMODE"), 3) << "the low 16 bits";
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(variable(L"CMDECHO"), 1);
    EXPECT_EQ(variable(L"OSMODE"), 37);
}

TEST_F(SaversTest, SaversWithoutAValueOnlyPutBack)
{
    setVariable(L"CMDECHO", 1);
    setVariable(L"OSMODE", 37);
    {
        const CQM_CmdechoServer echo;
        const CQM_OsnapServer snap;
        const CQM_OrthomodeServer ortho;
        EXPECT_EQ(variable(L"OSMODE"), 37);
        setVariable(L"CMDECHO", 0);
        setVariable(L"OSMODE", 5);
        database().setOrthomode(true);
    }
    EXPECT_EQ(variable(L"CMDECHO"), 1);
    EXPECT_EQ(variable(L"OSMODE"), 37);
    EXPECT_FALSE(database().orthomode());
}

TEST_F(SaversTest, CommandEchoIsOffForAScope)
{
    setVariable(L"CMDECHO", 1);
    {
        const CCmdEcho quiet;
        EXPECT_EQ(variable(L"CMDECHO"), 0);
    }
    EXPECT_EQ(variable(L"CMDECHO"), 1);
}

TEST_F(SaversTest, ACopyRestoresTheSameValueOnceMoreAndCopyingSetsNothing)
{
    setVariable(L"CMDECHO", 1);
    const CQM_CmdechoServer echo(0);
    std::unique_ptr<CQM_CmdechoServer> copy;
    EXPECT_THAT(tracedOperations([&] {
                    copy = std::make_unique<CQM_CmdechoServer>(echo);
                    *copy = echo;
                }),
                ::testing::IsEmpty());
    copy.reset();
    EXPECT_EQ(variable(L"CMDECHO"), 1);
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

TEST_F(SaversTest, TheWorkingDatabaseComesBack)
{
    KdDbDatabase* const before = workingDatabase();
    KdDbDatabase other;
    {
        const CQM_DatabaseServer server(&other);
        EXPECT_EQ(workingDatabase(), &other);
    }
    EXPECT_EQ(workingDatabase(), before);
}

TEST_F(SaversTest, NullAndTheWorkingDatabaseItselfRestoreNothing)
{
    KdDbDatabase* const before = workingDatabase();
    KdDbDatabase other;
    for (KdDbDatabase* given : {static_cast<KdDbDatabase*>(nullptr), before}) {
        {
            const CQM_DatabaseServer server(given);
            EXPECT_EQ(workingDatabase(), before);
            kddbHostApplicationServices()->setWorkingDatabase(&other);
        }
        EXPECT_EQ(workingDatabase(), &other);
        kddbHostApplicationServices()->setWorkingDatabase(before);
    }
}

TEST_F(SaversTest, TheWorldSystemIsNeverReplaced)
{
    {
        const CQM_UcsServer server(movedBy(10));
        EXPECT_EQ(currentUcs(), KdGeMatrix3d::kIdentity);
        kdedSetCurrentUCS(movedBy(5));
    }
    EXPECT_EQ(currentUcs(), movedBy(5)) << "nothing is restored";
}

TEST_F(SaversTest, ASystemWithoutANameComesBackByItsMatrix)
{
    kdedSetCurrentUCS(movedBy(5));
    {
        const CQM_UcsServer server(movedBy(10));
        EXPECT_EQ(currentUcs(), movedBy(10));
    }
    EXPECT_EQ(currentUcs(), movedBy(5));
}

TEST_F(SaversTest, ANamedSystemComesBackThroughTheActiveViewport)
{
    const KdDbObjectId named = useNamedUcs(5);
    ASSERT_EQ(database().ucsname(), named);
    const auto operations = tracedOperations([] {
        CQM_UcsServer server(movedBy(10));
        EXPECT_EQ(currentUcs(), movedBy(10));
        EXPECT_TRUE(workingDatabase()->ucsname().isNull());
    });
    EXPECT_THAT(operations, ::testing::Contains("KdDbViewportTableRecord::setUcs").Times(1));
    EXPECT_EQ(currentUcs(), movedBy(5));
    EXPECT_EQ(database().ucsname(), named);
}

TEST_F(SaversTest, ANamedSystemIsReplacedEvenWhenTheMatrixCannotBeRead)
{
    useNamedUcs(5);
    withUnreadableUcs([] {
        const CQM_UcsServer server(movedBy(10));
        EXPECT_EQ(currentUcs(), movedBy(10));
    });
    EXPECT_EQ(currentUcs(), movedBy(5));
}

TEST_F(SaversTest, AnUnreadableSystemWithoutANameIsLeft)
{
    kdedSetCurrentUCS(movedBy(5));
    withUnreadableUcs([] {
        const CQM_UcsServer server(movedBy(10));
        EXPECT_EQ(currentUcs(), movedBy(5));
    });
    EXPECT_EQ(currentUcs(), movedBy(5));
}

TEST_F(SaversTest, RecoverRestoresOnce)
{
    for (const bool named : {false, true}) {
        if (named)
            useNamedUcs(5);
        else
            kdedSetCurrentUCS(movedBy(5));
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
    sweepFaults<int>([] { return useNamedUcs(5), 0; },
                     [](int) { const CQM_UcsServer saver(movedBy(10)); });
    sweepFaults<int>([] { return kdedSetCurrentUCS(movedBy(5)), 0; },
                     [](int) { const CQM_UcsServer saver(movedBy(10)); });
}

} // namespace
