// CGrPolyline: an ordered chain of owned curves (lines and arcs), open or closed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "module/graphics/GrCurve.h"
#include "module/graphics/GrElement.h"

class CGrPolyline : public CGrElement {
public:
  CGrPolyline() = default;
  // Deep: every curve is cloned.
  CGrPolyline(const CGrPolyline& other);
  ~CGrPolyline() override;

  bool IsClosed() const { return m_closed; }
  void SetClosed(bool closed);
  // Which polyline entity the drawing side makes; not part of the JSON form.
  std::int32_t PolylineType() const { return m_polylineType; }
  void SetPolylineType(std::int32_t type);
  std::size_t CurveCount() const { return m_curves.size(); }
  // Null past the end. Changing a curve through it leaves the polyline's cached rectangle as it
  // is: only the polyline's own operations mark it stale.
  IGrCurve* Curve(std::size_t index);
  const IGrCurve* Curve(std::size_t index) const;

  // CGrElement
  CGrElement* Clone() const override;
  // A CKdPolyline through the curves' start points with their bulges; a gap between two curves
  // becomes a straight segment.
  CKdElement* MakeGeometry() const override;
  // The operation goes to every curve in order; then the polyline is modified and its
  // rectangle stale, also when it has no curves.
  void Move(const CKdVector& offset) override;
  void Rotate(const CKdPoint& base, double angle_rad) override;
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kPolyline; }
  // Closed flags equal and the curves pairwise equal, in order.
  bool AttributesEqual(const CGrElement& other) const override;
  // The colour goes to every curve as well.
  void SetColor(const CGrColor& color) override;
  // The stored rectangle unless it is stale or both its sides are under 0.001; otherwise it is
  // rebuilt from the curves' extents in order.
  const CGrRect& BoundingRect() const override;
  // A clone of every curve, in order.
  void BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad = std::nullopt) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;
  CGrElement* FindByTag(const std::wstring& tag) override;
  CGrElement* CloneByTag(const std::wstring& tag) const override;

  // Appends a curve and takes ownership; null is ignored.
  virtual void Add(IGrCurve* curve);

protected:
  void ExtendRect(CGrRect& rect) const override;

private:
  bool m_closed = false;
  std::int32_t m_polylineType = 0;
  std::vector<std::unique_ptr<IGrCurve>> m_curves;
};

namespace grgeo {

// Below this in both width and height, a polyline's or block's stored rectangle counts as
// degenerate and is recomputed on every request.
inline constexpr double kDegenerateRectSide = 0.001;

inline bool IsDegenerate(const CGrRect& rect) {
  return rect.Width() < kDegenerateRectSide && rect.Height() < kDegenerateRectSide;
}

}  // namespace grgeo
