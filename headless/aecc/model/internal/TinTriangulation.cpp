// The only translation unit that includes CGAL (its triangulation packages are GPL-3.0-or-later;
// they stay inside the headless platform). It compiles slowly: keep other code out of it.
#include "headless/aecc/model/internal/TinTriangulation.h"

#include <CGAL/Constrained_Delaunay_triangulation_2.h>
#include <CGAL/Exact_predicates_inexact_constructions_kernel.h>
#include <CGAL/Projection_traits_xy_3.h>
#include <CGAL/Triangulation_face_base_with_info_2.h>
#include <CGAL/Triangulation_vertex_base_with_info_2.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <unordered_map>
#include <unordered_set>

#include "headless/aecc/model/internal/HintGrid.h"

namespace headless::land::tin {
namespace {

using Kernel = CGAL::Exact_predicates_inexact_constructions_kernel;
using Projection = CGAL::Projection_traits_xy_3<Kernel>;
using CPoint = Kernel::Point_3;
using CSegment = Kernel::Segment_3;

// Which elevation a point gets that CGAL constructs where a constraint being inserted crosses a
// constrained edge: along the new constraint (a later breakline wins) or along the edge already
// there (a boundary cut into the surface takes the surface's elevation).
enum class CrossingElevation { AlongNew, AlongExisting };

double ZAlong(const CSegment& s, double x, double y) {
  const double dx = s.target().x() - s.source().x();
  const double dy = s.target().y() - s.source().y();
  const double t = std::abs(dx) > std::abs(dy) ? (x - s.source().x()) / dx : (y - s.source().y()) / dy;
  return s.source().z() + t * (s.target().z() - s.source().z());
}

// The xy projection traits with one change: the elevation of a constructed crossing point is
// taken along one of the two segments (CGAL's own takes the mean of both). Topology is still
// decided by the projection's exact predicates; only z of the new point differs.
class TerrainTraits : public Projection {
public:
  TerrainTraits() = default;
  explicit TerrainTraits(const CrossingElevation* rule) : rule_(rule) {}

  class Intersect_2 {
  public:
    explicit Intersect_2(CrossingElevation rule) : rule_(rule) {}
    // CGAL passes the constraint being inserted first and the constrained edge it crosses second.
    boost::optional<boost::variant<CPoint, CSegment>> operator()(const CSegment& inserted,
                                                                 const CSegment& existing) const {
      auto result = Projection::Intersect_2()(inserted, existing);
      if (result) {
        if (const CPoint* p = boost::get<CPoint>(&*result)) {
          const CSegment& along = rule_ == CrossingElevation::AlongNew ? inserted : existing;
          return boost::variant<CPoint, CSegment>(CPoint(p->x(), p->y(), ZAlong(along, p->x(), p->y())));
        }
      }
      return result;
    }

  private:
    CrossingElevation rule_;
  };

  Intersect_2 intersect_2_object() const { return Intersect_2(rule_ ? *rule_ : CrossingElevation::AlongNew); }

private:
  const CrossingElevation* rule_ = nullptr;
};

constexpr std::uint32_t kNoSource = std::numeric_limits<std::uint32_t>::max();

struct VertexInfo {
  std::uint32_t source = kNoSource;  // index into BuildInput::points; kNoSource for a constructed point
};

struct FaceInfo {
  bool visible = true;
  int region = -1;  // connected through edges that are not constrained
  int stamp = -1;   // the last destructive boundary that crossed this face
};

using Vb = CGAL::Triangulation_vertex_base_with_info_2<VertexInfo, TerrainTraits>;
using Fbb = CGAL::Triangulation_face_base_with_info_2<FaceInfo, TerrainTraits>;
using Fb = CGAL::Constrained_triangulation_face_base_2<TerrainTraits, Fbb>;
using Tds = CGAL::Triangulation_data_structure_2<Vb, Fb>;
using Cdt = CGAL::Constrained_Delaunay_triangulation_2<TerrainTraits, Tds, CGAL::Exact_predicates_tag>;
using Face = Cdt::Face_handle;
using Vertex = Cdt::Vertex_handle;

Point2 Plan(const CPoint& p) { return {p.x(), p.y()}; }
CPoint At(Point2 p, double z = 0.0) { return CPoint(p.x, p.y, z); }

Point3 Corner(const Face& f, int i) {
  const CPoint& p = f->vertex(i)->point();
  return {p.x(), p.y(), p.z()};
}

double PlaneZ(const Face& f, Point2 p) { return PlaneElevation(Corner(f, 0), Corner(f, 1), Corner(f, 2), p); }

double PlanArea(const Face& f) {
  return 0.5 * Cross(Plan(f->vertex(1)->point()) - Plan(f->vertex(0)->point()),
                     Plan(f->vertex(2)->point()) - Plan(f->vertex(0)->point()));
}

Point2 Centroid(const Face& f) {
  const Point2 a = Plan(f->vertex(0)->point());
  const Point2 b = Plan(f->vertex(1)->point());
  const Point2 c = Plan(f->vertex(2)->point());
  return {(a.x + b.x + c.x) / 3.0, (a.y + b.y + c.y) / 3.0};
}

std::pair<double, double> ClipToFace(const Face& f, Point2 origin, Point2 dir) {
  return ClipLineToTriangle(Plan(f->vertex(0)->point()), Plan(f->vertex(1)->point()), Plan(f->vertex(2)->point()),
                            origin, dir);
}

// Where a piece of a boundary being cut in starts or ends.
struct PieceEnd {
  Point2 at;
  double z = 0.0;
  Vertex hullEdge[2];  // set when the end is where the boundary enters or leaves the triangulation
};

}  // namespace

struct TinTriangulation::Impl {
  CrossingElevation crossing = CrossingElevation::AlongNew;  // read by the traits through a pointer
  Cdt cdt{TerrainTraits(&crossing)};
  PlanBox box;
  double zLow = 0.0, zHigh = 0.0;  // of the visible triangles' corners
  int visibleCount = 0;
  HintGrid<Vertex> grid;

