#include "orvex/system_variables.h"

#include "support/room_test.h"

namespace {

class SystemVariablesTest : public HostTest {};

TEST_F(SystemVariablesTest, WhatOneFamilyWritesTheOtherReads)
{
    int integer = 0;
    EXPECT_TRUE(CSysVar::SetVar(L"OSMODE", 70000));
    EXPECT_EQ(QmSysVarMgr::GetSysIntValue(integer, L"OSMODE"), 1);
    EXPECT_EQ(integer, 4464) << "the low 16 bits";
    EXPECT_EQ(QmSysVarMgr::SetSysIntValue(-1, L"OSMODE"), 1);
    EXPECT_TRUE(CSysVar::GetVar(L"OSMODE", integer));
    EXPECT_EQ(integer, -1) << "with their sign";

    double real = 0;
    EXPECT_EQ(QmSysVarMgr::SetSysDoubleValue(1.25, L"LTSCALE"), 1);
    EXPECT_TRUE(CSysVar::GetVar(L"LTSCALE", real));
    EXPECT_EQ(real, 1.25);

    CString text;
    EXPECT_EQ(QmSysVarMgr::SetSysStringValue(L"BYBLOCK", L"CECOLOR"), 1);
    EXPECT_TRUE(CSysVar::GetVar(L"CECOLOR", text));
    EXPECT_EQ(text, L"BYBLOCK");

    EXPECT_TRUE(CSysVar::SetVar(L"LTSCALE", 2.5));
    EXPECT_EQ(QmSysVarMgr::GetSysDoubleValue(real, L"LTSCALE"), 1);
    EXPECT_EQ(real, 2.5);

    EXPECT_FALSE(CSysVar::SetVar(L"PICKBOX", -1)) << "the host refuses it";
}

TEST_F(SystemVariablesTest, PointsInAPlaneAreWrittenByOneFamilyOnly)
{
    for (const auto& [name, type] : {std::pair(L"LIMMAX", RTPOINT), {L"INSBASE", RT3DPOINT}}) {
        KdGePoint3d point;
        EXPECT_EQ(CSysVar::VarType(name), type);
        EXPECT_TRUE(CSysVar::SetVar(name, KdGePoint3d(100, 200, 0)));
        EXPECT_EQ(QmSysVarMgr::GetSysPointValue(point, name), 1);
        EXPECT_EQ(point, KdGePoint3d(100, 200, 0));
        const bool written = QmSysVarMgr::SetSysPointValue({1, 2, 0}, name);
        EXPECT_EQ(written, type == RT3DPOINT);
        EXPECT_TRUE(CSysVar::GetVar(name, point));
        EXPECT_EQ(point, written ? KdGePoint3d(1, 2, 0) : KdGePoint3d(100, 200, 0));
    }
}

TEST_F(SystemVariablesTest, AnotherTypeIsRefusedWithoutAWrite)
{
    int integer = 7;
    double real = 7;
    CString text(L"kept");
    KdGePoint3d point(7, 7, 7);
    for (const wchar_t* name : {L"OSMODE", L"LTSCALE", L"CECOLOR", L"INSBASE", L"NOSUCHVARIABLE"}) {
        const int type = CSysVar::VarType(name);
        SCOPED_TRACE(type);
        const auto calls = tracedOperations([&] {
            EXPECT_EQ(CSysVar::SetVar(name, 1), type == RTSHORT);
            EXPECT_EQ(CSysVar::SetVar(name, 1.0), type == RTREAL);
            EXPECT_EQ(CSysVar::SetVar(name, CString(L"4")), type == RTSTR);
            EXPECT_EQ(CSysVar::SetVar(name, KdGePoint3d()), type == RT3DPOINT);
        });
        EXPECT_EQ(std::count(calls.begin(), calls.end(), "kdedSetVar"), type != RTNONE);
        EXPECT_EQ(CSysVar::GetVar(name, integer), type == RTSHORT);
        EXPECT_EQ(CSysVar::GetVar(name, real), type == RTREAL);
        EXPECT_EQ(CSysVar::GetVar(name, text), type == RTSTR);
        EXPECT_EQ(CSysVar::GetVar(name, point), type == RT3DPOINT);
    }
}

TEST_F(SystemVariablesTest, AFailureLeavesTheValueOrZeroesIt)
{
    for (const wchar_t* name : {L"NOSUCHVARIABLE", L"", static_cast<const wchar_t*>(nullptr)}) {
        int integer = 7;
        double real = 7;
        CString text(L"kept");
        KdGePoint3d point(7, 7, 7);
        EXPECT_FALSE(CSysVar::GetVar(name, integer) || CSysVar::GetVar(name, real) ||
                     CSysVar::GetVar(name, text) || CSysVar::GetVar(name, point));
        EXPECT_EQ(QmSysVarMgr::GetSysVarType(name), RTNONE);
        EXPECT_FALSE(QmSysVarMgr::GetSysStringValue(text, name) ||
                     QmSysVarMgr::GetSysPointValue(point, name));
        EXPECT_EQ(std::tuple(integer, real, text, point),
                  std::tuple(7, 7.0, CString(L"kept"), KdGePoint3d(7, 7, 7)));
        EXPECT_FALSE(QmSysVarMgr::GetSysIntValue(integer, name) ||
                     QmSysVarMgr::GetSysDoubleValue(real, name));
        EXPECT_EQ(integer + real, 0);
        EXPECT_EQ(QmSysVarMgr::SetSysIntValue(1, name), 0);
    }
}

} // namespace
