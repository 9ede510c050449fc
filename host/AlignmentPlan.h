// An alignment of the host's design data turned into what the host interface carries (a chain
// of lines and arcs and a starting station), and the chain read back compared with the input.
#pragma once

#include <string>
#include <vector>

#include "host/PlanGeometry.h"
#include "host/SpiralFit.h"
#include "landxml/Model.h"
#include "module/interface/C3dRecords.h"

namespace host {

enum class CurveOrigin {
  Line,        // a line of the input
  Arc,         // a circular curve of the input
  SpiralArc,   // one of the arcs that replace a spiral
  GapTangent,  // a tangent the host put in where the input's elements leave a gap
};

struct CPlannedCurve {
  CKdPlanElement element;
  CurveOrigin origin = CurveOrigin::Line;
  int inputIndex = -1;  // index into CAlignment::geometry; -1 for a gap tangent
};

struct CPlannedSpiral {
  int inputIndex = 0;
  CKdClothoid clothoid;
  int firstCurve = 0;  // its arcs in CAlignmentPlan::curves
  int curveCount = 0;
  double fitDeviation = 0.0;
  double misclosure = 0.0;  // from the clothoid's end to the end the file gives
};

struct CAlignmentPlan {
  std::vector<CPlannedCurve> curves;
  std::vector<CPlannedSpiral> spirals;
  double startStation = 0.0;
  int arcsForSpirals = 0;
  double largestFitDeviation = 0.0;
  int tangentsInserted = 0;
  double longestInsertedTangent = 0.0;
  // The input's own disagreement with itself, which no round trip can beat: a gap between one
  // element's end and the next one's start that the chain closes by moving the start, an arc
  // whose radius disagrees with its points, a spiral that does not end where the file says.
  double inputClosure = 0.0;
  // What the interface cannot carry, one sentence each; the run reports them.
  std::vector<std::string> notCarried;
  // What the host chose where the input left it open.
  std::vector<std::string> notes;
  // Set when the alignment cannot be planned at all (a spiral no chain of arcs fits).
  std::string error;
};

// A gap up to this (or up to the spiral tolerance, when larger) is closed by starting the next
// element where the previous one ends; a wider one gets a tangent of its own.
inline constexpr double kGapFloor = 1e-6;

CAlignmentPlan PlanAlignment(const landxml::CAlignment& alignment, double spiralTolerance);

// The records for SetAlignmentGeometry. An arc's record carries its start and end points too.
std::vector<CC3dCurve> ToRecords(const std::vector<CPlannedCurve>& curves);
// An element from a record read back: a line's two points, or an arc's centre, radius, start
// angle and sweep with its end points computed.
CKdPlanElement FromRecord(const CC3dCurve& record);

struct CAlignmentComparison {
  bool countsMatch = false;
  int sent = 0;
  int readBack = 0;
  // Largest difference, in drawing units, between the module's read-back and:
  double interface = 0.0;  // the chain as the module was asked to build it (each element
                           // starting where the previous one ended)
  double linesArcs = 0.0;  // the input's lines and arcs
  double spirals = 0.0;    // the input's spirals (distance from the clothoid to the arcs)
  double startStation = 0.0;
};

CAlignmentComparison CompareAlignment(const CAlignmentPlan& plan,
                                      const std::vector<CKdPlanElement>& readBack, double readBackStartStation);

// Largest distance between two elements: their end points, and points along each to the other.
double ElementDifference(const CKdPlanElement& a, const CKdPlanElement& b);

// A math heading (counter-clockwise from east) from a LandXML azimuth (clockwise from north),
// and back.
double HeadingFromAzimuth(double azimuth);
double AzimuthFromHeading(double heading);

}  // namespace host
