#include "kd/ge/matrix3d.h"

#include "kd/ge/plane.h"

#include <algorithm>
#include <limits>

namespace {

constexpr unsigned int kSize = 4;

KdGeVector3d column(const KdGeMatrix3d& matrix, unsigned int index)
{
    return {matrix(0, index), matrix(1, index), matrix(2, index)};
}

void setColumn(KdGeMatrix3d& matrix, unsigned int index, const KdGeVector3d& v)
{
    matrix(0, index) = v.x;
    matrix(1, index) = v.y;
    matrix(2, index) = v.z;
}

/// Adds the translation that keeps a point in its place under a linear map.
KdGeMatrix3d keeping(const KdGePoint3d& center, const KdGeMatrix3d& linear)
{
    KdGeMatrix3d result = linear;
    result.setTranslation(center.asVector() - linear * center.asVector());
    return result;
}

double largestInColumn(const KdGeMatrix3d& matrix, unsigned int index)
{
    double largest = 0.0;
    for (const auto& row : matrix.entry)
        largest = std::max(largest, std::abs(row[index]));
    return largest;
}

unsigned int pivotRow(const KdGeMatrix3d& matrix, unsigned int index)
{
    unsigned int best = index;
    for (unsigned int row = index + 1; row < kSize; ++row)
        if (std::abs(matrix(row, index)) > std::abs(matrix(best, index)))
            best = row;
    return best;
}

/// One step of Gauss-Jordan: makes column `index` of `left` a unit vector, `right` alike.
void eliminate(KdGeMatrix3d& left, KdGeMatrix3d& right, unsigned int index)
{
    const double pivot = left(index, index);
    for (unsigned int k = 0; k < kSize; ++k) {
        left(index, k) /= pivot;
        right(index, k) /= pivot;
    }
    for (unsigned int row = 0; row < kSize; ++row) {
        const double factor = left(row, index);
        if (row == index || factor == 0.0)
            continue;
        for (unsigned int k = 0; k < kSize; ++k) {
            left(row, k) -= factor * left(index, k);
            right(row, k) -= factor * right(index, k);
        }
    }
}

} // namespace

KdGeMatrix3d KdGeMatrix3d::operator*(const KdGeMatrix3d& right) const
{
    KdGeMatrix3d product;
    for (unsigned int i = 0; i < kSize; ++i)
        for (unsigned int j = 0; j < kSize; ++j)
            product.entry[i][j] = entry[i][0] * right.entry[0][j] +
                                  entry[i][1] * right.entry[1][j] +
                                  entry[i][2] * right.entry[2][j] + entry[i][3] * right.entry[3][j];
    return product;
}

bool KdGeMatrix3d::isEqualTo(const KdGeMatrix3d& other, const KdGeTol& tol) const
{
    for (unsigned int j = 0; j < 3; ++j)
        if (!column(*this, j).isEqualTo(column(other, j), tol))
            return false;
    for (unsigned int j = 0; j < kSize; ++j)
        if (!(std::abs(entry[3][j] - other.entry[3][j]) <= tol.equalVector()))
            return false;
    return (translation() - other.translation()).length() <= tol.equalPoint();
}

KdGeMatrix3d& KdGeMatrix3d::setToTranslation(const KdGeVector3d& offset)
{
    return *this = translation(offset);
}

KdGeMatrix3d& KdGeMatrix3d::setToRotation(double angle, const KdGeVector3d& axis,
                                          const KdGePoint3d& center)
{
    return *this = rotation(angle, axis, center);
}

KdGeMatrix3d& KdGeMatrix3d::setToScaling(double factor, const KdGePoint3d& center)
{
    return *this = scaling(factor, center);
}

KdGeMatrix3d KdGeMatrix3d::translation(const KdGeVector3d& offset)
{
    return KdGeMatrix3d().setTranslation(offset);
}

KdGeMatrix3d KdGeMatrix3d::rotation(double angle, const KdGeVector3d& axis,
                                    const KdGePoint3d& center)
{
    KdGeMatrix3d linear;
    for (unsigned int j = 0; j < 3; ++j)
        setColumn(linear, j, column(linear, j).rotateBy(angle, axis));
    return keeping(center, linear);
}

