#pragma once

#include <chrono>

namespace kestrum {

// A spring as the interface animations describe one: `responseSeconds`, the period of the undamped
// oscillation, and `dampingFraction`, 1 for critical damping and below 1 for a little overshoot.
struct SpringParameters {
    double responseSeconds = 0.5;
    double dampingFraction = 0.825;

    friend bool operator==(const SpringParameters&, const SpringParameters&) = default;
};

// One value moving from `from` to `to` on a spring of unit mass, starting at rest: the closed form of the
// damped oscillator, so that any instant can be read without stepping through the ones before.
class SpringMotion {
  public:
    SpringMotion() = default;
    SpringMotion(double from, double to, SpringParameters spring);

    // The value `elapsedSeconds` after the start; `to` once settled. Negative times read `from`.
    double valueAt(double elapsedSeconds) const;
    bool isSettled(double elapsedSeconds) const { return elapsedSeconds >= settleSeconds_; }
    // The time from which the value stays within 0.01 of `to`; 0 when it starts there.
    double settleSeconds() const { return settleSeconds_; }
    double target() const { return to_; }

  private:
    double displacementAt(double elapsedSeconds) const;

    double from_ = 0;
    double to_ = 0;
    double omega_ = 0;  // natural angular frequency, 2π / response
    double zeta_ = 1;   // damping fraction
    double settleSeconds_ = 0;
};

}  // namespace kestrum
