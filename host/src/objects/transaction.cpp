#include "objects/transaction.h"

#include "platform/gate.h"

#include <algorithm>
#include <utility>

namespace {

platform::Tally transactions("transaction");

/// Every transaction of the host, innermost last.
std::vector<KdDbTransaction*> all;

/// Openings of an object that the transactions other than the given one hold.
int heldByOthers(const KdDbTransaction& ending, KdDbObjectId id)
{
    int held = 0;
    for (const KdDbTransaction* transaction : all)
        held += transaction == &ending ? 0 : transaction->holds(id);
    return held;
}

} // namespace

KdDbTransaction::KdDbTransaction() : tallied_(transactions)
{
    all.push_back(this);
}

KdDbTransaction::~KdDbTransaction()
{
    std::erase(all, this);
}

void KdDbTransaction::hold(KdDbObjectId id)
{
    forgetClosed(id);
    ++held_[id];
    ++id.slot()->held;
}

void KdDbTransaction::forgetClosed(KdDbObjectId id)
{
    int open = id.slot()->held;
    for (KdDbTransaction* transaction : all) {
        const auto known = transaction->held_.find(id);
        if (known == transaction->held_.end())
            continue;
        known->second = std::min(known->second, open);
        open -= known->second;
    }
}

int KdDbTransaction::holds(KdDbObjectId id) const
{
    const auto found = held_.find(id);
    return found == held_.end() ? 0 : found->second;
}

KdDbTransaction* KdDbTransaction::outer() const
{
    const auto place = std::ranges::find(all, this);
    return place == all.begin() ? nullptr : *(place - 1);
}

namespace korra {

ChangeLog* runningLog()
{
    return all.empty() ? nullptr : &all.back()->log();
}

KdDbTransaction* TransactionManager::startTransaction()
{
    return platform::gate("KdDbTransactionManager::startTransaction")
        .guard(nullptr, [&]() -> KdDbTransaction* {
            return running_.emplace_back(std::make_unique<KdDbTransaction>()).get();
        });
}

Kdapi::ErrorStatus TransactionManager::getObject(KdDbObject*& object, KdDbObjectId id,
                                                 KdDb::OpenMode mode, bool openErased)
{
    object = nullptr;
    return platform::gate("KdDbTransactionManager::getObject", id, mode)
        .guard(Kdapi::eWasOpenForWrite, [&] {
            if (running_.empty())
                return Kdapi::eNotApplicable;
            const Kdapi::ErrorStatus status = ObjectAccess::open(object, id, mode, openErased);
            if (status != Kdapi::eOk)
                return status;
            try {
                running_.back()->hold(id);
            } catch (...) { // an object that is not held would stay open
                ObjectAccess::close(*std::exchange(object, nullptr));
                throw;
            }
            return status;
        });
}

Kdapi::ErrorStatus TransactionManager::endTransaction()
{
    return platform::gate("KdDbTransactionManager::endTransaction")
        .afterwards(Kdapi::eNotOpenForRead, [&] {
            if (running_.empty())
                return Kdapi::eNotApplicable;
            endInnermost();
            return Kdapi::eOk;
        });
}

Kdapi::ErrorStatus TransactionManager::abortTransaction()
{
    return platform::gate("KdDbTransactionManager::abortTransaction")
        .afterwards(Kdapi::eNotOpenForRead, [&] {
            if (running_.empty())
                return Kdapi::eNotApplicable;
            running_.back()->log().takeBack();
            endInnermost();
            return Kdapi::eOk;
        });
}

/// Closes what the transaction still has open while its changes are still noted, then hands them
/// on.
void TransactionManager::endInnermost()
{
    KdDbTransaction& ending = *running_.back();
    for (const auto& [id, openings] : ending.held()) {
        // What was closed before the end is held no more.
        KdDbObject* const object = ObjectAccess::object(id);
        while (object && id.slot()->held > heldByOthers(ending, id))
            ObjectAccess::close(*object);
    }
    if (KdDbTransaction* const outer = ending.outer())
        ending.log().moveInto(outer->log());
    running_.pop_back();
}

} // namespace korra
