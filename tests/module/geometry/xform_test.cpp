// CKdXform: building, composing, inverting and applying affine transforms.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "module/geometry/KdXform.h"
#include "tests/module/geometry/GeometryTestUtil.h"

namespace {

using kdtest::Near;
using std::numbers::pi;

TEST(CKdXformBuild, IdentityTranslationAndScaling) {
  const CKdXform identity;
  for (int r = 0; r < 4; ++r)
    for (int c = 0; c < 4; ++c) EXPECT_EQ(identity.At(r, c), r == c ? 1.0 : 0.0);
  EXPECT_EQ(identity.At(4, 0), 0.0);
  EXPECT_EQ(identity.At(-1, 2), 0.0);
  const CKdXform move = CKdXform::Translation(CKdVector(1, 2, 3));
  EXPECT_EQ(move.Apply(CKdPoint(1, 1, 1)), CKdPoint(2, 3, 4));
  // Vectors are displacements: translation leaves them alone.
  EXPECT_EQ(move.Apply(CKdVector(1, 1, 1)), CKdVector(1, 1, 1));
  const CKdXform grow = CKdXform::Scaling(CKdPoint(1, 1, 1), 3);
  EXPECT_TRUE(Near(grow.Apply(CKdPoint(2, 1, 0)), {4, 1, -2}));
  EXPECT_TRUE(Near(grow.Apply(CKdPoint(1, 1, 1)), {1, 1, 1}));
  EXPECT_EQ(CKdXform::Scaling(2, 3, 4).Apply(CKdVector(1, 1, 1)), CKdVector(2, 3, 4));
  EXPECT_EQ(CKdXform::MirrorX().Apply(CKdPoint(1, 2, 3)), CKdPoint(1, -2, 3));
  EXPECT_EQ(CKdXform::MirrorY().Apply(CKdPoint(1, 2, 3)), CKdPoint(-1, 2, 3));
}

TEST(CKdXformBuild, RotationZAboutAPointIsCounterClockwise) {
  const CKdXform turn = CKdXform::RotationZ(CKdPoint(1, 1, 0), pi / 2);
  EXPECT_TRUE(Near(turn.Apply(CKdPoint(2, 1, 5)), {1, 2, 5}));
  EXPECT_TRUE(Near(turn.Apply(CKdVector(1, 0, 0)), {0, 1, 0}));
  const CKdPoint p(-3, 7, 2);
  EXPECT_TRUE(Near(CKdXform::RotationZ(CKdPoint(4, -1), 2.2).Apply(p), p.RotatedXY(CKdPoint(4, -1), 2.2)));
}

TEST(CKdXformBuild, RotationAboutAnAxisFollowsTheRightHand) {
  const auto aboutX = CKdXform::RotationAboutAxis(CKdPoint(0, 0, 0), CKdVector(2, 0, 0), pi / 2);
  ASSERT_TRUE(aboutX.has_value());
  EXPECT_TRUE(Near(aboutX->Apply(CKdPoint(0, 1, 0)), {0, 0, 1}));
  // About a vertical axis it is the plain rotation about z.
  const auto aboutZ = CKdXform::RotationAboutAxis(CKdPoint(3, 4, 9), CKdVector(0, 0, 5), 0.7);
  ASSERT_TRUE(aboutZ.has_value());
  EXPECT_TRUE(aboutZ->IsEqual(CKdXform::RotationZ(CKdPoint(3, 4), 0.7), 1e-12));
  // About the space diagonal by a third of a turn the axes trade places.
  const auto diagonal = CKdXform::RotationAboutAxis(CKdPoint(1, 1, 1), CKdVector(1, 1, 1), 2 * pi / 3);
  ASSERT_TRUE(diagonal.has_value());
  EXPECT_TRUE(Near(diagonal->Apply(CKdPoint(2, 1, 1)), {1, 2, 1}));
  EXPECT_TRUE(Near(diagonal->Apply(CKdPoint(3, 3, 3)), {3, 3, 3}));
  EXPECT_NEAR(diagonal->Determinant(), 1.0, 1e-12);
  EXPECT_FALSE(CKdXform::RotationAboutAxis(CKdPoint(0, 0), CKdVector(0, 0, 0), 1).has_value());
  EXPECT_FALSE(CKdXform::RotationAboutAxis(CKdPoint(0, 0), CKdVector(NAN, 0, 1), 1).has_value());
}

TEST(CKdXformCompose, ProductAppliesTheRightOperandFirst) {
  const CKdXform move = CKdXform::Translation(CKdVector(10, 0, 0));
  const CKdXform turn = CKdXform::RotationZ(CKdPoint(0, 0), pi / 2);
  EXPECT_TRUE(Near((turn * move).Apply(CKdPoint(1, 0)), {0, 11, 0}));
  EXPECT_TRUE(Near((move * turn).Apply(CKdPoint(1, 0)), {10, 1, 0}));
  const CKdPoint p(0.3, -2, 5);
  EXPECT_TRUE(Near((turn * move).Apply(p), turn.Apply(move.Apply(p))));
}

TEST(CKdXformCompose, InverseUndoesTheTransform) {
  const auto tilt = CKdXform::RotationAboutAxis(CKdPoint(1, 2, 3), CKdVector(1, -2, 0.5), 0.9);
  ASSERT_TRUE(tilt.has_value());
  const CKdXform x = *tilt * CKdXform::Scaling(2, -0.5, 3) * CKdXform::Translation(CKdVector(4, 5, 6));
  const auto inverse = x.Inverse();
  ASSERT_TRUE(inverse.has_value());
  EXPECT_TRUE((x * *inverse).IsEqual(CKdXform(), 1e-12));
  EXPECT_TRUE((*inverse * x).IsEqual(CKdXform(), 1e-12));
  EXPECT_NEAR(x.Determinant() * inverse->Determinant(), 1.0, 1e-12);
  EXPECT_FALSE(CKdXform::Scaling(1, 0, 1).Inverse().has_value());
  EXPECT_FALSE(CKdXform::Scaling(1, NAN, 1).Inverse().has_value());
}

TEST(CKdXformSimilarity, RecognisesSimilaritiesOfThePlan) {
  double scale = 0;
  bool reflects = true;
  const CKdXform turnAndGrow = CKdXform::RotationZ(CKdPoint(5, 5), 1.1) * CKdXform::Scaling(CKdPoint(0, 0), 2);
  ASSERT_TRUE(turnAndGrow.IsSimilarityXY(1e-9, &scale, &reflects));
  EXPECT_NEAR(scale, 2, 1e-12);
  EXPECT_FALSE(reflects);
  ASSERT_TRUE((CKdXform::MirrorY() * CKdXform::Scaling(1, 1, 7)).IsSimilarityXY(1e-9, &scale, &reflects));
  EXPECT_NEAR(scale, 1, 1e-12);
  EXPECT_TRUE(reflects);
  EXPECT_FALSE(CKdXform::Scaling(1, 1.01, 1).IsSimilarityXY(1e-6, &scale, &reflects));
  EXPECT_FALSE(CKdXform::Scaling(0, 0, 1).IsSimilarityXY(1e-6, &scale, &reflects));
  const auto tilt = CKdXform::RotationAboutAxis(CKdPoint(0, 0), CKdVector(0, 1, 0), 0.01);
  EXPECT_FALSE(tilt->IsSimilarityXY(1e-6, &scale, &reflects));
}

}  // namespace
