// Entities hold real geometry: extents, parameters, transformations, the vertices of complex
// entities, hatch loops, tables, solids, blocks and the common properties.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>

#include "DrawingFixture.h"
#include "platform/acad/dbelipse.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbhatch.h"
#include "platform/acad/dbpl.h"
#include "platform/acad/dbsol3d.h"
#include "platform/acad/dbtable.h"

namespace {

using kdtest::NewDrawing;
using kdtest::Opened;
using kdtest::Take;

constexpr double kPi = 3.14159265358979323846;
constexpr double kTol = 1e-9;

void ExpectNear(const AcGePoint3d& actual, const AcGePoint3d& expected, const char* what) {
  EXPECT_NEAR(actual.x, expected.x, kTol) << what;
  EXPECT_NEAR(actual.y, expected.y, kTol) << what;
  EXPECT_NEAR(actual.z, expected.z, kTol) << what;
}

// --- Extents of every kind, from its geometry ---------------------------------------------------

struct ExtentsCase {
  const char* name;
  std::function<AcDbEntity*()> make;
  AcGePoint3d min;
  AcGePoint3d max;
};

class Extents : public ::testing::TestWithParam<ExtentsCase> {};

TEST_P(Extents, AreTheBoxOfTheGeometry) {
  const ExtentsCase& c = GetParam();
  std::unique_ptr<AcDbEntity> entity(c.make());
  AcDbExtents ext;
  ASSERT_EQ(entity->getGeomExtents(ext), Acad::eOk);
  ExpectNear(ext.minPoint(), c.min, "min");
  ExpectNear(ext.maxPoint(), c.max, "max");
}

AcDbEntity* Bulged() {
  auto* pl = new AcDbPolyline;
  pl->addVertexAt(0, AcGePoint2d(0, 0), 1.0);  // a counter-clockwise half circle: it dips below
  pl->addVertexAt(1, AcGePoint2d(2, 0));
  return pl;
}

AcDbEntity* Hatch() {
  auto* hatch = new AcDbHatch;
  AcGePoint2dArray square;
  for (auto p : {AcGePoint2d(0, 0), AcGePoint2d(4, 0), AcGePoint2d(4, 4), AcGePoint2d(0, 4)}) square.append(p);
  AcGeDoubleArray bulges;
  for (double b : {0.0, 0.0, 0.0, 0.0}) bulges.append(b);
  hatch->appendLoop(AcDbHatch::kExternal, square, bulges);
  hatch->setElevation(2.0);
  return hatch;
}

AcDbEntity* Mesh() {
  auto* mesh = new AcDbPolyFaceMesh;
  for (auto p : {AcGePoint3d(0, 0, 0), AcGePoint3d(3, 0, 1), AcGePoint3d(0, 2, 5)})
    mesh->appendVertex(new AcDbPolyFaceMeshVertex(p));
  mesh->appendFaceRecord(new AcDbFaceRecord(1, 2, 3, 0));
  return mesh;
}

AcDbEntity* Table() {
  auto* table = new AcDbTable;
  table->setSize(2, 3);
  table->setPosition(AcGePoint3d(10, 10, 0));
  return table;
}

AcDbEntity* Cylinder() {
  auto* solid = new AcDb3dSolid;
  solid->createFrustum(2.0, 1.0, 1.0, 1.0);
  solid->transformBy(AcGeMatrix3d::translation(AcGeVector3d(5, 0, 1)));
  return solid;
}

const double kR2 = std::sqrt(2.0);

INSTANTIATE_TEST_SUITE_P(
    EveryKind, Extents,
    ::testing::Values(
        ExtentsCase{"line", [] { return new AcDbLine(AcGePoint3d(3, -1, 2), AcGePoint3d(-2, 4, 0)); }, {-2, -1, 0}, {3, 4, 2}},
        ExtentsCase{"circle", [] { return new AcDbCircle(AcGePoint3d(1, 1, 0), AcGeVector3d::kZAxis, 2); }, {-1, -1, 0}, {3, 3, 0}},
        ExtentsCase{"standing circle", [] { return new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kXAxis, 2); },
                    {0, -2, -2}, {0, 2, 2}},
        ExtentsCase{"quarter arc", [] { return new AcDbArc(AcGePoint3d(0, 0, 0), 2, 0, kPi / 2); }, {0, 0, 0}, {2, 2, 0}},
        ExtentsCase{"arc through angle zero", [] { return new AcDbArc(AcGePoint3d(0, 0, 0), 2, -kPi / 4, kPi / 4); },
                    {kR2, -kR2, 0}, {2, kR2, 0}},
        ExtentsCase{"arc round the back", [] { return new AcDbArc(AcGePoint3d(0, 0, 0), 2, kPi / 4, -kPi / 4); },
                    {-2, -2, 0}, {kR2, 2, 0}},
        ExtentsCase{"arc short of the x axis", [] { return new AcDbArc(AcGePoint3d(0, 0, 0), 2, 3 * kPi / 4, 5 * kPi / 4); },
                    {-2, -kR2, 0}, {-kR2, kR2, 0}},
        ExtentsCase{"ellipse",
                    [] { return new AcDbEllipse(AcGePoint3d(1, 0, 0), AcGeVector3d::kZAxis, AcGeVector3d(4, 0, 0), 0.5); },
                    {-3, -2, 0}, {5, 2, 0}},
        ExtentsCase{"upper half ellipse",
                    [] { return new AcDbEllipse(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, AcGeVector3d(4, 0, 0), 0.5, 0, kPi); },
                    {-4, 0, 0}, {4, 2, 0}},
        ExtentsCase{"bulged polyline", Bulged, {0, -1, 0}, {2, 0, 0}},
        ExtentsCase{"3D polyline",
                    [] {
                      AcGePoint3dArray pts;
                      for (auto p : {AcGePoint3d(0, 0, 0), AcGePoint3d(1, 5, -2), AcGePoint3d(-3, 2, 4)}) pts.append(p);
                      return new AcDb3dPolyline(AcDb::k3dSimplePoly, pts);
                    },
                    {-3, 0, -2}, {1, 5, 4}},
        ExtentsCase{"2D polyline at an elevation",
                    [] {
                      AcGePoint3dArray pts;
                      for (auto p : {AcGePoint3d(0, 0, 0), AcGePoint3d(4, 0, 0)}) pts.append(p);
                      AcGeDoubleArray bulges;
                      bulges.append(-1.0);  // clockwise half circle: above the chord
                      bulges.append(0.0);
                      return new AcDb2dPolyline(AcDb::k2dSimplePoly, pts, 7.0, false, 0, 0, &bulges);
                    },
                    {0, 0, 7}, {4, 2, 7}},
        ExtentsCase{"face", [] { return new AcDbFace(AcGePoint3d(0, 0, 0), AcGePoint3d(2, 0, 1), AcGePoint3d(2, 3, 0)); },
                    {0, 0, 0}, {2, 3, 1}},
        ExtentsCase{"mesh", Mesh, {0, 0, 0}, {3, 2, 5}},
        ExtentsCase{"text",
                    [] {
                      auto* t = new AcDbText(AcGePoint3d(1, 1, 0), L"AB");
                      t->setHeight(1.0);
                      return t;
                    },
                    {1, 1, 0}, {3, 2, 0}},
        ExtentsCase{"rotated centred text",
                    [] {
                      auto* t = new AcDbText(AcGePoint3d(0, 0, 0), L"ABCD");
                      t->setHeight(1.0);
                      t->setRotation(kPi / 2);
                      t->setHorizontalMode(AcDb::kTextCenter);
                      t->setAlignmentPoint(AcGePoint3d(10, 0, 0));
                      return t;
                    },
                    {9, -2, 0}, {10, 2, 0}},
        ExtentsCase{"hatch", Hatch, {0, 0, 2}, {4, 4, 2}},
        ExtentsCase{"table", Table, {10, 10 - 2 * AcDbTable::kDefaultRowHeight, 0},
                    {10 + 3 * AcDbTable::kDefaultColumnWidth, 10, 0}},
        ExtentsCase{"cylinder", Cylinder, {4, -1, 0}, {6, 1, 2}}),
    [](const ::testing::TestParamInfo<ExtentsCase>& info) {
      std::string name;
      for (const char* p = info.param.name; *p != '\0'; ++p)
        if (std::isalnum(static_cast<unsigned char>(*p))) name.push_back(*p);
      return name;
    });

