// Reading a triangle list as Civil 3D hands it over: a SAFEARRAY of doubles, nine per triangle.
// Element-wise access against one locked block, with a plain vector as the reference.
#include <benchmark/benchmark.h>

#include <vector>

#include "platform/ole/oleauto.h"

namespace {

SAFEARRAY* MakeDoubles(ULONG count) {
  SAFEARRAY* array = SafeArrayCreateVector(VT_R8, 0, count);
  double* data = nullptr;
  SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
  for (ULONG i = 0; i < count; ++i) data[i] = static_cast<double>(i) * 0.5;
  SafeArrayUnaccessData(array);
  return array;
}

ULONG Count(const benchmark::State& state) { return static_cast<ULONG>(state.range(0)) * 9; }

void BM_SafeArray_GetElement(benchmark::State& state) {
  const ULONG count = Count(state);
  SAFEARRAY* array = MakeDoubles(count);
  for (auto _ : state) {
    double sum = 0.0;
    for (LONG i = 0; i < static_cast<LONG>(count); ++i) {
      double value = 0.0;
      SafeArrayGetElement(array, &i, &value);
      sum += value;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
  SafeArrayDestroy(array);
}

void BM_SafeArray_AccessData(benchmark::State& state) {
  const ULONG count = Count(state);
  SAFEARRAY* array = MakeDoubles(count);
  for (auto _ : state) {
    double* data = nullptr;
    SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
    double sum = 0.0;
    for (ULONG i = 0; i < count; ++i) sum += data[i];
    SafeArrayUnaccessData(array);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
  SafeArrayDestroy(array);
}

void BM_Vector_Inline(benchmark::State& state) {
  const ULONG count = Count(state);
  std::vector<double> data(count);
  for (ULONG i = 0; i < count; ++i) data[i] = static_cast<double>(i) * 0.5;
  for (auto _ : state) {
    double sum = 0.0;
    for (double v : data) sum += v;
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
}

// Triangles: 1 000 and 100 000 (9 000 and 900 000 doubles).
BENCHMARK(BM_SafeArray_GetElement)->Arg(1000)->Arg(100000);
BENCHMARK(BM_SafeArray_AccessData)->Arg(1000)->Arg(100000);
BENCHMARK(BM_Vector_Inline)->Arg(1000)->Arg(100000);

}  // namespace
