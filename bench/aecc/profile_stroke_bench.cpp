// Stroking a profile as the module does: ElevationAt at every metre of a 100 km profile with
// 1,000 PVIs (curves in turn none, circular, symmetric and asymmetric parabolic), 100,001
// samples per iteration. References in the same run, written directly here on plain arrays:
//  - Direct_WalkingCursor: the same curve formulas, the segment found by a cursor that only
//    moves forward (what a stroker that knows its stations are increasing can do);
//  - Direct_LinearScan: the same, the segment found by scanning from the first PVI per call;
//  - Direct_GradesOnly: plain interpolation between PVIs with a walking cursor (no curves), the
//    floor of any stroker.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "headless/aecc/model/ProfileGeometry.h"

namespace {

using headless::land::ProfileGeometry;
using headless::land::VerticalCurve;
using headless::land::VerticalCurveType;

constexpr int kPvis = 1000;
constexpr double kLength = 100000.0;
constexpr double kStep = 1.0;
constexpr long kSamples = static_cast<long>(kLength / kStep) + 1;

struct Design {
  std::vector<double> station, elevation;
  std::vector<VerticalCurve> curve;
};

// PVIs about 100 m apart, grades within +-3 %, curves short enough to fit between neighbours.
const Design& TheDesign() {
  static const Design design = [] {
    Design d;
    std::mt19937 random(7);
    std::uniform_real_distribution<double> grade(-0.03, 0.03);
    double z = 100.0;
    for (int i = 0; i < kPvis; ++i) {
      const double s = kLength * i / (kPvis - 1);
      if (i > 0) z += grade(random) * (s - d.station.back());
      d.station.push_back(s);
      d.elevation.push_back(z);
      switch (i % 4) {
        case 0: d.curve.push_back({}); break;
        case 1: d.curve.push_back(VerticalCurve::Circular(1500.0)); break;
        case 2: d.curve.push_back(VerticalCurve::Parabola(60.0)); break;
        default: d.curve.push_back(VerticalCurve::Asymmetric(40.0, 25.0)); break;
      }
    }
    return d;
  }();
  return design;
}

ProfileGeometry MakeProfile() {
  const Design& d = TheDesign();
  ProfileGeometry profile;
  for (int i = 0; i < kPvis; ++i) profile.AddPvi(d.station[i], d.elevation[i], d.curve[i]);
  return profile;
}

// The reference: the textbook formulas on plain arrays.
class DirectProfile {
public:
  explicit DirectProfile(const Design& d) : s_(d.station), z_(d.elevation) {
    const std::size_t n = s_.size();
    g_.resize(n, 0.0);
    for (std::size_t i = 0; i + 1 < n; ++i) g_[i] = (z_[i + 1] - z_[i]) / (s_[i + 1] - s_[i]);
    c_.resize(n);
    for (std::size_t i = 1; i + 1 < n; ++i) {
      const VerticalCurve& v = d.curve[i];
      Curve& c = c_[i];
      c.type = v.type;
      c.g1 = g_[i - 1];
      c.g2 = g_[i];
      switch (v.type) {
        case VerticalCurveType::None: break;
        case VerticalCurveType::SymmetricParabola:
          c.begin = s_[i] - v.length / 2;
          c.end = s_[i] + v.length / 2;
          c.zb = z_[i] - c.g1 * v.length / 2;
          c.k1 = (c.g2 - c.g1) / (2 * v.length);
          break;
        case VerticalCurveType::AsymmetricParabola: {
          const double e = v.length1 * v.length2 * (c.g2 - c.g1) / (2 * (v.length1 + v.length2));
          c.begin = s_[i] - v.length1;
          c.end = s_[i] + v.length2;
          c.zb = z_[i] - c.g1 * v.length1;
          c.ze = z_[i] + c.g2 * v.length2;
          c.k1 = e / (v.length1 * v.length1);
          c.k2 = e / (v.length2 * v.length2);
          c.pvi = s_[i];
          break;
        }
        case VerticalCurveType::Circular: {
          const double a1 = std::atan(c.g1), a2 = std::atan(c.g2);
          const double t = v.radius * std::tan(std::abs(a2 - a1) / 2);
          const double up = a2 > a1 ? 1.0 : -1.0;
          c.begin = s_[i] - t * std::cos(a1);
          c.end = s_[i] + t * std::cos(a2);
          c.zb = z_[i] - t * std::sin(a1);
          c.cs = c.begin - up * v.radius * std::sin(a1);
          c.cz = c.zb + up * v.radius * std::cos(a1);
          c.r = v.radius;
          c.up = up;
          break;
        }
      }
    }
  }

