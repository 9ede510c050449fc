// A TIN surface's computing state: the definition it is built from (points, standard
// breaklines, boundaries, pasted surfaces) and, after Rebuild, the triangulation that answers
// for it (the triangle list, elevations, samples along a segment, ray hits, area, outline).
//
// The triangulation is a constrained Delaunay triangulation of the xy projection carrying z
// along (CGAL, inside this library only). Rebuild works through the definition in a fixed order:
//
// 1. Data clip: of the data-clip boundaries only the last one counts (Civil 3D filters new data
//    with the most recent one). Points outside it are left out and breaklines are cut at it.
// 2. Pasted surfaces replace the area they cover: base points there are left out, base
//    breaklines are cut at the pasted surface's edge (the cut end takes the pasted surface's
//    elevation, so the breakline climbs to meet it), and the pasted surface's vertices and
//    triangle edges go in as they are (its edges as constraints), so its triangles come back
//    unchanged; the seam is triangulated from the base points outside to the pasted edge.
//    A later paste covers an earlier one in the same way. What a paste covers is the visible
//    part of that surface as built when AddPaste was called (a snapshot).
// 3. Points and breakline vertices are triangulated together. Points closer than
//    kSurfacePointMergeDistance in plan are one point and the first is kept, as Civil 3D keeps
//    the one it processes first (and then drops the second). Of coinciding vertices, a pasted
//    surface's beats a breakline's, a breakline's beats a point's, and a later breakline's beats
//    an earlier one's: each is data added later, and a standard breakline adds its vertex
//    elevations as they are.
// 4. Breakline segments become constraints, in the order the breaklines were added. Where two
//    cross, the crossing point takes the elevation interpolated along the breakline added later
//    ("last one wins", as Civil 3D settles crossing feature lines); a breakline passing exactly
//    over a surface point runs through that point at the point's elevation.
// 5. Boundaries other than data clip apply in the order added; each may override the ones
//    before it (Civil 3D's rule). Outer: triangles inside visible, outside hidden (so of several
//    outer boundaries the last one shows). Hide: triangles inside hidden. Show: triangles inside
//    visible again. Hidden triangles stay in the triangulation (the TIN is intact, as with
//    Civil 3D's hide boundaries) but no query sees them.
//    Non-destructive: the boundary is cut into the surface exactly; it gets a vertex wherever it
//    crosses a triangle edge, at the surface's elevation there, and the triangles it crosses are
//    split without changing their planes, so the surface keeps its shape. Parts of the boundary
//    outside the triangulated area add nothing.
//    Destructive: nothing is cut in; a triangle whose interior the boundary crosses is dropped
//    (hidden) by any boundary type, and the others are inside or outside as a whole. So a
//    destructive outer boundary keeps only the triangles wholly inside it, and a destructive
//    hide hides every triangle it touches. Destructive boundaries are judged against the final
//    triangulation, after every non-destructive one is cut in.
//
// Queries answer for the visible triangles of the last Rebuild; changing the definition does not
// change them until the next Rebuild (the surface is then out of date, as in Civil 3D).
// A surface with fewer than three points that are not all on one line has no triangles; every
// query then answers Empty. Not thread-safe for writing; const queries may run concurrently.
#pragma once

#include <memory>
#include <ostream>
#include <utility>
#include <vector>

#include "headless/aecc/model/LandTypes.h"

namespace headless::land {

struct Point3 {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
  friend bool operator==(const Point3&, const Point3&) = default;
};

inline std::ostream& operator<<(std::ostream& out, const Point3& p) {
  return out << '(' << p.x << ", " << p.y << ", " << p.z << ')';
}

// Points closer than this in plan (drawing units) are one surface point: Civil 3D treats points
// less than 0.0001 apart as the same point.
inline constexpr double kSurfacePointMergeDistance = 1e-4;

// Civil 3D's boundary type codes (AeccBoundaryType; SurfaceBoundaryType in .NET).
enum class SurfaceBoundaryType : int { Show = 1, Hide = 2, Outer = 4, DataClip = 8 };

struct SurfaceBoundary {
  SurfaceBoundaryType type = SurfaceBoundaryType::Outer;
  // Ignored for a data clip, which filters data and cuts nothing.
  bool nonDestructive = true;
  // A closed ring in plan; arcs already tessellated by the caller. Either orientation.
  std::vector<Point2> polygon;
};

struct ElevationRange {
  double minimum = 0.0;
  double maximum = 0.0;
};

namespace tin {
class TinTriangulation;
}

class KD_PLATFORM_API TinSurface {
public:
  TinSurface();
  ~TinSurface();
  TinSurface(TinSurface&&) noexcept;
  TinSurface& operator=(TinSurface&&) noexcept;
  TinSurface(const TinSurface&) = delete;
  TinSurface& operator=(const TinSurface&) = delete;

  // --- Definition ---------------------------------------------------------------------------