  bool Usable() const { return cdt.dimension() == 2; }

  // --- building ------------------------------------------------------------------------------

  std::vector<Vertex> InsertPoints(const BuildInput& input, bool wantHandles);
  // Whether two points that are to merge are both in (the closest pair of points is always an
  // edge).
  bool HasCloserPoints(const BuildInput& input) const;
  void CutIn(const SurfacePolygon& ring);
  void ApplyBoundaries(const std::vector<SurfaceBoundary>& boundaries);
  // Extent, elevation range of the visible triangles, their count, and the locate grid.
  void Finish(bool allVisible);

  // --- queries -------------------------------------------------------------------------------

  // Locates p; the face is null outside the triangulation.
  Face Locate(Point2 p, Cdt::Locate_type& type, int& index) const {
    const Vertex hint = grid.Near(p);
    const Face f = cdt.locate(At(p), type, index, hint == Vertex() ? Face() : hint->face());
    if (type == Cdt::OUTSIDE_CONVEX_HULL || type == Cdt::OUTSIDE_AFFINE_HULL) return Face();
    return f;
  }
  // A visible face that holds p (on its edge or corner counts), or null.
  Face VisibleFaceAt(Point2 p) const;

  // The line walk from p towards q, starting from the face that holds p when there is one.
  Cdt::Line_face_circulator LineFrom(Point2 p, Point2 q) const;

