#include "orvex/layers.h"

#include "orvex/system_variables.h"
#include "tables/named_records.h"

using tables::Opened;
using tables::openTable;
using tables::recordId;

int QmLayerMgr::FindLayer(CString name, KdDbDatabase* db)
{
    return !GetLayerId(name, db).isNull();
}

int QmLayerMgr::LayerIsExist(const wchar_t* name, KdDbDatabase* db)
{
    return FindLayer(name, db);
}

KdDbObjectId QmLayerMgr::GetLayerId(const wchar_t* name, KdDbDatabase* db)
{
    return recordId<KdDbLayerTable>(name, db);
}

int QmLayerMgr::GetLayerId(KdDbObjectId& id, const wchar_t* name, KdDbDatabase* db)
{
    if (!name)
        return 0;
    id = GetLayerId(name, db);
    return !id.isNull();
}

int QmLayerMgr::GetLayerColor(unsigned short& color, const wchar_t* name, KdDbDatabase* db)
{
    return GetLayerColor(color, GetLayerId(name, db));
}

int QmLayerMgr::GetLayerColor(unsigned short& color, KdDbObjectId id)
{
    color = 1;
    const Opened<KdDbLayerTableRecord> layer(id, KdDb::kForRead);
    if (!layer)
        return 0;
    color = layer->color().colorIndex();
    return 1;
}

int QmLayerMgr::GetLayerLType(CString& lineType, const wchar_t* name, KdDbDatabase* db)
{
    if (!name)
        return -1;
    const Opened<KdDbLayerTableRecord> layer(GetLayerId(name, db), KdDb::kForRead);
    if (!layer)
        return 0;
    const Opened<KdDbLinetypeTableRecord> record(layer->linetypeObjectId(), KdDb::kForRead);
    const wchar_t* recordName = nullptr;
    if (!record || record->getName(recordName) != Kdapi::eOk)
        return 0;
    lineType = recordName;
    return 1;
}

namespace {

int readDefaultLineWeight(int& lineWeight)
{
    return QmSysVarMgr::GetSysIntValue(lineWeight, L"LWDEFAULT");
}

} // namespace

int QmLayerMgr::GetLayerLWeight(int& lineWeight, const wchar_t* name, KdDbDatabase* db)
{
    const KdDbObjectId id = GetLayerId(name, db);
    if (name && id.isNull())
        return readDefaultLineWeight(lineWeight);
    return GetLayerLWeight(lineWeight, id);
}

int QmLayerMgr::GetLayerLWeight(int& lineWeight, KdDbObjectId id)
{
    if (id.isNull()) {
        readDefaultLineWeight(lineWeight);
        return 0;
    }
    const Opened<KdDbLayerTableRecord> layer(id, KdDb::kForRead);
    if (!layer)
        return 0;
    lineWeight = layer->lineWeight();
    return lineWeight != KdDb::kLnWtByLwDefault || readDefaultLineWeight(lineWeight);
}

int QmLayerMgr::GetLayerNameFromDrawing(CStringArray& names, KdDbDatabase* db)
{
    return tables::appendRecordNames<KdDbLayerTable>(names, db);
}

CString QmLayerMgr::GetCurrentLayer(KdDbDatabase* db)
{
    return db ? tables::recordName(db->clayer()) : CString();
}

int QmLayerMgr::SetCurrentLayer(CString name, KdDbDatabase* db)
{
    const KdDbObjectId id = GetLayerId(name, db);
    if (id.isNull())
        return 0;
    db->setClayer(id);
    return 1;
}

int QmLayerMgr::IsLayerOn(const wchar_t* name, KdDbDatabase* db)
{
    const KdDbObjectId id = GetLayerId(name, db);
    if (id.isNull())
        return -1;
    const Opened<KdDbLayerTableRecord> layer(id, KdDb::kForRead);
    return layer && !layer->isOff();
}

KdCmColor GetColorIndexFromLayer(const wchar_t* name, KdDbDatabase* db)
{
    const auto table = openTable<KdDbLayerTable>(db, KdDb::kForRead);
    if (!table)
        return {};
    const KdDbObjectId id = recordId(*table, name);
    if (id.isNull())
        return db->cecolor();
    const Opened<KdDbLayerTableRecord> layer(id, KdDb::kForRead);
    return layer ? layer->color() : KdCmColor();
}

KdDb::LineWeight GetLineWeightFromLayer(const wchar_t* name, KdDbDatabase* db)
{
    const auto table = openTable<KdDbLayerTable>(db, KdDb::kForRead);
    if (!table)
        return KdDb::kLnWtByLwDefault;
    const KdDbObjectId id = recordId(*table, name);
    if (id.isNull())
        return db->celweight();
    const Opened<KdDbLayerTableRecord> layer(id, KdDb::kForRead);
    return layer ? layer->lineWeight() : KdDb::kLnWtByLwDefault;
}

int LayerIsLocked(KdDbEntity* entity)
{
    if (!entity)
        return 0;
    const Opened<KdDbLayerTableRecord> layer(entity->layerId(), KdDb::kForRead);
    return layer && layer->isLocked();
}
