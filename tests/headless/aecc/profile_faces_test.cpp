// Profiles through their COM faces: the profile collection's rules, PVIs (adding, refusing,
// removing by position and by object, moving), each PVI's curve face reached by a plain cast as
// the module reaches it, and the profile's entities. Values are worked by hand.
#include <gtest/gtest.h>

#include <cmath>

#include "CivilFixture.h"

namespace {

using kdtest::As;
using kdtest::CivilDrawing;
using kdtest::Index;
using kdtest::Name;
using kdtest::Point;

CComVariant R8(double value) { return CComVariant(value); }

// A straight alignment 2000 long from station 0 with a profile "FG": PVIs (0, 100), (1000, 140)
// with a symmetric parabola 400 long, (2000, 120). Grades +4 % and -2 %; the curve runs from
// station 800 (elevation 132) to 1200 (136), its middle ordinate is L (g2 - g1) / 8 = -3.
class Profile : public CivilDrawing {
protected:
  void SetUp() override {
    CivilDrawing::SetUp();
    road = AddAlignment(L"Road");
    CComPtr<IAeccAlignmentTangent> line;
    ASSERT_EQ(EntitiesOf(road)->AddFixedLine1(Point(0, 0), Point(2000, 0), &line), S_OK);
    ASSERT_EQ(road->get_Profiles(&profiles), S_OK);
    ASSERT_EQ(profiles->Add(CComBSTR(L"FG"), aeccFinishedGround, Name(L"Basic"), &profile), S_OK);
    ASSERT_EQ(profile->get_PVIs(&pvis), S_OK);
    CComPtr<IAeccProfilePVI> pvi;
    ASSERT_EQ(pvis->Add(0, 100, aeccNoCurve, R8(0), R8(0), &pvi), S_OK);
    pvi.Release();
    ASSERT_EQ(pvis->Add(2000, 120, aeccNoCurve, R8(0), R8(0), &pvi), S_OK);
    pvi.Release();
    ASSERT_EQ(pvis->Add(1000, 140, aeccParabola, R8(400), R8(0), &pvi), S_OK);
  }
  void TearDown() override {
    pvis.Release();
    profile.Release();
    profiles.Release();
    road.Release();
    CivilDrawing::TearDown();
  }
  CComPtr<IAeccProfilePVI> Pvi(LONG i) {
    CComPtr<IAeccProfilePVI> pvi;
    EXPECT_EQ(pvis->Item(i, &pvi), S_OK);
    return pvi;
  }
  double Elevation(double station) {
    double z = 0;
    EXPECT_EQ(profile->ElevationAt(station, &z), S_OK);
    return z;
  }

