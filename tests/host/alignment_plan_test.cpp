// Design data turned into what the host interface carries, and read-backs compared with it:
// alignments (gaps, stationing, spirals, what cannot be carried) and profiles (the curve kinds
// and the elevations they give, against textbook values).
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "host/AlignmentPlan.h"
#include "host/ProfilePlan.h"

namespace {

using host::CKdPlanElement;
using host::CKdPlanPoint;
using host::CurveOrigin;
using std::numbers::pi;

landxml::CPoint P(double x, double y) {
  landxml::CPoint p;
  p.x = x;
  p.y = y;
  return p;
}

landxml::CLine Line(double x0, double y0, double x1, double y1) {
  landxml::CLine l;
  l.start = P(x0, y0);
  l.end = P(x1, y1);
  return l;
}

landxml::CCurve Curve(landxml::CPoint start, landxml::CPoint centre, landxml::CPoint end, double radius, bool ccw) {
  landxml::CCurve c;
  c.start = start;
  c.center = centre;
  c.end = end;
  c.radius = radius;
  c.rot = ccw ? landxml::Rotation::CounterClockwise : landxml::Rotation::Clockwise;
  return c;
}

double Dist(CKdPlanPoint a, CKdPlanPoint b) { return std::hypot(a.x - b.x, a.y - b.y); }

// An east-running tangent, a quarter turn left, and after a gap of 50 a tangent running north.
landxml::CAlignment TangentArcGapTangent() {
  landxml::CAlignment a;
  a.name = "A";
  a.geometry.emplace_back(Line(0, 0, 100, 0));
  a.geometry.emplace_back(Curve(P(100, 0), P(100, 100), P(200, 100), 100.0, true));
  a.geometry.emplace_back(Line(200, 150, 200, 300));
  return a;
}

TEST(AlignmentPlan, CarriesLinesAndArcsAndBridgesAGapWithATangent) {
  const host::CAlignmentPlan plan = host::PlanAlignment(TangentArcGapTangent(), 0.001);
  ASSERT_TRUE(plan.error.empty());
  ASSERT_EQ(plan.curves.size(), 4u);
  EXPECT_EQ(plan.curves[0].origin, CurveOrigin::Line);
  EXPECT_EQ(plan.curves[1].origin, CurveOrigin::Arc);
  EXPECT_EQ(plan.curves[2].origin, CurveOrigin::GapTangent);
  EXPECT_EQ(plan.curves[3].origin, CurveOrigin::Line);
  EXPECT_EQ(plan.tangentsInserted, 1);
  EXPECT_DOUBLE_EQ(plan.longestInsertedTangent, 50.0);
  EXPECT_EQ(plan.inputClosure, 0.0);
  EXPECT_TRUE(plan.notCarried.empty());

  const CKdPlanElement& arc = plan.curves[1].element;
  EXPECT_NEAR(arc.radius, 100.0, 1e-12);
  EXPECT_NEAR(arc.sweep, pi / 2, 1e-12);
  EXPECT_NEAR(arc.startAngle, 3 * pi / 2, 1e-12);

  // The records: an arc's end point computed from centre, radius and angles lands on the file's.
  const std::vector<CC3dCurve> records = host::ToRecords(plan.curves);
  ASSERT_EQ(records.size(), 4u);
  EXPECT_FALSE(records[1].GetIsLine());
  EXPECT_NEAR(records[1].GetEndPt().x, 200.0, 1e-12);
  EXPECT_NEAR(records[1].GetEndPt().y, 100.0, 1e-12);
  EXPECT_EQ(records[1].GetStartPt(), CC3dPoint(100, 0, 0));
  EXPECT_TRUE(records[2].GetIsLine());
  EXPECT_EQ(records[2].GetStartPt(), CC3dPoint(200, 100, 0));
  EXPECT_EQ(records[2].GetEndPt(), CC3dPoint(200, 150, 0));
}

TEST(AlignmentPlan, AnArcWhoseCentreIsRoundedStillRunsFromItsStartToItsEnd) {
  landxml::CAlignment a;
  // The centre 1e-4 off the chord's bisector, as coarse rounding leaves it.
  a.geometry.emplace_back(Curve(P(100, 0), P(100.0001, 100), P(200, 100), 100.0, true));
  const host::CAlignmentPlan plan = host::PlanAlignment(a, 0.001);
  ASSERT_EQ(plan.curves.size(), 1u);
  const CKdPlanElement& arc = plan.curves[0].element;
  const CC3dCurve record = host::ToRecords(plan.curves)[0];
  const CKdPlanPoint centre{record.GetCenter().x, record.GetCenter().y};
  EXPECT_NEAR(Dist(centre, {100, 0}), record.GetRadius(), 1e-12);
  EXPECT_NEAR(record.GetEndPt().x, 200.0, 1e-11);
  EXPECT_NEAR(record.GetEndPt().y, 100.0, 1e-11);
  EXPECT_NEAR(arc.centre.x, 100.00005, 1e-9);
  EXPECT_GE(plan.inputClosure, 5e-5);
}

TEST(AlignmentPlan, KeepsTheFileStationsAndReportsWhatItCannotCarry) {
  landxml::CAlignment a = TangentArcGapTangent();
  a.staStart = 1000.0;
  std::get<landxml::CLine>(a.geometry[0]).staStart = 1050.0;
  landxml::CStationEquation equation;
  equation.staBack = 1100.0;
  equation.staAhead = 2000.0;
  a.stationEquations.push_back(equation);

  const host::CAlignmentPlan plan = host::PlanAlignment(a, 0.001);
  EXPECT_EQ(plan.startStation, 1050.0);
  ASSERT_EQ(plan.notCarried.size(), 1u);
  EXPECT_NE(plan.notCarried[0].find("station equation back 1100.000 ahead 2000.000"), std::string::npos);
  bool told = false;
  for (const std::string& note : plan.notes) told = told || note.find("stationing starts at 1050.000") != std::string::npos;
  EXPECT_TRUE(told);
}

TEST(AlignmentPlan, ASpiralLeavesAlongThePreviousTangentWhenTheFileGivesNoDirection) {
  landxml::CAlignment a;
  a.geometry.emplace_back(Line(0, 0, 100, 100));  // heading 45 degrees
  landxml::CSpiral spiral;
  spiral.start = P(100, 100);
  spiral.end = P(140, 141);  // only roughly right: the end is not what fixes the spiral
  spiral.length = 60.0;
  spiral.radiusStart = landxml::kInfiniteRadius;
  spiral.radiusEnd = 200.0;
  spiral.rot = landxml::Rotation::Clockwise;
  spiral.spiType = "cubic";
  a.geometry.emplace_back(spiral);

  const host::CAlignmentPlan plan = host::PlanAlignment(a, 0.001);
  ASSERT_TRUE(plan.error.empty());
  ASSERT_EQ(plan.spirals.size(), 1u);
  const host::CPlannedSpiral& planned = plan.spirals[0];
  EXPECT_NEAR(planned.clothoid.StartHeading(), pi / 4, 1e-12);
  EXPECT_NEAR(planned.clothoid.EndCurvature(), -1.0 / 200.0, 1e-15);
  EXPECT_EQ(planned.firstCurve, 1);
  EXPECT_EQ(planned.curveCount + 1, static_cast<int>(plan.curves.size()));
  EXPECT_NEAR(plan.curves[1].element.StartHeading(), pi / 4, 1e-9);
  EXPECT_LE(planned.fitDeviation, 0.001);
  // The file's end is a metre off; that is the input's own disagreement, not the fit's.
  EXPECT_GT(planned.misclosure, 0.1);
  EXPECT_EQ(plan.inputClosure, planned.misclosure);
  ASSERT_EQ(plan.notCarried.size(), 1u);
  EXPECT_NE(plan.notCarried[0].find("cubic spiral"), std::string::npos);
}

TEST(AlignmentPlan, ASpiralWithoutNeighboursOrDirectionIsAimedThroughItsEnd) {
  // The clothoid from (0,0) heading 0.3 with curvature to 1/100 over 50: its end, computed here
  // by a fine Simpson rule, is all the file gives.
  const double rate = 0.01 / 50.0;
  double x = 0, y = 0;
  const int n = 20000;
  for (int i = 0; i <= n; ++i) {
    const double u = 50.0 * i / n;
    const double w = (i == 0 || i == n) ? 1 : (i % 2 ? 4 : 2);
    x += w * std::cos(0.3 + 0.5 * rate * u * u);
    y += w * std::sin(0.3 + 0.5 * rate * u * u);
  }
  landxml::CAlignment a;
  landxml::CSpiral spiral;
  spiral.start = P(0, 0);
  spiral.end = P(x * 50.0 / n / 3.0, y * 50.0 / n / 3.0);
  spiral.length = 50.0;
  spiral.radiusEnd = 100.0;
  spiral.rot = landxml::Rotation::CounterClockwise;
  a.geometry.emplace_back(spiral);
  const host::CAlignmentPlan plan = host::PlanAlignment(a, 0.001);
  ASSERT_EQ(plan.spirals.size(), 1u);
  EXPECT_NEAR(plan.spirals[0].clothoid.StartHeading(), 0.3, 1e-10);
  EXPECT_LT(plan.spirals[0].misclosure, 1e-9);
}

TEST(AlignmentComparison, MeasuresWhatTheModuleMoved) {
  const host::CAlignmentPlan plan = host::PlanAlignment(TangentArcGapTangent(), 0.001);
  std::vector<CKdPlanElement> back;
  for (const host::CPlannedCurve& c : plan.curves) back.push_back(c.element);

  const host::CAlignmentComparison same = host::CompareAlignment(plan, back, 0.0);
  EXPECT_TRUE(same.countsMatch);
  EXPECT_LT(same.interface, 1e-12);
  EXPECT_LT(same.linesArcs, 1e-12);

  // The arc comes back 1 mm larger about the same centre: both its ends move by 1 mm.
  back[1] = CKdPlanElement::Arc(back[1].centre, 100.001, back[1].startAngle, back[1].sweep);
  const host::CAlignmentComparison moved = host::CompareAlignment(plan, back, 2.5);
  EXPECT_NEAR(moved.linesArcs, 0.001, 1e-9);
  EXPECT_NEAR(moved.interface, 0.001, 1e-9);
  EXPECT_DOUBLE_EQ(moved.startStation, 2.5);

  back.pop_back();
  const host::CAlignmentComparison shorter = host::CompareAlignment(plan, back, 0.0);
  EXPECT_FALSE(shorter.countsMatch);
  EXPECT_EQ(shorter.sent, 4);
  EXPECT_EQ(shorter.readBack, 3);
}

TEST(ElementDifference, IsADistanceBetweenShapesNotBetweenParameters) {
  // A flat arc and its chord: 100 long with a sagitta of 1 mm.
  const double r = 1250000.125;
  const double half = std::asin(50.0 / r);
  const CKdPlanElement arc = CKdPlanElement::Arc({0, -std::sqrt(r * r - 2500.0)}, r, pi / 2 + half, -2 * half);
  const CKdPlanElement chord = CKdPlanElement::Line(arc.start, arc.end);
  EXPECT_NEAR(host::ElementDifference(arc, chord), 0.001, 2e-5);
  EXPECT_NEAR(host::ElementDifference(chord, arc), 0.001, 2e-5);
}

// --- profiles ---------------------------------------------------------------------------------

CC3dProfilePVI Pvi(double station, double elevation) {
  CC3dProfilePVI p;
  p.SetStation(station);
  p.SetElevation(elevation);
  return p;
}

TEST(ProfilePlan, MapsEachCurveKindAndReportsWhatCannotGo) {
  landxml::CProfAlign layout;
  const auto vertex = [&](landxml::VerticalCurve kind, double station, double elevation) -> landxml::CProfileVertex& {
    landxml::CProfileVertex v;
    v.curve = kind;
    v.station = station;
    v.elevation = elevation;
    layout.vertices.push_back(v);
    return layout.vertices.back();
  };
  vertex(landxml::VerticalCurve::None, 0, 100);
  vertex(landxml::VerticalCurve::Parabolic, 200, 104).length = 100;
  auto& asym = vertex(landxml::VerticalCurve::AsymmetricParabolic, 420, 100.7);
  asym.lengthIn = 60;
  asym.lengthOut = 90;
  vertex(landxml::VerticalCurve::Circular, 620, 104.3).radius = -3000;  // a crest marked by its sign
  vertex(landxml::VerticalCurve::Circular, 700, 104).radius = 0;
  vertex(landxml::VerticalCurve::None, 860, 103.1);

  const host::CProfilePlan plan = host::PlanProfile(layout);
  ASSERT_EQ(plan.pvis.size(), 6u);
  EXPECT_EQ(plan.pvis[1].GetType(), CC3dProfilePVI::ParabolicCurve);
  EXPECT_EQ(plan.pvis[1].GetCurveLength(), 100.0);
  EXPECT_EQ(plan.pvis[2].GetType(), CC3dProfilePVI::AsymmetricParabolicCurve);
  EXPECT_EQ(plan.pvis[2].GetLength1(), 60.0);
  EXPECT_EQ(plan.pvis[2].GetLength2(), 90.0);
  EXPECT_EQ(plan.pvis[3].GetType(), CC3dProfilePVI::CircularCurve);
  EXPECT_EQ(plan.pvis[3].GetRadius(), 3000.0);
  EXPECT_EQ(plan.pvis[4].GetType(), CC3dProfilePVI::NoCurve);
  ASSERT_EQ(plan.notCarried.size(), 1u);
  EXPECT_NE(plan.notCarried[0].find("station 700.000"), std::string::npos);

  landxml::CProfAlign lonely;
  lonely.vertices.push_back(layout.vertices[0]);
  EXPECT_EQ(host::PlanProfile(lonely).notCarried.size(), 1u);
}

TEST(ProfilePlan, NotesVerticalCurvesThatOverlap) {
  landxml::CProfAlign layout;
  const double stations[] = {0, 478.59, 645.42, 1034.66}, lengths[] = {0, 150, 200, 0};
  for (int i = 0; i < 4; ++i) {
    landxml::CProfileVertex v;
    v.station = stations[i];
    v.elevation = 270;
    v.curve = lengths[i] > 0 ? landxml::VerticalCurve::Parabolic : landxml::VerticalCurve::None;
    v.length = lengths[i];
    layout.vertices.push_back(v);
  }
  const host::CProfilePlan plan = host::PlanProfile(layout);
  ASSERT_EQ(plan.notes.size(), 1u);
  EXPECT_NE(plan.notes[0].find("overlap between stations 545.420 and 553.590"), std::string::npos) << plan.notes[0];
  EXPECT_TRUE(plan.notCarried.empty());

  layout.vertices[2].length = 50;  // now they meet no more
  EXPECT_TRUE(host::PlanProfile(layout).notes.empty());
  layout.vertices[1].length = 1000;  // reaches back past the first PVI
  ASSERT_EQ(host::PlanProfile(layout).notes.size(), 2u);
}

TEST(ProfileElevation, AgreesWithTextbookValues) {
  // Grades +2 %, -1.5 %, +1.8 %, -0.5 %.
  std::vector<CC3dProfilePVI> pvis = {Pvi(0, 100), Pvi(200, 104), Pvi(420, 100.7), Pvi(620, 104.3), Pvi(860, 103.1)};
  pvis[1].SetCurveType(CC3dProfilePVI::ParabolicCurve);
  pvis[1].SetCurveLength(100);
  pvis[2].SetCurveType(CC3dProfilePVI::AsymmetricParabolicCurve);
  pvis[2].SetLength1(60);
  pvis[2].SetLength2(90);
  pvis[3].SetCurveType(CC3dProfilePVI::CircularCurve);
  pvis[3].SetRadius(3000);

  // Tangents.
  EXPECT_NEAR(host::ProfileElevation(pvis, 50), 101.0, 1e-12);
  EXPECT_NEAR(host::ProfileElevation(pvis, 300), 104 - 0.015 * 100, 1e-12);
  EXPECT_NEAR(host::ProfileElevation(pvis, 900), 103.1 - 0.005 * 40, 1e-12);  // the end grade goes on
  // Symmetric parabola: the middle ordinate is A L / 8.
  EXPECT_NEAR(host::ProfileElevation(pvis, 200), 104 - 0.035 * 100 / 8, 1e-12);
  EXPECT_NEAR(host::ProfileElevation(pvis, 150), 103.0, 1e-12);
  EXPECT_NEAR(host::ProfileElevation(pvis, 250), 103.25, 1e-12);
  // Asymmetric parabola: the ordinate at the PVI is A L1 L2 / (2 (L1 + L2)).
  EXPECT_NEAR(host::ProfileElevation(pvis, 420), 100.7 + 0.033 * 60 * 90 / (2 * 150), 1e-12);
  EXPECT_NEAR(host::ProfileElevation(pvis, 360), 100.7 + 0.015 * 60, 1e-12);
  EXPECT_NEAR(host::ProfileElevation(pvis, 510), 100.7 + 0.018 * 90, 1e-12);

  // Circle: its centre lies R from both grade lines, below them on this crest. Offsetting both
  // lines by R and intersecting them gives it.
  const double g1 = 0.018, g2 = -0.005, r = 3000;
  const double c1 = 104.3 - g1 * 620 - r * std::sqrt(1 + g1 * g1);  // e = g s + c, shifted down by R
  const double c2 = 104.3 - g2 * 620 - r * std::sqrt(1 + g2 * g2);
  const double xc = (c2 - c1) / (g1 - g2);
  const double yc = g1 * xc + c1;
  for (double s : {600.0, 620.0, 640.0})
    EXPECT_NEAR(host::ProfileElevation(pvis, s), yc + std::sqrt(r * r - (s - xc) * (s - xc)), 1e-9) << s;
  const host::CCurveExtent extent = host::CurveExtent(pvis, 3);
  const double tangent = r * std::tan((std::atan(g1) - std::atan(g2)) / 2);
  EXPECT_NEAR(extent.begin, 620 - tangent * std::cos(std::atan(g1)), 1e-9);
  EXPECT_NEAR(extent.end, 620 + tangent * std::cos(std::atan(g2)), 1e-9);
  // Where the circle meets the grades, the profile is continuous.
  for (double s : {extent.begin, extent.end}) {
    EXPECT_NEAR(host::ProfileElevation(pvis, s - 1e-7), host::ProfileElevation(pvis, s + 1e-7), 1e-8);
  }
}

TEST(ProfileComparison, ListsEveryPviThatCameBackDifferent) {
  std::vector<CC3dProfilePVI> sent = {Pvi(0, 100), Pvi(420, 100.7), Pvi(860, 103.1)};
  sent[1].SetCurveType(CC3dProfilePVI::AsymmetricParabolicCurve);
  sent[1].SetLength1(60);
  sent[1].SetLength2(90);
  std::vector<CC3dProfilePoint> samples;
  for (double s = 0; s <= 860; s += 10) {
    CC3dProfilePoint p;
    p.SetStation(s);
    p.SetElevation(host::ProfileElevation(sent, s));
    samples.push_back(p);
  }
  const host::CProfileComparison same = host::CompareProfile(sent, sent, samples);
  EXPECT_TRUE(same.countsMatch);
  EXPECT_TRUE(same.changes.empty());
  EXPECT_LT(same.alongProfile, 1e-12);

  std::vector<CC3dProfilePVI> back = sent;
  back[1].SetLength2(60);
  back[2].SetStation(860.00002);
  samples[30].SetElevation(samples[30].GetElevation() + 0.01);
  const host::CProfileComparison changed = host::CompareProfile(sent, back, samples);
  EXPECT_DOUBLE_EQ(changed.curve, 30.0);
  EXPECT_NEAR(changed.station, 2e-5, 1e-9);
  EXPECT_NEAR(changed.alongProfile, 0.01, 1e-9);
  ASSERT_EQ(changed.changes.size(), 2u);
  EXPECT_NE(changed.changes[0].find("asymmetric 60/90 came back as asymmetric 60/60"), std::string::npos);
  EXPECT_NE(changed.changes[1].find("PVI 3"), std::string::npos);

  back.pop_back();
  EXPECT_FALSE(host::CompareProfile(sent, back, samples).countsMatch);

  // Where the module finds no elevation it answers 0: counted apart, not as a difference.
  samples[30].SetElevation(0.0);
  samples[31].SetElevation(0.0);
  const host::CProfileComparison holes = host::CompareProfile(sent, sent, samples);
  EXPECT_EQ(holes.missingSamples, 2);
  EXPECT_EQ(holes.missingFrom, 300.0);
  EXPECT_EQ(holes.missingTo, 310.0);
  EXPECT_LT(holes.alongProfile, 1e-12);
  ASSERT_EQ(holes.changes.size(), 1u);
  EXPECT_NE(holes.changes[0].find("2 of the samples between stations 300.000 and 310.000 came back at elevation 0"),
            std::string::npos);
}

}  // namespace
