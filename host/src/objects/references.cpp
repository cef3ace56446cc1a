#include "objects/references.h"

#include "kd/db/database.h"
#include "objects/contents.h"
#include "objects/kinds.h"
#include "objects/trace_forms.h"
#include "platform/gate.h"

#include <memory>
#include <utility>

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

class ApplicationRegistration final : public PassingVisitor {
public:
    explicit ApplicationRegistration(KdDbDatabase& database) : database_(database) {}

    void extendedData(std::vector<TypedValue>& values) override
    {
        for (const TypedValue& value : values) {
            if (value.code == kXDataApplication)
                registerApplication(database_, std::get<std::wstring>(value.value));
        }
    }

    void owned(OwnedObjects& parts) override
    {
        for (const KdDbObject* part : parts.objects())
            registerApplications(*part, database_);
    }

private:
    KdDbDatabase& database_;
};

/// Shows an object to a visitor that only looks: visitors share one form for reading and writing.
void show(const KdDbObject& object, ObjectVisitor& visitor)
{
    const_cast<KdDbObject&>(object).describe(visitor);
}

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
    show(object, check);
    return check.status();
}

void translateNames(KdDbObject& object, const KdDbDatabase& database)
{
    NameTranslation translation(database);
    object.describe(translation);
}

void registerApplication(KdDbDatabase& database, std::wstring_view application)
{
    const DatabaseContents& contents = database.contents();
    const KdDbObjectId present = contents.record(TableKind::regApp, application);
    if (auto* const record = ObjectAccess::live<KdDbRegAppTableRecord>(present)) {
        if (ObjectAccess::source(*record).empty())
            ObjectAccess::willChange(*record);
        return;
    }
    auto record = std::make_unique<KdDbRegAppTableRecord>();
    ObjectAccess::setName(*record, std::wstring(application));
    ObjectAccess::append(*ObjectAccess::object(contents.table(TableKind::regApp)), record.get());
    ObjectAccess::willChange(*record.release());
}

void registerApplications(const KdDbObject& object, KdDbDatabase& database)
{
    ApplicationRegistration registration(database);
    show(object, registration);
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
