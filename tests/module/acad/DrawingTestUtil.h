// Fixtures of the graphics context tests: a headless AutoCAD with its new drawing, locked through
// the module's document lock, and a graphics context on the stack, as the module draws.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "headless/api/headless.h"
#include "module/acad/GrAcadGraphicsContext.h"
#include "module/acad/GrAcadLockDoc.h"
#include "platform/acad/acdocman.h"
#include "platform/acad/dbapserv.h"
#include "platform/acad/dbsymtb.h"
#include "tests/module/graphics/GraphicsTestUtil.h"

namespace acadtest {

inline CGrAcadLockDoc& Lock() { return static_cast<CGrAcadLockDoc&>(*CGrLockDoc::Instance()); }

inline AcDbDatabase* Db() { return acdbHostApplicationServices()->workingDatabase(); }

// Entities of model space that are not erased.
inline int ModelSpaceCount() {
  CGrAcadOpened<AcDbBlockTable> table(Db()->blockTableId(), AcDb::kForRead);
  AcDbBlockTableRecord* space = nullptr;
  if (!table || table->getAt(ACDB_MODEL_SPACE, space, AcDb::kForRead) != Acad::eOk) return -1;
  int count = 0;
  AcDbBlockTableRecordIterator* it = nullptr;
  space->newIterator(it);
  for (; !it->done(); it->step()) ++count;
  delete it;
  space->close();
  return count;
}

inline AcDbObjectId IdOf(const CGrElement& element) { return CGrAcadDb::IdFromSessionId(element.SessionId()); }

// A started application whose drawing the module has locked; every element drawn goes through
// `context`.
class ADrawing : public ::testing::Test {
protected:
  void SetUp() override {
    liveBefore = HeadlessLiveObjects();
    app = HeadlessStart(nullptr);
    ASSERT_NE(app, nullptr) << HeadlessLastError(nullptr);
    ASSERT_EQ(Lock().Lock(false), 0);
    ASSERT_EQ(Lock().NestingCount(), 0);
  }
  void TearDown() override {
    EXPECT_EQ(Lock().Unlock(false), 0);
    EXPECT_EQ(Lock().NestingCount(), 0);
    HeadlessStop(app);
    EXPECT_EQ(HeadlessLiveObjects(), liveBefore);
  }

  // Draws and reads back by session id; the element read (null when none).
  std::unique_ptr<CGrElement> RoundTrip(CGrElement& element) {
    const int status = context.Draw(&element);
    EXPECT_EQ(status, 0);
    if (status != 0) return nullptr;
    EXPECT_NE(element.SessionId(), 0);
    EXPECT_NE(element.Handle(), 0);
    return std::unique_ptr<CGrElement>(context.MakeElementFromSessionId(element.SessionId()));
  }

  long liveBefore = 0;
  HeadlessApp* app = nullptr;
  CGrAcadGraphicsContext context;
};

}  // namespace acadtest