  // Hands the finite faces that the line origin + t dir meets for t in [t0, t1] to
  // visit(face, from, to), in order along the line, with the parameters of the part inside each;
  // stops when visit returns false. Walks the triangulation along the line (CGAL's line face
  // circulator) from the first face it meets, so the cost is the faces crossed.
  template <class Visit>
  void Walk(Point2 origin, Point2 dir, double t0, double t1, Visit&& visit) const;
};

TinTriangulation::TinTriangulation() : impl_(std::make_unique<Impl>()) {}
TinTriangulation::~TinTriangulation() = default;

std::vector<Vertex> TinTriangulation::Impl::InsertPoints(const BuildInput& input, bool wantHandles) {
  const std::size_t n = input.points.size();
  using Item = std::pair<CPoint, std::uint32_t>;
  // CGAL's range insertion with info sorts an index array, a cache miss per comparison (a third
  // slower on a million points). Sorting the pairs themselves with CGAL's spatial sort (Hilbert
  // order) and inserting along that order, each insertion starting at the last vertex, is what
  // the range insertion does inside, at the speed of a range of bare points.
  const auto insertRange = [&](const std::vector<std::uint32_t>* keep) {
    std::vector<Item> items;
    items.reserve(keep ? keep->size() : n);
    const auto add = [&](std::uint32_t i) {
      const Point3& p = input.points[i];
      items.emplace_back(CPoint(p.x, p.y, p.z), i);
    };
    if (keep) {
      for (const std::uint32_t i : *keep) add(i);
    } else {
      for (std::uint32_t i = 0; i < n; ++i) add(i);
    }
    CGAL::spatial_sort(items.begin(), items.end(),
                       CGAL::Spatial_sort_traits_adapter_2<TerrainTraits, CGAL::First_of_pair_property_map<Item>>(
                           CGAL::First_of_pair_property_map<Item>(), cdt.geom_traits()));
    Face hint;
    const double limit = input.mergeDistance * input.mergeDistance;
    bool close = false;
    bool flat = true;
    for (const auto& [point, i] : items) {
      const Vertex v = cdt.insert(point, hint);
      hint = v->face();
      if (flat && cdt.dimension() == 2) {
        flat = false;  // the points before this one were all on a line: look at them once
        close = HasCloserPoints(input);
      }
      if (v->info().source == kNoSource) {
        v->info().source = i;
        // A point closer than the merge distance to one already in is joined to it (a point's
        // nearest neighbour is always a Delaunay neighbour); its neighbours are still in cache.
        // With pasted vertices, whose close pairs do not count, the end decides (below).
        if (!close && limit > 0.0 && !flat && input.exactOnly == 0) {
          auto around = cdt.incident_vertices(v);
          const auto done = around;
          do {
            if (cdt.is_infinite(around)) continue;
            const Point2 d = Plan(around->point()) - Plan(point);
            close = Dot(d, d) < limit;
          } while (!close && ++around != done);
        }
      } else if (i < v->info().source) {
        // At a plan position already taken the earlier point stays, elevation and all.
        v->set_point(point);
        v->info().source = i;
      }
    }
    return close;
  };

  // Usually no two points are closer than the merge distance, as one insertion proves. Otherwise
  // merge first and insert again.
  const bool close = insertRange(nullptr) || (input.exactOnly > 0 && HasCloserPoints(input));
  std::vector<std::uint32_t> representative;
  if (close) {
    representative = MergeClosePoints(input.points, input.mergeDistance, input.exactOnly);
    std::vector<std::uint32_t> keep;
    for (std::uint32_t i = 0; i < n; ++i) {
      if (representative[i] == i) keep.push_back(i);
    }
    cdt.clear();
    insertRange(&keep);
  }

  std::vector<Vertex> handles;
  if (!wantHandles) return handles;
  handles.resize(n);
  for (auto v = cdt.finite_vertices_begin(); v != cdt.finite_vertices_end(); ++v) handles[v->info().source] = v;
  // Points that merged into another: their own vertex when they were the same plan position
  // (exact duplicates never got one), else the one that stands for them.
  for (std::uint32_t i = 0; i < n; ++i) {
    if (handles[i] != Vertex()) continue;
    if (!representative.empty()) {
      handles[i] = handles[representative[i]];
    } else {
      Cdt::Locate_type type;
      int index = 0;
      const Face hint = i > 0 ? handles[i - 1]->face() : Face();  // breakline vertices come in order
      const Face f = cdt.locate(At({input.points[i].x, input.points[i].y}), type, index, hint);
      handles[i] = f->vertex(index);
    }
  }
  return handles;
}

bool TinTriangulation::Impl::HasCloserPoints(const BuildInput& input) const {
  if (!(input.mergeDistance > 0.0)) return false;
  const double limit = input.mergeDistance * input.mergeDistance;
  for (auto e = cdt.finite_edges_begin(); e != cdt.finite_edges_end(); ++e) {
    const Vertex a = e->first->vertex(Cdt::ccw(e->second));
    const Vertex b = e->first->vertex(Cdt::cw(e->second));
    if (a->info().source < input.exactOnly && b->info().source < input.exactOnly) continue;
    const Point2 d = Plan(b->point()) - Plan(a->point());
    if (Dot(d, d) < limit) return true;
  }
  return false;
}

Cdt::Line_face_circulator TinTriangulation::Impl::LineFrom(Point2 p, Point2 q) const {
  Cdt::Locate_type type;
  int index = 0;
  Face start = Locate(p, type, index);
  if (start == Face()) return cdt.line_walk(At(p), At(q));
  // On a hull edge locate may answer the infinite face; start from the finite one instead of
  // scanning the whole hull for the line's entry.
  if (cdt.is_infinite(start) && type == Cdt::EDGE) start = start->neighbor(index);
  return cdt.line_walk(At(p), At(q), start);
}

template <class Visit>
void TinTriangulation::Impl::Walk(Point2 origin, Point2 dir, double t0, double t1, Visit&& visit) const {
  if (!Usable() || !box.Clip(origin, dir, t0, t1)) return;
  const Point2 p = origin + t0 * dir;
  const Point2 q = origin + t1 * dir;
  if (p == q) return;
  Cdt::Line_face_circulator line = LineFrom(p, q);
  // A line running along a hull edge with the triangulation on its right has no face CGAL calls
  // traversed; the other way round it has. Walk back from q then, and hand the faces over in order.
  const bool backwards = line.is_empty();
  if (backwards) line = LineFrom(q, p);
  if (line.is_empty()) return;
  std::vector<Face> collected;
  const Face first = line;
  bool entered = false;
  do {
    const Face f = line;
    if (cdt.is_infinite(f)) {
      if (entered) break;  // left the (convex) triangulation for good
    } else {
      const auto [a, b] = ClipToFace(f, origin, dir);
      if (backwards ? b < t0 : a > t1) break;
      if (backwards ? a <= t1 : b >= t0) {
        entered = true;
        if (backwards) {
          collected.push_back(f);
        } else if (!visit(f, std::max(a, t0), std::min(b, t1))) {
          return;
        }
      }
    }
    ++line;
  } while (Face(line) != first);
  for (auto f = collected.rbegin(); f != collected.rend(); ++f) {
    const auto [a, b] = ClipToFace(*f, origin, dir);
    if (!visit(*f, std::max(a, t0), std::min(b, t1))) return;
  }
}

Face TinTriangulation::Impl::VisibleFaceAt(Point2 p) const {
  if (!Usable()) return Face();
  Cdt::Locate_type type;
  int index = 0;
  const Face f = Locate(p, type, index);
  if (f == Face()) return Face();
  // Infinite faces carry a visible flag too (never looked at): test finiteness first.
  const auto shows = [&](const Face& g) { return !cdt.is_infinite(g) && g->info().visible; };
  if (type == Cdt::FACE) return shows(f) ? f : Face();
  if (type == Cdt::EDGE) {
    if (shows(f)) return f;
    const Face n = f->neighbor(index);
    return shows(n) ? n : Face();
  }
  // On a vertex: any visible face around it.
  auto around = cdt.incident_faces(f->vertex(index));
  const auto done = around;
  do {
    if (shows(around)) return around;
  } while (++around != done);
  return Face();
}

// Cuts a non-destructive boundary into the surface. The edges of every triangle the boundary
// crosses become constraints first, so nothing outside those triangles can flip; the boundary's
// pieces inside the triangulation then go in as constraints, and every crossing with a triangle
// edge becomes a vertex at the elevation along that edge. Inside each crossed triangle the new
// triangles lie in its plane: the surface keeps its shape.
void TinTriangulation::Impl::CutIn(const SurfacePolygon& polygon) {
  const std::vector<Point2>& ring = polygon.Ring();
  std::vector<std::pair<PieceEnd, PieceEnd>> pieces;
  const auto freeze = [&](const Face& f) {
    for (int i = 0; i < 3; ++i) {
      f->set_constraint(i, true);
      const Face n = f->neighbor(i);
      n->set_constraint(n->index(f), true);
    }
  };
  // The hull edge of f nearest to p, when f has one (where a piece enters or leaves).
  const auto hullEdgeNear = [&](const Face& f, Point2 p, PieceEnd& end) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 3; ++i) {
      if (!cdt.is_infinite(f->neighbor(i))) continue;
      const Vertex u = f->vertex(Cdt::ccw(i));
      const Vertex v = f->vertex(Cdt::cw(i));
      const Point2 e = Plan(v->point()) - Plan(u->point());
      const double gap = std::abs(Cross(e, p - Plan(u->point()))) / std::sqrt(Dot(e, e));
      if (gap < best) {
        best = gap;
        end.hullEdge[0] = u;
        end.hullEdge[1] = v;
      }
    }
  };
  for (std::size_t k = 0; k < ring.size(); ++k) {
    const Point2 a = ring[k];
    const Point2 b = ring[(k + 1) % ring.size()];
    const Point2 d = b - a;
    Face firstFace, lastFace;
    double tIn = 0.0, tOut = 0.0;
    Walk(a, d, 0.0, 1.0, [&](const Face& f, double from, double to) {
      if (firstFace == Face()) {
        firstFace = f;
        tIn = from;
      }
      lastFace = f;
      tOut = to;
      freeze(f);
      return true;
    });
    if (firstFace == Face() || tOut <= tIn) continue;
    // A ring vertex in the triangulation must be the very point both its edges' pieces end at:
    // a + 1 * d can miss b by a rounding error, and a gap that small still joins the two sides.
    constexpr double kAtVertex = 1e-12;
    const bool fromA = tIn <= kAtVertex;
    const bool toB = tOut >= 1.0 - kAtVertex;
    PieceEnd start{fromA ? a : a + tIn * d, 0.0, {}};
    PieceEnd end{toB ? b : a + tOut * d, 0.0, {}};
    start.z = PlaneZ(firstFace, start.at);
    end.z = PlaneZ(lastFace, end.at);
    if (!fromA) hullEdgeNear(firstFace, start.at, start);
    if (!toB) hullEdgeNear(lastFace, end.at, end);
    pieces.emplace_back(start, end);
  }

  crossing = CrossingElevation::AlongExisting;
  Face hint;
  const auto insert = [&](const PieceEnd& end) {
    const Vertex v = cdt.insert(At(end.at, end.z), hint);
    hint = v->face();
    // An end computed on the hull edge may fall a rounding error inside it: tie it to the edge's
    // corners so no gap joins the two sides of the boundary.
    for (const Vertex& corner : end.hullEdge) {
      if (corner != Vertex() && corner != v && cdt.is_edge(v, corner)) cdt.insert_constraint(v, corner);
    }
    return v;
  };
  for (const auto& [start, end] : pieces) {
    const Vertex va = insert(start);
    const Vertex vb = insert(end);
    if (va != vb) cdt.insert_constraint(va, vb);
  }
  crossing = CrossingElevation::AlongNew;
}

