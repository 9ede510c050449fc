// Type codes of the element kinds: what CGrElement::Type returns and JSON "type" holds.
#pragma once

namespace grkind {

inline constexpr int kText = 1;
inline constexpr int kCircle = 2;
inline constexpr int kLine = 3;
inline constexpr int kPolyline = 4;
inline constexpr int kElementBlock = 5;
inline constexpr int kGroup = 6;
inline constexpr int kHatch = 7;
inline constexpr int kRectangleFace = 8;
inline constexpr int kTriangleFace = 9;
inline constexpr int kVertexPolyline = 10;
inline constexpr int kTable = 11;
inline constexpr int kCylinder = 12;
inline constexpr int kEllipse = 15;
// The arc and the line-arc share it on purpose.
inline constexpr int kArc = 16;
inline constexpr int kShallow = 99;
inline constexpr int kMesh = 105;

}  // namespace grkind
