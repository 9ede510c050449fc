// The common entity classes (dbents.h): line, arc, circle, the old-style 2D and 3D polylines with
// their vertices, block references with the markers of a block, single-line text, 3D faces and
// polyface meshes.
//
// Planar entities (arc, circle, 2D polyline, text) live in the plane of their normal: their 2D
// coordinates and angles are in the entity's object coordinate system (OCS), AutoCAD's arbitrary
// axis system of the normal, which is the world system when the normal is +Z.
#pragma once

#if defined(_WIN32)
#  include <dbents.h>
#else

#include <string>
#include <vector>

#include "platform/acad/dbcurve.h"
#include "platform/acad/gedblar.h"
#include "platform/acad/gept3dar.h"
#include "platform/acad/gescl3d.h"

class KD_PLATFORM_API AcDbLine : public AcDbCurve {
public:
  ACRX_DECLARE_MEMBERS(AcDbLine);
  AcDbLine();
  AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end);
  ~AcDbLine() override;

  AcGePoint3d startPoint() const { return m_start; }
  Acad::ErrorStatus setStartPoint(const AcGePoint3d& pt);
  AcGePoint3d endPoint() const { return m_end; }
  Acad::ErrorStatus setEndPoint(const AcGePoint3d& pt);
  double thickness() const { return m_thickness; }
  Acad::ErrorStatus setThickness(double val);
  AcGeVector3d normal() const { return m_normal; }
  Acad::ErrorStatus setNormal(const AcGeVector3d& val);

  Adesk::Boolean isClosed() const override { return false; }
  Acad::ErrorStatus getStartParam(double& param) const override;
  Acad::ErrorStatus getEndParam(double& param) const override;
  Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  AcRxObject* clone() const override;

private:
  AcGePoint3d m_start;
  AcGePoint3d m_end;
  double m_thickness = 0.0;
  AcGeVector3d m_normal{0.0, 0.0, 1.0};
};

// A full circle; radius positive.
class KD_PLATFORM_API AcDbCircle : public AcDbCurve {
public:
  ACRX_DECLARE_MEMBERS(AcDbCircle);
  AcDbCircle();
  AcDbCircle(const AcGePoint3d& cntr, const AcGeVector3d& nrm, double radius);
  ~AcDbCircle() override;

  AcGePoint3d center() const { return m_center; }
  Acad::ErrorStatus setCenter(const AcGePoint3d& pt);
  double radius() const { return m_radius; }
  // eInvalidInput unless positive.
  Acad::ErrorStatus setRadius(double radius);
  AcGeVector3d normal() const { return m_normal; }
  // Stored as a unit vector; eInvalidInput for a zero vector.
  Acad::ErrorStatus setNormal(const AcGeVector3d& nrm);
  double thickness() const { return m_thickness; }
  Acad::ErrorStatus setThickness(double val);

  Adesk::Boolean isClosed() const override { return true; }
  Acad::ErrorStatus getStartParam(double& param) const override;
  Acad::ErrorStatus getEndParam(double& param) const override;
  Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  AcRxObject* clone() const override;

private:
  AcGePoint3d m_center;
  double m_radius = 1.0;
  AcGeVector3d m_normal{0.0, 0.0, 1.0};
  double m_thickness = 0.0;
};

