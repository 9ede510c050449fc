// Plan geometry written again for the tests, so that what host/ computes is checked against
// code of the tests' own: a clothoid by Simpson's rule, distances to lines and arcs from their
// fields, headings of travel.
#pragma once

#include <cmath>
#include <numbers>
#include <vector>

#include "host/PlanGeometry.h"

namespace plantest {

using host::CKdPlanElement;
using host::CKdPlanPoint;

inline double Dist(CKdPlanPoint a, CKdPlanPoint b) { return std::hypot(a.x - b.x, a.y - b.y); }

// The point `s` along the clothoid leaving `start` along `heading` with curvature k0 + rate u.
inline CKdPlanPoint SimpsonPoint(CKdPlanPoint start, double heading, double k0, double rate, double s,
                                 int steps = 20000) {
  const double h = s / steps;
  double x = 0.0, y = 0.0;
  for (int i = 0; i <= steps; ++i) {
    const double u = i * h;
    const double w = (i == 0 || i == steps) ? 1.0 : (i % 2 ? 4.0 : 2.0);
    const double t = heading + k0 * u + 0.5 * rate * u * u;
    x += w * std::cos(t);
    y += w * std::sin(t);
  }
  return {start.x + x * h / 3.0, start.y + y * h / 3.0};
}

// count + 1 points at equal steps along the clothoid, each advanced from the one before by
// Simpson's rule on 16 steps.
inline std::vector<CKdPlanPoint> SimpsonPoints(CKdPlanPoint start, double heading, double k0, double rate, double length,
                                               int count) {
  std::vector<CKdPlanPoint> points{start};
  const double step = length / count;
  for (int i = 0; i < count; ++i) {
    const double s0 = i * step;
    const CKdPlanPoint offset = SimpsonPoint({0, 0}, heading + k0 * s0 + 0.5 * rate * s0 * s0, k0 + rate * s0, rate, step, 16);
    points.push_back({points.back().x + offset.x, points.back().y + offset.y});
  }
  return points;
}

// Distance from p to a line segment or an arc, from the element's fields.
inline double DistanceToElement(const CKdPlanElement& e, CKdPlanPoint p) {
  constexpr double pi = std::numbers::pi;
  if (e.isLine) {
    const double dx = e.end.x - e.start.x, dy = e.end.y - e.start.y;
    const double len2 = dx * dx + dy * dy;
    double t = len2 > 0 ? ((p.x - e.start.x) * dx + (p.y - e.start.y) * dy) / len2 : 0.0;
    t = std::fmin(1.0, std::fmax(0.0, t));
    return Dist(p, {e.start.x + t * dx, e.start.y + t * dy});
  }
  double along = std::atan2(p.y - e.centre.y, p.x - e.centre.x) - e.startAngle;
  if (e.sweep < 0) along = -along;
  along = std::fmod(along, 2 * pi);
  if (along < 0) along += 2 * pi;
  if (along <= std::fabs(e.sweep)) return std::fabs(Dist(p, e.centre) - e.radius);
  const CKdPlanPoint s{e.centre.x + e.radius * std::cos(e.startAngle), e.centre.y + e.radius * std::sin(e.startAngle)};
  const double a1 = e.startAngle + e.sweep;
  const CKdPlanPoint f{e.centre.x + e.radius * std::cos(a1), e.centre.y + e.radius * std::sin(a1)};
  return std::fmin(Dist(p, s), Dist(p, f));
}

inline CKdPlanElement Segment(CKdPlanPoint a, CKdPlanPoint b) {
  CKdPlanElement e;
  e.start = a;
  e.end = b;
  return e;
}

// Headings of travel at an element's ends, from its fields.
inline double StartHeadingOf(const CKdPlanElement& e) {
  if (e.isLine) return std::atan2(e.end.y - e.start.y, e.end.x - e.start.x);
  return e.startAngle + std::copysign(std::numbers::pi / 2, e.sweep);
}
inline double EndHeadingOf(const CKdPlanElement& e) {
  if (e.isLine) return StartHeadingOf(e);
  return e.startAngle + e.sweep + std::copysign(std::numbers::pi / 2, e.sweep);
}
inline double AngleGap(double a, double b) { return std::fabs(std::remainder(a - b, 2 * std::numbers::pi)); }

// The point a fraction t along an element, from its fields.
inline CKdPlanPoint PointOf(const CKdPlanElement& e, double t) {
  if (e.isLine) return {e.start.x + t * (e.end.x - e.start.x), e.start.y + t * (e.end.y - e.start.y)};
  const double a = e.startAngle + t * e.sweep;
  return {e.centre.x + e.radius * std::cos(a), e.centre.y + e.radius * std::sin(a)};
}

}  // namespace plantest
