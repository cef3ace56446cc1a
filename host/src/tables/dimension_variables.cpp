#include "tables/dimension_variables.h"

#include "platform/text.h"

namespace korra {
namespace {

constexpr int kTextStyleVariable = 340; ///< group code of DIMTXSTY in a style

DimensionVariable flag(const wchar_t* name, int code, bool byDefault)
{
    return {name, code, DimensionKind::flag, byDefault ? 1.0 : 0.0, {0.0, 1.0}};
}

DimensionVariable whole(const wchar_t* name, int code, int byDefault, int minimum, int maximum)
{
    return {
        name, code, DimensionKind::integer, double(byDefault), {double(minimum), double(maximum)}};
}

DimensionVariable real(const wchar_t* name, int code, double byDefault)
{
    return {name, code, DimensionKind::real, byDefault, settings::kAny};
}

DimensionVariable size(const wchar_t* name, int code, double byDefault)
{
    return {name, code, DimensionKind::real, byDefault, {.minimum = 0.0}};
}

/// A factor: a measurement times nothing is none.
DimensionVariable factor(const wchar_t* name, int code, double byDefault)
{
    return {name, code, DimensionKind::real, byDefault, {.zero = Zero::refused}};
}

DimensionVariable text(const wchar_t* name, int code)
{
    return {name, code, DimensionKind::text, 0.0, settings::kAny};
}

DimensionVariable reference(const wchar_t* name, int code)
{
    return {name, code, DimensionKind::reference, 0.0, settings::kAny};
}

DimensionVariable color(const wchar_t* name, int code)
{
    return whole(name, code, 0, 0, 256);
}

DimensionVariable lineWeight(const wchar_t* name, int code)
{
    return whole(name, code, KdDb::kLnWtByBlock, KdDb::kLnWtByLwDefault, 211);
}

/// Names, codes, kinds and defaults as the drawing-exchange format publishes them for dimension
/// styles. Older files name arrow blocks (5, 6, 7) where newer ones give handles (342 to 344).
std::vector<DimensionVariable> makeTable()
{
    return {text(L"DIMPOST", 3),
            text(L"DIMAPOST", 4),
            text(L"DIMBLK", 5),
            text(L"DIMBLK1", 6),
            text(L"DIMBLK2", 7),
            size(L"DIMSCALE", 40, 1.0),
            size(L"DIMASZ", 41, 0.18),
            size(L"DIMEXO", 42, 0.0625),
            size(L"DIMDLI", 43, 0.38),
            size(L"DIMEXE", 44, 0.18),
            size(L"DIMRND", 45, 0.0),
            size(L"DIMDLE", 46, 0.0),
            real(L"DIMTP", 47, 0.0),
            real(L"DIMTM", 48, 0.0),
            size(L"DIMTXT", 140, 0.18),
            real(L"DIMCEN", 141, 0.09),
            size(L"DIMTSZ", 142, 0.0),
            size(L"DIMALTF", 143, 25.4),
            factor(L"DIMLFAC", 144, 1.0),
            real(L"DIMTVP", 145, 0.0),
            size(L"DIMTFAC", 146, 1.0),
            real(L"DIMGAP", 147, 0.09),
            size(L"DIMALTRND", 148, 0.0),
            flag(L"DIMTOL", 71, false),
            flag(L"DIMLIM", 72, false),
            flag(L"DIMTIH", 73, true),
            flag(L"DIMTOH", 74, true),
            flag(L"DIMSE1", 75, false),
            flag(L"DIMSE2", 76, false),
            whole(L"DIMTAD", 77, 0, 0, 4),
            whole(L"DIMZIN", 78, 0, 0, 15),
            whole(L"DIMAZIN", 79, 0, 0, 3),
            flag(L"DIMALT", 170, false),
            whole(L"DIMALTD", 171, 2, 0, 8),
            flag(L"DIMTOFL", 172, false),
            flag(L"DIMSAH", 173, false),
            flag(L"DIMTIX", 174, false),
            flag(L"DIMSOXD", 175, false),
            color(L"DIMCLRD", 176),
            color(L"DIMCLRE", 177),
            color(L"DIMCLRT", 178),
            whole(L"DIMADEC", 179, 0, -1, 8),
            whole(L"DIMUNIT", 270, 2, 1, 8),
            whole(L"DIMDEC", 271, 4, 0, 8),
            whole(L"DIMTDEC", 272, 4, 0, 8),
            whole(L"DIMALTU", 273, 2, 1, 8),
            whole(L"DIMALTTD", 274, 2, 0, 8),
            whole(L"DIMAUNIT", 275, 0, 0, 4),
            whole(L"DIMFRAC", 276, 0, 0, 2),
            whole(L"DIMLUNIT", 277, 2, 1, 6),
            whole(L"DIMDSEP", 278, L'.', 0, 32767),
            whole(L"DIMTMOVE", 279, 0, 0, 2),
            whole(L"DIMJUST", 280, 0, 0, 4),
            flag(L"DIMSD1", 281, false),
            flag(L"DIMSD2", 282, false),
            whole(L"DIMTOLJ", 283, 1, 0, 2),
            whole(L"DIMTZIN", 284, 0, 0, 15),
            whole(L"DIMALTZ", 285, 0, 0, 15),
            whole(L"DIMALTTZ", 286, 0, 0, 15),
            whole(L"DIMFIT", 287, 3, 0, 5),
            flag(L"DIMUPT", 288, false),
            whole(L"DIMATFIT", 289, 3, 0, 3),
            reference(L"DIMTXSTY", kTextStyleVariable),
            reference(L"DIMLDRBLK", 341),
            reference(L"DIMBLK", 342),
            reference(L"DIMBLK1", 343),
            reference(L"DIMBLK2", 344),
            lineWeight(L"DIMLWD", 371),
            lineWeight(L"DIMLWE", 372)};
}

} // namespace

const std::vector<DimensionVariable>& dimensionVariables()
{
    static const std::vector<DimensionVariable> table = makeTable();
    return table;
}

int dimensionVariableIndex(std::wstring_view name)
{
    const auto& table = dimensionVariables();
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (platform::compareNoCase(table[i].name, name) == 0)
            return static_cast<int>(i);
    }
    return -1;
}

