// Stationing as Civil 3D relates it: starting and ending station, reference point and its
// station, station equations, and points by station and offset.
//
// The alignment: a tangent from (0, 0) to (100, 0), a quarter circle left about (100, 100) to
// (200, 100), and a tangent north to (200, 300). Length 300 + 50 pi = 457.07963267948966.
#include <gtest/gtest.h>

#include <cmath>

#include "headless/aecc/model/AlignmentGeometry.h"

namespace {

using namespace headless::land;

constexpr double kArc = 78.539816339744831;      // 25 pi, half the quarter circle
constexpr double kLength = 457.07963267948966;
constexpr double kRoot2 = 1.4142135623730951;

class Stationing : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(alignment.AddFixedLine({0, 0}, {100, 0}));
    ASSERT_TRUE(alignment.AddFixedCurve(1, {100, 0}, {100 + 100 / kRoot2, 100 - 100 / kRoot2}, {200, 100}));
    ASSERT_TRUE(alignment.AddFixedLine({200, 100}, {200, 300}));
  }
  AlignmentGeometry alignment;
};

TEST_F(Stationing, ByDefaultTheReferenceIsTheStartAtStationZero) {
  EXPECT_FALSE(alignment.HasExplicitReferencePoint());
  EXPECT_EQ(alignment.ReferencePoint(), (Point2{0, 0}));
  EXPECT_EQ(alignment.StartingStation(), 0.0);
  EXPECT_NEAR(alignment.EndingStation(), kLength, 1e-12);
  EXPECT_NEAR(alignment.Length(), kLength, 1e-12);
}

TEST_F(Stationing, ReferenceStationShiftsTheWholeStationing) {
  ASSERT_EQ(alignment.SetReferencePointStation(1000.0), LandError::None);
  EXPECT_EQ(alignment.StartingStation(), 1000.0);
  EXPECT_NEAR(alignment.EndingStation(), 1000.0 + kLength, 1e-12);
  // The unset reference point follows the start when the first entity changes.
  ASSERT_TRUE(alignment.AddFixedLine({-50, 0}, {0, 0}));
  alignment.Remove(1);
  alignment.Remove(2);
  alignment.Remove(3);
  EXPECT_EQ(alignment.ReferencePoint(), (Point2{-50, 0}));
  EXPECT_EQ(alignment.StartingStation(), 1000.0);
  EXPECT_EQ(alignment.SetReferencePointStation(NAN), LandError::InvalidArgument);
}

TEST_F(Stationing, ReferencePointRelatesItsProjectionToItsStation) {
  // 10 left of the first tangent, 50 along it: the start lies 50 before station 1000.
  ASSERT_EQ(alignment.SetReferencePoint({50, 10}), LandError::None);
  ASSERT_EQ(alignment.SetReferencePointStation(1000.0), LandError::None);
  EXPECT_TRUE(alignment.HasExplicitReferencePoint());
  EXPECT_EQ(alignment.ReferencePoint(), (Point2{50, 10}));
  EXPECT_NEAR(alignment.StartingStation(), 950.0, 1e-12);
  EXPECT_NEAR(alignment.EndingStation(), 950.0 + kLength, 1e-12);

  // Inside the curve, on the radius at -45 degrees: it projects on the arc's middle.
  ASSERT_EQ(alignment.SetReferencePoint({100 + 80 / kRoot2, 100 - 80 / kRoot2}), LandError::None);
  ASSERT_EQ(alignment.SetReferencePointStation(500.0), LandError::None);
  EXPECT_NEAR(alignment.StartingStation(), 500.0 - 100.0 - kArc, 1e-9);

  // The explicit point stays put when the geometry in front of it changes.
  ASSERT_TRUE(alignment.AddFixedCurve(0, {200, 300}, {210, 310}, {200, 320}));
  EXPECT_NEAR(alignment.StartingStation(), 500.0 - 100.0 - kArc, 1e-9);
}

TEST_F(Stationing, ReferencePointOffTheEndsRelatesToTheNearestEnd) {
  ASSERT_EQ(alignment.SetReferencePoint({-30, 5}), LandError::None);  // before the start
  ASSERT_EQ(alignment.SetReferencePointStation(200.0), LandError::None);
  EXPECT_EQ(alignment.StartingStation(), 200.0);
  ASSERT_EQ(alignment.SetReferencePoint({205, 400}), LandError::None);  // past the end
  EXPECT_NEAR(alignment.StartingStation(), 200.0 - kLength, 1e-12);
  EXPECT_EQ(alignment.SetReferencePoint({INFINITY, 0}), LandError::InvalidArgument);
}

