// Documents, their locks and execution contexts, and the document manager of one headless
// AutoCAD application (acdocman.h's AcApDocument and AcApDocManager).
//
// Execution contexts: the application context (where a headless application starts and where
// hosts and automation calls run) and one command context per document. AutoCAD runs commands in
// their document's context and locks the document for them; RunCommand and BeginCommand play
// that part here, so that code can meet a document that a command has locked.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/acad/acdocman.h"
#include "platform/ole/unknwn.h"

namespace headless {

class AcadApplication;
class DocumentManager;

class KD_PLATFORM_API Document final : public AcApDocument {
public:
  // The execution context of this document's commands (the application context is null).
  using Context = const Document*;

  Document(DocumentManager& manager, std::wstring fileName, std::unique_ptr<AcDbDatabase> database);
  ~Document() override;
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  const ACHAR* fileName() const override { return m_fileName.c_str(); }
  const ACHAR* docTitle() const override { return m_fileName.c_str(); }
  AcDbDatabase* database() const override { return m_database.get(); }
  AcAp::DocLockMode lockMode(bool bIncludeMyLocks = false) const override;
  AcAp::DocLockMode myLockMode() const override;
  bool isQuiescent() const override { return m_commands == 0; }

  // Locks for a context, with AutoCAD's rules (acdocman.h).
  Acad::ErrorStatus Lock(Context context, AcAp::DocLockMode mode);
  Acad::ErrorStatus Unlock(Context context);
  // The most restrictive lock context holds (or, with others, every other context holds).
  AcAp::DocLockMode HeldBy(Context context, bool others) const;
  // Whether context may change the drawing: it holds a write lock.
  bool MayWrite(Context context) const;

  // Null once the application has closed the document (its automation faces may still hold it).
  DocumentManager* Manager() const { return m_manager; }
  void Detach();

  // The document's automation faces while they exist (not counted; each face clears its slot as
  // it dies).
  IUnknown* documentFace = nullptr;
  IUnknown* databaseFace = nullptr;

private:
  friend class DocumentManager;
  struct HeldLock {
    Context context;
    AcAp::DocLockMode mode;
  };

  DocumentManager* m_manager;
  std::wstring m_fileName;
  std::unique_ptr<AcDbDatabase> m_database;
  std::vector<HeldLock> m_locks;  // oldest first
  int m_commands = 0;
};

class KD_PLATFORM_API DocumentManager final : public AcApDocManager {
public:
  // Selection sets an application may hold open at once, as in AutoCAD.
  static constexpr size_t kMaxSelectionSets = 128;

  // application is null for the manager that answers while no application is current.
  explicit DocumentManager(AcadApplication* application);
  ~DocumentManager() override;
  DocumentManager(const DocumentManager&) = delete;
  DocumentManager& operator=(const DocumentManager&) = delete;

  AcadApplication* Application() const { return m_application; }

  // A new drawing from the standard template ("Drawing<n>.dwg"), made the active document.
  std::shared_ptr<Document> NewDocument();
  // Takes a database (read from a file, say) as a new document, made active.
  std::shared_ptr<Document> AddDocument(std::wstring fileName, std::unique_ptr<AcDbDatabase> database);
  // Closes every document (their faces may keep them alive, detached).
  void CloseAll();
  std::shared_ptr<Document> Find(const AcApDocument* document) const;
  std::shared_ptr<Document> Active() const { return m_active.lock(); }
  Document::Context CurrentContext() const { return m_context; }
  AcDbDatabase* WorkingDatabase() const;
  void SetWorkingDatabase(AcDbDatabase* database) { m_working = database; }

  // Runs body as a command of document: in its command context, with the lock a command takes
  // (kWrite for an ordinary command, kRead or kXWrite for exclusive ones, kNotLocked for a
  // read-only one), which is released afterwards together with any lock the body left. The
  // status of taking the command's lock (the body does not run when it fails).
  Acad::ErrorStatus RunCommand(Document& document, AcAp::DocLockMode commandLock, const std::function<void()>& body);
  // A command that has started in document and waits (for input, say) while other code runs in
  // the current context: its lock stays until EndCommand.
  Acad::ErrorStatus BeginCommand(Document& document, AcAp::DocLockMode commandLock);
  void EndCommand(Document& document);

  // Open selection sets: the entities of each, by the set's name.
  bool NewSelectionSet(std::vector<AcDbObjectId> entities, Adesk::LongPtr& name);
  const std::vector<AcDbObjectId>* SelectionSet(Adesk::LongPtr name) const;
  bool FreeSelectionSet(Adesk::LongPtr name);

  AcApDocument* curDocument() const override;
  AcApDocument* mdiActiveDocument() const override;
  AcApDocument* document(const AcDbDatabase* pDb) const override;
  int documentCount() const override { return static_cast<int>(m_documents.size()); }
  AcApDocumentIterator* newAcApDocumentIterator() override;
  bool isApplicationContext() const override { return m_context == nullptr; }
  Acad::ErrorStatus lockDocument(AcApDocument* pDoc, AcAp::DocLockMode lockMode = AcAp::kWrite,
                                 const ACHAR* pGlobalCmdName = nullptr, const ACHAR* pLocalCmdName = nullptr,
                                 bool prompt = true) override;
  Acad::ErrorStatus unlockDocument(AcApDocument* pDoc) override;
  void executeInApplicationContext(void (*procAddr)(void*), void* pData) const override;

private:
  AcadApplication* m_application;
  std::vector<std::shared_ptr<Document>> m_documents;
  std::weak_ptr<Document> m_active;
  mutable Document::Context m_context = nullptr;
  AcDbDatabase* m_working = nullptr;
  int m_newDrawings = 0;
  std::map<Adesk::LongPtr, std::vector<AcDbObjectId>> m_selections;
  Adesk::LongPtr m_nextSelection = 1;
};

// The application whose ObjectARX globals (acDocManager, the host application services,
// selection sets) are in effect: the one made current last, else the most recently started one
// that is still running; null when none runs.
KD_PLATFORM_API AcadApplication* CurrentApplication();
// Kept by AcadApplication as applications start, stop and are chosen.
void RegisterApplication(AcadApplication* application);
void UnregisterApplication(AcadApplication* application);
void MakeCurrentApplication(AcadApplication* application);

}  // namespace headless
