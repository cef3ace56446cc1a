#pragma once

#include "orvex/orvex.h"

#include <string>

/// A number with up to six decimals, trailing zeros cut; never "-0".
std::wstring numberText(double value);

/// An angle in radians; a full turn is 0.
std::wstring angleText(double angle);

/// Three numbers with blanks between.
std::wstring pointText(const KdGePoint3d& point);

/// An object's handle in capital hexadecimal digits.
std::wstring handleText(KdDbObjectId id);

/// The nearest class of an object that add-ons tell apart: every dimension is a "KdDbDimension".
std::wstring classText(KdDbObjectId id);

/// Prints that a command came to no result, and why.
/// @param word  what the command's lines begin with
void printNone(const wchar_t* word, int status);

/// Prints the names that a service lists, one a line.
/// @param word  of the command, for the line when there is no list
void printNames(const wchar_t* word, int (*list)(CStringArray& names, KdDbDatabase* drawing));
