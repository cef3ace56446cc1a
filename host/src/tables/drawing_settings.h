#pragma once

#include "kd/db/database.h"
#include "tables/settings.h"

#include <string>

namespace korra {

/// The settings of a drawing by their types, read from and written to its header.
///
/// A setting that each space has for itself is that of the current space. Writing a value that is
/// there already leaves its text as the file has it.
class DrawingSettings {
public:
    explicit DrawingSettings(const KdDbDatabase& database);

    /// The value; the default where the drawing has none, or none that reads as one.
    int get(const Setting<int>& setting) const;
    double get(const Setting<double>& setting) const;
    KdGePoint2d get(const Setting<KdGePoint2d>& setting) const;
    KdGePoint3d get(const Setting<KdGePoint3d>& setting) const;
    std::wstring get(const Setting<std::wstring>& setting) const;

    /// The record that the drawing names; where there is none of that name, the one that every
    /// drawing has. Null without either.
    KdDbObjectId get(const RecordSetting& setting) const;

    /// Takes any value: see accepts().
    void set(const Setting<int>& setting, int value);
    void set(const Setting<double>& setting, double value);
    void set(const Setting<KdGePoint2d>& setting, const KdGePoint2d& value);
    void set(const Setting<KdGePoint3d>& setting, const KdGePoint3d& value);
    void set(const Setting<std::wstring>& setting, const std::wstring& value);

    /// @param record  of the setting's table in this drawing; null where it is none by default
    /// @return eOk; eNullObjectId, eWasErased, eNotThatKindOfClass or eWrongDatabase, nothing
    ///         changed
    Kdapi::ErrorStatus set(const RecordSetting& setting, KdDbObjectId record);

private:
    template <class T>
    std::string headerName(const Setting<T>& setting) const;

    DatabaseContents& contents_;
};

/// True while the sheet of a layout is worked on: no model tab, no floating viewport entered.
bool isSheetCurrent(const KdDbDatabase& database);

} // namespace korra
