#include "dxf/class_markers.h"

#include "dxf/tag_list.h"
#include "objects/kinds.h"
#include "objects/object_visitor.h"

#include <string_view>
#include <utility>
#include <vector>

namespace korra {
namespace {

class StemVisitor final : public PassingVisitor {
public:
    void behindMarker(int, const char* stem) override { stems.emplace_back(stem); }

    std::vector<std::string_view> stems;
};

/// The markers of an object without its class's stems, where all begin alike.
std::optional<std::string> prefixIn(KdDbObject& object, std::string_view source)
{
    StemVisitor visitor;
    object.describe(visitor);
    const TagList tags(source);
    std::optional<std::string> prefix;
    std::size_t next = 0;
    for (std::size_t index = 0; index < tags.size() && next < visitor.stems.size(); ++index) {
        if (tags[index].part != TagPart::marker)
            continue;
        std::string_view marker = tags[index].value;
        const std::string_view stem = visitor.stems[next++];
        if (!marker.ends_with(stem))
            return std::nullopt;
        marker.remove_suffix(stem.size());
        if (prefix && *prefix != marker)
            return std::nullopt;
        prefix = marker;
    }
    return prefix;
}

} // namespace

std::optional<std::string> markerPrefix(const DatabaseContents& contents)
{
    for (const ObjectSlot* slot : contents.slots) {
        const std::string_view source = ObjectAccess::source(*slot->object);
        if (source.empty() || !kindOf(*slot->object))
            continue;
        if (auto prefix = prefixIn(*slot->object, source))
            return prefix;
    }
    return std::nullopt;
}

} // namespace korra
