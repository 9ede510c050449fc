#include "headless/aecc/model/internal/TinGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <unordered_map>

namespace headless::land::tin {
namespace {

// Bands per polygon: about one per edge, so a band holds a handful of edges for any ordinary
// ring; capped so that a huge ring does not make a huge table.
constexpr std::size_t kMaxBands = 1u << 16;

bool OnSegment(Point2 a, Point2 b, Point2 p) {
  if (Cross(b - a, p - a) != 0.0) return false;
  return std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) && std::min(a.y, b.y) <= p.y &&
         p.y <= std::max(a.y, b.y);
}

// Cell index of a coordinate, kept inside int64 for absurd coordinates (which then share cells;
// the distance test still decides).
std::int64_t CellOf(double v, double size) {
  const double c = std::floor(v / size);
  constexpr double kLimit = 4.0e18;
  return static_cast<std::int64_t>(std::clamp(c, -kLimit, kLimit));
}

struct CellKey {
  std::int64_t x = 0;
  std::int64_t y = 0;
  friend bool operator==(const CellKey&, const CellKey&) = default;
};

struct CellKeyHash {
  std::size_t operator()(const CellKey& k) const noexcept {
    const auto h = static_cast<std::uint64_t>(k.x) * 0x9E3779B97F4A7C15ull ^
                   (static_cast<std::uint64_t>(k.y) + 0x632BE59BD9B4E019ull + (static_cast<std::uint64_t>(k.x) << 6));
    return static_cast<std::size_t>(h ^ (h >> 29));
  }
};

std::vector<std::uint32_t> MergeExactDuplicates(const std::vector<Point3>& points) {
  std::vector<std::uint32_t> order(points.size());
  std::iota(order.begin(), order.end(), 0u);
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    const Point3& p = points[a];
    const Point3& q = points[b];
    if (p.x != q.x) return p.x < q.x;
    if (p.y != q.y) return p.y < q.y;
    return a < b;
  });
  std::vector<std::uint32_t> rep(points.size());
  for (std::size_t k = 0; k < order.size();) {
    std::size_t end = k + 1;
    while (end < order.size() && points[order[end]].x == points[order[k]].x &&
           points[order[end]].y == points[order[k]].y) {
      ++end;
    }
    for (std::size_t m = k; m < end; ++m) rep[order[m]] = order[k];  // the earliest of the group
    k = end;
  }
  return rep;
}

}  // namespace

SurfacePolygon::SurfacePolygon(const std::vector<Point2>& ring) {
  ring_.reserve(ring.size());
  for (const Point2& p : ring) {
    if (ring_.empty() || !(ring_.back() == p)) ring_.push_back(p);
  }
  while (ring_.size() > 1 && ring_.front() == ring_.back()) ring_.pop_back();
  const std::size_t n = ring_.size();
  if (n < 3) return;

  for (std::size_t i = 0; i < n; ++i) signedArea_ += Cross(ring_[i], ring_[(i + 1) % n]);
  signedArea_ *= 0.5;

  double yMax = ring_[0].y;
  yMin_ = ring_[0].y;
  for (const Point2& p : ring_) {
    yMin_ = std::min(yMin_, p.y);
    yMax = std::max(yMax, p.y);
  }
  const std::size_t bands = std::clamp<std::size_t>(n, 1, kMaxBands);
  bandHeight_ = yMax > yMin_ ? (yMax - yMin_) / static_cast<double>(bands) : 1.0;

  // Counting sort of the edges into the bands they overlap.
  bandStart_.assign(bands + 1, 0);
  const auto span = [&](std::size_t i) {
    const Point2 a = ring_[i];
    const Point2 b = ring_[(i + 1) % n];
    return std::pair{BandOf(std::min(a.y, b.y)), BandOf(std::max(a.y, b.y))};
  };
  for (std::size_t i = 0; i < n; ++i) {
    const auto [lo, hi] = span(i);
    for (int k = lo; k <= hi; ++k) ++bandStart_[static_cast<std::size_t>(k) + 1];
  }
  for (std::size_t k = 0; k < bands; ++k) bandStart_[k + 1] += bandStart_[k];
  bandEdges_.resize(bandStart_[bands]);
  std::vector<std::uint32_t> fill(bandStart_.begin(), bandStart_.end() - 1);
  for (std::size_t i = 0; i < n; ++i) {
    const auto [lo, hi] = span(i);
    for (int k = lo; k <= hi; ++k) bandEdges_[fill[static_cast<std::size_t>(k)]++] = static_cast<std::uint32_t>(i);
  }
}

