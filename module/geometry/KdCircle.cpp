#include "module/geometry/KdCircle.h"

#include <cmath>
#include <ostream>

#include "module/geometry/KdConstants.h"
#include "module/geometry/KdPolyline.h"
#include "module/geometry/KdXform.h"

using kdgeo::kPi;
using kdgeo::kTolerance;
using kdgeo::kTwoPi;

void CKdCircle::SetCenter(const CKdPoint& centre) { m_center = centre; }
void CKdCircle::SetRadius(double radius) { m_radius = radius; }
CKdPoint CKdCircle::Center() const { return m_center; }
double CKdCircle::Radius() const { return m_radius; }

bool CKdCircle::IsEqual(const CKdCircle& o) const {
  return m_center.IsEqual(o.m_center, kTolerance) && std::fabs(m_radius - o.m_radius) <= kTolerance;
}

double CKdCircle::Area() const { return kPi * m_radius * m_radius; }
double CKdCircle::Circumference() const { return kTwoPi * std::fabs(m_radius); }

CKdPoint CKdCircle::PointAtAngle(double angle_rad) const {
  return {m_center.x + m_radius * std::cos(angle_rad), m_center.y + m_radius * std::sin(angle_rad), m_center.z};
}

CKdArc CKdCircle::ToArc() const { return CKdArc(m_center, m_radius, 0.0, kTwoPi); }

CKdPolyline CKdCircle::ToPolyline() const {
  CKdPolyline ring;
  ring.AddVertex(PointAtAngle(0.0), 1.0);
  ring.AddVertex(PointAtAngle(kPi), 1.0);
  ring.SetClosed(true);
  return ring;
}

bool CKdCircle::IsValid() const {
  return std::isfinite(m_center.x) && std::isfinite(m_center.y) && std::isfinite(m_center.z) &&
         std::isfinite(m_radius) && std::fabs(m_radius) > kTolerance;
}

CKdElement* CKdCircle::CloneElement() const { return new CKdCircle(*this); }
void CKdCircle::Translate(const CKdVector& offset) { m_center += offset; }
void CKdCircle::Rotate(const CKdPoint& about, double angle_rad) { m_center = m_center.RotatedXY(about, angle_rad); }

bool CKdCircle::Transform(const CKdXform& xform) {
  double scale = 0.0;
  if (!xform.IsSimilarityXY(kTolerance, &scale, nullptr)) return false;
  m_center = xform.Apply(m_center);
  m_radius *= scale;
  return true;
}

void CKdCircle::Scale(double factor) {
  m_center = CKdPoint(m_center.x * factor, m_center.y * factor, m_center.z * factor);
  m_radius *= factor;
}

void CKdCircle::Write(std::wostream& out) const {
  out << L"CKdCircle centre ";
  kdgeo::details::WritePoint(out, m_center);
  out << L" radius ";
  kdgeo::details::WriteNumber(out, m_radius);
}

int CKdCircle::GetType() const { return kdgeo::kTypeCircle; }

bool CKdCircle::IsEqual(const CKdElement& other) const {
  const CKdCircle* circle = SameClass(*this, other);
  return circle != nullptr && IsEqual(*circle);
}
