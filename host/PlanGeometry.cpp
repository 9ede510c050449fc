#include "host/PlanGeometry.h"

#include <algorithm>
#include <numbers>
#include <ostream>

namespace host {

using std::numbers::pi;

std::ostream& operator<<(std::ostream& out, const CKdPlanPoint& p) { return out << '(' << p.x << ", " << p.y << ')'; }

std::ostream& operator<<(std::ostream& out, const CKdPlanElement& e) {
  if (e.isLine) return out << "line " << e.start << " -> " << e.end;
  return out << "arc centre " << e.centre << " r " << e.radius << " from " << e.startAngle << " sweep " << e.sweep;
}

double NormalizedAngle(double angle) {
  angle = std::fmod(angle, 2.0 * pi);
  if (angle < 0.0) angle += 2.0 * pi;
  return angle >= 2.0 * pi ? 0.0 : angle;
}

double AngleAbout(CKdPlanPoint point, CKdPlanPoint centre) {
  return NormalizedAngle(std::atan2(point.y - centre.y, point.x - centre.x));
}

double HeadingDifference(double a, double b) {
  double d = std::remainder(b - a, 2.0 * pi);
  if (d <= -pi) d += 2.0 * pi;
  return d;
}

CKdPlanElement CKdPlanElement::Line(CKdPlanPoint start, CKdPlanPoint end) {
  CKdPlanElement e;
  e.start = start;
  e.end = end;
  return e;
}

CKdPlanElement CKdPlanElement::Arc(CKdPlanPoint centre, double radius, double startAngle, double sweep) {
  CKdPlanElement e;
  e.isLine = false;
  e.centre = centre;
  e.radius = radius;
  e.startAngle = startAngle;
  e.sweep = sweep;
  e.start = centre + radius * Direction(startAngle);
  e.end = centre + radius * Direction(startAngle + sweep);
  return e;
}

CKdPlanElement CKdPlanElement::ArcFromTangent(CKdPlanPoint start, double heading, CKdPlanPoint end) {
  const CKdPlanPoint chord = end - start;
  const CKdPlanPoint normal = LeftNormal(Direction(heading));
  const double offset = Dot(chord, normal);
  const double chordSquared = Dot(chord, chord);
  // Turning by less than 1e-12 radians over the chord: no arc can be told from the line.
  if (std::fabs(offset) <= 1e-12 * std::sqrt(chordSquared)) return Line(start, end);
  const double signedRadius = chordSquared / (2.0 * offset);  // positive: centre on the left
  CKdPlanElement e;
  e.isLine = false;
  e.centre = start + signedRadius * normal;
  e.radius = std::fabs(signedRadius);
  e.startAngle = AngleAbout(start, e.centre);
  const double endAngle = AngleAbout(end, e.centre);
  e.sweep = signedRadius > 0.0 ? NormalizedAngle(endAngle - e.startAngle) : -NormalizedAngle(e.startAngle - endAngle);
  e.start = start;
  e.end = end;
  return e;
}

double CKdPlanElement::Length() const { return isLine ? Distance(start, end) : radius * std::fabs(sweep); }

double CKdPlanElement::StartHeading() const {
  if (isLine) return std::atan2(end.y - start.y, end.x - start.x);
  return startAngle + (sweep >= 0.0 ? pi / 2.0 : -pi / 2.0);
}

double CKdPlanElement::EndHeading() const {
  if (isLine) return StartHeading();
  return startAngle + sweep + (sweep >= 0.0 ? pi / 2.0 : -pi / 2.0);
}

CKdPlanPoint CKdPlanElement::PointAt(double distance) const {
  const double length = Length();
  if (isLine) return length > 0.0 ? start + (distance / length) * (end - start) : start;
  const double angle = startAngle + (sweep >= 0.0 ? distance : -distance) / radius;
  return centre + radius * Direction(angle);
}

double CKdPlanElement::DistanceTo(CKdPlanPoint p) const {
  if (isLine) {
    const CKdPlanPoint d = end - start;
    const double lengthSquared = Dot(d, d);
    const double t = lengthSquared > 0.0 ? std::clamp(Dot(p - start, d) / lengthSquared, 0.0, 1.0) : 0.0;
    return Distance(p, start + t * d);
  }
  const double angle = AngleAbout(p, centre);
  const double along = sweep >= 0.0 ? NormalizedAngle(angle - startAngle) : NormalizedAngle(startAngle - angle);
  if (along <= std::fabs(sweep)) return std::fabs(Distance(p, centre) - radius);
  return std::min(Distance(p, start), Distance(p, end));
}

CKdPlanElement CKdPlanElement::Reversed() const {
  CKdPlanElement e = *this;
  std::swap(e.start, e.end);
  if (!isLine) {
    e.startAngle = NormalizedAngle(startAngle + sweep);
    e.sweep = -sweep;
  }
  return e;
}

CKdPlanElement CKdPlanElement::Translated(CKdPlanPoint offset) const {
  CKdPlanElement e = *this;
  e.start = start + offset;
  e.end = end + offset;
  e.centre = centre + offset;
  return e;
}

}  // namespace host
