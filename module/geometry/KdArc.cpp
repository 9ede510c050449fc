#include "module/geometry/KdArc.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "module/geometry/KdConstants.h"
#include "module/geometry/KdXform.h"

using kdgeo::kPi;
using kdgeo::kTolerance;
using kdgeo::kTwoPi;

CKdArc::CKdArc(const CKdPoint& centre, double radius, double startAngle_rad, double sweep_rad)
    : m_center(centre), m_radius(radius), m_startAngle(startAngle_rad), m_sweep(sweep_rad) {
  if (m_sweep > kTwoPi) m_sweep = std::fmod(m_sweep, kTwoPi);
  m_startAngle = std::fmod(m_startAngle, kTwoPi);
}

CKdArc::CKdArc(const CKdPoint& centre, double radius, double startAngle_rad, double endAngle_rad,
               bool counterClockwise)
    : CKdArc(centre, radius, startAngle_rad,
             kdgeo::SweepFromAngles(startAngle_rad, endAngle_rad, counterClockwise)) {}

void CKdArc::SetCenter(double x, double y, double z) { m_center = CKdPoint(x, y, z); }
void CKdArc::SetCenter(const CKdPoint& centre) { m_center = centre; }
void CKdArc::SetRadius(double radius) { m_radius = radius; }
void CKdArc::SetStartAngle(double angle_rad) { m_startAngle = kdgeo::ReduceKeepingFullTurn(angle_rad); }
void CKdArc::SetSweep(double sweep_rad) { m_sweep = kdgeo::ReduceKeepingFullTurn(sweep_rad); }

void CKdArc::SetDirection(int direction) {
  if (direction == 1) m_sweep = std::fabs(m_sweep);
  if (direction == -1) m_sweep = -std::fabs(m_sweep);
}

CKdPoint CKdArc::Center() const { return m_center; }
double CKdArc::Radius() const { return m_radius; }
double CKdArc::StartAngle() const { return m_startAngle; }
double CKdArc::EndAngle() const { return kdgeo::ReduceKeepingFullTurn(m_startAngle + m_sweep); }
bool CKdArc::IsCounterClockwise() const { return m_sweep > 0.0; }
bool CKdArc::IsClockwise() const { return m_sweep < 0.0; }
int CKdArc::Direction() const { return m_sweep > 0.0 ? 1 : -1; }
double CKdArc::Sweep() const { return m_sweep; }

double CKdArc::Bulge() const {
  const double bulge = std::tan(std::fabs(m_sweep) * 0.25);
  return m_sweep < 0.0 ? -bulge : bulge;
}

bool CKdArc::IsEqual(const CKdArc& o) const {
  return m_center.IsEqual(o.m_center, kTolerance) && std::fabs(m_radius - o.m_radius) <= kTolerance &&
         std::fabs(m_startAngle - o.m_startAngle) <= kTolerance && std::fabs(m_sweep - o.m_sweep) <= kTolerance;
}

bool CKdArc::IsNotEqual(const CKdArc& other) const { return !IsEqual(other); }

bool CKdArc::IsValid() const {
  return std::isfinite(m_center.x) && std::isfinite(m_center.y) && std::isfinite(m_center.z) &&
         std::isfinite(m_startAngle) && std::isfinite(m_sweep) && std::isfinite(m_radius) &&
         std::fabs(m_radius) > kTolerance;
}

CKdElement* CKdArc::CloneElement() const { return new CKdArc(*this); }

void CKdArc::Translate(const CKdVector& offset) { m_center += offset; }

void CKdArc::Rotate(const CKdPoint& about, double angle_rad) {
  m_center = m_center.RotatedXY(about, angle_rad);
  m_startAngle = kdgeo::NormalizeAngle(m_startAngle + angle_rad);
}

