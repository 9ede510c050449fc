// Every element kind drawn through the graphics context and read back: geometry, colour, layer,
// line type, tag and id tag survive, and a second draw does not append a second entity.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <numbers>

#include "DrawingTestUtil.h"
#include "EveryKind.h"
#include "module/acad/GrAcadPolylineDc.h"
#include "module/acad/GrAcadTextDc.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbhatch.h"
#include "platform/acad/dbpl.h"
#include "platform/acad/dbsol3d.h"
#include "platform/acad/dbtable.h"

namespace {

using acadtest::ADrawing;
using acadtest::ModelSpaceCount;

using acadtest::Outline;
using acadtest::Sample;
using acadtest::Samples;
constexpr double kPi = std::numbers::pi;

class EveryKind : public ADrawing, public ::testing::WithParamInterface<Sample> {};

TEST_P(EveryKind, DrawsAndReadsBackEqualByEitherId) {
  std::unique_ptr<CGrElement> element = GetParam().make();
  grtest::Decorate(*element, 6);
  const int before = ModelSpaceCount();
  std::unique_ptr<CGrElement> read = RoundTrip(*element);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(ModelSpaceCount(), before + 1);
  EXPECT_TRUE(grtest::SameElement(*read, *element));
  EXPECT_EQ(read->SessionId(), element->SessionId());
  EXPECT_EQ(read->Handle(), element->Handle());
  EXPECT_FALSE(element->IsModified()) << "the drawing side clears the flag once drawn";

  std::unique_ptr<CGrElement> byHandle(context.MakeElementFromHandle(element->Handle()));
  ASSERT_NE(byHandle, nullptr);
  EXPECT_TRUE(grtest::SameElement(*byHandle, *element));
}

TEST_P(EveryKind, DrawingTwiceUpdatesTheSameEntity) {
  std::unique_ptr<CGrElement> element = GetParam().make();
  grtest::Decorate(*element, 9);
  ASSERT_EQ(context.Draw(element.get()), 0);
  const int count = ModelSpaceCount();
  const std::int64_t handle = element->Handle();
  ASSERT_EQ(context.Draw(element.get()), 0) << "unchanged";
  EXPECT_EQ(element->Handle(), handle);
  EXPECT_EQ(ModelSpaceCount(), count);

  element->Move(CKdVector(1.0, -2.0, 0.0));
  element->SetColor(CGrColor(0x00204080u));
  element->SetModified(true);  // the block keeps its flag on moves, on purpose
  ASSERT_EQ(context.Draw(element.get()), 0) << "changed";
  EXPECT_EQ(ModelSpaceCount(), count);
  std::unique_ptr<CGrElement> read(context.MakeElementFromSessionId(element->SessionId()));
  ASSERT_NE(read, nullptr);
  EXPECT_TRUE(grtest::SameElement(*read, *element));
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryKind, ::testing::ValuesIn(Samples()),
                         [](const ::testing::TestParamInfo<Sample>& info) { return info.param.name; });

TEST_F(ADrawing, GroupKeepsNameMembersAndTag) {
  CGrGroup group(L"Borehole logs");
  auto* label = new CGrText(CKdPoint(0, 0, 0), 1.0, L"BH1");
  grtest::Decorate(*label, 2);
  group.Add(label);
  auto outline = Outline(20, 0, 0, false);
  outline->SetLayerName(L"C-BORE");
  group.Add(outline.release());
  group.SetTag(L"logs");
  std::unique_ptr<CGrElement> read = RoundTrip(group);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(ModelSpaceCount(), 2) << "members are drawn into model space";
  EXPECT_TRUE(grtest::SameElement(*read, group));
  ASSERT_EQ(context.Draw(&group), 0);
  EXPECT_EQ(ModelSpaceCount(), 2);

  CGrGroup anonymous;
  anonymous.Add(new CGrLine(CKdPoint(0, 0, 0), CKdPoint(1, 1, 0)));
  read = RoundTrip(anonymous);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(static_cast<CGrGroup&>(*read).Name(), L"");
}

TEST_F(ADrawing, ArcsNeverReadBackAsCircles) {
  for (double sweep : {0.25, kPi, 2.0 * kPi, -1.0}) {
    CGrArc arc(CKdPoint(0, 0, 0), 3.0, 1.0, sweep);
    std::unique_ptr<CGrElement> read = RoundTrip(arc);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->Type(), grkind::kArc) << sweep;
    EXPECT_NE(dynamic_cast<CGrArc*>(read.get()), nullptr);
  }
  // A clockwise arc comes back counter-clockwise over the same points.
  CGrArc clockwise(CKdPoint(0, 0, 0), 3.0, 1.0, -1.0);
  std::unique_ptr<CGrElement> read = RoundTrip(clockwise);
  const auto& arc = static_cast<const CGrArc&>(*read);
  EXPECT_NEAR(arc.StartAngle(), 0.0, 1e-12);
  EXPECT_NEAR(arc.Sweep(), 1.0, 1e-12);
}

