// CGrLockDoc: the process-wide lock that callers wrap around every change to the drawing, with a
// nesting count so that Lock/Unlock pairs inside code that already holds a lock are harmless.
#pragma once

// Statuses: 0 success, 1 no document, otherwise the document manager's status.
// The virtual operations keep this declaration order: it is their slot order.
class CGrLockDoc {
public:
  virtual ~CGrLockDoc() = default;
  // Write-locks the working drawing's document, unless (without force) it is write-locked
  // already, in which case only the nesting count grows.
  virtual int Lock(bool force) = 0;
  // Lock(false) when the code runs in the application context; otherwise 0 and nothing.
  virtual int LockInApplicationContext() = 0;
  // As Lock(false) for a read lock: a document locked for read or write only counts.
  virtual int LockForRead() = 0;
  // Without force, a nested lock only counts down; otherwise the document is unlocked and the
  // count reset.
  virtual int Unlock(bool force) = 0;
  virtual int UnlockInApplicationContext() = 0;
  virtual bool IsApplicationContext() const = 0;

  // The process-wide lock, made on first use and kept until the program ends. Callers pair Lock
  // and Unlock on the application's thread: the count is not guarded.
  static CGrLockDoc* Instance();

protected:
  CGrLockDoc() = default;
  CGrLockDoc(const CGrLockDoc&) = delete;
  CGrLockDoc& operator=(const CGrLockDoc&) = delete;
};
