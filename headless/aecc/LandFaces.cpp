#include "headless/aecc/LandFaces.h"

#include <cmath>

#include "headless/acad/ImpDatabase.h"
#include "platform/ole/oleauto.h"

namespace headless::aecc {

HRESULT ToHResult(land::LandError error) {
  switch (error) {
    case land::LandError::None: return S_OK;
    case land::LandError::Empty: return E_FAIL;
    default: return E_INVALIDARG;
  }
}

HRESULT ToHResult(Acad::ErrorStatus es) {
  switch (es) {
    case Acad::eDuplicateRecordName:
    case Acad::eInvalidInput:
    case Acad::eInvalidSymbolTableName:
    case Acad::eKeyNotFound:
      return E_INVALIDARG;
    default:
      return headless::ToHResult(es);
  }
}

std::wstring Text(BSTR text) { return text == nullptr ? std::wstring() : std::wstring(text, SysStringLen(text)); }

HRESULT ToBstr(const std::wstring& text, BSTR* out) {
  if (out == nullptr) return E_POINTER;
  *out = SysAllocStringLen(text.c_str(), static_cast<UINT>(text.size()));
  return *out == nullptr ? E_OUTOFMEMORY : S_OK;
}

namespace {

const VARIANT* Dereferenced(const VARIANT& value) {
  const VARIANT* v = &value;
  while (v != nullptr && v->vt == (VT_BYREF | VT_VARIANT)) v = v->pvarVal;
  return v;
}

}  // namespace

HRESULT ReadKey(const VARIANT& value, Key& key) {
  const VARIANT* v = Dereferenced(value);
  if (v == nullptr) return E_INVALIDARG;
  if ((v->vt & ~VT_BYREF) == VT_BSTR) {
    const BSTR text = (v->vt & VT_BYREF) != 0 ? (v->pbstrVal == nullptr ? nullptr : *v->pbstrVal) : v->bstrVal;
    key.byName = true;
    key.name = Text(text);
    return S_OK;
  }
  switch (v->vt & ~VT_BYREF) {
    case VT_I1: case VT_I2: case VT_I4: case VT_I8: case VT_INT:
    case VT_UI1: case VT_UI2: case VT_UI4: case VT_UI8: case VT_UINT: {
      VARIANT number;
      VariantInit(&number);
      if (FAILED(VariantChangeType(&number, v, 0, VT_I4))) return E_INVALIDARG;
      key.byName = false;
      key.index = number.lVal;
      return S_OK;
    }
    default:
      return E_INVALIDARG;
  }
}

bool ReadPoint(const VARIANT& value, size_t minCount, size_t maxCount, std::vector<double>& out) {
  out.clear();
  const VARIANT* v = Dereferenced(value);
  if (v == nullptr || (v->vt & VT_ARRAY) == 0) return false;
  SAFEARRAY* array = (v->vt & VT_BYREF) != 0 ? (v->pparray == nullptr ? nullptr : *v->pparray) : v->parray;
  const VARTYPE type = static_cast<VARTYPE>(v->vt & ~(VT_ARRAY | VT_BYREF));
  if (array == nullptr || SafeArrayGetDim(array) != 1) return false;
  LONG lower = 0;
  LONG upper = -1;
  SafeArrayGetLBound(array, 1, &lower);
  SafeArrayGetUBound(array, 1, &upper);
  const LONG count = upper - lower + 1;
  if (count < static_cast<LONG>(minCount) || count > static_cast<LONG>(maxCount)) return false;
  for (LONG i = lower; i <= upper; ++i) {
    double d = 0.0;
    if (type == VT_R8) {
      if (FAILED(SafeArrayGetElement(array, &i, &d))) return false;
    } else if (type == VT_VARIANT) {
      VARIANT element;
      VariantInit(&element);
      if (FAILED(SafeArrayGetElement(array, &i, &element))) return false;
      VARIANT number;
      VariantInit(&number);
      const HRESULT hr = VariantChangeType(&number, &element, 0, VT_R8);
      VariantClear(&element);
      if (FAILED(hr)) return false;
      d = number.dblVal;
    } else {
      return false;
    }
    if (!std::isfinite(d)) return false;
    out.push_back(d);
  }
  return true;
}

HRESULT MakeDoubles(const std::vector<double>& values, VARIANT* out) {
  if (out == nullptr) return E_POINTER;
  VariantInit(out);
  SAFEARRAY* array = SafeArrayCreateVector(VT_R8, 0, static_cast<ULONG>(values.size()));
  if (array == nullptr) return E_OUTOFMEMORY;
  double* data = nullptr;
  if (FAILED(SafeArrayAccessData(array, reinterpret_cast<void**>(&data)))) {
    SafeArrayDestroy(array);
    return E_FAIL;
  }
  for (size_t i = 0; i < values.size(); ++i) data[i] = values[i];
  SafeArrayUnaccessData(array);
  out->vt = VT_ARRAY | VT_R8;
  out->parray = array;
  return S_OK;
}

HRESULT LandObjectFace(const std::shared_ptr<Document>& document, AcDbObjectId id, REFIID riid, void** out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  const AcDbStub* stub = AcDbImpDatabase::lookup(id);
  if (stub == nullptr || stub->erased || document == nullptr) return E_FAIL;
  if (stub->automation != nullptr) return stub->automation->QueryInterface(riid, out);
  IDispatch* face = nullptr;
  const AcRxClass* cls = stub->object->isA();
  HRESULT hr = E_FAIL;
  if (cls == AeccDbAlignment::desc()) {
    hr = MakeAlignmentFace(document, id, &face);
  } else if (cls == AeccDbProfile::desc()) {
    hr = MakeProfileFace(document, id, &face);
  } else if (cls == AeccDbSite::desc()) {
    hr = MakeSiteFace(document, id, &face);
  } else if (cls == AeccDbStyle::desc()) {
    hr = MakeStyleFace(document, id, &face);
  }
  if (FAILED(hr)) return hr;
  hr = face->QueryInterface(riid, out);
  face->Release();
  return hr;
}

HRESULT LandRoots(Document& document, land_drawing::Roots& roots) {
  roots = land_drawing::Find(document.database());
  if (roots.Complete()) return S_OK;
  if (HRESULT hr = faces::AutoLock(document); FAILED(hr)) return hr;
  return ToHResult(land_drawing::Ensure(document.database(), roots));
}

AcDbObjectId StyleFromVariant(const AcDbDatabase* db, LandStyleKind kind, const VARIANT& value) {
  const VARIANT* v = Dereferenced(value);
  if (v == nullptr) return AcDbObjectId::kNull;
  if (v->vt == VT_BSTR) return land_drawing::FindStyle(db, kind, Text(v->bstrVal));
  if (v->vt != VT_DISPATCH && v->vt != VT_UNKNOWN) return AcDbObjectId::kNull;
  IUnknown* object = v->vt == VT_DISPATCH ? v->pdispVal : v->punkVal;
  if (object == nullptr) return AcDbObjectId::kNull;
  IAcadObject* acad = nullptr;
  if (FAILED(object->QueryInterface(__uuidof(IAcadObject), reinterpret_cast<void**>(&acad)))) return AcDbObjectId::kNull;
  LONG_PTR raw = 0;
  acad->get_ObjectID(&raw);
  acad->Release();
  AcDbObjectId id;
  id.setFromOldId(raw);
  for (const AcDbObjectId style : land_drawing::Styles(db, kind))
    if (style == id) return id;
  return AcDbObjectId::kNull;
}

}  // namespace headless::aecc
