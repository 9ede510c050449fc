// AcGePoint3d (gepnt3d.h): a point in space.
#pragma once

#if defined(_WIN32)
#  include <gepnt3d.h>
#else

#include "platform/acad/gevec3d.h"

class AcGePoint2d;

class KD_PLATFORM_API AcGePoint3d {
public:
  AcGePoint3d() = default;
  AcGePoint3d(double xx, double yy, double zz) : x(xx), y(yy), z(zz) {}

  static const AcGePoint3d kOrigin;

  double distanceTo(const AcGePoint3d& p) const { return (*this - p).length(); }
  bool isEqualTo(const AcGePoint3d& p, const AcGeTol& tol = AcGeContext::gTol) const {
    return distanceTo(p) <= tol.equalPoint();
  }
  AcGePoint3d& transformBy(const AcGeMatrix3d& xform);
  AcGePoint3d& set(double xx, double yy, double zz) {
    x = xx;
    y = yy;
    z = zz;
    return *this;
  }
  AcGeVector3d asVector() const { return {x, y, z}; }
  // The point dropped to the plane: x and y.
  AcGePoint2d convert2d() const;

  AcGePoint3d operator+(const AcGeVector3d& v) const { return {x + v.x, y + v.y, z + v.z}; }
  AcGePoint3d operator-(const AcGeVector3d& v) const { return {x - v.x, y - v.y, z - v.z}; }
  AcGeVector3d operator-(const AcGePoint3d& p) const { return {x - p.x, y - p.y, z - p.z}; }
  AcGePoint3d& operator+=(const AcGeVector3d& v) { return *this = *this + v; }
  AcGePoint3d& operator-=(const AcGeVector3d& v) { return *this = *this - v; }
  bool operator==(const AcGePoint3d& p) const { return isEqualTo(p); }
  bool operator!=(const AcGePoint3d& p) const { return !isEqualTo(p); }
  double operator[](unsigned int i) const { return i == 0 ? x : i == 1 ? y : z; }
  double& operator[](unsigned int i) { return i == 0 ? x : i == 1 ? y : z; }

  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

KD_PLATFORM_API AcGePoint3d operator*(const AcGeMatrix3d& mat, const AcGePoint3d& pnt);

#endif  // !_WIN32
