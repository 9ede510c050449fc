#include "module/graphics/GrEllipse.h"

#include <cmath>

#include "module/geometry/KdConstants.h"

void CGrEllipse::SetCenter(const CKdPoint& centre) {
  m_center = centre;
  MarkChanged();
}

void CGrEllipse::SetAxes(const CKdVector& minorAxis, const CKdVector& majorAxis) {
  m_minorAxis = minorAxis;
  m_majorAxis = majorAxis;
  MarkChanged();
}

void CGrEllipse::SetAngles(double startAngle_rad, double endAngle_rad) {
  m_startAngle = startAngle_rad;
  m_endAngle = endAngle_rad;
  MarkChanged();
}

CKdPoint CGrEllipse::PointAt(double t_rad) const {
  return m_center + m_majorAxis * std::cos(t_rad) + m_minorAxis * std::sin(t_rad);
}

CGrElement* CGrEllipse::Clone() const { return new CGrEllipse(*this); }
CKdElement* CGrEllipse::MakeGeometry() const { return nullptr; }

void CGrEllipse::Move(const CKdVector& offset) {
  m_center += offset;
  MarkChanged();
}

void CGrEllipse::Rotate(const CKdPoint& base, double angle_rad) {
  m_center = m_center.RotatedXY(base, angle_rad);
  m_minorAxis = grgeo::RotatedXY(m_minorAxis, angle_rad);
  m_majorAxis = grgeo::RotatedXY(m_majorAxis, angle_rad);
  MarkChanged();
}

void CGrEllipse::ScaleAxes(double fx, double fy, double fz) {
  m_center = grgeo::ScaledAxes(m_center, fx, fy, fz);
  m_minorAxis = {m_minorAxis.x * fx, m_minorAxis.y * fy, m_minorAxis.z * fz};
  m_majorAxis = {m_majorAxis.x * fx, m_majorAxis.y * fy, m_majorAxis.z * fz};
  MarkChanged();
}

void CGrEllipse::Scale(double factor) {
  m_center = grgeo::Scaled(m_center, factor);
  m_minorAxis = m_minorAxis * factor;
  m_majorAxis = m_majorAxis * factor;
  MarkChanged();
}

bool CGrEllipse::AttributesEqual(const CGrElement& other) const {
  const CGrEllipse* ellipse = SameKind(*this, other);
  return ellipse != nullptr && CGrElement::AttributesEqual(other) && grgeo::IsEqual(m_center, ellipse->m_center) &&
         grgeo::IsEqual(m_minorAxis, ellipse->m_minorAxis) && grgeo::IsEqual(m_majorAxis, ellipse->m_majorAxis) &&
         grgeo::IsEqual(m_startAngle, ellipse->m_startAngle) && grgeo::IsEqual(m_endAngle, ellipse->m_endAngle);
}

void CGrEllipse::ExtendRect(CGrRect& rect) const {
  double sweep = m_endAngle - m_startAngle;
  if (!std::isfinite(sweep)) return;
  sweep = kdgeo::NormalizeAngle(sweep);
  if (sweep == 0.0) sweep = kdgeo::kTwoPi;
  rect.Extend(PointAt(m_startAngle));
  rect.Extend(PointAt(m_startAngle + sweep));
  // Along each axis, major * cos t + minor * sin t is extreme where tan t = minor / major.
  const double axes[3][2] = {{m_majorAxis.x, m_minorAxis.x}, {m_majorAxis.y, m_minorAxis.y}, {m_majorAxis.z, m_minorAxis.z}};
  for (const auto& axis : axes) {
    if (axis[0] == 0.0 && axis[1] == 0.0) continue;
    const double t = std::atan2(axis[1], axis[0]);
    for (const double extreme : {t, t + kdgeo::kPi}) {
      if (grgeo::AngleInSweep(extreme, m_startAngle, sweep)) rect.Extend(PointAt(extreme));
    }
  }
}
