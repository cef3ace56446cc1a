#pragma once

#include "kd/db/entity.h"
#include "kd/own/own.h"
#include "kd/own/planar_place.h"

#include <optional>
#include <string>

/// A dimension: points to measure between, a style, and a block of its own with the graphics.
///
/// The graphics follow the style and the overrides; they are made anew when a changed dimension is
/// closed, and on recomputeDimBlock().
class KdDbDimension : public KdDbEntity {
    KDRX_DECLARE_MEMBERS(KdDbDimension)
public:
    /// The style; of a dimension that was given none the drawing's current one.
    KdDbObjectId dimensionStyle() const;
    Kdapi::ErrorStatus setDimensionStyle(KdDbObjectId style);

    /// The block with the graphics; null until it was made.
    KdDbObjectId dimBlockId() const { return block_; }

    /// Brings the block with the graphics up to date; it must be open for writing when forced.
    /// @return eOk; eNotInDatabase; eNotOpenForWrite; eNotApplicable for a kind that the host
    /// cannot
    ///         make, eDegenerateGeometry: the graphics then stay as they are
    Kdapi::ErrorStatus recomputeDimBlock(bool force = true);

    /// The user's own text; empty: the measurement; "<>" in it stands for the measurement.
    const wchar_t* dimensionText() const { return text_.c_str(); }

    Kdapi::ErrorStatus setDimensionText(const wchar_t* text);

    KdGePoint3d textPosition() const { return textPosition_; }

    KdGeVector3d normal() const { return place_.normal(); }

    /// What is measured: drawing units, or radians for angles; before DIMLFAC.
    virtual double measurement() const { return measurement_; }

    /// The value in force of a dimension variable: the override, else the style's.
    int dimdec() const;
    int dimadec() const;
    int dimtdec() const;
    bool dimtix() const;
    bool dimtoh() const;
    bool dimtih() const;
    bool dimtofl() const;
    int dimatfit() const;
    double dimgap() const;
    int dimtad() const;
    double dimtvp() const;
    bool dimse1() const;
    bool dimse2() const;
    bool dimsd1() const;
    bool dimsd2() const;
    int dimjust() const;
    double dimlfac() const;
    double dimscale() const;

    /// Stores the override of one dimension variable in the "ACAD" extended data.
    ///
    /// The first pair of that variable is replaced; without one the pair is appended to the first
    /// "DSTYLE" section, which is made when it is missing.
    /// @return eOk; eNotOpenForWrite; eInvalidInput for a value that the variable cannot have
    Kdapi::ErrorStatus setDimdec(int value);
    Kdapi::ErrorStatus setDimadec(int value);
    Kdapi::ErrorStatus setDimtdec(int value);
    Kdapi::ErrorStatus setDimtix(bool value);
    Kdapi::ErrorStatus setDimtoh(bool value);
    Kdapi::ErrorStatus setDimtih(bool value);
    Kdapi::ErrorStatus setDimtofl(bool value);
    Kdapi::ErrorStatus setDimatfit(int value);
    Kdapi::ErrorStatus setDimgap(double value);
    Kdapi::ErrorStatus setDimtad(int value);
    Kdapi::ErrorStatus setDimtvp(double value);
    Kdapi::ErrorStatus setDimse1(bool value);
    Kdapi::ErrorStatus setDimse2(bool value);
    Kdapi::ErrorStatus setDimsd1(bool value);
    Kdapi::ErrorStatus setDimsd2(bool value);
    Kdapi::ErrorStatus setDimjust(int value);
    Kdapi::ErrorStatus setDimlfac(double value);
    Kdapi::ErrorStatus setDimscale(double value);

    /// @return as for every entity; eNotApplicable for a kind that the host cannot make anew
    Kdapi::ErrorStatus transformBy(const KdGeMatrix3d& matrix) override;

    /// Copies show the graphics of their source until they are closed as part of a drawing, and
    /// then get graphics of their own.
    Kdapi::ErrorStatus copyFrom(const KdRxObject* source) override;
    KdRxObject* clone() const override;

    /// A dimension of a kind that the host cannot make anew (its graphics stay as they are).
    KdDbDimension() = default;

    KORRA_OWN()
    void describe(korra::ObjectVisitor& visitor) override;

    void draw(korra::DrawSink& sink) const override;

    korra::ShownBlock shownBlock() const override { return {block_, 1.0}; }

    void changesDone() override;

    /// The kind's number in files: 0 rotated, 1 aligned, 2 and 5 angular, 3 diametric, 4 radial.
    virtual short kind() const { return kind_; }

    /// Takes the kind's number that was read; only classes that stand for several kinds look at it.
    virtual void setKind(short kind) { kind_ = kind; }

    /// The points that define the dimension and that only its own kind has.
    virtual void definition(korra::ObjectVisitor& visitor);

    /// @param image  what the matrix makes of the plane
    virtual void transformDefinition(const KdGeMatrix3d& matrix, const korra::PlaneImage& image);

    /// Draws the graphics. @return eOk; eNotApplicable when the kind cannot; eDegenerateGeometry
    /// for points that leave nothing to measure
    virtual Kdapi::ErrorStatus makeGraphics(korra::DimensionSheet& sheet) const;

    /// A point of the definition in the plane of the normal.
    KdGePoint2d inPlane(const KdGePoint3d& point) const;

    /// Where the user has placed the text, in the plane of the normal; none: where the style says.
    std::optional<KdGePoint2d> movedText() const;

    korra::PlanarPlace place_;
    KdGePoint3d dimLinePoint_; ///< group 10
    KdGePoint3d textPosition_; ///< group 11, in the entity coordinate system
    bool textMoved_ = false;   ///< the user has placed the text

private:
    friend class korra::DimensionSheet;
    friend class korra::ObjectAccess;

