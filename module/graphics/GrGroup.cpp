#include "module/graphics/GrGroup.h"

CGrGroup::~CGrGroup() = default;

void CGrGroup::SetName(const std::wstring& name) {
  m_name = name;
  SetModified(true);
}

void CGrGroup::Add(CGrElement* element) {
  if (element == nullptr) return;
  m_elements.Add(element);
  MarkChanged();
}

CGrElement* CGrGroup::Clone() const { return new CGrGroup(*this); }
CKdElement* CGrGroup::MakeGeometry() const { return nullptr; }

void CGrGroup::Move(const CKdVector& offset) {
  m_elements.MoveAll(offset);
  MarkChanged();
}

void CGrGroup::Rotate(const CKdPoint& base, double angle_rad) {
  m_elements.RotateAll(base, angle_rad);
  MarkChanged();
}

void CGrGroup::ScaleAxes(double fx, double fy, double fz) {
  m_elements.ScaleAllAxes(fx, fy, fz);
  MarkChanged();
}

void CGrGroup::Scale(double factor) {
  m_elements.ScaleAll(factor);
  MarkChanged();
}

bool CGrGroup::AttributesEqual(const CGrElement& other) const {
  const CGrGroup* group = SameKind(*this, other);
  return group != nullptr && CGrElement::AttributesEqual(other) && m_name == group->m_name &&
         m_elements.AttributesEqual(group->m_elements);
}

void CGrGroup::BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad) const {
  m_elements.BreakAll(pieces, startAngle_rad);
}

CGrElement* CGrGroup::FindByTag(const std::wstring& tag) {
  if (CGrElement* self = CGrElement::FindByTag(tag)) return self;
  return m_elements.FindByTag(tag);
}

CGrElement* CGrGroup::CloneByTag(const std::wstring& tag) const {
  if (CGrElement* self = CGrElement::CloneByTag(tag)) return self;
  return m_elements.CloneByTag(tag);
}

void CGrGroup::ExtendRect(CGrRect& rect) const { m_elements.ExtendRect(rect); }

