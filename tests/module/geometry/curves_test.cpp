// CKdLine, CKdCircle and CKdPolyline: lines and arcs chained, measured and transformed.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#include "module/geometry/KdArc.h"
#include "module/geometry/KdCircle.h"
#include "module/geometry/KdConstants.h"
#include "module/geometry/KdLine.h"
#include "module/geometry/KdPolyline.h"
#include "module/geometry/KdXform.h"
#include "tests/module/geometry/GeometryTestUtil.h"

namespace {

using kdtest::Near;
using std::numbers::pi;

TEST(CKdLine, EvaluatesAlongTheSegment) {
  const CKdLine line(CKdPoint(1, 1, 0), CKdPoint(4, 5, 12));
  EXPECT_EQ(line.Length(), 13.0);
  EXPECT_TRUE(Near(line.Eval(0.5), {2.5, 3, 6}));
  EXPECT_TRUE(Near(line.Tangent(0.3), {3.0 / 13, 4.0 / 13, 12.0 / 13}));
  EXPECT_TRUE(Near(line.Eval(0), line.StartPoint()));
  EXPECT_TRUE(Near(line.Eval(1), line.EndPoint()));
  EXPECT_DOUBLE_EQ(line.ParamAtLength(6.5), 0.5);
  EXPECT_EQ(line.GetType(), 3);
  EXPECT_EQ(line.GetClassConstant(), 100);
  EXPECT_EQ(kdgeo::ToText(line), L"CKdLine from (1, 1, 0) to (4, 5, 12)");
}

TEST(CKdLine, ClosestParamIsClampedToTheSegment) {
  const CKdLine line(CKdPoint(0, 0), CKdPoint(10, 0));
  EXPECT_DOUBLE_EQ(line.ClosestParam(CKdPoint(3, 7)), 0.3);
  EXPECT_EQ(line.ClosestParam(CKdPoint(-5, 1)), 0.0);
  EXPECT_EQ(line.ClosestParam(CKdPoint(15, 1)), 1.0);
  const CKdLine point(CKdPoint(1, 1), CKdPoint(1, 1));
  EXPECT_EQ(point.ClosestParam(CKdPoint(3, 3)), 0.0);
  EXPECT_TRUE(Near(point.Tangent(0), {0, 0, 0}));
  EXPECT_FALSE(point.IsValid());
}

TEST(CKdLine, ReverseMirrorAndTransform) {
  CKdLine line(CKdPoint(1, 2, 3), CKdPoint(4, 6, 3));
  line.Reverse();
  EXPECT_EQ(line.StartPoint(), CKdPoint(4, 6, 3));
  line.MirrorX();
  EXPECT_EQ(line.StartPoint(), CKdPoint(4, -6, 3));
  line.MirrorY();
  EXPECT_EQ(line.EndPoint(), CKdPoint(-1, -2, 3));
  // A shear is fine for a line.
  const CKdXform shear = CKdXform::Scaling(2, 1, 1) * CKdXform::RotationZ(CKdPoint(0, 0), 0.5);
  const CKdLine before = line;
  ASSERT_TRUE(line.Transform(shear));
  EXPECT_TRUE(Near(line.Eval(0.25), shear.Apply(before.Eval(0.25))));
  EXPECT_TRUE(line.IsNotEqual(before));
  EXPECT_FALSE(line.IsEqual(CKdArc(CKdPoint(0, 0), 1, 0, 1)));
}

TEST(CKdCircle, MeasuresAndConvertsToAnArcAndAPolyline) {
  const CKdCircle circle(CKdPoint(1, 2, 3), 2);
  EXPECT_DOUBLE_EQ(circle.Area(), 4 * pi);
  EXPECT_DOUBLE_EQ(circle.Circumference(), 4 * pi);
  EXPECT_EQ(circle.GetType(), 2);
  const CKdArc arc = circle.ToArc();
  EXPECT_EQ(arc.Sweep(), kdgeo::kTwoPi);
  EXPECT_TRUE(Near(arc.StartPoint(), arc.EndPoint()));
  const CKdPolyline ring = circle.ToPolyline();
  EXPECT_TRUE(ring.IsClosed());
  EXPECT_NEAR(ring.Length(), circle.Circumference(), 1e-12);
  CKdPoint quarter;
  ASSERT_TRUE(ring.PointAtDistance(pi, quarter));
  EXPECT_TRUE(Near(quarter, {1, 4, 3}));
}

TEST(CKdCircle, TransformNeedsASimilarity) {
  CKdCircle circle(CKdPoint(1, 0), 1);
  ASSERT_TRUE(circle.Transform(CKdXform::Scaling(CKdPoint(0, 0), 3) * CKdXform::MirrorX()));
  EXPECT_TRUE(circle.IsEqual(CKdCircle(CKdPoint(3, 0), 3)));
  EXPECT_FALSE(circle.Transform(CKdXform::Scaling(1, 2, 1)));
  EXPECT_TRUE(circle.IsEqual(CKdCircle(CKdPoint(3, 0), 3)));
  const auto tilt = CKdXform::RotationAboutAxis(CKdPoint(0, 0), CKdVector(1, 0, 0), 0.3);
  ASSERT_TRUE(tilt.has_value());
  EXPECT_FALSE(circle.Transform(*tilt));
}

// A closed outline: a 10-long bottom line, a half circle of radius 5 to the top, and back.
class CKdPolylineOutline : public testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(outline.AddLine(CKdLine(CKdPoint(0, 0), CKdPoint(10, 0))));
    ASSERT_TRUE(outline.AddArc(CKdArc(CKdPoint(10, 5), 5, -pi / 2, pi)));
    ASSERT_TRUE(outline.AddLine(CKdLine(CKdPoint(10, 10), CKdPoint(0, 10))));
    outline.SetClosed(true);
  }
  CKdPolyline outline;
};

