// Alignments through their COM faces: creation rules, entities (fixed lines and three-point
// arcs, ids, order, removal), stationing and positions, and the light-weight polyline form.
// Expected values are worked by hand from the geometry in each test.
#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "CivilFixture.h"
#include "platform/acad/dbpl.h"

namespace {

using kdtest::As;
using kdtest::CivilDrawing;
using kdtest::Index;
using kdtest::Name;
using kdtest::Point;

constexpr double kPi = std::numbers::pi;

// East 100 from the origin, a quarter turn left about (100, 50), north 100: length 200 + 25 pi.
class Road : public CivilDrawing {
protected:
  void SetUp() override {
    CivilDrawing::SetUp();
    road = AddAlignment(L"Road");
    ASSERT_NE(road, nullptr);
    entities = EntitiesOf(road);
    CComPtr<IAeccAlignmentTangent> first, last;
    CComPtr<IAeccAlignmentArc> arc;
    ASSERT_EQ(entities->AddFixedLine1(Point(0, 0), Point(100, 0), &first), S_OK);
    LONG id = 0;
    first->get_Id(&id);
    const double h = 50.0 * std::sqrt(0.5);
    ASSERT_EQ(entities->AddFixedCurve1(id, Point(100, 0), Point(100 + h, 50 - h), Point(150, 50), &arc), S_OK);
    ASSERT_EQ(entities->AddFixedLine1(Point(150, 50), Point(150, 150), &last), S_OK);
  }
  void TearDown() override {
    entities.Release();
    road.Release();
    CivilDrawing::TearDown();
  }
  CComPtr<IAeccAlignmentEntity> Item(LONG i) {
    CComPtr<IAeccAlignmentEntity> entity;
    EXPECT_EQ(entities->Item(i, &entity), S_OK);
    return entity;
  }

