#pragma once

#include "kd/db/color.h"
#include "kd/db/ids.h"
#include "kd/ge.h"
#include "kd/own/owned_objects.h"

#include <string>
#include <type_traits>
#include <vector>

namespace korra {

struct TypedValue;

/// The symbol tables whose records other objects name in files.
enum class TableKind { block, dimStyle, layer, linetype, regApp, textStyle, ucs, viewport };
inline constexpr int kTableKinds = 8;

/// What naming another object means.
enum class Reference {
    soft,      ///< each lives without the other
    hard,      ///< the other one is needed
    softOwner, ///< the other one is owned, where it says so itself
    hardOwner
};

/// Meets once everything that an object consists of: its stored fields with the group codes that
/// name them in files, its references to other objects, and the objects that it owns.
///
/// Reading, writing, copying, comparing, erasing, the check of what it refers to and the
/// translation into another database are visitors over KdDbObject::describe(). A field that has a
/// default may be missing in a file: it is written when it differs, and reading its absence gives
/// the default. A field without one is always written, and reading its absence leaves it.
class ObjectVisitor {
public:
    virtual ~ObjectVisitor() = default;

    // Fields.

    virtual void real(int code, double& value) = 0;
    virtual void real(int code, double& value, double byDefault) = 0;

    /// Radians in memory, degrees in files.
    virtual void angle(int code, double& value) = 0;
    virtual void angle(int code, double& value, double byDefault) = 0;

    virtual void text(int code, std::wstring& value) = 0;
    virtual void text(int code, std::wstring& value, const wchar_t* byDefault) = 0;

    /// A text of any length: pieces of 250 characters under `pieceCode`, the rest under `code`.
    virtual void longText(int code, int pieceCode, std::wstring& value) = 0;

    /// Three coordinates, under `code`, `code` + 10 and `code` + 20.
    virtual void point(int code, KdGePoint3d& value) = 0;
    virtual void point(int code, KdGePoint3d& value, const KdGePoint3d& byDefault) = 0;
    virtual void vector(int code, KdGeVector3d& value, const KdGeVector3d& byDefault) = 0;
    virtual void point(int code, KdGePoint2d& value) = 0;

    /// A handle that names no object of its own accord, such as one to sort by.
    virtual void handle(int code, KdDbHandle& value) = 0;

    /// Written unless it is by layer. Red, green and blue stand under 420 behind the index.
    virtual void color(int code, KdCmColor& value) = 0;

    /// The colour of a layer: always written, its index negative while the layer is off.
    virtual void layerColor(int code, KdCmColor& value, bool& off) = 0;

    /// Any integer, flag or enumeration.
    template <class T>
    void integer(int code, T& value)
    {
        long long wide = static_cast<long long>(value);
        wholeNumber(code, wide);
        value = static_cast<T>(wide);
    }

    template <class T>
    void integer(int code, T& value, std::type_identity_t<T> byDefault)
    {
        long long wide = static_cast<long long>(value);
        wholeNumber(code, wide, static_cast<long long>(byDefault));
        value = static_cast<T>(wide);
    }

    /// A list of like elements; in files each begins with a tag of `leadCode`.
    /// @param element  called with the visitor and one element
    template <class T, class Element>
    void list(int leadCode, std::vector<T>& items, Element element)
    {
        items.resize(beginList(leadCode, items.size()));
        for (T& item : items) {
            beginElement();
            element(*this, item);
        }
        endList();
    }

    /// A number that follows from the others, such as the length of a list: written, never read.
    virtual void derived(int code, long long value) = 0;

    /// In files: what follows stands behind the `count`-th class marker, where there are any.
    /// @param stem  the marker without what a drawing's markers begin with
    virtual void behindMarker(int count, const char* stem) = 0;

    /// The data that applications have hung on the object.
    virtual void extendedData(std::vector<TypedValue>& values) = 0;

    /// What files have no place for: whose graphics they are, how far they have moved since.
    virtual void unsaved(bool& value) = 0;
    virtual void unsaved(KdGeMatrix3d& value) = 0;

    /// The object's tags as a file had them.
    virtual void source(std::string_view& tags) = 0;

    // References.

    /// The record of a table, in files by its name. Absent: left as it is.
    virtual void name(int code, KdDbObjectId& value, TableKind table,
                      Reference meaning = Reference::hard) = 0;

    /// An object, in files by its handle; written only when it is not null.
    /// @param kind  the class that it has to be of; null: any
    virtual void reference(int code, KdDbObjectId& value, Reference meaning,
                           const KdRxClass* kind) = 0;

    /// The object that owns this one.
    virtual void owner(KdDbObjectId& value) = 0;

    // What it owns beside the entries that it refers to.

    virtual void extensionDictionary(KdDbObjectId& value) = 0;
    virtual void owned(OwnedObjects& objects) = 0;

protected:
    virtual void wholeNumber(int code, long long& value) = 0;
    virtual void wholeNumber(int code, long long& value, long long byDefault) = 0;

    /// @param count  elements there are; what is returned is how many there shall be
    virtual std::size_t beginList(int leadCode, std::size_t count) = 0;
    virtual void beginElement() = 0;
    virtual void endList() = 0;
};

/// A visitor that passes everything by: a base for those that look at a part.
class PassingVisitor : public ObjectVisitor {
public:
    void real(int, double&) override {}

    void real(int, double&, double) override {}

    void angle(int, double&) override {}

    void angle(int, double&, double) override {}

    void text(int, std::wstring&) override {}

    void text(int, std::wstring&, const wchar_t*) override {}

    void longText(int, int, std::wstring&) override {}

    void point(int, KdGePoint3d&) override {}

    void point(int, KdGePoint3d&, const KdGePoint3d&) override {}

    void vector(int, KdGeVector3d&, const KdGeVector3d&) override {}

    void point(int, KdGePoint2d&) override {}

    void handle(int, KdDbHandle&) override {}

    void color(int, KdCmColor&) override {}

    void layerColor(int, KdCmColor&, bool&) override {}

    void derived(int, long long) override {}

    void behindMarker(int, const char*) override {}

    void extendedData(std::vector<TypedValue>&) override {}

    void unsaved(bool&) override {}

    void unsaved(KdGeMatrix3d&) override {}

    void source(std::string_view&) override {}

    void name(int, KdDbObjectId&, TableKind, Reference) override {}

    void reference(int, KdDbObjectId&, Reference, const KdRxClass*) override {}

    void owner(KdDbObjectId&) override {}

    void extensionDictionary(KdDbObjectId&) override {}

    void owned(OwnedObjects&) override {}

protected:
    void wholeNumber(int, long long&) override {}

    void wholeNumber(int, long long&, long long) override {}

    std::size_t beginList(int, std::size_t count) override { return count; }

    void beginElement() override {}

    void endList() override {}
};

/// A vector that is always written, and left as it is when it is absent.
inline void storedVector(ObjectVisitor& visitor, int code, KdGeVector3d& value)
{
    KdGePoint3d point = KdGePoint3d::kOrigin + value;
    visitor.point(code, point);
    value = point.asVector();
}

} // namespace korra
