#include "core/dashboard/SpringMotion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace kestrum {

namespace {

// How near the target a value counts as arrived, in the value's own units (points).
constexpr double kRestDistance = 0.01;

}  // namespace

SpringMotion::SpringMotion(double from, double to, SpringParameters spring)
    : from_(from),
      to_(to),
      omega_(2 * std::numbers::pi / std::max(spring.responseSeconds, 1e-3)),
      zeta_(std::max(spring.dampingFraction, 1e-3)) {
    const double distance = std::abs(from - to);
    if (distance <= kRestDistance) return;
    if (zeta_ < 1) {
        // The displacement of an underdamped spring starting at rest stays under its envelope
        // |x0| e^(-ζωt) / sqrt(1 - ζ²).
        const double bound = distance / std::sqrt(1 - zeta_ * zeta_);
        settleSeconds_ = std::log(bound / kRestDistance) / (zeta_ * omega_);
        return;
    }
    // Critically damped and overdamped springs approach without crossing: walk until near enough.
    double seconds = 0;
    while (std::abs(displacementAt(seconds)) > kRestDistance) seconds += 0.005;
    settleSeconds_ = seconds;
}

double SpringMotion::valueAt(double elapsedSeconds) const {
    if (elapsedSeconds <= 0) return from_;
    if (isSettled(elapsedSeconds)) return to_;
    return to_ + displacementAt(elapsedSeconds);
}

double SpringMotion::displacementAt(double t) const {
    const double x0 = from_ - to_;
    if (zeta_ < 1) {
        const double damped = omega_ * std::sqrt(1 - zeta_ * zeta_);
        const double envelope = std::exp(-zeta_ * omega_ * t);
        return envelope * (x0 * std::cos(damped * t) + (zeta_ * omega_ * x0 / damped) * std::sin(damped * t));
    }
    if (zeta_ == 1) return x0 * (1 + omega_ * t) * std::exp(-omega_ * t);
    const double root = omega_ * std::sqrt(zeta_ * zeta_ - 1);
    const double fast = -zeta_ * omega_ - root;
    const double slow = -zeta_ * omega_ + root;
    // Starting at rest: x(0) = x0 and x'(0) = 0.
    const double a = x0 * slow / (slow - fast);
    const double b = -x0 * fast / (slow - fast);
    return a * std::exp(fast * t) + b * std::exp(slow * t);
}

}  // namespace kestrum
