// The terrain engine at survey scale: 1,000,000 random points over 10 km x 10 km (projected
// coordinates around 500,000 / 6,400,000, rolling ground), each benchmark with a reference
// measured in the same run (counter "ratio" = engine time / reference time, processor time):
//  - TinRebuildAndTriangles: SetPoints + Rebuild + Triangles() against CGAL triangulating the
//    same points directly (a constrained Delaunay triangulation over the xy projection, range
//    insertion) and copying out the same 9-double list, the fastest of five runs each. Peak
//    resident memory of each above what was resident before it (VmHWM, reset before each through
//    /proc/self/clear_refs) in MB; the input points are resident before both.
//  - TinSampleSegments: 10,000 SampleSegment calls, segments between random points of the
//    surface (5.2 km long on average, about 1,140 triangles crossed), against CGAL's own locate of
//    the start plus its line walk over the same faces on its own triangulation, collecting nothing.
//  - TinRayIntersections: 100,000 rays from 50 m above the highest ground, slanted down at 1 in 2
//    to 1 in 10, against CGAL locating the origin's plan position and walking the ray's plan line
//    from there to the hit (what any walking method must at least do), testing nothing.
// "ratio" takes CGAL's locate as it comes, without a start hint: a large part of that reference's
// time (most of it for the rays). "ratio_hinted" gives CGAL's locate a start vertex from the same
// kind of grid the engine keeps, so it compares the walks themselves.
// The CGAL references are the only other place that includes CGAL (GPL-3.0-or-later, headless
// side only).
#include <benchmark/benchmark.h>

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Projection_traits_xy_3.h>

#include <ctime>
#include <cmath>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "headless/aecc/model/TinSurface.h"
#include "headless/aecc/model/internal/HintGrid.h"

namespace {

using headless::land::Point2;
using headless::land::Point3;
using headless::land::TinSurface;

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Cdt = CGAL::Constrained_Delaunay_triangulation_2<CGAL::Projection_traits_xy_3<Kernel>, CGAL::Default,
                                                       CGAL::Exact_predicates_tag>;

constexpr int kPoints = 1'000'000;
constexpr double kX0 = 500000.0, kY0 = 6400000.0, kSize = 10000.0;
constexpr int kSegments = 10'000;
constexpr int kRays = 100'000;

double Ground(double x, double y) {
  return 100.0 + 20.0 * std::sin((x - kX0) / 300.0) * std::cos((y - kY0) / 250.0) + 0.01 * (x - kX0 + y - kY0) / 10.0;
}

const std::vector<Point3>& ThePoints() {
  static const std::vector<Point3> points = [] {
    std::mt19937_64 random(42);
    std::uniform_real_distribution<double> u(0.0, kSize);
    std::normal_distribution<double> noise(0.0, 0.05);
    std::vector<Point3> p(kPoints);
    for (Point3& q : p) {
      q.x = kX0 + u(random);
      q.y = kY0 + u(random);
      q.z = Ground(q.x, q.y) + noise(random);
    }
    return p;
  }();
  return points;
}

double PeakMb() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;  // kB
  }
  return 0.0;
}

// Starts a new peak from the current resident size (Linux: "5" resets VmHWM).
void ResetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

std::vector<double> CgalDirect(const std::vector<Point3>& points) {
  std::vector<Kernel::Point_3> input;
  input.reserve(points.size());
  for (const Point3& p : points) input.emplace_back(p.x, p.y, p.z);
  Cdt cdt;
  cdt.insert(input.begin(), input.end());
  std::vector<double> out;
  out.reserve(cdt.number_of_faces() * 9);
  for (auto f = cdt.finite_faces_begin(); f != cdt.finite_faces_end(); ++f) {
    for (int i = 0; i < 3; ++i) {
      const Kernel::Point_3& p = f->vertex(i)->point();
      out.insert(out.end(), {p.x(), p.y(), p.z()});
    }
  }
  return out;
}

std::vector<double> EngineRebuild(std::vector<Point3> points) {
  TinSurface surface;
  surface.SetPoints(std::move(points));
  surface.Rebuild();
  return surface.Triangles();
}

