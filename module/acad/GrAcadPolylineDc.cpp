#include "module/acad/GrAcadPolylineDc.h"

#include <cmath>
#include <numbers>
#include <vector>

#include "module/acad/GrAcadCurveDc.h"
#include "module/graphics/GrArc.h"
#include "module/graphics/GrLine.h"
#include "module/graphics/GrPolyline.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbpl.h"

namespace {

struct Vertex {
  CKdPoint point;
  double bulge;  // of the segment that starts here
};

// Arcs up to this sweep per stroke of a 3D polyline.
constexpr double kStrokeSweep = std::numbers::pi / 16.0;

bool Joins(const CKdPoint& a, const CKdPoint& b) { return a.IsEqual(b, grgeo::kTolerance); }

// The vertices of the polyline; `stroke` turns arcs into straight pieces (3D polylines).
std::vector<Vertex> VerticesOf(const CGrPolyline& polyline, bool stroke) {
  std::vector<Vertex> vertices;
  const std::size_t count = polyline.CurveCount();
  for (std::size_t i = 0; i < count; ++i) {
    const IGrCurve* curve = polyline.Curve(i);
    const auto* arc = dynamic_cast<const CGrArc*>(curve->CurveElement());
    if (arc == nullptr || arc->Sweep() == 0.0) {
      vertices.push_back({curve->CurveStart(), 0.0});
    } else {
      // A bulge stands for any sweep short of a full turn.
      const double sweep = std::fabs(arc->Sweep());
      const bool single = !stroke && sweep < 2.0 * std::numbers::pi - grgeo::kTolerance;
      const double maxPiece = stroke ? kStrokeSweep : std::numbers::pi;
      const int pieces = single ? 1 : std::max(1, static_cast<int>(std::ceil(sweep / maxPiece - 1e-9)));
      const double step = arc->Sweep() / pieces;
      for (int k = 0; k < pieces; ++k) {
        vertices.push_back({arc->PointAtAngle(arc->StartAngle() + k * step), stroke ? 0.0 : std::tan(step / 4.0)});
      }
    }
    const CKdPoint end = curve->CurveEnd();
    const bool last = i + 1 == count;
    const CKdPoint next = last ? polyline.Curve(0)->CurveStart() : polyline.Curve(i + 1)->CurveStart();
    if ((!last && !Joins(end, next)) || (last && (!polyline.IsClosed() || !Joins(end, next)))) {
      vertices.push_back({end, 0.0});
    }
  }
  return vertices;
}

Acad::ErrorStatus SetLightweight(const CGrPolyline& polyline, AcDbPolyline& entity) {
  const std::vector<Vertex> vertices = VerticesOf(polyline, false);
  if (vertices.size() < 2) return Acad::eDegenerateGeometry;
  entity.reset(false, 0);
  entity.setNormal(AcGeVector3d::kZAxis);
  entity.setElevation(vertices.front().point.z);
  for (std::size_t i = 0; i < vertices.size(); ++i) {
    const Acad::ErrorStatus es = entity.addVertexAt(static_cast<unsigned>(i),
                                                    AcGePoint2d(vertices[i].point.x, vertices[i].point.y),
                                                    vertices[i].bulge);
    if (es != Acad::eOk) return es;
  }
  entity.setClosed(polyline.IsClosed());
  return Acad::eOk;
}

AcDbEntity* NewComplex(const CGrPolyline& polyline) {
  const bool is3d = polyline.PolylineType() == gracad::k3dPolyline;
  const std::vector<Vertex> vertices = VerticesOf(polyline, is3d);
  if (vertices.size() < 2) return nullptr;
  AcGePoint3dArray points;
  AcGeDoubleArray bulges;
  for (const Vertex& v : vertices) {
    points.append(gracad::ToAcad(v.point));
    bulges.append(v.bulge);
  }
  if (is3d) return new AcDb3dPolyline(AcDb::k3dSimplePoly, points, polyline.IsClosed());
  return new AcDb2dPolyline(AcDb::k2dSimplePoly, points, vertices.front().point.z, polyline.IsClosed(), 0.0, 0.0,
                            &bulges);
}

// The segment from a to b with that bulge: a line, or an arc standing as a polyline segment.
IGrCurve* Segment(const CKdPoint& a, const CKdPoint& b, double bulge) {
  if (bulge == 0.0 || Joins(a, b)) return new CGrLine(a, b);
  const double sweep = 4.0 * std::atan(bulge);
  const CKdVector chord(b.x - a.x, b.y - a.y, 0.0);
  const double length = chord.Length();
  const double radius = length / (2.0 * std::sin(std::fabs(sweep) / 2.0));
  const CKdVector left = CKdVector(-chord.y, chord.x, 0.0) * (1.0 / length);
  const double offset = radius * std::cos(sweep / 2.0) * (bulge > 0.0 ? 1.0 : -1.0);
  const CKdPoint centre((a.x + b.x) / 2.0 + left.x * offset, (a.y + b.y) / 2.0 + left.y * offset, a.z);
  return new CGrLineArc(centre, radius, gracad::Normalized(std::atan2(a.y - centre.y, a.x - centre.x)), sweep);
}

void AddSegments(CGrPolyline& polyline, const std::vector<Vertex>& vertices, bool closed) {
  const std::size_t n = vertices.size();
  const std::size_t segments = closed ? n : (n == 0 ? 0 : n - 1);
  for (std::size_t i = 0; i < segments; ++i) {
    polyline.Add(Segment(vertices[i].point, vertices[(i + 1) % n].point, vertices[i].bulge));
  }
}

template <class VertexClass, class Position>
std::vector<Vertex> ReadVertices(AcDbObjectIterator* it, Position position) {
  std::vector<Vertex> vertices;
  if (it == nullptr) return vertices;
  for (; !it->done(); it->step()) {
    VertexClass* vertex = nullptr;
    if (acdbOpenObject(vertex, it->objectId(), AcDb::kForRead) != Acad::eOk) continue;
    vertices.push_back(position(*vertex));
    vertex->close();
  }
  delete it;
  return vertices;
}

}  // namespace

