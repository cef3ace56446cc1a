#include "ge/arc_length.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace korra {
namespace {

/// Panels of one smooth piece: a cusp takes about forty, noise would take any number.
constexpr std::size_t kMostPanels = 1000;

/// What a panel may be wrong by, as a part of the length.
constexpr double kRelative = 4e-16;

constexpr int kMostSteps = 100;    // of bisection, at worst
constexpr double kLastStep = 1e-9; // half a panel is 1

} // namespace

ArcLength::ArcLength(const Speed& speed, const std::vector<double>& breaks)
{
    double rough = 0.0;
    for (std::size_t i = 1; i < breaks.size(); ++i)
        rough += makePanel(speed, breaks[i - 1], breaks[i]).total;
    for (std::size_t i = 1; i < breaks.size(); ++i)
        addPanels(speed, breaks[i - 1], breaks[i], kRelative * rough);
}

ArcLength::Panel ArcLength::makePanel(const Speed& speed, double from, double to)
{
    static const auto cosines = [] {
        std::array<double, 2 * kDegree> table{};
        for (std::size_t i = 0; i < table.size(); ++i)
            table[i] = std::cos(std::numbers::pi * static_cast<double>(i) / kDegree);
        return table;
    }();
    Panel panel{from, to, 0.0, 0.0, {}, {}};
    std::array<double, kDegree + 1> samples{};
    for (std::size_t i = 0; i <= kDegree; ++i)
        samples[i] = speed(panel.param(cosines[i])) * ((to - from) / 2.0);

    for (std::size_t k = 0; k <= kDegree; ++k) {
        double sum = (samples[0] + samples[kDegree] * (k % 2 == 0 ? 1.0 : -1.0)) / 2.0;
        for (std::size_t i = 1; i < kDegree; ++i)
            sum += samples[i] * cosines[i * k % cosines.size()];
        panel.speed[k] = sum * 2.0 / kDegree;
    }
    panel.speed[0] /= 2.0;
    panel.speed[kDegree] /= 2.0;

    // The integral of T(k) is (T(k+1) / (k+1) - T(k-1) / (k-1)) / 2; those of T(0) and T(1) fit in
    // with the constant that makes the length 0 at -1.
    const Series& c = panel.speed;
    panel.length[1] = c[0] - c[2] / 2.0;
    for (std::size_t k = 2; k <= kDegree + 1; ++k)
        panel.length[k] =
            (c[k - 1] - (k < kDegree ? c[k + 1] : 0.0)) / (2.0 * static_cast<double>(k));
    panel.length[0] = -value(panel.length, -1.0);
    panel.total = value(panel.length, 1.0);
    return panel;
}

double ArcLength::value(const Series& series, double x)
{
    double next = 0.0;
    double afterNext = 0.0;
    for (std::size_t k = series.size() - 1; k > 0; --k) {
        const double current = 2.0 * x * next - afterNext + series[k];
        afterNext = next;
        next = current;
    }
    return x * next - afterNext + series[0];
}

ArcLength::Progress ArcLength::progress(const Panel& panel, double x)
{
    // As in value(), of both series at once: they do not wait for each other.
    double next[2] = {};
    double afterNext[2] = {};
    for (std::size_t k = kDegree + 1; k > 0; --k) {
        const double length = 2.0 * x * next[0] - afterNext[0] + panel.length[k];
        const double speed = 2.0 * x * next[1] - afterNext[1] + panel.speed[k];
        afterNext[0] = std::exchange(next[0], length);
        afterNext[1] = std::exchange(next[1], speed);
    }
    return {x * next[0] - afterNext[0] + panel.length[0],
            x * next[1] - afterNext[1] + panel.speed[0]};
}

void ArcLength::addPanels(const Speed& speed, double from, double to, double tolerance)
{
    std::vector<double> ends{to}; // of the pieces to come, the nearest last
    std::size_t made = 0;
    while (!ends.empty()) {
        Panel panel = makePanel(speed, from, ends.back());
        const double tail = std::abs(panel.speed[kDegree]) + std::abs(panel.speed[kDegree - 1]) +
                            std::abs(panel.speed[kDegree - 2]);
        const double middle = panel.param(0.0);
        // Written so that what is not a number ends the halving.
        if (tail > tolerance && ++made < kMostPanels && from < middle && middle < ends.back()) {
            ends.push_back(middle);
            continue;
        }
        panel.before = total_;
        total_ += panel.total;
        from = ends.back();
        ends.pop_back();
        panels_.push_back(panel);
    }
}

double ArcLength::distanceAt(double param) const
{
    const auto behind =
        std::upper_bound(panels_.begin() + 1, panels_.end(), param,
                         [](double value, const Panel& panel) { return value < panel.from; });
    const Panel& panel = *std::prev(behind);
    const double part = (param - panel.from) / (panel.to - panel.from);
    return panel.before + value(panel.length, 2.0 * std::clamp(part, 0.0, 1.0) - 1.0);
}

double ArcLength::paramAt(double distance) const
{
    const auto behind =
        std::upper_bound(panels_.begin() + 1, panels_.end(), distance,
                         [](double value, const Panel& panel) { return value < panel.before; });
    const Panel& panel = *std::prev(behind);
    const double wanted = distance - panel.before;
    if (!(wanted > 0.0))
        return panel.from;
    if (wanted >= panel.total)
        return panel.to;

    double low = -1.0;
    double high = 1.0;
    double x = 2.0 * wanted / panel.total - 1.0;
    for (int step = 0; step < kMostSteps; ++step) {
        const Progress at = progress(panel, x);
        const double error = at.length - wanted;
        (error < 0.0 ? low : high) = x;
        const double newton = x - error / at.speed;
        const bool isInside = low < newton && newton < high;
        const double next = isInside ? newton : low + (high - low) / 2.0;
        const double moved = std::abs(next - x);
        x = next;
        // Newton's steps square the error; what is left behind a small one cannot be seen.
        if (moved < (isInside ? kLastStep : 4e-16) || !(low < high))
            break;
    }
    return panel.param(x);
}

} // namespace korra
