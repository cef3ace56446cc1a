#pragma once

#include "host/recording_sink.h"
#include "support/room_test.h"

#include "tables/dimension_variables.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tests {

/// What a dimension shows, and what can be measured on it.
class Shown final : public RecordingSink {
public:
    explicit Shown(const KdDbDimension& dimension) { dimension.draw(*this); }

    /// How many lines are of a color, and how many of them end at a point.
    std::ptrdiff_t lines(std::uint16_t color) const
    {
        return std::ranges::count_if(segments, [&](const Segment& segment) {
            return segment.traits.color.colorIndex() == color;
        });
    }

    std::ptrdiff_t ends(std::uint16_t color, const KdGePoint3d& point) const
    {
        return std::ranges::count_if(segments, [&](const Segment& segment) {
            return segment.traits.color.colorIndex() == color &&
                   std::min(segment.start.distanceTo(point), segment.end.distanceTo(point)) < 1e-9;
        });
    }

    /// Length of what is drawn on the line y = 10, from x = `from` to x = `to`.
    double onLine(double from, double to) const
    {
        double sum = 0.0;
        for (const Segment& segment : segments) {
            const auto [low, high] = std::minmax(segment.start.x, segment.end.x);
            if (segment.start.y == 10.0 && segment.end.y == 10.0)
                sum += std::max(0.0, std::min(high, to) - std::max(low, from));
        }
        return sum;
    }

    double arcLength() const
    {
        double sum = 0.0;
        for (const auto& curve : curves)
            sum += curve->length();
        return sum;
    }

    KdGePoint3d textCenter() const { return corner(0) + (corner(2) - corner(0)) / 2.0; }

    double textWidth() const { return texts.at(0).width; }

    double textAngle() const { return (corner(1) - corner(0)).angleOnPlane(KdGePlane()); }

    KdGePoint3d corner(std::size_t index) const { return texts.at(0).corners().at(index); }
};

/// A dimension of the drawing, 40 units from (0, 0) with its line on y = 10, and what it shows.
class DimensionTest : public HostTest {
protected:
    /// Variables of the style by name.
    using Changes = std::vector<std::pair<const wchar_t*, KdDbDimensionValue>>;

    DimensionTest() { measure(new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0})); }

    void measure(KdDbDimension* dimension) { id_ = addEntity(dimension); }

    const KdDbDimension& dimension() const
    {
        return *KdDbDimension::cast(korra::ObjectAccess::object(id_));
    }

    Shown shown() const { return Shown(dimension()); }

    /// Gives the style of the dimension its defaults with some variables changed.
    void restyle(const Changes& changes) const
    {
        using korra::ObjectAccess;
        auto* const style =
            ObjectAccess::live<KdDbDimStyleTableRecord>(dimension().dimensionStyle());
        std::vector<KdDbDimensionValue>& values = ObjectAccess::values(*style);
        for (std::size_t i = 0; i < values.size(); ++i)
            values[i] = korra::defaultValue(korra::dimensionVariables()[i]);
        for (const auto& [name, value] : changes)
            values.at(static_cast<std::size_t>(korra::dimensionVariableIndex(name))) = value;
        EXPECT_EQ(Open<KdDbDimension>(id_)->recomputeDimBlock(true), Kdapi::eOk);
    }

    KdDbObjectId id_;
};

} // namespace tests
