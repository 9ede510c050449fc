// Alignments: horizontal geometry (CoordGeom), station equations and profiles.
#include <cmath>
#include <numbers>

#include "landxml/internal/NumberText.h"
#include "landxml/internal/ReadContext.h"

namespace landxml::internal {
namespace {

using std::numbers::pi;

double Normalized(double angle) {
  angle = std::fmod(angle, 2.0 * pi);
  return angle < 0.0 ? angle + 2.0 * pi : angle;
}

// The point `distance` from `from` along the azimuth.
CPoint Along(const CPoint& from, double azimuth, double distance) {
  CPoint p = from;
  p.x += distance * std::sin(azimuth);
  p.y += distance * std::cos(azimuth);
  return p;
}

double Distance(const CPoint& a, const CPoint& b) { return std::hypot(b.x - a.x, b.y - a.y); }

std::string Lowered(const char* text) {
  std::string value;
  for (const char* c = text; *c; ++c)
    if (!IsXmlSpace(*c)) value.push_back(static_cast<char>(*c >= 'A' && *c <= 'Z' ? *c - 'A' + 'a' : *c));
  return value;
}

std::optional<Rotation> ReadRotation(const CReadContext& context, pugi::xml_node node) {
  const pugi::xml_attribute attribute = node.attribute("rot");
  if (!attribute) return std::nullopt;
  const std::string value = Lowered(attribute.value());
  if (value == "cw") return Rotation::Clockwise;
  if (value == "ccw") return Rotation::CounterClockwise;
  context.Fail(node, "rot=\"" + std::string(attribute.value()) + "\" is neither cw nor ccw");
}

// The Start, Center, End and PI children of a CoordGeom element, each at most once.
struct CElementPoints {
  std::optional<CPoint> start, center, end, pi;
};

CElementPoints ReadElementPoints(const CReadContext& context, pugi::xml_node node) {
  CElementPoints points;
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    if (child.type() != pugi::node_element) continue;
    const std::string_view name = LocalName(child.name());
    std::optional<CPoint>* slot = name == "Start"    ? &points.start
                                  : name == "Center" ? &points.center
                                  : name == "End"    ? &points.end
                                  : name == "PI"     ? &points.pi
                                                     : nullptr;
    if (!slot) continue;
    if (*slot) context.Fail(child, "appears twice in one <" + std::string(LocalName(node.name())) + ">");
    *slot = context.Point(child);
  }
  return points;
}

CLine ReadLine(const CReadContext& context, pugi::xml_node node) {
  const CElementPoints points = ReadElementPoints(context, node);
  if (!points.start || !points.end) context.Fail(node, points.start ? "has no <End>" : "has no <Start>");
  CLine line;
  line.start = *points.start;
  line.end = *points.end;
  line.staStart = context.OptionalNumber(node, "staStart");
  line.length = context.OptionalNumber(node, "length");
  line.direction = context.OptionalDirection(node, "dir");
  line.name = context.Text(node, "name");
  line.desc = context.Text(node, "desc");
  return line;
}

// A curve given by its PI, radius and tangent directions: the tangent points lie the tangent
// length R*tan(delta/2) back and ahead of the PI, and the centre lies R to the side it turns to.
// Returns the deflection delta.
double CompleteFromPi(const CReadContext& context, pugi::xml_node node, const CCurve& curve, CElementPoints& points) {
  const double dirStart = *curve.dirStart;
  const double dirEnd = *curve.dirEnd;
  const bool clockwise = curve.rot == Rotation::Clockwise;
  const double deflection = clockwise ? Normalized(dirEnd - dirStart) : Normalized(dirStart - dirEnd);
  if (!(deflection > 0.0 && deflection < pi))
    context.Fail(node, "is given by its PI but turns by 0 or by 180 degrees or more, which fixes no arc");
  const double tangent = curve.radius * std::tan(deflection / 2.0);
  if (!points.start) points.start = Along(*points.pi, dirStart, -tangent);
  if (!points.end) points.end = Along(*points.pi, dirEnd, tangent);
  points.center = Along(*points.start, dirStart + (clockwise ? pi / 2.0 : -pi / 2.0), curve.radius);
  points.center->z = points.pi->z;
  points.center->hasZ = points.pi->hasZ;
  return deflection;
}

CCurve ReadCurve(const CReadContext& context, pugi::xml_node node) {
  CElementPoints points = ReadElementPoints(context, node);
  CCurve curve;
  curve.staStart = context.OptionalNumber(node, "staStart");
  curve.dirStart = context.OptionalDirection(node, "dirStart");
  curve.dirEnd = context.OptionalDirection(node, "dirEnd");
  curve.chord = context.OptionalNumber(node, "chord");
  curve.delta = context.OptionalAngle(node, "delta");
  curve.crvType = context.Text(node, "crvType");
  curve.name = context.Text(node, "name");
  curve.desc = context.Text(node, "desc");
  if (!curve.dirStart && points.start && points.pi) curve.dirStart = AzimuthBetween(*points.start, *points.pi);
  if (!curve.dirEnd && points.pi && points.end) curve.dirEnd = AzimuthBetween(*points.pi, *points.end);

  if (const std::optional<Rotation> rot = ReadRotation(context, node)) {
    curve.rot = *rot;
  } else if (curve.dirStart && curve.dirEnd && Normalized(*curve.dirEnd - *curve.dirStart) != 0.0) {
    // Azimuths grow clockwise: a curve whose direction grows by less than half a turn is clockwise.
    curve.rot = Normalized(*curve.dirEnd - *curve.dirStart) < pi ? Rotation::Clockwise : Rotation::CounterClockwise;
  } else {
    context.Fail(node, "has no rot (cw or ccw)");
  }

  const std::optional<double> radius = context.OptionalNumber(node, "radius");
  const std::optional<double> length = context.OptionalNumber(node, "length");
  std::optional<double> deflection;
  if (points.start && points.center && points.end) {
    curve.radius = radius ? *radius : Distance(*points.start, *points.center);
  } else if (points.pi && radius && curve.dirStart && curve.dirEnd) {
    curve.radius = *radius;
    if (!(curve.radius > 0.0 && std::isfinite(curve.radius))) context.Fail(node, "has a radius that is not positive");
    deflection = CompleteFromPi(context, node, curve, points);
  } else {
    context.Fail(node, "needs <Start>, <Center> and <End>, or a <PI> with radius, dirStart and dirEnd");
  }
  if (!(curve.radius > 0.0 && std::isfinite(curve.radius))) context.Fail(node, "has a radius that is not positive");
  curve.start = *points.start;
  curve.center = *points.center;
  curve.end = *points.end;
  curve.pi = points.pi;
  if (length) {
    curve.length = *length;
  } else if (deflection) {
    curve.length = curve.radius * *deflection;
  } else {
    const double a0 = std::atan2(curve.start.y - curve.center.y, curve.start.x - curve.center.x);
    const double a1 = std::atan2(curve.end.y - curve.center.y, curve.end.x - curve.center.x);
    const double sweep = curve.rot == Rotation::CounterClockwise ? Normalized(a1 - a0) : Normalized(a0 - a1);
    curve.length = curve.radius * sweep;
  }
  return curve;
}

CSpiral ReadSpiral(const CReadContext& context, pugi::xml_node node) {
  const CElementPoints points = ReadElementPoints(context, node);
  if (!points.start || !points.end) context.Fail(node, points.start ? "has no <End>" : "has no <Start>");
  CSpiral spiral;
  spiral.start = *points.start;
  spiral.end = *points.end;
  spiral.pi = points.pi;
  const std::optional<Rotation> rot = ReadRotation(context, node);
  if (!rot) context.Fail(node, "has no rot (cw or ccw)");
  spiral.rot = *rot;
  spiral.length = context.RequiredNumber(node, "length");
  if (!(spiral.length >= 0.0 && std::isfinite(spiral.length)))
    context.Fail(node, "has a length that is negative or infinite");
  spiral.radiusStart = context.RequiredNumber(node, "radiusStart");
  spiral.radiusEnd = context.RequiredNumber(node, "radiusEnd");
  if (!(spiral.radiusStart > 0.0) || !(spiral.radiusEnd > 0.0))
    context.Fail(node, "has a radius that is not positive (an infinite one is written INF)");
  if (node.attribute("spiType")) spiral.spiType = context.Text(node, "spiType");
  spiral.staStart = context.OptionalNumber(node, "staStart");
  spiral.dirStart = context.OptionalDirection(node, "dirStart");
  spiral.dirEnd = context.OptionalDirection(node, "dirEnd");
  spiral.tanLong = context.OptionalNumber(node, "tanLong");
  spiral.tanShort = context.OptionalNumber(node, "tanShort");
  spiral.theta = context.OptionalAngle(node, "theta");
  spiral.constant = context.OptionalNumber(node, "constant");
  spiral.name = context.Text(node, "name");
  spiral.desc = context.Text(node, "desc");
  // The tangents through the PI are the spiral's start and end directions.
  if (spiral.pi && !spiral.dirStart && Distance(spiral.start, *spiral.pi) > 0.0)
    spiral.dirStart = AzimuthBetween(spiral.start, *spiral.pi);
  if (spiral.pi && !spiral.dirEnd && Distance(*spiral.pi, spiral.end) > 0.0)
    spiral.dirEnd = AzimuthBetween(*spiral.pi, spiral.end);
  return spiral;
}

CStationEquation ReadStationEquation(const CReadContext& context, pugi::xml_node node) {
  CStationEquation equation;
  equation.staAhead = context.RequiredNumber(node, "staAhead");
  equation.staBack = context.OptionalNumber(node, "staBack");
  equation.staInternal = context.OptionalNumber(node, "staInternal");
  equation.desc = context.Text(node, "desc");
  if (const pugi::xml_attribute increment = node.attribute("staIncrement")) {
    const std::string value = Lowered(increment.value());
    if (value == "decreasing") {
      equation.decreasing = true;
    } else if (value != "increasing") {
      context.Fail(node,
                   "staIncrement=\"" + std::string(increment.value()) + "\" is neither increasing nor decreasing");
    }
  }
  return equation;
}

// "station elevation" of a PVI or vertical curve.
void ReadStationElevation(const CReadContext& context, pugi::xml_node node, CProfileVertex& vertex) {
  CNumberList numbers(node.child_value());
  double extra = 0.0;
  if (!numbers.Next(vertex.station) || !numbers.Next(vertex.elevation) || numbers.Next(extra) || numbers.Failed() ||
      !std::isfinite(vertex.station) || !std::isfinite(vertex.elevation))
    context.Fail(node, "expects \"station elevation\"");
}

double NonNegative(const CReadContext& context, pugi::xml_node node, const char* name) {
  const double value = context.RequiredNumber(node, name);
  if (!(value >= 0.0 && std::isfinite(value))) context.Fail(node, std::string(name) + " is negative or infinite");
  return value;
}

CProfAlign ReadProfAlign(const CReadContext& context, pugi::xml_node node) {
  CProfAlign layout;
  layout.name = context.Text(node, "name");
  layout.desc = context.Text(node, "desc");
  layout.state = context.Text(node, "state");
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    if (child.type() != pugi::node_element) continue;
    const std::string_view name = LocalName(child.name());
    CProfileVertex vertex;
    if (name == "PVI") {
      vertex.curve = VerticalCurve::None;
    } else if (name == "ParaCurve") {
      vertex.curve = VerticalCurve::Parabolic;
      vertex.length = NonNegative(context, child, "length");
    } else if (name == "UnsymParaCurve") {
      vertex.curve = VerticalCurve::AsymmetricParabolic;
      vertex.lengthIn = NonNegative(context, child, "lengthIn");
      vertex.lengthOut = NonNegative(context, child, "lengthOut");
    } else if (name == "CircCurve") {
      vertex.curve = VerticalCurve::Circular;
      vertex.length = NonNegative(context, child, "length");
      vertex.radius = context.RequiredNumber(child, "radius");
      if (!std::isfinite(vertex.radius)) context.Fail(child, "has an infinite radius");
    } else {
      continue;
    }
    ReadStationElevation(context, child, vertex);
    vertex.desc = context.Text(child, "desc");
    layout.vertices.push_back(std::move(vertex));
  }
  return layout;
}

