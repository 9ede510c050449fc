// The AutoCAD application's automation object (AcadApplication), as a host reaches it through
// CWinApp::GetIDispatch, with the application's documents (DocumentManager) and the automation
// faces it hands out for them.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "headless/acad/DocManager.h"
#include "headless/acad/StartOptions.h"
#include "headless/ole/ComObject.h"
#include "platform/acad/acadi.h"

namespace headless {

class KD_PLATFORM_API AcadApplication final : public ComObject<AcadApplication, IAcadApplication> {
public:
  // Makes an automation object that lives with this application (Civil 3D's applications and
  // their documents are per AutoCAD application, not per process).
  using InterfaceObjectFactory = std::function<HRESULT(AcadApplication& owner, IDispatch** object)>;
  // Make the automation face of a document, of its database, or of an object of a class; each
  // hands out one reference. See AcadFaces.h for the templates faces are built on.
  using DocumentFaceFactory = std::function<HRESULT(const std::shared_ptr<Document>& document, IAcadDocument** face)>;
  using DatabaseFaceFactory = std::function<HRESULT(const std::shared_ptr<Document>& document, IAcadDatabase** face)>;
  using ObjectFaceFactory =
      std::function<HRESULT(const std::shared_ptr<Document>& document, AcDbObjectId id, IDispatch** face)>;

  // Starts with one new drawing as the active document; the newest application becomes the
  // current one (whose ObjectARX globals are in effect).
  explicit AcadApplication(const StartOptions& options);

  const StartOptions& Options() const { return options_; }
  DocumentManager& Documents() { return *documents_; }
  // Makes this application the current one.
  void MakeCurrent();

  // GetInterfaceObject answers progId (matched without regard to case) through factory.
  void RegisterInterfaceObject(const std::wstring& progId, InterfaceObjectFactory factory);
  // Faces made from now on come from these factories (a face already handed out stays).
  void SetDocumentFaceFactory(DocumentFaceFactory factory) { documentFace_ = std::move(factory); }
  void SetDatabaseFaceFactory(DatabaseFaceFactory factory) { databaseFace_ = std::move(factory); }
  // The face of objects of objectClass and the classes derived from it (the nearest registered
  // class wins).
  void RegisterObjectFace(const AcRxClass* objectClass, ObjectFaceFactory factory);
  const ObjectFaceFactory* ObjectFaceFor(const AcRxClass* objectClass) const;

  // The document's face (the same object while it lives), and its database's.
  HRESULT DocumentFace(const std::shared_ptr<Document>& document, IAcadDocument** face);
  HRESULT DatabaseFace(const std::shared_ptr<Document>& document, IAcadDatabase** face);

  // Closes the documents and releases every object made here; called when the application ends.
  void Shutdown();

  HRESULT STDMETHODCALLTYPE get_ActiveDocument(IAcadDocument** pActiveDoc) override;
  HRESULT STDMETHODCALLTYPE ListArx(VARIANT* pVarListArray) override;
  HRESULT STDMETHODCALLTYPE GetInterfaceObject(BSTR ProgID, IDispatch** pObj) override;

private:
  ~AcadApplication() override;

  StartOptions options_;
  std::vector<std::wstring> loadedModules_;
  std::map<std::wstring, InterfaceObjectFactory> factories_;  // keyed by the lower-case ProgID
  std::unique_ptr<DocumentManager> documents_;
  DocumentFaceFactory documentFace_;
  DatabaseFaceFactory databaseFace_;
  std::map<const AcRxClass*, ObjectFaceFactory> objectFaces_;
  bool running_ = true;
};

}  // namespace headless
