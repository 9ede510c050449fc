// The only translation unit that includes Boost.Geometry: it compiles slowly.
#include "module/geometry/KdPolygonOps.h"

#include <boost/geometry.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>

#include <cmath>
#include <exception>
#include <optional>

namespace bg = boost::geometry;

namespace kdgeo {
namespace {

using Point = bg::model::d2::point_xy<double>;
// Counter-clockwise outer rings, closed (the first point repeated at the end).
using Polygon = bg::model::polygon<Point, false, true>;
using MultiPolygon = bg::model::multi_polygon<Polygon>;

struct Operand {
  Polygon polygon;
  bool enclosesNothing = false;
  double elevation = 0.0;
};

void Report(PolygonStatus* status, PolygonStatus value) {
  if (status != nullptr) *status = value;
}

bool ToleranceIsUsable(double chordHeight_units) {
  return chordHeight_units > 0.0 && std::isfinite(chordHeight_units);
}

// Collinear (or coincident) vertices: every fan triangle's area is rounding noise against the
// extent of the outline. A signed area alone would not do: a symmetric bow tie sums to zero.
bool EnclosesNothing(const Polygon& polygon) {
  constexpr double kNoiseRelativeToExtent = 1e-12;
  const auto& ring = polygon.outer();
  if (ring.empty()) return true;
  const bg::model::box<Point> box = bg::return_envelope<bg::model::box<Point>>(ring);
  const double extent = bg::comparable_distance(box.min_corner(), box.max_corner());
  const Point& o = ring.front();
  double fan = 0.0;
  for (std::size_t i = 1; i + 1 < ring.size(); ++i) {
    const double ax = ring[i].x() - o.x(), ay = ring[i].y() - o.y();
    const double bx = ring[i + 1].x() - o.x(), by = ring[i + 1].y() - o.y();
    fan += std::fabs(ax * by - ay * bx);
  }
  return fan <= kNoiseRelativeToExtent * extent;
}

// The polyline as a Boost polygon, or the reason it is not one.
std::optional<Operand> MakeOperand(const CKdPolyline& polyline, double chordHeight_units, PolygonStatus* status) {
  if (!polyline.IsClosed() || polyline.VertexCount() < 2) {
    Report(status, PolygonStatus::kNotClosedPolygon);
    return std::nullopt;
  }
  for (std::size_t i = 0; i < polyline.VertexCount(); ++i) {
    const CKdPoint p = polyline.Vertex(i);
    if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z) || !std::isfinite(polyline.Bulge(i))) {
      Report(status, PolygonStatus::kNotClosedPolygon);
      return std::nullopt;
    }
  }
  const CKdPolyline chords = polyline.ToChords(chordHeight_units);
  Operand operand;
  operand.elevation = polyline.Vertex(0).z;
  Polygon polygon;
  for (std::size_t i = 0; i < chords.VertexCount(); ++i) {
    const CKdPoint p = chords.Vertex(i);
    bg::append(polygon.outer(), Point(p.x, p.y));
  }
  bg::unique(polygon);
  bg::correct(polygon);
  bg::validity_failure_type failure = bg::no_failure;
  if (!bg::is_valid(polygon, failure)) {
    if (failure == bg::failure_few_points || EnclosesNothing(polygon)) {
      operand.enclosesNothing = true;
      Report(status, PolygonStatus::kOk);
      return operand;
    }
    Report(status, PolygonStatus::kSelfIntersecting);
    return std::nullopt;
  }
  operand.polygon = std::move(polygon);
  Report(status, PolygonStatus::kOk);
  return operand;
}

CKdPolyline ToPolyline(const Polygon::ring_type& ring, double elevation) {
  CKdPolyline polyline;
  // Boost repeats the first point at the end; a closed polyline does not.
  for (std::size_t i = 0; i + 1 < ring.size(); ++i) polyline.AddVertex(CKdPoint(ring[i].x(), ring[i].y(), elevation));
  polyline.SetClosed(true);
  return polyline;
}

std::vector<CKdRegion> ToRegions(const MultiPolygon& result, double elevation) {
  std::vector<CKdRegion> regions;
  regions.reserve(result.size());
  for (const Polygon& polygon : result) {
    CKdRegion region;
    region.outer = ToPolyline(polygon.outer(), elevation);
    for (const auto& hole : polygon.inners()) region.holes.push_back(ToPolyline(hole, elevation));
    regions.push_back(std::move(region));
  }
  return regions;
}

enum class Overlay { kUnion, kIntersection, kDifference };

