// Light-weight polylines, the old-style 2D and 3D polylines and polyface meshes with their
// vertices.
#include <cmath>
#include <memory>

#include "headless/acad/ComplexVertices.h"
#include "headless/acad/ImpAccess.h"
#include "headless/acad/ImpDatabase.h"
#include "headless/acad/Pieces.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/dbpl.h"

using headless::geom::ArcOfBulge;
using headless::geom::BulgeArc;
using headless::geom::kTwoPi;

namespace {

constexpr double kParamTolerance = 1e-9;

AcGeVector3d Column(const AcGeMatrix3d& m, int c) { return {m.entry[0][c], m.entry[1][c], m.entry[2][c]}; }

AcGeVector3d TransformedNormal(const AcGeVector3d& normal, const AcGeMatrix3d& xform) {
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(normal);
  return (xform * Column(ocs, 0)).crossProduct(xform * Column(ocs, 1)).normal();
}

// The point at fraction f of the segment from a to b with the given bulge (OCS).
AcGePoint2d PointOnSegment(const AcGePoint2d& a, const AcGePoint2d& b, double bulge, double f) {
  BulgeArc arc;
  if (!ArcOfBulge(a, b, bulge, arc)) return a + (b - a) * f;
  const double angle = arc.startAngle + arc.sweep * f;
  return {arc.center.x + arc.radius * std::cos(angle), arc.center.y + arc.radius * std::sin(angle)};
}

// Splits a polyline parameter into a segment index and the fraction along it.
bool SplitParam(double param, size_t vertices, bool closed, size_t& index, double& fraction) {
  if (vertices == 0) return false;
  const double last = static_cast<double>(closed ? vertices : vertices - 1);
  if (param < -kParamTolerance || param > last + kParamTolerance) return false;
  param = std::min(std::max(param, 0.0), last);
  index = static_cast<size_t>(std::floor(param));
  if (index >= static_cast<size_t>(last) && last > 0.0) index = static_cast<size_t>(last) - 1;
  fraction = vertices == 1 ? 0.0 : param - static_cast<double>(index);
  return true;
}

// The entities a planar bulged segment explodes into: a line, or an arc in the plane's OCS.
AcDbEntity* SegmentEntity(const AcGeMatrix3d& ocs, const AcGeVector3d& normal, double elevation, const AcGePoint2d& a,
                          const AcGePoint2d& b, double bulge) {
  BulgeArc arc;
  if (!ArcOfBulge(a, b, bulge, arc)) {
    return new AcDbLine(ocs * AcGePoint3d(a.x, a.y, elevation), ocs * AcGePoint3d(b.x, b.y, elevation));
  }
  // Arcs run counter-clockwise: a clockwise segment becomes the arc from its end to its start.
  double start = arc.startAngle;
  double end = arc.startAngle + arc.sweep;
  if (arc.sweep < 0.0) std::swap(start, end);
  return new AcDbArc(ocs * AcGePoint3d(arc.center.x, arc.center.y, elevation), normal, arc.radius, start, end);
}


// World points of the live vertices of a 2D polyline, with their bulges.
struct PlanarVertices {
  std::vector<AcGePoint2d> points;
  std::vector<double> bulges;
};

PlanarVertices VerticesOf(const AcDb2dPolyline& pl) {
  PlanarVertices v;
  for (const AcDbVertex* vertex : AcDbImpAccess::live(AcDbImpAccess::vertices(pl))) {
    if (auto* v2 = AcDb2dVertex::cast(vertex)) {
      v.points.push_back({v2->position().x, v2->position().y});
      v.bulges.push_back(v2->bulge());
    }
  }
  return v;
}

std::vector<AcGePoint3d> PointsOf(const AcDb3dPolyline& pl) {
  std::vector<AcGePoint3d> points;
  for (const AcDbVertex* vertex : AcDbImpAccess::live(AcDbImpAccess::vertices(pl)))
    if (auto* v = AcDb3dPolylineVertex::cast(vertex)) points.push_back(v->position());
  return points;
}

}  // namespace

