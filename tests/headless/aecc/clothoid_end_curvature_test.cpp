// A spiral running out to a tangent must end with curvature exactly 0. It used to end with a
// rounding residue (-4.3e-19 for 300 m to infinity over 40 m, heading 1 rad), which the relative
// curvature check of a group refused against the tangent or the next spiral's zero, so a
// spiral-curve-spiral-spiral-curve-spiral run imported as two spiral-curve-spiral groups.
#include <gtest/gtest.h>

#include <limits>

#include "headless/aecc/model/AlignmentEntity.h"

namespace {

using namespace headless::land;

constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(ClothoidEndCurvature, IsExactAtBothEnds) {
  for (const double length : {40.0, 33.3, 0.1, 1234.5678}) {
    for (const double radius : {300.0, 972.836752, 1103.684807}) {
      const AlignmentCurve out = AlignmentCurve::MakeSpiral({0, 0}, 1.0, length, radius, kInf, SpiralDirection::Right).Value();
      EXPECT_EQ(out.CurvatureAt(length), 0.0) << length << " " << radius;
      EXPECT_EQ(out.CurvatureAt(0.0), -1.0 / radius);
      const AlignmentCurve in = AlignmentCurve::MakeSpiral({0, 0}, 1.0, length, kInf, radius, SpiralDirection::Left).Value();
      EXPECT_EQ(in.CurvatureAt(0.0), 0.0);
      EXPECT_EQ(in.CurvatureAt(length), 1.0 / radius);
    }
  }
}

TEST(ClothoidEndCurvature, ASpiralOutJoinsTheTangentAfterIt) {
  const AlignmentCurve spiral =
      AlignmentCurve::MakeSpiral({0, 0}, 1.0, 40, 300, kInf, SpiralDirection::Right).Value();
  const Point2 end = spiral.EndPoint();
  const Point2 further = end + 30.0 * UnitAt(spiral.EndDirection());
  const AlignmentCurve tangent = AlignmentCurve::MakeTangent(end, further).Value();
  EXPECT_TRUE(AlignmentEntity::MakeGroup(AlignmentEntityType::SpiralTangent, {spiral, tangent}).Ok());
}

}  // namespace