TEST(EntityExtents, ThingsWithoutGeometryHaveNone) {
  AcDbExtents ext;
  EXPECT_EQ(AcDbPolyline().getGeomExtents(ext), Acad::eInvalidExtents);
  EXPECT_EQ(AcDb3dSolid().getGeomExtents(ext), Acad::eInvalidExtents);
  EXPECT_EQ(AcDbTable().getGeomExtents(ext), Acad::eInvalidExtents);
}

// --- Curves: parameters and transformations -----------------------------------------------------

TEST(Curves, PointsAtParametersFollowTheCurve) {
  AcGePoint3d p;
  AcDbLine line(AcGePoint3d(0, 0, 0), AcGePoint3d(3, 4, 0));
  double end = 0;
  line.getEndParam(end);
  EXPECT_DOUBLE_EQ(end, 5.0);
  ASSERT_EQ(line.getPointAtParam(2.5, p), Acad::eOk);
  ExpectNear(p, AcGePoint3d(1.5, 2, 0), "line middle");
  EXPECT_EQ(line.getPointAtParam(6.0, p), Acad::eInvalidInput);

  AcDbArc arc(AcGePoint3d(1, 1, 0), 2, 3 * kPi / 2, kPi / 2);  // through angle 0
  arc.getEndParam(end);
  EXPECT_NEAR(end, 3 * kPi / 2 + kPi, kTol);
  ASSERT_EQ(arc.getPointAtParam(2 * kPi, p), Acad::eOk);
  ExpectNear(p, AcGePoint3d(3, 1, 0), "arc at angle 0");

  std::unique_ptr<AcDbEntity> bulged(Bulged());
  auto* pl = AcDbPolyline::cast(bulged.get());
  ASSERT_EQ(pl->getPointAtParam(0.5, p), Acad::eOk);
  ExpectNear(p, AcGePoint3d(1, -1, 0), "bulge middle");
  EXPECT_EQ(pl->segType(0), AcDbPolyline::kArc);
  EXPECT_EQ(pl->segType(1), AcDbPolyline::kEmpty);
}

