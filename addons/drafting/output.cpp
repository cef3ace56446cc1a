#include "output.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <limits>
#include <string_view>

std::wstring numberText(double value)
{
    constexpr int kDecimals = 6;
    // Sign, digits of the largest number, point, decimals.
    char digits[std::numeric_limits<double>::max_exponent10 + kDecimals + 4];
    const auto written = std::to_chars(std::begin(digits), std::end(digits), value,
                                       std::chars_format::fixed, kDecimals);
    std::wstring text(digits, written.ptr);
    if (text.find(L'.') != std::wstring::npos) {
        text.erase(text.find_last_not_of(L'0') + 1);
        if (text.back() == L'.')
            text.pop_back();
    }
    return text == L"-0" ? L"0" : text;
}

std::wstring angleText(double angle)
{
    const std::wstring text = numberText(angle);
    return text == numberText(KdGe::kFullTurn) ? L"0" : text;
}

std::wstring pointText(const KdGePoint3d& point)
{
    return numberText(point.x) + L' ' + numberText(point.y) + L' ' + numberText(point.z);
}

std::wstring handleText(KdDbObjectId id)
{
    CString text;
    text.Format(L"%I64X", id.handle().value());
    return text.GetString();
}

namespace {

constexpr std::wstring_view kClasses[] = {L"KdDbLine",
                                          L"KdDbPolyline",
                                          L"KdDbArc",
                                          L"KdDbCircle",
                                          L"KdDbEllipse",
                                          L"KdDb2dPolyline",
                                          L"KdDb3dPolyline",
                                          L"KdDbPolygonMesh",
                                          L"KdDbPolyFaceMesh",
                                          L"KdDbSpline",
                                          L"KdDbPoint",
                                          L"KdDbFace",
                                          L"KdDb3dSolid",
                                          L"KdDbRegion",
                                          L"KdDbBody",
                                          L"KdDbBlockReference",
                                          L"KdDbAttributeDefinition",
                                          L"KdDbAttribute",
                                          L"KdDbText",
                                          L"KdDbHatch",
                                          L"KdDbDimension",
                                          L"KdDbTrace",
                                          L"KdDbSolid",
                                          L"KdDbMText",
                                          L"KdDbVertex",
                                          L"KdDbSequenceEnd",
                                          L"KdDbMline",
                                          L"KdDbXline",
                                          L"KdDbViewport",
                                          L"KdDbLeader",
                                          L"KdDbFcf"};

} // namespace

std::wstring classText(KdDbObjectId id)
{
    for (const KdRxClass* description = id.objectClass(); description;
         description = description->myParent()) {
        const std::wstring_view name = description->name();
        if (std::find(std::begin(kClasses), std::end(kClasses), name) != std::end(kClasses))
            return std::wstring(name);
    }
    return L"KdDbEntity";
}

void printNone(const wchar_t* word, int status)
{
    kdutPrintf(L"\n%s none %d", word, status);
}

void printNames(const wchar_t* word, int (*list)(CStringArray& names, KdDbDatabase* drawing))
{
    CStringArray names;
    const int result = list(names, kddbHostApplicationServices()->workingDatabase());
    if (!result)
        return printNone(word, result);
    for (INT_PTR index = 0; index < names.GetSize(); ++index)
        kdutPrintf(L"\n%s", names[index].GetString());
}