// A circular arc counter-clockwise (about the normal) from the start to the end angle, both
// measured in the OCS from its x axis and kept in [0, 2 pi). Equal angles make a full turn.
class KD_PLATFORM_API AcDbArc : public AcDbCurve {
public:
  ACRX_DECLARE_MEMBERS(AcDbArc);
  AcDbArc();
  AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle);
  AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double startAngle, double endAngle);
  ~AcDbArc() override;

  AcGePoint3d center() const { return m_center; }
  Acad::ErrorStatus setCenter(const AcGePoint3d& pt);
  double radius() const { return m_radius; }
  Acad::ErrorStatus setRadius(double radius);
  double startAngle() const { return m_startAngle; }
  Acad::ErrorStatus setStartAngle(double angle);
  double endAngle() const { return m_endAngle; }
  Acad::ErrorStatus setEndAngle(double angle);
  // The swept angle, in (0, 2 pi].
  double totalAngle() const;
  AcGeVector3d normal() const { return m_normal; }
  Acad::ErrorStatus setNormal(const AcGeVector3d& nrm);
  double thickness() const { return m_thickness; }
  Acad::ErrorStatus setThickness(double val);

  Adesk::Boolean isClosed() const override { return false; }
  // Parameters are angles: start angle to start angle + total angle.
  Acad::ErrorStatus getStartParam(double& param) const override;
  Acad::ErrorStatus getEndParam(double& param) const override;
  Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  AcRxObject* clone() const override;

private:
  AcGePoint3d m_center;
  double m_radius = 1.0;
  double m_startAngle = 0.0;
  double m_endAngle = 0.0;
  AcGeVector3d m_normal{0.0, 0.0, 1.0};
  double m_thickness = 0.0;
};

// A vertex of an old-style polyline or mesh: owned by it, with its own id and handle once the
// owner is in a database.
class KD_PLATFORM_API AcDbVertex : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbVertex);
  ~AcDbVertex() override;

protected:
  AcDbVertex();
  AcDbVertex(const AcDbVertex& other);
};

// Position in the polyline's OCS (its z is the polyline's elevation once appended); the bulge is
// the tangent of a quarter of the included angle of the arc to the next vertex, positive
// counter-clockwise, 0 for a straight segment.
class KD_PLATFORM_API AcDb2dVertex : public AcDbVertex {
public:
  ACRX_DECLARE_MEMBERS(AcDb2dVertex);
  AcDb2dVertex();
  AcDb2dVertex(const AcGePoint3d& position, double bulge = 0, double startWidth = 0, double endWidth = 0,
               double tangent = 0);
  ~AcDb2dVertex() override;

  AcDb::Vertex2dType vertexType() const { return AcDb::k2dVertex; }
  AcGePoint3d position() const { return m_position; }
  Acad::ErrorStatus setPosition(const AcGePoint3d& pt);
  double bulge() const { return m_bulge; }
  Acad::ErrorStatus setBulge(double newVal);
  double startWidth() const { return m_startWidth; }
  Acad::ErrorStatus setStartWidth(double newVal);
  double endWidth() const { return m_endWidth; }
  Acad::ErrorStatus setEndWidth(double newVal);
  AcRxObject* clone() const override;

private:
  friend struct AcDbImpAccess;
  AcGePoint3d m_position;
  double m_bulge = 0.0;
  double m_startWidth = 0.0;
  double m_endWidth = 0.0;
};

class KD_PLATFORM_API AcDb3dPolylineVertex : public AcDbVertex {
public:
  ACRX_DECLARE_MEMBERS(AcDb3dPolylineVertex);
  AcDb3dPolylineVertex();
  explicit AcDb3dPolylineVertex(const AcGePoint3d& pos);
  ~AcDb3dPolylineVertex() override;

  AcDb::Vertex3dType vertexType() const { return AcDb::k3dSimpleVertex; }
  AcGePoint3d position() const { return m_position; }
  Acad::ErrorStatus setPosition(const AcGePoint3d& pt);
  AcRxObject* clone() const override;

private:
  friend struct AcDbImpAccess;
  AcGePoint3d m_position;
};

class KD_PLATFORM_API AcDbPolyFaceMeshVertex : public AcDbVertex {
public:
  ACRX_DECLARE_MEMBERS(AcDbPolyFaceMeshVertex);
  AcDbPolyFaceMeshVertex();
  explicit AcDbPolyFaceMeshVertex(const AcGePoint3d& pos);
  ~AcDbPolyFaceMeshVertex() override;