TEST(Curves, EllipseParametersAndAnglesDiffer) {
  AcDbEllipse e(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, AcGeVector3d(2, 0, 0), 0.5, kPi / 4, kPi);
  const double t = e.paramAtAngle(kPi / 4);
  EXPECT_NEAR(t, std::atan2(1.0, 0.5), kTol);
  EXPECT_NEAR(e.angleAtParam(t), kPi / 4, kTol);
  AcGePoint3d start;
  e.getStartPoint(start);
  EXPECT_NEAR(start.y / start.x, 1.0, kTol) << "the start point lies at 45 degrees";
  EXPECT_FALSE(e.isClosed());
  EXPECT_EQ(AcDbEllipse(AcGePoint3d::kOrigin, AcGeVector3d::kZAxis, AcGeVector3d(0, 0, 1), 0.5).majorAxis(),
            AcGeVector3d(1, 0, 0))
      << "a major axis along the normal is refused";
}

TEST(Curves, CirclesAndArcsRefuseUnevenScalingAndKeepTheirShape) {
  AcDbCircle circle(AcGePoint3d(1, 0, 0), AcGeVector3d::kZAxis, 1.0);
  AcGeMatrix3d stretch;
  stretch.entry[0][0] = 2.0;
  EXPECT_EQ(circle.transformBy(stretch), Acad::eCannotScaleNonUniformly);
  EXPECT_EQ(circle.radius(), 1.0);
  EXPECT_EQ(circle.transformBy(AcGeMatrix3d::scaling(3.0)), Acad::eOk);
  EXPECT_DOUBLE_EQ(circle.radius(), 3.0);
  ExpectNear(circle.center(), AcGePoint3d(3, 0, 0), "scaled about the origin");
}

TEST(Curves, AMirroredArcKeepsItsEndPoints) {
  AcDbArc arc(AcGePoint3d(0, 0, 0), 1.0, 0.0, kPi / 2);
  AcGePoint3d start, end;
  arc.getStartPoint(start);
  arc.getEndPoint(end);
  AcGeMatrix3d mirror;  // x -> -x
  mirror.entry[0][0] = -1.0;
  ASSERT_EQ(arc.transformBy(mirror), Acad::eOk);
  AcGePoint3d newStart, newEnd;
  arc.getStartPoint(newStart);
  arc.getEndPoint(newEnd);
  // The arc ran from (1,0) to (0,1); mirrored it covers (-1,0) to (0,1) and stays a quarter.
  EXPECT_NEAR(arc.totalAngle(), kPi / 2, kTol);
  AcDbExtents ext;
  arc.getGeomExtents(ext);
  ExpectNear(ext.minPoint(), AcGePoint3d(-1, 0, 0), "mirrored min");
  ExpectNear(ext.maxPoint(), AcGePoint3d(0, 1, 0), "mirrored max");
}

