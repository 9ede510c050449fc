// Vertices, sequence ends and polyface meshes: the parts complex entities are made of.
#include "headless/acad/ComplexVertices.h"

#include <cmath>

#include "headless/acad/ImpAccess.h"
#include "headless/acad/ImpDatabase.h"
#include "headless/acad/Pieces.h"
#include "headless/acad/RxDefine.h"

namespace headless {

Acad::ErrorStatus AddVertices(const AcDbObject& owner, AcDbImpComplexVertices& vertices) {
  AcDbStub* stub = AcDbImpDatabase::stubOf(&owner);
  if (stub == nullptr) return Acad::eNotInDatabase;
  for (AcDbVertex* vertex : vertices.pending) {
    AcDbObjectId id;
    const Acad::ErrorStatus es = stub->database->add(vertex, stub->objectId(), &id, true);
    if (es != Acad::eOk) return es;
    vertices.ids.append(id);
  }
  vertices.pending.clear();
  return stub->database->add(new AcDbSequenceEnd, stub->objectId(), &vertices.sequenceEnd, true);
}

Acad::ErrorStatus AppendVertex(AcDbEntity& owner, AcDbImpComplexVertices& vertices, AcDbVertex* vertex,
                               AcDbObjectId* objId) {
  if (objId != nullptr) objId->setNull();
  if (vertex == nullptr) return Acad::eNullObjectPointer;
  if (!vertex->objectId().isNull()) return Acad::eAlreadyInDb;
  AcDbStub* stub = AcDbImpDatabase::stubOf(&owner);
  if (stub == nullptr) {
    vertices.pending.push_back(vertex);
    return Acad::eOk;
  }
  if (!stub->writer) return Acad::eNotOpenForWrite;
  AcDbObjectId id;
  const Acad::ErrorStatus es = stub->database->add(vertex, stub->objectId(), &id);
  if (es != Acad::eOk) return es;
  vertices.ids.append(id);
  if (objId != nullptr) *objId = id;
  return Acad::eOk;
}

void EraseVertices(const AcDbImpComplexVertices& vertices, bool erasing) {
  for (const AcDbObjectId& id : vertices.ids)
    if (AcDbStub* stub = AcDbImpDatabase::lookup(id)) stub->erased = erasing;
  if (AcDbStub* stub = AcDbImpDatabase::lookup(vertices.sequenceEnd)) stub->erased = erasing;
}

std::vector<AcDbVertex*> WritableVertices(const AcDbImpComplexVertices& vertices) {
  std::vector<AcDbVertex*> out;
  for (const AcDbVertex* v : AcDbImpAccess::live(vertices)) out.push_back(const_cast<AcDbVertex*>(v));
  return out;
}

}  // namespace headless

std::vector<const AcDbVertex*> AcDbImpAccess::live(const AcDbImpComplexVertices& vertices) {
  std::vector<const AcDbVertex*> out;
  if (!vertices.pending.empty()) {
    out.assign(vertices.pending.begin(), vertices.pending.end());
    return out;
  }
  for (const AcDbObjectId& id : vertices.ids) {
    const AcDbStub* stub = AcDbImpDatabase::lookup(id);
    if (stub != nullptr && !stub->erased) out.push_back(static_cast<const AcDbVertex*>(stub->object.get()));
  }
  return out;
}

AcDbImpComplexVertices::AcDbImpComplexVertices(const AcDbImpComplexVertices& other) {
  for (const AcDbVertex* v : AcDbImpAccess::live(other)) pending.push_back(static_cast<AcDbVertex*>(v->clone()));
}

AcDbImpComplexVertices::~AcDbImpComplexVertices() {
  for (AcDbVertex* v : pending) delete v;
}

// --- Vertices -----------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbVertex, AcDbEntity, L"VERTEX")
AcDbVertex::AcDbVertex() = default;
AcDbVertex::AcDbVertex(const AcDbVertex& other) = default;
AcDbVertex::~AcDbVertex() = default;

KD_ACRX_DEFINE_MEMBERS(AcDb2dVertex, AcDbVertex, L"VERTEX")
AcDb2dVertex::AcDb2dVertex() = default;
AcDb2dVertex::AcDb2dVertex(const AcGePoint3d& position, double bulge, double startWidth, double endWidth, double)
    : m_position(position), m_bulge(bulge), m_startWidth(startWidth), m_endWidth(endWidth) {}
AcDb2dVertex::~AcDb2dVertex() = default;
Acad::ErrorStatus AcDb2dVertex::setPosition(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_position = pt;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dVertex::setBulge(double newVal) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_bulge = newVal;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dVertex::setStartWidth(double newVal) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_startWidth = newVal;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dVertex::setEndWidth(double newVal) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_endWidth = newVal;
  return Acad::eOk;
}
AcRxObject* AcDb2dVertex::clone() const { return new AcDb2dVertex(*this); }

