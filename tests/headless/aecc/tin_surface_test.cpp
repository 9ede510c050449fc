// TIN surfaces on hand-made data: the triangulation against an independent Delaunay check,
// breaklines, coinciding points, every boundary type destructive and not, pastes, and samples
// and ray hits against planes worked out by hand or brute force over the triangle list.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "TinTestUtil.h"

namespace {

using namespace headless::land;
using namespace tintest;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<Point3> RandomPoints(unsigned seed, int count, double size,
                                 const std::function<double(double, double)>& z) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> u(0.0, size);
  std::vector<Point3> points;
  for (int i = 0; i < count; ++i) {
    const double x = u(random);
    const double y = u(random);
    points.push_back({x, y, z(x, y)});
  }
  return points;
}

TinSurface Surface(std::vector<Point3> points) {
  TinSurface s;
  s.SetPoints(std::move(points));
  s.Rebuild();
  return s;
}

bool HasEdge(const TinSurface& surface, Point2 a, Point2 b) {
  for (const Triangle& t : TrianglesOf(surface)) {
    for (int e = 0; e < 3; ++e) {
      const Point3& p = t[e];
      const Point3& q = t[(e + 1) % 3];
      const auto at = [](const Point3& u, Point2 v) { return std::abs(u.x - v.x) < 1e-9 && std::abs(u.y - v.y) < 1e-9; };
      if ((at(p, a) && at(q, b)) || (at(p, b) && at(q, a))) return true;
    }
  }
  return false;
}

bool SegmentsCross(Point3 a, Point3 b, Point3 c, Point3 d) {
  const double d1 = Cross2(a, b, c), d2 = Cross2(a, b, d), d3 = Cross2(c, d, a), d4 = Cross2(c, d, b);
  return ((d1 > 0) != (d2 > 0)) && ((d3 > 0) != (d4 > 0)) && d1 != 0 && d2 != 0 && d3 != 0 && d4 != 0;
}

// Every triangle counter-clockwise, and no input point strictly inside a triangle's circumcircle
// unless a constraint hides it from the triangle (the segment from the triangle's centre to the
// point crosses a constraint): the constrained Delaunay property, checked by brute force.
void ExpectConstrainedDelaunay(const TinSurface& surface, const std::vector<Point3>& points,
                               const std::vector<std::pair<Point3, Point3>>& constraints = {}) {
  const std::vector<Triangle> triangles = TrianglesOf(surface);
  ASSERT_FALSE(triangles.empty());
  int violations = 0;
  for (const Triangle& t : triangles) {
    ASSERT_GT(Cross2(t[0], t[1], t[2]), 0.0) << "clockwise triangle";
    const double ax = t[0].x, ay = t[0].y, bx = t[1].x, by = t[1].y, cx = t[2].x, cy = t[2].y;
    const double d = 2.0 * (ax * (by - cy) + bx * (cy - ay) + cx * (ay - by));
    const double ux = ((ax * ax + ay * ay) * (by - cy) + (bx * bx + by * by) * (cy - ay) + (cx * cx + cy * cy) * (ay - by)) / d;
    const double uy = ((ax * ax + ay * ay) * (cx - bx) + (bx * bx + by * by) * (ax - cx) + (cx * cx + cy * cy) * (bx - ax)) / d;
    const double r2 = (ax - ux) * (ax - ux) + (ay - uy) * (ay - uy);
    const Point3 centre{(ax + bx + cx) / 3.0, (ay + by + cy) / 3.0, 0.0};
    for (const Point3& p : points) {
      const double d2 = (p.x - ux) * (p.x - ux) + (p.y - uy) * (p.y - uy);
      if (d2 >= r2 * (1.0 - 1e-9)) continue;
      bool hidden = false;
      for (const auto& [a, b] : constraints) hidden = hidden || SegmentsCross(centre, p, a, b);
      if (!hidden) ++violations;
    }
  }
  EXPECT_EQ(violations, 0);
}

// Counter-clockwise convex hull of the points (Andrew's monotone chain), for counting.
std::vector<Point3> Hull(std::vector<Point3> points) {
  std::sort(points.begin(), points.end(), [](const Point3& a, const Point3& b) { return a.x < b.x || (a.x == b.x && a.y < b.y); });
  std::vector<Point3> hull(2 * points.size());
  std::size_t k = 0;
  for (std::size_t i = 0; i < points.size(); ++i) {
    while (k >= 2 && Cross2(hull[k - 2], hull[k - 1], points[i]) <= 0) --k;
    hull[k++] = points[i];
  }
  for (std::size_t i = points.size() - 1, t = k + 1; i > 0; --i) {
    while (k >= t && Cross2(hull[k - 2], hull[k - 1], points[i - 1]) <= 0) --k;
    hull[k++] = points[i - 1];
  }
  hull.resize(k - 1);
  return hull;
}

// --- Delaunay ---------------------------------------------------------------------------------

TEST(TinDelaunay, RandomPointSetsMatchABruteForceDelaunayCheck) {
  for (unsigned seed = 1; seed <= 5; ++seed) {
    const std::vector<Point3> points = RandomPoints(seed, 150, 100.0, [](double x, double y) { return x * 0.1 + y * y * 0.01; });
    const TinSurface surface = Surface(points);
    ASSERT_TRUE(surface.IsValid());
    ExpectConstrainedDelaunay(surface, points);
    // Euler: a triangulation of n points with h on the hull has 2n - h - 2 triangles, and it
    // covers the hull exactly.
    const std::vector<Point3> hull = Hull(points);
    EXPECT_EQ(surface.TriangleCount(), 2 * 150 - static_cast<int>(hull.size()) - 2) << "seed " << seed;
    EXPECT_NEAR(surface.Area2d(), RingArea(hull), 1e-9 * RingArea(hull));
    EXPECT_EQ(surface.VertexCount(), 150);
  }
}

TEST(TinDelaunay, CorneredGridStaysValidWhereDiagonalsAreAChoice) {
  // Four cocircular points per cell: either diagonal is Delaunay, and every cell must get one.
  const TinSurface surface = Surface(Grid(0, 0, 10, 10, 1, [](double x, double) { return x; }));
  EXPECT_TRUE(surface.IsValid());
  EXPECT_EQ(surface.TriangleCount(), 200);
  EXPECT_DOUBLE_EQ(surface.Area2d(), 100.0);
}

