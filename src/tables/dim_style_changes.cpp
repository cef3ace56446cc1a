#include "orvex/dim_styles.h"

#include "support/localised_text.h"
#include "support/working_database.h"
#include "tables/named_records.h"

#include "kd/ed.h"

#include <optional>

using support::workingDatabase;
using tables::addRecord;
using tables::Opened;
using tables::openTable;
using tables::recordId;

namespace {

using Style = KdDbDimStyleTableRecord;

/// What a caller chooses about a style; a variable without a value stays as it is.
struct Choice {
    std::optional<double> arrowSize;
    std::optional<double> textHeight;
    std::optional<double> toleranceFactor;
    std::optional<double> extensionBeyond;
    std::optional<double> textGap;
    int decimals;
    bool textInsideHorizontal;
    bool textOutsideHorizontal;
    KdDbObjectId textStyle;
};

void set(Style& style, Kdapi::ErrorStatus (Style::*setter)(double), std::optional<double> value)
{
    if (value)
        (style.*setter)(*value);
}

KdCmColor byLayer()
{
    KdCmColor color;
    color.setColorIndex(256);
    return color;
}

/// Sizes, colours and the lines: what making and changing write first.
void writeSizesAndLines(Style& style, const Choice& choice)
{
    set(style, &Style::setDimasz, choice.arrowSize);
    set(style, &Style::setDimtxt, choice.textHeight);
    set(style, &Style::setDimtfac, choice.toleranceFactor);
    style.setDimclrd(byLayer());
    style.setDimclre(byLayer());
    style.setDimclrt(byLayer());
    style.setDimdec(choice.decimals);
    style.setDimdli(8.0);
    set(style, &Style::setDimexe, choice.extensionBeyond);
    style.setDimexo(0.0);
    style.setDimjust(0);
    set(style, &Style::setDimgap, choice.textGap);
    style.setDimtad(3);
}

void writeText(Style& style, const Choice& choice)
{
    style.setDimtih(choice.textInsideHorizontal);
    style.setDimtoh(choice.textOutsideHorizontal);
    style.setDimtofl(true);
    style.setDimtolj(0);
    style.setDimtxsty(choice.textStyle);
}

/// The id of a text style that is not one of shapes; null when there is none of that name.
KdDbObjectId namedTextStyle(const CString& name, KdDbDatabase* db)
{
    const KdDbObjectId id = recordId<KdDbTextStyleTable>(name, db);
    const Opened<KdDbTextStyleTableRecord> style(id, KdDb::kForRead);
    return style && !style->isShapeFile() ? id : KdDbObjectId();
}

KdDbObjectId textStyleFor(const CString& name, KdDbDatabase& db)
{
    const KdDbObjectId named = name.IsEmpty() ? KdDbObjectId() : namedTextStyle(name, &db);
    return named.isNull() ? db.textstyle() : named;
}

} // namespace

// Making a style ----------------------------------------------------------------------------------

namespace {

double orDefault(double value, double byDefault)
{
    return value == 0.0 ? byDefault : value;
}

double usableToleranceFactor(double factor)
{
    return factor < 0.0001 ? 0.707 : factor;
}

Opened<Style> addNamed(KdDbSymbolTable& table, const CString& name)
{
    auto style = std::make_unique<Style>();
    style->setName(name);
    return addRecord(table, std::move(style));
}

} // namespace

int DimStyleMgr::CreateDimStyle(CString styleName, CString textStyle, double textHeight,
                                double arrowSize, unsigned int decimals, double toleranceFactor,
                                double extensionBeyond, double textGap, int textInsideHorizontal,
                                int textOutsideHorizontal, KdDbDatabase* db)
{
    if (!db)
        db = workingDatabase();
    if (styleName.IsEmpty() || !db)
        return 0;
    const Choice choice{.arrowSize = orDefault(arrowSize, 2.5),
                        .textHeight = orDefault(textHeight, 5.0),
                        .toleranceFactor = usableToleranceFactor(toleranceFactor),
                        .extensionBeyond = extensionBeyond,
                        .textGap = textGap,
                        .decimals = static_cast<int>(decimals),
                        .textInsideHorizontal = textInsideHorizontal != 0,
                        .textOutsideHorizontal = textOutsideHorizontal != 0,
                        .textStyle = textStyleFor(textStyle, *db)};
    auto table = openTable<KdDbDimStyleTable>(db, KdDb::kForWrite);
    if (!table)
        return 0;
    if (!recordId(*table, styleName).isNull()) {
        table.close();
        tables::printStyleExists(styleName);
        return 0;
    }
    const Opened<Style> style = addNamed(*table, styleName);
    table.close();
    if (!style)
        return 0;
    writeSizesAndLines(*style, choice);
    style->setDimtdec(3);
    style->setDimaunit(1);
    writeText(*style, choice);
    style->setDimfit(2);
    return 1;
}

// Changing a style --------------------------------------------------------------------------------

namespace {

std::optional<double> unlessZero(double value)
{
    return value == 0.0 ? std::nullopt : std::optional(value);
}

} // namespace

int DimStyleMgr::ModifyDimStyle(CString styleName, CString textStyle, double textHeight,
                                double arrowSize, unsigned int decimals, double toleranceFactor,
                                double extensionBeyond, double textGap, int textInsideHorizontal,
                                int textOutsideHorizontal, KdDbDatabase* db)
{
    if (!db)
        db = workingDatabase();
    if (styleName.IsEmpty() || !db)
        return 0;
    auto table = openTable<KdDbDimStyleTable>(db, KdDb::kForWrite);
    if (!table)
        return 0;
    const Choice choice{.arrowSize = unlessZero(arrowSize),
                        .textHeight = unlessZero(textHeight),
                        .toleranceFactor = unlessZero(toleranceFactor),
                        .extensionBeyond = unlessZero(extensionBeyond),
                        .textGap = unlessZero(textGap),
                        .decimals = static_cast<int>(decimals),
                        .textInsideHorizontal = textInsideHorizontal != 0,
                        .textOutsideHorizontal = textOutsideHorizontal != 0,
                        .textStyle = textStyleFor(textStyle, *db)};
    const KdDbObjectId id = recordId(*table, styleName);
    if (id.isNull()) {
        table.close();
        const CString message =
            localisedText(108, L"\n当前数据库中不存在 \"%s\" 的标注样式!", styleName);
        kdutPrintf(L"%s", message.GetString());
        return 0;
    }
    const Opened<Style> style(id, KdDb::kForWrite);
    if (!style)
        return 0;
    table.close();
    writeSizesAndLines(*style, choice);
    style->setDimtdec(4);
    writeText(*style, choice);
    style->setDimaunit(1);
    style->setDimfit(2);
    return 1;
}
