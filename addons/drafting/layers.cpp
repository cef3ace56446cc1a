#include "commands.h"

#include "output.h"
#include "prompts.h"

namespace {

KdDbDatabase* drawing()
{
    return kddbHostApplicationServices()->workingDatabase();
}

/// Asks for a layer's properties.
/// @param name  what the description's name points to
int askLayer(std::wstring& name, QmLayerMgr::LAYERINFO& layer)
{
    std::wstring linetype;
    int status = askName(L"\nLayer: ", name);
    if (status == RTNORM)
        status = askWholeNumber(L"\nColor index: ", layer.colorIndex);
    if (status == RTNORM)
        status = askText(L"\nLinetype <CONTINUOUS>: ", linetype);
    if (status == RTNORM)
        status = askWholeNumber(L"\nLine weight, hundredths of a millimeter: ", layer.lineWeight);
    layer.name = name.c_str();
    layer.lineType = linetype.c_str();
    layer.plottable = true;
    layer.measurement = drawing()->measurement();
    return status;
}

void writeLayer(int (*write)(QmLayerMgr::LAYERINFO&, KdDbDatabase*))
{
    std::wstring name;
    QmLayerMgr::LAYERINFO layer;
    const int status = askLayer(name, layer);
    if (status != RTNORM)
        return printNone(L"layer", status);
    const int result = write(layer, drawing());
    kdutPrintf(L"\nlayer %s %d", layer.name, result);
}

} // namespace

void laymake()
{
    writeLayer(QmLayerMgr::CreateLayer);
}

void layset()
{
    writeLayer(QmLayerMgr::ModifyLayer);
}

void laylist()
{
    printNames(L"laylist", QmLayerMgr::GetLayerNameFromDrawing);
}
