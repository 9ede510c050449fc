#include "module/graphics/GrHatch.h"

CGrHatch::~CGrHatch() = default;

void CGrHatch::SetPattern(const std::wstring& pattern) {
  m_pattern = pattern;
  SetModified(true);
}

void CGrHatch::AddBorder(CGrElement* border) {
  if (border == nullptr) return;
  m_borders.Add(border);
  MarkChanged();
}

CGrElement* CGrHatch::Clone() const { return new CGrHatch(*this); }
CKdElement* CGrHatch::MakeGeometry() const { return nullptr; }

void CGrHatch::Move(const CKdVector& offset) {
  m_borders.MoveAll(offset);
  MarkChanged();
}

void CGrHatch::Rotate(const CKdPoint& base, double angle_rad) {
  m_borders.RotateAll(base, angle_rad);
  MarkChanged();
}

void CGrHatch::ScaleAxes(double fx, double fy, double fz) {
  m_borders.ScaleAllAxes(fx, fy, fz);
  MarkChanged();
}

void CGrHatch::Scale(double factor) {
  m_borders.ScaleAll(factor);
  MarkChanged();
}

bool CGrHatch::AttributesEqual(const CGrElement& other) const {
  const CGrHatch* hatch = SameKind(*this, other);
  return hatch != nullptr && CGrElement::AttributesEqual(other) && m_borders.AttributesEqual(hatch->m_borders);
}

void CGrHatch::BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad) const {
  m_borders.BreakAll(pieces, startAngle_rad);
}

CGrElement* CGrHatch::FindByTag(const std::wstring& tag) {
  if (CGrElement* self = CGrElement::FindByTag(tag)) return self;
  return m_borders.FindByTag(tag);
}

CGrElement* CGrHatch::CloneByTag(const std::wstring& tag) const {
  if (CGrElement* self = CGrElement::CloneByTag(tag)) return self;
  return m_borders.CloneByTag(tag);
}

void CGrHatch::ExtendRect(CGrRect& rect) const { m_borders.ExtendRect(rect); }
