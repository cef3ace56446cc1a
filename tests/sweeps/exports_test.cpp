/// Every export that reaches the host, with everything failing that can.

#include "orvex/orvex.h"

#include "support/named_records.h"
#include "support/opened.h"
#include "support/support_folder.h"
#include "views/pick_scene.h"

#include <algorithm>
#include <ranges>
#include <string_view>

using support::Opened;

namespace {

/// What a scene has for the calls, in the order in which it was made.
using Ids = std::vector<KdDbObjectId>;

// Scenes. Each begins with a fresh host and a new drawing.

Ids nothing()
{
    return {};
}

Ids lines()
{
    return addLines(3);
}

/// A record "House" of each kind, and a "Second" that is not current.
Ids house()
{
    addNamedRecords(L"House", 1);
    addNamedRecords(L"Second", 2);
    return {QmLayerMgr::GetLayerId(L"House", drawing())};
}

/// House, and definitions: the linetype A in the metric file, B in the other, D damaged in both.
Ids definitions()
{
    static const SupportFolder folder;
    folder.write("korraiso.lin", "*A,metric\nA,10,-2\n*D,damaged\nA,ten\n");
    folder.write("korra.lin", "*B,imperial\nA,3,-1\n*D,damaged\nA,ten\n");
    folder.write("plain.shx", "");
    folder.write("big.shx", "");
    folder.use();
    return house();
}

/// A dimension that overrides one variable.
Ids dimension()
{
    KdDbDimension* const made = newDimension();
    made->setDimlfac(3);
    return {addEntity(made)};
}

Ids scene()
{
    const PickScene made = makePickScene();
    return {made.line, made.polyline};
}

Ids sceneUnderSheet()
{
    makePickScene();
    return {goToSheet()};
}

/// A polyline with an arc, an ellipse, a region and a reference that contains another one.
Ids geometry()
{
    const auto polyline = addEntity(newPolyline({{0, 0, 1}, {4, 0}, {4, 4}}));
    const auto ellipse =
        addEntity(new KdDbEllipse({0, 0, 0}, KdGeVector3d::kZAxis, {4, 0, 0}, 0.5));
    KdDbCircle circle({0, 0, 0}, KdGeVector3d::kZAxis, 2);
    KdArray<KdDbCurve*> edges;
    edges.append(&circle);
    KdArray<KdDbRegion*> regions;
    KdDbRegion::createFromCurves(edges, regions);
    addEntityToBlock(L"NUT", new KdDbLine);
    addEntityToBlock(L"BOLT", new KdDbBlockReference({0, 0, 0}, blockId(L"NUT")));
    return {polyline, ellipse, addEntity(regions.last()),
            addEntity(new KdDbBlockReference({0, 0, 0}, blockId(L"BOLT")))};
}

Ids movedSystem()
{
    moveUcs(5, 0);
    return {};
}

Ids namedSystem()
{
    useNamedUcs(5);
    return {};
}

// Calls that take more than a line.

template <class Change>
void changeLayer(Change change, const wchar_t* name, const wchar_t* linetype)
{
    QmLayerMgr::LAYERINFO info;
    info.name = name;
    info.colorIndex = 3;
    info.lineWeight = 25;
    info.lineType = linetype;
    info.measurement = KdDb::kMetric;
    change(info, drawing());
}

template <class Change>
void changeTextStyle(Change change, const wchar_t* name, const wchar_t* face)
{
    change(name, 0.7, 30, *face ? 1 : 0, L"plain.shx", L"big.shx", face, drawing());
}

template <class Change>
void changeDimStyle(Change change, const wchar_t* name, const wchar_t* textStyle)
{
    change(name, textStyle, 2.5, 2, 2, 0, 2, 1, 0, 1, drawing());
}

/// Gives the object to a call that wants it open.
template <class T, class Call>
void withOpen(KdDbObjectId id, Call call, KdDb::OpenMode mode = KdDb::kForWrite)
{
    const Opened<T> object(id, mode);
    if (object)
        call(object.get());
}

/// What picks and copies give.
struct Outputs {
    Outputs() = default;

    ~Outputs() { delete copy; }

