// Area, containment and boolean operations on closed polylines, checked against exact areas.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <ostream>
#include <utility>
#include <vector>

#include "module/geometry/KdCircle.h"
#include "module/geometry/KdPolygonOps.h"
#include "module/geometry/KdPolyline.h"
#include "tests/module/geometry/GeometryTestUtil.h"

namespace kdgeo {

void PrintTo(PolygonStatus status, std::ostream* out) {
  static const char* const kNames[] = {"kOk", "kBadTolerance", "kNotClosedPolygon", "kSelfIntersecting", "kFailed"};
  *out << kNames[static_cast<int>(status)];
}

}  // namespace kdgeo

namespace {

using kdgeo::PolygonStatus;
using kdtest::Rectangle;
using kdtest::SignedVertexArea;
using std::numbers::pi;

constexpr double kChord_units = 1e-3;

// Every region's outer boundary runs counter-clockwise and every hole clockwise.
void ExpectOrientedRegions(const std::vector<kdgeo::CKdRegion>& regions) {
  for (const auto& region : regions) {
    EXPECT_TRUE(region.outer.IsClosed());
    EXPECT_GT(SignedVertexArea(region.outer), 0.0);
    for (const auto& hole : region.holes) EXPECT_LT(SignedVertexArea(hole), 0.0);
  }
}

TEST(KdPolygonArea, StraightOutlinesAreExactEitherWayRound) {
  EXPECT_DOUBLE_EQ(kdgeo::Area(Rectangle(1, 1, 5, 4), kChord_units), 12.0);
  CKdPolyline clockwise = Rectangle(1, 1, 5, 4);
  clockwise.Reverse();
  PolygonStatus status = PolygonStatus::kFailed;
  EXPECT_DOUBLE_EQ(kdgeo::Area(clockwise, kChord_units, &status), 12.0);
  EXPECT_EQ(status, PolygonStatus::kOk);
  // An L shape: 3x3 less a 2x2 corner.
  const CKdPolyline ell({{0, 0}, {3, 0}, {3, 1}, {1, 1}, {1, 3}, {0, 3}}, {}, true);
  EXPECT_DOUBLE_EQ(kdgeo::Area(ell, kChord_units), 5.0);
}

TEST(KdPolygonArea, ArcsAreApproximatedWithinTheChordHeight) {
  const double r = 10.0;
  for (double h : {1e-1, 1e-3, 1e-5}) {
    const double area = kdgeo::Area(CKdCircle(CKdPoint(3, -4), r).ToPolyline(), h);
    // Chords lie inside the circle, and the sliver under each is at most h high.
    EXPECT_LE(area, pi * r * r) << "h=" << h;
    EXPECT_GE(area, pi * r * r - h * 2 * pi * r) << "h=" << h;
  }
  // A half disc on a diameter, the arc clockwise: the bulge sign picks the side.
  const CKdPolyline half({{-2, 0}, {2, 0}}, {0.0, -1.0}, true);
  EXPECT_NEAR(kdgeo::Area(half, 1e-6), 2 * pi, 2e-5);
  EXPECT_TRUE(kdgeo::Contains(half, CKdPoint(0, -1.9), 1e-6));
  EXPECT_FALSE(kdgeo::Contains(half, CKdPoint(0, 1.9), 1e-6));
}

TEST(KdPolygonContains, InsideOutsideAndBoundary) {
  const CKdPolyline square = Rectangle(0, 0, 10, 10);
  EXPECT_TRUE(kdgeo::Contains(square, CKdPoint(5, 5), kChord_units));
  EXPECT_FALSE(kdgeo::Contains(square, CKdPoint(11, 5), kChord_units));
  EXPECT_TRUE(kdgeo::Contains(square, CKdPoint(10, 5), kChord_units));
  EXPECT_TRUE(kdgeo::Contains(square, CKdPoint(0, 0), kChord_units));
  EXPECT_FALSE(kdgeo::Contains(square, CKdPoint(NAN, 5), kChord_units));
  // Beyond the chord but inside the arc.
  CKdPolyline rounded = square;
  rounded.SetBulge(1, 0.5);  // the right side bulges out by 2.5
  EXPECT_TRUE(kdgeo::Contains(rounded, CKdPoint(12.4, 5), kChord_units));
  EXPECT_FALSE(kdgeo::Contains(rounded, CKdPoint(12.6, 5), kChord_units));
}

TEST(KdPolygonBoolean, OverlappingSquares) {
  const CKdPolyline a = Rectangle(0, 0, 4, 4, 7.5);
  const CKdPolyline b = Rectangle(2, 1, 6, 3, -1);
  PolygonStatus status = PolygonStatus::kFailed;
  const auto both = kdgeo::Union(a, b, kChord_units, &status);
  EXPECT_EQ(status, PolygonStatus::kOk);
  ASSERT_EQ(both.size(), 1u);
  EXPECT_TRUE(both[0].holes.empty());
  EXPECT_DOUBLE_EQ(kdgeo::Area(both), 16 + 8 - 4);
  EXPECT_TRUE(kdgeo::Contains(both, CKdPoint(5.5, 2)));
  EXPECT_FALSE(kdgeo::Contains(both, CKdPoint(5.5, 3.5)));
  // Results lie at the first operand's elevation.
  EXPECT_EQ(both[0].outer.Vertex(0).z, 7.5);
  ExpectOrientedRegions(both);

  const auto common = kdgeo::Intersect(a, b, kChord_units);
  ASSERT_EQ(common.size(), 1u);
  EXPECT_DOUBLE_EQ(kdgeo::Area(common), 4.0);
  EXPECT_TRUE(kdgeo::Contains(common, CKdPoint(3, 2)));
  EXPECT_FALSE(kdgeo::Contains(common, CKdPoint(1, 2)));

  const auto rest = kdgeo::Difference(a, b, kChord_units);
  EXPECT_DOUBLE_EQ(kdgeo::Area(rest), 12.0);
  EXPECT_FALSE(kdgeo::Contains(rest, CKdPoint(3, 2)));
  ExpectOrientedRegions(rest);
}

TEST(KdPolygonBoolean, DifferenceOfAnInnerVoidLeavesAHole) {
  const CKdPolyline boundary = Rectangle(0, 0, 10, 10);
  const CKdPolyline voidOutline = CKdCircle(CKdPoint(5, 5), 2).ToPolyline();
  const auto regions = kdgeo::Difference(boundary, voidOutline, kChord_units);
  ASSERT_EQ(regions.size(), 1u);
  ASSERT_EQ(regions[0].holes.size(), 1u);
  ExpectOrientedRegions(regions);
  EXPECT_NEAR(kdgeo::Area(regions), 100 - 4 * pi, 2 * pi * 2 * kChord_units);
  EXPECT_FALSE(kdgeo::Contains(regions, CKdPoint(5, 5)));
  EXPECT_TRUE(kdgeo::Contains(regions, CKdPoint(1, 1)));
  // The void minus the boundary is nothing, and a disjoint pair has nothing in common.
  PolygonStatus status = PolygonStatus::kFailed;
  EXPECT_TRUE(kdgeo::Difference(voidOutline, boundary, kChord_units, &status).empty());
  EXPECT_EQ(status, PolygonStatus::kOk);
  EXPECT_TRUE(kdgeo::Intersect(boundary, Rectangle(20, 20, 30, 30), kChord_units, &status).empty());
  EXPECT_EQ(status, PolygonStatus::kOk);
  EXPECT_EQ(kdgeo::Union(boundary, Rectangle(20, 20, 30, 30), kChord_units).size(), 2u);
}

// Inclusion and exclusion: |A u B| + |A n B| = |A| + |B|, and |A - B| = |A| - |A n B|.
struct PairCase {
  const char* name;
  CKdPolyline a, b;
};

class KdPolygonAreaIdentity : public testing::TestWithParam<PairCase> {};

TEST_P(KdPolygonAreaIdentity, UnionIntersectionAndDifferenceAddUp) {
  const auto& [name, a, b] = GetParam();
  const double areaA = kdgeo::Area(a, kChord_units), areaB = kdgeo::Area(b, kChord_units);
  const double united = kdgeo::Area(kdgeo::Union(a, b, kChord_units));
  const double common = kdgeo::Area(kdgeo::Intersect(a, b, kChord_units));
  const double rest = kdgeo::Area(kdgeo::Difference(a, b, kChord_units));
  const double scale = areaA + areaB;
  ASSERT_GT(areaA, 0.0);
  ASSERT_GT(areaB, 0.0);
  EXPECT_NEAR(united + common, areaA + areaB, 1e-9 * scale);
  EXPECT_NEAR(rest, areaA - common, 1e-9 * scale);
  EXPECT_LE(common, std::min(areaA, areaB) * (1 + 1e-12));
}

INSTANTIATE_TEST_SUITE_P(
    Pairs, KdPolygonAreaIdentity,
    testing::Values(PairCase{"TwoCircles", CKdCircle(CKdPoint(0, 0), 5).ToPolyline(),
                             CKdCircle(CKdPoint(6, 1), 4).ToPolyline()},
                    PairCase{"SquareAndCircle", Rectangle(0, 0, 10, 10), CKdCircle(CKdPoint(10, 10), 5).ToPolyline()},
                    PairCase{"Nested", Rectangle(0, 0, 10, 10), Rectangle(2, 2, 3, 3)},
                    PairCase{"SharedEdge", Rectangle(0, 0, 1, 1), Rectangle(1, 0, 2, 1)},
                    PairCase{"Disjoint", Rectangle(0, 0, 1, 1), Rectangle(5, 5, 6, 6)}),
    [](const testing::TestParamInfo<PairCase>& info) { return info.param.name; });

TEST(KdPolygonDegenerate, BadToleranceGivesNothing) {
  const CKdPolyline a = Rectangle(0, 0, 1, 1);
  for (double h : {0.0, -1.0, double(NAN), double(INFINITY)}) {
    PolygonStatus status = PolygonStatus::kOk;
    EXPECT_TRUE(kdgeo::Union(a, a, h, &status).empty());
    EXPECT_EQ(status, PolygonStatus::kBadTolerance);
    EXPECT_EQ(kdgeo::Area(a, h, &status), 0.0);
    EXPECT_EQ(status, PolygonStatus::kBadTolerance);
    EXPECT_FALSE(kdgeo::Contains(a, CKdPoint(0.5, 0.5), h, &status));
    EXPECT_EQ(status, PolygonStatus::kBadTolerance);
  }
}

TEST(KdPolygonDegenerate, OpenOrBrokenOperandsGiveNothing) {
  const CKdPolyline square = Rectangle(0, 0, 1, 1);
  CKdPolyline open = Rectangle(0, 0, 1, 1);
  open.SetClosed(false);
  const CKdPolyline withNan({{0, 0}, {1, 0}, {NAN, 1}}, {}, true);
  const CKdPolyline withBadBulge({{0, 0}, {1, 0}, {1, 1}}, {0, INFINITY, 0}, true);
  for (const CKdPolyline* bad : {&std::as_const(open), &withNan, &withBadBulge}) {
    PolygonStatus status = PolygonStatus::kOk;
    EXPECT_TRUE(kdgeo::Intersect(square, *bad, kChord_units, &status).empty());
    EXPECT_EQ(status, PolygonStatus::kNotClosedPolygon);
    EXPECT_TRUE(kdgeo::Difference(*bad, square, kChord_units, &status).empty());
    EXPECT_EQ(status, PolygonStatus::kNotClosedPolygon);
    EXPECT_EQ(kdgeo::Area(*bad, kChord_units), 0.0);
  }
}

TEST(KdPolygonDegenerate, SelfCrossingOutlineIsRefused) {
  const CKdPolyline bowTie({{0, 0}, {2, 2}, {2, 0}, {0, 2}}, {}, true);
  PolygonStatus status = PolygonStatus::kOk;
  EXPECT_TRUE(kdgeo::Union(Rectangle(0, 0, 1, 1), bowTie, kChord_units, &status).empty());
  EXPECT_EQ(status, PolygonStatus::kSelfIntersecting);
  EXPECT_FALSE(kdgeo::Contains(bowTie, CKdPoint(1, 0.5), kChord_units, &status));
  EXPECT_EQ(status, PolygonStatus::kSelfIntersecting);
}

TEST(KdPolygonDegenerate, OutlineEnclosingNothingIsTheEmptySet) {
  const CKdPolyline square = Rectangle(0, 0, 1, 1);
  const CKdPolyline flat({{0, 0}, {5, 0}, {2, 0}}, {}, true);
  PolygonStatus status = PolygonStatus::kFailed;
  EXPECT_EQ(kdgeo::Area(flat, kChord_units, &status), 0.0);
  EXPECT_EQ(status, PolygonStatus::kOk);
  const auto united = kdgeo::Union(square, flat, kChord_units, &status);
  EXPECT_EQ(status, PolygonStatus::kOk);
  EXPECT_DOUBLE_EQ(kdgeo::Area(united), 1.0);
  EXPECT_TRUE(kdgeo::Intersect(square, flat, kChord_units).empty());
  const CKdPolyline diagonal({{0.1, 0.3}, {0.7, 2.1}, {0.4, 1.2}}, {}, true);
  EXPECT_DOUBLE_EQ(kdgeo::Area(kdgeo::Union(square, diagonal, kChord_units, &status)), 1.0);
  EXPECT_EQ(status, PolygonStatus::kOk);
  // Repeated vertices do not matter.
  const CKdPolyline stutter({{0, 0}, {1, 0}, {1, 0}, {1, 1}, {0, 1}, {0, 0}}, {}, true);
  EXPECT_DOUBLE_EQ(kdgeo::Area(stutter, kChord_units, &status), 1.0);
  EXPECT_EQ(status, PolygonStatus::kOk);
}

}  // namespace
