// The plain data model a LandXML document is read into and written from: alignments with their
// horizontal geometry, station equations and profiles, and surfaces. No XML types here.
//
// Conventions of the whole model:
// - A point's x is the easting, y the northing and z the elevation. (LandXML writes points the
//   other way round, "northing easting elevation"; the reader and writer swap.)
// - Every length, coordinate, radius, station and elevation is in `CModel::units.linear`.
// - Angles and directions are radians. A direction is an azimuth as LandXML files write it:
//   0 towards north (+y), growing clockwise (towards +x).
#pragma once

#include <array>
#include <cstdint>
#include <iosfwd>
#include <limits>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "landxml/Units.h"

namespace landxml {

struct CPoint {
  double x = 0.0;  // easting
  double y = 0.0;  // northing
  double z = 0.0;  // elevation; 0 when the file gave none
  bool hasZ = false;

  friend bool operator==(const CPoint&, const CPoint&) = default;
};
std::ostream& operator<<(std::ostream& out, const CPoint& p);

enum class Rotation { Clockwise, CounterClockwise };

// A tangent of an alignment (LandXML `Line`).
struct CLine {
  CPoint start;
  CPoint end;
  std::optional<double> staStart;
  std::optional<double> length;     // as the file wrote it
  std::optional<double> direction;  // as the file wrote it
  std::string name;
  std::string desc;
};

// A circular arc (LandXML `Curve`). The reader always fills start, center, end, radius and
// length, computing what the file left out (a curve given by its PI, radius and tangent
// directions, or by its three points alone).
struct CCurve {
  Rotation rot = Rotation::CounterClockwise;
  CPoint start;
  CPoint center;
  CPoint end;
  std::optional<CPoint> pi;  // intersection of the two tangents, when the file gave it
  double radius = 0.0;       // positive
  double length = 0.0;       // along the arc
  std::optional<double> staStart;
  std::optional<double> dirStart;
  std::optional<double> dirEnd;
  std::optional<double> chord;
  std::optional<double> delta;  // deflection, signed as the file wrote it
  std::string crvType;          // "arc" or "chord" when the file said
  std::string name;
  std::string desc;
};

inline constexpr double kInfiniteRadius = std::numeric_limits<double>::infinity();

// A transition curve (LandXML `Spiral`). A clothoid is fixed by its start point, its start
// direction, its length, its two radii and its rotation; the end point and PI come along so that
// the import can check its own computation. When the file gave a PI but no dirStart or dirEnd,
// the reader takes them from the tangents through the PI.
struct CSpiral {
  Rotation rot = Rotation::CounterClockwise;
  CPoint start;
  CPoint end;
  std::optional<CPoint> pi;
  double length = 0.0;
  double radiusStart = kInfiniteRadius;  // kInfiniteRadius where the file wrote "INF"
  double radiusEnd = kInfiniteRadius;
  std::string spiType = "clothoid";  // as the file wrote it: clothoid, cubic, bloss, ...
  std::optional<double> staStart;
  std::optional<double> dirStart;
  std::optional<double> dirEnd;
  std::optional<double> tanLong;
  std::optional<double> tanShort;
  std::optional<double> theta;     // total spiral angle
  std::optional<double> constant;  // the clothoid parameter A
  std::string name;
  std::string desc;

  bool IsClothoid() const { return spiType == "clothoid"; }
};

// One element of an alignment's CoordGeom, in the file's order. Spiral groups (spiral-arc-spiral,
// spiral-tangent, spiral-spiral) are runs of these; LandXML has no element for the group.
using CGeometry = std::variant<CLine, CCurve, CSpiral>;

// A station equation (LandXML `StaEquation`): from here on, stations read `staAhead` where they
// would have read `staBack`.
struct CStationEquation {
  std::optional<double> staBack;
  double staAhead = 0.0;
  std::optional<double> staInternal;  // station along the alignment without equations
  bool decreasing = false;            // staIncrement="decreasing"
  std::string desc;
};

enum class VerticalCurve {
  None,                 // PVI
  Parabolic,            // ParaCurve, symmetric: `length`
  AsymmetricParabolic,  // UnsymParaCurve: `lengthIn` before the PVI, `lengthOut` after
  Circular,             // CircCurve: `length` and `radius`
};

// A vertical intersection point of a layout profile with the curve at it, in the file's order.
struct CProfileVertex {
  VerticalCurve curve = VerticalCurve::None;
  double station = 0.0;
  double elevation = 0.0;
  double length = 0.0;
  double lengthIn = 0.0;
  double lengthOut = 0.0;
  double radius = 0.0;  // signed as the file wrote it (some writers mark sags or crests by sign)
  std::string desc;
};

// A layout profile (LandXML `ProfAlign`).
struct CProfAlign {
  std::string name;
  std::string desc;
  std::string state;
  std::vector<CProfileVertex> vertices;
};

struct CStationElevation {
  double station = 0.0;
  double elevation = 0.0;
  friend bool operator==(const CStationElevation&, const CStationElevation&) = default;
};

// A profile sampled from a surface (LandXML `ProfSurf`): its points, nothing more.
struct CProfSurf {
  std::string name;
  std::string desc;
  std::string state;
  std::vector<CStationElevation> points;
};

// A LandXML `Profile`: the layout and surface profiles of one alignment kept together.
struct CProfile {
  std::string name;
  std::string desc;
  std::string state;
  std::optional<double> staStart;
  std::vector<CProfAlign> layouts;
  std::vector<CProfSurf> surfaceProfiles;
};

struct CAlignment {
  std::string name;
  std::string desc;
  std::string state;
  double staStart = 0.0;
  std::optional<double> length;
  std::vector<CGeometry> geometry;
  std::vector<CStationEquation> stationEquations;
  std::vector<CProfile> profiles;
};

enum class SurfaceType { Tin, Grid };

// A face of a surface: indices into CSurface::points. A TIN face uses the first three, a grid
// face all four.
struct CFace {
  std::array<std::uint32_t, 4> vertex{};
  bool invisible = false;  // i="1": a hole in the surface
};

struct CBreakline {
  std::string name;
  std::string desc;
  std::string brkType;  // "standard", "wall", "proximity", "nondestructive" as the file said
  std::vector<CPoint> points;
};

struct CBoundary {
  std::string name;
  std::string desc;
  std::string bndType;  // "outer", "void", "island", ... as the file said
  std::optional<bool> edgeTrim;
  std::vector<CPoint> points;
};

struct CSurface {
  std::string name;
  std::string desc;
  // Nothing when the surface has source data but no Definition.
  std::optional<SurfaceType> type;
  std::vector<CPoint> points;
  std::vector<std::uint64_t> pointIds;  // the P id of each point
  std::vector<CFace> faces;
  std::vector<CBreakline> breaklines;
  std::vector<CBoundary> boundaries;

  int VerticesPerFace() const { return type == SurfaceType::Grid ? 4 : 3; }
};

struct CModel {
  std::string version = "1.2";  // schema version the document was read as: "1.0", "1.1", "1.2"
  std::string namespaceUri;     // the document's namespace as written ("" when it had none)
  std::string projectName;
  CUnits units;
  std::vector<CAlignment> alignments;
  std::vector<CSurface> surfaces;
};

// Scales every linear quantity of the model to `unit` and records it as units.linear.
void ConvertLinearUnit(CModel& model, LinearUnit unit);

// Azimuth (see above) of the direction from `from` to `to`, in [0, 2*pi); 0 when they coincide.
double AzimuthBetween(const CPoint& from, const CPoint& to);

}  // namespace landxml