AcDbEntity* CGrAcadPolylineDc::MakeEntity(CGrElement* element) {
  auto* polyline = dynamic_cast<CGrPolyline*>(element);
  if (polyline == nullptr) return nullptr;
  if (polyline->PolylineType() != gracad::k2dPolyline && polyline->PolylineType() != gracad::k3dPolyline) {
    return MakeKindEntity<CGrPolyline, AcDbPolyline>(element, SetLightweight);
  }
  // Old-style polylines keep their vertices as objects of their own: a changed one is replaced.
  const AcRxClass* kind =
      polyline->PolylineType() == gracad::k3dPolyline ? AcDb3dPolyline::desc() : AcDb2dPolyline::desc();
  AcDbEntity* unchanged = nullptr;
  if (!OpenUnchanged(element, kind, unchanged)) return nullptr;
  if (unchanged != nullptr) return unchanged;
  AcDbEntity* entity = NewComplex(*polyline);
  if (entity == nullptr) return nullptr;
  if (ApplyCommonProperties(element, entity) != gracad::kOk ||
      (element->SessionId() != 0 && RetireOld(element) != gracad::kOk)) {
    delete entity;
    return nullptr;
  }
  return entity;
}

CGrElement* CGrAcadPolylineDc::MakeElement(AcDbObject* object) {
  auto* polyline = new CGrPolyline;
  if (const AcDbPolyline* light = AcDbPolyline::cast(object)) {
    std::vector<Vertex> vertices;
    for (unsigned i = 0; i < light->numVerts(); ++i) {
      AcGePoint3d p;
      double bulge = 0.0;
      light->getPointAt(i, p);
      light->getBulgeAt(i, bulge);
      vertices.push_back({gracad::FromAcad(p), bulge});
    }
    AddSegments(*polyline, vertices, light->isClosed());
    polyline->SetClosed(light->isClosed());
    polyline->SetPolylineType(gracad::kLightweightPolyline);
  } else if (const AcDb2dPolyline* flat = AcDb2dPolyline::cast(object)) {
    AddSegments(*polyline,
                ReadVertices<AcDb2dVertex>(flat->vertexIterator(),
                                           [flat](const AcDb2dVertex& v) {
                                             return Vertex{gracad::FromAcad(flat->vertexPosition(v)), v.bulge()};
                                           }),
                flat->isClosed());
    polyline->SetClosed(flat->isClosed());
    polyline->SetPolylineType(gracad::k2dPolyline);
  } else if (const AcDb3dPolyline* spatial = AcDb3dPolyline::cast(object)) {
    AddSegments(*polyline,
                ReadVertices<AcDb3dPolylineVertex>(
                    spatial->vertexIterator(),
                    [](const AcDb3dPolylineVertex& v) { return Vertex{gracad::FromAcad(v.position()), 0.0}; }),
                spatial->isClosed());
    polyline->SetClosed(spatial->isClosed());
    polyline->SetPolylineType(gracad::k3dPolyline);
  } else {
    delete polyline;
    return nullptr;
  }
  ReadCommonProperties(AcDbEntity::cast(object), polyline);
  return polyline;
}
