// Plane helpers of the terrain engine that need no triangulation: a closed polygon with fast
// containment and crossing queries, the merge of points that stand at one plan position, and
// the parameter ranges of a segment kept by a clip. Plain doubles; no CGAL here.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "headless/aecc/model/TinSurface.h"

namespace headless::land::tin {

// A stretch [begin, end] of a segment's parameter (0 at its start, 1 at its end).
using Interval = std::pair<double, double>;

// A closed ring in plan (the last vertex joins the first). Containment and crossings look only
// at the edges of the horizontal bands a query touches, so a query against a ring of m edges
// costs about the few edges near it, not m.
class SurfacePolygon {
public:
  enum class Side { Inside, Outside, OnEdge };

  // Repeated consecutive vertices (and a last vertex equal to the first) are dropped.
  explicit SurfacePolygon(const std::vector<Point2>& ring);

  const std::vector<Point2>& Ring() const { return ring_; }
  // Fewer than three distinct vertices or no area: nothing is inside.
  bool IsDegenerate() const;
  double SignedArea() const { return signedArea_; }

  // Where `p` lies; crossing-number rule, with a point exactly on an edge reported OnEdge.
  Side Locate(Point2 p) const;
  bool Covers(Point2 p) const { return Locate(p) != Side::Outside; }

  // The stretches of the segment a -> b that lie inside the polygon or on its edges, in order.
  std::vector<Interval> InsideIntervals(Point2 a, Point2 b) const;

private:
  int BandOf(double y) const;
  template <class Visit>
  void ForEdgesNear(double yLow, double yHigh, Visit&& visit) const;

  std::vector<Point2> ring_;
  double signedArea_ = 0.0;
  double yMin_ = 0.0;
  double bandHeight_ = 1.0;
  std::vector<std::uint32_t> bandStart_;  // edges of band k: bandEdges_[bandStart_[k] .. bandStart_[k + 1])
  std::vector<std::uint32_t> bandEdges_;  // edge i runs from ring_[i] to ring_[(i + 1) % size]
};

// A box in plan.
struct PlanBox {
  double xMin = 0.0, yMin = 0.0, xMax = 0.0, yMax = 0.0;
  // Clips the line origin + t dir, t in [t0, t1], to the box (Liang-Barsky); false when nothing
  // is left.
  bool Clip(Point2 origin, Point2 dir, double& t0, double& t1) const;
};

// The parameters [t0, t1] of the line origin + t dir inside the closed counter-clockwise
// triangle abc. Called for triangles the line is known to meet, so a reversed result is rounding:
// it collapses to one parameter.
std::pair<double, double> ClipLineToTriangle(Point2 a, Point2 b, Point2 c, Point2 origin, Point2 dir);

// Elevation at plan point p of the plane through a, b and c (barycentric; exact at the corners).
double PlaneElevation(const Point3& a, const Point3& b, const Point3& c, Point2 p);

// For each point, the index of the point that stands for it: itself when it is kept, else the
// earliest kept point closer than `distance` in plan. Points are taken in order, so of points
// that coincide the first is kept, as Civil 3D keeps the one it meets first. The first
// `exactOnly` points merge only with points at exactly their x and y; `distance` 0 merges all
// points only so. Expected linear time (a hash grid of cells of that size; sorting when the
// distance is 0).
std::vector<std::uint32_t> MergeClosePoints(const std::vector<Point3>& points, double distance,
                                            std::uint32_t exactOnly = 0);

// `keep` minus `remove`: both sorted and disjoint; the result too. Stretches shorter than
// `minLength` (parameter units) are dropped.
std::vector<Interval> SubtractIntervals(const std::vector<Interval>& keep, const std::vector<Interval>& remove,
                                        double minLength);

}  // namespace headless::land::tin
