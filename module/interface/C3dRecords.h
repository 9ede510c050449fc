// Exchange records: the only shapes in which geometry crosses the host boundary.
//
// Records are value types. The host may build them on its own stack or heap to pass arrays in;
// arrays that the module passes out are made with array new inside the module and belong to the
// host until it hands them back through the matching Free... slot of ICivil3dObject.
// Everything here is inline so that host and module agree on the records without linking.
#pragma once

#include <cmath>

class CC3dPoint {
public:
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  CC3dPoint() = default;
  CC3dPoint(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
  CC3dPoint(const CC3dPoint&) = default;
  CC3dPoint& operator=(const CC3dPoint&) = default;

  virtual ~CC3dPoint() = default;  // slot 0
  // Exact comparison, no tolerance: callers that need one compare with their own.
  virtual bool operator==(const CC3dPoint& other) const {  // slot 1
    return x == other.x && y == other.y && z == other.z;
  }
  virtual bool operator!=(const CC3dPoint& other) const { return !(*this == other); }  // slot 2
};

// One element of an alignment, boundary or breakline chain: a line or a circular arc.
// Angles are radians counter-clockwise from +x; a positive sweep runs counter-clockwise.
class CC3dCurve {
public:
  CC3dCurve() = default;
  CC3dCurve(const CC3dCurve&) = default;
  CC3dCurve& operator=(const CC3dCurve&) = default;
  virtual ~CC3dCurve() = default;  // slot 0

  // Leaves the arc fields as they were.
  void SetLine(const CC3dPoint& start, const CC3dPoint& end) {
    isLine = true;
    startPt = start;
    endPt = end;
  }
  // Leaves startPt and endPt as they were: an arc's start is never computed here.
  void SetArc(const CC3dPoint& center_, const double& radius_, const double& startAngle_,
              const double& sweep_) {
    isLine = false;
    center = center_;
    radius = radius_;
    startAngle = startAngle_;
    sweep = sweep_;
  }

  bool GetIsLine() const { return isLine; }
  // The stored start point, for arcs too; a reader that needs an arc's start computes it from
  // centre, radius and start angle.
  CC3dPoint GetStartPt() const { return startPt; }
  // A line's stored end; an arc's end computed in the plane z = 0, whatever the centre's z.
  CC3dPoint GetEndPt() const {
    if (isLine) return endPt;
    const double a = startAngle + sweep;
    return CC3dPoint(center.x + radius * std::cos(a), center.y + radius * std::sin(a), 0.0);
  }
  CC3dPoint GetCenter() const { return center; }
  double GetRadius() const { return radius; }
  double GetStartAngle() const { return startAngle; }
  double GetSweep() const { return sweep; }

protected:
  bool isLine = true;
  CC3dPoint startPt;
  CC3dPoint endPt;
  CC3dPoint center;
  double radius = 0.0;
  double startAngle = 0.0;
  double sweep = 0.0;
};

// One point of a stroked profile. A plain record without virtual operations.
class CC3dProfilePoint {
public:
  CC3dProfilePoint() = default;
  CC3dProfilePoint(const CC3dProfilePoint&) = default;
  CC3dProfilePoint& operator=(const CC3dProfilePoint&) = default;

  double GetStation() const { return station; }
  void SetStation(const double& value) { station = value; }
  double GetElevation() const { return elevation; }
  void SetElevation(const double& value) { elevation = value; }

protected:
  double station = 0.0;
  double elevation = 0.0;
};

// One point of vertical intersection with its vertical curve; the curve type says which of the
// length fields mean something.
class CC3dProfilePVI {
public:
  enum ProfileCurveType : int {
    NoCurve = 0,
    CircularCurve = 1,             // radius
    ParabolicCurve = 2,            // curveLength
    AsymmetricParabolicCurve = 3,  // length1 before the PVI, length2 after it
  };

  CC3dProfilePVI() = default;
  CC3dProfilePVI(const CC3dProfilePVI&) = default;
  CC3dProfilePVI& operator=(const CC3dProfilePVI&) = default;
  virtual ~CC3dProfilePVI() = default;  // slot 0

  double GetStation() const { return point.GetStation(); }
  void SetStation(const double& value) { point.SetStation(value); }
  double GetElevation() const { return point.GetElevation(); }
  void SetElevation(const double& value) { point.SetElevation(value); }
  ProfileCurveType GetType() const { return type; }
  void SetCurveType(ProfileCurveType value) { type = value; }
  double GetRadius() const { return radius; }
  void SetRadius(const double& value) { radius = value; }
  double GetCurveLength() const { return curveLength; }
  void SetCurveLength(const double& value) { curveLength = value; }
  double GetLength1() const { return length1; }
  void SetLength1(const double& value) { length1 = value; }
  double GetLength2() const { return length2; }
  void SetLength2(const double& value) { length2 = value; }

protected:
  CC3dProfilePoint point;
  ProfileCurveType type = NoCurve;
  double radius = 0.0;
  double curveLength = 0.0;
  double length1 = 0.0;
  double length2 = 0.0;
};

// The binary shape the host relies on, for 64-bit targets of both ABIs.
static_assert(sizeof(void*) != 8 || sizeof(CC3dPoint) == 32);
static_assert(sizeof(void*) != 8 || sizeof(CC3dCurve) == 136);
static_assert(sizeof(CC3dProfilePoint) == 16);
static_assert(sizeof(void*) != 8 || sizeof(CC3dProfilePVI) == 64);
static_assert(sizeof(CC3dProfilePVI::ProfileCurveType) == 4);
