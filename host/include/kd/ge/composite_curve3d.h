#pragma once

#include "kd/ge/curve3d.h"

/// Curves joined end to start; each piece takes one unit of parameter, as in a polyline.
class KdGeCompositeCurve3d : public KdGeCurve3d {
public:
    /// @param pieces  bounded, at least one; owned by the composite
    explicit KdGeCompositeCurve3d(std::vector<std::unique_ptr<KdGeCurve3d>> pieces);
    KdGeCompositeCurve3d(const KdGeCompositeCurve3d& other);
    KdGeCompositeCurve3d(KdGeCompositeCurve3d&&) = default;
    KdGeCompositeCurve3d& operator=(KdGeCompositeCurve3d other);

    int numPieces() const { return static_cast<int>(pieces_.size()); }

    const KdGeCurve3d& piece(int index) const { return *pieces_[static_cast<std::size_t>(index)]; }

    std::unique_ptr<KdGeCurve3d> clone() const override;

    double startParam() const override { return 0.0; }

    double endParam() const override { return static_cast<double>(pieces_.size()); }

    KdGePoint3d evalPoint(double param) const override;

    /// At a joint, of the piece that starts there.
    KdGeVector3d firstDerivative(double param) const override;
    using KdGeCurve3d::length;
    double length(double fromParam, double toParam,
                  double tol = KdGeContext::gTol.equalPoint()) const override;
    double paramAtLength(double datumParam, double length, bool forward = true,
                         double tol = KdGeContext::gTol.equalPoint()) const override;

    /// The first of equally near pieces.
    double nearestParam(const KdGePoint3d& point) const override;
    bool transformBy(const KdGeMatrix3d& matrix) override;
    void reverse() override;
    KdGeExtents3d extentsUnder(const KdGeMatrix3d& matrix) const override;

protected:
    void flattenTail(const KdGeMatrix3d& matrix, double tolerance,
                     std::vector<KdGePoint3d>& vertices) const override;

private:
    struct Place {
        std::size_t piece;
        double param; ///< of the piece
    };

    Place placeAt(double param) const;
    double distanceAt(double param) const;
    double paramAtDistance(double distance) const;
    void measure();

    std::vector<std::unique_ptr<KdGeCurve3d>> pieces_;
    std::vector<double> distances_; ///< from the start to the start of each piece, and the whole
};
