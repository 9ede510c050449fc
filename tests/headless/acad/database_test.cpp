// The drawing database: what a new drawing holds, object ids and handles, and AutoCAD's rules
// for opening, closing and erasing objects.
#include <gtest/gtest.h>

#include <set>

#include "DrawingFixture.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dblayout.h"

namespace {

using kdtest::NewDrawing;
using kdtest::Opened;
using kdtest::Take;

std::wstring HandleText(AcDbObjectId id) {
  ACHAR text[17];
  id.handle().getIntoAsciiBuffer(text, 17);
  return text;
}

// --- A new drawing --------------------------------------------------------------------------------

TEST_F(NewDrawing, HoldsTheStandardTemplatesLayersLineTypesAndStyles) {
  Opened<AcDbLayerTable> layers(db->layerTableId(), AcDb::kForRead);
  Opened<AcDbLayerTableRecord> zero(db->clayer(), AcDb::kForRead);
  ASSERT_TRUE(zero);
  ACHAR* name = nullptr;
  zero->getName(name);
  EXPECT_EQ(Take(name), L"0");
  EXPECT_EQ(zero->color().colorIndex(), 7);
  EXPECT_TRUE(layers->has(L"0"));

  Opened<AcDbLinetypeTable> linetypes(db->linetypeTableId(), AcDb::kForRead);
  for (const ACHAR* lt : {L"ByLayer", L"ByBlock", L"Continuous", L"CONTINUOUS"}) EXPECT_TRUE(linetypes->has(lt)) << lt;
  AcDbObjectId continuous;
  linetypes->getAt(L"Continuous", continuous);
  EXPECT_EQ(zero->linetypeObjectId(), continuous);
  EXPECT_EQ(db->celtype(), db->byLayerLinetype());

  Opened<AcDbTextStyleTable> styles(db->textStyleTableId(), AcDb::kForRead);
  AcDbObjectId standard;
  EXPECT_EQ(styles->getAt(L"Standard", standard), Acad::eOk);
  EXPECT_EQ(db->textstyle(), standard);

  Opened<AcDbBlockTable> blocks(db->blockTableId(), AcDb::kForRead);
  EXPECT_TRUE(blocks->has(ACDB_MODEL_SPACE));
  EXPECT_TRUE(blocks->has(ACDB_PAPER_SPACE));
  EXPECT_EQ(db->currentSpaceId(), ModelSpaceId());

  Opened<AcDbDictionary> tableStyles(db->tableStyleDictionaryId(), AcDb::kForRead);
  AcDbObjectId tableStyle;
  EXPECT_EQ(tableStyles->getAt(L"Standard", tableStyle), Acad::eOk);
  EXPECT_EQ(db->tablestyle(), tableStyle);
  Opened<AcDbDictionary> root(db->namedObjectsDictionaryId(), AcDb::kForRead);
  for (const ACHAR* key : {ACDB_GROUP_DICTIONARY, ACDB_LAYOUT_DICTIONARY, ACDB_TABLESTYLE_DICTIONARY})
    EXPECT_TRUE(root->has(key)) << key;
  Opened<AcDbDictionary> layouts(db->layoutDictionaryId(), AcDb::kForRead);
  AcDbObjectId modelLayout;
  ASSERT_EQ(layouts->getAt(L"Model", modelLayout), Acad::eOk);
  Opened<AcDbLayout> layout(modelLayout, AcDb::kForRead);
  EXPECT_EQ(layout->getBlockTableRecordId(), ModelSpaceId());
}

TEST_F(NewDrawing, EveryObjectHasItsOwnHandleThatFindsItAgain) {
  std::set<std::wstring> seen;
  std::vector<AcDbObjectId> ids = {db->blockTableId(), db->layerTableId(), db->namedObjectsDictionaryId(),
                                   ModelSpaceId(), db->clayer(), db->byLayerLinetype()};
  ids.push_back(Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0))));
  for (const AcDbObjectId& id : ids) {
    const std::wstring text = HandleText(id);
    EXPECT_TRUE(seen.insert(text).second) << "handle " << std::string(text.begin(), text.end()) << " repeats";
    AcDbObjectId found;
    ASSERT_EQ(db->getAcDbObjectId(found, false, AcDbHandle(text.c_str())), Acad::eOk);
    EXPECT_EQ(found, id);
    EXPECT_EQ(AcDbHandle(text.c_str()), id.handle());
  }
  EXPECT_GT(static_cast<Adesk::UInt64>(db->handseed()), static_cast<Adesk::UInt64>(ids.back().handle()));
}

