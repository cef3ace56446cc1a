#pragma once

#include "kd/db/tables.h"
#include "kd/own/own.h"

#include <memory>
#include <unordered_map>
#include <vector>

/// The order in which the entities of a block are drawn, first drawn first.
class KdDbSortentsTable : public KdDbObject {
    KDRX_DECLARE_MEMBERS(KdDbSortentsTable)
public:
    KdDbSortentsTable() = default;

    /// Every entity of the block that is not erased, in drawing order.
    /// @param honorSortMask  taken for the host's signature; the order is always sorted
    Kdapi::ErrorStatus getFullDrawOrder(KdArray<KdDbObjectId>& order,
                                        bool honorSortMask = false) const;

    /// Draws the given entities in the given sequence, in the places that they hold together now;
    /// the others keep theirs.
    /// @return eOk; eNotOpenForWrite; eInvalidInput, nothing changed, when an id is not in the
    /// block
    Kdapi::ErrorStatus setRelativeDrawOrder(const KdArray<KdDbObjectId>& order);

    KORRA_OWN()

    explicit KdDbSortentsTable(KdDbObjectId block) : block_(block) {}

    std::vector<KdDbObjectId> fullDrawOrder() const;

    KdDbObjectId block() const { return block_; }

    /// The handles that entities are sorted by instead of their own.
    std::unordered_map<KdDbObjectId, KdDbHandle> sortHandles() const;

    void describe(korra::ObjectVisitor& visitor) override;

private:
    /// An entity and the handle that it is sorted by instead of its own.
    struct Entry {
        KdDbObjectId entity;
        KdDbHandle sortHandle;
        friend bool operator==(const Entry&, const Entry&) = default;
    };

    void sortAs(const std::vector<KdDbObjectId>& order);

    KdDbObjectId block_;
    std::vector<Entry> entries_;
};

/// Walks the entities of a block in their order in the block; the caller deletes it.
class KdDbBlockTableRecordIterator {
public:
    ~KdDbBlockTableRecordIterator();
    KdDbBlockTableRecordIterator(const KdDbBlockTableRecordIterator&) = delete;
    KdDbBlockTableRecordIterator& operator=(const KdDbBlockTableRecordIterator&) = delete;

    void start(bool atBeginning = true, bool skipErased = true);

    bool done() const { return next_ >= entities_.size(); }

    void step(bool forward = true, bool skipErased = true);

    /// @return eOk and the id; eIteratorDone, the id untouched, behind the last entity
    Kdapi::ErrorStatus getEntityId(KdDbObjectId& id) const;

    /// Opens the entity; the caller closes it.
    Kdapi::ErrorStatus getEntity(KdDbEntity*& entity, KdDb::OpenMode mode,
                                 bool openErased = false) const;

    KORRA_OWN()
    KdDbBlockTableRecordIterator(std::vector<KdDbObjectId> entities, bool skipErased);

private:
    std::vector<KdDbObjectId> entities_;
    std::size_t next_ = 0;
};

/// A block definition: entities under a name. Model space and every sheet are blocks too.
class KdDbBlockTableRecord : public KdDbSymbolTableRecord {
    KDRX_DECLARE_MEMBERS(KdDbBlockTableRecord)
public:
    KdDbBlockTableRecord();
    ~KdDbBlockTableRecord() override;

    /// The base point, which an insertion puts at its insertion point.
    KdGePoint3d origin() const { return origin_; }

    Kdapi::ErrorStatus setOrigin(const KdGePoint3d& origin);

    bool isAnonymous() const;

    bool isLayout() const { return !layout_.isNull(); }

    KdDbObjectId getLayoutId() const { return layout_; }

    /// Adds an entity; the block owns it and it stays open for writing.
    /// @return eOk and the id; eNotOpenForWrite; eNotInDatabase; eNullObjectPointer; eAlreadyInDb;
    ///         eSelfReference: the entity is then still the caller's
    Kdapi::ErrorStatus appendKdDbEntity(KdDbObjectId& id, KdDbEntity* entity);
    Kdapi::ErrorStatus appendKdDbEntity(KdDbEntity* entity);

    /// @param iterator  the new iterator, owned by the caller; null on failure
    Kdapi::ErrorStatus newIterator(KdDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                   bool skipErased = true) const;

    /// The table of the drawing order, kept in the block's extension dictionary.
    /// @param createIfMissing  make an empty one; the block must then be open for writing
    /// @return eOk and the open table; eKeyNotFound; the statuses of opening
    Kdapi::ErrorStatus getSortentsTable(KdDbSortentsTable*& table, KdDb::OpenMode mode,
                                        bool createIfMissing);

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    bool isIndispensable() const override;

private:
    friend class korra::BlockBoxes;
    friend class korra::ObjectAccess;

    korra::Owned<KdDbEntity> entities_;
    KdGePoint3d origin_;
    KdDbObjectId layout_;
    mutable std::unique_ptr<korra::BlockBoxes> boxes_; ///< once they were asked for
};
