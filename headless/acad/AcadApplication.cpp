#include "headless/acad/AcadApplication.h"

#include <cwctype>

#include "headless/acad/AcadFaces.h"

#include "platform/ole/combaseapi.h"
#include "platform/ole/oleauto.h"

namespace headless {

namespace {

std::wstring Lower(std::wstring text) {
  for (auto& ch : text) ch = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(ch)));
  return text;
}

}  // namespace

// The loaded-module list is AutoCAD's own ObjectARX list; names keep the case of their files.
AcadApplication::AcadApplication(const StartOptions& options)
    : options_(options), documents_(std::make_unique<DocumentManager>(this)) {
  loadedModules_ = {L"acapp.arx"};
  if (options_.civilLoaded) loadedModules_.push_back(L"AecBase.dbx");
  documents_->NewDocument();
  RegisterApplication(this);
}

AcadApplication::~AcadApplication() {
  if (running_) UnregisterApplication(this);
  documents_->CloseAll();
}

void AcadApplication::MakeCurrent() { MakeCurrentApplication(this); }

void AcadApplication::RegisterInterfaceObject(const std::wstring& progId, InterfaceObjectFactory factory) {
  factories_[Lower(progId)] = std::move(factory);
}

void AcadApplication::RegisterObjectFace(const AcRxClass* objectClass, ObjectFaceFactory factory) {
  if (objectClass != nullptr) objectFaces_[objectClass] = std::move(factory);
}

const AcadApplication::ObjectFaceFactory* AcadApplication::ObjectFaceFor(const AcRxClass* objectClass) const {
  for (const AcRxClass* c = objectClass; c != nullptr; c = c->myParent()) {
    auto found = objectFaces_.find(c);
    if (found != objectFaces_.end() && found->second) return &found->second;
  }
  return nullptr;
}

HRESULT AcadApplication::DocumentFace(const std::shared_ptr<Document>& document, IAcadDocument** face) {
  if (face == nullptr) return E_POINTER;
  *face = nullptr;
  if (document == nullptr) return E_INVALIDARG;
  if (document->documentFace != nullptr)
    return document->documentFace->QueryInterface(__uuidof(IAcadDocument), reinterpret_cast<void**>(face));
  return documentFace_ ? documentFace_(document, face) : MakeDocumentFace(document, face);
}

HRESULT AcadApplication::DatabaseFace(const std::shared_ptr<Document>& document, IAcadDatabase** face) {
  if (face == nullptr) return E_POINTER;
  *face = nullptr;
  if (document == nullptr) return E_INVALIDARG;
  if (document->databaseFace != nullptr)
    return document->databaseFace->QueryInterface(__uuidof(IAcadDatabase), reinterpret_cast<void**>(face));
  return databaseFace_ ? databaseFace_(document, face) : MakeDatabaseFace(document, face);
}

// Documents close and every factory (each may hold objects of this application) is dropped; the
// application stops being current.
void AcadApplication::Shutdown() {
  if (running_) UnregisterApplication(this);
  running_ = false;
  documents_->CloseAll();
  factories_.clear();
  documentFace_ = nullptr;
  databaseFace_ = nullptr;
  objectFaces_.clear();
}

HRESULT AcadApplication::get_ActiveDocument(IAcadDocument** pActiveDoc) {
  if (pActiveDoc == nullptr) return E_POINTER;
  *pActiveDoc = nullptr;
  const std::shared_ptr<Document> active = documents_->Active();
  if (active == nullptr) return E_FAIL;
  return DocumentFace(active, pActiveDoc);
}

HRESULT AcadApplication::ListArx(VARIANT* pVarListArray) {
  if (pVarListArray == nullptr) return E_POINTER;
  SAFEARRAY* list = SafeArrayCreateVector(VT_BSTR, 0, static_cast<ULONG>(loadedModules_.size()));
  if (list == nullptr) return E_OUTOFMEMORY;
  for (LONG i = 0; i < static_cast<LONG>(loadedModules_.size()); ++i) {
    BSTR name = SysAllocString(loadedModules_[static_cast<size_t>(i)].c_str());
    const HRESULT hr = SafeArrayPutElement(list, &i, name);  // copies the text
    SysFreeString(name);
    if (FAILED(hr)) {
      SafeArrayDestroy(list);
      return hr;
    }
  }
  VariantInit(pVarListArray);
  pVarListArray->vt = VT_ARRAY | VT_BSTR;
  pVarListArray->parray = list;
  return S_OK;
}

// A ProgID this application makes itself wins; anything else is activated from the class
// registry, as AutoCAD falls back to COM. An unknown ProgID fails as CLSIDFromProgID does.
HRESULT AcadApplication::GetInterfaceObject(BSTR ProgID, IDispatch** pObj) {
  if (pObj == nullptr) return E_POINTER;
  *pObj = nullptr;
  if (ProgID == nullptr || SysStringLen(ProgID) == 0) return E_INVALIDARG;
  const std::wstring progId(ProgID, SysStringLen(ProgID));
  if (auto found = factories_.find(Lower(progId)); found != factories_.end())
    return found->second(*this, pObj);
  CLSID clsid;
  const HRESULT hr = CLSIDFromProgID(progId.c_str(), &clsid);
  if (FAILED(hr)) return hr;
  return CoCreateInstance(clsid, nullptr, CLSCTX_ALL, IID_IDispatch, reinterpret_cast<void**>(pObj));
}

}  // namespace headless
