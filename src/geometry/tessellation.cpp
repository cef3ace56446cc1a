#include "orvex/tessellation.h"

#include "support/localised_text.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

using Points = KdArray<KdGePoint3d>;

constexpr double kMostPoints = 1e7; // of one call

std::optional<KdGeCircArc3d> readArc(const KdDbPolyline& polyline, unsigned int segment)
{
    KdGeCircArc3d arc;
    if (polyline.getArcSegAt(segment, arc) != Kdapi::eOk)
        return std::nullopt;
    return arc;
}

/// How often a step fits into an arc.
double stepsIn(const KdGeCircArc3d& arc, double step)
{
    const double start = arc.paramOf(arc.startPoint(), KdGeContext::gTol);
    const double end = arc.paramOf(arc.endPoint(), KdGeContext::gTol);
    return std::trunc(arc.length(start, end, KdGeContext::gTol.equalPoint()) / step);
}

/// What the arc segments of a polyline look like before any of them is divided.
struct ArcSurvey {
    double points = 0.0; ///< in all of them, at most
    double largestRadius = 0.0;
    unsigned int largest = 0;  ///< segment of the first arc with that radius
    std::optional<int> unread; ///< the last segment that could not be read
};

ArcSurvey surveyArcs(const KdDbPolyline& polyline, unsigned int segments, double step)
{
    ArcSurvey survey;
    for (unsigned int i = 0; i < segments; ++i) {
        if (polyline.segType(i) != KdDbPolyline::kArc)
            continue;
        const auto arc = readArc(polyline, i);
        if (!arc) {
            survey.unread = static_cast<int>(i);
            continue;
        }
        survey.points += stepsIn(*arc, step);
        if (arc->radius() > survey.largestRadius) {
            survey.largestRadius = arc->radius();
            survey.largest = i;
        }
    }
    return survey;
}

/// @return false, with a message, where no arc can be relied on
bool areArcsSound(const KdDbPolyline& polyline, const ArcSurvey& survey, CString& message)
{
    if (survey.unread)
        message = localisedText(110, L"\n数据：%d错误！", *survey.unread);
    if (survey.largestRadius <= 0.0) {
        message = localisedText(111, L"\n多段线中含有非法圆弧");
        return false;
    }
    if (!readArc(polyline, survey.largest)) {
        message = localisedText(112, L"\n获取最小弧数据错误");
        return false;
    }
    return true;
}

void appendInside(const KdGeCircArc3d& arc, double step, Points& points, int& count)
{
    const double steps = std::min(stepsIn(arc, step), kMostPoints); // the survey may lack it
    double param = arc.paramOf(arc.startPoint(), KdGeContext::gTol);
    for (int k = 1; k < steps; ++k) {
        param = arc.paramAtLength(param, step, true, KdGeContext::gTol.equalPoint());
        points.append(arc.evalPoint(param));
        ++count;
    }
}

/// @return false, with a message, at an arc that cannot be read
bool appendSegments(const KdDbPolyline& polyline, unsigned int segments, double step,
                    Points& points, int& count, CString& message)
{
    KdGePoint3d end; // of the latest segment that has a length
    polyline.getPointAt(polyline.numVerts() - 1, end);
    for (unsigned int i = 0; i < segments; ++i) {
        const KdDbPolyline::SegType type = polyline.segType(i);
        if (type != KdDbPolyline::kLine && type != KdDbPolyline::kArc) {
            message = localisedText(114, L"\n可能存在错误点");
            continue;
        }
        KdGePoint3d start;
        polyline.getPointAt(i, start);
        polyline.getPointAt((i + 1) % polyline.numVerts(), end);
        const auto arc = type == KdDbPolyline::kArc ? readArc(polyline, i) : std::nullopt;
        if (type == KdDbPolyline::kArc && !arc) {
            message = localisedText(113, L"\n获取第%d个弧数据错误！", static_cast<int>(i));
            return false;
        }
        points.append(start);
        ++count;
        if (arc)
            appendInside(*arc, step, points, count);
    }
    if (!polyline.isClosed()) {
        points.append(end);
        ++count;
    }
    return true;
}

int polylineToPoints(const KdDbPolyline& polyline, Points& points, int& count, double step,
                     CString& message)
{
    const unsigned int vertices = polyline.numVerts();
    const unsigned int segments = polyline.isClosed() || vertices == 0 ? vertices : vertices - 1;
    if (segments < 2) {
        message = localisedText(109, L"\n该多段线没有足够的点");
        return 0;
    }
    const bool hasArcs = polyline.hasBulges();
    const ArcSurvey survey = hasArcs ? surveyArcs(polyline, segments, step) : ArcSurvey();
    if (!(survey.points + vertices <= kMostPoints))
        return 0;
    if (hasArcs && !areArcsSound(polyline, survey, message))
        return 0;
    count = 0;
    return appendSegments(polyline, segments, step, points, count, message);
}

int curveToPoints(const KdDbCurve& curve, Points& points, int& count, double step, CString& message)
{
    const double tolerance = KdGeContext::gTol.equalPoint();
    KdGePoint3d end;
    double length = 0.0;
    curve.getEndPoint(end);
    curve.getDistAtPoint(end, length);
    const bool hasNoEnd = curve.isClosed() || length <= tolerance;
    if (hasNoEnd) {
        double endParam = 0.0;
        curve.getEndParam(endParam);
        curve.getDistAtParam(endParam, length);
    }
    const double steps = std::trunc(length / step);
    if (!(steps <= kMostPoints))
        return 0;

    count = static_cast<int>(steps);
    KdGePoint3d point;
    for (int k = 0; k < count; ++k) {
        if (curve.getPointAtDist(k * step, point) != Kdapi::eOk) {
            message = localisedText(115, L"\n获取圆弧点信息出现未知错误，请重新尝试！");
            return 0;
        }
        points.append(point);
    }
    if (!hasNoEnd && (count == 0 || point.distanceTo(end) > tolerance)) {
        points.append(end);
        ++count;
    }
    return 1;
}

} // namespace

int CConversion::KdDbCurveToKdGePoint3dArray(KdDbCurve* curve, KdArray<KdGePoint3d>& points,
                                             int& count, double step, CString& message)
{
    if (!curve || !(step > 0.0))
        return 0;
    if (const KdDbPolyline* const polyline = KdDbPolyline::cast(curve))
        return polylineToPoints(*polyline, points, count, step, message);
    return curveToPoints(*curve, points, count, step, message);
}
