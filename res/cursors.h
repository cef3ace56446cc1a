#pragma once

#include "platform/resources.h"

/// The cursors of the preview controls; a cursor here is its number alone.
inline constexpr platform::CursorResource kCursors[] = {
    {204}, // ordinary
    {207}, // panning
    {208}, // picking a zoom window
};
