#include "kd/db.h"

#include "objects/contents.h"
#include "objects/id_steps.h"
#include "objects/kinds.h"
#include "objects/references.h"
#include "tables/drawing_settings.h"

#include "platform/gate.h"
#include "platform/tally.h"

#include <string_view>
#include <vector>

using korra::ObjectAccess;

KDRX_DEFINE_MEMBERS(KdDbSymbolTable, KdDbObject)
KDRX_DEFINE_MEMBERS(KdDbBlockTable, KdDbSymbolTable)
KDRX_DEFINE_MEMBERS(KdDbDimStyleTable, KdDbSymbolTable)
KDRX_DEFINE_MEMBERS(KdDbLayerTable, KdDbSymbolTable)
KDRX_DEFINE_MEMBERS(KdDbLinetypeTable, KdDbSymbolTable)
KDRX_DEFINE_MEMBERS(KdDbRegAppTable, KdDbSymbolTable)
KDRX_DEFINE_MEMBERS(KdDbTextStyleTable, KdDbSymbolTable)
KDRX_DEFINE_MEMBERS(KdDbUCSTable, KdDbSymbolTable)
KDRX_DEFINE_MEMBERS(KdDbViewportTable, KdDbSymbolTable)
KDRX_DEFINE_MEMBERS(KdDbSymbolTableRecord, KdDbObject)

namespace {

platform::Tally iterators("symbol table iterator");

bool holdsRecordsLike(const KdDbSymbolTable& table, const KdDbSymbolTableRecord& record)
{
    const auto kind = korra::tableKindOf(table);
    return kind && record.isKindOf(korra::kindOfRecords(*kind).description());
}

/// What a record can be named: an asterisk stands only in front, as in the host's own names.
bool isRecordName(std::wstring_view name)
{
    constexpr std::size_t kLongest = 255;
    constexpr std::wstring_view kRefused = L"<>/\\\":;?|,=`";
    return !name.empty() && name.size() <= kLongest &&
           name.find_first_of(kRefused) == std::wstring_view::npos &&
           name.find(L'*', 1) == std::wstring_view::npos;
}

/// The settings of its drawing that stand at a record.
std::vector<const korra::RecordSetting*> settingsNaming(const KdDbSymbolTableRecord& record)
{
    using namespace korra::settings;
    std::vector<const korra::RecordSetting*> naming;
    for (const korra::RecordSetting* setting :
         {&kLayer, &kLinetype, &kTextStyle, &kDimStyle, &kUserSystem}) {
        if (korra::DrawingSettings(*record.database()).get(*setting) == record.objectId())
            naming.push_back(setting);
    }
    return naming;
}

/// Names a record; in a drawing all that names it follows.
void rename(KdDbSymbolTableRecord& record, const wchar_t* name)
{
    std::vector<const korra::RecordSetting*> naming;
    if (record.database()) {
        korra::willRename(record);
        naming = settingsNaming(record);
    }
    ObjectAccess::setName(record, name);
    for (const korra::RecordSetting* setting : naming)
        korra::DrawingSettings(*record.database()).set(*setting, record.objectId());
}

} // namespace

void KdDbSymbolTable::describe(korra::ObjectVisitor& visitor)
{
    KdDbObject::describe(visitor);
    visitor.owned(records_);
}