// --- breaklines -------------------------------------------------------------------------------

// A long thin rhombus: Delaunay joins the two near points (5, +-1); a breakline along the long
// diagonal forces that edge instead and puts its own elevation along it.
TEST(TinBreaklines, ForceAnEdgeDelaunayWouldNotMake) {
  const std::vector<Point3> points{{0, 0, 0}, {10, 0, 0}, {5, 1, 3}, {5, -1, 3}};
  TinSurface surface = Surface(points);
  EXPECT_TRUE(HasEdge(surface, {5, 1}, {5, -1}));
  EXPECT_DOUBLE_EQ(surface.ElevationAt(5, 0).Value(), 3.0);

  ASSERT_TRUE(surface.AddBreakline({{0, 0, 0}, {10, 0, 0}}));
  surface.Rebuild();
  EXPECT_TRUE(surface.IsValid());
  EXPECT_TRUE(HasEdge(surface, {0, 0}, {10, 0}));
  EXPECT_FALSE(HasEdge(surface, {5, 1}, {5, -1}));
  EXPECT_DOUBLE_EQ(surface.ElevationAt(5, 0).Value(), 0.0);
  ExpectConstrainedDelaunay(surface, points, {{points[0], points[1]}});
}

TEST(TinBreaklines, RandomPointsWithBreaklinesKeepTheConstrainedDelaunayProperty) {
  const std::vector<Point3> points = RandomPoints(11, 300, 100.0, [](double x, double y) { return std::sin(x / 9) + y / 20; });
  TinSurface surface;
  surface.SetPoints(points);
  const std::vector<Point3> line1{{5, 7, 1}, {40, 60, 2}, {95, 50, 3}};
  const std::vector<Point3> line2{{10, 90, 4}, {90, 20, 5}};  // crosses line1 near its second vertex
  ASSERT_TRUE(surface.AddBreakline(line1));
  ASSERT_TRUE(surface.AddBreakline(line2));
  surface.Rebuild();
  ASSERT_TRUE(surface.IsValid());
  std::vector<Point3> all = points;
  all.insert(all.end(), line1.begin(), line1.end());
  all.insert(all.end(), line2.begin(), line2.end());
  ExpectConstrainedDelaunay(surface, all, {{line1[0], line1[1]}, {line1[1], line1[2]}, {line2[0], line2[1]}});
  // Every breakline vertex is a surface point at its own elevation.
  for (const Point3& v : line1) EXPECT_DOUBLE_EQ(surface.ElevationAt(v.x, v.y).Value(), v.z);
  for (const Point3& v : line2) EXPECT_DOUBLE_EQ(surface.ElevationAt(v.x, v.y).Value(), v.z);
  // Along the later breakline the surface is the breakline, across the crossing too.
  for (double t = 0.05; t < 1.0; t += 0.1) {
    EXPECT_NEAR(surface.ElevationAt(10 + 80 * t, 90 - 70 * t).Value(), 4 + t, 1e-9) << t;
  }
  EXPECT_EQ(surface.VertexCount(), 300 + 5 + 1);  // plus the constructed crossing
}

// Two breaklines crossing at (5, 5): the crossing takes the elevation along the one added later.
TEST(TinBreaklines, CrossingTakesTheLaterBreaklinesElevation) {
  const std::vector<Point3> corners{{0, 0, 0}, {10, 0, 0}, {10, 10, 0}, {0, 10, 0}};
  for (const bool flatFirst : {true, false}) {
    TinSurface surface;
    surface.SetPoints(corners);
    const std::vector<Point3> flat{{1, 1, 2}, {9, 9, 2}};     // z 2 everywhere
    const std::vector<Point3> sloped{{1, 9, 0}, {9, 1, 16}};  // z 8 at the crossing
    ASSERT_TRUE(surface.AddBreakline(flatFirst ? flat : sloped));
    ASSERT_TRUE(surface.AddBreakline(flatFirst ? sloped : flat));
    surface.Rebuild();
    ASSERT_TRUE(surface.IsValid());
    EXPECT_EQ(surface.VertexCount(), 9);
    EXPECT_NEAR(surface.ElevationAt(5, 5).Value(), flatFirst ? 8.0 : 2.0, 1e-12);
    // The earlier breakline bends at the crossing; the later one stays straight.
    EXPECT_TRUE(HasEdge(surface, {1, 1}, {5, 5}) && HasEdge(surface, {5, 5}, {9, 9}));
    EXPECT_TRUE(HasEdge(surface, {1, 9}, {5, 5}) && HasEdge(surface, {5, 5}, {9, 1}));
  }
}

TEST(TinBreaklines, RefusesFewerThanTwoVerticesAndNonFiniteOnes) {
  TinSurface surface;
  EXPECT_EQ(surface.AddBreakline({{0, 0, 0}}).Error(), LandError::InvalidArgument);
  EXPECT_EQ(surface.AddBreakline({{0, 0, 0}, {1, kNaN, 0}}).Error(), LandError::InvalidArgument);
  EXPECT_EQ(surface.BreaklineCount(), 0);
  EXPECT_EQ(surface.AddBreakline({{0, 0, 0}, {1, 1, 1}}).Value(), 0);
  EXPECT_EQ(surface.RemoveBreakline(1), LandError::NotFound);
  EXPECT_EQ(surface.RemoveBreakline(0), LandError::None);
}

// --- points at one plan position ---------------------------------------------------------------

