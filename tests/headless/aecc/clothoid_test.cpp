// Clothoid spirals against textbook values: Fresnel integrals from tables, and the clothoid
// series x = L (1 - t^2/10 + t^4/216 - t^6/9360 + ...), y = L (t/3 - t^3/42 + t^5/1320 - ...)
// with t = L / (2R), summed to 12 terms by hand (exact fractions, rounded to 17 digits).
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "headless/aecc/model/AlignmentCurve.h"
#include "headless/aecc/model/Clothoid.h"

namespace {

using headless::land::AlignmentCurve;
using headless::land::Clothoid;
using headless::land::CurveKind;
using headless::land::LandError;
using headless::land::Point2;
using headless::land::SpiralDirection;

constexpr double kPi = 3.14159265358979323846;
constexpr double kInf = std::numeric_limits<double>::infinity();

// Complete spirals, local frame (x along the start tangent, y to the inside of the turn).
constexpr double kX100R200 = 99.376805842958942949;  // L = 100, R = 200, t = 0.25
constexpr double kY100R200 = 8.2962048537094963197;
constexpr double kX40R500 = 39.993600474056570183;   // L = 40, R = 500, t = 0.04
constexpr double kY40R500 = 0.5332723840553245691;
constexpr double kX120R300 = 119.52088806882408644;  // L = 120, R = 300, t = 0.2
constexpr double kY120R300 = 7.977171927743396225;

void ExpectNear(Point2 actual, Point2 expected, double tolerance) {
  EXPECT_NEAR(actual.x, expected.x, tolerance);
  EXPECT_NEAR(actual.y, expected.y, tolerance);
}

// C(x) = int_0^x cos(pi t^2 / 2) dt is the clothoid of unit length whose curvature grows to pi.
TEST(Clothoid, FresnelIntegralsFromTheTables) {
  struct Row {
    double x, c, s;
  };
  // Abramowitz & Stegun, table 7.7.
  const Row rows[] = {{0.5, 0.492344225871446, 0.064732432859999},
                      {1.0, 0.779893400376823, 0.438259147390355},
                      {2.0, 0.488253406075341, 0.343415678363698}};
  for (const Row& row : rows) {
    const auto spiral = Clothoid::Make({0.0, 0.0}, 0.0, row.x, 0.0, kPi * row.x);
    ASSERT_TRUE(spiral) << row.x;
    EXPECT_NEAR(spiral.Value().End().x, row.c, 1e-14) << row.x;
    EXPECT_NEAR(spiral.Value().End().y, row.s, 1e-14) << row.x;
    EXPECT_NEAR(spiral.Value().EndDirection(), kPi * row.x * row.x / 2.0, 1e-15) << row.x;
  }
}

TEST(Clothoid, CompleteSpiralMatchesTheSeriesToAFractionOfTheLength) {
  const auto left = Clothoid::Make({0.0, 0.0}, 0.0, 100.0, 0.0, 1.0 / 200.0);
  ASSERT_TRUE(left);
  ExpectNear(left.Value().End(), {kX100R200, kY100R200}, 1e-12 * 100.0);
  EXPECT_DOUBLE_EQ(left.Value().EndDirection(), 0.25);  // L / (2R)
  EXPECT_DOUBLE_EQ(left.Value().A(), std::sqrt(200.0 * 100.0));

  // Right-turning, from an arbitrary start and heading: the local series turned into place.
  const Point2 start{500.0, 300.0};
  const double heading = kPi / 6.0;
  const auto right = Clothoid::Make(start, heading, 120.0, 0.0, -1.0 / 300.0);
  ASSERT_TRUE(right);
  const Point2 expected{start.x + kX120R300 * std::cos(heading) + kY120R300 * std::sin(heading),
                        start.y + kX120R300 * std::sin(heading) - kY120R300 * std::cos(heading)};
  ExpectNear(right.Value().End(), expected, 1e-9);
  EXPECT_NEAR(right.Value().EndDirection(), heading - 0.2, 1e-15);
}

TEST(Clothoid, IncompleteSpiralIsTheMiddleOfItsCompleteOne) {
  // Between R = 500 and R = 200 over 60: A^2 = 60 / (1/200 - 1/500) = 20000, so this is the
  // stretch from 40 to 100 of the complete spiral with R L = 20000 (R = 500 at 40, 200 at 100).
  const Point2 from{kX40R500, kY40R500};
  const auto spiral = Clothoid::Make(from, 0.04, 60.0, 1.0 / 500.0, 1.0 / 200.0);
  ASSERT_TRUE(spiral);
  ExpectNear(spiral.Value().End(), {kX100R200, kY100R200}, 1e-10);
  EXPECT_NEAR(spiral.Value().EndDirection(), 0.25, 1e-15);
  EXPECT_NEAR(spiral.Value().A(), std::sqrt(20000.0), 1e-12);
  EXPECT_DOUBLE_EQ(spiral.Value().CurvatureAt(30.0), 0.5 * (1.0 / 500.0 + 1.0 / 200.0));

  // And part way: 20 further on is 60 along the complete spiral (R = 20000 / 60).
  const double t = 60.0 * 60.0 / (2.0 * 20000.0);
  const double x60 = 60.0 * (1 - t * t / 10 + std::pow(t, 4) / 216 - std::pow(t, 6) / 9360);
  const double y60 = 60.0 * (t / 3 - std::pow(t, 3) / 42 + std::pow(t, 5) / 1320 - std::pow(t, 7) / 75600);
  ExpectNear(spiral.Value().PointAt(20.0), {x60, y60}, 1e-10);
}

TEST(Clothoid, LongTurningSpiralStaysOnItsTableValues) {
  // Five turns (heading 10 pi at the end), so the quadrature cuts many panels: C and S at
  // 2 sqrt(5) ~ 4.4721, from an arbitrary-precision evaluation (mpmath, 40 digits).
  const double x = 2.0 * std::sqrt(5.0);
  const auto spiral = Clothoid::Make({0.0, 0.0}, 0.0, x, 0.0, kPi * x);
  ASSERT_TRUE(spiral);
  EXPECT_NEAR(spiral.Value().End().x, 0.49887143252859524, 1e-13);
  EXPECT_NEAR(spiral.Value().End().y, 0.42887736508216453, 1e-13);
}

TEST(Clothoid, RefusesWhatIsNotASpiral) {
  EXPECT_EQ(Clothoid::Make({}, 0.0, 0.0, 0.0, 0.01).Error(), LandError::InvalidArgument);     // no length
  EXPECT_EQ(Clothoid::Make({}, 0.0, -5.0, 0.0, 0.01).Error(), LandError::InvalidArgument);
  EXPECT_EQ(Clothoid::Make({}, 0.0, 50.0, 0.01, 0.01).Error(), LandError::InvalidArgument);   // an arc
  EXPECT_EQ(Clothoid::Make({}, 0.0, 50.0, -0.01, 0.01).Error(), LandError::InvalidArgument);  // an S
  EXPECT_EQ(Clothoid::Make({}, NAN, 50.0, 0.0, 0.01).Error(), LandError::InvalidArgument);
  EXPECT_EQ(Clothoid::Make({}, 0.0, 1e6, 0.0, 1.0).Error(), LandError::InvalidArgument);      // 1e6 rad
}

TEST(SpiralCurve, RadiiDirectionAndParameterReadBackAsGiven) {
  const auto spiral = AlignmentCurve::MakeSpiral({10.0, 20.0}, 0.5, 100.0, kInf, 200.0, SpiralDirection::Right);
  ASSERT_TRUE(spiral);
  const AlignmentCurve& s = spiral.Value();
  EXPECT_EQ(s.Kind(), CurveKind::Spiral);
  EXPECT_EQ(s.RadiusIn(), kInf);
  EXPECT_DOUBLE_EQ(s.RadiusOut(), 200.0);
  EXPECT_EQ(s.Direction(), SpiralDirection::Right);
  EXPECT_DOUBLE_EQ(s.A(), std::sqrt(200.0 * 100.0));
  EXPECT_DOUBLE_EQ(s.Length(), 100.0);
  EXPECT_NEAR(s.EndDirection(), 0.5 - 0.25, 1e-15);
  EXPECT_EQ(s.StartPoint(), (Point2{10.0, 20.0}));

  // Leaving an arc of 200 for a tangent, to the left.
  const auto out = AlignmentCurve::MakeSpiral({}, 0.0, 100.0, 200.0, kInf, SpiralDirection::Left);
  ASSERT_TRUE(out);
  EXPECT_EQ(out.Value().Direction(), SpiralDirection::Left);
  EXPECT_DOUBLE_EQ(out.Value().RadiusIn(), 200.0);
  EXPECT_EQ(out.Value().RadiusOut(), kInf);
  EXPECT_NEAR(out.Value().EndDirection(), 0.25, 1e-15);

  EXPECT_EQ(AlignmentCurve::MakeSpiral({}, 0.0, 100.0, kInf, kInf, SpiralDirection::Left).Error(),
            LandError::InvalidArgument);
  EXPECT_EQ(AlignmentCurve::MakeSpiral({}, 0.0, 100.0, 0.0, 200.0, SpiralDirection::Left).Error(),
            LandError::InvalidArgument);
  EXPECT_EQ(AlignmentCurve::MakeSpiral({}, 0.0, 100.0, -300.0, 200.0, SpiralDirection::Left).Error(),
            LandError::InvalidArgument);
}

TEST(SpiralCurve, NearestPointOfASpiralIsTheFootOfTheNormal) {
  const auto spiral = AlignmentCurve::MakeSpiral({0.0, 0.0}, 0.0, 100.0, kInf, 200.0, SpiralDirection::Left);
  ASSERT_TRUE(spiral);
  // 7 to the outside (right) of the point 60 along, where the heading is 60^2 / (2 R L) = 0.09;
  // its position from the series with t = 0.09 and L = 60.
  const Point2 on{59.951418221593703705, 1.7989588397951601829};
  const Point2 outside{on.x + 7.0 * std::sin(0.09), on.y - 7.0 * std::cos(0.09)};
  EXPECT_NEAR(spiral.Value().ClosestDistance(outside), 60.0, 1e-9);
  EXPECT_NEAR(spiral.Value().ClosestDistance(on), 60.0, 1e-9);
  // Beyond the start the start is nearest.
  EXPECT_EQ(spiral.Value().ClosestDistance({-10.0, 1.0}), 0.0);
}

}  // namespace
