#pragma once

#include "kd/db/transaction.h"
#include "objects/change_log.h"

#include "platform/tally.h"

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <unordered_map>
#include <vector>

/// One running transaction.
class KdDbTransaction {
public:
    KdDbTransaction();
    ~KdDbTransaction();
    KdDbTransaction(const KdDbTransaction&) = delete;
    KdDbTransaction& operator=(const KdDbTransaction&) = delete;

    /// Takes over an opening of an object.
    void hold(KdDbObjectId id);

    using Held = std::pmr::unordered_map<KdDbObjectId, int, korra::HashBySlot>;

    /// The objects taken over, each with the number of its openings.
    const Held& held() const { return held_; }

    int holds(KdDbObjectId id) const;

    korra::ChangeLog& log() { return log_; }

    /// The transaction that runs around this one; null for the outermost.
    KdDbTransaction* outer() const;

private:
    /// Openings that were closed by hand are held no more: the innermost transactions lose theirs.
    static void forgetClosed(KdDbObjectId id);

    platform::Tallied tallied_;
    std::pmr::monotonic_buffer_resource memory_; ///< of `held_`, which only grows
    Held held_{&memory_};
    korra::ChangeLog log_;
};

namespace korra {

/// The transactions of one drawing.
///
/// A transaction notes every change that is made while it is the innermost one of the whole host,
/// in whatever drawing. A slot counts the openings that transactions hold; closing the object by
/// hand takes one of them first, so that a transaction closes only what nobody has closed.
class TransactionManager final : public KdDbTransactionManager {
public:
    KdDbTransaction* startTransaction() override;
    Kdapi::ErrorStatus getObject(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                 bool openErased) override;
    Kdapi::ErrorStatus endTransaction() override;
    Kdapi::ErrorStatus abortTransaction() override;

    int numActiveTransactions() const override { return static_cast<int>(running_.size()); }

private:
    void endInnermost();

    std::vector<std::unique_ptr<KdDbTransaction>> running_; ///< innermost last
};

} // namespace korra
