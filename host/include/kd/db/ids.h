#pragma once

#include "kd/own/own.h"
#include "kd/resbuf.h"
#include "kd/status.h"

#include <compare>
#include <cstdint>
#include <functional>

class KdDbDatabase;
class KdRxClass;

/// The number that names an object inside its drawing, also in files; zero names none.
class KdDbHandle {
public:
    constexpr KdDbHandle() = default;

    constexpr explicit KdDbHandle(std::uint64_t value) : value_(value) {}

    constexpr bool isNull() const { return value_ == 0; }

    constexpr std::uint64_t value() const { return value_; }

    friend constexpr auto operator<=>(KdDbHandle, KdDbHandle) = default;

private:
    std::uint64_t value_ = 0;
};

/// A stable name of a database object; cheap to copy; null names no object.
///
/// An id stays comparable after its object was erased and after its database was deleted; only
/// isValid() changes then.
class KdDbObjectId {
public:
    constexpr KdDbObjectId() = default;

    bool isNull() const { return slot_ == nullptr; }

    void setNull() { slot_ = nullptr; }

    /// True for an id whose database lives.
    bool isValid() const;

    /// True for an object that is erased; also when its database is gone. False for null.
    bool isErased() const;

    /// The database of the object; null for a null id.
    KdDbDatabase* database() const;

    /// The object's handle; the null handle for a null id.
    KdDbHandle handle() const;

    /// The runtime class of the object; null when there is none.
    KdRxClass* objectClass() const;

    friend bool operator==(KdDbObjectId, KdDbObjectId) = default;

    friend auto operator<=>(KdDbObjectId left, KdDbObjectId right)
    {
        return std::compare_three_way()(left.slot_, right.slot_);
    }

    KORRA_OWN()

    constexpr explicit KdDbObjectId(korra::ObjectSlot* slot) : slot_(slot) {}

    korra::ObjectSlot* slot() const { return slot_; }

private:
    friend struct std::hash<KdDbObjectId>;

    korra::ObjectSlot* slot_ = nullptr;
};

template <>
struct std::hash<KdDbObjectId> {
    std::size_t operator()(KdDbObjectId id) const noexcept
    {
        return std::hash<const void*>()(id.slot_);
    }
};

namespace KdDb {
/// How an object is opened: many readers or one writer.
enum OpenMode : int { kForRead = 0, kForWrite = 1 };

/// Line weights in hundredths of a millimetre, and the three special values.
enum LineWeight : int { kLnWtByLwDefault = -3, kLnWtByBlock = -2, kLnWtByLayer = -1, kLnWt000 = 0 };

enum MeasurementValue : int { kEnglish = 0, kMetric = 1 };

enum Visibility : int { kVisible = 0, kInvisible = 1 };

enum SubentType : int { kNullSubentType = 0, kFaceSubentType = 1, kEdgeSubentType = 2 };

/// How an entity lies: in no plane, in one, in every plane through its line.
enum Planarity : int { kNonPlanar = 0, kPlanar = 1, kLinear = 2 };

/// What of two entities an intersection counts: both as they are.
enum Intersect : int { kOnBothOperands = 0 };
} // namespace KdDb

/// The id of an entity name.
/// @return eOk and the id; eInvalidInput, the id untouched, for a name that names no object
Kdapi::ErrorStatus kddbGetObjectId(KdDbObjectId& id, const kds_name name);

/// The entity name of an id.
/// @return eOk and the name; eNullObjectId, the name untouched, for a null id
Kdapi::ErrorStatus kddbGetKdsName(kds_name name, KdDbObjectId id);
