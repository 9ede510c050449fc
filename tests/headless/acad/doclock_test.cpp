// Documents, execution contexts and document locks, as AutoCAD's document manager keeps them.
#include <gtest/gtest.h>

#include "DrawingFixture.h"
#include "headless/acad/DocManager.h"
#include "platform/acad/dbents.h"

namespace {

using kdtest::Opened;

// A started application whose document nobody has locked yet; code runs in the application
// context, as a modeless host's calls do.
class UnlockedDrawing : public ::testing::Test {
protected:
  void SetUp() override {
    app = HeadlessStart(nullptr);
    ASSERT_NE(app, nullptr);
    manager = static_cast<headless::DocumentManager*>(acDocManager);
    doc = acDocManager->mdiActiveDocument();
    ASSERT_NE(doc, nullptr);
    document = static_cast<headless::Document*>(doc);
    db = doc->database();
  }
  void TearDown() override { HeadlessStop(app); }

  // Opening the model space for write: what a draw would do first.
  Acad::ErrorStatus OpenForWrite() {
    AcDbBlockTableRecord* space = nullptr;
    AcDbObjectId id;
    Opened<AcDbBlockTable> table(db->blockTableId(), AcDb::kForRead);
    table->getAt(ACDB_MODEL_SPACE, id);
    const Acad::ErrorStatus es = acdbOpenObject(space, id, AcDb::kForWrite);
    if (space != nullptr) space->close();
    return es;
  }

  HeadlessApp* app = nullptr;
  headless::DocumentManager* manager = nullptr;
  AcApDocument* doc = nullptr;
  headless::Document* document = nullptr;
  AcDbDatabase* db = nullptr;
};

TEST_F(UnlockedDrawing, StartsInTheApplicationContextOnItsNewDrawing) {
  EXPECT_TRUE(acDocManager->isApplicationContext());
  EXPECT_EQ(acDocManager->curDocument(), doc);
  EXPECT_EQ(acDocManager->documentCount(), 1);
  EXPECT_STREQ(doc->fileName(), L"Drawing1.dwg");
  EXPECT_EQ(acDocManager->document(db), doc);
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), db);
  EXPECT_EQ(doc->lockMode(), AcAp::kNotLocked);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
  EXPECT_TRUE(doc->isQuiescent());
  AcApDocumentIterator* it = acDocManager->newAcApDocumentIterator();
  ASSERT_FALSE(it->done());
  EXPECT_EQ(it->document(), doc);
  it->step();
  EXPECT_TRUE(it->done());
  delete it;
}

TEST_F(UnlockedDrawing, ChangesNeedAWriteLockButReadsDoNot) {
  EXPECT_EQ(OpenForWrite(), Acad::eLockViolation);
  Opened<AcDbBlockTable> table(db->blockTableId(), AcDb::kForRead);
  EXPECT_TRUE(table);
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kRead), Acad::eOk);
  EXPECT_EQ(OpenForWrite(), Acad::eLockViolation) << "a read lock allows no change";
  ASSERT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kWrite), Acad::eOk);
  EXPECT_EQ(OpenForWrite(), Acad::eOk);
  ASSERT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  EXPECT_EQ(OpenForWrite(), Acad::eLockViolation);
  AcDbObjectId ignored;
  EXPECT_EQ(db->addAcDbObject(ignored, nullptr), Acad::eNullObjectPointer);
}

TEST_F(UnlockedDrawing, LocksNestAndEachUnlockEndsTheLatest) {
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kWrite), Acad::eOk);
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kXWrite), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kXWrite);
  EXPECT_EQ(doc->lockMode(), AcAp::kNotLocked) << "no other context holds a lock";
  EXPECT_EQ(doc->lockMode(true), AcAp::kXWrite);
  ASSERT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kWrite);
  ASSERT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
  EXPECT_EQ(acDocManager->unlockDocument(doc), Acad::eNotApplicable);
}

