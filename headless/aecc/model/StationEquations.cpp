#include "headless/aecc/model/StationEquations.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace headless::land {
namespace {

double Sign(StationIncrement increment) { return increment == StationIncrement::Increasing ? 1.0 : -1.0; }

// A label this close to a stretch's end still belongs to it: conversions round-trip exactly,
// so only rounding of the caller's arithmetic needs room.
constexpr double kLabelTolerance = 1e-9;

}  // namespace

LandError StationEquations::Add(double distance, double stationAhead, StationIncrement increment, double length) {
  if (!std::isfinite(distance) || !std::isfinite(stationAhead) || !std::isfinite(length)) {
    return LandError::InvalidArgument;
  }
  if (distance < kStationTolerance || distance > length + kStationTolerance) return LandError::OutOfRange;
  const auto place = std::lower_bound(equations_.begin(), equations_.end(), distance,
                                      [](const StationEquation& e, double d) { return e.distance < d; });
  if ((place != equations_.end() && place->distance - distance < kStationTolerance) ||
      (place != equations_.begin() && distance - std::prev(place)->distance < kStationTolerance)) {
    return LandError::Duplicate;
  }
  equations_.insert(place, StationEquation{distance, stationAhead, increment});
  return LandError::None;
}

const StationEquation* StationEquations::At(int index) const {
  if (index < 0 || index >= Count()) return nullptr;
  return &equations_[static_cast<std::size_t>(index)];
}

double StationEquations::StationAt(double distance, double startingStation) const {
  const auto after = std::upper_bound(equations_.begin(), equations_.end(), distance,
                                      [](double d, const StationEquation& e) { return d < e.distance; });
  if (after == equations_.begin()) return startingStation + distance;
  const StationEquation& e = *std::prev(after);
  return e.stationAhead + Sign(e.increment) * (distance - e.distance);
}

double StationEquations::StationBack(int index, double startingStation) const {
  if (index < 0 || index >= Count()) return std::numeric_limits<double>::quiet_NaN();
  const double distance = equations_[static_cast<std::size_t>(index)].distance;
  if (index == 0) return startingStation + distance;
  const StationEquation& before = equations_[static_cast<std::size_t>(index) - 1];
  return before.stationAhead + Sign(before.increment) * (distance - before.distance);
}

Outcome<double> StationEquations::DistanceAt(double station, double startingStation, double length) const {
  if (!std::isfinite(station)) return LandError::InvalidArgument;
  for (int r = -1; r < Count(); ++r) {
    const double from = r < 0 ? 0.0 : equations_[static_cast<std::size_t>(r)].distance;
    const double to = r + 1 < Count() ? equations_[static_cast<std::size_t>(r) + 1].distance : length;
    const double labelFrom = r < 0 ? startingStation : equations_[static_cast<std::size_t>(r)].stationAhead;
    const double sign = r < 0 ? 1.0 : Sign(equations_[static_cast<std::size_t>(r)].increment);
    const double along = sign * (station - labelFrom);
    if (along >= -kLabelTolerance && along <= (to - from) + kLabelTolerance) {
      return from + std::clamp(along, 0.0, to - from);
    }
  }
  return LandError::OutOfRange;
}

}  // namespace headless::land