bool SurfacePolygon::IsDegenerate() const { return ring_.size() < 3 || signedArea_ == 0.0; }

int SurfacePolygon::BandOf(double y) const {
  const int last = static_cast<int>(bandStart_.size()) - 2;
  const double k = std::floor((y - yMin_) / bandHeight_);
  if (!(k > 0.0)) return 0;
  return k >= static_cast<double>(last) ? last : static_cast<int>(k);
}

template <class Visit>
void SurfacePolygon::ForEdgesNear(double yLow, double yHigh, Visit&& visit) const {
  const int lo = BandOf(yLow);
  const int hi = BandOf(yHigh);
  for (int k = lo; k <= hi; ++k) {
    for (std::uint32_t j = bandStart_[static_cast<std::size_t>(k)]; j < bandStart_[static_cast<std::size_t>(k) + 1]; ++j) {
      visit(bandEdges_[j]);
    }
  }
}

SurfacePolygon::Side SurfacePolygon::Locate(Point2 p) const {
  if (IsDegenerate() || !IsFinite(p)) return Side::Outside;
  const std::size_t n = ring_.size();
  bool inside = false;
  bool onEdge = false;
  ForEdgesNear(p.y, p.y, [&](std::uint32_t i) {
    const Point2 a = ring_[i];
    const Point2 b = ring_[(i + 1) % n];
    if (OnSegment(a, b, p)) onEdge = true;
    if ((a.y > p.y) != (b.y > p.y)) {
      const double x = a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y);
      if (p.x < x) inside = !inside;
    }
  });
  if (onEdge) return Side::OnEdge;
  return inside ? Side::Inside : Side::Outside;
}

std::vector<Interval> SurfacePolygon::InsideIntervals(Point2 a, Point2 b) const {
  std::vector<Interval> result;
  if (IsDegenerate() || !IsFinite(a) || !IsFinite(b)) return result;
  if (a == b) {
    if (Covers(a)) result.emplace_back(0.0, 0.0);
    return result;
  }
  const std::size_t n = ring_.size();
  std::vector<std::uint32_t> edges;
  ForEdgesNear(std::min(a.y, b.y), std::max(a.y, b.y), [&](std::uint32_t i) { edges.push_back(i); });
  std::sort(edges.begin(), edges.end());
  edges.erase(std::unique(edges.begin(), edges.end()), edges.end());

  const Point2 d = b - a;
  std::vector<double> cuts{0.0, 1.0};
  for (const std::uint32_t i : edges) {
    const Point2 c = ring_[i];
    const Point2 e = ring_[(i + 1) % n] - c;
    const double denom = Cross(d, e);
    if (denom == 0.0) {
      if (Cross(c - a, d) != 0.0) continue;  // parallel, apart
      const double dd = Dot(d, d);
      for (const Point2 end : {c, c + e}) {
        const double t = Dot(end - a, d) / dd;
        if (t > 0.0 && t < 1.0) cuts.push_back(t);
      }
      continue;
    }
    const double t = Cross(c - a, e) / denom;
    const double u = Cross(c - a, d) / denom;
    if (t > 0.0 && t < 1.0 && u >= 0.0 && u <= 1.0) cuts.push_back(t);
  }
  std::sort(cuts.begin(), cuts.end());
  cuts.erase(std::unique(cuts.begin(), cuts.end()), cuts.end());
  for (std::size_t k = 0; k + 1 < cuts.size(); ++k) {
    const double t0 = cuts[k];
    const double t1 = cuts[k + 1];
    if (!Covers(a + (0.5 * (t0 + t1)) * d)) continue;
    if (!result.empty() && result.back().second == t0) {
      result.back().second = t1;
    } else {
      result.emplace_back(t0, t1);
    }
  }
  return result;
}

