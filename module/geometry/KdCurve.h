// IKdCurve: the curve interface, second base of every curve (after CKdElement).
#pragma once

#include <iosfwd>

#include "module/geometry/KdPoint.h"
#include "module/geometry/KdVector.h"

class CKdElement;
class CKdXform;

// A curve is traversed by a parameter t from 0 at its start to 1 at its end. The virtual
// operations keep this declaration order: it is their slot order.
class IKdCurve {
public:
  virtual ~IKdCurve() = default;
  virtual CKdPoint Eval(double t) const = 0;
  virtual CKdPoint StartPoint() const = 0;
  virtual CKdPoint EndPoint() const = 0;
  virtual CKdVector StartTangent() const = 0;
  // The tangent at t = 1.
  virtual CKdVector EndTangent() const = 0;
#if defined(_MSC_VER)
  // Microsoft's ABI lays overloads out in reverse order of declaration.
  virtual double Length(double /*tolerance_units*/) const { return Length(); }
  virtual double Length() const = 0;
#else
  virtual double Length() const = 0;
  // For curves whose length is approximated; the exact curves of the kit ignore the tolerance.
  // It has no default argument: with one, a plain Length() call would be ambiguous.
  virtual double Length(double /*tolerance_units*/) const { return Length(); }
#endif
  // Reverses the direction of travel; the set of points stays.
  virtual void Reverse() = 0;
  // Parameter in [0, 1] of the curve point nearest to p (in the xy plane for arcs).
  virtual double ClosestParam(const CKdPoint& p) const = 0;
  // A new heap copy; the caller owns it.
  virtual IKdCurve* Clone() const = 0;
  // These four are met by the element's operations of the same name.
  virtual void Translate(const CKdVector& offset) = 0;
  virtual void Rotate(const CKdPoint& about, double angle_rad) = 0;
  virtual bool Transform(const CKdXform& xform) = 0;
  virtual void Scale(double factor) = 0;
  virtual void Write(std::wostream& out) const = 0;
  virtual bool IsEqual(const CKdElement& other) const = 0;
  virtual bool IsNotEqual(const CKdElement& other) const = 0;
  // Unit vector along the direction of travel at t; zero for a curve collapsed to a point.
  virtual CKdVector Tangent(double t) const = 0;
  // Parameter of the point at distance_units along the curve from its start, clamped to
  // [0, 1]; 0 for a curve of zero length.
  virtual double ParamAtLength(double distance_units) const = 0;
  virtual CKdPoint PointAt(double t) const { return Eval(t); }
  virtual CKdVector DirectionAt(double t) const { return Tangent(t); }
  // The tangent turned by +pi/2 in the xy plane: to the left of the direction of travel.
  virtual CKdVector NormalAt(double t) const { return DirectionAt(t).PerpendicularXY(); }
  // Mirror in the x axis (y changes sign).
  virtual void MirrorX() = 0;
  // Mirror in the y axis (x changes sign).
  virtual void MirrorY() = 0;

protected:
  IKdCurve() = default;
  IKdCurve(const IKdCurve&) = default;
  IKdCurve& operator=(const IKdCurve&) = default;
};