CProfSurf ReadProfSurf(const CReadContext& context, pugi::xml_node node) {
  CProfSurf sampled;
  sampled.name = context.Text(node, "name");
  sampled.desc = context.Text(node, "desc");
  sampled.state = context.Text(node, "state");
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    if (!IsElement(child, "PntList2D")) continue;
    CNumberList numbers(child.child_value());
    std::vector<double> values;
    double value = 0.0;
    while (numbers.Next(value)) {
      if (!std::isfinite(value)) context.Fail(child, "holds a station or elevation that is not finite");
      values.push_back(value);
    }
    if (numbers.Failed() || values.size() % 2 != 0) context.Fail(child, "expects \"station elevation\" pairs");
    for (std::size_t i = 0; i < values.size(); i += 2) sampled.points.push_back({values[i], values[i + 1]});
  }
  return sampled;
}

CProfile ReadProfile(const CReadContext& context, pugi::xml_node node) {
  CProfile profile;
  profile.name = context.Text(node, "name");
  profile.desc = context.Text(node, "desc");
  profile.state = context.Text(node, "state");
  profile.staStart = context.OptionalNumber(node, "staStart");
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    if (IsElement(child, "ProfAlign")) {
      profile.layouts.push_back(ReadProfAlign(context, child));
    } else if (IsElement(child, "ProfSurf")) {
      profile.surfaceProfiles.push_back(ReadProfSurf(context, child));
    }
  }
  return profile;
}

