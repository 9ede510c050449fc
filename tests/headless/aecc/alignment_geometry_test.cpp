// Alignment entities: three-point arcs, the entity listing and its ids, spiral groups of every
// kind, and the light-weight polyline form.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "headless/aecc/model/AlignmentGeometry.h"

namespace {

using namespace headless::land;

constexpr double kInf = std::numeric_limits<double>::infinity();

// Centre (3, 4), radius 5: (0, 0), (6, 0), (8, 4) and (0, 8) lie on it. From (0, 0) to (8, 4) the
// short way round (counter-clockwise, through (6, 0)) turns acos(-0.6); the long way 2 pi minus that.
constexpr double kShortTurn = 2.2142974355881809783;
constexpr double kLongTurn = 4.0688878715914054986;

TEST(ThreePointArc, CounterClockwiseThroughItsMiddlePoint) {
  const auto arc = AlignmentCurve::MakeArcThroughPoints({0.0, 0.0}, {6.0, 0.0}, {8.0, 4.0});
  ASSERT_TRUE(arc);
  const AlignmentCurve& a = arc.Value();
  EXPECT_EQ(a.Kind(), CurveKind::Arc);
  EXPECT_NEAR(a.Centre().x, 3.0, 1e-14);
  EXPECT_NEAR(a.Centre().y, 4.0, 1e-14);
  EXPECT_NEAR(a.Radius(), 5.0, 1e-14);
  EXPECT_FALSE(a.Clockwise());
  EXPECT_NEAR(a.Delta(), kShortTurn, 1e-14);
  EXPECT_NEAR(a.Length(), 5.0 * kShortTurn, 1e-13);
  // Heading at the start is square to the radius (-3, -4)/5, turned counter-clockwise: (0.8, -0.6).
  EXPECT_NEAR(a.StartDirection(), std::atan2(-0.6, 0.8), 1e-14);
  EXPECT_NEAR(std::cos(a.EndDirection()), 0.0, 1e-14);  // at (8, 4) it heads north
  EXPECT_NEAR(std::sin(a.EndDirection()), 1.0, 1e-14);
  // Halfway round: the radius at -63.43 degrees, (3 + sqrt 5, 4 - 2 sqrt 5).
  const Point2 half = a.PointAt(a.Length() / 2.0);
  EXPECT_NEAR(half.x, 3.0 + std::sqrt(5.0), 1e-13);
  EXPECT_NEAR(half.y, 4.0 - 2.0 * std::sqrt(5.0), 1e-13);
  EXPECT_EQ(a.EndPoint(), (Point2{8.0, 4.0}));
}

TEST(ThreePointArc, MiddlePointOnTheOtherSideMakesItClockwise) {
  const auto arc = AlignmentCurve::MakeArcThroughPoints({0.0, 0.0}, {0.0, 8.0}, {8.0, 4.0});
  ASSERT_TRUE(arc);
  EXPECT_TRUE(arc.Value().Clockwise());
  EXPECT_NEAR(arc.Value().Centre().x, 3.0, 1e-14);
  EXPECT_NEAR(arc.Value().Centre().y, 4.0, 1e-14);
  EXPECT_NEAR(arc.Value().Delta(), kLongTurn, 1e-14);
  EXPECT_NEAR(arc.Value().Length(), 5.0 * kLongTurn, 1e-13);
  EXPECT_NEAR(std::cos(arc.Value().StartDirection()), -0.8, 1e-14);
  EXPECT_NEAR(std::sin(arc.Value().StartDirection()), 0.6, 1e-14);
  EXPECT_LT(arc.Value().CurvatureAt(1.0), 0.0);
}

TEST(ThreePointArc, RefusesCoincidentAndCollinearPoints) {
  EXPECT_EQ(AlignmentCurve::MakeArcThroughPoints({0, 0}, {0, 0}, {8, 4}).Error(), LandError::Degenerate);
  EXPECT_EQ(AlignmentCurve::MakeArcThroughPoints({0, 0}, {6, 0}, {0, 0}).Error(), LandError::Degenerate);
  EXPECT_EQ(AlignmentCurve::MakeArcThroughPoints({0, 0}, {1, 1}, {2, 2}).Error(), LandError::Degenerate);
  EXPECT_EQ(AlignmentCurve::MakeArcThroughPoints({0, 0}, {3, 3}, {1, 1}).Error(), LandError::Degenerate);
  EXPECT_EQ(AlignmentCurve::MakeArcThroughPoints({0, 0}, {NAN, 1}, {1, 1}).Error(), LandError::InvalidArgument);
  // Far from the origin the test is relative to the chord, not fooled by the coordinates' size.
  const Point2 far{612345.0, 4712345.0};
  EXPECT_TRUE(AlignmentCurve::MakeArcThroughPoints(far, far + Point2{50, 1}, far + Point2{100, 0}));
}

TEST(ArcAboutCentre, RotationDecidesTheWayRound) {
  const auto ccw = AlignmentCurve::MakeArcAboutCentre({0, 0}, {3, 4}, {8, 4}, false);
  const auto cw = AlignmentCurve::MakeArcAboutCentre({0, 0}, {3, 4}, {8, 4}, true);
  ASSERT_TRUE(ccw);
  ASSERT_TRUE(cw);
  EXPECT_NEAR(ccw.Value().Delta(), kShortTurn, 1e-14);
  EXPECT_NEAR(cw.Value().Delta(), kLongTurn, 1e-14);
  EXPECT_EQ(AlignmentCurve::MakeArcAboutCentre({0, 0}, {3, 4}, {8, 5}, false).Error(), LandError::InvalidArgument);
}

class AlignmentListing : public ::testing::Test {
protected:
  int Line(Point2 a, Point2 b) {
    const auto id = alignment.AddFixedLine(a, b);
    EXPECT_TRUE(id);
    return id.ValueOr(0);
  }
  std::vector<int> IdsInOrder() const {
    std::vector<int> ids;
    for (int i = 0; i < alignment.Count(); ++i) ids.push_back(alignment.Item(i)->Id());
    return ids;
  }
  AlignmentGeometry alignment;
};

TEST_F(AlignmentListing, IdsStartAtOneAndAreNeverReused) {
  EXPECT_EQ(Line({0, 0}, {100, 0}), 1);
  EXPECT_EQ(Line({100, 0}, {200, 0}), 2);
  ASSERT_EQ(alignment.Remove(2), LandError::None);
  EXPECT_EQ(Line({100, 0}, {300, 0}), 3);
  alignment.RemoveAll();
  EXPECT_EQ(alignment.Count(), 0);
  EXPECT_EQ(alignment.EntityAtId(1), nullptr);
  EXPECT_EQ(Line({0, 0}, {10, 0}), 4);
  EXPECT_EQ(alignment.Remove(1), LandError::NotFound);
}

TEST_F(AlignmentListing, FixedCurveGoesAfterItsPreviousEntity) {
  const int first = Line({0, 0}, {100, 0});
  const int last = Line({200, 100}, {200, 300});
  const auto arc = alignment.AddFixedCurve(first, {100, 0}, {170.71067811865476, 29.289321881345245}, {200, 100});
  ASSERT_TRUE(arc);
  EXPECT_EQ(IdsInOrder(), (std::vector<int>{first, arc.Value(), last}));
  EXPECT_EQ(alignment.EntityAfter(first), arc.Value());
  EXPECT_EQ(alignment.EntityBefore(last), arc.Value());
  EXPECT_EQ(alignment.EntityBefore(first), 0);
  EXPECT_EQ(alignment.EntityAfter(last), 0);
  EXPECT_EQ(alignment.FirstEntityId(), first);
  EXPECT_EQ(alignment.LastEntityId(), last);
  // Lengths: 100, a quarter circle of 100, 200.
  EXPECT_DOUBLE_EQ(alignment.EntityAtId(arc.Value())->Length(), 50.0 * 3.14159265358979323846);
  EXPECT_DOUBLE_EQ(alignment.Length(), 300.0 + 50.0 * 3.14159265358979323846);
  EXPECT_DOUBLE_EQ(alignment.StartDistance(2), 100.0 + 50.0 * 3.14159265358979323846);

  // Previous id 0 appends; an unknown one is refused and nothing is added.
  const auto appended = alignment.AddFixedCurve(0, {200, 300}, {210, 310}, {200, 320});
  ASSERT_TRUE(appended);
  EXPECT_EQ(alignment.LastEntityId(), appended.Value());
  EXPECT_EQ(alignment.AddFixedCurve(99, {0, 0}, {1, 1}, {2, 0}).Error(), LandError::NotFound);
  EXPECT_EQ(alignment.Count(), 4);
}

TEST_F(AlignmentListing, RefusedAddsLeaveTheListingAlone) {
  Line({0, 0}, {100, 0});
  EXPECT_EQ(alignment.AddFixedLine({5, 5}, {5, 5}).Error(), LandError::Degenerate);
  EXPECT_EQ(alignment.AddFixedCurve(1, {100, 0}, {150, 0}, {200, 0}).Error(), LandError::Degenerate);
  EXPECT_EQ(alignment.Count(), 1);
  EXPECT_EQ(alignment.Item(1), nullptr);
  EXPECT_EQ(alignment.Item(-1), nullptr);
  // The failed adds used no id.
  EXPECT_EQ(Line({100, 0}, {200, 0}), 2);
}

// Builds parts that join with continuous heading and curvature, as a designer lays them out.
class Chain {
public:
  explicit Chain(Point2 start, double heading = 0.0) : at_(start), heading_(heading) {}
  Chain& Tangent(double length) {
    return Add(AlignmentCurve::MakeTangent(at_, at_ + length * UnitAt(heading_)));
  }
  Chain& Arc(double length, double curvature) {
    return Add(AlignmentCurve::MakeArcFromDirection(at_, heading_, 1.0 / std::abs(curvature), length, curvature < 0));
  }
  Chain& Spiral(double length, double kIn, double kOut) {
    const auto radius = [](double k) { return k == 0.0 ? kInf : 1.0 / std::abs(k); };
    const SpiralDirection side = (kIn + kOut) > 0.0 ? SpiralDirection::Left : SpiralDirection::Right;
    return Add(AlignmentCurve::MakeSpiral(at_, heading_, length, radius(kIn), radius(kOut), side));
  }
  std::vector<AlignmentCurve> parts;

private:
  Chain& Add(Outcome<AlignmentCurve> curve) {
    EXPECT_TRUE(curve);
    if (!curve) return *this;
    at_ = curve.Value().EndPoint();
    heading_ = curve.Value().EndDirection();
    parts.push_back(std::move(curve).Value());
    return *this;
  }
  Point2 at_;
  double heading_;
};

TEST(SpiralGroup, SpiralCurveSpiralIsOneEntityWithItsPartsInOrder) {
  // 60 of spiral into R = 300, 100 of arc, 60 out: turns 60/600 + 100/300 + 60/600 in all.
  Chain chain({1000.0, 500.0}, 0.3);
  chain.Spiral(60, 0, 1.0 / 300).Arc(100, 1.0 / 300).Spiral(60, 1.0 / 300, 0);
  AlignmentGeometry alignment;
  const int before = alignment.AddFixedLine({900.0, 500.0 - 100.0 * std::tan(0.3)}, {1000.0, 500.0}).Value();
  const auto group = alignment.AddGroup(before, AlignmentEntityType::SpiralCurveSpiral, chain.parts);
  ASSERT_TRUE(group);
  const AlignmentEntity* scs = alignment.EntityAtId(group.Value());
  ASSERT_NE(scs, nullptr);
  EXPECT_EQ(scs->Type(), AlignmentEntityType::SpiralCurveSpiral);
  EXPECT_TRUE(scs->IsGroup());
  ASSERT_EQ(scs->SubEntityCount(), 3);
  EXPECT_EQ(scs->SubEntity(0)->Kind(), CurveKind::Spiral);
  EXPECT_EQ(scs->SubEntity(1)->Kind(), CurveKind::Arc);
  EXPECT_EQ(scs->SubEntity(2)->Kind(), CurveKind::Spiral);
  EXPECT_EQ(scs->SubEntity(3), nullptr);
  EXPECT_DOUBLE_EQ(scs->SubEntity(1)->Radius(), 300.0);
  EXPECT_DOUBLE_EQ(scs->Length(), 220.0);
  EXPECT_NEAR(scs->EndDirection() - scs->StartDirection(), 0.1 + 1.0 / 3.0 + 0.1, 1e-14);
  EXPECT_EQ(scs->StartPoint(), (Point2{1000.0, 500.0}));
  EXPECT_EQ(alignment.Count(), 2);
  EXPECT_DOUBLE_EQ(alignment.Length(), 100.0 / std::cos(0.3) + 220.0);
}

TEST(SpiralGroup, PartsThatDoNotFitTheKindOrDoNotJoinAreRefused) {
  Chain chain({0.0, 0.0});
  chain.Spiral(60, 0, 1.0 / 300).Arc(100, 1.0 / 300).Spiral(60, 1.0 / 300, 0);
  std::vector<AlignmentCurve> parts = chain.parts;
  EXPECT_EQ(AlignmentEntity::MakeGroup(AlignmentEntityType::SpiralTangentSpiral, parts).Error(),
            LandError::InvalidArgument);
  EXPECT_EQ(AlignmentEntity::MakeGroup(AlignmentEntityType::SpiralCurve, parts).Error(), LandError::InvalidArgument);
  EXPECT_EQ(AlignmentEntity::MakeGroup(AlignmentEntityType::Arc, {parts[1]}).Error(), LandError::InvalidArgument);

  // The arc moved 1 mm off the spiral's end.
  std::vector<AlignmentCurve> shifted = parts;
  shifted[1] = AlignmentCurve::MakeArcFromDirection(parts[0].EndPoint() + Point2{0.001, 0.0}, parts[0].EndDirection(),
                                                    300.0, 100.0, false).Value();
  EXPECT_EQ(AlignmentEntity::MakeGroup(AlignmentEntityType::SpiralCurveSpiral, shifted).Error(),
            LandError::Discontinuous);
  // The arc with a radius the spiral does not reach.
  std::vector<AlignmentCurve> sharper = parts;
  sharper[1] = AlignmentCurve::MakeArcFromDirection(parts[0].EndPoint(), parts[0].EndDirection(), 250.0, 100.0, false).Value();
  EXPECT_EQ(AlignmentEntity::MakeGroup(AlignmentEntityType::SpiralCurveSpiral, sharper).Error(),
            LandError::Discontinuous);
}

struct GroupCase {
  AlignmentEntityType type;
  Chain (*build)();
};

class EveryGroupKind : public ::testing::TestWithParam<GroupCase> {};

TEST_P(EveryGroupKind, BuildsAndReadsBack) {
  const Chain chain = GetParam().build();
  AlignmentGeometry alignment;
  const auto id = alignment.AddGroup(0, GetParam().type, chain.parts);
  ASSERT_TRUE(id) << LandErrorText(id.Error());
  const AlignmentEntity* group = alignment.EntityAtId(id.Value());
  ASSERT_NE(group, nullptr);
  EXPECT_EQ(group->Type(), GetParam().type);
  ASSERT_EQ(group->SubEntityCount(), static_cast<int>(EntityLayout(GetParam().type).size()));
  double length = 0.0;
  for (int i = 0; i < group->SubEntityCount(); ++i) {
    EXPECT_EQ(group->SubEntity(i)->Kind(), EntityLayout(GetParam().type)[static_cast<std::size_t>(i)]);
    length += group->SubEntity(i)->Length();
  }
  EXPECT_DOUBLE_EQ(alignment.Length(), length);
  EXPECT_EQ(group->EndPoint(), chain.parts.back().EndPoint());
}

constexpr double k1 = 1.0 / 400.0;
constexpr double k2 = 1.0 / 250.0;

INSTANTIATE_TEST_SUITE_P(
    SpiralGroup, EveryGroupKind,
    ::testing::Values(
        GroupCase{AlignmentEntityType::SpiralCurveSpiral,
                  [] { return std::move(Chain({}).Spiral(50, 0, k1).Arc(80, k1).Spiral(50, k1, 0)); }},
        GroupCase{AlignmentEntityType::SpiralTangentSpiral,
                  [] { return std::move(Chain({}).Spiral(50, k1, 0).Tangent(80).Spiral(50, 0, -k1)); }},
        GroupCase{AlignmentEntityType::SpiralTangent, [] { return std::move(Chain({}).Spiral(50, k1, 0).Tangent(80)); }},
        GroupCase{AlignmentEntityType::TangentSpiral, [] { return std::move(Chain({}).Tangent(80).Spiral(50, 0, -k1)); }},
        GroupCase{AlignmentEntityType::SpiralCurve, [] { return std::move(Chain({}).Spiral(50, 0, k1).Arc(80, k1)); }},
        GroupCase{AlignmentEntityType::CurveSpiral, [] { return std::move(Chain({}).Arc(80, -k1).Spiral(50, -k1, 0)); }},
        GroupCase{AlignmentEntityType::SpiralSpiralCurve,
                  [] { return std::move(Chain({}).Spiral(50, 0, k1).Spiral(40, k1, k2).Arc(60, k2)); }},
        GroupCase{AlignmentEntityType::CurveSpiralSpiral,
                  [] { return std::move(Chain({}).Arc(60, k2).Spiral(40, k2, k1).Spiral(50, k1, 0)); }},
        GroupCase{AlignmentEntityType::SpiralCurveSpiralCurveSpiral,
                  [] {
                    return std::move(
                        Chain({}).Spiral(50, 0, k1).Arc(60, k1).Spiral(40, k1, k2).Arc(60, k2).Spiral(50, k2, 0));
                  }},
        GroupCase{AlignmentEntityType::SpiralCurveSpiralSpiralCurveSpiral,
                  [] {
                    return std::move(Chain({})
                                         .Spiral(50, 0, k1)
                                         .Arc(60, k1)
                                         .Spiral(50, k1, 0)
                                         .Spiral(50, 0, -k2)
                                         .Arc(60, -k2)
                                         .Spiral(50, -k2, 0));
                  }},
        GroupCase{AlignmentEntityType::SpiralSpiral, [] { return std::move(Chain({}).Spiral(50, 0, k1).Spiral(50, k1, 0)); }}),
    [](const ::testing::TestParamInfo<GroupCase>& info) { return "Type" + std::to_string(static_cast<int>(info.param.type)); });

TEST(AlignmentPolyline, ArcsBecomeBulgesAndGapsBecomeSegments) {
  AlignmentGeometry alignment;
  alignment.AddFixedLine({0, 0}, {100, 0});
  // A quarter turn left about (100, 100), then a clockwise half circle about (250, 100).
  alignment.AddFixedCurve(1, {100, 0}, {170.71067811865476, 29.289321881345245}, {200, 100});
  alignment.AddFixedCurve(2, {200, 100}, {250, 150}, {300, 100});
  alignment.AddFixedLine({300, 90}, {300, 0});  // 10 short of the arc's end
  const auto polyline = alignment.Polyline();
  ASSERT_TRUE(polyline);
  const std::vector<PolylineVertex>& v = polyline.Value();
  ASSERT_EQ(v.size(), 6u);
  EXPECT_EQ(v[0].point, (Point2{0, 0}));
  EXPECT_EQ(v[0].bulge, 0.0);
  EXPECT_EQ(v[1].point, (Point2{100, 0}));
  EXPECT_NEAR(v[1].bulge, std::tan(3.14159265358979323846 / 8.0), 1e-14);  // 0.41421356...
  EXPECT_EQ(v[2].point, (Point2{200, 100}));
  EXPECT_NEAR(v[2].bulge, -1.0, 1e-14);  // a clockwise half circle
  EXPECT_EQ(v[3].point, (Point2{300, 100}));
  EXPECT_EQ(v[3].bulge, 0.0);            // across the gap
  EXPECT_EQ(v[4].point, (Point2{300, 90}));
  EXPECT_EQ(v[5].point, (Point2{300, 0}));
  EXPECT_TRUE(AlignmentGeometry().Polyline().Value().empty());
  EXPECT_EQ(alignment.Polyline(0.0).Error(), LandError::InvalidArgument);
}

TEST(AlignmentPolyline, SpiralChordsStayWithinTheirMidOrdinate) {
  AlignmentGeometry alignment;
  Chain chain({0, 0});
  chain.Spiral(120, 0, 1.0 / 150).Arc(50, 1.0 / 150);
  for (AlignmentCurve& part : chain.parts) alignment.AddCurve(alignment.LastEntityId(), part);
  for (const double tolerance : {0.001, 0.01}) {
    const auto polyline = alignment.Polyline(tolerance);
    ASSERT_TRUE(polyline);
    const std::vector<PolylineVertex>& v = polyline.Value();
    // Chords of the spiral, then the arc's bulge vertex, then its end.
    ASSERT_GT(v.size(), 4u);
    EXPECT_EQ(v[v.size() - 2].point, chain.parts[1].StartPoint());
    const AlignmentCurve& spiral = chain.parts[0];
    for (std::size_t i = 0; i + 2 < v.size(); ++i) {
      // The spiral between two vertices, sampled finely, never leaves the chord by more than allowed.
      const double s0 = spiral.ClosestDistance(v[i].point);
      const double s1 = spiral.ClosestDistance(v[i + 1].point);
      const Point2 chord = v[i + 1].point - v[i].point;
      for (int k = 1; k < 10; ++k) {
        const Point2 p = spiral.PointAt(s0 + (s1 - s0) * k / 10.0);
        EXPECT_LE(std::abs(Cross(chord, p - v[i].point)) / std::hypot(chord.x, chord.y), tolerance) << i;
      }
    }
    // Not oversampled: at most twice the chords that spacing at the sharpest curvature needs.
    EXPECT_LT(v.size(), 2u + static_cast<std::size_t>(std::ceil(120.0 / std::sqrt(8.0 * tolerance * 150.0) * 2.0)));
  }
}

}  // namespace
