#pragma once

#include "objects/snapshot.h"

#include <unordered_map>
#include <vector>

namespace korra {

/// Objects that come one after the other mostly change so, too: they then lie side by side.
struct HashBySlot {
    std::size_t operator()(KdDbObjectId id) const noexcept { return id.slot()->index; }
};

/// What has changed since a transaction began, and how it was before.
class ChangeLog {
public:
    /// Notes what an object is before its first change.
    void noteChange(const KdDbObject& object);

    /// Notes that an object has come into its database.
    void noteAdded(KdDbObjectId id);

    /// Makes every object noted what it was; what was added is erased, and no owner has it.
    void takeBack();

    /// Hands everything over to the log of the transaction around.
    void moveInto(ChangeLog& outer);

private:
    struct Before {
        FieldValues values;
        bool erased;
        bool erasedWithOwner;
        bool changed;
    };

    std::unordered_map<KdDbObjectId, Before, HashBySlot> before_;
    std::vector<KdDbObjectId> added_;
};

/// The log of the innermost transaction that runs; null while none does.
ChangeLog* runningLog();

} // namespace korra
