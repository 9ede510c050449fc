#include "module/graphics/GrArc.h"

#include <cmath>

#include "module/geometry/KdArc.h"
#include "module/geometry/KdConstants.h"

void CGrArc::SetCenter(const CKdPoint& centre) {
  m_center = centre;
  MarkChanged();
}

void CGrArc::SetRadius(double radius) {
  m_radius = radius;
  MarkChanged();
}

void CGrArc::SetStartAngle(double angle_rad) {
  m_startAngle = angle_rad;
  MarkChanged();
}

void CGrArc::SetSweep(double sweep_rad) {
  m_sweep = sweep_rad;
  MarkChanged();
}

CKdPoint CGrArc::PointAtAngle(double angle_rad) const {
  return {m_center.x + m_radius * std::cos(angle_rad), m_center.y + m_radius * std::sin(angle_rad), m_center.z};
}

CGrElement* CGrArc::Clone() const { return new CGrArc(*this); }

CKdElement* CGrArc::MakeGeometry() const { return new CKdArc(m_center, m_radius, m_startAngle, m_sweep); }
IKdCurve* CGrArc::MakeKdCurve() const { return new CKdArc(m_center, m_radius, m_startAngle, m_sweep); }

void CGrArc::Move(const CKdVector& offset) {
  m_center += offset;
  MarkChanged();
}

void CGrArc::Rotate(const CKdPoint& base, double angle_rad) {
  m_center = m_center.RotatedXY(base, angle_rad);
  m_startAngle += angle_rad;
  MarkChanged();
}

void CGrArc::ScaleAxes(double fx, double fy, double fz) {
  m_center = grgeo::ScaledAxes(m_center, fx, fy, fz);
  m_radius *= std::fabs(fx);
  if (fx < 0.0) {  // mirror in the y axis
    m_startAngle = kdgeo::kPi - m_startAngle;
    m_sweep = -m_sweep;
  }
  if (fy < 0.0) {  // mirror in the x axis
    m_startAngle = -m_startAngle;
    m_sweep = -m_sweep;
  }
  MarkChanged();
}

void CGrArc::Scale(double factor) {
  m_center = grgeo::Scaled(m_center, factor);
  m_radius *= std::fabs(factor);
  if (factor < 0.0) m_startAngle += kdgeo::kPi;
  MarkChanged();
}

bool CGrArc::AttributesEqual(const CGrElement& other) const {
  const CGrArc* arc = SameKind(*this, other);
  return arc != nullptr && CGrElement::AttributesEqual(other) && grgeo::IsEqual(m_center, arc->m_center) &&
         grgeo::IsEqual(m_radius, arc->m_radius) && grgeo::IsEqual(m_startAngle, arc->m_startAngle) &&
         grgeo::IsEqual(m_sweep, arc->m_sweep);
}

void CGrArc::ExtendRect(CGrRect& rect) const {
  rect.Extend(PointAtAngle(m_startAngle));
  rect.Extend(PointAtAngle(m_startAngle + m_sweep));
  for (int quarter = 0; quarter < 4; ++quarter) {
    const double axis = quarter * kdgeo::kHalfPi;
    if (grgeo::AngleInSweep(axis, m_startAngle, m_sweep)) rect.Extend(PointAtAngle(axis));
  }
}

CGrElement* CGrLineArc::Clone() const { return new CGrLineArc(*this); }