TEST_F(CKdPolylineOutline, SegmentsAreTheLinesAndArcsAdded) {
  ASSERT_EQ(outline.VertexCount(), 4u);
  ASSERT_EQ(outline.SegmentCount(), 4u);
  EXPECT_DOUBLE_EQ(outline.Bulge(1), 1.0);
  EXPECT_FALSE(outline.IsArcSegment(0));
  EXPECT_TRUE(outline.IsArcSegment(1));
  const std::unique_ptr<IKdCurve> arc = outline.Segment(1);
  ASSERT_NE(arc, nullptr);
  EXPECT_TRUE(Near(arc->Eval(0.5), {15, 5, 0}));
  EXPECT_TRUE(Near(outline.Segment(3)->EndPoint(), {0, 0, 0}));
  EXPECT_EQ(outline.Segment(4), nullptr);
  EXPECT_EQ(outline.GetType(), 4);
}

TEST_F(CKdPolylineOutline, LengthAndPointAtDistance) {
  EXPECT_NEAR(outline.Length(), 30 + 5 * pi, 1e-12);
  CKdPoint p;
  ASSERT_TRUE(outline.PointAtDistance(0, p));
  EXPECT_TRUE(Near(p, {0, 0, 0}));
  ASSERT_TRUE(outline.PointAtDistance(10 + 2.5 * pi, p));
  EXPECT_TRUE(Near(p, {15, 5, 0}));
  ASSERT_TRUE(outline.PointAtDistance(outline.Length(), p));
  EXPECT_TRUE(Near(p, {0, 0, 0}));
  EXPECT_FALSE(outline.PointAtDistance(-0.1, p));
  EXPECT_FALSE(outline.PointAtDistance(outline.Length() + 1e-9, p));
  EXPECT_FALSE(outline.PointAtDistance(std::nan(""), p));
  outline.SetClosed(false);
  EXPECT_NEAR(outline.Length(), 20 + 5 * pi, 1e-12);
}

