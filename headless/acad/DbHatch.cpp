// Hatches: loops of lines and circular arcs in the hatch's plane.
#include <algorithm>
#include <cmath>
#include <cwctype>

#include "headless/acad/Pieces.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/dbhatch.h"

using headless::geom::ArcOfBulge;
using headless::geom::BulgeArc;

namespace {

AcGeVector3d Column(const AcGeMatrix3d& m, int c) { return {m.entry[0][c], m.entry[1][c], m.entry[2][c]}; }

AcDbHatch::Edge LineEdge(const AcGePoint2d& a, const AcGePoint2d& b) { return {false, a, b, {}, 0.0, 0.0, 0.0}; }

AcDbHatch::Edge ArcEdge(const AcGePoint2d& center, double radius, double startAngle, double sweep) {
  const AcGePoint2d a(center.x + radius * std::cos(startAngle), center.y + radius * std::sin(startAngle));
  const double end = startAngle + sweep;
  const AcGePoint2d b(center.x + radius * std::cos(end), center.y + radius * std::sin(end));
  return {true, a, b, center, radius, startAngle, sweep};
}

// Size of a loop, for a tolerance that scales with it.
double LoopSize(const AcDbHatch::Loop& loop) {
  double size = 0.0;
  for (const auto& e : loop.edges)
    size = std::max({size, std::fabs(e.start.x), std::fabs(e.start.y), std::fabs(e.end.x), std::fabs(e.end.y)});
  return std::max(size, 1.0);
}

bool Joined(const AcGePoint2d& a, const AcGePoint2d& b, double size) {
  return a.distanceTo(b) <= std::max(AcGeContext::gTol.equalPoint(), 1e-9) * size;
}

}  // namespace

KD_ACRX_DEFINE_MEMBERS(AcDbHatch, AcDbEntity, L"HATCH")

AcDbHatch::AcDbHatch() = default;
AcDbHatch::~AcDbHatch() = default;

Acad::ErrorStatus AcDbHatch::setPattern(HatchPatternType patType, const ACHAR* patName) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (patName == nullptr || *patName == L'\0') return Acad::eInvalidInput;
  if (patType < kUserDefined || patType > kCustomDefined) return Acad::eInvalidInput;
  m_patternType = patType;
  m_patternName = patName;
  return Acad::eOk;
}

bool AcDbHatch::isSolidFill() const {
  std::wstring upper;
  for (wchar_t c : m_patternName) upper.push_back(static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c))));
  return upper == L"SOLID";
}

Acad::ErrorStatus AcDbHatch::setPatternAngle(double angle) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_patternAngle = angle;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbHatch::setPatternScale(double scale) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(scale > 0.0)) return Acad::eInvalidInput;
  m_patternScale = scale;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbHatch::setHatchStyle(HatchStyle hstyle) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (hstyle < kNormal || hstyle > kIgnore) return Acad::eInvalidInput;
  m_style = hstyle;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbHatch::setElevation(double elevation) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_elevation = elevation;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbHatch::setNormal(const AcGeVector3d& normal) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (normal.isZeroLength()) return Acad::eInvalidInput;
  m_normal = normal.normal();
  return Acad::eOk;
}

Adesk::Int32 AcDbHatch::loopTypeAt(int loopIndex) const {
  return loopIndex >= 0 && loopIndex < numLoops() ? m_loops[static_cast<size_t>(loopIndex)].type : kDefault;
}

