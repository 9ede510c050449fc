#include "module/graphics/GrCircle.h"

#include <cmath>
#include <memory>

#include "module/geometry/KdCircle.h"
#include "module/geometry/KdConstants.h"
#include "module/graphics/GrArc.h"
#include "module/graphics/GrElementVector.h"

void CGrCircle::SetCenter(const CKdPoint& centre) {
  m_center = centre;
  MarkChanged();
}

void CGrCircle::SetRadius(double radius) {
  m_radius = radius;
  MarkChanged();
}

CGrElement* CGrCircle::Clone() const { return new CGrCircle(*this); }
CKdElement* CGrCircle::MakeGeometry() const { return new CKdCircle(m_center, m_radius); }

void CGrCircle::Move(const CKdVector& offset) {
  m_center += offset;
  MarkChanged();
}

void CGrCircle::Rotate(const CKdPoint& base, double angle_rad) {
  m_center = m_center.RotatedXY(base, angle_rad);
  MarkChanged();
}

void CGrCircle::ScaleAxes(double fx, double /*fy*/, double /*fz*/) { Scale(fx); }

void CGrCircle::Scale(double factor) {
  m_center = grgeo::Scaled(m_center, factor);
  m_radius *= std::fabs(factor);
  MarkChanged();
}

bool CGrCircle::AttributesEqual(const CGrElement& other) const {
  const CGrCircle* circle = SameKind(*this, other);
  return circle != nullptr && CGrElement::AttributesEqual(other) && grgeo::IsEqual(m_center, circle->m_center) &&
         grgeo::IsEqual(m_radius, circle->m_radius);
}

void CGrCircle::BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad) const {
  auto arc = std::make_unique<CGrLineArc>(m_center, m_radius, startAngle_rad.value_or(0.0), kdgeo::kTwoPi);
  CopyDisplayAttributesTo(*arc);
  pieces.Add(std::move(arc));
}

void CGrCircle::ExtendRect(CGrRect& rect) const {
  rect.Extend(CKdPoint(m_center.x - m_radius, m_center.y - m_radius, m_center.z));
  rect.Extend(CKdPoint(m_center.x + m_radius, m_center.y + m_radius, m_center.z));
}
