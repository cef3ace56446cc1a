#include "ed/variable_tables.h"
#include "kd/resbuf.h"
#include "tables/dimension_variables.h"

#include <limits>

namespace korra::ed {
namespace {

using Home = SystemVariable::Home;

constexpr double kShortMin = std::numeric_limits<short>::min();
constexpr double kShortMax = std::numeric_limits<short>::max();
constexpr double kRealMax = std::numeric_limits<double>::max();

SystemVariable shortVariable(Home home, const wchar_t* name, short byDefault, double minimum,
                             double maximum, int code = 70)
{
    SystemVariable variable;
    variable.name = name;
    variable.type = RTSHORT;
    variable.home = home;
    variable.byDefault = byDefault;
    variable.minimum = minimum;
    variable.maximum = maximum;
    variable.code = code;
    return variable;
}

SystemVariable realVariable(Home home, const wchar_t* name, double byDefault, double minimum)
{
    SystemVariable variable;
    variable.name = name;
    variable.type = RTREAL;
    variable.home = home;
    variable.byDefault = byDefault;
    variable.minimum = minimum;
    variable.maximum = kRealMax;
    variable.code = 40;
    return variable;
}

SystemVariable pointVariable(Home home, const wchar_t* name, short type,
                             const KdGePoint3d& byDefault)
{
    SystemVariable variable;
    variable.name = name;
    variable.type = type;
    variable.home = home;
    variable.byDefault = byDefault;
    return variable;
}

SystemVariable numericDimensionVariable(const DimensionVariable& dimension)
{
    const bool real = dimension.kind == DimensionKind::real;
    SystemVariable variable;
    variable.name = dimension.name;
    variable.type = real ? RTREAL : RTSHORT;
    variable.home = Home::header;
    variable.minimum = dimension.minimum;
    variable.maximum = dimension.maximum;
    variable.code = real ? 40 : 70;
    if (real)
        variable.byDefault = dimension.byDefault;
    else
        variable.byDefault = static_cast<short>(dimension.byDefault);
    return variable;
}

/// The smallest real that a scale or a size can be.
constexpr double kAboveZero = std::numeric_limits<double>::min();

} // namespace

std::vector<SystemVariable> hostVariables()
{
    return {
        shortVariable(Home::host, L"APERTURE", 10, 1, 50),
        shortVariable(Home::host, L"CMDECHO", 1, 0, 1),
        shortVariable(Home::host, L"FILEDIA", 1, 0, 1),
        shortVariable(Home::host, L"GRIPSIZE", 5, 0, 255),
        shortVariable(Home::host, L"LWDEFAULT", 25, 0, 211),
        shortVariable(Home::host, L"OSMODE", 0, kShortMin, kShortMax),
        shortVariable(Home::host, L"PICKBOX", 3, 0, 32767),
    };
}

std::vector<SystemVariable> drawingVariables()
{
    return {
        shortVariable(Home::header, L"ATTMODE", 1, 0, 2),
        shortVariable(Home::header, L"AUNITS", 0, 0, 4),
        shortVariable(Home::header, L"AUPREC", 0, 0, 8),
        realVariable(Home::header, L"CELTSCALE", 1.0, kAboveZero),
        shortVariable(Home::header, L"CELWEIGHT", -1, -3, 211, 370),
        realVariable(Home::space, L"ELEVATION", 0.0, -kRealMax),
        shortVariable(Home::header, L"FILLMODE", 1, 0, 1),
        pointVariable(Home::space, L"INSBASE", RT3DPOINT, {}),
        pointVariable(Home::space, L"LIMMIN", RTPOINT, {}),
        pointVariable(Home::space, L"LIMMAX", RTPOINT, {12.0, 9.0, 0.0}),
        realVariable(Home::header, L"LTSCALE", 1.0, kAboveZero),
        shortVariable(Home::header, L"LUNITS", 2, 1, 5),
        shortVariable(Home::header, L"LUPREC", 4, 0, 8),
        shortVariable(Home::header, L"MEASUREMENT", 0, 0, 1),
        shortVariable(Home::header, L"MIRRTEXT", 0, 0, 1),
        shortVariable(Home::header, L"ORTHOMODE", 0, 0, 1),
        shortVariable(Home::header, L"PDMODE", 0, 0, 100),
        realVariable(Home::header, L"PDSIZE", 0.0, -kRealMax),
        realVariable(Home::header, L"TEXTSIZE", 2.5, kAboveZero),
        realVariable(Home::header, L"THICKNESS", 0.0, -kRealMax),
    };
}

std::vector<SystemVariable> numericDimensionVariables()
{
    std::vector<SystemVariable> variables;
    for (const DimensionVariable& dimension : dimensionVariables())
        if (dimension.kind != DimensionKind::text && dimension.kind != DimensionKind::reference)
            variables.push_back(numericDimensionVariable(dimension));
    return variables;
}

} // namespace korra::ed
