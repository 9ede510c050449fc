// The built state of a TIN surface: a constrained Delaunay triangulation of the xy projection
// (CGAL, in TinTriangulation.cpp only) with a visibility flag per triangle, and the queries that
// walk it. Built once from a prepared input and immutable afterwards, so that pasted surfaces can
// share it. TinSurface.h describes what the build means; this is how.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "headless/aecc/model/TinSurface.h"
#include "headless/aecc/model/internal/TinGeometry.h"

namespace headless::land::tin {

// What the triangulation is built from, already filtered and ordered (TinBuildInput.cpp).
struct BuildInput {
  // In order of precedence: of points closer than mergeDistance the earlier one is kept.
  std::vector<Point3> points;
  double mergeDistance = kSurfacePointMergeDistance;
  // The first this many points (pasted surfaces' vertices) merge with one another only at
  // exactly the same plan position: a pasted surface may hold vertices closer than the merge
  // distance (where a boundary was cut into it), and its triangles must survive.
  std::uint32_t exactOnly = 0;
  // Segments between points (indices), inserted in this order; where two cross, the point takes
  // the elevation along the one inserted later.
  std::vector<std::pair<std::uint32_t, std::uint32_t>> constraints;
  // Outer, hide and show boundaries in the order they apply (no data clip).
  std::vector<SurfaceBoundary> boundaries;
};

// The visible part of a triangulation as vertices and edges (each edge once).
struct VisibleMesh {
  std::vector<Point3> vertices;
  std::vector<std::pair<std::uint32_t, std::uint32_t>> edges;
};

class TinTriangulation {
public:
  static std::shared_ptr<const TinTriangulation> Build(const BuildInput& input);

  ~TinTriangulation();
  TinTriangulation(const TinTriangulation&) = delete;
  TinTriangulation& operator=(const TinTriangulation&) = delete;

  int TriangleCount() const;
  int VertexCount() const;
  std::vector<double> Triangles() const;
  Outcome<double> ElevationAt(Point2 p) const;
  Outcome<std::vector<Point3>> SampleSegment(Point2 from, Point2 to) const;
  std::vector<Interval> CoveredIntervals(Point2 from, Point2 to) const;
  Outcome<Point3> IntersectRay(const Point3& origin, const Point3& direction) const;
  double Area2d() const;
  double Area3d() const;
  Outcome<ElevationRange> Elevations() const;
  std::vector<std::vector<Point3>> Outline() const;
  VisibleMesh Mesh() const;
  bool IsValid() const;

private:
  struct Impl;
  TinTriangulation();
  std::unique_ptr<Impl> impl_;
};

}  // namespace headless::land::tin
