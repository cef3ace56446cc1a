#include "orvex/savers.h"

#include "support/open_table.h"
#include "support/records.h"
#include "support/resbuf_list.h"
#include "support/short_variable.h"
#include "support/working_database.h"

#include "kd/ap.h"
#include "kd/ed.h"

#include <afxwin.h>
#include <utility>

using support::Opened;
using support::openTable;
using support::readShortVariable;
using support::records;
using support::ResbufList;
using support::workingDatabase;
using support::writeShortVariable;

CQM_CmdechoServer::CQM_CmdechoServer() : saved_(readShortVariable(L"CMDECHO")) {}

CQM_CmdechoServer::CQM_CmdechoServer(int value) : CQM_CmdechoServer()
{
    writeShortVariable(L"CMDECHO", value);
}

CQM_CmdechoServer::~CQM_CmdechoServer()
{
    writeShortVariable(L"CMDECHO", saved_);
}

namespace {

void writeCommandEcho(int value)
{
    const ResbufList list(kdutBuildList(RTSHORT, value, RTNONE));
    kdedSetVar(L"CMDECHO", list.get());
}

} // namespace

CCmdEcho::CCmdEcho() : saved_(readShortVariable(L"CMDECHO"))
{
    writeCommandEcho(0);
}

CCmdEcho::~CCmdEcho()
{
    writeCommandEcho(saved_);
}

CQM_OsnapServer::CQM_OsnapServer() : saved_(readShortVariable(L"OSMODE")) {}

CQM_OsnapServer::CQM_OsnapServer(int value) : CQM_OsnapServer()
{
    writeShortVariable(L"OSMODE", value);
}

CQM_OsnapServer::~CQM_OsnapServer()
{
    writeShortVariable(L"OSMODE", saved_);
}

CQM_OrthomodeServer::CQM_OrthomodeServer()
    : saved_(workingDatabase() && workingDatabase()->orthomode())
{
}

CQM_OrthomodeServer::CQM_OrthomodeServer(bool on) : CQM_OrthomodeServer()
{
    ResetOrthomode(on);
}

CQM_OrthomodeServer::~CQM_OrthomodeServer()
{
    ResetOrthomode(saved_);
}

void CQM_OrthomodeServer::ResetOrthomode(bool on)
{
    if (KdDbDatabase* const database = workingDatabase())
        database->setOrthomode(on);
}

CQM_DocLockServer::CQM_DocLockServer() : document_(kdDocManagerPtr()->curDocument())
{
    if (document_)
        kdDocManagerPtr()->lockDocument(document_, KdAp::kWrite, nullptr, nullptr, true);
}

CQM_DocLockServer::~CQM_DocLockServer()
{
    kdDocManagerPtr()->unlockDocument(document_);
}

CQM_DatabaseServer::CQM_DatabaseServer(KdDbDatabase* db)
{
    if (!db || db == workingDatabase())
        return;
    saved_ = workingDatabase();
    kddbHostApplicationServices()->setWorkingDatabase(db);
}

CQM_DatabaseServer::~CQM_DatabaseServer()
{
    if (saved_)
        kddbHostApplicationServices()->setWorkingDatabase(saved_);
}

CQM_UcsServer::CQM_UcsServer(const KdGeMatrix3d& ucs)
{
    const bool matrixRead = kdedGetCurrentUCS(savedMatrix_) == Kdapi::eOk;
    if (matrixRead && savedMatrix_.isEqualTo(KdGeMatrix3d::kIdentity))
        return;
    const KdDbDatabase* const database = workingDatabase();
    if (!database)
        return;
    savedName_ = database->ucsname();
    if (!savedName_.isValid() && !matrixRead)
        return;
    restoreMatrix_ = !savedName_.isValid();
    kdedSetCurrentUCS(ucs);
}

CQM_UcsServer::~CQM_UcsServer()
{
    Recover();
}

void CQM_UcsServer::Recover()
{
    const KdDbObjectId name = std::exchange(savedName_, KdDbObjectId());
    const bool byMatrix = std::exchange(restoreMatrix_, false);
    if (name.isValid()) {
        const Opened<KdDbViewportTableRecord> viewport(GetActiveViewportTableRecordId(),
                                                       KdDb::kForWrite);
        if (viewport)
            viewport->setUcs(name);
    } else if (byMatrix) {
        kdedSetCurrentUCS(savedMatrix_);
    }
}

namespace {

bool isActiveViewport(const KdDbViewportTableRecord& record)
{
    const wchar_t* name = nullptr;
    return record.getName(name) == Kdapi::eOk && CString(name).CompareNoCase(L"*ACTIVE") == 0;
}

} // namespace

KdDbObjectId CQM_UcsServer::GetActiveViewportTableRecordId()
{
    const auto viewports = openTable<KdDbViewportTable>(workingDatabase(), KdDb::kForRead);
    if (!viewports)
        return {};
    for (const KdDbObjectId id : records(*viewports)) {
        const Opened<KdDbViewportTableRecord> record(id, KdDb::kForRead);
        if (record && isActiveViewport(*record))
            return id;
    }
    return {};
}
