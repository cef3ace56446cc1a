#include "kd/db/tables.h"

#include "kd/gi.h"
#include "objects/host_opened.h"
#include "objects/object_access.h"
#include "records/extended_data.h"

#include "platform/gate.h"
#include "platform/text.h"

#include <algorithm>
#include <utility>

/// A style keeps its installed font in extended data, as the drawing-exchange format has it: behind
/// the name of the host's own application a text, the typeface, and a number with its properties.

using korra::ObjectAccess;
using korra::TypedValue;

namespace {

constexpr wchar_t kApplication[] = L"ACAD";
constexpr short kXDataLong = 1071;

constexpr std::size_t kLongestTypeface = 31; // UTF-16 units, as a font description holds it

constexpr std::int32_t kPitchBits = 0x0F;
constexpr std::int32_t kFamilyBits = 0xF0;
constexpr std::int32_t kByte = 0xFF;
constexpr int kCharacterSetShift = 8;
constexpr std::int32_t kItalic = 0x1000000;
constexpr std::int32_t kBold = 0x2000000;

/// The typeface among the extended data of a style: its place, the properties behind it; the size
/// when there is none.
std::size_t typefacePlace(const std::vector<TypedValue>& data)
{
    const auto [first, last] = korra::applicationRange(data, kApplication);
    for (std::size_t index = first; index + 1 < last; ++index) {
        if (data[index].code == korra::kXDataText && data[index + 1].code == kXDataLong)
            return index;
    }
    return data.size();
}

bool isByte(int number)
{
    return number >= 0 && number <= kByte;
}

void removeTypeface(std::vector<TypedValue>& data)
{
    const std::size_t place = typefacePlace(data);
    if (place == data.size())
        return;
    const auto first = data.begin() + static_cast<std::ptrdiff_t>(place);
    data.erase(first, first + 2);
    const auto [start, end] = korra::applicationRange(data, kApplication);
    if (end - start == 1) // nothing but the application's name
        data.erase(data.begin() + static_cast<std::ptrdiff_t>(start));
}

void storeTypeface(std::vector<TypedValue>& data, std::wstring typeface, std::int32_t properties)
{
    const std::size_t place = typefacePlace(data);
    if (place < data.size()) {
        data[place].value = std::move(typeface);
        data[place + 1].value = properties;
        return;
    }
    const auto [start, end] = korra::applicationRange(data, kApplication);
    auto at = data.begin() + static_cast<std::ptrdiff_t>(end);
    if (start == end)
        at = data.insert(at, {korra::kXDataApplication, std::wstring(kApplication)}) + 1;
    at = data.insert(at, {korra::kXDataText, std::move(typeface)});
    data.insert(at + 1, {kXDataLong, properties});
}

} // namespace

void KdDbTextStyleTableRecord::font(std::wstring& typeface, bool& bold, bool& italic,
                                    int& characterSet, int& pitch, int& family) const
{
    typeface.clear();
    std::int32_t properties = 0;
    if (const korra::ObjectExtras* extras = ObjectAccess::extras(*this)) {
        const std::size_t place = typefacePlace(extras->xData);
        if (place < extras->xData.size()) {
            typeface = std::get<std::wstring>(extras->xData[place].value);
            properties = std::get<std::int32_t>(extras->xData[place + 1].value);
        }
    }
    bold = (properties & kBold) != 0;
    italic = (properties & kItalic) != 0;
    characterSet = properties >> kCharacterSetShift & kByte;
    pitch = properties & kPitchBits;
    family = properties & kFamilyBits;
}

Kdapi::ErrorStatus KdDbTextStyleTableRecord::setFont(const wchar_t* typeface, bool bold,
                                                     bool italic, int characterSet, int pitch,
                                                     int family, bool)
{
    return platform::gate("KdDbTextStyleTableRecord::setFont", typeface, bold, italic, characterSet,
                          pitch, family)
        .guard(Kdapi::eInvalidInput, [&] {
            if (!typeface || platform::toUtf16(typeface).size() > kLongestTypeface ||
                !isByte(characterSet) || !isByte(pitch) || !isByte(family))
                return Kdapi::eInvalidInput;
            if (const auto status = beginChange())
                return status;
            auto& data = ObjectAccess::extras(*this).xData;
            if (!*typeface) {
                removeTypeface(data);
                return Kdapi::eOk;
            }
            const std::int32_t properties = (bold ? kBold : 0) | (italic ? kItalic : 0) |
                                            characterSet << kCharacterSetShift |
                                            (pitch & kPitchBits) | (family & kFamilyBits);
            std::vector<TypedValue> changed = data;
            storeTypeface(changed, typeface, properties);
            if (database())
                korra::registerApplication(*database(), kApplication);
            data = std::move(changed);
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus fromKdDbTextStyle(KdGiTextStyle& style, KdDbObjectId record)
{
    return platform::gate("fromKdDbTextStyle", record).guard(Kdapi::eWasOpenForWrite, [&] {
        const korra::HostOpened<KdDbTextStyleTableRecord> source(record, KdDb::kForRead);
        if (!source)
            return source.status();
        std::wstring typeface;
        bool bold = false;
        bool italic = false;
        int ignored = 0;
        source->font(typeface, bold, italic, ignored, ignored, ignored);
        KdGiTextStyle read = style;
        read.setFont(typeface.c_str(), bold, italic);
        read.setFileName(source->fileName().c_str());
        read.setBigFontFileName(source->bigFontFileName().c_str());
        read.setTextSize(source->textSize());
        read.setXScale(source->xScale());
        read.setObliquingAngle(source->obliquingAngle());
        read.setVertical(source->isVertical());
        read.setBackward(source->isBackward());
        read.setUpsideDown(source->isUpsideDown());
        style = std::move(read);
        return Kdapi::eOk;
    });
}
