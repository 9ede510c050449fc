// CGrLine: a straight segment; a polyline segment too.
#pragma once

#include "module/geometry/KdPoint.h"
#include "module/graphics/GrCurve.h"
#include "module/graphics/GrElement.h"

class CGrLine : public CGrElement, public IGrCurve {
public:
  CGrLine() = default;
  CGrLine(const CKdPoint& start, const CKdPoint& end) : m_start(start), m_end(end) {}
  CGrLine(double x1, double y1, double z1, double x2, double y2, double z2)
      : m_start(x1, y1, z1), m_end(x2, y2, z2) {}
  CGrLine(const CGrLine&) = default;
  ~CGrLine() override = default;

  const CKdPoint& Start() const { return m_start; }
  const CKdPoint& End() const { return m_end; }
  void SetStart(const CKdPoint& start);
  void SetEnd(const CKdPoint& end);

  // CGrElement
  CGrElement* Clone() const override;
  // A CKdLine.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  void Rotate(const CKdPoint& base, double angle_rad) override;
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kLine; }
  bool AttributesEqual(const CGrElement& other) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;

  // IGrCurve
  CGrElement* CurveElement() override { return this; }
  const CGrElement* CurveElement() const override { return this; }
  IGrCurve* CloneCurve() const override { return new CGrLine(*this); }
  void ExtendCurveRect(CGrRect& rect) const override { rect.Extend(BoundingRect()); }
  void MoveCurve(const CKdVector& offset) override { Move(offset); }
  void RotateCurve(const CKdPoint& base, double angle_rad) override { Rotate(base, angle_rad); }
  void ScaleCurveAxes(double fx, double fy, double fz) override { ScaleAxes(fx, fy, fz); }
  void ScaleCurve(double factor) override { Scale(factor); }
  void SetCurveColor(const CGrColor& color) override { SetColor(color); }
  CKdPoint CurveStart() const override { return m_start; }
  CKdPoint CurveEnd() const override { return m_end; }
  IKdCurve* MakeKdCurve() const override;

protected:
  void ExtendRect(CGrRect& rect) const override;

private:
  CKdPoint m_start;
  CKdPoint m_end;
};
