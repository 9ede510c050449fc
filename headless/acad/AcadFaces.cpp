#include "headless/acad/AcadFaces.h"

#include <string>
#include <vector>

#include "headless/acad/AcadApplication.h"
#include "headless/acad/ImpDatabase.h"
#include "platform/acad/acutmem.h"
#include "platform/acad/dbpl.h"
#include "platform/ole/oleauto.h"

namespace headless {

HRESULT ToHResult(Acad::ErrorStatus es) {
  switch (es) {
    case Acad::eOk: return S_OK;
    case Acad::eInvalidInput:
    case Acad::eKeyNotFound:
    case Acad::eInvalidKey:
    case Acad::eNullObjectId:
    case Acad::eInvalidObjectId:
    case Acad::eNullHandle:
    case Acad::eUnknownHandle:
    case Acad::eInvalidSymbolTableName: return E_INVALIDARG;
    case Acad::eOutOfMemory: return E_OUTOFMEMORY;
    case Acad::eNotImplementedYet: return E_NOTIMPL;
    default: return E_FAIL;
  }
}

namespace {

HRESULT MakeBstr(const ACHAR* text, BSTR* out) {
  *out = SysAllocString(text == nullptr ? L"" : text);
  return *out == nullptr ? E_OUTOFMEMORY : S_OK;
}

// The object's state when it is an object of this document's drawing.
AcDbStub* StubIn(const Document& document, AcDbObjectId id) {
  AcDbStub* stub = AcDbImpDatabase::lookup(id);
  if (stub == nullptr || stub->database != AcDbImpDatabase::of(document.database())) return nullptr;
  return stub;
}

// Opens the object a face stands for; the face's calls fail with E_FAIL once it is erased or its
// drawing is gone.
template <class T>
HRESULT OpenFor(AcDbObjectId id, AcDb::OpenMode mode, T*& object) {
  object = nullptr;
  const AcDbStub* stub = AcDbImpDatabase::lookup(id);
  if (stub == nullptr || stub->erased) return E_FAIL;
  const Acad::ErrorStatus es = acdbOpenObject(object, id, mode);
  return es == Acad::eOk ? S_OK : ToHResult(es) == E_INVALIDARG ? E_FAIL : ToHResult(es);
}

AcadApplication* ApplicationOfDocument(const Document& document) {
  DocumentManager* manager = document.Manager();
  return manager == nullptr ? nullptr : manager->Application();
}

// --- The faces AutoCAD gives --------------------------------------------------------------------

class AcadDocument final : public AcadDocumentImpl<AcadDocument, IAcadDocument> {
public:
  using AlsoAnswers = Interfaces<IAcadDatabase>;
  explicit AcadDocument(std::shared_ptr<Document> document) : AcadDocumentImpl(std::move(document)) {}
};

class AcadDatabase final : public AcadDatabaseImpl<AcadDatabase, IAcadDatabase> {
public:
  explicit AcadDatabase(std::shared_ptr<Document> document) : AcadDatabaseImpl(std::move(document)) {}
};

class AcadObject final : public AcadObjectImpl<AcadObject, IAcadObject> {
public:
  AcadObject(std::shared_ptr<Document> document, AcDbObjectId id) : AcadObjectImpl(std::move(document), id) {}
};

class AcadEntity final : public AcadEntityImpl<AcadEntity, IAcadEntity> {
public:
  using AlsoAnswers = Interfaces<IAcadObject>;
  AcadEntity(std::shared_ptr<Document> document, AcDbObjectId id) : AcadEntityImpl(std::move(document), id) {}
};

class AcadLWPolyline final : public AcadEntityImpl<AcadLWPolyline, IAcadLWPolyline> {
public:
  using AlsoAnswers = Interfaces<IAcadEntity, IAcadObject>;
  AcadLWPolyline(std::shared_ptr<Document> document, AcDbObjectId id) : AcadEntityImpl(std::move(document), id) {}