KD_ACRX_DEFINE_MEMBERS(AcDb3dPolylineVertex, AcDbVertex, L"VERTEX")
AcDb3dPolylineVertex::AcDb3dPolylineVertex() = default;
AcDb3dPolylineVertex::AcDb3dPolylineVertex(const AcGePoint3d& pos) : m_position(pos) {}
AcDb3dPolylineVertex::~AcDb3dPolylineVertex() = default;
Acad::ErrorStatus AcDb3dPolylineVertex::setPosition(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_position = pt;
  return Acad::eOk;
}
AcRxObject* AcDb3dPolylineVertex::clone() const { return new AcDb3dPolylineVertex(*this); }

KD_ACRX_DEFINE_MEMBERS(AcDbPolyFaceMeshVertex, AcDbVertex, L"VERTEX")
AcDbPolyFaceMeshVertex::AcDbPolyFaceMeshVertex() = default;
AcDbPolyFaceMeshVertex::AcDbPolyFaceMeshVertex(const AcGePoint3d& pos) : m_position(pos) {}
AcDbPolyFaceMeshVertex::~AcDbPolyFaceMeshVertex() = default;
Acad::ErrorStatus AcDbPolyFaceMeshVertex::setPosition(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_position = pt;
  return Acad::eOk;
}
AcRxObject* AcDbPolyFaceMeshVertex::clone() const { return new AcDbPolyFaceMeshVertex(*this); }

KD_ACRX_DEFINE_MEMBERS(AcDbFaceRecord, AcDbVertex, L"VERTEX")
AcDbFaceRecord::AcDbFaceRecord() = default;
AcDbFaceRecord::AcDbFaceRecord(Adesk::Int16 vtx0, Adesk::Int16 vtx1, Adesk::Int16 vtx2, Adesk::Int16 vtx3)
    : m_vertices{vtx0, vtx1, vtx2, vtx3} {}
AcDbFaceRecord::~AcDbFaceRecord() = default;
Acad::ErrorStatus AcDbFaceRecord::getVertexAt(Adesk::UInt16 faceIdx, Adesk::Int16& vtxIdx) const {
  if (faceIdx > 3) return Acad::eInvalidIndex;
  vtxIdx = static_cast<Adesk::Int16>(std::abs(m_vertices[faceIdx]));
  return Acad::eOk;
}
Acad::ErrorStatus AcDbFaceRecord::setVertexAt(Adesk::UInt16 faceIdx, Adesk::Int16 vtxIdx) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (faceIdx > 3) return Acad::eInvalidIndex;
  m_vertices[faceIdx] = vtxIdx;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbFaceRecord::isEdgeVisibleAt(Adesk::UInt16 faceIndex, Adesk::Boolean& visible) const {
  if (faceIndex > 3) return Acad::eInvalidIndex;
  visible = m_vertices[faceIndex] >= 0;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbFaceRecord::makeEdgeVisibleAt(Adesk::UInt16 faceIndex) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (faceIndex > 3) return Acad::eInvalidIndex;
  m_vertices[faceIndex] = static_cast<Adesk::Int16>(std::abs(m_vertices[faceIndex]));
  return Acad::eOk;
}
Acad::ErrorStatus AcDbFaceRecord::makeEdgeInvisibleAt(Adesk::UInt16 faceIndex) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (faceIndex > 3) return Acad::eInvalidIndex;
  m_vertices[faceIndex] = static_cast<Adesk::Int16>(-std::abs(m_vertices[faceIndex]));
  return Acad::eOk;
}
AcRxObject* AcDbFaceRecord::clone() const { return new AcDbFaceRecord(*this); }

KD_ACRX_DEFINE_MEMBERS(AcDbSequenceEnd, AcDbEntity, L"SEQEND")
AcDbSequenceEnd::AcDbSequenceEnd() = default;
AcDbSequenceEnd::~AcDbSequenceEnd() = default;
AcRxObject* AcDbSequenceEnd::clone() const { return new AcDbSequenceEnd(*this); }

// --- Polyface mesh ------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbPolyFaceMesh, AcDbEntity, L"POLYLINE")

AcDbPolyFaceMesh::AcDbPolyFaceMesh() = default;
AcDbPolyFaceMesh::~AcDbPolyFaceMesh() = default;

