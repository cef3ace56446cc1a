#pragma once

#include "kd/db.h"
#include "objects/object_visitor.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
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
    bool changed = false; ///< differs from what the file holds
    bool touched = false; ///< changed since it was opened for writing
};

/// One value of extended data.
struct TypedValue {
    short code = 0;
    /// 1070 short, 1071 int, 1040-1042 double, 1010-1013 point, 1004 bytes, else text.
    std::variant<short, std::int32_t, double, KdGePoint3d, std::string, std::wstring> value;

    friend bool operator==(const TypedValue&, const TypedValue&) = default;
};

/// What only some objects have.
struct ObjectExtras {
    KdDbObjectId extensionDictionary;
    std::vector<TypedValue> xData; ///< every application's data, each begun by its 1001
    std::string source;            ///< the object's tags as the file had them, byte for byte
    std::string fileType;          ///< name of the object type in the file, where no class has it
};

/// The host's own way into objects: past open modes, gates and access control.
class ObjectAccess {
public:
    /// A new slot for a free-standing object: it becomes database-resident, open for writing. The
    /// parts that it owns (attributes, vertices) come with it and are closed.
    /// @param handle  null or taken: the next free one
    static KdDbObjectId adopt(KdDbDatabase& database, KdDbObject* object, KdDbObjectId owner,
                              KdDbHandle handle = {}, bool open = true);

    /// Opens an object by the rules of kddbOpenObject(), past its gate.
    static Kdapi::ErrorStatus open(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                   bool openErased = false);

    /// Closes an object past its gate. @return eOk; eNotInDatabase; eNotOpenForRead
    static Kdapi::ErrorStatus close(KdDbObject& object);

    /// Ends the changes of the writer: calls changesDone() when there were any.
    static void finishChanges(KdDbObject& object);

    /// Takes an object out of the list of the free-standing ones; nothing when it is not in it.
    static void unlinkFree(KdDbObject& object);

    /// Tells that the object differs from what the file holds; for changes past beginChange().
    static void markChanged(KdDbObject& object);

    /// Erases an object, or takes it back, with all that it owns, whoever has it open.
    static void setErased(KdDbObject& object, bool erased);

    /// Objects that an object owns and that go the way it goes: attributes, vertices, the extension
    /// dictionary, entries of a dictionary.
    static std::vector<KdDbObjectId> owned(KdDbObject& object);

    /// Attributes of a reference or vertices of a polyline; empty for all others.
    static std::vector<KdDbObject*> parts(KdDbObject& object);

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

    static void describe(KdDbObject& object, ObjectVisitor& visitor) { object.describe(visitor); }

    static KdDbObject* newOfSameClass(const KdDbObject& object) { return object.newOfSameClass(); }

    static void draw(const KdDbEntity& entity, DrawSink& sink) { entity.draw(sink); }

    /// The extras, made when there are none yet; the const form may find none.
    static ObjectExtras& extras(KdDbObject& object);

    static const ObjectExtras* extras(const KdDbObject& object) { return object.extras_.get(); }

    /// Makes an extension dictionary unless there is one; the object is in a database.
    static KdDbDictionary& extensionDictionary(KdDbObject& object);

    /// Enters an object under a name, in the place of the entry that had the name; the object is in
    /// the database already.
    static void enter(KdDbDictionary& dictionary, std::wstring_view name, KdDbObjectId id);

    static void setOwner(KdDbObject& object, KdDbObjectId owner) { object.owner_ = owner; }

    static void setSlot(KdDbObject& object, ObjectSlot* slot) { object.slot_ = slot; }

    static ObjectSlot* slot(const KdDbObject& object) { return object.slot_; }

    static std::vector<KdDbObjectId>& records(KdDbSymbolTable& table) { return table.records_; }

    static const std::vector<KdDbObjectId>& records(const KdDbSymbolTable& table)
    {
        return table.records_;
    }

    static std::vector<KdDbObjectId>& entities(KdDbBlockTableRecord& block)
    {
        return block.entities_;
    }

    static KdDbObjectId& layout(KdDbBlockTableRecord& block) { return block.layout_; }

    static KdDbObjectId& block(KdDbSortentsTable& table) { return table.block_; }

    static std::vector<KdDbObjectId> drawOrder(const KdDbSortentsTable& table);

    static KdDbObjectId& block(KdDbLayout& layout) { return layout.block_; }

    static int& tabOrder(KdDbLayout& layout) { return layout.tabOrder_; }

    static std::wstring& name(KdDbSymbolTableRecord& record) { return record.name_; }

    static std::vector<KdDbVertex*>& vertices(KdDbVertexCurve& curve) { return curve.vertices_; }

    static int columns(const KdDbBlockReference& reference) { return reference.columns(); }

    static int rows(const KdDbBlockReference& reference) { return reference.rows(); }

    static std::vector<KdDbAttribute*>& attributes(KdDbBlockReference& reference)
    {
        return reference.attributes_;
    }

    static KdDbObjectId& dimBlock(KdDbDimension& dimension) { return dimension.block_; }

    static short& dimKind(KdDbDimension& dimension) { return dimension.kind_; }

    static void setThreePoint(KdDbAngularDimension& dimension, bool threePoint)
    {
        dimension.threePoint_ = threePoint;
    }

    static std::vector<KdDbDimensionValue>& values(KdDbDimStyleTableRecord& style)
    {
        return style.values_;
    }

    static std::wstring& fontFile(KdDbTextStyleTableRecord& style) { return style.fileName_; }

    static KdDbObjectId& namedUcs(KdDbViewportTableRecord& viewport) { return viewport.ucs_; }

    static std::vector<KdDbDictionary::Entry>& entries(KdDbDictionary& dictionary)
    {
        return dictionary.entries_;
    }

    static int edgeCount(const KdDbEntity& entity) { return entity.edgeCount(); }

    static KdDbEntity* newEdge(const KdDbEntity& entity, int marker)
    {
        return entity.newEdge(marker);
    }
};

/// An entity or object of a kind that no class stands for: kept and written back as it is.
class UnknownEntity : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(UnknownEntity)
public:
    UnknownEntity() = default;

protected:
    KdDbObject* newOfSameClass() const override { return new UnknownEntity; }

    void draw(DrawSink&) const override {}
};

class UnknownObject : public KdDbObject {
    KDRX_DECLARE_MEMBERS(UnknownObject)
public:
    UnknownObject() = default;

protected:
    KdDbObject* newOfSameClass() const override { return new UnknownObject; }
};

} // namespace korra

/// An id in the trace: the handle, hexadecimal.
std::string traceForm(KdDbObjectId id);
