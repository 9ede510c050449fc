// CKdPoint: a location of three doubles.
#pragma once

#include <iosfwd>

#include "module/geometry/KdVector.h"

class CKdPoint {
public:
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  CKdPoint() = default;
  CKdPoint(double x_, double y_) : x(x_), y(y_), z(0.0) {}
  CKdPoint(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
  CKdPoint(const CKdPoint&) = default;
  CKdPoint& operator=(const CKdPoint&) = default;

  // Direction from centre to this point in the xy plane, in [0, 2*pi); 0.0 when the two lie
  // within the geometric tolerance of each other in both x and y.
  double AngleFromXY(const CKdPoint& centre) const;
  double DistanceTo(const CKdPoint& o) const;
  double DistanceToXY(const CKdPoint& o) const;
  // Every coordinate within tolerance_units of the other's.
  bool IsEqual(const CKdPoint& o, double tolerance_units) const;
  // Turned about `about` in the xy plane by angle_rad, z kept.
  CKdPoint RotatedXY(const CKdPoint& about, double angle_rad) const;

  friend CKdVector operator-(const CKdPoint& a, const CKdPoint& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
  friend CKdPoint operator+(const CKdPoint& p, const CKdVector& v) { return {p.x + v.x, p.y + v.y, p.z + v.z}; }
  friend CKdPoint operator-(const CKdPoint& p, const CKdVector& v) { return {p.x - v.x, p.y - v.y, p.z - v.z}; }
  // Exact: a tolerant comparison is IsEqual.
  friend bool operator==(const CKdPoint&, const CKdPoint&) = default;
};

// Moves the point by the vector.
inline CKdPoint& operator+=(CKdPoint& p, const CKdVector& v) {
  p.x += v.x;
  p.y += v.y;
  p.z += v.z;
  return p;
}

std::ostream& operator<<(std::ostream& out, const CKdPoint& p);
