// CGrElementBlock: child elements kept in their own coordinates, placed in the drawing by a
// position, a rotation and three scale factors.
#pragma once

#include <string>

#include "module/geometry/KdPoint.h"
#include "module/geometry/KdVector.h"
#include "module/graphics/GrElement.h"
#include "module/graphics/GrElementVector.h"

// A child placed in the drawing is scaled per axis, then turned by the rotation about the
// origin, then moved by the position. The placed copy of the children is cached with its own
// stale flag.
class CGrElementBlock : public CGrElement {
public:
  CGrElementBlock() = default;
  CGrElementBlock(const CGrElementBlock& other);
  ~CGrElementBlock() override;

  const CKdPoint& Position() const { return m_position; }
  double Rotation() const { return m_rotation; }
  const CKdVector& ScaleFactors() const { return m_scale; }
  const std::wstring& Label() const { return m_label; }
  void SetPosition(const CKdPoint& position);
  void SetRotation(double angle_rad);
  void SetScaleFactors(const CKdVector& factors);
  void SetLabel(const std::wstring& label);
  // The children in their own coordinates.
  const CGrElementVector& Elements() const { return m_elements; }
  // The children placed in drawing coordinates, rebuilt when stale.
  const CGrElementVector& PlacedElements() const;

  // CGrElement
  CGrElement* Clone() const override;
  // No primitive in the geometry kit: null.
  CKdElement* MakeGeometry() const override;
  // Does nothing when every component lies within the tolerance of 0; otherwise moves the
  // position. Either way the modified flag is left as it is (kept on purpose); the rectangle
  // and the placed copy go stale when it acts.
  void Move(const CKdVector& offset) override;
  // The position turns about the base and the rotation grows by the angle.
  void Rotate(const CKdPoint& base, double angle_rad) override;
  // Does nothing when every factor lies within the tolerance of 1; otherwise the position and
  // the scale factors are multiplied component by component. Leaves the modified flag as the
  // move does.
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  // Does nothing within the tolerance of 1; otherwise the position and all three scale factors
  // are multiplied by the factor. Leaves the modified flag as the move does.
  void Scale(double factor) override;
  int Type() const override { return grkind::kElementBlock; }
  // Position, rotation, scale factors, label and the children pairwise.
  bool AttributesEqual(const CGrElement& other) const override;
  // As the polyline's: recomputed when stale or degenerate, from a freshly rebuilt placed copy.
  const CGrRect& BoundingRect() const override;
  // The placed children's pieces, in order.
  void BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad = std::nullopt) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;
  CGrElement* FindByTag(const std::wstring& tag) override;
  CGrElement* CloneByTag(const std::wstring& tag) const override;

  // Appends a child and takes ownership; null is ignored.
  virtual void Add(CGrElement* element);

protected:
  void ExtendRect(CGrRect& rect) const override;

private:
  void MarkPlacementStale() const;
  void RebuildPlaced() const;

  CKdPoint m_position;
  double m_rotation = 0.0;
  CKdVector m_scale{1.0, 1.0, 1.0};
  std::wstring m_label;
  CGrElementVector m_elements;
  mutable CGrElementVector m_placed;
  mutable bool m_placedStale = true;
};
