#include "kd/db.h"
#include "objects/contents.h"
#include "platform/gate.h"
#include "tables/dimension_accessors.h"
#include "tables/dimension_variables.h"

#include <algorithm>

KDRX_DEFINE_MEMBERS(KdDbDimStyleTableRecord, KdDbSymbolTableRecord)

namespace {

using korra::DimensionKind;
using korra::DimensionVariable;

// Group codes of variables.
constexpr int kTextMoves = 279;
constexpr int kFit = 287;
constexpr int kPlaces = 289;
constexpr int kTextStyle = 340;

void field(korra::ObjectVisitor& visitor, const DimensionVariable& variable,
           KdDbDimensionValue& value)
{
    switch (variable.kind) {
    case DimensionKind::real:
        visitor.real(variable.code, std::get<double>(value), variable.byDefault);
        break;
    case DimensionKind::text:
        visitor.text(variable.code, std::get<std::wstring>(value), L"");
        break;
    case DimensionKind::reference:
        visitor.reference(variable.code, std::get<KdDbObjectId>(value), korra::Reference::hard,
                          variable.code == kTextStyle ? KdDbTextStyleTableRecord::desc()
                                                      : KdDbBlockTableRecord::desc());
        break;
    default:
        visitor.integer(variable.code, std::get<int>(value), static_cast<int>(variable.byDefault));
    }
}

const KdDbDimensionValue& valueAt(const std::vector<KdDbDimensionValue>& values, int code)
{
    return values[static_cast<std::size_t>(korra::dimensionVariableIndex(code))];
}

Kdapi::ErrorStatus store(std::vector<KdDbDimensionValue>& values, int code, double number)
{
    const auto index = static_cast<std::size_t>(korra::dimensionVariableIndex(code));
    const DimensionVariable& variable = korra::dimensionVariables()[index];
    if (!korra::accepts(variable, number))
        return Kdapi::eInvalidInput;
    values[index] = korra::valueOf(variable, number);
    return Kdapi::eOk;
}

} // namespace

KdDbDimStyleTableRecord::KdDbDimStyleTableRecord()
{
    for (const DimensionVariable& variable : korra::dimensionVariables())
        values_.push_back(korra::defaultValue(variable));
}

void KdDbDimStyleTableRecord::describe(korra::ObjectVisitor& visitor)
{
    describeNamed(visitor, "DimStyleTableRecord");
    for (std::size_t i = 0; i < values_.size(); ++i)
        field(visitor, korra::dimensionVariables()[i], values_[i]);
}

#define DEFINE_STYLE_ACCESSOR(Type, getter, setter, code)                                          \
    Type KdDbDimStyleTableRecord::getter() const                                                   \
    {                                                                                              \
        return static_cast<Type>(korra::numberOf(valueAt(values_, code)));                         \
    }                                                                                              \
    Kdapi::ErrorStatus KdDbDimStyleTableRecord::setter(Type value)                                 \
    {                                                                                              \
        return platform::gate("KdDbDimStyleTableRecord::" #setter, objectId(), value)              \
            .guard(Kdapi::eNotOpenForWrite, [&] {                                                  \
                const auto status = beginChange();                                                 \
                return status ? status : store(values_, code, static_cast<double>(value));         \
            });                                                                                    \
    }

KORRA_DIMENSION_ACCESSORS(DEFINE_STYLE_ACCESSOR)
KORRA_STYLE_ACCESSORS(DEFINE_STYLE_ACCESSOR)

#undef DEFINE_STYLE_ACCESSOR

#define DEFINE_STYLE_COLOR(getter, setter, code)                                                   \
    KdCmColor KdDbDimStyleTableRecord::getter() const                                              \
    {                                                                                              \
        KdCmColor color;                                                                           \
        color.setColorIndex(static_cast<std::uint16_t>(korra::numberOf(valueAt(values_, code))));  \
        return color;                                                                              \
    }                                                                                              \
    Kdapi::ErrorStatus KdDbDimStyleTableRecord::setter(const KdCmColor& color)                     \
    {                                                                                              \
        return platform::gate("KdDbDimStyleTableRecord::" #setter, objectId(), color.colorIndex()) \
            .guard(Kdapi::eNotOpenForWrite, [&] {                                                  \
                const auto status = beginChange();                                                 \
                return status ? status : store(values_, code, color.colorIndex());                 \
            });                                                                                    \
    }

KORRA_STYLE_COLORS(DEFINE_STYLE_COLOR)

#undef DEFINE_STYLE_COLOR

int KdDbDimStyleTableRecord::dimfit() const
{
    return static_cast<int>(korra::numberOf(valueAt(values_, kFit)));
}

Kdapi::ErrorStatus KdDbDimStyleTableRecord::setDimfit(int value)
{
    return platform::gate("KdDbDimStyleTableRecord::setDimfit", objectId(), value)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            if (const auto status = beginChange())
                return status;
            if (const auto status = store(values_, kFit, value))
                return status;
            constexpr int kLastOfPlaces = 3; // the further values say how the text moves
            store(values_, kPlaces, std::min(value, kLastOfPlaces));
            return store(values_, kTextMoves, std::max(value - kLastOfPlaces, 0));
        });
}

KdDbObjectId KdDbDimStyleTableRecord::dimtxsty() const
{
    const auto style = std::get<KdDbObjectId>(valueAt(values_, kTextStyle));
    if (!style.isNull() || !database())
        return style;
    return database()->contents().record(korra::TableKind::textStyle, L"Standard");
}

Kdapi::ErrorStatus KdDbDimStyleTableRecord::setDimtxsty(KdDbObjectId textStyle)
{
    return platform::gate("KdDbDimStyleTableRecord::setDimtxsty", objectId(), textStyle)
        .guard(Kdapi::eNotOpenForWrite, [&] {
            auto& value =
                values_[static_cast<std::size_t>(korra::dimensionVariableIndex(kTextStyle))];
            return setReference("KdDbDimStyleTableRecord::setDimtxsty",
                                std::get<KdDbObjectId>(value), textStyle,
                                KdDbTextStyleTableRecord::desc());
        });
}