void TinTriangulation::Impl::ApplyBoundaries(const std::vector<SurfaceBoundary>& boundaries) {
  if (boundaries.empty()) return;
  // Regions: faces joined through edges that are not constrained. A non-destructive boundary
  // runs along constrained edges only, so each region is wholly inside or outside it and one
  // point of its largest face decides for all of it.
  std::vector<Point2> seeds;
  {
    std::vector<Face> stack;
    for (auto f = cdt.finite_faces_begin(); f != cdt.finite_faces_end(); ++f) f->info().region = -1;
    for (auto f = cdt.finite_faces_begin(); f != cdt.finite_faces_end(); ++f) {
      if (f->info().region >= 0) continue;
      const int region = static_cast<int>(seeds.size());
      Face largest = f;
      double largestArea = PlanArea(f);
      f->info().region = region;
      stack.push_back(f);
      while (!stack.empty()) {
        const Face g = stack.back();
        stack.pop_back();
        if (const double area = PlanArea(g); area > largestArea) {
          largestArea = area;
          largest = g;
        }
        for (int i = 0; i < 3; ++i) {
          if (g->is_constrained(i)) continue;
          const Face n = g->neighbor(i);
          if (cdt.is_infinite(n) || n->info().region >= 0) continue;
          n->info().region = region;
          stack.push_back(n);
        }
      }
      seeds.push_back(Centroid(largest));
    }
  }

  enum class Side { Inside, Outside, Crossing };
  std::vector<Side> regionSide(seeds.size());
  for (std::size_t k = 0; k < boundaries.size(); ++k) {
    const SurfaceBoundary& boundary = boundaries[k];
    const SurfacePolygon polygon(boundary.polygon);
    const auto apply = [&](FaceInfo& info, Side side) {
      switch (boundary.type) {
        case SurfaceBoundaryType::Outer: info.visible = side == Side::Inside; break;
        case SurfaceBoundaryType::Hide:
          if (side != Side::Outside) info.visible = false;
          break;
        case SurfaceBoundaryType::Show:
          if (side != Side::Outside) info.visible = side == Side::Inside;
          break;
        case SurfaceBoundaryType::DataClip: break;
      }
    };
    if (boundary.nonDestructive) {
      for (std::size_t r = 0; r < seeds.size(); ++r) regionSide[r] = polygon.Covers(seeds[r]) ? Side::Inside : Side::Outside;
      for (auto f = cdt.finite_faces_begin(); f != cdt.finite_faces_end(); ++f) {
        apply(f->info(), regionSide[static_cast<std::size_t>(f->info().region)]);
      }
      continue;
    }
    // Destructive: mark the faces whose interior the boundary crosses (the middle of the part of
    // an edge inside a face is strictly inside it), then judge the others whole.
    const std::vector<Point2>& ring = polygon.Ring();
    for (std::size_t e = 0; e < ring.size(); ++e) {
      const Point2 a = ring[e];
      const Point2 d = ring[(e + 1) % ring.size()] - a;
      Walk(a, d, 0.0, 1.0, [&](const Face& f, double from, double to) {
        if (cdt.oriented_side(f, At(a + (0.5 * (from + to)) * d)) == CGAL::ON_POSITIVE_SIDE) {
          f->info().stamp = static_cast<int>(k);
        }
        return true;
      });
    }
    for (auto f = cdt.finite_faces_begin(); f != cdt.finite_faces_end(); ++f) {
      const Side side = f->info().stamp == static_cast<int>(k) ? Side::Crossing
                        : polygon.Covers(Centroid(f))         ? Side::Inside
                                                              : Side::Outside;
      apply(f->info(), side);
    }
  }
}