  CComPtr<IAeccAlignment> road;
  CComPtr<IAeccProfiles> profiles;
  CComPtr<IAeccProfile> profile;
  CComPtr<IAeccProfilePVIs> pvis;
};

TEST_F(Profile, ThePviPointerIsItsCurveFace) {
  CComPtr<IAeccProfilePVI> middle = Pvi(1);
  // The module casts, it does not ask.
  auto* curve = static_cast<IAeccProfilePVICurve*>(middle.p);
  AeccProfilePVICurveType type{};
  ASSERT_EQ(curve->get_EntityType(&type), S_OK);
  ASSERT_EQ(type, aeccParabola);
  auto* parabola = static_cast<IAeccProfilePVICurveParabolic*>(curve);
  double length = 0, k = 0, radius = 0;
  parabola->get_CurveLength(&length);
  parabola->get_K(&k);
  parabola->get_Radius(&radius);
  EXPECT_DOUBLE_EQ(length, 400);
  EXPECT_NEAR(k, 400 / 6.0, 1e-9) << "length per percent of grade change";
  EXPECT_NEAR(radius, 400 / 0.06, 1e-6);
  AeccProfileVerticalCurveType kind{};
  parabola->get_VerticalCurveType(&kind);
  EXPECT_EQ(kind, aeccCrest);
  ASSERT_EQ(parabola->put_K(50), S_OK);
  parabola->get_CurveLength(&length);
  EXPECT_NEAR(length, 300, 1e-9);

  CComPtr<IAeccProfilePVI> first = Pvi(0);
  auto* plain = static_cast<IAeccProfilePVICurve*>(first.p);
  plain->get_EntityType(&type);
  EXPECT_EQ(type, aeccNoCurve);
  plain->get_CurveLength(&length);
  EXPECT_EQ(length, 0.0);
}

TEST_F(Profile, EveryCurveKindReadsBackThroughItsCast) {
  CComPtr<IAeccProfilePVI> circular, asymmetric;
  ASSERT_EQ(pvis->Add(400, 120, aeccCircular, R8(5000), R8(0), &circular), S_OK);
  ASSERT_EQ(pvis->Add(1600, 128, aeccAsymmetricParabola, R8(60), R8(90), &asymmetric), S_OK);
  AeccProfilePVICurveType type{};
  double radius = 0, l1 = 0, l2 = 0;
  static_cast<IAeccProfilePVICurve*>(circular.p)->get_EntityType(&type);
  EXPECT_EQ(type, aeccCircular);
  static_cast<IAeccProfilePVICurveCircular*>(circular.p)->get_Radius(&radius);
  EXPECT_EQ(radius, 5000);
  static_cast<IAeccProfilePVICurve*>(asymmetric.p)->get_EntityType(&type);
  EXPECT_EQ(type, aeccAsymmetricParabola);
  static_cast<IAeccProfilePVICurveAsymmetric*>(asymmetric.p)->get_VerticalLength1(&l1);
  static_cast<IAeccProfilePVICurveAsymmetric*>(asymmetric.p)->get_VerticalLength2(&l2);
  EXPECT_EQ(l1, 60);
  EXPECT_EQ(l2, 90);
  // The circle at station 400 sits between grades of 5 % and 3.333 %: its tangent length is
  // T = R tan((a1 - a2) / 2) with a1 = atan 0.05, a2 = atan(1 / 30), and it spans
  // T (cos a1 + cos a2) = 83.28 stations.
  double span = 0;
  static_cast<IAeccProfilePVICurve*>(circular.p)->get_CurveLength(&span);
  const double a1 = std::atan(0.05), a2 = std::atan(1.0 / 30);
  EXPECT_NEAR(span, 5000 * std::tan((a1 - a2) / 2) * (std::cos(a1) + std::cos(a2)), 1e-9);
  LONG count = 0;
  pvis->get_Count(&count);
  EXPECT_EQ(count, 5);
}

TEST_F(Profile, ElevationsFollowTheTextbookParabola) {
  EXPECT_NEAR(Elevation(500), 120, 1e-9);
  EXPECT_NEAR(Elevation(800), 132, 1e-9);
  EXPECT_NEAR(Elevation(1000), 137, 1e-9);
  // 100 into the curve: 132 + 0.04 * 100 - 0.06 * 100^2 / (2 * 400) = 135.25.
  EXPECT_NEAR(Elevation(900), 135.25, 1e-9);
  EXPECT_NEAR(Elevation(1200), 136, 1e-9);
  double z = 0;
  EXPECT_EQ(profile->ElevationAt(2000.5, &z), E_INVALIDARG);
  EXPECT_EQ(profile->ElevationAt(-1, &z), E_INVALIDARG);
  double start = -1, end = -1;
  profile->get_StartingStation(&start);
  profile->get_EndingStation(&end);
  EXPECT_EQ(start, 0);
  EXPECT_EQ(end, 2000);
  double gradeIn = 0, gradeOut = 0;
  EXPECT_EQ(Pvi(0)->get_GradeIn(&gradeIn), E_FAIL);
  ASSERT_EQ(Pvi(0)->get_GradeOut(&gradeOut), S_OK);
  EXPECT_NEAR(gradeOut, 0.04, 1e-15);
}

TEST_F(Profile, PvisOutsideTheAlignmentOrOnAnotherAreRefused) {
  CComPtr<IAeccProfilePVI> pvi;
  EXPECT_EQ(pvis->Add(2100, 100, aeccNoCurve, R8(0), R8(0), &pvi), E_INVALIDARG);
  EXPECT_EQ(pvis->Add(-5, 100, aeccNoCurve, R8(0), R8(0), &pvi), E_INVALIDARG);
  EXPECT_EQ(pvis->Add(1000, 90, aeccNoCurve, R8(0), R8(0), &pvi), E_INVALIDARG);
  EXPECT_EQ(pvis->Add(1500, 90, aeccParabola, R8(0), R8(0), &pvi), E_INVALIDARG);
  EXPECT_EQ(pvis->Add(1500, 90, static_cast<AeccProfilePVICurveType>(9), R8(0), R8(0), &pvi), E_INVALIDARG);
  EXPECT_EQ(pvi, nullptr);
  LONG count = 0;
  pvis->get_Count(&count);
  EXPECT_EQ(count, 3);
}

TEST_F(Profile, AFaceStaysWithItsPviWhenItMoves) {
  CComPtr<IAeccProfilePVI> moving;
  ASSERT_EQ(pvis->Add(300, 110, aeccNoCurve, R8(0), R8(0), &moving), S_OK);
  ASSERT_EQ(moving->put_Station(1500), S_OK);
  EXPECT_EQ(moving->put_Station(2000), E_INVALIDARG) << "another PVI is there";
  EXPECT_EQ(moving->put_Station(2500), E_INVALIDARG) << "beyond the alignment";
  double station = 0, elevation = 0;
  moving->get_Station(&station);
  moving->get_Elevation(&elevation);
  EXPECT_EQ(station, 1500);
  EXPECT_EQ(elevation, 110);
  Pvi(3)->get_Station(&station);
  EXPECT_EQ(station, 2000) << "the list stays in station order";
  ASSERT_EQ(moving->put_Elevation(111), S_OK);
  EXPECT_NEAR(Elevation(1500), 111, 1e-12);
}

TEST_F(Profile, PvisGoByPositionByObjectOrByNearness) {
  CComPtr<IAeccProfilePVI> nearest;
  ASSERT_EQ(pvis->ItemAt(990, 139, &nearest), S_OK);
  double station = 0;
  nearest->get_Station(&station);
  EXPECT_EQ(station, 1000);

  // A PVI of another profile is not this profile's.
  CComPtr<IAeccProfile> other;
  ASSERT_EQ(profiles->Add(CComBSTR(L"EG"), aeccExistingGround, Name(L"Basic"), &other), S_OK);
  CComPtr<IAeccProfilePVIs> otherPvis;
  other->get_PVIs(&otherPvis);
  CComPtr<IAeccProfilePVI> foreign;
  ASSERT_EQ(otherPvis->Add(1000, 140, aeccNoCurve, R8(0), R8(0), &foreign), S_OK);
  EXPECT_EQ(pvis->Remove(CComVariant(static_cast<IDispatch*>(foreign))), E_INVALIDARG);

  ASSERT_EQ(pvis->Remove(CComVariant(static_cast<IDispatch*>(nearest))), S_OK);
  EXPECT_EQ(nearest->get_Station(&station), E_FAIL) << "its PVI is gone";
  EXPECT_EQ(pvis->Remove(Index(5)), E_INVALIDARG);
  ASSERT_EQ(pvis->Remove(Index(0)), S_OK);
  ASSERT_EQ(pvis->RemoveAt(1900, 0), S_OK);
  LONG count = -1;
  pvis->get_Count(&count);
  EXPECT_EQ(count, 0);
  double start = 0;
  EXPECT_EQ(profile->get_StartingStation(&start), E_FAIL) << "an empty profile has no stations";
}

TEST_F(Profile, EntitiesAreTheGradeLinesAndCurvesAndTheirRemovalEmptiesTheProfile) {
  CComPtr<IAeccProfileEntities> entities;
  ASSERT_EQ(profile->get_Entities(&entities), S_OK);
  LONG count = 0;
  entities->get_Count(&count);
  ASSERT_EQ(count, 3);
  CComPtr<IAeccProfileEntity> curve;
  ASSERT_EQ(entities->Item(1, &curve), S_OK);
  double from = 0, to = 0;
  curve->get_StartStation(&from);
  curve->get_EndStation(&to);
  EXPECT_NEAR(from, 800, 1e-9);
  EXPECT_NEAR(to, 1200, 1e-9);
  ASSERT_EQ(entities->RemoveAll(), S_OK);
  pvis->get_Count(&count);
  EXPECT_EQ(count, 0);
  double z = 0;
  EXPECT_EQ(profile->ElevationAt(10, &z), E_FAIL);
}

TEST_F(Profile, ProfileNamesAreUniquePerAlignment) {
  CComPtr<IAeccProfile> again;
  EXPECT_EQ(profiles->Add(CComBSTR(L"fg"), aeccFinishedGround, Name(L"Basic"), &again), E_INVALIDARG);
  EXPECT_EQ(profiles->Add(CComBSTR(L"X"), static_cast<AeccProfileType>(7), Name(L"Basic"), &again), E_INVALIDARG);
  EXPECT_EQ(profiles->Add(CComBSTR(L"X"), aeccFinishedGround, Name(L"Nope"), &again), E_INVALIDARG);
  ASSERT_EQ(profiles->Add(CComBSTR(L"X"), aeccSuperimposed, Name(L"Layout"), &again), S_OK);
  EXPECT_EQ(again->put_Name(CComBSTR(L"FG")), E_INVALIDARG);
  AeccProfileType type{};
  again->get_Type(&type);
  EXPECT_EQ(type, aeccSuperimposed);
  CComPtr<IAeccProfile> found;
  ASSERT_EQ(profiles->Item(Name(L"fG"), &found), S_OK);
  EXPECT_EQ(As<IUnknown>(found), As<IUnknown>(profile));
  CComPtr<IAeccAlignment> owner;
  ASSERT_EQ(profile->get_Alignment(&owner), S_OK);
  EXPECT_EQ(As<IUnknown>(owner), As<IUnknown>(road));

  // Another alignment may have its own "FG".
  CComPtr<IAeccAlignment> side = AddAlignment(L"Side");
  CComPtr<IAeccProfiles> sideProfiles;
  side->get_Profiles(&sideProfiles);
  CComPtr<IAeccProfile> sideFg;
  EXPECT_EQ(sideProfiles->Add(CComBSTR(L"FG"), aeccFinishedGround, Name(L"Basic"), &sideFg), S_OK);

  ASSERT_EQ(profiles->Remove(Name(L"X")), S_OK);
  LONG count = 0;
  profiles->get_Count(&count);
  EXPECT_EQ(count, 1);
  EXPECT_EQ(profiles->Remove(Name(L"X")), E_INVALIDARG);
}

}  // namespace
