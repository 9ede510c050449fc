// A layout profile of the host's design data as the host interface carries it (PVIs with their
// vertical curves), the elevations such a profile gives, and the profile read back compared
// with the input.
#pragma once

#include <string>
#include <vector>

#include "landxml/Model.h"
#include "module/interface/C3dRecords.h"

namespace host {

struct CProfilePlan {
  std::vector<CC3dProfilePVI> pvis;
  std::vector<std::string> notCarried;
  // What in the profile disagrees with itself: vertical curves that overlap each other or
  // reach past a neighbouring PVI.
  std::vector<std::string> notes;
};

// ParaCurve, UnsymParaCurve and CircCurve map to the parabolic, asymmetric parabolic and
// circular curve types; a circular curve's radius goes without its sign.
CProfilePlan PlanProfile(const landxml::CProfAlign& layout);

// Where a PVI's vertical curve begins and ends, along the stations.
struct CCurveExtent {
  double begin = 0.0;
  double end = 0.0;
};
// Nothing for the end PVIs and for PVIs without a curve (begin == end == the PVI's station).
CCurveExtent CurveExtent(const std::vector<CC3dProfilePVI>& pvis, std::size_t index);

// Elevation of the profile at the station: grades between PVIs, and within a curve's extent a
// symmetric parabola, two parabolas meeting at the PVI's station (asymmetric), or the circle of
// the given radius tangent to both grades. Before the first PVI and after the last the end
// grades go on. Needs at least two PVIs with rising stations; gives 0 otherwise.
double ProfileElevation(const std::vector<CC3dProfilePVI>& pvis, double station);

struct CProfileComparison {
  bool countsMatch = false;
  int sent = 0;
  int readBack = 0;
  double station = 0.0;     // largest PVI station difference
  double elevation = 0.0;   // largest PVI elevation difference
  double curve = 0.0;       // largest difference of a curve parameter (length, lengths, radius)
  double alongProfile = 0.0;  // largest elevation difference between the input profile and the
                              // samples read back, within the input's station range
  // Samples the module gave no elevation for (it answers 0 there), and where they lie.
  int missingSamples = 0;
  double missingFrom = 0.0;
  double missingTo = 0.0;
  std::vector<std::string> changes;  // one sentence for each PVI that came back different
};

CProfileComparison CompareProfile(const std::vector<CC3dProfilePVI>& sent, const std::vector<CC3dProfilePVI>& readBack,
                                  const std::vector<CC3dProfilePoint>& samples);

// A sample at elevation 0 where the PVIs give the profile another elevation: the module
// answers 0 where the profile has no elevation (between overlapping vertical curves, say).
bool IsMissingSample(const std::vector<CC3dProfilePVI>& pvis, const CC3dProfilePoint& sample);

// "parabolic 100", "asymmetric 60/90", "circular R 3000", "" for none.
std::string CurveText(const CC3dProfilePVI& pvi);

}  // namespace host
