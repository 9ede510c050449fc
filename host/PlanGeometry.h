// Plan geometry as the host holds it: points, and lines and circular arcs that keep both end
// points. Angles are radians counter-clockwise from +x (east); a positive sweep runs
// counter-clockwise. Coordinates are x easting, y northing, in the drawing's linear unit.
#pragma once

#include <cmath>
#include <iosfwd>

namespace host {

struct CKdPlanPoint {
  double x = 0.0;
  double y = 0.0;

  friend CKdPlanPoint operator+(CKdPlanPoint a, CKdPlanPoint b) { return {a.x + b.x, a.y + b.y}; }
  friend CKdPlanPoint operator-(CKdPlanPoint a, CKdPlanPoint b) { return {a.x - b.x, a.y - b.y}; }
  friend CKdPlanPoint operator*(double f, CKdPlanPoint a) { return {f * a.x, f * a.y}; }
  friend bool operator==(const CKdPlanPoint&, const CKdPlanPoint&) = default;
};
std::ostream& operator<<(std::ostream& out, const CKdPlanPoint& p);

inline double Dot(CKdPlanPoint a, CKdPlanPoint b) { return a.x * b.x + a.y * b.y; }
inline double Cross(CKdPlanPoint a, CKdPlanPoint b) { return a.x * b.y - a.y * b.x; }
inline double Norm(CKdPlanPoint a) { return std::hypot(a.x, a.y); }
inline double Distance(CKdPlanPoint a, CKdPlanPoint b) { return Norm(b - a); }
// The unit vector of a heading.
inline CKdPlanPoint Direction(double heading) { return {std::cos(heading), std::sin(heading)}; }
// The vector turned a quarter counter-clockwise (the left normal of a direction).
inline CKdPlanPoint LeftNormal(CKdPlanPoint a) { return {-a.y, a.x}; }

// The angle brought into [0, 2*pi).
double NormalizedAngle(double angle);
// Angle of the point about the centre, in [0, 2*pi).
double AngleAbout(CKdPlanPoint point, CKdPlanPoint centre);

// A line, or a circular arc of the given centre, radius, start angle and signed sweep.
// Both end points are held: for an arc they are computed once, where it is made.
struct CKdPlanElement {
  bool isLine = true;
  CKdPlanPoint start;
  CKdPlanPoint end;
  CKdPlanPoint centre;
  double radius = 0.0;
  double startAngle = 0.0;
  double sweep = 0.0;

  static CKdPlanElement Line(CKdPlanPoint start, CKdPlanPoint end);
  static CKdPlanElement Arc(CKdPlanPoint centre, double radius, double startAngle, double sweep);
  // The arc that leaves `start` along `heading` and reaches `end`; a line when that arc would be
  // straight to within rounding.
  static CKdPlanElement ArcFromTangent(CKdPlanPoint start, double heading, CKdPlanPoint end);

  double Length() const;
  // Heading at the start and at the end, along the direction of travel.
  double StartHeading() const;
  double EndHeading() const;
  // The point `distance` along the element from its start.
  CKdPlanPoint PointAt(double distance) const;
  // Shortest distance from the point to the element (not to its extension).
  double DistanceTo(CKdPlanPoint p) const;
  // The same element travelled the other way.
  CKdPlanElement Reversed() const;
  CKdPlanElement Translated(CKdPlanPoint offset) const;
};
std::ostream& operator<<(std::ostream& out, const CKdPlanElement& e);

// The difference in heading b - a, brought into (-pi, pi].
double HeadingDifference(double a, double b);

}  // namespace host
