#include "host/DesignXml.h"

#include <cmath>

namespace host {
namespace {

landxml::CPoint Land(CKdPlanPoint p) {
  landxml::CPoint q;
  q.x = p.x;
  q.y = p.y;
  return q;
}

landxml::CGeometry Element(const CKdPlanElement& e, double station) {
  if (e.isLine) {
    landxml::CLine line;
    line.start = Land(e.start);
    line.end = Land(e.end);
    line.staStart = station;
    line.length = e.Length();
    line.direction = AzimuthFromHeading(e.StartHeading());
    return line;
  }
  landxml::CCurve curve;
  curve.rot = e.sweep >= 0.0 ? landxml::Rotation::CounterClockwise : landxml::Rotation::Clockwise;
  curve.start = Land(e.start);
  curve.center = Land(e.centre);
  curve.end = Land(e.end);
  curve.radius = e.radius;
  curve.length = e.Length();
  curve.staStart = station;
  curve.dirStart = AzimuthFromHeading(e.StartHeading());
  curve.dirEnd = AzimuthFromHeading(e.EndHeading());
  curve.delta = std::fabs(e.sweep);
  curve.chord = Distance(e.start, e.end);
  curve.crvType = "arc";
  return curve;
}

}  // namespace

std::vector<landxml::CProfileVertex> ProfileVertices(const std::vector<CC3dProfilePVI>& pvis) {
  std::vector<landxml::CProfileVertex> vertices;
  for (const CC3dProfilePVI& p : pvis) {
    landxml::CProfileVertex v;
    v.station = p.GetStation();
    v.elevation = p.GetElevation();
    switch (p.GetType()) {
      case CC3dProfilePVI::ParabolicCurve:
        v.curve = landxml::VerticalCurve::Parabolic;
        v.length = p.GetCurveLength();
        break;
      case CC3dProfilePVI::AsymmetricParabolicCurve:
        v.curve = landxml::VerticalCurve::AsymmetricParabolic;
        v.lengthIn = p.GetLength1();
        v.lengthOut = p.GetLength2();
        break;
      case CC3dProfilePVI::CircularCurve:
        v.curve = landxml::VerticalCurve::Circular;
        v.radius = p.GetRadius();
        break;
      default:
        break;
    }
    vertices.push_back(v);
  }
  // A circular curve's length is the arc between its tangent points.
  for (std::size_t i = 1; i + 1 < vertices.size(); ++i) {
    if (vertices[i].curve != landxml::VerticalCurve::Circular) continue;
    const auto grade = [&](std::size_t a, std::size_t b) {
      const double run = vertices[b].station - vertices[a].station;
      return run != 0.0 ? (vertices[b].elevation - vertices[a].elevation) / run : 0.0;
    };
    vertices[i].length = std::fabs(vertices[i].radius) * std::fabs(std::atan(grade(i, i + 1)) - std::atan(grade(i - 1, i)));
  }
  return vertices;
}

landxml::CModel DesignModel(const CRunResult& run) {
  landxml::CModel model;
  model.projectName = run.projectName;
  model.units = run.units;
  model.units.fileLinear = run.units.linear;
  for (const CAlignmentRun& a : run.alignments) {
    landxml::CAlignment alignment;
    alignment.name = a.name;
    alignment.desc = a.description;
    alignment.staStart = a.startStation;
    alignment.length = a.Length();
    double station = a.startStation;
    for (const CKdPlanElement& e : a.readBack) {
      alignment.geometry.push_back(Element(e, station));
      station += e.Length();
    }
    if (!a.profiles.empty()) {
      landxml::CProfile profile;
      profile.name = a.name;
      for (const CProfileRun& p : a.profiles) {
        landxml::CProfAlign layout;
        layout.name = p.name;
        layout.desc = p.description;
        layout.vertices = ProfileVertices(p.readBack);
        profile.layouts.push_back(std::move(layout));
      }
      alignment.profiles.push_back(std::move(profile));
    }
    model.alignments.push_back(std::move(alignment));
  }
  return model;
}

}  // namespace host
