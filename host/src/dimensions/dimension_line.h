#pragma once

#include "dimensions/dimension_sheet.h"

#include <cmath>
#include <optional>
#include <string>

namespace korra {

/// The way of a dimension line, measured in drawing units from its first end: 0 to length().
class DimensionPath {
public:
    virtual ~DimensionPath() = default;

    virtual double length() const = 0;
    virtual KdGePoint2d at(double way) const = 0;

    /// Unit, the way growing.
    virtual KdGeVector2d direction(double way) const = 0;

    /// The way of the nearest point of the path, prolonged beyond its ends.
    virtual double wayOf(const KdGePoint2d& point) const = 0;

    virtual void draw(DimensionSheet& sheet, double from, double to) const = 0;
};

class StraightPath final : public DimensionPath {
public:
    /// @param start, end  apart from each other
    StraightPath(const KdGePoint2d& start, const KdGePoint2d& end);

    double length() const override { return length_; }

    KdGePoint2d at(double way) const override { return start_ + direction_ * way; }

    KdGeVector2d direction(double) const override { return direction_; }

    double wayOf(const KdGePoint2d& point) const override;
    void draw(DimensionSheet& sheet, double from, double to) const override;

private:
    KdGePoint2d start_;
    double length_;
    KdGeVector2d direction_;
};

class ArcPath final : public DimensionPath {
public:
    /// @param sweep  radians, below 0 clockwise; not 0
    ArcPath(const KdGePoint2d& center, double radius, double startAngle, double sweep);

    double length() const override { return radius_ * std::abs(sweep_); }

    KdGePoint2d at(double way) const override;
    KdGeVector2d direction(double way) const override;
    double wayOf(const KdGePoint2d& point) const override;
    void draw(DimensionSheet& sheet, double from, double to) const override;

private:
    KdGePoint2d center_;
    double radius_;

    double angleAt(double way) const { return startAngle_ + way / radius_ * side_; }

    double startAngle_;
    double sweep_;
    double side_; ///< 1 counter-clockwise, -1 clockwise
};

/// A dimension line with its arrows and its text.
struct DimensionLineParts {
    const DimensionPath& path;
    std::wstring text;                ///< empty: no text
    std::optional<KdGePoint2d> moved; ///< middle of the text where the user has placed it
    bool arrows[2] = {true, true};

    /// Unit, away from what is measured; zero where there are no extension lines, and text is never
    /// set along one.
    KdGeVector2d outward = {};

    /// How far a line beyond the second end runs at least when the text stands there.
    double leader = 0.0;
};

/// Draws a dimension line: fits text and arrows between its ends or puts them outside, breaks the
/// line where the text stands in it, leaves out what the style hides.
/// @return true when the arrows are inside
bool drawDimensionLine(DimensionSheet& sheet, const DimensionLineParts& parts);

} // namespace korra
