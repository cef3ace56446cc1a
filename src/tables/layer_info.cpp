#include "orvex/layers.h"

#include "orvex/linetypes.h"
#include "tables/linetype_files.h"
#include "tables/named_records.h"

#include <optional>

using tables::Opened;
using tables::openTable;
using tables::recordId;

namespace QmLayerMgr {
namespace {

KdCmColor colorToWrite(int index)
{
    constexpr int kWhite = 7;
    const bool allowed = index > -4 && index < 256 && index != 0;
    KdCmColor color;
    color.setColorIndex(static_cast<std::uint16_t>(allowed ? index : kWhite));
    return color;
}

KdDb::LineWeight lineWeightToWrite(int lineWeight)
{
    return QmLineWeight::IsExistSysLWeight(lineWeight) ? static_cast<KdDb::LineWeight>(lineWeight)
                                                       : KdDb::kLnWtByLwDefault;
}

CString linetypeToWrite(const LAYERINFO& info)
{
    return info.lineType.IsEmpty() ? CString(L"CONTINUOUS") : info.lineType;
}

/// Everything but the linetype, which is last.
void writeProperties(KdDbLayerTableRecord& layer, const LAYERINFO& info)
{
    layer.setIsOff(info.off);
    layer.setVPDFLT(info.vpdflt);
    layer.setIsFrozen(info.frozen);
    layer.setIsLocked(info.locked);
    layer.setIsPlottable(info.plottable);
    layer.setLineWeight(lineWeightToWrite(info.lineWeight));
    layer.setColor(colorToWrite(info.colorIndex));
}

/// The linetype of a new layer, loaded when the drawing lacks it; the continuous one in need.
KdDbObjectId linetypeOfNewLayer(const LAYERINFO& info, KdDbDatabase& db)
{
    const CString name = linetypeToWrite(info);
    KdDbObjectId id;
    if (QmLTypeMgr::GetLTypeId(id, name, &db) == Kdapi::eOk)
        return id;
    QmLTypeMgr::LoadLType(name, info.measurement, &db, 0);
    if (QmLTypeMgr::GetLTypeId(id, name, &db) == Kdapi::eOk)
        return id;
    return db.continuousLinetype();
}

bool canBeRead(KdDbObjectId id)
{
    return bool(Opened<KdDbLinetypeTableRecord>(id, KdDb::kForRead));
}

/// The linetype that a layer is changed to, loaded when the drawing lacks it; the continuous one in
/// need. @return nullopt when the linetype table cannot be opened
std::optional<KdDbObjectId> linetypeOfChangedLayer(const LAYERINFO& info, KdDbDatabase& db)
{
    const CString name = linetypeToWrite(info);
    auto table = openTable<KdDbLinetypeTable>(&db, KdDb::kForRead);
    if (!table)
        return std::nullopt;
    const KdDbObjectId present = recordId(*table, name);
    table.close(); // loading writes to it
    if (canBeRead(present))
        return present;

    KdDbObjectId loaded;
    if (tables::loadFromLinetypeFiles(name, info.measurement, db) == Kdapi::eOk)
        loaded = recordId<KdDbLinetypeTable>(name, &db);
    return loaded.isNull() ? db.continuousLinetype() : loaded;
}

/// Everything but the linetype.
void readProperties(LAYERINFO& info, const KdDbLayerTableRecord& layer)
{
    info.frozen = layer.isFrozen();
    info.off = layer.isOff();
    info.colorIndex = layer.color().colorIndex();
    info.locked = layer.isLocked();
    info.vpdflt = layer.VPDFLT();
    info.lineWeight = layer.lineWeight();
    info.plottable = layer.isPlottable();
}

/// Opens the layer of a description. @return eKeyNotFound as its status for an unknown name
Opened<KdDbLayerTableRecord> openForWriting(const LAYERINFO& info, KdDbDatabase* db)
{
    return Opened<KdDbLayerTableRecord>([&](KdDbLayerTableRecord*& layer) {
        const auto table = openTable<KdDbLayerTable>(info.name ? db : nullptr, KdDb::kForRead);
        if (!table)
            return Kdapi::eInvalidInput;
        const KdDbObjectId id = recordId(*table, info.name);
        return id.isNull() ? Kdapi::eKeyNotFound : kddbOpenObject(layer, id, KdDb::kForWrite);
    });
}

/// The result of an operation whose layer was not opened.
int whyNotOpened(Kdapi::ErrorStatus status)
{
    return status == Kdapi::eKeyNotFound ? -1 : 0;
}

} // namespace

int CreateLayer(LAYERINFO& info, KdDbDatabase* db)
{
    if (!info.name)
        return 0;
    const auto table = openTable<KdDbLayerTable>(db, KdDb::kForRead);
    if (!table)
        return 0;
    if (!recordId(*table, info.name).isNull())
        return -1;
    if (table->upgradeOpen() != Kdapi::eOk)
        return 0;
    auto layer = std::make_unique<KdDbLayerTableRecord>();
    if (layer->setName(info.name) != Kdapi::eOk)
        return 0;
    writeProperties(*layer, info);
    layer->setLinetypeObjectId(linetypeOfNewLayer(info, *db));
    return bool(tables::addRecord(*table, std::move(layer)));
}

int ModifyLayer(LAYERINFO& info, KdDbDatabase* db)
{
    return SetLayerInfo(info, db);
}

int SetLayerInfo(LAYERINFO info, KdDbDatabase* db)
{
    auto layer = openForWriting(info, db);
    if (!layer)
        return whyNotOpened(layer.status());
    writeProperties(*layer, info);
    const auto linetype = linetypeOfChangedLayer(info, *db);
    if (!linetype)
        return 0;
    layer->setLinetypeObjectId(*linetype);
    return layer.close() == Kdapi::eOk;
}

int GetLayerInfo(LAYERINFO& info, KdDbDatabase* db)
{
    auto layer = openForWriting(info, db);
    if (!layer)
        return whyNotOpened(layer.status());
    readProperties(info, *layer);
    Opened<KdDbLinetypeTableRecord> linetype(layer->linetypeObjectId(), KdDb::kForRead);
    if (!linetype)
        return 0;
    layer.close();
    info.lineType = tables::recordName(*linetype);
    return linetype.close() == Kdapi::eOk;
}

} // namespace QmLayerMgr
