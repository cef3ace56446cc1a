#include "dimension_values.h"

#include "output.h"

#include <charconv>

namespace {

/// The whole text as a number; nullopt for any other text.
template <class Number>
std::optional<Number> readNumber(std::string_view text)
{
    if (text.starts_with('+'))
        text.remove_prefix(1);
    Number value{};
    const char* const end = text.data() + text.size();
    const auto read = std::from_chars(text.data(), end, value);
    if (read.ec != std::errc() || read.ptr != end)
        return std::nullopt;
    return value;
}

} // namespace

std::optional<DimensionValue> readDimensionValue(const std::wstring& text)
{
    const CString word(text.c_str());
    if (word.CompareNoCase(L"on") == 0)
        return true;
    if (word.CompareNoCase(L"off") == 0)
        return false;
    if (text.find_first_not_of(L"0123456789+-.eE") != std::wstring::npos)
        return std::nullopt;
    const std::string digits(text.begin(), text.end());
    if (digits.find_first_of(".eE") == std::string::npos)
        return readNumber<int>(digits);
    return readNumber<double>(digits);
}

namespace {

using Get = std::variant<int (KdDbDimension::*)() const, double (KdDbDimension::*)() const,
                         bool (KdDbDimension::*)() const>;

struct Variable {
    const wchar_t* name;
    Get get;
};

const Variable kVariables[] = {
    {L"dimdec", &KdDbDimension::dimdec},   {L"dimadec", &KdDbDimension::dimadec},
    {L"dimtdec", &KdDbDimension::dimtdec}, {L"dimtix", &KdDbDimension::dimtix},
    {L"dimtoh", &KdDbDimension::dimtoh},   {L"dimtih", &KdDbDimension::dimtih},
    {L"dimtofl", &KdDbDimension::dimtofl}, {L"dimatfit", &KdDbDimension::dimatfit},
    {L"dimgap", &KdDbDimension::dimgap},   {L"dimtad", &KdDbDimension::dimtad},
    {L"dimtvp", &KdDbDimension::dimtvp},   {L"dimse1", &KdDbDimension::dimse1},
    {L"dimse2", &KdDbDimension::dimse2},   {L"dimsd1", &KdDbDimension::dimsd1},
    {L"dimsd2", &KdDbDimension::dimsd2},   {L"dimjust", &KdDbDimension::dimjust},
    {L"dimlfac", &KdDbDimension::dimlfac}, {L"dimscale", &KdDbDimension::dimscale},
};

std::wstring text(int value)
{
    return std::to_wstring(value);
}

std::wstring text(double value)
{
    return numberText(value);
}

std::wstring text(bool value)
{
    return value ? L"on" : L"off";
}

} // namespace

std::wstring dimensionValueText(const KdDbDimension& dimension, const CString& name)
{
    for (const Variable& variable : kVariables) {
        if (name.CompareNoCase(variable.name) == 0)
            return std::visit([&](auto get) { return text((dimension.*get)()); }, variable.get);
    }
    return L"none";
}
