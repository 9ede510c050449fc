#include "module/geometry/KdLine.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <utility>

#include "module/geometry/KdConstants.h"
#include "module/geometry/KdXform.h"

using kdgeo::kTolerance;

namespace {

bool IsFinite(const CKdPoint& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

}  // namespace

void CKdLine::SetStart(const CKdPoint& start) { m_start = start; }
void CKdLine::SetEnd(const CKdPoint& end) { m_end = end; }

bool CKdLine::IsEqual(const CKdLine& o) const {
  return m_start.IsEqual(o.m_start, kTolerance) && m_end.IsEqual(o.m_end, kTolerance);
}

int CKdLine::GetClassConstant() const { return kdgeo::kLineClassConstant; }

bool CKdLine::IsValid() const {
  return IsFinite(m_start) && IsFinite(m_end) && !m_start.IsEqual(m_end, kTolerance);
}

CKdElement* CKdLine::CloneElement() const { return new CKdLine(*this); }

void CKdLine::Translate(const CKdVector& offset) {
  m_start += offset;
  m_end += offset;
}

void CKdLine::Rotate(const CKdPoint& about, double angle_rad) {
  m_start = m_start.RotatedXY(about, angle_rad);
  m_end = m_end.RotatedXY(about, angle_rad);
}

bool CKdLine::Transform(const CKdXform& xform) {
  m_start = xform.Apply(m_start);
  m_end = xform.Apply(m_end);
  return true;
}

void CKdLine::Scale(double factor) {
  m_start = CKdPoint(m_start.x * factor, m_start.y * factor, m_start.z * factor);
  m_end = CKdPoint(m_end.x * factor, m_end.y * factor, m_end.z * factor);
}

void CKdLine::Write(std::wostream& out) const {
  out << L"CKdLine from ";
  kdgeo::details::WritePoint(out, m_start);
  out << L" to ";
  kdgeo::details::WritePoint(out, m_end);
}

int CKdLine::GetType() const { return kdgeo::kTypeLine; }

bool CKdLine::IsEqual(const CKdElement& other) const {
  const CKdLine* line = SameClass(*this, other);
  return line != nullptr && IsEqual(*line);
}

bool CKdLine::IsNotEqual(const CKdElement& other) const { return !IsEqual(other); }

CKdPoint CKdLine::Eval(double t) const {
  return {m_start.x + t * (m_end.x - m_start.x), m_start.y + t * (m_end.y - m_start.y),
          m_start.z + t * (m_end.z - m_start.z)};
}

CKdPoint CKdLine::StartPoint() const { return m_start; }
CKdPoint CKdLine::EndPoint() const { return m_end; }
CKdVector CKdLine::StartTangent() const { return Tangent(0.0); }
CKdVector CKdLine::EndTangent() const { return Tangent(1.0); }
double CKdLine::Length() const { return m_start.DistanceTo(m_end); }
void CKdLine::Reverse() { std::swap(m_start, m_end); }

double CKdLine::ClosestParam(const CKdPoint& p) const {
  const CKdVector d = m_end - m_start;
  const double squared = d.Dot(d);
  if (!(squared > 0.0) || !std::isfinite(squared)) return 0.0;
  const double t = (p - m_start).Dot(d) / squared;
  return std::isnan(t) ? 0.0 : std::clamp(t, 0.0, 1.0);
}

IKdCurve* CKdLine::Clone() const { return new CKdLine(*this); }

CKdVector CKdLine::Tangent(double /*t*/) const { return (m_end - m_start).Normalized(); }

double CKdLine::ParamAtLength(double distance_units) const {
  const double length = Length();
  if (!(length > 0.0) || std::isnan(distance_units)) return 0.0;
  return std::clamp(distance_units / length, 0.0, 1.0);
}

void CKdLine::MirrorX() {
  m_start.y = -m_start.y;
  m_end.y = -m_end.y;
}

void CKdLine::MirrorY() {
  m_start.x = -m_start.x;
  m_end.x = -m_end.x;
}
