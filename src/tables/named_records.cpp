#include "tables/named_records.h"

#include "support/localised_text.h"
#include "support/records.h"

#include "kd/ed.h"

KdDbObjectId tables::recordId(const KdDbSymbolTable& table, const wchar_t* name)
{
    KdDbObjectId id;
    return table.getIdAt(name, id, false) == Kdapi::eOk ? id : KdDbObjectId();
}

CString tables::recordName(const KdDbSymbolTableRecord& record)
{
    const wchar_t* name = nullptr;
    return record.getName(name) == Kdapi::eOk ? CString(name) : CString();
}

CString tables::recordName(KdDbObjectId id)
{
    const Opened<KdDbSymbolTableRecord> record(id, KdDb::kForRead);
    return record ? recordName(*record) : CString();
}

void tables::appendRecordNames(CStringArray& names, const KdDbSymbolTable& table)
{
    for (const KdDbObjectId id : support::records(table)) {
        const Opened<KdDbSymbolTableRecord> record(id, KdDb::kForRead);
        const wchar_t* name = nullptr;
        if (record && record->getName(name) == Kdapi::eOk)
            names.Add(name);
    }
}

void tables::printStyleExists(const CString& name)
{
    const CString message = localisedText(106, L"\n当前数据库中已经存在 \"%s\"的字体样式!", name);
    kdutPrintf(L"%s", message.GetString());
}