TEST_F(UnlockedDrawing, WhatIsNoLockOrNoDocumentIsRefused) {
  EXPECT_EQ(acDocManager->lockDocument(nullptr), Acad::eInvalidInput);
  EXPECT_EQ(acDocManager->lockDocument(doc, AcAp::kNone), Acad::eInvalidInput);
  EXPECT_EQ(acDocManager->lockDocument(doc, AcAp::kNotLocked), Acad::eInvalidInput);
  EXPECT_EQ(acDocManager->lockDocument(doc, static_cast<AcAp::DocLockMode>(3)), Acad::eInvalidInput);
  EXPECT_EQ(acDocManager->unlockDocument(nullptr), Acad::eInvalidInput);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
}

// A command AutoCAD is running in the document holds its lock while the application context
// (a modeless host) asks for its own.
class DrawingWithACommandRunning : public UnlockedDrawing {
protected:
  void Start(AcAp::DocLockMode commandLock) {
    ASSERT_EQ(manager->BeginCommand(*document, commandLock), Acad::eOk);
    EXPECT_FALSE(doc->isQuiescent());
  }
  void TearDown() override {
    manager->EndCommand(*document);
    UnlockedDrawing::TearDown();
  }
};

TEST_F(DrawingWithACommandRunning, ASharedWriteLockSharesWithTheApplicationContext) {
  Start(AcAp::kWrite);
  EXPECT_EQ(doc->lockMode(), AcAp::kWrite) << "the command's lock is another context's";
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
  EXPECT_EQ(OpenForWrite(), Acad::eLockViolation) << "the command's lock is not the caller's";
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kWrite), Acad::eOk);
  EXPECT_EQ(OpenForWrite(), Acad::eOk);
  EXPECT_EQ(acDocManager->lockDocument(doc, AcAp::kXWrite), Acad::eLockViolation);
  EXPECT_EQ(acDocManager->lockDocument(doc, AcAp::kRead), Acad::eLockViolation);
  EXPECT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  manager->EndCommand(*document);
  EXPECT_EQ(doc->lockMode(), AcAp::kNotLocked);
  EXPECT_TRUE(doc->isQuiescent());
}

TEST_F(DrawingWithACommandRunning, AnExclusiveWriteLockKeepsEveryoneElseOut) {
  Start(AcAp::kXWrite);
  EXPECT_EQ(doc->lockMode(), AcAp::kXWrite);
  EXPECT_EQ(acDocManager->lockDocument(doc, AcAp::kWrite), Acad::eLockViolation);
  EXPECT_EQ(acDocManager->lockDocument(doc, AcAp::kRead), Acad::eLockViolation);
  EXPECT_EQ(acDocManager->lockDocument(doc, AcAp::kProtectedAutoWrite), Acad::eLockViolation);
  EXPECT_EQ(OpenForWrite(), Acad::eLockViolation);
}

TEST_F(DrawingWithACommandRunning, AnExclusiveReadLockLetsOnlyReadersIn) {
  Start(AcAp::kRead);
  EXPECT_EQ(acDocManager->lockDocument(doc, AcAp::kWrite), Acad::eLockViolation);
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kRead), Acad::eOk);
  EXPECT_EQ(manager->BeginCommand(*document, AcAp::kWrite), Acad::eLockViolation) << "the caller reads";
  ASSERT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  EXPECT_EQ(manager->BeginCommand(*document, AcAp::kWrite), Acad::eOk) << "a context may add to its own lock";
}

TEST_F(UnlockedDrawing, AnAutoWriteLockGivesWayToAnyOtherRequest) {
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kAutoWrite), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kAutoWrite);
  EXPECT_EQ(OpenForWrite(), Acad::eOk) << "it is a write lock";
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kRead), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kRead) << "the request removed the auto-write lock";
  ASSERT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);

  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kWrite), Acad::eOk);
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kAutoWrite), Acad::eOk);  // nothing to do: locked
  ASSERT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked) << "the auto-write request added no lock of its own";
}

