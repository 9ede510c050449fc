#include "headless/aecc/model/internal/TinBuildInput.h"

#include <cmath>
#include <cstdint>
#include <optional>

namespace headless::land::tin {
namespace {

// Pieces of a segment shorter than this (in its parameter) are dropped: a cut that close to a
// vertex would only add a sliver.
constexpr double kMinPieceParameter = 1e-12;

bool IsFinite3(const Point3& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }
Point2 Plan(const Point3& p) { return {p.x, p.y}; }
Point3 Lerp(const Point3& a, const Point3& b, double t) {
  return {a.x + t * (b.x - a.x), a.y + t * (b.y - a.y), a.z + t * (b.z - a.z)};
}

// Collects points in order of precedence and constraints per group, then hands them over with
// the constraints in insertion order.
class Assembler {
public:
  Assembler(const std::optional<SurfacePolygon>& clip,
            const std::vector<std::shared_ptr<const TinTriangulation>>& pastes)
      : clip_(clip), pastes_(pastes) {}

  // True when a paste at or after `firstLayer` covers p.
  bool Covered(Point2 p, std::size_t firstLayer) const {
    for (std::size_t j = firstLayer; j < pastes_.size(); ++j) {
      if (pastes_[j]->ElevationAt(p).Ok()) return true;
    }
    return false;
  }

  // Adds what is left of a polyline (its vertices given by `vertexAt`) after the data clip (when
  // `clipped`) and the pastes from `firstLayer` on, as constraints into `out`.
  template <class VertexAt>
  void AddPolylineSegments(std::size_t vertexCount, VertexAt&& vertexAt,
                           const std::vector<std::pair<std::uint32_t, std::uint32_t>>& segments, bool clipped,
                           std::size_t firstLayer, std::vector<std::pair<std::uint32_t, std::uint32_t>>& out) {
    std::vector<std::int64_t> index(vertexCount, -1);
    const auto indexOf = [&](std::uint32_t v) {
      if (index[v] < 0) index[v] = Append(vertexAt(v));
      return static_cast<std::uint32_t>(index[v]);
    };
    for (const auto& [from, to] : segments) {
      const Point3 a = vertexAt(from);
      const Point3 b = vertexAt(to);
      if (a.x == b.x && a.y == b.y) continue;  // a vertical step: one plan point, no segment
      std::vector<Interval> keep;
      if (clipped && clip_) {
        keep = clip_->InsideIntervals(Plan(a), Plan(b));
      } else {
        keep.emplace_back(0.0, 1.0);
      }
      for (std::size_t j = firstLayer; j < pastes_.size() && !keep.empty(); ++j) {
        keep = SubtractIntervals(keep, pastes_[j]->CoveredIntervals(Plan(a), Plan(b)), kMinPieceParameter);
      }
      for (const auto& [t0, t1] : keep) {
        if (t1 - t0 <= kMinPieceParameter) continue;
        const std::uint32_t i0 = t0 == 0.0 ? indexOf(from) : Append(CutPoint(a, b, t0, firstLayer));
        const std::uint32_t i1 = t1 == 1.0 ? indexOf(to) : Append(CutPoint(a, b, t1, firstLayer));
        out.emplace_back(i0, i1);
      }
    }
  }

  // Where a piece is cut: at a paste's edge it takes that paste's elevation (the pasted surface
  // keeps its shape; the cut piece climbs to meet it); at the data clip, its own.
  Point3 CutPoint(const Point3& a, const Point3& b, double t, std::size_t firstLayer) const {
    Point3 p = Lerp(a, b, t);
    for (std::size_t j = pastes_.size(); j-- > firstLayer;) {
      if (const auto z = pastes_[j]->ElevationAt(Plan(p))) {
        p.z = z.Value();
        break;
      }
    }
    return p;
  }

  std::uint32_t Append(const Point3& p) {
    points_.push_back(p);
    return static_cast<std::uint32_t>(points_.size() - 1);
  }

  std::vector<Point3>& Points() { return points_; }

private:
  const std::optional<SurfacePolygon>& clip_;
  const std::vector<std::shared_ptr<const TinTriangulation>>& pastes_;
  std::vector<Point3> points_;
};

}  // namespace

BuildInput PrepareBuild(const std::vector<Point3>& points, const std::vector<std::vector<Point3>>& breaklines,
                        const std::vector<SurfaceBoundary>& boundaries,
                        const std::vector<std::shared_ptr<const TinTriangulation>>& pastes) {
  BuildInput input;
  std::optional<SurfacePolygon> clip;
  for (const SurfaceBoundary& b : boundaries) {
    if (b.type == SurfaceBoundaryType::DataClip) {
      clip.emplace(b.polygon);
    } else {
      input.boundaries.push_back(b);
    }
  }

  Assembler assembler(clip, pastes);
  assembler.Points().reserve(points.size());
  // Pastes, the latest first: its data wins over everything beneath it.
  std::vector<std::vector<std::pair<std::uint32_t, std::uint32_t>>> pasteSegments(pastes.size());
  for (std::size_t k = pastes.size(); k-- > 0;) {
    const VisibleMesh mesh = pastes[k]->Mesh();
    assembler.AddPolylineSegments(
        mesh.vertices.size(), [&](std::uint32_t v) { return mesh.vertices[v]; }, mesh.edges, false, k + 1,
        pasteSegments[k]);
  }
  input.exactOnly = static_cast<std::uint32_t>(assembler.Points().size());
  // Breaklines, the latest first.
  std::vector<std::vector<std::pair<std::uint32_t, std::uint32_t>>> breaklineSegments(breaklines.size());
  for (std::size_t k = breaklines.size(); k-- > 0;) {
    const std::vector<Point3>& line = breaklines[k];
    std::vector<std::pair<std::uint32_t, std::uint32_t>> chain;
    for (std::uint32_t v = 0; v + 1 < line.size(); ++v) chain.emplace_back(v, v + 1);
    assembler.AddPolylineSegments(
        line.size(), [&](std::uint32_t v) { return line[v]; }, chain, true, 0, breaklineSegments[k]);
  }
  // Points last, in the order given.
  for (const Point3& p : points) {
    if (!IsFinite3(p)) continue;
    if (clip && !clip->Covers(Plan(p))) continue;
    if (!pastes.empty() && assembler.Covered(Plan(p), 0)) continue;
    assembler.Append(p);
  }
  input.points = std::move(assembler.Points());

  // Constraints in the order they were added: a crossing takes the later one's elevation.
  for (const auto& group : breaklineSegments) input.constraints.insert(input.constraints.end(), group.begin(), group.end());
  for (const auto& group : pasteSegments) input.constraints.insert(input.constraints.end(), group.begin(), group.end());
  return input;
}

}  // namespace headless::land::tin
