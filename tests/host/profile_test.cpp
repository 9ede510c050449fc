// Profiles through the host contract: PVIs with each vertical curve kind written, read back and
// stroked; elevations checked against hand-worked textbook values.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "module/interface/ICivil3dAlignment.h"
#include "module/interface/ICivil3dProfile.h"
#include "tests/host/ModuleLibrary.h"

namespace {

CC3dProfilePVI Pvi(double station, double elevation, CC3dProfilePVI::ProfileCurveType type = CC3dProfilePVI::NoCurve,
                   double a = 0, double b = 0) {
  CC3dProfilePVI p;
  p.SetStation(station);
  p.SetElevation(elevation);
  p.SetCurveType(type);
  switch (type) {
    case CC3dProfilePVI::CircularCurve: p.SetRadius(a); break;
    case CC3dProfilePVI::ParabolicCurve: p.SetCurveLength(a); break;
    case CC3dProfilePVI::AsymmetricParabolicCurve:
      p.SetLength1(a);
      p.SetLength2(b);
      break;
    default: break;
  }
  return p;
}

template <class T>
struct Deleter {
  void operator()(T* p) const { delete p; }
};

// A straight alignment 2000 long from station 0, with one empty finished-ground profile "FG".
class Profiles : public CivilSession {
protected:
  void SetUp() override {
    CivilSession::SetUp();
    ASSERT_TRUE(session->CreateAlignment(L"Road", L"", L"0", L"Basic", L"_No Labels"));
    alignment.reset(session->GetAlignment(L"Road"));
    ASSERT_TRUE(alignment);
    CC3dCurve line;
    line.SetLine(CC3dPoint(0, 0, 0), CC3dPoint(2000, 0, 0));
    ASSERT_TRUE(alignment->SetAlignmentGeometry(&line, 1));
    ASSERT_TRUE(alignment->CreateProfile(L"FG", L"design"));
    profile.reset(alignment->GetProfile(L"FG"));
    ASSERT_TRUE(profile);
  }
  void TearDown() override {
    profile.reset();
    alignment.reset();
    CivilSession::TearDown();
  }
  std::vector<CC3dProfilePVI> ReadBack() {
    CC3dProfilePVI* pvis = nullptr;
    int count = -1;
    EXPECT_TRUE(profile->GetProfileGeometry(&pvis, &count));
    std::vector<CC3dProfilePVI> out(pvis, pvis + (count > 0 ? count : 0));
    session->FreeProfileVPIs(&pvis);
    return out;
  }
  std::vector<CC3dProfilePoint> Stroke(double step) {
    CC3dProfilePoint* points = nullptr;
    int count = -1;
    EXPECT_TRUE(profile->GetStrokedProfile(step, &points, &count));
    std::vector<CC3dProfilePoint> out(points, points + (count > 0 ? count : 0));
    session->FreeProfilePoints(&points);
    return out;
  }
  double ElevationAt(double station) {
    for (const auto& p : Stroke(0.5))
      if (p.GetStation() == station) return p.GetElevation();
    ADD_FAILURE() << "no sample at station " << station;
    return 0.0;
  }

