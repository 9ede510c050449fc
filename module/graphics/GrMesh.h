// CGrMesh: a triangle mesh (vertex points and faces of three vertex indices) with materials.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "module/geometry/KdPoint.h"
#include "module/graphics/GrColor.h"
#include "module/graphics/GrElement.h"

struct CGrMeshMaterial {
  static constexpr const wchar_t* kDefaultName = L"Ostrevan Default Material";

  std::wstring name = kDefaultName;
  CGrColor color;
  double transparency = 0.0;

  friend bool operator==(const CGrMeshMaterial&, const CGrMeshMaterial&) = default;
};

class CGrMesh : public CGrElement {
public:
  using Face = std::array<std::int32_t, 3>;

  CGrMesh() = default;
  CGrMesh(const CGrMesh&) = default;
  ~CGrMesh() override = default;

  const std::vector<CKdPoint>& Vertices() const { return m_vertices; }
  // Vertex indices as given: they are not checked against the vertex count.
  const std::vector<Face>& Faces() const { return m_faces; }
  const std::vector<CGrMeshMaterial>& Materials() const { return m_materials; }
  void SetVertices(std::vector<CKdPoint> vertices);
  void SetFaces(std::vector<Face> faces);
  // Three indices per face, in order; a trailing one or two are ignored.
  void SetFaceIndices(const std::vector<std::int32_t>& indices);
  void SetMaterials(std::vector<CGrMeshMaterial> materials);

  // CGrElement
  CGrElement* Clone() const override;
  // No primitive in the geometry kit: null.
  CKdElement* MakeGeometry() const override;
  void Move(const CKdVector& offset) override;
  void Rotate(const CKdPoint& base, double angle_rad) override;
  void ScaleAxes(double factorX, double factorY, double factorZ) override;
  void Scale(double factor) override;
  int Type() const override { return grkind::kMesh; }
  // Vertices within the tolerance, faces and materials equal (transparencies within the
  // tolerance).
  bool AttributesEqual(const CGrElement& other) const override;
  void WriteJson(GrJson::Value& object) const override;
  void ReadJson(const GrJson::Value& object) override;

protected:
  void ExtendRect(CGrRect& rect) const override;

private:
  std::vector<CKdPoint> m_vertices;
  std::vector<Face> m_faces;
  std::vector<CGrMeshMaterial> m_materials;
};
