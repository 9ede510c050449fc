// Exchange records as the host sees them: header-only values with the contract's quirks.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "module/interface/C3dRecords.h"

namespace {

TEST(CC3dPoint, EqualityIsExactWithoutTolerance) {
  const CC3dPoint a(1, 2, 3);
  EXPECT_TRUE(a == CC3dPoint(1, 2, 3));
  EXPECT_FALSE(a == CC3dPoint(1, 2, 3 + 1e-12));
  EXPECT_TRUE(a != CC3dPoint(1, 2, 3 + 1e-12));
  EXPECT_FALSE(a != CC3dPoint(1, 2, 3));
  const double nan = std::nan("");
  EXPECT_FALSE(CC3dPoint(nan, 0, 0) == CC3dPoint(nan, 0, 0));
}

// != goes through the virtual ==, so a record type that redefines equality keeps both in step.
TEST(CC3dPoint, InequalityCallsTheVirtualEquality) {
  struct Tolerant : CC3dPoint {
    using CC3dPoint::CC3dPoint;
    bool operator==(const CC3dPoint& o) const override {
      return std::abs(x - o.x) < 1e-6 && std::abs(y - o.y) < 1e-6 && std::abs(z - o.z) < 1e-6;
    }
  };
  const Tolerant t(1, 2, 3);
  const CC3dPoint& asBase = t;
  EXPECT_FALSE(asBase != CC3dPoint(1, 2, 3 + 1e-9));
}

TEST(CC3dPoint, DefaultsToOriginAndCopies) {
  CC3dPoint p;
  EXPECT_EQ(p.x, 0.0);
  EXPECT_EQ(p.y, 0.0);
  EXPECT_EQ(p.z, 0.0);
  p = CC3dPoint(4, 5, 6);
  const CC3dPoint copy(p);
  EXPECT_TRUE(copy == CC3dPoint(4, 5, 6));
}

TEST(CC3dCurve, DefaultIsALineAtTheOrigin) {
  const CC3dCurve c;
  EXPECT_TRUE(c.GetIsLine());
  EXPECT_TRUE(c.GetStartPt() == CC3dPoint());
  EXPECT_TRUE(c.GetEndPt() == CC3dPoint());
  EXPECT_EQ(c.GetRadius(), 0.0);
  EXPECT_EQ(c.GetStartAngle(), 0.0);
  EXPECT_EQ(c.GetSweep(), 0.0);
}

TEST(CC3dCurve, ArcEndIsComputedInThePlaneZeroAndStartIsNot) {
  CC3dCurve c;
  c.SetArc(CC3dPoint(10, 20, 5), 2.0, 0.0, std::numbers::pi / 2);
  EXPECT_FALSE(c.GetIsLine());
  const CC3dPoint end = c.GetEndPt();
  EXPECT_NEAR(end.x, 10.0, 1e-12);
  EXPECT_NEAR(end.y, 22.0, 1e-12);
  EXPECT_EQ(end.z, 0.0);
  // The start is whatever was stored last, never computed from the arc.
  EXPECT_TRUE(c.GetStartPt() == CC3dPoint(0, 0, 0));
  EXPECT_TRUE(c.GetCenter() == CC3dPoint(10, 20, 5));
}

TEST(CC3dCurve, NegativeSweepRunsClockwise) {
  CC3dCurve c;
  c.SetArc(CC3dPoint(0, 0, 0), 1.0, std::numbers::pi / 2, -std::numbers::pi / 2);
  const CC3dPoint end = c.GetEndPt();
  EXPECT_NEAR(end.x, 1.0, 1e-12);
  EXPECT_NEAR(end.y, 0.0, 1e-12);
  EXPECT_EQ(c.GetRadius(), 1.0);
}

TEST(CC3dCurve, SwitchingKindsKeepsTheOtherKindsFields) {
  CC3dCurve c;
  c.SetLine(CC3dPoint(1, 1, 1), CC3dPoint(2, 2, 2));
  c.SetArc(CC3dPoint(5, 5, 0), 3.0, 0.25, 1.0);
  EXPECT_TRUE(c.GetStartPt() == CC3dPoint(1, 1, 1)) << "SetArc leaves the stored start";
  c.SetLine(CC3dPoint(7, 8, 9), CC3dPoint(10, 11, 12));
  EXPECT_TRUE(c.GetIsLine());
  EXPECT_TRUE(c.GetEndPt() == CC3dPoint(10, 11, 12)) << "a line keeps its z";
  EXPECT_TRUE(c.GetCenter() == CC3dPoint(5, 5, 0)) << "SetLine leaves the arc fields";
  EXPECT_EQ(c.GetRadius(), 3.0);
  EXPECT_EQ(c.GetStartAngle(), 0.25);
  EXPECT_EQ(c.GetSweep(), 1.0);
}

TEST(CC3dProfilePVI, DefaultsAndAccessors) {
  CC3dProfilePVI pvi;
  EXPECT_EQ(pvi.GetType(), CC3dProfilePVI::NoCurve);
  EXPECT_EQ(pvi.GetStation(), 0.0);
  EXPECT_EQ(pvi.GetElevation(), 0.0);
  EXPECT_EQ(pvi.GetRadius(), 0.0);
  EXPECT_EQ(pvi.GetCurveLength(), 0.0);
  EXPECT_EQ(pvi.GetLength1(), 0.0);
  EXPECT_EQ(pvi.GetLength2(), 0.0);

  pvi.SetStation(120.5);
  pvi.SetElevation(33.25);
  pvi.SetCurveType(CC3dProfilePVI::AsymmetricParabolicCurve);
  pvi.SetLength1(40.0);
  pvi.SetLength2(60.0);
  const CC3dProfilePVI copy = pvi;
  EXPECT_EQ(copy.GetStation(), 120.5);
  EXPECT_EQ(copy.GetElevation(), 33.25);
  EXPECT_EQ(copy.GetType(), 3);
  EXPECT_EQ(copy.GetLength1(), 40.0);
  EXPECT_EQ(copy.GetLength2(), 60.0);
  EXPECT_EQ(static_cast<int>(CC3dProfilePVI::CircularCurve), 1);
  EXPECT_EQ(static_cast<int>(CC3dProfilePVI::ParabolicCurve), 2);
}

TEST(CC3dProfilePoint, StoresStationAndElevation) {
  CC3dProfilePoint p;
  EXPECT_EQ(p.GetStation(), 0.0);
  p.SetStation(10.0);
  p.SetElevation(-2.5);
  EXPECT_EQ(p.GetStation(), 10.0);
  EXPECT_EQ(p.GetElevation(), -2.5);
}

}  // namespace
