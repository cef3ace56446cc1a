#pragma once

#include "orvex/api.h"

#include "kd/db.h"

#include <afxwin.h>
#include <memory>

class KdApDocument;

/// Savers: each keeps one setting of the host when it is made and puts it back when its scope ends,
/// also by an exception. Nested savers of one setting end with what the outermost one found.
///
/// None reports a failure: a setting that could not be changed stays as it is, and is written back
/// all the same. A copy restores the same value once more; copying changes no setting.

/// Keeps "CMDECHO".
class ORVEX_API CQM_CmdechoServer {
public:
    CQM_CmdechoServer();

    /// Keeps the value, then sets another: its low 16 bits.
    explicit CQM_CmdechoServer(int value);

    CQM_CmdechoServer(const CQM_CmdechoServer&) = default;
    CQM_CmdechoServer& operator=(const CQM_CmdechoServer&) = default;
    virtual ~CQM_CmdechoServer();

private:
    int saved_;
};

/// Keeps "CMDECHO" and sets it to 0.
class ORVEX_API CCmdEcho {
public:
    CCmdEcho();
    CCmdEcho(const CCmdEcho&) = default;
    CCmdEcho& operator=(const CCmdEcho&) = default;
    ~CCmdEcho();

private:
    int saved_;
};

/// Keeps the object snap modes, "OSMODE".
class ORVEX_API CQM_OsnapServer {
public:
    CQM_OsnapServer();

    /// Keeps the modes, then sets others: the low 16 bits.
    explicit CQM_OsnapServer(int value);

    CQM_OsnapServer(const CQM_OsnapServer&) = default;
    CQM_OsnapServer& operator=(const CQM_OsnapServer&) = default;
    virtual ~CQM_OsnapServer();

private:
    int saved_;
};

/// Keeps the ortho mode of the working database; what is restored goes to the database that is the
/// working one then.
class ORVEX_API CQM_OrthomodeServer {
public:
    CQM_OrthomodeServer();

    /// Keeps the mode, then sets another.
    explicit CQM_OrthomodeServer(bool on);

    CQM_OrthomodeServer(const CQM_OrthomodeServer&) = default;
    CQM_OrthomodeServer& operator=(const CQM_OrthomodeServer&) = default;
    virtual ~CQM_OrthomodeServer();

    /// Sets the mode meanwhile; what is restored stays the same.
    void ResetOrthomode(bool on);

private:
    bool saved_;
};

/// Keeps the current layer of the working database, by name; a name that the drawing lacks changes
/// nothing. What is restored goes to the database that is the working one then.
class ORVEX_API CQM_LayerServer {
public:
    CQM_LayerServer();

    /// Keeps the layer, then makes another one current.
    explicit CQM_LayerServer(CString name);

    CQM_LayerServer(const CQM_LayerServer&) = default;
    CQM_LayerServer& operator=(const CQM_LayerServer&) = default;
    virtual ~CQM_LayerServer();

private:
    CString saved_;
};

/// Keeps the current text style of the working database, as CQM_LayerServer keeps the layer.
class ORVEX_API CQM_TextStyleServer {
public:
    CQM_TextStyleServer();

    /// Keeps the style, then makes another one current.
    explicit CQM_TextStyleServer(CString name);

    CQM_TextStyleServer(const CQM_TextStyleServer&) = default;
    CQM_TextStyleServer& operator=(const CQM_TextStyleServer&) = default;
    virtual ~CQM_TextStyleServer();

private:
    CString saved_;
};

/// Keeps the current dimension style of the working database, as CQM_LayerServer keeps the layer,
/// and with it the current dimension variables, those included that differ from the style.
///
/// A copy has variables of its own and restores them once more.
class ORVEX_API CQM_DimStyleServer {
public:
    CQM_DimStyleServer();

    /// Keeps style and variables, then makes another style current with its values.
    explicit CQM_DimStyleServer(CString name);

    CQM_DimStyleServer(const CQM_DimStyleServer& other);
    CQM_DimStyleServer& operator=(const CQM_DimStyleServer& other);

    /// Restores the style, then the variables unless they could not be read.
    virtual ~CQM_DimStyleServer();

private:
    CString saved_;
    std::unique_ptr<KdDbDimStyleTableRecord> variables_;
};

/// Locks the current document for writing; locks nothing when there is none.
///
/// A copy unlocks the document once more.
class ORVEX_API CQM_DocLockServer {
public:
    CQM_DocLockServer();
    CQM_DocLockServer(const CQM_DocLockServer&) = default;
    CQM_DocLockServer& operator=(const CQM_DocLockServer&) = default;
    virtual ~CQM_DocLockServer();

private:
    KdApDocument* document_;
};

/// Makes a database the working one.
class ORVEX_API CQM_DatabaseServer {
public:
    /// Changes and restores nothing for null and for the database that is working already.
    explicit CQM_DatabaseServer(KdDbDatabase* db);

    CQM_DatabaseServer(const CQM_DatabaseServer&) = default;
    CQM_DatabaseServer& operator=(const CQM_DatabaseServer&) = default;
    virtual ~CQM_DatabaseServer();

private:
    KdDbDatabase* saved_ = nullptr;
};

/// Makes another user coordinate system current, unless the world system is current.
class ORVEX_API CQM_UcsServer {
public:
    /// While the world system is current, nothing is changed and nothing will be restored; the same
    /// when the system cannot be read and has no name either.
    /// @param ucs  maps user coordinates to world coordinates
    explicit CQM_UcsServer(const KdGeMatrix3d& ucs);

    CQM_UcsServer(const CQM_UcsServer&) = default;
    CQM_UcsServer& operator=(const CQM_UcsServer&) = default;
    ~CQM_UcsServer();

    /// Restores now and forgets, so that a second call and the destructor do nothing.
    ///
    /// A system with a name comes back through the active viewport of the working database, one
    /// without through its matrix.
    void Recover();

private:
    /// The record "*ACTIVE" of the working database's viewport table; null when there is none.
    KdDbObjectId GetActiveViewportTableRecordId();

    KdDbObjectId savedName_;
    KdGeMatrix3d savedMatrix_;
    bool restoreMatrix_ = false;
};
