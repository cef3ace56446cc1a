#pragma once

#include "orvex/api.h"

#include "kd/db.h"

#include <afxwin.h>

/// The layers of a drawing.
///
/// A database must not be null where nothing else is said. Names are compared without regard to
/// case; erased layers do not count.
namespace QmLayerMgr {

/// A layer as it is to be made, or as it was read.
struct LAYERINFO {
    const wchar_t* name{}; ///< not owned; null makes every operation fail
    bool frozen{};
    bool off{};
    bool vpdflt{}; ///< frozen in viewports that are made later
    bool locked{};
    int colorIndex{}; ///< written as 7: 0, below -3 and above 255
    int lineWeight{}; ///< hundredths of a millimetre; what is no line weight of the host is written
                      ///< as -3, the default one
    CString lineType; ///< empty: written as "CONTINUOUS"
    bool plottable{};

    /// Where to look first for a linetype that the drawing lacks; see QmLTypeMgr::LoadLType().
    KdDb::MeasurementValue measurement{};
};

/// Makes a layer. A linetype that the drawing lacks is loaded, with the messages of
/// QmLTypeMgr::LoadLType(); when that fails the layer is continuous.
/// @param info  only read
/// @param db  may be null
/// @return 1; -1, nothing changed, when there is a layer of that name; 0 for a null name, a null
///         database, a table that cannot be written or refuses the layer
ORVEX_API int CreateLayer(LAYERINFO& info, KdDbDatabase* db);

/// Changes every property of a layer. Unlike CreateLayer() it loads a linetype under the name as it
/// is given, with the same messages, but without touching "FILEDIA".
/// @param db  may be null
/// @return 1; -1, nothing changed, when there is no such layer; 0 for a null name, a null database
///         or what cannot be opened: without the linetype table all but the linetype is changed
ORVEX_API int SetLayerInfo(LAYERINFO info, KdDbDatabase* db);

/// As SetLayerInfo().
ORVEX_API int ModifyLayer(LAYERINFO& info, KdDbDatabase* db);

/// Reads a layer.
/// @param info  `name` says which one; `measurement` is untouched. The colour is the unsigned
///              16-bit number that the host keeps
/// @param db  may be null
/// @return 1; -1, the record untouched, when there is no such layer; 0 for a null name, a null
///         database, a layer that cannot be opened for writing; also 0, all but the linetype read,
///         when the linetype cannot be opened
ORVEX_API int GetLayerInfo(LAYERINFO& info, KdDbDatabase* db);

/// @return 1 when there is a layer of that name; 0 also when the table cannot be opened
ORVEX_API int FindLayer(CString name, KdDbDatabase* db);

/// As FindLayer(), and 0 for a null name.
ORVEX_API int LayerIsExist(const wchar_t* name, KdDbDatabase* db);

/// The id of a layer; null when there is none of that name or the table cannot be opened.
ORVEX_API KdDbObjectId GetLayerId(const wchar_t* name, KdDbDatabase* db);

/// @param id  null when there is no such layer; untouched for a null name
/// @return 1 when there is one; else 0
ORVEX_API int GetLayerId(KdDbObjectId& id, const wchar_t* name, KdDbDatabase* db);

/// The colour index of a layer.
/// @param color  1 on failure
/// @return 1; 0 for a null name, an unknown layer, one that cannot be opened
ORVEX_API int GetLayerColor(unsigned short& color, const wchar_t* name, KdDbDatabase* db);
ORVEX_API int GetLayerColor(unsigned short& color, KdDbObjectId id);

/// The name of a layer's linetype.
/// @param lineType  untouched on failure
/// @return 1; -1 for a null name; 0 for an unknown layer, a layer or a linetype that cannot be
///         opened
ORVEX_API int GetLayerLType(CString& lineType, const wchar_t* name, KdDbDatabase* db);

/// The line weight of a layer; "LWDEFAULT" for the default one (-3).
/// @param lineWeight  "LWDEFAULT" also for a null name and an unknown layer; untouched when the
///                    layer cannot be opened
/// @return 0 for a null name and a layer that cannot be opened; else 1, for an unknown layer too,
///         unless "LWDEFAULT" was wanted and could not be read
ORVEX_API int GetLayerLWeight(int& lineWeight, const wchar_t* name, KdDbDatabase* db);

/// The line weight of a layer by its id, but 0 for a null one, with "LWDEFAULT" as the line weight.
ORVEX_API int GetLayerLWeight(int& lineWeight, KdDbObjectId id);

/// Appends the names of all layers in table order.
/// @param db  may be null
/// @return 1; 0, nothing appended, for a null database or a table that cannot be opened
ORVEX_API int GetLayerNameFromDrawing(CStringArray& names, KdDbDatabase* db);

/// The name of the current layer; empty when it cannot be read, and for null.
ORVEX_API CString GetCurrentLayer(KdDbDatabase* db);

/// Makes a layer current.
/// @return 1, whatever the host says to it; 0 when there is no such layer or the table cannot be
///         opened
ORVEX_API int SetCurrentLayer(CString name, KdDbDatabase* db);

/// @return 1 when the layer is on; 0 when it is off or cannot be opened; -1 for a null name and an
///         unknown layer
ORVEX_API int IsLayerOn(const wchar_t* name, KdDbDatabase* db);

} // namespace QmLayerMgr

/// The colour of a layer.
/// @return the current entity colour for a name that the table lacks; by layer when the table or
///         the layer cannot be opened
ORVEX_API KdCmColor GetColorIndexFromLayer(const wchar_t* name, KdDbDatabase* db);

/// The line weight of a layer.
/// @return the current entity line weight for a name that the table lacks; the default one (-3)
///         when the table or the layer cannot be opened
ORVEX_API KdDb::LineWeight GetLineWeightFromLayer(const wchar_t* name, KdDbDatabase* db);

/// @return 1 when the entity's layer is locked; 0 also for null and when the layer cannot be read
ORVEX_API int LayerIsLocked(KdDbEntity* entity);
