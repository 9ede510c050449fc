#include "headless/aecc/model/ProfileGeometry.h"

#include <algorithm>
#include <cmath>

namespace headless::land {
namespace {

bool StationBefore(const Pvi& pvi, double station) { return pvi.station < station; }

}  // namespace

const Pvi* ProfileGeometry::Item(int index) const {
  if (index < 0 || index >= Count()) return nullptr;
  return &pvis_[static_cast<std::size_t>(index)];
}

int ProfileGeometry::IndexOfId(int id) const {
  const auto found = std::find_if(pvis_.begin(), pvis_.end(), [id](const Pvi& p) { return p.id == id; });
  return found == pvis_.end() ? -1 : static_cast<int>(found - pvis_.begin());
}

LandError ProfileGeometry::CheckCurve(const VerticalCurve& curve) {
  const auto positive = [](double v) { return std::isfinite(v) && v > 0.0; };
  switch (curve.type) {
    case VerticalCurveType::None: return LandError::None;
    case VerticalCurveType::Circular: return positive(curve.radius) ? LandError::None : LandError::InvalidArgument;
    case VerticalCurveType::SymmetricParabola:
      return positive(curve.length) ? LandError::None : LandError::InvalidArgument;
    case VerticalCurveType::AsymmetricParabola:
      return positive(curve.length1) && positive(curve.length2) ? LandError::None : LandError::InvalidArgument;
  }
  return LandError::InvalidArgument;
}

LandError ProfileGeometry::CheckStation(double station, const StationRange& allowed, int ignoreIndex) const {
  if (!std::isfinite(station)) return LandError::InvalidArgument;
  if (station < allowed.start - kStationTolerance || station > allowed.end + kStationTolerance) {
    return LandError::OutOfRange;
  }
  const auto place = std::lower_bound(pvis_.begin(), pvis_.end(), station, StationBefore);
  const auto clashes = [&](std::vector<Pvi>::const_iterator it) {
    return it != pvis_.end() && it - pvis_.begin() != ignoreIndex && std::abs(it->station - station) < kStationTolerance;
  };
  if (clashes(place)) return LandError::Duplicate;
  if (place != pvis_.begin() && clashes(std::prev(place))) return LandError::Duplicate;
  // The PVI being moved may sit between the candidates; look one further on each side.
  if (place != pvis_.end() && clashes(std::next(place))) return LandError::Duplicate;
  if (place - pvis_.begin() >= 2 && clashes(std::prev(place, 2))) return LandError::Duplicate;
  return LandError::None;
}

Outcome<int> ProfileGeometry::AddPvi(double station, double elevation, const VerticalCurve& curve,
                                     const StationRange& allowed) {
  if (!std::isfinite(elevation)) return LandError::InvalidArgument;
  if (const LandError e = CheckCurve(curve); e != LandError::None) return e;
  if (const LandError e = CheckStation(station, allowed, -1); e != LandError::None) return e;
  const auto place = std::lower_bound(pvis_.begin(), pvis_.end(), station, StationBefore);
  const int id = nextId_++;
  pvis_.insert(place, Pvi{id, station, elevation, curve});
  Changed();
  return id;
}

LandError ProfileGeometry::RemovePvi(int index) {
  if (Item(index) == nullptr) return LandError::NotFound;
  pvis_.erase(pvis_.begin() + index);
  Changed();
  return LandError::None;
}

Outcome<int> ProfileGeometry::SetStation(int index, double station, const StationRange& allowed) {
  if (Item(index) == nullptr) return LandError::NotFound;
  if (const LandError e = CheckStation(station, allowed, index); e != LandError::None) return e;
  Pvi moved = pvis_[static_cast<std::size_t>(index)];
  moved.station = station;
  pvis_.erase(pvis_.begin() + index);
  const auto place = std::lower_bound(pvis_.begin(), pvis_.end(), station, StationBefore);
  const int at = static_cast<int>(place - pvis_.begin());
  pvis_.insert(place, moved);
  Changed();
  return at;
}

LandError ProfileGeometry::SetElevation(int index, double elevation) {
  if (Item(index) == nullptr) return LandError::NotFound;
  if (!std::isfinite(elevation)) return LandError::InvalidArgument;
  pvis_[static_cast<std::size_t>(index)].elevation = elevation;
  Changed();
  return LandError::None;
}

LandError ProfileGeometry::SetCurve(int index, const VerticalCurve& curve) {
  if (Item(index) == nullptr) return LandError::NotFound;
  if (const LandError e = CheckCurve(curve); e != LandError::None) return e;
  pvis_[static_cast<std::size_t>(index)].curve = curve;
  Changed();
  return LandError::None;
}

Outcome<double> ProfileGeometry::GradeIn(int index) const {
  if (Item(index) == nullptr) return LandError::NotFound;
  if (index == 0) return LandError::Empty;
  const Pvi& a = pvis_[static_cast<std::size_t>(index) - 1];
  const Pvi& b = pvis_[static_cast<std::size_t>(index)];
  return (b.elevation - a.elevation) / (b.station - a.station);
}

Outcome<double> ProfileGeometry::GradeOut(int index) const {
  if (Item(index) == nullptr) return LandError::NotFound;
  if (index + 1 == Count()) return LandError::Empty;
  return GradeIn(index + 1);
}

Outcome<double> ProfileGeometry::StartingStation() const {
  if (pvis_.empty()) return LandError::Empty;
  return pvis_.front().station;
}

Outcome<double> ProfileGeometry::EndingStation() const {
  if (pvis_.empty()) return LandError::Empty;
  return pvis_.back().station;
}

void ProfileGeometry::Prepare() const {
  if (fresh_) return;
  const std::size_t n = pvis_.size();
  prepared_.assign(n, Prepared{});
  stations_.resize(n);
  unfitReaches_.clear();
  for (std::size_t i = 0; i < n; ++i) {
    prepared_[i].station = stations_[i] = pvis_[i].station;
    prepared_[i].elevation = pvis_[i].elevation;
    if (i + 1 < n) {
      prepared_[i].gradeOut =
          (pvis_[i + 1].elevation - pvis_[i].elevation) / (pvis_[i + 1].station - pvis_[i].station);
    }
  }
  for (std::size_t i = 1; i + 1 < n; ++i) {
    const VerticalCurve& curve = pvis_[i].curve;
    Prepared& p = prepared_[i];
    const double s = p.station;
    const double z = p.elevation;
    const double g1 = prepared_[i - 1].gradeOut;
    const double g2 = p.gradeOut;
    p.gradeIn = g1;
    switch (curve.type) {
      case VerticalCurveType::None: break;
      case VerticalCurveType::SymmetricParabola: {
        const double half = 0.5 * curve.length;
        p.curve = curve.type;
        p.begin = s - half;
        p.end = s + half;
        p.zBegin = z - g1 * half;
        p.zEnd = z + g2 * half;
        p.a = (g2 - g1) / (2.0 * curve.length);
        break;
      }
      case VerticalCurveType::AsymmetricParabola: {
        // Two parabolas meeting below (or above) the PVI with a common tangent there, at the
        // middle ordinate e = L1 L2 (g2 - g1) / (2 (L1 + L2)).
        const double l1 = curve.length1;
        const double l2 = curve.length2;
        const double e = l1 * l2 * (g2 - g1) / (2.0 * (l1 + l2));
        p.curve = curve.type;
        p.begin = s - l1;
        p.end = s + l2;
        p.zBegin = z - g1 * l1;
        p.zEnd = z + g2 * l2;
        p.a = e / (l1 * l1);
        p.b = e / (l2 * l2);
        break;
      }
      case VerticalCurveType::Circular: {
        const double alpha1 = std::atan(g1);
        const double alpha2 = std::atan(g2);
        const double delta = alpha2 - alpha1;
        if (delta == 0.0) break;  // one straight grade: the circle touches nothing
        const double r = curve.radius;
        const double tangent = r * std::tan(0.5 * std::abs(delta));
        p.curve = curve.type;
        p.begin = s - tangent * std::cos(alpha1);
        p.zBegin = z - tangent * std::sin(alpha1);
        p.end = s + tangent * std::cos(alpha2);
        p.zEnd = z + tangent * std::sin(alpha2);
        // The centre lies on the normal to the incoming grade, above it in a sag, below at a crest.
        const double side = delta > 0.0 ? 1.0 : -1.0;
        p.a = p.begin - side * r * std::sin(alpha1);
        p.b = p.zBegin + side * r * std::cos(alpha1);
        p.radius = side * r;
        break;
      }
    }
  }
  // A curve must stay between its neighbouring PVIs and clear of the next curve.
  for (std::size_t i = 1; i + 1 < n; ++i) {
    Prepared& p = prepared_[i];
    if (p.curve == VerticalCurveType::None) continue;
    if (p.begin < prepared_[i - 1].station - kStationTolerance || p.end > prepared_[i + 1].station + kStationTolerance) {
      p.fits = false;
    }
    Prepared& next = prepared_[i + 1];
    if (i + 2 < n && next.curve != VerticalCurveType::None && next.begin < p.end - kStationTolerance) {
      p.fits = false;
      next.fits = false;
    }
  }
  for (const Prepared& p : prepared_) {
    if (p.curve != VerticalCurveType::None && !p.fits) unfitReaches_.push_back({p.begin, p.end});
  }
  std::sort(unfitReaches_.begin(), unfitReaches_.end(), [](const Reach& a, const Reach& b) { return a.begin < b.begin; });
  for (std::size_t i = 1; i < unfitReaches_.size(); ++i) {
    unfitReaches_[i].end = std::max(unfitReaches_[i].end, unfitReaches_[i - 1].end);
  }
  fresh_ = true;
}

Outcome<CurveExtent> ProfileGeometry::CurveAt(int index) const {
  if (Item(index) == nullptr) return LandError::NotFound;
  Prepare();
  const Prepared& p = prepared_[static_cast<std::size_t>(index)];
  if (p.curve == VerticalCurveType::None) return LandError::NotFound;
  return CurveExtent{p.begin, p.end, p.zBegin, p.zEnd, p.fits};
}

bool ProfileGeometry::CurvesFit() const {
  Prepare();
  return unfitReaches_.empty();
}

double ProfileGeometry::Evaluate(const Prepared& p, double station) {
  switch (p.curve) {
    case VerticalCurveType::SymmetricParabola: {
      const double t = station - p.begin;
      return p.zBegin + t * (p.gradeIn + p.a * t);
    }
    case VerticalCurveType::AsymmetricParabola: {
      if (station <= p.station) {
        const double t = station - p.begin;
        return p.zBegin + t * (p.gradeIn + p.a * t);
      }
      const double u = p.end - station;
      return p.zEnd - u * (p.gradeOut - p.b * u);
    }
    case VerticalCurveType::Circular: {
      const double dx = station - p.a;
      const double rise = std::sqrt(std::max(0.0, p.radius * p.radius - dx * dx));
      return p.radius > 0.0 ? p.b - rise : p.b + rise;
    }
    case VerticalCurveType::None: break;
  }
  return p.elevation;
}

Outcome<double> ProfileGeometry::ElevationAt(double station) const {
  if (!std::isfinite(station)) return LandError::InvalidArgument;
  if (pvis_.empty()) return LandError::Empty;
  Prepare();
  if (station < stations_.front() || station > stations_.back()) return LandError::OutOfRange;
  if (!unfitReaches_.empty()) {
    const auto after = std::upper_bound(unfitReaches_.begin(), unfitReaches_.end(), station,
                                        [](double s, const Reach& r) { return s < r.begin; });
    if (after != unfitReaches_.begin() && std::prev(after)->end >= station) return LandError::CurveDoesNotFit;
  }
  const std::size_t n = stations_.size();
  if (n == 1) return prepared_.front().elevation;
  const std::size_t j = std::min<std::size_t>(
      static_cast<std::size_t>(std::upper_bound(stations_.begin(), stations_.end(), station) - stations_.begin()) - 1,
      n - 2);
  const Prepared& p = prepared_[j];
  if (p.curve != VerticalCurveType::None && station <= p.end) return Evaluate(p, station);
  const Prepared& q = prepared_[j + 1];
  if (q.curve != VerticalCurveType::None && station >= q.begin) return Evaluate(q, station);
  // On the grade line, written so that both PVIs come out exactly.
  const double t = (station - p.station) / (q.station - p.station);
  return (1.0 - t) * p.elevation + t * q.elevation;
}

}  // namespace headless::land