TEST_F(ADrawing, FacesReadBackAsTriangleOrRectangleByTheirVertices) {
  CGrRectangleFace collapsed(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0), CKdPoint(1, 1, 0), CKdPoint(1, 1, 0));
  std::unique_ptr<CGrElement> read = RoundTrip(collapsed);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->Type(), grkind::kTriangleFace) << "third and fourth corners equal";
  EXPECT_TRUE(grtest::Near(static_cast<CGrTriangleFace&>(*read).Corner(2), CKdPoint(1, 1, 0)));

  CGrRectangleFace almost(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0), CKdPoint(1, 1, 0), CKdPoint(1, 1, 1e-6));
  read = RoundTrip(almost);
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->Type(), grkind::kRectangleFace) << "1e-6 apart is beyond AutoCAD's tolerance";
}

TEST_F(ADrawing, PolylineEntitiesAreOfTheChosenType) {
  for (int type : {gracad::kLightweightPolyline, gracad::k2dPolyline, gracad::k3dPolyline}) {
    std::unique_ptr<CGrPolyline> polyline = Outline(0, 0, type, false);
    ASSERT_EQ(context.Draw(polyline.get()), 0);
    CGrAcadOpened<AcDbCurve> curve(acadtest::IdOf(*polyline), AcDb::kForRead);
    ASSERT_TRUE(curve);
    const AcRxClass* expected = type == gracad::k3dPolyline ? AcDb3dPolyline::desc()
                                : type == gracad::k2dPolyline ? AcDb2dPolyline::desc()
                                                              : AcDbPolyline::desc();
    EXPECT_EQ(curve->isA(), expected);
    EXPECT_TRUE(curve->isClosed());
  }
  // A 3D polyline has no arcs: they come back as straight pieces through points of the arc.
  std::unique_ptr<CGrPolyline> curved = Outline(0, 0, gracad::k3dPolyline, true);
  std::unique_ptr<CGrElement> read = RoundTrip(*curved);
  const auto& pieces = static_cast<const CGrPolyline&>(*read);
  EXPECT_EQ(pieces.CurveCount(), 2u + 16u);
  EXPECT_TRUE(grtest::Near(pieces.Curve(9)->CurveStart(), CKdPoint(15, 5, 0), 1e-9));
}

TEST_F(ADrawing, AHatchUpdateReplacesItsLoops) {
  CGrHatch hatch(L"");
  hatch.AddBorder(Outline(0, 0, 0, true).release());
  ASSERT_EQ(context.Draw(&hatch), 0);
  hatch.AddBorder(new CGrCircle(CKdPoint(5, 2, 0), 1.0));
  ASSERT_EQ(context.Draw(&hatch), 0);
  CGrAcadOpened<AcDbHatch> entity(acadtest::IdOf(hatch), AcDb::kForRead);
  ASSERT_TRUE(entity);
  EXPECT_EQ(entity->numLoops(), 2);
  EXPECT_STREQ(entity->patternName(), L"SOLID") << "no pattern named";
  entity.Close();
  CGrHatch open(L"");
  auto* notClosed = new CGrPolyline;
  notClosed->Add(new CGrLine(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0)));
  open.AddBorder(notClosed);
  EXPECT_EQ(context.Draw(&open), 1) << "a loop that does not close";
  EXPECT_EQ(open.SessionId(), 0);
}

TEST_F(ADrawing, TableIsATableEntityAndReadsBackAsABlock) {
  CGrTable table;
  table.SetLocation(CKdPoint(5, 6, 0));
  table.SetTitle(L"Volumes");
  table.SetRows({{L"Cut", L"12.5"}, {L"Fill", L"8.25"}});
  grtest::Decorate(table, 4);
  ASSERT_EQ(context.Draw(&table), 0);
  CGrAcadOpened<AcDbTable> entity(acadtest::IdOf(table), AcDb::kForRead);
  ASSERT_TRUE(entity);
  EXPECT_EQ(entity->numRows(), 3);
  EXPECT_EQ(entity->numColumns(), 2);
  EXPECT_EQ(entity->cellState(2, 1), AcDb::kCellStateContentLocked);
  std::unique_ptr<CGrElement> direct(context.DcForKind(grkind::kTable)->MakeElement(entity.get()));
  ASSERT_NE(direct, nullptr);
  EXPECT_TRUE(grtest::SameElement(*direct, table));
  entity.Close();
  std::unique_ptr<CGrElement> read(context.MakeElementFromSessionId(table.SessionId()));
  ASSERT_NE(read, nullptr);
  EXPECT_EQ(read->Type(), grkind::kElementBlock) << "a table is a block reference";
  const CGrElementVector& pieces = static_cast<CGrElementBlock&>(*read).Elements();
  EXPECT_EQ(std::count_if(pieces.begin(), pieces.end(), [](const auto& e) { return e->Type() == grkind::kText; }), 5)
      << "the title and four cells";
}