    Kdapi::ErrorStatus setOverride(int code, double value);
    Kdapi::ErrorStatus renewGraphics();

    KdDbObjectId style_;
    KdDbObjectId block_;
    bool blockIsOfSource_ = false; ///< a copy: the block belongs to what it was copied from
    KdGeMatrix3d notYetInBlock_;   ///< moves since the graphics were made
    std::wstring text_;
    double measurement_ = 0.0;
    double textRotation_ = 0.0;
    double horizontalRotation_ = 0.0;
    short attachment_ = 5;
    short kind_ = 6;
    short typeFlags_ = 32;
};

/// Measures along a given direction, or (aligned) along the line between its points.
class KdDbRotatedDimension : public KdDbDimension {
    KDRX_DECLARE_MEMBERS(KdDbRotatedDimension)
public:
    KdDbRotatedDimension() = default;

    /// @param rotation  radians, direction of the dimension line
    KdDbRotatedDimension(double rotation, const KdGePoint3d& first, const KdGePoint3d& second,
                         const KdGePoint3d& dimLinePoint);

    double rotation() const { return rotation_; }

    KdGePoint3d xLine1Point() const { return first_; }

    KdGePoint3d xLine2Point() const { return second_; }

    double measurement() const override;

    KORRA_OWN()

    short kind() const override { return 0; }

    void definition(korra::ObjectVisitor& visitor) override;
    void transformDefinition(const KdGeMatrix3d& matrix, const korra::PlaneImage& image) override;
    Kdapi::ErrorStatus makeGraphics(korra::DimensionSheet& sheet) const override;

    /// Direction of the dimension line, radians.
    virtual double direction() const { return rotation_; }

    KdGePoint3d first_;
    KdGePoint3d second_;

private:
    double rotation_ = 0.0;
    double oblique_ = 0.0;
};

class KdDbAlignedDimension : public KdDbRotatedDimension {
    KDRX_DECLARE_MEMBERS(KdDbAlignedDimension)
public:
    KdDbAlignedDimension() = default;
    KdDbAlignedDimension(const KdGePoint3d& first, const KdGePoint3d& second,
                         const KdGePoint3d& dimLinePoint);

    KORRA_OWN()

    short kind() const override { return 1; }

    double direction() const override;
};

/// Measures a radius from a centre to a point of the arc.
class KdDbRadialDimension : public KdDbDimension {
    KDRX_DECLARE_MEMBERS(KdDbRadialDimension)
public:
    KdDbRadialDimension() = default;
    KdDbRadialDimension(const KdGePoint3d& center, const KdGePoint3d& chordPoint,
                        double leaderLength);

    double measurement() const override;

    KORRA_OWN()

    short kind() const override { return 4; }

    void definition(korra::ObjectVisitor& visitor) override;
    void transformDefinition(const KdGeMatrix3d& matrix, const korra::PlaneImage& image) override;
    Kdapi::ErrorStatus makeGraphics(korra::DimensionSheet& sheet) const override;

    KdGePoint3d chordPoint_; ///< group 15
    double leaderLength_ = 0.0;
};

/// Measures a diameter between two opposite points.
class KdDbDiametricDimension : public KdDbRadialDimension {
    KDRX_DECLARE_MEMBERS(KdDbDiametricDimension)
public:
    KdDbDiametricDimension() = default;
    KdDbDiametricDimension(const KdGePoint3d& chordPoint, const KdGePoint3d& farChordPoint,
                           double leaderLength);

    KORRA_OWN()

    short kind() const override { return 3; }

    Kdapi::ErrorStatus makeGraphics(korra::DimensionSheet& sheet) const override;
};

/// Measures the angle between two lines, or about a centre between two points.
class KdDbAngularDimension : public KdDbDimension {
    KDRX_DECLARE_MEMBERS(KdDbAngularDimension)
public:
    KdDbAngularDimension() = default;

    /// The angle at `center` from `first` to `second` in which `arcPoint` lies.
    KdDbAngularDimension(const KdGePoint3d& center, const KdGePoint3d& first,
                         const KdGePoint3d& second, const KdGePoint3d& arcPoint);

    double measurement() const override;

    KORRA_OWN()

    short kind() const override { return threePoint_ ? 5 : 2; }

    void setKind(short kind) override { threePoint_ = kind != 2; }

    void definition(korra::ObjectVisitor& visitor) override;
    void transformDefinition(const KdGeMatrix3d& matrix, const korra::PlaneImage& image) override;
    Kdapi::ErrorStatus makeGraphics(korra::DimensionSheet& sheet) const override;

private:
    friend class korra::ObjectAccess;

    /// What the dimension measures, in the plane of the normal.
    struct Sector {
        KdGePoint2d vertex;
        double radius = 0.0;
        double startAngle = 0.0; ///< radians, of the first side
        double sweep = 0.0;      ///< radians to the second side, below 0 clockwise; never 0
        KdGePoint2d ends[2];     ///< where the extension lines start
    };

    std::optional<Sector> sector() const;
    bool rays(KdGePoint2d& vertex, KdGePoint2d ends[2]) const;

    /// A point of the arc, in the plane of the normal.
    KdGePoint2d arcPlace() const;

    bool threePoint_ = true;
    KdGePoint3d first_;    ///< group 13
    KdGePoint3d second_;   ///< group 14
    KdGePoint3d center_;   ///< group 15; of two lines: start of the second line
    KdGePoint3d arcPoint_; ///< group 16 of two lines, in the entity coordinate system
};