TEST(Curves, TextTurnsWithItsTransformation) {
  AcDbText text(AcGePoint3d(1, 0, 0), L"X", AcDbObjectId::kNull, 2.0);
  ASSERT_EQ(text.transformBy(AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kZAxis)), Acad::eOk);
  ExpectNear(text.position(), AcGePoint3d(0, 1, 0), "rotated position");
  EXPECT_NEAR(text.rotation(), kPi / 2, kTol);
  EXPECT_DOUBLE_EQ(text.height(), 2.0);
}

// --- Complex entities in a drawing --------------------------------------------------------------

TEST_F(NewDrawing, A2dPolylinesVerticesBecomeObjectsItOwns) {
  AcGePoint3dArray pts;
  for (auto p : {AcGePoint3d(0, 0, 0), AcGePoint3d(5, 0, 0), AcGePoint3d(5, 5, 0)}) pts.append(p);
  const AcDbObjectId pl = Append(new AcDb2dPolyline(AcDb::k2dSimplePoly, pts, 3.0, true));
  std::vector<AcDbObjectId> vertices;
  {
    Opened<AcDb2dPolyline> polyline(pl, AcDb::kForRead);
    AcDbObjectIterator* it = polyline->vertexIterator();
    ASSERT_NE(it, nullptr);
    for (; !it->done(); it->step()) vertices.push_back(it->objectId());
    delete it;
  }
  ASSERT_EQ(vertices.size(), 3u);
  Opened<AcDb2dVertex> second(vertices[1], AcDb::kForRead);
  ASSERT_TRUE(second);
  EXPECT_EQ(second->ownerId(), pl);
  EXPECT_FALSE(second->objectId().handle().isNull());
  ExpectNear(second->position(), AcGePoint3d(5, 0, 3), "vertex at the elevation");
  Opened<AcDb2dPolyline> polyline(pl, AcDb::kForRead);
  ExpectNear(polyline->vertexPosition(*second.object), AcGePoint3d(5, 0, 3), "world position");
  AcGePoint3d end;
  polyline->getEndPoint(end);
  ExpectNear(end, AcGePoint3d(0, 0, 3), "a closed polyline ends at its start");
}

TEST_F(NewDrawing, AVertexAppendedLaterJoinsTheDrawingOpenForWrite) {
  const AcDbObjectId pl = Append(new AcDb3dPolyline);
  Opened<AcDb3dPolyline> polyline(pl, AcDb::kForWrite);
  auto* vertex = new AcDb3dPolylineVertex(AcGePoint3d(1, 2, 3));
  AcDbObjectId id;
  ASSERT_EQ(polyline->appendVertex(id, vertex), Acad::eOk);
  EXPECT_TRUE(vertex->isWriteEnabled());
  EXPECT_EQ(polyline->appendVertex(vertex), Acad::eAlreadyInDb);
  vertex->close();
  polyline->appendVertex(new AcDb3dPolylineVertex(AcGePoint3d(4, 5, 6)));
  AcDbExtents ext;
  ASSERT_EQ(polyline->getGeomExtents(ext), Acad::eOk);
  ExpectNear(ext.maxPoint(), AcGePoint3d(4, 5, 6), "both vertices count");
}

TEST_F(NewDrawing, ErasingAPolylineTakesItsVerticesAlong) {
  AcGePoint3dArray pts;
  for (auto p : {AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 1)}) pts.append(p);
  const AcDbObjectId pl = Append(new AcDb3dPolyline(AcDb::k3dSimplePoly, pts));
  AcDbObjectId vertex;
  {
    Opened<AcDb3dPolyline> polyline(pl, AcDb::kForWrite);
    AcDbObjectIterator* it = polyline->vertexIterator();
    vertex = it->objectId();
    delete it;
    ASSERT_EQ(polyline->erase(), Acad::eOk);
  }
  EXPECT_TRUE(vertex.isErased());
  Opened<AcDb3dPolyline> polyline(pl, AcDb::kForWrite, true);
  ASSERT_EQ(polyline->erase(false), Acad::eOk);
  EXPECT_FALSE(vertex.isErased());
}

