// The drawing classes of the single curves: line, arc, circle and ellipse.
#pragma once

#include "module/acad/GrAcadDc.h"

class CGrAcadLineDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  // AcDbLine: start and end point.
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};

// AcDbArc runs counter-clockwise: an arc of negative sweep is drawn from its end, and reads back
// with the positive sweep and the start angle in [0, 2 pi). A full sweep stays an arc.
class CGrAcadArcDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};

// AcDbCircle: centre, radius, normal +Z.
class CGrAcadCircleDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};

// AcDbEllipse, set as a whole. The element's angles are the ellipse's parameters, AutoCAD's are
// angles from the major axis; a minor axis longer than the major one is drawn with the two
// swapped (and reads back so). The axes must be perpendicular, as AutoCAD requires. Equal angles
// (the whole ellipse) read back equal.
class CGrAcadEllipseDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};

namespace gracad {

inline AcGePoint3d ToAcad(const CKdPoint& p) { return {p.x, p.y, p.z}; }
inline AcGeVector3d ToAcad(const CKdVector& v) { return {v.x, v.y, v.z}; }
inline CKdPoint FromAcad(const AcGePoint3d& p) { return {p.x, p.y, p.z}; }
inline CKdVector FromAcad(const AcGeVector3d& v) { return {v.x, v.y, v.z}; }
// The angle in [0, 2 pi).
double Normalized(double angle_rad);

}  // namespace gracad
