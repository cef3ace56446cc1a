#include "blocks/draw_order.h"
#include "kd/db.h"

#include "objects/contents.h"

#include "platform/gate.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>

using korra::ObjectAccess;

KDRX_DEFINE_MEMBERS(KdDbSortentsTable, KdDbObject)

namespace {

/// Where the table lies in the extension dictionary of its block.
constexpr wchar_t kDrawOrderKey[] = L"ACAD_SORTENTS";

std::vector<KdDbObjectId> liveEntities(const KdDbBlockTableRecord& block)
{
    std::vector<KdDbObjectId> live = ObjectAccess::entities(block).ids();
    std::erase_if(live, [](KdDbObjectId id) { return id.isErased(); });
    return live;
}

/// Puts the given entities into the places that they hold together; the others keep theirs.
void arrange(std::vector<KdDbObjectId>& order, const KdArray<KdDbObjectId>& sequence)
{
    const std::unordered_set<KdDbObjectId> moved(sequence.begin(), sequence.end());
    auto next = sequence.begin();
    for (KdDbObjectId& place : order) {
        if (moved.contains(place))
            place = *next++;
    }
}

/// True when each id is in the order, once.
bool areDistinctMembers(const KdArray<KdDbObjectId>& ids, const std::vector<KdDbObjectId>& order)
{
    std::unordered_set<KdDbObjectId> members(order.begin(), order.end());
    return std::ranges::all_of(ids, [&](KdDbObjectId id) { return members.erase(id) == 1; });
}

} // namespace

namespace korra {

KdDbObjectId sortentsTableOf(const KdDbBlockTableRecord& block)
{
    auto* const dictionary = ObjectAccess::live<KdDbDictionary>(block.extensionDictionary());
    if (!dictionary)
        return {};
    for (const auto& entry : ObjectAccess::entries(*dictionary)) {
        if (entry.name == kDrawOrderKey && ObjectAccess::live<KdDbSortentsTable>(entry.id))
            return entry.id;
    }
    return {};
}

KdDbObjectId makeSortentsTable(KdDbBlockTableRecord& block)
{
    KdDbDictionary& dictionary = ObjectAccess::extensionDictionary(block);
    auto table = std::make_unique<KdDbSortentsTable>(block.objectId());
    ObjectAccess::enter(dictionary, kDrawOrderKey, *table);
    return table.release()->objectId();
}

} // namespace korra

std::vector<KdDbObjectId> KdDbSortentsTable::fullDrawOrder() const
{
    const auto* const block = ObjectAccess::live<KdDbBlockTableRecord>(block_);
    if (!block)
        return {};
    std::vector<KdDbObjectId> order = liveEntities(*block);
    if (entries_.empty())
        return order;
    const auto handles = sortHandles();
    const auto key = [&](KdDbObjectId id) {
        const auto found = handles.find(id);
        return found == handles.end() ? id.handle() : found->second;
    };
    std::ranges::stable_sort(order, {}, key);
    return order;
}

std::unordered_map<KdDbObjectId, KdDbHandle> KdDbSortentsTable::sortHandles() const
{
    std::unordered_map<KdDbObjectId, KdDbHandle> handles;
    for (const auto& entry : entries_)
        handles[entry.entity] = entry.sortHandle;
    return handles;
}

void KdDbSortentsTable::describe(korra::ObjectVisitor& visitor)
{
    KdDbObject::describe(visitor);
    visitor.behindMarker(1, "SortentsTable");
    visitor.reference(330, block_, korra::Reference::soft, KdDbBlockTableRecord::desc());
    visitor.list(331, entries_, [](korra::ObjectVisitor& element, Entry& entry) {
        element.reference(331, entry.entity, korra::Reference::soft, KdDbEntity::desc());
        element.handle(5, entry.sortHandle);
    });
}

Kdapi::ErrorStatus KdDbSortentsTable::getFullDrawOrder(KdArray<KdDbObjectId>& order, bool) const
{
    return platform::gate("KdDbSortentsTable::getFullDrawOrder", objectId())
        .guard(Kdapi::eNotOpenForRead, [&] {
            order.removeAll();
            for (const KdDbObjectId id : fullDrawOrder())
                order.append(id);
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbSortentsTable::setRelativeDrawOrder(const KdArray<KdDbObjectId>& order)
{
    return platform::gate("KdDbSortentsTable::setRelativeDrawOrder", objectId())
        .guard(Kdapi::eNotOpenForWrite, [&] {
            std::vector<KdDbObjectId> full = fullDrawOrder();
            if (!areDistinctMembers(order, full))
                return Kdapi::eInvalidInput;
            if (const auto status = beginChange())
                return status;
            arrange(full, order);
            sortAs(full);
            return Kdapi::eOk;
        });
}

/// Gives the entities their own handles in ascending order as sort handles: whatever the order was
/// before, it is now the given one, and what is appended later is drawn last.
void KdDbSortentsTable::sortAs(const std::vector<KdDbObjectId>& order)
{
    std::vector<KdDbHandle> handles;
    handles.reserve(order.size());
    for (const KdDbObjectId id : order)
        handles.push_back(id.handle());
    std::ranges::sort(handles);
    std::erase_if(entries_, [](const Entry& entry) { return !entry.entity.isErased(); });
    for (std::size_t place = 0; place < order.size(); ++place) {
        if (order[place].handle() != handles[place])
            entries_.push_back({order[place], handles[place]});
    }
}
