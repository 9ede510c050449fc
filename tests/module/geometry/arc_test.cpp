// CKdArc against hand-worked values, the odd cases it keeps, and properties checked by
// independent computation.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <vector>

#include "module/geometry/KdArc.h"
#include "module/geometry/KdConstants.h"
#include "module/geometry/KdLine.h"
#include "module/geometry/KdXform.h"
#include "tests/module/geometry/GeometryTestUtil.h"

namespace {

using kdtest::Near;
using std::numbers::pi;
constexpr double kDeg = pi / 180.0;
const CKdPoint kOrigin(0.0, 0.0, 0.0);

TEST(CKdArcHandWorked, CounterClockwiseQuarter) {
  const CKdArc arc(kOrigin, 1.0, 0.0, pi / 2);
  EXPECT_TRUE(Near(arc.StartPoint(), {1, 0, 0}));
  EXPECT_TRUE(Near(arc.EndPoint(), {0, 1, 0}));
  EXPECT_TRUE(Near(arc.Eval(0.5), {std::cos(pi / 4), std::sin(pi / 4), 0}));
  EXPECT_TRUE(Near(arc.Tangent(0.0), {0, 1, 0}));
  EXPECT_TRUE(Near(arc.EndTangent(), {-1, 0, 0}));
  EXPECT_DOUBLE_EQ(arc.Bulge(), std::tan(pi / 8));
  EXPECT_DOUBLE_EQ(arc.Length(), pi / 2);
  EXPECT_DOUBLE_EQ(arc.EndAngle(), pi / 2);
  EXPECT_EQ(arc.Direction(), 1);
  EXPECT_TRUE(arc.IsCounterClockwise());
  EXPECT_FALSE(arc.IsClockwise());
  // The normal points to the left of travel: into the centre for a counter-clockwise arc.
  EXPECT_TRUE(Near(arc.NormalAt(0.0), {-1, 0, 0}));
}

TEST(CKdArcHandWorked, ClockwiseQuarterHasNegativeEndAngle) {
  const CKdArc arc(kOrigin, 1.0, 0.0, -pi / 2);
  EXPECT_TRUE(Near(arc.EndPoint(), {0, -1, 0}));
  EXPECT_TRUE(Near(arc.Tangent(0.0), {0, -1, 0}));
  EXPECT_EQ(arc.Direction(), -1);
  EXPECT_TRUE(arc.IsClockwise());
  EXPECT_DOUBLE_EQ(arc.Bulge(), -std::tan(pi / 8));
  EXPECT_DOUBLE_EQ(arc.EndAngle(), -pi / 2);
  EXPECT_DOUBLE_EQ(arc.Length(), pi / 2);
}

TEST(CKdArcHandWorked, OffsetCentreKeepsItsHeight) {
  const CKdArc arc(CKdPoint(10, 20, 5), 2.0, pi, pi / 2);
  EXPECT_TRUE(Near(arc.StartPoint(), {8, 20, 5}));
  EXPECT_TRUE(Near(arc.EndPoint(), {10, 18, 5}));
  EXPECT_TRUE(Near(arc.Eval(0.5), {10 - std::sqrt(2.0), 20 - std::sqrt(2.0), 5}));
}

TEST(CKdArcHandWorked, ZeroSweepIsNeitherDirectionAndTurnsClockwise) {
  const CKdArc arc(kOrigin, 1.0, 0.0, 0.0);
  EXPECT_FALSE(arc.IsClockwise());
  EXPECT_FALSE(arc.IsCounterClockwise());
  EXPECT_EQ(arc.Direction(), -1);
  EXPECT_TRUE(Near(arc.Tangent(0.0), {0, -1, 0}));
  EXPECT_DOUBLE_EQ(arc.Length(), 0.0);
  EXPECT_DOUBLE_EQ(arc.Bulge(), 0.0);
}

TEST(CKdArcSweepFromAngles, ThreeFiftyToTen) {
  EXPECT_NEAR(kdgeo::SweepFromAngles(350 * kDeg, 10 * kDeg, true), 20 * kDeg, 1e-12);
  EXPECT_NEAR(kdgeo::SweepFromAngles(350 * kDeg, 10 * kDeg, false), -340 * kDeg, 1e-12);
  EXPECT_NEAR(kdgeo::SweepFromAngles(10 * kDeg, 350 * kDeg, false), -20 * kDeg, 1e-12);
  const CKdArc ccw(kOrigin, 1.0, 350 * kDeg, 10 * kDeg, true);
  EXPECT_NEAR(ccw.Sweep(), 20 * kDeg, 1e-12);
  const CKdArc cw(kOrigin, 1.0, 350 * kDeg, 10 * kDeg, false);
  EXPECT_NEAR(cw.Sweep(), -340 * kDeg, 1e-12);
  EXPECT_TRUE(Near(cw.EndPoint(), {std::cos(10 * kDeg), std::sin(10 * kDeg), 0}));
}

TEST(CKdArcSweepFromAngles, EqualAnglesGiveZeroNotAFullTurn) {
  EXPECT_EQ(kdgeo::SweepFromAngles(1.0, 1.0, true), 0.0);
  EXPECT_EQ(kdgeo::SweepFromAngles(1.0, 1.0, false), 0.0);
  EXPECT_EQ(CKdArc(kOrigin, 1.0, 1.0, 1.0, true).Sweep(), 0.0);
  // A difference of whole turns reduces to a full turn, not to zero.
  EXPECT_DOUBLE_EQ(kdgeo::SweepFromAngles(0.0, 2 * kdgeo::kTwoPi, true), kdgeo::kTwoPi);
}

TEST(CKdArcConstruction, NormalisesPositiveSweepAndStartOnly) {
  EXPECT_NEAR(CKdArc(kOrigin, 1, 0, kdgeo::kTwoPi + 0.5).Sweep(), 0.5, 1e-12);
  EXPECT_EQ(CKdArc(kOrigin, 1, 0, kdgeo::kTwoPi).Sweep(), kdgeo::kTwoPi);
  // A negative sweep keeps its magnitude, even past a full turn.
  EXPECT_EQ(CKdArc(kOrigin, 1, 0, -7.0).Sweep(), -7.0);
  EXPECT_NEAR(CKdArc(kOrigin, 1, 7.0, 1.0).StartAngle(), 7.0 - kdgeo::kTwoPi, 1e-12);
  // fmod keeps the sign of a negative start.
  EXPECT_EQ(CKdArc(kOrigin, 1, -1.0, 1.0).StartAngle(), -1.0);
  EXPECT_EQ(CKdArc(kOrigin, 1, kdgeo::kTwoPi, 1.0).StartAngle(), 0.0);
}

TEST(CKdArcSetters, SetSweepKeepsExactlyOneFullTurn) {
  CKdArc arc(kOrigin, 1, 0, 1);
  arc.SetSweep(kdgeo::kTwoPi);
  EXPECT_EQ(arc.Sweep(), kdgeo::kTwoPi);
  arc.SetSweep(kdgeo::kTwoPi + 5e-7);
  EXPECT_EQ(arc.Sweep(), kdgeo::kTwoPi + 5e-7);
  arc.SetSweep(kdgeo::kTwoPi + 0.5);
  EXPECT_NEAR(arc.Sweep(), 0.5, 1e-12);
  arc.SetSweep(-7.0);
  EXPECT_EQ(arc.Sweep(), std::fmod(-7.0, kdgeo::kTwoPi));
  EXPECT_LT(arc.Sweep(), 0.0);
  arc.SetSweep(-kdgeo::kTwoPi);
  EXPECT_EQ(arc.Sweep(), 0.0);
}

TEST(CKdArcSetters, SetStartAngleReducesLikeTheSweep) {
  CKdArc arc(kOrigin, 1, 0, 1);
  arc.SetStartAngle(kdgeo::kTwoPi);
  EXPECT_EQ(arc.StartAngle(), kdgeo::kTwoPi);
  arc.SetStartAngle(3 * pi);
  EXPECT_NEAR(arc.StartAngle(), pi, 1e-12);
  arc.SetStartAngle(-pi / 2);
  EXPECT_EQ(arc.StartAngle(), -pi / 2);
}

TEST(CKdArcSetters, SetDirectionTakesOnlyPlusOrMinusOne) {
  CKdArc arc(kOrigin, 1, 0, 1.5);
  arc.SetDirection(-1);
  EXPECT_EQ(arc.Sweep(), -1.5);
  arc.SetDirection(-1);
  EXPECT_EQ(arc.Sweep(), -1.5);
  arc.SetDirection(0);
  arc.SetDirection(2);
  EXPECT_EQ(arc.Sweep(), -1.5);
  arc.SetDirection(1);
  EXPECT_EQ(arc.Sweep(), 1.5);
  arc.SetDirection(0);
  arc.SetDirection(-2);
  EXPECT_EQ(arc.Sweep(), 1.5);
}

TEST(CKdArcEndAngle, ReducedUnlessAFullTurn) {
  EXPECT_EQ(CKdArc(kOrigin, 1, pi, pi).EndAngle(), 2 * pi);
  EXPECT_NEAR(CKdArc(kOrigin, 1, 1.5 * pi, pi).EndAngle(), 0.5 * pi, 1e-12);
  EXPECT_NEAR(CKdArc(kOrigin, 1, 0.25 * pi, -pi).EndAngle(), -0.75 * pi, 1e-12);
}

TEST(CKdArcTransforms, ReverseOfQuarter) {
  CKdArc arc(kOrigin, 1, 0, pi / 2);
  arc.Reverse();
  EXPECT_DOUBLE_EQ(arc.StartAngle(), pi / 2);
  EXPECT_DOUBLE_EQ(arc.Sweep(), -pi / 2);
  // Reversing a clockwise arc whose end lies below zero brings the start into [0, 2*pi).
  CKdArc cw(kOrigin, 1, 0, -pi / 2);
  cw.Reverse();
  EXPECT_DOUBLE_EQ(cw.StartAngle(), 1.5 * pi);
  EXPECT_DOUBLE_EQ(cw.Sweep(), pi / 2);
}

TEST(CKdArcTransforms, MirrorsOfQuarter) {
  CKdArc y(CKdPoint(2, 3, 1), 1, 0, pi / 2);
  y.MirrorY();
  EXPECT_EQ(y.Center(), CKdPoint(-2, 3, 1));
  EXPECT_DOUBLE_EQ(y.StartAngle(), pi);
  EXPECT_DOUBLE_EQ(y.Sweep(), -pi / 2);
  CKdArc x(CKdPoint(2, 3, 1), 1, 0.5, pi / 2);
  x.MirrorX();
  EXPECT_EQ(x.Center(), CKdPoint(2, -3, 1));
  EXPECT_DOUBLE_EQ(x.StartAngle(), -0.5);
  EXPECT_DOUBLE_EQ(x.Sweep(), -pi / 2);
}

TEST(CKdArcEquality, WithinOneMillionth) {
  const CKdArc arc(CKdPoint(1, 2, 3), 5, 0.25, 1);
  EXPECT_FALSE(arc.IsEqual(CKdArc(CKdPoint(1, 2, 3), 5 + 2e-6, 0.25, 1)));
  EXPECT_TRUE(arc.IsEqual(CKdArc(CKdPoint(1, 2, 3), 5 + 5e-7, 0.25, 1)));
  EXPECT_TRUE(arc.IsNotEqual(CKdArc(CKdPoint(1, 2, 3 + 2e-6), 5, 0.25, 1)));
  EXPECT_FALSE(arc.IsEqual(CKdArc(CKdPoint(1, 2, 3), 5, 0.25 + 2e-6, 1)));
  EXPECT_FALSE(arc.IsEqual(CKdArc(CKdPoint(1, 2, 3), 5, 0.25, -1)));
  // Through the element: only an arc compares equal to an arc.
  const CKdElement& asElement = arc;
  EXPECT_TRUE(asElement.IsEqual(CKdArc(arc)));
  EXPECT_FALSE(asElement.IsEqual(CKdLine(CKdPoint(1, 2, 3), CKdPoint(5, 2, 3))));
  EXPECT_TRUE(asElement.IsNotEqual(CKdLine(CKdPoint(1, 2, 3), CKdPoint(5, 2, 3))));
}

TEST(CKdArcElement, KindCloneAndText) {
  const CKdArc arc(CKdPoint(1, 2, 3), 5, 0.25, -1);
  EXPECT_EQ(arc.GetType(), 16);
  EXPECT_EQ(arc.GetClassConstant(), 10);
  std::unique_ptr<CKdElement> element(arc.CloneElement());
  std::unique_ptr<IKdCurve> curve(arc.Clone());
  EXPECT_TRUE(element->IsEqual(arc));
  EXPECT_TRUE(curve->IsEqual(arc));
  curve->Translate(CKdVector(1, 0, 0));
  EXPECT_FALSE(curve->IsEqual(arc));
  EXPECT_EQ(kdgeo::ToText(arc), L"CKdArc centre (1, 2, 3) radius 5 start 0.25 sweep -1");
  EXPECT_EQ(kdgeo::ToText(CKdArc(kOrigin, 1, 0.1, pi)),
            L"CKdArc centre (0, 0, 0) radius 1 start 0.1 sweep 3.141592653589793");
}

TEST(CKdArcElement, ValidityNeedsRadiusAndFiniteValues) {
  EXPECT_TRUE(CKdArc(kOrigin, 1, 0, 1).IsValid());
  EXPECT_FALSE(CKdArc().IsValid());
  EXPECT_FALSE(CKdArc(kOrigin, 1, std::nan(""), 1).IsValid());
  EXPECT_FALSE(CKdArc(CKdPoint(INFINITY, 0), 1, 0, 1).IsValid());
}

TEST(CKdArcElement, InfiniteInputNeitherHangsNorCrashes) {
  CKdArc arc(kOrigin, 1, 0, 1);
  arc.Rotate(kOrigin, INFINITY);
  EXPECT_TRUE(std::isnan(arc.StartAngle()));
  CKdArc big(kOrigin, 1, 1e300, 1e300);
  big.Reverse();
  EXPECT_GE(big.StartAngle(), 0.0);
  EXPECT_LT(big.StartAngle(), kdgeo::kTwoPi);
}

TEST(CKdPointAngleFromXY, QuadrantsAndTheCentreItself) {
  EXPECT_DOUBLE_EQ(CKdPoint(0, -1).AngleFromXY(kOrigin), 1.5 * pi);
  EXPECT_EQ(CKdPoint(0, 0).AngleFromXY(kOrigin), 0.0);
  EXPECT_DOUBLE_EQ(CKdPoint(-1, 0).AngleFromXY(kOrigin), pi);
  EXPECT_DOUBLE_EQ(CKdPoint(3, 5).AngleFromXY(CKdPoint(2, 4)), pi / 4);
  // Both offsets under the tolerance: the centre itself.
  EXPECT_EQ(CKdPoint(5e-7, -5e-7).AngleFromXY(kOrigin), 0.0);
  // One offset over it is enough to have a direction.
  EXPECT_DOUBLE_EQ(CKdPoint(0, -2e-6).AngleFromXY(kOrigin), 1.5 * pi);
  // A hair below the x axis stays inside [0, 2*pi).
  const double a = CKdPoint(1, -1e-300).AngleFromXY(kOrigin);
  EXPECT_GE(a, 0.0);
  EXPECT_LT(a, kdgeo::kTwoPi);
}

// Properties over a table of arcs of every direction, size and position.
struct ArcCase {
  const char* name;
  CKdPoint centre;
  double radius, start, sweep;
};

class CKdArcProperty : public testing::TestWithParam<ArcCase> {
protected:
  CKdArc Arc() const { return CKdArc(GetParam().centre, GetParam().radius, GetParam().start, GetParam().sweep); }
};

TEST_P(CKdArcProperty, EvalRunsFromStartToEndOnTheCircle) {
  const CKdArc arc = Arc();
  EXPECT_TRUE(Near(arc.Eval(0.0), arc.StartPoint()));
  EXPECT_TRUE(Near(arc.Eval(1.0), arc.EndPoint()));
  const CKdPoint c = arc.Center();
  for (double t = 0.0; t <= 1.0; t += 0.125) {
    const CKdPoint p = arc.Eval(t);
    EXPECT_NEAR(p.DistanceTo(c), arc.Radius(), 1e-9) << "t=" << t;
    EXPECT_EQ(p.z, c.z);
  }
  // The end point lies at the end angle, whatever its sign.
  EXPECT_TRUE(Near(arc.EndPoint(), arc.PointAtAngle(arc.EndAngle()), 1e-9));
}

TEST_P(CKdArcProperty, TangentIsTheDirectionOfTravel) {
  const CKdArc arc = Arc();
  const double h = 1e-6;
  for (double t = 0.0; t < 1.0; t += 0.25) {
    const CKdVector step = (arc.Eval(t + h) - arc.Eval(t)) * (1.0 / h);
    const CKdVector unit = step.Normalized();
    EXPECT_TRUE(Near(arc.Tangent(t), unit, 1e-5)) << "t=" << t;
    EXPECT_NEAR(arc.Tangent(t).Length(), 1.0, 1e-12);
  }
  EXPECT_TRUE(Near(arc.StartTangent(), arc.Tangent(0)));
  EXPECT_TRUE(Near(arc.EndTangent(), arc.Tangent(1)));
}

TEST_P(CKdArcProperty, LengthIsTheSumOfFineChords) {
  const CKdArc arc = Arc();
  const int n = 2000;
  double chords = 0.0;
  for (int i = 0; i < n; ++i) chords += arc.Eval(double(i) / n).DistanceTo(arc.Eval(double(i + 1) / n));
  EXPECT_NEAR(arc.Length(), chords, 1e-5 * arc.Length());
  EXPECT_EQ(arc.Length(1e-3), arc.Length());
}

TEST_P(CKdArcProperty, BulgeIsTwiceTheSagittaOverTheChord) {
  const CKdArc arc = Arc();
  if (std::fabs(arc.Sweep()) >= kdgeo::kTwoPi - 1e-9) {
    // No chord: tan(pi / 2), as large as a double gets near there.
    EXPECT_GT(std::fabs(arc.Bulge()), 1e15);
    return;
  }
  const CKdPoint a = arc.StartPoint();
  const CKdPoint b = arc.EndPoint();
  const CKdPoint mid = arc.Eval(0.5);
  const CKdPoint chordMid((a.x + b.x) / 2, (a.y + b.y) / 2, a.z);
  const double sagitta = mid.DistanceTo(chordMid);
  EXPECT_NEAR(std::fabs(arc.Bulge()), 2 * sagitta / a.DistanceTo(b), 1e-9);
  // Positive when the arc bulges to the right of the chord's direction.
  const double side = (b - a).Cross(mid - a).z;
  EXPECT_EQ(arc.Bulge() > 0, side < 0);
}

TEST_P(CKdArcProperty, ReverseTwiceGivesTheOriginal) {
  const CKdArc arc = Arc();
  CKdArc reversed = arc;
  reversed.Reverse();
  EXPECT_TRUE(Near(reversed.StartPoint(), arc.EndPoint(), 1e-9));
  EXPECT_TRUE(Near(reversed.Eval(0.3), arc.Eval(0.7), 1e-9));
  reversed.Reverse();
  for (double t = 0; t <= 1; t += 0.25) EXPECT_TRUE(Near(reversed.Eval(t), arc.Eval(t), 1e-9));
  EXPECT_DOUBLE_EQ(reversed.Sweep(), arc.Sweep());
}

TEST_P(CKdArcProperty, RotatedArcHasTheRotatedPoints) {
  const CKdArc arc = Arc();
  const CKdPoint about(3, -2, 7);
  for (double angle : {0.7, -2.5, 4.0}) {
    CKdArc rotated = arc;
    rotated.Rotate(about, angle);
    for (double t = 0; t <= 1; t += 0.25) {
      const CKdPoint p = arc.Eval(t);
      const double dx = p.x - about.x, dy = p.y - about.y;
      const CKdPoint expected(about.x + dx * std::cos(angle) - dy * std::sin(angle),
                              about.y + dx * std::sin(angle) + dy * std::cos(angle), p.z);
      EXPECT_TRUE(Near(rotated.Eval(t), expected, 1e-9)) << "angle=" << angle << " t=" << t;
    }
    EXPECT_GE(rotated.StartAngle(), 0.0);
    EXPECT_LT(rotated.StartAngle(), kdgeo::kTwoPi);
  }
}

TEST_P(CKdArcProperty, MirroredArcHasTheMirroredPoints) {
  const CKdArc arc = Arc();
  CKdArc mx = arc, my = arc;
  mx.MirrorX();
  my.MirrorY();
  for (double t = 0; t <= 1; t += 0.25) {
    const CKdPoint p = arc.Eval(t);
    EXPECT_TRUE(Near(mx.Eval(t), {p.x, -p.y, p.z}, 1e-9));
    EXPECT_TRUE(Near(my.Eval(t), {-p.x, p.y, p.z}, 1e-9));
  }
}

TEST_P(CKdArcProperty, ScaledAndTranslatedPoints) {
  const CKdArc arc = Arc();
  CKdArc moved = arc;
  moved.Scale(-1.5);
  moved.Translate(CKdVector(1, 2, 3));
  for (double t = 0; t <= 1; t += 0.25) {
    const CKdPoint p = arc.Eval(t);
    EXPECT_TRUE(Near(moved.Eval(t), {p.x * -1.5 + 1, p.y * -1.5 + 2, p.z * -1.5 + 3}, 1e-9));
  }
}

TEST_P(CKdArcProperty, SimilarityTransformMovesEveryPoint) {
  const CKdArc arc = Arc();
  const CKdXform xforms[] = {
      CKdXform::RotationZ(CKdPoint(1, 2), 0.8) * CKdXform::Scaling(CKdPoint(-3, 0), 2.5),
      CKdXform::Translation(CKdVector(5, -5, 2)) * CKdXform::MirrorY() * CKdXform::Scaling(1, 1, 4),
      CKdXform::MirrorX() * CKdXform::RotationZ(CKdPoint(0, 0), -2.0),
  };
  for (const CKdXform& xform : xforms) {
    CKdArc moved = arc;
    ASSERT_TRUE(moved.Transform(xform));
    for (double t = 0; t <= 1; t += 0.25) EXPECT_TRUE(Near(moved.Eval(t), xform.Apply(arc.Eval(t)), 1e-9));
  }
}

TEST_P(CKdArcProperty, ClosestParamMatchesASearch) {
  const CKdArc arc = Arc();
  const CKdPoint c = arc.Center();
  const double r = arc.Radius();
  for (double angle = 0.1; angle < 6.3; angle += 0.7) {
    for (double factor : {0.3, 1.0, 2.0}) {
      const CKdPoint p(c.x + factor * r * std::cos(angle), c.y + factor * r * std::sin(angle), c.z);
      double best = 0.0, bestDistance = INFINITY;
      for (int i = 0; i <= 20000; ++i) {
        const double d = arc.Eval(i / 20000.0).DistanceTo(p);
        if (d < bestDistance) bestDistance = d, best = i / 20000.0;
      }
      // Never worse than the search, and better by at most the search's step.
      const double distance = arc.Eval(arc.ClosestParam(p)).DistanceTo(p);
      EXPECT_LE(distance, bestDistance + 1e-9 * r) << "angle=" << angle << " factor=" << factor << " t=" << best;
      EXPECT_GE(distance, bestDistance - r * std::fabs(arc.Sweep()) / 20000.0) << "angle=" << angle;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    Arcs, CKdArcProperty,
    testing::Values(ArcCase{"UnitQuarterCcw", {0, 0, 0}, 1, 0, pi / 2},
                    ArcCase{"UnitQuarterCw", {0, 0, 0}, 1, 0, -pi / 2},
                    ArcCase{"LargeCcwAcrossZero", {1000, -2000, 50}, 350, 5.5, 2.0},
                    ArcCase{"SmallCwAcrossZero", {-3, 4, -1}, 0.01, 0.2, -1.1},
                    ArcCase{"ReflexCcw", {2, 2, 0}, 3, 1, 5.5},
                    ArcCase{"ReflexCw", {2, 2, 0}, 3, 4, -5.0},
                    ArcCase{"FullTurn", {0, 1, 2}, 2, 0.5, kdgeo::kTwoPi},
                    ArcCase{"NegativeStart", {5, 5, 5}, 7, -2.0, 1.0}),
    [](const testing::TestParamInfo<ArcCase>& info) { return info.param.name; });

}  // namespace
