#include "tables/linetype_files.h"

#include "kd/ed.h"

namespace {

/// The full path of a definition file; empty, with a message, when it is not on the search path.
CString findDefinitionFile(const wchar_t* name)
{
    wchar_t path[260] = L"";
    if (kdedFindFile(name, path, std::size(path)) == RTNORM)
        return path;
    kdutPrintf(L"\nlineType file \"%s\" scan not be found！", name);
    return {};
}

/// Loads from one file; one that is missing defines nothing.
Kdapi::ErrorStatus loadFrom(const CString& path, const CString& name, KdDbDatabase& database)
{
    return path.IsEmpty() ? Kdapi::eUndefinedLineType : database.loadLineTypeFile(name, path);
}

} // namespace

Kdapi::ErrorStatus tables::loadFromLinetypeFiles(const CString& name,
                                                 KdDb::MeasurementValue measurement,
                                                 KdDbDatabase& database)
{
    const CString metric = findDefinitionFile(L"korraiso.lin");
    const CString imperial = findDefinitionFile(L"korra.lin");
    const bool metricFirst = measurement == KdDb::kMetric;
    const CString& preferred = metricFirst ? metric : imperial;
    const CString& fallback = metricFirst ? imperial : metric;

    Kdapi::ErrorStatus status = loadFrom(preferred, name, database);
    if (status == Kdapi::eUndefinedLineType)
        status = loadFrom(fallback, name, database);
    if (status == Kdapi::eUndefinedLineType)
        kdutPrintf(
            L"Can't load \"%s\" linetype in file %s or %s, this type line type undefined !\n",
            name.GetString(), preferred.GetString(), fallback.GetString());
    return status;
}
