#pragma once

#include "kd/db/ids.h"
#include "kd/ge.h"
#include "kd/resbuf.h"
#include "kd/rx.h"

#include <windows.h>

class CWnd;

/// Prints on the command line; the format is Windows' (%s takes a wide string).
int kdutPrintf(const wchar_t* format, ...);

// System variables ------------------------------------------------------------------------------

/// Reads a system variable into a result buffer. A string is the caller's: free it with
/// kdapi_free().
/// @return RTNORM; RTERROR for an unknown name or a null argument, the buffer then untouched
int kdedGetVar(const wchar_t* name, resbuf* result);

/// Sets a system variable.
/// @return RTNORM; RTERROR for an unknown name, a wrong type, a value out of range, a variable that
///         can only be read
int kdedSetVar(const wchar_t* name, const resbuf* value);

// Files
// ---------------------------------------------------------------------------------------------

/// Looks a file up: the folders of the search path in their order, then the host's support folder;
/// a full path is taken as it is. Where no file has exactly the name, case is disregarded.
/// @param size  characters that `result` holds, the terminating zero included
/// @return RTNORM and the full path; RTERROR, the result untouched, when there is no such file or
///         its path does not fit
int kdedFindFile(const wchar_t* name, wchar_t* result, std::size_t size);

// Coordinate systems and views --------------------------------------------------------------------

/// Translates a point or a displacement between coordinate systems.
/// @param from, to  designators: RTSHORT 0 world, 1 current user system, 2 display system of the
///                  current viewport, 3 display system of the sheet (only to and from 2);
///                  RT3DPOINT the normal of an entity coordinate system; RTENAME an entity
/// @param displacement  0 a point, else a vector
/// @param result  may be the same array as `point`
/// @return RTNORM; RTERROR, the result untouched, for an unknown designator or null argument
int kdedTrans(const kds_point point, const resbuf* from, const resbuf* to, int displacement,
              kds_point result);

/// The matrix from the current user coordinate system to the world. @return eOk; eNoDocument
Kdapi::ErrorStatus kdedGetCurrentUCS(KdGeMatrix3d& matrix);

/// Makes an unnamed coordinate system current. @return eOk; eNoDocument; eInvalidInput for a matrix
/// whose axes are not at right angles
Kdapi::ErrorStatus kdedSetCurrentUCS(const KdGeMatrix3d& matrix);

/// The current viewport: the "*Active" record of the model tab, a sheet's own viewport, or the
/// viewport that was entered; null without a document.
KdDbObjectId kdedGetCurViewportObjectId();

/// The angle of the direction from one point to another in the plane, in [0, 2π).
double kdutAngle(const kds_point from, const kds_point to);

/// The point at a direction in the plane and a distance from a point; z is that point's.
/// @param angle   radians from the x axis, counter-clockwise
/// @param result  may be the same array as `from`
void kdutPolar(const kds_point from, double angle, double dist, kds_point result);

/// Snaps a point to the geometry under the pick box.
/// @param modes  abbreviations with commas: END, MID, INT, INS, NOD
/// @param result  the snapped point, in the user coordinate system like `point`
/// @return RTNORM; RTERROR when nothing snaps or a mode is unknown, the result then `point`
int kdedOsnap(const kds_point point, const wchar_t* modes, kds_point result);

// Prompts -----------------------------------------------------------------------------------------

/// Flags and keywords ("First Second", capitals are the shortest form) for the next prompt only.
int kdedInitGet(int flags, const wchar_t* keywords);

/// @return RTNORM; RTNONE for Enter; RTKWORD; RTCAN; RTERROR. The result is untouched otherwise
int kdedGetReal(const wchar_t* prompt, double* result);
int kdedGetPoint(const kds_point base, const wchar_t* prompt, kds_point result);

/// Reads a text. @param allowBlanks  0: a blank ends the text, what follows it is dropped
/// @return RTNORM, for Enter with an empty text; RTCAN; RTERROR
int kdedGetString(int allowBlanks, const wchar_t* prompt, wchar_t* result, std::size_t size);

/// The keyword or text that ended the last prompt.
int kdedGetInput(wchar_t* result, std::size_t size);

/// The next input event while tracking.
/// @param track  bits: 1 report cursor moves, 8 do not show a cursor box
/// @param type  RTNORM-coded kind: 3 a picked point, 5 a cursor move, 2 a key, 25 a secondary click
/// @return RTNORM; RTCAN; RTERROR
int kdedGrRead(int track, int* type, resbuf* result);

// Picking -----------------------------------------------------------------------------------------

