// Selection sets: crossing and window selection tested against the entities' real geometry.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "DrawingFixture.h"
#include "platform/acad/acedads.h"
#include "platform/acad/acutads.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbhatch.h"
#include "platform/acad/dbpl.h"

namespace {

using kdtest::NewDrawing;
using kdtest::Opened;

constexpr double kPi = 3.14159265358979323846;

class SelectionTest : public NewDrawing {
protected:
  // The entities a selection picks (empty when acedSSGet says nothing was picked).
  std::vector<AcDbObjectId> Select(const ACHAR* mode, double x1, double y1, double x2, double y2) {
    const ads_point a = {x1, y1, 0.0};
    const ads_point b = {x2, y2, 0.0};
    ads_name ss;
    std::vector<AcDbObjectId> ids;
    if (acedSSGet(mode, a, b, nullptr, ss) != RTNORM) return ids;
    Adesk::Int32 n = 0;
    EXPECT_EQ(acedSSLength(ss, &n), RTNORM);
    for (Adesk::Int32 i = 0; i < n; ++i) {
      ads_name ent;
      EXPECT_EQ(acedSSName(ss, i, ent), RTNORM);
      AcDbObjectId id;
      EXPECT_EQ(acdbGetObjectId(id, ent), Acad::eOk);
      ids.push_back(id);
    }
    EXPECT_EQ(acedSSFree(ss), RTNORM);
    return ids;
  }
  bool Picked(AcDbObjectId id, double x1, double y1, double x2, double y2) {
    const auto ids = Select(L"C", x1, y1, x2, y2);
    return std::find(ids.begin(), ids.end(), id) != ids.end();
  }
};

TEST_F(SelectionTest, ALinePassingThroughTheWindowIsPickedOneBesideItIsNot) {
  const AcDbObjectId line = Append(new AcDbLine(AcGePoint3d(-10, -10, 0), AcGePoint3d(10, 10, 0)));
  EXPECT_TRUE(Picked(line, -1, 1, 1, -1)) << "corners in any order";
  EXPECT_FALSE(Picked(line, 2, -3, 4, -1)) << "inside the line's extents but off the line";
  EXPECT_TRUE(Picked(line, 9, 9, 20, 20)) << "the end reaches in";
}

TEST_F(SelectionTest, ACircleIsPickedByItsCurveNotByWhatItEncloses) {
  const AcDbObjectId circle = Append(new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, 5.0));
  EXPECT_FALSE(Picked(circle, -1, -1, 1, 1)) << "a window inside the circle crosses nothing";
  EXPECT_TRUE(Picked(circle, 4, -1, 6, 1));
  EXPECT_TRUE(Picked(circle, -10, -10, 10, 10)) << "wholly inside the window";
}

TEST_F(SelectionTest, AnArcIsPickedOnlyWhereItRuns) {
  const AcDbObjectId arc = Append(new AcDbArc(AcGePoint3d(0, 0, 0), 5.0, 0.0, kPi / 2));
  EXPECT_TRUE(Picked(arc, 3, 3, 4, 4));
  EXPECT_FALSE(Picked(arc, -6, -1, -4, 1)) << "where the full circle would be";
  EXPECT_FALSE(Picked(arc, 1, 1, 2, 2)) << "inside its extents, off the curve";
}

TEST_F(SelectionTest, APolylinesArcSegmentCountsBeyondItsVertices) {
  auto* pl = new AcDbPolyline;
  pl->addVertexAt(0, AcGePoint2d(0, 0), 1.0);
  pl->addVertexAt(1, AcGePoint2d(10, 0));
  const AcDbObjectId id = Append(pl);
  EXPECT_TRUE(Picked(id, 4, -6, 6, -4)) << "the half circle dips to y = -5";
  EXPECT_FALSE(Picked(id, 4, 1, 6, 3)) << "the chord side stays empty";
}

TEST_F(SelectionTest, TextIsPickedByItsBox) {
  auto* text = new AcDbText(AcGePoint3d(0, 0, 0), L"ABCDEFGH");
  text->setHeight(2.0);
  const AcDbObjectId id = Append(text);
  EXPECT_TRUE(Picked(id, 5, 0.5, 6, 1.5)) << "inside the box";
  EXPECT_FALSE(Picked(id, 17, 0, 18, 1)) << "past the last character";
}

TEST_F(SelectionTest, AHatchIsPickedByItsArea) {
  auto* hatch = new AcDbHatch;
  AcGePoint2dArray square;
  for (auto p : {AcGePoint2d(0, 0), AcGePoint2d(10, 0), AcGePoint2d(10, 10), AcGePoint2d(0, 10)}) square.append(p);
  hatch->appendLoop(AcDbHatch::kExternal, square, AcGeDoubleArray());
  const AcDbObjectId id = Append(hatch);
  EXPECT_TRUE(Picked(id, 4, 4, 6, 6));
  EXPECT_FALSE(Picked(id, 11, 11, 12, 12));
}

TEST_F(SelectionTest, ABlockReferenceIsPickedWhereItsBlockLands) {
  AcDbObjectId block;
  {
    Opened<AcDbBlockTable> table(db->blockTableId(), AcDb::kForWrite);
    auto* record = new AcDbBlockTableRecord;
    record->setName(L"Marker");
    table->add(block, record);
    record->close();
  }
  Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(10, 0, 0)), block);
  auto* ref = new AcDbBlockReference(AcGePoint3d(100, 0, 0), block);
  ref->setRotation(kPi / 2);
  const AcDbObjectId id = Append(ref);
  EXPECT_TRUE(Picked(id, 99, 4, 101, 6)) << "the line turned onto x = 100";
  EXPECT_FALSE(Picked(id, 4, -1, 6, 1)) << "where the block's own line lies";
  EXPECT_FALSE(Picked(id, 104, -1, 106, 1)) << "where it would lie unturned";
}

