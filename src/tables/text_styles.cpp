#include "orvex/text_styles.h"

#include "tables/named_records.h"

using tables::openTable;
using tables::recordId;

int TxtStyleMgr::FindTextStyle(const wchar_t* styleName, KdDbDatabase* db)
{
    return !recordId<KdDbTextStyleTable>(styleName, db).isNull();
}

int TxtStyleMgr::TextStyleISExist(const wchar_t* styleName, KdDbDatabase* db)
{
    return FindTextStyle(styleName, db);
}

KdDbObjectId TxtStyleMgr::GetTxtStyleId(const wchar_t* styleName, KdDbDatabase* db)
{
    return tables::readableRecordId<KdDbTextStyleTable>(styleName, db);
}

int TxtStyleMgr::GetTxtStyleId(KdDbObjectId& id, const wchar_t* styleName, KdDbDatabase* db)
{
    if (!styleName)
        return 0;
    id = GetTxtStyleId(styleName, db);
    return !id.isNull();
}

int TxtStyleMgr::GetTxtStyleNameFromDrawing(CStringArray& names, KdDbDatabase* db)
{
    return tables::appendRecordNames<KdDbTextStyleTable>(names, db);
}

CString TxtStyleMgr::GetCurrentTextStyle(KdDbDatabase* db)
{
    return db ? tables::recordName(db->textstyle()) : CString();
}

int TxtStyleMgr::SetCurrentTextStyle(CString styleName, KdDbDatabase* db)
{
    const auto table = openTable<KdDbTextStyleTable>(db, KdDb::kForRead);
    const KdDbObjectId id = table ? recordId(*table, styleName) : KdDbObjectId();
    if (id.isNull())
        return 0;
    db->setTextstyle(id);
    return 1;
}

Kdapi::ErrorStatus rx_getTextStyle(KdGiTextStyle& style, KdDbObjectId styleId)
{
    const Kdapi::ErrorStatus status = fromKdDbTextStyle(style, styleId);
    style.setUnderlined(false);
    return status;
}

Kdapi::ErrorStatus rx_getTextStyleId(const wchar_t* name, KdDbDatabase* db, KdDbObjectId& styleId)
{
    const auto table = openTable<KdDbTextStyleTable>(db, KdDb::kForRead);
    return table ? table->getIdAt(name, styleId, false) : table.status();
}
