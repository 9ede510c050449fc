#include "landxml/Model.h"

#include <cmath>
#include <numbers>
#include <ostream>

namespace landxml {
namespace {

void Scale(double& v, double f) { v *= f; }
void Scale(std::optional<double>& v, double f) {
  if (v) *v *= f;
}
void Scale(CPoint& p, double f) {
  p.x *= f;
  p.y *= f;
  p.z *= f;
}
void Scale(std::optional<CPoint>& p, double f) {
  if (p) Scale(*p, f);
}
void Scale(std::vector<CPoint>& points, double f) {
  for (CPoint& p : points) Scale(p, f);
}

void Scale(CGeometry& element, double f) {
  if (auto* line = std::get_if<CLine>(&element)) {
    Scale(line->start, f);
    Scale(line->end, f);
    Scale(line->staStart, f);
    Scale(line->length, f);
  } else if (auto* curve = std::get_if<CCurve>(&element)) {
    Scale(curve->start, f);
    Scale(curve->center, f);
    Scale(curve->end, f);
    Scale(curve->pi, f);
    Scale(curve->radius, f);
    Scale(curve->length, f);
    Scale(curve->staStart, f);
    Scale(curve->chord, f);
  } else if (auto* spiral = std::get_if<CSpiral>(&element)) {
    Scale(spiral->start, f);
    Scale(spiral->end, f);
    Scale(spiral->pi, f);
    Scale(spiral->length, f);
    Scale(spiral->radiusStart, f);  // an infinite radius stays infinite
    Scale(spiral->radiusEnd, f);
    Scale(spiral->staStart, f);
    Scale(spiral->tanLong, f);
    Scale(spiral->tanShort, f);
    Scale(spiral->constant, f);  // A squared is radius times length: A is a length too
  }
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const CPoint& p) {
  out << "(x " << p.x << ", y " << p.y;
  if (p.hasZ) out << ", z " << p.z;
  return out << ")";
}

void ConvertLinearUnit(CModel& model, LinearUnit unit) {
  const double f = LinearFactor(model.units.linear, unit);
  model.units.linear = unit;
  if (f == 1.0) return;
  for (CAlignment& a : model.alignments) {
    Scale(a.staStart, f);
    Scale(a.length, f);
    for (CGeometry& g : a.geometry) Scale(g, f);
    for (CStationEquation& e : a.stationEquations) {
      Scale(e.staBack, f);
      Scale(e.staAhead, f);
      Scale(e.staInternal, f);
    }
    for (CProfile& profile : a.profiles) {
      Scale(profile.staStart, f);
      for (CProfAlign& layout : profile.layouts) {
        for (CProfileVertex& v : layout.vertices) {
          Scale(v.station, f);
          Scale(v.elevation, f);
          Scale(v.length, f);
          Scale(v.lengthIn, f);
          Scale(v.lengthOut, f);
          Scale(v.radius, f);
        }
      }
      for (CProfSurf& sampled : profile.surfaceProfiles) {
        for (CStationElevation& p : sampled.points) {
          Scale(p.station, f);
          Scale(p.elevation, f);
        }
      }
    }
  }
  for (CSurface& s : model.surfaces) {
    Scale(s.points, f);
    for (CBreakline& b : s.breaklines) Scale(b.points, f);
    for (CBoundary& b : s.boundaries) Scale(b.points, f);
  }
}

double AzimuthBetween(const CPoint& from, const CPoint& to) {
  const double dx = to.x - from.x;
  const double dy = to.y - from.y;
  if (dx == 0.0 && dy == 0.0) return 0.0;
  double azimuth = std::atan2(dx, dy);
  if (azimuth < 0.0) azimuth += 2.0 * std::numbers::pi;
  return azimuth;
}

}  // namespace landxml
