#include "host/SvgProfile.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/HostText.h"
#include "host/ProfilePlan.h"
#include "host/SvgWriter.h"

namespace host {
namespace {

constexpr double kLeft = 90.0, kRight = 40.0, kTop = 70.0, kBottom = 70.0;
constexpr double kFill = 0.7;  // share of the plot height the elevations may take

constexpr const char* kStyle =
    "text{font-family:DejaVu Sans,Arial,sans-serif;fill:#222}"
    ".frame{fill:none;stroke:#444;stroke-width:1}"
    ".grid{stroke:#d8d8d8;stroke-width:0.8}"
    ".grid-label{font-size:11px}"
    ".tangent{stroke:#888;stroke-width:1.2;stroke-dasharray:6 4;fill:none}"
    ".profile{stroke:#1f4e9a;stroke-width:2.2;fill:none}"
    ".vertical-curve{stroke:#c0392b;stroke-width:3;fill:none}"
    ".curve-end{stroke:#c0392b;stroke-width:1.2}"
    ".pvi{fill:white;stroke:#222;stroke-width:1.5}"
    ".pvi-label{font-size:11px}"
    ".grade-label{font-size:11px;fill:#555}"
    ".title{font-size:16px;font-weight:bold}"
    ".exaggeration{font-size:13px}"
    ".note{font-size:13px;fill:#c0392b}"
    ".axis-title{font-size:12px}";

double Grade(const CC3dProfilePVI& a, const CC3dProfilePVI& b) {
  const double run = b.GetStation() - a.GetStation();
  return run != 0.0 ? (b.GetElevation() - a.GetElevation()) / run : 0.0;
}

}  // namespace

double VerticalExaggeration(double stationRange, double elevationRange, double plotWidth, double plotHeight) {
  if (!(stationRange > 0.0) || !(elevationRange > 0.0)) return 10.0;
  const double most = kFill * plotHeight * stationRange / (plotWidth * elevationRange);
  double chosen = 1.0;
  for (double v : {1.0, 2.0, 5.0, 10.0, 20.0, 50.0, 100.0, 200.0, 500.0, 1000.0})
    if (v <= most) chosen = v;
  return chosen;
}

std::string ProfileSvg(const std::vector<CC3dProfilePVI>& pvis, const std::vector<CC3dProfilePoint>& samples,
                       const CProfilePicture& picture) {
  double s0 = std::numeric_limits<double>::infinity(), s1 = -s0, e0 = s0, e1 = -s0;
  const auto add = [&](double s, double e) {
    s0 = std::min(s0, s);
    s1 = std::max(s1, s);
    e0 = std::min(e0, e);
    e1 = std::max(e1, e);
  };
  // Samples the module had no elevation for are left out of the picture, not drawn at 0.
  std::vector<bool> missing(samples.size());
  int missingCount = 0;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    missing[i] = IsMissingSample(pvis, samples[i]);
    missingCount += missing[i] ? 1 : 0;
  }
  for (const CC3dProfilePVI& p : pvis) add(p.GetStation(), p.GetElevation());
  for (std::size_t i = 0; i < samples.size(); ++i)
    if (!missing[i]) add(samples[i].GetStation(), samples[i].GetElevation());
  if (!(s1 >= s0)) s0 = s1 = e0 = e1 = 0.0;
  if (s1 - s0 < 1e-9) s1 = s0 + 1.0;
  if (e1 - e0 < 1e-9) {
    e0 -= 0.5;
    e1 += 0.5;
  }

  const double plotW = picture.width - kLeft - kRight;
  const double plotH = picture.height - kTop - kBottom;
  const double exaggeration = VerticalExaggeration(s1 - s0, e1 - e0, plotW, plotH);
  double kx = plotW / (s1 - s0);
  if ((e1 - e0) * kx * exaggeration > kFill * plotH) kx = kFill * plotH / ((e1 - e0) * exaggeration);
  const double ky = kx * exaggeration;
  const double left = kLeft + (plotW - (s1 - s0) * kx) / 2.0;
  const double midElevation = (e0 + e1) / 2.0;
  const double midY = kTop + plotH / 2.0;
  const auto at = [&](double s, double e) { return CSvgPoint{left + (s - s0) * kx, midY - (e - midElevation) * ky}; };
  const double bottomElevation = midElevation - (plotH / 2.0) / ky;
  const double topElevation = midElevation + (plotH / 2.0) / ky;

  CSvgWriter svg(picture.width, picture.height, picture.title, kStyle);
  svg.Text({kLeft, 30.0}, picture.title, "title");
  svg.Text({kLeft, 50.0},
           "Vertical exaggeration " + Short(exaggeration) + "\xC3\x97: elevations drawn at " + Short(exaggeration) +
               " times the scale of stations",
           "exaggeration");