TEST_F(NewDrawing, HandleTextIsUpperCaseHexadecimal) {
  AcDbHandle h(L"2a");
  EXPECT_EQ(static_cast<Adesk::UInt64>(h), 0x2Au);
  ACHAR text[17];
  h.getIntoAsciiBuffer(text, 17);
  EXPECT_STREQ(text, L"2A");
  EXPECT_TRUE(AcDbHandle(L"2G").isNull());
  EXPECT_TRUE(AcDbHandle(L"").isNull());
  EXPECT_TRUE(AcDbHandle(L"12345678901234567").isNull());  // more than 64 bits
  ACHAR small[4] = L"xyz";
  h.getIntoAsciiBuffer(small, 4);
  EXPECT_STREQ(small, L"");
}

TEST_F(NewDrawing, UnknownAndNullHandlesAreRefused) {
  AcDbObjectId id;
  EXPECT_EQ(db->getAcDbObjectId(id, false, AcDbHandle(L"FFFFFF")), Acad::eUnknownHandle);
  EXPECT_TRUE(id.isNull());
  EXPECT_EQ(db->getAcDbObjectId(id, false, AcDbHandle()), Acad::eNullHandle);
  EXPECT_EQ(db->getAcDbObjectId(id, true, AcDbHandle(L"FFFFFF")), Acad::eNotImplementedYet);
}

// --- Object ids as session ids ------------------------------------------------------------------

TEST(ObjectIds, AreNeverReusedAndDieWithTheirDrawing) {
  HeadlessApp* first = HeadlessStart(nullptr);
  ASSERT_NE(first, nullptr);
  AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
  const AcDbObjectId oldId = db->blockTableId();
  const Adesk::IntDbId session = oldId.asOldId();
  const AcDbHandle handle = oldId.handle();
  EXPECT_TRUE(oldId.isValid());
  EXPECT_EQ(oldId.database(), db);
  HeadlessStop(first);

  EXPECT_FALSE(oldId.isValid());
  AcDbObject* object = reinterpret_cast<AcDbObject*>(0x1);
  EXPECT_EQ(acdbOpenAcDbObject(object, oldId, AcDb::kForRead), Acad::eInvalidObjectId);
  EXPECT_EQ(object, nullptr);
  EXPECT_TRUE(oldId.handle().isNull());
  EXPECT_EQ(oldId.database(), nullptr);

  HeadlessApp* second = HeadlessStart(nullptr);
  ASSERT_NE(second, nullptr);
  AcDbDatabase* db2 = acdbHostApplicationServices()->workingDatabase();
  // The same object of a new drawing gets a new id but, being persistent, the same handle.
  EXPECT_NE(db2->blockTableId().asOldId(), session);
  EXPECT_EQ(db2->blockTableId().handle(), handle);
  HeadlessStop(second);
}

TEST(ObjectIds, AnIntegerThatNamesNoObjectIsInvalid) {
  HeadlessApp* app = HeadlessStart(nullptr);
  ASSERT_NE(app, nullptr);
  AcDbObjectId id;
  for (Adesk::IntDbId bogus : {Adesk::IntDbId(1), Adesk::IntDbId(0x2A), Adesk::IntDbId(-16)}) {
    id.setFromOldId(bogus);
    EXPECT_FALSE(id.isValid());
    AcDbObject* object = nullptr;
    EXPECT_EQ(acdbOpenAcDbObject(object, id, AcDb::kForRead), Acad::eInvalidObjectId);
  }
  AcDbObject* object = nullptr;
  EXPECT_EQ(acdbOpenAcDbObject(object, AcDbObjectId::kNull, AcDb::kForRead), Acad::eNullObjectId);
  HeadlessStop(app);
}

