// Area, point containment and boolean operations on closed polylines. Arc segments are
// replaced by chords no further than chordHeight_units from the arc before the computation;
// the results therefore carry straight segments only.
#pragma once

#include <vector>

#include "module/geometry/KdPoint.h"
#include "module/geometry/KdPolyline.h"

namespace kdgeo {

// One connected piece of a result: its outer boundary (counter-clockwise) and its holes
// (clockwise), each a closed polyline of straight segments at the first operand's elevation
// (the z of its first vertex).
struct CKdRegion {
  CKdPolyline outer;
  std::vector<CKdPolyline> holes;
};

enum class PolygonStatus {
  kOk,
  // chordHeight_units is not positive and finite.
  kBadTolerance,
  // An operand is open, has fewer than two vertices or a coordinate or bulge that is not finite.
  kNotClosedPolygon,
  // An operand crosses or touches itself, or doubles back on itself.
  kSelfIntersecting,
  // The overlay itself failed; nothing is reported but the empty result.
  kFailed,
};

// A closed polyline that encloses no area (its vertices collinear or coincident) is the empty
// set to every operation below. Any other status than kOk gives an empty result, 0.0 or false;
// `status`, when given, says which.

// The enclosed area (positive whichever way the polyline runs).
double Area(const CKdPolyline& polygon, double chordHeight_units, PolygonStatus* status = nullptr);
// Total area of regions: outer boundaries less their holes.
double Area(const std::vector<CKdRegion>& regions);
// Whether the point lies inside the polygon or on its boundary (in the xy plane).
bool Contains(const CKdPolyline& polygon, const CKdPoint& point, double chordHeight_units,
              PolygonStatus* status = nullptr);
// Whether the point lies in a region, not in one of its holes (the boundaries count as inside).
bool Contains(const std::vector<CKdRegion>& regions, const CKdPoint& point);

std::vector<CKdRegion> Union(const CKdPolyline& a, const CKdPolyline& b, double chordHeight_units,
                             PolygonStatus* status = nullptr);
std::vector<CKdRegion> Intersect(const CKdPolyline& a, const CKdPolyline& b, double chordHeight_units,
                                 PolygonStatus* status = nullptr);
// What of a lies outside b.
std::vector<CKdRegion> Difference(const CKdPolyline& a, const CKdPolyline& b, double chordHeight_units,
                                  PolygonStatus* status = nullptr);

}  // namespace kdgeo