int dimensionVariableIndex(int code)
{
    const auto& table = dimensionVariables();
    for (std::size_t i = 0; i < table.size(); ++i) {
        if (table[i].code == code)
            return static_cast<int>(i);
    }
    return -1;
}

short overrideValueCode(DimensionKind kind)
{
    switch (kind) {
    case DimensionKind::real:
        return 1040;
    case DimensionKind::text:
        return 1000;
    case DimensionKind::reference:
        return 1005;
    default:
        return 1070;
    }
}

DimensionSetting settingOf(const DimensionVariable& variable)
{
    switch (variable.kind) {
    case DimensionKind::real:
        return Setting<double>{variable.name, 40, variable.byDefault, variable.range};
    case DimensionKind::text:
        return Setting<std::wstring>{variable.name, 1, L""};
    case DimensionKind::reference:
        if (variable.code == kTextStyleVariable)
            return RecordSetting{{variable.name, 7, L"Standard"}, TableKind::textStyle};
        return RecordSetting{{variable.name, 1, L""}, TableKind::block};
    default:
        return Setting<int>{variable.name, 70, static_cast<int>(variable.byDefault),
                            variable.range};
    }
}

KdDbDimensionValue defaultValue(const DimensionVariable& variable)
{
    return valueOf(variable, variable.byDefault);
}

KdDbDimensionValue valueOf(const DimensionVariable& variable, double number)
{
    switch (variable.kind) {
    case DimensionKind::real:
        return number;
    case DimensionKind::text:
        return std::wstring();
    case DimensionKind::reference:
        return KdDbObjectId();
    default:
        return static_cast<int>(number);
    }
}

bool accepts(const DimensionVariable& variable, double value)
{
    return variable.range.holds(value);
}

double numberOf(const KdDbDimensionValue& value)
{
    if (const int* number = std::get_if<int>(&value))
        return *number;
    const double* number = std::get_if<double>(&value);
    return number ? *number : 0.0;
}

} // namespace korra
