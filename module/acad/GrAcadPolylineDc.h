// The polyline's drawing class: a CGrPolyline of lines and arcs as a polyline entity.
#pragma once

#include "module/acad/GrAcadDc.h"

namespace gracad {

// CGrPolyline::PolylineType: which entity is made.
inline constexpr int kLightweightPolyline = 0;  // AcDbPolyline: arcs as bulges, one elevation
inline constexpr int k2dPolyline = 1;           // AcDb2dPolyline: arcs as bulges, one elevation
inline constexpr int k3dPolyline = 2;           // AcDb3dPolyline: straight segments, arcs stroked

}  // namespace gracad

// Vertices are the curves' start points (and the last curve's end for an open polyline, or for
// a closed one whose last curve does not come back to the start); a gap between two curves
// becomes a straight segment. A full-circle arc takes two bulges. The planar kinds lie at the
// first point's elevation. Reading gives lines and line-arcs (CGrLineArc) and the entity's type;
// any of the three entities reads back.
class CGrAcadPolylineDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};
