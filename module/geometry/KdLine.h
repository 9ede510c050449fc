// CKdLine: a straight segment from a start point to an end point.
#pragma once

#include "module/geometry/KdCurve.h"
#include "module/geometry/KdElement.h"
#include "module/geometry/KdPoint.h"

class CKdLine : public CKdElement, public IKdCurve {
public:
  CKdLine() = default;
  CKdLine(const CKdPoint& start, const CKdPoint& end) : m_start(start), m_end(end) {}
  CKdLine(const CKdLine&) = default;
  CKdLine& operator=(const CKdLine&) = default;
  ~CKdLine() override = default;

  virtual void SetStart(const CKdPoint& start);
  virtual void SetEnd(const CKdPoint& end);
  // Both ends within the geometric tolerance.
  virtual bool IsEqual(const CKdLine& other) const;

  // CKdElement
  int GetClassConstant() const override;
  bool IsValid() const override;
  CKdElement* CloneElement() const override;
  void Translate(const CKdVector& offset) override;
  void Rotate(const CKdPoint& about, double angle_rad) override;
  // Any affine transform keeps a line a line.
  bool Transform(const CKdXform& xform) override;
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
  double Length() const override;
  void Reverse() override;
  double ClosestParam(const CKdPoint& p) const override;
  IKdCurve* Clone() const override;
  CKdVector Tangent(double t) const override;
  double ParamAtLength(double distance_units) const override;
  void MirrorX() override;
  void MirrorY() override;

private:
  CKdPoint m_start;
  CKdPoint m_end;
};
