#include "host/Report.h"

#include <filesystem>

#include "host/HostText.h"

namespace host {
namespace {

// Markdown table cells hold no pipes or line breaks.
std::string Cell(std::string text) {
  for (char& c : text)
    if (c == '|' || c == '\n') c = ' ';
  return text;
}

std::string Difference(double value, bool comparable) { return comparable ? Brief(value) : "not comparable"; }

struct CEntityCounts {
  std::size_t lines = 0, arcs = 0, spiralArcs = 0, gapTangents = 0;
};

CEntityCounts CountEntities(const CAlignmentPlan& plan) {
  CEntityCounts counts;
  for (const CPlannedCurve& c : plan.curves) {
    switch (c.origin) {
      case CurveOrigin::Line:
        ++counts.lines;
        break;
      case CurveOrigin::Arc:
        ++counts.arcs;
        break;
      case CurveOrigin::SpiralArc:
        ++counts.spiralArcs;
        break;
      case CurveOrigin::GapTangent:
        ++counts.gapTangents;
        break;
    }
  }
  return counts;
}

void List(std::string& out, const std::vector<std::string>& items) {
  for (const std::string& item : items) out += "  - " + item + "\n";
}

void AlignmentSection(std::string& out, const CRunResult& run, const CAlignmentRun& a) {
  const std::string u = " " + run.UnitName();
  const bool imperial = run.units.IsImperial();
  const CAlignmentComparison& c = a.comparison;
  const CEntityCounts counts = CountEntities(a.plan);
  std::size_t readLines = 0;
  for (const CKdPlanElement& e : a.readBack) readLines += e.isLine ? 1 : 0;

  out += "\n## Alignment \"" + a.name + "\"\n\n";
  if (!a.description.empty()) out += a.description + "\n\n";
  out += "- Length: " + Fixed(a.Length(), 3) + u + "\n";
  out += "- Stations: " + StationText(a.startStation, imperial, 3) + " to " +
         StationText(a.startStation + a.Length(), imperial, 3) + "\n";
  out += "- Entities written: " + std::to_string(a.plan.curves.size()) + " (" + Count(counts.lines, "line", "lines") +
         ", " + Count(counts.arcs, "arc", "arcs") + ", " + Count(counts.spiralArcs, "arc", "arcs") + " for spirals";
  if (counts.gapTangents) out += ", " + Count(counts.gapTangents, "tangent", "tangents") + " put in across gaps";
  out += "); read back: " + std::to_string(a.readBack.size()) + " (" + Count(readLines, "line", "lines") + ", " +
         Count(a.readBack.size() - readLines, "arc", "arcs") + ")\n";
  if (a.polylineId != 0)
    out += "- In drawing.dxf: as the polyline the alignment drew of itself (DXF carries no Civil 3D objects)\n";
  out += "- Spirals replaced: " + std::to_string(a.plan.spirals.size());
  if (!a.plan.spirals.empty())
    out += " by " + std::to_string(a.plan.arcsForSpirals) + " arcs; largest distance from a spiral to its arcs " +
           Brief(a.plan.largestFitDeviation) + u + " (tolerance " + Short(run.spiralTolerance) + u + ")";
  out += "\n";
  out += "- Largest difference between input and read-back:\n";
  out += "  - lines and arcs: " + Difference(c.linesArcs, c.countsMatch) + u + "\n";
  if (!a.plan.spirals.empty()) out += "  - spirals (to the arcs read back): " + Difference(c.spirals, c.countsMatch) + u + "\n";
  out += "  - starting station: " + Brief(c.startStation) + u + "\n";
  out += "  - the chain as the module was asked to build it: " + Difference(c.interface, c.countsMatch) + u + "\n";
  out += "  - the input's own closure (gaps between its elements, arcs whose radius disagrees with their points, "
         "spirals ending away from their stated end): " + Brief(a.plan.inputClosure) + u + "\n";
  if (!c.countsMatch)
    out += "- The module read back " + std::to_string(c.readBack) + " entities for the " + std::to_string(c.sent) +
           " written, so they cannot be compared one by one.\n";
  if (!a.notCarried.empty()) {
    out += "- Not carried:\n";
    List(out, a.notCarried);
  }
  if (!a.notes.empty()) {
    out += "- Notes:\n";
    List(out, a.notes);
  }

  for (const CProfileRun& p : a.profiles) {
    const CProfileComparison& pc = p.comparison;
    out += "\n### Profile \"" + p.name + "\"\n\n";
    if (p.readBack.empty()) {
      out += "- Not read back.\n";
      continue;
    }
    const double first = p.readBack.front().GetStation();
    const double last = p.readBack.back().GetStation();
    int curves = 0;
    for (const CC3dProfilePVI& v : p.readBack) curves += v.GetType() != CC3dProfilePVI::NoCurve ? 1 : 0;
    out += "- Length: " + Fixed(last - first, 3) + u + "\n";
    out += "- Stations: " + StationText(first, imperial, 3) + " to " + StationText(last, imperial, 3) + "\n";
    out += "- PVIs written: " + std::to_string(p.plan.pvis.size()) + "; read back: " + std::to_string(p.readBack.size()) +
           " (" + std::to_string(curves) + " with vertical curves); samples every " + Short(run.step) + u + ": " +
           std::to_string(p.samples.size()) + "\n";
    out += "- Largest difference between input and read-back: PVI station " + Difference(pc.station, pc.countsMatch) +
           u + ", PVI elevation " + Difference(pc.elevation, pc.countsMatch) + u + ", curve length or radius " +
           Difference(pc.curve, pc.countsMatch) + u + "; elevation along the profile " + Brief(pc.alongProfile) + u +
           "\n";
    if (!pc.changes.empty()) {
      out += "- Came back different:\n";
      List(out, pc.changes);
    }
    if (!p.plan.notes.empty()) {
      out += "- Notes:\n";
      List(out, p.plan.notes);
    }
    if (!p.pictureFile.empty()) out += "- Picture: [" + p.pictureFile + "](" + p.pictureFile + ")\n";
  }
}

}  // namespace

std::string ReportMarkdown(const CRunResult& run) {
  const std::string u = " " + run.UnitName();
  std::string out = "# kdhost run: " + std::filesystem::path(run.inputFile).filename().string() + "\n\n";
  out += "- Input: `" + run.inputFile + "` (LandXML " + run.landXmlVersion;
  if (!run.projectName.empty()) out += ", project \"" + run.projectName + "\"";
  out += "), lengths in " + std::string(landxml::LinearUnitName(run.units.linear)) + "\n";
  out += "- Module: `" + run.modulePath + "` (interface version 3, platform F000)\n";
  out += "- Spiral tolerance: " + Short(run.spiralTolerance) + u + "; profile samples every " + Short(run.step) + u + "\n";
  out += "- Output files:";
  for (const std::string& f : run.outputFiles) out += " `" + f + "`";
  out += "\n\n";

  out += "| Alignment | Length | Start | End | Entities (read back) | Spirals replaced (arcs) | Profiles | Largest difference "
         "lines/arcs | Largest difference spirals |\n";
  out += "|---|---:|---:|---:|---:|---:|---:|---:|---:|\n";
  for (const CAlignmentRun& a : run.alignments) {
    const bool imperial = run.units.IsImperial();
    out += "| " + Cell(a.name) + " | " + Fixed(a.Length(), 3) + " | " + StationText(a.startStation, imperial, 3) + " | " +
           StationText(a.startStation + a.Length(), imperial, 3) + " | " + std::to_string(a.readBack.size()) + " | " +
           std::to_string(a.plan.spirals.size()) + " (" + std::to_string(a.plan.arcsForSpirals) + ") | " +
           std::to_string(a.profiles.size()) + " | " + Difference(a.comparison.linesArcs, a.comparison.countsMatch) +
           " | " + (a.plan.spirals.empty() ? "-" : Difference(a.comparison.spirals, a.comparison.countsMatch)) + " |\n";
  }

  for (const CAlignmentRun& a : run.alignments) AlignmentSection(out, run, a);

  if (!run.notCarried.empty()) {
    out += "\n## Not carried\n\n";
    for (const std::string& item : run.notCarried) out += "- " + item + "\n";
  }
  if (!run.readerNotes.empty()) {
    out += "\n## Notes from reading the input\n\n";
    for (const std::string& item : run.readerNotes) out += "- " + item + "\n";
  }
  return out;
}

}  // namespace host
