// CGrGroup: a named set of owned elements.
#pragma once

#include <string>

#include "module/graphics/GrElement.h"
#include "module/graphics/GrElementVector.h"

// Moves, rotations and scales go to every child in order; then the group is modified and its
// rectangle (the union of the children's) stale.
class CGrGroup : public CGrElement {
public:
  explicit CGrGroup(const std::wstring& name = std::wstring()) : m_name(name) {}
  CGrGroup(const CGrGroup&) = default;
  ~CGrGroup() override;

  const std::wstring& Name() const { return m_name; }
  void SetName(const std::wstring& name);
  const CGrElementVector& Elements() const { return m_elements; }

  // CGrElement
  CGrElement* Clone() const override;
  // No primitive in the geometry kit: null.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  void Rotate(const CKdPoint& base, double angle_rad) override;
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kGroup; }
  bool AttributesEqual(const CGrElement& other) const override;
  // The children's pieces, in order.
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
  std::wstring m_name;
  CGrElementVector m_elements;
};