  std::unique_ptr<ICivil3dAlignment, Deleter<ICivil3dAlignment>> alignment;
  std::unique_ptr<ICivil3dProfile, Deleter<ICivil3dProfile>> profile;
};

TEST_F(Profiles, ListedAndDeletedThroughTheAlignment) {
  wchar_t** names = nullptr;
  int count = 0;
  ASSERT_TRUE(alignment->ListProfiles(&names, &count));
  ASSERT_EQ(count, 1);
  EXPECT_STREQ(names[0], L"FG");
  session->FreeStrings(&names, count);
  EXPECT_NE(profile->GetSessionId(), 0);
  profile.reset();
  EXPECT_TRUE(alignment->DeleteProfile(L"FG"));
  EXPECT_EQ(alignment->GetProfile(L"FG"), nullptr);
  EXPECT_FALSE(alignment->DeleteProfile(L"FG"));
}

// Symmetric parabola: g1 = +2 %, g2 = -1.5 %, L = 200, PVI 1000 at 100.
// BVC 900 at 98.0; z(x) = 98 + 0.02 x - 0.035 x^2 / 400; at x = 100 (the PVI station): 99.125;
// at x = 50: 98.78125; EVC 1100 at 98.5.
TEST_F(Profiles, SymmetricParabolaMatchesTheTextbook) {
  const std::vector<CC3dProfilePVI> pvis = {Pvi(0, 80), Pvi(1000, 100, CC3dProfilePVI::ParabolicCurve, 200),
                                            Pvi(2000, 85)};
  ASSERT_TRUE(profile->SetProfileGeometry(pvis.data(), 3));
  EXPECT_NEAR(ElevationAt(900), 98.0, 1e-9);
  EXPECT_NEAR(ElevationAt(950), 98.78125, 1e-9);
  EXPECT_NEAR(ElevationAt(1000), 99.125, 1e-9);
  EXPECT_NEAR(ElevationAt(1100), 98.5, 1e-9);
  EXPECT_NEAR(ElevationAt(500), 90.0, 1e-9);

  const auto read = ReadBack();
  ASSERT_EQ(read.size(), 3u);
  EXPECT_EQ(read[1].GetType(), CC3dProfilePVI::ParabolicCurve);
  EXPECT_DOUBLE_EQ(read[1].GetCurveLength(), 200.0);
  EXPECT_EQ(read[0].GetType(), CC3dProfilePVI::NoCurve);
}

// Asymmetric: g1 = +2 %, g2 = -2 %, L1 = 100, L2 = 300, PVI 1000 at 100.
// e = L1 L2 (g2 - g1) / (2 (L1 + L2)) = 100*300*(-0.04)/800 = -1.5.
// Left branch from BVC 900 (98.0): z = 98 + 0.02 x - 1.5 (x/100)^2; at the PVI: 98.5.
// Right branch back from EVC 1300 (94.0): z = 94 + 0.02 x' - 1.5 (x'/300)^2; at x' = 150: 96.625.
TEST_F(Profiles, AsymmetricParabolaMatchesTheTextbookAndReadsBackEqualLengths) {
  const std::vector<CC3dProfilePVI> pvis = {
      Pvi(0, 80), Pvi(1000, 100, CC3dProfilePVI::AsymmetricParabolicCurve, 100, 300), Pvi(2000, 80)};
  ASSERT_TRUE(profile->SetProfileGeometry(pvis.data(), 3));
  EXPECT_NEAR(ElevationAt(1000), 98.5, 1e-9);
  EXPECT_NEAR(ElevationAt(950), 98.0 + 1.0 - 1.5 * 0.25, 1e-9);
  EXPECT_NEAR(ElevationAt(1150), 96.625, 1e-9);
  EXPECT_NEAR(ElevationAt(1300), 94.0, 1e-9);

  const auto read = ReadBack();
  ASSERT_EQ(read.size(), 3u);
  EXPECT_EQ(read[1].GetType(), CC3dProfilePVI::AsymmetricParabolicCurve);
  EXPECT_EQ(read[1].GetLength1(), read[1].GetLength2()) << "both lengths come from one property";
}

// Circular: R = 5000 between g1 = +3 % and g2 = -1 % (a crest), a true circle tangent to both
// grade lines. Worked by hand: theta1 = atan 0.03, theta2 = atan -0.01, T = R tan((theta1 -
// theta2) / 2) = 99.990005; BVC = PVI - T (cos theta1, sin theta1) = (900.054960, 97.001649);
// centre = BVC + R (sin theta1, -cos theta1) = (1049.987506, -4900.749869); at station 1000 the
// circle is at -4900.749869 + sqrt(R^2 - 49.987506^2) = 99.000250 (a parabola would give 99.0).
TEST_F(Profiles, CircularCurveReadsBackItsRadiusAndIsTangentAtItsEnds) {
  const std::vector<CC3dProfilePVI> pvis = {Pvi(0, 70), Pvi(1000, 100, CC3dProfilePVI::CircularCurve, 5000),
                                            Pvi(2000, 90)};
  ASSERT_TRUE(profile->SetProfileGeometry(pvis.data(), 3));
  const auto read = ReadBack();
  ASSERT_EQ(read.size(), 3u);
  EXPECT_EQ(read[1].GetType(), CC3dProfilePVI::CircularCurve);
  EXPECT_DOUBLE_EQ(read[1].GetRadius(), 5000.0);
  // Far from the curve the grade lines hold.
  EXPECT_NEAR(ElevationAt(500), 85.0, 1e-9);
  EXPECT_NEAR(ElevationAt(1500), 95.0, 1e-9);
  EXPECT_NEAR(ElevationAt(1000), 99.000249876, 1e-6);
}

TEST_F(Profiles, TwoRecordsStripAProfileToItsEnds) {
  const std::vector<CC3dProfilePVI> five = {Pvi(0, 10), Pvi(300, 14), Pvi(700, 12), Pvi(1200, 16), Pvi(2000, 11)};
  ASSERT_TRUE(profile->SetProfileGeometry(five.data(), 5));
  ASSERT_EQ(ReadBack().size(), 5u);
  const std::vector<CC3dProfilePVI> two = {Pvi(100, 20), Pvi(1900, 25)};
  ASSERT_TRUE(profile->SetProfileGeometry(two.data(), 2));
  const auto read = ReadBack();
  ASSERT_EQ(read.size(), 2u);
  EXPECT_DOUBLE_EQ(read[0].GetStation(), 100);
  EXPECT_DOUBLE_EQ(read[0].GetElevation(), 20);
  EXPECT_DOUBLE_EQ(read[1].GetStation(), 1900);
  EXPECT_DOUBLE_EQ(read[1].GetElevation(), 25);
}

TEST_F(Profiles, OneRecordFailsAfterStrippingToTheEnds) {
  const std::vector<CC3dProfilePVI> four = {Pvi(0, 10), Pvi(500, 14), Pvi(900, 12), Pvi(2000, 11)};
  ASSERT_TRUE(profile->SetProfileGeometry(four.data(), 4));
  const CC3dProfilePVI one = Pvi(50, 1);
  EXPECT_FALSE(profile->SetProfileGeometry(&one, 1));
  EXPECT_EQ(ReadBack().size(), 2u);
}

TEST_F(Profiles, InteriorStationsSnapOntoTheAlignmentEnds) {
  // The first interior record lies 0.0005 after the start: it snaps onto it, which collides
  // with the end PVI already there, so the count check fails.
  const std::vector<CC3dProfilePVI> pvis = {Pvi(0, 10), Pvi(0.0005, 11), Pvi(1000, 12), Pvi(2000, 13)};
  EXPECT_FALSE(profile->SetProfileGeometry(pvis.data(), 4));
  // End records are clamped without the snap on an existing profile.
  const std::vector<CC3dProfilePVI> ends = {Pvi(0.0005, 10), Pvi(2500, 13)};
  ASSERT_TRUE(profile->SetProfileGeometry(ends.data(), 2));
  const auto read = ReadBack();
  ASSERT_EQ(read.size(), 2u);
  EXPECT_DOUBLE_EQ(read[0].GetStation(), 0.0005);
  EXPECT_DOUBLE_EQ(read[1].GetStation(), 2000);
}

TEST_F(Profiles, StrokingEndsExactlyOnTheLastStation) {
  const std::vector<CC3dProfilePVI> pvis = {Pvi(0, 10), Pvi(95, 20)};
  ASSERT_TRUE(profile->SetProfileGeometry(pvis.data(), 2));
  const auto samples = Stroke(10.0);
  ASSERT_EQ(samples.size(), 11u);
  EXPECT_DOUBLE_EQ(samples.front().GetStation(), 0.0);
  EXPECT_DOUBLE_EQ(samples[9].GetStation(), 90.0);
  EXPECT_DOUBLE_EQ(samples.back().GetStation(), 95.0);
  EXPECT_NEAR(samples[5].GetElevation(), 10 + 50.0 * 10 / 95, 1e-12);

  CC3dProfilePoint* points = nullptr;
  int count = -1;
  EXPECT_FALSE(profile->GetStrokedProfile(0.0, &points, &count));
  EXPECT_FALSE(profile->GetStrokedProfile(-1.0, &points, &count));
  EXPECT_EQ(points, nullptr);
}

TEST_F(Profiles, ClearingLeavesAnEmptyProfile) {
  const std::vector<CC3dProfilePVI> pvis = {Pvi(0, 10), Pvi(1000, 12), Pvi(2000, 11)};
  ASSERT_TRUE(profile->SetProfileGeometry(pvis.data(), 3));
  EXPECT_TRUE(profile->ClearProfileGeometry());
  EXPECT_TRUE(ReadBack().empty());
  // An emptied profile takes new geometry through the "new profile" path.
  ASSERT_TRUE(profile->SetProfileGeometry(pvis.data(), 3));
  EXPECT_EQ(ReadBack().size(), 3u);
}

}  // namespace