TEST(TinPoints, OfPointsAtOnePlanPositionTheFirstIsKept) {
  const std::vector<Point3> base{{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {10, 10, 0}};
  std::vector<Point3> points = base;
  points.push_back({5, 5, 1});
  points.push_back({5, 5, 2});           // same x and y: dropped
  points.push_back({5.00005, 5, 3});     // 0.00005 away: one point with (5, 5)
  points.push_back({3, 3, 4});
  points.push_back({3.0002, 3, 5});      // 0.0002 away: a point of its own
  const TinSurface surface = Surface(points);
  EXPECT_TRUE(surface.IsValid());
  EXPECT_EQ(surface.VertexCount(), 7);
  EXPECT_DOUBLE_EQ(surface.ElevationAt(5, 5).Value(), 1.0);
  EXPECT_DOUBLE_EQ(surface.ElevationAt(3, 3).Value(), 4.0);
  EXPECT_DOUBLE_EQ(surface.ElevationAt(3.0002, 3).Value(), 5.0);
  // Reversed order: now the other one is first.
  std::vector<Point3> reversed(points.rbegin(), points.rend());
  const TinSurface other = Surface(reversed);
  EXPECT_DOUBLE_EQ(other.ElevationAt(5.00005, 5).Value(), 3.0);
  EXPECT_EQ(other.VertexCount(), 7);
}

TEST(TinPoints, BreaklineVertexWinsOverAPointAndALaterBreaklineOverAnEarlierOne) {
  TinSurface surface;
  surface.SetPoints({{0, 0, 0}, {10, 0, 0}, {0, 10, 0}, {10, 10, 0}, {5, 5, 1}});
  ASSERT_TRUE(surface.AddBreakline({{2, 2, 0}, {5, 5, 7}}));
  surface.Rebuild();
  EXPECT_DOUBLE_EQ(surface.ElevationAt(5, 5).Value(), 7.0);
  ASSERT_TRUE(surface.AddBreakline({{5, 5, 9}, {8, 2, 0}}));
  surface.Rebuild();
  EXPECT_DOUBLE_EQ(surface.ElevationAt(5, 5).Value(), 9.0);
  EXPECT_EQ(surface.VertexCount(), 7);
}

// --- empty and degenerate ---------------------------------------------------------------------

TEST(TinDegenerate, TooFewOrCollinearPointsMakeAnEmptySurface) {
  std::vector<std::vector<Point3>> cases{
      {},
      {{1, 1, 1}},
      {{1, 1, 1}, {2, 2, 2}},
      {{0, 0, 0}, {0, 0, 1}, {0, 0, 2}},  // one plan position
      {{kNaN, 0, 0}, {1, 0, 0}, {0, 1, 0}},  // the non-finite one does not count
  };
  std::vector<Point3> line;
  for (int i = 0; i < 100; ++i) line.push_back({i * 1.5, i * 0.5, static_cast<double>(i)});
  cases.push_back(line);
  for (const auto& points : cases) {
    const TinSurface surface = Surface(points);
    EXPECT_TRUE(surface.IsValid());
    EXPECT_EQ(surface.TriangleCount(), 0);
    EXPECT_TRUE(surface.Triangles().empty());
    EXPECT_EQ(surface.ElevationAt(1, 1).Error(), LandError::Empty);
    EXPECT_EQ(surface.SampleSegment({0, 0}, {5, 5}).Error(), LandError::Empty);
    EXPECT_EQ(surface.IntersectRay({1, 1, 10}, {0, 0, -1}).Error(), LandError::Empty);
    EXPECT_EQ(surface.Elevations().Error(), LandError::Empty);
    EXPECT_TRUE(surface.Outline().empty());
    EXPECT_EQ(surface.Area2d(), 0.0);
  }
  // A breakline on a collinear set does not make it two-dimensional.
  TinSurface surface;
  surface.SetPoints(line);
  ASSERT_TRUE(surface.AddBreakline({{0, 0, 0}, {15, 5, 10}}));
  surface.Rebuild();
  EXPECT_EQ(surface.TriangleCount(), 0);
}

TEST(TinDegenerate, NeverRebuiltAndBadQueries) {
  TinSurface surface;
  EXPECT_EQ(surface.TriangleCount(), 0);
  EXPECT_EQ(surface.ElevationAt(0, 0).Error(), LandError::Empty);
  EXPECT_TRUE(surface.IsValid());
  surface.SetPoints({{0, 0, 0}, {1, 0, 0}, {0, 1, 0}});
  EXPECT_EQ(surface.TriangleCount(), 0) << "out of date until rebuilt";
  surface.Rebuild();
  EXPECT_EQ(surface.TriangleCount(), 1);
  EXPECT_EQ(surface.ElevationAt(kNaN, 0).Error(), LandError::InvalidArgument);
  EXPECT_EQ(surface.SampleSegment({0, 0}, {kNaN, 1}).Error(), LandError::InvalidArgument);
  EXPECT_EQ(surface.IntersectRay({0.2, 0.2, 1}, {0, 0, 0}).Error(), LandError::InvalidArgument);
  EXPECT_EQ(surface.IntersectRay({0.2, 0.2, kNaN}, {0, 0, -1}).Error(), LandError::InvalidArgument);
}

// --- sampling and rays on planes --------------------------------------------------------------

// z = 0.3 x - 0.2 y + 50 on irregular points; every answer is checked against the plane, and
// the sample positions against a brute-force list of edge crossings.
class TinPlane : public ::testing::Test {
protected:
  static double Z(double x, double y) { return 0.3 * x - 0.2 * y + 50.0; }
  void SetUp() override {
    points_ = RandomPoints(3, 400, 100.0, Z);
    for (const Point3 c : {Point3{0, 0, Z(0, 0)}, Point3{100, 0, Z(100, 0)}, Point3{100, 100, Z(100, 100)}, Point3{0, 100, Z(0, 100)}}) {
      points_.push_back(c);
    }
    surface_.SetPoints(points_);
    surface_.Rebuild();
    ASSERT_TRUE(surface_.IsValid());
  }
  std::vector<Point3> points_;
  TinSurface surface_;
};

TEST_F(TinPlane, ElevationsAndAreas) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> u(0.0, 100.0);
  for (int i = 0; i < 200; ++i) {
    const double x = u(random), y = u(random);
    EXPECT_NEAR(surface_.ElevationAt(x, y).Value(), Z(x, y), 1e-9);
  }
  EXPECT_EQ(surface_.ElevationAt(-0.001, 50).Error(), LandError::OutOfRange);
  // On the hull's edge and at its corner.
  EXPECT_NEAR(surface_.ElevationAt(50, 0).Value(), Z(50, 0), 1e-9);
  EXPECT_NEAR(surface_.ElevationAt(0, 37.5).Value(), Z(0, 37.5), 1e-9);
  EXPECT_DOUBLE_EQ(surface_.ElevationAt(100, 100).Value(), Z(100, 100));
  EXPECT_NEAR(surface_.Area2d(), 10000.0, 1e-8);
  EXPECT_NEAR(surface_.Area3d(), 10000.0 * std::sqrt(1 + 0.09 + 0.04), 1e-7);
  EXPECT_DOUBLE_EQ(surface_.Elevations().Value().minimum, Z(0, 100));
  EXPECT_DOUBLE_EQ(surface_.Elevations().Value().maximum, Z(100, 0));
  const auto outline = surface_.Outline();
  ASSERT_EQ(outline.size(), 1u);
  EXPECT_NEAR(RingArea(outline[0]), 10000.0, 1e-8);
}

