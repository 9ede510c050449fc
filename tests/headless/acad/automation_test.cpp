// The automation faces of a drawing: the active document, its database, and the objects behind
// object ids, as the module and the Civil 3D objects reach them.
#include <gtest/gtest.h>

#include "DrawingFixture.h"
#include "headless/acad/AcadApplication.h"
#include "headless/acad/AcadFaces.h"
#include "headless/acad/DocManager.h"
#include "platform/acad/acadi.h"
#include "platform/acad/afxwin.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbpl.h"
#include "platform/ole/atlbase.h"
#include "platform/ole/atlsafe.h"

namespace {

using kdtest::NewDrawing;
using kdtest::Opened;

class AutomationTest : public NewDrawing {
protected:
  void SetUp() override {
    NewDrawing::SetUp();
    auto* winApp = static_cast<CWinApp*>(HeadlessGetWinApp(app));
    ASSERT_EQ(winApp->GetIDispatch(FALSE)->QueryInterface(__uuidof(IAcadApplication), reinterpret_cast<void**>(&acad)),
              S_OK);
    ASSERT_EQ(acad->get_ActiveDocument(&document), S_OK);
    ASSERT_NE(document, nullptr);
    line = Append(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0)));
    auto* pl = new AcDbPolyline;
    pl->addVertexAt(0, AcGePoint2d(0, 0), 0.5);
    pl->addVertexAt(1, AcGePoint2d(3, 4));
    polyline = Append(pl);
  }
  void TearDown() override {
    document.Release();
    acad.Release();
    NewDrawing::TearDown();
  }
  template <class I>
  CComPtr<I> Face(AcDbObjectId id) {
    CComPtr<IDispatch> object;
    EXPECT_EQ(document->ObjectIdToObject(static_cast<LONG_PTR>(id.asOldId()), &object), S_OK);
    CComPtr<I> face;
    if (object) object->QueryInterface(__uuidof(I), reinterpret_cast<void**>(&face));
    return face;
  }

  CComPtr<IAcadApplication> acad;
  CComPtr<IAcadDocument> document;
  AcDbObjectId line, polyline;
};

TEST_F(AutomationTest, TheActiveDocumentIsTheNewDrawingAndOneObject) {
  CComBSTR name;
  ASSERT_EQ(document->get_Name(&name), S_OK);
  EXPECT_STREQ(name, L"Drawing1.dwg");
  CComPtr<IAcadDocument> again;
  ASSERT_EQ(acad->get_ActiveDocument(&again), S_OK);
  EXPECT_EQ(again, document);
  CComPtr<IAcadDatabase> asDatabase;
  EXPECT_EQ(document->QueryInterface(__uuidof(IAcadDatabase), reinterpret_cast<void**>(&asDatabase)), S_OK);
  CComPtr<IAcadApplication> owner;
  ASSERT_EQ(document->get_Application(&owner), S_OK);
  EXPECT_EQ(owner, acad);
  EXPECT_EQ(acad->get_ActiveDocument(nullptr), E_POINTER);
}

TEST_F(AutomationTest, TheDatabaseFaceIsOneObjectThatFindsTheSameFaces) {
  CComPtr<IAcadDatabase> database, again;
  ASSERT_EQ(document->get_Database(&database), S_OK);
  ASSERT_EQ(document->get_Database(&again), S_OK);
  EXPECT_EQ(database, again);
  CComPtr<IDispatch> viaDatabase, viaDocument;
  ASSERT_EQ(database->ObjectIdToObject(static_cast<LONG_PTR>(line.asOldId()), &viaDatabase), S_OK);
  ASSERT_EQ(document->ObjectIdToObject(static_cast<LONG_PTR>(line.asOldId()), &viaDocument), S_OK);
  CComPtr<IUnknown> a, b;
  viaDatabase->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&a));
  viaDocument->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&b));
  EXPECT_EQ(a, b) << "one face per object while it lives";
}