TEST_F(SelectionTest, ErasedHiddenAndOffLayerEntitiesAreNotThereToPick) {
  const AcDbObjectId erased = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0)));
  {
    Opened<AcDbLine> l(erased, AcDb::kForWrite);
    l->erase();
  }
  auto* hidden = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0));
  hidden->setVisibility(AcDb::kInvisible);
  const AcDbObjectId invisible = Append(hidden);
  const AcDbObjectId offLayer = AddLayer(L"Off");
  const AcDbObjectId frozenLayer = AddLayer(L"Frozen");
  {
    Opened<AcDbLayerTableRecord> off(offLayer, AcDb::kForWrite);
    off->setIsOff(true);
    Opened<AcDbLayerTableRecord> frozen(frozenLayer, AcDb::kForWrite);
    frozen->setIsFrozen(true);
  }
  auto* onOff = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0));
  onOff->setLayer(offLayer);
  const AcDbObjectId off = Append(onOff);
  auto* onFrozen = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0));
  onFrozen->setLayer(frozenLayer);
  const AcDbObjectId frozen = Append(onFrozen);
  EXPECT_TRUE(Select(L"C", -1, -1, 2, 2).empty());
  const auto all = Select(L"X", 0, 0, 0, 0);
  EXPECT_EQ(all, (std::vector<AcDbObjectId>{invisible, off, frozen})) << "X takes all but the erased";
}

TEST_F(SelectionTest, AWindowTakesOnlyWhatLiesWhollyInside) {
  const AcDbObjectId inside = Append(new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, 1.0));
  const AcDbObjectId across = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(10, 0, 0)));
  EXPECT_EQ(Select(L"W", -2, -2, 2, 2), (std::vector<AcDbObjectId>{inside}));
  EXPECT_EQ(Select(L"c", -2, -2, 2, 2), (std::vector<AcDbObjectId>{inside, across}));
}

TEST_F(SelectionTest, SelectionsThatCannotBeMadeFail) {
  Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0)));
  const ads_point a = {-5, -5, 0};
  const ads_point b = {5, 5, 0};
  const ads_point far = {50, 50, 0};
  ads_name ss = {7, 7};
  EXPECT_EQ(acedSSGet(L"C", far, far, nullptr, ss), RTERROR) << "nothing there";
  EXPECT_EQ(ss[0], 0);
  EXPECT_EQ(acedSSGet(nullptr, nullptr, nullptr, nullptr, ss), RTERROR) << "there is nobody to pick";
  EXPECT_EQ(acedSSGet(L"F", a, b, nullptr, ss), RTERROR);
  EXPECT_EQ(acedSSGet(L"C", a, nullptr, nullptr, ss), RTERROR);
  resbuf* filter = acutBuildList(RTDXF0, L"LINE", 0);
  EXPECT_EQ(acedSSGet(L"C", a, b, filter, ss), RTERROR) << "filters are not supported";
  acutRelRb(filter);

  ASSERT_EQ(acedSSGet(L"C", a, b, nullptr, ss), RTNORM);
  ads_name ent;
  EXPECT_EQ(acedSSName(ss, 1, ent), RTERROR);
  EXPECT_EQ(acedSSName(ss, -1, ent), RTERROR);
  EXPECT_EQ(acedSSFree(ss), RTNORM);
  EXPECT_EQ(acedSSFree(ss), RTERROR);
  Adesk::Int32 n = 0;
  EXPECT_EQ(acedSSLength(ss, &n), RTERROR);
}

TEST_F(SelectionTest, AtMost128SetsAreOpenAtOnce) {
  Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0)));
  const ads_point a = {-5, -5, 0};
  const ads_point b = {5, 5, 0};
  std::vector<Adesk::LongPtr> sets;
  for (int i = 0; i < 128; ++i) {
    ads_name ss;
    ASSERT_EQ(acedSSGet(L"C", a, b, nullptr, ss), RTNORM) << i;
    sets.push_back(ss[0]);
  }
  ads_name one_more;
  EXPECT_EQ(acedSSGet(L"C", a, b, nullptr, one_more), RTERROR);
  ads_name first = {sets.front(), 0};
  EXPECT_EQ(acedSSFree(first), RTNORM);
  EXPECT_EQ(acedSSGet(L"C", a, b, nullptr, one_more), RTNORM) << "a freed set makes room";
}

TEST(EntityNames, NameTheSameObjectAsIds) {
  HeadlessApp* app = HeadlessStart(nullptr);
  AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
  ads_name name;
  ASSERT_EQ(acdbGetAdsName(name, db->blockTableId()), Acad::eOk);
  AcDbObjectId id;
  ASSERT_EQ(acdbGetObjectId(id, name), Acad::eOk);
  EXPECT_EQ(id, db->blockTableId());
  ads_name bogus = {12345, 0};
  EXPECT_EQ(acdbGetObjectId(id, bogus), Acad::eInvalidAdsName);
  EXPECT_EQ(acdbGetAdsName(name, AcDbObjectId::kNull), Acad::eNullObjectId);
  HeadlessStop(app);
}

}  // namespace
