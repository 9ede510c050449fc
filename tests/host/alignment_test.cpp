// Alignments through the host contract: creation and listing, horizontal geometry written as
// lines and arcs and read back, stationing. Runs the module on a headless Civil 3D drawing.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include "module/interface/ICivil3dAlignment.h"
#include "tests/host/ModuleLibrary.h"

namespace {

constexpr double kPi = std::numbers::pi;

CC3dCurve Line(double x0, double y0, double x1, double y1) {
  CC3dCurve c;
  c.SetLine(CC3dPoint(x0, y0, 0), CC3dPoint(x1, y1, 0));
  return c;
}

CC3dCurve Arc(double cx, double cy, double r, double start, double sweep) {
  CC3dCurve c;
  c.SetArc(CC3dPoint(cx, cy, 0), r, start, sweep);
  return c;
}

struct AlignmentDeleter {
  void operator()(ICivil3dAlignment* a) const { delete a; }
};
using AlignmentHandle = std::unique_ptr<ICivil3dAlignment, AlignmentDeleter>;

class Alignments : public CivilSession {
protected:
  AlignmentHandle Create(const wchar_t* name) {
    EXPECT_TRUE(session->CreateAlignment(name, L"made by a test", L"0", L"Basic", L"_No Labels"));
    return AlignmentHandle(session->GetAlignment(name));
  }
  std::vector<CC3dCurve> ReadBack(ICivil3dAlignment* alignment) {
    CC3dCurve* curves = nullptr;
    int count = -1;
    EXPECT_TRUE(alignment->GetAlignmentGeometry(&curves, &count));
    std::vector<CC3dCurve> out(curves, curves + (count > 0 ? count : 0));
    session->FreeCurves(&curves);
    EXPECT_EQ(curves, nullptr);
    return out;
  }
  std::vector<std::wstring> ListNames() {
    wchar_t** names = nullptr;
    long long* ids = nullptr;
    int count = -1;
    EXPECT_TRUE(session->ListAlignments(&names, &ids, &count));
    std::vector<std::wstring> out;
    for (int i = 0; i < count; ++i) out.emplace_back(names[i]);
    session->FreeStrings(&names, count);
    session->FreeSessionIds(&ids);
    return out;
  }
};

TEST_F(Alignments, AnEmptyDrawingListsNothingButStillHandsOutArrays) {
  wchar_t** names = nullptr;
  long long* ids = nullptr;
  int count = -1;
  ASSERT_TRUE(session->ListAlignments(&names, &ids, &count));
  EXPECT_EQ(count, 0);
  EXPECT_NE(names, nullptr);
  EXPECT_NE(ids, nullptr);
  session->FreeStrings(&names, count);
  session->FreeSessionIds(&ids);
  EXPECT_EQ(session->GetAlignment(L"Nothing"), nullptr);
}

TEST_F(Alignments, CreatedAlignmentsAreListedFoundRenamedAndDeleted) {
  auto first = Create(L"Main Road");
  auto second = Create(L"Side Road");
  ASSERT_TRUE(first);
  ASSERT_TRUE(second);
  EXPECT_NE(first->GetSessionId(), 0);
  EXPECT_NE(first->GetSessionId(), second->GetSessionId());
  EXPECT_EQ(ListNames(), (std::vector<std::wstring>{L"Main Road", L"Side Road"}));

  wchar_t buffer[64];
  int length = -1;
  ASSERT_TRUE(first->GetName(buffer, length));
  EXPECT_STREQ(buffer, L"Main Road");
  EXPECT_EQ(length, 9);

  EXPECT_TRUE(second->SetName(L"Bypass"));
  EXPECT_FALSE(first->SetName(L"Bypass")) << "names are unique";
  EXPECT_FALSE(session->CreateAlignment(L"Main Road", L"", L"0", L"Basic", L"_No Labels"));

  second.reset();
  EXPECT_TRUE(session->DeleteAlignment(L"Bypass"));
  EXPECT_FALSE(session->DeleteAlignment(L"Bypass"));
  EXPECT_EQ(ListNames(), (std::vector<std::wstring>{L"Main Road"}));
}

TEST_F(Alignments, StyleListsHoldTheTemplateStyles) {
  wchar_t** names = nullptr;
  int count = 0;
  ASSERT_TRUE(session->GetAlignmentStyleNames(&names, &count));
  std::vector<std::wstring> styles(names, names + count);
  session->FreeStrings(&names, count);
  EXPECT_NE(std::find(styles.begin(), styles.end(), L"Basic"), styles.end());
  EXPECT_NE(std::find(styles.begin(), styles.end(), L"Standard"), styles.end());

  ASSERT_TRUE(session->GetAlignmentLabelStyleSetNames(&names, &count));
  std::vector<std::wstring> sets(names, names + count);
  session->FreeStrings(&names, count);
  EXPECT_NE(std::find(sets.begin(), sets.end(), L"_No Labels"), sets.end());
}

TEST_F(Alignments, LinesAndArcsInBothDirectionsReadBackAsWritten) {
  auto road = Create(L"Road");
  ASSERT_TRUE(road);
  // East 100, a quarter turn left about (100, 50), north 40, then a clockwise quarter circle about
  // (100, 90) from (150, 90) down to (100, 40).
  const std::vector<CC3dCurve> written = {
      Line(0, 0, 100, 0),
      Arc(100, 50, 50, 3 * kPi / 2, kPi / 2),
      Line(150, 50, 150, 90),
      Arc(100, 90, 50, 0, -kPi / 2),
  };
  ASSERT_TRUE(road->SetAlignmentGeometry(written.data(), static_cast<int>(written.size())));
  const auto read = ReadBack(road.get());
  ASSERT_EQ(read.size(), written.size());

  EXPECT_TRUE(read[0].GetIsLine());
  EXPECT_NEAR(read[0].GetEndPt().x, 100, 1e-9);
  EXPECT_FALSE(read[1].GetIsLine());
  EXPECT_NEAR(read[1].GetCenter().x, 100, 1e-9);
  EXPECT_NEAR(read[1].GetCenter().y, 50, 1e-9);
  EXPECT_NEAR(read[1].GetRadius(), 50, 1e-9);
  EXPECT_NEAR(read[1].GetStartAngle(), 3 * kPi / 2, 1e-9);
  EXPECT_NEAR(read[1].GetSweep(), kPi / 2, 1e-9);
  // The clockwise arc comes back with a negative sweep and a start angle in [0, 2pi).
  EXPECT_NEAR(read[3].GetSweep(), -kPi / 2, 1e-9);
  EXPECT_GE(read[3].GetStartAngle(), 0.0);
  EXPECT_LT(read[3].GetStartAngle(), 2 * kPi);
  EXPECT_NEAR(read[3].GetEndPt().x, 100, 1e-9);
  EXPECT_NEAR(read[3].GetEndPt().y, 40, 1e-9);
  // Read-back geometry is planar.
  for (const auto& c : read) EXPECT_EQ(c.GetEndPt().z, 0.0);
}

TEST_F(Alignments, GapsCloseOntoThePreviousEnd) {
  auto road = Create(L"Gappy");
  const std::vector<CC3dCurve> written = {Line(0, 0, 10, 0), Line(10.4, 0.3, 20, 0)};
  ASSERT_TRUE(road->SetAlignmentGeometry(written.data(), 2));
  const auto read = ReadBack(road.get());
  ASSERT_EQ(read.size(), 2u);
  EXPECT_NEAR(read[1].GetStartPt().x, 10.0, 1e-12);
  EXPECT_NEAR(read[1].GetStartPt().y, 0.0, 1e-12);
}

TEST_F(Alignments, SweepsAboveAFullTurnAreShortened) {
  auto road = Create(L"Loop");
  const CC3dCurve arc = Arc(0, 0, 10, 0, 3 * kPi);
  ASSERT_TRUE(road->SetAlignmentGeometry(&arc, 1));
  const auto read = ReadBack(road.get());
  ASSERT_EQ(read.size(), 1u);
  EXPECT_NEAR(read[0].GetSweep(), kPi, 1e-9);
  EXPECT_NEAR(read[0].GetEndPt().x, -10, 1e-9);
}

TEST_F(Alignments, NoCurvesClearsTheGeometry) {
  auto road = Create(L"Cleared");
  const CC3dCurve line = Line(0, 0, 5, 5);
  ASSERT_TRUE(road->SetAlignmentGeometry(&line, 1));
  ASSERT_EQ(ReadBack(road.get()).size(), 1u);
  EXPECT_TRUE(road->SetAlignmentGeometry(nullptr, 0));
  EXPECT_TRUE(ReadBack(road.get()).empty());
  EXPECT_FALSE(road->SetAlignmentGeometry(nullptr, 3)) << "bad input is refused, not dereferenced";
}

TEST_F(Alignments, StartingStationShiftsTheWholeStationing) {
  auto road = Create(L"Stationed");
  const CC3dCurve line = Line(0, 0, 250, 0);
  ASSERT_TRUE(road->SetAlignmentGeometry(&line, 1));
  EXPECT_DOUBLE_EQ(road->GetStartingStation(), 0.0);
  road->SetStartingStation(1000.0);
  EXPECT_DOUBLE_EQ(road->GetStartingStation(), 1000.0);
  // Station 2000 at x = 100: the start, 100 before it, is at 1900.
  road->SetStationReference(2000.0, CC3dPoint(100, 0, 0));
  EXPECT_NEAR(road->GetStartingStation(), 1900.0, 1e-9);
}

// Alignments imported into a site: listed after the siteless ones, found by name, but not
// deleted through the session, which removes siteless alignments only.
TEST_F(Alignments, SiteAlignmentsAreListedAndFoundButNotDeleted) {
  auto local = Create(L"Local");
  ASSERT_EQ(HeadlessImportLandXml(app, KD_SAMPLE_ROAD, "site=Roads"), 0) << HeadlessLastError(app);
  EXPECT_EQ(ListNames(), (std::vector<std::wstring>{L"Local", L"Main Road", L"Side Road"}));
  AlignmentHandle main(session->GetAlignment(L"Main Road"));
  ASSERT_TRUE(main);
  EXPECT_GT(ReadBack(main.get()).size(), 0u);
  main.reset();
  EXPECT_FALSE(session->DeleteAlignment(L"Main Road"));
  EXPECT_TRUE(session->DeleteAlignment(L"Local"));
}

// The requested style is not honoured by name: "Basic" or "Standard" is taken when the drawing
// has them. A name the drawing lacks therefore still creates the alignment.
TEST_F(Alignments, RequestedStyleNameIsNotWhatDecides) {
  EXPECT_TRUE(session->CreateAlignment(L"Styled", L"", L"0", L"No Such Style", L"No Such Set"));
  EXPECT_TRUE(AlignmentHandle(session->GetAlignment(L"Styled")));
}

TEST_F(Alignments, PolylineRepresentationIsADrawingEntity) {
  auto road = Create(L"Drawn");
  const std::vector<CC3dCurve> written = {Line(0, 0, 100, 0), Arc(100, 50, 50, 3 * kPi / 2, kPi / 2)};
  ASSERT_TRUE(road->SetAlignmentGeometry(written.data(), 2));
  const long long polyline = road->GetPolylineId();
  EXPECT_NE(polyline, 0);
  EXPECT_NE(polyline, road->GetSessionId());
}

}  // namespace