  AcGePoint3d position() const { return m_position; }
  Acad::ErrorStatus setPosition(const AcGePoint3d& pt);
  AcRxObject* clone() const override;

private:
  friend struct AcDbImpAccess;
  AcGePoint3d m_position;
};

// A face of a polyface mesh: up to four 1-based vertex indices; a negative index makes the edge
// that starts at that vertex invisible; 0 as the fourth index makes a triangle.
class KD_PLATFORM_API AcDbFaceRecord : public AcDbVertex {
public:
  ACRX_DECLARE_MEMBERS(AcDbFaceRecord);
  AcDbFaceRecord();
  AcDbFaceRecord(Adesk::Int16 vtx0, Adesk::Int16 vtx1, Adesk::Int16 vtx2, Adesk::Int16 vtx3);
  ~AcDbFaceRecord() override;

  // The vertex index (positive; 0 for an unused fourth corner). eInvalidIndex for faceIdx > 3.
  Acad::ErrorStatus getVertexAt(Adesk::UInt16 faceIdx, Adesk::Int16& vtxIdx) const;
  Acad::ErrorStatus setVertexAt(Adesk::UInt16 faceIdx, Adesk::Int16 vtxIdx);
  Acad::ErrorStatus isEdgeVisibleAt(Adesk::UInt16 faceIndex, Adesk::Boolean& visible) const;
  Acad::ErrorStatus makeEdgeVisibleAt(Adesk::UInt16 faceIndex);
  Acad::ErrorStatus makeEdgeInvisibleAt(Adesk::UInt16 faceIndex);
  AcRxObject* clone() const override;

private:
  Adesk::Int16 m_vertices[4] = {0, 0, 0, 0};
};

// Ends the vertex list of an old-style polyline or mesh (the SEQEND of DXF).
class KD_PLATFORM_API AcDbSequenceEnd : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbSequenceEnd);
  AcDbSequenceEnd();
  ~AcDbSequenceEnd() override;
  AcRxObject* clone() const override;
};

// Implementation detail of the complex entities below: their vertices, held by the entity until it
// joins a database, then database objects owned by it (opened through the ids that vertexIterator
// gives).
class KD_PLATFORM_API AcDbImpComplexVertices {
public:
  AcDbImpComplexVertices() = default;
  AcDbImpComplexVertices(const AcDbImpComplexVertices& other);
  AcDbImpComplexVertices& operator=(const AcDbImpComplexVertices&) = delete;
  ~AcDbImpComplexVertices();

  std::vector<AcDbVertex*> pending;  // owned until the entity joins a database
  AcDbObjectIdArray ids;             // once it has
  AcDbObjectId sequenceEnd;
};

class KD_PLATFORM_API AcDb2dPolyline : public AcDbCurve {
public:
  ACRX_DECLARE_MEMBERS(AcDb2dPolyline);
  AcDb2dPolyline();
  // vertices are OCS points (their z is replaced by elevation); bulges, when given, one per
  // vertex.
  AcDb2dPolyline(AcDb::Poly2dType type, AcGePoint3dArray& vertices, double elevation = 0,
                 Adesk::Boolean closed = Adesk::kFalse, double defStartWidth = 0, double defEndWidth = 0,
                 AcGeDoubleArray* bulges = nullptr);
  ~AcDb2dPolyline() override;

  AcDb::Poly2dType polyType() const { return m_type; }
  Acad::ErrorStatus setPolyType(AcDb::Poly2dType type);
  double elevation() const { return m_elevation; }
  Acad::ErrorStatus setElevation(double elev);
  AcGeVector3d normal() const { return m_normal; }
  Acad::ErrorStatus setNormal(const AcGeVector3d& nrm);
  double thickness() const { return m_thickness; }
  Acad::ErrorStatus setThickness(double val);
  double defaultStartWidth() const { return m_defStartWidth; }
  Acad::ErrorStatus setDefaultStartWidth(double w);
  double defaultEndWidth() const { return m_defEndWidth; }
  Acad::ErrorStatus setDefaultEndWidth(double w);
  Acad::ErrorStatus makeClosed();
  Acad::ErrorStatus makeOpen();
  Acad::ErrorStatus setClosed(Adesk::Boolean closed);