TEST(PolyfaceMesh, FacesComeAfterVerticesAndNameThem) {
  AcDbPolyFaceMesh mesh;
  mesh.appendVertex(new AcDbPolyFaceMeshVertex(AcGePoint3d(0, 0, 0)));
  mesh.appendVertex(new AcDbPolyFaceMeshVertex(AcGePoint3d(1, 0, 0)));
  mesh.appendVertex(new AcDbPolyFaceMeshVertex(AcGePoint3d(0, 1, 0)));
  auto* bad = new AcDbFaceRecord(1, 2, 4, 0);
  EXPECT_EQ(mesh.appendFaceRecord(bad), Acad::eInvalidFaceVertexIndex);
  delete bad;
  ASSERT_EQ(mesh.appendFaceRecord(new AcDbFaceRecord(1, 2, -3, 0)), Acad::eOk);
  auto* late = new AcDbPolyFaceMeshVertex(AcGePoint3d(5, 5, 5));
  EXPECT_EQ(mesh.appendVertex(late), Acad::eVertexAfterFace);
  delete late;
  EXPECT_EQ(mesh.numVertices(), 3);
  EXPECT_EQ(mesh.numFaces(), 1);

  AcDbVoidPtrArray parts;
  ASSERT_EQ(mesh.explode(parts), Acad::eOk);
  ASSERT_EQ(parts.length(), 1);
  std::unique_ptr<AcDbFace> face(static_cast<AcDbFace*>(static_cast<AcRxObject*>(parts[0])));
  AcGePoint3d third, fourth;
  face->getVertexAt(2, third);
  face->getVertexAt(3, fourth);
  EXPECT_EQ(third, fourth) << "a triangle repeats its third corner";
  Adesk::Boolean visible = true;
  face->isEdgeVisibleAt(2, visible);
  EXPECT_FALSE(visible);
}

// --- Hatches ------------------------------------------------------------------------------------

TEST(Hatches, LoopsOfLinesAndArcsComeBackAsGiven) {
  AcDbHatch hatch;
  AcGeLineSeg2d bottom(AcGePoint2d(0, 0), AcGePoint2d(2, 0));
  AcGeCircArc2d right(AcGePoint2d(2, 1), 1.0, -kPi / 2, kPi / 2);
  AcGeLineSeg2d top(AcGePoint2d(2, 2), AcGePoint2d(0, 2));
  AcGeLineSeg2d left(AcGePoint2d(0, 2), AcGePoint2d(0, 0));
  AcGeVoidPointerArray edges;
  AcGeIntArray types;
  for (void* e : {static_cast<void*>(&bottom), static_cast<void*>(&right), static_cast<void*>(&top),
                  static_cast<void*>(&left)})
    edges.append(e);
  for (int t : {AcDbHatch::kLine, AcDbHatch::kCirArc, AcDbHatch::kLine, AcDbHatch::kLine}) types.append(t);
  ASSERT_EQ(hatch.appendLoop(AcDbHatch::kExternal, edges, types), Acad::eOk);
  EXPECT_EQ(hatch.evaluateHatch(), Acad::eOk);

  Adesk::Int32 loopType = 0;
  AcGePoint2dArray vertices;
  AcGeDoubleArray bulges;
  ASSERT_EQ(hatch.getLoopAt(0, loopType, vertices, bulges), Acad::eOk);
  ASSERT_EQ(vertices.length(), 4);
  EXPECT_NEAR(bulges[1], 1.0, kTol) << "a counter-clockwise half circle";
  AcDbExtents ext;
  hatch.getGeomExtents(ext);
  EXPECT_NEAR(ext.maxPoint().x, 3.0, kTol);

  AcGeVoidPointerArray outEdges;
  AcGeIntArray outTypes;
  ASSERT_EQ(hatch.getLoopAt(0, loopType, outEdges, outTypes), Acad::eOk);
  ASSERT_EQ(outTypes[1], AcDbHatch::kCirArc);
  auto* arc = static_cast<AcGeCircArc2d*>(outEdges[1]);
  EXPECT_TRUE(arc->startPoint().isEqualTo(AcGePoint2d(2, 0), AcGeTol()));
  EXPECT_TRUE(arc->endPoint().isEqualTo(AcGePoint2d(2, 2), AcGeTol()));
  for (int i = 0; i < outEdges.length(); ++i) {
    if (outTypes[i] == AcDbHatch::kLine) delete static_cast<AcGeLineSeg2d*>(outEdges[i]);
    else delete static_cast<AcGeCircArc2d*>(outEdges[i]);
  }

  EXPECT_EQ(hatch.removeLoopAt(0), Acad::eOk);
  EXPECT_EQ(hatch.removeLoopAt(0), Acad::eInvalidIndex);
  EXPECT_EQ(hatch.evaluateHatch(), Acad::eInvalidInput);
}

