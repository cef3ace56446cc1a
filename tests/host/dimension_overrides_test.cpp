#include "support/host_test.h"

#include "db/dimension_overrides.h"
#include "db/dimension_variables.h"

#include <limits>

using namespace tests;
using korra::ObjectAccess;
using korra::TypedValue;

namespace {

using Nodes = std::vector<TypedValue>;

TypedValue application(const wchar_t* name)
{
    return {1001, std::wstring(name)};
}

TypedValue text(const wchar_t* value)
{
    return {1000, std::wstring(value)};
}

TypedValue open()
{
    return {1002, std::wstring(L"{")};
}

TypedValue shut()
{
    return {1002, std::wstring(L"}")};
}

TypedValue code(short value)
{
    return {1070, value};
}

TypedValue real(double value)
{
    return {1040, value};
}

class DimensionOverridesTest : public HostTest {
protected:
    DimensionOverridesTest() = default;

    KdDbObjectId add(const Nodes& data)
    {
        auto* dimension = new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0});
        ObjectAccess::extras(*dimension).xData = data;
        return addEntity(dimension);
    }

    template <class Change>
    static Nodes changed(KdDbObjectId id, Change change)
    {
        KdDbDimension* dimension = nullptr;
        EXPECT_EQ(kddbOpenObject(dimension, id, KdDb::kForWrite), Kdapi::eOk);
        EXPECT_EQ(change(*dimension), Kdapi::eOk);
        dimension->close();
        return ObjectAccess::extras(*dimension).xData;
    }
};

TEST_F(DimensionOverridesTest, SetterReplacesTheFirstPairElseAppendsToTheFirstSection)
{
    const TypedValue acad = application(L"ACAD");
    const TypedValue section = text(L"DSTYLE");

    struct Case {
        const char* what;
        Nodes before;
        Nodes after;
    };

    const Case cases[] = {
        {"no data", {}, {acad, section, open(), code(147), real(2.5), shut()}},
        {"another application's data",
         {application(L"OTHER"), section, open(), code(147), real(1), shut()},
         {application(L"OTHER"), section, open(), code(147), real(1), shut(), acad, section, open(),
          code(147), real(2.5), shut()}},
        {"no section",
         {acad, text(L"note"), application(L"OTHER"), code(7)},
         {acad, text(L"note"), section, open(), code(147), real(2.5), shut(), application(L"OTHER"),
          code(7)}},
        {"a pair",
         {acad, section, open(), code(147), real(1), code(40), real(9), shut()},
         {acad, section, open(), code(147), real(2.5), code(40), real(9), shut()}},
        {"two pairs",
         {acad, section, open(), code(147), real(1), code(147), real(3), shut()},
         {acad, section, open(), code(147), real(2.5), code(147), real(3), shut()}},
        {"a pair in the second section",
         {acad, section, open(), shut(), section, open(), code(147), real(3), shut()},
         {acad, section, open(), shut(), section, open(), code(147), real(2.5), shut()}},
        {"two sections without it",
         {acad, section, open(), code(40), real(9), shut(), section, open(), shut()},
         {acad, section, open(), code(40), real(9), code(147), real(2.5), shut(), section, open(),
          shut()}},
        {"no closing node",
         {acad, section, open(), code(40), real(9)},
         {acad, section, open(), code(40), real(9), code(147), real(2.5)}},
        {"no closing node before another application",
         {acad, section, open(), application(L"OTHER"), code(7)},
         {acad, section, open(), code(147), real(2.5), application(L"OTHER"), code(7)}},
        {"nothing behind the name", {acad, section}, {acad, section, open(), code(147), real(2.5)}},
        {"a value that looks like the code",
         {acad, section, open(), code(271), code(147), code(40), real(9), shut()},
         {acad, section, open(), code(271), code(147), code(40), real(9), code(147), real(2.5),
          shut()}},
        {"a code without its value",
         {acad, section, open(), code(40), real(9), code(147), shut()},
         {acad, section, open(), code(40), real(9), code(147), real(2.5), code(147), shut()}},
        {"a pair that nobody knows, name in small letters",
         {acad, text(L"dstyle"), open(), code(999), text(L"x"), shut()},
         {acad, text(L"dstyle"), open(), code(999), text(L"x"), code(147), real(2.5), shut()}},
    };
    for (const Case& each : cases) {
        const auto id = add(each.before);
        EXPECT_EQ(changed(id, [](auto& dimension) { return dimension.setDimgap(2.5); }), each.after)
            << each.what;
        KdDbDimension* dimension = nullptr;
        ASSERT_EQ(kddbOpenObject(dimension, id, KdDb::kForRead), Kdapi::eOk);
        EXPECT_EQ(dimension->dimgap(), 2.5) << each.what;
        dimension->close();
    }
}