TEST_F(TinPlane, SamplesLieOnThePlaneAtEveryEdgeCrossingInOrder) {
  const std::vector<Triangle> triangles = TrianglesOf(surface_);
  const std::vector<std::pair<Point2, Point2>> segments{
      {{3.3, 4.1}, {91.7, 83.9}},      // inside to inside
      {{-20.0, 37.3}, {120.0, 61.9}},  // crosses the whole surface, both ends outside
      {{50.5, 50.5}, {150.2, 99.1}},   // leaves the surface
      {{77.7, 12.3}, {12.3, 77.7}},    // reversed direction
      {{0.0, 31.0}, {0.0, 69.0}},      // along the hull's edge
  };
  for (const auto& [from, to] : segments) {
    const auto samples = surface_.SampleSegment(from, to);
    ASSERT_TRUE(samples) << from << " " << to;
    const std::vector<double> expected = BruteCrossings(triangles, from, to);
    const double length = Distance(from, to);
    ASSERT_EQ(samples.Value().size(), expected.size()) << from << " " << to;
    for (std::size_t k = 0; k < expected.size(); ++k) {
      const Point3& s = samples.Value()[k];
      EXPECT_NEAR(Distance(from, {s.x, s.y}) / length, expected[k], 1e-9) << k;
      EXPECT_NEAR(s.z, Z(s.x, s.y), 1e-9);
    }
  }
  // Ends on the surface are the first and last samples, exactly.
  const auto inside = surface_.SampleSegment({3.3, 4.1}, {91.7, 83.9}).Value();
  EXPECT_EQ(inside.front().x, 3.3);
  EXPECT_EQ(inside.back().y, 83.9);
  // Nothing on the surface, and a segment of zero length.
  EXPECT_EQ(surface_.SampleSegment({-5, -5}, {-1, 50}).Error(), LandError::OutOfRange);
  const auto point = surface_.SampleSegment({20, 30}, {20, 30});
  ASSERT_TRUE(point);
  ASSERT_EQ(point.Value().size(), 1u);
  EXPECT_NEAR(point.Value()[0].z, Z(20, 30), 1e-9);
}

TEST_F(TinPlane, RayHitsMatchTheAnalyticIntersection) {
  // Plane z = a x + b y + c; ray o + t d meets it at t = (a ox + b oy + c - oz) / (dz - a dx - b dy).
  const auto expectHit = [&](Point3 o, Point3 d) {
    const double t = (0.3 * o.x - 0.2 * o.y + 50.0 - o.z) / (d.z - 0.3 * d.x + 0.2 * d.y);
    const auto hit = surface_.IntersectRay(o, d);
    ASSERT_TRUE(hit) << o << " " << d;
    EXPECT_NEAR(hit.Value().x, o.x + t * d.x, 1e-8);
    EXPECT_NEAR(hit.Value().y, o.y + t * d.y, 1e-8);
    EXPECT_NEAR(hit.Value().z, o.z + t * d.z, 1e-8);
  };
  expectHit({40, 60, 200}, {0, 0, -1});          // straight down
  expectHit({40, 60, 200}, {0.3, -0.2, -1});     // steep
  expectHit({10, 10, 80}, {1, 0.6, -0.3});       // shallow, long walk
  expectHit({-30, 50, 70}, {1, 0, -0.1});        // from outside the surface's extent
  expectHit({40, 60, 0}, {0.1, 0.1, 1});         // from below, upwards
  expectHit({40, 60, Z(40, 60)}, {1, 1, 1});     // starts on the surface: hits at once
  EXPECT_DOUBLE_EQ(surface_.IntersectRay({40, 60, Z(40, 60)}, {1, 1, 1}).Value().x, 40.0);
  // Misses: pointing away, parallel above, off the side, from below going down.
  EXPECT_EQ(surface_.IntersectRay({40, 60, 200}, {0, 0, 1}).Error(), LandError::NotFound);
  EXPECT_EQ(surface_.IntersectRay({40, 60, 200}, {0.3, -0.2, 0.0}).Error(), LandError::NotFound);
  EXPECT_EQ(surface_.IntersectRay({40, 60, 200}, {1, 0, -0.01}).Error(), LandError::NotFound);
  EXPECT_EQ(surface_.IntersectRay({40, 60, 0}, {0, 0, -1}).Error(), LandError::NotFound);
  EXPECT_EQ(surface_.IntersectRay({150, 60, 0}, {0, 0, 1}).Error(), LandError::NotFound);
}

// A hill: rays that graze it must hit its near side, the nearest hit of several.
TEST(TinRay, NearestOfSeveralHitsAgainstBruteForce) {
  const auto hill = [](double x, double y) { return 20.0 * std::exp(-((x - 50) * (x - 50) + (y - 50) * (y - 50)) / 400.0); };
  const TinSurface surface = Surface(Grid(0, 0, 100, 100, 2.5, hill));
  const std::vector<Triangle> triangles = TrianglesOf(surface);
  std::mt19937 random(9);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  int hits = 0;
  for (int i = 0; i < 300; ++i) {
    const Point3 o{-10.0 + 20.0 * u(random), 100.0 * u(random), 5.0 + 20.0 * u(random)};
    const Point3 d{1.0, 0.4 * (u(random) - 0.5), -0.3 * u(random)};
    const auto expected = BruteRay(triangles, o, d);
    const auto hit = surface.IntersectRay(o, d);
    ASSERT_EQ(hit.Ok(), expected.has_value()) << o << " " << d;
    if (!expected) continue;
    ++hits;
    EXPECT_NEAR(hit.Value().x, o.x + *expected * d.x, 1e-7);
    EXPECT_NEAR(hit.Value().z, o.z + *expected * d.z, 1e-7);
  }
  EXPECT_GT(hits, 100);
}

