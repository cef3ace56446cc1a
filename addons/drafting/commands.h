#pragma once

/// The add-on's commands, one for a main service of the library each.
///
/// A command prints its word and what it came to on a line of its own; one that comes to no result
/// prints its word, "none" and the status.

/// Overrides one dimension variable of a picked dimension: pick, variable, value.
void dimset();

/// Says what was picked, what contains it, through which viewport, where, and under which
/// transform.
void pickinfo();

/// Adds a copy of the picked entity, of a light polyline of the picked segment, to the current
/// space.
void segment();

/// Divides a picked curve into points: pick, step.
void curvepts();

/// Says where two picked entities cross: picks.
void cross();

/// Makes a region of curves, which go: picks, Enter.
void mkregion();

/// Adds the outline of a picked region, ellipse or spline to the current space.
void outline();

/// Says where an annotation attaches to a picked curve: pick, point.
void attach();

/// Make and change a layer: name, colour index, linetype (Enter: continuous), line weight in
/// hundredths of a millimetre. Then list the names of all.
void laymake();
void layset();
void laylist();

/// Loads a linetype: name. Then lists the names of all.
void ltload();
void ltlist();

/// Make and change a text style: name, font file (.shx) or family, big font file or Enter, width
/// factor, oblique degrees. Then list the names of all.
void tsmake();
void tsset();
void tslist();

/// Make and change a dimension style: name, text style or Enter, text height, arrow size. Then list
/// the names of all.
void dsmake();
void dsset();
void dslist();
