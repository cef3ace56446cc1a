#pragma once

#include "kd/db.h"
#include "support/drawing.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace tests {

/// An object that is open for a scope; what cannot be opened fails the test.
template <class T>
class Open {
public:
    explicit Open(KdDbObjectId id, KdDb::OpenMode mode = KdDb::kForWrite)
    {
        EXPECT_EQ(kddbOpenObject(object_, id, mode), Kdapi::eOk);
    }

    ~Open()
    {
        if (object_)
            object_->close();
    }

    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;

    T* operator->() const { return object_; }

    T& operator*() const { return *object_; }

    T* get() const { return object_; }

private:
    T* object_ = nullptr;
};

/// Erases an object that nobody has open.
inline void erase(KdDbObjectId id)
{
    EXPECT_EQ(Open<KdDbObject>(id)->erase(), Kdapi::eOk);
}

/// Adds a record with this name to a table.
template <class Table, class Record>
KdDbObjectId addRecord(const wchar_t* name, KdDbDatabase* database = drawing())
{
    auto* record = new Record;
    EXPECT_EQ(record->setName(name), Kdapi::eOk);
    Table* table = nullptr;
    EXPECT_EQ(database->getSymbolTable(table, KdDb::kForWrite), Kdapi::eOk);
    KdDbObjectId id;
    EXPECT_EQ(table->add(id, record), Kdapi::eOk);
    record->close();
    table->close();
    return id;
}

inline KdDbObjectId addLayer(const wchar_t* name, KdDbDatabase* database = drawing())
{
    return addRecord<KdDbLayerTable, KdDbLayerTableRecord>(name, database);
}

inline KdDbObjectId addTextStyle(const wchar_t* name, KdDbDatabase* database = drawing())
{
    return addRecord<KdDbTextStyleTable, KdDbTextStyleTableRecord>(name, database);
}

inline KdArray<KdDbObjectId> arrayOf(const std::vector<KdDbObjectId>& ids)
{
    KdArray<KdDbObjectId> array;
    for (const KdDbObjectId id : ids)
        array.append(id);
    return array;
}

/// Makes a coordinate system with a name and its origin at (x, 0, 0) current.
inline void useNamedUcs(double x)
{
    const auto ucs = addRecord<KdDbUCSTable, KdDbUCSTableRecord>(L"Named");
    Open<KdDbUCSTableRecord>(ucs)->setOrigin({x, 0, 0});
    KdDbObjectId viewport;
    Open<KdDbViewportTable>(drawing()->viewportTableId())->getAt(L"*ACTIVE", viewport);
    Open<KdDbViewportTableRecord>(viewport)->setUcs(ucs);
}

/// Has a function add a line; one that is refused or stays open is ended.
template <class Add>
Kdapi::ErrorStatus addLineBy(Add add)
{
    auto line = std::make_unique<KdDbLine>();
    const Kdapi::ErrorStatus status = add(line.get());
    if (line->objectId().isNull())
        return status;
    KdDbLine* const added = line.release();
    if (added->isReadEnabled() || status != Kdapi::eOk)
        added->close();
    return status;
}

struct PolylineVertex {
    double x, y, bulge = 0.0;
};

inline KdDbPolyline* newPolyline(const std::vector<PolylineVertex>& vertices)
{
    auto* const polyline = new KdDbPolyline;
    for (const auto& [x, y, bulge] : vertices)
        EXPECT_EQ(polyline->addVertexAt(polyline->numVerts(), {x, y}, bulge), Kdapi::eOk);
    return polyline;
}

/// A dimension of the current style, 40 units from (0, 0) with its line on y = 10.
inline KdDbRotatedDimension* newDimension()
{
    auto* const dimension = new KdDbRotatedDimension(0.0, {0, 0, 0}, {40, 0, 0}, {0, 10, 0});
    dimension->setDimensionStyle(drawing()->dimstyle());
    return dimension;
}

/// A window on the model, to be added to a sheet; its number is 2 or above.
inline KdDbViewport* newWindow(short number, const KdGePoint3d& center, double width, double height,
                               double viewHeight)
{
    auto* window = new KdDbViewport;
    window->setNumber(number);
    window->setCenterPoint(center);
    window->setWidth(width);
    window->setHeight(height);
    window->setViewHeight(viewHeight);
    return window;
}

} // namespace tests