TEST_F(CKdPolylineOutline, ReverseWalksTheSamePathBackwards) {
  const double length = outline.Length();
  // Closed: the reversed chain starts at the old last vertex, which the original reaches after
  // all but its closing segment.
  CKdPolyline reversed = outline;
  reversed.Reverse();
  EXPECT_NEAR(reversed.Length(), length, 1e-12);
  const double lastVertexAt = 20 + 5 * pi;
  for (double s = 0; s <= length; s += length / 16) {
    CKdPoint a, b;
    ASSERT_TRUE(reversed.PointAtDistance(s, a));
    ASSERT_TRUE(outline.PointAtDistance(std::fmod(lastVertexAt - s + length, length), b));
    EXPECT_TRUE(Near(a, b, 1e-9)) << "s=" << s;
  }
  CKdPoint p;
  ASSERT_TRUE(reversed.PointAtDistance(5, p));
  EXPECT_TRUE(Near(p, {5, 10, 0}));
  ASSERT_TRUE(reversed.PointAtDistance(10 + 2.5 * pi, p));
  EXPECT_TRUE(Near(p, {15, 5, 0}));
  reversed.Reverse();
  EXPECT_TRUE(reversed.IsEqual(outline));
  // Open: plainly from the other end.
  CKdPolyline open = outline;
  open.SetClosed(false);
  CKdPolyline openReversed = open;
  openReversed.Reverse();
  const double openLength = open.Length();
  for (double s = 0; s <= openLength; s += openLength / 16) {
    CKdPoint a, b;
    ASSERT_TRUE(openReversed.PointAtDistance(s, a));
    ASSERT_TRUE(open.PointAtDistance(std::max(0.0, openLength - s), b));
    EXPECT_TRUE(Near(a, b, 1e-9)) << "s=" << s;
  }
}

TEST_F(CKdPolylineOutline, ChordsStayWithinTheChordHeight) {
  const double h = 0.01;
  const CKdPolyline chords = outline.ToChords(h);
  ASSERT_TRUE(chords.IsClosed());
  ASSERT_GT(chords.VertexCount(), 4u);
  for (std::size_t i = 0; i < chords.VertexCount(); ++i) EXPECT_EQ(chords.Bulge(i), 0.0);
  // Every chord of the half circle has its ends on the circle and its middle within h of it.
  int onArc = 0;
  const CKdPoint centre(10, 5);
  for (std::size_t i = 0; i < chords.SegmentCount(); ++i) {
    const CKdPoint a = chords.Vertex(i), b = chords.Vertex((i + 1) % chords.VertexCount());
    if (a.x < 10 - 1e-9 || b.x < 10 - 1e-9 || (a.y == b.y)) continue;
    ++onArc;
    EXPECT_NEAR(a.DistanceTo(centre), 5, 1e-9);
    const CKdPoint mid((a.x + b.x) / 2, (a.y + b.y) / 2);
    EXPECT_LE(5 - mid.DistanceTo(centre), h * (1 + 1e-9));
  }
  // The fewest chords that meet h: pi / (2 acos(1 - h/r)).
  EXPECT_EQ(onArc, static_cast<int>(std::ceil(pi / (2 * std::acos(1 - h / 5)))));
  EXPECT_EQ(outline.ToChords(0).VertexCount(), 0u);
  EXPECT_EQ(outline.ToChords(-1).VertexCount(), 0u);
  EXPECT_EQ(outline.ToChords(INFINITY).VertexCount(), 0u);
}

TEST_F(CKdPolylineOutline, MirrorsAndSimilaritiesMoveEveryPoint) {
  const double length = outline.Length();
  auto check = [&](const CKdPolyline& moved, auto map) {
    for (double d = 0; d <= length; d += length / 12) {
      CKdPoint a, b;
      ASSERT_TRUE(outline.PointAtDistance(d, a));
      ASSERT_TRUE(moved.PointAtDistance(d * moved.Length() / length, b));
      EXPECT_TRUE(Near(b, map(a), 1e-9)) << "d=" << d;
    }
  };
  CKdPolyline mx = outline;
  mx.MirrorX();
  check(mx, [](CKdPoint p) { return CKdPoint(p.x, -p.y, p.z); });
  CKdPolyline my = outline;
  my.MirrorY();
  check(my, [](CKdPoint p) { return CKdPoint(-p.x, p.y, p.z); });
  const CKdXform similarity = CKdXform::MirrorY() * CKdXform::RotationZ(CKdPoint(1, 1), 1.2) *
                              CKdXform::Scaling(CKdPoint(0, 0), 0.5);
  CKdPolyline moved = outline;
  ASSERT_TRUE(moved.Transform(similarity));
  check(moved, [&](CKdPoint p) { return similarity.Apply(p); });
  CKdPolyline rotated = outline;
  rotated.Rotate(CKdPoint(2, 3), -0.4);
  check(rotated, [](CKdPoint p) { return p.RotatedXY(CKdPoint(2, 3), -0.4); });
}

