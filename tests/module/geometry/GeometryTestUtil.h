// Assertions shared by the geometry kit's tests.
#pragma once

#include <gtest/gtest.h>

#include <cmath>

#include "module/geometry/KdPoint.h"
#include "module/geometry/KdPolyline.h"
#include "module/geometry/KdVector.h"

namespace kdtest {

inline testing::AssertionResult Near(const CKdPoint& actual, const CKdPoint& expected, double tolerance = 1e-9) {
  if (actual.IsEqual(expected, tolerance)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << actual << " is not within " << tolerance << " of " << expected;
}

inline testing::AssertionResult Near(const CKdVector& actual, const CKdVector& expected, double tolerance = 1e-9) {
  if (actual.IsEqual(expected, tolerance)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << actual << " is not within " << tolerance << " of " << expected;
}

// Shoelace area of the vertices, positive counter-clockwise; bulges are ignored.
inline double SignedVertexArea(const CKdPolyline& p) {
  double twice = 0.0;
  const std::size_t n = p.VertexCount();
  for (std::size_t i = 0; i < n; ++i) {
    const CKdPoint a = p.Vertex(i);
    const CKdPoint b = p.Vertex((i + 1) % n);
    twice += a.x * b.y - b.x * a.y;
  }
  return 0.5 * twice;
}

inline CKdPolyline Rectangle(double x0, double y0, double x1, double y1, double z = 0.0) {
  return CKdPolyline({{x0, y0, z}, {x1, y0, z}, {x1, y1, z}, {x0, y1, z}}, {}, true);
}

}  // namespace kdtest
