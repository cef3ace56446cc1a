#pragma once

#include "kd/db/ids.h"
#include "kd/ge.h"
#include "objects/object_visitor.h"

#include <limits>
#include <string>
#include <type_traits>

/// The settings that a drawing keeps: the one place that tells what they are called, how they are
/// written, what they are without a value and what they take.
namespace korra {

enum class Zero { taken, refused };

/// The numbers that a setting takes, both ends included.
struct SettingRange {
    double minimum = std::numeric_limits<double>::lowest();
    double maximum = std::numeric_limits<double>::max();
    Zero zero = Zero::taken;

    bool holds(double value) const
    {
        return value >= minimum && value <= maximum && (value != 0.0 || zero == Zero::taken);
    }
};

enum class SettingScope {
    drawing, ///< one value for all
    space,   ///< model space has one of its own, the sheets share another
};

/// A setting whose values are of a type: int, double, KdGePoint2d, KdGePoint3d or std::wstring.
template <class T>
struct Setting {
    using Default = std::conditional_t<std::is_same_v<T, std::wstring>, const wchar_t*, T>;

    const wchar_t* name; ///< capitals; in the header "$" stands before it, of sheets "$P"
    int code;            ///< group code of the value; a point has those of its coordinates
    Default byDefault{}; ///< the value of a drawing that has none
    SettingRange range{};
    SettingScope scope = SettingScope::drawing;
};

/// A setting that is a record of a table: read as its id, written as its name.
struct RecordSetting {
    Setting<std::wstring> recordName; ///< by default the record that every drawing has, or none
    TableKind table;
};

/// True for a value that a user may give a setting; what a file brings stays as it is.
bool accepts(const Setting<int>& setting, int value);
bool accepts(const Setting<double>& setting, double value);
bool accepts(const Setting<KdGePoint2d>& setting, const KdGePoint2d& value);
bool accepts(const Setting<KdGePoint3d>& setting, const KdGePoint3d& value);

namespace settings {

inline constexpr SettingRange kAny{};
inline constexpr SettingRange kAboveZero{.minimum = std::numeric_limits<double>::min()};

// What new entities are made with.
inline constexpr RecordSetting kLayer{{L"CLAYER", 8, L"0"}, TableKind::layer};
inline constexpr RecordSetting kLinetype{{L"CELTYPE", 6, L"ByLayer"}, TableKind::linetype};
inline constexpr RecordSetting kTextStyle{{L"TEXTSTYLE", 7, L"Standard"}, TableKind::textStyle};
inline constexpr RecordSetting kDimStyle{{L"DIMSTYLE", 2, L"Standard"}, TableKind::dimStyle};
inline constexpr Setting<int> kColor{L"CECOLOR", 62, 256, {0, 256}};
inline constexpr Setting<int> kLineWeight{L"CELWEIGHT", 370, KdDb::kLnWtByLayer, {-3, 211}};
inline constexpr Setting<double> kEntityLinetypeScale{L"CELTSCALE", 40, 1.0, kAboveZero};
inline constexpr Setting<double> kTextSize{L"TEXTSIZE", 40, 2.5, kAboveZero};
inline constexpr Setting<double> kThickness{L"THICKNESS", 40};
inline constexpr Setting<double> kElevation{L"ELEVATION", 40, 0.0, kAny, SettingScope::space};

// How the drawing is measured and shown.
inline constexpr Setting<int> kMeasurement{L"MEASUREMENT", 70, KdDb::kEnglish, {0, 1}};
inline constexpr Setting<int> kLengthUnits{L"LUNITS", 70, 2, {1, 5}};
inline constexpr Setting<int> kLengthPrecision{L"LUPREC", 70, 4, {0, 8}};
inline constexpr Setting<int> kAngleUnits{L"AUNITS", 70, 0, {0, 4}};
inline constexpr Setting<int> kAnglePrecision{L"AUPREC", 70, 0, {0, 8}};
inline constexpr Setting<double> kLinetypeScale{L"LTSCALE", 40, 1.0, kAboveZero};
inline constexpr Setting<int> kAttributeDisplay{L"ATTMODE", 70, 1, {0, 2}};
inline constexpr Setting<int> kFill{L"FILLMODE", 70, 1, {0, 1}};
inline constexpr Setting<int> kMirroredText{L"MIRRTEXT", 70, 0, {0, 1}};
inline constexpr Setting<int> kPointShape{L"PDMODE", 70, 0, {0, 100}};
inline constexpr Setting<double> kPointSize{L"PDSIZE", 40};

// Where the user works.
inline constexpr Setting<int> kTileMode{L"TILEMODE", 70, 1, {0, 1}};
inline constexpr Setting<int> kOrthoMode{L"ORTHOMODE", 70, 0, {0, 1}};
inline constexpr Setting<KdGePoint3d> kInsertionBase{L"INSBASE", 10, {}, kAny, SettingScope::space};
inline constexpr Setting<KdGePoint2d> kLowerLimit{L"LIMMIN", 10, {}, kAny, SettingScope::space};
inline constexpr Setting<KdGePoint2d> kUpperLimit{
    L"LIMMAX", 10, {12.0, 9.0}, kAny, SettingScope::space};
inline constexpr RecordSetting kUserSystem{{L"UCSNAME", 2, L"", kAny, SettingScope::space},
                                           TableKind::ucs};
inline constexpr Setting<KdGePoint3d> kUserOrigin{L"UCSORG", 10, {}, kAny, SettingScope::space};
inline constexpr Setting<KdGePoint3d> kUserXAxis{
    L"UCSXDIR", 10, {1.0, 0.0, 0.0}, kAny, SettingScope::space};
inline constexpr Setting<KdGePoint3d> kUserYAxis{
    L"UCSYDIR", 10, {0.0, 1.0, 0.0}, kAny, SettingScope::space};

} // namespace settings
} // namespace korra
