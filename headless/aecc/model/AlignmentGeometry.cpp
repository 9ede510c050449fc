#include "headless/aecc/model/AlignmentGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace headless::land {

// --- entities ----------------------------------------------------------------------------------

Outcome<int> AlignmentGeometry::AddFixedLine(Point2 start, Point2 end) {
  Outcome<AlignmentCurve> line = AlignmentCurve::MakeTangent(start, end);
  if (!line) return line.Error();
  return Place(LastEntityId(), AlignmentEntity::MakeSimple(std::move(line).Value()));
}

Outcome<int> AlignmentGeometry::AddFixedCurve(int previousId, Point2 start, Point2 middle, Point2 end) {
  if (previousId != 0 && IndexOfId(previousId) < 0) return LandError::NotFound;
  Outcome<AlignmentCurve> arc = AlignmentCurve::MakeArcThroughPoints(start, middle, end);
  if (!arc) return arc.Error();
  return Place(previousId, AlignmentEntity::MakeSimple(std::move(arc).Value()));
}

Outcome<int> AlignmentGeometry::AddCurve(int previousId, AlignmentCurve curve) {
  return Place(previousId, AlignmentEntity::MakeSimple(std::move(curve)));
}

Outcome<int> AlignmentGeometry::AddGroup(int previousId, AlignmentEntityType type, std::vector<AlignmentCurve> parts,
                                         const GroupTolerance& tolerance) {
  if (previousId != 0 && IndexOfId(previousId) < 0) return LandError::NotFound;
  Outcome<AlignmentEntity> group = AlignmentEntity::MakeGroup(type, std::move(parts), tolerance);
  if (!group) return group.Error();
  return Place(previousId, std::move(group).Value());
}

Outcome<int> AlignmentGeometry::AddEntity(int previousId, AlignmentEntity entity) {
  return Place(previousId, std::move(entity));
}

Outcome<int> AlignmentGeometry::Place(int previousId, AlignmentEntity entity) {
  int at = Count();
  if (previousId != 0) {
    const int previous = IndexOfId(previousId);
    if (previous < 0) return LandError::NotFound;
    at = previous + 1;
  }
  entity.id_ = nextId_++;
  const int id = entity.id_;
  const double length = entity.Length();
  if (at == Count()) {
    // Appending keeps the caches: the common case of a chain written in order stays linear.
    entities_.push_back(std::move(entity));
    if (distancesValid_) distances_.push_back(distances_.back() + length);
    if (indexValid_) indexOfId_[id] = at;
    referenceDistance_.reset();
  } else {
    entities_.insert(entities_.begin() + at, std::move(entity));
    Changed();
  }
  return id;
}

LandError AlignmentGeometry::Remove(int id) {
  const int index = IndexOfId(id);
  if (index < 0) return LandError::NotFound;
  entities_.erase(entities_.begin() + index);
  Changed();
  return LandError::None;
}

void AlignmentGeometry::RemoveAll() {
  entities_.clear();
  Changed();
}

void AlignmentGeometry::Changed() {
  distancesValid_ = false;
  indexValid_ = false;
  referenceDistance_.reset();
}

const AlignmentEntity* AlignmentGeometry::Item(int index) const {
  if (index < 0 || index >= Count()) return nullptr;
  return &entities_[static_cast<std::size_t>(index)];
}

int AlignmentGeometry::IndexOfId(int id) const {
  if (!indexValid_) {
    indexOfId_.clear();
    for (int i = 0; i < Count(); ++i) indexOfId_[entities_[static_cast<std::size_t>(i)].Id()] = i;
    indexValid_ = true;
  }
  const auto found = indexOfId_.find(id);
  return found == indexOfId_.end() ? -1 : found->second;
}

const AlignmentEntity* AlignmentGeometry::EntityAtId(int id) const { return Item(IndexOfId(id)); }

