// What headless code reads of entities beyond their ObjectARX members: the vertices of complex
// entities whether or not they are in a database yet, and the body of a solid.
#pragma once

#include <vector>

#include "platform/acad/dbents.h"
#include "platform/acad/dbsol3d.h"

struct AcDbImpAccess {
  static const AcDbImpComplexVertices& vertices(const AcDb2dPolyline& e) { return e.m_vertices; }
  static const AcDbImpComplexVertices& vertices(const AcDb3dPolyline& e) { return e.m_vertices; }
  static const AcDbImpComplexVertices& vertices(const AcDbPolyFaceMesh& e) { return e.m_vertices; }

  // The vertices that are not erased, in order: the entity's own before it joins a database, the
  // database's objects after.
  static std::vector<const AcDbVertex*> live(const AcDbImpComplexVertices& vertices);

  // Moves a vertex on behalf of its entity, which is open for write while the vertex need not be.
  static void setPositionQuietly(AcDb2dVertex& v, const AcGePoint3d& p) { v.m_position = p; }
  static void setPositionQuietly(AcDb3dPolylineVertex& v, const AcGePoint3d& p) { v.m_position = p; }
  static void setPositionQuietly(AcDbPolyFaceMeshVertex& v, const AcGePoint3d& p) { v.m_position = p; }

  struct Frustum {
    bool hasBody;
    double height;
    double xRadius;
    double yRadius;
    double topXRadius;
    AcGeMatrix3d placement;
  };
  static Frustum frustum(const AcDb3dSolid& solid) {
    return {solid.m_hasBody, solid.m_height, solid.m_xRadius, solid.m_yRadius, solid.m_topXRadius, solid.m_placement};
  }
};
