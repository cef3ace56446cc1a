#include "orvex/system_variables.h"

#include "kd/ed.h"
#include "support/host_test.h"

namespace {

using ::testing::Contains;
using ::testing::Not;

class SystemVariablesTest : public tests::HostTest {};

TEST_F(SystemVariablesTest, IntegersHaveSixteenBitsWithTheirSign)
{
    int value = 0;
    EXPECT_TRUE(CSysVar::SetVar(L"OSMODE", 70000));
    EXPECT_TRUE(CSysVar::GetVar(L"OSMODE", value));
    EXPECT_EQ(value, 4464);

    EXPECT_EQ(QmSysVarMgr::SetSysIntValue(-1, L"OSMODE"), 1);
    EXPECT_EQ(QmSysVarMgr::GetSysIntValue(value, L"OSMODE"), 1);
    EXPECT_EQ(value, -1);
}

TEST_F(SystemVariablesTest, EveryTypeComesBackAsItWasWritten)
{
    double real = 0;
    EXPECT_TRUE(CSysVar::SetVar(L"LTSCALE", 2.5));
    EXPECT_EQ(QmSysVarMgr::GetSysDoubleValue(real, L"LTSCALE"), 1);
    EXPECT_EQ(real, 2.5);
    EXPECT_EQ(QmSysVarMgr::SetSysDoubleValue(1.25, L"LTSCALE"), 1);
    EXPECT_TRUE(CSysVar::GetVar(L"LTSCALE", real));
    EXPECT_EQ(real, 1.25);

    CString text;
    EXPECT_TRUE(CSysVar::SetVar(L"CECOLOR", CString(L"3")));
    EXPECT_EQ(QmSysVarMgr::GetSysStringValue(text, L"CECOLOR"), 1);
    EXPECT_EQ(text, L"3");
    EXPECT_EQ(QmSysVarMgr::SetSysStringValue(L"BYBLOCK", L"CECOLOR"), 1);
    EXPECT_TRUE(CSysVar::GetVar(L"CECOLOR", text));
    EXPECT_EQ(text, L"BYBLOCK");
}

TEST_F(SystemVariablesTest, ARefusedValueIsAFailure)
{
    EXPECT_FALSE(CSysVar::SetVar(L"PICKBOX", -1));
    EXPECT_FALSE(CSysVar::SetVar(L"LTSCALE", 0.0));
    EXPECT_FALSE(CSysVar::SetVar(L"CECOLOR", CString(L"no colour")));
    EXPECT_EQ(QmSysVarMgr::SetSysIntValue(-1, L"PICKBOX"), 0);
    EXPECT_EQ(QmSysVarMgr::SetSysDoubleValue(0.0, L"LTSCALE"), 0);
    EXPECT_EQ(QmSysVarMgr::SetSysStringValue(L"no colour", L"CECOLOR"), 0);
}

/// The name of a variable of a type that can be written, and one of another type.
constexpr const wchar_t* kPlanePoint = L"LIMMAX";
constexpr const wchar_t* kSpacePoint = L"INSBASE";

TEST_F(SystemVariablesTest, PointsInAPlaneAreWrittenByOneFamilyOnly)
{
    ASSERT_EQ(CSysVar::VarType(kPlanePoint), RTPOINT);
    ASSERT_EQ(CSysVar::VarType(kSpacePoint), RT3DPOINT);
    KdGePoint3d read, managed;
    for (const wchar_t* name : {kPlanePoint, kSpacePoint}) {
        EXPECT_TRUE(CSysVar::SetVar(name, KdGePoint3d(100, 200, 0)));
        EXPECT_TRUE(CSysVar::GetVar(name, read));
        EXPECT_EQ(QmSysVarMgr::GetSysPointValue(managed, name), 1);
        EXPECT_EQ(read, KdGePoint3d(100, 200, 0));
        EXPECT_EQ(managed, read);
    }
    EXPECT_EQ(QmSysVarMgr::SetSysPointValue({1, 2, 3}, kSpacePoint), 1);
    const auto calls = tests::tracedOperations([] {
        EXPECT_EQ(QmSysVarMgr::SetSysPointValue({1, 2, 3}, kPlanePoint), 0);
    });
    EXPECT_THAT(calls, Not(Contains("kdedSetVar")));
}

TEST_F(SystemVariablesTest, AnotherTypeIsRefusedWithoutAWrite)
{
    int integer = 7;
    double real = 7;
    CString text(L"kept");
    KdGePoint3d point(7, 7, 7);
    for (const wchar_t* name :
         {L"OSMODE", L"LTSCALE", L"CECOLOR", kSpacePoint, L"NOSUCHVARIABLE"}) {
        const int type = CSysVar::VarType(name);
        const auto calls = tests::tracedOperations([&] {
            EXPECT_EQ(CSysVar::SetVar(name, 1), type == RTSHORT) << type;
            EXPECT_EQ(CSysVar::SetVar(name, 1.0), type == RTREAL) << type;
            EXPECT_EQ(CSysVar::SetVar(name, CString(L"4")), type == RTSTR) << type;
            EXPECT_EQ(CSysVar::SetVar(name, KdGePoint3d()), type == RT3DPOINT) << type;
        });
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "kdedSetVar"), type != RTNONE) << type;
        EXPECT_EQ(CSysVar::GetVar(name, integer), type == RTSHORT) << type;
        EXPECT_EQ(CSysVar::GetVar(name, real), type == RTREAL) << type;
        EXPECT_EQ(CSysVar::GetVar(name, text), type == RTSTR) << type;
        EXPECT_EQ(CSysVar::GetVar(name, point), type == RT3DPOINT) << type;
    }
}

