#include "ed/setting_variables.h"

#include "ed/editor.h"
#include "kd/resbuf.h"
#include "objects/contents.h"
#include "tables/dimension_variables.h"
#include "tables/drawing_settings.h"

namespace korra::ed {
namespace {

enum class Writing { allowed, refused };

/// How a variable shows the values of a setting: its type, and the value both ways.
template <class T>
struct Shown;

template <>
struct Shown<int> {
    static constexpr short kType = RTSHORT;

    static VariableValue of(int value) { return static_cast<short>(value); }

    static int from(const VariableValue& value) { return std::get<short>(value); }
};

template <>
struct Shown<double> {
    static constexpr short kType = RTREAL;

    static VariableValue of(double value) { return value; }

    static double from(const VariableValue& value) { return std::get<double>(value); }
};

template <>
struct Shown<KdGePoint2d> {
    static constexpr short kType = RTPOINT;

    static VariableValue of(const KdGePoint2d& value) { return KdGePoint3d(value.x, value.y, 0.0); }

    static KdGePoint2d from(const VariableValue& value)
    {
        const auto& point = std::get<KdGePoint3d>(value);
        return {point.x, point.y};
    }
};

template <>
struct Shown<KdGePoint3d> {
    static constexpr short kType = RT3DPOINT;

    static VariableValue of(const KdGePoint3d& value) { return value; }

    static KdGePoint3d from(const VariableValue& value) { return std::get<KdGePoint3d>(value); }
};

SystemVariable ofHost(const Setting<int>& setting)
{
    return {setting.name, RTSHORT,
            [=]() -> std::optional<VariableValue> {
                return Shown<int>::of(editor().hostSettings.get(setting));
            },
            [=](const VariableValue& value) {
                const int number = Shown<int>::from(value);
                if (!accepts(setting, number))
                    return false;
                editor().hostSettings.set(setting, number);
                return true;
            }};
}

template <class T>
SystemVariable ofDrawing(const Setting<T>& setting)
{
    return {setting.name, Shown<T>::kType,
            [=]() -> std::optional<VariableValue> {
                const KdDbDatabase* const database = currentDatabase();
                if (!database)
                    return std::nullopt;
                return Shown<T>::of(DrawingSettings(*database).get(setting));
            },
            [=](const VariableValue& value) {
                KdDbDatabase* const database = currentDatabase();
                const T given = Shown<T>::from(value);
                if (!database || !accepts(setting, given))
                    return false;
                DrawingSettings(*database).set(setting, given);
                return true;
            }};
}

SystemVariable ofDrawing(const RecordSetting& setting, Writing writing = Writing::allowed)
{
    SystemVariable variable{setting.recordName.name, RTSTR, nullptr, nullptr};
    variable.read = [=]() -> std::optional<VariableValue> {
        const KdDbDatabase* const database = currentDatabase();
        if (!database)
            return std::nullopt;
        const KdDbObjectId id = DrawingSettings(*database).get(setting);
        const auto* const record = ObjectAccess::live<KdDbSymbolTableRecord>(id);
        return record ? std::wstring(record->name()) : std::wstring();
    };
    if (writing == Writing::allowed) {
        variable.write = [=](const VariableValue& name) {
            KdDbDatabase* const database = currentDatabase();
            if (!database)
                return false;
            const KdDbObjectId record =
                database->contents().record(setting.table, std::get<std::wstring>(name));
            return DrawingSettings(*database).set(setting, record) == Kdapi::eOk;
        };
    }
    return variable;
}

/// The current values of the dimension variables that are numbers.
void addNumericDimensionVariables(std::vector<SystemVariable>& variables)
{
    for (const DimensionVariable& dimension : dimensionVariables()) {
        const DimensionSetting setting = settingOf(dimension);
        if (const auto* const whole = std::get_if<Setting<int>>(&setting))
            variables.push_back(ofDrawing(*whole));
        else if (const auto* const real = std::get_if<Setting<double>>(&setting))
            variables.push_back(ofDrawing(*real));
    }
}

} // namespace

std::vector<SystemVariable> settingVariables()
{
    std::vector<SystemVariable> variables = {
        ofHost(host_settings::kAperture),
        ofHost(host_settings::kCommandEcho),
        ofHost(host_settings::kFileDialogs),
        ofHost(host_settings::kGripSize),
        ofHost(host_settings::kDefaultLineWeight),
        ofHost(host_settings::kSnapModes),
        ofHost(host_settings::kPickBox),
        ofDrawing(settings::kAttributeDisplay),
        ofDrawing(settings::kAngleUnits),
        ofDrawing(settings::kAnglePrecision),
        ofDrawing(settings::kEntityLinetypeScale),
        ofDrawing(settings::kLineWeight),
        ofDrawing(settings::kElevation),
        ofDrawing(settings::kFill),
        ofDrawing(settings::kInsertionBase),
        ofDrawing(settings::kLowerLimit),
        ofDrawing(settings::kUpperLimit),
        ofDrawing(settings::kLinetypeScale),
        ofDrawing(settings::kLengthUnits),
        ofDrawing(settings::kLengthPrecision),
        ofDrawing(settings::kMeasurement),
        ofDrawing(settings::kMirroredText),
        ofDrawing(settings::kOrthoMode),
        ofDrawing(settings::kPointShape),
        ofDrawing(settings::kPointSize),
        ofDrawing(settings::kTextSize),
        ofDrawing(settings::kThickness),
        ofDrawing(settings::kLayer),
        ofDrawing(settings::kTextStyle),
        ofDrawing(settings::kLinetype),
        ofDrawing(settings::kDimStyle, Writing::refused),
        ofDrawing(settings::kUserSystem, Writing::refused),
    };
    addNumericDimensionVariables(variables);
    return variables;
}

} // namespace korra::ed
