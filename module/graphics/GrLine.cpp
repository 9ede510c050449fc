#include "module/graphics/GrLine.h"

#include "module/geometry/KdLine.h"

void CGrLine::SetStart(const CKdPoint& start) {
  m_start = start;
  MarkChanged();
}

void CGrLine::SetEnd(const CKdPoint& end) {
  m_end = end;
  MarkChanged();
}

CGrElement* CGrLine::Clone() const { return new CGrLine(*this); }
CKdElement* CGrLine::MakeGeometry() const { return new CKdLine(m_start, m_end); }
IKdCurve* CGrLine::MakeKdCurve() const { return new CKdLine(m_start, m_end); }

void CGrLine::Move(const CKdVector& offset) {
  m_start += offset;
  m_end += offset;
  MarkChanged();
}

void CGrLine::Rotate(const CKdPoint& base, double angle_rad) {
  m_start = m_start.RotatedXY(base, angle_rad);
  m_end = m_end.RotatedXY(base, angle_rad);
  MarkChanged();
}

void CGrLine::ScaleAxes(double fx, double fy, double fz) {
  m_start = grgeo::ScaledAxes(m_start, fx, fy, fz);
  m_end = grgeo::ScaledAxes(m_end, fx, fy, fz);
  MarkChanged();
}

void CGrLine::Scale(double factor) {
  m_start = grgeo::Scaled(m_start, factor);
  m_end = grgeo::Scaled(m_end, factor);
  MarkChanged();
}

bool CGrLine::AttributesEqual(const CGrElement& other) const {
  const CGrLine* line = SameKind(*this, other);
  return line != nullptr && CGrElement::AttributesEqual(other) && grgeo::IsEqual(m_start, line->m_start) &&
         grgeo::IsEqual(m_end, line->m_end);
}

void CGrLine::ExtendRect(CGrRect& rect) const {
  rect.Extend(m_start);
  rect.Extend(m_end);
}
