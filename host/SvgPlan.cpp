#include "host/SvgPlan.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

#include "host/HostText.h"
#include "host/SvgWriter.h"

namespace host {
namespace {

using std::numbers::pi;

constexpr double kMargin = 70.0;
constexpr double kMinTickSpacing = 14.0;   // picture units between ticks
constexpr double kMinLabelSpacing = 90.0;  // between station labels
constexpr double kTickLength = 7.0;

constexpr const char* kStyle =
    "text{font-family:DejaVu Sans,Arial,sans-serif;fill:#222}"
    ".tangent{stroke:#1f4e9a;stroke-width:2.2;fill:none}"
    ".curve{stroke:#c0392b;stroke-width:2.2;fill:none}"
    ".station-tick{stroke:#333;stroke-width:1}"
    ".station-tick.major{stroke-width:1.6}"
    ".station-label{font-size:11px}"
    ".alignment-name{font-size:14px;font-weight:bold}"
    ".start-mark{fill:#1f4e9a;stroke:white;stroke-width:1}"
    ".scale-bar rect.dark{fill:#222;stroke:#222}"
    ".scale-bar rect.light{fill:white;stroke:#222}"
    ".scale-bar text{font-size:11px}"
    ".north-arrow polygon{fill:#222}"
    ".north-arrow text{font-size:16px;font-weight:bold}"
    ".legend text{font-size:12px}"
    ".title{font-size:16px;font-weight:bold}";

struct CBounds {
  double minX = std::numeric_limits<double>::infinity(), minY = minX, maxX = -minX, maxY = -minX;
  void Add(CKdPlanPoint p) {
    minX = std::min(minX, p.x);
    maxX = std::max(maxX, p.x);
    minY = std::min(minY, p.y);
    maxY = std::max(maxY, p.y);
  }
  bool Empty() const { return !(maxX >= minX); }
};

// Drawing units to picture units: east to the right, north up.
struct CView {
  double scale = 1.0;
  double originX = 0.0, originY = 0.0;  // drawing point at the picture's left bottom corner of the frame
  double left = kMargin, bottom = 0.0;
  CSvgPoint operator()(CKdPlanPoint p) const {
    return {left + (p.x - originX) * scale, bottom - (p.y - originY) * scale};
  }
};

// The point and heading `distance` along a chain of elements.
bool AlongChain(const std::vector<CKdPlanElement>& chain, double distance, CKdPlanPoint& point, double& heading) {
  double walked = 0.0;
  for (const CKdPlanElement& e : chain) {
    const double length = e.Length();
    if (distance <= walked + length + 1e-9) {
      const double local = std::clamp(distance - walked, 0.0, length);
      point = e.PointAt(local);
      heading = e.isLine ? e.StartHeading() : e.StartHeading() + (e.sweep >= 0.0 ? 1.0 : -1.0) * local / e.radius;
      return true;
    }
    walked += length;
  }
  return false;
}

void DrawElement(CSvgWriter& svg, const CView& view, const CKdPlanElement& e) {
  CSvgPathData path;
  path.MoveTo(view(e.start));
  const double radius = e.radius * view.scale;
  if (e.isLine || radius > 1e6) {
    path.LineTo(view(e.end));
  } else {
    // The picture shows the ground as a map does, so a clockwise arc looks clockwise. Arcs of
    // half a turn or more go in two pieces, which no renderer misreads.
    const int pieces = std::fabs(e.sweep) >= pi ? 2 : 1;
    for (int k = 1; k <= pieces; ++k) {
      const CKdPlanPoint to = e.PointAt(e.Length() * k / pieces);
      path.ArcTo(radius, false, e.sweep < 0.0, view(to));
    }
  }
  svg.Path(path.Text(), e.isLine ? "tangent" : "curve");
}

void DrawStations(CSvgWriter& svg, const CView& view, const CPlanAlignment& a, double tick, double label,
                  bool imperial) {
  double length = 0.0;
  for (const CKdPlanElement& e : a.elements) length += e.Length();
  const double first = std::ceil(a.startStation / tick - 1e-9) * tick;
  svg.BeginGroup("stations");
  for (int i = 0;; ++i) {
    const double station = first + i * tick;
    if (station > a.startStation + length + 1e-9) break;
    CKdPlanPoint p;
    double heading = 0.0;
    if (!AlongChain(a.elements, station - a.startStation, p, heading)) break;
    const bool major = std::fabs(std::remainder(station, label)) < 1e-6 * label;
    // The tick runs across the alignment; the label sits on its left.
    const CSvgPoint at = view(p);
    const double nx = -std::sin(heading), ny = std::cos(heading);  // left normal, drawing frame
    const double reach = major ? 1.8 * kTickLength : kTickLength;
    svg.Line({at.x - nx * reach, at.y + ny * reach}, {at.x + nx * reach, at.y - ny * reach},
             major ? "station-tick major" : "station-tick");
    if (major) {
      const CSvgPoint place{at.x + nx * (reach + 4.0), at.y - ny * (reach + 4.0)};
      // Read along the normal, never upside down.
      double angle = -std::atan2(ny, nx) * 180.0 / pi;
      std::string anchor = "start";
      if (angle > 90.0 || angle < -90.0) {
        angle += angle > 0.0 ? -180.0 : 180.0;
        anchor = "end";
      }
      svg.Text({place.x, place.y + 4.0}, StationText(station, imperial, 0), "station-label", anchor, angle);
    }
  }
  svg.EndGroup();
}

void DrawScaleBar(CSvgWriter& svg, double scale, double x, double y, const std::string& unit) {
  const double barLength = NiceStepBelow(220.0 / scale);
  const double w = barLength * scale;
  svg.BeginGroup("scale-bar", "scale bar");
  for (int k = 0; k < 4; ++k) svg.Rect(x + k * w / 4.0, y, w / 4.0, 6.0, k % 2 ? "light" : "dark");
  svg.Text({x, y + 20.0}, "0", "", "middle");
  svg.Text({x + w / 2.0, y + 20.0}, Short(barLength / 2.0), "", "middle");
  svg.Text({x + w, y + 20.0}, Short(barLength) + " " + unit, "", "middle");
  svg.EndGroup();
}

void DrawNorthArrow(CSvgWriter& svg, double x, double y) {
  svg.BeginGroup("north-arrow", "north");
  svg.Polygon({{x, y}, {x - 9.0, y + 30.0}, {x, y + 23.0}, {x + 9.0, y + 30.0}}, "");
  svg.Text({x, y - 6.0}, "N", "", "middle");
  svg.EndGroup();
}

}  // namespace

double TickInterval(double longest, double scale) {
  return NiceStep(std::max(kMinTickSpacing / std::max(scale, 1e-300), longest / 60.0));
}

double LabelInterval(double tickInterval, double scale) {
  for (double m : {1.0, 2.0, 5.0, 10.0, 20.0, 50.0, 100.0})
    if (m * tickInterval * scale >= kMinLabelSpacing) return m * tickInterval;
  return 100.0 * tickInterval;
}

std::string PlanSvg(const std::vector<CPlanAlignment>& alignments, const CPlanPicture& picture) {
  CBounds bounds;
  double longest = 0.0;
  for (const CPlanAlignment& a : alignments) {
    double length = 0.0;
    for (const CKdPlanElement& e : a.elements) {
      length += e.Length();
      for (int k = 0; k <= 16; ++k) bounds.Add(e.PointAt(e.Length() * k / 16.0));
    }
    longest = std::max(longest, length);
  }
  if (bounds.Empty()) bounds.Add({0.0, 0.0});
  const double spanX = std::max(bounds.maxX - bounds.minX, 1e-9);
  const double spanY = std::max(bounds.maxY - bounds.minY, 1e-9);
  const double width = picture.width;
  const double top = 60.0;
  const double below = 90.0;  // room for the legend and scale bar
  // Fit the width; a tall drawing makes a tall picture, up to a square and a half.
  double scale = (width - 2.0 * kMargin) / spanX;
  double height = top + below + spanY * scale;
  const double tallest = 1.5 * width;
  if (height > tallest) {
    scale = (tallest - top - below) / spanY;
    height = tallest;
  }
  height = std::max(height, 420.0);
  CView view;
  view.scale = scale;
  view.originX = bounds.minX;
  view.originY = bounds.minY;
  view.left = (width - spanX * scale) / 2.0;
  view.bottom = top + (height - top - below + spanY * scale) / 2.0;

  CSvgWriter svg(width, height, picture.title, kStyle);
  svg.Text({kMargin / 2.0, 30.0}, picture.title, "title");

  const double tick = TickInterval(longest, scale);
  const double label = LabelInterval(tick, scale);
  for (const CPlanAlignment& a : alignments) {
    svg.BeginGroup("alignment", a.name);
    for (const CKdPlanElement& e : a.elements) DrawElement(svg, view, e);
    if (!a.elements.empty()) {
      DrawStations(svg, view, a, tick, label, picture.imperial);
      const CSvgPoint start = view(a.elements.front().start);
      svg.Circle(start, 4.5, "start-mark");
      // The name sits behind the start, where the alignment is not, kept within the picture.
      const double heading = a.elements.front().StartHeading();
      const bool towardsRight = std::cos(heading) > 0.0;
      const double textWidth = 9.5 * static_cast<double>(a.name.size());
      double x = start.x - 12.0 * std::cos(heading);
      double left = towardsRight ? x - textWidth : x;
      if (left < 4.0) x += 4.0 - left;
      left = towardsRight ? x - textWidth : x;
      if (left + textWidth > width - 4.0) x -= left + textWidth - (width - 4.0);
      svg.Text({x, start.y + 12.0 * std::sin(heading) + 5.0}, a.name, "alignment-name", towardsRight ? "end" : "start");
    }
    svg.EndGroup();
  }

  // Legend, scale bar and north arrow along the bottom and in the top right corner.
  const double base = height - 45.0;
  svg.BeginGroup("legend");
  svg.Line({kMargin / 2.0, base}, {kMargin / 2.0 + 30.0, base}, "tangent");
  svg.Text({kMargin / 2.0 + 36.0, base + 4.0}, "tangent", "");
  svg.Line({kMargin / 2.0 + 110.0, base}, {kMargin / 2.0 + 140.0, base}, "curve");
  svg.Text({kMargin / 2.0 + 146.0, base + 4.0}, "arc", "");
  svg.Text({kMargin / 2.0, base + 22.0},
           "ticks every " + Short(tick) + " " + picture.unitName + ", labels every " + Short(label) + " " + picture.unitName,
           "");
  svg.EndGroup();
  DrawScaleBar(svg, scale, width - kMargin - NiceStepBelow(220.0 / scale) * scale, base - 6.0, picture.unitName);
  DrawNorthArrow(svg, width - kMargin / 2.0 - 10.0, 30.0);
  return svg.Finish();
}

}  // namespace host
