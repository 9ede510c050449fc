// The profile picture: a grid of stations and elevations, the tangents through the PVIs, the
// profile sampled by the module with its vertical curves picked out, the PVIs labelled, and the
// vertical exaggeration stated.
#pragma once

#include <string>
#include <vector>

#include "module/interface/C3dRecords.h"

namespace host {

struct CProfilePicture {
  std::string title;
  std::string unitName = "m";
  bool imperial = false;
  double width = 1200.0;
  double height = 640.0;
};

std::string ProfileSvg(const std::vector<CC3dProfilePVI>& pvis, const std::vector<CC3dProfilePoint>& samples,
                       const CProfilePicture& picture);

// The exaggeration the picture uses for a profile spanning `stationRange` and `elevationRange`
// drawn `plotWidth` by `plotHeight`: the largest of 1, 2, 5, 10, 20, 50, ... (up to 1000) that
// keeps the elevations within the plot, never below 1.
double VerticalExaggeration(double stationRange, double elevationRange, double plotWidth, double plotHeight);

}  // namespace host
