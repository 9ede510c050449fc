// CKdVector: a displacement of three doubles.
#pragma once

#include <iosfwd>

class CKdVector {
public:
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;

  CKdVector() = default;
  CKdVector(double x_, double y_, double z_) : x(x_), y(y_), z(z_) {}
  CKdVector(const CKdVector&) = default;
  CKdVector& operator=(const CKdVector&) = default;

  double Length() const;
  double Dot(const CKdVector& o) const { return x * o.x + y * o.y + z * o.z; }
  CKdVector Cross(const CKdVector& o) const {
    return {y * o.z - z * o.y, z * o.x - x * o.z, x * o.y - y * o.x};
  }
  // The unit vector of the same direction; the zero vector stays zero.
  CKdVector Normalized() const;
  // Turned by +pi/2 in the xy plane, z kept.
  CKdVector PerpendicularXY() const { return {-y, x, z}; }
  // Every component within tolerance_units of the other's.
  bool IsEqual(const CKdVector& o, double tolerance_units) const;

  CKdVector operator-() const { return {-x, -y, -z}; }
  CKdVector& operator+=(const CKdVector& o) {
    x += o.x;
    y += o.y;
    z += o.z;
    return *this;
  }
  friend CKdVector operator+(CKdVector a, const CKdVector& b) { return a += b; }
  friend CKdVector operator-(const CKdVector& a, const CKdVector& b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
  friend CKdVector operator*(const CKdVector& v, double f) { return {v.x * f, v.y * f, v.z * f}; }
  friend CKdVector operator*(double f, const CKdVector& v) { return v * f; }
  // Exact: a tolerant comparison is IsEqual.
  friend bool operator==(const CKdVector&, const CKdVector&) = default;
};

std::ostream& operator<<(std::ostream& out, const CKdVector& v);