    Outputs(const Outputs&) = delete;
    Outputs& operator=(const Outputs&) = delete;

    KdDbObjectId id, viewport, nested;
    KdGePoint3d point;
    KdGeMatrix3d transform;
    KdDbEntity* copy = nullptr;
    double value = 0;
};

/// @param pick  EntSelEx or EntSelExEx
template <class Pick>
void pickNested(Pick pick, const char* input)
{
    Outputs to;
    korra::queueInput(input);
    pick(L"", to.id, to.viewport, to.point, to.nested, to.transform);
}

void copyPicked(const char* input)
{
    Outputs to;
    korra::queueInput(input);
    rx_entsel(nullptr, to.copy, to.point, to.id, to.nested, &to.transform);
}

void copyOrCursor(const char* input)
{
    Outputs to;
    korra::queueInput(input);
    rx_entsel_ext(nullptr, to.copy, to.point, to.id, nullptr);
}

void edgeAt(KdDbObjectId id, const KdGePoint3d& point)
{
    Outputs to;
    GetSubEntByPt(id, point, to.copy, nullptr);
}

void divide(KdDbObjectId id)
{
    withOpen<KdDbCurve>(
        id,
        [](KdDbCurve* curve) {
            KdArray<KdGePoint3d> points;
            int count = 0;
            CString message;
            CConversion::KdDbCurveToKdGePoint3dArray(curve, points, count, 2, message);
        },
        KdDb::kForRead);
}

void outlineRegion(KdDbObjectId id)
{
    withOpen<KdDbRegion>(
        id,
        [](KdDbRegion* region) {
            KdDbPolyline* outline = nullptr;
            GetPolylineFromRegion(region, outline);
            delete outline;
        },
        KdDb::kForRead);
}

struct Export {
    const char* name;
    Ids (*prepare)();
    void (*call)(const Ids& ids);
    Faults faults = Faults::all;

