#include "dxf/oldest_version.h"

#include "dxf/class_markers.h"
#include "dxf/drawing_error.h"
#include "dxf/tag_text.h"
#include "entities/text_layout.h"
#include "form/numbers.h"
#include "gi/mtext_lines.h"
#include "platform/text.h"

#include <algorithm>
#include <utility>

namespace korra {
namespace {

constexpr long long kOldestVersion = 1009;

constexpr std::string_view kLineEnd = "\n"; ///< of tags that are never written
constexpr std::string_view kApplication = "ACAD";
constexpr std::string_view kView = "MVIEW";

constexpr int kApplicationCode = 1001;
constexpr int kModeCode = 90;
constexpr long long kModeBits = 31;

/// One value of a view in extended data.
struct ViewValue {
    int code;
    std::string_view value; ///< of a viewport that has none
    int plainCode = 0;      ///< of the same value among an entity's own tags; 0: the host has none
};

/// What a view in extended data begins with: the version of the list, target, direction, twist,
/// height, centre, lens length, the clipping planes, the mode.
constexpr ViewValue kViewValues[] = {
    {1002, "{"},        {1070, "16"},      {1010, "0.0", 17}, {1020, "0.0", 27},
    {1030, "0.0", 37},  {1010, "0.0", 16}, {1020, "0.0", 26}, {1030, "1.0", 36},
    {1040, "0.0", 51},  {1040, "0.0", 45}, {1040, "0.0", 12}, {1040, "0.0", 22},
    {1040, "50.0", 42}, {1040, "0.0"},     {1040, "0.0"},     {1070, "0", kModeCode}};

/// What follows in a new one: zooming, the icon, snap and grid, hiding, and no frozen layers.
constexpr ViewValue kOtherValues[] = {
    {1070, "100"},  {1070, "1"},    {1070, "1"},   {1070, "0"},   {1070, "0"},    {1070, "0"},
    {1070, "0"},    {1040, "0.0"},  {1040, "0.0"}, {1040, "0.0"}, {1040, "10.0"}, {1040, "10.0"},
    {1040, "10.0"}, {1040, "10.0"}, {1070, "0"},   {1002, "{"},   {1002, "}"},    {1002, "}"}};

/// The codes of a viewport that are no part of its view.
constexpr int kWindowCodes[] = {8, 6, 62, 370, 48, 60, 10, 20, 30, 40, 41, 68, 69};

/// The tag behind the name of a view whose values are all there; kNone without one.
std::size_t viewIn(const TagList& tags)
{
    for (std::size_t name = 0; name < tags.size(); ++name) {
        if (tags[name].code != 1000 || trimmed(tags[name].value) != kView)
            continue;
        std::size_t tag = name + 1;
        const bool isWhole = std::ranges::all_of(kViewValues, [&](const ViewValue& value) {
            return tag < tags.size() && tags[tag++].code == value.code;
        });
        return isWhole ? name + 1 : TagList::kNone;
    }
    return TagList::kNone;
}

/// The data of a new view, with the name of the application unless that has data already.
std::string newView(bool withApplication, std::string_view lineEnd)
{
    std::string text;
    if (withApplication)
        appendTag(text, kApplicationCode, kApplication, lineEnd);
    appendTag(text, 1000, kView, lineEnd);
    for (const ViewValue& value : kViewValues)
        appendTag(text, value.code, value.value, lineEnd);
    for (const ViewValue& value : kOtherValues)
        appendTag(text, value.code, value.value, lineEnd);
    return text;
}

/// The tags of a viewport with a view among its extended data.
std::string withSomeView(std::string_view viewport, std::string_view lineEnd)
{
    const TagList tags(viewport);
    if (viewIn(tags) != TagList::kNone)
        return std::string(viewport);
    std::string text;
    bool isDone = false;
    for (std::size_t index = 0; index < tags.size(); ++index) {
        text += tags[index].raw;
        if (tags[index].code == kApplicationCode && tags[index].value == kApplication) {
            text += newView(false, lineEnd);
            isDone = true;
        }
    }
    return isDone ? text : text + newView(true, lineEnd);
}

/// The value of a plain tag as extended data holds it: of the mode, sixteen bits at most.
std::string extendedValueOf(const TagList& plain, int code)
{
    const std::string_view value = plain.valueOf(code);
    if (code != kModeCode)
        return std::string(value);
    return formatWhole(parseWhole(value).value_or(0) & kModeBits);
}

/// Gives an entity what all entities have.
void dressAs(KdDbEntity& standIn, const KdDbEntity& entity)
{
    standIn.setLayer(entity.layerId());
    standIn.setLinetype(entity.linetypeId());
    standIn.setColor(entity.color());
    standIn.setLineWeight(entity.lineWeight());
    standIn.setLinetypeScale(entity.linetypeScale());
    standIn.setVisibility(entity.visibility());
}

/// True for what is in the block of a dimension, which shows it and is read for nothing else.
bool isDimensionGraphics(const KdDbEntity& entity)
{
    const auto* const block = ObjectAccess::live<KdDbBlockTableRecord>(entity.ownerId());
    return block && std::wstring_view(block->name()).starts_with(L"*D");
}

std::vector<std::unique_ptr<KdDbEntity>> newLines(const KdDbMText& text)
{
    std::vector<std::unique_ptr<KdDbEntity>> lines;
    for (std::unique_ptr<KdDbText>& line : newLinesOf(text))
        lines.push_back(std::move(line));
    if (!isDimensionGraphics(text) && (lines.empty() || isFormatted(text.contents())))
        throw DrawingError{0, "a drawing of its version has no texts with such contents"};
    return lines;
}

} // namespace

bool isOfOldestVersion(const DatabaseContents& contents)
{
    if (!contents.form.isFromFile())
        return false;
    const std::wstring version = contents.header.text("$ACADVER", L"");
    if (!version.empty())
        return version.starts_with(L"AC") &&
               parseWhole(platform::toUtf8(version).substr(2)).value_or(0) <= kOldestVersion;
    const auto& sections = contents.form.sections;
    return std::ranges::find(sections, "OBJECTS", &FileForm::Section::name) == sections.end() &&
           !markerPrefix(contents);
}

void refuseWhatItLacks(const KdDbEntity& entity)
{
    const auto is = [&](KdRxClass* description) { return entity.isKindOf(description); };
    if (is(KdDbEllipse::desc()) || is(KdDbSpline::desc()) || is(KdDbXline::desc()) ||
        is(KdDbRay::desc()) || is(KdDbLeader::desc()))
        throw DrawingError{0, "a drawing of its version has no such entities"};
}

std::optional<Pieces> newStandIns(const KdDbEntity& entity)
{
    refuseWhatItLacks(entity);
    Pieces standIns;
    if (const auto* const polyline = KdDbPolyline::cast(&entity)) {
        std::unique_ptr<KdDbVertexCurve> old = polyline->newOldPolyline();
        for (KdDbObject* vertex : ObjectAccess::owned(*old)->objects())
            dressAs(static_cast<KdDbEntity&>(*vertex), entity);
        standIns.push_back(std::move(old));
    } else if (const auto* const text = KdDbMText::cast(&entity)) {
        standIns = newLines(*text);
    } else {
        return std::nullopt;
    }
    for (const std::unique_ptr<KdDbEntity>& standIn : standIns)
        dressAs(*standIn, entity);
    return standIns;
}

bool tellsView(std::string_view viewport)
{
    return TagList(viewport).find(45) != TagList::kNone;
}

std::string viewTags(std::string_view viewport)
{
    const TagList tags(viewport);
    std::size_t tag = viewIn(tags);
    if (tag == TagList::kNone || tellsView(viewport))
        return {};
    std::string view;
    appendTag(view, 0, tags[0].value, kLineEnd);
    for (const ViewValue& value : kViewValues) {
        if (value.plainCode != 0)
            appendTag(view, value.plainCode, tags[tag].value, kLineEnd);
        ++tag;
    }
    return view;
}

std::string viewportWritten(KdDbViewport& viewport, std::string_view source, TagWriter& writer,
                            std::string_view lineEnd)
{
    if (tellsView(source))
        return writer.objectWritten(viewport, source);
    std::string text = withSomeView(writer.objectWritten(viewport, source, kWindowCodes), lineEnd);
    const std::string view = writer.fieldsWritten(viewport, viewTags(text), kViewCodes);
    const TagList plain(view);
    std::size_t tag = viewIn(TagList(text));
    for (const ViewValue& value : kViewValues) {
        const TagList tags(text);
        if (value.plainCode != 0 && tags[tag].value != plain.valueOf(value.plainCode))
            text = withValue(tags, tag, extendedValueOf(plain, value.plainCode), lineEnd);
        ++tag;
    }
    return text;
}

} // namespace korra
