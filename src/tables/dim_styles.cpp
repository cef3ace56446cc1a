#include "orvex/dim_styles.h"

#include "support/transaction.h"
#include "support/working_database.h"
#include "tables/named_records.h"

using support::Transaction;
using support::workingDatabase;
using tables::Opened;
using tables::openTable;
using tables::readableRecordId;
using tables::recordId;

using Style = KdDbDimStyleTableRecord;

int DimStyleMgr::SetCurrentDimStyle(CString styleName, int copyVariables, KdDbDatabase* db)
{
    if (!db)
        db = workingDatabase();
    if (styleName.IsEmpty() || !db)
        return 0;
    const KdDbObjectId id = recordId<KdDbDimStyleTable>(styleName, db);
    if (id.isNull())
        return 0;
    db->setDimstyle(id);
    if (!copyVariables)
        return 1;
    const Opened<Style> style(id, KdDb::kForRead);
    if (!style)
        return 0;
    db->setDimstyleData(style.get());
    return 1;
}

CString DimStyleMgr::GetCurrentDimStyle(KdDbDatabase* db)
{
    return db ? tables::recordName(db->dimstyle()) : CString();
}

int DimStyleMgr::FindDimStyle(const wchar_t* styleName, KdDbDatabase* db)
{
    return !recordId<KdDbDimStyleTable>(styleName, db).isNull();
}

int DimStyleMgr::DimISExist(const wchar_t* styleName, KdDbDatabase* db)
{
    return FindDimStyle(styleName, db);
}

KdDbObjectId DimStyleMgr::GetDimStyleId(const wchar_t* styleName, KdDbDatabase* db)
{
    return readableRecordId<KdDbDimStyleTable>(styleName, db);
}

int DimStyleMgr::GetDimStyleId(KdDbObjectId& id, const wchar_t* styleName, KdDbDatabase* db)
{
    if (!styleName)
        return 0;
    id = GetDimStyleId(styleName, db);
    return !id.isNull();
}

int DimStyleMgr::GetDimStyleNameFromDrawing(CStringArray& names, KdDbDatabase* db)
{
    return tables::appendRecordNames<KdDbDimStyleTable>(names, db);
}

// Single values -----------------------------------------------------------------------------------

namespace {

/// A style by name, open for reading for a scope; an empty name names none.
Opened<Style> openStyle(const wchar_t* name, KdDbDatabase* db)
{
    const bool named = name && *name;
    return Opened<Style>(named ? recordId<KdDbDimStyleTable>(name, db) : KdDbObjectId(),
                         KdDb::kForRead);
}

} // namespace

int DimStyleMgr::GetDimStyleTextColor(CString styleName, unsigned short& color, KdDbDatabase* db)
{
    color = 7;
    const auto style = openStyle(styleName, db);
    if (!style)
        return 0;
    color = style->dimclrt().colorIndex();
    return 1;
}

int DimStyleMgr::GetDimStyleTextHeight(CString styleName, double& height, KdDbDatabase* db)
{
    height = 3.5;
    const auto style = openStyle(styleName, db);
    if (!style)
        return 0;
    height = style->dimtxt();
    return 1;
}

int DimStyleMgr::GetTextStyleFromDim(CString& textStyle, const wchar_t* styleName, KdDbDatabase* db)
{
    const auto style = openStyle(styleName, db);
    if (!style)
        return 0;
    const Opened<KdDbTextStyleTableRecord> record(style->dimtxsty(), KdDb::kForRead);
    const wchar_t* name = nullptr;
    if (!record || record->getName(name) != Kdapi::eOk)
        return 0;
    textStyle = name;
    return 1;
}

namespace {

/// The index of one of a style's colours; see DimStyleMgr::GetCurrentDimclrd().
int readColor(unsigned short& color, KdCmColor (Style::*value)() const, const CString& styleName,
              KdDbDatabase* db)
{
    const KdDbObjectId id =
        styleName.IsEmpty() && db ? db->dimstyle() : recordId<KdDbDimStyleTable>(styleName, db);
    if (id.isNull())
        return 1;
    const Opened<Style> style(id, KdDb::kForRead);
    if (!style)
        return 0;
    color = (style.get()->*value)().colorIndex();
    return 1;
}

} // namespace

int DimStyleMgr::GetCurrentDimclrd(unsigned short& color, CString styleName, KdDbDatabase* db)
{
    return readColor(color, &Style::dimclrd, styleName, db);
}

int DimStyleMgr::GetCurrentDimclre(unsigned short& color, CString styleName, KdDbDatabase* db)
{
    return readColor(color, &Style::dimclre, styleName, db);
}

int DimStyleMgr::GetCurrentDimTextstyleFontName(CString&, CString, KdDbDatabase*)
{
    return 1;
}

// The overall scale -------------------------------------------------------------------------------

namespace {

/// Stops the host; under tests it goes on.
void stopHost(int line, Kdapi::ErrorStatus status)
{
    kdrx_abort(L"!%s@%d: %s", L"orvex_until", line, kdapiErrorStatusText(status));
}

} // namespace

double DimStyleMgr::GetDimStyleDimScale(const wchar_t* styleName, KdDbDatabase* db)
{
    constexpr double kUnscaled = 1.0;
    auto table = openTable<KdDbDimStyleTable>(db, KdDb::kForRead);
    if (!table) {
        stopHost(1911, table.status());
        return kUnscaled;
    }
    const Transaction transaction;
    const KdDbObjectId id = recordId(*table, styleName);
    table.close();
    if (id.isNull())
        return kUnscaled;
    const auto style = transaction.open<Style>(id, KdDb::kForRead);
    if (!style) {
        stopHost(1928, style.status());
        return kUnscaled;
    }
    return style->dimscale();
}

int DimStyleMgr::SetDimScale(const wchar_t* styleName, double scale, KdDbDatabase* db)
{
    auto table = openTable<KdDbDimStyleTable>(db, KdDb::kForRead);
    if (!table) {
        stopHost(1946, table.status());
        return 0;
    }
    const KdDbObjectId id = recordId(*table, styleName);
    table.close();
    if (id.isNull())
        return 0;
    const Transaction transaction;
    const auto style = transaction.open<Style>(id, KdDb::kForWrite);
    if (!style) {
        stopHost(1963, style.status());
        return 0;
    }
    style->setDimscale(scale);
    return 1;
}