TEST_F(CKdPolylineOutline, ShearIsRefusedOnlyWhenThereAreArcs) {
  const CKdXform shear = CKdXform::Scaling(1, 3, 1);
  CKdPolyline copy = outline;
  EXPECT_FALSE(copy.Transform(shear));
  EXPECT_TRUE(copy.IsEqual(outline));
  CKdPolyline straight = kdtest::Rectangle(0, 0, 2, 1);
  ASSERT_TRUE(straight.Transform(shear));
  EXPECT_EQ(straight.Vertex(2), CKdPoint(2, 3, 0));
}

TEST(CKdPolyline, ReversedRingRunsItsClosingArcBackwards) {
  // Both segments arcs, the second one closing the ring.
  const CKdPolyline ring({{2, 0, 1}, {0, 2, 1}}, {std::tan(pi / 8), std::tan(3 * pi / 8)}, true);
  const double length = ring.Length();
  ASSERT_NEAR(length, 4 * pi, 1e-12);
  CKdPolyline reversed = ring;
  reversed.Reverse();
  const double lastVertexAt = pi;  // the quarter arc to (0, 2)
  for (double s = 0; s <= length; s += length / 16) {
    CKdPoint a, b;
    ASSERT_TRUE(reversed.PointAtDistance(s, a));
    ASSERT_TRUE(ring.PointAtDistance(std::fmod(lastVertexAt - s + length, length), b));
    EXPECT_TRUE(Near(a, b, 1e-9)) << "s=" << s;
  }
}

TEST(CKdPolyline, AppendingNeedsAConnectedStart) {
  CKdPolyline chain;
  ASSERT_TRUE(chain.AddArc(CKdArc(CKdPoint(0, 0), 1, 0, pi / 2)));
  EXPECT_FALSE(chain.AddLine(CKdLine(CKdPoint(5, 5), CKdPoint(6, 6))));
  EXPECT_FALSE(chain.AddArc(CKdArc(CKdPoint(9, 9), 1, 0, 1)));
  EXPECT_EQ(chain.VertexCount(), 2u);
  EXPECT_TRUE(chain.AddLine(CKdLine(CKdPoint(0, 1 + 5e-7), CKdPoint(-3, 1))));
  EXPECT_EQ(chain.VertexCount(), 3u);
  // Nothing that is not an arc of at most a full turn.
  EXPECT_FALSE(chain.AddArc(CKdArc(CKdPoint(-3, 0), 1, pi / 2, -7.0)));
  EXPECT_FALSE(chain.AddArc(CKdArc(CKdPoint(-3, 0), 0, pi / 2, 1.0)));
  EXPECT_EQ(chain.VertexCount(), 3u);
}

TEST(CKdPolyline, FullTurnArcBecomesTwoHalves) {
  CKdPolyline ring;
  ASSERT_TRUE(ring.AddArc(CKdArc(CKdPoint(0, 0, 2), 3, 0, -kdgeo::kTwoPi)));
  ASSERT_EQ(ring.VertexCount(), 3u);
  EXPECT_EQ(ring.Bulge(0), -1.0);
  EXPECT_EQ(ring.Bulge(1), -1.0);
  EXPECT_TRUE(Near(ring.Vertex(1), {-3, 0, 2}));
  EXPECT_NEAR(ring.Length(), 6 * pi, 1e-12);
  CKdPoint p;
  ASSERT_TRUE(ring.PointAtDistance(1.5 * pi, p));
  EXPECT_TRUE(Near(p, {0, -3, 2}));
}

