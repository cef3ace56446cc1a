#pragma once

#include "kd/rx.h"
#include "objects/object_visitor.h"

#include <optional>
#include <string_view>

namespace korra {

/// One kind of object: what files call it, its class, and how one is made.
struct Kind {
    /// Where objects of the kind stand in a file.
    enum class Place { entity, object, table, record };

    std::string_view fileName; ///< of a table and of its records the same
    Place place;
    KdRxClass* (*description)();
    KdDbObject* (*make)();

    /// Of kinds that share a name: whether these flags (group 70) are of this one. Null: always.
    bool (*fits)(long long flags) = nullptr;

    /// What comes from a file is kept as it is there.
    bool isKept = false;
};

/// The kind of an object by its class; null for one that is kept as its file has it.
const Kind* kindOf(const KdDbObject& object);

/// The kind of an entity, or of an object in the objects section, that a file calls so; null when
/// no class stands for it.
const Kind* kindNamed(Kind::Place place, std::string_view fileName, long long flags);

/// The kinds of a table and of its records.
const Kind& kindOfTable(TableKind table);
const Kind& kindOfRecords(TableKind table);

/// Who names a record.
enum class NamedBy { layer, other };

/// Name of the record of a table that stands for a missing one; null where nothing does.
const wchar_t* standardName(TableKind table, NamedBy by);

/// Which table an object is, or a file calls so; nullopt for none.
std::optional<TableKind> tableKindOf(const KdDbObject& table);
std::optional<TableKind> tableKindNamed(std::string_view fileName);

} // namespace korra
