// CGrAcadLockDoc: the document lock over AutoCAD's document manager.
#pragma once

#include <cstdint>

#include "module/acad/GrLockDoc.h"

class CGrAcadLockDoc : public CGrLockDoc {
public:
  CGrAcadLockDoc() = default;
  ~CGrAcadLockDoc() override = default;

  int Lock(bool force) override;
  int LockInApplicationContext() override;
  int LockForRead() override;
  int Unlock(bool force) override;
  int UnlockInApplicationContext() override;
  bool IsApplicationContext() const override;

  // Locks taken while the document was locked already, not yet undone.
  std::int32_t NestingCount() const { return m_count; }

private:
  int LockIn(bool force, bool forRead);

  std::int32_t m_count = 0;
};
