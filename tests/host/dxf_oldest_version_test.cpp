// Into a drawing of the oldest version goes only what that version knows.

#include "dxf_samples.h"

#include <functional>

namespace tests::dxf {
namespace {

/// A window that looks from the side, at 100 units of height, and freezes a layer.
constexpr std::string_view kWindow = R"(0 VIEWPORT; 5 B; 8 0; 67 1; 10 5.0; 20 6.0; 30 0.0
40 50.0; 41 40.0; 68 1; 69 2; 1001 ACAD; 1000 MVIEW; 1002 {; 1070 16; 1010 1.0; 1020 2.0
1030 3.0; 1010 1.0; 1020 0.0; 1030 0.0; 1040 30.00; 1040 100.0; 1040 7.0; 1040 8.0
1040 35.0; 1040 0.0; 1040 0.0; 1070 0; 1070 100; 1070 1; 1070 1; 1070 0; 1070 0
1070 0; 1070 0; 1040 0.0; 1040 0.0; 1040 0.0; 1040 1.0; 1040 1.0; 1040 1.0
1040 1.0; 1070 0; 1002 {; 1003 Hidden; 1002 }; 1002 }
)";

std::string drawingOf(std::string_view header)
{
    return file("0 SECTION; 2 HEADER; 9 $DIMSCALE; 40 1.0" + std::string(header) +
                "; 0 ENDSEC\n0 SECTION; 2 ENTITIES; 0 LINE; 5 A; 8 0\n" + std::string(kWindow) +
                "0 ENDSEC; 0 EOF");
}

const std::string kOldest = drawingOf("; 9 $ACADVER; 1 AC1009");

class OldestVersion : public HostTest {
protected:
    static KdDbObjectId addPolyline()
    {
        auto* const polyline = new KdDbPolyline;
        polyline->addVertexAt(0, {1, 2}, 1.0);
        polyline->addVertexAt(1, {3, 4}, 0.0, 0.5, 0.25);
        return addEntity(polyline);
    }

    static KdDbObjectId addText(const wchar_t* contents, const wchar_t* block = L"*Paper_Space")
    {
        auto* const text = new KdDbMText;
        text->setContents(contents);
        text->setTextHeight(3.0);
        text->setLocation({10, 20, 0});
        return addEntityToBlock(block, text);
    }

    /// What is saved: the same each time, and by whoever reads it.
    std::string saved() const
    {
        std::string text = korra::drawingText(*database_);
        EXPECT_EQ(korra::drawingText(*database_), text);
        EXPECT_EQ(korra::drawingText(*readWhole(text)), text);
        return text;
    }

    std::unique_ptr<KdDbDatabase> database_ = readToWorkOn(kOldest);
};

TEST_F(OldestVersion, ALightPolylineIsWrittenAsAnOldOne)
{
    const KdDbObjectId id = addPolyline();
    const KdDbObjectId walls = addLayer(L"Walls", database_.get());
    changeObject<KdDbPolyline>(*database_, id.handle().value(), [&](auto& polyline) {
        polyline.setLayer(walls);
        polyline.setClosed(true);
        polyline.transformBy(KdGeMatrix3d::translation({0, 0, 7}));
        korra::ObjectAccess::extras(polyline).xData = {{1001, L"ACAD"}, {1000, L"mine"}};
    });
    const std::string text = saved();
    EXPECT_NE(KdDbPolyline::cast(korra::ObjectAccess::object(id)), nullptr);
    const std::string handle = traceForm(id);
    EXPECT_THAT(
        text,
        HasSubstr(file("0 POLYLINE; 5 " + handle +
                       "; 8 Walls; 66 1; 10 0; 20 0; 30 7; 70 1; 1001 ACAD; 1000 mine; 0 VERTEX")));
    EXPECT_THAT(text, HasSubstr(file("8 Walls; 10 1; 20 2; 30 7; 42 1; 0 VERTEX")));
    EXPECT_THAT(text, HasSubstr(file("10 3; 20 4; 30 7; 40 0.5; 41 0.25; 0 SEQEND")));
}

TEST_F(OldestVersion, AMultilineTextIsWrittenAsItsLines)
{
    const KdDbObjectId id = addText(L"50%%%\\Pacross");
    const std::string text = saved();
    EXPECT_THAT(text, HasSubstr(file("0 TEXT; 67 1; 5 " + traceForm(id) +
                                     "; 8 0; 10 10; 20 17; 30 0; 40 3; 1 50%%%; 0 TEXT; 67 1")));
    EXPECT_THAT(text, HasSubstr(file("8 0; 10 10; 20 12; 30 0; 40 3; 1 across")));
    EXPECT_THAT(text, Not(HasSubstr("MTEXT")));
}

TEST_F(OldestVersion, TheLinesOfATextHaveTheFormOfItsStyle)
{
    const KdDbObjectId style = addTextStyle(L"Notes", database_.get());
    Open<KdDbTextStyleTableRecord>(style)->setXScale(0.5);
    Open<KdDbTextStyleTableRecord>(style)->setObliquingAngle(0.5);
    const KdDbObjectId id = addText(L"x");
    changeObject<KdDbMText>(*database_, id.handle().value(), [&](auto& text) {
        text.setTextStyle(style);
        text.setRotation(0.25);
    });
    const auto again = readWhole(saved());
    const auto* const line = find<KdDbText>(*again, id.handle().value());
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->widthFactor(), 0.5);
    EXPECT_NEAR(line->oblique(), 0.5, 1e-12);
    EXPECT_NEAR(line->rotation(), 0.25, 1e-12);
    EXPECT_EQ(line->textStyle(), again->contents().record(korra::TableKind::textStyle, L"Notes"));
}

