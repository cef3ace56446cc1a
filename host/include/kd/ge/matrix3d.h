#pragma once

#include "kd/ge/point3d.h"
#include "kd/ge/scale3d.h"

/// A transform of space: four rows of four doubles, applied to column vectors.
///
/// In a product the right factor acts first: (a * b) maps a point p to a(b(p)).
class KdGeMatrix3d {
public:
    /// The identity.
    constexpr KdGeMatrix3d() = default;

    static const KdGeMatrix3d kIdentity;

    constexpr double operator()(unsigned int row, unsigned int column) const
    {
        return entry[row][column];
    }

    constexpr double& operator()(unsigned int row, unsigned int column)
    {
        return entry[row][column];
    }

    KdGeMatrix3d operator*(const KdGeMatrix3d& right) const;

    KdGeMatrix3d& operator*=(const KdGeMatrix3d& right) { return *this = *this * right; }

    /// Exact equality; `isEqualTo` compares under a tolerance.
    bool operator==(const KdGeMatrix3d&) const = default;

    /// Compares the columns of the linear part by the vector tolerance, the translation by the
    /// point tolerance and the last row by the vector tolerance.
    bool isEqualTo(const KdGeMatrix3d& other, const KdGeTol& tol = KdGeContext::gTol) const;

    KdGeMatrix3d& setToIdentity() { return *this = kIdentity; }

    KdGeMatrix3d& setToTranslation(const KdGeVector3d& offset);
    KdGeMatrix3d& setToRotation(double angle, const KdGeVector3d& axis,
                                const KdGePoint3d& center = KdGePoint3d::kOrigin);
    KdGeMatrix3d& setToScaling(double factor, const KdGePoint3d& center = KdGePoint3d::kOrigin);

    static KdGeMatrix3d translation(const KdGeVector3d& offset);

    /// A turn about the axis through a point; the identity for a zero axis.
    /// @param angle  radians, counter-clockwise seen against the axis
    static KdGeMatrix3d rotation(double angle, const KdGeVector3d& axis,
                                 const KdGePoint3d& center = KdGePoint3d::kOrigin);

    static KdGeMatrix3d scaling(double factor, const KdGePoint3d& center = KdGePoint3d::kOrigin);

    /// Scales each axis by its own factor about a point.
    static KdGeMatrix3d scaling(const KdGeScale3d& factors,
                                const KdGePoint3d& center = KdGePoint3d::kOrigin);

    /// The reflection in a plane.
    static KdGeMatrix3d mirroring(const KdGePlane& plane);

    /// The matrix that maps entity coordinates of a normal to world coordinates.
    ///
    /// The axes follow the arbitrary-axis rule of the drawing-exchange format: x is world y × n
    /// where both |n.x| and |n.y| are below 1/64, else world z × n; y is n × x.
    /// @param normal  of any length; the identity for the zero vector
    static KdGeMatrix3d planeToWorld(const KdGeVector3d& normal);

    /// The inverse of `planeToWorld`.
    static KdGeMatrix3d worldToPlane(const KdGeVector3d& normal);

    /// Maps the unit axes onto the given axes and the origin onto the given point.
    KdGeMatrix3d& setCoordSystem(const KdGePoint3d& origin, const KdGeVector3d& xAxis,
                                 const KdGeVector3d& yAxis, const KdGeVector3d& zAxis);

    void getCoordSystem(KdGePoint3d& origin, KdGeVector3d& xAxis, KdGeVector3d& yAxis,
                        KdGeVector3d& zAxis) const;

    KdGeMatrix3d& setTranslation(const KdGeVector3d& offset);

    constexpr KdGeVector3d translation() const { return {entry[0][3], entry[1][3], entry[2][3]}; }

    /// Writes the inverse of the whole 4-by-4 matrix.
    /// @return false, nothing written, where the matrix is singular to working precision
    bool inverse(KdGeMatrix3d& result) const;

    /// The inverse of the whole 4-by-4 matrix; the identity where `isSingular`.
    KdGeMatrix3d inverse() const;

    bool isSingular() const;

    /// The determinant of the linear part; negative for a mirroring.
    double det() const;

    /// The factor by which the matrix scales: the longest image of the three unit axes.
    double scale() const;

    /// True where the last row is 0, 0, 0, 1: no perspective.
    constexpr bool isAffine() const
    {
        return entry[3][0] == 0.0 && entry[3][1] == 0.0 && entry[3][2] == 0.0 && entry[3][3] == 1.0;
    }

    /// Row by row.
    double entry[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};

inline constexpr KdGeMatrix3d KdGeMatrix3d::kIdentity{};

/// The image of a point; see KdGePoint3d::transformBy.
inline KdGePoint3d operator*(const KdGeMatrix3d& matrix, const KdGePoint3d& p)
{
    const auto& e = matrix.entry;
    const KdGePoint3d image(e[0][0] * p.x + e[0][1] * p.y + e[0][2] * p.z + e[0][3],
                            e[1][0] * p.x + e[1][1] * p.y + e[1][2] * p.z + e[1][3],
                            e[2][0] * p.x + e[2][1] * p.y + e[2][2] * p.z + e[2][3]);
    const double w = e[3][0] * p.x + e[3][1] * p.y + e[3][2] * p.z + e[3][3];
    return w == 1.0 || w == 0.0 ? image : image / w;
}

/// The image of a vector under the linear part.
inline KdGeVector3d operator*(const KdGeMatrix3d& matrix, const KdGeVector3d& v)
{
    const auto& e = matrix.entry;
    return {e[0][0] * v.x + e[0][1] * v.y + e[0][2] * v.z,
            e[1][0] * v.x + e[1][1] * v.y + e[1][2] * v.z,
            e[2][0] * v.x + e[2][1] * v.y + e[2][2] * v.z};
}

inline KdGeVector3d& KdGeVector3d::transformBy(const KdGeMatrix3d& matrix)
{
    return *this = matrix * *this;
}

inline KdGePoint3d& KdGePoint3d::transformBy(const KdGeMatrix3d& matrix)
{
    return *this = matrix * *this;
}
