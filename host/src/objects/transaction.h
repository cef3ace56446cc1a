#pragma once

#include "kd/db/transaction.h"
#include "objects/field_values.h"
#include "objects/object_access.h"

#include "platform/tally.h"

#include <cstddef>
#include <memory>
#include <vector>

/// One running transaction.
class KdDbTransaction {
public:
    KdDbTransaction();

    /// Takes over an opening of an object, and notes what the object is when it is new here.
    void hold(KdDbObject& object);

    /// The objects taken over, once for each opening.
    const std::vector<KdDbObjectId>& held() const { return held_; }

    std::ptrdiff_t holds(KdDbObjectId id) const;

    /// Makes every object taken over what it was before.
    void giveBack() const;

private:
    struct Before {
        KdDbObjectId id;
        korra::FieldValues fields;
        std::vector<korra::TypedValue> xData;
        bool erased;
    };

    platform::Tallied tallied_;
    std::vector<KdDbObjectId> held_;
    std::vector<Before> before_;
};

namespace korra {

/// The transactions of one document.
///
/// A slot counts the openings that transactions hold; closing the object by hand takes one of them
/// first, so that a transaction closes only what nobody has closed.
class TransactionManager final : public KdDbTransactionManager {
public:
    KdDbTransaction* startTransaction() override;
    Kdapi::ErrorStatus getObject(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                 bool openErased) override;
    Kdapi::ErrorStatus endTransaction() override;
    Kdapi::ErrorStatus abortTransaction() override;

    int numActiveTransactions() const override { return static_cast<int>(running_.size()); }

private:
    void closeInnermost();

    std::vector<std::unique_ptr<KdDbTransaction>> running_; ///< innermost last
};

} // namespace korra
