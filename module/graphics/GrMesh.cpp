#include "module/graphics/GrMesh.h"

#include <utility>

void CGrMesh::SetVertices(std::vector<CKdPoint> vertices) {
  m_vertices = std::move(vertices);
  MarkChanged();
}

void CGrMesh::SetFaces(std::vector<Face> faces) {
  m_faces = std::move(faces);
  MarkChanged();
}

void CGrMesh::SetFaceIndices(const std::vector<std::int32_t>& indices) {
  std::vector<Face> faces;
  faces.reserve(indices.size() / 3);
  for (std::size_t i = 0; i + 3 <= indices.size(); i += 3) faces.push_back({indices[i], indices[i + 1], indices[i + 2]});
  SetFaces(std::move(faces));
}

void CGrMesh::SetMaterials(std::vector<CGrMeshMaterial> materials) {
  m_materials = std::move(materials);
  SetModified(true);
}

CGrElement* CGrMesh::Clone() const { return new CGrMesh(*this); }
CKdElement* CGrMesh::MakeGeometry() const { return nullptr; }

void CGrMesh::Move(const CKdVector& offset) {
  for (auto& vertex : m_vertices) vertex += offset;
  MarkChanged();
}

void CGrMesh::Rotate(const CKdPoint& base, double angle_rad) {
  for (auto& vertex : m_vertices) vertex = vertex.RotatedXY(base, angle_rad);
  MarkChanged();
}

void CGrMesh::ScaleAxes(double fx, double fy, double fz) {
  for (auto& vertex : m_vertices) vertex = grgeo::ScaledAxes(vertex, fx, fy, fz);
  MarkChanged();
}

void CGrMesh::Scale(double factor) {
  for (auto& vertex : m_vertices) vertex = grgeo::Scaled(vertex, factor);
  MarkChanged();
}

bool CGrMesh::AttributesEqual(const CGrElement& other) const {
  const CGrMesh* mesh = SameKind(*this, other);
  if (mesh == nullptr || !CGrElement::AttributesEqual(other) || m_vertices.size() != mesh->m_vertices.size() ||
      m_faces != mesh->m_faces || m_materials.size() != mesh->m_materials.size()) {
    return false;
  }
  for (std::size_t i = 0; i < m_vertices.size(); ++i) {
    if (!grgeo::IsEqual(m_vertices[i], mesh->m_vertices[i])) return false;
  }
  for (std::size_t i = 0; i < m_materials.size(); ++i) {
    const CGrMeshMaterial& a = m_materials[i];
    const CGrMeshMaterial& b = mesh->m_materials[i];
    if (a.name != b.name || a.color != b.color || !grgeo::IsEqual(a.transparency, b.transparency)) return false;
  }
  return true;
}

void CGrMesh::ExtendRect(CGrRect& rect) const {
  for (const auto& vertex : m_vertices) rect.Extend(vertex);
}