  // Takes the vertex (new, outside any database). In a database the polyline must be open for
  // write, and the vertex comes back in the database, open for write.
  Acad::ErrorStatus appendVertex(AcDb2dVertex* pNewVertex);
  Acad::ErrorStatus appendVertex(AcDbObjectId& objId, AcDb2dVertex* pNewVertex);
  // Walks the vertices' ids; only for a polyline in a database (null otherwise). Caller deletes.
  AcDbObjectIterator* vertexIterator() const;
  // The vertex's position in world coordinates.
  AcGePoint3d vertexPosition(const AcDb2dVertex& vert) const;

  Adesk::Boolean isClosed() const override { return m_closed; }
  Acad::ErrorStatus getStartParam(double& param) const override;
  Acad::ErrorStatus getEndParam(double& param) const override;
  Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  Acad::ErrorStatus explode(AcDbVoidPtrArray& entitySet) const override;
  AcRxObject* clone() const override;

private:
  friend struct AcDbImpAccess;
  Acad::ErrorStatus addOwnedObjects() override;
  Acad::ErrorStatus subErase(Adesk::Boolean erasing) override;

  AcDb::Poly2dType m_type = AcDb::k2dSimplePoly;
  double m_elevation = 0.0;
  AcGeVector3d m_normal{0.0, 0.0, 1.0};
  double m_thickness = 0.0;
  double m_defStartWidth = 0.0;
  double m_defEndWidth = 0.0;
  bool m_closed = false;
  AcDbImpComplexVertices m_vertices;
};

class KD_PLATFORM_API AcDb3dPolyline : public AcDbCurve {
public:
  ACRX_DECLARE_MEMBERS(AcDb3dPolyline);
  AcDb3dPolyline();
  AcDb3dPolyline(AcDb::Poly3dType type, AcGePoint3dArray& vertices, Adesk::Boolean closed = Adesk::kFalse);
  ~AcDb3dPolyline() override;

  AcDb::Poly3dType polyType() const { return m_type; }
  Acad::ErrorStatus setPolyType(AcDb::Poly3dType type);
  Acad::ErrorStatus makeClosed();
  Acad::ErrorStatus makeOpen();
  Acad::ErrorStatus setClosed(Adesk::Boolean closed);
  // As AcDb2dPolyline::appendVertex.
  Acad::ErrorStatus appendVertex(AcDb3dPolylineVertex* pNewVertex);
  Acad::ErrorStatus appendVertex(AcDbObjectId& objId, AcDb3dPolylineVertex* pNewVertex);
  AcDbObjectIterator* vertexIterator() const;

  Adesk::Boolean isClosed() const override { return m_closed; }
  Acad::ErrorStatus getStartParam(double& param) const override;
  Acad::ErrorStatus getEndParam(double& param) const override;
  Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  Acad::ErrorStatus explode(AcDbVoidPtrArray& entitySet) const override;
  AcRxObject* clone() const override;

private:
  friend struct AcDbImpAccess;
  Acad::ErrorStatus addOwnedObjects() override;
  Acad::ErrorStatus subErase(Adesk::Boolean erasing) override;

  AcDb::Poly3dType m_type = AcDb::k3dSimplePoly;
  bool m_closed = false;
  AcDbImpComplexVertices m_vertices;
};