TEST(Hatches, OpenLoopsAndUnsupportedEdgesAreRefused) {
  AcDbHatch hatch;
  AcGeLineSeg2d a(AcGePoint2d(0, 0), AcGePoint2d(1, 0));
  AcGeLineSeg2d b(AcGePoint2d(1, 0), AcGePoint2d(1, 1));
  AcGeVoidPointerArray edges;
  AcGeIntArray types;
  edges.append(&a);
  edges.append(&b);
  types.append(AcDbHatch::kLine);
  types.append(AcDbHatch::kLine);
  ASSERT_EQ(hatch.appendLoop(AcDbHatch::kDefault, edges, types), Acad::eOk);
  EXPECT_EQ(hatch.evaluateHatch(), Acad::eInvalidInput);
  types[1] = AcDbHatch::kEllArc;
  EXPECT_EQ(hatch.appendLoop(AcDbHatch::kDefault, edges, types), Acad::eNotImplementedYet);
  types.removeLast();
  EXPECT_EQ(hatch.appendLoop(AcDbHatch::kDefault, edges, types), Acad::eInvalidInput);
  EXPECT_EQ(hatch.setPattern(AcDbHatch::kPreDefined, L""), Acad::eInvalidInput);
  EXPECT_TRUE(hatch.isSolidFill());
}

// --- Tables and solids --------------------------------------------------------------------------

TEST(Tables, AreBlockReferencesWithCells) {
  AcDbTable table;
  EXPECT_TRUE(table.isKindOf(AcDbBlockReference::desc())) << "as in AutoCAD, a table is a block reference";
  ASSERT_EQ(table.setSize(2, 2), Acad::eOk);
  ASSERT_EQ(table.setTextString(1, 1, L"cell"), Acad::eOk);
  EXPECT_EQ(Take(table.textString(1, 1)), L"cell");
  EXPECT_EQ(table.setTextString(2, 0, L"x"), Acad::eInvalidIndex);
  EXPECT_EQ(table.textString(0, 5), nullptr);
  ASSERT_EQ(table.setSize(3, 1), Acad::eOk);
  EXPECT_EQ(Take(table.textString(1, 0)), L"") << "cells that remain keep their text";
  EXPECT_EQ(table.setSize(0, 1), Acad::eInvalidInput);
  EXPECT_EQ(table.setCellState(0, 0, AcDb::kCellStateContentLocked), Acad::eOk);
  EXPECT_EQ(table.cellState(0, 0), AcDb::kCellStateContentLocked);
  EXPECT_EQ(table.setColumnWidth(0, 4.0), Acad::eOk);
  EXPECT_DOUBLE_EQ(table.width(), 4.0);
  EXPECT_DOUBLE_EQ(table.height(), 3 * AcDbTable::kDefaultRowHeight);
}

TEST_F(NewDrawing, ATableTakesTheStandardTableStyle) {
  const AcDbObjectId id = Append(Table());
  Opened<AcDbTable> table(id, AcDb::kForWrite);
  EXPECT_EQ(table->tableStyle(), db->tablestyle());
  EXPECT_EQ(table->setTableStyle(db->clayer()), Acad::eWrongObjectType);
}

TEST(Solids, AFrustumIsPlacedByItsTransformation) {
  AcDb3dSolid cone;
  EXPECT_TRUE(cone.isNull());
  EXPECT_EQ(cone.createFrustum(4.0, 2.0, 1.0, 0.0), Acad::eOk);
  EXPECT_FALSE(cone.isNull());
  EXPECT_EQ(cone.transformBy(AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kYAxis)), Acad::eOk);
  AcDbExtents ext;
  ASSERT_EQ(cone.getGeomExtents(ext), Acad::eOk);
  ExpectNear(ext.minPoint(), AcGePoint3d(-2, -1, -2), "turned onto the x axis");
  ExpectNear(ext.maxPoint(), AcGePoint3d(2, 1, 2), "turned onto the x axis");
  EXPECT_EQ(cone.createFrustum(0.0, 1.0, 1.0, 1.0), Acad::eInvalidInput);
  AcGeMatrix3d stretch;
  stretch.entry[2][2] = 3.0;
  EXPECT_EQ(cone.transformBy(stretch), Acad::eCannotScaleNonUniformly);
}

