// What the Civil 3D COM faces share: result codes, the objects they stand for opened for the length
// of a call, BSTR and VARIANT conversions, and the faces of the land objects of a drawing (one per
// object while it lives, as AutoCAD's own faces).
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "headless/acad/AcadFaces.h"
#include "headless/acad/DocManager.h"
#include "headless/acad/ImpDatabase.h"
#include "headless/aecc/LandDrawing.h"
#include "headless/aecc/model/LandTypes.h"
#include "platform/acad/acutmem.h"
#include "platform/aecc/aeccxuiroadway.h"
#include "platform/ole/atlbase.h"

namespace headless::aecc {

// What Civil 3D answers for a refusal of the land model: E_INVALIDARG for bad input (a degenerate
// arc, a PVI at an existing station or outside the alignment, an unknown id or index), E_FAIL for
// asking an empty alignment or profile.
HRESULT ToHResult(land::LandError error);
// For a drawing status: E_INVALIDARG for names taken or refused and unknown keys, else as
// AutoCAD's automation answers (headless::ToHResult).
HRESULT ToHResult(Acad::ErrorStatus es);

// A land object opened for the length of a scope. Fails (E_FAIL) for an erased object, one of
// another class, or one whose drawing is gone, as the calls of a face on such an object fail.
template <class T>
class Opened {
public:
  Opened(AcDbObjectId id, AcDb::OpenMode mode) {
    if (id.isNull() || !id.isValid() || id.isErased()) return;
    const Acad::ErrorStatus es = acdbOpenObject(object_, id, mode);
    if (es != Acad::eOk) {
      object_ = nullptr;
      status_ = es == Acad::eNotThatKindOfClass ? E_FAIL : aecc::ToHResult(es);
      if (status_ == E_INVALIDARG) status_ = E_FAIL;
      return;
    }
    status_ = S_OK;
  }
  ~Opened() {
    if (object_ != nullptr) object_->close();
  }
  Opened(const Opened&) = delete;
  Opened& operator=(const Opened&) = delete;

  HRESULT Status() const { return status_; }
  explicit operator bool() const { return object_ != nullptr; }
  T* operator->() const { return object_; }
  T& operator*() const { return *object_; }

private:
  T* object_ = nullptr;
  HRESULT status_ = E_FAIL;
};

// Runs body on the object opened for read; the failure of a face on such an object when it
// cannot be opened.
template <class T, class Body>
HRESULT WithRead(AcDbObjectId id, Body body) {
  Opened<T> object(id, AcDb::kForRead);
  if (!object) return object.Status();
  return body(*object);
}

// Takes the lock automation takes, opens the object for write and runs body on it.
template <class T, class Body>
HRESULT WithWrite(Document& document, AcDbObjectId id, Body body) {
  if (id.isErased()) return E_FAIL;
  if (HRESULT hr = faces::AutoLock(document); FAILED(hr)) return hr;
  Opened<T> object(id, AcDb::kForWrite);
  if (!object) return object.Status();
  return body(*object);
}

// Text in and out.
std::wstring Text(BSTR text);
HRESULT ToBstr(const std::wstring& text, BSTR* out);

// A collection key: a position (VT_I4 and the other integer types) or a name (VT_BSTR), by
// reference too. E_INVALIDARG for anything else.
struct Key {
  bool byName = false;
  LONG index = 0;
  std::wstring name;
};
HRESULT ReadKey(const VARIANT& value, Key& key);
// The object a key names in a list (by position, or by name through nameOf).
template <class NameOf>
AcDbObjectId Pick(const std::vector<AcDbObjectId>& ids, const Key& key, NameOf nameOf) {
  if (!key.byName) return key.index >= 0 && key.index < static_cast<LONG>(ids.size()) ? ids[key.index] : AcDbObjectId::kNull;
  for (const AcDbObjectId id : ids)
    if (land_drawing::SameName(nameOf(id), key.name)) return id;
  return AcDbObjectId::kNull;
}

// The coordinates of a point VARIANT: an array (VT_ARRAY | VT_R8, or of VARIANTs holding
// numbers) of between minCount and maxCount doubles, all finite. False for anything else.
bool ReadPoint(const VARIANT& value, size_t minCount, size_t maxCount, std::vector<double>& out);
// A VARIANT holding an array of doubles (VT_ARRAY | VT_R8, lower bound 0).
HRESULT MakeDoubles(const std::vector<double>& values, VARIANT* out);

// The face of a land object of the drawing as interface I: the one it has while it lives, else a
// new one. E_FAIL for an erased or unknown object.
HRESULT LandObjectFace(const std::shared_ptr<Document>& document, AcDbObjectId id, REFIID riid, void** out);
template <class I>
HRESULT LandObjectFace(const std::shared_ptr<Document>& document, AcDbObjectId id, I** out) {
  return LandObjectFace(document, id, __uuidof(I), reinterpret_cast<void**>(out));
}

// The land dictionaries of the document's drawing, made on first use with the template's styles
// (taking the lock automation takes).
HRESULT LandRoots(Document& document, land_drawing::Roots& roots);

// The faces each part makes (for ObjectIdToObject too).
HRESULT MakeAlignmentFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face);
HRESULT MakeProfileFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face);
HRESULT MakeSiteFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face);
HRESULT MakeStyleFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face);
HRESULT MakeDocumentFace(const std::shared_ptr<Document>& document, IAcadDocument** face);
HRESULT MakeDatabaseFace(const std::shared_ptr<Document>& document, IAcadDatabase** face);

// Collections (new objects each time they are asked for; they read the drawing afresh).
HRESULT MakeSites(const std::shared_ptr<Document>& document, IAeccSites** out);
HRESULT MakeSitelessAlignments(const std::shared_ptr<Document>& document, IAeccAlignmentsSiteless** out);
HRESULT MakeSiteAlignments(const std::shared_ptr<Document>& document, AcDbObjectId site, IAeccAlignments** out);
HRESULT MakeAlignmentStyles(const std::shared_ptr<Document>& document, IAeccAlignmentStyles** out);
HRESULT MakeAlignmentLabelSets(const std::shared_ptr<Document>& document, IAeccAlignmentLabelStyleSets** out);
HRESULT MakeProfileStyles(const std::shared_ptr<Document>& document, IAeccProfileStyles** out);
HRESULT MakeCorridors(const std::shared_ptr<Document>& document, IAeccCorridors** out);
HRESULT MakeAlignmentEntities(const std::shared_ptr<Document>& document, AcDbObjectId alignment,
                              IAeccAlignmentEntities** out);
HRESULT MakeProfiles(const std::shared_ptr<Document>& document, AcDbObjectId alignment, IAeccProfiles** out);
HRESULT MakeProfilePvis(const std::shared_ptr<Document>& document, AcDbObjectId profile, IAeccProfilePVIs** out);
HRESULT MakeProfileEntities(const std::shared_ptr<Document>& document, AcDbObjectId profile,
                            IAeccProfileEntities** out);

// The style a VARIANT names: a VT_BSTR name or a style object (VT_DISPATCH / VT_UNKNOWN) of the
// drawing; null when it names none of the kind.
AcDbObjectId StyleFromVariant(const AcDbDatabase* db, LandStyleKind kind, const VARIANT& value);

// Makes a T (a ComObject) and hands it out as I, one reference.
template <class T, class I, class... Args>
HRESULT Make(I** out, Args&&... args) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  T* object = MakeComObject<T>(std::forward<Args>(args)...);
  if (object == nullptr) return E_OUTOFMEMORY;
  *out = object->template As<I>();
  return S_OK;
}

}  // namespace headless::aecc
