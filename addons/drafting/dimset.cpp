#include "commands.h"

#include "dimension_values.h"
#include "open_object.h"
#include "output.h"
#include "prompts.h"

namespace {

bool isDimension(KdDbObjectId id)
{
    const KdRxClass* const description = id.objectClass();
    return description && description->isDerivedFrom(KdDbDimension::desc());
}

/// Picks a dimension, which may lie in a block or behind a viewport.
/// @return RTNORM and the dimension; else why there is none
int pickDimension(KdDbObjectId& id)
{
    KdDbObjectId outer, nested, viewport;
    KdGePoint3d point;
    KdGeMatrix3d transform;
    const int status =
        EntSelEx(L"\nSelect a dimension: ", outer, viewport, point, nested, transform);
    if (status != RTNORM)
        return status;
    id = isDimension(nested) ? nested : outer;
    return isDimension(id) ? int(RTNORM) : int(Kdapi::eNotThatKindOfClass);
}

/// Asks which variable to set to what.
int askSetting(std::wstring& name, DimensionValue& value)
{
    std::wstring typed;
    int status = askWord(L"\nDimension variable: ", name);
    if (status == RTNORM)
        status = askWord(L"\nValue (number, on or off): ", typed);
    if (status != RTNORM)
        return status;
    const auto read = readDimensionValue(typed);
    if (!read)
        return RTERROR;
    value = *read;
    return RTNORM;
}

Kdapi::ErrorStatus overrideVariable(KdDbDimension& dimension, const CString& name,
                                    const DimensionValue& value)
{
    return std::visit(
        [&](auto typed) { return DimStyleMgr::OverrideDimVariable(&dimension, name, typed); },
        value);
}

void setVariable(KdDbObjectId id, const CString& name, const DimensionValue& value)
{
    Kdapi::ErrorStatus status;
    auto dimension = openObject<KdDbDimension>(id, KdDb::kForWrite, status);
    if (!dimension)
        return printNone(L"dimset", status);
    status = overrideVariable(*dimension, name, value);
    const std::wstring holds = dimensionValueText(*dimension, name);
    dimension.reset();
    EntUpdate(id);
    kdutPrintf(L"\ndimset %s %s %s %d", handleText(id).c_str(), name.GetString(), holds.c_str(),
               int(status));
}

} // namespace

void dimset()
{
    const CQM_CmdechoServer quiet(0);
    KdDbObjectId id;
    std::wstring name;
    DimensionValue value;
    int status = pickDimension(id);
    if (status == RTNORM)
        status = askSetting(name, value);
    if (status != RTNORM)
        return printNone(L"dimset", status);
    setVariable(id, name.c_str(), value);
}
