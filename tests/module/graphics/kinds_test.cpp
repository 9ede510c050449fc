// The kinds' geometry: transforms, bounding rectangles and their caching, break-into-curves and
// the geometry primitives they build.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "module/geometry/KdArc.h"
#include "module/geometry/KdCircle.h"
#include "module/geometry/KdLine.h"
#include "module/geometry/KdPolyline.h"
#include "module/graphics/GrElementVector.h"
#include "tests/module/graphics/GraphicsTestUtil.h"

namespace {

using grtest::Near;
using kdgeo::kHalfPi;
using kdgeo::kPi;
using kdgeo::kTwoPi;

testing::AssertionResult SameRect(const CGrRect& actual, const CKdPoint& min, const CKdPoint& max,
                                  double tolerance = 1e-9) {
  if (actual.IsEmpty()) return testing::AssertionFailure() << "empty rectangle";
  if (!actual.Min().IsEqual(min, tolerance) || !actual.Max().IsEqual(max, tolerance)) {
    return testing::AssertionFailure() << actual << ", expected " << CGrRect(min, max);
  }
  return testing::AssertionSuccess();
}

// Every kind with geometry (the shallow element has none).
std::vector<std::unique_ptr<CGrElement>> GeometricSamples() {
  auto all = grtest::SampleElements();
  all.pop_back();
  return all;
}

TEST(GrTransformAllKinds, MovingShiftsTheRectangleByTheVector) {
  const CKdVector v(12.5, -3.25, 2);
  for (const auto& element : GeometricSamples()) {
    const CGrRect before = element->BoundingRect();
    element->Move(v);
    EXPECT_TRUE(SameRect(element->BoundingRect(), before.Min() + v, before.Max() + v)) << "type " << element->Type();
  }
}

TEST(GrTransformAllKinds, AQuarterTurnTurnsTheRectangleAboutTheBase) {
  const CKdPoint b(3, -2, 0);
  for (const auto& element : GeometricSamples()) {
    const CGrRect before = element->BoundingRect();
    element->Rotate(b, kHalfPi);
    const CKdPoint min(b.x - (before.Max().y - b.y), b.y + (before.Min().x - b.x), before.Min().z);
    const CKdPoint max(b.x - (before.Min().y - b.y), b.y + (before.Max().x - b.x), before.Max().z);
    EXPECT_TRUE(SameRect(element->BoundingRect(), min, max, 1e-7)) << "type " << element->Type();
  }
}

TEST(GrTransformAllKinds, UniformScalingScalesTheRectangleAndANegativeFactorMirrorsItThroughTheOrigin) {
  for (const double f : {2.5, -1.0, -0.5}) {
    for (const auto& element : GeometricSamples()) {
      const CGrRect before = element->BoundingRect();
      element->Scale(f);
      const CKdPoint a = grgeo::Scaled(before.Min(), f);
      const CKdPoint b = grgeo::Scaled(before.Max(), f);
      EXPECT_TRUE(SameRect(element->BoundingRect(), CGrRect(a, b).Min(), CGrRect(a, b).Max(), 1e-7))
          << "type " << element->Type() << " factor " << f;
    }
  }
}

TEST(GrTransformAllKinds, ScalingPerAxisScalesEveryPointOfTheKindsMadeOfPoints) {
  for (const auto& element : GeometricSamples()) {
    const int type = element->Type();
    // Curved kinds cannot take unequal factors exactly; the block scales its factors as they are.
    if (type == grkind::kCircle || type == grkind::kArc || type == grkind::kPolyline ||
        type == grkind::kElementBlock || type == grkind::kGroup || type == grkind::kHatch) {
      continue;
    }
    const CGrRect before = element->BoundingRect();
    element->ScaleAxes(2, -3, 0.5);
    const CKdPoint a = grgeo::ScaledAxes(before.Min(), 2, -3, 0.5);
    const CKdPoint b = grgeo::ScaledAxes(before.Max(), 2, -3, 0.5);
    EXPECT_TRUE(SameRect(element->BoundingRect(), CGrRect(a, b).Min(), CGrRect(a, b).Max(), 1e-7)) << "type " << type;
  }
}

TEST(GrCircle, ScalesAllCoordinatesAndTheRadiusByTheXFactorAlone) {
  CGrCircle circle(CKdPoint(1, 1, 1), 2.0);
  circle.ScaleAxes(2, 3, 4);
  EXPECT_TRUE(Near(circle.Center(), CKdPoint(2, 2, 2)));
  EXPECT_DOUBLE_EQ(circle.Radius(), 4.0);
  circle.Scale(-0.5);
  EXPECT_TRUE(Near(circle.Center(), CKdPoint(-1, -1, -1)));
  EXPECT_DOUBLE_EQ(circle.Radius(), 2.0) << "lengths stay non-negative";
}

TEST(GrCircle, RectangleIsTheCentrePlusMinusTheRadius) {
  const CGrCircle circle(CKdPoint(10, -20, 5), 7.5);
  EXPECT_TRUE(SameRect(circle.BoundingRect(), CKdPoint(2.5, -27.5, 5), CKdPoint(17.5, -12.5, 5)));
}

TEST(GrArc, RectangleHoldsTheEndPointsAndTheAxisPointsPassed) {
  EXPECT_TRUE(SameRect(CGrArc(CKdPoint(0, 0), 1, 0, kHalfPi).BoundingRect(), CKdPoint(0, 0), CKdPoint(1, 1)));
  // Clockwise from 135 to 45 degrees passes 90.
  const double h = std::sqrt(0.5);
  EXPECT_TRUE(SameRect(CGrArc(CKdPoint(0, 0), 1, 3 * kPi / 4, -kHalfPi).BoundingRect(), CKdPoint(-h, h), CKdPoint(h, 1)));
  // Through 0 from below, as an unnormalised start angle.
  EXPECT_TRUE(SameRect(CGrArc(CKdPoint(5, 5, 2), 2, -kHalfPi, kPi).BoundingRect(), CKdPoint(5, 3, 2), CKdPoint(7, 7, 2)));
  EXPECT_TRUE(SameRect(CGrArc(CKdPoint(0, 0), 3, 1.0, kTwoPi).BoundingRect(), CKdPoint(-3, -3), CKdPoint(3, 3)));
}

TEST(GrArc, MirroringByANegativeFactorKeepsItTheMirrorImage) {
  CGrArc arc(CKdPoint(2, 1, 0), 3, 0.3, 1.1);
  const CKdPoint start = arc.CurveStart();
  const CKdPoint end = arc.CurveEnd();
  arc.ScaleAxes(-1, 1, 1);
  EXPECT_TRUE(Near(arc.CurveStart(), CKdPoint(-start.x, start.y, 0)));
  EXPECT_TRUE(Near(arc.CurveEnd(), CKdPoint(-end.x, end.y, 0)));
  arc.ScaleAxes(2, -2, 1);
  EXPECT_DOUBLE_EQ(arc.Radius(), 6.0);
  EXPECT_TRUE(Near(arc.CurveStart(), CKdPoint(-2 * start.x, -2 * start.y, 0)));
  EXPECT_TRUE(Near(arc.CurveEnd(), CKdPoint(-2 * end.x, -2 * end.y, 0)));
}

TEST(GrArc, RotationTurnsTheCentreAndTheStartAngle) {
  CGrArc arc(CKdPoint(2, 0, 7), 1, 0.5, 1.0);
  arc.Rotate(CKdPoint(1, 0), kHalfPi);
  EXPECT_TRUE(Near(arc.Center(), CKdPoint(1, 1, 7)));
  EXPECT_DOUBLE_EQ(arc.StartAngle(), 0.5 + kHalfPi);
  EXPECT_DOUBLE_EQ(arc.Sweep(), 1.0);
}

class GrPolylineCaching : public testing::Test {
protected:
  // A polyline of one line, drawn from (0, 0) to `corner`; the rectangle asked for once.
  void Make(const CKdPoint& corner) {
    polyline.Add(new CGrLine(CKdPoint(0, 0), corner));
    polyline.BoundingRect();
  }
  // The line changed behind the polyline's back, so that only a recomputation shows it.
  void StretchLineBehindItsBack() { static_cast<CGrLine*>(polyline.Curve(0)->CurveElement())->SetEnd(CKdPoint(5, 5)); }
  CGrPolyline polyline;
};

TEST_F(GrPolylineCaching, AStoredRectangleIsReturnedUntilThePolylineChanges) {
  Make(CKdPoint(1, 1));
  StretchLineBehindItsBack();
  EXPECT_TRUE(SameRect(polyline.BoundingRect(), CKdPoint(0, 0), CKdPoint(1, 1)));
  polyline.Move(CKdVector(0, 0, 0));
  EXPECT_TRUE(SameRect(polyline.BoundingRect(), CKdPoint(0, 0), CKdPoint(5, 5)));
}

TEST_F(GrPolylineCaching, ARectangleOfBothSidesUnderAThousandthIsRecomputedOnEveryRequest) {
  Make(CKdPoint(0.0005, 0.0005));
  StretchLineBehindItsBack();
  EXPECT_TRUE(SameRect(polyline.BoundingRect(), CKdPoint(0, 0), CKdPoint(5, 5)));
}

TEST_F(GrPolylineCaching, OneSideOfAThousandthIsEnoughToKeepIt) {
  Make(CKdPoint(0.001, 0.0));
  StretchLineBehindItsBack();
  EXPECT_TRUE(SameRect(polyline.BoundingRect(), CKdPoint(0, 0), CKdPoint(0.001, 0)));
}

TEST(GrPolyline, WithNoCurvesAMoveStillMarksItModified) {
  CGrPolyline polyline;
  polyline.SetModified(false);
  polyline.Move(CKdVector(1, 2, 3));
  EXPECT_TRUE(polyline.IsModified());
  EXPECT_TRUE(polyline.BoundingRect().IsEmpty());
}

TEST(GrPolyline, OperationsReachEveryCurve) {
  auto polyline = grtest::SamplePolyline(0);
  polyline->SetColor(CGrColor::FromIndex(3));
  polyline->Move(CKdVector(1, 1, 0));
  for (std::size_t i = 0; i < polyline->CurveCount(); ++i) {
    EXPECT_EQ(polyline->Curve(i)->CurveElement()->Color(), CGrColor::FromIndex(3));
  }
  EXPECT_TRUE(Near(polyline->Curve(0)->CurveStart(), CKdPoint(1, 1, 1)));
  EXPECT_TRUE(Near(polyline->Curve(1)->CurveEnd(), CKdPoint(11, 11, 1)));
  polyline->SetLayerName(L"Only the polyline");
  EXPECT_EQ(polyline->Curve(0)->CurveElement()->LayerName(), L"");
  polyline->Add(nullptr);
  EXPECT_EQ(polyline->CurveCount(), 3u);
}

TEST(GrPolyline, BuildsTheKitsPolylineWithBulges) {
  const auto polyline = grtest::SamplePolyline(0);
  const std::unique_ptr<CKdElement> geometry(polyline->MakeGeometry());
  const auto* kit = dynamic_cast<const CKdPolyline*>(geometry.get());
  ASSERT_NE(kit, nullptr);
  EXPECT_TRUE(kit->IsClosed());
  ASSERT_EQ(kit->VertexCount(), 3u) << "the closing curve ends where the first starts";
  EXPECT_TRUE(Near(kit->Vertex(0), CKdPoint(0, 0, 1)));
  EXPECT_TRUE(Near(kit->Vertex(1), CKdPoint(10, 0, 1)));
  EXPECT_TRUE(Near(kit->Vertex(2), CKdPoint(10, 10, 1)));
  EXPECT_NEAR(kit->Bulge(1), 1.0, 1e-12) << "a counter-clockwise half circle";
  EXPECT_EQ(kit->Bulge(0), 0.0);

  CGrPolyline gapped;
  gapped.Add(new CGrLine(CKdPoint(0, 0), CKdPoint(1, 0)));
  gapped.Add(new CGrLine(CKdPoint(2, 0), CKdPoint(3, 0)));
  const std::unique_ptr<CKdElement> bridged(gapped.MakeGeometry());
  EXPECT_EQ(static_cast<const CKdPolyline*>(bridged.get())->VertexCount(), 4u) << "a gap is a straight segment";
}

class GrElementBlockPlacement : public testing::Test {
protected:
  void SetUp() override {
    block.Add(new CGrLine(CKdPoint(-1, 0), CKdPoint(1, 0)));
    block.SetScaleFactors(CKdVector(2, 2, 1));
    block.SetRotation(kHalfPi);
    block.SetPosition(CKdPoint(10, 0));
    block.SetModified(false);
  }
  CGrElementBlock block;
};

TEST_F(GrElementBlockPlacement, ChildrenAreScaledTurnedAndMovedIntoPlace) {
  EXPECT_TRUE(SameRect(block.BoundingRect(), CKdPoint(10, -2), CKdPoint(10, 2)));
  ASSERT_EQ(block.PlacedElements().Size(), 1u);
  const auto* placed = static_cast<const CGrLine*>(block.PlacedElements().At(0));
  EXPECT_TRUE(Near(placed->Start(), CKdPoint(10, -2)));
  EXPECT_TRUE(Near(static_cast<const CGrLine*>(block.Elements().At(0))->Start(), CKdPoint(-1, 0))) << "kept as given";
}

TEST_F(GrElementBlockPlacement, MovesWithinTheToleranceOfZeroDoNothing) {
  block.Move(CKdVector(0.0000005, 0, 0));
  EXPECT_EQ(block.Position(), CKdPoint(10, 0));
  block.Move(CKdVector(0.00001, 0, 0));
  EXPECT_EQ(block.Position(), CKdPoint(10.00001, 0));
  EXPECT_FALSE(block.IsModified()) << "a move leaves the modified flag as it is";
  EXPECT_TRUE(SameRect(block.BoundingRect(), CKdPoint(10.00001, -2), CKdPoint(10.00001, 2)));
}

TEST_F(GrElementBlockPlacement, ScalesWithinTheToleranceOfOneDoNothing) {
  block.ScaleAxes(1.0000005, 0.9999995, 1);
  block.Scale(1.0000005);
  EXPECT_EQ(block.Position(), CKdPoint(10, 0));
  EXPECT_EQ(block.ScaleFactors(), CKdVector(2, 2, 1));
  block.ScaleAxes(3, 1, 1);
  EXPECT_EQ(block.Position(), CKdPoint(30, 0));
  EXPECT_EQ(block.ScaleFactors(), CKdVector(6, 2, 1));
  block.Scale(0.5);
  EXPECT_EQ(block.Position(), CKdPoint(15, 0));
  EXPECT_EQ(block.ScaleFactors(), CKdVector(3, 1, 0.5));
  EXPECT_FALSE(block.IsModified()) << "a scale leaves the modified flag as it is";
  // Factors act in the child's own axes: its line along x grows threefold, then turns onto y.
  EXPECT_TRUE(SameRect(block.BoundingRect(), CKdPoint(15, -3), CKdPoint(15, 3)));
}

TEST_F(GrElementBlockPlacement, RotationTurnsThePositionAndMarksItModified) {
  block.Rotate(CKdPoint(0, 0), kHalfPi);
  EXPECT_TRUE(Near(block.Position(), CKdPoint(0, 10)));
  EXPECT_DOUBLE_EQ(block.Rotation(), kPi);
  EXPECT_TRUE(block.IsModified());
  EXPECT_TRUE(SameRect(block.BoundingRect(), CKdPoint(-2, 10), CKdPoint(2, 10), 1e-9));
}

TEST(GrBreakIntoCurves, ACircleGivesOneFullLineArcFromTheStartAngleGiven) {
  CGrCircle circle(CKdPoint(1, 2, 3), 4);
  circle.SetColor(CGrColor::FromIndex(5));
  circle.SetLayerName(L"L");
  CGrElementVector pieces;
  circle.BreakIntoCurves(pieces);
  circle.BreakIntoCurves(pieces, 1.25);
  ASSERT_EQ(pieces.Size(), 2u);
  for (std::size_t i = 0; i < 2; ++i) {
    const auto* arc = dynamic_cast<const CGrLineArc*>(pieces.At(i));
    ASSERT_NE(arc, nullptr);
    EXPECT_EQ(arc->Center(), CKdPoint(1, 2, 3));
    EXPECT_EQ(arc->Radius(), 4.0);
    EXPECT_EQ(arc->Sweep(), kTwoPi);
    EXPECT_EQ(arc->Color(), CGrColor::FromIndex(5));
    EXPECT_EQ(arc->LayerName(), L"L");
  }
  EXPECT_EQ(static_cast<const CGrArc*>(pieces.At(0))->StartAngle(), 0.0);
  EXPECT_EQ(static_cast<const CGrArc*>(pieces.At(1))->StartAngle(), 1.25);
}

TEST(GrBreakIntoCurves, KindsGiveTheirPieces) {
  CGrElementVector pieces;
  const CGrText text(CKdPoint(0, 0), 1, L"x");
  text.BreakIntoCurves(pieces);
  ASSERT_EQ(pieces.Size(), 1u) << "the base gives a clone of the element";
  EXPECT_TRUE(grtest::SameElement(*pieces.At(0), text));

  pieces.Clear();
  grtest::SamplePolyline(0)->BreakIntoCurves(pieces);
  ASSERT_EQ(pieces.Size(), 3u);
  EXPECT_EQ(pieces.At(1)->Type(), grkind::kArc);

  pieces.Clear();
  const CGrVertexPolyline square({{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}, true);
  square.BreakIntoCurves(pieces);
  ASSERT_EQ(pieces.Size(), 4u);
  EXPECT_TRUE(Near(static_cast<const CGrLine*>(pieces.At(3))->End(), CKdPoint(0, 0)));

  pieces.Clear();
  CGrGroup group;
  group.Add(new CGrCircle(CKdPoint(0, 0), 1));
  group.Add(grtest::SamplePolyline(0).release());
  group.BreakIntoCurves(pieces);
  ASSERT_EQ(pieces.Size(), 4u);
  EXPECT_NE(dynamic_cast<const CGrLineArc*>(pieces.At(0)), nullptr);

  pieces.Clear();
  CGrElementBlock block;
  block.Add(new CGrLine(CKdPoint(0, 0), CKdPoint(1, 0)));
  block.SetPosition(CKdPoint(5, 5));
  block.BreakIntoCurves(pieces);
  ASSERT_EQ(pieces.Size(), 1u);
  EXPECT_TRUE(Near(static_cast<const CGrLine*>(pieces.At(0))->Start(), CKdPoint(5, 5))) << "placed";
}

TEST(GrMakeGeometry, KindsWithAKitPrimitiveBuildIt) {
  const CGrCircle circle(CKdPoint(1, 2, 3), 4);
  const std::unique_ptr<CKdElement> kitCircle(circle.MakeGeometry());
  ASSERT_NE(dynamic_cast<CKdCircle*>(kitCircle.get()), nullptr);
  EXPECT_EQ(static_cast<CKdCircle*>(kitCircle.get())->Center(), CKdPoint(1, 2, 3));
  EXPECT_EQ(static_cast<CKdCircle*>(kitCircle.get())->Radius(), 4.0);

  const std::unique_ptr<CKdElement> kitLine(CGrLine(CKdPoint(0, 0), CKdPoint(1, 1)).MakeGeometry());
  ASSERT_NE(dynamic_cast<CKdLine*>(kitLine.get()), nullptr);
  EXPECT_EQ(static_cast<CKdLine*>(kitLine.get())->EndPoint(), CKdPoint(1, 1));

  const std::unique_ptr<CKdElement> kitArc(CGrArc(CKdPoint(0, 0), 2, 0.5, -1.0).MakeGeometry());
  ASSERT_NE(dynamic_cast<CKdArc*>(kitArc.get()), nullptr);
  EXPECT_DOUBLE_EQ(static_cast<CKdArc*>(kitArc.get())->Sweep(), -1.0);

  const std::unique_ptr<CKdElement> kitVertices(CGrVertexPolyline({{0, 0, 0}, {1, 0, 0}}, false).MakeGeometry());
  ASSERT_NE(dynamic_cast<CKdPolyline*>(kitVertices.get()), nullptr);
  EXPECT_EQ(static_cast<CKdPolyline*>(kitVertices.get())->VertexCount(), 2u);

  for (const auto& element : grtest::SampleElements()) {
    const int type = element->Type();
    const bool hasPrimitive = type == grkind::kCircle || type == grkind::kLine || type == grkind::kArc ||
                              type == grkind::kPolyline || type == grkind::kVertexPolyline;
    EXPECT_EQ(std::unique_ptr<CKdElement>(element->MakeGeometry()) != nullptr, hasPrimitive) << "type " << type;
  }
}

TEST(GrEllipse, RectangleHoldsTheExtremesOfTheArc) {
  const CGrEllipse whole(CKdPoint(3, 4, 5), CKdVector(0, 2, 0), CKdVector(6, 0, 0), 0, 0);
  EXPECT_TRUE(SameRect(whole.BoundingRect(), CKdPoint(-3, 2, 5), CKdPoint(9, 6, 5)));
  const CGrEllipse half(CKdPoint(0, 0, 0), CKdVector(0, 2, 0), CKdVector(6, 0, 0), 0, kPi);
  EXPECT_TRUE(SameRect(half.BoundingRect(), CKdPoint(-6, 0, 0), CKdPoint(6, 2, 0)));
  // A tilted whole ellipse: half extents sqrt(major.x^2 + minor.x^2) and likewise in y.
  const CGrEllipse tilted(CKdPoint(0, 0, 0), CKdVector(-0.8, 0.6, 0), CKdVector(3, 4, 0), 1.0, 1.0 + kTwoPi);
  const double hx = std::sqrt(9 + 0.64);
  const double hy = std::sqrt(16 + 0.36);
  EXPECT_TRUE(SameRect(tilted.BoundingRect(), CKdPoint(-hx, -hy, 0), CKdPoint(hx, hy, 0), 1e-12));
}

TEST(GrMesh, FaceIndicesComeInThreesAndATrailingRemainderIsIgnored) {
  CGrMesh mesh;
  mesh.SetFaceIndices({0, 1, 2, 2, 3, 0, 7, 8});
  ASSERT_EQ(mesh.Faces().size(), 2u);
  EXPECT_EQ(mesh.Faces()[1], (CGrMesh::Face{2, 3, 0}));
  EXPECT_EQ(CGrMeshMaterial().name, L"Ostrevan Default Material");
}

TEST(GrText, DefaultsToTheKdTextStyle) { EXPECT_EQ(CGrText().StyleName(), L"KDText"); }

}  // namespace
