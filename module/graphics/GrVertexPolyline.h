// CGrVertexPolyline: a polyline of straight segments through a list of vertex points.
#pragma once

#include <vector>

#include "module/geometry/KdPoint.h"
#include "module/graphics/GrElement.h"

class CGrVertexPolyline : public CGrElement {
public:
  CGrVertexPolyline() = default;
  CGrVertexPolyline(std::vector<CKdPoint> vertices, bool closed) : m_vertices(std::move(vertices)), m_closed(closed) {}
  CGrVertexPolyline(const CGrVertexPolyline&) = default;
  ~CGrVertexPolyline() override = default;

  bool IsClosed() const { return m_closed; }
  void SetClosed(bool closed);
  const std::vector<CKdPoint>& Vertices() const { return m_vertices; }
  void AddVertex(const CKdPoint& vertex);
  void ClearVertices();

  // CGrElement
  CGrElement* Clone() const override;
  // A CKdPolyline of straight segments.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  void Rotate(const CKdPoint& base, double angle_rad) override;
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kVertexPolyline; }
  bool AttributesEqual(const CGrElement& other) const override;
  // One CGrLine per segment (the closing one included), with the polyline's colour, layer and
  // line type.
  void BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad = std::nullopt) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;

protected:
  void ExtendRect(CGrRect& rect) const override;

private:
  std::vector<CKdPoint> m_vertices;
  bool m_closed = false;
};
