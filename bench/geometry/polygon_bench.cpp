// Polygon booleans through the kit against the same computation written inline with
// Boost.Geometry: approximate the arcs by chords, build the polygons, overlay.
// Data: two overlapping circles of radius 100 (centres 120 apart), each a closed polyline of
// two half-circle bulges. The chord height is the benchmark argument in ten-thousandths of a
// unit: 100 (0.01) gives 224 chords per circle, 10 (0.001) 704, 1 (0.0001) 2222 (the counter
// "chords").
#include <benchmark/benchmark.h>

// Boost 1.74's rescale policy trips GCC 12's uninitialised-use analysis once inlined here.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <boost/geometry.hpp>
#include <boost/geometry/geometries/multi_polygon.hpp>
#include <boost/geometry/geometries/point_xy.hpp>
#include <boost/geometry/geometries/polygon.hpp>
#pragma GCC diagnostic pop

#include <cmath>
#include <numbers>

#include "module/geometry/KdCircle.h"
#include "module/geometry/KdPolygonOps.h"

namespace {

namespace bg = boost::geometry;
using Point = bg::model::d2::point_xy<double>;
using Polygon = bg::model::polygon<Point, false, true>;
using MultiPolygon = bg::model::multi_polygon<Polygon>;

constexpr double kRadius = 100.0;
const CKdPoint kCentreA(0, 0), kCentreB(120, 0);

double ChordHeight(const benchmark::State& state) { return static_cast<double>(state.range(0)) * 1e-4; }

int ChordsPerHalf(double chordHeight) {
  return static_cast<int>(std::ceil(std::numbers::pi / (2.0 * std::acos(1.0 - chordHeight / kRadius))));
}

// The circle as chords, inline: the points the kit's chord approximation also produces.
Polygon InlineCircle(const CKdPoint& centre, double chordHeight) {
  const int n = 2 * ChordsPerHalf(chordHeight);
  Polygon polygon;
  for (int k = 0; k < n; ++k) {
    const double a = 2.0 * std::numbers::pi * k / n;
    bg::append(polygon.outer(), Point(centre.x + kRadius * std::cos(a), centre.y + kRadius * std::sin(a)));
  }
  bg::correct(polygon);
  return polygon;
}

template <class Op>
void RunKit(benchmark::State& state, Op op) {
  const CKdPolyline a = CKdCircle(kCentreA, kRadius).ToPolyline();
  const CKdPolyline b = CKdCircle(kCentreB, kRadius).ToPolyline();
  const double h = ChordHeight(state);
  for (auto _ : state) {
    auto regions = op(a, b, h);
    benchmark::DoNotOptimize(regions.data());
  }
  state.counters["chords"] = 2 * ChordsPerHalf(h);
}

template <class Op>
void RunInline(benchmark::State& state, Op op) {
  const double h = ChordHeight(state);
  for (auto _ : state) {
    const Polygon a = InlineCircle(kCentreA, h);
    const Polygon b = InlineCircle(kCentreB, h);
    MultiPolygon result;
    op(a, b, result);
    benchmark::DoNotOptimize(result.data());
  }
  state.counters["chords"] = 2 * ChordsPerHalf(h);
}

void BM_PolygonUnion_Kit(benchmark::State& state) {
  RunKit(state, [](const CKdPolyline& a, const CKdPolyline& b, double h) { return kdgeo::Union(a, b, h); });
}
void BM_PolygonUnion_Inline(benchmark::State& state) {
  RunInline(state, [](const Polygon& a, const Polygon& b, MultiPolygon& out) { bg::union_(a, b, out); });
}
void BM_PolygonDifference_Kit(benchmark::State& state) {
  RunKit(state, [](const CKdPolyline& a, const CKdPolyline& b, double h) { return kdgeo::Difference(a, b, h); });
}
void BM_PolygonDifference_Inline(benchmark::State& state) {
  RunInline(state, [](const Polygon& a, const Polygon& b, MultiPolygon& out) { bg::difference(a, b, out); });
}

BENCHMARK(BM_PolygonUnion_Kit)->Arg(100)->Arg(10)->Arg(1);
BENCHMARK(BM_PolygonUnion_Inline)->Arg(100)->Arg(10)->Arg(1);
BENCHMARK(BM_PolygonDifference_Kit)->Arg(100)->Arg(10)->Arg(1);
BENCHMARK(BM_PolygonDifference_Inline)->Arg(100)->Arg(10)->Arg(1);

}  // namespace