std::vector<CKdRegion> Combine(Overlay overlay, const CKdPolyline& a, const CKdPolyline& b, double chordHeight_units,
                               PolygonStatus* status) {
  if (!ToleranceIsUsable(chordHeight_units)) {
    Report(status, PolygonStatus::kBadTolerance);
    return {};
  }
  try {
    const std::optional<Operand> first = MakeOperand(a, chordHeight_units, status);
    if (!first) return {};
    const std::optional<Operand> second = MakeOperand(b, chordHeight_units, status);
    if (!second) return {};
    MultiPolygon result;
    // An operand that encloses nothing is the empty set; the overlay wants real polygons.
    if (first->enclosesNothing || second->enclosesNothing) {
      const bool keepFirst = !first->enclosesNothing && overlay != Overlay::kIntersection;
      const bool keepSecond = !second->enclosesNothing && overlay == Overlay::kUnion;
      if (keepFirst) result.push_back(first->polygon);
      if (keepSecond) result.push_back(second->polygon);
    } else {
      switch (overlay) {
        case Overlay::kUnion:
          bg::union_(first->polygon, second->polygon, result);
          break;
        case Overlay::kIntersection:
          bg::intersection(first->polygon, second->polygon, result);
          break;
        case Overlay::kDifference:
          bg::difference(first->polygon, second->polygon, result);
          break;
      }
    }
    Report(status, PolygonStatus::kOk);
    return ToRegions(result, first->elevation);
  } catch (const std::exception&) {
    // Boost reports overlay trouble by throwing; nothing leaves this function but the result.
    Report(status, PolygonStatus::kFailed);
    return {};
  }
}

Polygon RegionToPolygon(const CKdRegion& region) {
  Polygon polygon;
  auto appendRing = [](const CKdPolyline& from, Polygon::ring_type& to) {
    for (std::size_t i = 0; i < from.VertexCount(); ++i) bg::append(to, Point(from.Vertex(i).x, from.Vertex(i).y));
  };
  appendRing(region.outer, polygon.outer());
  polygon.inners().resize(region.holes.size());
  for (std::size_t h = 0; h < region.holes.size(); ++h) appendRing(region.holes[h], polygon.inners()[h]);
  bg::correct(polygon);
  return polygon;
}

}  // namespace

double Area(const CKdPolyline& polygon, double chordHeight_units, PolygonStatus* status) {
  if (!ToleranceIsUsable(chordHeight_units)) {
    Report(status, PolygonStatus::kBadTolerance);
    return 0.0;
  }
  try {
    const std::optional<Operand> operand = MakeOperand(polygon, chordHeight_units, status);
    return operand && !operand->enclosesNothing ? bg::area(operand->polygon) : 0.0;
  } catch (const std::exception&) {
    Report(status, PolygonStatus::kFailed);
    return 0.0;
  }
}

double Area(const std::vector<CKdRegion>& regions) {
  double area = 0.0;
  try {
    for (const CKdRegion& region : regions) area += bg::area(RegionToPolygon(region));
  } catch (const std::exception&) {
    return 0.0;
  }
  return area;
}

bool Contains(const CKdPolyline& polygon, const CKdPoint& point, double chordHeight_units, PolygonStatus* status) {
  if (!ToleranceIsUsable(chordHeight_units)) {
    Report(status, PolygonStatus::kBadTolerance);
    return false;
  }
  if (!std::isfinite(point.x) || !std::isfinite(point.y)) return false;
  try {
    const std::optional<Operand> operand = MakeOperand(polygon, chordHeight_units, status);
    return operand && !operand->enclosesNothing && bg::covered_by(Point(point.x, point.y), operand->polygon);
  } catch (const std::exception&) {
    Report(status, PolygonStatus::kFailed);
    return false;
  }
}

bool Contains(const std::vector<CKdRegion>& regions, const CKdPoint& point) {
  if (!std::isfinite(point.x) || !std::isfinite(point.y)) return false;
  try {
    for (const CKdRegion& region : regions)
      if (bg::covered_by(Point(point.x, point.y), RegionToPolygon(region))) return true;
  } catch (const std::exception&) {
  }
  return false;
}

std::vector<CKdRegion> Union(const CKdPolyline& a, const CKdPolyline& b, double chordHeight_units,
                             PolygonStatus* status) {
  return Combine(Overlay::kUnion, a, b, chordHeight_units, status);
}

std::vector<CKdRegion> Intersect(const CKdPolyline& a, const CKdPolyline& b, double chordHeight_units,
                                 PolygonStatus* status) {
  return Combine(Overlay::kIntersection, a, b, chordHeight_units, status);
}

std::vector<CKdRegion> Difference(const CKdPolyline& a, const CKdPolyline& b, double chordHeight_units,
                                  PolygonStatus* status) {
  return Combine(Overlay::kDifference, a, b, chordHeight_units, status);
}

}  // namespace kdgeo
