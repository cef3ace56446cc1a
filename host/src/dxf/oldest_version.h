#pragma once

#include "dxf/tag_writer.h"
#include "objects/contents.h"

#include <optional>
#include <string>
#include <string_view>

namespace korra {

/// Whether a drawing came from a file of the oldest version, which knows neither light polylines
/// nor multiline texts nor a section of objects: its header says so, or it says nothing and the
/// file has neither that section nor class markers.
bool isOfOldestVersion(const DatabaseContents& contents);

/// @throw DrawingError for an entity of a kind that the oldest version does not know and has no
///        other words for
void refuseWhatItLacks(const KdDbEntity& entity);

/// Free-standing entities that the oldest version knows and that show what a new entity shows;
/// nullopt for an entity that is written itself.
/// @throw DrawingError for an entity of which they would not say all
std::optional<Pieces> newStandIns(const KdDbEntity& entity);

/// The codes of a viewport's view, where an entity's own tags tell it.
inline constexpr int kViewCodes[] = {12, 22, 16, 26, 36, 17, 27, 37, 42, 45, 51, 90};

/// True for the tags of a viewport that tell its view themselves.
bool tellsView(std::string_view viewport);

/// The view that the extended data of a viewport tells, as newer drawings tell it: tags of
/// kViewCodes. Empty where there is none.
std::string viewTags(std::string_view viewport);

/// Brings the tags of a viewport up to date, with its view in its extended data.
/// @param source  as in TagWriter::objectWritten()
std::string viewportWritten(KdDbViewport& viewport, std::string_view source, TagWriter& writer,
                            std::string_view lineEnd);

} // namespace korra
