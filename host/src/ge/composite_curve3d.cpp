#include "kd/ge/composite_curve3d.h"

#include <algorithm>
#include <limits>

KdGeCompositeCurve3d::KdGeCompositeCurve3d(std::vector<std::unique_ptr<KdGeCurve3d>> pieces)
    : pieces_(std::move(pieces))
{
    measure();
}

KdGeCompositeCurve3d::KdGeCompositeCurve3d(const KdGeCompositeCurve3d& other)
    : KdGeCurve3d(other), distances_(other.distances_)
{
    pieces_.reserve(other.pieces_.size());
    for (const auto& piece : other.pieces_)
        pieces_.push_back(piece->clone());
}

KdGeCompositeCurve3d& KdGeCompositeCurve3d::operator=(KdGeCompositeCurve3d other)
{
    pieces_.swap(other.pieces_);
    distances_.swap(other.distances_);
    return *this;
}

void KdGeCompositeCurve3d::measure()
{
    distances_.assign(1, 0.0);
    for (const auto& piece : pieces_)
        distances_.push_back(distances_.back() + piece->length());
}

std::unique_ptr<KdGeCurve3d> KdGeCompositeCurve3d::clone() const
{
    return std::make_unique<KdGeCompositeCurve3d>(*this);
}

KdGeCompositeCurve3d::Place KdGeCompositeCurve3d::placeAt(double param) const
{
    const double index = std::clamp(std::floor(param), 0.0, endParam() - 1.0);
    const auto piece = static_cast<std::size_t>(index);
    const KdGeCurve3d& curve = *pieces_[piece];
    return {piece, std::lerp(curve.startParam(), curve.endParam(), param - index)};
}

KdGePoint3d KdGeCompositeCurve3d::evalPoint(double param) const
{
    const Place place = placeAt(param);
    return pieces_[place.piece]->evalPoint(place.param);
}

KdGeVector3d KdGeCompositeCurve3d::firstDerivative(double param) const
{
    const Place place = placeAt(param);
    const KdGeCurve3d& curve = *pieces_[place.piece];
    return curve.firstDerivative(place.param) * (curve.endParam() - curve.startParam());
}

double KdGeCompositeCurve3d::distanceAt(double param) const
{
    const Place place = placeAt(param);
    const KdGeCurve3d& curve = *pieces_[place.piece];
    const double rest = curve.length(curve.startParam(), place.param);
    return distances_[place.piece] + (place.param < curve.startParam() ? -rest : rest);
}

double KdGeCompositeCurve3d::length(double fromParam, double toParam, double) const
{
    return std::abs(distanceAt(toParam) - distanceAt(fromParam));
}

double KdGeCompositeCurve3d::paramAtDistance(double distance) const
{
    const auto next = std::upper_bound(distances_.begin() + 1, distances_.end() - 1, distance);
    const auto piece = static_cast<std::size_t>(next - distances_.begin()) - 1;
    const KdGeCurve3d& curve = *pieces_[piece];
    const double rest = distance - distances_[piece];
    const double param = curve.paramAtLength(curve.startParam(), std::abs(rest), rest >= 0.0);
    return static_cast<double>(piece) +
           (param - curve.startParam()) / (curve.endParam() - curve.startParam());
}

double KdGeCompositeCurve3d::paramAtLength(double datumParam, double length, bool forward,
                                           double) const
{
    return paramAtDistance(distanceAt(datumParam) + (forward ? length : -length));
}

double KdGeCompositeCurve3d::nearestParam(const KdGePoint3d& point) const
{
    double nearest = std::numeric_limits<double>::infinity();
    double result = 0.0;
    for (std::size_t i = 0; i < pieces_.size(); ++i) {
        const KdGeCurve3d& curve = *pieces_[i];
        const double param = curve.nearestParam(point);
        const double distance = (curve.evalPoint(param) - point).lengthSqrd();
        if (distance < nearest) {
            nearest = distance;
            result = static_cast<double>(i) +
                     (param - curve.startParam()) / (curve.endParam() - curve.startParam());
        }
    }
    return result;
}

bool KdGeCompositeCurve3d::transformBy(const KdGeMatrix3d& matrix)
{
    KdGeCompositeCurve3d image = *this;
    for (const auto& piece : image.pieces_)
        if (!piece->transformBy(matrix))
            return false;
    image.measure();
    *this = std::move(image);
    return true;
}

void KdGeCompositeCurve3d::reverse()
{
    std::reverse(pieces_.begin(), pieces_.end());
    for (const auto& piece : pieces_)
        piece->reverse();
    measure();
}

KdGeExtents3d KdGeCompositeCurve3d::extentsUnder(const KdGeMatrix3d& matrix) const
{
    KdGeExtents3d box;
    for (const auto& piece : pieces_)
        box.addExt(piece->extentsUnder(matrix));
    return box;
}

void KdGeCompositeCurve3d::flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                                       std::vector<KdGePoint3d>& vertices) const
{
    for (const auto& piece : pieces_)
        piece->flattenTail(matrix, tolerance, vertices);
}
