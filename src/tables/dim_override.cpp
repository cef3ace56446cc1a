#include "orvex/dim_override.h"

#include "support/opened.h"
#include "support/resbuf_list.h"
#include "support/write_access.h"

#include <climits>
#include <cmath>
#include <type_traits>
#include <utility>
#include <variant>

using support::Opened;
using support::ResbufList;
using support::WriteAccess;

namespace {

// Type codes of extended data.
constexpr short kString = 1000;
constexpr short kControl = 1002;
constexpr short kInteger16 = 1070;

/// How a variable whose values are Stored is read from a style and overridden on a dimension.
template <class Stored>
struct Access {
    Stored (KdDbDimStyleTableRecord::*styleValue)() const;
    Kdapi::ErrorStatus (KdDbDimension::*override)(Stored);
};

struct Variable {
    const wchar_t* name;
    short code; ///< group code in a dimension style
    std::variant<Access<int>, Access<bool>, Access<double>> access;
};

using Style = KdDbDimStyleTableRecord;
using Dimension = KdDbDimension;

const Variable kVariables[] = {
    {L"dimdec", 271, Access<int>{&Style::dimdec, &Dimension::setDimdec}},
    {L"dimadec", 179, Access<int>{&Style::dimadec, &Dimension::setDimadec}},
    {L"dimtdec", 272, Access<int>{&Style::dimtdec, &Dimension::setDimtdec}},
    {L"dimtix", 174, Access<bool>{&Style::dimtix, &Dimension::setDimtix}},
    {L"dimtoh", 74, Access<bool>{&Style::dimtoh, &Dimension::setDimtoh}},
    {L"dimtih", 73, Access<bool>{&Style::dimtih, &Dimension::setDimtih}},
    {L"dimtofl", 172, Access<bool>{&Style::dimtofl, &Dimension::setDimtofl}},
    {L"dimatfit", 289, Access<int>{&Style::dimatfit, &Dimension::setDimatfit}},
    {L"dimgap", 147, Access<double>{&Style::dimgap, &Dimension::setDimgap}},
    {L"dimtad", 77, Access<int>{&Style::dimtad, &Dimension::setDimtad}},
    {L"dimtvp", 145, Access<double>{&Style::dimtvp, &Dimension::setDimtvp}},
    {L"dimse1", 75, Access<bool>{&Style::dimse1, &Dimension::setDimse1}},
    {L"dimse2", 76, Access<bool>{&Style::dimse2, &Dimension::setDimse2}},
    {L"dimsd1", 281, Access<bool>{&Style::dimsd1, &Dimension::setDimsd1}},
    {L"dimsd2", 282, Access<bool>{&Style::dimsd2, &Dimension::setDimsd2}},
    {L"dimjust", 280, Access<int>{&Style::dimjust, &Dimension::setDimjust}},
    {L"dimlfac", 144, Access<double>{&Style::dimlfac, &Dimension::setDimlfac}},
    {L"dimscale", 40, Access<double>{&Style::dimscale, &Dimension::setDimscale}},
};

/// The variable of a name; null when the name is not known.
const Variable* findVariable(const CString& name)
{
    for (const Variable& variable : kVariables) {
        if (name.CompareNoCase(variable.name) == 0)
            return &variable;
    }
    return nullptr;
}

/// The whole number that a double is cut to; INT_MIN, which no variable takes, when there is none.
int truncated(double value)
{
    return std::abs(value) <= INT_MAX ? static_cast<int>(value) : INT_MIN;
}

template <class Stored, class Value>
Stored converted(Value value)
{
    if constexpr (std::is_same_v<Stored, bool>)
        return value != Value();
    else if constexpr (std::is_same_v<Stored, int> && std::is_same_v<Value, double>)
        return truncated(value);
    else
        return static_cast<Stored>(value);
}

// Every whole number and flag is exact as a double, so that one comparison serves all kinds.
template <class Value, class Stored>
bool isSame(Value value, Stored styleValue)
{
    return static_cast<double>(value) == static_cast<double>(styleValue);
}

bool isSectionStart(const resbuf& node)
{
    return node.restype == kString && CString(node.resval.rstring).CompareNoCase(L"DSTYLE") == 0;
}

/// A closing node ends a section; where it is missing, the next section begins.
bool endsSection(const resbuf& node)
{
    return node.restype == kControl || isSectionStart(node);
}

/// Unlinks two neighbours and frees them.
void removePair(resbuf*& link)
{
    resbuf* const pair = link;
    link = std::exchange(pair->rbnext->rbnext, nullptr);
    kdutRelRb(pair);
}

/// Removes the pairs of a code from one section.
/// @param link  to the first pair
/// @return the link to what ends the section
resbuf** removePairs(resbuf** link, short code)
{
    while (*link && !endsSection(**link)) {
        resbuf& codeNode = **link;
        resbuf* const value = codeNode.rbnext;
        if (!value || value->restype == kControl)
            return &codeNode.rbnext;
        if (codeNode.restype == kInteger16 && codeNode.resval.rint == code)
            removePair(*link);
        else
            link = &value->rbnext;
    }
    return link;
}

/// Removes the pairs of a code from every section of a list.
void removeOverrides(resbuf** link, short code)
{
    while (*link) {
        const bool section = isSectionStart(**link);
        link = &(*link)->rbnext;
        if (section && *link)
            link = removePairs(&(*link)->rbnext, code);
    }
}

} // namespace

namespace DimStyleMgr {

template <class Value>
Kdapi::ErrorStatus OverrideDimVariable(KdDbDimension* dimension, CString name, Value value)
{
    if (!dimension)
        return Kdapi::eNotThatKindOfClass;
    const Opened<KdDbDimStyleTableRecord> style(dimension->dimensionStyle(), KdDb::kForRead);
    if (!style)
        return style.status();
    const Variable* const variable = findVariable(name);
    if (!variable)
        return Kdapi::eOk;

    const auto overrideWith = [&]<class Stored>(const Access<Stored>& access) {
        if (isSame(value, (style.get()->*access.styleValue)())) {
            DeleteDimVarsOverride(dimension, variable->code);
            return Kdapi::eOk;
        }
        return (dimension->*access.override)(converted<Stored>(value));
    };
    return std::visit(overrideWith, variable->access);
}

template ORVEX_API Kdapi::ErrorStatus OverrideDimVariable<short>(KdDbDimension*, CString, short);
template ORVEX_API Kdapi::ErrorStatus OverrideDimVariable<int>(KdDbDimension*, CString, int);
template ORVEX_API Kdapi::ErrorStatus OverrideDimVariable<double>(KdDbDimension*, CString, double);
template ORVEX_API Kdapi::ErrorStatus OverrideDimVariable<bool>(KdDbDimension*, CString, bool);

void DeleteDimVarsOverride(KdDbDimension* dimension, short code)
{
    const WriteAccess writable(*dimension);
    ResbufList data(dimension->xData(L"ACAD"));
    if (data.isEmpty())
        return;
    removeOverrides(data.link(), code);
    dimension->setXData(data.get());
}

} // namespace DimStyleMgr
