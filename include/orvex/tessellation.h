#pragma once

#include "orvex/api.h"

#include "kd/db.h"

#include <afxwin.h>

/// Curves as chains of points.
class ORVEX_API CConversion {
public:
    CConversion() = default;
    CConversion(const CConversion&) = default;
    CConversion& operator=(const CConversion&) = default;
    virtual ~CConversion() = default;

    /// Appends points of a curve, in its direction.
    ///
    /// Of a light polyline: every vertex, and within an arc segment the points at `step`,
    /// 2 `step`, ... from its start; straight segments are not divided. Of any other curve: the
    /// points at 0, `step`, 2 `step`, ... from its start, then its end. A closed curve gets no
    /// point at its end. An unbounded line gives no point at all.
    ///
    /// @param curve   open for reading; stays open
    /// @param points  appended to, also before a failure; never cleared
    /// @param count   the number of points that this call gives
    /// @param step    arc length between points, drawing units, above 0
    /// @param message what went wrong, or looks wrong though the call succeeds; untouched when
    ///                there is nothing to say
    /// @return 1; 0 for a null curve, and after a message that says why. Also 0, nothing touched,
    ///         for a step that is not positive, and where more than ten million points would come
    static int KdDbCurveToKdGePoint3dArray(KdDbCurve* curve, KdArray<KdGePoint3d>& points,
                                           int& count, double step, CString& message);
};
