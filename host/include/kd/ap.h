#pragma once

#include "kd/rx.h"

class KdApDocument;
class KdDbDatabase;
class KdDbTransactionManager;

/// How a document is locked.
namespace KdAp {
enum DocLockMode : int { kNone = 0, kAutoWrite = 1, kNotLocked = 2, kWrite = 4, kRead = 20 };
}

/// Is told what happens to documents.
class KdApDocManagerReactor : public KdRxObject {
    KDRX_DECLARE_MEMBERS(KdApDocManagerReactor)
public:
    virtual void documentCreated(KdApDocument*) {}

    /// The document is about to go; its database still lives.
    virtual void documentToBeDestroyed(KdApDocument*) {}

    /// The document is gone: the pointer is good for comparing only.
    virtual void documentDestroyed(const KdApDocument*) {}
};

/// An open drawing.
class KdApDocument {
public:
    virtual ~KdApDocument() = default;

    /// The full path of the drawing; the title of one that was never saved.
    virtual const wchar_t* fileName() const = 0;
    virtual KdDbDatabase* database() const = 0;

    /// How the document is locked now.
    virtual KdAp::DocLockMode lockMode() const = 0;

    /// The transactions of the document's drawing; never null.
    virtual KdDbTransactionManager* transactionManager() const = 0;
};

/// The open documents and their locks.
class KdApDocManager {
public:
    virtual ~KdApDocManager() = default;

    /// The document that input goes to; null when there is none.
    virtual KdApDocument* curDocument() const = 0;

    /// Locks a document. Locks nest: each needs its own unlock.
    /// @param mode  kWrite or kRead
    /// @param globalCommandName, localCommandName  what the lock is taken for; may be null
    /// @param prompt  ask the user when the lock is refused
    /// @return eOk; eNoDocument for null; eLockViolation
    virtual Kdapi::ErrorStatus lockDocument(KdApDocument* document,
                                            KdAp::DocLockMode mode = KdAp::kWrite,
                                            const wchar_t* globalCommandName = nullptr,
                                            const wchar_t* localCommandName = nullptr,
                                            bool prompt = true) = 0;

    /// Takes one lock back; nothing for null. @return eOk; eLockViolation when it is not locked
    virtual Kdapi::ErrorStatus unlockDocument(KdApDocument* document) = 0;

    virtual void addReactor(KdApDocManagerReactor* reactor) = 0;
    virtual void removeReactor(KdApDocManagerReactor* reactor) = 0;
};

/// Null before the host has started and after it has ended.
KdApDocManager* kdDocManagerPtr();