// --- boundaries -------------------------------------------------------------------------------

// A 10 x 10 grid of unit cells; boundary corners avoid cell diagonals so that which triangles a
// boundary crosses does not depend on which diagonal each cell got.
class TinBoundaries : public ::testing::Test {
protected:
  static double Z(double x, double y) { return x + 2 * y; }
  void SetUp() override { surface_.SetPoints(Grid(0, 0, 10, 10, 1, Z)); }
  double Rebuilt() {
    surface_.Rebuild();
    EXPECT_TRUE(surface_.IsValid());
    return surface_.Area2d();
  }
  // x 2.3 to 7.6, y 2.45 to 7.55: 27.03; whole cells inside: [3, 7] x [3, 7]; cells touched:
  // [2, 8] x [2, 8], both triangles of each corner cell whichever its diagonal (the corners lie
  // so that one boundary edge leaving them always crosses the diagonal).
  static constexpr double kBoxArea = 5.3 * 5.1;
  SurfaceBoundary Box(SurfaceBoundaryType type, bool nonDestructive) const {
    return Rect(type, nonDestructive, 2.3, 2.45, 7.6, 7.55);
  }
  TinSurface surface_;
};

TEST_F(TinBoundaries, OuterNonDestructiveClipsExactlyOuterDestructiveKeepsWholeTriangles) {
  ASSERT_TRUE(surface_.AddBoundary(Box(SurfaceBoundaryType::Outer, true)));
  EXPECT_NEAR(Rebuilt(), kBoxArea, 1e-9);
  EXPECT_NEAR(surface_.ElevationAt(2.3, 5).Value(), Z(2.3, 5), 1e-12);
  EXPECT_EQ(surface_.ElevationAt(2.29, 5).Error(), LandError::OutOfRange);
  for (const Triangle& t : TrianglesOf(surface_)) {
    for (const Point3& p : t) {
      EXPECT_TRUE(p.x >= 2.3 - 1e-12 && p.x <= 7.6 + 1e-12 && p.y >= 2.45 - 1e-12 && p.y <= 7.55 + 1e-12) << p;
      EXPECT_NEAR(p.z, Z(p.x, p.y), 1e-9) << "boundary vertices take the surface's elevation";
    }
  }
  const auto outline = surface_.Outline();
  ASSERT_EQ(outline.size(), 1u);
  EXPECT_NEAR(RingArea(outline[0]), kBoxArea, 1e-9);

  surface_.ClearBoundaries();
  ASSERT_TRUE(surface_.AddBoundary(Box(SurfaceBoundaryType::Outer, false)));
  EXPECT_NEAR(Rebuilt(), 16.0, 1e-12);
  EXPECT_EQ(surface_.VertexCount(), 121) << "a destructive boundary adds no vertices";
  EXPECT_EQ(surface_.ElevationAt(2.5, 5).Error(), LandError::OutOfRange);
  EXPECT_NEAR(surface_.ElevationAt(3, 5).Value(), Z(3, 5), 1e-12);
}

TEST_F(TinBoundaries, HideMakesAHoleNonDestructiveExactlyDestructiveWithTheTrianglesItTouches) {
  ASSERT_TRUE(surface_.AddBoundary(Box(SurfaceBoundaryType::Hide, true)));
  EXPECT_NEAR(Rebuilt(), 100.0 - kBoxArea, 1e-9);
  EXPECT_EQ(surface_.ElevationAt(5, 5).Error(), LandError::OutOfRange);
  EXPECT_NEAR(surface_.ElevationAt(2.3, 5).Value(), Z(2.3, 5), 1e-12) << "the hole's edge is on the surface";
  const auto outline = surface_.Outline();
  ASSERT_EQ(outline.size(), 2u);
  std::multiset<long> areas;
  for (const auto& ring : outline) areas.insert(std::lround(RingArea(ring) * 1000));
  EXPECT_EQ(areas, (std::multiset<long>{-27030, 100000})) << "outer ring counter-clockwise, hole clockwise";

  surface_.ClearBoundaries();
  ASSERT_TRUE(surface_.AddBoundary(Box(SurfaceBoundaryType::Hide, false)));
  EXPECT_NEAR(Rebuilt(), 64.0, 1e-12);
  EXPECT_EQ(surface_.ElevationAt(2.1, 5).Error(), LandError::OutOfRange);
}

TEST_F(TinBoundaries, ShowRestoresTrianglesInsideAHide) {
  ASSERT_TRUE(surface_.AddBoundary(Box(SurfaceBoundaryType::Hide, true)));
  ASSERT_TRUE(surface_.AddBoundary(Rect(SurfaceBoundaryType::Show, true, 4.3, 4.45, 5.6, 5.2)));
  EXPECT_NEAR(Rebuilt(), 100.0 - kBoxArea + 1.3 * 0.75, 1e-9);
  EXPECT_NEAR(surface_.ElevationAt(5, 5).Value(), Z(5, 5), 1e-12);
  EXPECT_EQ(surface_.ElevationAt(4, 5).Error(), LandError::OutOfRange);
  EXPECT_EQ(surface_.Outline().size(), 3u);

  surface_.RemoveBoundary(1);
  ASSERT_TRUE(surface_.AddBoundary(Rect(SurfaceBoundaryType::Show, false, 3.3, 3.45, 6.6, 6.2)));
  EXPECT_NEAR(Rebuilt(), 100.0 - kBoxArea + 4.0, 1e-9) << "destructive: only the cells [4, 6] x [4, 6]";
}

