#include "module/graphics/GrText.h"

#include <cmath>

#include "module/geometry/KdConstants.h"

void CGrText::SetPosition(const CKdPoint& position) {
  m_position = position;
  MarkChanged();
}

void CGrText::SetHeight(double height) {
  m_height = height;
  MarkChanged();
}

void CGrText::SetRotation(double angle_rad) {
  m_rotation = angle_rad;
  MarkChanged();
}

void CGrText::SetMessage(const std::wstring& message) {
  m_message = message;
  MarkChanged();
}

void CGrText::SetStyleName(const std::wstring& styleName) {
  m_styleName = styleName;
  MarkChanged();
}

void CGrText::SetJustification(std::uint32_t justification) {
  m_justification = justification;
  MarkChanged();
}

CGrElement* CGrText::Clone() const { return new CGrText(*this); }
CKdElement* CGrText::MakeGeometry() const { return nullptr; }

void CGrText::Move(const CKdVector& offset) {
  m_position += offset;
  MarkChanged();
}

void CGrText::Rotate(const CKdPoint& base, double angle_rad) {
  m_position = m_position.RotatedXY(base, angle_rad);
  m_rotation += angle_rad;
  MarkChanged();
}

void CGrText::ScaleAxes(double fx, double fy, double fz) {
  m_position = grgeo::ScaledAxes(m_position, fx, fy, fz);
  m_height *= std::fabs(fx);
  MarkChanged();
}

void CGrText::Scale(double factor) {
  m_position = grgeo::Scaled(m_position, factor);
  m_height *= std::fabs(factor);
  if (factor < 0.0) m_rotation += kdgeo::kPi;
  MarkChanged();
}

bool CGrText::AttributesEqual(const CGrElement& other) const {
  const CGrText* text = SameKind(*this, other);
  return text != nullptr && CGrElement::AttributesEqual(other) && grgeo::IsEqual(m_position, text->m_position) &&
         grgeo::IsEqual(m_height, text->m_height) && grgeo::IsEqual(m_rotation, text->m_rotation) &&
         m_message == text->m_message && m_styleName == text->m_styleName &&
         m_justification == text->m_justification;
}

void CGrText::ExtendRect(CGrRect& rect) const { rect.Extend(m_position); }
