// AcGeTol (getol.h): the tolerances geometric comparisons use, in drawing units.
#pragma once

#if defined(_WIN32)
#  include <getol.h>
#else

#include "platform/platform_api.h"

class AcGeTol {
public:
  AcGeTol() = default;

  // Two points closer than this are equal.
  double equalPoint() const { return m_equalPoint; }
  // Two vectors whose difference is shorter than this are equal; a vector shorter than this is
  // of zero length.
  double equalVector() const { return m_equalVector; }
  void setEqualPoint(double val) { m_equalPoint = val; }
  void setEqualVector(double val) { m_equalVector = val; }

private:
  double m_equalPoint = 1.0e-10;
  double m_equalVector = 1.0e-10;
};

#endif  // !_WIN32
