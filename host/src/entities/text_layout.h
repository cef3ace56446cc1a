#pragma once

#include "gi/draw_sink.h"
#include "kd/db/text.h"

#include <memory>
#include <string_view>
#include <vector>

namespace korra {

/// Advance of a text in drawing units: real glyph advances of the style's font at a height of
/// capitals, times the width factor.
/// @param style  null or unreadable: the host's substitute font
double textWidth(std::wstring_view text, KdDbObjectId style, double height, double widthFactor);

/// The map that slants and widens letters about the left end of their base line.
/// @param oblique  radians, held to 85 degrees either way
KdGeMatrix3d letterShape(double oblique, double widthFactor);

/// A single line of text, placed and aligned.
TextRun layOutText(const KdDbText& text);

/// A single line of text with another one shown in its place, such as the tag of an attribute
/// definition.
TextRun layOutText(const KdDbText& text, std::wstring_view shown);

/// The lines of a multiline text that show anything, top line first.
std::vector<TextRun> layOutMText(const KdDbMText& text);

/// Free-standing texts that show these lines, without what all entities have.
std::vector<std::unique_ptr<KdDbText>> newLinesOf(const KdDbMText& text);

/// What the lines of a multiline text take, drawing units: the longest line, trailing blanks
/// included, and the height from the top of the first to the base line of the last.
struct MTextSize {
    double width = 0.0;
    double height = 0.0;
};

MTextSize measureMText(const KdDbMText& text);

} // namespace korra
