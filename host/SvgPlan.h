// The plan picture: alignments as read back, with station ticks and labels, a scale bar and a
// north arrow.
#pragma once

#include <string>
#include <vector>

#include "host/PlanGeometry.h"

namespace host {

struct CPlanAlignment {
  std::string name;
  double startStation = 0.0;
  std::vector<CKdPlanElement> elements;
};

struct CPlanPicture {
  std::string title;
  std::string unitName = "m";  // "m" or "ft": the scale bar's unit
  bool imperial = false;       // station labels as 12+34.00 instead of 1+234.00
  double width = 1200.0;       // picture units
};

// The SVG document. Alignments without elements are listed in the legend only.
std::string PlanSvg(const std::vector<CPlanAlignment>& alignments, const CPlanPicture& picture);

// Ticks every `TickInterval`, labels every `LabelInterval` (a multiple of it), for alignments
// drawn at `scale` picture units per drawing unit.
double TickInterval(double longest, double scale);
double LabelInterval(double tickInterval, double scale);

}  // namespace host