TEST_F(TinBoundaries, LaterBoundariesOverrideEarlierOnes) {
  // Of two outer boundaries the last one shows.
  ASSERT_TRUE(surface_.AddBoundary(Rect(SurfaceBoundaryType::Outer, true, 0, 0, 5, 10)));
  ASSERT_TRUE(surface_.AddBoundary(Rect(SurfaceBoundaryType::Outer, true, 4, 0, 10, 10)));
  EXPECT_NEAR(Rebuilt(), 60.0, 1e-9);
  EXPECT_EQ(surface_.ElevationAt(2, 5).Error(), LandError::OutOfRange);
  // An outer boundary added after a hide shows the triangles inside it again.
  surface_.ClearBoundaries();
  ASSERT_TRUE(surface_.AddBoundary(Box(SurfaceBoundaryType::Hide, true)));
  ASSERT_TRUE(surface_.AddBoundary(Rect(SurfaceBoundaryType::Outer, true, 1, 1, 9, 9)));
  EXPECT_NEAR(Rebuilt(), 64.0, 1e-9);
  EXPECT_TRUE(surface_.IsOnSurface(5, 5));
  // The other way round the hide stays.
  surface_.ClearBoundaries();
  ASSERT_TRUE(surface_.AddBoundary(Rect(SurfaceBoundaryType::Outer, true, 1, 1, 9, 9)));
  ASSERT_TRUE(surface_.AddBoundary(Box(SurfaceBoundaryType::Hide, true)));
  EXPECT_NEAR(Rebuilt(), 64.0 - kBoxArea, 1e-9);
}

TEST_F(TinBoundaries, OuterBoundaryBeyondTheDataAddsNothingOutside) {
  ASSERT_TRUE(surface_.AddBoundary(Rect(SurfaceBoundaryType::Outer, true, -5.3, -4.1, 5.45, 17)));
  EXPECT_NEAR(Rebuilt(), 5.45 * 10, 1e-9);
  for (const Triangle& t : TrianglesOf(surface_)) {
    for (const Point3& p : t) EXPECT_TRUE(p.x >= -1e-12 && p.y >= -1e-12 && p.y <= 10 + 1e-12) << p;
  }
}

TEST_F(TinBoundaries, DataClipLeavesOutPointsAndCutsBreaklines) {
  std::vector<Point3> points = Grid(0, 0, 10, 10, 1, Z);
  points.push_back({40, 5, 500});  // outside the clip: would widen the surface
  surface_.SetPoints(points);
  ASSERT_TRUE(surface_.AddBreakline({{5.5, 5.25, 100}, {25.5, 5.25, 300}}));  // leaves the clip at x = 10
  ASSERT_TRUE(surface_.AddBoundary(Rect(SurfaceBoundaryType::DataClip, true, -0.5, -0.5, 10, 10.5)));
  EXPECT_NEAR(Rebuilt(), 100.0, 1e-9);
  EXPECT_EQ(surface_.VertexCount(), 121 + 2) << "the breakline's start and its cut at the clip";
  EXPECT_NEAR(surface_.ElevationAt(10, 5.25).Value(), 100 + 200 * 4.5 / 20, 1e-9);
  EXPECT_NEAR(surface_.ElevationAt(7.5, 5.25).Value(), 100 + 200 * 2 / 20.0, 1e-9);
  // Only the last data clip counts.
  ASSERT_TRUE(surface_.AddBoundary(Rect(SurfaceBoundaryType::DataClip, true, -1, -1, 40, 40)));
  EXPECT_NEAR(Rebuilt(), 250.0, 1e-9);  // the hull of the grid and (40, 5)
}

// Non-destructive cutting must not change the surface's shape anywhere: the same elevations
// inside the boundary as without it, on an irregular surface, with a round boundary.
TEST(TinBoundaryShape, NonDestructiveCutKeepsEveryElevation) {
  const auto z = [](double x, double y) { return 10.0 * std::sin(x / 7.0) * std::cos(y / 5.0) + 0.01 * x * y; };
  const std::vector<Point3> points = RandomPoints(21, 500, 100.0, z);
  const TinSurface plain = Surface(points);
  TinSurface clipped;
  clipped.SetPoints(points);
  std::vector<Point2> circle;
  for (int k = 0; k < 48; ++k) circle.push_back({50 + 30 * std::cos(k * kTwoPi / 48), 50 + 30 * std::sin(k * kTwoPi / 48)});
  ASSERT_TRUE(clipped.AddBoundary({SurfaceBoundaryType::Outer, true, circle}));
  ASSERT_TRUE(clipped.AddBoundary({SurfaceBoundaryType::Hide, true, {{40, 40}, {60, 45}, {45, 60}}}));
  clipped.Rebuild();
  ASSERT_TRUE(clipped.IsValid());
  double polygonArea = 0.0;
  for (std::size_t k = 0; k < circle.size(); ++k) polygonArea += 0.5 * Cross(circle[k], circle[(k + 1) % circle.size()]);
  EXPECT_NEAR(clipped.Area2d(), polygonArea - 0.5 * Cross(Point2{20, 5}, Point2{5, 20}), 1e-8);
  std::mt19937 random(4);
  std::uniform_real_distribution<double> u(20.0, 80.0);
  int compared = 0;
  for (int i = 0; i < 2000; ++i) {
    const double x = u(random), y = u(random);
    const auto inside = clipped.ElevationAt(x, y);
    if (!inside) continue;
    ++compared;
    EXPECT_NEAR(inside.Value(), plain.ElevationAt(x, y).Value(), 1e-9) << x << ", " << y;
  }
  EXPECT_GT(compared, 1000);
  // Samples across the clipped surface stop at its edge and resume across the hole.
  const auto samples = clipped.SampleSegment({0, 50}, {100, 50});
  ASSERT_TRUE(samples);
  EXPECT_NEAR(samples.Value().front().x, 20.0, 1e-9);
  EXPECT_NEAR(samples.Value().back().x, 80.0, 1e-9);
  const auto covered = clipped.CoveredIntervals({0, 50}, {100, 50});
  ASSERT_EQ(covered.size(), 2u);
  EXPECT_NEAR(covered[0].first, 0.2, 1e-9);
  EXPECT_NEAR(covered[0].second, 0.425, 1e-9);  // the hole's edge from (40, 40) to (45, 60) at x = 42.5
  EXPECT_NEAR(covered[1].first, 0.55, 1e-9);    // and from (60, 45) to (45, 60) at x = 55
  EXPECT_NEAR(covered[1].second, 0.8, 1e-9);
}

