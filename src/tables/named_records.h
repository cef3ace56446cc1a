#pragma once

#include "support/open_table.h"

#include "kd/db.h"

#include <afxwin.h>
#include <memory>

/// What the managers of named tables have in common.
namespace tables {

using support::Opened;
using support::openTable;

/// The id of a record that is not erased; null for an unknown or null name.
KdDbObjectId recordId(const KdDbSymbolTable& table, const wchar_t* name);

/// The id of a record by database; null also when the table cannot be opened.
template <class Table>
KdDbObjectId recordId(const wchar_t* name, KdDbDatabase* database)
{
    const auto table = openTable<Table>(database, KdDb::kForRead);
    return table ? recordId(*table, name) : KdDbObjectId();
}

/// The id of a record by database; null also when the record cannot be opened for reading.
template <class Table>
KdDbObjectId readableRecordId(const wchar_t* name, KdDbDatabase* database)
{
    const KdDbObjectId id = recordId<Table>(name, database);
    return Opened<KdDbSymbolTableRecord>(id, KdDb::kForRead) ? id : KdDbObjectId();
}

/// The name of a record; empty when it cannot be read.
CString recordName(const KdDbSymbolTableRecord& record);
CString recordName(KdDbObjectId id);

/// Appends the names of a table's records in table order; one that cannot be read is left out.
void appendRecordNames(CStringArray& names, const KdDbSymbolTable& table);

/// Appends the names by database. @return 1; 0, nothing appended, when the table cannot be opened
template <class Table>
int appendRecordNames(CStringArray& names, KdDbDatabase* database)
{
    const auto table = openTable<Table>(database, KdDb::kForRead);
    if (!table)
        return 0;
    appendRecordNames(names, *table);
    return 1;
}

/// Adds a new record to a table and keeps it open for a scope; one that is refused is deleted.
template <class Record>
Opened<Record> addRecord(KdDbSymbolTable& table, std::unique_ptr<Record> record)
{
    return Opened<Record>([&](Record*& added) {
        KdDbObjectId id;
        const Kdapi::ErrorStatus status = table.add(id, record.get());
        if (status == Kdapi::eOk)
            added = record.release();
        return status;
    });
}

/// Says that there is a text style or a dimension style of that name already.
void printStyleExists(const CString& name);

} // namespace tables
