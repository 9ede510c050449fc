#include "headless/acad/DocManager.h"

#include <algorithm>
#include <mutex>

#include "headless/acad/AcadApplication.h"
#include "headless/acad/ImpDatabase.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/dbapserv.h"

// --- The abstract ObjectARX classes -------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcApDocument, AcRxObject, L"")
AcApDocument::AcApDocument() = default;
AcApDocument::~AcApDocument() = default;

KD_ACRX_DEFINE_MEMBERS(AcApDocumentIterator, AcRxObject, L"")
AcApDocumentIterator::AcApDocumentIterator() = default;
AcApDocumentIterator::~AcApDocumentIterator() = default;

KD_ACRX_DEFINE_MEMBERS(AcApDocManager, AcRxObject, L"")
AcApDocManager::AcApDocManager() = default;
AcApDocManager::~AcApDocManager() = default;

namespace headless {

namespace {

bool IsWriteMode(AcAp::DocLockMode mode) {
  return mode == AcAp::kAutoWrite || mode == AcAp::kWrite || mode == AcAp::kProtectedAutoWrite ||
         mode == AcAp::kXWrite;
}

// Order of restriction, for "the most restrictive lock".
int Rank(AcAp::DocLockMode mode) {
  switch (mode) {
    case AcAp::kAutoWrite: return 1;
    case AcAp::kWrite: return 2;
    case AcAp::kProtectedAutoWrite: return 3;
    case AcAp::kRead: return 4;
    case AcAp::kXWrite: return 5;
    default: return 0;
  }
}

// Whether a lock of mode may be added while another context holds other: exclusive write goes
// with nothing; exclusive read goes with reads only; shared writes go with shared writes.
bool Compatible(AcAp::DocLockMode mode, AcAp::DocLockMode other) {
  if (mode == AcAp::kXWrite || other == AcAp::kXWrite) return false;
  if (mode == AcAp::kRead) return other == AcAp::kRead;
  if (other == AcAp::kRead) return false;
  return true;
}

class DocumentIterator final : public AcApDocumentIterator {
public:
  explicit DocumentIterator(std::vector<std::shared_ptr<Document>> documents) : m_documents(std::move(documents)) {}
  bool done() const override { return m_index >= m_documents.size(); }
  void step() override {
    if (!done()) ++m_index;
  }
  AcApDocument* document() override { return done() ? nullptr : m_documents[m_index].get(); }

private:
  std::vector<std::shared_ptr<Document>> m_documents;
  size_t m_index = 0;
};

// The running applications, the most recently started last; current is the one chosen, if any.
struct Applications {
  std::mutex mutex;
  std::vector<AcadApplication*> running;
  AcadApplication* chosen = nullptr;
};

Applications& RunningApplications() {
  static Applications* apps = new Applications;
  return *apps;
}

}  // namespace

void RegisterApplication(AcadApplication* application) {
  auto& apps = RunningApplications();
  std::lock_guard<std::mutex> lock(apps.mutex);
  apps.running.push_back(application);
}

void UnregisterApplication(AcadApplication* application) {
  auto& apps = RunningApplications();
  std::lock_guard<std::mutex> lock(apps.mutex);
  apps.running.erase(std::remove(apps.running.begin(), apps.running.end(), application), apps.running.end());
  if (apps.chosen == application) apps.chosen = nullptr;
}

void MakeCurrentApplication(AcadApplication* application) {
  auto& apps = RunningApplications();
  std::lock_guard<std::mutex> lock(apps.mutex);
  if (std::find(apps.running.begin(), apps.running.end(), application) != apps.running.end())
    apps.chosen = application;
}

AcadApplication* CurrentApplication() {
  auto& apps = RunningApplications();
  std::lock_guard<std::mutex> lock(apps.mutex);
  if (apps.chosen != nullptr) return apps.chosen;
  return apps.running.empty() ? nullptr : apps.running.back();
}

// --- Document -----------------------------------------------------------------------------------

Document::Document(DocumentManager& manager, std::wstring fileName, std::unique_ptr<AcDbDatabase> database)
    : m_manager(&manager), m_fileName(std::move(fileName)), m_database(std::move(database)) {
  AcDbImpDatabase::of(m_database.get())->setWritePolicy([this] {
    return m_manager == nullptr || MayWrite(m_manager->CurrentContext());
  });
}

Document::~Document() = default;

void Document::Detach() {
  m_manager = nullptr;
  m_locks.clear();
  m_commands = 0;
}

AcAp::DocLockMode Document::HeldBy(Context context, bool others) const {
  AcAp::DocLockMode strongest = AcAp::kNotLocked;
  for (const HeldLock& held : m_locks) {
    if ((held.context == context) == others) continue;
    if (Rank(held.mode) > Rank(strongest)) strongest = held.mode;
  }
  return strongest;
}

AcAp::DocLockMode Document::lockMode(bool bIncludeMyLocks) const {
  const Context current = m_manager == nullptr ? nullptr : m_manager->CurrentContext();
  const AcAp::DocLockMode others = HeldBy(current, true);
  if (!bIncludeMyLocks) return others;
  const AcAp::DocLockMode mine = HeldBy(current, false);
  return Rank(mine) > Rank(others) ? mine : others;
}

AcAp::DocLockMode Document::myLockMode() const {
  return HeldBy(m_manager == nullptr ? nullptr : m_manager->CurrentContext(), false);
}

bool Document::MayWrite(Context context) const {
  for (const HeldLock& held : m_locks)
    if (held.context == context && IsWriteMode(held.mode)) return true;
  return false;
}

// AutoWrite locks are AutoCAD's automation locks: a no-op for a context that holds a lock
// already, and dropped whenever any context asks for another lock.
Acad::ErrorStatus Document::Lock(Context context, AcAp::DocLockMode mode) {
  if (Rank(mode) == 0) return Acad::eInvalidInput;
  if (mode == AcAp::kAutoWrite &&
      std::any_of(m_locks.begin(), m_locks.end(), [&](const HeldLock& h) { return h.context == context; }))
    return Acad::eOk;
  for (const HeldLock& held : m_locks) {
    if (held.context == context || held.mode == AcAp::kAutoWrite) continue;
    if (!Compatible(mode, held.mode)) return Acad::eLockViolation;
  }
  m_locks.erase(std::remove_if(m_locks.begin(), m_locks.end(),
                               [](const HeldLock& h) { return h.mode == AcAp::kAutoWrite; }),
                m_locks.end());
  m_locks.push_back({context, mode});
  return Acad::eOk;
}

// Ends the context's latest lock; a protected AutoWrite lock falls back to a plain AutoWrite one.
Acad::ErrorStatus Document::Unlock(Context context) {
  for (auto it = m_locks.rbegin(); it != m_locks.rend(); ++it) {
    if (it->context != context) continue;
    if (it->mode == AcAp::kProtectedAutoWrite) {
      it->mode = AcAp::kAutoWrite;
    } else {
      m_locks.erase(std::next(it).base());
    }
    return Acad::eOk;
  }
  return Acad::eNotApplicable;
}

// --- DocumentManager ----------------------------------------------------------------------------

DocumentManager::DocumentManager(AcadApplication* application) : m_application(application) {}

DocumentManager::~DocumentManager() { CloseAll(); }

std::shared_ptr<Document> DocumentManager::NewDocument() {
  const std::wstring name = L"Drawing" + std::to_wstring(++m_newDrawings) + L".dwg";
  return AddDocument(name, std::make_unique<AcDbDatabase>(true));
}

std::shared_ptr<Document> DocumentManager::AddDocument(std::wstring fileName, std::unique_ptr<AcDbDatabase> database) {
  if (database == nullptr) return nullptr;
  auto document = std::make_shared<Document>(*this, std::move(fileName), std::move(database));
  m_documents.push_back(document);
  m_active = document;
  return document;
}

void DocumentManager::CloseAll() {
  for (const auto& document : m_documents) document->Detach();
  m_documents.clear();
  m_active.reset();
  m_context = nullptr;
  m_working = nullptr;
  m_selections.clear();
}

std::shared_ptr<Document> DocumentManager::Find(const AcApDocument* document) const {
  for (const auto& d : m_documents)
    if (d.get() == document) return d;
  return nullptr;
}

AcDbDatabase* DocumentManager::WorkingDatabase() const {
  if (m_working != nullptr) return m_working;
  const AcApDocument* current = curDocument();
  return current == nullptr ? nullptr : current->database();
}

Acad::ErrorStatus DocumentManager::RunCommand(Document& document, AcAp::DocLockMode commandLock,
                                              const std::function<void()>& body) {
  if (Find(&document) == nullptr) return Acad::eInvalidInput;
  if (commandLock != AcAp::kNotLocked && commandLock != AcAp::kNone) {
    if (Acad::ErrorStatus es = document.Lock(&document, commandLock); es != Acad::eOk) return es;
  }
  const Document::Context outer = m_context;
  m_context = &document;
  ++document.m_commands;
  if (body) body();
  --document.m_commands;
  m_context = outer;
  auto& locks = document.m_locks;
  locks.erase(std::remove_if(locks.begin(), locks.end(), [&](const auto& h) { return h.context == &document; }),
              locks.end());
  return Acad::eOk;
}

Acad::ErrorStatus DocumentManager::BeginCommand(Document& document, AcAp::DocLockMode commandLock) {
  if (Find(&document) == nullptr) return Acad::eInvalidInput;
  if (commandLock != AcAp::kNotLocked && commandLock != AcAp::kNone) {
    if (Acad::ErrorStatus es = document.Lock(&document, commandLock); es != Acad::eOk) return es;
  }
  ++document.m_commands;
  return Acad::eOk;
}

void DocumentManager::EndCommand(Document& document) {
  if (document.m_commands > 0) --document.m_commands;
  auto& locks = document.m_locks;
  locks.erase(std::remove_if(locks.begin(), locks.end(), [&](const auto& h) { return h.context == &document; }),
              locks.end());
}

bool DocumentManager::NewSelectionSet(std::vector<AcDbObjectId> entities, Adesk::LongPtr& name) {
  if (m_selections.size() >= kMaxSelectionSets) return false;
  name = m_nextSelection++;
  m_selections.emplace(name, std::move(entities));
  return true;
}

const std::vector<AcDbObjectId>* DocumentManager::SelectionSet(Adesk::LongPtr name) const {
  auto found = m_selections.find(name);
  return found == m_selections.end() ? nullptr : &found->second;
}

bool DocumentManager::FreeSelectionSet(Adesk::LongPtr name) { return m_selections.erase(name) != 0; }

AcApDocument* DocumentManager::curDocument() const {
  if (m_context != nullptr) return const_cast<Document*>(m_context);
  return mdiActiveDocument();
}

AcApDocument* DocumentManager::mdiActiveDocument() const { return m_active.lock().get(); }

AcApDocument* DocumentManager::document(const AcDbDatabase* pDb) const {
  if (pDb == nullptr) return nullptr;
  for (const auto& d : m_documents)
    if (d->database() == pDb) return d.get();
  return nullptr;
}

AcApDocumentIterator* DocumentManager::newAcApDocumentIterator() { return new DocumentIterator(m_documents); }

Acad::ErrorStatus DocumentManager::lockDocument(AcApDocument* pDoc, AcAp::DocLockMode lockMode, const ACHAR*,
                                                const ACHAR*, bool) {
  const std::shared_ptr<Document> document = Find(pDoc);
  if (document == nullptr) return Acad::eInvalidInput;
  return document->Lock(m_context, lockMode);
}

Acad::ErrorStatus DocumentManager::unlockDocument(AcApDocument* pDoc) {
  const std::shared_ptr<Document> document = Find(pDoc);
  if (document == nullptr) return Acad::eInvalidInput;
  return document->Unlock(m_context);
}

void DocumentManager::executeInApplicationContext(void (*procAddr)(void*), void* pData) const {
  if (procAddr == nullptr) return;
  const Document::Context outer = m_context;
  m_context = nullptr;
  procAddr(pData);
  m_context = outer;
}

}  // namespace headless

// --- The ObjectARX globals ----------------------------------------------------------------------

AcApDocManager* acDocManagerPtr() {
  if (headless::AcadApplication* app = headless::CurrentApplication()) return &app->Documents();
  static headless::DocumentManager* none = new headless::DocumentManager(nullptr);
  return none;
}

KD_ACRX_DEFINE_MEMBERS(AcDbHostApplicationServices, AcRxObject, L"")
AcDbHostApplicationServices::AcDbHostApplicationServices() = default;
AcDbHostApplicationServices::~AcDbHostApplicationServices() = default;

AcDbDatabase* AcDbHostApplicationServices::workingDatabase() const {
  headless::AcadApplication* app = headless::CurrentApplication();
  return app == nullptr ? nullptr : app->Documents().WorkingDatabase();
}

void AcDbHostApplicationServices::setWorkingDatabase(AcDbDatabase* pDatabase) {
  if (headless::AcadApplication* app = headless::CurrentApplication()) app->Documents().SetWorkingDatabase(pDatabase);
}

AcDbHostApplicationServices* acdbHostApplicationServices() {
  static AcDbHostApplicationServices* services = new AcDbHostApplicationServices;
  return services;
}