// Random star-shaped boundaries, some corners on grid points, over surfaces with crossing
// breaklines: a non-destructive outer keeps exactly the polygon's area and a hide removes it, and
// samples across agree with brute force over the triangle list.
TEST(TinBoundaryShape, RandomStarBoundariesOverBreaklines) {
  for (unsigned seed = 1; seed <= 40; ++seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    const bool grid = seed % 2 == 0;
    const auto ground = [](double x, double y) { return std::sin(x) + 0.1 * y; };
    std::vector<Point3> all = grid ? Grid(0, 0, 20, 20, 1, ground) : RandomPoints(seed, 300, 20.0, ground);
    TinSurface surface;
    surface.SetPoints(all);
    for (int b = 0; b < 3; ++b) {
      const Point3 p{20 * u(random), 20 * u(random), 5 * u(random)}, q{20 * u(random), 20 * u(random), 5 * u(random)};
      ASSERT_TRUE(surface.AddBreakline({p, q}));
      all.insert(all.end(), {p, q});
    }
    std::vector<Point2> star;
    const int corners = 3 + static_cast<int>(12 * u(random));
    for (int k = 0; k < corners; ++k) {
      const double r = 2.0 + 6.0 * u(random);
      Point2 p{10 + r * std::cos(kTwoPi * k / corners), 10 + r * std::sin(kTwoPi * k / corners)};
      if (grid && u(random) < 0.5) p = {std::round(p.x), std::round(p.y)};
      star.push_back(p);
    }
    double area = 0.0;
    for (int k = 0; k < corners; ++k) area += 0.5 * Cross(star[k], star[(k + 1) % corners]);
    const bool outer = seed % 3 != 0;
    ASSERT_TRUE(surface.AddBoundary({outer ? SurfaceBoundaryType::Outer : SurfaceBoundaryType::Hide, true, star}));
    surface.Rebuild();
    ASSERT_TRUE(surface.IsValid()) << seed;
    EXPECT_NEAR(surface.Area2d(), outer ? area : RingArea(Hull(all)) - area, 1e-8) << seed;
    const std::vector<Triangle> triangles = TrianglesOf(surface);
    const Point2 from{20 * u(random), -1.0}, to{20 * u(random), 21.0};
    const auto samples = surface.SampleSegment(from, to);
    const std::vector<double> expected = BruteCrossings(triangles, from, to, 1e-11);
    if (!samples) {
      EXPECT_TRUE(expected.empty()) << seed;
      continue;
    }
    EXPECT_EQ(samples.Value().size(), expected.size()) << seed;
    for (const Point3& p : samples.Value()) EXPECT_NEAR(p.z, BruteElevation(triangles, p.x, p.y).value(), 1e-9) << seed;
  }
}

// Destructive boundaries against a brute-force judgement of every triangle of the same surface
// built without them: crossed (an edge of the polygon crosses an edge of the triangle, or a
// polygon corner lies inside it), else inside or outside by its centre.
TEST(TinBoundaryShape, DestructiveBoundariesDropExactlyTheTrianglesTheyCross) {
  for (unsigned seed = 1; seed <= 20; ++seed) {
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    const std::vector<Point3> points = RandomPoints(seed, 200, 20.0, [](double x, double y) { return x - y; });
    std::vector<Point2> star;
    const int corners = 3 + static_cast<int>(12 * u(random));
    for (int k = 0; k < corners; ++k) {
      const double r = 2.0 + 7.0 * u(random);
      star.push_back({10 + r * std::cos(kTwoPi * k / corners), 10 + r * std::sin(kTwoPi * k / corners)});
    }
    const bool outer = seed % 2 == 1;
    TinSurface clipped;
    clipped.SetPoints(points);
    ASSERT_TRUE(clipped.AddBoundary({outer ? SurfaceBoundaryType::Outer : SurfaceBoundaryType::Hide, false, star}));
    clipped.Rebuild();
    ASSERT_TRUE(clipped.IsValid());
    std::set<std::vector<double>> visible;
    for (const Triangle& t : TrianglesOf(clipped)) visible.insert({t[0].x, t[0].y, t[1].x, t[1].y, t[2].x, t[2].y});
    std::vector<Point3> ring;
    for (const Point2& p : star) ring.push_back({p.x, p.y, 0.0});
    for (const Triangle& t : TrianglesOf(Surface(points))) {
      bool crossed = false, inside = false;
      const Point3 centre{(t[0].x + t[1].x + t[2].x) / 3, (t[0].y + t[1].y + t[2].y) / 3, 0.0};
      for (int k = 0; k < corners; ++k) {
        const Point3& a = ring[k];
        const Point3& b = ring[(k + 1) % corners];
        for (int e = 0; e < 3; ++e) crossed = crossed || SegmentsCross(t[e], t[(e + 1) % 3], a, b);
        crossed = crossed || (Cross2(a, t[1], t[2]) > 0 && Cross2(a, t[2], t[0]) > 0 && Cross2(a, t[0], t[1]) > 0);
        if ((a.y > centre.y) != (b.y > centre.y) && centre.x < a.x + (centre.y - a.y) * (b.x - a.x) / (b.y - a.y)) inside = !inside;
      }
      const bool shown = !crossed && (outer ? inside : !inside);
      EXPECT_EQ(visible.count({t[0].x, t[0].y, t[1].x, t[1].y, t[2].x, t[2].y}) == 1, shown) << "seed " << seed;
    }
  }
}

TEST(TinBoundaryInput, RefusesDegenerateAndNonFiniteRings) {
  TinSurface surface;
  EXPECT_EQ(surface.AddBoundary({SurfaceBoundaryType::Outer, true, {{0, 0}, {1, 1}}}).Error(), LandError::Degenerate);
  EXPECT_EQ(surface.AddBoundary({SurfaceBoundaryType::Outer, true, {{0, 0}, {1, 1}, {2, 2}}}).Error(), LandError::Degenerate);
  EXPECT_EQ(surface.AddBoundary({SurfaceBoundaryType::Hide, true, {{0, 0}, {1, 0}, {kNaN, 1}}}).Error(),
            LandError::InvalidArgument);
  EXPECT_EQ(surface.AddBoundary({static_cast<SurfaceBoundaryType>(3), true, {{0, 0}, {1, 0}, {0, 1}}}).Error(),
            LandError::InvalidArgument);
  EXPECT_EQ(surface.BoundaryCount(), 0);
}

// --- paste ------------------------------------------------------------------------------------