void TinTriangulation::Impl::Finish(bool allVisible) {
  visibleCount = 0;
  if (!Usable()) {
    cdt.clear();
    return;
  }
  const CPoint& p0 = cdt.finite_vertices_begin()->point();
  box = {p0.x(), p0.y(), p0.x(), p0.y()};
  zLow = zHigh = p0.z();
  for (auto v = cdt.finite_vertices_begin(); v != cdt.finite_vertices_end(); ++v) {
    const CPoint& p = v->point();
    box.xMin = std::min(box.xMin, p.x());
    box.yMin = std::min(box.yMin, p.y());
    box.xMax = std::max(box.xMax, p.x());
    box.yMax = std::max(box.yMax, p.y());
    zLow = std::min(zLow, p.z());
    zHigh = std::max(zHigh, p.z());
  }
  // Widened a little so that clipping a walk to it never cuts off a face on its edge.
  const double margin = 1e-9 * std::max({box.xMax - box.xMin, box.yMax - box.yMin, std::abs(box.xMin),
                                          std::abs(box.yMin), std::abs(box.xMax), std::abs(box.yMax), 1.0});
  box = {box.xMin - margin, box.yMin - margin, box.xMax + margin, box.yMax + margin};

  if (allVisible) {
    visibleCount = static_cast<int>(cdt.number_of_faces());
  } else {
    bool first = true;
    for (auto f = cdt.finite_faces_begin(); f != cdt.finite_faces_end(); ++f) {
      if (!f->info().visible) continue;
      ++visibleCount;
      for (int i = 0; i < 3; ++i) {
        const double z = f->vertex(i)->point().z();
        zLow = first ? z : std::min(zLow, z);
        zHigh = first ? z : std::max(zHigh, z);
        first = false;
      }
    }
  }
  grid.Reset(box, cdt.number_of_vertices());
  for (auto v = cdt.finite_vertices_begin(); v != cdt.finite_vertices_end(); ++v) grid.Put(Plan(v->point()), v);
}

