#include "kd/db/database.h"

#include "blocks/spaces.h"
#include "drawing/complete_drawing.h"
#include "drawing/layouts.h"
#include "drawing/user_systems.h"
#include "kd/db.h"

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
    if (platform::gate("KdDbDatabase::getSymbolTable", Table::desc()->name(), mode))
        return Kdapi::eWasOpenForWrite;
    KdDbObject* opened = nullptr;
    const auto status = ObjectAccess::open(opened, id, mode);
    table = static_cast<Table*>(opened);
    return status;
}

/// The record that a header variable names, or the one that every drawing has.
KdDbObjectId namedByHeader(const DatabaseContents& contents, TableKind kind, const char* variable,
                           const wchar_t* byDefault)
{
    const KdDbObjectId named = contents.record(kind, contents.header.text(variable, byDefault));
    return named.isNull() ? contents.record(kind, byDefault) : named;
}

} // namespace

KdDbDatabase::KdDbDatabase(bool buildDefaultDrawing, bool noDocument)
    : contents_(std::make_unique<DatabaseContents>(*this))
{
    contents_->noDocument = noDocument;
    if (buildDefaultDrawing)
        korra::completeDrawing(*contents_);
}

KdDbDatabase::~KdDbDatabase()
{
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
    const bool sheetIsCurrent = !tilemode() && contents_->enteredViewport.isNull();
    return contents_->record(TableKind::block,
                             sheetIsCurrent ? korra::kPaperSpace : korra::kModelSpace);
}

bool KdDbDatabase::tilemode() const
{
    return contents_->header.integer("$TILEMODE", 1) != 0;
}

KdDbObjectId KdDbDatabase::ucsname() const
{
    return korra::currentUcs(*this).named;
}

bool KdDbDatabase::orthomode() const
{
    return contents_->header.integer("$ORTHOMODE", 0) != 0;
}

Kdapi::ErrorStatus KdDbDatabase::setOrthomode(bool on)
{
    if (platform::gate("KdDbDatabase::setOrthomode", on))
        return Kdapi::eInvalidInput;
    contents_->header.setInteger("$ORTHOMODE", on ? 1 : 0);
    return Kdapi::eOk;
}

KdDbObjectId KdDbDatabase::clayer() const
{
    return namedByHeader(*contents_, TableKind::layer, "$CLAYER", L"0");
}

KdDbObjectId KdDbDatabase::textstyle() const
{
    return namedByHeader(*contents_, TableKind::textStyle, "$TEXTSTYLE", L"Standard");
}

KdDbObjectId KdDbDatabase::dimstyle() const
{
    return namedByHeader(*contents_, TableKind::dimStyle, "$DIMSTYLE", L"Standard");
}

KdDbObjectId KdDbDatabase::celtype() const
{
    return namedByHeader(*contents_, TableKind::linetype, "$CELTYPE", L"ByLayer");
}

KdDbObjectId KdDbDatabase::continuousLinetype() const
{
    return contents_->record(TableKind::linetype, L"Continuous");
}

KdDb::MeasurementValue KdDbDatabase::measurement() const
{
    return contents_->header.integer("$MEASUREMENT", KdDb::kEnglish) == KdDb::kMetric
               ? KdDb::kMetric
               : KdDb::kEnglish;
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
