// What a run made of the input: for each alignment and profile the plan that went through the
// host interface, what came back, and how the two compare. The pictures, the report and the
// LandXML output are written from this.
#pragma once

#include <string>
#include <vector>

#include "host/AlignmentPlan.h"
#include "host/ProfilePlan.h"
#include "landxml/Model.h"

namespace host {

struct CProfileRun {
  std::string name;  // as the module holds it
  std::string description;
  CProfilePlan plan;
  std::vector<CC3dProfilePVI> readBack;
  std::vector<CC3dProfilePoint> samples;  // GetStrokedProfile at the run's step
  CProfileComparison comparison;
  std::string pictureFile;  // file name of its picture in the output folder
};

struct CAlignmentRun {
  std::string name;  // as the module holds it
  std::string description;
  const landxml::CAlignment* input = nullptr;
  CAlignmentPlan plan;
  double startStation = 0.0;  // read back
  std::vector<CKdPlanElement> readBack;
  // The polyline the alignment drew of itself into the drawing (GetPolylineId): DXF readers
  // know nothing of Civil 3D's objects, so this is what they show. 0 when it drew none.
  long long polylineId = 0;
  CAlignmentComparison comparison;
  std::vector<CProfileRun> profiles;
  // What of this alignment did not go through, one sentence each (the plan's, surface
  // profiles, profiles the module refused).
  std::vector<std::string> notCarried;
  std::vector<std::string> notes;

  double Length() const {
    double length = 0.0;
    for (const CKdPlanElement& e : readBack) length += e.Length();
    return length;
  }
};

struct CRunResult {
  std::string inputFile;  // as given on the command line
  std::string modulePath;
  std::string projectName;
  landxml::CUnits units;
  std::string landXmlVersion;
  double spiralTolerance = 0.001;
  double step = 1.0;
  std::vector<CAlignmentRun> alignments;
  std::vector<std::string> notCarried;  // of the file as a whole (surfaces)
  std::vector<std::string> readerNotes;
  std::vector<std::string> outputFiles;  // names in the output folder, in the order written

  std::string UnitName() const { return units.linear == landxml::LinearUnit::Metre ? "m" : "ft"; }
  bool AnythingLeftOut() const {
    if (!notCarried.empty()) return true;
    for (const CAlignmentRun& a : alignments)
      if (!a.notCarried.empty()) return true;
    return false;
  }
};

}  // namespace host