std::shared_ptr<const TinTriangulation> TinTriangulation::Build(const BuildInput& input) {
  std::shared_ptr<TinTriangulation> result(new TinTriangulation());
  Impl& m = *result->impl_;
  const std::vector<Vertex> handles = m.InsertPoints(input, !input.constraints.empty());
  if (m.Usable()) {
    for (const auto& [a, b] : input.constraints) {
      if (handles[a] != handles[b]) m.cdt.insert_constraint(handles[a], handles[b]);
    }
    // Cutting boundaries in walks the surface: that needs its extent and locate grid. Vertices are
    // never removed, so the grid's hints stay good while boundaries add vertices.
    bool ready = false;
    for (const SurfaceBoundary& b : input.boundaries) {
      if (!b.nonDestructive) continue;
      if (!ready) m.Finish(true);
      ready = true;
      m.CutIn(SurfacePolygon(b.polygon));
    }
    if (!ready && !input.boundaries.empty()) m.Finish(true);  // destructive ones walk it too
    m.ApplyBoundaries(input.boundaries);
  }
  m.Finish(input.boundaries.empty());
  return result;
}

int TinTriangulation::TriangleCount() const { return impl_->visibleCount; }
int TinTriangulation::VertexCount() const { return static_cast<int>(impl_->cdt.number_of_vertices()); }

std::vector<double> TinTriangulation::Triangles() const {
  std::vector<double> out;
  out.reserve(static_cast<std::size_t>(impl_->visibleCount) * 9);
  if (!impl_->Usable()) return out;
  for (auto f = impl_->cdt.finite_faces_begin(); f != impl_->cdt.finite_faces_end(); ++f) {
    if (!f->info().visible) continue;
    for (int i = 0; i < 3; ++i) {
      const CPoint& p = f->vertex(i)->point();
      out.insert(out.end(), {p.x(), p.y(), p.z()});
    }
  }
  return out;
}

Outcome<double> TinTriangulation::ElevationAt(Point2 p) const {
  if (impl_->visibleCount == 0) return LandError::Empty;
  const Face f = impl_->VisibleFaceAt(p);
  if (f == Face()) return LandError::OutOfRange;
  return PlaneZ(f, p);
}

