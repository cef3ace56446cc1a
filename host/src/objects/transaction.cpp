#include "objects/transaction.h"

#include "platform/gate.h"

#include <algorithm>
#include <utility>

using korra::ObjectAccess;

namespace {

platform::Tally transactions("transaction");

std::vector<korra::TypedValue> xDataOf(const KdDbObject& object)
{
    const korra::ObjectExtras* extras = ObjectAccess::extras(object);
    return extras ? extras->xData : std::vector<korra::TypedValue>();
}

} // namespace

KdDbTransaction::KdDbTransaction() : tallied_(transactions) {}

void KdDbTransaction::hold(KdDbObject& object)
{
    const KdDbObjectId id = object.objectId();
    held_.push_back(id);
    ++id.slot()->held;
    if (std::ranges::find(before_, id, &Before::id) == before_.end())
        before_.push_back({id, korra::fieldValues(object), xDataOf(object), object.isErased()});
}

std::ptrdiff_t KdDbTransaction::holds(KdDbObjectId id) const
{
    return std::ranges::count(held_, id);
}

void KdDbTransaction::giveBack() const
{
    for (const Before& before : before_) {
        KdDbObject* object = ObjectAccess::object(before.id);
        if (!object)
            continue;
        if (korra::fieldValues(*object) != before.fields) {
            korra::FieldPlayer player(before.fields);
            ObjectAccess::describe(*object, player);
            ObjectAccess::markChanged(*object);
        }
        if (xDataOf(*object) != before.xData) {
            ObjectAccess::extras(*object).xData = before.xData;
            ObjectAccess::markChanged(*object);
        }
        ObjectAccess::setErased(*object, before.erased);
    }
}

namespace korra {

KdDbTransaction* TransactionManager::startTransaction()
{
    if (platform::gate("KdDbTransactionManager::startTransaction"))
        return nullptr;
    return running_.emplace_back(std::make_unique<KdDbTransaction>()).get();
}

Kdapi::ErrorStatus TransactionManager::getObject(KdDbObject*& object, KdDbObjectId id,
                                                 KdDb::OpenMode mode, bool openErased)
{
    object = nullptr;
    if (platform::gate("KdDbTransactionManager::getObject", id, mode))
        return Kdapi::eWasOpenForWrite;
    if (running_.empty())
        return Kdapi::eNotApplicable;
    const Kdapi::ErrorStatus status = ObjectAccess::open(object, id, mode, openErased);
    if (status == Kdapi::eOk)
        running_.back()->hold(*object);
    return status;
}

Kdapi::ErrorStatus TransactionManager::endTransaction()
{
    const bool refused = platform::gate("KdDbTransactionManager::endTransaction");
    if (running_.empty())
        return Kdapi::eNotApplicable;
    closeInnermost();
    return refused ? Kdapi::eNotOpenForRead : Kdapi::eOk;
}

Kdapi::ErrorStatus TransactionManager::abortTransaction()
{
    const bool refused = platform::gate("KdDbTransactionManager::abortTransaction");
    if (running_.empty())
        return Kdapi::eNotApplicable;
    running_.back()->giveBack();
    closeInnermost();
    return refused ? Kdapi::eNotOpenForRead : Kdapi::eOk;
}

void TransactionManager::closeInnermost()
{
    const std::unique_ptr<KdDbTransaction> ending = std::move(running_.back());
    running_.pop_back();
    for (const KdDbObjectId id : ending->held()) {
        std::ptrdiff_t heldOutside = 0;
        for (const auto& outer : running_)
            heldOutside += outer->holds(id);
        // What was closed before the end is held no more.
        KdDbObject* object = ObjectAccess::object(id);
        if (object && id.slot()->held > heldOutside)
            ObjectAccess::close(*object);
    }
}

} // namespace korra
