// CKdCircle: a full circle in a horizontal plane.
#pragma once

#include "module/geometry/KdArc.h"
#include "module/geometry/KdElement.h"
#include "module/geometry/KdPoint.h"

class CKdPolyline;

class CKdCircle : public CKdElement {
public:
  CKdCircle() = default;
  CKdCircle(const CKdPoint& centre, double radius) : m_center(centre), m_radius(radius) {}
  CKdCircle(const CKdCircle&) = default;
  CKdCircle& operator=(const CKdCircle&) = default;
  ~CKdCircle() override = default;

  virtual void SetCenter(const CKdPoint& centre);
  virtual void SetRadius(double radius);
  virtual CKdPoint Center() const;
  virtual double Radius() const;
  // Centre and radius within the geometric tolerance.
  virtual bool IsEqual(const CKdCircle& other) const;

  double Area() const;
  double Circumference() const;
  CKdPoint PointAtAngle(double angle_rad) const;
  // The counter-clockwise full turn starting at angle 0.
  CKdArc ToArc() const;
  // A closed polyline of two counter-clockwise half-circle arcs starting at angle 0.
  CKdPolyline ToPolyline() const;

  // CKdElement
  bool IsValid() const override;
  CKdElement* CloneElement() const override;
  void Translate(const CKdVector& offset) override;
  void Rotate(const CKdPoint& about, double angle_rad) override;
  // Needs a similarity of the xy plane that keeps horizontal planes horizontal.
  bool Transform(const CKdXform& xform) override;
  void Scale(double factor) override;
  void Write(std::wostream& out) const override;
  int GetType() const override;
  bool IsEqual(const CKdElement& other) const override;

private:
  CKdPoint m_center;
  double m_radius = 0.0;
};