// --- Blocks -------------------------------------------------------------------------------------

class DrawingWithABlock : public NewDrawing {
protected:
  void SetUp() override {
    NewDrawing::SetUp();
    block = AddBlock(L"Door", AcGePoint3d(1, 0, 0));
    Append(new AcDbLine(AcGePoint3d(1, 0, 0), AcGePoint3d(3, 0, 0)), block);
    Append(new AcDbCircle(AcGePoint3d(3, 0, 0), AcGeVector3d::kZAxis, 1.0), block);
  }
  AcDbObjectId AddBlock(const ACHAR* name, const AcGePoint3d& origin = AcGePoint3d::kOrigin) {
    Opened<AcDbBlockTable> table(db->blockTableId(), AcDb::kForWrite);
    auto* record = new AcDbBlockTableRecord;
    record->setName(name);
    record->setOrigin(origin);
    AcDbObjectId id;
    EXPECT_EQ(table->add(id, record), Acad::eOk);
    record->close();
    return id;
  }
  AcDbObjectId block;
};

TEST_F(DrawingWithABlock, AReferencePlacesTheBlocksEntities) {
  auto* ref = new AcDbBlockReference(AcGePoint3d(10, 10, 0), block);
  ref->setRotation(kPi / 2);
  ref->setScaleFactors(AcGeScale3d(2.0));
  const AcDbObjectId id = Append(ref);
  Opened<AcDbBlockReference> placed(id, AcDb::kForRead);
  AcDbExtents ext;
  ASSERT_EQ(placed->getGeomExtents(ext), Acad::eOk);
  // Block points relative to its origin (1,0): line (0,0)-(2,0), circle at (2,0) radius 1;
  // scaled by 2 and turned a quarter: line along +y to (0,4), circle at (0,4) radius 2.
  ExpectNear(ext.minPoint(), AcGePoint3d(8, 10, 0), "min");
  ExpectNear(ext.maxPoint(), AcGePoint3d(12, 16, 0), "max");

  AcDbVoidPtrArray parts;
  ASSERT_EQ(placed->explode(parts), Acad::eOk);
  ASSERT_EQ(parts.length(), 2);
  std::unique_ptr<AcDbLine> line(AcDbLine::cast(static_cast<AcRxObject*>(parts[0])));
  std::unique_ptr<AcRxObject> circle(static_cast<AcRxObject*>(parts[1]));
  ASSERT_NE(line, nullptr);
  ExpectNear(line->endPoint(), AcGePoint3d(10, 14, 0), "exploded line end");
  EXPECT_TRUE(line->objectId().isNull());

  AcDbObjectIdArray refs;
  Opened<AcDbBlockTableRecord> record(block, AcDb::kForRead);
  record->getBlockReferenceIds(refs);
  ASSERT_EQ(refs.length(), 1);
  EXPECT_EQ(refs[0], id);
}

TEST_F(DrawingWithABlock, AReferenceMovesAndTurnsWithItsTransformation) {
  const AcDbObjectId id = Append(new AcDbBlockReference(AcGePoint3d(0, 0, 0), block));
  Opened<AcDbBlockReference> ref(id, AcDb::kForWrite);
  ASSERT_EQ(ref->transformBy(AcGeMatrix3d::rotation(kPi, AcGeVector3d::kZAxis) *
                             AcGeMatrix3d::translation(AcGeVector3d(5, 0, 0))),
            Acad::eOk);
  ExpectNear(ref->position(), AcGePoint3d(-5, 0, 0), "moved, then turned half a turn");
  EXPECT_NEAR(ref->rotation(), kPi, kTol);
  AcGeMatrix3d shear;
  shear.entry[0][1] = 1.0;
  EXPECT_EQ(ref->transformBy(shear), Acad::eCannotScaleNonUniformly);
}

