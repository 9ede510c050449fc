#include "module/acad/GrAcadFaceDc.h"

#include <cstdint>
#include <limits>
#include <vector>

#include "module/acad/GrAcadCurveDc.h"
#include "module/graphics/GrFace.h"
#include "module/graphics/GrMesh.h"
#include "platform/acad/dbents.h"

namespace {

template <class Face>
Acad::ErrorStatus SetCorners(const Face& face, AcDbFace& entity) {
  for (Adesk::UInt16 i = 0; i < 4; ++i) {
    const std::size_t corner = i < Face::kCorners ? i : Face::kCorners - 1;
    if (Acad::ErrorStatus es = entity.setVertexAt(i, gracad::ToAcad(face.Corner(corner))); es != Acad::eOk) return es;
  }
  return Acad::eOk;
}

CKdPoint Corner(const AcDbFace& face, Adesk::UInt16 index) {
  AcGePoint3d p;
  face.getVertexAt(index, p);
  return gracad::FromAcad(p);
}

}  // namespace

AcDbEntity* CGrAcadRectangleFaceDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrRectangleFace, AcDbFace>(element, SetCorners<CGrRectangleFace>);
}

CGrElement* CGrAcadRectangleFaceDc::MakeElement(AcDbObject* object) {
  const AcDbFace* face = AcDbFace::cast(object);
  if (face == nullptr) return nullptr;
  auto* element = new CGrRectangleFace(Corner(*face, 0), Corner(*face, 1), Corner(*face, 2), Corner(*face, 3));
  ReadCommonProperties(face, element);
  return element;
}

AcDbEntity* CGrAcadTriangleFaceDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrTriangleFace, AcDbFace>(element, SetCorners<CGrTriangleFace>);
}

CGrElement* CGrAcadTriangleFaceDc::MakeElement(AcDbObject* object) {
  const AcDbFace* face = AcDbFace::cast(object);
  if (face == nullptr) return nullptr;
  auto* element = new CGrTriangleFace(Corner(*face, 0), Corner(*face, 1), Corner(*face, 2));
  ReadCommonProperties(face, element);
  return element;
}

AcDbEntity* CGrAcadMeshDc::MakeEntity(CGrElement* element) {
  auto* mesh = dynamic_cast<CGrMesh*>(element);
  if (mesh == nullptr) return nullptr;
  AcDbEntity* unchanged = nullptr;
  if (!OpenUnchanged(element, AcDbPolyFaceMesh::desc(), unchanged)) return nullptr;
  if (unchanged != nullptr) return unchanged;
  const std::size_t count = mesh->Vertices().size();
  if (count == 0 || count > static_cast<std::size_t>(std::numeric_limits<Adesk::Int16>::max())) return nullptr;
  auto* entity = new AcDbPolyFaceMesh;
  Acad::ErrorStatus es = Acad::eOk;
  for (const CKdPoint& p : mesh->Vertices()) {
    if (es == Acad::eOk) es = entity->appendVertex(new AcDbPolyFaceMeshVertex(gracad::ToAcad(p)));
  }
  for (const CGrMesh::Face& face : mesh->Faces()) {
    if (es != Acad::eOk) break;
    for (std::int32_t index : face) {
      if (index < 0 || static_cast<std::size_t>(index) >= count) es = Acad::eInvalidFaceVertexIndex;
    }
    if (es == Acad::eOk) {
      es = entity->appendFaceRecord(new AcDbFaceRecord(static_cast<Adesk::Int16>(face[0] + 1),
                                                       static_cast<Adesk::Int16>(face[1] + 1),
                                                       static_cast<Adesk::Int16>(face[2] + 1), 0));
    }
  }
  if (es != Acad::eOk || ApplyCommonProperties(element, entity) != gracad::kOk ||
      (element->SessionId() != 0 && RetireOld(element) != gracad::kOk)) {
    delete entity;
    return nullptr;
  }
  return entity;
}

CGrElement* CGrAcadMeshDc::MakeElement(AcDbObject* object) {
  const AcDbPolyFaceMesh* entity = AcDbPolyFaceMesh::cast(object);
  if (entity == nullptr) return nullptr;
  std::vector<CKdPoint> vertices;
  std::vector<CGrMesh::Face> faces;
  if (AcDbObjectIterator* it = entity->vertexIterator()) {
    for (; !it->done(); it->step()) {
      AcDbObject* part = nullptr;
      if (acdbOpenAcDbObject(part, it->objectId(), AcDb::kForRead) != Acad::eOk) continue;
      if (const auto* vertex = AcDbPolyFaceMeshVertex::cast(part)) {
        vertices.push_back(gracad::FromAcad(vertex->position()));
      } else if (const auto* record = AcDbFaceRecord::cast(part)) {
        Adesk::Int16 index[4] = {0, 0, 0, 0};
        for (Adesk::UInt16 k = 0; k < 4; ++k) record->getVertexAt(k, index[k]);
        faces.push_back({index[0] - 1, index[1] - 1, index[2] - 1});
        if (index[3] > 0) faces.push_back({index[0] - 1, index[2] - 1, index[3] - 1});
      }
      part->close();
    }
    delete it;
  }
  auto* mesh = new CGrMesh;
  mesh->SetVertices(std::move(vertices));
  mesh->SetFaces(std::move(faces));
  ReadCommonProperties(entity, mesh);
  return mesh;
}
