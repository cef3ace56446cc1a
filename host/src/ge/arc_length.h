#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <vector>

namespace korra {

/// The length of a curve as a function of its parameter, and back; worked out once for any number
/// of questions.
///
/// The interval is halved until in every panel a Chebyshev series follows the speed as closely as
/// doubles can; its integral is the length within the panel. Source: C. W. Clenshaw and A. R.
/// Curtis, "A method for numerical integration on an automatic computer", 1960.
class ArcLength {
public:
    /// Length of the derivative at a parameter.
    using Speed = std::function<double(double)>;

    /// @param breaks  rising, at least two: ends of the interval, and where the speed is not smooth
    ArcLength(const Speed& speed, const std::vector<double>& breaks);

    /// Of the whole interval; not finite where the speed is not.
    double total() const { return total_; }

    /// From the start to a parameter of the interval, with an error of some 1e-15 of the total.
    double distanceAt(double param) const;

    /// The parameter at a distance from 0 to the total.
    double paramAt(double distance) const;

private:
    static constexpr std::size_t kDegree = 12;

    /// Coefficients of Chebyshev polynomials over -1 to 1.
    using Series = std::array<double, kDegree + 2>;

    struct Panel {
        double from;
        double to;
        double before; ///< length up to here
        double total;  ///< length of the panel
        Series speed;  ///< per unit of the interval from -1 to 1
        Series length; ///< from `from` on

        double param(double x) const { return from + (to - from) * ((x + 1.0) / 2.0); }
    };

    static Panel makePanel(const Speed& speed, double from, double to);
    static double value(const Series& series, double x);

    /// How far along a panel is at a place of it, and how fast it goes on there.
    struct Progress {
        double length;
        double speed;
    };

    static Progress progress(const Panel& panel, double x);
    void addPanels(const Speed& speed, double from, double to, double tolerance);

    std::vector<Panel> panels_;
    double total_ = 0.0;
};

} // namespace korra