  HRESULT STDMETHODCALLTYPE get_Coordinates(VARIANT* Coordinates) override;
  HRESULT STDMETHODCALLTYPE put_Coordinates(VARIANT Coordinates) override;
};

HRESULT AcadLWPolyline::get_Coordinates(VARIANT* Coordinates) {
  if (Coordinates == nullptr) return E_POINTER;
  VariantInit(Coordinates);
  AcDbPolyline* polyline = nullptr;
  if (HRESULT hr = OpenFor(objectId(), AcDb::kForRead, polyline); FAILED(hr)) return hr;
  const unsigned int n = polyline->numVerts();
  SAFEARRAY* array = SafeArrayCreateVector(VT_R8, 0, 2 * n);
  if (array == nullptr) {
    polyline->close();
    return E_OUTOFMEMORY;
  }
  double* data = nullptr;
  SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
  for (unsigned int i = 0; i < n; ++i) {
    AcGePoint2d p;
    polyline->getPointAt(i, p);
    data[2 * i] = p.x;
    data[2 * i + 1] = p.y;
  }
  SafeArrayUnaccessData(array);
  polyline->close();
  Coordinates->vt = VT_ARRAY | VT_R8;
  Coordinates->parray = array;
  return S_OK;
}

// The doubles of an array of doubles or of variants holding numbers; false for anything else.
bool ReadDoubles(const VARIANT& value, std::vector<double>& out) {
  const VARIANT* v = &value;
  if (v->vt == (VT_BYREF | VT_VARIANT) && v->pvarVal != nullptr) v = v->pvarVal;
  SAFEARRAY* array = nullptr;
  VARTYPE type = VT_EMPTY;
  if ((v->vt & VT_ARRAY) == 0) return false;
  array = (v->vt & VT_BYREF) != 0 ? (v->pparray == nullptr ? nullptr : *v->pparray) : v->parray;
  type = static_cast<VARTYPE>(v->vt & ~(VT_ARRAY | VT_BYREF));
  if (array == nullptr || SafeArrayGetDim(array) != 1) return false;
  LONG lower = 0;
  LONG upper = -1;
  SafeArrayGetLBound(array, 1, &lower);
  SafeArrayGetUBound(array, 1, &upper);
  for (LONG i = lower; i <= upper; ++i) {
    if (type == VT_R8) {
      double d = 0.0;
      if (FAILED(SafeArrayGetElement(array, &i, &d))) return false;
      out.push_back(d);
    } else if (type == VT_VARIANT) {
      VARIANT element;
      VariantInit(&element);
      if (FAILED(SafeArrayGetElement(array, &i, &element))) return false;
      VARIANT number;
      VariantInit(&number);
      const HRESULT hr = VariantChangeType(&number, &element, 0, VT_R8);
      VariantClear(&element);
      if (FAILED(hr)) return false;
      out.push_back(number.dblVal);
    } else {
      return false;
    }
  }
  return true;
}

HRESULT AcadLWPolyline::put_Coordinates(VARIANT Coordinates) {
  std::vector<double> values;
  if (!ReadDoubles(Coordinates, values) || values.size() < 4 || values.size() % 2 != 0) return E_INVALIDARG;
  if (HRESULT hr = faces::AutoLock(*document()); FAILED(hr)) return hr;
  AcDbPolyline* polyline = nullptr;
  if (HRESULT hr = OpenFor(objectId(), AcDb::kForWrite, polyline); FAILED(hr)) return hr;
  const unsigned int n = static_cast<unsigned int>(values.size() / 2);
  for (unsigned int i = 0; i < n; ++i) {
    const AcGePoint2d p(values[2 * i], values[2 * i + 1]);
    if (i < polyline->numVerts()) {
      polyline->setPointAt(i, p);
    } else {
      polyline->addVertexAt(i, p, 0.0, 0.0, 0.0);
    }
  }
  while (polyline->numVerts() > n) polyline->removeVertexAt(polyline->numVerts() - 1);
  polyline->close();
  return S_OK;
}

template <class Face, class I, class... Args>
HRESULT Make(I** out, Args&&... args) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  Face* face = MakeComObject<Face>(std::forward<Args>(args)...);
  if (face == nullptr) return E_OUTOFMEMORY;
  *out = face->template As<I>();
  return S_OK;
}

}  // namespace

HRESULT MakeDocumentFace(const std::shared_ptr<Document>& document, IAcadDocument** face) {
  return Make<AcadDocument>(face, document);
}

HRESULT MakeDatabaseFace(const std::shared_ptr<Document>& document, IAcadDatabase** face) {
  return Make<AcadDatabase>(face, document);
}

HRESULT MakeObjectFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face) {
  const AcDbStub* stub = AcDbImpDatabase::lookup(id);
  if (stub == nullptr) return E_INVALIDARG;
  if (AcDbPolyline::cast(stub->object.get()) != nullptr) return Make<AcadLWPolyline>(face, document, id);
  if (AcDbEntity::cast(stub->object.get()) != nullptr) return Make<AcadEntity>(face, document, id);
  return Make<AcadObject>(face, document, id);
}

// --- The non-template halves --------------------------------------------------------------------

