#include "kd/ge/linear3d.h"

#include <algorithm>
#include <limits>

KdGeVector3d KdGeLinearEnt3d::direction() const
{
    const double size = span_.length();
    return size == 0.0 ? KdGeVector3d::kIdentity : span_ / size;
}

KdGeVector3d KdGeLinearEnt3d::firstDerivative(double) const
{
    return span_;
}

double KdGeLinearEnt3d::length(double fromParam, double toParam, double) const
{
    return std::abs(toParam - fromParam) * span_.length();
}

double KdGeLinearEnt3d::paramAtLength(double datumParam, double length, bool forward, double) const
{
    const double size = span_.length();
    if (size == 0.0)
        return datumParam;
    return datumParam + (forward ? length : -length) / size;
}

double KdGeLinearEnt3d::nearestParam(const KdGePoint3d& point) const
{
    const double size = span_.lengthSqrd();
    const double param = size == 0.0 ? 0.0 : (point - origin_).dotProduct(span_) / size;
    return std::clamp(param, startParam(), endParam());
}

std::unique_ptr<KdGeCurve3d> KdGeLine3d::clone() const
{
    return std::make_unique<KdGeLine3d>(*this);
}

double KdGeLine3d::startParam() const
{
    return -std::numeric_limits<double>::infinity();
}

double KdGeLine3d::endParam() const
{
    return std::numeric_limits<double>::infinity();
}

bool KdGeLine3d::transformBy(const KdGeMatrix3d& matrix)
{
    if (!matrix.isAffine())
        return false;
    origin_.transformBy(matrix);
    span_.transformBy(matrix);
    return true;
}

KdGeExtents3d KdGeLine3d::extentsUnder(const KdGeMatrix3d&) const
{
    return {};
}

void KdGeLine3d::flattenTail(const KdGeMatrix3d&, double, std::vector<KdGePoint3d>&) const {}

std::unique_ptr<KdGeCurve3d> KdGeRay3d::clone() const
{
    return std::make_unique<KdGeRay3d>(*this);
}

double KdGeRay3d::endParam() const
{
    return std::numeric_limits<double>::infinity();
}

bool KdGeRay3d::transformBy(const KdGeMatrix3d& matrix)
{
    if (!matrix.isAffine())
        return false;
    origin_.transformBy(matrix);
    span_.transformBy(matrix);
    return true;
}

KdGeExtents3d KdGeRay3d::extentsUnder(const KdGeMatrix3d&) const
{
    return {};
}

void KdGeRay3d::flattenTail(const KdGeMatrix3d&, double, std::vector<KdGePoint3d>&) const {}

std::unique_ptr<KdGeCurve3d> KdGeLineSeg3d::clone() const
{
    return std::make_unique<KdGeLineSeg3d>(*this);
}

KdGePoint3d KdGeLineSeg3d::evalPoint(double param) const
{
    return param < 0.5 ? origin_ + span_ * param : end_ - span_ * (1.0 - param);
}

bool KdGeLineSeg3d::transformBy(const KdGeMatrix3d& matrix)
{
    if (!matrix.isAffine())
        return false;
    *this = KdGeLineSeg3d(matrix * origin_, matrix * end_);
    return true;
}

KdGeExtents3d KdGeLineSeg3d::extentsUnder(const KdGeMatrix3d& matrix) const
{
    KdGeExtents3d box;
    box.addPoint(matrix * origin_);
    box.addPoint(matrix * end_);
    return box;
}

void KdGeLineSeg3d::flattenTail(const KdGeMatrix3d& matrix, double,
                                std::vector<KdGePoint3d>& vertices) const
{
    vertices.push_back(matrix * end_);
}
