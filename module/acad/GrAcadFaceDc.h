// The drawing classes of flat faces and meshes: rectangle and triangle faces as 3D faces, meshes
// as polyface meshes.
#pragma once

#include "module/acad/GrAcadDc.h"

// AcDbFace of four corners.
class CGrAcadRectangleFaceDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};

// AcDbFace whose fourth corner repeats the third.
class CGrAcadTriangleFaceDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};

// AcDbPolyFaceMesh: the mesh's vertices, then one face record per triangle (1-based indices).
// A changed mesh is replaced by a new entity (its vertices are objects of their own). Faces that
// name no vertex, and meshes past 32767 vertices (the face records' 16-bit indices), are refused.
// Materials are not kept in the drawing; quadrilateral face records read back as two triangles.
class CGrAcadMeshDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};
