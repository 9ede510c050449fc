#include "module/acad/GrAcadCurveDc.h"

#include <cmath>
#include <numbers>

#include "module/graphics/GrArc.h"
#include "module/graphics/GrCircle.h"
#include "module/graphics/GrEllipse.h"
#include "module/graphics/GrLine.h"
#include "platform/acad/dbelipse.h"
#include "platform/acad/dbents.h"

namespace {

constexpr double kTwoPi = 2.0 * std::numbers::pi;

template <class Element>
Element* WithCommon(CGrAcadDc& dc, Element* element, const AcDbEntity* entity) {
  dc.ReadCommonProperties(entity, element);
  return element;
}

}  // namespace

double gracad::Normalized(double angle_rad) {
  double a = std::fmod(angle_rad, kTwoPi);
  if (a < 0.0) a += kTwoPi;
  return a >= kTwoPi ? 0.0 : a;
}

// --- Line ---------------------------------------------------------------------------------------

AcDbEntity* CGrAcadLineDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrLine, AcDbLine>(element, [](const CGrLine& line, AcDbLine& entity) {
    Acad::ErrorStatus es = entity.setStartPoint(gracad::ToAcad(line.Start()));
    return es != Acad::eOk ? es : entity.setEndPoint(gracad::ToAcad(line.End()));
  });
}

CGrElement* CGrAcadLineDc::MakeElement(AcDbObject* object) {
  const AcDbLine* line = AcDbLine::cast(object);
  if (line == nullptr) return nullptr;
  return WithCommon(*this, new CGrLine(gracad::FromAcad(line->startPoint()), gracad::FromAcad(line->endPoint())), line);
}

// --- Arc ----------------------------------------------------------------------------------------

AcDbEntity* CGrAcadArcDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrArc, AcDbArc>(element, [](const CGrArc& arc, AcDbArc& entity) {
    if (!(arc.Radius() > 0.0) || arc.Sweep() == 0.0) return Acad::eInvalidInput;
    // Counter-clockwise only: a clockwise arc runs from its end.
    const double sweep = std::fabs(arc.Sweep());
    const double start = arc.Sweep() < 0.0 ? arc.StartAngle() + arc.Sweep() : arc.StartAngle();
    const double end = sweep >= kTwoPi ? start : start + sweep;
    Acad::ErrorStatus es = entity.setCenter(gracad::ToAcad(arc.Center()));
    if (es == Acad::eOk) es = entity.setRadius(arc.Radius());
    if (es == Acad::eOk) es = entity.setStartAngle(gracad::Normalized(start));
    if (es == Acad::eOk) es = entity.setEndAngle(gracad::Normalized(end));
    return es;
  });
}

CGrElement* CGrAcadArcDc::MakeElement(AcDbObject* object) {
  const AcDbArc* arc = AcDbArc::cast(object);
  if (arc == nullptr) return nullptr;
  return WithCommon(*this,
                    new CGrArc(gracad::FromAcad(arc->center()), arc->radius(), arc->startAngle(), arc->totalAngle()),
                    arc);
}

// --- Circle -------------------------------------------------------------------------------------

AcDbEntity* CGrAcadCircleDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrCircle, AcDbCircle>(element, [](const CGrCircle& circle, AcDbCircle& entity) {
    Acad::ErrorStatus es = entity.setCenter(gracad::ToAcad(circle.Center()));
    if (es == Acad::eOk) es = entity.setRadius(circle.Radius());
    if (es == Acad::eOk) es = entity.setNormal(AcGeVector3d::kZAxis);
    return es;
  });
}

CGrElement* CGrAcadCircleDc::MakeElement(AcDbObject* object) {
  const AcDbCircle* circle = AcDbCircle::cast(object);
  if (circle == nullptr) return nullptr;
  return WithCommon(*this, new CGrCircle(gracad::FromAcad(circle->center()), circle->radius()), circle);
}

// --- Ellipse ------------------------------------------------------------------------------------

AcDbEntity* CGrAcadEllipseDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrEllipse, AcDbEllipse>(element, [](const CGrEllipse& ellipse, AcDbEllipse& entity) {
    AcGeVector3d major = gracad::ToAcad(ellipse.MajorAxis());
    AcGeVector3d minor = gracad::ToAcad(ellipse.MinorAxis());
    double startParam = ellipse.StartAngle();
    double endParam = ellipse.EndAngle();
    if (minor.length() > major.length()) {
      // p = c + major cos t + minor sin t = c + minor cos(t - pi/2) - major sin(t - pi/2)
      std::swap(major, minor);
      startParam -= std::numbers::pi / 2.0;
      endParam -= std::numbers::pi / 2.0;
    }
    const AcGeVector3d normal = gracad::ToAcad(ellipse.MajorAxis()).crossProduct(gracad::ToAcad(ellipse.MinorAxis()));
    if (major.isZeroLength() || normal.isZeroLength()) return Acad::eInvalidInput;
    const double ratio = minor.length() / major.length();
    // AutoCAD takes angles from the major axis: a parameter t is the angle atan2(ratio sin t, cos t).
    const auto angleOf = [ratio](double t) { return std::atan2(ratio * std::sin(t), std::cos(t)); };
    const bool whole = std::fabs(ellipse.EndAngle() - ellipse.StartAngle()) < grgeo::kTolerance;
    const double start = gracad::Normalized(angleOf(startParam));
    const double end = whole ? start : gracad::Normalized(angleOf(endParam));
    return entity.set(gracad::ToAcad(ellipse.Center()), normal.normal(), major, ratio, start, end);
  });
}

CGrElement* CGrAcadEllipseDc::MakeElement(AcDbObject* object) {
  const AcDbEllipse* ellipse = AcDbEllipse::cast(object);
  if (ellipse == nullptr) return nullptr;
  double start = 0.0;
  double end = 0.0;
  ellipse->getStartParam(start);
  ellipse->getEndParam(end);
  if (ellipse->isClosed()) end = start;
  return WithCommon(*this,
                    new CGrEllipse(gracad::FromAcad(ellipse->center()), gracad::FromAcad(ellipse->minorAxis()),
                                   gracad::FromAcad(ellipse->majorAxis()), start, end),
                    ellipse);
}