// --- Light-weight polyline ----------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbPolyline, AcDbCurve, L"LWPOLYLINE")

AcDbPolyline::AcDbPolyline(unsigned int num_verts) { m_vertices.reserve(num_verts); }
AcDbPolyline::~AcDbPolyline() = default;

Acad::ErrorStatus AcDbPolyline::addVertexAt(unsigned int index, const AcGePoint2d& pt, double bulge, double startWidth,
                                            double endWidth) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (index > m_vertices.size()) return Acad::eInvalidIndex;
  const Vertex v{pt, bulge, startWidth < 0.0 ? m_constantWidth : startWidth,
                 endWidth < 0.0 ? m_constantWidth : endWidth};
  m_vertices.insert(m_vertices.begin() + index, v);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::removeVertexAt(unsigned int index) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (index >= m_vertices.size()) return Acad::eInvalidIndex;
  m_vertices.erase(m_vertices.begin() + index);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint2d& pt) const {
  if (index >= m_vertices.size()) return Acad::eInvalidIndex;
  pt = m_vertices[index].point;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getPointAt(unsigned int index, AcGePoint3d& pt) const {
  if (index >= m_vertices.size()) return Acad::eInvalidIndex;
  const AcGePoint2d& p = m_vertices[index].point;
  pt = AcGeMatrix3d::planeToWorld(m_normal) * AcGePoint3d(p.x, p.y, m_elevation);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setPointAt(unsigned int index, const AcGePoint2d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (index >= m_vertices.size()) return Acad::eInvalidIndex;
  m_vertices[index].point = pt;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getBulgeAt(unsigned int index, double& bulge) const {
  if (index >= m_vertices.size()) return Acad::eInvalidIndex;
  bulge = m_vertices[index].bulge;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setBulgeAt(unsigned int index, double bulge) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (index >= m_vertices.size()) return Acad::eInvalidIndex;
  m_vertices[index].bulge = bulge;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const {
  if (index >= m_vertices.size()) return Acad::eInvalidIndex;
  startWidth = m_vertices[index].startWidth;
  endWidth = m_vertices[index].endWidth;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setWidthsAt(unsigned int index, double startWidth, double endWidth) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (index >= m_vertices.size()) return Acad::eInvalidIndex;
  m_vertices[index].startWidth = startWidth;
  m_vertices[index].endWidth = endWidth;
  return Acad::eOk;
}

AcDbPolyline::SegType AcDbPolyline::segType(unsigned int index) const {
  const size_t n = m_vertices.size();
  if (index >= n) return kEmpty;
  if (n == 1) return kPoint;
  if (!m_closed && index == n - 1) return kEmpty;
  const Vertex& a = m_vertices[index];
  const Vertex& b = m_vertices[(index + 1) % n];
  if (a.point.isEqualTo(b.point)) return kCoincident;
  return a.bulge != 0.0 ? kArc : kLine;
}

void AcDbPolyline::reset(Adesk::Boolean reuse, unsigned int newSize) {
  if (checkWriteEnabled() != Acad::eOk) return;
  if (!reuse) {
    m_vertices.clear();
  } else if (newSize < m_vertices.size()) {
    m_vertices.resize(newSize);
  }
}

void AcDbPolyline::setClosed(Adesk::Boolean closed) {
  if (checkWriteEnabled() == Acad::eOk) m_closed = closed;
}
void AcDbPolyline::setElevation(double elev) {
  if (checkWriteEnabled() == Acad::eOk) m_elevation = elev;
}
void AcDbPolyline::setNormal(const AcGeVector3d& nrm) {
  if (checkWriteEnabled() == Acad::eOk && !nrm.isZeroLength()) m_normal = nrm.normal();
}
Acad::ErrorStatus AcDbPolyline::setThickness(double thickness) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_thickness = thickness;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getConstantWidth(double& width) const {
  width = m_constantWidth;
  for (const Vertex& v : m_vertices)
    if (v.startWidth != m_vertices.front().startWidth || v.endWidth != v.startWidth) return Acad::eNotApplicable;
  if (!m_vertices.empty()) width = m_vertices.front().startWidth;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::setConstantWidth(double width) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (width < 0.0) return Acad::eInvalidInput;
  m_constantWidth = width;
  for (Vertex& v : m_vertices) v.startWidth = v.endWidth = width;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getStartParam(double& param) const {
  if (m_vertices.empty()) return Acad::eDegenerateGeometry;
  param = 0.0;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbPolyline::getEndParam(double& param) const {
  if (m_vertices.empty()) return Acad::eDegenerateGeometry;
  param = static_cast<double>(m_closed ? m_vertices.size() : m_vertices.size() - 1);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbPolyline::getStartPoint(AcGePoint3d& point) const {
  if (m_vertices.empty()) return Acad::eDegenerateGeometry;
  return getPointAt(0u, point);
}
Acad::ErrorStatus AcDbPolyline::getEndPoint(AcGePoint3d& point) const {
  if (m_vertices.empty()) return Acad::eDegenerateGeometry;
  return getPointAt(m_closed ? 0u : numVerts() - 1, point);
}
Acad::ErrorStatus AcDbPolyline::getPointAtParam(double param, AcGePoint3d& point) const {
  size_t i = 0;
  double f = 0.0;
  if (!SplitParam(param, m_vertices.size(), m_closed, i, f)) return Acad::eInvalidInput;
  const Vertex& a = m_vertices[i];
  const Vertex& b = m_vertices[(i + 1) % m_vertices.size()];
  const AcGePoint2d p = m_vertices.size() == 1 ? a.point : PointOnSegment(a.point, b.point, a.bulge, f);
  point = AcGeMatrix3d::planeToWorld(m_normal) * AcGePoint3d(p.x, p.y, m_elevation);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::getGeomExtents(AcDbExtents& extents) const {
  return headless::geom::ExtentsOf(*this, extents);
}

Acad::ErrorStatus AcDbPolyline::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!xform.isUniScaledOrtho()) return Acad::eCannotScaleNonUniformly;
  const AcGeMatrix3d from = AcGeMatrix3d::planeToWorld(m_normal);
  const AcGeVector3d normal = TransformedNormal(m_normal, xform);
  const AcGeMatrix3d to = AcGeMatrix3d::worldToPlane(normal);
  const double scale = xform.scale();
  double elevation = m_elevation;
  for (Vertex& v : m_vertices) {
    const AcGePoint3d p = to * (xform * (from * AcGePoint3d(v.point.x, v.point.y, m_elevation)));
    v.point.set(p.x, p.y);
    v.startWidth *= scale;
    v.endWidth *= scale;
    elevation = p.z;
  }
  if (m_vertices.empty()) elevation = (to * (xform * (from * AcGePoint3d(0.0, 0.0, m_elevation)))).z;
  m_elevation = elevation;
  m_normal = normal;
  m_constantWidth *= scale;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbPolyline::explode(AcDbVoidPtrArray& entitySet) const {
  const size_t n = m_vertices.size();
  if (n < 2) return Acad::eNotApplicable;
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(m_normal);
  const size_t segments = m_closed ? n : n - 1;
  for (size_t i = 0; i < segments; ++i) {
    AcDbEntity* piece = SegmentEntity(ocs, m_normal, m_elevation, m_vertices[i].point, m_vertices[(i + 1) % n].point,
                                      m_vertices[i].bulge);
    headless::CopyEntityProperties(*this, piece);
    entitySet.append(static_cast<AcRxObject*>(piece));
  }
  return Acad::eOk;
}

AcRxObject* AcDbPolyline::clone() const { return new AcDbPolyline(*this); }

// --- 2D polyline --------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDb2dPolyline, AcDbCurve, L"POLYLINE")

AcDb2dPolyline::AcDb2dPolyline() = default;

AcDb2dPolyline::AcDb2dPolyline(AcDb::Poly2dType type, AcGePoint3dArray& vertices, double elevation,
                               Adesk::Boolean closed, double defStartWidth, double defEndWidth,
                               AcGeDoubleArray* bulges)
    : m_type(type), m_elevation(elevation), m_defStartWidth(defStartWidth), m_defEndWidth(defEndWidth),
      m_closed(closed) {
  for (int i = 0; i < vertices.length(); ++i) {
    const double bulge = bulges != nullptr && i < bulges->length() ? (*bulges)[i] : 0.0;
    const AcGePoint3d p(vertices[i].x, vertices[i].y, elevation);
    m_vertices.pending.push_back(new AcDb2dVertex(p, bulge, defStartWidth, defEndWidth));
  }
}

AcDb2dPolyline::~AcDb2dPolyline() = default;

Acad::ErrorStatus AcDb2dPolyline::setPolyType(AcDb::Poly2dType type) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_type = type;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dPolyline::setElevation(double elev) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_elevation = elev;
  for (AcDbVertex* v : headless::WritableVertices(m_vertices)) {
    auto* v2 = static_cast<AcDb2dVertex*>(v);
    const AcGePoint3d p = v2->position();
    AcDbImpAccess::setPositionQuietly(*v2, AcGePoint3d(p.x, p.y, elev));
  }
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dPolyline::setNormal(const AcGeVector3d& nrm) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (nrm.isZeroLength()) return Acad::eInvalidInput;
  m_normal = nrm.normal();
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dPolyline::setThickness(double val) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_thickness = val;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dPolyline::setDefaultStartWidth(double w) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_defStartWidth = w;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dPolyline::setDefaultEndWidth(double w) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_defEndWidth = w;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dPolyline::makeClosed() { return setClosed(true); }
Acad::ErrorStatus AcDb2dPolyline::makeOpen() { return setClosed(false); }
Acad::ErrorStatus AcDb2dPolyline::setClosed(Adesk::Boolean closed) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_closed = closed;
  return Acad::eOk;
}

Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDb2dVertex* pNewVertex) {
  return headless::AppendVertex(*this, m_vertices, pNewVertex, nullptr);
}
Acad::ErrorStatus AcDb2dPolyline::appendVertex(AcDbObjectId& objId, AcDb2dVertex* pNewVertex) {
  return headless::AppendVertex(*this, m_vertices, pNewVertex, &objId);
}

AcDbObjectIterator* AcDb2dPolyline::vertexIterator() const {
  if (objectId().isNull()) return nullptr;
  return AcDbImpDatabase::newObjectIterator(m_vertices.ids);
}

AcGePoint3d AcDb2dPolyline::vertexPosition(const AcDb2dVertex& vert) const {
  const AcGePoint3d p = vert.position();
  return AcGeMatrix3d::planeToWorld(m_normal) * AcGePoint3d(p.x, p.y, m_elevation);
}

Acad::ErrorStatus AcDb2dPolyline::getStartParam(double& param) const {
  if (AcDbImpAccess::live(m_vertices).empty()) return Acad::eDegenerateGeometry;
  param = 0.0;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dPolyline::getEndParam(double& param) const {
  const size_t n = AcDbImpAccess::live(m_vertices).size();
  if (n == 0) return Acad::eDegenerateGeometry;
  param = static_cast<double>(m_closed ? n : n - 1);
  return Acad::eOk;
}
Acad::ErrorStatus AcDb2dPolyline::getStartPoint(AcGePoint3d& point) const { return getPointAtParam(0.0, point); }
Acad::ErrorStatus AcDb2dPolyline::getEndPoint(AcGePoint3d& point) const {
  double end = 0.0;
  if (Acad::ErrorStatus es = getEndParam(end); es != Acad::eOk) return es;
  return getPointAtParam(end, point);
}
Acad::ErrorStatus AcDb2dPolyline::getPointAtParam(double param, AcGePoint3d& point) const {
  const PlanarVertices v = VerticesOf(*this);
  size_t i = 0;
  double f = 0.0;
  if (!SplitParam(param, v.points.size(), m_closed, i, f)) return Acad::eInvalidInput;
  const size_t n = v.points.size();
  const AcGePoint2d p = n == 1 ? v.points[0] : PointOnSegment(v.points[i], v.points[(i + 1) % n], v.bulges[i], f);
  point = AcGeMatrix3d::planeToWorld(m_normal) * AcGePoint3d(p.x, p.y, m_elevation);
  return Acad::eOk;
}

Acad::ErrorStatus AcDb2dPolyline::getGeomExtents(AcDbExtents& extents) const {
  return headless::geom::ExtentsOf(*this, extents);
}

Acad::ErrorStatus AcDb2dPolyline::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!xform.isUniScaledOrtho()) return Acad::eCannotScaleNonUniformly;
  const AcGeMatrix3d from = AcGeMatrix3d::planeToWorld(m_normal);
  const AcGeVector3d normal = TransformedNormal(m_normal, xform);
  const AcGeMatrix3d to = AcGeMatrix3d::worldToPlane(normal);
  double elevation = (to * (xform * (from * AcGePoint3d(0.0, 0.0, m_elevation)))).z;
  for (AcDbVertex* v : headless::WritableVertices(m_vertices)) {
    auto* v2 = static_cast<AcDb2dVertex*>(v);
    const AcGePoint3d old = v2->position();
    const AcGePoint3d p = to * (xform * (from * AcGePoint3d(old.x, old.y, m_elevation)));
    AcDbImpAccess::setPositionQuietly(*v2, p);
    elevation = p.z;
  }
  m_elevation = elevation;
  m_normal = normal;
  return Acad::eOk;
}

Acad::ErrorStatus AcDb2dPolyline::explode(AcDbVoidPtrArray& entitySet) const {
  const PlanarVertices v = VerticesOf(*this);
  const size_t n = v.points.size();
  if (n < 2) return Acad::eNotApplicable;
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(m_normal);
  const size_t segments = m_closed ? n : n - 1;
  for (size_t i = 0; i < segments; ++i) {
    AcDbEntity* piece = SegmentEntity(ocs, m_normal, m_elevation, v.points[i], v.points[(i + 1) % n], v.bulges[i]);
    headless::CopyEntityProperties(*this, piece);
    entitySet.append(static_cast<AcRxObject*>(piece));
  }
  return Acad::eOk;
}

AcRxObject* AcDb2dPolyline::clone() const { return new AcDb2dPolyline(*this); }
Acad::ErrorStatus AcDb2dPolyline::addOwnedObjects() { return headless::AddVertices(*this, m_vertices); }
Acad::ErrorStatus AcDb2dPolyline::subErase(Adesk::Boolean erasing) {
  headless::EraseVertices(m_vertices, erasing);
  return Acad::eOk;
}

// --- 3D polyline --------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDb3dPolyline, AcDbCurve, L"POLYLINE")

AcDb3dPolyline::AcDb3dPolyline() = default;
AcDb3dPolyline::AcDb3dPolyline(AcDb::Poly3dType type, AcGePoint3dArray& vertices, Adesk::Boolean closed)
    : m_type(type), m_closed(closed) {
  for (const AcGePoint3d& p : vertices) m_vertices.pending.push_back(new AcDb3dPolylineVertex(p));
}
AcDb3dPolyline::~AcDb3dPolyline() = default;

Acad::ErrorStatus AcDb3dPolyline::setPolyType(AcDb::Poly3dType type) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_type = type;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb3dPolyline::makeClosed() { return setClosed(true); }
Acad::ErrorStatus AcDb3dPolyline::makeOpen() { return setClosed(false); }
Acad::ErrorStatus AcDb3dPolyline::setClosed(Adesk::Boolean closed) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_closed = closed;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDb3dPolylineVertex* pNewVertex) {
  return headless::AppendVertex(*this, m_vertices, pNewVertex, nullptr);
}
Acad::ErrorStatus AcDb3dPolyline::appendVertex(AcDbObjectId& objId, AcDb3dPolylineVertex* pNewVertex) {
  return headless::AppendVertex(*this, m_vertices, pNewVertex, &objId);
}
AcDbObjectIterator* AcDb3dPolyline::vertexIterator() const {
  if (objectId().isNull()) return nullptr;
  return AcDbImpDatabase::newObjectIterator(m_vertices.ids);
}

Acad::ErrorStatus AcDb3dPolyline::getStartParam(double& param) const {
  if (AcDbImpAccess::live(m_vertices).empty()) return Acad::eDegenerateGeometry;
  param = 0.0;
  return Acad::eOk;
}
Acad::ErrorStatus AcDb3dPolyline::getEndParam(double& param) const {
  const size_t n = AcDbImpAccess::live(m_vertices).size();
  if (n == 0) return Acad::eDegenerateGeometry;
  param = static_cast<double>(m_closed ? n : n - 1);
  return Acad::eOk;
}
Acad::ErrorStatus AcDb3dPolyline::getStartPoint(AcGePoint3d& point) const { return getPointAtParam(0.0, point); }
Acad::ErrorStatus AcDb3dPolyline::getEndPoint(AcGePoint3d& point) const {
  double end = 0.0;
  if (Acad::ErrorStatus es = getEndParam(end); es != Acad::eOk) return es;
  return getPointAtParam(end, point);
}
Acad::ErrorStatus AcDb3dPolyline::getPointAtParam(double param, AcGePoint3d& point) const {
  const std::vector<AcGePoint3d> p = PointsOf(*this);
  size_t i = 0;
  double f = 0.0;
  if (!SplitParam(param, p.size(), m_closed, i, f)) return Acad::eInvalidInput;
  point = p.size() == 1 ? p[0] : p[i] + (p[(i + 1) % p.size()] - p[i]) * f;
  return Acad::eOk;
}

Acad::ErrorStatus AcDb3dPolyline::getGeomExtents(AcDbExtents& extents) const {
  return headless::geom::ExtentsOf(*this, extents);
}

Acad::ErrorStatus AcDb3dPolyline::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  for (AcDbVertex* v : headless::WritableVertices(m_vertices)) {
    auto* v3 = static_cast<AcDb3dPolylineVertex*>(v);
    AcGePoint3d p = v3->position();
    AcDbImpAccess::setPositionQuietly(*v3, p.transformBy(xform));
  }
  return Acad::eOk;
}

Acad::ErrorStatus AcDb3dPolyline::explode(AcDbVoidPtrArray& entitySet) const {
  const std::vector<AcGePoint3d> p = PointsOf(*this);
  if (p.size() < 2) return Acad::eNotApplicable;
  const size_t segments = m_closed ? p.size() : p.size() - 1;
  for (size_t i = 0; i < segments; ++i) {
    auto* line = new AcDbLine(p[i], p[(i + 1) % p.size()]);
    headless::CopyEntityProperties(*this, line);
    entitySet.append(static_cast<AcRxObject*>(line));
  }
  return Acad::eOk;
}

AcRxObject* AcDb3dPolyline::clone() const { return new AcDb3dPolyline(*this); }
Acad::ErrorStatus AcDb3dPolyline::addOwnedObjects() { return headless::AddVertices(*this, m_vertices); }
Acad::ErrorStatus AcDb3dPolyline::subErase(Adesk::Boolean erasing) {
  headless::EraseVertices(m_vertices, erasing);
  return Acad::eOk;
}