class TinPaste : public ::testing::Test {
protected:
  void SetUp() override {
    base_.SetPoints(Grid(0, 0, 10, 10, 1, [](double, double) { return 0.0; }));
    pad_.SetPoints(Grid(3.25, 3.25, 6.75, 6.75, 0.5, [](double x, double) { return 10.0 + x; }));
    pad_.Rebuild();
  }
  TinSurface base_;
  TinSurface pad_;
};

TEST_F(TinPaste, PastedTrianglesReplaceTheAreaTheyCover) {
  ASSERT_TRUE(base_.AddPaste(pad_));
  base_.Rebuild();
  ASSERT_TRUE(base_.IsValid());
  EXPECT_NEAR(base_.Area2d(), 100.0, 1e-9);
  EXPECT_DOUBLE_EQ(base_.ElevationAt(5, 5).Value(), 15.0);
  EXPECT_DOUBLE_EQ(base_.ElevationAt(1, 1).Value(), 0.0);
  // Every pasted triangle is in the result as it was (corners compared as sorted x, y, z triples).
  const auto key = [](const Triangle& t) {
    std::vector<std::array<double, 3>> corners;
    for (const Point3& p : t) corners.push_back({p.x, p.y, p.z});
    std::sort(corners.begin(), corners.end());
    return corners;
  };
  std::set<std::vector<std::array<double, 3>>> result;
  for (const Triangle& t : TrianglesOf(base_)) result.insert(key(t));
  for (const Triangle& t : TrianglesOf(pad_)) EXPECT_TRUE(result.count(key(t))) << t[0] << t[1] << t[2];
  // The base points under the pad (4..6 x 4..6: 9 of them) are gone.
  EXPECT_EQ(base_.VertexCount(), 121 - 9 + 64);
  // The seam runs from the base points outside to the pad's edge.
  EXPECT_NEAR(base_.ElevationAt(3, 5).Value(), 0.0, 1e-12);
  EXPECT_GT(base_.ElevationAt(3.2, 5).Value(), 10.0);
}

TEST_F(TinPaste, APasteIsASnapshotAndALaterPasteWins) {
  ASSERT_TRUE(base_.AddPaste(pad_));
  pad_.SetPoints({{0, 0, 99}, {1, 0, 99}, {0, 1, 99}});
  pad_.Rebuild();
  base_.Rebuild();
  EXPECT_DOUBLE_EQ(base_.ElevationAt(5, 5).Value(), 15.0);

  TinSurface cap;
  cap.SetPoints(Grid(4.4, 4.4, 5.6, 5.6, 0.4, [](double, double) { return -3.0; }));
  cap.Rebuild();
  ASSERT_TRUE(base_.AddPaste(cap));
  base_.Rebuild();
  ASSERT_TRUE(base_.IsValid());
  EXPECT_DOUBLE_EQ(base_.ElevationAt(5, 5).Value(), -3.0);
  EXPECT_DOUBLE_EQ(base_.ElevationAt(6.5, 6.5).Value(), 16.5);
  EXPECT_NEAR(base_.Area2d(), 100.0, 1e-9);

  TinSurface empty;
  EXPECT_EQ(base_.AddPaste(empty).Error(), LandError::Empty);
  EXPECT_EQ(base_.RemovePaste(5), LandError::NotFound);
}

// Cutting a hole into a surface puts vertices 0.00005 from its grid points; pasted, they must
// stay apart (the merge distance is for data, not for a surface's own vertices), or the hole's
// edge moves onto the grid column and the strip between them loses the pad.
TEST_F(TinPaste, APastedSurfaceKeepsItsOwnCloseVertices) {
  TinSurface pad;
  pad.SetPoints(Grid(3.25, 3.25, 6.75, 6.75, 0.5, [](double x, double y) { return 10.0 + x * y * 0.3; }));
  ASSERT_TRUE(pad.AddBoundary({SurfaceBoundaryType::Hide, true, {{4.25005, 4.1}, {6.1, 4.3}, {4.25005, 6.6}}}));
  pad.Rebuild();
  ASSERT_TRUE(base_.AddPaste(pad));
  base_.Rebuild();
  ASSERT_TRUE(base_.IsValid());
  int compared = 0;
  for (const double x : {4.0, 4.24, 4.25003, 4.3, 5.0}) {
    for (double y = 4.15; y < 6.5; y += 0.1) {
      const auto pasted = pad.ElevationAt(x, y);
      if (!pasted) continue;  // in the hole
      const auto here = base_.ElevationAt(x, y);
      ASSERT_TRUE(here) << x << ", " << y;
      EXPECT_NEAR(here.Value(), pasted.Value(), 1e-9) << x << ", " << y;
      ++compared;
    }
  }
  EXPECT_GT(compared, 70);
}

TEST_F(TinPaste, BaseBreaklinesAreCutAtThePastedEdge) {
  ASSERT_TRUE(base_.AddBreakline({{0.5, 5.1, 2}, {9.5, 5.1, 2}}));
  ASSERT_TRUE(base_.AddPaste(pad_));
  base_.Rebuild();
  ASSERT_TRUE(base_.IsValid());
  EXPECT_DOUBLE_EQ(base_.ElevationAt(0.5, 5.1).Value(), 2.0);
  EXPECT_DOUBLE_EQ(base_.ElevationAt(3.25, 5.1).Value(), 13.25) << "the pad's edge wins";
  EXPECT_NEAR(base_.ElevationAt(2, 5.1).Value(), 2.0 + 11.25 * 1.5 / 2.75, 1e-12) << "the cut breakline climbs to it";
  EXPECT_NEAR(base_.ElevationAt(5, 5.1).Value(), 15.0, 1e-12);
  // A pasted hide area shows the base through it: a paste covers only what it shows.
  pad_.AddBoundary(Rect(SurfaceBoundaryType::Hide, true, 4.6, 4.6, 5.4, 5.4));
  pad_.Rebuild();
  TinSurface other;
  other.SetPoints(Grid(0, 0, 10, 10, 1, [](double, double) { return 0.0; }));
  ASSERT_TRUE(other.AddPaste(pad_));
  other.Rebuild();
  EXPECT_DOUBLE_EQ(other.ElevationAt(5, 5).Value(), 0.0);
  EXPECT_NEAR(other.ElevationAt(4, 4).Value(), 14.0, 1e-12);
}

}  // namespace
