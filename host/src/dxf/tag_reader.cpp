#include "dxf/tag_reader.h"

#include "dxf/drawing_error.h"
#include "dxf/extended_values.h"
#include "dxf/tag_stream.h"
#include "objects/kinds.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace korra {

void TagReader::read(KdDbObject& object, std::string_view source, std::size_t line,
                     std::span<const int> only, Extensions extensions)
{
    line_ = line;
    namedBy_ = KdDbLayerTableRecord::cast(&object) ? NamedBy::layer : NamedBy::other;
    extensions_ = extensions;
    cursor_.reset(source, only);
    if (cursor_.tags().openGroup() != TagList::kNone && kindOf(object))
        fail(cursor_.tags().openGroup(), "the end of the group");
    object.describe(*this);
}

void TagReader::extensionDictionary(KdDbObjectId& value)
{
    const std::size_t tag = cursor_.tags().extensionDictionaryTag();
    if (extensions_ == Extensions::read && tag != TagList::kNone)
        value = references_.at(handleAt(tag));
}

void TagReader::extendedData(std::vector<TypedValue>& values)
{
    const TagList& tags = cursor_.tags();
    if (extensions_ == Extensions::ignored || !tags.hasExtendedData())
        return;
    std::size_t wrong = 0;
    auto read = readExtendedData(tags, encoding_, wrong);
    if (!read)
        fail(wrong, "a value of extended data");
    for (ExtendedValue& each : *read)
        values.push_back(std::move(each.value));
}

void TagReader::fail(std::size_t tag, const char* expected) const
{
    throw DrawingError{line_ + 2 * tag, std::string(expected) + " was expected, not " +
                                            shown(cursor_.tag(tag).value)};
}

double TagReader::realAt(std::size_t tag) const
{
    const auto value = parseReal(cursor_.tag(tag).value);
    if (!value)
        fail(tag, "a number");
    return *value;
}

std::uint64_t TagReader::handleAt(std::size_t tag) const
{
    const auto value = parseHandle(cursor_.tag(tag).value);
    if (!value)
        fail(tag, "a handle");
    return *value;
}

bool TagReader::readReal(int code, double& value)
{
    const std::size_t tag = cursor_.take(code);
    if (tag == TagCursor::kNone)
        return false;
    value = realAt(tag);
    return true;
}

void TagReader::real(int code, double& value)
{
    readReal(code, value);
}

void TagReader::real(int code, double& value, double byDefault)
{
    if (!readReal(code, value) && cursor_.accepts(code))
        value = byDefault;
}

bool TagReader::readAngle(int code, double& value)
{
    double degrees = 0.0;
    if (!readReal(code, degrees))
        return false;
    value = degreesToRadians(degrees);
    return true;
}

void TagReader::angle(int code, double& value)
{
    readAngle(code, value);
}

void TagReader::angle(int code, double& value, double byDefault)
{
    if (!readAngle(code, value) && cursor_.accepts(code))
        value = byDefault;
}

bool TagReader::readText(int code, std::wstring& value)
{
    const std::size_t tag = cursor_.take(code);
    if (tag == TagCursor::kNone)
        return false;
    value = encoding_.decode(cursor_.tag(tag).value);
    return true;
}

void TagReader::text(int code, std::wstring& value)
{
    readText(code, value);
}

void TagReader::text(int code, std::wstring& value, const wchar_t* byDefault)
{
    if (!readText(code, value) && cursor_.accepts(code))
        value = byDefault;
}

void TagReader::longText(int code, int pieceCode, std::wstring& value)
{
    std::string bytes; // a piece may end inside a character
    std::size_t tag = cursor_.take(pieceCode);
    for (; tag != TagCursor::kNone; tag = cursor_.takeBehind(tag, pieceCode))
        bytes += cursor_.tag(tag).value;
    if ((tag = cursor_.take(code)) != TagCursor::kNone)
        bytes += cursor_.tag(tag).value;
    value = encoding_.decode(bytes);
}