int AlignmentGeometry::FirstEntityId() const { return entities_.empty() ? 0 : entities_.front().Id(); }
int AlignmentGeometry::LastEntityId() const { return entities_.empty() ? 0 : entities_.back().Id(); }

int AlignmentGeometry::EntityBefore(int id) const {
  const int index = IndexOfId(id);
  return index > 0 ? entities_[static_cast<std::size_t>(index) - 1].Id() : 0;
}

int AlignmentGeometry::EntityAfter(int id) const {
  const int index = IndexOfId(id);
  return index >= 0 && index + 1 < Count() ? entities_[static_cast<std::size_t>(index) + 1].Id() : 0;
}

const std::vector<double>& AlignmentGeometry::Distances() const {
  if (!distancesValid_) {
    distances_.assign(1, 0.0);
    for (const AlignmentEntity& e : entities_) distances_.push_back(distances_.back() + e.Length());
    distancesValid_ = true;
  }
  return distances_;
}

double AlignmentGeometry::Length() const { return Distances().back(); }

double AlignmentGeometry::StartDistance(int index) const {
  if (index < 0 || index >= Count()) return std::numeric_limits<double>::quiet_NaN();
  return Distances()[static_cast<std::size_t>(index)];
}

int AlignmentGeometry::Locate(double distance) const {
  const std::vector<double>& d = Distances();
  if (d.size() < 2) return 0;
  const auto after = std::upper_bound(d.begin() + 1, d.end() - 1, distance);
  return static_cast<int>(after - (d.begin() + 1));
}

// --- stationing --------------------------------------------------------------------------------

double AlignmentGeometry::ReferenceDistance() const {
  if (!referencePoint_ || entities_.empty()) return 0.0;
  if (!referenceDistance_) referenceDistance_ = Nearest(*referencePoint_).distance;
  return *referenceDistance_;
}

double AlignmentGeometry::StartingStation() const { return referenceStation_ - ReferenceDistance(); }

Point2 AlignmentGeometry::ReferencePoint() const {
  if (referencePoint_) return *referencePoint_;
  return entities_.empty() ? Point2{} : entities_.front().StartPoint();
}

LandError AlignmentGeometry::SetReferencePoint(Point2 point) {
  if (!IsFinite(point)) return LandError::InvalidArgument;
  referencePoint_ = point;
  referenceDistance_.reset();
  return LandError::None;
}

LandError AlignmentGeometry::SetReferencePointStation(double station) {
  if (!std::isfinite(station)) return LandError::InvalidArgument;
  referenceStation_ = station;
  return LandError::None;
}

LandError AlignmentGeometry::AddStationEquation(double rawStationBack, double stationAhead,
                                                StationIncrement increment) {
  if (!std::isfinite(rawStationBack)) return LandError::InvalidArgument;
  return equations_.Add(rawStationBack - StartingStation(), stationAhead, increment, Length());
}

Outcome<double> AlignmentGeometry::DistanceAtStation(double station) const {
  if (entities_.empty()) return LandError::Empty;
  return equations_.DistanceAt(station, StartingStation(), Length());
}

// --- positions ---------------------------------------------------------------------------------

Outcome<Point2> AlignmentGeometry::PointAtDistance(double distance, double offset) const {
  if (!std::isfinite(distance) || !std::isfinite(offset)) return LandError::InvalidArgument;
  if (entities_.empty()) return LandError::Empty;
  if (distance < -kStationTolerance || distance > Length() + kStationTolerance) return LandError::OutOfRange;
  const int index = Locate(distance);
  const AlignmentEntity& entity = entities_[static_cast<std::size_t>(index)];
  const double local = distance - Distances()[static_cast<std::size_t>(index)];
  const Point2 on = entity.PointAt(local);
  if (offset == 0.0) return on;
  return on + offset * UnitAt(entity.DirectionAt(local) - 0.5 * kPi);
}

