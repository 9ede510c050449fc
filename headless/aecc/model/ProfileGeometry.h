// The vertical geometry of one profile along an alignment: points of vertical intersection
// (PVIs) sorted by station, joined by grade lines, with an optional vertical curve at each
// interior PVI (circular, symmetric parabolic, asymmetric parabolic), evaluated exactly.
//
// Stations are the alignment's raw stations (no station equations); grades are fractions
// (0.02 is 2 %). A curve stored on the first or last PVI is kept but has no effect: there is no
// grade on its far side. A curve that reaches past a neighbouring PVI or into the next curve is
// kept as given (Civil 3D shows such a curve as a violation rather than refusing it); the
// profile reports it (CurveFits) and ElevationAt fails with CurveDoesNotFit at stations within
// its reach, since no elevation there is right.
//
// Each PVI has an id, unique within the profile and never reused, so that an adapter object can
// keep hold of its PVI while others are added, removed or moved.
//
// Not thread-safe: evaluation fills a cache of grades and curve data after each change.
#pragma once

#include <limits>
#include <vector>

#include "headless/aecc/model/LandTypes.h"

namespace headless::land {

// Civil 3D's AeccProfileType codes.
enum class ProfileType : int { ExistingGround = 1, FinishedGround = 2, Superimposed = 3 };

enum class VerticalCurveType { None, Circular, SymmetricParabola, AsymmetricParabola };

struct VerticalCurve {
  VerticalCurveType type = VerticalCurveType::None;
  double radius = 0.0;   // circular: a circle in the station/elevation plane touching both grades
  double length = 0.0;   // symmetric parabola: horizontal length, centred on the PVI
  double length1 = 0.0;  // asymmetric parabola: horizontal length before the PVI
  double length2 = 0.0;  // and after it

  static VerticalCurve Circular(double radius) { return {VerticalCurveType::Circular, radius, 0.0, 0.0, 0.0}; }
  static VerticalCurve Parabola(double length) {
    return {VerticalCurveType::SymmetricParabola, 0.0, length, 0.0, 0.0};
  }
  static VerticalCurve Asymmetric(double length1, double length2) {
    return {VerticalCurveType::AsymmetricParabola, 0.0, 0.0, length1, length2};
  }
};

struct Pvi {
  int id = 0;
  double station = 0.0;
  double elevation = 0.0;
  VerticalCurve curve;
};

// The stations a PVI may take: the alignment's starting and ending station.
struct StationRange {
  double start = -std::numeric_limits<double>::infinity();
  double end = std::numeric_limits<double>::infinity();
};

// Where a PVI's vertical curve runs, in stations, and whether it fits between its neighbours.
struct CurveExtent {
  double startStation = 0.0;
  double endStation = 0.0;
  double startElevation = 0.0;
  double endElevation = 0.0;
  bool fits = true;
};

class KD_PLATFORM_API ProfileGeometry {
public:
  explicit ProfileGeometry(ProfileType type = ProfileType::FinishedGround) : type_(type) {}

  ProfileType Type() const { return type_; }
  void SetType(ProfileType type) { type_ = type; }

  int Count() const { return static_cast<int>(pvis_.size()); }
  const Pvi* Item(int index) const;   // null outside [0, Count())
  int IndexOfId(int id) const;        // -1 for an unknown id

  // Adds a PVI and returns its id. Refuses non-finite values and a curve with a non-positive
  // radius or length (InvalidArgument), a station outside `allowed` by more than
  // kStationTolerance (OutOfRange), and a station within kStationTolerance of an existing PVI
  // (Duplicate): a second PVI there would make a grade over nothing.
  Outcome<int> AddPvi(double station, double elevation, const VerticalCurve& curve = {},
                      const StationRange& allowed = {});
  LandError RemovePvi(int index);
  void RemoveAll() { pvis_.clear(); Changed(); }

  // Moves a PVI; it takes its place in station order (passing its neighbours if need be) and
  // keeps its id and curve. Returns its new index. Refusals as for AddPvi.
  Outcome<int> SetStation(int index, double station, const StationRange& allowed = {});
  LandError SetElevation(int index, double elevation);
  LandError SetCurve(int index, const VerticalCurve& curve);

  // Grades as fractions; Empty where there is no neighbour on that side, NotFound for a bad index.
  Outcome<double> GradeIn(int index) const;
  Outcome<double> GradeOut(int index) const;

  // The first and last PVI's stations; Empty without PVIs.
  Outcome<double> StartingStation() const;
  Outcome<double> EndingStation() const;

  // The curve at an interior PVI as it lies in the profile; NotFound when that PVI has no
  // curve with an effect (none, an end PVI, or no change of grade).
  Outcome<CurveExtent> CurveAt(int index) const;
  // Whether every curve fits between its neighbours.
  bool CurvesFit() const;

  // The elevation at a station: on a grade line, or on the vertical curve that covers it. Binary
  // search over the PVIs: logarithmic in their number. Empty without PVIs, OutOfRange outside
  // [StartingStation, EndingStation], CurveDoesNotFit within the reach of a curve that does not fit.
  Outcome<double> ElevationAt(double station) const;

private:
  // Per PVI, derived from it and its neighbours: the grade after it and its curve as placed.
  struct Prepared {
    double station = 0.0;
    double elevation = 0.0;
    double gradeOut = 0.0;
    VerticalCurveType curve = VerticalCurveType::None;  // None also where the curve has no effect
    double begin = 0.0;   // station where the curve starts
    double end = 0.0;     // and ends
    double zBegin = 0.0;
    double zEnd = 0.0;
    double gradeIn = 0.0;
    double a = 0.0;       // parabolas: t^2 coefficient(s); circle: centre station
    double b = 0.0;       // asymmetric: coefficient after the PVI; circle: centre elevation
    double radius = 0.0;  // circle; negative for a crest (centre below)
    bool fits = true;
  };
  struct Reach {
    double begin;
    double end;  // largest end of any unfit curve starting at or before `begin`
  };

  void Changed() { fresh_ = false; }
  void Prepare() const;
  static LandError CheckCurve(const VerticalCurve& curve);
  LandError CheckStation(double station, const StationRange& allowed, int ignoreIndex) const;
  static double Evaluate(const Prepared& p, double station);

  ProfileType type_;
  std::vector<Pvi> pvis_;
  int nextId_ = 1;

  mutable bool fresh_ = false;                // whether the three below match pvis_
  mutable std::vector<Prepared> prepared_;
  mutable std::vector<double> stations_;      // the PVIs' stations, for the binary search
  mutable std::vector<Reach> unfitReaches_;   // sorted by begin
};

}  // namespace headless::land
