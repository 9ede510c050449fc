#include "module/graphics/GrRect.h"

#include <algorithm>
#include <ostream>

CGrRect::CGrRect(const CKdPoint& a, const CKdPoint& b) {
  Extend(a);
  Extend(b);
}

bool CGrRect::Contains(const CKdPoint& p) const {
  return !m_empty && p.x >= m_min.x && p.x <= m_max.x && p.y >= m_min.y && p.y <= m_max.y;
}

void CGrRect::Extend(const CKdPoint& p) {
  if (m_empty) {
    m_min = m_max = p;
    m_empty = false;
    return;
  }
  m_min = {std::min(m_min.x, p.x), std::min(m_min.y, p.y), std::min(m_min.z, p.z)};
  m_max = {std::max(m_max.x, p.x), std::max(m_max.y, p.y), std::max(m_max.z, p.z)};
}

void CGrRect::Extend(const CGrRect& other) {
  if (other.m_empty) return;
  Extend(other.m_min);
  Extend(other.m_max);
}

bool operator==(const CGrRect& a, const CGrRect& b) {
  if (a.m_empty || b.m_empty) return a.m_empty == b.m_empty;
  return a.m_min == b.m_min && a.m_max == b.m_max;
}

std::ostream& operator<<(std::ostream& out, const CGrRect& rect) {
  if (rect.IsEmpty()) return out << "CGrRect{empty}";
  return out << "CGrRect{" << rect.Min() << " - " << rect.Max() << "}";
}