  CComPtr<IAeccAlignment> road;
  CComPtr<IAeccAlignmentEntities> entities;
};

TEST_F(Road, EntitiesAnswerTheirKindAndGeometry) {
  LONG count = 0;
  ASSERT_EQ(entities->get_Count(&count), S_OK);
  ASSERT_EQ(count, 3);
  CComPtr<IAeccAlignmentArc> arc = As<IAeccAlignmentArc>(Item(1));
  ASSERT_NE(arc, nullptr);
  AeccAlignmentEntityType type{};
  arc->get_Type(&type);
  EXPECT_EQ(type, aeccArc);
  double cx = 0, cy = 0, r = 0, delta = 0, startDirection = 0, endDirection = 0, station = 0;
  VARIANT_BOOL clockwise = VARIANT_TRUE;
  arc->get_CenterEasting(&cx);
  arc->get_CenterNorthing(&cy);
  arc->get_Radius(&r);
  arc->get_Clockwise(&clockwise);
  arc->get_Delta(&delta);
  arc->get_StartDirection(&startDirection);
  arc->get_EndDirection(&endDirection);
  arc->get_StartingStation(&station);
  EXPECT_NEAR(cx, 100, 1e-9);
  EXPECT_NEAR(cy, 50, 1e-9);
  EXPECT_NEAR(r, 50, 1e-9);
  EXPECT_EQ(clockwise, VARIANT_FALSE);
  EXPECT_NEAR(delta, kPi / 2, 1e-12);
  EXPECT_NEAR(startDirection, 0.0, 1e-12);
  EXPECT_NEAR(endDirection, kPi / 2, 1e-12);
  EXPECT_NEAR(station, 100, 1e-9);

  CComPtr<IAeccAlignmentTangent> last = As<IAeccAlignmentTangent>(Item(2));
  ASSERT_NE(last, nullptr);
  double direction = 0, length = 0;
  last->get_Direction(&direction);
  last->get_Length(&length);
  EXPECT_NEAR(direction, kPi / 2, 1e-12);
  EXPECT_NEAR(length, 100, 1e-12);
  EXPECT_EQ(As<IAeccAlignmentArc>(last), nullptr);
  LONG subCount = 0;
  last->get_SubEntityCount(&subCount);
  EXPECT_EQ(subCount, 1) << "a simple entity is its own only sub-entity";
}

TEST_F(Road, IdsOrderTheListingAndAreNeverReused) {
  LONG first = 0, last = 0, before = 0, after = 0, arcId = 0;
  entities->get_FirstEntity(&first);
  entities->get_LastEntity(&last);
  Item(1)->get_Id(&arcId);
  Item(1)->get_EntityBefore(&before);
  Item(1)->get_EntityAfter(&after);
  EXPECT_EQ(before, first);
  EXPECT_EQ(after, last);
  CComPtr<IAeccAlignmentEntity> byId;
  ASSERT_EQ(entities->EntityAtId(arcId, &byId), S_OK);
  AeccAlignmentEntityType type{};
  byId->get_Type(&type);
  EXPECT_EQ(type, aeccArc);

  CComPtr<IAeccAlignmentEntity> held = Item(1);
  ASSERT_EQ(entities->RemoveAll(), S_OK);
  LONG count = -1;
  entities->get_Count(&count);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(held->get_Type(&type), E_FAIL) << "a face whose entity is gone fails";
  CComPtr<IAeccAlignmentTangent> fresh;
  ASSERT_EQ(entities->AddFixedLine1(Point(0, 0), Point(1, 0), &fresh), S_OK);
  LONG freshId = 0;
  fresh->get_Id(&freshId);
  EXPECT_GT(freshId, last);
}

TEST_F(Road, AnArcIsPlacedAfterItsPreviousEntity) {
  LONG firstId = 0;
  entities->get_FirstEntity(&firstId);
  CComPtr<IAeccAlignmentArc> inserted;
  // From (0, 0) over (10, 10) to (20, 0) the path turns right: clockwise about (10, 0).
  ASSERT_EQ(entities->AddFixedCurve1(firstId, Point(0, 0), Point(10, 10), Point(20, 0), &inserted), S_OK);
  CComPtr<IAeccAlignmentEntity> second = Item(1);
  EXPECT_NE(As<IAeccAlignmentArc>(second), nullptr);
  LONG secondId = 0, insertedId = 0;
  second->get_Id(&secondId);
  inserted->get_Id(&insertedId);
  EXPECT_EQ(secondId, insertedId);
  VARIANT_BOOL clockwise = VARIANT_FALSE;
  double radius = 0;
  inserted->get_Clockwise(&clockwise);
  inserted->get_Radius(&radius);
  EXPECT_EQ(clockwise, VARIANT_TRUE);
  EXPECT_NEAR(radius, 10, 1e-9);
}

TEST_F(Road, BadEntitiesAreRefused) {
  CComPtr<IAeccAlignmentArc> arc;
  EXPECT_EQ(entities->AddFixedCurve1(0, Point(0, 0), Point(5, 0), Point(10, 0), &arc), E_INVALIDARG)
      << "three points on a line";
  EXPECT_EQ(entities->AddFixedCurve1(0, Point(0, 0), Point(0, 0), Point(10, 0), &arc), E_INVALIDARG);
  EXPECT_EQ(entities->AddFixedCurve1(999, Point(0, 0), Point(5, 5), Point(10, 0), &arc), E_INVALIDARG)
      << "no entity with that id";
  CComPtr<IAeccAlignmentTangent> line;
  EXPECT_EQ(entities->AddFixedLine1(kdtest::Doubles({0, 0}), Point(1, 1), &line), E_INVALIDARG)
      << "a point of two coordinates";
  EXPECT_EQ(entities->AddFixedLine1(Point(3, 3), Point(3, 3), &line), E_INVALIDARG);
  CComPtr<IAeccAlignmentEntity> none;
  EXPECT_EQ(entities->Item(3, &none), E_INVALIDARG);
  LONG count = 0;
  entities->get_Count(&count);
  EXPECT_EQ(count, 3) << "nothing was added";
}

TEST_F(Road, StationingFollowsTheReferencePoint) {
  double start = -1, end = -1, length = 0;
  road->get_StartingStation(&start);
  road->get_Length(&length);
  EXPECT_EQ(start, 0.0);
  EXPECT_NEAR(length, 200 + 25 * kPi, 1e-9);
  ASSERT_EQ(road->put_ReferencePointStation(1000), S_OK);
  road->get_StartingStation(&start);
  road->get_EndingStation(&end);
  EXPECT_DOUBLE_EQ(start, 1000);
  EXPECT_NEAR(end, 1200 + 25 * kPi, 1e-9);

  // Station 2000 at (100, 0): the start, 100 back, is 1900. The elevation is not kept.
  ASSERT_EQ(road->put_ReferencePoint(kdtest::Doubles({100, 0, 7})), S_OK);
  ASSERT_EQ(road->put_ReferencePointStation(2000), S_OK);
  road->get_StartingStation(&start);
  EXPECT_NEAR(start, 1900, 1e-9);
  CComVariant point;
  ASSERT_EQ(road->get_ReferencePoint(&point), S_OK);
  EXPECT_EQ(kdtest::ReadDoubles(point), (std::vector<double>{100, 0}));
  EXPECT_EQ(road->put_ReferencePoint(kdtest::Doubles({100, 0})), S_OK);
  EXPECT_EQ(road->put_ReferencePoint(kdtest::Doubles({1, 2, 3, 4})), E_INVALIDARG);
  EXPECT_EQ(road->put_ReferencePoint(CComVariant(1.0)), E_INVALIDARG);
}

TEST_F(Road, PositionsGoBothWays) {
  // From station 0: 50 along the first tangent, 2 to the right (south).
  double x = 0, y = 0;
  ASSERT_EQ(road->PointLocation(50, 2, &x, &y), S_OK);
  EXPECT_NEAR(x, 50, 1e-9);
  EXPECT_NEAR(y, -2, 1e-9);
  // Half way round the arc, 5 to the left (towards the centre): 45 from (100, 50).
  ASSERT_EQ(road->PointLocation(100 + 12.5 * kPi, -5, &x, &y), S_OK);
  EXPECT_NEAR(x, 100 + 45 * std::sqrt(0.5), 1e-9);
  EXPECT_NEAR(y, 50 - 45 * std::sqrt(0.5), 1e-9);
  double station = 0, offset = 0;
  ASSERT_EQ(road->StationOffset(147, 100, &station, &offset), S_OK);
  EXPECT_NEAR(station, 150 + 25 * kPi, 1e-9);
  EXPECT_NEAR(offset, -3, 1e-9);
  EXPECT_EQ(road->PointLocation(-1, 0, &x, &y), E_INVALIDARG);
}

TEST_F(Road, EachPolylineIsANewDrawingEntityWithBulges) {
  CComPtr<IAcadLWPolyline> first, second;
  ASSERT_EQ(road->GetLWPolyline(&first), S_OK);
  ASSERT_EQ(road->GetLWPolyline(&second), S_OK);
  LONG_PTR firstId = 0, secondId = 0;
  first->get_ObjectID(&firstId);
  second->get_ObjectID(&secondId);
  EXPECT_NE(firstId, secondId);
  CComVariant coordinates;
  ASSERT_EQ(first->get_Coordinates(&coordinates), S_OK);
  const std::vector<double> xy = kdtest::ReadDoubles(coordinates);
  ASSERT_EQ(xy.size(), 8u);
  EXPECT_NEAR(xy[2], 100, 1e-12);
  EXPECT_NEAR(xy[4], 150, 1e-12);
  EXPECT_NEAR(xy[5], 50, 1e-12);
  EXPECT_NEAR(xy[7], 150, 1e-12);

  AcDbObjectId id;
  id.setFromOldId(firstId);
  AcDbPolyline* polyline = nullptr;
  ASSERT_EQ(acdbOpenObject(polyline, id, AcDb::kForRead), Acad::eOk);
  double bulge = 0;
  polyline->getBulgeAt(1, bulge);
  polyline->close();
  EXPECT_NEAR(bulge, std::tan(kPi / 8), 1e-12) << "a quarter turn left";

  CComPtr<IAeccAlignment> empty = AddAlignment(L"Empty");
  CComPtr<IAcadLWPolyline> none;
  EXPECT_EQ(empty->GetLWPolyline(&none), E_FAIL);
}

class Alignments : public CivilDrawing {};

TEST_F(Alignments, NamesAreUniqueWithoutRegardToCase) {
  CComPtr<IAeccAlignment> main = AddAlignment(L"Main Road");
  CComPtr<IAeccAlignment> other;
  EXPECT_EQ(Siteless()->Add(CComBSTR(L"MAIN ROAD"), CComBSTR(L"0"), Name(L"Basic"), Name(L"_No Labels"), &other),
            E_INVALIDARG);
  EXPECT_EQ(Siteless()->Add(CComBSTR(L""), CComBSTR(L"0"), Name(L"Basic"), Name(L"_No Labels"), &other),
            E_INVALIDARG);
  ASSERT_EQ(Siteless()->Add(CComBSTR(L"Side"), CComBSTR(L"0"), Name(L"Basic"), Name(L"_No Labels"), &other), S_OK);
  EXPECT_EQ(other->put_Name(CComBSTR(L"main road")), E_INVALIDARG);
  EXPECT_EQ(other->put_Name(CComBSTR(L"")), E_INVALIDARG);
  EXPECT_EQ(main->put_Name(CComBSTR(L"MAIN road")), S_OK) << "its own name in another case";
  CComPtr<IAeccAlignment> found;
  ASSERT_EQ(Siteless()->Item(Name(L"main ROAD"), &found), S_OK);
  EXPECT_EQ(As<IUnknown>(found), As<IUnknown>(main));
  EXPECT_EQ(kdtest::NameOf(found), L"MAIN road");
}

TEST_F(Alignments, StylesGoByNameOrObjectAndLayersAreMade) {
  CComPtr<IAeccAlignment> alignment;
  EXPECT_EQ(Siteless()->Add(CComBSTR(L"A"), CComBSTR(L"0"), Name(L"Fancy"), Name(L"_No Labels"), &alignment),
            E_INVALIDARG);
  EXPECT_EQ(Siteless()->Add(CComBSTR(L"A"), CComBSTR(L"0"), Name(L"Basic"), Name(L"No Such Set"), &alignment),
            E_INVALIDARG);
  CComPtr<IAeccAlignmentStyles> styles;
  document->get_AlignmentStyles(&styles);
  CComPtr<IAeccAlignmentStyle> layout;
  ASSERT_EQ(styles->Item(Name(L"Layout"), &layout), S_OK);
  ASSERT_EQ(Siteless()->Add(CComBSTR(L"A"), CComBSTR(L"C-ROAD"), CComVariant(static_cast<IDispatch*>(layout)),
                            Name(L"All Labels"), &alignment),
            S_OK);
  CComBSTR layer;
  alignment->get_Layer(&layer);
  EXPECT_STREQ(layer, L"C-ROAD");
  CComBSTR description;
  ASSERT_EQ(alignment->put_Description(CComBSTR(L"centre line")), S_OK);
  alignment->get_Description(&description);
  EXPECT_STREQ(description, L"centre line");
}

TEST_F(Alignments, RemovingAnAlignmentTakesItsProfilesAlong) {
  CComPtr<IAeccAlignment> road = AddAlignment(L"Road");
  CComPtr<IAeccProfiles> profiles;
  ASSERT_EQ(road->get_Profiles(&profiles), S_OK);
  CComPtr<IAeccProfile> profile;
  ASSERT_EQ(profiles->Add(CComBSTR(L"FG"), aeccFinishedGround, Name(L"Basic"), &profile), S_OK);
  ASSERT_EQ(Siteless()->Remove(Index(0)), S_OK);
  CComBSTR name;
  EXPECT_EQ(road->get_Name(&name), E_FAIL);
  EXPECT_EQ(profile->get_Name(&name), E_FAIL);
  LONG count = -1;
  EXPECT_EQ(profiles->get_Count(&count), E_FAIL);
  EXPECT_EQ(Siteless()->Remove(Name(L"Road")), E_INVALIDARG);
}

}  // namespace
