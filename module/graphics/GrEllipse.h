// CGrEllipse: an elliptical arc given by its centre and two axis vectors.
#pragma once

#include "module/geometry/KdPoint.h"
#include "module/geometry/KdVector.h"
#include "module/graphics/GrElement.h"

// The point at parameter t is centre + majorAxis * cos t + minorAxis * sin t, for t from the
// start angle to the end angle counter-clockwise; equal angles give the whole ellipse. The form
// holds under any affine map, so scaling per axis stays exact (the axes then need not stay
// perpendicular).
class CGrEllipse : public CGrElement {
public:
  CGrEllipse() = default;
  CGrEllipse(const CKdPoint& centre, const CKdVector& minorAxis, const CKdVector& majorAxis, double startAngle_rad,
             double endAngle_rad)
      : m_center(centre), m_minorAxis(minorAxis), m_majorAxis(majorAxis), m_startAngle(startAngle_rad),
        m_endAngle(endAngle_rad) {}
  CGrEllipse(const CGrEllipse&) = default;
  ~CGrEllipse() override = default;

  const CKdPoint& Center() const { return m_center; }
  const CKdVector& MinorAxis() const { return m_minorAxis; }
  const CKdVector& MajorAxis() const { return m_majorAxis; }
  double StartAngle() const { return m_startAngle; }
  double EndAngle() const { return m_endAngle; }
  void SetCenter(const CKdPoint& centre);
  void SetAxes(const CKdVector& minorAxis, const CKdVector& majorAxis);
  void SetAngles(double startAngle_rad, double endAngle_rad);
  CKdPoint PointAt(double t_rad) const;

  // CGrElement
  CGrElement* Clone() const override;
  // No primitive in the geometry kit: null.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  // The centre turns about the base, the axes turn with it.
  void Rotate(const CKdPoint& base, double angle_rad) override;
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kEllipse; }
  bool AttributesEqual(const CGrElement& other) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;

protected:
  // The end points and every extreme in x, y and z that the arc passes.
  void ExtendRect(CGrRect& rect) const override;

private:
  CKdPoint m_center;
  CKdVector m_minorAxis;
  CKdVector m_majorAxis{1.0, 0.0, 0.0};
  double m_startAngle = 0.0;
  double m_endAngle = 0.0;
};