TEST_F(Stationing, PointByStationAndOffsetAndBack) {
  alignment.SetReferencePointStation(1000.0);
  // Middle of the arc, 10 to the right: outside the left-turning curve, radius 110.
  const auto p = alignment.PointLocation(1000.0 + 100.0 + kArc, 10.0);
  ASSERT_TRUE(p);
  EXPECT_NEAR(p.Value().x, 100 + 110 / kRoot2, 1e-9);
  EXPECT_NEAR(p.Value().y, 100 - 110 / kRoot2, 1e-9);
  // On the last tangent, 5 to the left (west of a line running north).
  const auto q = alignment.PointLocation(1000.0 + 100.0 + 2 * kArc + 40.0, -5.0);
  ASSERT_TRUE(q);
  EXPECT_NEAR(q.Value().x, 195.0, 1e-9);
  EXPECT_NEAR(q.Value().y, 140.0, 1e-9);

  const auto back = alignment.StationOffsetOf({100 + 90 / kRoot2, 100 - 90 / kRoot2});
  ASSERT_TRUE(back);
  EXPECT_NEAR(back.Value().station, 1000.0 + 100.0 + kArc, 1e-9);
  EXPECT_NEAR(back.Value().offset, -10.0, 1e-9);
  EXPECT_NEAR(back.Value().distance, 100.0 + kArc, 1e-9);

  EXPECT_EQ(alignment.PointLocation(999.0, 0.0).Error(), LandError::OutOfRange);
  EXPECT_EQ(alignment.PointLocation(1000.0 + kLength + 1.0, 0.0).Error(), LandError::OutOfRange);
  EXPECT_EQ(alignment.StationOffsetOf({-1, 3}).Error(), LandError::OutOfRange);   // before the start
  EXPECT_EQ(alignment.StationOffsetOf({201, 301}).Error(), LandError::OutOfRange);  // after the end
  const auto start = alignment.StationOffsetOf({0, -4});  // square off the start: still on it
  ASSERT_TRUE(start);
  EXPECT_EQ(start.Value().station, 1000.0);
  EXPECT_EQ(start.Value().offset, 4.0);
  EXPECT_EQ(AlignmentGeometry().PointLocation(0.0, 0.0).Error(), LandError::Empty);
}

TEST_F(Stationing, PointsOnASpiralProjectBackOntoIt) {
  AlignmentGeometry road;
  const auto spiral = AlignmentCurve::MakeSpiral({10, 10}, 0.2, 150.0, INFINITY, 250.0, SpiralDirection::Right);
  ASSERT_TRUE(spiral);
  ASSERT_TRUE(road.AddCurve(0, spiral.Value()));
  for (const double station : {0.0, 33.3, 75.0, 149.0}) {
    for (const double offset : {-12.0, 0.0, 7.5}) {
      const auto p = road.PointLocation(station, offset);
      ASSERT_TRUE(p);
      const auto back = road.StationOffsetOf(p.Value());
      ASSERT_TRUE(back) << station << " " << offset;
      EXPECT_NEAR(back.Value().station, station, 1e-9);
      EXPECT_NEAR(back.Value().offset, offset, 1e-9);
    }
  }
}

TEST_F(Stationing, EquationsRelabelTheStationsAfterThem) {
  alignment.SetReferencePointStation(100.0);
  // At raw 300 (distance 200) the labels jump to 1000 and count up; at raw 500 (distance 400)
  // to 5000 and count down.
  ASSERT_EQ(alignment.AddStationEquation(300.0, 1000.0, StationIncrement::Increasing), LandError::None);
  ASSERT_EQ(alignment.AddStationEquation(500.0, 5000.0, StationIncrement::Decreasing), LandError::None);
  ASSERT_EQ(alignment.Equations().Count(), 2);
  EXPECT_EQ(alignment.Equations().StationBack(0, alignment.StartingStation()), 300.0);
  EXPECT_EQ(alignment.Equations().StationBack(1, alignment.StartingStation()), 1200.0);

  EXPECT_EQ(alignment.StationAtDistance(150.0), 250.0);
  EXPECT_EQ(alignment.StationAtDistance(200.0), 1000.0);
  EXPECT_EQ(alignment.StationAtDistance(300.0), 1100.0);
  EXPECT_EQ(alignment.StationAtDistance(420.0), 4980.0);
  EXPECT_EQ(alignment.DistanceAtStation(250.0).Value(), 150.0);
  EXPECT_EQ(alignment.DistanceAtStation(1100.0).Value(), 300.0);
  EXPECT_EQ(alignment.DistanceAtStation(4980.0).Value(), 420.0);
  EXPECT_EQ(alignment.DistanceAtStation(700.0).Error(), LandError::OutOfRange);  // jumped over
  // Raw stations of profiles are not relabelled.
  EXPECT_NEAR(alignment.EndingStation(), 100.0 + kLength, 1e-12);

  // A point after the first equation, by its label.
  const auto p = alignment.PointLocation(1000.0 + 100.0 + 2 * kArc - 200.0 + 40.0, 0.0);
  ASSERT_TRUE(p);
  EXPECT_NEAR(p.Value().x, 200.0, 1e-9);
  EXPECT_NEAR(p.Value().y, 140.0, 1e-9);
  EXPECT_NEAR(alignment.StationOffsetOf({200.0, 140.0}).Value().station, 1000.0 + 2 * kArc + 40.0 - 100.0, 1e-9);

  EXPECT_EQ(alignment.AddStationEquation(300.0 + 1e-7, 2000.0, StationIncrement::Increasing), LandError::Duplicate);
  EXPECT_EQ(alignment.AddStationEquation(50.0, 2000.0, StationIncrement::Increasing), LandError::OutOfRange);
  EXPECT_EQ(alignment.AddStationEquation(100.0 + kLength + 1.0, 2000.0, StationIncrement::Increasing),
            LandError::OutOfRange);
  alignment.RemoveStationEquations();
  EXPECT_EQ(alignment.StationAtDistance(420.0), 520.0);
}

}  // namespace