TEST_F(DrawingWithABlock, BlockNamesAreCheckedAndAnonymousOnesNumbered) {
  Opened<AcDbBlockTable> table(db->blockTableId(), AcDb::kForWrite);
  auto* duplicate = new AcDbBlockTableRecord;
  duplicate->setName(L"DOOR");
  EXPECT_EQ(table->add(duplicate), Acad::eDuplicateRecordName);
  delete duplicate;
  auto* bad = new AcDbBlockTableRecord;
  EXPECT_EQ(bad->setName(L"a<b"), Acad::eInvalidSymbolTableName);
  delete bad;
  for (const ACHAR* expected : {L"*U1", L"*U2"}) {
    auto* anonymous = new AcDbBlockTableRecord;
    anonymous->setName(L"*U");
    ASSERT_EQ(table->add(anonymous), Acad::eOk);
    const ACHAR* name = nullptr;
    anonymous->getName(name);
    EXPECT_STREQ(name, expected);
    EXPECT_TRUE(anonymous->isAnonymous());
    EXPECT_FALSE(anonymous->blockBeginId().handle().isNull()) << "a block has its begin and end markers";
    anonymous->close();
  }
  auto* layer = new AcDbLayerTableRecord;
  layer->setName(L"Wrong");
  EXPECT_EQ(static_cast<AcDbSymbolTable*>(table.object)->add(layer), Acad::eWrongObjectType);
  delete layer;
}

TEST_F(DrawingWithABlock, ABlockThatHoldsItselfHasNoExtents) {
  Append(new AcDbBlockReference(AcGePoint3d(0, 0, 0), block), block);
  const AcDbObjectId id = Append(new AcDbBlockReference(AcGePoint3d(0, 0, 0), block));
  Opened<AcDbBlockReference> ref(id, AcDb::kForRead);
  AcDbExtents ext;
  EXPECT_EQ(ref->getGeomExtents(ext), Acad::eSelfReference);
}

// --- Common properties --------------------------------------------------------------------------

TEST_F(NewDrawing, LayersAndLineTypesAreFoundByNameInTheWorkingDrawing) {
  AddLayer(L"Survey");
  auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
  EXPECT_EQ(line->layer(), nullptr) << "a new entity has no layer yet";
  EXPECT_EQ(line->setLayer(L"Nowhere"), Acad::eKeyNotFound);
  ASSERT_EQ(line->setLayer(L"survey"), Acad::eOk);
  EXPECT_EQ(line->setLinetype(L"Dashed"), Acad::eKeyNotFound);
  ASSERT_EQ(line->setLinetype(L"Continuous"), Acad::eOk);
  EXPECT_EQ(line->setColorIndex(257), Acad::eOutOfRange);
  ASSERT_EQ(line->setColorIndex(1), Acad::eOk);
  EXPECT_EQ(line->setLinetypeScale(0.0), Acad::eOutOfRange);
  const AcDbObjectId id = Append(line);
  Opened<AcDbLine> l(id, AcDb::kForRead);
  EXPECT_EQ(Take(l->layer()), L"Survey");
  EXPECT_EQ(Take(l->linetype()), L"Continuous");
  EXPECT_EQ(l->colorIndex(), 1);
  EXPECT_EQ(l->color().colorMethod(), AcCmEntityColor::kByACI);
}

TEST_F(NewDrawing, ALayerOfAnotherDrawingIsRefused) {
  AcDbDatabase side;
  AcDbObjectId foreignLayer = side.clayer();
  const AcDbObjectId line = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0)));
  Opened<AcDbLine> l(line, AcDb::kForWrite);
  EXPECT_EQ(l->setLayer(foreignLayer), Acad::eWrongDatabase);
  EXPECT_EQ(l->setLayer(line), Acad::eWrongObjectType);
  auto* loose = new AcDbLine;
  loose->setLayer(foreignLayer);
  Opened<AcDbBlockTableRecord> space(ModelSpaceId(), AcDb::kForWrite);
  EXPECT_EQ(space->appendAcDbEntity(loose), Acad::eWrongDatabase);
  delete loose;
}

TEST_F(NewDrawing, HighlightingNeedsTheEntityOpen) {
  const AcDbObjectId id = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0)));
  AcDbLine* line = nullptr;
  ASSERT_EQ(acdbOpenObject(line, id, AcDb::kForRead), Acad::eOk);
  EXPECT_EQ(line->highlight(), Acad::eOk);
  EXPECT_EQ(line->unhighlight(), Acad::eOk);
  line->close();
  EXPECT_EQ(line->highlight(), Acad::eNotOpenForRead);
  AcDbLine loose;
  EXPECT_EQ(loose.highlight(), Acad::eNotInDatabase);
}

}  // namespace
