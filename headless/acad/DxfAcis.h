// The ACIS text (SAT, version 7.0) that a DXF 3DSOLID carries. The platform's solids are frustums;
// each is written as a closed faceted body (planar faces, straight edges) of its two end rings,
// which CAD programs open as an ordinary solid, and read back from those rings exactly.
#pragma once

#include <string>
#include <vector>

#include "headless/acad/ImpAccess.h"

namespace headless::dxf {

// Points on each end ring of a written frustum (a multiple of 4, so that the quarter points give
// both radii back).
inline constexpr int kFrustumSegments = 32;

// The SAT lines of the frustum's body (empty for a solid without one).
std::vector<std::string> FrustumSat(const AcDbImpAccess::Frustum& frustum);
// The frustum whose body FrustumSat wrote; false for ACIS data of any other shape.
bool FrustumFromSat(const std::vector<std::string>& lines, AcDbImpAccess::Frustum& frustum);

}  // namespace headless::dxf