TEST_F(DimensionOverridesTest, ValuesHaveTheTypeOfTheirKind)
{
    const auto id = add({});
    const Nodes nodes = changed(id, [](KdDbDimension& dimension) {
        dimension.setDimdec(3);
        dimension.setDimtix(true);
        return dimension.setDimscale(2.0);
    });
    const Nodes expected = {application(L"ACAD"),
                            text(L"DSTYLE"),
                            open(),
                            code(271),
                            code(3),
                            code(174),
                            code(1),
                            code(40),
                            real(2.0),
                            shut()};
    EXPECT_EQ(nodes, expected);
}

TEST_F(DimensionOverridesTest, OutOfRangeValuesAreRefusedAndChangeNothing)
{
    const auto id = add({});
    KdDbDimension* dimension = nullptr;
    ASSERT_EQ(kddbOpenObject(dimension, id, KdDb::kForWrite), Kdapi::eOk);
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(dimension->setDimdec(9), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimdec(-1), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimadec(-1), Kdapi::eOk);
    EXPECT_EQ(dimension->setDimatfit(4), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimtad(5), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimjust(-1), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimlfac(0.0), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimscale(-1.0), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimgap(infinite), Kdapi::eInvalidInput);
    EXPECT_EQ(dimension->setDimgap(-1.0), Kdapi::eOk);
    dimension->downgradeOpen();
    EXPECT_EQ(dimension->setDimgap(1.0), Kdapi::eNotOpenForWrite);
    EXPECT_EQ(dimension->dimgap(), -1.0);
    EXPECT_EQ(dimension->dimdec(), 4);
    dimension->close();
}

TEST_F(DimensionOverridesTest, EveryKnownVariableIsReadBackFromStyleAndOverride)
{
    const KdDbDimStyleTableRecord style;
    for (const korra::DimensionVariable& variable : korra::dimensionVariables()) {
        const int byCode = korra::dimensionVariableIndex(variable.code);
        ASSERT_GE(byCode, 0) << variable.code;
        EXPECT_EQ(korra::dimensionVariables()[static_cast<std::size_t>(byCode)].code,
                  variable.code);
        EXPECT_TRUE(korra::accepts(variable, variable.byDefault) ||
                    variable.kind == korra::DimensionKind::text ||
                    variable.kind == korra::DimensionKind::reference)
            << variable.code;
    }
    EXPECT_EQ(korra::dimensionVariableIndex(L"dimgap"), korra::dimensionVariableIndex(147));
    EXPECT_EQ(korra::dimensionVariableIndex(L"nothing"), -1);
    EXPECT_EQ(style.dimdec(), 4);
    EXPECT_TRUE(style.dimtih());
    EXPECT_DOUBLE_EQ(style.dimgap(), 0.09);

    const auto id = add({});
    changed(id, [](KdDbDimension& dimension) {
        dimension.setDimadec(1);
        dimension.setDimtdec(2);
        dimension.setDimtoh(false);
        dimension.setDimtih(false);
        dimension.setDimtofl(true);
        dimension.setDimatfit(1);
        dimension.setDimtad(3);
        dimension.setDimtvp(-0.5);
        dimension.setDimse1(true);
        dimension.setDimse2(true);
        dimension.setDimsd1(true);
        dimension.setDimsd2(true);
        dimension.setDimjust(2);
        return dimension.setDimlfac(-2.0);
    });
    KdDbDimension* dimension = nullptr;
    ASSERT_EQ(kddbOpenObject(dimension, id, KdDb::kForRead), Kdapi::eOk);
    EXPECT_EQ(dimension->dimadec(), 1);
    EXPECT_EQ(dimension->dimtdec(), 2);
    EXPECT_FALSE(dimension->dimtoh());
    EXPECT_FALSE(dimension->dimtih());
    EXPECT_TRUE(dimension->dimtofl());
    EXPECT_EQ(dimension->dimatfit(), 1);
    EXPECT_EQ(dimension->dimtad(), 3);
    EXPECT_EQ(dimension->dimtvp(), -0.5);
    EXPECT_TRUE(dimension->dimse1() && dimension->dimse2());
    EXPECT_TRUE(dimension->dimsd1() && dimension->dimsd2());
    EXPECT_EQ(dimension->dimjust(), 2);
    EXPECT_EQ(dimension->dimlfac(), -2.0);
    dimension->close();
}

TEST_F(DimensionOverridesTest, OverridesOfTheWrongTypeAreNotTaken)
{
    const auto id = add({application(L"ACAD"), text(L"DSTYLE"), open(), code(271), text(L"six"),
                         code(147), code(2), code(77), code(99), shut()});
    KdDbDimension* dimension = nullptr;
    ASSERT_EQ(kddbOpenObject(dimension, id, KdDb::kForRead), Kdapi::eOk);
    EXPECT_EQ(dimension->dimdec(), 4);
    EXPECT_EQ(dimension->dimgap(), 2.0); // a whole number will do for a real
    EXPECT_EQ(dimension->dimtad(), 0);
    dimension->close();
}

} // namespace
