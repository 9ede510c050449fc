// The DXF writer and reader on drawings built with ObjectARX calls: what a save and a reopen
// keep (handles, owners, Xrecord values of every kind, symbol table records, groups) and what
// they leave out (erased objects).
#include <gtest/gtest.h>

#include <cmath>

#include "DrawingFixture.h"
#include "headless/acad/Dxf.h"
#include "platform/acad/acutads.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbgroup.h"
#include "platform/acad/dbxrecrd.h"

namespace {

using kdtest::Opened;

class ADrawingToSave : public kdtest::NewDrawing {
protected:
  // Writes the drawing and reads it back as a new database.
  std::unique_ptr<AcDbDatabase> Reopen() {
    text = headless::dxf::Write(*db);
    std::string error;
    std::unique_ptr<AcDbDatabase> back = headless::dxf::Read(text, error);
    EXPECT_NE(back, nullptr) << error;
    return back;
  }

  // The object of that handle in another database, opened for read.
  template <class T>
  static AcDbObjectId In(AcDbDatabase& other, AcDbObjectId id) {
    AcDbObjectId found;
    other.getAcDbObjectId(found, false, id.handle());
    return found;
  }

  // An Xrecord holding the chain, in the extension dictionary of the entity under key.
  void Tag(AcDbObjectId entityId, const ACHAR* key, resbuf* chain) {
    Opened<AcDbEntity> entity(entityId, AcDb::kForWrite);
    entity->createExtensionDictionary();
    Opened<AcDbDictionary> dictionary(entity->extensionDictionary(), AcDb::kForWrite);
    auto* record = new AcDbXrecord;
    ASSERT_EQ(record->setFromRbChain(*chain), Acad::eOk);
    acutRelRb(chain);
    AcDbObjectId id;
    ASSERT_EQ(dictionary->setAt(key, record, id), Acad::eOk);
    record->close();
  }

  std::string text;
};

TEST_F(ADrawingToSave, XrecordValuesOfEveryKindComeBack) {
  const AcDbObjectId line = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0)));
  const AcDbObjectId circle = Append(new AcDbCircle(AcGePoint3d(5, 5, 0), AcGeVector3d::kZAxis, 1.0));
  const ads_point p = {0.1, -2.5e-17, 1e300};
  const char bytes[] = {0, 1, '\x7f', '\xff'};
  const ads_binary blob = {4, const_cast<char*>(bytes)};
  ads_name target;
  acdbGetAdsName(target, circle);
  Tag(line, L"Data",
      acutBuildList(1, L"caf\u00e9 ^ line\nbreak \U0001F600", 10, p, 40, 0.1, 70, -12, 90, 123456789, 160,
                    Adesk::Int64(-9000000000LL), 330, target, 310, &blob, 0));
  std::unique_ptr<AcDbDatabase> back = Reopen();
  ASSERT_NE(back, nullptr);
  Opened<AcDbLine> copy(In<AcDbLine>(*back, line), AcDb::kForRead);
  ASSERT_TRUE(copy);
  Opened<AcDbDictionary> dictionary(copy->extensionDictionary(), AcDb::kForRead);
  ASSERT_TRUE(dictionary);
  AcDbObject* object = nullptr;
  ASSERT_EQ(dictionary->getAt(L"Data", object, AcDb::kForRead), Acad::eOk);
  const auto& items = AcDbXrecord::cast(object)->items();
  ASSERT_EQ(items.size(), 8u);
  EXPECT_EQ(items[0].text, L"caf\u00e9 ^ line\nbreak \U0001F600");
  EXPECT_EQ(items[1].point[0], 0.1);
  EXPECT_EQ(items[1].point[1], -2.5e-17) << "17 significant digits";
  EXPECT_EQ(items[1].point[2], 1e300);
  EXPECT_EQ(items[2].real, 0.1);
  EXPECT_EQ(items[3].integer, -12);
  EXPECT_EQ(items[4].integer, 123456789);
  EXPECT_EQ(items[5].integer, -9000000000LL);
  EXPECT_EQ(items[6].id, In<AcDbCircle>(*back, circle)) << "a pointer names the same object again";
  EXPECT_EQ(items[7].binary, std::vector<char>(bytes, bytes + 4));
  object->close();
}