Acad::ErrorStatus AcDbHatch::makeLoop(Adesk::Int32 loopType, const AcGeVoidPointerArray& edgePtrs,
                                      const AcGeIntArray& edgeTypes, Loop& loop) {
  if (edgePtrs.isEmpty() || edgePtrs.length() != edgeTypes.length()) return Acad::eInvalidInput;
  if ((loopType & kPolyline) != 0) return Acad::eInvalidInput;
  loop.type = loopType;
  loop.edges.clear();
  for (int i = 0; i < edgePtrs.length(); ++i) {
    if (edgePtrs[i] == nullptr) return Acad::eInvalidInput;
    switch (edgeTypes[i]) {
      case kLine: {
        const auto* seg = static_cast<const AcGeLineSeg2d*>(edgePtrs[i]);
        loop.edges.push_back(LineEdge(seg->startPoint(), seg->endPoint()));
        break;
      }
      case kCirArc: {
        // Angles of the edge are measured from its reference vector, clockwise for a clockwise
        // arc; the loop keeps true angles and a signed sweep.
        const auto* arc = static_cast<const AcGeCircArc2d*>(edgePtrs[i]);
        const double ref = arc->refVec().angle();
        const double sweep = arc->endAng() - arc->startAng();
        loop.edges.push_back(arc->isClockWise() ? ArcEdge(arc->center(), arc->radius(), ref - arc->startAng(), -sweep)
                                                : ArcEdge(arc->center(), arc->radius(), ref + arc->startAng(), sweep));
        break;
      }
      case kEllArc:
      case kSpline:
        return Acad::eNotImplementedYet;
      default:
        return Acad::eInvalidInput;
    }
  }
  return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::appendLoop(Adesk::Int32 loopType, const AcGeVoidPointerArray& edgePtrs,
                                        const AcGeIntArray& edgeTypes) {
  return insertLoopAt(numLoops(), loopType, edgePtrs, edgeTypes);
}

Acad::ErrorStatus AcDbHatch::insertLoopAt(int loopIndex, Adesk::Int32 loopType, const AcGeVoidPointerArray& edgePtrs,
                                          const AcGeIntArray& edgeTypes) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (loopIndex < 0 || loopIndex > numLoops()) return Acad::eInvalidIndex;
  Loop loop;
  if (Acad::ErrorStatus es = makeLoop(loopType, edgePtrs, edgeTypes, loop); es != Acad::eOk) return es;
  m_loops.insert(m_loops.begin() + loopIndex, std::move(loop));
  return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::appendLoop(Adesk::Int32 loopType, const AcGePoint2dArray& vertices,
                                        const AcGeDoubleArray& bulges) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (vertices.length() < 2 || (!bulges.isEmpty() && bulges.length() != vertices.length()))
    return Acad::eInvalidInput;
  Loop loop;
  loop.type = loopType | kPolyline;
  const int n = vertices.length();
  for (int i = 0; i < n; ++i) {
    const AcGePoint2d& a = vertices[i];
    const AcGePoint2d& b = vertices[(i + 1) % n];
    if (i == n - 1 && a.isEqualTo(b)) break;  // a closing vertex repeated
    BulgeArc arc;
    if (!bulges.isEmpty() && ArcOfBulge(a, b, bulges[i], arc)) {
      loop.edges.push_back(ArcEdge(arc.center, arc.radius, arc.startAngle, arc.sweep));
    } else {
      loop.edges.push_back(LineEdge(a, b));
    }
  }
  m_loops.push_back(std::move(loop));
  return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::getLoopAt(int loopIndex, Adesk::Int32& loopType, AcGeVoidPointerArray& edgePtrs,
                                       AcGeIntArray& edgeTypes) const {
  if (loopIndex < 0 || loopIndex >= numLoops()) return Acad::eInvalidIndex;
  const Loop& loop = m_loops[static_cast<size_t>(loopIndex)];
  loopType = loop.type;
  for (const Edge& e : loop.edges) {
    if (!e.isArc) {
      edgePtrs.append(new AcGeLineSeg2d(e.start, e.end));
      edgeTypes.append(kLine);
    } else if (e.sweep >= 0.0) {
      edgePtrs.append(new AcGeCircArc2d(e.center, e.radius, e.startAngle, e.startAngle + e.sweep));
      edgeTypes.append(kCirArc);
    } else {
      edgePtrs.append(new AcGeCircArc2d(e.center, e.radius, -e.startAngle, -e.startAngle - e.sweep,
                                        AcGeVector2d::kXAxis, true));
      edgeTypes.append(kCirArc);
    }
  }
  return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::getLoopAt(int loopIndex, Adesk::Int32& loopType, AcGePoint2dArray& vertices,
                                       AcGeDoubleArray& bulges) const {
  if (loopIndex < 0 || loopIndex >= numLoops()) return Acad::eInvalidIndex;
  const Loop& loop = m_loops[static_cast<size_t>(loopIndex)];
  const double size = LoopSize(loop);
  for (size_t i = 0; i + 1 < loop.edges.size(); ++i)
    if (!Joined(loop.edges[i].end, loop.edges[i + 1].start, size)) return Acad::eInvalidInput;
  loopType = loop.type;
  for (const Edge& e : loop.edges) {
    vertices.append(e.start);
    bulges.append(e.isArc ? std::tan(e.sweep / 4.0) : 0.0);
  }
  return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::removeLoopAt(int loopIndex) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (loopIndex < 0 || loopIndex >= numLoops()) return Acad::eInvalidIndex;
  m_loops.erase(m_loops.begin() + loopIndex);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::evaluateHatch(bool) {
  if (m_loops.empty()) return Acad::eInvalidInput;
  for (const Loop& loop : m_loops) {
    const double size = LoopSize(loop);
    for (size_t i = 0; i < loop.edges.size(); ++i)
      if (!Joined(loop.edges[i].end, loop.edges[(i + 1) % loop.edges.size()].start, size)) return Acad::eInvalidInput;
  }
  return Acad::eOk;
}

Acad::ErrorStatus AcDbHatch::getGeomExtents(AcDbExtents& extents) const {
  return headless::geom::ExtentsOf(*this, extents);
}

Acad::ErrorStatus AcDbHatch::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!xform.isUniScaledOrtho()) return Acad::eCannotScaleNonUniformly;
  const AcGeMatrix3d from = AcGeMatrix3d::planeToWorld(m_normal);
  const AcGeVector3d normal = (xform * Column(from, 0)).crossProduct(xform * Column(from, 1)).normal();
  const AcGeMatrix3d to = AcGeMatrix3d::worldToPlane(normal);
  const double scale = xform.scale();
  auto move = [&](const AcGePoint2d& p) {
    const AcGePoint3d q = to * (xform * (from * AcGePoint3d(p.x, p.y, m_elevation)));
    return AcGePoint2d(q.x, q.y);
  };
  for (Loop& loop : m_loops) {
    for (Edge& e : loop.edges) {
      e.start = move(e.start);
      e.end = move(e.end);
      if (e.isArc) {
        e.center = move(e.center);
        e.radius *= scale;
        e.startAngle = std::atan2(e.start.y - e.center.y, e.start.x - e.center.x);
      }
    }
  }
  m_elevation = (to * (xform * (from * AcGePoint3d(0.0, 0.0, m_elevation)))).z;
  m_normal = normal;
  m_patternScale *= scale;
  return Acad::eOk;
}

AcRxObject* AcDbHatch::clone() const { return new AcDbHatch(*this); }