    friend void PrintTo(const Export& each, std::ostream* out) { *out << each.name; }
};

// clang-format off
const Export kExports[] = {
    // objects
    {"AddToDb", nothing, [](const Ids&) { addLineBy([](KdDbEntity* line) { return addToDb(line, drawing()); }); }},
    {"PostToDb", nothing, [](const Ids&) { addLineBy([](KdDbEntity* line) { return postToDb(line, drawing()); }); }},
    {"EraseObject", lines, [](const Ids& ids) { EraseObject(ids[0]); }},
    {"EraseObjects", lines, [](const Ids& ids) { KdArray<KdDbObjectId> array; for (const KdDbObjectId id : ids) array.append(id); EraseObject(array); }},
    {"CopyEntity", lines, [](const Ids& ids) { withOpen<KdDbEntity>(ids[0], [](KdDbEntity* line) { KdDbLine source; CopyEntity(&source, line); }); }},
    {"CopyObject", lines, [](const Ids& ids) { withOpen<KdDbObject>(ids[0], [](KdDbObject* line) { KdDbLine source; CopyObject(&source, line); }); }},
    {"EntUpdate", lines, [](const Ids& ids) { EntUpdate(ids[0]); }},
    {"EntUpdateOpen", lines, [](const Ids& ids) { withOpen<KdDbEntity>(ids[0], [](KdDbEntity* line) { EntUpdate(line); }); }},
    {"DrawOrderMoveToLast", lines, [](const Ids& ids) { DrawOrderMoveToLast(ids[1]); }},
    {"IsValidId", lines, [](const Ids& ids) { IsValidId(ids[0]); }},
    {"IsEntityInCurrentSpaceId", lines, [](const Ids& ids) { KdDbObjectId id = ids[0]; isEntityInCurrentSpaceId(id); }},

    // layers
    {"CreateLayer", definitions, [](const Ids&) { changeLayer(QmLayerMgr::CreateLayer, L"Walls", L""); }},
    {"CreateLayerLoading", definitions, [](const Ids&) { changeLayer(QmLayerMgr::CreateLayer, L"Walls", L"B"); }},
    {"CreateLayerLacking", definitions, [](const Ids&) { changeLayer(QmLayerMgr::CreateLayer, L"Walls", L"Zigzag"); }},
    {"SetLayerInfo", definitions, [](const Ids&) { changeLayer(QmLayerMgr::SetLayerInfo, L"House", L"B"); }},
    {"ModifyLayer", definitions, [](const Ids&) { changeLayer(QmLayerMgr::ModifyLayer, L"House", L"A"); }},
    {"GetLayerInfo", house, [](const Ids&) { changeLayer(QmLayerMgr::GetLayerInfo, L"House", L""); }},
    {"GetLayerColor", house, [](const Ids&) { unsigned short color; QmLayerMgr::GetLayerColor(color, L"House", drawing()); }},
    {"GetLayerLType", house, [](const Ids&) { CString name; QmLayerMgr::GetLayerLType(name, L"House", drawing()); }},
    {"GetLayerLWeight", house, [](const Ids& ids) { int weight; QmLayerMgr::GetLayerLWeight(weight, ids[0]); }},
    {"GetLayerNameFromDrawing", house, [](const Ids&) { CStringArray names; QmLayerMgr::GetLayerNameFromDrawing(names, drawing()); }},
    {"GetCurrentLayer", house, [](const Ids&) { QmLayerMgr::GetCurrentLayer(drawing()); }},
    {"SetCurrentLayer", house, [](const Ids&) { QmLayerMgr::SetCurrentLayer(L"House", drawing()); }},
    {"IsLayerOn", house, [](const Ids&) { QmLayerMgr::IsLayerOn(L"House", drawing()); }},
    {"GetColorIndexFromLayer", house, [](const Ids&) { GetColorIndexFromLayer(L"House", drawing()); }},
    {"GetLineWeightFromLayer", house, [](const Ids&) { GetLineWeightFromLayer(L"House", drawing()); }},
    {"LayerIsLocked", house, [](const Ids& ids) { KdDbLine line; line.setLayer(ids[0]); LayerIsLocked(&line); }},

    // linetypes
    {"LoadLType", definitions, [](const Ids&) { QmLTypeMgr::LoadLType(L"A", KdDb::kMetric, drawing(), 1); }},
    {"LoadLTypeElsewhere", definitions, [](const Ids&) { QmLTypeMgr::LoadLType(L"B", KdDb::kMetric, drawing(), 0); }},
    {"LoadLTypeDamaged", definitions, [](const Ids&) { QmLTypeMgr::LoadLType(L"D", KdDb::kEnglish, drawing(), 0); }},
    {"GetLTypeId", nothing, [](const Ids&) { KdDbObjectId id; QmLTypeMgr::GetLTypeId(id, L"Continuous", drawing()); }},
    {"GetLTypeFromDrawing", nothing, [](const Ids&) { CStringArray names; QmLTypeMgr::GetLTypeFromDrawing(names, drawing()); }},

    // text styles
    {"CreateTextStyle", definitions, [](const Ids&) { changeTextStyle(TxtStyleMgr::CreateTextStyle, L"Notes", L""); }},
    {"CreateTextStyleWindowsFont", definitions, [](const Ids&) { changeTextStyle(TxtStyleMgr::CreateTextStyle, L"Notes", L"DejaVu Sans"); }},
    {"ModifyTextStyle", definitions, [](const Ids&) { changeTextStyle(TxtStyleMgr::ModifyTextStyle, L"House", L""); }},
    {"ModifyTextStyleWindowsFont", definitions, [](const Ids&) { changeTextStyle(TxtStyleMgr::ModifyTextStyle, L"House", L"plain.shx"); }},
    {"GetTxtStyleNameFromDrawing", house, [](const Ids&) { CStringArray names; TxtStyleMgr::GetTxtStyleNameFromDrawing(names, drawing()); }},
    {"GetCurrentTextStyle", house, [](const Ids&) { TxtStyleMgr::GetCurrentTextStyle(drawing()); }},
    {"SetCurrentTextStyle", house, [](const Ids&) { TxtStyleMgr::SetCurrentTextStyle(L"House", drawing()); }},
    {"GetTextStyle", house, [](const Ids&) { KdDbObjectId id; KdGiTextStyle style; rx_getTextStyleId(L"House", drawing(), id); rx_getTextStyle(style, id); }},

    // dimension styles and overrides
    {"CreateDimStyle", house, [](const Ids&) { changeDimStyle(DimStyleMgr::CreateDimStyle, L"Site", L"House"); }},
    {"ModifyDimStyle", house, [](const Ids&) { changeDimStyle(DimStyleMgr::ModifyDimStyle, L"House", L"Standard"); }},
    {"SetCurrentDimStyle", house, [](const Ids&) { DimStyleMgr::SetCurrentDimStyle(L"House", 1, nullptr); }},
    {"GetCurrentDimStyle", house, [](const Ids&) { DimStyleMgr::GetCurrentDimStyle(drawing()); }},
    {"GetDimStyleNameFromDrawing", house, [](const Ids&) { CStringArray names; DimStyleMgr::GetDimStyleNameFromDrawing(names, drawing()); }},
    {"GetDimStyleTextColor", house, [](const Ids&) { unsigned short color; DimStyleMgr::GetDimStyleTextColor(L"House", color, drawing()); }},
    {"GetDimStyleTextHeight", house, [](const Ids&) { double height; DimStyleMgr::GetDimStyleTextHeight(L"House", height, drawing()); }},
    {"GetDimStyleDimScale", house, [](const Ids&) { DimStyleMgr::GetDimStyleDimScale(L"House", drawing()); }},
    {"SetDimScale", house, [](const Ids&) { DimStyleMgr::SetDimScale(L"House", 2.5, drawing()); }},
    {"GetTextStyleFromDim", house, [](const Ids&) { CString name; DimStyleMgr::GetTextStyleFromDim(name, L"House", drawing()); }},
    {"GetCurrentDimclrd", house, [](const Ids&) { unsigned short color; DimStyleMgr::GetCurrentDimclrd(color, L"", drawing()); }},
    {"OverrideDimVariable", dimension, [](const Ids& ids) { withOpen<KdDbDimension>(ids[0], [](KdDbDimension* each) { DimStyleMgr::OverrideDimVariable(each, L"dimscale", 7.25); }); }},
    {"OverrideDimVariableAsStyle", dimension, [](const Ids& ids) { withOpen<KdDbDimension>(ids[0], [](KdDbDimension* each) { DimStyleMgr::OverrideDimVariable(each, L"dimlfac", 1.0); }); }},
    {"DeleteDimVarsOverride", dimension, [](const Ids& ids) { withOpen<KdDbDimension>(ids[0], [](KdDbDimension* each) { DimStyleMgr::DeleteDimVarsOverride(each, 144); }); }},

    // system variables, shell, colours
    {"GetVar", nothing, [](const Ids&) { CString text; CSysVar::GetVar(L"CECOLOR", text); }},
    {"SetVar", nothing, [](const Ids&) { CSysVar::SetVar(L"CECOLOR", CString(L"5")); }},
    {"SetVarPoint", nothing, [](const Ids&) { CSysVar::SetVar(L"LASTPOINT", KdGePoint3d(1, 2, 3)); }},
    {"VarType", nothing, [](const Ids&) { CSysVar::VarType(L"CECOLOR"); }},
    {"SetSysIntValue", nothing, [](const Ids&) { QmSysVarMgr::SetSysIntValue(33, L"OSMODE"); }},
    {"SetSysStringValue", nothing, [](const Ids&) { QmSysVarMgr::SetSysStringValue(L"6", L"CECOLOR"); }},
    {"IsModuleLoaded", nothing, [](const Ids&) { isModuleLoaded(L"other.krx"); }},
    {"SendCommand", nothing, [](const Ids&) { sendCommandToAutoCAD(L"REGEN "); }},
    {"IsFileExist", nothing, [](const Ids&) { Orvex::IsFileExist(L"/proc/self/exe"); }},
    {"StringFromID", nothing, [](const Ids&) { Orvex::StringFromID(101); }},
    {"InvokeColorDlg", nothing, [](const Ids&) { int chosen; korra::queueInput("30"); Orvex::InvokeColorDlg(7, chosen); }},
    {"GetCurrentBkColor", nothing, [](const Ids&) { Orvex::GetCurrentBkColor(drawing()); }},

    // geometry
    {"GetPerpendPoint", lines, [](const Ids& ids) { KdGePoint3d foot; GetPerpendPoint({1, 2, 3}, ids[0], foot); }},
    {"DividePolyline", geometry, [](const Ids& ids) { divide(ids[0]); }},
    {"DivideCurve", geometry, [](const Ids& ids) { divide(ids[1]); }},
    {"CreateBounding", geometry, [](const Ids& ids) { withOpen<KdDbCurve>(ids[1], [](KdDbCurve* curve) { delete CreateBounding(curve); }, KdDb::kForRead); }},
    {"GetPolylineFromRegion", geometry, [](const Ids& ids) { outlineRegion(ids[2]); }},
    {"GetComplexEntTransform", geometry, [](const Ids& ids) { KdGeMatrix3d xform; GetComplexEntTransform(ids[3], ids[0], xform); }},
    {"GetSubIdsFromBlockRef", geometry, [](const Ids& ids) { KdArray<KdDbObjectId> inside; withOpen<KdDbBlockReference>(ids[3], [&](KdDbBlockReference* each) { GetSubIdsFromBlockRef(each, inside); }, KdDb::kForRead); }},
    {"GetAttachedParam", geometry, [](const Ids& ids) { KdGePoint3d point; double angle; GetAttachedParam(point, angle, ids[0], KdGeMatrix3d::kIdentity, {1, 2, 0}); }},
    {"Intersect", geometry, [](const Ids& ids) { kds_name names[2]; resbuf* points = nullptr; kddbGetKdsName(names[0], ids[0]); kddbGetKdsName(names[1], ids[1]); kds_intersect(names[0], names[1], &points); kdutRelRb(points); }},
    {"GetPixelHeight", nothing, [](const Ids&) { GetPixelHeight(); }},
    {"GetGripFusionLength", nothing, [](const Ids&) { GetGripFusionLength(); }},
    {"GetGripPointTol", nothing, [](const Ids&) { GetGripPointTol(); }},
    {"GetLeaderTol", nothing, [](const Ids&) { GetLeaderTol(); }},
    {"GetSelectBoxLength", nothing, [](const Ids&) { GetSelectBoxLength(); }},

    // coordinates and viewports
    {"UCS2WCS", movedSystem, [](const Ids&) { KdGePoint3d point; UCS2WCS(point, point); }},
    {"UcToEc", movedSystem, [](const Ids&) { double point[3] = {}, normal[3] = {0, 0, -1}; rx_uc2ec(point, point, normal, false); }},
    {"UcsMat", movedSystem, [](const Ids&) { KdGeMatrix3d matrix; rx_ucsmat(matrix); }},
    {"Ms2Ps", sceneUnderSheet, [](const Ids& ids) { KdDbObjectId id = ids[0]; KdGeMatrix3d matrix; ms2ps(id, matrix); }},
    {"Ps2MsCurrent", sceneUnderSheet, [](const Ids&) { KdGeMatrix3d matrix; ps2ms(matrix); }},
    {"GetViewPortIdIdByPoint", sceneUnderSheet, [](const Ids&) { KdDbObjectId id; double scale; getViewPortIdIdByPoint(id, scale, {130, 100, 0}, drawing()); }},

    // picking
    {"PickOfNested", scene, [](const Ids&) { pickNested(EntSelEx, "\\ctrl 109,0"); }},
    {"PickOfOldPolyline", scene, [](const Ids&) { pickNested(EntSelEx, "4,80"); }},
    {"PickThroughWindow", sceneUnderSheet, [](const Ids&) { pickNested(EntSelEx, "318,100"); }},
    {"PickMissed", scene, [](const Ids&) { pickNested(EntSelEx, "\\miss"); }},
    {"PickOrCursor", scene, [](const Ids&) { pickNested(EntSelExEx, "109,0"); }, Faults::single},
    {"PickMissedOrCursor", scene, [](const Ids&) { pickNested(EntSelExEx, "\\miss"); }, Faults::single},
    {"PickOfTop", scene, [](const Ids&) { Outputs to; give({"109,0", "109,0"}); EntSel_(L"", to.id, to.point); NEntSelP(L"", to.id, to.viewport, to.point, 0, to.transform); }},
    {"PickAtPoint", scene, [](const Ids&) { Outputs to; to.point = {109, 0, 0}; NEntSelP(L"", to.id, to.viewport, to.point, 1, to.transform); }},
    {"PickWithoutCopy", scene, [](const Ids&) { KdDbObjectId id; KdGePoint3d point; korra::queueInput("109,0"); rx_entsel(nullptr, id, point, nullptr); }},
    {"CopyOrCursor", scene, [](const Ids&) { copyOrCursor("109,0"); }, Faults::single},
    {"CopyMissedOrCursor", scene, [](const Ids&) { copyOrCursor("\\miss"); }, Faults::single},
    {"CopyOfNested", scene, [](const Ids&) { copyPicked("109,0"); }},
    {"CopyOfSegment", scene, [](const Ids&) { copyPicked("15,55"); }},
    {"CopyThroughWindow", sceneUnderSheet, [](const Ids&) { copyPicked("318,100"); }},
    {"CopyWithValue", scene, [](const Ids&) { Outputs to; give({"Value", "2.5"}); rx_entsel(nullptr, L"\nValue: ", L"Value", to.copy, to.point, to.value, nullptr); }},
    {"GetSubEntByPt", scene, [](const Ids& ids) { edgeAt(ids[0], {4, 50, 0}); }},
    {"GetSubEntByPtNested", scene, [](const Ids& ids) { edgeAt(ids[0], {109, 0, 0}); }},

    // savers
    {"CmdechoServer", nothing, [](const Ids&) { const CQM_CmdechoServer saver(0); }},
    {"CmdEcho", nothing, [](const Ids&) { const CCmdEcho saver; }},
    {"OsnapServer", nothing, [](const Ids&) { const CQM_OsnapServer saver(1); }},
    {"OrthomodeServer", nothing, [](const Ids&) { const CQM_OrthomodeServer saver(true); }},
    {"LayerServer", house, [](const Ids&) { const CQM_LayerServer saver(L"Second"); }},
    {"TextStyleServer", house, [](const Ids&) { const CQM_TextStyleServer saver(L"Second"); }},
    {"DimStyleServer", house, [](const Ids&) { const CQM_DimStyleServer saver(L"Second"); CQM_DimStyleServer copy(saver); copy = saver; }},
    {"DocLockServer", nothing, [](const Ids&) { const CQM_DocLockServer saver; }},
    {"UcsServer", movedSystem, [](const Ids&) { const CQM_UcsServer saver(KdGeMatrix3d::translation({10, 0, 0})); }},
    {"UcsServerNamed", namedSystem, [](const Ids&) { const CQM_UcsServer saver(KdGeMatrix3d::translation({10, 0, 0})); }},
};

// clang-format on

class ExportTest : public HostTest, public WithParamInterface<Export> {};

TEST_P(ExportTest, LeavesNothingBehindWhateverFails)
{
    const Export& swept = GetParam();
    sweepFaults<Ids>(swept.prepare, swept.call, nullptr, swept.faults);
}

TEST(ReadingExports, OpenNothingForWriting)
{
    const auto reads = [](const Export& each) {
        return std::ranges::any_of(
            std::initializer_list<std::string_view>{"Get", "Is", "Pick", "CopyOf", "CopyThrough",
                                                    "LayerIsLocked", "Ms2Ps", "Ps2Ms"},
            [&](std::string_view begin) { return std::string_view(each.name).starts_with(begin); });
    };
    for (const Export& each : kExports | std::views::filter(reads)) {
        if (each.name == std::string_view("GetLayerInfo"))
            continue; // it opens the layer for writing
        startFreshHost();
        const Ids ids = each.prepare();
        platform::startTrace();
        each.call(ids);
        for (const platform::TracedCall& call : platform::stopTrace()) {
            const bool opens = call.operation == "kddbOpenObject" ||
                               call.operation.ends_with("::getSymbolTable") ||
                               call.operation.ends_with("::getObject");
            EXPECT_FALSE(opens && call.arguments.ends_with(", 1")) << each.name << toText(call);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, ExportTest, ValuesIn(kExports),
                         [](const auto& each) { return std::string(each.param.name); });

} // namespace
