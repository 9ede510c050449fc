// Fixtures of the drawing tests: a headless application with its new drawing, driven through the
// ObjectARX declarations only, as the module drives AutoCAD.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "headless/api/headless.h"
#include "platform/acad/acdocman.h"
#include "platform/acad/acutmem.h"
#include "platform/acad/dbapserv.h"
#include "platform/acad/dbmain.h"
#include "platform/acad/dbsymtb.h"

namespace kdtest {

// An object opened for the length of a scope.
template <class T>
class Opened {
public:
  Opened(AcDbObjectId id, AcDb::OpenMode mode, bool openErased = false) {
    status = acdbOpenObject(object, id, mode, openErased);
  }
  ~Opened() {
    if (object != nullptr) object->close();
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;
  T* operator->() const { return object; }
  explicit operator bool() const { return object != nullptr; }

  T* object = nullptr;
  Acad::ErrorStatus status = Acad::eOk;
};

// Takes a string the API allocated and frees it.
inline std::wstring Take(ACHAR* text) {
  std::wstring copy = text == nullptr ? L"<null>" : text;
  acutDelString(text);
  return copy;
}

// A new drawing of a started headless application, write-locked by the application context (as
// the module locks it before it draws).
class NewDrawing : public ::testing::Test {
protected:
  void SetUp() override {
    liveBefore = HeadlessLiveObjects();
    app = HeadlessStart(nullptr);
    ASSERT_NE(app, nullptr) << HeadlessLastError(nullptr);
    db = acdbHostApplicationServices()->workingDatabase();
    ASSERT_NE(db, nullptr);
    doc = acDocManager->document(db);
    ASSERT_NE(doc, nullptr);
    ASSERT_EQ(acDocManager->lockDocument(doc, AcAp::kWrite), Acad::eOk);
  }
  void TearDown() override {
    HeadlessStop(app);
    EXPECT_EQ(HeadlessLiveObjects(), liveBefore) << "every automation object is released";
  }

  AcDbObjectId ModelSpaceId() const {
    AcDbObjectId id;
    Opened<AcDbBlockTable> table(db->blockTableId(), AcDb::kForRead);
    table->getAt(ACDB_MODEL_SPACE, id);
    return id;
  }

  // Appends a new entity to a block (model space by default) and closes it: its id, or null
  // (and a failed expectation) when the append fails.
  AcDbObjectId Append(AcDbEntity* entity, AcDbObjectId blockId = AcDbObjectId::kNull) {
    Opened<AcDbBlockTableRecord> block(blockId.isNull() ? ModelSpaceId() : blockId, AcDb::kForWrite);
    AcDbObjectId id;
    EXPECT_EQ(block.status, Acad::eOk);
    if (!block) {
      delete entity;
      return id;
    }
    EXPECT_EQ(block->appendAcDbEntity(id, entity), Acad::eOk);
    entity->close();
    return id;
  }

  // A new layer of that name; its id.
  AcDbObjectId AddLayer(const ACHAR* name) {
    Opened<AcDbLayerTable> table(db->layerTableId(), AcDb::kForWrite);
    auto* layer = new AcDbLayerTableRecord;
    layer->setName(name);
    AcDbObjectId id;
    EXPECT_EQ(table->add(id, layer), Acad::eOk);
    layer->close();
    return id;
  }

  long liveBefore = 0;
  HeadlessApp* app = nullptr;
  AcDbDatabase* db = nullptr;
  AcApDocument* doc = nullptr;
};

}  // namespace kdtest