TEST_F(DrawingWithACommandRunning, AnAutoWriteLockOfAnotherContextIsNoObstacle) {
  Start(AcAp::kNotLocked);
  manager->RunCommand(*document, AcAp::kNotLocked, [&] {
    EXPECT_EQ(acDocManager->lockDocument(doc, AcAp::kAutoWrite), Acad::eOk);
  });
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kXWrite), Acad::eOk);
  EXPECT_EQ(doc->lockMode(), AcAp::kNotLocked);
  acDocManager->unlockDocument(doc);
}

TEST_F(UnlockedDrawing, UnlockingAProtectedAutoWriteLockLeavesAnAutoWriteOne) {
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kProtectedAutoWrite), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kProtectedAutoWrite);
  ASSERT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kAutoWrite);
  EXPECT_EQ(OpenForWrite(), Acad::eOk);
}

TEST_F(UnlockedDrawing, ACommandRunsInItsDocumentsContextWithItsLock) {
  bool ran = false;
  ASSERT_EQ(manager->RunCommand(*document, AcAp::kWrite,
                                [&] {
                                  ran = true;
                                  EXPECT_FALSE(acDocManager->isApplicationContext());
                                  EXPECT_EQ(acDocManager->curDocument(), doc);
                                  EXPECT_EQ(doc->myLockMode(), AcAp::kWrite);
                                  EXPECT_EQ(OpenForWrite(), Acad::eOk);
                                  acDocManager->executeInApplicationContext(
                                      [](void* data) {
                                        *static_cast<bool*>(data) = acDocManager->isApplicationContext();
                                      },
                                      &ran);
                                  EXPECT_TRUE(ran) << "the callback ran in the application context";
                                  EXPECT_FALSE(acDocManager->isApplicationContext());
                                  acDocManager->lockDocument(doc, AcAp::kXWrite);  // left behind
                                }),
            Acad::eOk);
  EXPECT_TRUE(ran);
  EXPECT_TRUE(acDocManager->isApplicationContext());
  EXPECT_EQ(doc->lockMode(true), AcAp::kNotLocked) << "the command's locks end with it";
}

TEST_F(UnlockedDrawing, ACommandThatCannotLockDoesNotRun) {
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kXWrite), Acad::eOk);
  bool ran = false;
  EXPECT_EQ(manager->RunCommand(*document, AcAp::kWrite, [&] { ran = true; }), Acad::eLockViolation);
  EXPECT_FALSE(ran);
}

TEST_F(UnlockedDrawing, ADatabaseNoDocumentShowsNeedsNoLock) {
  AcDbDatabase side;
  EXPECT_EQ(acDocManager->document(&side), nullptr);
  AcDbBlockTableRecord* space = nullptr;
  ASSERT_EQ(acdbOpenObject(space, side.currentSpaceId(), AcDb::kForWrite), Acad::eOk);
  EXPECT_EQ(space->appendAcDbEntity(new AcDbLine), Acad::eOk);  // closed by the database
  space->close();

  acdbHostApplicationServices()->setWorkingDatabase(&side);
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), &side);
  acdbHostApplicationServices()->setWorkingDatabase(nullptr);
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), db);
}

// --- Several applications -----------------------------------------------------------------------

TEST(Applications, TheNewestRunningOneIsCurrent) {
  HeadlessApp* first = HeadlessStart(nullptr);
  AcDbDatabase* firstDb = acdbHostApplicationServices()->workingDatabase();
  HeadlessApp* second = HeadlessStart(nullptr);
  AcDbDatabase* secondDb = acdbHostApplicationServices()->workingDatabase();
  EXPECT_NE(firstDb, secondDb);
  EXPECT_STREQ(acDocManager->mdiActiveDocument()->fileName(), L"Drawing1.dwg") << "each has its own first drawing";
  HeadlessStop(second);
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), firstDb);
  HeadlessStop(first);
  EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), nullptr);
  EXPECT_EQ(acDocManager->mdiActiveDocument(), nullptr) << "with no application, a manager without documents answers";
  EXPECT_EQ(acDocManager->lockDocument(nullptr), Acad::eInvalidInput);
}

}  // namespace