// Vertices first, then the faces that index them (eVertexAfterFace for a vertex after a face).
class KD_PLATFORM_API AcDbPolyFaceMesh : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbPolyFaceMesh);
  AcDbPolyFaceMesh();
  ~AcDbPolyFaceMesh() override;

  Acad::ErrorStatus appendVertex(AcDbPolyFaceMeshVertex* pVertex);
  Acad::ErrorStatus appendVertex(AcDbObjectId& objId, AcDbPolyFaceMeshVertex* pVertex);
  // eInvalidFaceVertexIndex when a corner names no vertex of the mesh (the first three must).
  Acad::ErrorStatus appendFaceRecord(AcDbFaceRecord* pFaceRec);
  Acad::ErrorStatus appendFaceRecord(AcDbObjectId& objId, AcDbFaceRecord* pFaceRec);
  Adesk::Int16 numVertices() const;
  Adesk::Int16 numFaces() const;
  // The vertices, then the face records.
  AcDbObjectIterator* vertexIterator() const;

  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  Acad::ErrorStatus explode(AcDbVoidPtrArray& entitySet) const override;
  AcRxObject* clone() const override;

private:
  friend struct AcDbImpAccess;
  Acad::ErrorStatus addOwnedObjects() override;
  Acad::ErrorStatus subErase(Adesk::Boolean erasing) override;
  Acad::ErrorStatus appendSubentity(AcDbObjectId* objId, AcDbVertex* pVertex);

  AcDbImpComplexVertices m_vertices;
};

// The markers that open and close a block definition (BLOCK and ENDBLK of DXF); every block
// table record owns one of each.
class KD_PLATFORM_API AcDbBlockBegin : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbBlockBegin);
  AcDbBlockBegin();
  ~AcDbBlockBegin() override;
};

class KD_PLATFORM_API AcDbBlockEnd : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbBlockEnd);
  AcDbBlockEnd();
  ~AcDbBlockEnd() override;
};

// An insertion of a block definition: its entities scaled, rotated about the normal and moved to
// the position (the block's origin lands there).
class KD_PLATFORM_API AcDbBlockReference : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbBlockReference);
  AcDbBlockReference();
  AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockTableRec);
  ~AcDbBlockReference() override;

  AcDbObjectId blockTableRecord() const { return m_blockTableRecord; }
  Acad::ErrorStatus setBlockTableRecord(AcDbObjectId newVal);
  AcGePoint3d position() const { return m_position; }
  Acad::ErrorStatus setPosition(const AcGePoint3d& newVal);
  AcGeScale3d scaleFactors() const { return m_scale; }
  // eInvalidInput for a zero factor.
  Acad::ErrorStatus setScaleFactors(const AcGeScale3d& scale);
  double rotation() const { return m_rotation; }
  Acad::ErrorStatus setRotation(double newVal);
  AcGeVector3d normal() const { return m_normal; }
  Acad::ErrorStatus setNormal(const AcGeVector3d& newVal);
  // From block coordinates (relative to the block's origin) to world coordinates.
  AcGeMatrix3d blockTransform() const;

  // The placed extents of the block's entities. eInvalidExtents for an empty block or a block
  // that is missing; eSelfReference when the block contains itself.
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  Acad::ErrorStatus explode(AcDbVoidPtrArray& entitySet) const override;
  AcRxObject* clone() const override;

protected:
  AcDbBlockReference(const AcDbBlockReference& other);

private:
  AcGePoint3d m_position;
  AcDbObjectId m_blockTableRecord;
  AcGeScale3d m_scale;
  double m_rotation = 0.0;
  AcGeVector3d m_normal{0.0, 0.0, 1.0};
};

