#include "orvex/savers.h"

#include "support/room_test.h"

#include "kd/ap.h"

namespace {

/// CMDECHO, OSMODE and ORTHOMODE.
std::string settings()
{
    return variable(L"CMDECHO") + ' ' + variable(L"OSMODE") + ' ' + variable(L"ORTHOMODE");
}

void set(const char* commandEcho, const char* snapModes, const char* ortho)
{
    EXPECT_TRUE(korra::setVariable("CMDECHO", commandEcho));
    EXPECT_TRUE(korra::setVariable("OSMODE", snapModes));
    EXPECT_TRUE(korra::setVariable("ORTHOMODE", ortho));
}

KdGeMatrix3d movedBy(double x)
{
    return KdGeMatrix3d::translation({x, 0, 0});
}

/// Makes a coordinate system with its origin at (x, 0, 0) current, perhaps one with a name.
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
    SaversTest() { set("1", "37", "0"); }
};

TEST_F(SaversTest, SettingsComeBackFromEveryScope)
{
    try {
        const CQM_CmdechoServer echo(0);
        const CQM_OsnapServer snap(512);
        const CQM_OrthomodeServer ortho(true);
        EXPECT_EQ(settings(), "0 512 1");
        const CQM_OsnapServer nested(65536 + 3);
        EXPECT_EQ(settings(), "0 3 1") << "the low 16 bits";
        throw 1;
    } catch (int) {
    }
    EXPECT_EQ(settings(), "1 37 0");
    {
        const CCmdEcho quiet;
        EXPECT_EQ(settings(), "0 37 0");
    }
    EXPECT_EQ(settings(), "1 37 0");
    {
        const CQM_CmdechoServer echo;
        const CQM_OsnapServer snap;
        const CQM_OrthomodeServer ortho;
        EXPECT_EQ(settings(), "1 37 0") << "without a value they only put back";
        set("0", "5", "1");
    }
    EXPECT_EQ(settings(), "1 37 0");
}

TEST_F(SaversTest, ACopyRestoresTheSameValueOnceMoreAndCopyingSetsNothing)
{
    const CQM_CmdechoServer echo(0);
    auto copy = std::make_unique<CQM_CmdechoServer>(echo);
    *copy = echo;
    EXPECT_EQ(settings(), "0 37 0");
    copy.reset();
    EXPECT_EQ(settings(), "1 37 0");
}

TEST_F(SaversTest, OrthoModeCanChangeMeanwhile)
{
    const CQM_OrthomodeServer outer(true);
    {
        CQM_OrthomodeServer inner;
        inner.ResetOrthomode(false);
        EXPECT_FALSE(database().orthomode());
    }
    EXPECT_TRUE(database().orthomode()) << "what the inner one found";
}

TEST_F(SaversTest, TheDocumentIsLockedForAScope)
{
    KdApDocument* const document = kdDocManagerPtr()->curDocument();
    const KdAp::DocLockMode before = document->lockMode();
    const auto calls = tracedCalls([&] {
        const CQM_DocLockServer lock;
        const CQM_DocLockServer nested;
        EXPECT_EQ(document->lockMode(), KdAp::kWrite);
    });
    EXPECT_THAT(only(calls, {"KdApDocManager::lockDocument"}), Each(HasSubstr("(4, null, 1)")))
        << "the user is told";
    EXPECT_EQ(document->lockMode(), before);

    korra::closeDocument(*document);
    const CQM_DocLockServer withoutADocument;
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
        auto server = std::make_unique<CQM_DatabaseServer>(given);
        EXPECT_EQ(drawing(), before);
        kddbHostApplicationServices()->setWorkingDatabase(&other);
        server.reset();
        EXPECT_EQ(drawing(), &other) << "nothing is restored";
        kddbHostApplicationServices()->setWorkingDatabase(before);
    }
}

TEST_F(SaversTest, SystemsThatCanComeBackAreReplaced)
{
    // What is current: its place, whether it is named and readable; its place during and after.
    const std::tuple<const char*, double, bool, bool, double, double> cases[] = {
        {"the world", 0, false, true, 0, 20},
        {"a matrix", 5, false, true, 10, 5},
        {"a matrix that cannot be read", 5, false, false, 5, 20},
        {"a name", 5, true, true, 10, 5},
        {"a name, with a matrix that cannot be read", 5, true, false, 10, 5}};

    for (const auto& [what, before, named, readable, during, after] : cases) {
        SCOPED_TRACE(what);
        startFreshHost();
        useUcs(named, before);
        const KdDbObjectId name = drawing()->ucsname();
        EXPECT_EQ(name.isNull(), !named);
        if (!readable)
            platform::failCall(1, platform::Fault::status);
        {
            const CQM_UcsServer server(movedBy(10));
            EXPECT_TRUE(readable || platform::faultDelivered());
            platform::releaseCalls();
            EXPECT_EQ(currentUcs(), movedBy(during));
            EXPECT_TRUE(drawing()->ucsname().isNull());
            kdedSetCurrentUCS(movedBy(20));
        }
        EXPECT_EQ(currentUcs(), movedBy(after));
        EXPECT_EQ(drawing()->ucsname(), name) << "through the active viewport";
    }
}

TEST_F(SaversTest, RecoverRestoresOnce)
{
    for (const bool named : {false, true}) {
        useUcs(named, 5);
        CQM_UcsServer server(movedBy(10));
        server.Recover();
        EXPECT_EQ(currentUcs(), movedBy(5));
        kdedSetCurrentUCS(movedBy(20));
        server.Recover();
        EXPECT_EQ(currentUcs(), movedBy(20));
    }
}

} // namespace