namespace faces {

HRESULT AutoLock(Document& document) {
  DocumentManager* manager = document.Manager();
  if (manager == nullptr) return S_OK;
  return document.Lock(manager->CurrentContext(), AcAp::kAutoWrite) == Acad::eOk ? S_OK : E_FAIL;
}

HRESULT ObjectIdToObject(const std::shared_ptr<Document>& document, LONG_PTR objectId, IDispatch** pObj) {
  if (pObj == nullptr) return E_POINTER;
  *pObj = nullptr;
  AcDbObjectId id;
  id.setFromOldId(objectId);
  AcDbStub* stub = StubIn(*document, id);
  if (stub == nullptr || stub->erased) return E_INVALIDARG;
  if (stub->automation != nullptr) return stub->automation->QueryInterface(IID_IDispatch, reinterpret_cast<void**>(pObj));
  if (AcadApplication* app = ApplicationOfDocument(*document)) {
    if (const auto* factory = app->ObjectFaceFor(stub->object->isA())) return (*factory)(document, id, pObj);
  }
  return MakeObjectFace(document, id, pObj);
}

HRESULT HandleToObject(const std::shared_ptr<Document>& document, BSTR handle, IDispatch** pObj) {
  if (pObj == nullptr) return E_POINTER;
  *pObj = nullptr;
  if (handle == nullptr) return E_INVALIDARG;
  AcDbObjectId id;
  if (document->database()->getAcDbObjectId(id, false, AcDbHandle(handle)) != Acad::eOk) return E_INVALIDARG;
  return ObjectIdToObject(document, static_cast<LONG_PTR>(id.asOldId()), pObj);
}

HRESULT DatabaseOf(const std::shared_ptr<Document>& document, IAcadDatabase** pDatabase) {
  if (pDatabase == nullptr) return E_POINTER;
  *pDatabase = nullptr;
  if (AcadApplication* app = ApplicationOfDocument(*document)) return app->DatabaseFace(document, pDatabase);
  if (document->databaseFace != nullptr)
    return document->databaseFace->QueryInterface(__uuidof(IAcadDatabase), reinterpret_cast<void**>(pDatabase));
  return MakeDatabaseFace(document, pDatabase);
}

HRESULT ApplicationOf(const Document& document, IAcadApplication** pAppObj) {
  if (pAppObj == nullptr) return E_POINTER;
  *pAppObj = nullptr;
  AcadApplication* app = ApplicationOfDocument(document);
  if (app == nullptr) return E_FAIL;
  app->AddRef();
  *pAppObj = app;
  return S_OK;
}

HRESULT NameOf(const Document& document, BSTR* pName) {
  if (pName == nullptr) return E_POINTER;
  return MakeBstr(document.fileName(), pName);
}

void Enter(IUnknown*& slot, IUnknown* face) {
  if (slot == nullptr) slot = face;
}

void Leave(IUnknown*& slot, IUnknown* face) {
  if (slot == face) slot = nullptr;
}

void EnterObject(AcDbObjectId id, IUnknown* face) {
  if (AcDbStub* stub = AcDbImpDatabase::lookup(id)) Enter(stub->automation, face);
}

void LeaveObject(AcDbObjectId id, IUnknown* face) {
  if (AcDbStub* stub = AcDbImpDatabase::lookup(id)) Leave(stub->automation, face);
}

HRESULT HandleOf(AcDbObjectId id, BSTR* handle) {
  if (handle == nullptr) return E_POINTER;
  *handle = nullptr;
  if (!id.isValid()) return E_FAIL;
  ACHAR text[17];
  id.handle().getIntoAsciiBuffer(text, 17);
  return MakeBstr(text, handle);
}

HRESULT ObjectNameOf(AcDbObjectId id, BSTR* name) {
  if (name == nullptr) return E_POINTER;
  *name = nullptr;
  const AcRxClass* cls = id.objectClass();
  if (cls == nullptr) return E_FAIL;
  return MakeBstr(cls->name(), name);
}

HRESULT OwnerIdOf(AcDbObjectId id, LONG_PTR* ownerId) {
  if (ownerId == nullptr) return E_POINTER;
  *ownerId = 0;
  const AcDbStub* stub = AcDbImpDatabase::lookup(id);
  if (stub == nullptr) return E_FAIL;
  *ownerId = static_cast<LONG_PTR>(stub->owner.asOldId());
  return S_OK;
}

HRESULT Erase(Document& document, AcDbObjectId id) {
  if (HRESULT hr = AutoLock(document); FAILED(hr)) return hr;
  AcDbObject* object = nullptr;
  if (HRESULT hr = OpenFor(id, AcDb::kForWrite, object); FAILED(hr)) return hr;
  const Acad::ErrorStatus es = object->erase();
  object->close();
  return ToHResult(es);
}

HRESULT LayerOf(AcDbObjectId id, BSTR* layer) {
  if (layer == nullptr) return E_POINTER;
  *layer = nullptr;
  AcDbEntity* entity = nullptr;
  if (HRESULT hr = OpenFor(id, AcDb::kForRead, entity); FAILED(hr)) return hr;
  ACHAR* name = entity->layer();
  entity->close();
  const HRESULT hr = MakeBstr(name, layer);
  acutDelString(name);
  return hr;
}

HRESULT SetLayer(Document& document, AcDbObjectId id, BSTR layer) {
  if (layer == nullptr) return E_INVALIDARG;
  if (HRESULT hr = AutoLock(document); FAILED(hr)) return hr;
  AcDbEntity* entity = nullptr;
  if (HRESULT hr = OpenFor(id, AcDb::kForWrite, entity); FAILED(hr)) return hr;
  const std::wstring name(layer, SysStringLen(layer));
  const Acad::ErrorStatus es = entity->setLayer(name.c_str());
  entity->close();
  return ToHResult(es);
}

HRESULT Update(AcDbObjectId id) {
  AcDbEntity* entity = nullptr;
  if (HRESULT hr = OpenFor(id, AcDb::kForRead, entity); FAILED(hr)) return hr;
  entity->recordGraphicsModified();
  entity->close();
  return S_OK;
}

}  // namespace faces

}  // namespace headless
