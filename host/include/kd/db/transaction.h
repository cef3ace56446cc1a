#pragma once

#include "kd/db/object.h"

/// A running transaction; it belongs to its manager.
class KdDbTransaction;

/// Transactions of a drawing: what they open is closed with them, and what changes while they run
/// can be taken back. They nest; every operation works on the innermost one of this drawing.
/// Objects of any open drawing can take part.
class KdDbTransactionManager {
public:
    virtual ~KdDbTransactionManager() = default;

    /// Begins a transaction inside the innermost one. @return null when the host refuses
    virtual KdDbTransaction* startTransaction() = 0;

    /// Opens an object until the transaction ends; it may be closed before with close().
    /// @return eOk; eNotApplicable without a transaction; the statuses of kddbOpenObject(), the
    ///         pointer then null
    virtual Kdapi::ErrorStatus getObject(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                         bool openErased = false) = 0;

    /// Ends the innermost transaction: what it still has open is closed, also when a failure is
    /// returned. @return eOk; eNotApplicable without a transaction
    virtual Kdapi::ErrorStatus endTransaction() = 0;

    /// Ends the innermost transaction and takes back every change of an object since it began, in
    /// whatever drawing and however the object was opened: fields, extended data, parts, extension
    /// dictionaries, erasing. What was added is erased and in no list. A transaction that ran in
    /// another drawing's manager at the time takes its own changes along.
    /// @return as endTransaction()
    virtual Kdapi::ErrorStatus abortTransaction() = 0;

    /// Transactions that run now.
    virtual int numActiveTransactions() const = 0;
};