// Single-line text. The position is the start of the baseline; for justifications other than
// left/base the alignment point is where the text is justified (between position and alignment
// point for aligned and fitted text). A height of 0 takes the database's default text height
// (0.2) when the text joins a database. The extents assume characters one height wide (times the
// width factor), as a monospaced font would give.
class KD_PLATFORM_API AcDbText : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbText);
  AcDbText();
  AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId style = AcDbObjectId::kNull,
           double height = 0, double rotation = 0);
  ~AcDbText() override;

  AcGePoint3d position() const { return m_position; }
  Acad::ErrorStatus setPosition(const AcGePoint3d& pt);
  AcGePoint3d alignmentPoint() const { return m_alignmentPoint; }
  Acad::ErrorStatus setAlignmentPoint(const AcGePoint3d& pt);
  // True for left/base justification, where the alignment point is not used.
  Adesk::Boolean isDefaultAlignment() const;
  // A copy the caller frees with acutDelString.
  ACHAR* textString() const;
  const ACHAR* textStringConst() const { return m_text.c_str(); }
  Acad::ErrorStatus setTextString(const ACHAR* text);
  AcDbObjectId textStyle() const { return m_style; }
  Acad::ErrorStatus setTextStyle(AcDbObjectId id);
  double height() const { return m_height; }
  // eInvalidInput unless positive.
  Acad::ErrorStatus setHeight(double height);
  double widthFactor() const { return m_widthFactor; }
  Acad::ErrorStatus setWidthFactor(double widthFactor);
  double oblique() const { return m_oblique; }
  Acad::ErrorStatus setOblique(double angle);
  double rotation() const { return m_rotation; }
  Acad::ErrorStatus setRotation(double angle);
  AcDb::TextHorzMode horizontalMode() const { return m_horzMode; }
  Acad::ErrorStatus setHorizontalMode(AcDb::TextHorzMode mode);
  AcDb::TextVertMode verticalMode() const { return m_vertMode; }
  Acad::ErrorStatus setVerticalMode(AcDb::TextVertMode mode);
  AcGeVector3d normal() const { return m_normal; }
  Acad::ErrorStatus setNormal(const AcGeVector3d& nrm);
  double thickness() const { return m_thickness; }
  Acad::ErrorStatus setThickness(double val);

  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  AcRxObject* clone() const override;

private:
  AcGePoint3d m_position;
  AcGePoint3d m_alignmentPoint;
  std::wstring m_text;
  AcDbObjectId m_style;
  double m_height = 0.0;
  double m_widthFactor = 1.0;
  double m_oblique = 0.0;
  double m_rotation = 0.0;
  AcDb::TextHorzMode m_horzMode = AcDb::kTextLeft;
  AcDb::TextVertMode m_vertMode = AcDb::kTextBase;
  AcGeVector3d m_normal{0.0, 0.0, 1.0};
  double m_thickness = 0.0;
};

// A 3D face of three or four corners (a triangle repeats the third corner as the fourth).
class KD_PLATFORM_API AcDbFace : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbFace);
  AcDbFace();
  AcDbFace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2, const AcGePoint3d& pt3,
           Adesk::Boolean e0vis = Adesk::kTrue, Adesk::Boolean e1vis = Adesk::kTrue,
           Adesk::Boolean e2vis = Adesk::kTrue, Adesk::Boolean e3vis = Adesk::kTrue);
  AcDbFace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2,
           Adesk::Boolean e0vis = Adesk::kTrue, Adesk::Boolean e1vis = Adesk::kTrue,
           Adesk::Boolean e2vis = Adesk::kTrue, Adesk::Boolean e3vis = Adesk::kTrue);
  ~AcDbFace() override;

  // eInvalidIndex for an index above 3.
  Acad::ErrorStatus getVertexAt(Adesk::UInt16 index, AcGePoint3d& point) const;
  Acad::ErrorStatus setVertexAt(Adesk::UInt16 index, const AcGePoint3d& point);
  Acad::ErrorStatus isEdgeVisibleAt(Adesk::UInt16 index, Adesk::Boolean& visible) const;
  Acad::ErrorStatus makeEdgeVisibleAt(Adesk::UInt16 index);
  Acad::ErrorStatus makeEdgeInvisibleAt(Adesk::UInt16 index);

  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  AcRxObject* clone() const override;

private:
  AcGePoint3d m_points[4];
  bool m_edgeVisible[4] = {true, true, true, true};
};

#endif  // !_WIN32