  std::size_t Count() const { return s_.size(); }

  // Elevation in segment j (s_[j] <= station <= s_[j + 1]).
  double InSegment(std::size_t j, double station) const {
    if (c_[j].type != VerticalCurveType::None && station <= c_[j].end) return OnCurve(c_[j], station);
    if (c_[j + 1].type != VerticalCurveType::None && station >= c_[j + 1].begin) return OnCurve(c_[j + 1], station);
    return z_[j] + g_[j] * (station - s_[j]);
  }
  double Grades(std::size_t j, double station) const { return z_[j] + g_[j] * (station - s_[j]); }
  // Segment holding station, scanning from `from` forward.
  std::size_t SegmentFrom(std::size_t from, double station) const {
    while (from + 2 < s_.size() && station > s_[from + 1]) ++from;
    return from;
  }

private:
  struct Curve {
    VerticalCurveType type = VerticalCurveType::None;
    double begin = 0, end = 0, zb = 0, ze = 0, g1 = 0, g2 = 0, k1 = 0, k2 = 0, pvi = 0, cs = 0, cz = 0, r = 0, up = 0;
  };
  static double OnCurve(const Curve& c, double x) {
    switch (c.type) {
      case VerticalCurveType::SymmetricParabola: return c.zb + c.g1 * (x - c.begin) + c.k1 * (x - c.begin) * (x - c.begin);
      case VerticalCurveType::AsymmetricParabola:
        if (x <= c.pvi) return c.zb + c.g1 * (x - c.begin) + c.k1 * (x - c.begin) * (x - c.begin);
        return c.ze - c.g2 * (c.end - x) + c.k2 * (c.end - x) * (c.end - x);
      case VerticalCurveType::Circular: return c.cz - c.up * std::sqrt(std::max(0.0, c.r * c.r - (x - c.cs) * (x - c.cs)));
      case VerticalCurveType::None: break;
    }
    return 0.0;
  }
  std::vector<double> s_, z_, g_;
  std::vector<Curve> c_;
};

double NextStation(double s, double end) { return std::min(s + kStep, end); }

void BM_Profile_ElevationAt(benchmark::State& state) {
  const ProfileGeometry profile = MakeProfile();
  if (!profile.CurvesFit()) state.SkipWithError("the benchmark's curves overlap");
  // The reference computes the same elevations; a benchmark against a different sum is void.
  const DirectProfile direct(TheDesign());
  double worst = 0.0;
  for (double s = 0.0;; s = NextStation(s, kLength)) {
    const std::size_t j = direct.SegmentFrom(0, s);
    worst = std::max(worst, std::abs(profile.ElevationAt(s).Value() - direct.InSegment(j, s)));
    if (s == kLength) break;
  }
  if (worst > 1e-9) state.SkipWithError("model and reference disagree");
  for (auto _ : state) {
    double sum = 0.0;
    long samples = 0;
    for (double s = 0.0;; s = NextStation(s, kLength)) {
      sum += profile.ElevationAt(s).ValueOr(0.0);
      ++samples;
      if (s == kLength) break;
    }
    benchmark::DoNotOptimize(sum);
    if (samples != kSamples) state.SkipWithError("wrong sample count");
  }
  state.SetItemsProcessed(state.iterations() * kSamples);
}

void BM_Direct_WalkingCursor(benchmark::State& state) {
  const DirectProfile direct(TheDesign());
  for (auto _ : state) {
    double sum = 0.0;
    std::size_t j = 0;
    for (double s = 0.0;; s = NextStation(s, kLength)) {
      j = direct.SegmentFrom(j, s);
      sum += direct.InSegment(j, s);
      if (s == kLength) break;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kSamples);
}

void BM_Direct_LinearScan(benchmark::State& state) {
  const DirectProfile direct(TheDesign());
  for (auto _ : state) {
    double sum = 0.0;
    for (double s = 0.0;; s = NextStation(s, kLength)) {
      sum += direct.InSegment(direct.SegmentFrom(0, s), s);
      if (s == kLength) break;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kSamples);
}

void BM_Direct_GradesOnly(benchmark::State& state) {
  const DirectProfile direct(TheDesign());
  for (auto _ : state) {
    double sum = 0.0;
    std::size_t j = 0;
    for (double s = 0.0;; s = NextStation(s, kLength)) {
      j = direct.SegmentFrom(j, s);
      sum += direct.Grades(j, s);
      if (s == kLength) break;
    }
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * kSamples);
}

BENCHMARK(BM_Profile_ElevationAt)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Direct_WalkingCursor)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Direct_LinearScan)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Direct_GradesOnly)->Unit(benchmark::kMillisecond);

}  // namespace
