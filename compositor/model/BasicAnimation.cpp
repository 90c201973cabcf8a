#include "compositor/model/BasicAnimation.h"

#include <algorithm>
#include <cmath>

namespace lumivane {
namespace {

// The inner control points of the ease-in-ease-out curve, (kX1, 0) and (kX2, 1).
constexpr double kX1 = 0.42;
constexpr double kX2 = 0.58;

double bezierX(double t) {
  const double s = 1 - t;
  return 3 * s * s * t * kX1 + 3 * s * t * t * kX2 + t * t * t;
}

double bezierSlopeX(double t) {
  const double s = 1 - t;
  return 3 * s * s * kX1 + 6 * s * t * (kX2 - kX1) + 3 * t * t * (1 - kX2);
}

// The curve's parameter at which it reaches x. Newton's method kept inside a shrinking bracket; x grows with t.
double bezierParameter(double x) {
  double low = 0;
  double high = 1;
  double t = x;
  for (int round = 0; round < 60; ++round) {
    const double error = bezierX(t) - x;
    if (std::abs(error) < 1e-15) break;
    (error > 0 ? high : low) = t;
    const double next = t - error / bezierSlopeX(t);
    t = next > low && next < high ? next : (low + high) / 2;
  }
  return t;
}

}  // namespace

Seconds activeDuration(const BasicAnimation& animation) {
  const double passes = animation.autoreverses ? 2 : 1;
  return std::max(Seconds{0}, animation.duration * passes * animation.repeatCount);
}

double eased(TimingCurve curve, double progress) {
  const double x = std::clamp(progress, 0.0, 1.0);
  if (curve == TimingCurve::Linear || x == 0 || x == 1) return x;
  const double t = bezierParameter(x);
  return t * t * (3 - 2 * t);  // y of the curve: its inner control points lie at 0 and 1
}

}  // namespace lumivane
