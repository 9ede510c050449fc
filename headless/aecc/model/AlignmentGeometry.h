// The horizontal geometry of one alignment and its stationing, as Civil 3D keeps them: an
// ordered listing of entities (tangents, arcs, spirals, spiral groups) with ids unique within
// the alignment, a reference point with its station, and station equations.
//
// Entity ids start at 1 and are never reused within one alignment, not even after RemoveAll:
// an adapter object that still holds an old id finds nothing rather than a stranger.
//
// Distances run along the entities in listing order, each counting its own length; a gap
// between one entity's end and the next one's start is not measured (Civil 3D keeps its
// entities connected; the model does not force it).
//
// Stationing: the reference point defaults to the alignment's start and follows it while it has
// not been set. The starting station is the reference station minus the distance from the start
// to the reference point's projection; the ending station is the starting station plus the
// length. A reference point that has no perpendicular foot on the alignment relates to the
// nearest point of it (the start or the end). These raw stations are what profiles use; station
// equations apply to the labels (StationAtDistance, DistanceAtStation, PointLocation,
// StationOffsetOf).
//
// Not thread-safe: lookups fill caches (distances, id index, reference projection).
#pragma once

#include <optional>
#include <unordered_map>
#include <vector>

#include "headless/aecc/model/AlignmentEntity.h"
#include "headless/aecc/model/LandTypes.h"
#include "headless/aecc/model/StationEquations.h"

namespace headless::land {

struct StationOffset {
  double station = 0.0;   // with station equations applied
  double offset = 0.0;    // positive to the right of the alignment's direction, as Civil 3D has it
  double distance = 0.0;  // from the alignment's start
};

// A vertex of the light-weight polyline form: the bulge (tan of a quarter of the sweep, negative
// clockwise) describes the segment from this vertex to the next.
struct PolylineVertex {
  Point2 point;
  double bulge = 0.0;
};

class KD_PLATFORM_API AlignmentGeometry {
public:
  // Mid-ordinate between a spiral and the chords that stand for it in Polyline.
  static constexpr double kDefaultChordTolerance = 0.001;
  // A finer tolerance than this many chords per spiral can give is not met.
  static constexpr double kMaxChordsPerSpiral = 100000.0;

  // --- entities; each add returns the new entity's id -----------------------------------------
  // A fixed tangent appended at the end of the listing.
  Outcome<int> AddFixedLine(Point2 start, Point2 end);
  // A fixed arc through three points placed after the entity previousId in the listing
  // (appended when that is the last one, or when previousId is 0). NotFound for an unknown id.
  Outcome<int> AddFixedCurve(int previousId, Point2 start, Point2 middle, Point2 end);
  // Any single curve (a spiral from LandXML, say), placed as AddFixedCurve places.
  Outcome<int> AddCurve(int previousId, AlignmentCurve curve);
  // A spiral group of `type` from its parts in order (see AlignmentEntity::MakeGroup).
  Outcome<int> AddGroup(int previousId, AlignmentEntityType type, std::vector<AlignmentCurve> parts,
                        const GroupTolerance& tolerance = {});
  // An entity built beforehand (its id is assigned here).
  Outcome<int> AddEntity(int previousId, AlignmentEntity entity);
  LandError Remove(int id);
  void RemoveAll();

  int Count() const { return static_cast<int>(entities_.size()); }
  const AlignmentEntity* Item(int index) const;      // null outside [0, Count())
  const AlignmentEntity* EntityAtId(int id) const;   // null for an unknown id
  int IndexOfId(int id) const;                       // -1 for an unknown id
  int FirstEntityId() const;                         // 0 when empty
  int LastEntityId() const;
  int EntityBefore(int id) const;                    // 0 at the first, or for an unknown id
  int EntityAfter(int id) const;

  double Length() const;
  // Distance from the alignment's start to the start of the entity at `index` (NaN if none).
  double StartDistance(int index) const;

  // --- stationing ------------------------------------------------------------------------------
  double StartingStation() const;
  double EndingStation() const { return StartingStation() + Length(); }
  Point2 ReferencePoint() const;  // the explicit one, else the start (the origin when empty)
  bool HasExplicitReferencePoint() const { return referencePoint_.has_value(); }
  double ReferencePointStation() const { return referenceStation_; }
  LandError SetReferencePoint(Point2 point);
  // Shifts the whole stationing: the reference point keeps its place and takes this station.
  LandError SetReferencePointStation(double station);

  // Station equations, placed by the raw station (the stationing without equations) at which
  // they occur, as LandXML's staInternal and Civil 3D's raw station back give it. Set the
  // geometry and the reference first: the equation keeps the place that raw station names now.
  LandError AddStationEquation(double rawStationBack, double stationAhead, StationIncrement increment);
  const StationEquations& Equations() const { return equations_; }
  void RemoveStationEquations() { equations_.Clear(); }
  double StationAtDistance(double distance) const { return equations_.StationAt(distance, StartingStation()); }
  Outcome<double> DistanceAtStation(double station) const;

  // --- positions -------------------------------------------------------------------------------
  // The point at `distance` from the start, moved `offset` to the right (OutOfRange off [0, L]).
  Outcome<Point2> PointAtDistance(double distance, double offset = 0.0) const;
  Outcome<double> DirectionAtDistance(double distance) const;
  // Civil 3D's PointLocation: station (equations applied) and offset to a point.
  Outcome<Point2> PointLocation(double station, double offset) const;
  // Civil 3D's StationOffset: the nearest point of the alignment; OutOfRange when that is its
  // start or end and the point lies beyond it (before the start or after the end).
  Outcome<StationOffset> StationOffsetOf(Point2 point) const;

  // The light-weight polyline form: tangents as straight segments, arcs exactly as bulges,
  // spirals as chords whose mid-ordinate stays within chordTolerance (drawing units, > 0; at most
  // kMaxChordsPerSpiral chords per spiral). A gap
  // between entities becomes a straight segment. Empty for an empty alignment.
  Outcome<std::vector<PolylineVertex>> Polyline(double chordTolerance = kDefaultChordTolerance) const;

private:
  struct Foot {
    double distance = 0.0;
    double gap = 0.0;  // from the point to its foot
  };
  Outcome<int> Place(int previousId, AlignmentEntity entity);
  void Changed();
  const std::vector<double>& Distances() const;  // cumulative, Count() + 1 values
  int Locate(double distance) const;             // index of the entity holding distance
  Foot Nearest(Point2 point) const;
  double ReferenceDistance() const;

  std::vector<AlignmentEntity> entities_;
  int nextId_ = 1;
  std::optional<Point2> referencePoint_;
  double referenceStation_ = 0.0;
  StationEquations equations_;

  mutable std::vector<double> distances_{0.0};
  mutable bool distancesValid_ = true;
  mutable std::unordered_map<int, int> indexOfId_;
  mutable bool indexValid_ = true;
  mutable std::optional<double> referenceDistance_;
};

}  // namespace headless::land
