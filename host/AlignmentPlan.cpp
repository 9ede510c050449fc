#include "host/AlignmentPlan.h"

#include <algorithm>
#include <limits>
#include <numbers>
#include <optional>

#include "host/HostText.h"

namespace host {
namespace {

using std::numbers::pi;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

CKdPlanPoint Plan(const landxml::CPoint& p) { return {p.x, p.y}; }

const char* KindName(const landxml::CGeometry& g) {
  if (std::holds_alternative<landxml::CLine>(g)) return "Line";
  if (std::holds_alternative<landxml::CCurve>(g)) return "Curve";
  return "Spiral";
}

// "Spiral 4 (station 688.338)": the element as a user finds it in the file.
std::string Describe(const landxml::CAlignment& alignment, int index) {
  const landxml::CGeometry& g = alignment.geometry[static_cast<std::size_t>(index)];
  const std::optional<double> station = std::visit([](const auto& e) { return e.staStart; }, g);
  std::string text = std::string(KindName(g)) + " " + std::to_string(index + 1);
  if (station) text += " (station " + Fixed(*station, 3) + ")";
  return text;
}

// The file's arc, moved as little as the file's rounding needs so that it runs exactly from
// its start point to its end point: the centre goes to the nearest point of the chord's
// perpendicular bisector. The module computes an arc's points from its centre and radius, so a
// centre off the bisector would move one end.
CKdPlanElement ArcThroughEnds(const landxml::CCurve& curve, double& closure) {
  const CKdPlanPoint start = Plan(curve.start);
  const CKdPlanPoint end = Plan(curve.end);
  const CKdPlanPoint fileCentre = Plan(curve.center);
  const bool ccw = curve.rot == landxml::Rotation::CounterClockwise;
  closure = std::max(std::fabs(Distance(start, fileCentre) - curve.radius),
                     std::fabs(Distance(end, fileCentre) - curve.radius));
  const CKdPlanPoint chord = end - start;
  const double chordLength = Norm(chord);
  if (chordLength <= kGapFloor) {
    // A whole circle, or nothing: only the file's centre and length say which.
    const double sweep = (ccw ? 1.0 : -1.0) * curve.length / curve.radius;
    CKdPlanElement arc = CKdPlanElement::Arc(fileCentre, curve.radius, AngleAbout(start, fileCentre), sweep);
    arc.start = start;
    return arc;
  }
  const CKdPlanPoint middle = 0.5 * (start + end);
  const CKdPlanPoint across = (1.0 / chordLength) * LeftNormal(chord);
  const CKdPlanPoint centre = middle + Dot(fileCentre - middle, across) * across;
  closure = std::max(closure, Distance(centre, fileCentre));
  const double radius = Distance(start, centre);
  const double a0 = AngleAbout(start, centre);
  const double a1 = AngleAbout(end, centre);
  const double sweep = ccw ? NormalizedAngle(a1 - a0) : -NormalizedAngle(a0 - a1);
  CKdPlanElement arc = CKdPlanElement::Arc(centre, radius, a0, sweep);
  arc.start = start;
  arc.end = end;
  return arc;
}

double Curvature(double radius, landxml::Rotation rot) {
  if (!std::isfinite(radius)) return 0.0;
  return (rot == landxml::Rotation::CounterClockwise ? 1.0 : -1.0) / radius;
}

// The heading a spiral leaves its start with: the file's, else the one the previous element
// arrives with, else the one that takes the clothoid from its start through its end point.
double SpiralStartHeading(const landxml::CSpiral& spiral, std::optional<double> previousHeading, double k0,
                          double k1) {
  if (spiral.dirStart) return HeadingFromAzimuth(*spiral.dirStart);
  if (previousHeading) return *previousHeading;
  const CKdClothoid local({0.0, 0.0}, 0.0, spiral.length, k0, k1);
  const CKdPlanPoint chord = Plan(spiral.end) - Plan(spiral.start);
  return std::atan2(chord.y, chord.x) - std::atan2(local.End().y, local.End().x);
}

// The arc through three points, travelled from the first to the last.
CKdPlanElement ArcThrough(CKdPlanPoint a, CKdPlanPoint m, CKdPlanPoint b) {
  const CKdPlanPoint u = m - a;
  const CKdPlanPoint w = b - a;
  const double det = 2.0 * Cross(u, w);
  if (det == 0.0) return CKdPlanElement::Line(a, b);
  const CKdPlanPoint centre =
      a + CKdPlanPoint{(w.y * Dot(u, u) - u.y * Dot(w, w)) / det, (u.x * Dot(w, w) - w.x * Dot(u, u)) / det};
  const double a0 = AngleAbout(a, centre);
  const double a1 = AngleAbout(b, centre);
  const double sweep = Cross(u, w) > 0.0 ? NormalizedAngle(a1 - a0) : -NormalizedAngle(a0 - a1);
  CKdPlanElement arc = CKdPlanElement::Arc(centre, Distance(a, centre), a0, sweep);
  arc.start = a;
  arc.end = b;
  return arc;
}

}  // namespace

double HeadingFromAzimuth(double azimuth) { return pi / 2.0 - azimuth; }
double AzimuthFromHeading(double heading) { return NormalizedAngle(pi / 2.0 - heading); }

CAlignmentPlan PlanAlignment(const landxml::CAlignment& alignment, double spiralTolerance) {
  CAlignmentPlan plan;
  plan.startStation = alignment.staStart;
  const double gapLimit = std::max(kGapFloor, spiralTolerance);

  // Stations stay those of the file's elements: where the first element's station is not the
  // alignment's start, there is no geometry in between, and the chain starts at the element.
  if (!alignment.geometry.empty()) {
    const std::optional<double> first = std::visit([](const auto& e) { return e.staStart; }, alignment.geometry[0]);
    if (first && std::fabs(*first - alignment.staStart) > 1e-6 * std::max(1.0, std::fabs(*first))) {
      plan.notes.push_back("the alignment's staStart " + Fixed(alignment.staStart, 3) + " is not where its first element starts (" +
                           Fixed(*first, 3) + "); there is no geometry in between, so the stationing starts at " +
                           Fixed(*first, 3));
      plan.startStation = *first;
    }
  }

  std::optional<CKdPlanPoint> previousEnd;
  std::optional<double> previousHeading;
  const auto append = [&](const CKdPlanElement& element, CurveOrigin origin, int inputIndex) {
    if (previousEnd) {
      const double gap = Distance(*previousEnd, element.start);
      if (gap > gapLimit) {
        plan.curves.push_back({CKdPlanElement::Line(*previousEnd, element.start), CurveOrigin::GapTangent, -1});
        ++plan.tangentsInserted;
        plan.longestInsertedTangent = std::max(plan.longestInsertedTangent, gap);
      } else {
        plan.inputClosure = std::max(plan.inputClosure, gap);
      }
    }
    plan.curves.push_back({element, origin, inputIndex});
    previousEnd = element.end;
    previousHeading = element.EndHeading();
  };

  for (std::size_t i = 0; i < alignment.geometry.size(); ++i) {
    const int index = static_cast<int>(i);
    const landxml::CGeometry& g = alignment.geometry[i];
    if (const auto* line = std::get_if<landxml::CLine>(&g)) {
      if (Distance(Plan(line->start), Plan(line->end)) == 0.0) {
        plan.notes.push_back(Describe(alignment, index) + " has no length and is left out");
        continue;
      }
      append(CKdPlanElement::Line(Plan(line->start), Plan(line->end)), CurveOrigin::Line, index);
    } else if (const auto* curve = std::get_if<landxml::CCurve>(&g)) {
      double closure = 0.0;
      append(ArcThroughEnds(*curve, closure), CurveOrigin::Arc, index);
      plan.inputClosure = std::max(plan.inputClosure, closure);
    } else {
      const auto& spiral = std::get<landxml::CSpiral>(g);
      if (!(spiral.length > 0.0)) {
        plan.notes.push_back(Describe(alignment, index) + " has no length and is left out");
        continue;
      }
      if (!spiral.IsClothoid())
        plan.notCarried.push_back(Describe(alignment, index) + " is a " + spiral.spiType +
                                  " spiral; it is replaced as if it were a clothoid");
      const double k0 = Curvature(spiral.radiusStart, spiral.rot);
      const double k1 = Curvature(spiral.radiusEnd, spiral.rot);
      const double heading = SpiralStartHeading(spiral, previousHeading, k0, k1);
      const CKdClothoid clothoid(Plan(spiral.start), heading, spiral.length, k0, k1);
      const CSpiralFit fit = FitSpiral(clothoid, spiralTolerance);
      if (!fit.ok) {
        plan.error = Describe(alignment, index) + ": no chain of up to " + std::to_string(kMaxFitArcs) +
                     " arcs stays within " + Short(spiralTolerance) + " of it";
        return plan;
      }
      CPlannedSpiral planned{index, clothoid, 0, 0, fit.deviation, Distance(clothoid.End(), Plan(spiral.end))};
      bool first = true;
      for (const CKdPlanElement& e : fit.elements) {
        append(e, CurveOrigin::SpiralArc, index);
        if (first) planned.firstCurve = static_cast<int>(plan.curves.size()) - 1;
        first = false;
      }
      planned.curveCount = static_cast<int>(fit.elements.size());
      plan.arcsForSpirals += planned.curveCount;
      plan.largestFitDeviation = std::max(plan.largestFitDeviation, fit.deviation);
      plan.inputClosure = std::max(plan.inputClosure, planned.misclosure);
      plan.spirals.push_back(planned);
    }
  }
  if (plan.tangentsInserted > 0)
    plan.notes.push_back(Count(static_cast<std::size_t>(plan.tangentsInserted), "tangent", "tangents") +
                         " put in where one element ends away from the next one's start, farther than the "
                         "tolerance (the longest " + Brief(plan.longestInsertedTangent) + ")");
  for (const landxml::CStationEquation& equation : alignment.stationEquations) {
    std::string text = "station equation";
    if (equation.staBack) text += " back " + Fixed(*equation.staBack, 3);
    text += " ahead " + Fixed(equation.staAhead, 3);
    if (equation.staInternal) text += " (internal station " + Fixed(*equation.staInternal, 3) + ")";
    plan.notCarried.push_back(text + ": the interface carries no station equations");
  }
  return plan;
}

std::vector<CC3dCurve> ToRecords(const std::vector<CPlannedCurve>& curves) {
  std::vector<CC3dCurve> records(curves.size());
  for (std::size_t i = 0; i < curves.size(); ++i) {
    const CKdPlanElement& e = curves[i].element;
    records[i].SetLine(CC3dPoint(e.start.x, e.start.y, 0.0), CC3dPoint(e.end.x, e.end.y, 0.0));
    if (!e.isLine) records[i].SetArc(CC3dPoint(e.centre.x, e.centre.y, 0.0), e.radius, e.startAngle, e.sweep);
  }
  return records;
}

CKdPlanElement FromRecord(const CC3dCurve& record) {
  if (record.GetIsLine()) {
    const CC3dPoint s = record.GetStartPt();
    const CC3dPoint e = record.GetEndPt();
    return CKdPlanElement::Line({s.x, s.y}, {e.x, e.y});
  }
  const CC3dPoint c = record.GetCenter();
  return CKdPlanElement::Arc({c.x, c.y}, record.GetRadius(), record.GetStartAngle(), record.GetSweep());
}

double ElementDifference(const CKdPlanElement& a, const CKdPlanElement& b) {
  double d = std::max(Distance(a.start, b.start), Distance(a.end, b.end));
  // Points along each measured against the other: an arc's centre and radius are badly
  // conditioned where it is flat, its points are not.
  constexpr int kSamples = 16;
  for (int k = 1; k < kSamples; ++k) {
    d = std::max(d, a.DistanceTo(b.PointAt(b.Length() * k / kSamples)));
    d = std::max(d, b.DistanceTo(a.PointAt(a.Length() * k / kSamples)));
  }
  return d;
}

CAlignmentComparison CompareAlignment(const CAlignmentPlan& plan,
                                      const std::vector<CKdPlanElement>& readBack, double readBackStartStation) {
  CAlignmentComparison result;
  result.sent = static_cast<int>(plan.curves.size());
  result.readBack = static_cast<int>(readBack.size());
  result.countsMatch = result.sent == result.readBack;
  result.startStation = std::fabs(readBackStartStation - plan.startStation);
  if (!result.countsMatch) {
    result.interface = result.linesArcs = result.spirals = kInfinity;
    return result;
  }
  for (std::size_t i = 0; i < readBack.size(); ++i) {
    const CPlannedCurve& planned = plan.curves[i];
    // The module starts every element where the previous one ended and passes an arc as three
    // points: its start, its middle and its end.
    CKdPlanElement asked = planned.element;
    if (i > 0) {
      const CKdPlanPoint start = plan.curves[i - 1].element.end;
      asked = asked.isLine ? CKdPlanElement::Line(start, asked.end)
                           : ArcThrough(start, asked.PointAt(0.5 * asked.Length()), asked.end);
    }
    result.interface = std::max(result.interface, ElementDifference(asked, readBack[i]));

    // A line is the file's line; an arc is the file's arc through its own end points (its
    // centre moved by no more than the input's closure).
    if (planned.origin == CurveOrigin::Line || planned.origin == CurveOrigin::Arc)
      result.linesArcs = std::max(result.linesArcs, ElementDifference(planned.element, readBack[i]));
  }
  for (const CPlannedSpiral& spiral : plan.spirals) {
    const auto first = readBack.begin() + spiral.firstCurve;
    const std::vector<CKdPlanElement> arcs(first, first + spiral.curveCount);
    double d = SpiralDeviation(spiral.clothoid, arcs);
    d = std::max({d, Distance(arcs.front().start, spiral.clothoid.Start()), Distance(arcs.back().end, spiral.clothoid.End())});
    result.spirals = std::max(result.spirals, d);
  }
  return result;
}

}  // namespace host
