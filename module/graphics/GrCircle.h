// CGrCircle: a full circle in a horizontal plane.
#pragma once

#include "module/geometry/KdPoint.h"
#include "module/graphics/GrElement.h"

class CGrCircle : public CGrElement {
public:
  CGrCircle() = default;
  CGrCircle(const CKdPoint& centre, double radius) : m_center(centre), m_radius(radius) {}
  CGrCircle(const CGrCircle&) = default;
  ~CGrCircle() override = default;

  const CKdPoint& Center() const { return m_center; }
  double Radius() const { return m_radius; }
  void SetCenter(const CKdPoint& centre);
  void SetRadius(double radius);

  // CGrElement
  CGrElement* Clone() const override;
  // A CKdCircle with the same centre and radius.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  void Rotate(const CKdPoint& base, double angle_rad) override;
  // A circle cannot scale unevenly: all three coordinates of the centre and the radius take
  // the x factor alone. Kept on purpose.
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kCircle; }
  bool AttributesEqual(const CGrElement& other) const override;
  // One CGrLineArc for the full circle, starting at startAngle_rad (0 when not given), with the
  // circle's colour, layer and line type.
  void BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad = std::nullopt) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;

protected:
  // Centre +/- radius in x and y.
  void ExtendRect(CGrRect& rect) const override;

private:
  CKdPoint m_center;
  double m_radius = 0.0;
};