Outcome<std::vector<Point3>> TinTriangulation::SampleSegment(Point2 from, Point2 to) const {
  if (impl_->visibleCount == 0) return LandError::Empty;
  std::vector<Point3> samples;
  if (from == to) {
    const Face f = impl_->VisibleFaceAt(from);
    if (f == Face()) return LandError::OutOfRange;
    samples.push_back({from.x, from.y, PlaneZ(f, from)});
    return samples;
  }
  const Point2 d = to - from;
  // Crossings of one edge reached from both of its faces, or a vertex passed, come twice.
  constexpr double kSameParameter = 1e-12;
  double last = -1.0;
  const auto emit = [&](const Face& f, double t) {
    if (!samples.empty() && t - last <= kSameParameter) return;
    const Point2 p = t == 1.0 ? to : from + t * d;
    samples.push_back({p.x, p.y, PlaneZ(f, p)});
    last = t;
  };
  impl_->Walk(from, d, 0.0, 1.0, [&](const Face& f, double t0, double t1) {
    if (f->info().visible) {
      emit(f, t0);
      emit(f, t1);
    }
    return true;
  });
  if (samples.empty()) return LandError::OutOfRange;
  return samples;
}

std::vector<Interval> TinTriangulation::CoveredIntervals(Point2 from, Point2 to) const {
  std::vector<Interval> covered;
  if (impl_->visibleCount == 0) return covered;
  if (from == to) {
    if (impl_->VisibleFaceAt(from) != Face()) covered.emplace_back(0.0, 1.0);
    return covered;
  }
  constexpr double kJoin = 1e-12;
  impl_->Walk(from, to - from, 0.0, 1.0, [&](const Face& f, double t0, double t1) {
    if (!f->info().visible) return true;
    if (!covered.empty() && t0 <= covered.back().second + kJoin) {
      covered.back().second = std::max(covered.back().second, t1);
    } else {
      covered.emplace_back(t0, t1);
    }
    return true;
  });
  return covered;
}

Outcome<Point3> TinTriangulation::IntersectRay(const Point3& origin, const Point3& direction) const {
  const Impl& m = *impl_;
  if (m.visibleCount == 0) return LandError::Empty;
  const Point2 o{origin.x, origin.y};
  const Point2 d{direction.x, direction.y};
  // Only the stretch of the ray within the surface's elevation range can meet it.
  const double slack = 1e-9 * std::max({1.0, std::abs(m.zLow), std::abs(m.zHigh)});
  if (d.x == 0.0 && d.y == 0.0) {
    const Face f = m.VisibleFaceAt(o);
    if (f == Face()) return LandError::NotFound;
    const double z = PlaneZ(f, o);
    const bool ahead = std::abs(z - origin.z) <= slack * 1e-3 || (z - origin.z) / direction.z >= 0.0;
    if (!ahead) return LandError::NotFound;
    return Point3{origin.x, origin.y, z};
  }
  const double zLow = m.zLow - slack;
  const double zHigh = m.zHigh + slack;
  double t0 = 0.0;
  double t1 = std::numeric_limits<double>::infinity();
  if (direction.z > 0.0) {
    if (origin.z > zHigh) return LandError::NotFound;
    t0 = std::max(t0, (zLow - origin.z) / direction.z);
    t1 = (zHigh - origin.z) / direction.z;
  } else if (direction.z < 0.0) {
    if (origin.z < zLow) return LandError::NotFound;
    t0 = std::max(t0, (zHigh - origin.z) / direction.z);
    t1 = (zLow - origin.z) / direction.z;
  } else if (origin.z < zLow || origin.z > zHigh) {
    return LandError::NotFound;
  }
  // Height of the ray above the face's plane, linear in t within one face; heights within a
  // rounding error of the elevations count as touching.
  const auto above = [&](const Face& f, double t) {
    const double h = origin.z + t * direction.z - PlaneZ(f, o + t * d);
    return std::abs(h) <= slack * 1e-3 ? 0.0 : h;
  };
  std::optional<Point3> hit;
  m.Walk(o, d, t0, t1, [&](const Face& f, double a, double b) {
    if (!f->info().visible) return true;
    const double ha = above(f, a);
    const double hb = above(f, b);
    double t;
    if (ha == 0.0) {
      t = a;
    } else if (hb == 0.0 || (ha < 0.0) != (hb < 0.0)) {
      t = a + (b - a) * (ha / (ha - hb));
    } else {
      return true;
    }
    const Point2 p = o + t * d;
    hit = Point3{p.x, p.y, PlaneZ(f, p)};
    return false;
  });
  if (!hit) return LandError::NotFound;
  return *hit;
}

