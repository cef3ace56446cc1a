#pragma once

#include "support/opened.h"

#include "kd/ap.h"
#include "kd/db/transaction.h"

namespace support {

/// A transaction of the current document, which must exist, for the length of a scope.
class Transaction {
public:
    Transaction()
        : manager_(kdDocManagerPtr()->curDocument()->transactionManager()),
          started_(manager_->startTransaction() != nullptr)
    {
    }

    /// Ends it; one that the host refused to start must not end the one around it.
    ~Transaction()
    {
        if (started_)
            manager_->endTransaction();
    }

    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    /// Opens an object, which must be a T, as part of the transaction.
    template <class T>
    Opened<T> open(KdDbObjectId id, KdDb::OpenMode mode) const
    {
        return Opened<T>([&](T*& object) {
            KdDbObject* opened = nullptr;
            const Kdapi::ErrorStatus status = manager_->getObject(opened, id, mode);
            object = static_cast<T*>(opened);
            return status;
        });
    }

private:
    KdDbTransactionManager* manager_;
    bool started_;
};

} // namespace support
