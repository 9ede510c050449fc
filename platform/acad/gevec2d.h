// AcGeVector2d (gevec2d.h): a vector in the plane.
#pragma once

#if defined(_WIN32)
#  include <gevec2d.h>
#else

#include <cmath>

#include "platform/acad/gegbl.h"

class AcGeVector2d {
public:
  AcGeVector2d() = default;
  AcGeVector2d(double xx, double yy) : x(xx), y(yy) {}

  KD_PLATFORM_API static const AcGeVector2d kIdentity;
  KD_PLATFORM_API static const AcGeVector2d kXAxis;
  KD_PLATFORM_API static const AcGeVector2d kYAxis;

  double length() const { return std::hypot(x, y); }
  double lengthSqrd() const { return x * x + y * y; }
  double dotProduct(const AcGeVector2d& v) const { return x * v.x + y * v.y; }
  // Angle from the x axis, counter-clockwise, in [0, 2 pi).
  double angle() const {
    const double a = std::atan2(y, x);
    return a < 0.0 ? a + 6.283185307179586476925 : a;
  }
  bool isZeroLength(const AcGeTol& tol = AcGeContext::gTol) const { return length() <= tol.equalVector(); }
  bool isEqualTo(const AcGeVector2d& v, const AcGeTol& tol = AcGeContext::gTol) const {
    return std::hypot(x - v.x, y - v.y) <= tol.equalVector();
  }
  // The unit vector of the same direction; a zero-length vector stays as it is.
  AcGeVector2d normal(const AcGeTol& tol = AcGeContext::gTol) const {
    const double len = length();
    return len <= tol.equalVector() ? *this : AcGeVector2d(x / len, y / len);
  }
  AcGeVector2d& normalize(const AcGeTol& tol = AcGeContext::gTol) { return *this = normal(tol); }
  AcGeVector2d& set(double xx, double yy) {
    x = xx;
    y = yy;
    return *this;
  }

  AcGeVector2d operator*(double s) const { return {x * s, y * s}; }
  AcGeVector2d operator/(double s) const { return {x / s, y / s}; }
  AcGeVector2d operator+(const AcGeVector2d& v) const { return {x + v.x, y + v.y}; }
  AcGeVector2d operator-(const AcGeVector2d& v) const { return {x - v.x, y - v.y}; }
  AcGeVector2d operator-() const { return {-x, -y}; }
  AcGeVector2d& operator*=(double s) { return *this = *this * s; }
  AcGeVector2d& operator+=(const AcGeVector2d& v) { return *this = *this + v; }
  AcGeVector2d& operator-=(const AcGeVector2d& v) { return *this = *this - v; }
  bool operator==(const AcGeVector2d& v) const { return isEqualTo(v); }
  bool operator!=(const AcGeVector2d& v) const { return !isEqualTo(v); }
  double operator[](unsigned int i) const { return i == 0 ? x : y; }
  double& operator[](unsigned int i) { return i == 0 ? x : y; }

  double x = 0.0;
  double y = 0.0;
};

inline AcGeVector2d operator*(double s, const AcGeVector2d& v) { return v * s; }

#endif  // !_WIN32