Acad::ErrorStatus AcDbPolyFaceMesh::appendSubentity(AcDbObjectId* objId, AcDbVertex* pVertex) {
  if (objId != nullptr) objId->setNull();
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (pVertex == nullptr) return Acad::eNullObjectPointer;
  if (auto* face = AcDbFaceRecord::cast(pVertex)) {
    const Adesk::Int16 count = numVertices();
    for (Adesk::UInt16 i = 0; i < 4; ++i) {
      Adesk::Int16 index = 0;
      face->getVertexAt(i, index);
      if (index > count || (index == 0 && i < 3)) return Acad::eInvalidFaceVertexIndex;
    }
  } else if (numFaces() > 0) {
    return Acad::eVertexAfterFace;
  }
  return headless::AppendVertex(*this, m_vertices, pVertex, objId);
}

Acad::ErrorStatus AcDbPolyFaceMesh::appendVertex(AcDbPolyFaceMeshVertex* pVertex) {
  return appendSubentity(nullptr, pVertex);
}
Acad::ErrorStatus AcDbPolyFaceMesh::appendVertex(AcDbObjectId& objId, AcDbPolyFaceMeshVertex* pVertex) {
  return appendSubentity(&objId, pVertex);
}
Acad::ErrorStatus AcDbPolyFaceMesh::appendFaceRecord(AcDbFaceRecord* pFaceRec) {
  return appendSubentity(nullptr, pFaceRec);
}
Acad::ErrorStatus AcDbPolyFaceMesh::appendFaceRecord(AcDbObjectId& objId, AcDbFaceRecord* pFaceRec) {
  return appendSubentity(&objId, pFaceRec);
}

Adesk::Int16 AcDbPolyFaceMesh::numVertices() const {
  Adesk::Int16 n = 0;
  for (const AcDbVertex* v : AcDbImpAccess::live(m_vertices))
    if (AcDbPolyFaceMeshVertex::cast(v)) ++n;
  return n;
}

Adesk::Int16 AcDbPolyFaceMesh::numFaces() const {
  Adesk::Int16 n = 0;
  for (const AcDbVertex* v : AcDbImpAccess::live(m_vertices))
    if (AcDbFaceRecord::cast(v)) ++n;
  return n;
}

AcDbObjectIterator* AcDbPolyFaceMesh::vertexIterator() const {
  if (objectId().isNull()) return nullptr;
  return AcDbImpDatabase::newObjectIterator(m_vertices.ids);
}

Acad::ErrorStatus AcDbPolyFaceMesh::getGeomExtents(AcDbExtents& extents) const {
  return headless::geom::ExtentsOf(*this, extents);
}

Acad::ErrorStatus AcDbPolyFaceMesh::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  for (AcDbVertex* v : headless::WritableVertices(m_vertices)) {
    if (auto* mv = AcDbPolyFaceMeshVertex::cast(v)) {
      AcGePoint3d p = mv->position();
      AcDbImpAccess::setPositionQuietly(*mv, p.transformBy(xform));
    }
  }
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyFaceMesh::explode(AcDbVoidPtrArray& entitySet) const {
  std::vector<AcGePoint3d> points;
  std::vector<const AcDbFaceRecord*> faces;
  for (const AcDbVertex* v : AcDbImpAccess::live(m_vertices)) {
    if (auto* mv = AcDbPolyFaceMeshVertex::cast(v)) points.push_back(mv->position());
    if (auto* f = AcDbFaceRecord::cast(v)) faces.push_back(f);
  }
  if (faces.empty()) return Acad::eNotApplicable;
  for (const AcDbFaceRecord* f : faces) {
    AcGePoint3d corners[4];
    Adesk::Boolean visible[4] = {true, true, true, true};
    int used = 0;
    for (Adesk::UInt16 i = 0; i < 4; ++i) {
      Adesk::Int16 index = 0;
      f->getVertexAt(i, index);
      f->isEdgeVisibleAt(i, visible[i]);
      if (index > 0 && index <= static_cast<Adesk::Int16>(points.size()))
        corners[used++] = points[static_cast<size_t>(index - 1)];
    }
    if (used < 3) continue;
    if (used == 3) corners[3] = corners[2];
    auto* face = new AcDbFace(corners[0], corners[1], corners[2], corners[3], visible[0], visible[1], visible[2],
                              visible[3]);
    headless::CopyEntityProperties(*this, face);
    entitySet.append(static_cast<AcRxObject*>(face));
  }
  return Acad::eOk;
}

AcRxObject* AcDbPolyFaceMesh::clone() const { return new AcDbPolyFaceMesh(*this); }
Acad::ErrorStatus AcDbPolyFaceMesh::addOwnedObjects() { return headless::AddVertices(*this, m_vertices); }
Acad::ErrorStatus AcDbPolyFaceMesh::subErase(Adesk::Boolean erasing) {
  headless::EraseVertices(m_vertices, erasing);
  return Acad::eOk;
}