TEST_F(SystemVariablesTest, AFailureLeavesTheValueOrZeroesIt)
{
    for (const wchar_t* name : {L"NOSUCHVARIABLE", L"", static_cast<const wchar_t*>(nullptr)}) {
        int integer = 7;
        double real = 7;
        CString text(L"kept");
        KdGePoint3d point(7, 7, 7);
        const auto calls = tests::tracedOperations([&] {
            EXPECT_FALSE(CSysVar::GetVar(name, integer) || CSysVar::GetVar(name, real));
            EXPECT_EQ(integer + real, 14);
            EXPECT_EQ(CSysVar::VarType(name), RTNONE);
            EXPECT_EQ(QmSysVarMgr::GetSysVarType(name), RTNONE);
        });
        EXPECT_EQ(calls.empty(), !name || !*name) << "an empty name never reaches the host";
        const auto managerCalls = tests::tracedOperations([&] {
            EXPECT_EQ(QmSysVarMgr::GetSysIntValue(integer, name), 0);
            EXPECT_EQ(QmSysVarMgr::GetSysDoubleValue(real, name), 0);
            EXPECT_EQ(integer + real, 0);
            EXPECT_EQ(QmSysVarMgr::GetSysStringValue(text, name), 0);
            EXPECT_EQ(QmSysVarMgr::GetSysPointValue(point, name), 0);
            EXPECT_EQ(text, L"kept");
            EXPECT_EQ(point, KdGePoint3d(7, 7, 7));
        });
        EXPECT_EQ(managerCalls.empty(), !name);
        EXPECT_EQ(QmSysVarMgr::SetSysIntValue(1, name) + QmSysVarMgr::SetSysDoubleValue(1, name) +
                      QmSysVarMgr::SetSysStringValue(L"a", name) +
                      QmSysVarMgr::SetSysPointValue({}, name),
                  0);
    }
}

TEST_F(SystemVariablesTest, TheResultTellsWhetherTheHostTookTheValue)
{
    tests::sweepFaults<int>([] { return 0; },
                            [](int& done) { done = QmSysVarMgr::SetSysIntValue(33, L"OSMODE"); },
                            [](int& done) {
                                int value = 0;
                                EXPECT_EQ(QmSysVarMgr::GetSysIntValue(value, L"OSMODE"), 1);
                                EXPECT_EQ(value == 33, done == 1);
                            });
}

TEST_F(SystemVariablesTest, TextsAreGivenBackWhateverFails)
{
    tests::sweepFaults<int>([] { return 0; },
                            [](int&) {
                                CString text;
                                int value = 0;
                                CSysVar::SetVar(L"CECOLOR", CString(L"5"));
                                CSysVar::GetVar(L"CECOLOR", text);
                                CSysVar::GetVar(L"CECOLOR", value);
                                CSysVar::VarType(L"CECOLOR");
                                QmSysVarMgr::SetSysStringValue(L"6", L"CECOLOR");
                            });
}

} // namespace
