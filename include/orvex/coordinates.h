#pragma once

#include "orvex/api.h"

#include "kd/db.h"

/// Conversions between the world system, in which a drawing is stored, the current user system
/// (UCS), in which the editor works, and entity systems, each given by its normal.
///
/// Points move with the origin; displacements (`disp`) are only turned.

/// Translates between the user system and the world. `in` and `out` may be the same object.
/// @param out  written on failure too, then zero
/// @return the host's status: 5100 (RTNORM) on success
ORVEX_API int UCS2WCS(const KdGePoint3d& in, KdGePoint3d& out);
ORVEX_API int UCS2WCS(const KdGeVector3d& in, KdGeVector3d& out);
ORVEX_API int WCS2UCS(const KdGePoint3d& in, KdGePoint3d& out);
ORVEX_API int WCS2UCS(const KdGeVector3d& in, KdGeVector3d& out);

/// Translates three doubles: `wc` world, `uc` user, `ec` entity system.
/// @param result  three doubles, may be `pt`; on failure as the host left them
/// @param normal  three doubles: the entity's normal; only read
/// @return true on success, unlike UCS2WCS() and WCS2UCS()
ORVEX_API bool rx_wc2uc(const double* pt, double* result, bool disp);
ORVEX_API bool rx_uc2wc(const double* pt, double* result, bool disp);
ORVEX_API bool rx_wc2ec(const double* pt, double* result, double* normal, bool disp);
ORVEX_API bool rx_ec2wc(const double* pt, double* result, double* normal, bool disp);
ORVEX_API bool rx_uc2ec(const double* pt, double* result, double* normal, bool disp);
ORVEX_API bool rx_ec2uc(const double* pt, double* result, double* normal, bool disp);

/// The matrix from the user system to the world, made of "UCSORG", "UCSXDIR" and "UCSYDIR".
///
/// A variable that is no point in space only prints a message, "UCSORG not a point.\n".
/// @param mat  the identity on failure
/// @return false when one of the three cannot be read
ORVEX_API bool rx_ucsmat(KdGeMatrix3d& mat);

/// Copy a matrix to and from four rows of four doubles, entry by entry. The destination comes
/// first.
ORVEX_API void transKdGeMetrixToKdsMetrix(double (*out)[4], KdGeMatrix3d& in);
ORVEX_API void transKdsMetrixToKdGeMetrix(KdGeMatrix3d& out, double (*in)[4]);

/// Sets four rows of four doubles to the identity.
ORVEX_API void indent_matrix(double (*m)[4]);
