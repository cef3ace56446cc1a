#pragma once

#include "support/opened.h"

#include "kd/db.h"

namespace support {

/// A table of a database, open for a scope; a null database has none.
template <class Table>
Opened<Table> openTable(KdDbDatabase* database, KdDb::OpenMode mode)
{
    return Opened<Table>([&](Table*& table) {
        return database ? database->getSymbolTable(table, mode) : Kdapi::eNullDatabase;
    });
}

} // namespace support
