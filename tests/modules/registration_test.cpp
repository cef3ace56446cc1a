#include "kd/ap.h"
#include "kd/rx.h"
#include "korra/modules.h"
#include "support/resbuf_list.h"
#include "support/room_test.h"

namespace {

class RegistrationTest : public HostTest {};

KdEdCommandStack& commandStack()
{
    return *KdEdCommandStack::cast(kdrxSysRegistry()->at(L"KDAPI_REGISTERED_COMMANDS"));
}

TEST_F(RegistrationTest, ClassesGoChildrenFirst)
{
    const auto loading = tracedCalls([] { korra::loadModule("probe_registering"); });
    EXPECT_THAT(only(loading, {"kdrxBuildClassHierarchy"}),
                ElementsAre("kdrxBuildClassHierarchy()"));
    const auto unloading = tracedCalls([] { korra::stopHost(); });
    EXPECT_THAT(only(unloading, {"deleteKdRxClass"}),
                ElementsAre("deleteKdRxClass(\"ProbeDerived\")", "deleteKdRxClass(\"ProbeBase\")"));
    korra::startHost();
}

TEST_F(RegistrationTest, CommandsRunByEitherNameUntilTheirModuleGoes)
{
    korra::loadModule("probe_registering");
    const auto run = tracedCalls([] {
        for (const char* name : {"ProbeOne", "one", "PROBETWO", "Two"})
            EXPECT_TRUE(korra::runCommand(name)) << name;
    });
    EXPECT_THAT(only(run, {"command"}), SizeIs(4));
    for (const auto& [name, status] :
         {std::pair(L"probeone", Kdapi::eDuplicateKey), {L"", Kdapi::eInvalidInput}})
        EXPECT_EQ(commandStack().addCommand(L"probe", name, nullptr, 0, [] {}), status);

    korra::stopHost();
    korra::startHost();
    korra::newDocument();
    EXPECT_FALSE(korra::runCommand("PROBEONE"));
    EXPECT_EQ(commandStack().removeCmd(L"PROBE", L"PROBEONE"), Kdapi::eKeyNotFound);
}

TEST_F(RegistrationTest, FunctionsAreDefinedAndUndefinedPerDocument)
{
    const std::vector<std::string_view> operations{"kdedDefun", "kdedUndef", "kdedRegFunc"};
    const auto loading = tracedCalls([] { korra::loadModule("probe_registering"); });
    EXPECT_THAT(only(loading, operations),
                ElementsAre("kdedDefun(\"probe-first\", 0) = 5100",
                            "kdedDefun(\"probe-second\", 1) = 5100", "kdedRegFunc(1) = 5100"));

    const auto invoking = tracedCalls([] {
        for (const wchar_t* name : {L"probe-first", L"PROBE-SECOND"}) {
            const support::ResbufList arguments(kdutBuildList(RTSTR, name, 0));
            resbuf* result = nullptr;
            EXPECT_EQ(kdedInvoke(arguments.get(), &result), RTNORM);
        }
    });
    EXPECT_THAT(only(invoking, {"first function", "second function"}),
                ElementsAre("first function()", "second function()"));

    KdApDocument* const document = kdDocManagerPtr()->curDocument();
    korra::newDocument();
    const auto closing = tracedCalls([&] { korra::closeDocument(*document); });
    EXPECT_THAT(only(closing, operations), ElementsAre("kdedUndef(\"probe-first\", 0) = 5100",
                                                       "kdedUndef(\"probe-second\", 1) = 5100"));
    EXPECT_EQ(kdedDefun(L"stray", 0), RTERROR) << "no module is asking";
    EXPECT_EQ(kdedGetFunCode(), -1) << "nor is one asked";
}

} // namespace