bool CKdArc::Transform(const CKdXform& xform) {
  double scale = 0.0;
  bool reflects = false;
  if (!xform.IsSimilarityXY(kTolerance, &scale, &reflects)) return false;
  const CKdVector start = xform.Apply(CKdVector(std::cos(m_startAngle), std::sin(m_startAngle), 0.0));
  m_center = xform.Apply(m_center);
  m_radius *= scale;
  m_startAngle = kdgeo::NormalizeAngle(std::atan2(start.y, start.x));
  if (reflects) m_sweep = -m_sweep;
  return true;
}

void CKdArc::Scale(double factor) {
  m_center.x *= factor;
  m_center.y *= factor;
  m_center.z *= factor;
  m_radius *= factor;
}

void CKdArc::Write(std::wostream& out) const {
  using kdgeo::details::WriteNumber;
  out << L"CKdArc centre ";
  kdgeo::details::WritePoint(out, m_center);
  out << L" radius ";
  WriteNumber(out, m_radius);
  out << L" start ";
  WriteNumber(out, m_startAngle);
  out << L" sweep ";
  WriteNumber(out, m_sweep);
}

int CKdArc::GetType() const { return kdgeo::kTypeArc; }

bool CKdArc::IsEqual(const CKdElement& other) const {
  const CKdArc* arc = SameClass(*this, other);
  return arc != nullptr && IsEqual(*arc);
}

bool CKdArc::IsNotEqual(const CKdElement& other) const { return !IsEqual(other); }

CKdPoint CKdArc::PointAtAngle(double angle_rad) const {
  return {m_center.x + m_radius * std::cos(angle_rad), m_center.y + m_radius * std::sin(angle_rad), m_center.z};
}

CKdPoint CKdArc::Eval(double t) const { return PointAtAngle(m_startAngle + t * m_sweep); }
CKdPoint CKdArc::StartPoint() const { return PointAtAngle(m_startAngle); }
CKdPoint CKdArc::EndPoint() const { return PointAtAngle(m_startAngle + m_sweep); }
CKdVector CKdArc::StartTangent() const { return Tangent(0.0); }
CKdVector CKdArc::EndTangent() const { return Tangent(1.0); }
double CKdArc::Length() const { return std::fabs(m_sweep) * m_radius; }

void CKdArc::Reverse() {
  m_startAngle = kdgeo::NormalizeAngle(m_startAngle + m_sweep);
  m_sweep = -m_sweep;
}

double CKdArc::ClosestParam(const CKdPoint& p) const {
  if (m_sweep == 0.0 || !std::isfinite(m_sweep)) return 0.0;
  // How far along the direction of travel p's angle lies from the start.
  const double sense = m_sweep > 0.0 ? 1.0 : -1.0;
  const double along = kdgeo::NormalizeAngle((p.AngleFromXY(m_center) - m_startAngle) * sense);
  const double t = along / std::fabs(m_sweep);
  if (t <= 1.0) return t;
  return p.DistanceToXY(StartPoint()) <= p.DistanceToXY(EndPoint()) ? 0.0 : 1.0;
}

IKdCurve* CKdArc::Clone() const { return new CKdArc(*this); }

CKdVector CKdArc::Tangent(double t) const {
  const double a = m_startAngle + t * m_sweep;
  const CKdVector radial(std::cos(a), std::sin(a), 0.0);
  return m_sweep > 0.0 ? CKdVector(-radial.y, radial.x, 0.0) : CKdVector(radial.y, -radial.x, 0.0);
}

double CKdArc::ParamAtLength(double distance_units) const {
  const double length = Length();
  if (!(length > 0.0) || std::isnan(distance_units)) return 0.0;
  return std::clamp(distance_units / length, 0.0, 1.0);
}

void CKdArc::MirrorX() {
  m_center.y = -m_center.y;
  m_startAngle = -m_startAngle;
  m_sweep = -m_sweep;
}

void CKdArc::MirrorY() {
  m_center.x = -m_center.x;
  m_sweep = -m_sweep;
  m_startAngle = kPi - m_startAngle;
}
