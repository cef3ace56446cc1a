#include "objects/object_slots.h"

#include "platform/text.h"

namespace korra {
namespace {

std::shared_ptr<ObjectSlots> running;

/// Names of a stopped host must not be taken for names of the next one.
std::int64_t nextGeneration = 1;

std::string openingInWords(const ObjectSlot& slot)
{
    const std::string who =
        platform::toUtf8(slot.object->isA()->name()) + ' ' + traceForm(slot.object->objectId());
    if (slot.writing)
        return who + " is open for writing";
    return who + " is open for reading" +
           (slot.readers > 1 ? ", " + std::to_string(slot.readers) + " times" : "");
}

} // namespace

ObjectSlots::ObjectSlots() : generation_(nextGeneration++) {}

ObjectSlots::~ObjectSlots() = default;

ObjectSlot& ObjectSlots::add()
{
    ObjectSlot& slot = slots_.emplace_back();
    slot.index = static_cast<std::uint32_t>(slots_.size());
    return slot;
}

ObjectSlot* ObjectSlots::find(const kds_name name)
{
    const auto count = static_cast<std::int64_t>(slots_.size());
    if (name[1] != generation_ || name[0] < 1 || name[0] > count)
        return nullptr;
    return &slots_[static_cast<std::size_t>(name[0] - 1)];
}

void ObjectSlots::writeName(const ObjectSlot& slot, kds_name name) const
{
    name[0] = slot.index;
    name[1] = generation_;
}

std::vector<std::string> ObjectSlots::openObjects() const
{
    std::vector<std::string> words;
    for (const ObjectSlot& slot : slots_) {
        if (slot.object && (slot.writing || slot.readers > 0))
            words.push_back(openingInWords(slot));
    }
    return words;
}

const std::shared_ptr<ObjectSlots>& runningSlots()
{
    return running;
}

void setRunningSlots(std::shared_ptr<ObjectSlots> slots)
{
    running = std::move(slots);
}

} // namespace korra
