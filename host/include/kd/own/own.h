#pragma once

/// Begins the part of a class that is the stand-in's own.
///
/// A class of the closed interface is declared as add-ons know it, up to this line; what follows
/// makes it work here. The host and its tests reach that part, for add-ons it is private; the
/// layout of a class is the same for both.
#ifdef KORRA_HOST
#define KORRA_OWN() public:
#else
#define KORRA_OWN() private:
#endif

/// What the own parts name.
namespace korra {
class BlockBoxes;
class DimensionSheet;
class DrawSink;
class MTextLayout;
class ObjectAccess;
class ObjectVisitor;
class TextPlacement;
struct DatabaseContents;
struct ObjectExtras;
struct ObjectSlot;
} // namespace korra
