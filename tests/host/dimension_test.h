#pragma once

#include "host/recording_sink.h"
#include "support/host_test.h"
#include "support/objects.h"

#include "tables/dimension_variables.h"

#include <utility>
#include <vector>

namespace tests {

/// A dimension of the drawing, 40 units from (0, 0) with its line on y = 10, and what it shows.
class DimensionTest : public HostTest {
protected:
    /// Variables of the style by name.
    using Changes = std::vector<std::pair<const wchar_t*, KdDbDimensionValue>>;

    void SetUp() override
    {
        HostTest::SetUp();
        measure(new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0}));
    }

    void measure(KdDbDimension* dimension) { id_ = addEntity(dimension); }

    const KdDbDimension& dimension() const
    {
        return *KdDbDimension::cast(korra::ObjectAccess::object(id_));
    }

    RecordingSink shown() const { return drawn(dimension()); }

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
