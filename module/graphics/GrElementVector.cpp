#include "module/graphics/GrElementVector.h"

#include <utility>

CGrElementVector::CGrElementVector(const CGrElementVector& other) {
  m_items.reserve(other.m_items.size());
  for (const auto& element : other.m_items) m_items.emplace_back(element->Clone());
}

CGrElementVector& CGrElementVector::operator=(const CGrElementVector& other) {
  if (this != &other) {
    CGrElementVector copy(other);
    *this = std::move(copy);
  }
  return *this;
}

CGrElementVector::~CGrElementVector() = default;

void CGrElementVector::Add(CGrElement* element) { Add(std::unique_ptr<CGrElement>(element)); }

void CGrElementVector::Add(std::unique_ptr<CGrElement> element) {
  if (element) m_items.push_back(std::move(element));
}

void CGrElementVector::Clear() { m_items.clear(); }

CGrElement* CGrElementVector::At(std::size_t index) {
  return index < m_items.size() ? m_items[index].get() : nullptr;
}

const CGrElement* CGrElementVector::At(std::size_t index) const {
  return index < m_items.size() ? m_items[index].get() : nullptr;
}

CGrElement* CGrElementVector::FindByTag(const std::wstring& tag) {
  for (const auto& element : m_items) {
    if (CGrElement* found = element->FindByTag(tag)) return found;
  }
  return nullptr;
}

CGrElement* CGrElementVector::CloneByTag(const std::wstring& tag) const {
  for (const auto& element : m_items) {
    if (CGrElement* clone = element->CloneByTag(tag)) return clone;
  }
  return nullptr;
}

void CGrElementVector::ExtendRect(CGrRect& rect) const {
  for (const auto& element : m_items) rect.Extend(element->BoundingRect());
}

bool CGrElementVector::AttributesEqual(const CGrElementVector& other) const {
  if (m_items.size() != other.m_items.size()) return false;
  for (std::size_t i = 0; i < m_items.size(); ++i) {
    if (!m_items[i]->AttributesEqual(*other.m_items[i])) return false;
  }
  return true;
}

void CGrElementVector::MoveAll(const CKdVector& offset) const {
  for (const auto& element : m_items) element->Move(offset);
}

void CGrElementVector::RotateAll(const CKdPoint& base, double angle_rad) const {
  for (const auto& element : m_items) element->Rotate(base, angle_rad);
}

void CGrElementVector::ScaleAllAxes(double fx, double fy, double fz) const {
  for (const auto& element : m_items) element->ScaleAxes(fx, fy, fz);
}

void CGrElementVector::ScaleAll(double factor) const {
  for (const auto& element : m_items) element->Scale(factor);
}

void CGrElementVector::BreakAll(CGrElementVector& pieces, std::optional<double> startAngle_rad) const {
  for (const auto& element : m_items) element->BreakIntoCurves(pieces, startAngle_rad);
}