TEST(CKdPolyline, BulgeSegmentsMatchTheArcsTheyCameFrom) {
  const CKdArc arcs[] = {CKdArc(CKdPoint(1, 2, 3), 4, 0.3, 2.0), CKdArc(CKdPoint(1, 2, 3), 4, 5.9, -4.5),
                         CKdArc(CKdPoint(-7, 0, 0), 0.5, 3.0, 0.2)};
  for (const CKdArc& arc : arcs) {
    CKdPolyline one;
    ASSERT_TRUE(one.AddArc(arc));
    const std::unique_ptr<IKdCurve> segment = one.Segment(0);
    for (double t = 0; t <= 1; t += 0.125) EXPECT_TRUE(Near(segment->Eval(t), arc.Eval(t), 1e-9));
    CKdArc rebuilt;
    ASSERT_TRUE(kdgeo::ArcFromBulge(arc.StartPoint(), arc.EndPoint(), arc.Bulge(), rebuilt));
    EXPECT_NEAR(rebuilt.Radius(), arc.Radius(), 1e-9);
    EXPECT_TRUE(Near(rebuilt.Center(), arc.Center(), 1e-9));
  }
  CKdArc unused;
  EXPECT_FALSE(kdgeo::ArcFromBulge(CKdPoint(1, 1), CKdPoint(1, 1), 0.5, unused));
  EXPECT_FALSE(kdgeo::ArcFromBulge(CKdPoint(1, 1), CKdPoint(2, 1), 0.0, unused));
  EXPECT_FALSE(kdgeo::ArcFromBulge(CKdPoint(1, 1), CKdPoint(2, 1), NAN, unused));
}

TEST(CKdPolyline, DegenerateChainsAnswerQuietly) {
  CKdPolyline empty;
  CKdPoint p;
  EXPECT_EQ(empty.SegmentCount(), 0u);
  EXPECT_EQ(empty.Length(), 0.0);
  EXPECT_FALSE(empty.PointAtDistance(0, p));
  EXPECT_FALSE(empty.IsValid());
  EXPECT_EQ(empty.Vertex(3), CKdPoint());
  EXPECT_FALSE(empty.SetBulge(0, 1.0));
  empty.Reverse();
  CKdPolyline single({CKdPoint(1, 1)}, {0.5, 0.7}, true);
  EXPECT_EQ(single.SegmentCount(), 0u);
  EXPECT_EQ(single.Bulge(1), 0.0);
  // A bulge between coincident vertices is a zero-length line, not an arc.
  CKdPolyline stutter({CKdPoint(1, 1), CKdPoint(1, 1), CKdPoint(2, 1)}, {0.5, 0, 0}, false);
  EXPECT_FALSE(stutter.IsArcSegment(0));
  EXPECT_DOUBLE_EQ(stutter.Length(), 1.0);
  EXPECT_TRUE(stutter.IsValid());
}

TEST(CKdPolyline, EqualityAndText) {
  const CKdPolyline a({CKdPoint(0, 0), CKdPoint(1, 0)}, {0.5}, false);
  EXPECT_TRUE(a.IsEqual(CKdPolyline({CKdPoint(0, 5e-7), CKdPoint(1, 0)}, {0.5 + 5e-7}, false)));
  EXPECT_FALSE(a.IsEqual(CKdPolyline({CKdPoint(0, 0), CKdPoint(1, 0)}, {0.5}, true)));
  EXPECT_FALSE(a.IsEqual(CKdPolyline({CKdPoint(0, 0), CKdPoint(1, 0)}, {0.5 + 2e-6}, false)));
  EXPECT_FALSE(a.IsEqual(CKdLine(CKdPoint(0, 0), CKdPoint(1, 0))));
  EXPECT_EQ(kdgeo::ToText(a), L"CKdPolyline open (0, 0, 0) bulge 0.5; (1, 0, 0) bulge 0");
}

}  // namespace
