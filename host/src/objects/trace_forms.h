#pragma once

#include "kd/array.h"
#include "kd/db/color.h"
#include "kd/db/ids.h"
#include "kd/ge.h"
#include "platform/trace_text.h"

#include <string>

/// How the trace writes values of the host.

/// The handle.
std::string traceForm(KdDbObjectId id);

/// The index.
inline std::string traceForm(const KdCmColor& color)
{
    return platform::traceValue(color.colorIndex());
}

inline std::string traceForm(const KdGePoint2d& point)
{
    return '(' + platform::traceList(point.x, point.y) + ')';
}

inline std::string traceForm(const KdGePoint3d& point)
{
    return '(' + platform::traceList(point.x, point.y, point.z) + ')';
}

inline std::string traceForm(const KdGeVector3d& vector)
{
    return '(' + platform::traceList(vector.x, vector.y, vector.z) + ')';
}

/// How many there are.
template <class T>
std::string traceForm(const KdArray<T>& array)
{
    return '[' + platform::traceValue(array.length()) + ']';
}

inline std::string traceForm(const KdGeScale3d& scale)
{
    return '(' + platform::traceList(scale.sx, scale.sy, scale.sz) + ')';
}