void ReadCoordGeom(CReadContext& context, pugi::xml_node node, CAlignment& alignment) {
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    if (child.type() != pugi::node_element) continue;
    const std::string_view name = LocalName(child.name());
    if (name == "Line") {
      alignment.geometry.emplace_back(ReadLine(context, child));
    } else if (name == "Curve") {
      alignment.geometry.emplace_back(ReadCurve(context, child));
    } else if (name == "Spiral") {
      alignment.geometry.emplace_back(ReadSpiral(context, child));
    } else if (name == "IrregularLine" || name == "Chain") {
      context.Note(context.Where(child) + " in alignment \"" + alignment.name +
                   "\" is not read: the alignment's geometry goes on without it");
    }
  }
}

CAlignment ReadAlignment(CReadContext& context, pugi::xml_node node) {
  CAlignment alignment;
  alignment.name = context.Text(node, "name");
  alignment.desc = context.Text(node, "desc");
  alignment.state = context.Text(node, "state");
  if (const std::optional<double> staStart = context.OptionalNumber(node, "staStart")) {
    alignment.staStart = *staStart;
  } else {
    context.Note(context.Where(node) + " (\"" + alignment.name + "\") gives no staStart: 0 taken");
  }
  alignment.length = context.OptionalNumber(node, "length");
  for (pugi::xml_node child = node.first_child(); child; child = child.next_sibling()) {
    if (IsElement(child, "CoordGeom")) {
      ReadCoordGeom(context, child, alignment);
    } else if (IsElement(child, "StaEquation")) {
      alignment.stationEquations.push_back(ReadStationEquation(context, child));
    } else if (IsElement(child, "Profile")) {
      alignment.profiles.push_back(ReadProfile(context, child));
    }
  }
  return alignment;
}

