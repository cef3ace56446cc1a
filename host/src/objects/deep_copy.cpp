#include "objects/deep_copy.h"

#include "objects/contents.h"
#include "objects/kinds.h"
#include "objects/references.h"
#include "objects/snapshot.h"

#include "platform/text.h"

#include <cstdio>
#include <memory>
#include <optional>
#include <utility>

namespace korra {
namespace {

std::wstring handleText(KdDbHandle handle)
{
    char digits[17];
    std::snprintf(digits, sizeof digits, "%llX", static_cast<unsigned long long>(handle.value()));
    return platform::fromUtf8(digits);
}

/// One run of deepCopy().
class DeepCopy {
public:
    DeepCopy(KdDbDatabase& target, IdMap& map) : target_(target), map_(map) {}

    void copy(KdDbObjectId source, KdDbObject& owner);

    /// Makes what the copies that are not looked at yet need, and lets them refer to it.
    void finish();

    /// The record of a table that stands for a foreign one; it is copied where there is none.
    void needRecord(KdDbObjectId source, TableKind table);

    /// What stands for an object in the target; null for nothing.
    KdDbObjectId standIn(KdDbObjectId source) const;

    const KdDbDatabase& target() const { return target_; }

private:
    std::wstring nameFor(const KdDbSymbolTableRecord& record, TableKind table) const;
    void copyOwned(KdDbObject& source, KdDbObject& copy);

    KdDbDatabase& target_;
    IdMap& map_;
    std::vector<std::pair<KdDbObject*, KdDbObject*>> unfinished_; ///< sources with their copies
};

/// Sees to it that what an object needs is in the target.
class NeedVisitor final : public PassingVisitor {
public:
    explicit NeedVisitor(DeepCopy& run) : run_(run) {}

    void name(int, KdDbObjectId& value, TableKind table, Reference meaning) override
    {
        if (meaning == Reference::hard)
            run_.needRecord(value, table);
    }

    void reference(int, KdDbObjectId& value, Reference meaning, const KdRxClass*) override
    {
        const KdDbObject* const record = ObjectAccess::object(value);
        const KdDbObject* const table = record ? ObjectAccess::object(record->ownerId()) : nullptr;
        if (const auto kind = table ? tableKindOf(*table) : std::nullopt;
            kind && meaning == Reference::hard)
            run_.needRecord(value, *kind);
    }

private:
    DeepCopy& run_;
};

/// Lets a copy refer to what stands in its database for what its source refers to.
class IdTranslation final : public PassingVisitor {
public:
    IdTranslation(const DeepCopy& run, const KdDbDatabase& source) : run_(run), source_(source) {}

    void name(int, KdDbObjectId& value, TableKind, Reference) override
    {
        value = run_.standIn(value);
    }

    void reference(int, KdDbObjectId& value, Reference, const KdRxClass*) override
    {
        value = run_.standIn(value);
    }

    void extendedData(std::vector<TypedValue>& values) override
    {
        for (TypedValue& value : values) {
            if (value.code == kXDataHandle)
                translate(std::get<std::wstring>(value.value));
        }
    }

private:
    void translate(std::wstring& handle) const
    {
        const std::uint64_t value = std::wcstoull(handle.c_str(), nullptr, 16);
        if (ObjectSlot* const known = source_.contents().byHandle.find(value))
            handle = handleText(run_.standIn(KdDbObjectId(known)).handle());
    }

    const DeepCopy& run_;
    const KdDbDatabase& source_;
};

/// Collects entries and the extension dictionary that an object owns beside its list.
class OwnedEntries final : public PassingVisitor {
public:
    std::vector<KdDbObjectId> entries;
    KdDbObjectId extension;

    void reference(int, KdDbObjectId& value, Reference meaning, const KdRxClass*) override
    {
        if (meaning == Reference::softOwner || meaning == Reference::hardOwner)
            entries.push_back(value);
    }

    void extensionDictionary(KdDbObjectId& value) override { extension = value; }
};

class ExtensionGiver final : public PassingVisitor {
public:
    explicit ExtensionGiver(KdDbObjectId dictionary) : dictionary_(dictionary) {}

