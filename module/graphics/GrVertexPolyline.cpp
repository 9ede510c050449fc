#include "module/graphics/GrVertexPolyline.h"

#include <memory>

#include "module/geometry/KdPolyline.h"
#include "module/graphics/GrElementVector.h"
#include "module/graphics/GrLine.h"

void CGrVertexPolyline::SetClosed(bool closed) {
  m_closed = closed;
  MarkChanged();
}

void CGrVertexPolyline::AddVertex(const CKdPoint& vertex) {
  m_vertices.push_back(vertex);
  MarkChanged();
}

void CGrVertexPolyline::ClearVertices() {
  m_vertices.clear();
  MarkChanged();
}

CGrElement* CGrVertexPolyline::Clone() const { return new CGrVertexPolyline(*this); }

CKdElement* CGrVertexPolyline::MakeGeometry() const { return new CKdPolyline(m_vertices, {}, m_closed); }

void CGrVertexPolyline::Move(const CKdVector& offset) {
  for (auto& vertex : m_vertices) vertex += offset;
  MarkChanged();
}

void CGrVertexPolyline::Rotate(const CKdPoint& base, double angle_rad) {
  for (auto& vertex : m_vertices) vertex = vertex.RotatedXY(base, angle_rad);
  MarkChanged();
}

void CGrVertexPolyline::ScaleAxes(double fx, double fy, double fz) {
  for (auto& vertex : m_vertices) vertex = grgeo::ScaledAxes(vertex, fx, fy, fz);
  MarkChanged();
}

void CGrVertexPolyline::Scale(double factor) {
  for (auto& vertex : m_vertices) vertex = grgeo::Scaled(vertex, factor);
  MarkChanged();
}

bool CGrVertexPolyline::AttributesEqual(const CGrElement& other) const {
  const CGrVertexPolyline* polyline = SameKind(*this, other);
  if (polyline == nullptr || !CGrElement::AttributesEqual(other) || m_closed != polyline->m_closed ||
      m_vertices.size() != polyline->m_vertices.size()) {
    return false;
  }
  for (std::size_t i = 0; i < m_vertices.size(); ++i) {
    if (!grgeo::IsEqual(m_vertices[i], polyline->m_vertices[i])) return false;
  }
  return true;
}

void CGrVertexPolyline::BreakIntoCurves(CGrElementVector& pieces, std::optional<double> /*startAngle_rad*/) const {
  const std::size_t count = m_vertices.size();
  const std::size_t segments = count < 2 ? 0 : (m_closed ? count : count - 1);
  for (std::size_t i = 0; i < segments; ++i) {
    auto line = std::make_unique<CGrLine>(m_vertices[i], m_vertices[(i + 1) % count]);
    CopyDisplayAttributesTo(*line);
    pieces.Add(std::move(line));
  }
}

void CGrVertexPolyline::ExtendRect(CGrRect& rect) const {
  for (const auto& vertex : m_vertices) rect.Extend(vertex);
}
