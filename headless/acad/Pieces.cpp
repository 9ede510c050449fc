#include "headless/acad/Pieces.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "headless/acad/ImpAccess.h"
#include "headless/acad/ImpDatabase.h"
#include "platform/acad/dbelipse.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbhatch.h"
#include "platform/acad/dbpl.h"
#include "platform/acad/dbsol3d.h"
#include "platform/acad/dbsymtb.h"
#include "platform/acad/dbtable.h"

namespace headless::geom {

namespace {

// Nesting of block references deeper than this is taken for a block that contains itself.
constexpr int kMaxBlockDepth = 32;
// Arcs of a filled area's rings are sampled this finely (chords per full turn).
constexpr int kRingChordsPerTurn = 64;

AcGeVector3d Column(const AcGeMatrix3d& m, int c) { return {m.entry[0][c], m.entry[1][c], m.entry[2][c]}; }

// Whether t lies on the parameter range [t0, t1] of a conic, angles taken modulo a full turn.
bool InRange(double t, double t0, double t1) {
  if (t1 - t0 >= kTwoPi - 1e-12) return true;
  double d = std::fmod(t - t0, kTwoPi);
  if (d < 0.0) d += kTwoPi;
  return d <= t1 - t0 + 1e-12;
}

bool InsideWindow(const AcGePoint3d& p, const Window& w) {
  return p.x >= w.xmin && p.x <= w.xmax && p.y >= w.ymin && p.y <= w.ymax;
}

// Liang-Barsky: does the segment's projection meet the window?
bool SegmentMeetsWindow(const Segment& s, const Window& w) {
  double t0 = 0.0;
  double t1 = 1.0;
  const double dx = s.b.x - s.a.x;
  const double dy = s.b.y - s.a.y;
  const double p[4] = {-dx, dx, -dy, dy};
  const double q[4] = {s.a.x - w.xmin, w.xmax - s.a.x, s.a.y - w.ymin, w.ymax - s.a.y};
  for (int i = 0; i < 4; ++i) {
    if (p[i] == 0.0) {
      if (q[i] < 0.0) return false;
      continue;
    }
    const double r = q[i] / p[i];
    if (p[i] < 0.0) {
      t0 = std::max(t0, r);
    } else {
      t1 = std::min(t1, r);
    }
    if (t0 > t1) return false;
  }
  return true;
}

// Does the conic's projection meet the window: an end (or, closed, any point) inside, or a
// crossing of one of the window's sides.
bool ConicMeetsWindow(const Conic& c, const Window& w) {
  if (InsideWindow(c.at(c.t0), w)) return true;
  if (!c.closed() && InsideWindow(c.at(c.t1), w)) return true;
  // Side x = k: u.x cos t + v.x sin t = k - center.x, and likewise for y.
  for (int axis = 0; axis < 2; ++axis) {
    const double a = axis == 0 ? c.u.x : c.u.y;
    const double b = axis == 0 ? c.v.x : c.v.y;
    const double base = axis == 0 ? c.center.x : c.center.y;
    const double r = std::hypot(a, b);
    if (r < 1e-300) continue;
    const double phase = std::atan2(b, a);
    const double sides[2] = {axis == 0 ? w.xmin : w.ymin, axis == 0 ? w.xmax : w.ymax};
    for (double side : sides) {
      const double ratio = (side - base) / r;
      if (ratio < -1.0 || ratio > 1.0) continue;
      const double delta = std::acos(ratio);
      for (double t : {phase + delta, phase - delta}) {
        if (!InRange(t, c.t0, c.t1)) continue;
        const AcGePoint3d p = c.at(t);
        const double other = axis == 0 ? p.y : p.x;
        const double lo = axis == 0 ? w.ymin : w.xmin;
        const double hi = axis == 0 ? w.ymax : w.xmax;
        if (other >= lo && other <= hi) return true;
      }
    }
  }
  return false;
}

bool AreaContains(const Area& area, double x, double y) {
  bool inside = false;
  for (const auto& ring : area.rings) {
    const size_t n = ring.size();
    for (size_t i = 0, j = n - 1; i < n; j = i++) {
      const AcGePoint3d& a = ring[i];
      const AcGePoint3d& b = ring[j];
      if ((a.y > y) != (b.y > y) && x < (b.x - a.x) * (y - a.y) / (b.y - a.y) + a.x) inside = !inside;
    }
  }
  return inside;
}

// Extremes of one world axis along a conic: at the ends and where the axis value turns.
void AddConicExtents(const Conic& c, AcDbExtents& ext) {
  ext.addPoint(c.at(c.t0));
  if (!c.closed()) ext.addPoint(c.at(c.t1));
  for (unsigned int axis = 0; axis < 3; ++axis) {
    const double phase = std::atan2(c.v[axis], c.u[axis]);
    for (double t : {phase, phase + kTwoPi / 2.0})
      if (InRange(t, c.t0, c.t1)) ext.addPoint(c.at(t));
  }
}

// --- Per kind -----------------------------------------------------------------------------------

void CollectCurve(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double t0, double t1,
                  Pieces& out) {
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(normal);
  out.conics.push_back({center, Column(ocs, 0) * radius, Column(ocs, 1) * radius, t0, t1});
}

void CollectPolyline(const AcDbPolyline& pl, Pieces& out) {
  const unsigned int n = pl.numVerts();
  if (n == 0) return;
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(pl.normal());
  AcGePoint2d first;
  pl.getPointAt(0u, first);
  if (n == 1) {
    AcGePoint3d p;
    pl.getPointAt(0u, p);
    out.segments.push_back({p, p});
    return;
  }
  const unsigned int segments = pl.isClosed() ? n : n - 1;
  for (unsigned int i = 0; i < segments; ++i) {
    AcGePoint2d a, b;
    double bulge = 0.0;
    pl.getPointAt(i, a);
    pl.getPointAt((i + 1) % n, b);
    pl.getBulgeAt(i, bulge);
    AddBulgeSegment(out, ocs, pl.elevation(), a, b, bulge);
  }
}

void CollectPolyline2d(const AcDb2dPolyline& pl, Pieces& out) {
  const auto vertices = AcDbImpAccess::live(AcDbImpAccess::vertices(pl));
  std::vector<const AcDb2dVertex*> v;
  for (const AcDbVertex* vertex : vertices)
    if (auto* v2 = AcDb2dVertex::cast(vertex)) v.push_back(v2);
  if (v.empty()) return;
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(pl.normal());
  if (v.size() == 1) {
    const AcGePoint3d p = pl.vertexPosition(*v[0]);
    out.segments.push_back({p, p});
    return;
  }
  const size_t segments = pl.isClosed() ? v.size() : v.size() - 1;
  for (size_t i = 0; i < segments; ++i) {
    const AcGePoint3d a = v[i]->position();
    const AcGePoint3d b = v[(i + 1) % v.size()]->position();
    AddBulgeSegment(out, ocs, pl.elevation(), {a.x, a.y}, {b.x, b.y}, v[i]->bulge());
  }
}

void CollectPolyline3d(const AcDb3dPolyline& pl, Pieces& out) {
  std::vector<AcGePoint3d> points;
  for (const AcDbVertex* vertex : AcDbImpAccess::live(AcDbImpAccess::vertices(pl)))
    if (auto* v = AcDb3dPolylineVertex::cast(vertex)) points.push_back(v->position());
  if (points.empty()) return;
  if (points.size() == 1) out.segments.push_back({points[0], points[0]});
  for (size_t i = 0; i + 1 < points.size(); ++i) out.segments.push_back({points[i], points[i + 1]});
  if (pl.isClosed() && points.size() > 2) out.segments.push_back({points.back(), points.front()});
}

void CollectMesh(const AcDbPolyFaceMesh& mesh, Pieces& out) {
  std::vector<AcGePoint3d> points;
  std::vector<const AcDbFaceRecord*> faces;
  for (const AcDbVertex* vertex : AcDbImpAccess::live(AcDbImpAccess::vertices(mesh))) {
    if (auto* v = AcDbPolyFaceMeshVertex::cast(vertex)) points.push_back(v->position());
    if (auto* f = AcDbFaceRecord::cast(vertex)) faces.push_back(f);
  }
  if (faces.empty()) {
    for (const auto& p : points) out.segments.push_back({p, p});
    return;
  }
  for (const AcDbFaceRecord* face : faces) {
    std::vector<AcGePoint3d> corners;
    for (Adesk::UInt16 i = 0; i < 4; ++i) {
      Adesk::Int16 index = 0;
      face->getVertexAt(i, index);
      if (index > 0 && index <= static_cast<Adesk::Int16>(points.size()))
        corners.push_back(points[static_cast<size_t>(index - 1)]);
    }
    for (size_t i = 0; i < corners.size(); ++i) out.segments.push_back({corners[i], corners[(i + 1) % corners.size()]});
  }
}

// The text's box: characters one height wide (times the width factor), cap height tall.
void CollectText(const AcDbText& text, Pieces& out) {
  const double h = text.height();
  const double advance = h * text.widthFactor();
  const double n = static_cast<double>(std::wcslen(text.textStringConst()));
  const AcGeVector3d normal = text.normal().normal();
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(normal);
  AcGeVector3d dirX = Column(ocs, 0);
  dirX.rotateBy(text.rotation(), normal);
  double width = n * advance;
  AcGePoint3d origin = text.isDefaultAlignment() ? text.position() : text.alignmentPoint();
  double x0 = 0.0;
  double y0 = 0.0;
  const AcDb::TextHorzMode horz = text.horizontalMode();
  if (horz == AcDb::kTextAlign || horz == AcDb::kTextFit) {
    AcGeVector3d along = text.alignmentPoint() - text.position();
    along -= normal * along.dotProduct(normal);
    if (!along.isZeroLength()) {
      dirX = along.normal();
      width = along.length();
    }
    origin = text.position();
  } else if (horz == AcDb::kTextCenter || horz == AcDb::kTextMid) {
    x0 = -width / 2.0;
  } else if (horz == AcDb::kTextRight) {
    x0 = -width;
  }
  if (horz == AcDb::kTextMid || text.verticalMode() == AcDb::kTextVertMid) {
    y0 = -h / 2.0;
  } else if (text.verticalMode() == AcDb::kTextTop) {
    y0 = -h;
  }
  const AcGeVector3d dirY = normal.crossProduct(dirX);
  const AcGePoint3d base = origin + dirX * x0 + dirY * y0;
  AddOutline(out, {base, base + dirX * width, base + dirX * width + dirY * h, base + dirY * h}, true);
}

void CollectHatch(const AcDbHatch& hatch, Pieces& out) {
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(hatch.normal());
  const double z = hatch.elevation();
  auto world = [&](const AcGePoint2d& p) { return ocs * AcGePoint3d(p.x, p.y, z); };
  Area area;
  for (const AcDbHatch::Loop& loop : hatch.loops()) {
    std::vector<AcGePoint3d> ring;
    for (const AcDbHatch::Edge& e : loop.edges) {
      if (!e.isArc) {
        out.segments.push_back({world(e.start), world(e.end)});
        ring.push_back(world(e.start));
        continue;
      }
      AddArc(out, ocs, AcGePoint3d(e.center.x, e.center.y, z), e.radius, e.startAngle, e.sweep);
      const int chords = std::max(2, static_cast<int>(std::ceil(std::fabs(e.sweep) / kTwoPi * kRingChordsPerTurn)));
      for (int i = 0; i < chords; ++i) {
        const double a = e.startAngle + e.sweep * i / chords;
        ring.push_back(world({e.center.x + e.radius * std::cos(a), e.center.y + e.radius * std::sin(a)}));
      }
    }
    if (ring.size() >= 3) area.rings.push_back(std::move(ring));
  }
  if (!area.rings.empty()) out.areas.push_back(std::move(area));
}

void CollectTable(const AcDbTable& table, Pieces& out) {
  if (table.numRows() == 0 || table.numColumns() == 0) return;
  const AcGeVector3d x = table.direction().normal();
  const AcGeVector3d down = -table.normal().normal().crossProduct(x);
  const AcGePoint3d p = table.position();
  const double w = table.width();
  const double h = table.height();
  double offset = 0.0;
  for (int row = 0; row <= table.numRows(); ++row) {
    out.segments.push_back({p + down * offset, p + down * offset + x * w});
    if (row < table.numRows()) offset += table.rowHeight(row);
  }
  offset = 0.0;
  for (int col = 0; col <= table.numColumns(); ++col) {
    out.segments.push_back({p + x * offset, p + x * offset + down * h});
    if (col < table.numColumns()) offset += table.columnWidth(col);
  }
}

// A frustum as AutoCAD draws it in wireframe: the two end ellipses and four lines between them.
void CollectSolid(const AcDb3dSolid& solid, Pieces& out) {
  const AcDbImpAccess::Frustum f = AcDbImpAccess::frustum(solid);
  if (!f.hasBody) return;
  const double topRatio = f.topXRadius / f.xRadius;
  const AcGePoint3d bottom(0.0, 0.0, -f.height / 2.0);
  const AcGePoint3d top(0.0, 0.0, f.height / 2.0);
  Pieces body;
  body.conics.push_back({bottom, {f.xRadius, 0, 0}, {0, f.yRadius, 0}, 0.0, kTwoPi});
  if (f.topXRadius > 0.0) {
    body.conics.push_back({top, {f.topXRadius, 0, 0}, {0, f.yRadius * topRatio, 0}, 0.0, kTwoPi});
  }
  for (int i = 0; i < 4; ++i) {
    const double c = std::cos(i * kTwoPi / 4.0);
    const double s = std::sin(i * kTwoPi / 4.0);
    body.segments.push_back({bottom + AcGeVector3d(f.xRadius * c, f.yRadius * s, 0.0),
                             top + AcGeVector3d(f.topXRadius * c, f.yRadius * topRatio * s, 0.0)});
  }
  body.transformBy(f.placement);
  out.append(std::move(body));
}

Acad::ErrorStatus CollectBlockReference(const AcDbBlockReference& ref, const AcGeMatrix3d& xform, Pieces& out,
                                        int depth) {
  if (depth >= kMaxBlockDepth) return Acad::eSelfReference;
  const auto* block = AcDbBlockTableRecord::cast(AcDbImpDatabase::peek(ref.blockTableRecord()));
  if (block == nullptr) return Acad::eOk;
  const AcGeMatrix3d placed = xform * ref.blockTransform();
  for (const AcDbObjectId& id : block->entityIds()) {
    const AcDbStub* stub = AcDbImpDatabase::lookup(id);
    if (stub == nullptr || stub->erased) continue;
    const auto* entity = AcDbEntity::cast(stub->object.get());
    if (entity == nullptr) continue;
    const Acad::ErrorStatus es = Collect(*entity, placed, out, depth + 1);
    if (es != Acad::eOk) return es;
  }
  return Acad::eOk;
}

// A kind the platform does not draw itself: what it explodes into, else its extents box.
Acad::ErrorStatus CollectOther(const AcDbEntity& entity, const AcGeMatrix3d& xform, Pieces& out, int depth) {
  AcDbVoidPtrArray parts;
  if (entity.explode(parts) == Acad::eOk && !parts.isEmpty()) {
    Acad::ErrorStatus es = Acad::eOk;
    for (void* part : parts) {
      std::unique_ptr<AcRxObject> owned(static_cast<AcRxObject*>(part));
      if (auto* piece = AcDbEntity::cast(owned.get()); piece != nullptr && es == Acad::eOk)
        es = Collect(*piece, xform, out, depth + 1);
    }
    return es;
  }
  AcDbExtents ext;
  if (entity.getGeomExtents(ext) != Acad::eOk) return Acad::eOk;
  const AcGePoint3d lo = ext.minPoint();
  const AcGePoint3d hi = ext.maxPoint();
  Pieces box;
  AddOutline(box, {lo, {hi.x, lo.y, lo.z}, {hi.x, hi.y, lo.z}, {lo.x, hi.y, lo.z}}, true);
  if (hi.z != lo.z) box.segments.push_back({lo, hi});
  box.transformBy(xform);
  out.append(std::move(box));
  return Acad::eOk;
}

}  // namespace

AcGePoint3d Conic::at(double t) const { return center + u * std::cos(t) + v * std::sin(t); }

void Pieces::transformBy(const AcGeMatrix3d& xform) {
  for (auto& s : segments) {
    s.a.transformBy(xform);
    s.b.transformBy(xform);
  }
  for (auto& c : conics) {
    c.center.transformBy(xform);
    c.u.transformBy(xform);
    c.v.transformBy(xform);
  }
  for (auto& a : areas)
    for (auto& ring : a.rings)
      for (auto& p : ring) p.transformBy(xform);
}

void Pieces::append(Pieces&& other) {
  segments.insert(segments.end(), other.segments.begin(), other.segments.end());
  conics.insert(conics.end(), other.conics.begin(), other.conics.end());
  for (auto& a : other.areas) areas.push_back(std::move(a));
}

bool Extents(const Pieces& pieces, AcDbExtents& extents) {
  if (pieces.empty()) return false;
  AcDbExtents ext;
  for (const auto& s : pieces.segments) {
    ext.addPoint(s.a);
    ext.addPoint(s.b);
  }
  for (const auto& c : pieces.conics) AddConicExtents(c, ext);
  for (const auto& a : pieces.areas)
    for (const auto& ring : a.rings)
      for (const auto& p : ring) ext.addPoint(p);
  extents = ext;
  return true;
}

bool Crosses(const Pieces& pieces, const Window& window) {
  for (const auto& s : pieces.segments)
    if (SegmentMeetsWindow(s, window)) return true;
  for (const auto& c : pieces.conics)
    if (ConicMeetsWindow(c, window)) return true;
  for (const auto& a : pieces.areas)
    if (AreaContains(a, window.xmin, window.ymin)) return true;
  return false;
}

bool Within(const Pieces& pieces, const Window& window) {
  AcDbExtents ext;
  if (!Extents(pieces, ext)) return false;
  return InsideWindow(ext.minPoint(), window) && InsideWindow(ext.maxPoint(), window);
}

void AddArc(Pieces& pieces, const AcGeMatrix3d& ocs, const AcGePoint3d& ocsCenter, double radius, double startAngle,
            double sweep) {
  // A clockwise arc is the same curve run the other way: start at its end.
  double t0 = startAngle;
  double t1 = startAngle + sweep;
  if (sweep < 0.0) std::swap(t0, t1);
  pieces.conics.push_back({ocs * ocsCenter, Column(ocs, 0) * radius, Column(ocs, 1) * radius, t0, t1});
}

bool ArcOfBulge(const AcGePoint2d& a, const AcGePoint2d& b, double bulge, BulgeArc& arc) {
  const double chord = a.distanceTo(b);
  if (bulge == 0.0 || chord <= 0.0) return false;
  const double sweep = 4.0 * std::atan(bulge);
  const double radius = chord / (2.0 * std::fabs(std::sin(sweep / 2.0)));
  // The centre lies off the chord's midpoint, to the left for a counter-clockwise arc.
  const AcGeVector2d along = (b - a) / chord;
  const AcGeVector2d left(-along.y, along.x);
  const double offset = radius * std::cos(sweep / 2.0) * (bulge > 0.0 ? 1.0 : -1.0);
  const AcGePoint2d mid(0.5 * (a.x + b.x), 0.5 * (a.y + b.y));
  arc.center = mid + left * offset;
  arc.radius = radius;
  arc.startAngle = std::atan2(a.y - arc.center.y, a.x - arc.center.x);
  arc.sweep = sweep;
  return true;
}

void AddBulgeSegment(Pieces& pieces, const AcGeMatrix3d& ocs, double elevation, const AcGePoint2d& a,
                     const AcGePoint2d& b, double bulge) {
  BulgeArc arc;
  if (!ArcOfBulge(a, b, bulge, arc)) {
    pieces.segments.push_back({ocs * AcGePoint3d(a.x, a.y, elevation), ocs * AcGePoint3d(b.x, b.y, elevation)});
    return;
  }
  AddArc(pieces, ocs, AcGePoint3d(arc.center.x, arc.center.y, elevation), arc.radius, arc.startAngle, arc.sweep);
}

void AddOutline(Pieces& pieces, const std::vector<AcGePoint3d>& corners, bool filled) {
  for (size_t i = 0; i < corners.size(); ++i) pieces.segments.push_back({corners[i], corners[(i + 1) % corners.size()]});
  if (filled && corners.size() >= 3) pieces.areas.push_back(Area{{corners}});
}

Acad::ErrorStatus Collect(const AcDbEntity& entity, const AcGeMatrix3d& xform, Pieces& out, int depth) {
  Pieces own;
  Acad::ErrorStatus es = Acad::eOk;
  if (auto* line = AcDbLine::cast(&entity)) {
    own.segments.push_back({line->startPoint(), line->endPoint()});
  } else if (auto* arc = AcDbArc::cast(&entity)) {
    CollectCurve(arc->center(), arc->normal(), arc->radius(), arc->startAngle(), arc->startAngle() + arc->totalAngle(),
                 own);
  } else if (auto* circle = AcDbCircle::cast(&entity)) {
    CollectCurve(circle->center(), circle->normal(), circle->radius(), 0.0, kTwoPi, own);
  } else if (auto* ellipse = AcDbEllipse::cast(&entity)) {
    double t0 = 0.0;
    double t1 = kTwoPi;
    ellipse->getStartParam(t0);
    ellipse->getEndParam(t1);
    own.conics.push_back({ellipse->center(), ellipse->majorAxis(), ellipse->minorAxis(), t0, t1});
  } else if (auto* pl = AcDbPolyline::cast(&entity)) {
    CollectPolyline(*pl, own);
  } else if (auto* pl2 = AcDb2dPolyline::cast(&entity)) {
    CollectPolyline2d(*pl2, own);
  } else if (auto* pl3 = AcDb3dPolyline::cast(&entity)) {
    CollectPolyline3d(*pl3, own);
  } else if (auto* face = AcDbFace::cast(&entity)) {
    std::vector<AcGePoint3d> corners(4);
    for (Adesk::UInt16 i = 0; i < 4; ++i) face->getVertexAt(i, corners[i]);
    AddOutline(own, corners, false);
  } else if (auto* mesh = AcDbPolyFaceMesh::cast(&entity)) {
    CollectMesh(*mesh, own);
  } else if (auto* text = AcDbText::cast(&entity)) {
    CollectText(*text, own);
  } else if (auto* hatch = AcDbHatch::cast(&entity)) {
    CollectHatch(*hatch, own);
  } else if (auto* table = AcDbTable::cast(&entity)) {
    CollectTable(*table, own);
  } else if (auto* ref = AcDbBlockReference::cast(&entity)) {
    return CollectBlockReference(*ref, xform, out, depth);
  } else if (auto* solid = AcDb3dSolid::cast(&entity)) {
    CollectSolid(*solid, own);
  } else if (AcDbVertex::cast(&entity) || AcDbSequenceEnd::cast(&entity) || AcDbBlockBegin::cast(&entity) ||
             AcDbBlockEnd::cast(&entity)) {
    return Acad::eOk;  // parts of other entities, with no geometry of their own
  } else {
    return CollectOther(entity, xform, out, depth);
  }
  own.transformBy(xform);
  out.append(std::move(own));
  return es;
}

Acad::ErrorStatus ExtentsOf(const AcDbEntity& entity, AcDbExtents& extents) {
  Pieces pieces;
  const Acad::ErrorStatus es = Collect(entity, AcGeMatrix3d::kIdentity, pieces);
  if (es != Acad::eOk) return es;
  return Extents(pieces, extents) ? Acad::eOk : Acad::eInvalidExtents;
}

}  // namespace headless::geom