    void extensionDictionary(KdDbObjectId& value) override { value = dictionary_; }

private:
    KdDbObjectId dictionary_;
};

/// Makes a copy part of its owner: in the owner's list, where that has one for it.
void place(KdDbObject& copy, KdDbObject& owner)
{
    if (ObjectAccess::owned(owner) && !KdDbDictionary::cast(&copy))
        ObjectAccess::append(owner, &copy);
    else
        ObjectAccess::own(owner, &copy);
    ObjectAccess::willChange(copy);
}

void DeepCopy::copy(KdDbObjectId id, KdDbObject& owner)
{
    KdDbObject* const source = id.isErased() ? nullptr : ObjectAccess::object(id);
    const Kind* const kind = source ? kindOf(*source) : nullptr;
    if (!kind || map_.contains(id))
        return;
    std::unique_ptr<KdDbObject> copy(kind->make());
    giveValues(*copy, valuesOf(*source, Extent::contents), Extent::contents);
    place(*copy, owner);
    map_.emplace(id, copy->objectId());
    unfinished_.emplace_back(source, copy.release());
}

void DeepCopy::copyOwned(KdDbObject& source, KdDbObject& copy)
{
    if (const OwnedObjects* const parts = ObjectAccess::owned(source)) {
        for (const KdDbObject* part : parts->objects())
            this->copy(part->objectId(), copy);
    }
    OwnedEntries owned;
    source.describe(owned);
    for (const KdDbObjectId entry : owned.entries)
        this->copy(entry, copy);
    this->copy(owned.extension, copy);
    ExtensionGiver giver(owned.extension.isNull() ? KdDbObjectId() : standIn(owned.extension));
    copy.describe(giver);
}

void DeepCopy::finish()
{
    for (std::size_t next = 0; next < unfinished_.size(); ++next) {
        const auto [source, copy] = unfinished_[next];
        copyOwned(*source, *copy);
        NeedVisitor needs(*this);
        source->describe(needs);
    }
    for (const auto& [source, copy] : unfinished_) {
        IdTranslation translation(*this, *source->database());
        copy->describe(translation);
    }
}

void DeepCopy::needRecord(KdDbObjectId id, TableKind table)
{
    const auto* const record = KdDbSymbolTableRecord::cast(ObjectAccess::object(id));
    if (!record || id.database() == &target_ || map_.contains(id))
        return;
    const std::wstring name = nameFor(*record, table);
    const KdDbObjectId known = target_.contents().record(table, name);
    if (!known.isNull()) {
        map_.emplace(id, known);
        return;
    }
    copy(id, *ObjectAccess::object(target_.contents().table(table)));
    if (auto* const copied = KdDbSymbolTableRecord::cast(ObjectAccess::object(standIn(id))))
        ObjectAccess::setName(*copied, name);
}

/// Anonymous blocks are no one's by name: "*D3" of one drawing is not "*D3" of another.
std::wstring DeepCopy::nameFor(const KdDbSymbolTableRecord& record, TableKind table) const
{
    const auto* const block = KdDbBlockTableRecord::cast(&record);
    if (!block || !block->isAnonymous())
        return record.name();
    const std::wstring begin = record.name().substr(0, 2);
    for (int number = 1;; ++number) {
        std::wstring name = begin + std::to_wstring(number);
        if (target_.contents().record(table, name).isNull())
            return name;
    }
}

KdDbObjectId DeepCopy::standIn(KdDbObjectId source) const
{
    const auto known = map_.find(source);
    if (known != map_.end())
        return known->second;
    return source.database() == &target_ ? source : KdDbObjectId();
}

} // namespace

void deepCopy(const std::vector<KdDbObjectId>& ids, KdDbObject& owner, IdMap& map)
{
    DeepCopy run(*owner.database(), map);
    for (const KdDbObjectId id : ids)
        run.copy(id, owner);
    run.finish();
}

} // namespace korra
