// AcGeLineSeg2d (gelnsg2d.h): a bounded line in the plane (a hatch loop edge).
#pragma once

#if defined(_WIN32)
#  include <gelnsg2d.h>
#else

#include "platform/acad/gepnt2d.h"

class AcGeLineSeg2d {
public:
  AcGeLineSeg2d() = default;
  AcGeLineSeg2d(const AcGePoint2d& pnt1, const AcGePoint2d& pnt2) : m_start(pnt1), m_end(pnt2) {}

  AcGePoint2d startPoint() const { return m_start; }
  AcGePoint2d endPoint() const { return m_end; }
  double length() const { return m_start.distanceTo(m_end); }
  AcGeLineSeg2d& set(const AcGePoint2d& pnt1, const AcGePoint2d& pnt2) {
    m_start = pnt1;
    m_end = pnt2;
    return *this;
  }

private:
  AcGePoint2d m_start;
  AcGePoint2d m_end{1.0, 0.0};
};

#endif  // !_WIN32