TEST_F(OldestVersion, TheFormatsOfATextAreLostInDimensionGraphicsAlone)
{
    addText(L"{\\H2x;5}%%d", L"*D1");
    EXPECT_THAT(saved(), HasSubstr(file("40 3; 1 5%%d")));
}

TEST_F(OldestVersion, AViewIsReadFromExtendedDataAndWrittenThere)
{
    const auto& window = *find<KdDbViewport>(*database_, 0xB);
    EXPECT_EQ(window.viewTarget(), KdGePoint3d(1, 2, 3));
    EXPECT_EQ(window.viewDirection(), KdGeVector3d(1, 0, 0));
    EXPECT_NEAR(window.twistAngle(), 0.5235987755982988, 1e-15);
    EXPECT_EQ(window.viewHeight(), 100.0);
    EXPECT_EQ(window.viewCenter(), KdGePoint2d(7, 8));
    EXPECT_EQ(window.lensLength(), 35.0);
    EXPECT_EQ(saved(), kOldest);

    changeObject<KdDbViewport>(*database_, 0xB, [](auto& viewport) {
        viewport.setViewHeight(120.0);
        viewport.setPerspectiveOn(true);
    });
    const std::string expected =
        retagged(kOldest, {{"1040 100.0", "1040 120"}, {"1070 0; 1070 100", "1070 1; 1070 100"}});
    EXPECT_THAT(saved(), HasSubstr(expected.substr(expected.find("VIEWPORT"))));
    EXPECT_THAT(saved(), HasSubstr(file("0 ENDSEC; 0 SECTION; 2 TABLES; 0 TABLE")));
    EXPECT_THAT(saved(), HasSubstr(file("0 APPID")));
}

TEST_F(OldestVersion, AViewThatIsToldInPlainTagsStaysThere)
{
    database_ =
        readToWorkOn(replaced(kOldest, file("1001 ACAD"), file("12 5; 22 6; 45 90; 1001 ACAD")));
    EXPECT_EQ(find<KdDbViewport>(*database_, 0xB)->viewHeight(), 90.0);
    changeObject<KdDbViewport>(*database_, 0xB, [](auto& viewport) { viewport.setNumber(3); });
    const std::string text = saved();
    EXPECT_THAT(text, HasSubstr(file("69 3; 12 5; 22 6")));
    EXPECT_THAT(text, HasSubstr(file("1040 100.0; 1040 7.0; 1040 8.0")));
    EXPECT_THAT(text, Not(HasSubstr("APPID")));
}

TEST_F(OldestVersion, ANewViewportSeesTheSameWhenItIsReadAgain)
{
    auto* const viewport = newWindow(3, {0, 0, 0}, 4.0, 3.0, 33.0);
    viewport->setViewCenter({1.5, 2.5});
    const KdDbObjectId id = addEntityToBlock(L"*Paper_Space", viewport);
    const std::string text = saved();
    EXPECT_THAT(text, Not(HasSubstr(file("45 33"))));
    const auto again = readWhole(text);
    const auto* const read = find<KdDbViewport>(*again, id.handle().value());
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->viewHeight(), 33.0);
    EXPECT_EQ(read->viewCenter(), KdGePoint2d(1.5, 2.5));
    EXPECT_EQ(read->viewDirection(), KdGeVector3d::kZAxis);
    EXPECT_EQ(read->lensLength(), 50.0);
}

TEST_F(OldestVersion, WhatItCannotSayIsRefused)
{
    KdCmColor trueColor;
    trueColor.setRGB(1, 2, 3);
    const auto line = [&] { return Open<KdDbLine>(find<KdDbLine>(*database_, 0xA)->objectId()); };
    const std::pair<const char*, std::function<void()>> cases[] = {
        {"DICTIONARY ", [&] { line()->createExtensionDictionary(); }},
        {"LINE A: a drawing of its version has no true colours",
         [&] { line()->setColor(trueColor); }},
        {"MTEXT ", [&] { addText(L"\\H2x;large"); }},
        {"MTEXT ", [&] { addText(L""); }},
        {"LEADER ", [] { addEntityToBlock(L"*Paper_Space", new KdDbLeader); }},
        {"XLINE ", [] { addEntityToBlock(L"*Paper_Space", new KdDbXline); }},
    };
    for (const auto& [message, change] : cases) {
        database_ = readToWorkOn(kOldest);
        change();
        EXPECT_THAT(refusedSave(*database_), HasSubstr(std::string("cannot be saved: ") + message));
    }
}

TEST_F(OldestVersion, ADrawingThatSaysNoVersionIsKnownByWhatItHas)
{
    const std::string silent = drawingOf("");
    const std::string objects = file("0 SECTION; 2 OBJECTS; 0 ENDSEC; 0 EOF");
    const std::string marked =
        replaced(silent, file("0 LINE; 5 A; 8 0"), file("0 LINE; 5 A; 100 Entity; 8 0; 100 Line"));
    const std::pair<std::string, const char*> cases[] = {
        {silent, "POLYLINE"},
        {drawingOf("; 9 $ACADVER; 1 AC1006"), "POLYLINE"},
        {replaced(silent, file("0 EOF"), objects), "LWPOLYLINE"},
        {marked, "LWPOLYLINE"},
        {drawingOf("; 9 $ACADVER; 1 AC1012"), "LWPOLYLINE"},
    };
    for (const auto& [text, type] : cases) {
        database_ = readToWorkOn(text);
        addPolyline();
        EXPECT_THAT(korra::drawingText(*database_), HasSubstr(file("0 " + std::string(type))));
    }
}

} // namespace
} // namespace tests::dxf
