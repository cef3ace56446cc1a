#include "objects/record_names.h"

#include "platform/text.h"

#include <new>

namespace korra {

std::wstring folded(std::wstring_view name)
{
    std::wstring text(name);
    for (wchar_t& character : text)
        character = platform::foldCase(character);
    return text;
}

KdDbObjectId RecordNames::find(const KdDbSymbolTable& table, std::wstring_view name, Erased erased)
{
    const auto& list = ObjectAccess::records(table);
    for (; met_ < list.size(); ++met_)
        records_.emplace(folded(list[met_]->name()), list[met_]);

    const ObjectSlot* live = nullptr;
    const ObjectSlot* gone = nullptr;
    const auto [first, last] = records_.equal_range(folded(name));
    for (auto each = first; each != last; ++each) {
        const KdDbSymbolTableRecord& record = *each->second;
        const ObjectSlot* const slot = ObjectAccess::slot(record);
        if (platform::compareNoCase(record.name(), name) != 0)
            continue;
        if (!slot->erased && (!live || slot->index < live->index))
            live = slot;
        if (slot->erased && (!gone || slot->index > gone->index))
            gone = slot;
    }
    const ObjectSlot* const found = live || erased == Erased::passedOver ? live : gone;
    return found ? KdDbObjectId(const_cast<ObjectSlot*>(found)) : KdDbObjectId();
}

void RecordNames::note(const KdDbSymbolTableRecord& record) noexcept
{
    try {
        records_.emplace(folded(record.name()), &record);
    } catch (const std::bad_alloc&) {
        forget();
    }
}

void RecordNames::forget() noexcept
{
    records_.clear();
    met_ = 0;
}

} // namespace korra
