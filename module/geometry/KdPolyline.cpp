#include "module/geometry/KdPolyline.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>

#include "module/geometry/KdConstants.h"
#include "module/geometry/KdXform.h"

using kdgeo::kTolerance;
using kdgeo::kTwoPi;

namespace {

bool IsFinite(const CKdPoint& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

// Chords needed so that none lies further than chordHeight from an arc of this radius/sweep.
int ChordCount(double radius, double sweep_rad, double chordHeight_units) {
  const double q = 1.0 - chordHeight_units / std::fabs(radius);
  const double maxAngle = q <= -1.0 ? kTwoPi : 2.0 * std::acos(q);
  const double count = std::ceil(std::fabs(sweep_rad) / maxAngle);
  if (!(count >= 1.0)) return 1;
  return count >= CKdPolyline::kMaxChordsPerArc ? CKdPolyline::kMaxChordsPerArc : static_cast<int>(count);
}

}  // namespace

namespace kdgeo {

bool ArcFromBulge(const CKdPoint& p0, const CKdPoint& p1, double bulge, CKdArc& arc) {
  if (bulge == 0.0 || !std::isfinite(bulge)) return false;
  const double dx = p1.x - p0.x;
  const double dy = p1.y - p0.y;
  const double chord = std::hypot(dx, dy);
  if (!(chord > 0.0) || !std::isfinite(chord)) return false;
  // The centre lies off the chord's midpoint along its left normal by (c/2) cot(sweep/2).
  const double offset = 0.5 * chord * (1.0 - bulge * bulge) / (2.0 * bulge);
  const CKdPoint centre(0.5 * (p0.x + p1.x) - dy / chord * offset, 0.5 * (p0.y + p1.y) + dx / chord * offset, p0.z);
  const double radius = chord * (1.0 + bulge * bulge) / (4.0 * std::fabs(bulge));
  const double start = NormalizeAngle(std::atan2(p0.y - centre.y, p0.x - centre.x));
  arc = CKdArc(centre, radius, start, 4.0 * std::atan(bulge));
  return true;
}

}  // namespace kdgeo

CKdPolyline::CKdPolyline(std::vector<CKdPoint> vertices, std::vector<double> bulges, bool closed)
    : m_vertices(std::move(vertices)), m_bulges(std::move(bulges)), m_closed(closed) {
  m_bulges.resize(m_vertices.size(), 0.0);
}

void CKdPolyline::AddVertex(const CKdPoint& p, double bulge) {
  m_vertices.push_back(p);
  m_bulges.push_back(bulge);
}

bool CKdPolyline::AddLine(const CKdLine& line) {
  if (!m_vertices.empty() && !m_vertices.back().IsEqual(line.StartPoint(), kTolerance)) return false;
  if (m_vertices.empty()) AddVertex(line.StartPoint());
  m_bulges.back() = 0.0;
  AddVertex(line.EndPoint());
  return true;
}

bool CKdPolyline::AddArc(const CKdArc& arc) {
  const double sweep = std::fabs(arc.Sweep());
  if (!arc.IsValid() || sweep == 0.0 || sweep > kTwoPi + kTolerance) return false;
  if (!m_vertices.empty() && !m_vertices.back().IsEqual(arc.StartPoint(), kTolerance)) return false;
  if (m_vertices.empty()) AddVertex(arc.StartPoint());
  if (sweep >= kTwoPi - kTolerance) {
    // One bulge cannot hold a full turn: tan(pi/2).
    const double half = arc.Bulge() < 0.0 ? -1.0 : 1.0;
    m_bulges.back() = half;
    AddVertex(arc.Eval(0.5), half);
    AddVertex(arc.EndPoint());
    return true;
  }
  m_bulges.back() = arc.Bulge();
  AddVertex(arc.EndPoint());
  return true;
}

void CKdPolyline::SetClosed(bool closed) { m_closed = closed; }

bool CKdPolyline::SetBulge(std::size_t index, double bulge) {
  if (index >= m_bulges.size()) return false;
  m_bulges[index] = bulge;
  return true;
}

bool CKdPolyline::IsClosed() const { return m_closed; }
std::size_t CKdPolyline::VertexCount() const { return m_vertices.size(); }
CKdPoint CKdPolyline::Vertex(std::size_t index) const { return index < m_vertices.size() ? m_vertices[index] : CKdPoint(); }
double CKdPolyline::Bulge(std::size_t index) const { return index < m_bulges.size() ? m_bulges[index] : 0.0; }

bool CKdPolyline::IsEqual(const CKdPolyline& o) const {
  if (m_closed != o.m_closed || m_vertices.size() != o.m_vertices.size()) return false;
  for (std::size_t i = 0; i < m_vertices.size(); ++i)
    if (!m_vertices[i].IsEqual(o.m_vertices[i], kTolerance) || !(std::fabs(m_bulges[i] - o.m_bulges[i]) <= kTolerance))
      return false;
  return true;
}

std::size_t CKdPolyline::SegmentCount() const {
  const std::size_t n = m_vertices.size();
  if (n < 2) return 0;
  return m_closed ? n : n - 1;
}

bool CKdPolyline::IsArcSegment(std::size_t index) const {
  if (index >= SegmentCount()) return false;
  CKdArc arc;
  return kdgeo::ArcFromBulge(m_vertices[index], m_vertices[(index + 1) % m_vertices.size()], m_bulges[index], arc);
}

std::unique_ptr<IKdCurve> CKdPolyline::Segment(std::size_t index) const {
  if (index >= SegmentCount()) return nullptr;
  const CKdPoint& p0 = m_vertices[index];
  const CKdPoint& p1 = m_vertices[(index + 1) % m_vertices.size()];
  CKdArc arc;
  if (kdgeo::ArcFromBulge(p0, p1, m_bulges[index], arc)) return std::make_unique<CKdArc>(arc);
  return std::make_unique<CKdLine>(p0, p1);
}

double CKdPolyline::Length() const {
  double length = 0.0;
  for (std::size_t i = 0; i < SegmentCount(); ++i) length += Segment(i)->Length();
  return length;
}

bool CKdPolyline::PointAtDistance(double distance_units, CKdPoint& point) const {
  const std::size_t count = SegmentCount();
  if (count == 0 || !(distance_units >= 0.0) || distance_units > Length()) return false;
  double remaining = distance_units;
  for (std::size_t i = 0; i < count; ++i) {
    const std::unique_ptr<IKdCurve> segment = Segment(i);
    const double length = segment->Length();
    if (remaining <= length || i + 1 == count) {
      point = segment->Eval(segment->ParamAtLength(remaining));
      return true;
    }
    remaining -= length;
  }
  return false;
}

void CKdPolyline::Reverse() {
  const std::size_t n = m_vertices.size();
  if (n == 0) return;
  std::reverse(m_vertices.begin(), m_vertices.end());
  // Segment j of the reversed chain is old segment n-2-j travelled backwards; the closing
  // segment (last vertex's bulge) stays the closing one.
  std::vector<double> bulges(n);
  for (std::size_t j = 0; j + 1 < n; ++j) bulges[j] = -m_bulges[n - 2 - j];
  bulges[n - 1] = -m_bulges[n - 1];
  m_bulges = std::move(bulges);
}

void CKdPolyline::MirrorX() {
  for (CKdPoint& p : m_vertices) p.y = -p.y;
  for (double& b : m_bulges) b = -b;
}

void CKdPolyline::MirrorY() {
  for (CKdPoint& p : m_vertices) p.x = -p.x;
  for (double& b : m_bulges) b = -b;
}

CKdPolyline CKdPolyline::ToChords(double chordHeight_units) const {
  CKdPolyline chords;
  if (!(chordHeight_units > 0.0) || !std::isfinite(chordHeight_units)) return chords;
  chords.m_closed = m_closed;
  const std::size_t count = SegmentCount();
  for (std::size_t i = 0; i < count; ++i) {
    const CKdPoint& p0 = m_vertices[i];
    chords.AddVertex(p0);
    CKdArc arc;
    if (!kdgeo::ArcFromBulge(p0, m_vertices[(i + 1) % m_vertices.size()], m_bulges[i], arc)) continue;
    const int n = ChordCount(arc.Radius(), arc.Sweep(), chordHeight_units);
    for (int k = 1; k < n; ++k) chords.AddVertex(arc.Eval(static_cast<double>(k) / n));
  }
  if (!m_closed && !m_vertices.empty()) chords.AddVertex(m_vertices.back());
  return chords;
}

bool CKdPolyline::IsValid() const {
  if (m_vertices.size() < 2) return false;
  for (std::size_t i = 0; i < m_vertices.size(); ++i)
    if (!IsFinite(m_vertices[i]) || !std::isfinite(m_bulges[i])) return false;
  return std::any_of(m_vertices.begin() + 1, m_vertices.end(),
                     [&](const CKdPoint& p) { return !p.IsEqual(m_vertices.front(), kTolerance); });
}

CKdElement* CKdPolyline::CloneElement() const { return new CKdPolyline(*this); }

void CKdPolyline::Translate(const CKdVector& offset) {
  for (CKdPoint& p : m_vertices) p += offset;
}

void CKdPolyline::Rotate(const CKdPoint& about, double angle_rad) {
  for (CKdPoint& p : m_vertices) p = p.RotatedXY(about, angle_rad);
}

bool CKdPolyline::Transform(const CKdXform& xform) {
  const bool hasArcs = std::any_of(m_bulges.begin(), m_bulges.end(), [](double b) { return b != 0.0; });
  bool reflects = false;
  if (hasArcs && !xform.IsSimilarityXY(kTolerance, nullptr, &reflects)) return false;
  for (CKdPoint& p : m_vertices) p = xform.Apply(p);
  if (reflects)
    for (double& b : m_bulges) b = -b;
  return true;
}

void CKdPolyline::Scale(double factor) {
  for (CKdPoint& p : m_vertices) p = CKdPoint(p.x * factor, p.y * factor, p.z * factor);
}

void CKdPolyline::Write(std::wostream& out) const {
  out << L"CKdPolyline " << (m_closed ? L"closed" : L"open");
  for (std::size_t i = 0; i < m_vertices.size(); ++i) {
    out << (i == 0 ? L" " : L"; ");
    kdgeo::details::WritePoint(out, m_vertices[i]);
    out << L" bulge ";
    kdgeo::details::WriteNumber(out, m_bulges[i]);
  }
}

int CKdPolyline::GetType() const { return kdgeo::kTypePolyline; }

bool CKdPolyline::IsEqual(const CKdElement& other) const {
  const CKdPolyline* polyline = SameClass(*this, other);
  return polyline != nullptr && IsEqual(*polyline);
}
