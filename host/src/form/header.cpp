#include "form/header.h"

#include "form/numbers.h"

#include <algorithm>
#include <limits>

namespace korra {
namespace {

const HeaderValue* valueOf(const DrawingHeader::Variable* variable)
{
    return variable && !variable->values.empty() ? &variable->values.front() : nullptr;
}

/// A value that stays the same keeps its text.
void setRealText(HeaderValue& target, double value)
{
    if (parseReal(target.text) != value)
        target.text = formatReal(value);
}

HeaderValue& firstValue(DrawingHeader::Variable& variable, int codeWhenNew)
{
    if (variable.values.empty())
        variable.values.push_back({codeWhenNew, {}});
    return variable.values.front();
}

} // namespace

const DrawingHeader::Variable* DrawingHeader::find(std::string_view name) const
{
    const auto found = std::ranges::find(variables_, name, &Variable::name);
    return found == variables_.end() ? nullptr : &*found;
}

DrawingHeader::Variable& DrawingHeader::findOrAppend(std::string_view name)
{
    const auto found = std::ranges::find(variables_, name, &Variable::name);
    return found == variables_.end() ? variables_.emplace_back(Variable{std::string(name), {}})
                                     : *found;
}

double DrawingHeader::real(std::string_view name, double byDefault) const
{
    const HeaderValue* value = valueOf(find(name));
    return value ? parseReal(value->text).value_or(byDefault) : byDefault;
}

int DrawingHeader::integer(std::string_view name, int byDefault) const
{
    const HeaderValue* value = valueOf(find(name));
    const auto number = value ? parseWhole(value->text) : std::nullopt;
    const bool fits = number && *number >= std::numeric_limits<int>::min() &&
                      *number <= std::numeric_limits<int>::max();
    return fits ? static_cast<int>(*number) : byDefault;
}

std::wstring DrawingHeader::text(std::string_view name, std::wstring_view byDefault) const
{
    const HeaderValue* value = valueOf(find(name));
    return value ? encoding_.decode(value->text) : std::wstring(byDefault);
}

KdGePoint3d DrawingHeader::point(std::string_view name, const KdGePoint3d& byDefault) const
{
    const Variable* variable = find(name);
    if (!variable)
        return byDefault;
    KdGePoint3d point;
    for (const HeaderValue& value : variable->values) {
        const double coordinate = parseReal(value.text).value_or(0.0);
        if (value.code == 10)
            point.x = coordinate;
        else if (value.code == 20)
            point.y = coordinate;
        else if (value.code == 30)
            point.z = coordinate;
    }
    return point;
}

void DrawingHeader::setReal(std::string_view name, double value, int code)
{
    setRealText(firstValue(findOrAppend(name), code), value);
}

void DrawingHeader::setInteger(std::string_view name, int value, int code)
{
    HeaderValue& target = firstValue(findOrAppend(name), code);
    if (parseWhole(target.text) != value)
        target.text = formatWhole(value);
}

void DrawingHeader::setText(std::string_view name, std::wstring_view value, int code)
{
    HeaderValue& target = firstValue(findOrAppend(name), code);
    if (target.text.empty() || encoding_.decode(target.text) != value)
        target.text = encoding_.encode(value);
}

void DrawingHeader::setCoordinate(std::string_view name, int code, double value)
{
    std::vector<HeaderValue>& values = findOrAppend(name).values;
    auto target = std::ranges::find(values, code, &HeaderValue::code);
    if (target == values.end())
        target = values.insert(target, {code, {}});
    setRealText(*target, value);
}

void DrawingHeader::setPoint(std::string_view name, const KdGePoint2d& value)
{
    setCoordinate(name, 10, value.x);
    setCoordinate(name, 20, value.y);
}

void DrawingHeader::setPoint(std::string_view name, const KdGePoint3d& value)
{
    setPoint(name, KdGePoint2d(value.x, value.y));
    setCoordinate(name, 30, value.z);
}

} // namespace korra
