#pragma once

#include "kd/db/object.h"
#include "kd/own/own.h"

#include <string>
#include <vector>

/// Objects under names; a name is compared without regard to case and kept as it was given.
class KdDbDictionary : public KdDbObject {
    KDRX_DECLARE_MEMBERS(KdDbDictionary)
public:
    KdDbDictionary();
    ~KdDbDictionary() override;

    /// @return eOk and the id; eKeyNotFound, the id untouched
    Kdapi::ErrorStatus getAt(const wchar_t* name, KdDbObjectId& id) const;

    /// Adds an object under a name; the dictionary becomes its owner and the object stays open for
    /// writing. An entry of that name is replaced and its object erased.
    /// @return eOk and the id; eNotOpenForWrite, eNotInDatabase, eInvalidKey (null or empty name),
    ///         eNullObjectPointer, eAlreadyInDb: the object is then still the caller's
    Kdapi::ErrorStatus setAt(const wchar_t* name, KdDbObject* object, KdDbObjectId& id);

    /// Entries whose objects are not erased.
    int numEntries() const;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    bool isIndispensable() const override;

private:
    friend class korra::ObjectAccess;

    struct Entry {
        std::wstring name;
        KdDbObjectId id;
        friend bool operator==(const Entry&, const Entry&) = default;
    };

    std::vector<Entry> entries_;
    bool hardOwner_ = false;
    short cloning_ = 1;
};
