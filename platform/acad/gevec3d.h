// AcGeVector3d (gevec3d.h): a vector in space.
#pragma once

#if defined(_WIN32)
#  include <gevec3d.h>
#else

#include <cmath>

#include "platform/acad/gegbl.h"

class AcGeMatrix3d;

class KD_PLATFORM_API AcGeVector3d {
public:
  AcGeVector3d() = default;
  AcGeVector3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

  static const AcGeVector3d kIdentity;
  static const AcGeVector3d kXAxis;
  static const AcGeVector3d kYAxis;
  static const AcGeVector3d kZAxis;

  double length() const { return std::sqrt(lengthSqrd()); }
  double lengthSqrd() const { return x * x + y * y + z * z; }
  double dotProduct(const AcGeVector3d& v) const { return x * v.x + y * v.y + z * v.z; }
  AcGeVector3d crossProduct(const AcGeVector3d& v) const {
    return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
  }
  bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const { return length() <= tol.equalVector(); }
  bool isEqualTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return (*this - v).length() <= tol.equalVector();
  }
  // Parallel (or anti-parallel) when the cross product of the unit vectors vanishes.
  bool isParallelTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;
  bool isPerpendicularTo(const AcGeVector3d& v, const AcGeTol& tol = AcGeContext::gTol) const;
  bool isUnitLength(const AcGeTol& tol = AcGeContext::gTol) const {
    return std::fabs(length() - 1.0) <= tol.equalVector();
  }
  // The unit vector of the same direction; a zero-length vector stays as it is.
  AcGeVector3d normal(const AcGeTol& tol = AcGeContext::gTol) const;
  AcGeVector3d& normalize(const AcGeTol& tol = AcGeContext::gTol) { return *this = normal(tol); }
  // A unit vector perpendicular to this one (the arbitrary-axis choice AutoCAD uses for an
  // object's coordinate system).
  AcGeVector3d perpVector() const;
  // Unsigned angle to v in [0, pi].
  double angleTo(const AcGeVector3d& v) const;
  // Angle to v counter-clockwise about refVec, in [0, 2 pi).
  double angleTo(const AcGeVector3d& v, const AcGeVector3d& refVec) const;
  AcGeVector3d& rotateBy(double ang, const AcGeVector3d& axis);
  // Applies the linear part of xform (a vector has no position).
  AcGeVector3d& transformBy(const AcGeMatrix3d& xform);
  AcGeVector3d& set(double xx, double yy, double zz) {
    x = xx;
    y = yy;
    z = zz;
    return *this;
  }

  AcGeVector3d operator*(double s) const { return {x * s, y * s, z * s}; }
  AcGeVector3d operator/(double s) const { return {x / s, y / s, z / s}; }
  AcGeVector3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
  AcGeVector3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
  AcGeVector3d operator-() const { return {-x, -y, -z}; }
  AcGeVector3d& operator*=(double s) { return *this = *this * s; }
  AcGeVector3d& operator/=(double s) { return *this = *this / s; }
  AcGeVector3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
  AcGeVector3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
  bool operator==(const AcGeVector3d& v) const { return isEqualTo(v); }
  bool operator!=(const AcGeVector3d& v) const { return !isEqualTo(v); }
  double operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : z; }
  double& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : z; }

  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

inline AcGeVector3d operator*(double s, const AcGeVector3d& v) { return v * s; }
KD_PLATFORM_API AcGeVector3d operator*(const AcGeMatrix3d& mat, const AcGeVector3d& vec);

#endif  // !_WIN32
