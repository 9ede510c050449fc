#include "module/graphics/GrTable.h"

// --- CGrTable ---

void CGrTable::SetLocation(const CKdPoint& location) {
  m_location = location;
  MarkChanged();
}

void CGrTable::SetTitle(const std::wstring& title) {
  m_title = title;
  SetModified(true);
}

void CGrTable::SetRows(const CGrCellRows& rows) {
  m_rows = rows;
  SetModified(true);
}

CGrElement* CGrTable::Clone() const { return new CGrTable(*this); }
CKdElement* CGrTable::MakeGeometry() const { return nullptr; }

void CGrTable::Move(const CKdVector& offset) {
  m_location += offset;
  MarkChanged();
}

void CGrTable::Rotate(const CKdPoint& base, double angle_rad) {
  m_location = m_location.RotatedXY(base, angle_rad);
  MarkChanged();
}

void CGrTable::ScaleAxes(double fx, double fy, double fz) {
  m_location = grgeo::ScaledAxes(m_location, fx, fy, fz);
  MarkChanged();
}

void CGrTable::Scale(double factor) {
  m_location = grgeo::Scaled(m_location, factor);
  MarkChanged();
}

bool CGrTable::AttributesEqual(const CGrElement& other) const {
  const CGrTable* table = SameKind(*this, other);
  return table != nullptr && CGrElement::AttributesEqual(other) && grgeo::IsEqual(m_location, table->m_location) &&
         m_title == table->m_title && m_rows == table->m_rows;
}

void CGrTable::ExtendRect(CGrRect& rect) const { rect.Extend(m_location); }

// --- CGrCylinder ---

void CGrCylinder::SetAxis(const CKdPoint& start, const CKdPoint& end) {
  m_axis.emplace(start, end);
  MarkChanged();
}

void CGrCylinder::ClearAxis() {
  m_axis.reset();
  MarkChanged();
}

void CGrCylinder::SetTitle(const std::wstring& title) {
  m_title = title;
  SetModified(true);
}

void CGrCylinder::SetRows(const CGrCellRows& rows) {
  m_rows = rows;
  SetModified(true);
}

CGrElement* CGrCylinder::Clone() const { return new CGrCylinder(*this); }
CKdElement* CGrCylinder::MakeGeometry() const { return nullptr; }

void CGrCylinder::Move(const CKdVector& offset) {
  if (m_axis) m_axis->Translate(offset);
  MarkChanged();
}

void CGrCylinder::Rotate(const CKdPoint& base, double angle_rad) {
  if (m_axis) m_axis->Rotate(base, angle_rad);
  MarkChanged();
}

void CGrCylinder::ScaleAxes(double fx, double fy, double fz) {
  if (m_axis) {
    m_axis.emplace(grgeo::ScaledAxes(m_axis->StartPoint(), fx, fy, fz), grgeo::ScaledAxes(m_axis->EndPoint(), fx, fy, fz));
  }
  MarkChanged();
}

void CGrCylinder::Scale(double factor) {
  if (m_axis) m_axis->Scale(factor);
  MarkChanged();
}

bool CGrCylinder::AttributesEqual(const CGrElement& other) const {
  const CGrCylinder* cylinder = SameKind(*this, other);
  if (cylinder == nullptr || !CGrElement::AttributesEqual(other) || m_title != cylinder->m_title ||
      m_rows != cylinder->m_rows || m_axis.has_value() != cylinder->m_axis.has_value()) {
    return false;
  }
  return !m_axis || m_axis->IsEqual(*cylinder->m_axis);
}

void CGrCylinder::ExtendRect(CGrRect& rect) const {
  if (!m_axis) return;
  rect.Extend(m_axis->StartPoint());
  rect.Extend(m_axis->EndPoint());
}
