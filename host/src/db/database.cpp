#include "kd/db/database.h"

#include "control/host_state.h"
#include "db/contents.h"

#include "platform/gate.h"

#include <algorithm>

using korra::DatabaseContents;
using korra::ObjectAccess;
using korra::TableKind;

namespace {

std::vector<KdDbDatabase*>& databases()
{
    static std::vector<KdDbDatabase*> live;
    return live;
}

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

/// Owners forget their parts first: each object is deleted once, by its slot.
void forgetParts(KdDbObject& object)
{
    if (auto* curve = KdDbVertexCurve::cast(&object))
        ObjectAccess::vertices(*curve).clear();
    else if (auto* reference = KdDbBlockReference::cast(&object))
        ObjectAccess::attributes(*reference).clear();
}

} // namespace

namespace korra {

DatabaseContents::DatabaseContents(KdDbDatabase& owner)
    : database(owner), store(runningHost() ? host().slots : std::make_shared<ObjectSlots>())
{
}

void DatabaseContents::clear()
{
    for (const ObjectSlot* slot : slots) {
        if (slot->object)
            forgetParts(*slot->object);
    }
    for (ObjectSlot* slot : slots) {
        delete slot->object;
        slot->object = nullptr;
        slot->database = nullptr;
        slot->readers = 0;
        slot->writing = false;
    }
    slots.clear();
    byHandle.clear();
    nextHandle = 1;
    tables = {};
    namedObjects = {};
    enteredViewport = {};
    activeViewMade = false;
    header = {};
    form = {};
}

const std::vector<KdDbDatabase*>& liveDatabases()
{
    return databases();
}

} // namespace korra

KdDbDatabase::KdDbDatabase(bool buildDefaultDrawing, bool noDocument)
    : contents_(std::make_unique<DatabaseContents>(*this))
{
    databases().push_back(this);
    contents_->noDocument = noDocument;
    if (buildDefaultDrawing)
        contents_->completeDrawing();
}

KdDbDatabase::~KdDbDatabase()
{
    std::erase(databases(), this);
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
    return contents_->layoutDictionary();
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
    static KdDbHostApplicationServices withoutHost;
    return korra::runningHost() ? &korra::host().services : &withoutHost;
}
