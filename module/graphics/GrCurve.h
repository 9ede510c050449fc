// IGrCurve: the interface of the kinds that can be a polyline segment (line, arc, line-arc).
#pragma once

#include "module/geometry/KdPoint.h"
#include "module/geometry/KdVector.h"

class CGrColor;
class CGrElement;
class CGrRect;
class IKdCurve;

// A polyline owns its curves through this interface and moves, scales and recolours them
// through it; every curve is also a CGrElement, which CurveElement gives.
class IGrCurve {
public:
  virtual ~IGrCurve() = default;
  virtual CGrElement* CurveElement() = 0;
  virtual const CGrElement* CurveElement() const = 0;
  // A new copy of the same class, owned by the caller.
  virtual IGrCurve* CloneCurve() const = 0;
  // Extends `rect` by the curve's extents.
  virtual void ExtendCurveRect(CGrRect& rect) const = 0;
  virtual void MoveCurve(const CKdVector& offset) = 0;
  virtual void RotateCurve(const CKdPoint& base, double angle_rad) = 0;
  virtual void ScaleCurveAxes(double factorX, double factorY, double factorZ) = 0;
  virtual void ScaleCurve(double factor) = 0;
  virtual void SetCurveColor(const CGrColor& color) = 0;
  virtual CKdPoint CurveStart() const = 0;
  virtual CKdPoint CurveEnd() const = 0;
  // The kit's curve for this one (CKdLine, CKdArc), owned by the caller.
  virtual IKdCurve* MakeKdCurve() const = 0;

protected:
  IGrCurve() = default;
  IGrCurve(const IGrCurve&) = default;
  IGrCurve& operator=(const IGrCurve&) = default;
};