double TinTriangulation::Area2d() const {
  double area = 0.0;
  if (!impl_->Usable()) return area;
  for (auto f = impl_->cdt.finite_faces_begin(); f != impl_->cdt.finite_faces_end(); ++f) {
    if (f->info().visible) area += PlanArea(f);
  }
  return area;
}

double TinTriangulation::Area3d() const {
  double area = 0.0;
  if (!impl_->Usable()) return area;
  for (auto f = impl_->cdt.finite_faces_begin(); f != impl_->cdt.finite_faces_end(); ++f) {
    if (!f->info().visible) continue;
    const CPoint& a = f->vertex(0)->point();
    const Kernel::Vector_3 n = CGAL::cross_product(f->vertex(1)->point() - a, f->vertex(2)->point() - a);
    area += 0.5 * std::sqrt(n.squared_length());
  }
  return area;
}

Outcome<ElevationRange> TinTriangulation::Elevations() const {
  if (impl_->visibleCount == 0) return LandError::Empty;
  return ElevationRange{impl_->zLow, impl_->zHigh};
}

std::vector<std::vector<Point3>> TinTriangulation::Outline() const {
  std::vector<std::vector<Point3>> rings;
  const Cdt& cdt = impl_->cdt;
  if (!impl_->Usable()) return rings;
  const auto border = [&](const Face& f, int i) {
    const Face n = f->neighbor(i);
    return cdt.is_infinite(n) || !n->info().visible;
  };
  const auto key = [](const Face& f, int i) { return reinterpret_cast<std::uintptr_t>(&*f) * 4 + static_cast<unsigned>(i); };
  std::unordered_set<std::uintptr_t> used;
  for (auto f = cdt.finite_faces_begin(); f != cdt.finite_faces_end(); ++f) {
    if (!f->info().visible) continue;
    for (int i = 0; i < 3; ++i) {
      if (!border(f, i) || used.count(key(f, i))) continue;
      // Follow the border with the visible side on the left: at each corner turn around it
      // clockwise through visible faces to the next border edge.
      std::vector<Point3> ring;
      Face g = f;
      int j = i;
      do {
        used.insert(key(g, j));
        const Vertex v = g->vertex(Cdt::cw(j));
        ring.push_back({v->point().x(), v->point().y(), v->point().z()});
        int at = Cdt::cw(j);
        int e = Cdt::cw(at);
        while (!border(g, e)) {
          g = g->neighbor(e);
          at = g->index(v);
          e = Cdt::cw(at);
        }
        j = e;
      } while (!(g == Face(f) && j == i));
      std::rotate(ring.rbegin(), ring.rbegin() + 1, ring.rend());  // start at the first edge's start
      rings.push_back(std::move(ring));
    }
  }
  return rings;
}

VisibleMesh TinTriangulation::Mesh() const {
  VisibleMesh mesh;
  const Cdt& cdt = impl_->cdt;
  if (!impl_->Usable()) return mesh;
  std::unordered_map<const void*, std::uint32_t> index;
  const auto indexOf = [&](const Vertex& v) {
    const auto [slot, added] = index.try_emplace(&*v, static_cast<std::uint32_t>(mesh.vertices.size()));
    if (added) mesh.vertices.push_back({v->point().x(), v->point().y(), v->point().z()});
    return slot->second;
  };
  for (auto f = cdt.finite_faces_begin(); f != cdt.finite_faces_end(); ++f) {
    if (!f->info().visible) continue;
    for (int i = 0; i < 3; ++i) {
      const Face n = f->neighbor(i);
      const bool shared = !cdt.is_infinite(n) && n->info().visible;
      if (shared && std::less<const void*>()(&*n, &*f)) continue;  // the other face reports it
      mesh.edges.emplace_back(indexOf(f->vertex(Cdt::ccw(i))), indexOf(f->vertex(Cdt::cw(i))));
    }
  }
  return mesh;
}

bool TinTriangulation::IsValid() const {
  const Cdt& cdt = impl_->cdt;
  if (!impl_->Usable()) return cdt.number_of_faces() == 0 && impl_->visibleCount == 0;
  if (!cdt.is_valid()) return false;
  int visible = 0;
  const auto orientation = cdt.geom_traits().orientation_2_object();
  for (auto f = cdt.finite_faces_begin(); f != cdt.finite_faces_end(); ++f) {
    if (orientation(f->vertex(0)->point(), f->vertex(1)->point(), f->vertex(2)->point()) != CGAL::LEFT_TURN) {
      return false;
    }
    if (f->info().visible) ++visible;
  }
  return visible == impl_->visibleCount;
}

}  // namespace headless::land::tin
