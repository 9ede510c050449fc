// Documents and the document manager (acdocman.h): the open drawings, which one is active, and
// document locks.
//
// Code runs in an execution context: the application context (modeless code, automation calls
// from outside: where a headless application starts) or the command context of a document (a
// command running in it). Commands lock their document as they start; code in the application
// context locks explicitly with lockDocument and must, before it changes a document's database.
//
// Lock modes: kRead is exclusive read (no other context may hold a write lock), kWrite shared
// write (other contexts may hold shared write locks too), kXWrite exclusive write (no other
// context may hold any lock); kAutoWrite is what automation calls take: a no-op for a context
// that holds a lock already, and removed as soon as any context asks for another lock;
// kProtectedAutoWrite is a shared write lock that its unlock turns into kAutoWrite. Each
// lockDocument is paired with one unlockDocument; a context's locks nest. A lock that conflicts
// with another context's fails with eLockViolation (there is nobody to prompt here).
#pragma once

#if defined(_WIN32)
#  include <acdocman.h>
#else

#include "platform/acad/dbmain.h"

struct AcAp {
  enum DocLockMode {
    kNone = 0x00,
    kAutoWrite = 0x01,
    kNotLocked = 0x02,
    kWrite = 0x04,
    kProtectedAutoWrite = 0x14,
    kRead = 0x20,
    kXWrite = 0x40,
  };
};

class KD_PLATFORM_API AcApDocument : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcApDocument);
  ~AcApDocument() override;

  // "Drawing1.dwg" for the first new drawing of an application.
  virtual const ACHAR* fileName() const = 0;
  virtual const ACHAR* docTitle() const = 0;
  virtual AcDbDatabase* database() const = 0;
  // The most restrictive lock other execution contexts hold (and, with bIncludeMyLocks, the
  // current one too); kNotLocked when there is none.
  virtual AcAp::DocLockMode lockMode(bool bIncludeMyLocks = false) const = 0;
  // The most restrictive lock the current execution context holds; kNotLocked when none.
  virtual AcAp::DocLockMode myLockMode() const = 0;
  // True when no command runs in the document.
  virtual bool isQuiescent() const = 0;

protected:
  AcApDocument();
};

class KD_PLATFORM_API AcApDocumentIterator : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcApDocumentIterator);
  ~AcApDocumentIterator() override;

  virtual bool done() const = 0;
  virtual void step() = 0;
  virtual AcApDocument* document() = 0;

protected:
  AcApDocumentIterator();
};

class KD_PLATFORM_API AcApDocManager : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcApDocManager);
  ~AcApDocManager() override;

  // The document of the current execution context (the active one in the application context).
  virtual AcApDocument* curDocument() const = 0;
  virtual AcApDocument* mdiActiveDocument() const = 0;
  // The document whose database that is; null for a database no document shows.
  virtual AcApDocument* document(const AcDbDatabase* pDb) const = 0;
  virtual int documentCount() const = 0;
  // The caller deletes the iterator.
  virtual AcApDocumentIterator* newAcApDocumentIterator() = 0;
  virtual bool isApplicationContext() const = 0;

  // Locks pDoc for the current execution context (see above). eInvalidInput for a null or
  // foreign document or a mode that is no lock (kNone, kNotLocked).
  virtual Acad::ErrorStatus lockDocument(AcApDocument* pDoc, AcAp::DocLockMode lockMode = AcAp::kWrite,
                                         const ACHAR* pGlobalCmdName = nullptr, const ACHAR* pLocalCmdName = nullptr,
                                         bool prompt = true) = 0;
  // Ends the current context's latest lock on pDoc: eNotApplicable when it holds none.
  virtual Acad::ErrorStatus unlockDocument(AcApDocument* pDoc) = 0;
  // Runs procAddr(pData) in the application context and returns to the caller's context.
  virtual void executeInApplicationContext(void (*procAddr)(void*), void* pData) const = 0;

protected:
  AcApDocManager();
};

// The document manager of the current headless application (never null: without one, a manager
// with no documents answers).
KD_PLATFORM_API AcApDocManager* acDocManagerPtr();
#define acDocManager acDocManagerPtr()

#endif  // !_WIN32
