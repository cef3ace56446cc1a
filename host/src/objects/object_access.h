#pragma once

#include "kd/db.h"
#include "kd/own/sound_variant.h"
#include "objects/object_visitor.h"
#include "objects/trace_forms.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korra {

class DrawSink;

/// The place of an object in its database; ids point here. A slot lives until the host stops.
struct ObjectSlot {
    KdDbDatabase* database = nullptr; ///< null once the database is deleted
    KdDbObject* object = nullptr;
    KdDbHandle handle;
    std::uint32_t index = 0; ///< of all slots of the host; entity names carry it
    std::uint16_t readers = 0;
    std::uint16_t held = 0; ///< openings that transactions hold
    bool writing = false;
    bool erased = false;
    bool erasedWithOwner = false; ///< comes back when the owner does
    bool changed = false;         ///< differs from what the file holds
    bool touched = false;         ///< changed since it was opened for writing
    bool numbered = false;        ///< its tags in the file have the handle
};

/// One value of extended data.
struct TypedValue {
    short code = 0;
    /// 1070 short, 1071 int, 1040-1042 double, 1010-1013 point, 1004 bytes, else text.
    SoundVariant<short, std::int32_t, double, KdGePoint3d, std::string, std::wstring> value;

    friend bool operator==(const TypedValue&, const TypedValue&) = default;
};

/// Whether an object is left open for writing.
enum class Opening { closed, forWrite };

/// What only some objects have.
struct ObjectExtras {
    KdDbObjectId extensionDictionary;
    std::vector<TypedValue> xData; ///< every application's data, each begun by its 1001
    std::string_view fileType;     ///< of what is kept as its file has it; in the file's text
};

/// The host's own way into objects: past open modes, gates and access control.
class ObjectAccess {
public:
    /// Takes a free-standing object with its parts into a database. It has no owner; its parts are
    /// closed.
    /// @param handle  null or taken: the next free one
    static KdDbObjectId adopt(KdDbDatabase& database, KdDbObject* object, KdDbHandle handle = {});

    /// Takes an object into the database of another one, which owns it.
    static KdDbObjectId own(KdDbObject& owner, KdDbObject* object,
                            Opening opening = Opening::closed);

    /// Takes an object over, last in the owner's list of what is part of it.
    static KdDbObjectId append(KdDbObject& owner, KdDbObject* object,
                               Opening opening = Opening::closed);

    /// Gives an entity a part that is an object of its own; in a database it stays open for
    /// writing.
    /// @return eOk and the id, null where the entity is free-standing; the statuses of canOwn() but
    ///         eNotInDatabase; eNotOpenForWrite: the part is then still the caller's
    static Kdapi::ErrorStatus appendPart(KdDbEntity& entity, KdDbEntity* part, KdDbObjectId& id);

    /// Whether an object can become another one's in its database.
    /// @return eOk; eNullObjectPointer, eAlreadyInDb; eNotInDatabase for a free-standing owner;
    ///         eWrongDatabase, eNotThatKindOfClass where it refers to what it cannot
    static Kdapi::ErrorStatus canOwn(const KdDbObject& owner, const KdDbObject* object);

    /// Opens an object by the rules of kddbOpenObject(), past its gate.
    static Kdapi::ErrorStatus open(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                   bool openErased = false);

    /// Closes an object past its gate. @return eOk; eNotInDatabase; eNotOpenForRead
    static Kdapi::ErrorStatus close(KdDbObject& object);

    /// Ends the changes of the writer: calls changesDone() when there were any.
    static void finishChanges(KdDbObject& object);

    /// Takes an object out of the list of the free-standing ones; nothing when it is not in it.
    static void unlinkFree(KdDbObject& object);

    /// Every change of an object in a database begins here: it differs from its file from now on,
    /// and transactions note what it was.
    static void willChange(KdDbObject& object);

    /// As willChange(), of what a file does not say of the object, such as its list of parts.
    static void noteChange(KdDbObject& object);

