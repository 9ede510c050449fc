// CGrArc: a circular arc in a horizontal plane (centre, radius, start angle, signed sweep), and
// CGrLineArc, an arc standing as a polyline segment.
#pragma once

#include "module/geometry/KdPoint.h"
#include "module/graphics/GrCurve.h"
#include "module/graphics/GrElement.h"

// Angles in radians counter-clockwise from +x; a positive sweep runs counter-clockwise. The
// values are stored as given, without normalisation.
class CGrArc : public CGrElement, public IGrCurve {
public:
  CGrArc() = default;
  CGrArc(const CKdPoint& centre, double radius, double startAngle_rad, double sweep_rad)
      : m_center(centre), m_radius(radius), m_startAngle(startAngle_rad), m_sweep(sweep_rad) {}
  CGrArc(double cx, double cy, double cz, double radius, double startAngle_rad, double sweep_rad)
      : CGrArc(CKdPoint(cx, cy, cz), radius, startAngle_rad, sweep_rad) {}
  CGrArc(const CGrArc&) = default;
  ~CGrArc() override = default;

  const CKdPoint& Center() const { return m_center; }
  double Radius() const { return m_radius; }
  double StartAngle() const { return m_startAngle; }
  double Sweep() const { return m_sweep; }
  void SetCenter(const CKdPoint& centre);
  void SetRadius(double radius);
  void SetStartAngle(double angle_rad);
  void SetSweep(double sweep_rad);
  CKdPoint PointAtAngle(double angle_rad) const;

  // CGrElement
  CGrElement* Clone() const override;
  // A CKdArc.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  // The centre turns about the base and the start angle grows by the angle.
  void Rotate(const CKdPoint& base, double angle_rad) override;
  // The centre scales per axis, the radius by |x factor|; a negative x or y factor mirrors the
  // arc (start angle and sweep follow), so equal factors in x and y scale it exactly.
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  // A negative factor turns the arc by pi: the radius stays non-negative.
  void Scale(double factor) override;
  int Type() const override { return grkind::kArc; }
  bool AttributesEqual(const CGrElement& other) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;

  // IGrCurve
  CGrElement* CurveElement() override { return this; }
  const CGrElement* CurveElement() const override { return this; }
  IGrCurve* CloneCurve() const override { return static_cast<CGrArc*>(Clone()); }
  void ExtendCurveRect(CGrRect& rect) const override { rect.Extend(BoundingRect()); }
  void MoveCurve(const CKdVector& offset) override { Move(offset); }
  void RotateCurve(const CKdPoint& base, double angle_rad) override { Rotate(base, angle_rad); }
  void ScaleCurveAxes(double fx, double fy, double fz) override { ScaleAxes(fx, fy, fz); }
  void ScaleCurve(double factor) override { Scale(factor); }
  void SetCurveColor(const CGrColor& color) override { SetColor(color); }
  CKdPoint CurveStart() const override { return PointAtAngle(m_startAngle); }
  CKdPoint CurveEnd() const override { return PointAtAngle(m_startAngle + m_sweep); }
  IKdCurve* MakeKdCurve() const override;

protected:
  // The end points and every axis point the arc passes.
  void ExtendRect(CGrRect& rect) const override;

private:
  CKdPoint m_center;
  double m_radius = 0.0;
  double m_startAngle = 0.0;
  double m_sweep = 0.0;
};

// An arc as a polyline segment: everything of the arc, type code included (16, on purpose), so
// its JSON form reads back as a CGrArc.
class CGrLineArc : public CGrArc {
public:
  using CGrArc::CGrArc;
  CGrLineArc() = default;
  CGrLineArc(const CGrLineArc&) = default;
  ~CGrLineArc() override = default;

  CGrElement* Clone() const override;
};
