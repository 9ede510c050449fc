#include "headless/aecc/model/Clothoid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace headless::land {
namespace {

// Abscissae and weights of 10-point Gauss-Legendre quadrature on [-1, 1] (positive half).
constexpr std::array<double, 5> kNodes = {0.14887433898163121088, 0.43339539412924719080, 0.67940956829902440623,
                                          0.86506336668898451073, 0.97390652851717172008};
constexpr std::array<double, 5> kWeights = {0.29552422471475287017, 0.26926671930999635509, 0.21908636251598204400,
                                            0.14945134915058059315, 0.06667134430868813759};
// Heading change allowed over one quadrature panel.
constexpr double kPanelTurnRad = 1.0;

// int_0^s (cos psi, sin psi) dt with psi(t) = k0 t + c t^2, in the spiral's own frame.
Point2 IntegrateLocal(double k0, double c, double s) {
  if (s <= 0.0) return {};
  const double maxCurvature = std::max(std::abs(k0), std::abs(k0 + 2.0 * c * s));
  const int panels = std::max(1, static_cast<int>(std::ceil(s * maxCurvature / kPanelTurnRad)));
  const double h = s / panels;
  Point2 sum;
  for (int p = 0; p < panels; ++p) {
    const double mid = (p + 0.5) * h;
    const double half = 0.5 * h;
    Point2 panel;
    for (std::size_t i = 0; i < kNodes.size(); ++i) {
      for (const double sign : {-1.0, 1.0}) {
        const double t = mid + sign * half * kNodes[i];
        const double psi = t * (k0 + c * t);
        panel.x += kWeights[i] * std::cos(psi);
        panel.y += kWeights[i] * std::sin(psi);
      }
    }
    sum = sum + half * panel;
  }
  return sum;
}

}  // namespace

Outcome<Clothoid> Clothoid::Make(Point2 start, double startDirectionRad, double length, double curvatureStart,
                                 double curvatureEnd) {
  if (!IsFinite(start) || !std::isfinite(startDirectionRad) || !std::isfinite(length) ||
      !std::isfinite(curvatureStart) || !std::isfinite(curvatureEnd)) {
    return LandError::InvalidArgument;
  }
  if (length <= 0.0) return LandError::InvalidArgument;
  if (curvatureStart == curvatureEnd) return LandError::InvalidArgument;
  if (curvatureStart * curvatureEnd < 0.0) return LandError::InvalidArgument;
  if (length * std::max(std::abs(curvatureStart), std::abs(curvatureEnd)) > kMaxTurnRad) {
    return LandError::InvalidArgument;
  }
  return Clothoid(start, startDirectionRad, length, curvatureStart, curvatureEnd);
}

Clothoid::Clothoid(Point2 start, double direction0, double length, double k0, double k1)
    : start_(start), direction0_(direction0), length_(length), k0_(k0), k1_(k1) {
  end_ = PointAt(length_);
}

double Clothoid::A() const { return std::sqrt(length_ / std::abs(k1_ - k0_)); }

double Clothoid::Clamp(double s) const { return std::clamp(s, 0.0, length_); }

// Exact at both ends: a spiral that runs out to a tangent ends with curvature 0, not a rounding
// residue that would keep it from joining the tangent.
double Clothoid::CurvatureAt(double s) const {
  const double t = Clamp(s) / length_;
  return (1.0 - t) * k0_ + t * k1_;
}

double Clothoid::DirectionAt(double s) const {
  s = Clamp(s);
  return direction0_ + s * (k0_ + 0.5 * (k1_ - k0_) * s / length_);
}

Point2 Clothoid::PointAt(double s) const {
  const Point2 local = IntegrateLocal(k0_, 0.5 * (k1_ - k0_) / length_, Clamp(s));
  const double c = std::cos(direction0_);
  const double n = std::sin(direction0_);
  return {start_.x + c * local.x - n * local.y, start_.y + n * local.x + c * local.y};
}

double Clothoid::ClosestDistance(Point2 p) const {
  // (C(s) - p) . T(s): negative while the foot lies ahead, zero at a foot of a perpendicular.
  const auto slope = [&](double s) { return Dot(PointAt(s) - p, UnitAt(DirectionAt(s))); };

  // Coarse samples find the basin of the nearest point; the spiral turns little between them.
  const double turn = length_ * std::max(std::abs(k0_), std::abs(k1_));
  const int samples = 16 + 8 * static_cast<int>(std::ceil(turn));
  const double step = length_ / samples;
  int best = 0;
  double bestDistance = std::numeric_limits<double>::infinity();
  for (int i = 0; i <= samples; ++i) {
    const double d = Distance(PointAt(i * step), p);
    if (d < bestDistance) {
      bestDistance = d;
      best = i;
    }
  }
  double lo = std::max(0, best - 1) * step;
  double hi = std::min(samples, best + 1) * step;
  if (best == samples) hi = length_;
  double gLo = slope(lo);
  const double gHi = slope(hi);
  if (gLo >= 0.0) return lo;
  if (gHi <= 0.0) return hi;

  // Newton's method on the slope, kept inside the bracket by bisection.
  double s = best * step;
  for (int iteration = 0; iteration < 100 && hi - lo > 1e-14 * length_; ++iteration) {
    const Point2 c = PointAt(s);
    const double direction = DirectionAt(s);
    const Point2 offset = c - p;
    const double g = Dot(offset, UnitAt(direction));
    if (g == 0.0) return s;
    if ((g < 0.0) == (gLo < 0.0)) {
      lo = s;
      gLo = g;
    } else {
      hi = s;
    }
    const double derivative = 1.0 + CurvatureAt(s) * Dot(offset, UnitAt(direction + 0.5 * kPi));
    double next = derivative > 0.0 ? s - g / derivative : 0.5 * (lo + hi);
    if (!(next > lo && next < hi)) next = 0.5 * (lo + hi);
    if (std::abs(next - s) <= 1e-15 * length_) return next;
    s = next;
  }
  return s;
}

}  // namespace headless::land
