// The graphics context's routes: ids, erasing, highlighting, crossing selection, extents, explode,
// the kinds it refuses, and the layer and text style wrappers it hands out.
#include <gtest/gtest.h>

#include <algorithm>

#include "DrawingTestUtil.h"
#include "module/acad/GrAcadLayer.h"
#include "module/acad/GrAcadPlatformColor.h"
#include "module/acad/GrAcadTextStyle.h"
#include "module/graphics/GrPlatformColor.h"
#include "platform/acad/acutads.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbxrecrd.h"

namespace {

using acadtest::ADrawing;
using acadtest::ModelSpaceCount;

TEST_F(ADrawing, RefusesWhatItCannotDraw) {
  EXPECT_EQ(context.Draw(nullptr), 1);
  CGrVertexPolyline noClass({{0, 0, 0}, {1, 1, 0}}, false);
  EXPECT_EQ(context.Draw(&noClass), 1) << "kind 10 has no drawing class";
  EXPECT_EQ(context.Erase(nullptr), 1);
  CGrLine undrawn(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  EXPECT_EQ(context.Erase(&undrawn), 1) << "no ids";
  EXPECT_EQ(context.Highlight(&undrawn, true), 1);
  EXPECT_EQ(context.MakeElementFromHandle(0), nullptr);
  EXPECT_EQ(context.MakeElementFromHandle(0x7FFFFF), nullptr);
  EXPECT_EQ(context.MakeElementFromSessionId(12345), nullptr);
  EXPECT_EQ(context.EraseByHandle(nullptr), 1);
  const std::int64_t zero = 0;
  EXPECT_EQ(context.EraseByHandle(&zero), 1);
  EXPECT_EQ(context.DrawBlock(&undrawn), 1) << "only element blocks have a block route";
  EXPECT_EQ(context.Flush(), 0);
  EXPECT_EQ(ModelSpaceCount(), 0);
}

TEST_F(ADrawing, ErasingAnErasedEntitySucceedsAndClearsBothIds) {
  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  ASSERT_EQ(context.Draw(&line), 0);
  std::unique_ptr<CGrElement> stale(line.Clone());
  stale->SetSessionId(line.SessionId());
  stale->SetHandle(line.Handle());
  ASSERT_EQ(context.Erase(&line), 0);
  EXPECT_EQ(line.SessionId(), 0);
  EXPECT_EQ(line.Handle(), 0);
  EXPECT_TRUE(acadtest::IdOf(*stale).isErased());
  EXPECT_EQ(context.Erase(stale.get()), 0);
  EXPECT_EQ(stale->SessionId(), 0);
  EXPECT_EQ(stale->Handle(), 0);
  EXPECT_EQ(ModelSpaceCount(), 0);
}

TEST_F(ADrawing, ErasedEntitiesNoLongerReadBackNorEraseByHandle) {
  CGrCircle circle(CKdPoint(0, 0, 0), 1.0);
  ASSERT_EQ(context.Draw(&circle), 0);
  const std::int64_t handle = circle.Handle();
  const std::int64_t session = circle.SessionId();
  ASSERT_EQ(context.EraseByHandle(&handle), 0);
  EXPECT_EQ(context.MakeElementFromHandle(handle), nullptr);
  EXPECT_EQ(context.MakeElementFromSessionId(session), nullptr);
  EXPECT_EQ(context.EraseByHandle(&handle), 1) << "nothing left to make an element from";
  circle.SetModified(true);
  EXPECT_EQ(context.Draw(&circle), 1) << "its entity is gone";
}

TEST_F(ADrawing, IdsAreReconciledEitherWay) {
  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  ASSERT_EQ(context.Draw(&line), 0);
  CGrLine byHandle(CKdPoint(0, 0, 0), CKdPoint(5, 5, 0));
  byHandle.SetHandle(line.Handle());
  ASSERT_EQ(context.Draw(&byHandle), 0);
  EXPECT_EQ(byHandle.SessionId(), line.SessionId()) << "the handle found the entity";
  EXPECT_EQ(ModelSpaceCount(), 1);
  CGrLine bySession(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  bySession.SetSessionId(line.SessionId());
  ASSERT_EQ(context.Erase(&bySession), 0);
  EXPECT_EQ(ModelSpaceCount(), 0);
  CGrLine unknown(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  unknown.SetHandle(0xABCDEF);
  CGrAcadGraphicsContext::ReconcileIds(unknown);
  EXPECT_EQ(unknown.SessionId(), 0) << "an unknown handle names nothing";
}

TEST_F(ADrawing, TagsAreKeptInTheExtensionDictionary) {
  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  line.SetTag(L"boundary-1");
  ASSERT_EQ(context.Draw(&line), 0);
  {
    CGrAcadOpened<AcDbEntity> entity(acadtest::IdOf(line), AcDb::kForRead);
    CGrAcadOpened<AcDbDictionary> dictionary(entity->extensionDictionary(), AcDb::kForRead);
    ASSERT_TRUE(dictionary);
    AcDbObject* record = nullptr;
    ASSERT_EQ(dictionary->getAt(L"Tag", record, AcDb::kForRead), Acad::eOk);
    resbuf* chain = nullptr;
    AcDbXrecord::cast(record)->rbChain(&chain);
    record->close();
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(chain->restype, 1);
    EXPECT_STREQ(chain->resval.rstring, L"boundary-1");
    EXPECT_EQ(chain->rbnext, nullptr) << "one text item";
    acutRelRb(chain);
  }
  line.ClearTag();
  ASSERT_EQ(context.Draw(&line), 0);
  std::unique_ptr<CGrElement> read(context.MakeElementFromSessionId(line.SessionId()));
  EXPECT_EQ(read->Tag(), nullptr) << "a cleared tag goes from the drawing too";
}

TEST_F(ADrawing, AnUnchangedElementIsNotRewritten) {
  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  line.SetTag(L"t");
  ASSERT_EQ(context.Draw(&line), 0);
  const AcDbHandle seed = acadtest::Db()->handseed();
  ASSERT_EQ(context.Draw(&line), 0);
  EXPECT_EQ(acadtest::Db()->handseed(), seed) << "no new tag record either";
}

TEST_F(ADrawing, HighlightsTheEntity) {
  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  ASSERT_EQ(context.Draw(&line), 0);
  EXPECT_EQ(context.Highlight(&line, true), 0);
  EXPECT_EQ(context.Highlight(&line, false), 0);
  CGrVertexPolyline noClass({{0, 0, 0}, {1, 1, 0}}, false);
  EXPECT_EQ(context.Highlight(&noClass, true), 1);
}

TEST_F(ADrawing, CrossingSelectionGivesHandlesOfWhatTheWindowTouches) {
  CGrLine through(CKdPoint(-10, 0, 0), CKdPoint(10, 0, 0));
  CGrCircle around(CKdPoint(0, 0, 0), 50.0);
  CGrCircle far(CKdPoint(100, 100, 0), 1.0);
  CGrArc missing(CKdPoint(0, 0, 0), 5.0, 0.5, 1.0);
  for (CGrElement* e : std::initializer_list<CGrElement*>{&through, &around, &far, &missing}) {
    ASSERT_EQ(context.Draw(e), 0);
  }
  std::vector<std::int64_t> handles;
  ASSERT_EQ(context.SelectCrossing(CKdPoint(-1, -1, 0), CKdPoint(1, 1, 0), handles), 0);
  EXPECT_EQ(handles, std::vector<std::int64_t>{through.Handle()}) << "the circle and arc pass outside the window";
  handles.clear();
  EXPECT_EQ(context.SelectCrossing(CKdPoint(200, 200, 0), CKdPoint(300, 300, 0), handles), 1) << "nothing there";
  EXPECT_TRUE(handles.empty());
}

TEST_F(ADrawing, ExtentsComeFromANonResidentEntity) {
  CGrCircle circle(CKdPoint(1, 2, 3), 4.0);
  CGrRect extents;
  ASSERT_EQ(context.GetExtents(&circle, extents), 0);
  EXPECT_TRUE(grtest::Near(extents.Min(), CKdPoint(-3, -2, 3)));
  EXPECT_TRUE(grtest::Near(extents.Max(), CKdPoint(5, 6, 3)));
  CGrElementBlock block;
  block.SetPosition(CKdPoint(10, 0, 0));
  block.SetRotation(std::numbers::pi / 2);
  block.SetScaleFactors(CKdVector(2, 2, 1));
  block.Add(new CGrLine(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0)));
  ASSERT_EQ(context.GetExtents(&block, extents), 0);
  EXPECT_TRUE(grtest::Near(extents.Min(), CKdPoint(10, 0, 0)));
  EXPECT_TRUE(grtest::Near(extents.Max(), CKdPoint(10, 2, 0)));
  EXPECT_EQ(circle.SessionId(), 0);
  EXPECT_EQ(ModelSpaceCount(), 0);
  const AcDbHandle seed = acadtest::Db()->handseed();
  ASSERT_EQ(context.GetExtents(&block, extents), 0);
  EXPECT_EQ(acadtest::Db()->handseed(), seed) << "no block was defined for it";
  CGrGroup empty;
  EXPECT_NE(context.GetExtents(&empty, extents), 0);
}

TEST_F(ADrawing, ExplodesIntoElements) {
  auto polyline = std::make_unique<CGrPolyline>();
  polyline->Add(new CGrLine(CKdPoint(0, 0, 0), CKdPoint(4, 0, 0)));
  polyline->Add(new CGrLineArc(CKdPoint(4, 2, 0), 2.0, 1.5 * std::numbers::pi, std::numbers::pi));
  polyline->SetColor(CGrColor::FromIndex(5));
  ASSERT_EQ(context.Draw(polyline.get()), 0);
  CGrElementVector pieces;
  ASSERT_EQ(context.Explode(polyline.get(), pieces), 0);
  ASSERT_EQ(pieces.Size(), 2u);
  EXPECT_EQ(pieces.At(0)->Type(), grkind::kLine);
  EXPECT_EQ(pieces.At(1)->Type(), grkind::kArc);
  EXPECT_EQ(pieces.At(1)->Color(), CGrColor::FromIndex(5));
  CGrLine line(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0));
  ASSERT_EQ(context.Draw(&line), 0);
  EXPECT_EQ(context.Explode(&line, pieces), Acad::eNotApplicable);
}

TEST_F(ADrawing, BlockRouteDefinesWithoutInserting) {
  CGrElementBlock block;
  block.SetLabel(L"Valve");
  block.Add(new CGrCircle(CKdPoint(0, 0, 0), 0.5));
  ASSERT_EQ(context.DrawBlock(&block), 0);
  EXPECT_EQ(ModelSpaceCount(), 0);
  AcDbObjectId recordId;
  {
    CGrAcadOpened<AcDbBlockTable> table(acadtest::Db()->blockTableId(), AcDb::kForRead);
    ASSERT_EQ(table->getAt(L"Valve", recordId), Acad::eOk);
  }
  // Drawing a block of that label inserts the same definition, refilled.
  block.Add(new CGrLine(CKdPoint(-1, 0, 0), CKdPoint(1, 0, 0)));
  ASSERT_EQ(context.Draw(&block), 0);
  CGrAcadOpened<AcDbBlockReference> reference(acadtest::IdOf(block), AcDb::kForRead);
  EXPECT_EQ(reference->blockTableRecord(), recordId);
  CGrAcadOpened<AcDbBlockTableRecord> record(recordId, AcDb::kForRead);
  AcDbBlockTableRecordIterator* it = nullptr;
  record->newIterator(it);
  int count = 0;
  for (; !it->done(); it->step()) ++count;
  delete it;
  EXPECT_EQ(count, 2);
}

TEST_F(ADrawing, ColourServicesGoThroughTheTranslator) {
  EXPECT_EQ(context.IndexToRgb(1), 0x0000FFu) << "red, low byte";
  EXPECT_EQ(context.RgbToIndex(0x0000FFu), 1u);
  IGrPlatformColor* installed = IGrPlatformColor::Installed();
  CGrAcadPlatformColor other;
  EXPECT_EQ(context.UseColorTranslatorDefault(&other), 0);
  EXPECT_EQ(IGrPlatformColor::Installed(), &other);
  EXPECT_EQ(context.UseColorTranslator(nullptr, 0), 0);
  EXPECT_EQ(IGrPlatformColor::Installed(), &other) << "null leaves the installed one";
  IGrPlatformColor::Install(installed);
}

TEST_F(ADrawing, LayerTableMakesAndFindsLayers) {
  std::unique_ptr<CGrAcadLayerTable> layers(context.CreateLayerTable());
  EXPECT_TRUE(layers->Has(L"0"));
  EXPECT_EQ(layers->Add(L"C-TOPO", CGrColor::FromIndex(3), 2), 0);
  EXPECT_EQ(layers->Add(L"c-topo", CGrColor::FromIndex(4), 1), Acad::eDuplicateRecordName) << "names ignore case";
  EXPECT_EQ(layers->Add(L"bad|name", CGrColor(), 0), Acad::eInvalidSymbolTableName);
  std::unique_ptr<CGrAcadLayer> topo = layers->Find(L"C-TOPO");
  ASSERT_NE(topo, nullptr);
  EXPECT_EQ(topo->Color(), CGrColor::FromIndex(3));
  EXPECT_EQ(topo->LineType(), 2);
  EXPECT_EQ(topo->SetColor(CGrColor(0x00112233u)), 0);
  EXPECT_EQ(topo->Color(), CGrColor(0x00112233u));
  EXPECT_EQ(topo->SetFrozen(true), 0);
  EXPECT_TRUE(topo->IsFrozen());
  EXPECT_EQ(layers->Names(), (std::vector<std::wstring>{L"0", L"C-TOPO"}));
  EXPECT_STREQ(CGrAcadLineType::NameOf(4), L"CENTER");
  EXPECT_EQ(CGrAcadLineType::CodeOf(L"center"), 4);
  EXPECT_EQ(CGrAcadLineType::CodeOf(L"ZIGZAG"), 0);
}

TEST_F(ADrawing, TextStylesAreMadeWithTheirSettings) {
  std::unique_ptr<CGrAcadTextStyle> style(context.CreateTextStyle(L"Labels", L"romans.shx", 2.5, 0.8));
  ASSERT_NE(style, nullptr);
  const AcDbObjectId id = CGrAcadTextStyle::Find(L"labels");
  ASSERT_FALSE(id.isNull());
  CGrAcadOpened<AcDbTextStyleTableRecord> record(id, AcDb::kForRead);
  EXPECT_DOUBLE_EQ(record->textSize(), 2.5);
  EXPECT_DOUBLE_EQ(record->xScale(), 0.8);
  record.Close();
  EXPECT_EQ(context.CreateTextStyle(L"", L"txt", 0, 1), nullptr);
  EXPECT_EQ(context.CreateTextStyle(L"Squashed", L"txt", 0, 0), nullptr) << "width factor must be positive";
}

}  // namespace
