#include "kd/db/database.h"

#include "blocks/spaces.h"
#include "drawing/complete_drawing.h"
#include "drawing/layouts.h"
#include "kd/db.h"
#include "tables/drawing_settings.h"

#include "platform/gate.h"

using korra::DatabaseContents;
using korra::ObjectAccess;
using korra::TableKind;

namespace {

template <class Table>
Kdapi::ErrorStatus openTable(const KdDbDatabase& database, TableKind kind, Table*& table,
                             KdDb::OpenMode mode)
{
    table = nullptr;
    const KdDbObjectId id = database.contents().table(kind);
    return platform::gate("KdDbDatabase::getSymbolTable", Table::desc()->name(), mode)
        .guard(Kdapi::eWasOpenForWrite, [&] {
            KdDbObject* opened = nullptr;
            const auto status = ObjectAccess::open(opened, id, mode);
            table = static_cast<Table*>(opened);
            return status;
        });
}

} // namespace

KdDbDatabase::KdDbDatabase(bool buildDefaultDrawing, bool noDocument)
    : contents_(std::make_unique<DatabaseContents>(*this))
{
    contents_->noDocument = noDocument;
    if (!buildDefaultDrawing)
        return;
    platform::gate("KdDbDatabase::KdDbDatabase").always([&] {
        korra::completeDrawing(*contents_);
    });
}

KdDbDatabase::~KdDbDatabase()
{
    const platform::TurnOf turn(platform::Party::host);
    if (kddbHostApplicationServices()->workingDatabase() == this)
        kddbHostApplicationServices()->setWorkingDatabase(nullptr);
    contents_->clear();
}

Kdapi::ErrorStatus KdDbDatabase::getSymbolTable(KdDbBlockTable*& table, KdDb::OpenMode mode)
{
    return openTable(*this, TableKind::block, table, mode);
}

Kdapi::ErrorStatus KdDbDatabase::getSymbolTable(KdDbDimStyleTable*& table, KdDb::OpenMode mode)
{
    return openTable(*this, TableKind::dimStyle, table, mode);
}

Kdapi::ErrorStatus KdDbDatabase::getSymbolTable(KdDbLayerTable*& table, KdDb::OpenMode mode)
{
    return openTable(*this, TableKind::layer, table, mode);
}

Kdapi::ErrorStatus KdDbDatabase::getSymbolTable(KdDbLinetypeTable*& table, KdDb::OpenMode mode)
{
    return openTable(*this, TableKind::linetype, table, mode);
}

Kdapi::ErrorStatus KdDbDatabase::getSymbolTable(KdDbRegAppTable*& table, KdDb::OpenMode mode)
{
    return openTable(*this, TableKind::regApp, table, mode);
}

Kdapi::ErrorStatus KdDbDatabase::getSymbolTable(KdDbTextStyleTable*& table, KdDb::OpenMode mode)
{
    return openTable(*this, TableKind::textStyle, table, mode);
}

Kdapi::ErrorStatus KdDbDatabase::getSymbolTable(KdDbUCSTable*& table, KdDb::OpenMode mode)
{
    return openTable(*this, TableKind::ucs, table, mode);
}

Kdapi::ErrorStatus KdDbDatabase::getSymbolTable(KdDbViewportTable*& table, KdDb::OpenMode mode)
{
    return openTable(*this, TableKind::viewport, table, mode);
}

KdDbTransactionManager* KdDbDatabase::transactionManager() const
{
    return contents_->transactions.get();
}

KdDbObjectId KdDbDatabase::blockTableId() const
{
    return contents_->table(TableKind::block);
}

KdDbObjectId KdDbDatabase::dimStyleTableId() const
{
    return contents_->table(TableKind::dimStyle);
}

KdDbObjectId KdDbDatabase::layerTableId() const
{
    return contents_->table(TableKind::layer);
}

KdDbObjectId KdDbDatabase::linetypeTableId() const
{
    return contents_->table(TableKind::linetype);
}

KdDbObjectId KdDbDatabase::regAppTableId() const
{
    return contents_->table(TableKind::regApp);
}

KdDbObjectId KdDbDatabase::textStyleTableId() const
{
    return contents_->table(TableKind::textStyle);
}

KdDbObjectId KdDbDatabase::UCSTableId() const
{
    return contents_->table(TableKind::ucs);
}

KdDbObjectId KdDbDatabase::viewportTableId() const
{
    return contents_->table(TableKind::viewport);
}

KdDbObjectId KdDbDatabase::namedObjectsDictionaryId() const
{
    return contents_->namedObjects;
}

KdDbObjectId KdDbDatabase::layoutDictionaryId() const
{
    return korra::layoutDictionaryOf(*contents_);
}

KdDbObjectId KdDbDatabase::currentSpaceId() const
{
    return contents_->record(TableKind::block, korra::isSheetCurrent(*this) ? korra::kPaperSpace
                                                                            : korra::kModelSpace);
}

void KdDbHostApplicationServices::setWorkingDatabase(KdDbDatabase* database)
{
    working_ = database;
}

KdDbHostApplicationServices* kddbHostApplicationServices()
{
    static KdDbHostApplicationServices services;
    return &services;
}