TEST_F(ADrawingToSave, HandlesOwnersAndTheSeedAreKept) {
  const AcDbObjectId line = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0)));
  const AcDbObjectId erased = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(0, 1, 0)));
  {
    Opened<AcDbLine> gone(erased, AcDb::kForWrite);
    gone->erase();
  }
  const AcDbHandle seed = db->handseed();
  std::unique_ptr<AcDbDatabase> back = Reopen();
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->handseed(), seed) << "new objects get the handles they would have had";
  const AcDbObjectId copy = In<AcDbLine>(*back, line);
  ASSERT_FALSE(copy.isNull());
  EXPECT_EQ(copy.handle(), line.handle());
  Opened<AcDbLine> reopened(copy, AcDb::kForRead);
  AcDbObjectId modelSpace;
  {
    Opened<AcDbBlockTable> table(back->blockTableId(), AcDb::kForRead);
    table->getAt(ACDB_MODEL_SPACE, modelSpace);
  }
  EXPECT_EQ(reopened->ownerId(), modelSpace);
  EXPECT_EQ(modelSpace.handle(), ModelSpaceId().handle());
  AcDbObjectId none;
  EXPECT_EQ(back->getAcDbObjectId(none, false, erased.handle()), Acad::eUnknownHandle) << "erased objects stay out";
  ACHAR hex[17];
  erased.handle().getIntoAsciiBuffer(hex, 17);
  const std::wstring wide(hex);
  EXPECT_EQ(text.find("\n  5\n" + std::string(wide.begin(), wide.end()) + "\n"), std::string::npos);
}

TEST_F(ADrawingToSave, LayersLineTypesAndTextStylesComeBackWithTheirSettings) {
  const AcDbObjectId layer = AddLayer(L"C-ROAD");
  {
    Opened<AcDbLayerTableRecord> record(layer, AcDb::kForWrite);
    AcCmColor colour;
    colour.setRGB(10, 20, 30);
    record->setColor(colour);
    record->setIsOff(true);
    record->setIsLocked(true);
  }
  {
    Opened<AcDbLinetypeTable> table(db->linetypeTableId(), AcDb::kForWrite);
    auto* dashed = new AcDbLinetypeTableRecord;
    dashed->setName(L"DASHDOT2");
    dashed->setComments(L"__ . __");
    dashed->setNumDashes(3);
    dashed->setDashLengthAt(0, 0.5);
    dashed->setDashLengthAt(1, -0.25);
    dashed->setDashLengthAt(2, 0.0);
    dashed->setPatternLength(0.75);
    ASSERT_EQ(table->add(dashed), Acad::eOk);
    dashed->close();
  }
  std::unique_ptr<AcDbDatabase> back = Reopen();
  ASSERT_NE(back, nullptr);
  Opened<AcDbLayerTableRecord> road(In<AcDbLayerTableRecord>(*back, layer), AcDb::kForRead);
  ASSERT_TRUE(road);
  EXPECT_EQ(road->color().red(), 10);
  EXPECT_EQ(road->color().blue(), 30);
  EXPECT_TRUE(road->isOff());
  EXPECT_TRUE(road->isLocked());
  EXPECT_FALSE(road->isFrozen());
  Opened<AcDbLinetypeTable> types(back->linetypeTableId(), AcDb::kForRead);
  AcDbLinetypeTableRecord* dashed = nullptr;
  ASSERT_EQ(types->getAt(L"DASHDOT2", dashed, AcDb::kForRead), Acad::eOk);
  EXPECT_EQ(dashed->numDashes(), 3);
  EXPECT_EQ(dashed->dashLengthAt(1), -0.25);
  EXPECT_EQ(dashed->patternLength(), 0.75);
  dashed->close();
}

TEST_F(ADrawingToSave, GroupsKeepTheirMembersAndNames) {
  const AcDbObjectId a = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0)));
  const AcDbObjectId b = Append(new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, 2.0));
  AcDbObjectId groupId;
  {
    Opened<AcDbDictionary> groups(db->groupDictionaryId(), AcDb::kForWrite);
    auto* group = new AcDbGroup(L"kerbs", false);
    ASSERT_EQ(groups->setAt(L"Kerbs", group, groupId), Acad::eOk);
    group->append(a);
    group->append(b);
    group->close();
  }
  std::unique_ptr<AcDbDatabase> back = Reopen();
  ASSERT_NE(back, nullptr);
  Opened<AcDbGroup> group(In<AcDbGroup>(*back, groupId), AcDb::kForRead);
  ASSERT_TRUE(group);
  EXPECT_STREQ(group->name(), L"Kerbs");
  EXPECT_STREQ(group->description(), L"kerbs");
  EXPECT_FALSE(group->isSelectable());
  AcDbObjectIdArray members;
  group->allEntityIds(members);
  ASSERT_EQ(members.length(), 2);
  EXPECT_EQ(members[0].handle(), a.handle());
  EXPECT_EQ(members[1].handle(), b.handle());
}

TEST(DxfRead, RefusesWhatIsNoDrawing) {
  std::string error;
  EXPECT_EQ(headless::dxf::Read("hello\nworld\n", error), nullptr);
  EXPECT_NE(error.find("group code"), std::string::npos) << error;
  error.clear();
  EXPECT_EQ(headless::dxf::Read("  0\nSECTION\n  2\nHEADER\n  0\nENDSEC\n  0\nEOF\n", error), nullptr);
  EXPECT_NE(error.find("no DXF drawing"), std::string::npos) << error;
  error.clear();
  EXPECT_EQ(headless::dxf::Read("  0\nSECTION\n  2\n", error), nullptr);
  EXPECT_FALSE(error.empty());
}

}  // namespace