Outcome<double> AlignmentGeometry::DirectionAtDistance(double distance) const {
  if (!std::isfinite(distance)) return LandError::InvalidArgument;
  if (entities_.empty()) return LandError::Empty;
  if (distance < -kStationTolerance || distance > Length() + kStationTolerance) return LandError::OutOfRange;
  const int index = Locate(distance);
  return entities_[static_cast<std::size_t>(index)].DirectionAt(distance - Distances()[static_cast<std::size_t>(index)]);
}

Outcome<Point2> AlignmentGeometry::PointLocation(double station, double offset) const {
  const Outcome<double> distance = DistanceAtStation(station);
  if (!distance) return distance.Error();
  return PointAtDistance(distance.Value(), offset);
}

AlignmentGeometry::Foot AlignmentGeometry::Nearest(Point2 point) const {
  Foot best{0.0, std::numeric_limits<double>::infinity()};
  const std::vector<double>& d = Distances();
  for (std::size_t i = 0; i < entities_.size(); ++i) {
    const double s = entities_[i].ClosestDistance(point);
    const double gap = Distance(entities_[i].PointAt(s), point);
    if (gap < best.gap) best = Foot{d[i] + s, gap};
  }
  return best;
}

Outcome<StationOffset> AlignmentGeometry::StationOffsetOf(Point2 point) const {
  if (!IsFinite(point)) return LandError::InvalidArgument;
  if (entities_.empty()) return LandError::Empty;
  const Foot foot = Nearest(point);
  const double direction = DirectionAtDistance(foot.distance).Value();
  const Point2 on = PointAtDistance(foot.distance).Value();
  const double along = Dot(point - on, UnitAt(direction));
  // At the ends the nearest point may be the end itself with the point beyond it.
  const double slack = kPointTolerance * std::max(1.0, foot.gap);
  if ((foot.distance <= 0.0 && along < -slack) || (foot.distance >= Length() && along > slack)) {
    return LandError::OutOfRange;
  }
  const double offset = Dot(point - on, UnitAt(direction - 0.5 * kPi));
  return StationOffset{StationAtDistance(foot.distance), offset, foot.distance};
}

Outcome<std::vector<PolylineVertex>> AlignmentGeometry::Polyline(double chordTolerance) const {
  if (!std::isfinite(chordTolerance) || chordTolerance <= 0.0) return LandError::InvalidArgument;
  std::vector<PolylineVertex> vertices;
  const AlignmentCurve* previous = nullptr;
  for (const AlignmentEntity& entity : entities_) {
    for (const AlignmentCurve& part : entity.Parts()) {
      if (previous != nullptr && Distance(previous->EndPoint(), part.StartPoint()) > kPointTolerance) {
        vertices.push_back({previous->EndPoint(), 0.0});
      }
      switch (part.Kind()) {
        case CurveKind::Tangent: vertices.push_back({part.StartPoint(), 0.0}); break;
        case CurveKind::Arc:
          vertices.push_back({part.StartPoint(), std::tan(0.25 * (part.Clockwise() ? -part.Delta() : part.Delta()))});
          break;
        case CurveKind::Spiral: {
          // A curve whose curvature stays within k departs from a chord of length c by at most
          // k c^2 / 8; the spiral's largest curvature is at one of its ends.
          const double k = std::max(std::abs(part.CurvatureAt(0.0)), std::abs(part.CurvatureAt(part.Length())));
          const double chord = std::sqrt(8.0 * chordTolerance / k);
          const int count = static_cast<int>(std::clamp(std::ceil(part.Length() / chord), 1.0, kMaxChordsPerSpiral));
          for (int i = 0; i < count; ++i) vertices.push_back({part.PointAt(part.Length() * i / count), 0.0});
          break;
        }
      }
      previous = &part;
    }
  }
  if (previous != nullptr) vertices.push_back({previous->EndPoint(), 0.0});
  return vertices;
}

}  // namespace headless::land