bool PlanBox::Clip(Point2 origin, Point2 dir, double& t0, double& t1) const {
  const auto side = [&](double rate, double room) {
    if (rate == 0.0) return room >= 0.0;
    const double t = room / rate;
    if (rate < 0.0) {
      t0 = std::max(t0, t);
    } else {
      t1 = std::min(t1, t);
    }
    return true;
  };
  return side(-dir.x, origin.x - xMin) && side(dir.x, xMax - origin.x) && side(-dir.y, origin.y - yMin) &&
         side(dir.y, yMax - origin.y) && t0 <= t1;
}

std::pair<double, double> ClipLineToTriangle(Point2 a, Point2 b, Point2 c, Point2 origin, Point2 dir) {
  double t0 = -std::numeric_limits<double>::infinity();
  double t1 = std::numeric_limits<double>::infinity();
  const Point2 corners[3] = {a, b, c};
  for (int i = 0; i < 3; ++i) {
    const Point2 u = corners[i];
    const Point2 v = corners[(i + 1) % 3];
    const double at = Cross(v - u, origin - u);  // >= 0 on the inner side
    const double rate = Cross(v - u, dir);
    if (rate > 0.0) {
      t0 = std::max(t0, -at / rate);
    } else if (rate < 0.0) {
      t1 = std::min(t1, -at / rate);
    }
  }
  if (t0 > t1) t0 = t1 = 0.5 * (t0 + t1);
  return {t0, t1};
}

double PlaneElevation(const Point3& a, const Point3& b, const Point3& c, Point2 p) {
  const Point2 ab{b.x - a.x, b.y - a.y};
  const Point2 ac{c.x - a.x, c.y - a.y};
  const Point2 ap{p.x - a.x, p.y - a.y};
  const double area = Cross(ab, ac);
  const double wb = Cross(ap, ac) / area;
  const double wc = Cross(ab, ap) / area;
  return a.z + wb * (b.z - a.z) + wc * (c.z - a.z);
}

std::vector<std::uint32_t> MergeClosePoints(const std::vector<Point3>& points, double distance,
                                            std::uint32_t exactOnly) {
  if (!(distance > 0.0)) return MergeExactDuplicates(points);
  const double limit = distance * distance;
  std::vector<std::uint32_t> rep(points.size());
  std::vector<std::uint32_t> next(points.size(), std::numeric_limits<std::uint32_t>::max());
  std::unordered_map<CellKey, std::uint32_t, CellKeyHash> head;
  head.reserve(points.size());
  for (std::uint32_t i = 0; i < points.size(); ++i) {
    const Point3& p = points[i];
    const CellKey cell{CellOf(p.x, distance), CellOf(p.y, distance)};
    const double within = i < exactOnly ? 0.0 : limit;  // 0: only the same plan position
    std::uint32_t keeper = std::numeric_limits<std::uint32_t>::max();
    for (std::int64_t dx = -1; dx <= 1; ++dx) {
      for (std::int64_t dy = -1; dy <= 1; ++dy) {
        const auto found = head.find(CellKey{cell.x + dx, cell.y + dy});
        if (found == head.end()) continue;
        for (std::uint32_t j = found->second; j != std::numeric_limits<std::uint32_t>::max(); j = next[j]) {
          const double ex = points[j].x - p.x;
          const double ey = points[j].y - p.y;
          const double gap = ex * ex + ey * ey;
          if (gap < within || gap == 0.0) keeper = std::min(keeper, j);
        }
      }
    }
    if (keeper != std::numeric_limits<std::uint32_t>::max()) {
      rep[i] = keeper;
      continue;
    }
    rep[i] = i;
    const auto [slot, added] = head.try_emplace(cell, i);
    if (!added) {
      next[i] = slot->second;
      slot->second = i;
    }
  }
  return rep;
}

std::vector<Interval> SubtractIntervals(const std::vector<Interval>& keep, const std::vector<Interval>& remove,
                                        double minLength) {
  std::vector<Interval> result;
  std::size_t r = 0;
  for (const Interval& k : keep) {
    double start = k.first;
    while (r < remove.size() && remove[r].second <= start) ++r;
    std::size_t j = r;
    while (j < remove.size() && remove[j].first < k.second) {
      if (remove[j].first - start > minLength) result.emplace_back(start, remove[j].first);
      start = std::max(start, remove[j].second);
      ++j;
    }
    if (k.second - start > minLength) result.emplace_back(start, k.second);
  }
  return result;
}

}  // namespace headless::land::tin
