#include "module/acad/GrAcadLockDoc.h"

#include "platform/acad/acdocman.h"
#include "platform/acad/dbapserv.h"

namespace {

constexpr int kNoDocument = 1;

AcApDocument* WorkingDocument() {
  return acDocManager->document(acdbHostApplicationServices()->workingDatabase());
}

// AutoCAD's write modes: auto-write, write, protected auto-write, exclusive write.
bool IsWriteLocked(AcAp::DocLockMode mode) {
  return mode == AcAp::kAutoWrite || mode == AcAp::kWrite || mode == AcAp::kProtectedAutoWrite ||
         mode == AcAp::kXWrite;
}

}  // namespace

CGrLockDoc* CGrLockDoc::Instance() {
  // Never destroyed: code may lock and unlock while statics are torn down.
  static CGrLockDoc* instance = new CGrAcadLockDoc();
  return instance;
}

int CGrAcadLockDoc::LockIn(bool force, bool forRead) {
  AcApDocument* document = WorkingDocument();
  if (document == nullptr) return kNoDocument;
  if (!force) {
    // Every lock counts, whoever holds it: ours, the application's or a running command's.
    const AcAp::DocLockMode held = document->lockMode(true);
    if (IsWriteLocked(held) || (forRead && held == AcAp::kRead)) {
      ++m_count;
      return 0;
    }
  }
  return acDocManager->lockDocument(document, forRead ? AcAp::kRead : AcAp::kWrite, nullptr, nullptr, true);
}

int CGrAcadLockDoc::Lock(bool force) { return LockIn(force, false); }

int CGrAcadLockDoc::LockForRead() { return LockIn(false, true); }

int CGrAcadLockDoc::LockInApplicationContext() { return IsApplicationContext() ? Lock(false) : 0; }

int CGrAcadLockDoc::Unlock(bool force) {
  if (!force && m_count > 0) {
    --m_count;
    return 0;
  }
  AcApDocument* document = WorkingDocument();
  if (document == nullptr) return kNoDocument;
  const Acad::ErrorStatus es = acDocManager->unlockDocument(document);
  if (es == Acad::eOk) m_count = 0;
  return es;
}

int CGrAcadLockDoc::UnlockInApplicationContext() { return IsApplicationContext() ? Unlock(false) : 0; }

bool CGrAcadLockDoc::IsApplicationContext() const { return acDocManager->isApplicationContext(); }
