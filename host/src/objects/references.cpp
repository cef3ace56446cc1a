#include "objects/references.h"

#include "kd/db/database.h"
#include "objects/contents.h"
#include "objects/kinds.h"
#include "objects/trace_forms.h"
#include "platform/gate.h"

namespace korra {
namespace {

/// True for a record that every drawing has one for, under that name or a standard one.
bool isEverywhere(TableKind table)
{
    return standardName(table, NamedBy::other) != nullptr;
}

class ReferenceCheck final : public PassingVisitor {
public:
    ReferenceCheck(const KdDbDatabase& database, ForeignNames names)
        : database_(database), names_(names)
    {
    }

    Kdapi::ErrorStatus status() const { return status_; }

    void name(int, KdDbObjectId& value, TableKind table, Reference meaning) override
    {
        if (names_ == ForeignNames::refused || !isEverywhere(table))
            check(value, meaning, kindOfRecords(table).description());
    }

    void reference(int, KdDbObjectId& value, Reference meaning, const KdRxClass* kind) override
    {
        check(value, meaning, kind);
    }

    void owned(OwnedObjects& parts) override
    {
        for (const KdDbObject* part : parts.objects()) {
            if (status_ == Kdapi::eOk)
                status_ = checkReferences(*part, database_, names_);
        }
    }

private:
    void check(KdDbObjectId id, Reference meaning, const KdRxClass* kind)
    {
        const bool isLost = names_ == ForeignNames::translated && meaning == Reference::soft &&
                            id.database() != &database_;
        if (status_ == Kdapi::eOk && !isLost)
            status_ = checkReference(id, database_, kind);
    }

    const KdDbDatabase& database_;
    ForeignNames names_;
    Kdapi::ErrorStatus status_ = Kdapi::eOk;
};

class NameTranslation final : public PassingVisitor {
public:
    explicit NameTranslation(const KdDbDatabase& database) : database_(database) {}

    void name(int, KdDbObjectId& value, TableKind table, Reference) override
    {
        if (isForeign(value))
            value = isEverywhere(table) ? translated(value, table) : KdDbObjectId();
    }

    void reference(int, KdDbObjectId& value, Reference, const KdRxClass*) override
    {
        if (isForeign(value))
            value.setNull();
    }

    void owned(OwnedObjects& parts) override
    {
        for (KdDbObject* part : parts.objects())
            translateNames(*part, database_);
    }

private:
    bool isForeign(KdDbObjectId id) const { return !id.isNull() && id.database() != &database_; }

    KdDbObjectId translated(KdDbObjectId foreign, TableKind table) const
    {
        const DatabaseContents& contents = database_.contents();
        KdDbObjectId own;
        if (const auto* const record = KdDbSymbolTableRecord::cast(ObjectAccess::object(foreign)))
            own = contents.record(table, record->name());
        return own.isNull() ? contents.record(table, standardName(table, NamedBy::other)) : own;
    }

    const KdDbDatabase& database_;
};

class NameFinder final : public PassingVisitor {
public:
    explicit NameFinder(KdDbObjectId record) : record_(record) {}

    bool found() const { return found_; }

    void name(int, KdDbObjectId& value, TableKind, Reference) override
    {
        found_ = found_ || value == record_;
    }

private:
    KdDbObjectId record_;
    bool found_ = false;
};

} // namespace

Kdapi::ErrorStatus checkReference(KdDbObjectId id, const KdDbDatabase& database,
                                  const KdRxClass* kind)
{
    if (id.isNull())
        return Kdapi::eOk;
    if (id.database() != &database)
        return Kdapi::eWrongDatabase;
    return !kind || ObjectAccess::object(id)->isKindOf(kind) ? Kdapi::eOk
                                                             : Kdapi::eNotThatKindOfClass;
}

Kdapi::ErrorStatus checkReferences(const KdDbObject& object, const KdDbDatabase& database,
                                   ForeignNames names)
{
    ReferenceCheck check(database, names);
    // Visitors share one form for reading and writing; this one leaves the object as it is.
    const_cast<KdDbObject&>(object).describe(check);
    return check.status();
}

void translateNames(KdDbObject& object, const KdDbDatabase& database)
{
    NameTranslation translation(database);
    object.describe(translation);
}

void willRename(const KdDbSymbolTableRecord& record)
{
    for (const ObjectSlot* slot : record.database()->contents().slots) {
        NameFinder finder(record.objectId());
        slot->object->describe(finder);
        if (finder.found())
            ObjectAccess::willChange(*slot->object);
    }
}

} // namespace korra

Kdapi::ErrorStatus KdDbObject::setReference(const char* operation, KdDbObjectId& field,
                                            KdDbObjectId value, const KdRxClass* kind)
{
    return platform::gate(operation, objectId(), value).guard(Kdapi::eNotOpenForWrite, [&] {
        if (value.isNull())
            return Kdapi::eNullObjectId;
        if (database()) {
            if (const auto refused = korra::checkReference(value, *database(), kind))
                return refused;
        }
        const Kdapi::ErrorStatus status = beginChange();
        if (status == Kdapi::eOk)
            field = value;
        return status;
    });
}
