#pragma once

#include "kd/db/color.h"
#include "kd/db/ids.h"
#include "kd/ge.h"

#include <string>
#include <type_traits>
#include <vector>

namespace korra {

/// The symbol tables whose records other objects name in files.
enum class TableKind { block, dimStyle, layer, linetype, regApp, textStyle, ucs, viewport };
inline constexpr int kTableKinds = 8;

/// Meets every stored field of an object once, with the group code that names it in files.
///
/// Reading, writing, copying and comparing are visitors over KdDbObject::describe(). A field that
/// has a default may be missing in a file: it is written when it differs, and reading its absence
/// gives the default. A field without one is always written, and reading its absence leaves it.
class ObjectVisitor {
public:
    virtual ~ObjectVisitor() = default;

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

    /// The record of a table, in files by its name. Absent: left as it is.
    virtual void name(int code, KdDbObjectId& value, TableKind table) = 0;

    /// An object, in files by its handle; written only when it is not null.
    virtual void handle(int code, KdDbObjectId& value) = 0;
    virtual void handle(int code, KdDbHandle& value) = 0;

    /// Written unless it is by layer. Red, green and blue stand under 420 behind the index.
    virtual void color(int code, KdCmColor& value) = 0;

    /// The same of a layer: always written, its index negative while the layer is off.
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

    /// In files: what follows stands behind the `count`-th subclass marker, where there are any.
    virtual void behindMarker(int count) = 0;

protected:
    virtual void wholeNumber(int code, long long& value) = 0;
    virtual void wholeNumber(int code, long long& value, long long byDefault) = 0;

    /// @param count  elements there are; what is returned is how many there shall be
    virtual std::size_t beginList(int leadCode, std::size_t count) = 0;
    virtual void beginElement() = 0;
    virtual void endList() = 0;
};

/// A vector that is always written, and left as it is when it is absent.
inline void storedVector(ObjectVisitor& visitor, int code, KdGeVector3d& value)
{
    KdGePoint3d point = KdGePoint3d::kOrigin + value;
    visitor.point(code, point);
    value = point.asVector();
}

} // namespace korra