  // Grid: station lines across the sampled range, elevation lines across the plot's height.
  svg.BeginGroup("grid-lines");
  const double stationStep = NiceStep(90.0 / kx);
  for (double s = std::ceil(s0 / stationStep - 1e-9) * stationStep; s <= s1 + 1e-9; s += stationStep) {
    svg.Line(at(s, bottomElevation), at(s, topElevation), "grid");
    svg.Text({at(s, bottomElevation).x, kTop + plotH + 16.0}, StationText(s, picture.imperial, 0), "grid-label", "middle");
  }
  const double elevationStep = NiceStep(40.0 / ky);
  for (double e = std::ceil(bottomElevation / elevationStep) * elevationStep; e <= topElevation + 1e-9;
       e += elevationStep) {
    svg.Line({left, at(s0, e).y}, {left + (s1 - s0) * kx, at(s0, e).y}, "grid");
    const int decimals = elevationStep >= 1.0 ? 0 : (elevationStep >= 0.1 ? 1 : 2);
    svg.Text({left - 6.0, at(s0, e).y + 4.0}, Fixed(e, decimals), "grid-label", "end");
  }
  svg.EndGroup();
  svg.Rect(left, kTop, (s1 - s0) * kx, plotH, "frame");
  svg.Text({left + (s1 - s0) * kx / 2.0, picture.height - 22.0}, "station (" + picture.unitName + ")", "axis-title",
           "middle");
  svg.Text({22.0, midY}, "elevation (" + picture.unitName + ")", "axis-title", "middle", -90.0);

  // Tangents through the PVIs, with their grades.
  if (pvis.size() >= 2) {
    std::vector<CSvgPoint> polygon;
    for (const CC3dProfilePVI& p : pvis) polygon.push_back(at(p.GetStation(), p.GetElevation()));
    svg.BeginGroup("tangents");
    svg.Polyline(polygon, "tangent");
    for (std::size_t i = 0; i + 1 < pvis.size(); ++i) {
      const CSvgPoint a = polygon[i], b = polygon[i + 1];
      if (b.x - a.x < 60.0) continue;
      const double g = Grade(pvis[i], pvis[i + 1]);
      std::string text = g >= 0.0 ? "+" : "";  // built by appending: see StationText
      text += Fixed(100.0 * g, 2);
      text += '%';
      const double angle = std::atan2(b.y - a.y, b.x - a.x) * 180.0 / 3.141592653589793;
      svg.Text({(a.x + b.x) / 2.0, (a.y + b.y) / 2.0 - 8.0}, text, "grade-label", "middle", angle);
    }
    svg.EndGroup();
  }

  // The profile as the module samples it, broken where samples are missing; the stretches of
  // vertical curves drawn over it.
  if (!samples.empty()) {
    std::vector<CSvgPoint> line;
    for (std::size_t i = 0; i <= samples.size(); ++i) {
      if (i < samples.size() && !missing[i]) {
        line.push_back(at(samples[i].GetStation(), samples[i].GetElevation()));
        continue;
      }
      if (line.size() > 1) svg.Polyline(line, "profile");
      line.clear();
    }
    if (missingCount > 0)
      svg.Text({kLeft + plotW, 50.0},
               "the module gave no elevation at " + Count(static_cast<std::size_t>(missingCount), "sample", "samples") +
                   " (left out)",
               "note", "end");
    svg.BeginGroup("vertical-curves");
    for (std::size_t i = 1; i + 1 < pvis.size(); ++i) {
      const CCurveExtent extent = CurveExtent(pvis, i);
      if (!(extent.end > extent.begin)) continue;
      std::vector<CSvgPoint> piece;
      piece.push_back(at(extent.begin, ProfileElevation(pvis, extent.begin)));
      for (std::size_t k = 0; k < samples.size(); ++k)
        if (!missing[k] && samples[k].GetStation() > extent.begin && samples[k].GetStation() < extent.end)
          piece.push_back(at(samples[k].GetStation(), samples[k].GetElevation()));
      piece.push_back(at(extent.end, ProfileElevation(pvis, extent.end)));
      svg.Polyline(piece, "vertical-curve");
      for (double s : {extent.begin, extent.end}) {
        const CSvgPoint p = at(s, ProfileElevation(pvis, s));
        svg.Line({p.x, p.y - 7.0}, {p.x, p.y + 7.0}, "curve-end");
      }
    }
    svg.EndGroup();
  }

  // PVIs: a crest is labelled above, a sag below, the ends on the side with more room.
  svg.BeginGroup("pvis");
  for (std::size_t i = 0; i < pvis.size(); ++i) {
    const CC3dProfilePVI& p = pvis[i];
    const CSvgPoint c = at(p.GetStation(), p.GetElevation());
    svg.Circle(c, 4.0, "pvi");
    std::vector<std::string> lines = {"PVI " + std::to_string(i + 1), StationText(p.GetStation(), picture.imperial, 2),
                                      "El " + Fixed(p.GetElevation(), 3)};
    if (!CurveText(p).empty()) lines.push_back(CurveText(p));
    // Away from the tangent that leaves or reaches the PVI: an end whose grade rises away
    // from its label is labelled below, a falling one above.
    bool above = true;
    if (pvis.size() >= 2) {
      if (i == 0) {
        above = Grade(pvis[0], pvis[1]) < 0.0;
      } else if (i + 1 == pvis.size()) {
        above = Grade(pvis[i - 1], p) > 0.0;
      } else {
        above = Grade(pvis[i - 1], p) > Grade(p, pvis[i + 1]);
      }
    }
    const double lineHeight = 13.0;
    const double blockHeight = lineHeight * static_cast<double>(lines.size());
    double y = above ? c.y - 12.0 - blockHeight + lineHeight : c.y + 20.0;
    y = std::clamp(y, kTop + lineHeight, kTop + plotH - blockHeight + lineHeight - 2.0);
    const char* anchor = i == 0 ? "start" : (i + 1 == pvis.size() ? "end" : "middle");
    svg.TextLines({c.x, y}, lines, lineHeight, "pvi-label", anchor);
  }
  svg.EndGroup();
  return svg.Finish();
}

}  // namespace host