// +1 for a clockwise convention, -1 for a counter-clockwise one, 0 when the element cannot tell.
int DirectionVote(const CReadContext& context, pugi::xml_node node) {
  constexpr double kAgreement = 1e-3;  // radians; coordinates rounded to 1e-6 over a short line still agree
  const std::string_view name = LocalName(node.name());
  if (name == "Line") {
    const std::optional<double> dir = context.OptionalDirection(node, "dir");
    const CElementPoints points = ReadElementPoints(context, node);
    if (!dir || !points.start || !points.end || Distance(*points.start, *points.end) == 0.0) return 0;
    const double azimuth = AzimuthBetween(*points.start, *points.end);
    const double clockwiseGap = std::fabs(std::remainder(*dir - azimuth, 2.0 * pi));
    const double counterGap = std::fabs(std::remainder(*dir + azimuth, 2.0 * pi));
    if (std::fabs(clockwiseGap - counterGap) < kAgreement) return 0;  // due north or south
    if (clockwiseGap < kAgreement) return 1;
    if (counterGap < kAgreement) return -1;
    return 0;
  }
  if (name == "Curve" || name == "Spiral") {
    // Turning right, a clockwise azimuth grows; a counter-clockwise direction shrinks.
    const std::optional<double> dirStart = context.OptionalDirection(node, "dirStart");
    const std::optional<double> dirEnd = context.OptionalDirection(node, "dirEnd");
    const pugi::xml_attribute rotAttribute = node.attribute("rot");
    if (!dirStart || !dirEnd || !rotAttribute) return 0;
    const double change = std::remainder(*dirEnd - *dirStart, 2.0 * pi);
    if (std::fabs(change) < kAgreement || std::fabs(change) > pi - kAgreement) return 0;
    const bool turnsRight = ReadRotation(context, node) == Rotation::Clockwise;
    return (change > 0.0) == turnsRight ? 1 : -1;
  }
  return 0;
}

}  // namespace

bool DirectionsRunCounterClockwise(const CReadContext& context, pugi::xml_node root) {
  int votes = 0;
  for (pugi::xml_node alignments = root.first_child(); alignments; alignments = alignments.next_sibling()) {
    if (!IsElement(alignments, "Alignments")) continue;
    for (pugi::xml_node alignment = alignments.first_child(); alignment; alignment = alignment.next_sibling()) {
      if (!IsElement(alignment, "Alignment")) continue;
      for (pugi::xml_node geometry = alignment.first_child(); geometry; geometry = geometry.next_sibling()) {
        if (!IsElement(geometry, "CoordGeom")) continue;
        for (pugi::xml_node element = geometry.first_child(); element; element = element.next_sibling())
          if (element.type() == pugi::node_element) votes += DirectionVote(context, element);
      }
    }
  }
  return votes < 0;
}

void ReadAlignments(CReadContext& context, pugi::xml_node alignments, std::vector<CAlignment>& out) {
  for (pugi::xml_node child = alignments.first_child(); child; child = child.next_sibling())
    if (IsElement(child, "Alignment")) out.push_back(ReadAlignment(context, child));
}

}  // namespace landxml::internal
