#include "dxf/tag_writer.h"

#include "dxf/drawing_error.h"
#include "dxf/extended_values.h"
#include "dxf/references.h"
#include "dxf/tag_text.h"

#include <algorithm>
#include <utility>

namespace korra {
namespace {

/// What a file need not say: the linetype and the text style that everything has.
bool maySkip(TableKind table, NamedBy by, const std::wstring& name)
{
    const bool isOptional =
        (table == TableKind::linetype && by != NamedBy::layer) || table == TableKind::textStyle;
    return isOptional && name == standardName(table, by);
}

/// The tags behind which the fields of an object begin: type, handle, groups and owner.
std::size_t lastOfHead(const TagList& tags)
{
    std::size_t last = 0;
    for (std::size_t index = 1; index < tags.size(); ++index) {
        const bool isHead = tags[index].part == TagPart::group || index == tags.handleTag() ||
                            index == tags.ownerTag() || tags[index].part == TagPart::comment;
        if (!isHead)
            break;
        last = index;
    }
    return last;
}

std::size_t lastPlain(const TagList& tags)
{
    std::size_t index = tags.size();
    while (index > 1 &&
           (tags[index - 1].part == TagPart::extended || tags[index - 1].part == TagPart::comment))
        --index;
    return index - 1;
}

/// How many values at the end of both lists are the same.
std::size_t commonEnd(const std::vector<ExtendedValue>& there,
                      const std::vector<TypedValue>& wanted)
{
    const std::size_t most = std::min(there.size(), wanted.size());
    std::size_t count = 0;
    while (count < most &&
           there[there.size() - 1 - count].value == wanted[wanted.size() - 1 - count])
        ++count;
    return count;
}

/// The place of a value in [first, last); the size when it is not there.
std::size_t findValue(const std::vector<ExtendedValue>& values, std::size_t first, std::size_t last,
                      const TypedValue& wanted)
{
    for (std::size_t index = first; index < last; ++index) {
        if (values[index].value == wanted)
            return index;
    }
    return values.size();
}

} // namespace

TagWriter::TagWriter(const DatabaseContents& contents, std::optional<std::string> markerPrefix,
                     TrueColors trueColors)
    : contents_(contents),
      encoding_(contents.header.encoding()),
      lineEnd_(contents.form.crlf ? "\r\n" : "\n"),
      trueColors_(trueColors),
      markerPrefix_(std::move(markerPrefix))
{
}

void TagWriter::begin(std::string_view source, std::span<const int> only)
{
    cursor_.reset(source, only);
    replaced_.clear();
    insertedBehind_.clear();
    place_ = lastOfHead(cursor_.tags());
    writesMarkers_ = markerPrefix_ && place_ + 1 == cursor_.tags().size();
}

std::string TagWriter::fieldsWritten(KdDbObject& object, std::string_view source,
                                     std::span<const int> only)
{
    begin(source, only);
    namedBy_ = KdDbLayerTableRecord::cast(&object) ? NamedBy::layer : NamedBy::other;
    object.describe(*this);
    if (extendedData_)
        writeExtendedData(*std::exchange(extendedData_, std::nullopt));
    return assembled();
}

std::string TagWriter::objectWritten(KdDbObject& object, std::string_view source,
                                     std::span<const int> only)
{
    writesExtensions_ = true;
    std::string written = fieldsWritten(object, source, only);
    writesExtensions_ = false;
    return written;
}

std::string TagWriter::assembled() const
{
    std::string text;
    for (std::size_t index = 0; index < cursor_.tags().size(); ++index) {
        const auto replaced = replaced_.find(index);
        text += replaced == replaced_.end() ? cursor_.tag(index).raw
                                            : std::string_view(replaced->second);
        if (const auto inserted = insertedBehind_.find(index); inserted != insertedBehind_.end())
            text += inserted->second;
    }
    return text;
}

std::size_t TagWriter::take(int code)
{
    const std::size_t tag = cursor_.take(code);
    if (tag != TagCursor::kNone)
        place_ = tag;
    return tag;
}

void TagWriter::insert(int code, std::string_view value)
{
    if (cursor_.accepts(code))
        appendTag(insertedBehind_[place_], code, value, lineEnd_);
}

void TagWriter::replace(std::size_t tag, std::string_view value)
{
    const std::string_view raw = cursor_.tag(tag).raw;
    std::string& text = replaced_[tag];
    text = raw.substr(0, raw.find('\n') + 1);
    appendValue(text, value, lineEnd_);
}

void TagWriter::behindMarker(int count, const char* stem)
{
    if (writesMarkers_)
        appendTag(insertedBehind_[place_], 100, *markerPrefix_ + stem, lineEnd_);
    cursor_.behindMarker(count);
    if (cursor_.first() > 0)
        place_ = std::max(place_, cursor_.first() - 1);
}

void TagWriter::writeReal(int code, double value, Missing missing)
{
    const std::size_t tag = take(code);
    if (tag == TagCursor::kNone) {
        if (missing == Missing::inserted)
            insert(code, realText(value));
    } else if (parseReal(cursor_.tag(tag).value) != value) {
        replace(tag, realText(value));
    }
}

void TagWriter::real(int code, double& value)
{
    writeReal(code, value, Missing::inserted);
}

void TagWriter::real(int code, double& value, double byDefault)
{
    writeReal(code, value, insertedIf(value != byDefault));
}

void TagWriter::writeAngle(int code, double value, Missing missing)
{
    const std::size_t tag = take(code);
    if (tag == TagCursor::kNone) {
        if (missing == Missing::inserted)
            insert(code, degreesText(value));
        return;
    }
    const auto degrees = parseReal(cursor_.tag(tag).value);
    if (!degrees || degreesToRadians(*degrees) != value)
        replace(tag, degreesText(value));
}

void TagWriter::angle(int code, double& value)
{
    writeAngle(code, value, Missing::inserted);
}

void TagWriter::angle(int code, double& value, double byDefault)
{
    writeAngle(code, value, insertedIf(value != byDefault));
}

void TagWriter::writeText(int code, const std::wstring& value, Missing missing)
{
    const std::size_t tag = take(code);
    if (tag == TagCursor::kNone) {
        if (missing == Missing::inserted)
            insert(code, encoding_.encode(value));
    } else if (encoding_.decode(cursor_.tag(tag).value) != value) {
        replace(tag, encoding_.encode(value));
    }
}

void TagWriter::text(int code, std::wstring& value)
{
    writeText(code, value, Missing::inserted);
}

void TagWriter::text(int code, std::wstring& value, const wchar_t* byDefault)
{
    writeText(code, value, insertedIf(value != byDefault));
}

void TagWriter::longText(int code, int pieceCode, std::wstring& value)
{
    std::vector<std::size_t> pieces;
    for (std::size_t tag = take(pieceCode); tag != TagCursor::kNone; tag = take(pieceCode))
        pieces.push_back(tag);
    if (const std::size_t tag = take(code); tag != TagCursor::kNone)
        pieces.push_back(tag);
    std::string there;
    for (const std::size_t tag : pieces)
        there += cursor_.tag(tag).value;
    if (!pieces.empty() && encoding_.decode(there) == value)
        return;
    for (const std::size_t tag : pieces)
        remove(tag);
    insertPieces(code, pieceCode, value);
}

void TagWriter::insertPieces(int code, int pieceCode, std::wstring_view value)
{
    constexpr std::size_t kPieceLength = 250;
    for (; value.size() > kPieceLength; value.remove_prefix(kPieceLength))
        insert(pieceCode, encoding_.encode(value.substr(0, kPieceLength)));
    insert(code, encoding_.encode(value));
}

void TagWriter::writeAxes(int code, std::span<const double> values, Missing missing)
{
    const PointTags tags = takePoint(cursor_, code, values.size());
    if (!tags.found() && missing == Missing::leftOut)
        return;
    for (std::size_t axis = 0; axis < values.size(); ++axis) {
        const int axisCode = code + 10 * static_cast<int>(axis);
        if (tags.axis[axis] != TagCursor::kNone) {
            place_ = tags.axis[axis];
            if (parseReal(cursor_.tag(place_).value) != values[axis])
                replace(place_, realText(values[axis]));
        } else if (!tags.found() || values[axis] != 0.0) {
            insert(axisCode, realText(values[axis]));
        }
    }
}

void TagWriter::point(int code, KdGePoint3d& value)
{
    writeAxes(code, std::array{value.x, value.y, value.z}, Missing::inserted);
}

void TagWriter::point(int code, KdGePoint3d& value, const KdGePoint3d& byDefault)
{
    writeAxes(code, std::array{value.x, value.y, value.z}, insertedIf(value != byDefault));
}

void TagWriter::vector(int code, KdGeVector3d& value, const KdGeVector3d& byDefault)
{
    writeAxes(code, std::array{value.x, value.y, value.z}, insertedIf(value != byDefault));
}

void TagWriter::point(int code, KdGePoint2d& value)
{
    writeAxes(code, std::array{value.x, value.y}, Missing::inserted);
}

/// True when reading the tag gives the record: by its name, or as what stands for a missing one.
bool TagWriter::means(std::size_t tag, TableKind table, KdDbObjectId value) const
{
    const std::wstring name = encoding_.decode(cursor_.tag(tag).value);
    const KdDbObjectId named = contents_.record(table, name);
    if (!named.isNull())
        return named == value;
    const wchar_t* standard = standardName(table, namedBy_);
    return standard && contents_.record(table, standard) == value;
}

void TagWriter::name(int code, KdDbObjectId& value, TableKind table, Reference)
{
    const std::size_t tag = take(code);
    const auto* const record = KdDbSymbolTableRecord::cast(ObjectAccess::object(value));
    if (!record) { // what names no record stays as it is; a new part of an entity has no layer yet
        if (tag == TagCursor::kNone && table == TableKind::layer)
            insert(code, encoding_.encode(standardName(table, namedBy_)));
        return;
    }
    if (tag == TagCursor::kNone) {
        if (!maySkip(table, namedBy_, record->name()))
            insert(code, encoding_.encode(record->name()));
    } else if (!means(tag, table, value)) {
        replace(tag, encoding_.encode(record->name()));
    }
}

void TagWriter::reference(int code, KdDbObjectId& value, Reference, const KdRxClass* kind)
{
    const std::size_t tag = take(code);
    if (tag == TagCursor::kNone) {
        if (!value.isNull())
            insert(code, formatHandle(value.handle().value()));
        return;
    }
    if (referredTo(contents_, cursor_.tag(tag).value, kind) == value)
        return; // what refers to no object stays as it is
    if (value.isNull())
        remove(tag);
    else
        replace(tag, formatHandle(value.handle().value()));
}

void TagWriter::handle(int code, KdDbHandle& value)
{
    const std::size_t tag = take(code);
    if (tag == TagCursor::kNone) {
        if (!value.isNull())
            insert(code, formatHandle(value.value()));
        return;
    }
    if (parseHandle(cursor_.tag(tag).value).value_or(0) == value.value())
        return;
    if (!value.isNull())
        replace(tag, formatHandle(value.value()));
    else
        remove(tag);
}

void TagWriter::color(int code, KdCmColor& value)
{
    if (value.colorIndex() > kLastColor)
        throw DrawingError{0, "the colour " + formatWhole(value.colorIndex()) + " is none"};
    writeColor(code, value, value.colorIndex(), insertedIf(value != KdCmColor()));
}

void TagWriter::layerColor(int code, KdCmColor& value, bool& off)
{
    long long index = value.colorIndex();
    if (index >= kFirstNegativeColor)
        index -= kNegativeColorShift;
    else if (index >= kFirstNegativeColorInFiles)
        throw DrawingError{0, "the colour " + formatWhole(index) + " is none"};
    writeColor(code, value, off ? -index : index, Missing::inserted);
}

/// @param number  the index, negative for what is off
void TagWriter::writeColor(int code, const KdCmColor& value, long long number, Missing missing)
{
    const std::size_t tag = take(code);
    const std::size_t trueColor = cursor_.take(kTrueColorCode);
    KdCmColor there;
    if (trueColor != TagCursor::kNone)
        setTrueColor(there, trueColorOf(cursor_.tag(trueColor)).value_or(0));
    // Each program has its own nearest index: with the same red, green and blue, the file's stays.
    const bool sameTrueColor = there.colorMethod() == KdCmColor::kByColor && there == value;
    if (tag == TagCursor::kNone) {
        if (missing == Missing::inserted && !sameTrueColor)
            insert(code, formatWhole(number));
    } else {
        const long long old = parseWhole(cursor_.tag(tag).value).value_or(0);
        const bool keeps = sameTrueColor && (old < 0) == (number < 0);
        if (old != number && !keeps)
            replace(tag, formatWhole(number));
    }
    if (!sameTrueColor)
        writeTrueColor(trueColor, value);
}

/// @param tag  that holds another colour; kNone when there is none
void TagWriter::writeTrueColor(std::size_t tag, const KdCmColor& value)
{
    const bool wanted = value.colorMethod() == KdCmColor::kByColor;
    const int rgb = value.red() << 16 | value.green() << 8 | value.blue();
    if (tag == TagCursor::kNone) {
        if (wanted && trueColors_ == TrueColors::refused)
            throw DrawingError{0, "a drawing of its version has no true colours"};
        if (wanted)
            insert(kTrueColorCode, formatWhole(rgb));
        return;
    }
    if (wanted)
        replace(tag, formatWhole(rgb));
    else
        remove(tag);
    if (const std::size_t name = cursor_.takeBehind(tag, kColorNameCode); name != TagCursor::kNone)
        remove(name);
}

void TagWriter::writeWhole(int code, long long value, Missing missing)
{
    const std::size_t tag = take(code);
    if (tag == TagCursor::kNone) {
        if (missing == Missing::inserted)
            insert(code, formatWhole(value));
    } else if (parseWhole(cursor_.tag(tag).value) != value) {
        replace(tag, formatWhole(value));
    }
}

void TagWriter::wholeNumber(int code, long long& value)
{
    writeWhole(code, value, Missing::inserted);
}

void TagWriter::wholeNumber(int code, long long& value, long long byDefault)
{
    writeWhole(code, value, insertedIf(value != byDefault));
}

void TagWriter::derived(int code, long long value)
{
    writeWhole(code, value, insertedIf(value != 0));
}

std::size_t TagWriter::beginList(int leadCode, std::size_t count)
{
    cursor_.beginList(leadCode);
    listCount_ = count;
    return count;
}

void TagWriter::endList()
{
    for (const std::size_t tag : cursor_.elementTagsFrom(listCount_))
        remove(tag);
    cursor_.endList();
}

void TagWriter::extensionDictionary(KdDbObjectId& value)
{
    if (!writesExtensions_ || !ObjectAccess::live<KdDbDictionary>(value))
        return;
    const std::string handle = formatHandle(value.handle().value());
    const std::size_t tag = cursor_.tags().extensionDictionaryTag();
    if (tag != TagList::kNone) {
        if (parseHandle(cursor_.tag(tag).value) != value.handle().value())
            replace(tag, handle);
        return;
    }
    const std::size_t handleTag = cursor_.tags().handleTag();
    const std::size_t behind = handleTag == TagList::kNone ? 0 : handleTag;
    for (const auto& [code, text] :
         {std::pair(102, "{ACAD_XDICTIONARY"), std::pair(360, handle.c_str()), std::pair(102, "}")})
        appendTag(insertedBehind_[behind], code, text, lineEnd_);
}

void TagWriter::extendedData(std::vector<TypedValue>& values)
{
    if (writesExtensions_)
        extendedData_ = values;
}

void TagWriter::writeExtendedData(const std::vector<TypedValue>& wanted)
{
    std::size_t wrong = 0;
    const auto there = readExtendedData(cursor_.tags(), encoding_, wrong);
    if (!there)
        return;
    place_ = there->empty() ? lastPlain(cursor_.tags()) : there->front().firstTag - 1;
    const std::size_t sameAtEnd = commonEnd(*there, wanted);
    std::size_t next = 0; // of the values that are there and may still be wanted
    const auto removeUpTo = [&](std::size_t end) {
        for (; next < end; ++next) {
            for (std::size_t tag = 0; tag < (*there)[next].tagCount; ++tag)
                remove((*there)[next].firstTag + tag);
        }
    };
    for (std::size_t index = 0; index + sameAtEnd < wanted.size(); ++index) {
        const TypedValue& value = wanted[index];
        const std::size_t same = findValue(*there, next, there->size() - sameAtEnd, value);
        if (same == there->size()) {
            insertedBehind_[place_] += extendedValueTags(value, encoding_, lineEnd_);
            continue;
        }
        removeUpTo(same);
        place_ = (*there)[same].firstTag + (*there)[same].tagCount - 1;
        ++next;
    }
    removeUpTo(there->size() - sameAtEnd);
}

} // namespace korra
