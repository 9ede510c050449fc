#include "module/geometry/KdPoint.h"

#include <cmath>
#include <ostream>

#include "module/geometry/KdConstants.h"

using kdgeo::kTolerance;
using kdgeo::kTwoPi;

double CKdVector::Length() const { return std::sqrt(x * x + y * y + z * z); }

CKdVector CKdVector::Normalized() const {
  const double length = Length();
  if (length == 0.0 || !std::isfinite(length)) return {0.0, 0.0, 0.0};
  return {x / length, y / length, z / length};
}

bool CKdVector::IsEqual(const CKdVector& o, double tolerance_units) const {
  return std::fabs(x - o.x) <= tolerance_units && std::fabs(y - o.y) <= tolerance_units &&
         std::fabs(z - o.z) <= tolerance_units;
}

std::ostream& operator<<(std::ostream& out, const CKdVector& v) {
  return out << "<" << v.x << ", " << v.y << ", " << v.z << ">";
}

double CKdPoint::AngleFromXY(const CKdPoint& centre) const {
  const double dx = x - centre.x;
  const double dy = y - centre.y;
  if (std::fabs(dx) < kTolerance && std::fabs(dy) < kTolerance) return 0.0;
  double a = std::atan2(dy, dx);
  if (a < 0.0) a += kTwoPi;
  // atan2 of a tiny negative dy plus 2*pi rounds to 2*pi itself.
  return a >= kTwoPi ? 0.0 : a;
}

double CKdPoint::DistanceTo(const CKdPoint& o) const { return (*this - o).Length(); }

double CKdPoint::DistanceToXY(const CKdPoint& o) const { return std::hypot(x - o.x, y - o.y); }

bool CKdPoint::IsEqual(const CKdPoint& o, double tolerance_units) const {
  return std::fabs(x - o.x) <= tolerance_units && std::fabs(y - o.y) <= tolerance_units &&
         std::fabs(z - o.z) <= tolerance_units;
}

CKdPoint CKdPoint::RotatedXY(const CKdPoint& about, double angle_rad) const {
  const double c = std::cos(angle_rad);
  const double s = std::sin(angle_rad);
  const double dx = x - about.x;
  const double dy = y - about.y;
  return {about.x + dx * c - dy * s, about.y + dx * s + dy * c, z};
}

std::ostream& operator<<(std::ostream& out, const CKdPoint& p) {
  return out << "(" << p.x << ", " << p.y << ", " << p.z << ")";
}
