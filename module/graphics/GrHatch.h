// CGrHatch: an area bounded by owned border elements.
#pragma once

#include <string>

#include "module/graphics/GrElement.h"
#include "module/graphics/GrElementVector.h"

// Moves, rotations and scales go to every border in order; then the hatch is modified and its
// rectangle (the union of the borders') stale.
// The pattern name is the drawing side's choice of fill: not part of the JSON form nor of
// AttributesEqual.
class CGrHatch : public CGrElement {
public:
  explicit CGrHatch(const std::wstring& pattern = std::wstring()) : m_pattern(pattern) {}
  CGrHatch(const CGrHatch&) = default;
  ~CGrHatch() override;

  const std::wstring& Pattern() const { return m_pattern; }
  void SetPattern(const std::wstring& pattern);
  const CGrElementVector& Borders() const { return m_borders; }

  // CGrElement
  CGrElement* Clone() const override;
  // No primitive in the geometry kit: null.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  void Rotate(const CKdPoint& base, double angle_rad) override;
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kHatch; }
  bool AttributesEqual(const CGrElement& other) const override;
  // The borders' pieces, in order.
  void BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad = std::nullopt) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;
  CGrElement* FindByTag(const std::wstring& tag) override;
  CGrElement* CloneByTag(const std::wstring& tag) const override;

  // Appends a border element and takes ownership; null is ignored.
  virtual void AddBorder(CGrElement* border);

protected:
  void ExtendRect(CGrRect& rect) const override;

private:
  std::wstring m_pattern;
  CGrElementVector m_borders;
};