TEST_F(ADrawing, CylinderIsASolidAroundItsAxis) {
  CGrCylinder cylinder;
  cylinder.SetAxis(CKdPoint(1, 2, -2), CKdPoint(1, 2, 8));
  cylinder.SetTitle(L"Pile P1");
  cylinder.SetRows({{L"radius", L"0.75"}, {L"Load", L"120 kN"}});
  grtest::Decorate(cylinder, 8);
  ASSERT_EQ(context.Draw(&cylinder), 0);
  CGrAcadOpened<AcDb3dSolid> solid(acadtest::IdOf(cylinder), AcDb::kForRead);
  ASSERT_TRUE(solid);
  AcDbExtents box;
  ASSERT_EQ(solid->getGeomExtents(box), Acad::eOk);
  EXPECT_TRUE(box.minPoint().isEqualTo(AcGePoint3d(0.25, 1.25, -2), AcGeTol()));
  EXPECT_TRUE(box.maxPoint().isEqualTo(AcGePoint3d(1.75, 2.75, 8)));
  std::unique_ptr<CGrElement> direct(context.DcForKind(grkind::kCylinder)->MakeElement(solid.get()));
  ASSERT_NE(direct, nullptr);
  EXPECT_TRUE(grtest::SameElement(*direct, cylinder));
  solid.Close();
  EXPECT_EQ(context.MakeElementFromSessionId(cylinder.SessionId()), nullptr) << "a solid reads back as no kind";

  CGrCylinder unsized;
  unsized.SetAxis(CKdPoint(0, 0, 0), CKdPoint(20, 0, 0));
  CGrRect extents;
  ASSERT_EQ(context.GetExtents(&unsized, extents), 0);
  EXPECT_NEAR(extents.Max().y, 2.0, 1e-9) << "a tenth of the axis";
  CGrCylinder axisless;
  EXPECT_EQ(context.Draw(&axisless), 1);
}

TEST_F(ADrawing, ShallowElementRestylesAnEntityDrawnBefore) {
  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(3, 0, 0));
  ASSERT_EQ(context.Draw(&line), 0);
  CGrShallowElement shallow;
  EXPECT_EQ(context.Draw(&shallow), 1) << "nothing to stand for";
  shallow.SetHandle(line.Handle());
  shallow.SetColor(CGrColor::FromIndex(3));
  shallow.SetLayerName(L"C-ROAD");
  shallow.SetLineType(2);
  ASSERT_EQ(context.Draw(&shallow), 0);
  EXPECT_EQ(shallow.SessionId(), line.SessionId());
  std::unique_ptr<CGrElement> read(context.MakeElementFromSessionId(line.SessionId()));
  EXPECT_EQ(read->Color(), CGrColor::FromIndex(3));
  EXPECT_EQ(read->LayerName(), L"C-ROAD");
  EXPECT_EQ(read->LineType(), 2);
  EXPECT_TRUE(grtest::Near(static_cast<CGrLine&>(*read).End(), CKdPoint(3, 0, 0)));
}

TEST_F(ADrawing, ColoursMapOntoAutocadColours) {
  struct Case {
    CGrColor drawn;
    CGrColor read;
  };
  const Case cases[] = {
      {CGrColor::FromIndex(30), CGrColor::FromIndex(30)},
      {CGrColor(0x00ABCDEFu), CGrColor(0x00ABCDEFu)},
      {CGrColor(), CGrColor()},
      {CGrColor::FromIndex(static_cast<std::uint32_t>(-2)), CGrColor()},
      {CGrColor::FromIndex(256), CGrColor()},
      {CGrColor::FromIndex(static_cast<std::uint32_t>(-1)), CGrColor::FromIndex(static_cast<std::uint32_t>(-1))},
      {CGrColor::FromIndex(0), CGrColor::FromIndex(static_cast<std::uint32_t>(-1))},
      {CGrColor::FromIndex(7), CGrColor::FromIndex(static_cast<std::uint32_t>(-3))},
  };
  for (const Case& c : cases) {
    CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
    line.SetColor(c.drawn);
    std::unique_ptr<CGrElement> read = RoundTrip(line);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->Color(), c.read) << c.drawn;
  }
  CGrLine truecolour(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  truecolour.SetColor(CGrColor(0x00010203u));
  ASSERT_EQ(context.Draw(&truecolour), 0);
  CGrAcadOpened<AcDbEntity> entity(acadtest::IdOf(truecolour), AcDb::kForRead);
  EXPECT_TRUE(entity->color().isByColor());
  EXPECT_EQ(entity->color().red(), 3) << "red is the low byte of the element's RGB";
  EXPECT_EQ(entity->color().blue(), 1);
}

TEST_F(ADrawing, BadGeometryIsRefusedAndLeavesTheDrawingAlone) {
  CGrCircle zero(CKdPoint(0, 0, 0), 0.0);
  CGrText flat(CKdPoint(0, 0, 0), 0.0, L"x");
  CGrMesh wild;
  wild.SetVertices({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
  wild.SetFaces({{0, 1, 7}});
  CGrLine scaled(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  scaled.SetLineTypeScale(0.0);
  for (CGrElement* element : std::initializer_list<CGrElement*>{&zero, &flat, &wild, &scaled}) {
    EXPECT_EQ(context.Draw(element), 1) << element->Type();
    EXPECT_EQ(element->SessionId(), 0);
  }
  EXPECT_EQ(ModelSpaceCount(), 0);
}

}  // namespace
