#include "kd/db/block_record.h"
#include "kd/db.h"

#include "blocks/block_boxes.h"
#include "blocks/draw_order.h"
#include "blocks/spaces.h"
#include "objects/contents.h"
#include "objects/id_steps.h"
#include "objects/setters.h"

#include "platform/gate.h"
#include "platform/tally.h"
#include "platform/text.h"

#include <unordered_set>

using korra::ObjectAccess;

KDRX_DEFINE_MEMBERS(KdDbBlockTableRecord, KdDbSymbolTableRecord)

namespace {

platform::Tally iterators("block iterator");

/// True when a block is the wanted one or shows it, at whatever depth.
bool leadsTo(KdDbObjectId block, KdDbObjectId wanted)
{
    std::vector<KdDbObjectId> pending{block};
    std::unordered_set<KdDbObjectId> visited;
    while (!pending.empty()) {
        const KdDbObjectId next = pending.back();
        pending.pop_back();
        if (next == wanted)
            return true;
        const auto* const record = ObjectAccess::live<KdDbBlockTableRecord>(next);
        if (!record || !visited.insert(next).second)
            continue;
        for (const KdDbObjectId shown : korra::BlockBoxes::of(*record).shownBlocks())
            pending.push_back(shown);
    }
    return false;
}

bool wouldContainItself(const KdDbBlockTableRecord& block, const KdDbEntity& entity)
{
    const auto* const reference = KdDbBlockReference::cast(&entity);
    return reference && leadsTo(reference->blockTableRecord(), block.objectId());
}

/// An entity of a drawing has a layer and a linetype, whoever made it.
void completeProperties(KdDbEntity& entity, const korra::DatabaseContents& contents)
{
    if (entity.layerId().isNull())
        entity.setLayer(contents.record(korra::TableKind::layer, L"0"));
    if (entity.linetypeId().isNull())
        entity.setLinetype(contents.record(korra::TableKind::linetype, L"ByLayer"));
}

} // namespace

namespace korra {

bool isSpaceName(std::wstring_view blockName)
{
    constexpr std::wstring_view kSheet = kPaperSpace; // the other sheets have a number behind it
    return platform::compareNoCase(blockName, kModelSpace) == 0 ||
           platform::compareNoCase(blockName.substr(0, kSheet.size()), kSheet) == 0;
}

} // namespace korra

KdDbBlockTableRecord::KdDbBlockTableRecord() = default;
KdDbBlockTableRecord::~KdDbBlockTableRecord() = default;

void KdDbBlockTableRecord::describe(korra::ObjectVisitor& visitor)
{
    describeNamed(visitor, "BlockTableRecord");
    visitor.reference(340, layout_, korra::Reference::soft, KdDbLayout::desc());
    visitor.point(10, origin_, KdGePoint3d::kOrigin);
    visitor.owned(entities_);
}

bool KdDbBlockTableRecord::isIndispensable() const
{
    return korra::isSpaceName(name());
}

Kdapi::ErrorStatus KdDbBlockTableRecord::setOrigin(const KdGePoint3d& origin)
{
    return set("KdDbBlockTableRecord::setOrigin", origin_, origin);
}

bool KdDbBlockTableRecord::isAnonymous() const
{
    return name().starts_with(L'*') && !korra::isSpaceName(name());
}

Kdapi::ErrorStatus KdDbBlockTableRecord::appendKdDbEntity(KdDbObjectId& id, KdDbEntity* entity)
{
    return platform::gate("KdDbBlockTableRecord::appendKdDbEntity", objectId())
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (const auto status = ObjectAccess::canOwn(*this, entity))
                return status;
            if (wouldContainItself(*this, *entity))
                return Kdapi::eSelfReference;
            if (const auto status = beginChange())
                return status;
            completeProperties(*entity, database()->contents());
            id = ObjectAccess::append(*this, entity, korra::Opening::forWrite);
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbBlockTableRecord::appendKdDbEntity(KdDbEntity* entity)
{
    KdDbObjectId id;
    return appendKdDbEntity(id, entity);
}

Kdapi::ErrorStatus KdDbBlockTableRecord::newIterator(KdDbBlockTableRecordIterator*& iterator,
                                                     bool atBeginning, bool skipErased) const
{
    iterator = nullptr;
    return platform::gate("KdDbBlockTableRecord::newIterator", objectId())
        .guard(Kdapi::eNotOpenForRead, [&] {
            iterator = new KdDbBlockTableRecordIterator(entities_.ids(), skipErased);
            iterator->start(atBeginning, skipErased);
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbBlockTableRecord::getSortentsTable(KdDbSortentsTable*& table,
                                                          KdDb::OpenMode mode, bool createIfMissing)
{
    table = nullptr;
    return platform::gate("KdDbBlockTableRecord::getSortentsTable", objectId(), mode)
        .guard(Kdapi::eKeyNotFound, [&] {
            KdDbObjectId id = korra::sortentsTableOf(*this);
            if (id.isNull() && createIfMissing) {
                if (!database())
                    return Kdapi::eNotInDatabase;
                if (const auto status = beginChange())
                    return status;
                id = korra::makeSortentsTable(*this);
            }
            if (id.isNull())
                return Kdapi::eKeyNotFound;
            KdDbObject* opened = nullptr;
            const auto status = ObjectAccess::open(opened, id, mode);
            table = static_cast<KdDbSortentsTable*>(opened);
            return status;
        });
}

KdDbBlockTableRecordIterator::KdDbBlockTableRecordIterator(std::vector<KdDbObjectId> entities,
                                                           bool skipErased)
    : entities_(std::move(entities))
{
    iterators.add();
    start(true, skipErased);
}

KdDbBlockTableRecordIterator::~KdDbBlockTableRecordIterator()
{
    iterators.remove();
}

void KdDbBlockTableRecordIterator::start(bool atBeginning, bool skipErased)
{
    next_ = korra::firstId(entities_, atBeginning, skipErased);
}

void KdDbBlockTableRecordIterator::step(bool forward, bool skipErased)
{
    next_ = korra::followingId(entities_, next_, forward, skipErased);
}

Kdapi::ErrorStatus KdDbBlockTableRecordIterator::getEntityId(KdDbObjectId& id) const
{
    return platform::gate("KdDbBlockTableRecordIterator::getEntityId")
        .guard(Kdapi::eIteratorDone, [&] {
            if (done())
                return Kdapi::eIteratorDone;
            id = entities_[next_];
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus KdDbBlockTableRecordIterator::getEntity(KdDbEntity*& entity, KdDb::OpenMode mode,
                                                           bool openErased) const
{
    entity = nullptr;
    return platform::gate("KdDbBlockTableRecordIterator::getEntity", mode)
        .guard(Kdapi::eWasOpenForWrite, [&] {
            if (done())
                return Kdapi::eIteratorDone;
            return kddbOpenObject(entity, entities_[next_], mode, openErased);
        });
}