/// Picks the innermost entity at a point, through block references and viewports.
///
/// A dimension is picked whole. In paper space a pick that hits nothing on the sheet goes through
/// the last viewport that lies under it; that viewport is then the last node of the chain.
/// @param prompt  null: the host's own, "\nSelect object: "
/// @param picked  entity name of the innermost entity; of an old-style polyline, of its vertex
/// @param point  user coordinates: given when `pickFlag` is not 0, else the picked point
/// @param pickFlag  not 0: pick at `point` without asking
/// @param transform  from the picked entity's coordinates to the world of the picked space
/// @param containers  names of the containing entities, innermost first; null for a top-level pick;
///                    owned by the caller
/// @param spaceFlag  not 0: paper space is current
/// @param marker  graphics marker of the picked part, counted from 1; may be null
/// @return RTNORM; RTERROR for a miss, Enter, Space and a secondary click alike; RTCAN; RTKWORD
int kdedNEntSelPEx(const wchar_t* prompt, kds_name picked, kds_point point, int pickFlag,
                   kds_matrix transform, resbuf** containers, unsigned int spaceFlag,
                   std::int64_t* marker);

/// Picks a nested entity in the current space, as kdedNEntSelPEx() does, without its marker.
int kdedNEntSelP(const wchar_t* prompt, kds_name picked, kds_point point, int pickFlag,
                 kds_matrix transform, resbuf** containers);

/// Selects entities. Only a selection at one point is offered: `mode` null, `first` a point in user
/// coordinates, the others null.
/// @return RTNORM and a set, freed with kdedSSFree(); RTERROR when nothing is there; RTCAN
int kdedSSGet(const wchar_t* mode, const void* first, const void* second, const resbuf* filter,
              kds_name set);
int kdedSSFree(const kds_name set);

/// How members of a set were selected: for each a list RTLB, method, entity name, marker, and for
/// picks a point descriptor (RTLB, kind, point, RTLE), closed by RTLE.
/// @param index  the member; the list is owned by the caller
/// @return RTNORM; RTERROR
int kdedSSNameX(resbuf** list, const kds_name set, std::int64_t index);

// Screen ------------------------------------------------------------------------------------------

/// Makes an entity's graphics anew. @return RTNORM; RTERROR for an unknown name
int kddbEntUpd(const kds_name entity);

/// Draws an entity: mode 1 (or 0) draws, 2 hides, 3 highlights, 4 takes the highlight off.
int kdedRedraw(const kds_name entity, int mode);

/// Colour indexes of the host's screen.
struct KdColorSettings {
    std::uint32_t modelBackground;
    std::uint32_t sheetBackground;
};

/// @return true; false, the settings untouched, for null and when the host refuses
bool kdedGetCurrentColors(KdColorSettings* settings);

/// The host's main window.
HWND kdsw_kdapiMainWnd();

/// The main window as the window framework has it; null when no host runs.
CWnd* kdedGetKdapiFrame();

void qmSetMainFrameCaptionTitle(const wchar_t* caption);

/// Readies the host's user-interface library for the calling module.
void InitKdUiDLL();

// Commands and list-processing functions
// ------------------------------------------------------------

class KdEdUIContext;

using KdRxFunctionPtr = void (*)();

/// Commands by group and name.
class KdEdCommandStack : public KdRxObject {
    KDRX_DECLARE_MEMBERS(KdEdCommandStack)
public:
    /// Adds a command; names are compared without regard to case.
    /// @return eOk; eDuplicateKey when the group has a command of the global name; eInvalidInput
    virtual Kdapi::ErrorStatus addCommand(const wchar_t* group, const wchar_t* globalName,
                                          const wchar_t* localName, std::int32_t flags,
                                          KdRxFunctionPtr function,
                                          KdEdUIContext* context = nullptr, int index = -1,
                                          HINSTANCE resources = nullptr) = 0;

    /// @return eOk; eKeyNotFound
    virtual Kdapi::ErrorStatus removeCmd(const wchar_t* group, const wchar_t* globalName) = 0;
};

/// Defines, undefines and binds list-processing functions; kdedGetFunCode() is the number of the
/// function being invoked. @return RTNORM; RTERROR
int kdedDefun(const wchar_t* name, short code);
int kdedUndef(const wchar_t* name, short code);
int kdedRegFunc(int (*function)(), short code);
int kdedGetFunCode();

/// Calls a list-processing function: one of the host's own, or one that a module has defined in the
/// current document; a module's function gets no arguments and gives no result.
///
/// The host's own is "korra_colordlg" (RTSHORT the index to begin with): it asks for a colour on
/// the command line and gives one RTSHORT, its index, 0 to 256; nothing when it is cancelled.
/// @param arguments  RTSTR the function's name, then its arguments
/// @param result  the new list, owned by the caller; null when there is none
/// @return RTNORM; RTERROR for null, an unknown function or wrong arguments
int kdedInvoke(const resbuf* arguments, resbuf** result);
