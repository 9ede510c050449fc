// TIN surfaces from the shared LandXML files (third-party, read where they are): samples and ray
// hits on real surfaces against brute force, and the fidelity report: how many of each file's
// faces a rebuild from the file's points (breaklines, boundaries) reproduces.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "TinTestUtil.h"
#include "landxml/LandXml.h"

namespace {

using namespace headless::land;
using namespace tintest;

std::filesystem::path SharedFile(const std::string& name) {
  const char* root = std::getenv("KD_SHARED_DIR");
  if (!root) return {};
  const std::filesystem::path path = std::filesystem::path(root) / "data" / "landxml" / name;
  return std::filesystem::exists(path) ? path : std::filesystem::path{};
}

std::vector<landxml::CSurface> TinSurfaces(const std::filesystem::path& path) {
  std::vector<landxml::CSurface> out;
  landxml::CReadResult read = landxml::ReadLandXml(path);
  if (!read) {
    ADD_FAILURE() << read.error;
    return out;
  }
  for (landxml::CSurface& s : read.model->surfaces) {
    if (s.type == landxml::SurfaceType::Tin && !s.faces.empty()) out.push_back(std::move(s));
  }
  return out;
}

std::vector<Point3> PointsOf(const landxml::CSurface& s) {
  std::vector<Point3> points;
  for (const landxml::CPoint& p : s.points) points.push_back({p.x, p.y, p.z});
  return points;
}

struct Definition {
  int breaklines = 0;
  int skippedBreaklines = 0;
  int boundaries = 0;
};

// The file's standard breaklines and its outer and void boundaries, as Civil 3D would take them.
Definition AddSourceData(const landxml::CSurface& s, TinSurface& surface) {
  Definition d;
  for (const landxml::CBreakline& b : s.breaklines) {
    std::vector<Point3> vertices;
    for (const landxml::CPoint& p : b.points) vertices.push_back({p.x, p.y, p.z});
    if ((b.brkType.empty() || b.brkType == "standard") && surface.AddBreakline(vertices)) {
      ++d.breaklines;
    } else {
      ++d.skippedBreaklines;
    }
  }
  for (const landxml::CBoundary& b : s.boundaries) {
    SurfaceBoundary boundary;
    boundary.type = b.bndType == "outer" ? SurfaceBoundaryType::Outer
                    : b.bndType == "void" || b.bndType == "hide" ? SurfaceBoundaryType::Hide
                    : b.bndType == "island" || b.bndType == "show" ? SurfaceBoundaryType::Show
                                                                   : SurfaceBoundaryType::DataClip;
    boundary.nonDestructive = b.edgeTrim.value_or(true);  // edgeTrim: triangles trimmed at the boundary
    for (const landxml::CPoint& p : b.points) boundary.polygon.push_back({p.x, p.y});
    if (boundary.type != SurfaceBoundaryType::DataClip && surface.AddBoundary(boundary)) ++d.boundaries;
  }
  return d;
}

// How many of `faces` appear among the surface's triangles with the same three corners.
int Reproduced(const landxml::CSurface& s, const std::vector<const landxml::CFace*>& faces, const TinSurface& surface) {
  std::map<std::pair<double, double>, std::uint32_t> id;
  for (std::uint32_t i = 0; i < s.points.size(); ++i) id.emplace(std::pair{s.points[i].x, s.points[i].y}, i);
  std::set<std::array<std::uint32_t, 3>> built;
  for (const Triangle& t : TrianglesOf(surface)) {
    std::array<std::uint32_t, 3> corners{};
    bool known = true;
    for (int c = 0; c < 3; ++c) {
      const auto found = id.find({t[c].x, t[c].y});
      known = known && found != id.end();
      if (known) corners[c] = found->second;
    }
    if (!known) continue;
    std::sort(corners.begin(), corners.end());
    built.insert(corners);
  }
  int matched = 0;
  for (const landxml::CFace* f : faces) {
    std::array<std::uint32_t, 3> corners{f->vertex[0], f->vertex[1], f->vertex[2]};
    std::sort(corners.begin(), corners.end());
    if (built.count(corners)) ++matched;
  }
  return matched;
}

// --- real surfaces: samples and rays against brute force over the triangle list ----------------

TEST(TinSharedFiles, SamplesAndRaysOnARealSurfaceMatchBruteForce) {
  const std::filesystem::path path = SharedFile("c3d2023_skyfall_tin.xml");
  if (path.empty()) GTEST_SKIP() << "KD_SHARED_DIR unset or c3d2023_skyfall_tin.xml absent";
  const auto surfaces = TinSurfaces(path);
  ASSERT_EQ(surfaces.size(), 1u);
  TinSurface surface;
  surface.SetPoints(PointsOf(surfaces[0]));
  surface.Rebuild();
  ASSERT_TRUE(surface.IsValid());
  ASSERT_GT(surface.TriangleCount(), 6000);
  const std::vector<Triangle> triangles = TrianglesOf(surface);

  double xMin = 1e300, xMax = -1e300, yMin = 1e300, yMax = -1e300;
  for (const landxml::CPoint& p : surfaces[0].points) {
    xMin = std::min(xMin, p.x), xMax = std::max(xMax, p.x), yMin = std::min(yMin, p.y), yMax = std::max(yMax, p.y);
  }
  std::mt19937 random(17);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  const auto somewhere = [&] { return Point2{xMin + (xMax - xMin) * u(random), yMin + (yMax - yMin) * u(random)}; };
  int checkedSegments = 0;
  for (int i = 0; i < 25; ++i) {
    const Point2 from = somewhere();
    const Point2 to = somewhere();
    const auto samples = surface.SampleSegment(from, to);
    // Slivers along the hull put crossings closer than 1e-9 of the segment apart.
    const std::vector<double> expected = BruteCrossings(triangles, from, to, 1e-11);
    if (!samples) {
      EXPECT_TRUE(expected.empty());
      continue;
    }
    ++checkedSegments;
    ASSERT_EQ(samples.Value().size(), expected.size()) << from << " -> " << to;
    for (std::size_t k = 0; k < expected.size(); ++k) {
      const Point3& s = samples.Value()[k];
      EXPECT_NEAR(Distance(from, {s.x, s.y}) / Distance(from, to), expected[k], 1e-9);
      EXPECT_NEAR(s.z, BruteElevation(triangles, s.x, s.y).value(), 1e-6);
    }
  }
  EXPECT_GT(checkedSegments, 15);

  int hits = 0;
  for (int i = 0; i < 100; ++i) {
    const Point2 at = somewhere();
    const Point3 origin{at.x, at.y, 200.0};
    const Point3 direction{u(random) - 0.5, u(random) - 0.5, -0.5 - u(random)};
    const auto expected = BruteRay(triangles, origin, direction);
    const auto hit = surface.IntersectRay(origin, direction);
    ASSERT_EQ(hit.Ok(), expected.has_value()) << origin << " " << direction;
    if (!hit) continue;
    ++hits;
    EXPECT_NEAR(hit.Value().x, origin.x + *expected * direction.x, 1e-6);
    EXPECT_NEAR(hit.Value().z, origin.z + *expected * direction.z, 1e-6);
  }
  EXPECT_GT(hits, 30);
}

// The small Civil 3D file with a breakline: its rebuild is the file's own triangulation, so
// elevations from the engine equal those of the file's faces.
TEST(TinSharedFiles, SmallCivil3dSurfaceWithABreaklineIsTheFilesTriangulation) {
  const std::filesystem::path path = SharedFile("c3d2021_topo_tiny_breakline.xml");
  if (path.empty()) GTEST_SKIP() << "KD_SHARED_DIR unset or c3d2021_topo_tiny_breakline.xml absent";
  const auto surfaces = TinSurfaces(path);
  ASSERT_EQ(surfaces.size(), 1u);
  const landxml::CSurface& s = surfaces[0];
  TinSurface surface;
  surface.SetPoints(PointsOf(s));
  AddSourceData(s, surface);
  surface.Rebuild();
  std::vector<const landxml::CFace*> faces;
  std::vector<Triangle> fileTriangles;
  for (const landxml::CFace& f : s.faces) {
    faces.push_back(&f);
    Triangle t;
    for (int c = 0; c < 3; ++c) t[c] = {s.points[f.vertex[c]].x, s.points[f.vertex[c]].y, s.points[f.vertex[c]].z};
    fileTriangles.push_back(t);
  }
  ASSERT_EQ(surface.TriangleCount(), static_cast<int>(s.faces.size()));
  EXPECT_EQ(Reproduced(s, faces, surface), static_cast<int>(s.faces.size()));
  // The surface spans x 4.8 to 44.4 (eastings), y 42.5 to 79.1.
  const auto samples = surface.SampleSegment({0.0, 45.0}, {50.0, 80.0});
  ASSERT_TRUE(samples);
  EXPECT_GE(samples.Value().size(), 5u);
  for (const Point3& p : samples.Value()) EXPECT_NEAR(p.z, BruteElevation(fileTriangles, p.x, p.y).value(), 1e-9);
  const auto hit = surface.IntersectRay({20.0, 60.0, 50.0}, {0.1, 0.2, -1.0});
  ASSERT_TRUE(hit);
  EXPECT_NEAR(hit.Value().z, BruteElevation(fileTriangles, hit.Value().x, hit.Value().y).value(), 1e-9);
}

// --- fidelity report --------------------------------------------------------------------------

// Prints, per shared file with a TIN, the share of its faces that a rebuild reproduces: from the
// points alone and from points and breaklines (against all faces), and from points, breaklines
// and boundaries (visible faces against visible triangles). Faces whose corners are not three
// distinct plan points count in no share. Asserts only that something was compared.
TEST(TinSharedFiles, FidelityReport) {
  const char* root = std::getenv("KD_SHARED_DIR");
  if (!root) GTEST_SKIP() << "KD_SHARED_DIR unset";
  const std::filesystem::path dir = std::filesystem::path(root) / "data" / "landxml";
  if (!std::filesystem::is_directory(dir)) GTEST_SKIP() << dir << " absent";
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(dir)) {
    if (entry.path().extension() == ".xml") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  int compared = 0;
  std::cout << std::fixed << std::setprecision(1);
  for (const auto& file : files) {
    const landxml::CReadResult read = landxml::ReadLandXml(file);
    if (!read) continue;  // the malformed fixture
    for (const landxml::CSurface& s : read.model->surfaces) {
      if (s.type != landxml::SurfaceType::Tin || s.faces.empty()) continue;
      std::vector<const landxml::CFace*> all, visible;
      int degenerate = 0;
      for (const landxml::CFace& f : s.faces) {
        const landxml::CPoint& a = s.points[f.vertex[0]];
        const landxml::CPoint& b = s.points[f.vertex[1]];
        const landxml::CPoint& c = s.points[f.vertex[2]];
        if ((b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) == 0.0) {
          ++degenerate;
          continue;
        }
        all.push_back(&f);
        if (!f.invisible) visible.push_back(&f);
      }
      const auto share = [](int matched, std::size_t of) { return of == 0 ? 0.0 : 100.0 * matched / of; };
      TinSurface plain;
      plain.SetPoints(PointsOf(s));
      plain.Rebuild();
      EXPECT_TRUE(plain.IsValid());
      const int plainMatched = Reproduced(s, all, plain);

      TinSurface lines;
      lines.SetPoints(PointsOf(s));
      landxml::CSurface withoutBoundaries = s;
      withoutBoundaries.boundaries.clear();
      AddSourceData(withoutBoundaries, lines);
      lines.Rebuild();
      EXPECT_TRUE(lines.IsValid());
      const int linesMatched = Reproduced(s, all, lines);

      TinSurface full;
      full.SetPoints(PointsOf(s));
      const Definition d = AddSourceData(s, full);
      full.Rebuild();
      EXPECT_TRUE(full.IsValid());
      const int fullMatched = Reproduced(s, visible, full);
      std::cout << "[fidelity] " << file.filename().string() << " '" << s.name << "': " << s.points.size()
                << " points, " << s.faces.size() << " faces (" << all.size() - visible.size() << " invisible, "
                << degenerate << " degenerate), " << d.breaklines << " breaklines, " << d.boundaries
                << " boundaries | points: " << share(plainMatched, all.size()) << " % | + breaklines: "
                << share(linesMatched, all.size()) << " % | + boundaries: " << share(fullMatched, visible.size())
                << " % of visible faces (" << full.TriangleCount() << " visible triangles, " << full.VertexCount()
                << " vertices, plan area " << std::setprecision(3) << full.Area2d() << std::setprecision(1)
                << ")\n";
      if (!all.empty()) {
        EXPECT_GT(plainMatched, 0);
      }
      ++compared;
    }
  }
  EXPECT_GE(compared, 8);
}

}  // namespace
