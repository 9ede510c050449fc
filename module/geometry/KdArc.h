// CKdArc: a circular arc in a horizontal plane: centre, radius, start angle and signed sweep.
#pragma once

#include "module/geometry/KdCurve.h"
#include "module/geometry/KdElement.h"
#include "module/geometry/KdPoint.h"

// Angles in radians counter-clockwise from +x; the sweep is positive counter-clockwise and
// negative clockwise. The point at angle a is centre + radius * (cos a, sin a, 0).
class CKdArc : public CKdElement, public IKdCurve {
public:
  // Centre at the origin, everything else zero (not a valid arc).
  CKdArc() = default;
  // A sweep above 2*pi becomes fmod(sweep, 2*pi); a negative sweep is kept as it is, whatever
  // its magnitude. The start angle becomes fmod(startAngle, 2*pi), so it keeps its sign.
  CKdArc(const CKdPoint& centre, double radius, double startAngle_rad, double sweep_rad);
  // The sweep from startAngle to endAngle in the given sense (kdgeo::SweepFromAngles; equal
  // angles give zero), then the same normalisation.
  CKdArc(const CKdPoint& centre, double radius, double startAngle_rad, double endAngle_rad,
         bool counterClockwise);
  CKdArc(const CKdArc&) = default;
  CKdArc& operator=(const CKdArc&) = default;
  ~CKdArc() override = default;

  // The arc's own virtual operations come first so that they follow the element's in the
  // primary vtable under both ABIs; their order is their slot order.
#if defined(_MSC_VER)
  virtual void SetCenter(const CKdPoint& centre);
  virtual void SetCenter(double x, double y, double z);
#else
  virtual void SetCenter(double x, double y, double z);
  virtual void SetCenter(const CKdPoint& centre);
#endif
  virtual void SetRadius(double radius);
  // Stores fmod(angle, 2*pi) unless the angle is within the tolerance of 2*pi.
  virtual void SetStartAngle(double angle_rad);
  // Stores fmod(sweep, 2*pi) unless the sweep is within the tolerance of 2*pi: exactly one
  // counter-clockwise full turn survives, and a negative sweep stays negative.
  virtual void SetSweep(double sweep_rad);
  // 1 makes the sweep counter-clockwise, -1 clockwise; any other value changes nothing.
  virtual void SetDirection(int direction);
  virtual CKdPoint Center() const;
  virtual double Radius() const;
  virtual double StartAngle() const;
  // start + sweep reduced like SetSweep reduces: a clockwise arc can give a negative angle.
  virtual double EndAngle() const;
  virtual bool IsCounterClockwise() const;
  // A zero sweep is neither clockwise nor counter-clockwise.
  virtual bool IsClockwise() const;
  // 1 for a positive sweep, -1 otherwise (a zero sweep included).
  virtual int Direction() const;
  virtual double Sweep() const;
  // The polyline bulge: tan(|sweep| / 4), negative for a clockwise arc.
  virtual double Bulge() const;
  // Centre x, y, z, radius, start angle and sweep each within the geometric tolerance.
  virtual bool IsEqual(const CKdArc& other) const;
  virtual bool IsNotEqual(const CKdArc& other) const;

  // CKdElement
  bool IsValid() const override;
  CKdElement* CloneElement() const override;
  void Translate(const CKdVector& offset) override;
  // The centre turns about `about`; the start angle becomes start + angle in [0, 2*pi).
  void Rotate(const CKdPoint& about, double angle_rad) override;
  // Needs a similarity of the xy plane that keeps horizontal planes horizontal; the start
  // angle comes back in [0, 2*pi), and a reflection reverses the sweep's sign.
  bool Transform(const CKdXform& xform) override;
  // Centre and radius scale; the angles stay.
  void Scale(double factor) override;
  void Write(std::wostream& out) const override;
  int GetType() const override;
  bool IsEqual(const CKdElement& other) const override;
  bool IsNotEqual(const CKdElement& other) const override;

  // IKdCurve
  CKdPoint Eval(double t) const override;
  CKdPoint StartPoint() const override;
  CKdPoint EndPoint() const override;
  CKdVector StartTangent() const override;
  CKdVector EndTangent() const override;
  using IKdCurve::Length;
  // |sweep| * radius.
  double Length() const override;
  // Start angle = start + sweep brought into [0, 2*pi); the sweep changes sign.
  void Reverse() override;
  double ClosestParam(const CKdPoint& p) const override;
  IKdCurve* Clone() const override;
  // The radial direction at t turned by +pi/2 for a positive sweep and by -pi/2 otherwise.
  CKdVector Tangent(double t) const override;
  double ParamAtLength(double distance_units) const override;
  // Centre y, start angle and sweep change sign.
  void MirrorX() override;
  // Centre x and sweep change sign; the start angle becomes pi - start.
  void MirrorY() override;

  // The point at angle_rad on the arc's circle.
  CKdPoint PointAtAngle(double angle_rad) const;

private:
  CKdPoint m_center;
  double m_radius = 0.0;
  double m_startAngle = 0.0;
  double m_sweep = 0.0;
};
