// CGrRect: an element's bounding rectangle, a minimum and a maximum corner (z carried along).
#pragma once

#include <iosfwd>

#include "module/geometry/KdPoint.h"

class CGrRect {
public:
  // The empty rectangle: it contains nothing and its sides are 0.
  CGrRect() = default;
  // The rectangle spanned by two corners, in any order.
  CGrRect(const CKdPoint& a, const CKdPoint& b);

  bool IsEmpty() const { return m_empty; }
  // Meaningful only when not empty.
  const CKdPoint& Min() const { return m_min; }
  const CKdPoint& Max() const { return m_max; }
  // Sides in x and y; 0 when empty.
  double Width() const { return m_empty ? 0.0 : m_max.x - m_min.x; }
  double Height() const { return m_empty ? 0.0 : m_max.y - m_min.y; }
  // Whether p lies inside or on the border in x and y.
  bool Contains(const CKdPoint& p) const;

  void Reset() { *this = CGrRect(); }
  void Extend(const CKdPoint& p);
  void Extend(const CGrRect& other);

  // Exact; two empty rectangles are equal.
  friend bool operator==(const CGrRect& a, const CGrRect& b);

private:
  CKdPoint m_min;
  CKdPoint m_max;
  bool m_empty = true;
};

std::ostream& operator<<(std::ostream& out, const CGrRect& rect);