// --- Opening and closing ------------------------------------------------------------------------

class DrawingWithOneLine : public NewDrawing {
protected:
  void SetUp() override {
    NewDrawing::SetUp();
    line = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(10, 0, 0)));
    ASSERT_FALSE(line.isNull());
  }
  AcDbObjectId line;
};

TEST_F(DrawingWithOneLine, ReadersAreCountedAndEachOpenNeedsItsClose) {
  AcDbLine* a = nullptr;
  AcDbLine* b = nullptr;
  ASSERT_EQ(acdbOpenObject(a, line, AcDb::kForRead), Acad::eOk);
  ASSERT_EQ(acdbOpenObject(b, line, AcDb::kForRead), Acad::eOk);
  EXPECT_EQ(a, b);
  AcDbLine* writer = nullptr;
  EXPECT_EQ(acdbOpenObject(writer, line, AcDb::kForWrite), Acad::eWasOpenForRead);
  EXPECT_EQ(writer, nullptr);
  EXPECT_EQ(a->close(), Acad::eOk);
  EXPECT_EQ(acdbOpenObject(writer, line, AcDb::kForWrite), Acad::eWasOpenForRead);
  EXPECT_EQ(b->close(), Acad::eOk);
  EXPECT_EQ(b->close(), Acad::eInvalidOpenState);
  ASSERT_EQ(acdbOpenObject(writer, line, AcDb::kForWrite), Acad::eOk);
  writer->close();
}

TEST_F(DrawingWithOneLine, AnObjectOpenForWriteCannotBeOpenedAgain) {
  Opened<AcDbLine> writer(line, AcDb::kForWrite);
  ASSERT_TRUE(writer);
  AcDbLine* other = nullptr;
  EXPECT_EQ(acdbOpenObject(other, line, AcDb::kForWrite), Acad::eWasOpenForWrite);
  EXPECT_EQ(acdbOpenObject(other, line, AcDb::kForRead), Acad::eWasOpenForWrite);
  EXPECT_EQ(other, nullptr);
}

TEST_F(DrawingWithOneLine, ReadersStopAtTwoHundredFiftySix) {
  std::vector<AcDbLine*> readers;
  for (int i = 0; i < 256; ++i) {
    AcDbLine* r = nullptr;
    ASSERT_EQ(acdbOpenObject(r, line, AcDb::kForRead), Acad::eOk) << i;
    readers.push_back(r);
  }
  AcDbLine* extra = nullptr;
  EXPECT_EQ(acdbOpenObject(extra, line, AcDb::kForRead), Acad::eAtMaxReaders);
  for (AcDbLine* r : readers) r->close();
}

TEST_F(DrawingWithOneLine, NotifyGoesWithReadersButNotWithAnotherNotifier) {
  Opened<AcDbLine> reader(line, AcDb::kForRead);
  Opened<AcDbLine> notifier(line, AcDb::kForNotify);
  ASSERT_TRUE(notifier);
  EXPECT_TRUE(notifier->isNotifyEnabled());
  AcDbLine* other = nullptr;
  EXPECT_EQ(acdbOpenObject(other, line, AcDb::kForNotify), Acad::eWasOpenForNotify);
  EXPECT_EQ(acdbOpenObject(other, line, AcDb::kForRead), Acad::eWasOpenForNotify);
}

