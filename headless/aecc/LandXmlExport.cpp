// LandXML export of the active drawing: every alignment (siteless first, then each site's, in the
// order they were made) with its geometry part by part, its stationing and station equations,
// and its profiles as the layout profiles of one <Profile>. Spiral groups are written as their
// parts; an import forms the groups again.
#include <cmath>
#include <numbers>

#include "headless/acad/AcadApplication.h"
#include "headless/aecc/LandFaces.h"
#include "headless/aecc/LandXmlExchange.h"
#include "headless/aecc/LandXmlText.h"
#include "landxml/LandXml.h"

namespace headless::land {

namespace {

// The model's angles run counter-clockwise from +x; LandXML's azimuths clockwise from north.
double AzimuthOfAngle(double angle) {
  const double azimuth = std::fmod(std::numbers::pi / 2.0 - angle, 2.0 * std::numbers::pi);
  return azimuth < 0.0 ? azimuth + 2.0 * std::numbers::pi : azimuth;
}

landxml::CPoint PointOf(Point2 p) {
  landxml::CPoint point;
  point.x = p.x;
  point.y = p.y;
  return point;
}

landxml::CGeometry ElementOf(const AlignmentCurve& curve, double staStart) {
  switch (curve.Kind()) {
    case CurveKind::Tangent: {
      landxml::CLine line;
      line.start = PointOf(curve.StartPoint());
      line.end = PointOf(curve.EndPoint());
      line.staStart = staStart;
      line.length = curve.Length();
      line.direction = AzimuthOfAngle(curve.StartDirection());
      return line;
    }
    case CurveKind::Arc: {
      landxml::CCurve arc;
      arc.rot = curve.Clockwise() ? landxml::Rotation::Clockwise : landxml::Rotation::CounterClockwise;
      arc.start = PointOf(curve.StartPoint());
      arc.center = PointOf(curve.Centre());
      arc.end = PointOf(curve.EndPoint());
      arc.radius = curve.Radius();
      arc.length = curve.Length();
      arc.staStart = staStart;
      arc.dirStart = AzimuthOfAngle(curve.StartDirection());
      arc.dirEnd = AzimuthOfAngle(curve.EndDirection());
      arc.delta = curve.Delta();
      arc.chord = Distance(curve.StartPoint(), curve.EndPoint());
      arc.crvType = "arc";
      return arc;
    }
    case CurveKind::Spiral: {
      landxml::CSpiral spiral;
      spiral.rot = curve.Direction() == SpiralDirection::Right ? landxml::Rotation::Clockwise
                                                               : landxml::Rotation::CounterClockwise;
      spiral.start = PointOf(curve.StartPoint());
      spiral.end = PointOf(curve.EndPoint());
      spiral.length = curve.Length();
      spiral.radiusStart = curve.RadiusIn();  // +infinity is written INF
      spiral.radiusEnd = curve.RadiusOut();
      spiral.staStart = staStart;
      spiral.dirStart = AzimuthOfAngle(curve.StartDirection());
      spiral.dirEnd = AzimuthOfAngle(curve.EndDirection());
      spiral.theta = std::abs(curve.EndDirection() - curve.StartDirection());
      spiral.constant = curve.A();
      return spiral;
    }
  }
  return landxml::CLine{};
}

landxml::CProfileVertex VertexOf(const ProfileGeometry& g, int index) {
  const Pvi& pvi = *g.Item(index);
  landxml::CProfileVertex v;
  v.station = pvi.station;
  v.elevation = pvi.elevation;
  switch (pvi.curve.type) {
    case VerticalCurveType::None: break;
    case VerticalCurveType::SymmetricParabola:
      v.curve = landxml::VerticalCurve::Parabolic;
      v.length = pvi.curve.length;
      break;
    case VerticalCurveType::AsymmetricParabola:
      v.curve = landxml::VerticalCurve::AsymmetricParabolic;
      v.lengthIn = pvi.curve.length1;
      v.lengthOut = pvi.curve.length2;
      break;
    case VerticalCurveType::Circular: {
      v.curve = landxml::VerticalCurve::Circular;
      v.radius = pvi.curve.radius;
      const Outcome<CurveExtent> extent = g.CurveAt(index);
      v.length = extent ? extent.Value().endStation - extent.Value().startStation : 0.0;
      break;
    }
  }
  return v;
}

landxml::CAlignment AlignmentOf(const AeccDbAlignment& source) {
  const AlignmentGeometry& g = source.geometry();
  landxml::CAlignment out;
  out.name = Utf8FromWide(source.name());
  out.desc = Utf8FromWide(source.description());
  const double start = g.StartingStation();
  out.staStart = start;
  out.length = g.Length();
  for (int i = 0; i < g.Count(); ++i) {
    double distance = g.StartDistance(i);
    for (const AlignmentCurve& part : g.Item(i)->Parts()) {
      out.geometry.push_back(ElementOf(part, g.StationAtDistance(distance)));
      distance += part.Length();
    }
  }
  const StationEquations& equations = g.Equations();
  for (int i = 0; i < equations.Count(); ++i) {
    landxml::CStationEquation e;
    e.staBack = equations.StationBack(i, start);
    e.staAhead = equations.At(i)->stationAhead;
    e.staInternal = start + equations.At(i)->distance;
    e.decreasing = equations.At(i)->increment == StationIncrement::Decreasing;
    out.stationEquations.push_back(e);
  }
  landxml::CProfile profiles;
  profiles.name = out.name;
  for (const AcDbObjectId id : land_drawing::Profiles(source.objectId())) {
    const auto* profile = AeccDbProfile::cast(AcDbImpDatabase::peek(id));
    landxml::CProfAlign layout;
    layout.name = Utf8FromWide(profile->name());
    layout.desc = Utf8FromWide(profile->description());
    for (int i = 0; i < profile->geometry().Count(); ++i) layout.vertices.push_back(VertexOf(profile->geometry(), i));
    profiles.layouts.push_back(std::move(layout));
  }
  if (!profiles.layouts.empty()) out.profiles.push_back(std::move(profiles));
  return out;
}

}  // namespace

bool ExportLandXml(AcadApplication& application, const std::filesystem::path& path, std::string& error) {
  const std::shared_ptr<Document> document = application.Documents().Active();
  if (document == nullptr) {
    error = "there is no active drawing to export";
    return false;
  }
  landxml::CModel model;
  model.units.linear = model.units.fileLinear = landxml::LinearUnit::Metre;
  model.units.angular = model.units.direction = landxml::AngularUnit::Degrees;
  const ACHAR* title = document->docTitle();
  model.projectName = Utf8FromWide(title == nullptr ? L"" : title);
  const AcDbDatabase* db = document->database();
  std::vector<AcDbObjectId> ids = land_drawing::Alignments(db, AcDbObjectId::kNull);
  for (const AcDbObjectId site : land_drawing::Sites(db)) {
    const std::vector<AcDbObjectId> members = land_drawing::Alignments(db, site);
    ids.insert(ids.end(), members.begin(), members.end());
  }
  for (const AcDbObjectId id : ids) {
    const auto* alignment = AeccDbAlignment::cast(AcDbImpDatabase::peek(id));
    if (alignment != nullptr) model.alignments.push_back(AlignmentOf(*alignment));
  }
  const landxml::CWriteResult written = landxml::WriteLandXml(model, path);
  if (!written) {
    error = written.error;
    return false;
  }
  return true;
}

}  // namespace headless::land
