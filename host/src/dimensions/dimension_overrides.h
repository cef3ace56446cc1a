#pragma once

#include "objects/object_access.h"
#include "tables/dimension_variables.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace korra {

/// Where the overrides of dimension variables lie in a dimension's extended data.
///
/// The data of the application "ACAD" may hold sections: a text "DSTYLE", an opening node that is
/// passed over unseen, pairs of a code (1070) and a value, a closing node (1002). A section may
/// lack its closing node, and then ends with the application's data.
struct OverrideSections {
    explicit OverrideSections(const std::vector<TypedValue>& data);

    /// The position of the value of the first pair with a code, in any section.
    std::optional<std::size_t> valueOf(int code) const;

    /// Positions of the code nodes of whole pairs, in order; the value lies behind each.
    std::vector<std::size_t> pairs;

    /// Behind the last whole pair of the first section.
    std::optional<std::size_t> firstSectionEnd;

    /// The first section has its opening node.
    bool isOpened = false;

private:
    std::size_t readSection(std::size_t at, std::size_t end);

    const std::vector<TypedValue>& data_;
};

/// Stores the override of a numeric variable; see KdDbDimension.
void storeOverride(std::vector<TypedValue>& data, const DimensionVariable& variable, double number);

} // namespace korra
