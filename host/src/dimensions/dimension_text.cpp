#include "dimensions/dimension_text.h"

#include "kd/db/dimension.h"
#include "tables/dimension_variables.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace korra {

namespace {

constexpr double kDegreesPerRadian = 57.295779513082320877;

double number(const KdDbDimension& dimension, int code)
{
    return numberOf(dimensionValue(dimension, dimensionVariableIndex(code)));
}

int whole(const KdDbDimension& dimension, int code)
{
    return static_cast<int>(number(dimension, code));
}

/// How a number is written.
struct NumberForm {
    int decimals;
    bool dropLeadingZero;
    bool dropTrailingZeros;
    wchar_t separator;
};

/// @param zeros  DIMZIN or DIMTZIN: 4 drops the leading zero, 8 the trailing ones
NumberForm lengthForm(const KdDbDimension& dimension, int decimals, int zeros)
{
    const int separator = whole(dimension, 278);
    return {decimals, (zeros & 4) != 0, (zeros & 8) != 0,
            separator > 0 ? static_cast<wchar_t>(separator) : L'.'};
}

std::wstring written(double value, const NumberForm& form)
{
    char digits[400];
    const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed,
                                   form.decimals)
                         .ptr;
    std::wstring text(digits, end);
    if (form.dropTrailingZeros && text.find(L'.') != std::wstring::npos) {
        text.erase(text.find_last_not_of(L'0') + 1);
        if (text.back() == L'.')
            text.pop_back();
    }
    if (text.find_first_not_of(L"-0.") == std::wstring::npos && text.front() == L'-')
        text.erase(0, 1);
    const std::size_t zero = text.front() == L'-' ? 1 : 0;
    if (form.dropLeadingZero && text.compare(zero, 2, L"0.") == 0)
        text.erase(zero, 1);
    std::ranges::replace(text, L'.', form.separator);
    return text;
}

double rounded(double value, double step)
{
    return step > 0.0 ? std::round(value / step) * step : value;
}

std::wstring withDegrees(double degrees, const NumberForm& form)
{
    return written(degrees, form) + L"%%d";
}

/// Degrees, and as many of minutes, seconds and decimals of seconds as the precision asks for:
/// 0 degrees, to 2 minutes, to 4 seconds, beyond that decimals.
std::wstring sexagesimal(double degrees, NumberForm form)
{
    if (form.decimals == 0)
        return withDegrees(degrees, form);
    const int places = std::max(form.decimals - 4, 0);
    const double unit = form.decimals <= 2 ? 60.0 : 3600.0 * std::pow(10.0, places);
    const double units = std::round(degrees * unit);
    const double whole = std::floor(units / unit);
    const double minutes = (units / unit - whole) * 60.0;
    form.decimals = 0;
    std::wstring text = withDegrees(whole, form);
    if (unit == 60.0)
        return text + written(std::round(minutes), form) + L"'";
    // The slack keeps a whole minute from falling below itself by rounding.
    const double wholeMinutes = std::floor(minutes + 1e-9);
    form.decimals = places;
    return text + std::to_wstring(std::lround(wholeMinutes)) + L"'" +
           written(std::abs((minutes - wholeMinutes) * 60.0), form) + L"\"";
}

std::wstring angleNumber(const KdDbDimension& dimension, double radians)
{
    const int precision = dimension.dimadec();
    const int zeros = whole(dimension, 79);
    NumberForm form = lengthForm(dimension, precision < 0 ? dimension.dimdec() : precision, 0);
    form.dropLeadingZero = (zeros & 1) != 0;
    form.dropTrailingZeros = (zeros & 2) != 0;
    switch (whole(dimension, 275)) {
    case 1:
        return sexagesimal(radians * kDegreesPerRadian, form);
    case 2:
        return written(radians * kDegreesPerRadian / 0.9, form) + L"g";
    case 3:
        return written(radians, form) + L"r";
    default:
        return withDegrees(radians * kDegreesPerRadian, form);
    }
}

std::wstring stacked(const std::wstring& upper, const std::wstring& lower)
{
    return L"\\S" + upper + L"^ " + lower + L";";
}

/// What DIMTOL puts behind the number.
std::wstring toleranceText(const KdDbDimension& dimension)
{
    const NumberForm form = lengthForm(dimension, dimension.dimtdec(), whole(dimension, 284));
    const double plus = number(dimension, 47);
    const double minus = number(dimension, 48);
    if (plus == minus)
        return L"%%p" + written(plus, form);
    const auto sign = [](double value) { return value < 0.0 ? L"-" : L"+"; };
    return stacked(sign(plus) + written(std::abs(plus), form),
                   sign(-minus) + written(std::abs(minus), form));
}

std::wstring lengthNumber(const KdDbDimension& dimension, double measured)
{
    // A negative factor is for dimensions on a sheet; its size counts.
    const double value = rounded(measured * std::abs(dimension.dimlfac()), number(dimension, 45));
    const NumberForm form = lengthForm(dimension, dimension.dimdec(), whole(dimension, 78));
    if (number(dimension, 72) != 0.0)
        return stacked(written(value + number(dimension, 47), form),
                       written(value - number(dimension, 48), form));
    const std::wstring text = written(value, form);
    return number(dimension, 71) != 0.0 ? text + toleranceText(dimension) : text;
}

/// DIMPOST is a suffix, or a prefix and a suffix about "<>"; a prefix replaces the kind's own sign.
std::wstring withAffixes(const KdDbDimension& dimension, const std::wstring& number,
                         const std::wstring& sign)
{
    const auto value = dimensionValue(dimension, dimensionVariableIndex(3));
    const std::wstring& affixes = std::get<std::wstring>(value);
    const std::size_t place = affixes.find(L"<>");
    if (place == std::wstring::npos)
        return sign + number + affixes;
    const std::wstring prefix = affixes.substr(0, place);
    return (prefix.empty() ? sign : prefix) + number + affixes.substr(place + 2);
}

std::wstring withUserText(const KdDbDimension& dimension, const std::wstring& measurement)
{
    std::wstring text = dimension.dimensionText();
    if (text.empty())
        return measurement;
    if (text == L" ")
        return {};
    for (std::size_t at = text.find(L"<>"); at != std::wstring::npos;
         at = text.find(L"<>", at + measurement.size()))
        text.replace(at, 2, measurement);
    return text;
}

} // namespace

std::wstring lengthText(const KdDbDimension& dimension, double measured, const wchar_t* sign)
{
    return withUserText(dimension, withAffixes(dimension, lengthNumber(dimension, measured), sign));
}

std::wstring angleText(const KdDbDimension& dimension, double measured)
{
    return withUserText(dimension, angleNumber(dimension, measured));
}

} // namespace korra
