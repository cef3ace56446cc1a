#pragma once

#include "kd/db/ids.h"
#include "kd/own/own.h"
#include "kd/own/owned_objects.h"
#include "kd/rx.h"

#include <memory>
#include <string_view>

class KdDbDatabase;

/// Root of everything that can live in a drawing.
///
/// A new object is free-standing: always writable and deleted with `delete`. Added to a database it
/// belongs to it, is reached by opening its id, and must be closed as often as it was opened.
class KdDbObject : public KdRxObject {
    KDRX_DECLARE_MEMBERS(KdDbObject)
public:
    ~KdDbObject() override;

    /// Null while the object is in no database.
    KdDbObjectId objectId() const;

    KdDbObjectId ownerId() const { return owner_; }

    /// Null while the object is in no database.
    KdDbDatabase* database() const;

    bool isErased() const;

    /// A free-standing object can always be read and written.
    bool isReadEnabled() const;
    bool isWriteEnabled() const;

    /// Ends one opening. The object is released also when a failure is returned.
    /// @return eOk; eNotInDatabase for a free-standing object; eNotOpenForRead when it is not open
    Kdapi::ErrorStatus close();

    /// Changes the only reader into the writer.
    /// @return eOk (also when it is the writer already, or free-standing); eWasOpenForRead with
    /// other
    ///         readers about; eNotOpenForRead when it is not open
    Kdapi::ErrorStatus upgradeOpen();

    /// Changes the writer into a reader. @return eOk; eNotOpenForWrite when it is not the writer
    Kdapi::ErrorStatus downgradeOpen();

    /// Erases the object, or takes the erasing back; it must be open for writing.
    /// What the object owns (attributes, vertices, its extension dictionary, a dictionary's
    /// entries) is erased and comes back with it.
    /// @return eOk; eWasErased, eWasNotErased; eNotOpenForWrite; eNotInDatabase; eObjectInUse for
    ///         what the drawing cannot do without
    Kdapi::ErrorStatus erase(bool erasing = true);

    /// The dictionary of data that others hang on the object; null when there is none.
    KdDbObjectId extensionDictionary() const;

    /// Gives the object an extension dictionary unless it has one; it must be open for writing.
    /// @return eOk; eNotOpenForWrite; eNotInDatabase
    Kdapi::ErrorStatus createExtensionDictionary();

    /// A copy of the extended data of one application, its name (1001) first; of all of them for
    /// null. The caller owns the list; null when there is none.
    resbuf* xData(const wchar_t* applicationName = nullptr) const;

    /// Replaces the data of every application that the list names (1001 nodes, each followed by its
    /// values); an application with no values loses its data.
    /// @return eOk; eNotOpenForWrite; eRegappIdNotFound for a name that is not registered;
    ///         eInvalidInput for a list that does not begin with 1001 or holds other types
    Kdapi::ErrorStatus setXData(const resbuf* list);

    /// Takes the fields and the extended data of another object of the same class; ids, owner,
    /// extension dictionary and the attributes or vertices that it owns stay. Layers, linetypes and
    /// styles of another drawing are found by name, as when a copy is added to a drawing.
    /// @return eOk; eNullObjectPointer; eNotThatKindOfClass; eWrongDatabase; eNotOpenForWrite
    Kdapi::ErrorStatus copyFrom(const KdRxObject* source) override;

    /// A free-standing copy of the object with its extended data and with the attributes or
    /// vertices that it owns; null for abstract classes and for kinds that the host does not know.
    ///
    /// Added to another drawing the copy has that drawing's layer, linetype and styles of the same
    /// names, else its standard ones.
    KdRxObject* clone() const override;

protected:
    KdDbObject();
    KdDbObject(const KdDbObject&) = delete;
    KdDbObject& operator=(const KdDbObject&) = delete;

    KORRA_OWN()
    /// Shows a visitor all that the object consists of: fields, references, what it owns.
    virtual void describe(korra::ObjectVisitor& visitor);

    /// True for what the drawing cannot do without: it is never erased.
    virtual bool isIndispensable() const { return false; }

    /// Called before the writer is closed or downgraded, when the object was changed.
    virtual void changesDone() {}

    /// Called with each change of what the object consists of, by setters before it is made: what
    /// was worked out from it may not hold any more.
    virtual void contentsMayDiffer() const noexcept {}

    /// Every change begins here: eNotOpenForWrite unless the object can be written.
    Kdapi::ErrorStatus beginChange();

    /// Changes one field. @param operation  the setter, as the gate names it
    /// @return eOk; eNotOpenForWrite
    template <class Field, class Value>
    Kdapi::ErrorStatus set(const char* operation, Field& field, const Value& value);

    /// Changes one field to a value that it may have. @return eOk; `refusal`; eNotOpenForWrite
    template <class Field, class Value>
    Kdapi::ErrorStatus setIf(const char* operation, bool isValid, Field& field, const Value& value,
                             Kdapi::ErrorStatus refusal = Kdapi::eInvalidInput);

    /// Changes a reference to an object that is needed; what is in a database refers to nothing but
    /// what is in it.
    /// @param operation  the setter, as the gate names it
    /// @param kind  the class that the other object has to be of
    /// @return eOk; eNullObjectId; eWrongDatabase, eNotThatKindOfClass; eNotOpenForWrite
    Kdapi::ErrorStatus setReference(const char* operation, KdDbObjectId& field, KdDbObjectId value,
                                    const KdRxClass* kind);

private:
    friend class korra::ObjectAccess;

    korra::ObjectSlot* slot_ = nullptr;
    KdDbObjectId owner_;
    std::string_view source_;
    std::unique_ptr<korra::ObjectExtras> extras_;
    bool isCopy_ = false;
    KdDbObject* previousFree_ = nullptr; ///< neighbours among the free-standing objects
    KdDbObject* nextFree_ = nullptr;
};

/// Opens an object.
/// @param openErased  true opens an erased object as well
/// @return eOk and the object; eNullObjectId, eNullDatabase (the database is gone), eWasErased,
///         eWasOpenForRead, eWasOpenForWrite; the pointer is null on every failure
Kdapi::ErrorStatus kddbOpenObject(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                  bool openErased = false);

/// Opens an object that must be of the class `description`, or derived from it.
/// @return as for any object; eNotThatKindOfClass for another class, which is left closed
Kdapi::ErrorStatus kddbOpenObject(KdDbObject*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                  KdRxClass* description, bool openErased = false);

/// Opens an object of the class that the pointer points to.
template <class T>
Kdapi::ErrorStatus kddbOpenObject(T*& object, KdDbObjectId id, KdDb::OpenMode mode,
                                  bool openErased = false)
{
    KdDbObject* opened = nullptr;
    const Kdapi::ErrorStatus status = kddbOpenObject(opened, id, mode, T::desc(), openErased);
    object = static_cast<T*>(opened);
    return status;
}