bool TagReader::readPoint(int code, KdGePoint3d& value)
{
    const PointTags tags = takePoint(cursor_, code, 3);
    if (!tags.found())
        return false;
    if (tags.axis[1] == TagCursor::kNone)
        fail(tags.axis[0], "a point with a y coordinate");
    const double x = realAt(tags.axis[0]);
    const double y = realAt(tags.axis[1]);
    const double z = tags.axis[2] == TagCursor::kNone ? 0.0 : realAt(tags.axis[2]);
    value = KdGePoint3d(x, y, z);
    return true;
}

void TagReader::point(int code, KdGePoint3d& value)
{
    readPoint(code, value);
}

void TagReader::point(int code, KdGePoint3d& value, const KdGePoint3d& byDefault)
{
    if (!readPoint(code, value) && cursor_.accepts(code))
        value = byDefault;
}

void TagReader::vector(int code, KdGeVector3d& value, const KdGeVector3d& byDefault)
{
    KdGePoint3d read;
    if (readPoint(code, read))
        value = read.asVector();
    else if (cursor_.accepts(code))
        value = byDefault;
}

void TagReader::point(int code, KdGePoint2d& value)
{
    const PointTags tags = takePoint(cursor_, code, 2);
    if (!tags.found())
        return;
    if (tags.axis[1] == TagCursor::kNone)
        fail(tags.axis[0], "a point with a y coordinate");
    value = KdGePoint2d(realAt(tags.axis[0]), realAt(tags.axis[1]));
}

void TagReader::name(int code, KdDbObjectId& value, TableKind table, Reference)
{
    const std::size_t tag = cursor_.take(code);
    if (tag != TagCursor::kNone)
        value = references_.named(table, cursor_.tag(tag).value, namedBy_);
    else if (value.isNull() && cursor_.accepts(code))
        value = references_.standard(table, namedBy_);
}

void TagReader::reference(int code, KdDbObjectId& value, Reference, const KdRxClass* kind)
{
    const std::size_t tag = cursor_.take(code);
    if (tag == TagCursor::kNone)
        return;
    const auto object = references_.referredTo(cursor_.tag(tag).value, kind);
    if (!object)
        fail(tag, "a handle");
    value = *object;
}

void TagReader::handle(int code, KdDbHandle& value)
{
    const std::size_t tag = cursor_.take(code);
    if (tag != TagCursor::kNone)
        value = KdDbHandle(handleAt(tag));
}

void TagReader::color(int code, KdCmColor& value)
{
    const std::size_t tag = cursor_.take(code);
    if (tag != TagCursor::kNone) {
        const auto index = colorOf(cursor_.tag(tag));
        if (!index)
            fail(tag, "a colour");
        value.setColorIndex(static_cast<std::uint16_t>(*index));
    }
    readTrueColor(value);
}

void TagReader::layerColor(int code, KdCmColor& value, bool& off)
{
    const std::size_t tag = cursor_.take(code);
    if (tag != TagCursor::kNone) {
        constexpr long long kLastIndex = std::numeric_limits<std::uint16_t>::max();
        const auto number = parseWhole(cursor_.tag(tag).value);
        if (!number || std::abs(*number) > kLastIndex)
            fail(tag, "a colour");
        long long index = std::abs(*number);
        if (index >= kFirstNegativeColorInFiles && index < kNegativeColorShift)
            index += kNegativeColorShift;
        value.setColorIndex(static_cast<std::uint16_t>(index));
        off = *number < 0;
    }
    readTrueColor(value);
}

void TagReader::readTrueColor(KdCmColor& value)
{
    const std::size_t tag = cursor_.take(kTrueColorCode);
    if (tag == TagCursor::kNone)
        return;
    const auto rgb = trueColorOf(cursor_.tag(tag));
    if (!rgb)
        fail(tag, "a colour");
    setTrueColor(value, *rgb);
}

bool TagReader::readWhole(int code, long long& value)
{
    const std::size_t tag = cursor_.take(code);
    if (tag == TagCursor::kNone)
        return false;
    const auto number = wholeOf(cursor_.tag(tag));
    if (!number)
        fail(tag, "a whole number in range");
    value = *number;
    return true;
}

void TagReader::wholeNumber(int code, long long& value)
{
    readWhole(code, value);
}

void TagReader::wholeNumber(int code, long long& value, long long byDefault)
{
    if (!readWhole(code, value) && cursor_.accepts(code))
        value = byDefault;
}

} // namespace korra
