#pragma once

#include "kd/db.h"

#include <memory>
#include <string>
#include <vector>

namespace korra {

/// The dimension variables in force, ready to draw with: lengths in drawing units, DIMSCALE in
/// them.
struct DimensionLook {
    explicit DimensionLook(const KdDbDimension& dimension);

    double arrowSize;       ///< DIMASZ
    double tickSize;        ///< DIMTSZ; above 0: ticks instead of arrows
    double extensionOffset; ///< DIMEXO
    double extensionBeyond; ///< DIMEXE
    double lineBeyond;      ///< DIMDLE; of lines with ticks
    double gap;             ///< DIMGAP
    double textHeight;      ///< DIMTXT, or the text style's own
    double textRaise;       ///< DIMTVP times the text's height
    double centerMark;      ///< DIMCEN
    bool isBoxed;           ///< DIMGAP is negative
    bool hideExtension[2];  ///< DIMSE1, DIMSE2
    bool hideLine[2];       ///< DIMSD1, DIMSD2
    bool horizontalInside;  ///< DIMTIH
    bool horizontalOutside; ///< DIMTOH
    bool forceTextInside;   ///< DIMTIX
    bool forceLine;         ///< DIMTOFL
    bool noOutsideLines;    ///< DIMSOXD
    int fit;                ///< DIMATFIT
    int vertical;           ///< DIMTAD
    int justify;            ///< DIMJUST
    KdCmColor lineColor;
    KdCmColor extensionColor;
    KdCmColor textColor;
    KdDbObjectId textStyle;
};

/// The width and height that a text takes, drawing units.
struct TextBox {
    double width = 0.0;
    double height = 0.0;
};

/// What a dimension draws on: takes shapes in the plane of its normal, makes entities of them.
class DimensionSheet {
public:
    explicit DimensionSheet(const KdDbDimension& dimension);

    const DimensionLook& look() const { return look_; }

    /// Direction, radians, of text that is set horizontally.
    double horizontal() const;

    void line(const KdGePoint2d& start, const KdGePoint2d& end, const KdCmColor& color);

    /// @param endAngle  above `startAngle`
    void arc(const KdGePoint2d& center, double radius, double startAngle, double endAngle,
             const KdCmColor& color);

    /// An arrow head, or a tick, at a point of a dimension line.
    /// @param body  unit direction from the tip to the rest of the arrow
    void arrow(const KdGePoint2d& tip, const KdGeVector2d& body);

    /// The line from a measured point to its end of the dimension line.
    /// @param index  0 or 1: which of the two
    void extensionLine(int index, const KdGePoint2d& measured, const KdGePoint2d& end);

    /// A cross at the centre of an arc, where the style asks for one.
    void centerMark(const KdGePoint2d& center);

    /// The size of a text as it would be set.
    TextBox measure(const std::wstring& text) const;

    /// Sets a text about its middle.
    void text(const std::wstring& contents, const KdGePoint2d& center, double angle);

    /// The middle of the text that was set, in the entity coordinate system of the normal.
    KdGePoint3d textPosition() const { return {textCenter_.x, textCenter_.y, elevation_}; }

    /// Moves everything drawn into a block of a database.
    void putInto(KdDbObjectId block);

private:
    void add(std::unique_ptr<KdDbEntity> entity, const KdCmColor& color);
    KdGePoint3d inBlock(const KdGePoint2d& point) const;
    std::unique_ptr<KdDbMText> newText(const std::wstring& contents) const;

    const KdDbDimension& dimension_;
    DimensionLook look_;
    double elevation_;
    KdGeMatrix3d toBlock_;
    KdGePoint2d textCenter_;
    std::vector<std::unique_ptr<KdDbEntity>> entities_;
};

} // namespace korra
