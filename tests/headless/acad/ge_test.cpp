// AcGe: vectors, points and matrices as the entity classes and the module use them.
#include <gtest/gtest.h>

#include <cmath>

#include "platform/acad/gemat3d.h"
#include "platform/acad/gept3dar.h"

namespace {

constexpr double kPi = 3.14159265358979323846;

TEST(Matrices, RotationsTurnCounterClockwiseAboutTheirAxisAndCentre) {
  const AcGeMatrix3d r = AcGeMatrix3d::rotation(kPi / 2, AcGeVector3d::kZAxis, AcGePoint3d(1, 1, 0));
  EXPECT_TRUE((r * AcGePoint3d(2, 1, 5)).isEqualTo(AcGePoint3d(1, 2, 5)));
  EXPECT_TRUE((r * AcGeVector3d(1, 0, 0)).isEqualTo(AcGeVector3d(0, 1, 0))) << "vectors ignore the centre";
  EXPECT_TRUE(r.isUniScaledOrtho());
  EXPECT_NEAR(r.det(), 1.0, 1e-12);
}

TEST(Matrices, AProductAndItsInverseUndoEachOther) {
  const AcGeMatrix3d m = AcGeMatrix3d::translation(AcGeVector3d(3, -2, 7)) *
                         AcGeMatrix3d::rotation(0.3, AcGeVector3d(1, 2, 3)) * AcGeMatrix3d::scaling(2.5);
  const AcGePoint3d p(1.25, -4, 9);
  EXPECT_TRUE((m.inverse() * (m * p)).isEqualTo(p, AcGeTol()));
  EXPECT_TRUE((m * m.inverse()).isEqualTo(AcGeMatrix3d::kIdentity));
  EXPECT_NEAR(m.scale(), 2.5, 1e-12);
  AcGeMatrix3d singular;
  singular.entry[1][1] = 0.0;
  AcGeMatrix3d inv;
  EXPECT_FALSE(singular.inverse(inv, 1e-12));
  EXPECT_TRUE(singular.isSingular());
  AcGeMatrix3d stretch;
  stretch.entry[0][0] = 2.0;
  EXPECT_FALSE(stretch.isUniScaledOrtho());
}

// AutoCAD's arbitrary axis algorithm decides the x axis of every planar entity's coordinate system.
TEST(Matrices, APlanesCoordinateSystemFollowsTheArbitraryAxisRule) {
  const AcGeMatrix3d up = AcGeMatrix3d::planeToWorld(AcGeVector3d::kZAxis);
  EXPECT_TRUE(up.isEqualTo(AcGeMatrix3d::kIdentity));
  const AcGeMatrix3d down = AcGeMatrix3d::planeToWorld(-AcGeVector3d::kZAxis);
  EXPECT_TRUE((down * AcGeVector3d::kXAxis).isEqualTo(AcGeVector3d(-1, 0, 0)));
  const AcGeMatrix3d side = AcGeMatrix3d::planeToWorld(AcGeVector3d::kXAxis);
  EXPECT_TRUE((side * AcGeVector3d::kXAxis).isEqualTo(AcGeVector3d(0, 1, 0)));  // Wz x N
  EXPECT_TRUE((side * AcGeVector3d::kYAxis).isEqualTo(AcGeVector3d(0, 0, 1)));
  EXPECT_TRUE((AcGeMatrix3d::worldToPlane(AcGeVector3d(1, 1, 1)) * AcGeMatrix3d::planeToWorld(AcGeVector3d(1, 1, 1)))
                  .isEqualTo(AcGeMatrix3d::kIdentity));
}

TEST(Vectors, AnglesNormalsAndTolerances) {
  EXPECT_NEAR(AcGeVector3d::kXAxis.angleTo(AcGeVector3d(0, -1, 0), AcGeVector3d::kZAxis), 3 * kPi / 2, 1e-12);
  EXPECT_NEAR(AcGeVector3d::kXAxis.angleTo(AcGeVector3d(-1, 0, 0)), kPi, 1e-12);
  EXPECT_EQ(AcGeVector3d(0, 0, 0).normal(), AcGeVector3d(0, 0, 0)) << "a zero vector stays zero";
  EXPECT_TRUE(AcGeVector3d(0, 0, 2).isParallelTo(AcGeVector3d(0, 0, -1)));
  EXPECT_FALSE(AcGePoint3d(0, 0, 0).isEqualTo(AcGePoint3d(1e-6, 0, 0)));
  AcGeTol loose;
  loose.setEqualPoint(1e-3);
  EXPECT_TRUE(AcGePoint3d(0, 0, 0).isEqualTo(AcGePoint3d(1e-6, 0, 0), loose));
}

TEST(Arrays, GrowFindAndRemove) {
  AcGePoint3dArray points;
  EXPECT_TRUE(points.isEmpty());
  points.append(AcGePoint3d(1, 0, 0));
  points.append(AcGePoint3d(2, 0, 0));
  points.insertAt(0, AcGePoint3d(0, 0, 0));
  EXPECT_EQ(points.length(), 3);
  EXPECT_EQ(points.find(AcGePoint3d(2, 0, 0)), 2);
  points.removeAt(1);
  EXPECT_EQ(points.last(), AcGePoint3d(2, 0, 0));
  points.removeAt(7);  // ignored
  EXPECT_EQ(points.length(), 2);
}

}  // namespace
