// Profiles: the PVI list and ElevationAt on grade lines and on each kind of vertical curve,
// against hand-worked textbook examples (elevations written out, not computed by the model).
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "headless/aecc/model/ProfileGeometry.h"

namespace {

using namespace headless::land;

void ExpectElevation(const ProfileGeometry& profile, double station, double expected, double tolerance = 1e-10) {
  const auto z = profile.ElevationAt(station);
  ASSERT_TRUE(z) << "station " << station << ": " << LandErrorText(z.Error());
  EXPECT_NEAR(z.Value(), expected, tolerance) << "station " << station;
}

TEST(ProfileElevation, GradeLinesBetweenPvisWithoutCurves) {
  ProfileGeometry profile;
  ASSERT_TRUE(profile.AddPvi(0.0, 50.0));
  ASSERT_TRUE(profile.AddPvi(250.0, 55.0));   // +2 %
  ASSERT_TRUE(profile.AddPvi(400.0, 49.0));   // -4 %
  ExpectElevation(profile, 0.0, 50.0, 0.0);
  ExpectElevation(profile, 100.0, 52.0);
  ExpectElevation(profile, 250.0, 55.0, 0.0);
  ExpectElevation(profile, 325.0, 52.0);
  ExpectElevation(profile, 400.0, 49.0, 0.0);
  EXPECT_DOUBLE_EQ(profile.GradeIn(1).Value(), 0.02);
  EXPECT_DOUBLE_EQ(profile.GradeOut(1).Value(), -0.04);
  EXPECT_EQ(profile.GradeIn(0).Error(), LandError::Empty);
  EXPECT_EQ(profile.GradeOut(2).Error(), LandError::Empty);
  EXPECT_EQ(profile.GradeIn(3).Error(), LandError::NotFound);
}

// g1 = +2 %, g2 = -1.5 %, L = 200, PVI at 1000, elevation 100. BVC 900 at 98, EVC 1100 at 98.5;
// z = 98 + 0.02 x - 0.035 x^2 / 400 with x from the BVC; e = (g2 - g1) L / 8 = -0.875 at the PVI;
// the high point at x = 0.02 * 200 / 0.035 = 114.2857, elevation 99.142857.
TEST(ProfileElevation, SymmetricParabolaTextbookExample) {
  ProfileGeometry profile;
  ASSERT_TRUE(profile.AddPvi(800.0, 96.0));
  ASSERT_TRUE(profile.AddPvi(1000.0, 100.0, VerticalCurve::Parabola(200.0)));
  ASSERT_TRUE(profile.AddPvi(1200.0, 97.0));
  ExpectElevation(profile, 850.0, 97.0);      // on the incoming grade
  ExpectElevation(profile, 900.0, 98.0);      // BVC
  ExpectElevation(profile, 950.0, 98.78125);  // 98 + 1 - 0.21875
  ExpectElevation(profile, 1000.0, 99.125);   // PVI elevation + e
  ExpectElevation(profile, 900.0 + 800.0 / 7.0, 99.0 + 1.0 / 7.0);  // the high point
  ExpectElevation(profile, 1050.0, 99.03125);  // 98 + 3 - 1.96875
  ExpectElevation(profile, 1100.0, 98.5);      // EVC
  ExpectElevation(profile, 1150.0, 97.75);     // on the outgoing grade
  const auto extent = profile.CurveAt(1);
  ASSERT_TRUE(extent);
  EXPECT_DOUBLE_EQ(extent.Value().startStation, 900.0);
  EXPECT_DOUBLE_EQ(extent.Value().endStation, 1100.0);
  EXPECT_TRUE(extent.Value().fits);
}

// g1 = +4 %, g2 = -2 %, L1 = 120, L2 = 80, PVI at 1000, elevation 200.
// e = L1 L2 (g2 - g1) / (2 (L1 + L2)) = 9600 * -0.06 / 400 = -1.44.
// BVC 880 at 195.2, EVC 1080 at 198.4; before the PVI z = 195.2 + 0.04 x - 1.44 (x / 120)^2,
// after it z = 198.4 + 0.02 u - 1.44 (u / 80)^2 with u back from the EVC.
TEST(ProfileElevation, AsymmetricParabolaTextbookExample) {
  ProfileGeometry profile;
  ASSERT_TRUE(profile.AddPvi(800.0, 192.0));
  ASSERT_TRUE(profile.AddPvi(1000.0, 200.0, VerticalCurve::Asymmetric(120.0, 80.0)));
  ASSERT_TRUE(profile.AddPvi(1200.0, 196.0));
  ExpectElevation(profile, 850.0, 194.0);
  ExpectElevation(profile, 880.0, 195.2);
  ExpectElevation(profile, 940.0, 197.24);   // 195.2 + 2.4 - 0.36
  ExpectElevation(profile, 1000.0, 198.56);  // 200 - 1.44
  ExpectElevation(profile, 1040.0, 198.84);  // 198.4 + 0.8 - 0.36
  ExpectElevation(profile, 1080.0, 198.4);
  ExpectElevation(profile, 1140.0, 197.2);
  // The two halves share their slope at the PVI: g1 + 2e/L1 = g2 - 2e/L2 = 0.016.
  const double h = 1e-4;
  const double left = (profile.ElevationAt(1000.0).Value() - profile.ElevationAt(1000.0 - h).Value()) / h;
  const double right = (profile.ElevationAt(1000.0 + h).Value() - profile.ElevationAt(1000.0).Value()) / h;
  EXPECT_NEAR(left, 0.016, 1e-5);
  EXPECT_NEAR(right, 0.016, 1e-5);
}

// Grades +3/4 and -3/4 make 3-4-5 triangles: tan(alpha) = 0.75, sin 0.6, cos 0.8, deflection
// 2 alpha, and T = R tan(alpha) = 75 for R = 100. BVC = PVI - 75 (0.8, 0.6) = (940, 55); the
// centre lies R below the incoming grade: (940 + 60, 55 - 80) = (1000, -25). So the crest is at
// 75, and at 1028 the curve is -25 + sqrt(100^2 - 28^2) = -25 + 96 = 71.
TEST(ProfileElevation, CircularCurveIsATrueCircle) {
  ProfileGeometry crest;
  ASSERT_TRUE(crest.AddPvi(900.0, 25.0));
  ASSERT_TRUE(crest.AddPvi(1000.0, 100.0, VerticalCurve::Circular(100.0)));
  ASSERT_TRUE(crest.AddPvi(1100.0, 25.0));
  ExpectElevation(crest, 920.0, 40.0);
  ExpectElevation(crest, 940.0, 55.0);
  ExpectElevation(crest, 1000.0, 75.0);
  ExpectElevation(crest, 1028.0, 71.0);
  ExpectElevation(crest, 972.0, 71.0);
  ExpectElevation(crest, 1060.0, 55.0);
  ExpectElevation(crest, 1080.0, 40.0);
  const auto extent = crest.CurveAt(1);
  ASSERT_TRUE(extent);
  EXPECT_NEAR(extent.Value().startStation, 940.0, 1e-12);
  EXPECT_NEAR(extent.Value().endStation, 1060.0, 1e-12);

  // A road sag: -4 % into +2 % with R = 2000 at (600, 80). Values from the circle through the
  // tangent points (T = 59.994006, BVC 540.05393 at 82.397843), 40-digit arithmetic.
  ProfileGeometry sag;
  ASSERT_TRUE(sag.AddPvi(400.0, 88.0));
  ASSERT_TRUE(sag.AddPvi(600.0, 80.0, VerticalCurve::Circular(2000.0)));
  ASSERT_TRUE(sag.AddPvi(800.0, 84.0));
  ExpectElevation(sag, 540.05393169376638, 82.397842732249345, 1e-9);
  ExpectElevation(sag, 560.0, 81.699662908763724, 1e-9);
  ExpectElevation(sag, 600.0, 80.899662779833918, 1e-9);
  ExpectElevation(sag, 620.0, 80.799760200786251, 1e-9);
  ExpectElevation(sag, 659.98201079070982, 81.199640215814196, 1e-9);
  ExpectElevation(sag, 700.0, 82.0);
}

TEST(ProfileElevation, OutsideTheProfileOrWithoutPvisItFails) {
  ProfileGeometry profile;
  EXPECT_EQ(profile.ElevationAt(0.0).Error(), LandError::Empty);
  EXPECT_EQ(profile.StartingStation().Error(), LandError::Empty);
  ASSERT_TRUE(profile.AddPvi(100.0, 10.0));
  ExpectElevation(profile, 100.0, 10.0, 0.0);  // one PVI: a profile of one station
  ASSERT_TRUE(profile.AddPvi(300.0, 14.0));
  EXPECT_EQ(profile.StartingStation().Value(), 100.0);
  EXPECT_EQ(profile.EndingStation().Value(), 300.0);
  EXPECT_EQ(profile.ElevationAt(99.999).Error(), LandError::OutOfRange);
  EXPECT_EQ(profile.ElevationAt(std::nextafter(300.0, 400.0)).Error(), LandError::OutOfRange);
  EXPECT_EQ(profile.ElevationAt(NAN).Error(), LandError::InvalidArgument);
  ExpectElevation(profile, 300.0, 14.0, 0.0);
}

TEST(ProfileElevation, CurvesThatDoNotFitFailWithinTheirReachOnly) {
  ProfileGeometry profile;
  ASSERT_TRUE(profile.AddPvi(0.0, 0.0));
  ASSERT_TRUE(profile.AddPvi(100.0, 2.0));
  ASSERT_TRUE(profile.AddPvi(200.0, 0.0, VerticalCurve::Parabola(120.0)));  // runs to 140 and 260
  ASSERT_TRUE(profile.AddPvi(300.0, 2.0, VerticalCurve::Parabola(120.0)));  // from 240: overlap
  ASSERT_TRUE(profile.AddPvi(500.0, 2.0));
  EXPECT_FALSE(profile.CurvesFit());
  EXPECT_FALSE(profile.CurveAt(2).Value().fits);
  EXPECT_FALSE(profile.CurveAt(3).Value().fits);
  EXPECT_EQ(profile.ElevationAt(200.0).Error(), LandError::CurveDoesNotFit);
  EXPECT_EQ(profile.ElevationAt(355.0).Error(), LandError::CurveDoesNotFit);
  ExpectElevation(profile, 50.0, 1.0);
  ExpectElevation(profile, 400.0, 2.0);
  // Shortening one curve settles it.
  ASSERT_EQ(profile.SetCurve(3, VerticalCurve::Parabola(60.0)), LandError::None);
  EXPECT_TRUE(profile.CurvesFit());
  ExpectElevation(profile, 200.0, 0.6);  // e = (g2 - g1) L / 8 = 0.04 * 120 / 8
  // A curve past its neighbouring PVI does not fit either.
  ASSERT_EQ(profile.SetCurve(1, VerticalCurve::Asymmetric(150.0, 20.0)), LandError::None);
  EXPECT_EQ(profile.ElevationAt(10.0).Error(), LandError::CurveDoesNotFit);
}

TEST(ProfilePvis, StationsAreKeptInOrderAndUnique) {
  ProfileGeometry profile;
  const StationRange alignment{0.0, 500.0};
  ASSERT_TRUE(profile.AddPvi(400.0, 4.0, {}, alignment));
  ASSERT_TRUE(profile.AddPvi(100.0, 1.0, {}, alignment));
  ASSERT_TRUE(profile.AddPvi(250.0, 2.5, VerticalCurve::Parabola(50.0), alignment));
  ASSERT_EQ(profile.Count(), 3);
  EXPECT_EQ(profile.Item(0)->station, 100.0);
  EXPECT_EQ(profile.Item(1)->station, 250.0);
  EXPECT_EQ(profile.Item(1)->curve.type, VerticalCurveType::SymmetricParabola);
  EXPECT_EQ(profile.Item(2)->station, 400.0);
  EXPECT_EQ(profile.Item(3), nullptr);

  EXPECT_EQ(profile.AddPvi(250.0 + 5e-7, 9.0, {}, alignment).Error(), LandError::Duplicate);
  EXPECT_TRUE(profile.AddPvi(250.0 + 2e-6, 9.0, {}, alignment));
  EXPECT_EQ(profile.AddPvi(-1.0, 0.0, {}, alignment).Error(), LandError::OutOfRange);
  EXPECT_EQ(profile.AddPvi(500.1, 0.0, {}, alignment).Error(), LandError::OutOfRange);
  EXPECT_EQ(profile.AddPvi(300.0, 0.0, VerticalCurve::Parabola(0.0), alignment).Error(), LandError::InvalidArgument);
  EXPECT_EQ(profile.AddPvi(300.0, 0.0, VerticalCurve::Circular(-5.0), alignment).Error(), LandError::InvalidArgument);
  EXPECT_EQ(profile.AddPvi(300.0, 0.0, VerticalCurve::Asymmetric(10.0, NAN), alignment).Error(),
            LandError::InvalidArgument);
  EXPECT_EQ(profile.Count(), 4);

  ASSERT_EQ(profile.RemovePvi(2), LandError::None);
  EXPECT_EQ(profile.Count(), 3);
  EXPECT_EQ(profile.RemovePvi(3), LandError::NotFound);
  ASSERT_EQ(profile.SetElevation(1, 3.0), LandError::None);
  ExpectElevation(profile, 175.0, 2.0);
  profile.RemoveAll();
  EXPECT_EQ(profile.Count(), 0);
  EXPECT_EQ(profile.ElevationAt(100.0).Error(), LandError::Empty);
}

// The module edits a profile's two end PVIs in place: PVI 0 first, then PVI 1. Moving the first
// past the second must leave both where they were sent.
TEST(ProfilePvis, MovingAPviPastItsNeighbourReordersAndKeepsItsId) {
  ProfileGeometry profile;
  const int a = profile.AddPvi(0.0, 10.0).Value();
  const int b = profile.AddPvi(40.0, 12.0).Value();
  const auto moved = profile.SetStation(profile.IndexOfId(a), 50.0);
  ASSERT_TRUE(moved);
  EXPECT_EQ(moved.Value(), 1);
  EXPECT_EQ(profile.Item(0)->id, b);
  ASSERT_TRUE(profile.SetStation(profile.IndexOfId(b), 200.0));
  EXPECT_EQ(profile.Item(0)->id, a);
  EXPECT_EQ(profile.Item(0)->station, 50.0);
  EXPECT_EQ(profile.Item(1)->id, b);
  EXPECT_EQ(profile.Item(1)->station, 200.0);
  EXPECT_EQ(profile.SetStation(0, 200.0 - 1e-7).Error(), LandError::Duplicate);
  EXPECT_TRUE(profile.SetStation(0, 50.0 + 1e-7));  // onto (almost) itself is no clash
  EXPECT_EQ(profile.SetStation(5, 1.0).Error(), LandError::NotFound);
}

}  // namespace
