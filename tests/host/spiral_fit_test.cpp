// Clothoids against published Fresnel integral values, and their replacement by arcs measured
// with the test's own integration and distances.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>
#include <vector>

#include "host/SpiralFit.h"
#include "tests/host/PlanTestUtil.h"

namespace {

using host::CKdClothoid;
using host::CKdPlanElement;
using host::CKdPlanPoint;
using std::numbers::pi;

// Fresnel integrals C(x) = int_0^x cos(pi t^2 / 2) dt and S(x) likewise, from the tables
// (Abramowitz and Stegun 7.7, to 16 digits).
constexpr double kC1 = 0.7798934003768228, kS1 = 0.4382591473903548;
constexpr double kC2 = 0.4882534060753408, kS2 = 0.3434156783636982;

using plantest::AngleGap;
using plantest::Dist;
using plantest::DistanceToElement;
using plantest::EndHeadingOf;
using plantest::SimpsonPoint;
using plantest::StartHeadingOf;

TEST(Clothoid, MeetsTheFresnelTables) {
  // Curvature pi * s from the origin heading east: the point at s is (C(s), S(s)).
  const CKdClothoid unit({0, 0}, 0.0, 2.0, 0.0, 2 * pi);
  EXPECT_NEAR(unit.PointAt(1.0).x, kC1, 1e-14);
  EXPECT_NEAR(unit.PointAt(1.0).y, kS1, 1e-14);
  EXPECT_NEAR(unit.End().x, kC2, 1e-14);
  EXPECT_NEAR(unit.End().y, kS2, 1e-14);
  EXPECT_NEAR(unit.EndHeading(), 2 * pi, 1e-15);

  // Scaled up: 100 long with curvature running to 4 pi / 100 reaches 50 (C(2), S(2)); the
  // bar is 1e-9 of the length.
  const CKdClothoid road({0, 0}, 0.0, 100.0, 0.0, 4 * pi / 100.0);
  EXPECT_NEAR(road.End().x, 50 * kC2, 1e-7);
  EXPECT_NEAR(road.End().y, 50 * kS2, 1e-7);
}

TEST(Clothoid, APieceStartingOnACurveEndsWhereTheWholeOneDoes) {
  // The unit clothoid from s = 1 to s = 2, started from its own point and heading there.
  const CKdClothoid piece({kC1, kS1}, pi / 2, 1.0, pi, 2 * pi);
  EXPECT_NEAR(piece.End().x, kC2, 1e-14);
  EXPECT_NEAR(piece.End().y, kS2, 1e-14);
  // And travelled back: curvature falls and the signs flip.
  const CKdClothoid back({kC2, kS2}, 2 * pi + pi, 1.0, -2 * pi, -pi);
  EXPECT_NEAR(back.End().x, kC1, 1e-14);
  EXPECT_NEAR(back.End().y, kS1, 1e-14);
  EXPECT_NEAR(std::remainder(back.EndHeading() - (pi / 2 + pi), 2 * pi), 0.0, 1e-14);
}

TEST(Clothoid, PointsAlongAgreeWithSimpsonFarFromTheOrigin) {
  const CKdPlanPoint start{489367.652296, 4217821.947066};
  const CKdClothoid spiral(start, 1.0770, 834.767205, 0.0, -1.0 / 1103.684807);
  const std::vector<CKdPlanPoint> points = spiral.PointsBetween(0.0, spiral.Length(), 10);
  ASSERT_EQ(points.size(), 11u);
  for (int i = 0; i <= 10; ++i) {
    const double s = spiral.Length() * i / 10;
    EXPECT_LT(Dist(points[i], SimpsonPoint(start, 1.0770, 0.0, spiral.CurvatureRate(), s)), 1e-9 * spiral.Length())
        << "at " << s;
  }
}

struct CSpiralCase {
  std::string name;
  double length, radiusStart, radiusEnd;  // 0 for an infinite radius
  bool left;
  double tolerance;
};

std::ostream& operator<<(std::ostream& out, const CSpiralCase& c) { return out << c.name; }

class SpiralFit : public ::testing::TestWithParam<CSpiralCase> {};

TEST_P(SpiralFit, StaysWithinTheToleranceAndJoinsTangentially) {
  const CSpiralCase& c = GetParam();
  const double side = c.left ? 1.0 : -1.0;
  const double k0 = c.radiusStart > 0 ? side / c.radiusStart : 0.0;
  const double k1 = c.radiusEnd > 0 ? side / c.radiusEnd : 0.0;
  const CKdPlanPoint start{1000.0, 2000.0};
  const double heading = 0.7;
  const CKdClothoid spiral(start, heading, c.length, k0, k1);
  const double rate = (k1 - k0) / c.length;

  const host::CSpiralFit fit = host::FitSpiral(spiral, c.tolerance);
  ASSERT_TRUE(fit.ok);
  const std::vector<CKdPlanElement>& arcs = fit.elements;
  ASSERT_GE(arcs.size(), 2u);

  // Ends: where the spiral starts and ends, along its headings there.
  const CKdPlanPoint end = SimpsonPoint(start, heading, k0, rate, c.length);
  const double endHeading = heading + k0 * c.length + 0.5 * rate * c.length * c.length;
  EXPECT_LT(Dist(arcs.front().start, start), 1e-9);
  EXPECT_LT(Dist(arcs.back().end, end), 1e-9 * c.length);
  EXPECT_LT(AngleGap(StartHeadingOf(arcs.front()), heading), 1e-9);
  EXPECT_LT(AngleGap(EndHeadingOf(arcs.back()), endHeading), 1e-9);
  // Joins: each arc starts where the previous ends, along the same heading.
  for (std::size_t i = 1; i < arcs.size(); ++i) {
    EXPECT_LT(Dist(arcs[i - 1].end, arcs[i].start), 1e-9) << "join " << i;
    EXPECT_LT(AngleGap(EndHeadingOf(arcs[i - 1]), StartHeadingOf(arcs[i])), 1e-9) << "join " << i;
  }

  // The spiral, sampled densely, never strays beyond the tolerance from the chain.
  double worst = 0.0;
  const int samples = 3000;
  for (int i = 0; i <= samples; ++i) {
    const CKdPlanPoint p = SimpsonPoint(start, heading, k0, rate, c.length * i / samples, 2000);
    double nearest = std::numeric_limits<double>::infinity();
    for (const CKdPlanElement& e : arcs) nearest = std::fmin(nearest, DistanceToElement(e, p));
    worst = std::fmax(worst, nearest);
  }
  EXPECT_LE(worst, c.tolerance);
  EXPECT_NEAR(fit.deviation, worst, 0.05 * c.tolerance);

  // No chain of n arcs can follow a clothoid closer than |rate| (L/n)^3 / 192 (the best circle
  // on a piece of length l errs by |rate| l^3 / 192), so that bounds the count from below; the
  // fit should not need many more.
  const double fewest = c.length * std::cbrt(std::fabs(rate) / (192.0 * c.tolerance));
  EXPECT_GE(static_cast<double>(arcs.size()), std::floor(fewest));
  EXPECT_LE(static_cast<double>(arcs.size()), 1.3 * fewest + 2.0);
}

INSTANTIATE_TEST_SUITE_P(
    Roads, SpiralFit,
    ::testing::Values(CSpiralCase{"SampleEntry", 60.0, 0.0, 250.0, false, 0.001},
                      CSpiralCase{"SampleExit", 60.0, 250.0, 0.0, false, 0.001},
                      CSpiralCase{"SampleExitFine", 60.0, 250.0, 0.0, false, 1e-5},
                      CSpiralCase{"LongGentle", 834.767205, 0.0, 1103.684807, false, 0.001},
                      CSpiralCase{"BetweenTwoArcs", 646.649134, 972.836752, 1387.185105, true, 0.001},
                      CSpiralCase{"ShortAndTight", 9.0, 25.0, 0.0, true, 0.0001},
                      CSpiralCase{"TurnsMoreThanAQuarter", 100.0, 0.0, 30.0, true, 0.001}),
    [](const ::testing::TestParamInfo<CSpiralCase>& info) { return info.param.name; });

TEST(SpiralFitShapes, AConstantCurvatureIsOneExactArcOrLine) {
  const host::CSpiralFit arc = host::FitSpiral(CKdClothoid({5, 5}, 0.3, 50.0, -0.01, -0.01), 1e-4);
  ASSERT_TRUE(arc.ok);
  ASSERT_EQ(arc.elements.size(), 1u);
  EXPECT_FALSE(arc.elements[0].isLine);
  EXPECT_NEAR(arc.elements[0].radius, 100.0, 1e-9);
  EXPECT_NEAR(arc.elements[0].sweep, -0.5, 1e-12);
  EXPECT_LT(arc.deviation, 1e-9);

  const host::CSpiralFit line = host::FitSpiral(CKdClothoid({5, 5}, 0.3, 50.0, 0.0, 0.0), 1e-4);
  ASSERT_TRUE(line.ok);
  ASSERT_EQ(line.elements.size(), 1u);
  EXPECT_TRUE(line.elements[0].isLine);
  EXPECT_NEAR(Dist(line.elements[0].end, {5 + 50 * std::cos(0.3), 5 + 50 * std::sin(0.3)}), 0.0, 1e-12);
}

TEST(SpiralFitShapes, RefusesWhatCannotBeFitted) {
  const CKdClothoid spiral({0, 0}, 0.0, 60.0, 0.0, 1.0 / 250.0);
  EXPECT_FALSE(host::FitSpiral(spiral, 0.0).ok);
  EXPECT_FALSE(host::FitSpiral(spiral, -1e-3).ok);
  EXPECT_FALSE(host::FitSpiral(spiral, std::numeric_limits<double>::quiet_NaN()).ok);
  EXPECT_FALSE(host::FitSpiral(CKdClothoid({0, 0}, 0.0, 0.0, 0.0, 0.0), 1e-3).ok);
  // A tolerance no chain of the most arcs allowed can reach.
  EXPECT_FALSE(host::FitSpiral(CKdClothoid({0, 0}, 0.0, 5000.0, 0.0, 1.0 / 20.0), 1e-12).ok);
}

TEST(SpiralFitShapes, FinerToleranceNeedsMoreArcsAndNeverFewer) {
  const CKdClothoid spiral({0, 0}, 0.0, 60.0, 0.0, -1.0 / 250.0);
  std::size_t previous = 0;
  for (double tolerance : {1e-2, 1e-3, 1e-4, 1e-5}) {
    const host::CSpiralFit fit = host::FitSpiral(spiral, tolerance);
    ASSERT_TRUE(fit.ok);
    EXPECT_GE(fit.elements.size(), previous) << tolerance;
    EXPECT_LE(fit.deviation, tolerance);
    previous = fit.elements.size();
  }
  EXPECT_GT(previous, 10u);
}

}  // namespace