TEST_F(DrawingWithOneLine, UpgradingNeedsTheOnlyReader) {
  Opened<AcDbLine> first(line, AcDb::kForRead);
  {
    Opened<AcDbLine> second(line, AcDb::kForRead);
    EXPECT_EQ(first->upgradeOpen(), Acad::eHadMultipleReaders);
  }
  ASSERT_EQ(first->upgradeOpen(), Acad::eOk);
  EXPECT_TRUE(first->isWriteEnabled());
  EXPECT_EQ(first->setEndPoint(AcGePoint3d(5, 5, 0)), Acad::eOk);
  EXPECT_EQ(first->downgradeOpen(), Acad::eOk);
  EXPECT_EQ(first->setEndPoint(AcGePoint3d(6, 6, 0)), Acad::eNotOpenForWrite);
  EXPECT_EQ(first->endPoint(), AcGePoint3d(5, 5, 0));
}

TEST_F(DrawingWithOneLine, SettersOfAnObjectOpenForReadChangeNothing) {
  Opened<AcDbLine> reader(line, AcDb::kForRead);
  EXPECT_EQ(reader->setStartPoint(AcGePoint3d(3, 3, 3)), Acad::eNotOpenForWrite);
  EXPECT_EQ(reader->setLayer(L"0"), Acad::eNotOpenForWrite);
  EXPECT_EQ(reader->setColorIndex(1), Acad::eNotOpenForWrite);
  EXPECT_EQ(reader->erase(), Acad::eNotOpenForWrite);
  EXPECT_EQ(reader->startPoint(), AcGePoint3d(0, 0, 0));
  EXPECT_EQ(reader->colorIndex(), 256);
}

TEST_F(DrawingWithOneLine, OpeningAsAnotherClassFailsWithoutOpening) {
  AcDbCircle* circle = reinterpret_cast<AcDbCircle*>(0x1);
  EXPECT_EQ(acdbOpenObject(circle, line, AcDb::kForWrite), Acad::eNotThatKindOfClass);
  EXPECT_EQ(circle, nullptr);
  AcDbCurve* curve = nullptr;
  ASSERT_EQ(acdbOpenObject(curve, line, AcDb::kForWrite), Acad::eOk) << "the line was left open";
  curve->close();
  AcDbEntity* entity = nullptr;
  EXPECT_EQ(acdbOpenAcDbEntity(entity, db->namedObjectsDictionaryId(), AcDb::kForRead), Acad::eNotAnEntity);
}

TEST_F(DrawingWithOneLine, AnAppendedObjectIsNewAndOpenUntilItsFirstClose) {
  auto* circle = new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, 1.0);
  Opened<AcDbBlockTableRecord> space(ModelSpaceId(), AcDb::kForWrite);
  AcDbObjectId id;
  ASSERT_EQ(space->appendAcDbEntity(id, circle), Acad::eOk);
  EXPECT_TRUE(circle->isNewObject());
  EXPECT_TRUE(circle->isWriteEnabled());
  EXPECT_EQ(circle->objectId(), id);
  EXPECT_EQ(circle->ownerId(), ModelSpaceId());
  EXPECT_EQ(circle->blockId(), ModelSpaceId());
  EXPECT_EQ(space->appendAcDbEntity(circle), Acad::eAlreadyInDb);
  EXPECT_EQ(space->appendAcDbEntity(nullptr), Acad::eNullEntityPointer);
  circle->close();
  Opened<AcDbCircle> again(id, AcDb::kForRead);
  EXPECT_FALSE(again->isNewObject());
}

TEST_F(DrawingWithOneLine, AppendingNeedsTheBlockOpenForWrite) {
  Opened<AcDbBlockTableRecord> space(ModelSpaceId(), AcDb::kForRead);
  auto* circle = new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, 1.0);
  EXPECT_EQ(space->appendAcDbEntity(circle), Acad::eNotOpenForWrite);
  EXPECT_TRUE(circle->objectId().isNull());
  EXPECT_EQ(circle->close(), Acad::eOk);  // ends an object that never joined a database
}