// Processor time of the process: the machine is shared, so wall time would also count others.
double CpuSeconds() {
  timespec t{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
  return static_cast<double>(t.tv_sec) + 1e-9 * static_cast<double>(t.tv_nsec);
}

// Each iteration runs the engine (timed) and then the reference (not timed by the library): the
// two alternate, so load from elsewhere on the machine falls on both; the ratio is of the fastest
// run of each.
void BM_TinRebuildAndTriangles(benchmark::State& state) {
  const std::vector<Point3>& points = ThePoints();
  double engineBest = 1e300, cgalBest = 1e300;
  double enginePeak = 0.0, cgalPeak = 0.0;
  std::size_t triangles = 0, cgalTriangles = 0;
  for (auto _ : state) {
    state.PauseTiming();
    std::vector<Point3> copy = points;
    ResetPeak();
    double before = PeakMb();
    state.ResumeTiming();
    double start = CpuSeconds();
    const std::vector<double> list = EngineRebuild(std::move(copy));
    engineBest = std::min(engineBest, CpuSeconds() - start);
    triangles = list.size() / 9;
    benchmark::DoNotOptimize(list.data());
    state.PauseTiming();
    enginePeak = std::max(enginePeak, PeakMb() - before);

    ResetPeak();
    before = PeakMb();
    start = CpuSeconds();
    const std::vector<double> reference = CgalDirect(points);
    cgalBest = std::min(cgalBest, CpuSeconds() - start);
    cgalTriangles = reference.size() / 9;
    benchmark::DoNotOptimize(reference.data());
    cgalPeak = std::max(cgalPeak, PeakMb() - before);
    state.ResumeTiming();
  }
  state.counters["engine_s"] = engineBest;
  state.counters["cgal_s"] = cgalBest;
  state.counters["ratio"] = engineBest / cgalBest;
  state.counters["engine_peak_MB"] = enginePeak;
  state.counters["cgal_peak_MB"] = cgalPeak;
  state.counters["process_peak_MB"] = PeakMb();
  state.counters["triangles"] = static_cast<double>(triangles);
  if (triangles != cgalTriangles) state.SkipWithError("the engine and CGAL disagree on the triangle count");
}
BENCHMARK(BM_TinRebuildAndTriangles)->Unit(benchmark::kMillisecond)->Iterations(5);

// The 1M-point surface and CGAL's own triangulation of the same points, built once, with a grid
// of start vertices for CGAL's locate like the one the engine keeps (for the "hinted" reference).
struct Surfaces {
  TinSurface engine;
  Cdt cgal;
  headless::land::tin::HintGrid<Cdt::Vertex_handle> hints;
  Surfaces() {
    engine.SetPoints(ThePoints());
    engine.Rebuild();
    std::vector<Kernel::Point_3> input;
    for (const Point3& p : ThePoints()) input.emplace_back(p.x, p.y, p.z);
    cgal.insert(input.begin(), input.end());
    hints.Reset({kX0, kY0, kX0 + kSize, kY0 + kSize}, cgal.number_of_vertices());
    for (auto v = cgal.finite_vertices_begin(); v != cgal.finite_vertices_end(); ++v) {
      hints.Put({v->point().x(), v->point().y()}, v);
    }
  }
};
Surfaces& TheSurfaces() {
  static Surfaces surfaces;
  return surfaces;
}

std::vector<std::pair<Point2, Point2>> TheSegments() {
  std::mt19937_64 random(7);
  std::uniform_real_distribution<double> u(0.0, kSize);
  std::vector<std::pair<Point2, Point2>> segments(kSegments);
  for (auto& [a, b] : segments) {
    a = {kX0 + u(random), kY0 + u(random)};
    b = {kX0 + u(random), kY0 + u(random)};
  }
  return segments;
}

// Faces CGAL's line walk crosses from a to b on its own triangulation, locating a first (from
// the hint grid's vertex near a when one is given).
std::size_t CgalWalk(const Cdt& cdt, Point2 a, Point2 b,
                     const headless::land::tin::HintGrid<Cdt::Vertex_handle>* hints = nullptr) {
  const Kernel::Point_3 p(a.x, a.y, 0.0), q(b.x, b.y, 0.0);
  const Cdt::Vertex_handle near = hints ? hints->Near(a) : Cdt::Vertex_handle();
  const Cdt::Face_handle start = cdt.locate(p, near == Cdt::Vertex_handle() ? Cdt::Face_handle() : near->face());
  auto line = cdt.line_walk(p, q, start);
  const Cdt::Face_handle first = line;
  std::size_t faces = 0;
  do {
    if (cdt.is_infinite(line)) break;
    ++faces;
    if (cdt.oriented_side(line, q) != CGAL::ON_NEGATIVE_SIDE) break;
  } while (++line != first);
  return faces;
}

void BM_TinSampleSegments(benchmark::State& state) {
  Surfaces& s = TheSurfaces();
  const auto segments = TheSegments();
  std::size_t samples = 0, faces = 0;
  double engineBest = 1e300, cgalBest = 1e300, hintedBest = 1e300;
  for (auto _ : state) {
    double start = CpuSeconds();
    samples = 0;
    for (const auto& [a, b] : segments) {
      const auto result = s.engine.SampleSegment(a, b);
      samples += result ? result.Value().size() : 0;
    }
    benchmark::DoNotOptimize(samples);
    engineBest = std::min(engineBest, CpuSeconds() - start);
    state.PauseTiming();
    start = CpuSeconds();
    faces = 0;
    for (const auto& [a, b] : segments) faces += CgalWalk(s.cgal, a, b);
    benchmark::DoNotOptimize(faces);
    cgalBest = std::min(cgalBest, CpuSeconds() - start);
    start = CpuSeconds();
    std::size_t hinted = 0;
    for (const auto& [a, b] : segments) hinted += CgalWalk(s.cgal, a, b, &s.hints);
    benchmark::DoNotOptimize(hinted);
    hintedBest = std::min(hintedBest, CpuSeconds() - start);
    state.ResumeTiming();
  }
  state.counters["samples_per_call"] = static_cast<double>(samples) / kSegments;
  state.counters["faces_per_call"] = static_cast<double>(faces) / kSegments;
  state.counters["engine_us_per_call"] = engineBest / kSegments * 1e6;
  state.counters["cgal_us_per_call"] = cgalBest / kSegments * 1e6;
  state.counters["cgal_hinted_us_per_call"] = hintedBest / kSegments * 1e6;
  state.counters["ratio"] = engineBest / cgalBest;
  state.counters["ratio_hinted"] = engineBest / hintedBest;
}
BENCHMARK(BM_TinSampleSegments)->Unit(benchmark::kMillisecond)->Iterations(3);

struct Ray {
  Point3 origin;
  Point3 direction;
};

std::vector<Ray> TheRays() {
  std::mt19937_64 random(9);
  std::uniform_real_distribution<double> u(0.0, 1.0);
  const double top = TheSurfaces().engine.Elevations().Value().maximum + 50.0;
  std::vector<Ray> rays(kRays);
  for (Ray& r : rays) {
    const double heading = u(random) * 2.0 * 3.141592653589793;
    const double fall = 0.1 + 0.4 * u(random);  // 1 in 10 to 1 in 2
    r.origin = {kX0 + 1000.0 + 8000.0 * u(random), kY0 + 1000.0 + 8000.0 * u(random), top};
    r.direction = {std::cos(heading), std::sin(heading), -fall};
  }
  return rays;
}

void BM_TinRayIntersections(benchmark::State& state) {
  Surfaces& s = TheSurfaces();
  const std::vector<Ray> rays = TheRays();
  std::vector<Point3> hits(rays.size());
  std::size_t hitCount = 0, faces = 0;
  double engineBest = 1e300, cgalBest = 1e300, hintedBest = 1e300;
  for (auto _ : state) {
    double start = CpuSeconds();
    hitCount = 0;
    for (std::size_t i = 0; i < rays.size(); ++i) {
      const auto hit = s.engine.IntersectRay(rays[i].origin, rays[i].direction);
      if (hit) {
        hits[i] = hit.Value();
        ++hitCount;
      }
    }
    benchmark::DoNotOptimize(hitCount);
    engineBest = std::min(engineBest, CpuSeconds() - start);
    state.PauseTiming();
    start = CpuSeconds();
    faces = 0;
    for (std::size_t i = 0; i < rays.size(); ++i) {
      faces += CgalWalk(s.cgal, {rays[i].origin.x, rays[i].origin.y}, {hits[i].x, hits[i].y});
    }
    benchmark::DoNotOptimize(faces);
    cgalBest = std::min(cgalBest, CpuSeconds() - start);
    start = CpuSeconds();
    std::size_t hinted = 0;
    for (std::size_t i = 0; i < rays.size(); ++i) {
      hinted += CgalWalk(s.cgal, {rays[i].origin.x, rays[i].origin.y}, {hits[i].x, hits[i].y}, &s.hints);
    }
    benchmark::DoNotOptimize(hinted);
    hintedBest = std::min(hintedBest, CpuSeconds() - start);
    state.ResumeTiming();
  }
  state.counters["hits"] = static_cast<double>(hitCount);
  state.counters["faces_per_ray"] = static_cast<double>(faces) / kRays;
  state.counters["engine_us_per_ray"] = engineBest / kRays * 1e6;
  state.counters["cgal_us_per_ray"] = cgalBest / kRays * 1e6;
  state.counters["cgal_hinted_us_per_ray"] = hintedBest / kRays * 1e6;
  state.counters["ratio"] = engineBest / cgalBest;
  state.counters["ratio_hinted"] = engineBest / hintedBest;
}
BENCHMARK(BM_TinRayIntersections)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
