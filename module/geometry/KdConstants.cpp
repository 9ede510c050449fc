#include "module/geometry/KdConstants.h"

#include <cmath>

namespace kdgeo {

namespace {

// Past this many turns, stepping by whole turns is replaced by one fmod so that huge input
// cannot stall; below it the stepping (and its rounding) is kept as arcs have always done it.
constexpr double kSteppingLimit_rad = 64.0 * kTwoPi;

}  // namespace

double ReduceKeepingFullTurn(double angle_rad) {
  if (std::fabs(angle_rad - kTwoPi) <= kTolerance) return angle_rad;
  return std::fmod(angle_rad, kTwoPi);
}

double NormalizeAngle(double angle_rad) {
  if (!std::isfinite(angle_rad)) return std::nan("");
  if (std::fabs(angle_rad) > kSteppingLimit_rad) angle_rad = std::fmod(angle_rad, kTwoPi);
  while (angle_rad >= kTwoPi) angle_rad -= kTwoPi;
  while (angle_rad < 0.0) angle_rad += kTwoPi;
  // -tiny + 2*pi can round up to exactly 2*pi.
  return angle_rad >= kTwoPi ? 0.0 : angle_rad;
}

double SweepFromAngles(double startAngle_rad, double endAngle_rad, bool counterClockwise) {
  const double sense = counterClockwise ? 1.0 : -1.0;
  double d = (endAngle_rad - startAngle_rad) * sense;
  if (!std::isfinite(d)) return std::nan("");
  if (std::fabs(d) > kSteppingLimit_rad) d = std::fmod(d, kTwoPi);
  while (d < 0.0) d += kTwoPi;
  while (d > kTwoPi) d -= kTwoPi;
  return d * sense;
}

}  // namespace kdgeo
