#pragma once

#include "ge/smooth_curve.h"

#include <array>
#include <span>

namespace korra {

/// A rational B-spline curve, kept as its Bézier pieces.
class NurbCurve final : public SmoothCurve {
public:
    static constexpr int kMaxDegree = 25;

    /// What a spline is given by.
    struct Definition {
        int degree = 3;
        std::vector<double> knots; ///< never falling; as many as control points, degree and one
        std::vector<KdGePoint3d> controlPoints;
        std::vector<double> weights; ///< above 0; empty: all alike
    };

    /// The curve between the first and the last knot that have all their neighbours: periodic
    /// splines and open knot vectors are cut there.
    /// @return null for a definition that gives no curve, or one of a degree above kMaxDegree
    static std::unique_ptr<NurbCurve> make(const Definition& definition);

    /// The cubic spline with steady curvature through points, its parameter the length of the
    /// chords from the first one on.
    /// @param startTangent, endTangent  directions at the ends; a zero vector: no curvature there
    /// @return null where fewer than two points are apart
    static std::unique_ptr<NurbCurve> through(const std::vector<KdGePoint3d>& points,
                                              const KdGeVector3d& startTangent,
                                              const KdGeVector3d& endTangent);

    /// The curve as control points: those of its pieces, one after the other.
    Definition definition() const;

    std::unique_ptr<KdGeCurve3d> clone() const override;

    double startParam() const override { return breaks_.front(); }

    double endParam() const override { return breaks_.back(); }

    KdGePoint3d evalPoint(double param) const override;
    KdGeVector3d firstDerivative(double param) const override;
    KdGeVector3d secondDerivative(double param) const override;

    std::vector<double> breaks() const override { return breaks_; }

    KdGeExtents3d boundOf(double from, double to) const override;
    double sagOf(double from, double to) const override;
    bool transformBy(const KdGeMatrix3d& matrix) override;

    /// Parameters become their negatives.
    void reverse() override;
    KdGeExtents3d extentsUnder(const KdGeMatrix3d& matrix) const override;

private:
    /// A control point times its weight, from the curve's origin; in four dimensions rational
    /// pieces are polynomials.
    struct Weighted {
        KdGeVector3d point;
        double weight = 1.0;

        KdGeVector3d projected() const { return point / weight; }

        friend Weighted between(const Weighted& a, const Weighted& b, double part)
        {
            return {a.point + (b.point - a.point) * part, a.weight + (b.weight - a.weight) * part};
        }
    };

    struct Derivatives {
        KdGeVector3d point; ///< from the curve's origin
        KdGeVector3d first;
        KdGeVector3d second;
    };

    NurbCurve() = default;

    void addPiece(const std::vector<Weighted>& control, std::size_t knot,
                  const std::vector<double>& knots);
    std::size_t pieceAt(double param) const;
    std::span<const Weighted> piece(std::size_t index) const;

    /// @param order  how many derivatives are wanted, 0 to 2
    Derivatives evaluate(double param, int order) const;

    /// The control points of the part between two parameters that no break separates, from the
    /// curve's origin; the part lies in their hull.
    /// @return how many there are
    std::size_t hullOf(double from, double to,
                       std::array<KdGeVector3d, kMaxDegree + 1>& hull) const;
    double highest(unsigned int axis, double side) const;

    // Points are kept near the origin of coordinates, so that a far curve is as exact as a near
    // one.
    KdGePoint3d origin_;
    int degree_ = 3;
    std::vector<double> breaks_;
    std::vector<Weighted> pieces_; ///< degree + 1 for each piece
};

} // namespace korra
