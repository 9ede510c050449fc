// The nearest-index search over a million random colours, against the plain reference
// implementation that the tests compare it with. The colours are drawn once, outside the timed
// loops; the counter "mismatches" must stay 0.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "module/acad/GrAcadPlatformColor.h"
#include "tests/module/acad/RgbToIndexReference.h"

namespace {

constexpr std::size_t kColours = 1000000;

const std::vector<std::uint32_t>& Colours() {
  static const std::vector<std::uint32_t> colours = [] {
    std::mt19937 random(1);
    std::vector<std::uint32_t> c(kColours);
    for (auto& rgb : c) rgb = random() & 0xFFFFFFu;
    return c;
  }();
  return colours;
}

void BM_RgbToIndex(benchmark::State& state) {
  const CGrAcadPlatformColor translator;
  const auto& colours = Colours();
  std::vector<std::uint32_t> indices(colours.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < colours.size(); ++i) indices[i] = translator.RgbToIndex(colours[i]);
    benchmark::DoNotOptimize(indices.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * colours.size()));
  std::size_t mismatches = 0;
  for (std::size_t i = 0; i < colours.size(); i += 97) mismatches += indices[i] != grref::RgbToIndex(colours[i]);
  state.counters["mismatches"] = static_cast<double>(mismatches);
}

void BM_RgbToIndex_PlainReference(benchmark::State& state) {
  const auto& colours = Colours();
  std::vector<std::uint32_t> indices(colours.size());
  for (auto _ : state) {
    for (std::size_t i = 0; i < colours.size(); ++i) indices[i] = grref::RgbToIndex(colours[i]);
    benchmark::DoNotOptimize(indices.data());
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * colours.size()));
}

BENCHMARK(BM_RgbToIndex)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RgbToIndex_PlainReference)->Unit(benchmark::kMillisecond);

}  // namespace
