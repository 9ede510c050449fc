#include "host/LandXmlSummary.h"

#include <cmath>
#include <cstdio>
#include <map>

#include "host/AlignmentPlan.h"
#include "host/ExitCodes.h"
#include "host/HostText.h"
#include "host/ProfilePlan.h"
#include "landxml/LandXml.h"

namespace host {
namespace {

// Disagreements within the file below this are the rounding of coordinates written to six
// decimals, not problems worth a line.
constexpr double kClosureWorthSaying = 1e-5;

std::string UnitsLine(const landxml::CUnits& units) {
  std::string text = "lengths " + std::string(landxml::LinearUnitName(units.linear));
  if (units.linearDefaulted) text += " (not stated: the schema's default)";
  text += ", angles " + std::string(landxml::AngularUnitName(units.angular));
  if (units.angularDefaulted) text += " (not stated)";
  text += ", directions " + std::string(landxml::AngularUnitName(units.direction));
  if (units.directionDefaulted) text += " (not stated)";
  return text;
}

std::string GeometryLine(const landxml::CAlignment& a) {
  std::size_t lines = 0, curves = 0, spirals = 0;
  std::map<std::string, int> spiralTypes;
  for (const landxml::CGeometry& g : a.geometry) {
    if (std::holds_alternative<landxml::CLine>(g)) {
      ++lines;
    } else if (std::holds_alternative<landxml::CCurve>(g)) {
      ++curves;
    } else {
      ++spirals;
      ++spiralTypes[std::get<landxml::CSpiral>(g).spiType];
    }
  }
  std::string text = Count(a.geometry.size(), "element", "elements") + " (" + Count(lines, "line", "lines") + ", " +
                     Count(curves, "curve", "curves") + ", " + Count(spirals, "spiral", "spirals");
  std::string separator = ": ";
  for (const auto& [type, count] : spiralTypes) {
    text += separator + std::to_string(count) + " " + type;
    separator = ", ";
  }
  return text + ")";
}

std::string ProfileLine(const landxml::CProfAlign& layout) {
  std::map<landxml::VerticalCurve, int> kinds;
  for (const landxml::CProfileVertex& v : layout.vertices) ++kinds[v.curve];
  std::string text = "layout profile \"" + layout.name + "\": " + Count(layout.vertices.size(), "PVI", "PVIs");
  if (!layout.vertices.empty())
    text += ", stations " + Fixed(layout.vertices.front().station, 3) + " to " + Fixed(layout.vertices.back().station, 3);
  const std::pair<landxml::VerticalCurve, const char*> names[] = {{landxml::VerticalCurve::Parabolic, "parabolic"},
                                                                   {landxml::VerticalCurve::AsymmetricParabolic, "asymmetric"},
                                                                   {landxml::VerticalCurve::Circular, "circular"}};
  for (const auto& [kind, name] : names)
    if (kinds.count(kind)) text += ", " + std::to_string(kinds[kind]) + " " + name;
  return text;
}

}  // namespace

bool InspectSummary(const std::string& path, std::string& text) {
  const landxml::CReadResult read = landxml::ReadLandXml(path);
  if (!read) {
    text = read.error;
    return false;
  }
  const landxml::CModel& model = *read.model;
  std::vector<std::string> problems;
  text = path + ": LandXML " + model.version;
  if (!model.namespaceUri.empty()) text += " (" + model.namespaceUri + ")";
  if (!model.projectName.empty()) text += ", project \"" + model.projectName + "\"";
  text += "\nUnits: " + UnitsLine(model.units) + "\n";

  text += "Alignments: " + std::to_string(model.alignments.size()) + "\n";
  for (const landxml::CAlignment& a : model.alignments) {
    const CAlignmentPlan plan = PlanAlignment(a, 0.001);
    double length = 0.0;
    for (const CPlannedCurve& c : plan.curves)
      if (c.origin != CurveOrigin::GapTangent) length += c.element.Length();
    const bool imperial = model.units.IsImperial();
    const std::string who = "alignment \"" + a.name + "\": ";
    text += "  \"" + a.name + "\": starts at " + StationText(a.staStart, imperial, 3) + ", " + GeometryLine(a) +
            ", geometry " + Fixed(length, 3) + " long";
    if (!a.stationEquations.empty()) text += ", " + Count(a.stationEquations.size(), "station equation", "station equations");
    text += "\n";
    for (const landxml::CProfile& profile : a.profiles) {
      for (const landxml::CProfAlign& layout : profile.layouts) text += "    " + ProfileLine(layout) + "\n";
      for (const landxml::CProfSurf& surface : profile.surfaceProfiles) {
        text += "    surface profile \"" + surface.name + "\": " + Count(surface.points.size(), "point", "points") + "\n";
        problems.push_back(who + "surface profile \"" + surface.name + "\" would not go through run (layout profiles only)");
      }
      for (const landxml::CProfAlign& layout : profile.layouts) {
        for (const std::string& note : PlanProfile(layout).notes)
          problems.push_back(who + "profile \"" + layout.name + "\": " + note);
        if (layout.vertices.size() < 2)
          problems.push_back(who + "profile \"" + layout.name + "\" has fewer than two PVIs");
        for (std::size_t i = 1; i < layout.vertices.size(); ++i)
          if (!(layout.vertices[i].station > layout.vertices[i - 1].station)) {
            problems.push_back(who + "profile \"" + layout.name + "\": PVI " + std::to_string(i + 1) +
                               " does not lie after the one before it");
            break;
          }
        if (!layout.vertices.empty() && !a.geometry.empty() &&
            (layout.vertices.front().station < plan.startStation - 1e-3 ||
             layout.vertices.back().station > plan.startStation + length + 1e-3))
          problems.push_back(who + "profile \"" + layout.name + "\" reaches beyond the alignment's stations (" +
                             Fixed(plan.startStation, 3) + " to " + Fixed(plan.startStation + length, 3) + ")");
      }
    }
    if (!plan.error.empty()) problems.push_back(who + plan.error);
    for (const std::string& item : plan.notCarried) problems.push_back(who + item);
    for (const std::string& item : plan.notes) problems.push_back(who + item);
    if (plan.inputClosure > kClosureWorthSaying)
      problems.push_back(who + "its elements disagree with each other by up to " + Brief(plan.inputClosure) +
                         " (gaps, arc radii against their points, spiral ends)");
    if (a.length && std::fabs(*a.length - length) > 1e-3 * std::max(1.0, length) &&
        plan.tangentsInserted == 0)
      problems.push_back(who + "its length attribute " + Fixed(*a.length, 3) + " is not the length of its geometry " +
                         Fixed(length, 3));
  }
  text += "Surfaces: " + std::to_string(model.surfaces.size()) + "\n";
  for (const landxml::CSurface& s : model.surfaces) {
    text += "  \"" + s.name + "\": ";
    text += s.type ? (*s.type == landxml::SurfaceType::Grid ? "grid, " : "TIN, ") : "no definition, ";
    text += Count(s.points.size(), "point", "points") + ", " + Count(s.faces.size(), "face", "faces") + ", " +
            Count(s.breaklines.size(), "breakline", "breaklines") + ", " +
            Count(s.boundaries.size(), "boundary", "boundaries") + "\n";
    problems.push_back("surface \"" + s.name + "\" would not go through run (it carries alignments and profiles)");
  }
  text += "Problems: " + (problems.empty() ? std::string("none") : std::to_string(problems.size())) + "\n";
  for (const std::string& p : problems) text += "  - " + p + "\n";
  if (!read.notes.empty()) {
    text += "Notes from reading:\n";
    for (const std::string& n : read.notes) text += "  - " + n + "\n";
  }
  return true;
}

int InspectFile(const std::string& path) {
  std::string text;
  if (!InspectSummary(path, text)) {
    std::fprintf(stderr, "kdhost: %s\n", text.c_str());
    return kExitInput;
  }
  std::fputs(text.c_str(), stdout);
  return kExitDone;
}

}  // namespace host
