// Station equations of an alignment: at a point along it the station label jumps from the value
// the stationing reached there (station back) to a new value (station ahead), and from there
// counts up (increasing) or down (decreasing). LandXML's StaEquation and Civil 3D's station
// equations carry the same three facts.
//
// An equation is fixed to its place on the alignment (a distance from the alignment's start) and
// to its station ahead: shifting the alignment's stationing moves the stations before the first
// equation and each equation's station back, not the labels after it.
#pragma once

#include <vector>

#include "headless/aecc/model/LandTypes.h"

namespace headless::land {

enum class StationIncrement { Increasing, Decreasing };

struct StationEquation {
  double distance = 0.0;      // from the alignment's start, drawing units
  double stationAhead = 0.0;
  StationIncrement increment = StationIncrement::Increasing;
};

class KD_PLATFORM_API StationEquations {
public:
  // Adds an equation at `distance` on an alignment of `length`; kept in order of distance.
  // Refuses non-finite values, a place not inside (0, length] (OutOfRange) and a second equation
  // within kStationTolerance of another (Duplicate).
  LandError Add(double distance, double stationAhead, StationIncrement increment, double length);
  void Clear() { equations_.clear(); }
  int Count() const { return static_cast<int>(equations_.size()); }
  const StationEquation* At(int index) const;

  // The station label at `distance`, given the raw station of the alignment's start. At an
  // equation's own place the station ahead applies.
  double StationAt(double distance, double startingStation) const;
  // The station the stationing reaches at equation `index` before it jumps (NaN for a bad index).
  double StationBack(int index, double startingStation) const;
  // The distance at which the label `station` occurs, searching the stretches between equations
  // in order along the alignment and taking the first that holds it (labels may repeat after an
  // equation that steps back). OutOfRange when no stretch of [0, length] holds it.
  Outcome<double> DistanceAt(double station, double startingStation, double length) const;

private:
  std::vector<StationEquation> equations_;
};

}  // namespace headless::land
