#include "orvex/linetypes.h"

#include "orvex/system_variables.h"
#include "tables/linetype_files.h"
#include "tables/named_records.h"

#include "kd/resbuf.h"

#include <algorithm>
#include <iterator>
#include <new>

using tables::Opened;
using tables::openTable;
using tables::recordId;

namespace {

constexpr const wchar_t* kFileDialogs = L"FILEDIA";

/// Keeps the host from asking for files in dialogs for the length of a scope.
///
/// The variable is put back as the integer or the text that it was. One that cannot be read, and so
/// could not be put back, is left alone.
class FileDialogsOff {
public:
    FileDialogsOff() : type_(QmSysVarMgr::GetSysVarType(kFileDialogs))
    {
        if (!keep())
            type_ = RTNONE;
        else
            QmSysVarMgr::SetSysIntValue(0, kFileDialogs);
    }

    ~FileDialogsOff()
    {
        try {
            putBack();
        } catch (const std::bad_alloc&) { // the dialogs stay off rather than the program ends
        }
    }

    FileDialogsOff(const FileDialogsOff&) = delete;
    FileDialogsOff& operator=(const FileDialogsOff&) = delete;

private:
    /// Keeps the value of the variable's type. @return false when it cannot be read
    bool keep()
    {
        if (type_ == RTSHORT)
            return QmSysVarMgr::GetSysIntValue(number_, kFileDialogs);
        if (type_ == RTSTR)
            return QmSysVarMgr::GetSysStringValue(text_, kFileDialogs);
        return type_ != RTNONE;
    }

    void putBack() const
    {
        if (type_ == RTSHORT)
            QmSysVarMgr::SetSysIntValue(number_, kFileDialogs);
        else if (type_ == RTSTR)
            QmSysVarMgr::SetSysStringValue(text_, kFileDialogs);
    }

    int type_;
    int number_ = 0;
    CString text_;
};

} // namespace

int QmLTypeMgr::IsLTypeExist(CString name, KdDbDatabase* db)
{
    return !recordId<KdDbLinetypeTable>(name, db).isNull();
}

Kdapi::ErrorStatus QmLTypeMgr::GetLTypeId(KdDbObjectId& id, CString name, KdDbDatabase* db)
{
    const auto table = openTable<KdDbLinetypeTable>(db, KdDb::kForRead);
    if (!table)
        return Kdapi::eNullObjectId;
    KdDbObjectId found;
    const Kdapi::ErrorStatus status = table->getIdAt(name, found, false);
    if (status != Kdapi::eOk)
        return status;
    const Opened<KdDbLinetypeTableRecord> linetype(found, KdDb::kForRead);
    if (linetype)
        id = linetype->objectId();
    return linetype.status();
}

int QmLTypeMgr::GetLTypeFromDrawing(CStringArray& names, KdDbDatabase* db)
{
    return tables::appendRecordNames<KdDbLinetypeTable>(names, db);
}

int QmLTypeMgr::LoadLType(CString name, KdDb::MeasurementValue measurement, KdDbDatabase* db,
                          int reload)
{
    const FileDialogsOff quiet;
    name.Trim();
    if (name.IsEmpty() || !db)
        return 0;
    if (reload == 0 && IsLTypeExist(name, db))
        return 1;
    return tables::loadFromLinetypeFiles(name, measurement, *db) == Kdapi::eOk;
}

int QmLineWeight::IsExistSysLWeight(int lineWeight)
{
    static constexpr int kLineWeights[] = {-3, -2, -1,  0,   5,   9,   13,  15,  18,
                                           20, 25, 30,  35,  40,  50,  53,  60,  70,
                                           80, 90, 100, 106, 120, 140, 158, 200, 211};
    return std::binary_search(std::begin(kLineWeights), std::end(kLineWeights), lineWeight);
}