TEST_F(AutomationTest, AnEntitysFaceAnswersForIt) {
  CComPtr<IAcadEntity> entity = Face<IAcadEntity>(line);
  ASSERT_NE(entity, nullptr);
  LONG_PTR id = 0;
  ASSERT_EQ(entity->get_ObjectID(&id), S_OK);
  EXPECT_EQ(id, static_cast<LONG_PTR>(line.asOldId()));
  CComBSTR handle, className, layer;
  ASSERT_EQ(entity->get_Handle(&handle), S_OK);
  ACHAR expected[17];
  line.handle().getIntoAsciiBuffer(expected, 17);
  EXPECT_STREQ(handle, expected);
  ASSERT_EQ(entity->get_ObjectName(&className), S_OK);
  EXPECT_STREQ(className, L"AcDbLine");
  ASSERT_EQ(entity->get_Layer(&layer), S_OK);
  EXPECT_STREQ(layer, L"0");
  LONG_PTR owner = 0;
  entity->get_OwnerID(&owner);
  EXPECT_EQ(owner, static_cast<LONG_PTR>(ModelSpaceId().asOldId()));
  CComPtr<IAcadLWPolyline> notAPolyline;
  EXPECT_EQ(entity->QueryInterface(__uuidof(IAcadLWPolyline), reinterpret_cast<void**>(&notAPolyline)), E_NOINTERFACE);
}

TEST_F(AutomationTest, ALayerCanBeSetOnlyToOneTheDrawingHas) {
  AddLayer(L"Roads");
  CComPtr<IAcadEntity> entity = Face<IAcadEntity>(line);
  EXPECT_EQ(entity->put_Layer(CComBSTR(L"Nowhere")), E_INVALIDARG);
  ASSERT_EQ(entity->put_Layer(CComBSTR(L"Roads")), S_OK);
  Opened<AcDbLine> l(line, AcDb::kForRead);
  EXPECT_EQ(kdtest::Take(l->layer()), L"Roads");
}

TEST_F(AutomationTest, AChangeIsRefusedWhileAnotherContextHoldsTheDrawingExclusively) {
  acDocManager->unlockDocument(doc);
  auto* manager = static_cast<headless::DocumentManager*>(acDocManager);
  auto* document = static_cast<headless::Document*>(doc);
  ASSERT_EQ(manager->BeginCommand(*document, AcAp::kXWrite), Acad::eOk);
  CComPtr<IAcadEntity> entity = Face<IAcadEntity>(line);
  EXPECT_EQ(entity->put_Layer(CComBSTR(L"0")), E_FAIL);
  EXPECT_EQ(entity->Delete(), E_FAIL);
  manager->EndCommand(*document);
  EXPECT_EQ(entity->put_Layer(CComBSTR(L"0")), S_OK) << "automation locks for itself";
  EXPECT_EQ(doc->myLockMode(), AcAp::kAutoWrite);
}

TEST_F(AutomationTest, DeleteErasesAndTheFaceThenFails) {
  CComPtr<IAcadEntity> entity = Face<IAcadEntity>(line);
  ASSERT_EQ(entity->Delete(), S_OK);
  EXPECT_TRUE(line.isErased());
  CComBSTR layer;
  EXPECT_EQ(entity->get_Layer(&layer), E_FAIL);
  EXPECT_EQ(entity->Delete(), E_FAIL);
  EXPECT_EQ(entity->Update(), E_FAIL);
  CComPtr<IDispatch> gone;
  EXPECT_EQ(document->ObjectIdToObject(static_cast<LONG_PTR>(line.asOldId()), &gone), E_INVALIDARG);
  EXPECT_EQ(gone, nullptr);
}

TEST_F(AutomationTest, IdsOfOtherDrawingsAndHandlesThatNameNothingAreRefused) {
  AcDbDatabase side;
  CComPtr<IDispatch> object;
  EXPECT_EQ(document->ObjectIdToObject(static_cast<LONG_PTR>(side.blockTableId().asOldId()), &object), E_INVALIDARG);
  EXPECT_EQ(document->ObjectIdToObject(42, &object), E_INVALIDARG);
  EXPECT_EQ(document->HandleToObject(CComBSTR(L"FFFFF"), &object), E_INVALIDARG);
  ACHAR handle[17];
  line.handle().getIntoAsciiBuffer(handle, 17);
  ASSERT_EQ(document->HandleToObject(CComBSTR(handle), &object), S_OK);
  CComPtr<IAcadObject> found;
  object->QueryInterface(__uuidof(IAcadObject), reinterpret_cast<void**>(&found));
  LONG_PTR id = 0;
  found->get_ObjectID(&id);
  EXPECT_EQ(id, static_cast<LONG_PTR>(line.asOldId()));
}

