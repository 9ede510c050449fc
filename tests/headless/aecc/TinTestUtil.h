// Independent checks for TIN surface tests: brute-force geometry over a triangle list, written
// without the engine's code paths (no walks, no locate), so that they can catch its faults.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <optional>
#include <vector>

#include "headless/aecc/model/TinSurface.h"

namespace tintest {

using headless::land::Point2;
using headless::land::Point3;
using headless::land::SurfaceBoundary;
using headless::land::SurfaceBoundaryType;
using headless::land::TinSurface;

using Triangle = std::array<Point3, 3>;

inline std::vector<Triangle> TrianglesOf(const TinSurface& surface) {
  const std::vector<double> flat = surface.Triangles();
  std::vector<Triangle> out(flat.size() / 9);
  for (std::size_t t = 0; t < out.size(); ++t) {
    for (int c = 0; c < 3; ++c) out[t][c] = {flat[9 * t + 3 * c], flat[9 * t + 3 * c + 1], flat[9 * t + 3 * c + 2]};
  }
  return out;
}

inline double Cross2(Point3 o, Point3 a, Point3 b) { return (a.x - o.x) * (b.y - o.y) - (a.y - o.y) * (b.x - o.x); }

// Points on a regular grid with z from f.
inline std::vector<Point3> Grid(double x0, double y0, double x1, double y1, double step,
                                const std::function<double(double, double)>& f) {
  std::vector<Point3> points;
  const int nx = static_cast<int>(std::lround((x1 - x0) / step));
  const int ny = static_cast<int>(std::lround((y1 - y0) / step));
  for (int i = 0; i <= nx; ++i) {
    for (int j = 0; j <= ny; ++j) {
      const double x = x0 + i * step;
      const double y = y0 + j * step;
      points.push_back({x, y, f(x, y)});
    }
  }
  return points;
}

inline SurfaceBoundary Rect(SurfaceBoundaryType type, bool nonDestructive, double x0, double y0, double x1, double y1) {
  return SurfaceBoundary{type, nonDestructive, {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}}};
}

inline double RingArea(const std::vector<Point3>& ring) {
  double a = 0.0;
  for (std::size_t i = 0; i < ring.size(); ++i) {
    const Point3& p = ring[i];
    const Point3& q = ring[(i + 1) % ring.size()];
    a += p.x * q.y - q.x * p.y;
  }
  return 0.5 * a;
}

// Elevation at (x, y) from the triangle of the list that holds it best (none further than 1e-7
// in plan, so that a point on the edge of a long sliver counts), by barycentric weights.
inline std::optional<double> BruteElevation(const std::vector<Triangle>& triangles, double x, double y) {
  const Point3 p{x, y, 0.0};
  std::optional<double> z;
  double best = 1e-7;
  for (const Triangle& t : triangles) {
    const double area = Cross2(t[0], t[1], t[2]);
    const double w[3] = {Cross2(p, t[1], t[2]) / area, Cross2(p, t[2], t[0]) / area, Cross2(p, t[0], t[1]) / area};
    double outside = 0.0;  // the largest distance beyond an edge
    for (int i = 0; i < 3; ++i) {
      const Point3& a = t[(i + 1) % 3];
      const Point3& b = t[(i + 2) % 3];
      outside = std::max(outside, -w[i] * area / std::hypot(b.x - a.x, b.y - a.y));
    }
    if (outside <= best) {
      best = outside;
      z = w[0] * t[0].z + w[1] * t[1].z + w[2] * t[2].z;
    }
  }
  return z;
}

// Parameters along from -> to where the segment meets a triangle edge (and its ends when they lie
// on a triangle), sorted, with values closer than `merge` taken as one.
inline std::vector<double> BruteCrossings(const std::vector<Triangle>& triangles, Point2 from, Point2 to,
                                          double merge = 1e-9) {
  std::vector<double> ts;
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  for (const Triangle& t : triangles) {
    for (int e = 0; e < 3; ++e) {
      const Point3& a = t[e];
      const Point3& b = t[(e + 1) % 3];
      const double ex = b.x - a.x;
      const double ey = b.y - a.y;
      const double denom = dx * ey - dy * ex;
      if (denom == 0.0) continue;
      const double s = ((a.x - from.x) * ey - (a.y - from.y) * ex) / denom;
      const double u = ((a.x - from.x) * dy - (a.y - from.y) * dx) / denom;
      if (s >= 0.0 && s <= 1.0 && u >= -1e-12 && u <= 1.0 + 1e-12) ts.push_back(s);
    }
  }
  if (BruteElevation(triangles, from.x, from.y)) ts.push_back(0.0);
  if (BruteElevation(triangles, to.x, to.y)) ts.push_back(1.0);
  std::sort(ts.begin(), ts.end());
  std::vector<double> merged;
  for (const double t : ts) {
    if (merged.empty() || t - merged.back() > merge) merged.push_back(t);
  }
  return merged;
}

// The nearest t >= 0 where origin + t dir meets a triangle (Moller-Trumbore on every triangle).
inline std::optional<double> BruteRay(const std::vector<Triangle>& triangles, Point3 o, Point3 d) {
  std::optional<double> best;
  for (const Triangle& t : triangles) {
    const double e1[3] = {t[1].x - t[0].x, t[1].y - t[0].y, t[1].z - t[0].z};
    const double e2[3] = {t[2].x - t[0].x, t[2].y - t[0].y, t[2].z - t[0].z};
    const double p[3] = {d.y * e2[2] - d.z * e2[1], d.z * e2[0] - d.x * e2[2], d.x * e2[1] - d.y * e2[0]};
    const double det = e1[0] * p[0] + e1[1] * p[1] + e1[2] * p[2];
    if (std::abs(det) < 1e-300) continue;
    const double s[3] = {o.x - t[0].x, o.y - t[0].y, o.z - t[0].z};
    const double u = (s[0] * p[0] + s[1] * p[1] + s[2] * p[2]) / det;
    const double q[3] = {s[1] * e1[2] - s[2] * e1[1], s[2] * e1[0] - s[0] * e1[2], s[0] * e1[1] - s[1] * e1[0]};
    const double v = (d.x * q[0] + d.y * q[1] + d.z * q[2]) / det;
    const double r = (e2[0] * q[0] + e2[1] * q[1] + e2[2] * q[2]) / det;
    constexpr double kSlack = 1e-12;
    if (u < -kSlack || v < -kSlack || u + v > 1.0 + kSlack || r < 0.0) continue;
    if (!best || r < *best) best = r;
  }
  return best;
}

}  // namespace tintest
