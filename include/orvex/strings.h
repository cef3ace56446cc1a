#pragma once

#include "orvex/api.h"

#include <afxwin.h>

/// Texts: lists, the letter labels of a sequence, and the texts of drawing scales.
///
/// Functions that give pieces append them to the caller's array.

/// Splits a text at each occurrence of a separator; case counts.
/// @param separator  empty: ","
/// @param keepEmpty  not 0: an empty piece is kept too, but never one behind the last separator
ORVEX_API void SplitString(CString text, CString separator, CStringArray& pieces, int keepEmpty);

/// Splits a text at runs of blanks.
///
/// Only the space separates. Other white space, like a tab, is taken off the ends of the pieces. A
/// text of white space alone is one empty piece.
ORVEX_API void SplitterString(CString text, CStringArray& pieces);

/// Joins texts, a separator between each two of them.
/// @param separator  empty: ","
/// @param pieces  only read
ORVEX_API CString CombineString(CString separator, CStringArray& pieces);

/// The label that follows another one: all single characters of the alphabet come first, then all
/// pairs, then the first single character again.
/// @param label  the current label and then the next one; empty: the first is next. A character
///               that is not in the alphabet counts as the first of it. Three characters or more
///               stay as they are
/// @param alphabet  up to 255 different characters, else the label stays as it is; empty: A to Z
///                  and then a to z
/// @return the new label
ORVEX_API CString getNewLabel(CString& label, CString alphabet);

/// The text of a scale factor, "1:50" or "2.5:1", with up to six decimals.
/// @param text  untouched where the factor is not a number
/// @return true
ORVEX_API bool JudgeAndCalScale(const double& scale, CString& text);

/// Reads the text of a scale: two numbers above 1e-10 with a colon between them, of which the first
/// divided by the second is the factor. White space may stand before a number, anything behind it.
/// @param scale  untouched on failure
/// @return false when the text is no scale
ORVEX_API bool JudgeAndCalScale(const CString& text, double& scale);