TEST_F(AutomationTest, ALightWeightPolylineGivesAndTakesItsCoordinates) {
  CComPtr<IAcadLWPolyline> pl = Face<IAcadLWPolyline>(polyline);
  ASSERT_NE(pl, nullptr);
  CComVariant coordinates;
  ASSERT_EQ(pl->get_Coordinates(&coordinates), S_OK);
  ASSERT_EQ(coordinates.vt, VT_ARRAY | VT_R8);
  CComSafeArray<double> values;
  values.Attach(coordinates.parray);
  coordinates.vt = VT_EMPTY;
  ASSERT_EQ(values.GetCount(), 4u);
  EXPECT_EQ(values.GetAt(2), 3.0);
  EXPECT_EQ(values.GetAt(3), 4.0);

  CComSafeArray<double> three(6);
  for (LONG i = 0; i < 6; ++i) three.SetAt(i, static_cast<double>(i));
  CComVariant input;
  input.vt = VT_ARRAY | VT_R8;
  input.parray = three.Detach();
  ASSERT_EQ(pl->put_Coordinates(input), S_OK);
  Opened<AcDbPolyline> after(polyline, AcDb::kForRead);
  ASSERT_EQ(after->numVerts(), 3u);
  AcGePoint2d p;
  after->getPointAt(2u, p);
  EXPECT_EQ(p, AcGePoint2d(4, 5));
  double bulge = 0.0;
  after->getBulgeAt(0, bulge);
  EXPECT_EQ(bulge, 0.5) << "the first vertex keeps its bulge";
}

TEST_F(AutomationTest, CoordinatesThatAreNoVertexListAreRefused) {
  CComPtr<IAcadLWPolyline> pl = Face<IAcadLWPolyline>(polyline);
  CComSafeArray<double> odd(3);
  CComVariant input;
  input.vt = VT_ARRAY | VT_R8;
  input.parray = odd.Detach();
  EXPECT_EQ(pl->put_Coordinates(input), E_INVALIDARG);
  EXPECT_EQ(pl->put_Coordinates(CComVariant(1.0)), E_INVALIDARG);
  CComSafeArray<VARIANT> mixed(4);
  for (LONG i = 0; i < 4; ++i) mixed.SetAt(i, CComVariant(static_cast<int>(i)));
  CComVariant asVariants;
  asVariants.vt = VT_ARRAY | VT_VARIANT;
  asVariants.parray = mixed.Detach();
  EXPECT_EQ(pl->put_Coordinates(asVariants), S_OK) << "numbers in variants are taken";
}

TEST_F(AutomationTest, UpdateMarksTheGraphicsModified) {
  CComPtr<IAcadEntity> entity = Face<IAcadEntity>(line);
  EXPECT_EQ(entity->Update(), S_OK);
  CComPtr<IAcadObject> dictionary = Face<IAcadObject>(db->namedObjectsDictionaryId());
  ASSERT_NE(dictionary, nullptr);
  CComPtr<IAcadEntity> notAnEntity;
  EXPECT_EQ(dictionary->QueryInterface(__uuidof(IAcadEntity), reinterpret_cast<void**>(&notAnEntity)), E_NOINTERFACE);
  CComBSTR className;
  dictionary->get_ObjectName(&className);
  EXPECT_STREQ(className, L"AcDbDictionary");
}

// --- Faces other parts add ----------------------------------------------------------------------

