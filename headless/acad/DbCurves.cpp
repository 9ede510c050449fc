// Lines, circles, arcs and ellipses.
#include <cmath>

#include "headless/acad/Pieces.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/dbelipse.h"
#include "platform/acad/dbents.h"

using headless::geom::kTwoPi;

namespace {

// Parameters may run a hair past their range from rounding.
constexpr double kParamTolerance = 1e-9;

double NormalizeAngle(double a) {
  double r = std::fmod(a, kTwoPi);
  if (r < 0.0) r += kTwoPi;
  return r >= kTwoPi ? 0.0 : r;
}

AcGeVector3d Column(const AcGeMatrix3d& m, int c) { return {m.entry[0][c], m.entry[1][c], m.entry[2][c]}; }

// The normal after xform, keeping a planar curve counter-clockwise about it (a mirror flips it).
AcGeVector3d TransformedNormal(const AcGeVector3d& normal, const AcGeMatrix3d& xform) {
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(normal);
  return (xform * Column(ocs, 0)).crossProduct(xform * Column(ocs, 1)).normal();
}

// The angle of a world point about center in the OCS of normal.
double OcsAngle(const AcGePoint3d& p, const AcGePoint3d& center, const AcGeVector3d& normal) {
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(normal);
  const AcGeVector3d d = p - center;
  return NormalizeAngle(std::atan2(d.dotProduct(Column(ocs, 1)), d.dotProduct(Column(ocs, 0))));
}

AcGePoint3d PointOnCircle(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double angle) {
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(normal);
  return center + (Column(ocs, 0) * std::cos(angle) + Column(ocs, 1) * std::sin(angle)) * radius;
}

}  // namespace

// --- Line ---------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbLine, AcDbCurve, L"LINE")

AcDbLine::AcDbLine() = default;
AcDbLine::AcDbLine(const AcGePoint3d& start, const AcGePoint3d& end) : m_start(start), m_end(end) {}
AcDbLine::~AcDbLine() = default;