Kdapi::ErrorStatus KdDbSymbolTable::getAt(const wchar_t* name, KdDbObjectId& id,
                                          bool getErased) const
{
    return platform::gate("KdDbSymbolTable::getAt", objectId(), name)
        .guard(Kdapi::eKeyNotFound, [&] {
            if (!name)
                return Kdapi::eInvalidKey;
            const KdDbObjectId found = korra::recordNamed(
                *this, name, getErased ? korra::Erased::found : korra::Erased::passedOver);
            if (found.isNull())
                return Kdapi::eKeyNotFound;
            id = found;
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbSymbolTable::getIdAt(const wchar_t* name, KdDbObjectId& id,
                                            bool getErased) const
{
    return getAt(name, id, getErased);
}

Kdapi::ErrorStatus KdDbSymbolTable::add(KdDbObjectId& id, KdDbSymbolTableRecord* record)
{
    return platform::gate("KdDbSymbolTable::add", objectId()).guard(Kdapi::eNotOpenForWrite, [&] {
        if (record && !holdsRecordsLike(*this, *record))
            return Kdapi::eNotThatKindOfClass;
        if (const auto status = ObjectAccess::canOwn(*this, record))
            return status;
        if (!isRecordName(record->name()))
            return Kdapi::eInvalidKey;
        if (!korra::recordNamed(*this, record->name(), korra::Erased::passedOver).isNull())
            return Kdapi::eDuplicateKey;
        if (const auto status = beginChange())
            return status;
        if (auto* const layer = KdDbLayerTableRecord::cast(record);
            layer && layer->linetypeObjectId().isNull())
            layer->setLinetypeObjectId(database()->continuousLinetype());
        id = ObjectAccess::append(*this, record, korra::Opening::forWrite);
        return Kdapi::eOk;
    });
}

Kdapi::ErrorStatus KdDbSymbolTable::newIterator(KdDbSymbolTableIterator*& iterator,
                                                bool atBeginning, bool skipErased) const
{
    iterator = nullptr;
    return platform::gate("KdDbSymbolTable::newIterator", objectId())
        .guard(Kdapi::eNotOpenForRead, [&] {
            iterator = new KdDbSymbolTableIterator(records_.ids(), skipErased);
            iterator->start(atBeginning, skipErased);
            return Kdapi::eOk;
        });
}

KdDbSymbolTableIterator::KdDbSymbolTableIterator(std::vector<KdDbObjectId> records, bool skipErased)
    : records_(std::move(records))
{
    iterators.add();
    start(true, skipErased);
}

KdDbSymbolTableIterator::~KdDbSymbolTableIterator()
{
    iterators.remove();
}

void KdDbSymbolTableIterator::start(bool atBeginning, bool skipErased)
{
    next_ = korra::firstId(records_, atBeginning, skipErased);
}

void KdDbSymbolTableIterator::step(bool forward, bool skipErased)
{
    next_ = korra::followingId(records_, next_, forward, skipErased);
}

Kdapi::ErrorStatus KdDbSymbolTableIterator::getRecordId(KdDbObjectId& id) const
{
    return platform::gate("KdDbSymbolTableIterator::getRecordId").guard(Kdapi::eIteratorDone, [&] {
        if (done())
            return Kdapi::eIteratorDone;
        id = records_[next_];
        return Kdapi::eOk;
    });
}

void KdDbSymbolTableRecord::describeNamed(korra::ObjectVisitor& visitor, const char* marker)
{
    KdDbObject::describe(visitor);
    visitor.behindMarker(1, "SymbolTableRecord");
    visitor.behindMarker(2, marker);
    visitor.text(2, name_);
    visitor.integer(70, flags_);
}

Kdapi::ErrorStatus KdDbSymbolTableRecord::getName(const wchar_t*& name) const
{
    return platform::gate("KdDbSymbolTableRecord::getName", objectId())
        .guard(Kdapi::eNotOpenForRead, [&] {
            name = name_.c_str();
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbSymbolTableRecord::setName(const wchar_t* name)
{
    return platform::gate("KdDbSymbolTableRecord::setName", objectId(), name)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (!name || !isRecordName(name))
                return Kdapi::eInvalidKey;
            if (auto* const table = ObjectAccess::live<KdDbSymbolTable>(ownerId())) {
                const KdDbObjectId taken =
                    korra::recordNamed(*table, name, korra::Erased::passedOver);
                if (!taken.isNull() && taken != objectId())
                    return Kdapi::eDuplicateKey;
            }
            if (const auto status = beginChange())
                return status;
            rename(*this, name);
            return Kdapi::eOk;
        });
}
