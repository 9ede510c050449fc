// AcGeCircArc2d (gearc2d.h): a circular arc in the plane (a hatch loop edge). The arc runs from
// startAng to endAng (radians, startAng <= endAng), measured from refVec counter-clockwise, or
// clockwise when isClockWise is true.
#pragma once

#if defined(_WIN32)
#  include <gearc2d.h>
#else

#include "platform/acad/gepnt2d.h"

class AcGeCircArc2d {
public:
  AcGeCircArc2d() = default;
  AcGeCircArc2d(const AcGePoint2d& cent, double radius) : m_center(cent), m_radius(radius) {}
  AcGeCircArc2d(const AcGePoint2d& cent, double radius, double startAngle, double endAngle,
                const AcGeVector2d& refVec = AcGeVector2d::kXAxis, bool isClockWise = false)
      : m_center(cent), m_radius(radius), m_startAng(startAngle), m_endAng(endAngle),
        m_refVec(refVec.normal()), m_clockWise(isClockWise) {}

  AcGePoint2d center() const { return m_center; }
  double radius() const { return m_radius; }
  double startAng() const { return m_startAng; }
  double endAng() const { return m_endAng; }
  bool isClockWise() const { return m_clockWise; }
  AcGeVector2d refVec() const { return m_refVec; }
  // The point at parameter (angle) a of the arc.
  AcGePoint2d evalPoint(double a) const {
    const AcGeVector2d perp = m_clockWise ? AcGeVector2d(m_refVec.y, -m_refVec.x) : AcGeVector2d(-m_refVec.y, m_refVec.x);
    return m_center + (m_refVec * std::cos(a) + perp * std::sin(a)) * m_radius;
  }
  AcGePoint2d startPoint() const { return evalPoint(m_startAng); }
  AcGePoint2d endPoint() const { return evalPoint(m_endAng); }
  AcGeCircArc2d& set(const AcGePoint2d& cent, double radius, double ang1, double ang2,
                     const AcGeVector2d& refVec = AcGeVector2d::kXAxis, bool isClockWise = false) {
    *this = AcGeCircArc2d(cent, radius, ang1, ang2, refVec, isClockWise);
    return *this;
  }

private:
  AcGePoint2d m_center;
  double m_radius = 1.0;
  double m_startAng = 0.0;
  double m_endAng = 6.283185307179586476925;
  AcGeVector2d m_refVec{1.0, 0.0};
  bool m_clockWise = false;
};

#endif  // !_WIN32
