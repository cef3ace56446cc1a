#include "orvex/savers.h"

#include "orvex/dim_styles.h"
#include "orvex/layers.h"
#include "orvex/text_styles.h"
#include "support/working_database.h"

using support::workingDatabase;

CQM_LayerServer::CQM_LayerServer() : saved_(QmLayerMgr::GetCurrentLayer(workingDatabase())) {}

CQM_LayerServer::CQM_LayerServer(CString name) : CQM_LayerServer()
{
    QmLayerMgr::SetCurrentLayer(name, workingDatabase());
}

CQM_LayerServer::~CQM_LayerServer()
{
    QmLayerMgr::SetCurrentLayer(saved_, workingDatabase());
}

CQM_TextStyleServer::CQM_TextStyleServer()
    : saved_(TxtStyleMgr::GetCurrentTextStyle(workingDatabase()))
{
}

CQM_TextStyleServer::CQM_TextStyleServer(CString name) : CQM_TextStyleServer()
{
    TxtStyleMgr::SetCurrentTextStyle(name, workingDatabase());
}

CQM_TextStyleServer::~CQM_TextStyleServer()
{
    TxtStyleMgr::SetCurrentTextStyle(saved_, workingDatabase());
}

namespace {

using Variables = std::unique_ptr<KdDbDimStyleTableRecord>;

/// The current dimension variables of the working database; null when they cannot be read.
Variables currentVariables()
{
    auto variables = std::make_unique<KdDbDimStyleTableRecord>();
    const KdDbDatabase* const database = workingDatabase();
    if (!database || database->getDimstyleData(variables.get()) != Kdapi::eOk)
        return nullptr;
    return variables;
}

/// A record of its own with the same values; null when there are none.
Variables copyOf(const Variables& variables)
{
    auto copy = std::make_unique<KdDbDimStyleTableRecord>();
    if (!variables || copy->copyFrom(variables.get()) != Kdapi::eOk)
        return nullptr;
    return copy;
}

} // namespace

CQM_DimStyleServer::CQM_DimStyleServer() : variables_(currentVariables())
{
    saved_ = DimStyleMgr::GetCurrentDimStyle(workingDatabase());
}

CQM_DimStyleServer::CQM_DimStyleServer(CString name) : CQM_DimStyleServer()
{
    DimStyleMgr::SetCurrentDimStyle(name, 1, workingDatabase());
}

CQM_DimStyleServer::CQM_DimStyleServer(const CQM_DimStyleServer& other)
    : saved_(other.saved_), variables_(copyOf(other.variables_))
{
}

CQM_DimStyleServer& CQM_DimStyleServer::operator=(const CQM_DimStyleServer& other)
{
    saved_ = other.saved_;
    variables_ = copyOf(other.variables_);
    return *this;
}

CQM_DimStyleServer::~CQM_DimStyleServer()
{
    KdDbDatabase* const database = workingDatabase();
    DimStyleMgr::SetCurrentDimStyle(saved_, 1, database);
    if (database && variables_)
        database->setDimstyleData(variables_.get());
}