// An interface that derives IAcadDocument, as Civil 3D's document interface does.
struct ITestDocument : IAcadDocument {
  virtual HRESULT STDMETHODCALLTYPE get_Answer(LONG* pVal) = 0;
};
}  // namespace
OLE_DEFINE_UUIDOF(ITestDocument, 0x6d3a1f20, 0x1b2c, 0x4d5e, 0x8f, 0x90, 0xa1, 0xb2, 0xc3, 0xd4, 0xe5, 0xf6);
namespace {

class TestDocument final : public headless::AcadDocumentImpl<TestDocument, ITestDocument> {
public:
  using AlsoAnswers = headless::Interfaces<IAcadDocument, IAcadDatabase>;
  explicit TestDocument(std::shared_ptr<headless::Document> d) : AcadDocumentImpl(std::move(d)) {}
  HRESULT STDMETHODCALLTYPE get_Answer(LONG* pVal) override {
    *pVal = 42;
    return S_OK;
  }
};

class TestCircle final : public headless::AcadEntityImpl<TestCircle, IAcadEntity> {
public:
  using AlsoAnswers = headless::Interfaces<IAcadObject>;
  TestCircle(std::shared_ptr<headless::Document> d, AcDbObjectId id) : AcadEntityImpl(std::move(d), id) {}
  HRESULT STDMETHODCALLTYPE get_Layer(BSTR* Layer) override {
    *Layer = SysAllocString(L"circle's own");
    return S_OK;
  }
};

TEST(Faces, APartCanMakeTheDocumentAnswerItsOwnInterfaceToo) {
  const long liveBefore = HeadlessLiveObjects();
  HeadlessApp* app = HeadlessStart(nullptr);
  auto* acad = static_cast<headless::AcadApplication*>(
      static_cast<IAcadApplication*>(static_cast<CWinApp*>(HeadlessGetWinApp(app))->GetIDispatch(FALSE)));
  acad->SetDocumentFaceFactory([](const std::shared_ptr<headless::Document>& d, IAcadDocument** face) {
    *face = headless::MakeComObject<TestDocument>(d);
    return *face == nullptr ? E_OUTOFMEMORY : S_OK;
  });
  acad->RegisterObjectFace(AcDbCircle::desc(), [](const std::shared_ptr<headless::Document>& d, AcDbObjectId id,
                                                  IDispatch** face) {
    *face = headless::MakeComObject<TestCircle>(d, id);
    return S_OK;
  });
  {
    CComPtr<IAcadDocument> document;
    ASSERT_EQ(acad->get_ActiveDocument(&document), S_OK);
    CComPtr<ITestDocument> own;
    ASSERT_EQ(document->QueryInterface(__uuidof(ITestDocument), reinterpret_cast<void**>(&own)), S_OK);
    LONG answer = 0;
    own->get_Answer(&answer);
    EXPECT_EQ(answer, 42);
    CComBSTR name;
    own->get_Name(&name);
    EXPECT_STREQ(name, L"Drawing1.dwg");

    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    acDocManager->lockDocument(acDocManager->document(db));
    AcDbBlockTableRecord* space = nullptr;
    AcDbObjectId circle;
    acdbOpenObject(space, db->currentSpaceId(), AcDb::kForWrite);
    auto* c = new AcDbCircle(AcGePoint3d(0, 0, 0), AcGeVector3d::kZAxis, 1.0);
    space->appendAcDbEntity(circle, c);
    c->close();
    space->close();
    CComPtr<IDispatch> object;
    ASSERT_EQ(own->ObjectIdToObject(static_cast<LONG_PTR>(circle.asOldId()), &object), S_OK);
    CComPtr<IAcadEntity> entity;
    object->QueryInterface(__uuidof(IAcadEntity), reinterpret_cast<void**>(&entity));
    CComBSTR layer;
    entity->get_Layer(&layer);
    EXPECT_STREQ(layer, L"circle's own");
    CComPtr<IDispatch> again;
    own->ObjectIdToObject(static_cast<LONG_PTR>(circle.asOldId()), &again);
    EXPECT_EQ(again, object) << "found again while it lives";
  }
  HeadlessStop(app);
  EXPECT_EQ(HeadlessLiveObjects(), liveBefore);
}

TEST(Faces, AFaceOutlivesItsApplication) {
  HeadlessApp* app = HeadlessStart(nullptr);
  CComPtr<IAcadApplication> acad;
  static_cast<CWinApp*>(HeadlessGetWinApp(app))
      ->GetIDispatch(FALSE)
      ->QueryInterface(__uuidof(IAcadApplication), reinterpret_cast<void**>(&acad));
  CComPtr<IAcadDocument> document;
  ASSERT_EQ(acad->get_ActiveDocument(&document), S_OK);
  AcDbObjectId table = acdbHostApplicationServices()->workingDatabase()->blockTableId();
  acad.Release();
  HeadlessStop(app);
  CComBSTR name;
  EXPECT_EQ(document->get_Name(&name), S_OK);
  CComPtr<IAcadApplication> gone;
  EXPECT_EQ(document->get_Application(&gone), E_FAIL);
  CComPtr<IDispatch> object;
  EXPECT_EQ(document->ObjectIdToObject(static_cast<LONG_PTR>(table.asOldId()), &object), S_OK)
      << "its drawing lives on with it";
}

}  // namespace