  // Replaces the surface's points. Points with a coordinate that is not finite stay in the list
  // but are left out of the triangulation (a point without elevation cannot be on a TIN).
  void SetPoints(std::vector<Point3> points);
  const std::vector<Point3>& Points() const { return points_; }

  // A standard breakline: a 3D polyline whose vertices become surface points and whose segments
  // become constraints. Returns its index. InvalidArgument for fewer than two vertices or a
  // coordinate that is not finite.
  Outcome<int> AddBreakline(std::vector<Point3> vertices);
  int BreaklineCount() const { return static_cast<int>(breaklines_.size()); }
  const std::vector<Point3>* Breakline(int index) const;  // null outside [0, BreaklineCount())
  LandError RemoveBreakline(int index);                   // NotFound for a bad index
  void ClearBreaklines() { breaklines_.clear(); }

  // Returns the boundary's index. InvalidArgument for a type outside the four or a coordinate
  // that is not finite; Degenerate for fewer than three distinct vertices or no area.
  Outcome<int> AddBoundary(SurfaceBoundary boundary);
  int BoundaryCount() const { return static_cast<int>(boundaries_.size()); }
  const SurfaceBoundary* Boundary(int index) const;  // null outside [0, BoundaryCount())
  LandError RemoveBoundary(int index);               // NotFound for a bad index
  void ClearBoundaries() { boundaries_.clear(); }

  // Pastes `other` as it is built now (its visible triangles; a later rebuild of `other` does not
  // change this paste). Returns the paste's index; Empty when `other` has no triangles. A surface
  // may paste itself: it then keeps its present triangles over new data.
  Outcome<int> AddPaste(const TinSurface& other);
  int PasteCount() const { return static_cast<int>(pastes_.size()); }
  LandError RemovePaste(int index);  // NotFound for a bad index
  void ClearPastes() { pastes_.clear(); }

  // Builds the triangulation from the definition (see the top of this file). Never fails: data
  // that cannot make a triangle gives an empty surface. Time O(n log n) in the data.
  void Rebuild();

  // --- Results of the last Rebuild -----------------------------------------------------------

  int TriangleCount() const;  // visible triangles
  int VertexCount() const;    // vertices of the triangulation (hidden parts included)

  // 9 doubles per visible triangle: x, y, z of its corners, counter-clockwise in plan.
  std::vector<double> Triangles() const;

  // The elevation of the visible surface at (x, y). Empty: no triangles; OutOfRange: (x, y) is
  // not on a visible triangle (outside, or in a hidden area); InvalidArgument: not finite.
  Outcome<double> ElevationAt(double x, double y) const;
  bool IsOnSurface(double x, double y) const { return ElevationAt(x, y).Ok(); }

  // The surface along the plan segment from -> to: the start and end where they lie on the
  // visible surface, and every point where the segment crosses a triangle edge, in order from
  // the start, with the surface's elevation there. Where the segment leaves the visible surface
  // (outside it, or over a hidden area) it has no samples: the last sample is where it leaves
  // and the next where it comes back. A segment of zero length gives its point if that is on the
  // surface. Empty: no triangles; OutOfRange: no part of the segment is on the visible surface;
  // InvalidArgument: not finite. Cost: the triangles the segment crosses (a walk), never all.
  Outcome<std::vector<Point3>> SampleSegment(Point2 from, Point2 to) const;

  // The stretches of the plan segment from -> to that lie on the visible surface, as parameters
  // (0 at `from`, 1 at `to`), in order; empty when none.
  std::vector<std::pair<double, double>> CoveredIntervals(Point2 from, Point2 to) const;

  // The first point where the ray from `origin` along `direction` meets the visible surface at
  // or after the origin. NotFound: it misses; Empty: no triangles; InvalidArgument: a zero or
  // non-finite direction, or a non-finite origin. Cost: the triangles under the ray between the
  // origin and the hit, within the surface's extent and elevation range.
  Outcome<Point3> IntersectRay(const Point3& origin, const Point3& direction) const;

  // Sums over the visible triangles: plan area and sloped (3D) area.
  double Area2d() const;
  double Area3d() const;
  // Lowest and highest elevation of the visible triangles' corners. Empty without triangles.
  Outcome<ElevationRange> Elevations() const;

  // The edges of the visible surface as closed rings (the first vertex is not repeated): outer
  // rings counter-clockwise, rings around holes clockwise. Rings that touch at a vertex are
  // returned apart.
  std::vector<std::vector<Point3>> Outline() const;

  // Checks the triangulation's own consistency (combinatorial validity, Delaunay away from
  // constraints, counter-clockwise faces). True for a surface never rebuilt.
  bool IsValid() const;

private:
  std::vector<Point3> points_;
  std::vector<std::vector<Point3>> breaklines_;
  std::vector<SurfaceBoundary> boundaries_;
  std::vector<std::shared_ptr<const tin::TinTriangulation>> pastes_;
  // Immutable once built, so that a paste can keep sharing it after this surface is rebuilt.
  std::shared_ptr<const tin::TinTriangulation> built_;
};

}  // namespace headless::land
