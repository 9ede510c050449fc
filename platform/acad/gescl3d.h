// AcGeScale3d (gescl3d.h): three scale factors, one per axis.
#pragma once

#if defined(_WIN32)
#  include <gescl3d.h>
#else

#include <cmath>

#include "platform/acad/gegbl.h"

class AcGeScale3d {
public:
  AcGeScale3d() = default;
  explicit AcGeScale3d(double factor) : sx(factor), sy(factor), sz(factor) {}
  AcGeScale3d(double xFactor, double yFactor, double zFactor) : sx(xFactor), sy(yFactor), sz(zFactor) {}

  bool isProportional(const AcGeTol& tol = AcGeContext::gTol) const {
    return std::fabs(sx - sy) <= tol.equalPoint() && std::fabs(sx - sz) <= tol.equalPoint();
  }
  bool isEqualTo(const AcGeScale3d& s, const AcGeTol& tol = AcGeContext::gTol) const {
    return std::fabs(sx - s.sx) <= tol.equalPoint() && std::fabs(sy - s.sy) <= tol.equalPoint() &&
           std::fabs(sz - s.sz) <= tol.equalPoint();
  }
  AcGeScale3d& set(double xFactor, double yFactor, double zFactor) {
    sx = xFactor;
    sy = yFactor;
    sz = zFactor;
    return *this;
  }
  bool operator==(const AcGeScale3d& s) const { return isEqualTo(s); }
  bool operator!=(const AcGeScale3d& s) const { return !isEqualTo(s); }
  double operator[](unsigned int i) const { return i == 0 ? sx : i == 1 ? sy : sz; }

  double sx = 1.0;
  double sy = 1.0;
  double sz = 1.0;
};

#endif  // !_WIN32
