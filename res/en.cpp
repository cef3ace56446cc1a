#include "cursors.h"

namespace {
constexpr platform::StringResource kStrings[] = {
    // Dragging a selection.
    {101, L"\nSpecify target position:"},
    {103, L"\nScale factor<1.0>: "},
    {104, L"\nRotation angle<0.0>: "},
    {105, L"\nInvalid input!"},

    // Text styles and dimension styles; 106 serves both.
    {106, L"\nThe current database already has a style \"%s\"!"},
    {107, L"\nwindow font can't be empty!"},
    {108, L"\nThe current database has no dimension style \"%s\"!"},

    // Curves as points.
    {109, L"\nThe polyline does not have enough points"},
    {110, L"\nData: %d is wrong!"},
    {111, L"\nThe polyline contains an invalid arc"},
    {112, L"\nThe data of the smallest arc could not be read"},
    {113, L"\nThe data of arc %d could not be read!"},
    {114, L"\nThere may be a faulty point"},
    {115, L"\nAn unknown error occurred while reading the points of the arc, please try again!"},
};
} // namespace

PLATFORM_RESOURCES = {kStrings, kCursors};