Acad::ErrorStatus AcDbLine::setStartPoint(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_start = pt;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbLine::setEndPoint(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_end = pt;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbLine::setThickness(double val) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_thickness = val;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbLine::setNormal(const AcGeVector3d& val) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (val.isZeroLength()) return Acad::eInvalidInput;
  m_normal = val.normal();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getStartParam(double& param) const {
  param = 0.0;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbLine::getEndParam(double& param) const {
  param = m_start.distanceTo(m_end);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbLine::getStartPoint(AcGePoint3d& point) const {
  point = m_start;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbLine::getEndPoint(AcGePoint3d& point) const {
  point = m_end;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbLine::getPointAtParam(double param, AcGePoint3d& point) const {
  const double length = m_start.distanceTo(m_end);
  if (param < -kParamTolerance || param > length + kParamTolerance) return Acad::eInvalidInput;
  point = length == 0.0 ? m_start : m_start + (m_end - m_start) * (param / length);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbLine::getGeomExtents(AcDbExtents& extents) const { return headless::geom::ExtentsOf(*this, extents); }

Acad::ErrorStatus AcDbLine::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_start.transformBy(xform);
  m_end.transformBy(xform);
  m_normal = TransformedNormal(m_normal, xform);
  return Acad::eOk;
}

AcRxObject* AcDbLine::clone() const { return new AcDbLine(*this); }

// --- Circle -------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbCircle, AcDbCurve, L"CIRCLE")

AcDbCircle::AcDbCircle() = default;
AcDbCircle::AcDbCircle(const AcGePoint3d& cntr, const AcGeVector3d& nrm, double radius)
    : m_center(cntr), m_radius(radius), m_normal(nrm.isZeroLength() ? AcGeVector3d::kZAxis : nrm.normal()) {}
AcDbCircle::~AcDbCircle() = default;

Acad::ErrorStatus AcDbCircle::setCenter(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_center = pt;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbCircle::setRadius(double radius) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(radius > 0.0)) return Acad::eInvalidInput;
  m_radius = radius;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbCircle::setNormal(const AcGeVector3d& nrm) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (nrm.isZeroLength()) return Acad::eInvalidInput;
  m_normal = nrm.normal();
  return Acad::eOk;
}
Acad::ErrorStatus AcDbCircle::setThickness(double val) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_thickness = val;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getStartParam(double& param) const {
  param = 0.0;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbCircle::getEndParam(double& param) const {
  param = kTwoPi;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbCircle::getStartPoint(AcGePoint3d& point) const {
  point = PointOnCircle(m_center, m_normal, m_radius, 0.0);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbCircle::getEndPoint(AcGePoint3d& point) const { return getStartPoint(point); }
Acad::ErrorStatus AcDbCircle::getPointAtParam(double param, AcGePoint3d& point) const {
  if (param < -kParamTolerance || param > kTwoPi + kParamTolerance) return Acad::eInvalidInput;
  point = PointOnCircle(m_center, m_normal, m_radius, param);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbCircle::getGeomExtents(AcDbExtents& extents) const {
  return headless::geom::ExtentsOf(*this, extents);
}

Acad::ErrorStatus AcDbCircle::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!xform.isUniScaledOrtho()) return Acad::eCannotScaleNonUniformly;
  m_center.transformBy(xform);
  m_radius *= xform.scale();
  m_normal = TransformedNormal(m_normal, xform);
  return Acad::eOk;
}

AcRxObject* AcDbCircle::clone() const { return new AcDbCircle(*this); }

// --- Arc ----------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbArc, AcDbCurve, L"ARC")

AcDbArc::AcDbArc() = default;
AcDbArc::AcDbArc(const AcGePoint3d& center, double radius, double startAngle, double endAngle)
    : m_center(center), m_radius(radius), m_startAngle(NormalizeAngle(startAngle)),
      m_endAngle(NormalizeAngle(endAngle)) {}
AcDbArc::AcDbArc(const AcGePoint3d& center, const AcGeVector3d& normal, double radius, double startAngle,
                 double endAngle)
    : AcDbArc(center, radius, startAngle, endAngle) {
  m_normal = normal.isZeroLength() ? AcGeVector3d::kZAxis : normal.normal();
}
AcDbArc::~AcDbArc() = default;

Acad::ErrorStatus AcDbArc::setCenter(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_center = pt;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbArc::setRadius(double radius) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(radius > 0.0)) return Acad::eInvalidInput;
  m_radius = radius;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbArc::setStartAngle(double angle) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_startAngle = NormalizeAngle(angle);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbArc::setEndAngle(double angle) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_endAngle = NormalizeAngle(angle);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbArc::setNormal(const AcGeVector3d& nrm) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (nrm.isZeroLength()) return Acad::eInvalidInput;
  m_normal = nrm.normal();
  return Acad::eOk;
}
Acad::ErrorStatus AcDbArc::setThickness(double val) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_thickness = val;
  return Acad::eOk;
}

double AcDbArc::totalAngle() const {
  const double sweep = NormalizeAngle(m_endAngle - m_startAngle);
  return sweep == 0.0 ? kTwoPi : sweep;
}

Acad::ErrorStatus AcDbArc::getStartParam(double& param) const {
  param = m_startAngle;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbArc::getEndParam(double& param) const {
  param = m_startAngle + totalAngle();
  return Acad::eOk;
}
Acad::ErrorStatus AcDbArc::getStartPoint(AcGePoint3d& point) const {
  point = PointOnCircle(m_center, m_normal, m_radius, m_startAngle);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbArc::getEndPoint(AcGePoint3d& point) const {
  point = PointOnCircle(m_center, m_normal, m_radius, m_endAngle);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbArc::getPointAtParam(double param, AcGePoint3d& point) const {
  if (param < m_startAngle - kParamTolerance || param > m_startAngle + totalAngle() + kParamTolerance)
    return Acad::eInvalidInput;
  point = PointOnCircle(m_center, m_normal, m_radius, param);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbArc::getGeomExtents(AcDbExtents& extents) const { return headless::geom::ExtentsOf(*this, extents); }

Acad::ErrorStatus AcDbArc::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!xform.isUniScaledOrtho()) return Acad::eCannotScaleNonUniformly;
  AcGePoint3d start, end;
  getStartPoint(start);
  getEndPoint(end);
  const bool full = totalAngle() >= kTwoPi;
  m_center.transformBy(xform);
  m_radius *= xform.scale();
  m_normal = TransformedNormal(m_normal, xform);
  // The new normal keeps the arc counter-clockwise about it (a mirror turns the normal over), so
  // the start stays the start.
  start.transformBy(xform);
  end.transformBy(xform);
  m_startAngle = OcsAngle(start, m_center, m_normal);
  m_endAngle = full ? m_startAngle : OcsAngle(end, m_center, m_normal);
  return Acad::eOk;
}

AcRxObject* AcDbArc::clone() const { return new AcDbArc(*this); }

// --- Ellipse ------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbEllipse, AcDbCurve, L"ELLIPSE")

AcDbEllipse::AcDbEllipse() = default;
AcDbEllipse::AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal, const AcGeVector3d& majorAxis,
                         double radiusRatio, double startAngle, double endAngle) {
  set(center, unitNormal, majorAxis, radiusRatio, startAngle, endAngle);
}
AcDbEllipse::~AcDbEllipse() = default;

Acad::ErrorStatus AcDbEllipse::set(const AcGePoint3d& center, const AcGeVector3d& unitNormal,
                                   const AcGeVector3d& majorAxis, double radiusRatio, double startAngle,
                                   double endAngle) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (unitNormal.isZeroLength() || majorAxis.isZeroLength()) return Acad::eInvalidInput;
  const AcGeVector3d n = unitNormal.normal();
  if (std::fabs(n.dotProduct(majorAxis.normal())) > 1e-9) return Acad::eInvalidInput;
  if (!(radiusRatio > 0.0 && radiusRatio <= 1.0)) return Acad::eInvalidInput;
  m_center = center;
  m_normal = n;
  m_majorAxis = majorAxis;
  m_radiusRatio = radiusRatio;
  m_startAngle = NormalizeAngle(startAngle);
  // A full turn between the angles (or none) is the closed ellipse.
  double sweep = NormalizeAngle(endAngle - startAngle);
  if (sweep == 0.0) sweep = kTwoPi;
  m_endAngle = m_startAngle + sweep;
  return Acad::eOk;
}

double AcDbEllipse::endAngle() const { return isClosed() ? m_startAngle + kTwoPi : NormalizeAngle(m_endAngle); }

AcGeVector3d AcDbEllipse::minorAxis() const { return m_normal.crossProduct(m_majorAxis) * m_radiusRatio; }

Acad::ErrorStatus AcDbEllipse::setCenter(const AcGePoint3d& center) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_center = center;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbEllipse::setRadiusRatio(double ratio) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(ratio > 0.0 && ratio <= 1.0)) return Acad::eInvalidInput;
  m_radiusRatio = ratio;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbEllipse::setStartAngle(double startAngle) {
  return set(m_center, m_normal, m_majorAxis, m_radiusRatio, startAngle, m_endAngle);
}
Acad::ErrorStatus AcDbEllipse::setEndAngle(double endAngle) {
  return set(m_center, m_normal, m_majorAxis, m_radiusRatio, m_startAngle, endAngle);
}

double AcDbEllipse::paramAtAngle(double angle) const {
  const double t = std::atan2(std::sin(angle), m_radiusRatio * std::cos(angle));
  // Keep the turn the angle is in, so parameters grow with angles.
  return t + (std::floor(angle / kTwoPi) + (t < 0.0 ? 1.0 : 0.0)) * kTwoPi;
}

double AcDbEllipse::angleAtParam(double param) const {
  const double a = std::atan2(m_radiusRatio * std::sin(param), std::cos(param));
  return a + (std::floor(param / kTwoPi) + (a < 0.0 ? 1.0 : 0.0)) * kTwoPi;
}

Adesk::Boolean AcDbEllipse::isClosed() const { return m_endAngle - m_startAngle >= kTwoPi - 1e-12; }

Acad::ErrorStatus AcDbEllipse::getStartParam(double& param) const {
  param = paramAtAngle(m_startAngle);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbEllipse::getEndParam(double& param) const {
  param = isClosed() ? paramAtAngle(m_startAngle) + kTwoPi : paramAtAngle(m_endAngle);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbEllipse::getStartPoint(AcGePoint3d& point) const {
  double t = 0.0;
  getStartParam(t);
  return getPointAtParam(t, point);
}
Acad::ErrorStatus AcDbEllipse::getEndPoint(AcGePoint3d& point) const {
  double t = 0.0;
  getEndParam(t);
  return getPointAtParam(t, point);
}
Acad::ErrorStatus AcDbEllipse::getPointAtParam(double param, AcGePoint3d& point) const {
  double t0 = 0.0;
  double t1 = 0.0;
  getStartParam(t0);
  getEndParam(t1);
  if (param < t0 - kParamTolerance || param > t1 + kParamTolerance) return Acad::eInvalidInput;
  point = m_center + m_majorAxis * std::cos(param) + minorAxis() * std::sin(param);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEllipse::getGeomExtents(AcDbExtents& extents) const {
  return headless::geom::ExtentsOf(*this, extents);
}

// Uniform scaling keeps the axes perpendicular and the ratio; a mirror flips the normal and keeps
// the parameters.
Acad::ErrorStatus AcDbEllipse::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!xform.isUniScaledOrtho()) return Acad::eCannotScaleNonUniformly;
  const AcGeVector3d major = xform * m_majorAxis;
  const AcGeVector3d minor = xform * minorAxis();
  m_center.transformBy(xform);
  m_majorAxis = major;
  m_normal = major.crossProduct(minor).normal();
  return Acad::eOk;
}

AcRxObject* AcDbEllipse::clone() const { return new AcDbEllipse(*this); }
