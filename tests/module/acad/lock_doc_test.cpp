// CGrLockDoc against the headless document manager's real lock state: only the outermost pair
// talks to the manager, and a document locked by the application or by a command stays locked.
#include <gtest/gtest.h>

#include "DrawingTestUtil.h"
#include "headless/acad/DocManager.h"

namespace {

using acadtest::Lock;

// A started application nobody has locked; the code runs in the application context.
class AnUnlockedDrawing : public ::testing::Test {
protected:
  void SetUp() override {
    app = HeadlessStart(nullptr);
    ASSERT_NE(app, nullptr);
    manager = static_cast<headless::DocumentManager*>(acDocManager);
    doc = static_cast<headless::Document*>(acDocManager->mdiActiveDocument());
    ASSERT_EQ(doc->myLockMode(), AcAp::kNotLocked);
    ASSERT_EQ(Lock().NestingCount(), 0);
  }
  void TearDown() override {
    EXPECT_EQ(Lock().NestingCount(), 0);
    HeadlessStop(app);
  }

  HeadlessApp* app = nullptr;
  headless::DocumentManager* manager = nullptr;
  headless::Document* doc = nullptr;
};

TEST_F(AnUnlockedDrawing, OnlyTheOutermostPairLocks) {
  ASSERT_EQ(Lock().Lock(false), 0);
  EXPECT_EQ(doc->myLockMode(), AcAp::kWrite);
  EXPECT_EQ(Lock().NestingCount(), 0);
  ASSERT_EQ(Lock().Lock(false), 0);
  EXPECT_EQ(Lock().NestingCount(), 1) << "locked already: counted, not locked again";
  EXPECT_EQ(Lock().Unlock(false), 0);
  EXPECT_EQ(Lock().NestingCount(), 0);
  EXPECT_EQ(doc->myLockMode(), AcAp::kWrite) << "the inner unlock leaves the lock";
  EXPECT_EQ(Lock().Unlock(false), 0);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
  EXPECT_EQ(Lock().Unlock(false), Acad::eNotApplicable) << "the manager's answer to an unlock too many";
}

TEST_F(AnUnlockedDrawing, ForceLocksAndUnlocksWhateverTheCount) {
  ASSERT_EQ(Lock().Lock(false), 0);
  ASSERT_EQ(Lock().Lock(true), 0) << "forced: the manager nests a second lock";
  ASSERT_EQ(Lock().Lock(false), 0);
  EXPECT_EQ(Lock().NestingCount(), 1);
  EXPECT_EQ(Lock().Unlock(true), 0);
  EXPECT_EQ(Lock().NestingCount(), 0) << "a forced unlock resets the count";
  EXPECT_EQ(doc->myLockMode(), AcAp::kWrite) << "one of the two manager locks is left";
  EXPECT_EQ(Lock().Unlock(false), 0);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
}

TEST_F(AnUnlockedDrawing, ALockTheApplicationHoldsStays) {
  ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kWrite), Acad::eOk);
  ASSERT_EQ(Lock().Lock(false), 0);
  EXPECT_EQ(Lock().NestingCount(), 1);
  CGrAcadGraphicsContext context;
  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 1, 0));
  EXPECT_EQ(context.Draw(&line), 0);
  ASSERT_EQ(Lock().Unlock(false), 0);
  EXPECT_EQ(Lock().NestingCount(), 0);
  EXPECT_EQ(doc->myLockMode(), AcAp::kWrite) << "the application's own lock is left in place";
  EXPECT_EQ(acDocManager->unlockDocument(doc), Acad::eOk);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
}

TEST_F(AnUnlockedDrawing, ALockARunningCommandHoldsStays) {
  ASSERT_EQ(manager->BeginCommand(*doc, AcAp::kWrite), Acad::eOk);
  ASSERT_EQ(Lock().Lock(false), 0);
  EXPECT_EQ(Lock().NestingCount(), 1) << "the command's write lock counts";
  // The lock is the command's, not the application context's: a draw from here cannot write.
  CGrAcadGraphicsContext context;
  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 1, 0));
  EXPECT_EQ(context.Draw(&line), gracad::kNoModelSpace);
  EXPECT_EQ(line.SessionId(), 0);
  ASSERT_EQ(Lock().Unlock(false), 0);
  EXPECT_EQ(doc->lockMode(), AcAp::kWrite) << "the command still holds its lock";
  manager->EndCommand(*doc);
  EXPECT_EQ(doc->lockMode(), AcAp::kNotLocked);
}

TEST_F(AnUnlockedDrawing, InsideACommandTheCommandsLockServes) {
  int drawn = -1;
  bool applicationContext = true;
  ASSERT_EQ(manager->RunCommand(*doc, AcAp::kWrite,
                                [&] {
                                  applicationContext = Lock().IsApplicationContext();
                                  EXPECT_EQ(Lock().LockInApplicationContext(), 0);
                                  EXPECT_EQ(Lock().NestingCount(), 0) << "not in the application context: nothing";
                                  ASSERT_EQ(Lock().Lock(false), 0);
                                  EXPECT_EQ(Lock().NestingCount(), 1);
                                  CGrAcadGraphicsContext context;
                                  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 1, 0));
                                  drawn = context.Draw(&line);
                                  EXPECT_EQ(Lock().Unlock(false), 0);
                                  EXPECT_EQ(Lock().UnlockInApplicationContext(), 0);
                                  EXPECT_EQ(doc->myLockMode(), AcAp::kWrite);
                                }),
            Acad::eOk);
  EXPECT_FALSE(applicationContext);
  EXPECT_EQ(drawn, 0);
  EXPECT_EQ(doc->lockMode(true), AcAp::kNotLocked);
}

TEST_F(AnUnlockedDrawing, ApplicationContextRoutesLockOnlyThere) {
  EXPECT_TRUE(Lock().IsApplicationContext());
  ASSERT_EQ(Lock().LockInApplicationContext(), 0);
  EXPECT_EQ(doc->myLockMode(), AcAp::kWrite);
  ASSERT_EQ(Lock().UnlockInApplicationContext(), 0);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
}

TEST_F(AnUnlockedDrawing, ReadLocksNestOnAnyLock) {
  ASSERT_EQ(Lock().LockForRead(), 0);
  EXPECT_EQ(doc->myLockMode(), AcAp::kRead);
  ASSERT_EQ(Lock().LockForRead(), 0);
  EXPECT_EQ(Lock().NestingCount(), 1);
  ASSERT_EQ(Lock().Unlock(false), 0);
  ASSERT_EQ(Lock().Unlock(false), 0);
  EXPECT_EQ(doc->myLockMode(), AcAp::kNotLocked);
  // A write lock held already serves a read.
  ASSERT_EQ(Lock().Lock(false), 0);
  ASSERT_EQ(Lock().LockForRead(), 0);
  EXPECT_EQ(Lock().NestingCount(), 1);
  ASSERT_EQ(Lock().Unlock(false), 0);
  ASSERT_EQ(Lock().Unlock(false), 0);
}

TEST(LockDoc, WithoutADrawingThereIsNothingToLock) {
  EXPECT_EQ(CGrLockDoc::Instance(), CGrLockDoc::Instance());
  EXPECT_EQ(Lock().Lock(false), 1);
  EXPECT_EQ(Lock().LockForRead(), 1);
  EXPECT_EQ(Lock().Unlock(true), 1);
  EXPECT_EQ(Lock().NestingCount(), 0);
}

}  // namespace
