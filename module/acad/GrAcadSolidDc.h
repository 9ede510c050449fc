// The drawing classes of the cylinder (a 3D solid) and of the shallow element (attributes of an
// entity drawn by someone else).
#pragma once

#include "module/acad/GrAcadDc.h"

namespace gracad {

// Key of the record that keeps a cylinder's element data on its solid: the axis (points 10 and
// 11), the radius (40), the title (1), then each row as its cell count (90) and cells (300).
inline constexpr const wchar_t* kCylinderKey = L"KdCylinder";
// A row whose first cell is this (case ignored) gives the radius in its second cell; without one
// the radius is a tenth of the axis length.
inline constexpr const wchar_t* kRadiusRow = L"Radius";

}  // namespace gracad

// AcDb3dSolid: a cylinder around the element's axis, built on the origin along +Z and placed with
// one transformation matrix. A solid keeps no primitive parameters that can be read back, so the
// element's data go with it in the extension dictionary and MakeElement reads them from there. A
// solid does not read back through the graphics context (its kind is none).
class CGrAcadCylinderDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
  int Draw(CGrElement* element) override;
};

// A shallow element stands for an entity that exists already: drawing it applies the element's
// layer, colour, line type, scale and visibility to that entity (of any class); without a
// session id there is nothing to draw. MakeElement takes the common properties of any entity.
class CGrAcadShallowElementDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};
