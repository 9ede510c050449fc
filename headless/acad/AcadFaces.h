// The automation faces of a drawing: the document (IAcadDocument, which derives IAcadDatabase),
// its database (IAcadDatabase) and its objects (IAcadObject, IAcadEntity, IAcadLWPolyline). They
// hold the document (so a face outlives the application that made it) and an object's id, and
// read and change the drawing through the ObjectARX calls, as AutoCAD's own automation does.
//
// Faces of other interfaces that derive these (Civil 3D's IAeccDocument, IAeccAlignment, ...) are
// built on the templates below, which implement the AutoCAD members for any interface I that
// derives the AutoCAD one:
//
//   class AeccDocument final : public headless::AcadDocumentImpl<AeccDocument, IAeccDocument> {
//    public:
//     using AlsoAnswers = headless::Interfaces<IAcadDocument, IAcadDatabase>;
//     explicit AeccDocument(std::shared_ptr<headless::Document> d) : AcadDocumentImpl(std::move(d)) {}
//     ...IAeccDocument's own members...
//   };
//
// and registered with the application (AcadApplication::SetDocumentFaceFactory and the like),
// so that the one document object answers both interfaces. A face made from these templates is
// found again while it lives: asking twice gives the same object.
#pragma once

#include <memory>
#include <type_traits>
#include <utility>

#include "headless/acad/DocManager.h"
#include "headless/ole/ComObject.h"
#include "platform/acad/acadi.h"
#include "platform/acad/dbmain.h"

namespace headless {

// The HRESULT an automation call answers for a status: E_INVALIDARG for bad input (unknown
// names, keys, ids, handles), E_OUTOFMEMORY, E_NOTIMPL, else E_FAIL.
KD_PLATFORM_API HRESULT ToHResult(Acad::ErrorStatus es);

// The non-template halves of the faces.
namespace faces {
// Takes the AutoWrite lock automation calls take before they change a drawing (nothing to take
// for a document its application has closed). E_FAIL when another context's lock conflicts.
KD_PLATFORM_API HRESULT AutoLock(Document& document);
KD_PLATFORM_API HRESULT ObjectIdToObject(const std::shared_ptr<Document>& document, LONG_PTR objectId,
                                         IDispatch** pObj);
KD_PLATFORM_API HRESULT HandleToObject(const std::shared_ptr<Document>& document, BSTR handle, IDispatch** pObj);
KD_PLATFORM_API HRESULT DatabaseOf(const std::shared_ptr<Document>& document, IAcadDatabase** pDatabase);
KD_PLATFORM_API HRESULT ApplicationOf(const Document& document, IAcadApplication** pAppObj);
KD_PLATFORM_API HRESULT NameOf(const Document& document, BSTR* pName);
// A face slot of a document or object: taken by the first face, left by it as it dies.
KD_PLATFORM_API void Enter(IUnknown*& slot, IUnknown* face);
KD_PLATFORM_API void Leave(IUnknown*& slot, IUnknown* face);
KD_PLATFORM_API void EnterObject(AcDbObjectId id, IUnknown* face);
KD_PLATFORM_API void LeaveObject(AcDbObjectId id, IUnknown* face);
KD_PLATFORM_API HRESULT HandleOf(AcDbObjectId id, BSTR* handle);
KD_PLATFORM_API HRESULT ObjectNameOf(AcDbObjectId id, BSTR* name);
KD_PLATFORM_API HRESULT OwnerIdOf(AcDbObjectId id, LONG_PTR* ownerId);
KD_PLATFORM_API HRESULT Erase(Document& document, AcDbObjectId id);
KD_PLATFORM_API HRESULT LayerOf(AcDbObjectId id, BSTR* layer);
KD_PLATFORM_API HRESULT SetLayer(Document& document, AcDbObjectId id, BSTR layer);
KD_PLATFORM_API HRESULT Update(AcDbObjectId id);
}  // namespace faces

enum class FaceSlot { Document, Database };

template <class Derived, class I>
class AcadDatabaseImpl : public ComObject<Derived, I> {
  static_assert(std::is_base_of_v<IAcadDatabase, I>, "the face's interface derives IAcadDatabase");

public:
  HRESULT STDMETHODCALLTYPE ObjectIdToObject(LONG_PTR ObjectID, IDispatch** pObj) override {
    return faces::ObjectIdToObject(m_document, ObjectID, pObj);
  }
  const std::shared_ptr<Document>& document() const { return m_document; }

protected:
  explicit AcadDatabaseImpl(std::shared_ptr<Document> document, FaceSlot slot = FaceSlot::Database)
      : m_document(std::move(document)), m_slot(slot) {
    faces::Enter(Slot(), this->template As<IUnknown>());
  }
  ~AcadDatabaseImpl() override { faces::Leave(Slot(), this->template As<IUnknown>()); }

private:
  IUnknown*& Slot() { return m_slot == FaceSlot::Document ? m_document->documentFace : m_document->databaseFace; }

