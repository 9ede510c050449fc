// AcGePoint2d (gepnt2d.h): a point in the plane.
#pragma once

#if defined(_WIN32)
#  include <gepnt2d.h>
#else

#include "platform/acad/gevec2d.h"

class AcGePoint2d {
public:
  AcGePoint2d() = default;
  AcGePoint2d(double xx, double yy) : x(xx), y(yy) {}

  KD_PLATFORM_API static const AcGePoint2d kOrigin;

  double distanceTo(const AcGePoint2d& p) const { return std::hypot(x - p.x, y - p.y); }
  bool isEqualTo(const AcGePoint2d& p, const AcGeTol& tol = AcGeContext::gTol) const {
    return distanceTo(p) <= tol.equalPoint();
  }
  AcGePoint2d& set(double xx, double yy) {
    x = xx;
    y = yy;
    return *this;
  }
  AcGeVector2d asVector() const { return {x, y}; }

  AcGePoint2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
  AcGePoint2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
  AcGeVector2d operator-(const AcGePoint2d& p) const { return {x - p.x, y - p.y}; }
  AcGePoint2d& operator+=(const AcGeVector2d& v) { return *this = *this + v; }
  AcGePoint2d& operator-=(const AcGeVector2d& v) { return *this = *this - v; }
  bool operator==(const AcGePoint2d& p) const { return isEqualTo(p); }
  bool operator!=(const AcGePoint2d& p) const { return !isEqualTo(p); }
  double operator[](unsigned int i) const { return i == 0 ? x : y; }
  double& operator[](unsigned int i) { return i == 0 ? x : y; }

  double x = 0.0;
  double y = 0.0;
};

#endif  // !_WIN32