    /// Tells an object that it has changed, and leaves a note of that with its drawing for others
    /// who keep what follows from it.
    static void announce(const KdDbObject& object) noexcept;

    /// Erases an object with all that it owns, or brings it back with what was erased with it,
    /// whoever has it open; nothing when it is so already.
    static void erase(KdDbObject& object);
    static void bringBack(KdDbObject& object);

    /// The list of what an object owns as part of itself; null for one that has none.
    static OwnedObjects* owned(KdDbObject& object);

    static const OwnedObjects* owned(const KdDbObject& object)
    {
        return owned(const_cast<KdDbObject&>(object)); // looking at it does not change it
    }

    /// True for a copy of another object.
    static bool isCopy(const KdDbObject& object) { return object.isCopy_; }

    static void markCopy(KdDbObject& object) { object.isCopy_ = true; }

    /// Classes of the free-standing objects that live now.
    static std::vector<const KdRxClass*> freeStandingClasses();

    /// Leaves the free-standing objects that live now out of the later lists.
    static void forgetFreeStanding();

    static KdDbObject* object(KdDbObjectId id) { return id.slot() ? id.slot()->object : nullptr; }

    /// The object when it is of the class and not erased; else null. Nothing is opened.
    template <class T>
    static T* live(KdDbObjectId id)
    {
        return id.isNull() || id.isErased() ? nullptr : T::cast(object(id));
    }

    /// The extras, made when there are none yet; the const form may find none.
    static ObjectExtras& extras(KdDbObject& object);

    static const ObjectExtras* extras(const KdDbObject& object) { return object.extras_.get(); }

    /// The object's tags as its file had them, byte for byte, in the file's text.
    static std::string_view source(const KdDbObject& object) { return object.source_; }

    static void setSource(KdDbObject& object, std::string_view tags) { object.source_ = tags; }

    /// Makes an extension dictionary unless there is one; the object is in a database.
    static KdDbDictionary& extensionDictionary(KdDbObject& object);

    /// Enters an object under a name, in the place of the entry that had the name, whose object is
    /// erased. A free-standing object comes into the database and is the dictionary's own.
    static void enter(KdDbDictionary& dictionary, std::wstring_view name, KdDbObject& object,
                      Opening opening = Opening::closed);

    static void setOwner(KdDbObject& object, KdDbObjectId owner) { object.owner_ = owner; }

    static ObjectSlot* slot(const KdDbObject& object) { return object.slot_; }

    static const Owned<KdDbSymbolTableRecord>& records(const KdDbSymbolTable& table)
    {
        return table.records_;
    }

    static const Owned<KdDbEntity>& entities(const KdDbBlockTableRecord& block)
    {
        return block.entities_;
    }

    static KdDbObjectId& layout(KdDbBlockTableRecord& block) { return block.layout_; }

    static KdDbObjectId& block(KdDbLayout& layout) { return layout.block_; }

    static int& tabOrder(KdDbLayout& layout) { return layout.tabOrder_; }

    static void setName(KdDbSymbolTableRecord& record, std::wstring name);

    /// Has the records of a table, or a record with another name, found as they are now.
    static void namesMayDiffer(const KdDbObject& object);

    static std::vector<KdDbDimensionValue>& values(KdDbDimStyleTableRecord& style)
    {
        return style.values_;
    }

    static std::wstring& fontFile(KdDbTextStyleTableRecord& style) { return style.fileName_; }

    static std::vector<KdDbDictionary::Entry>& entries(KdDbDictionary& dictionary)
    {
        return dictionary.entries_;
    }
};

/// An entity or object of a kind that no class stands for: kept and written back as it is.
class UnknownEntity : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(UnknownEntity)
public:
    UnknownEntity() = default;

protected:
    void draw(DrawSink&) const override {}
};

class UnknownObject : public KdDbObject {
    KDRX_DECLARE_MEMBERS(UnknownObject)
public:
    UnknownObject() = default;
};

} // namespace korra