TEST_F(DrawingWithOneLine, ANewEntityTakesTheDrawingsCurrentLayerAndLineType) {
  Opened<AcDbLine> l(line, AcDb::kForRead);
  EXPECT_EQ(l->layerId(), db->clayer());
  EXPECT_EQ(Take(l->layer()), L"0");
  EXPECT_EQ(l->linetypeId(), db->byLayerLinetype());
  EXPECT_EQ(Take(l->linetype()), L"ByLayer");
}

// --- Erasing ------------------------------------------------------------------------------------

class DrawingWithOneErasedLine : public DrawingWithOneLine {
protected:
  void SetUp() override {
    DrawingWithOneLine::SetUp();
    Opened<AcDbLine> l(line, AcDb::kForWrite);
    ASSERT_EQ(l->erase(), Acad::eOk);
  }
};

TEST_F(DrawingWithOneErasedLine, OpeningItFailsAsErased) {
  AcDbLine* l = reinterpret_cast<AcDbLine*>(0x1);
  EXPECT_EQ(acdbOpenObject(l, line, AcDb::kForWrite), Acad::eWasErased);
  EXPECT_EQ(l, nullptr);
  EXPECT_EQ(acdbOpenObject(l, line, AcDb::kForRead), Acad::eWasErased);
  EXPECT_TRUE(line.isErased());
  EXPECT_TRUE(line.isValid());
}

TEST_F(DrawingWithOneErasedLine, OpenErasedReachesItAndUneraseBringsItBack) {
  {
    Opened<AcDbLine> l(line, AcDb::kForWrite, true);
    ASSERT_TRUE(l);
    EXPECT_TRUE(l->isErased());
    EXPECT_EQ(l->erase(), Acad::eWasErased);
    EXPECT_EQ(l->erase(false), Acad::eOk);
    EXPECT_EQ(l->erase(false), Acad::eWasNotErased);
  }
  Opened<AcDbLine> l(line, AcDb::kForRead);
  EXPECT_EQ(l.status, Acad::eOk);
  EXPECT_FALSE(l->isErased());
}

TEST_F(DrawingWithOneErasedLine, ItsHandleStillFindsIt) {
  AcDbObjectId found;
  EXPECT_EQ(db->getAcDbObjectId(found, false, line.handle()), Acad::eOk);
  EXPECT_EQ(found, line);
}

TEST_F(DrawingWithOneErasedLine, BlockIterationSkipsItUnlessAsked) {
  Opened<AcDbBlockTableRecord> space(ModelSpaceId(), AcDb::kForRead);
  AcDbBlockTableRecordIterator* it = nullptr;
  space->newIterator(it);
  EXPECT_TRUE(it->done());
  delete it;
  space->newIterator(it, true, false);
  ASSERT_FALSE(it->done());
  AcDbObjectId id;
  it->getEntityId(id);
  EXPECT_EQ(id, line);
  AcDbEntity* entity = nullptr;
  EXPECT_EQ(it->getEntity(entity, AcDb::kForRead), Acad::eWasErased);
  it->step(true, false);
  EXPECT_TRUE(it->done());
  EXPECT_EQ(it->getEntityId(id), Acad::eIteratorDone);
  delete it;
}

TEST_F(NewDrawing, TheDrawingsOwnObjectsCannotBeErased) {
  for (AcDbObjectId id : {db->clayer(), ModelSpaceId(), db->layerTableId(), db->byBlockLinetype()}) {
    Opened<AcDbObject> object(id, AcDb::kForWrite);
    ASSERT_TRUE(object);
    EXPECT_EQ(object->erase(), Acad::eCannotBeErasedByCaller);
    EXPECT_FALSE(object->isErased());
  }
}

TEST_F(NewDrawing, ErasingAnObjectOutsideTheDatabaseIsRefused) {
  AcDbLine line;
  EXPECT_EQ(line.erase(), Acad::eNotInDatabase);
  EXPECT_EQ(line.createExtensionDictionary(), Acad::eNotInDatabase);
}

}  // namespace
