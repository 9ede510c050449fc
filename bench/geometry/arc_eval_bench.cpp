// Arc evaluation through the kit against the same formula written inline.
// Data: 4096 arcs of mixed direction, radius and position, built once; each arc is evaluated
// at 9 parameters (t = 0, 1/8, ..., 1) per pass, so one pass is 36864 evaluations.
#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

#include "module/geometry/KdArc.h"

namespace {

constexpr int kArcs = 4096;
constexpr int kSteps = 9;

struct PlainArc {
  double cx, cy, cz, radius, start, sweep;
};

std::vector<PlainArc> MakePlainArcs() {
  std::mt19937_64 random(42);
  std::uniform_real_distribution<double> coordinate(-1e4, 1e4), radius(1, 500), angle(0, 6.28), sweep(-6, 6);
  std::vector<PlainArc> arcs(kArcs);
  for (PlainArc& a : arcs) a = {coordinate(random), coordinate(random), coordinate(random) * 0.01, radius(random),
                                angle(random), sweep(random)};
  return arcs;
}

std::vector<CKdArc> MakeKitArcs() {
  std::vector<CKdArc> arcs;
  arcs.reserve(kArcs);
  for (const PlainArc& a : MakePlainArcs()) arcs.emplace_back(CKdPoint(a.cx, a.cy, a.cz), a.radius, a.start, a.sweep);
  return arcs;
}

void BM_ArcEval_Kit(benchmark::State& state) {
  const std::vector<CKdArc> arcs = MakeKitArcs();
  for (auto _ : state) {
    double sum = 0.0;
    for (const CKdArc& arc : arcs)
      for (int k = 0; k < kSteps; ++k) {
        const CKdPoint p = arc.Eval(k / double(kSteps - 1));
        sum += p.x + p.y + p.z;
      }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kArcs * kSteps);
}
BENCHMARK(BM_ArcEval_Kit);

void BM_ArcEval_Inline(benchmark::State& state) {
  const std::vector<PlainArc> arcs = MakePlainArcs();
  for (auto _ : state) {
    double sum = 0.0;
    for (const PlainArc& arc : arcs)
      for (int k = 0; k < kSteps; ++k) {
        const double a = arc.start + (k / double(kSteps - 1)) * arc.sweep;
        sum += (arc.cx + arc.radius * std::cos(a)) + (arc.cy + arc.radius * std::sin(a)) + arc.cz;
      }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kArcs * kSteps);
}
BENCHMARK(BM_ArcEval_Inline);

// Through the curve interface, as code holding mixed curves calls it.
void BM_ArcEval_KitThroughInterface(benchmark::State& state) {
  const std::vector<CKdArc> arcs = MakeKitArcs();
  std::vector<const IKdCurve*> curves;
  for (const CKdArc& arc : arcs) curves.push_back(&arc);
  for (auto _ : state) {
    double sum = 0.0;
    for (const IKdCurve* curve : curves)
      for (int k = 0; k < kSteps; ++k) {
        const CKdPoint p = curve->Eval(k / double(kSteps - 1));
        sum += p.x + p.y + p.z;
      }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kArcs * kSteps);
}
BENCHMARK(BM_ArcEval_KitThroughInterface);

}  // namespace