KdGeMatrix3d KdGeMatrix3d::scaling(double factor, const KdGePoint3d& center)
{
    return scaling(KdGeScale3d(factor), center);
}

KdGeMatrix3d KdGeMatrix3d::scaling(const KdGeScale3d& factors, const KdGePoint3d& center)
{
    KdGeMatrix3d linear;
    linear(0, 0) = factors.sx;
    linear(1, 1) = factors.sy;
    linear(2, 2) = factors.sz;
    return keeping(center, linear);
}

KdGeMatrix3d KdGeMatrix3d::mirroring(const KdGePlane& plane)
{
    KdGeMatrix3d linear;
    for (unsigned int j = 0; j < 3; ++j) {
        const KdGeVector3d axis = column(linear, j);
        setColumn(linear, j, axis - plane.normal() * (2.0 * axis.dotProduct(plane.normal())));
    }
    return keeping(plane.pointOnPlane(), linear);
}

KdGeMatrix3d KdGeMatrix3d::planeToWorld(const KdGeVector3d& normal)
{
    const double size = normal.length();
    if (size == 0.0)
        return kIdentity;
    const KdGeVector3d zAxis = normal / size;
    const KdGeVector3d xAxis = zAxis.perpVector();
    const KdGeVector3d yAxis = zAxis.crossProduct(xAxis);
    return KdGeMatrix3d().setCoordSystem(KdGePoint3d::kOrigin, xAxis, yAxis / yAxis.length(),
                                         zAxis);
}

KdGeMatrix3d KdGeMatrix3d::worldToPlane(const KdGeVector3d& normal)
{
    // The inverse of a rotation is its transpose.
    const KdGeMatrix3d turn = planeToWorld(normal);
    KdGeMatrix3d back;
    for (unsigned int i = 0; i < 3; ++i)
        for (unsigned int j = 0; j < 3; ++j)
            back(i, j) = turn(j, i);
    return back;
}

KdGeMatrix3d& KdGeMatrix3d::setCoordSystem(const KdGePoint3d& origin, const KdGeVector3d& xAxis,
                                           const KdGeVector3d& yAxis, const KdGeVector3d& zAxis)
{
    KdGeMatrix3d matrix;
    setColumn(matrix, 0, xAxis);
    setColumn(matrix, 1, yAxis);
    setColumn(matrix, 2, zAxis);
    setColumn(matrix, 3, origin.asVector());
    return *this = matrix;
}

void KdGeMatrix3d::getCoordSystem(KdGePoint3d& origin, KdGeVector3d& xAxis, KdGeVector3d& yAxis,
                                  KdGeVector3d& zAxis) const
{
    origin = KdGePoint3d::kOrigin + translation();
    xAxis = column(*this, 0);
    yAxis = column(*this, 1);
    zAxis = column(*this, 2);
}

KdGeMatrix3d& KdGeMatrix3d::setTranslation(const KdGeVector3d& offset)
{
    setColumn(*this, 3, offset);
    return *this;
}

bool KdGeMatrix3d::inverse(KdGeMatrix3d& result) const
{
    // A pivot this small against its column is what rounding leaves of a zero.
    constexpr double kNoise = 4.0 * std::numeric_limits<double>::epsilon();
    KdGeMatrix3d left = *this;
    KdGeMatrix3d right;
    for (unsigned int i = 0; i < kSize; ++i) {
        const unsigned int row = pivotRow(left, i);
        if (!(std::abs(left(row, i)) > kNoise * largestInColumn(*this, i)))
            return false;
        if (row != i) {
            std::swap(left.entry[i], left.entry[row]);
            std::swap(right.entry[i], right.entry[row]);
        }
        eliminate(left, right, i);
    }
    result = right;
    return true;
}

KdGeMatrix3d KdGeMatrix3d::inverse() const
{
    KdGeMatrix3d result;
    inverse(result);
    return result;
}

bool KdGeMatrix3d::isSingular() const
{
    KdGeMatrix3d unused;
    return !inverse(unused);
}

double KdGeMatrix3d::det() const
{
    return column(*this, 0).dotProduct(column(*this, 1).crossProduct(column(*this, 2)));
}

double KdGeMatrix3d::scale() const
{
    return std::max(
        {column(*this, 0).length(), column(*this, 1).length(), column(*this, 2).length()});
}
