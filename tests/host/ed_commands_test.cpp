#include "kd/ap.h"

#include "support/room_test.h"

#include <stdexcept>

namespace {

int calls = 0;

class CommandsTest : public HostTest {
protected:
    CommandsTest()
    {
        calls = 0;
        define(L"COUNT", L"ZAEHLE", [] {
            ++calls;
            EXPECT_EQ(kdDocManagerPtr()->curDocument()->lockMode(), KdAp::kWrite);
        });
    }

    static void define(const wchar_t* global, const wchar_t* local, KdRxFunctionPtr function)
    {
        KdRxObject* const service = kdrxSysRegistry()->at(L"KDAPI_REGISTERED_COMMANDS");
        auto* const stack = KdEdCommandStack::cast(service);
        ASSERT_EQ(stack->addCommand(L"TEST", global, local, 0, function), Kdapi::eOk);
    }

    static bool run(const std::vector<std::string>& lines)
    {
        give(lines);
        return korra::runCommands();
    }

    static KdGeMatrix3d userSystem()
    {
        KdGeMatrix3d matrix;
        EXPECT_EQ(kdedGetCurrentUCS(matrix), Kdapi::eOk);
        return matrix;
    }
};

TEST_F(CommandsTest, AnExceptionEndsTheCommandAlone)
{
    define(L"THROW", L"THROW", [] { throw std::runtime_error("the reason"); });
    define(L"THROWANY", L"THROWANY", [] { throw 42; });
    EXPECT_TRUE(run({"THROW", "THROWANY", "COUNT"}));
    EXPECT_EQ(calls, 1);
    EXPECT_THAT(printed(), HasSubstr("THROW was stopped by an exception: the reason\n"));
    EXPECT_EQ(kdDocManagerPtr()->curDocument()->lockMode(), KdAp::kNotLocked);
}

TEST_F(CommandsTest, ACommandIsNotRunWhenTheDrawingCannotBeLocked)
{
    korra::closeDocument(*kdDocManagerPtr()->curDocument());
    EXPECT_TRUE(run({"COUNT"}));
    EXPECT_EQ(calls, 0);
    EXPECT_THAT(printed(), HasSubstr("COUNT cannot lock the drawing"));
}

TEST_F(CommandsTest, UserSystemsAreSetNamedAndRestored)
{
    EXPECT_TRUE(run({"UCS", "10,0,5", "10,7", "0,0,5", "UCS", "NAME", "Side"}));
    const KdGeMatrix3d first = userSystem();
    EXPECT_TRUE((first * KdGePoint3d(1, 0, 0))
                    .isEqualTo(KdGePoint3d(10, 0, 5) + KdGeVector3d(0, 7, -5).normal()));
    EXPECT_FALSE(database().ucsname().isNull());

    EXPECT_TRUE(run({"UCS", "1,0", "2,0", "1,1"})); // points in the user system
    EXPECT_TRUE(userSystem().isEqualTo(first * KdGeMatrix3d::translation({1, 0, 0})));
    EXPECT_TRUE(database().ucsname().isNull());
    EXPECT_TRUE(run({"UCS", "w"}));
    EXPECT_EQ(userSystem(), KdGeMatrix3d::kIdentity);

    EXPECT_TRUE(run({"UCS", "NAME", "side", "UCS", "0,0", "1,1", "2,2"}));
    EXPECT_THAT(printed(), HasSubstr("one line"));
    EXPECT_TRUE(userSystem().isEqualTo(first));
    EXPECT_FALSE(database().ucsname().isNull());
}

TEST_F(CommandsTest, NothingOfACommandIsLeftToTheNextOne)
{
    EXPECT_TRUE(run({"SETVAR", "\\esc"}));
    EXPECT_THAT(printed(), Not(HasSubstr("Unknown variable")));
    define(L"NOENTER", L"NOENTER", [] { kdedInitGet(1, nullptr); });
    EXPECT_TRUE(run({"NOENTER", "SETVAR", "", "COUNT"}));
    EXPECT_EQ(calls, 1);
}

TEST_F(CommandsTest, LayoutsAndViewportsAreEnteredAndLeft)
{
    EXPECT_TRUE(run({"LAYOUT", "no such sheet", "MSPACE", "PSPACE"}));
    EXPECT_TRUE(database().tilemode());
    EXPECT_TRUE(korra::setVariable("TILEMODE", "0"));
    const KdDbObjectId sheet = database().paperSpaceVportId();
    const KdDbObjectId window = addEntity(newWindow(2, {3, 3, 0}, 2, 2, 2));
    const std::tuple<std::vector<std::string>, KdDbObjectId> steps[] = {
        {{"MSPACE", "9,9"}, sheet}, {{"MSPACE", "3.5,2.5"}, window}, {{"PSPACE"}, sheet}};
    for (const auto& [lines, current] : steps) {
        EXPECT_TRUE(run(lines));
        EXPECT_EQ(kdedGetCurViewportObjectId(), current) << lines.back();
    }
    EXPECT_TRUE(run({"MSPACE", "3.5,2.5", "LAYOUT", "model"}));
    EXPECT_TRUE(database().tilemode());
}

TEST_F(CommandsTest, ZoomNeedsSomethingToShow)
{
    EXPECT_TRUE(run({"ZOOM", "EXTENTS"}));
    EXPECT_THAT(printed(), HasSubstr("nothing to be seen"));
    addEntity(new KdDbLine({10, 10, 0}, {18, 12, 0}));
    EXPECT_TRUE(run({"ZOOM", "e"}));
    EXPECT_EQ(variable(L"VIEWSIZE"), "6"); // 8 wide on a screen of 4:3
}

TEST_F(CommandsTest, RegenerationFollowsAChangedStyle)
{
    auto* const dimension = new KdDbAlignedDimension({0, 0, 0}, {2, 1, 0}, {0, 2, 0});
    dimension->setDimensionStyle(database().dimstyle());
    addEntity(dimension);
    const std::string before = variable(L"EXTMAX");
    EXPECT_EQ(Open<KdDbDimStyleTableRecord>(database().dimstyle())->setDimtxt(30), Kdapi::eOk);
    EXPECT_EQ(variable(L"EXTMAX"), before);
    EXPECT_TRUE(run({"REGEN"}));
    EXPECT_NE(variable(L"EXTMAX"), before);
}

} // namespace