  std::shared_ptr<Document> m_document;
  FaceSlot m_slot;
};

template <class Derived, class I>
class AcadDocumentImpl : public AcadDatabaseImpl<Derived, I> {
  static_assert(std::is_base_of_v<IAcadDocument, I>, "the face's interface derives IAcadDocument");

public:
  HRESULT STDMETHODCALLTYPE get_Database(IAcadDatabase** pDatabase) override {
    return faces::DatabaseOf(this->document(), pDatabase);
  }
  HRESULT STDMETHODCALLTYPE get_Name(BSTR* pName) override { return faces::NameOf(*this->document(), pName); }
  HRESULT STDMETHODCALLTYPE get_Application(IAcadApplication** pAppObj) override {
    return faces::ApplicationOf(*this->document(), pAppObj);
  }
  HRESULT STDMETHODCALLTYPE HandleToObject(BSTR Handle, IDispatch** pObj) override {
    return faces::HandleToObject(this->document(), Handle, pObj);
  }

protected:
  explicit AcadDocumentImpl(std::shared_ptr<Document> document)
      : AcadDatabaseImpl<Derived, I>(std::move(document), FaceSlot::Document) {}
};

template <class Derived, class I>
class AcadObjectImpl : public ComObject<Derived, I> {
  static_assert(std::is_base_of_v<IAcadObject, I>, "the face's interface derives IAcadObject");

public:
  HRESULT STDMETHODCALLTYPE get_Handle(BSTR* Handle) override { return faces::HandleOf(m_id, Handle); }
  HRESULT STDMETHODCALLTYPE get_ObjectName(BSTR* ObjectName) override { return faces::ObjectNameOf(m_id, ObjectName); }
  HRESULT STDMETHODCALLTYPE get_ObjectID(LONG_PTR* ObjectID) override {
    if (ObjectID == nullptr) return E_POINTER;
    *ObjectID = static_cast<LONG_PTR>(m_id.asOldId());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_OwnerID(LONG_PTR* OwnerID) override { return faces::OwnerIdOf(m_id, OwnerID); }
  HRESULT STDMETHODCALLTYPE get_Database(IAcadDatabase** pDatabase) override {
    return faces::DatabaseOf(m_document, pDatabase);
  }
  HRESULT STDMETHODCALLTYPE Delete() override { return faces::Erase(*m_document, m_id); }

  AcDbObjectId objectId() const { return m_id; }
  const std::shared_ptr<Document>& document() const { return m_document; }

protected:
  AcadObjectImpl(std::shared_ptr<Document> document, AcDbObjectId id) : m_document(std::move(document)), m_id(id) {
    faces::EnterObject(m_id, this->template As<IUnknown>());
  }
  ~AcadObjectImpl() override { faces::LeaveObject(m_id, this->template As<IUnknown>()); }

private:
  std::shared_ptr<Document> m_document;
  AcDbObjectId m_id;
};

template <class Derived, class I>
class AcadEntityImpl : public AcadObjectImpl<Derived, I> {
  static_assert(std::is_base_of_v<IAcadEntity, I>, "the face's interface derives IAcadEntity");

public:
  HRESULT STDMETHODCALLTYPE get_Layer(BSTR* Layer) override { return faces::LayerOf(this->objectId(), Layer); }
  HRESULT STDMETHODCALLTYPE put_Layer(BSTR Layer) override {
    return faces::SetLayer(*this->document(), this->objectId(), Layer);
  }
  HRESULT STDMETHODCALLTYPE Update() override { return faces::Update(this->objectId()); }

protected:
  AcadEntityImpl(std::shared_ptr<Document> document, AcDbObjectId id)
      : AcadObjectImpl<Derived, I>(std::move(document), id) {}
};

// The faces AutoCAD itself gives: for documents, databases and objects of every class no face was
// registered for.
HRESULT MakeDocumentFace(const std::shared_ptr<Document>& document, IAcadDocument** face);
HRESULT MakeDatabaseFace(const std::shared_ptr<Document>& document, IAcadDatabase** face);
HRESULT MakeObjectFace(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face);

}  // namespace headless
