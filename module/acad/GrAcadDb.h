// CGrAcadDb: the drawing the module works on (the working database of the host application
// services), the conversions between handles, session ids and object ids, and scoped access to
// opened objects.
#pragma once

#include <cstdint>

#include "platform/acad/dbapserv.h"
#include "platform/acad/dbmain.h"
#include "platform/acad/dbsymtb.h"

class CGrAcadDb {
public:
  // Null when no drawing is open.
  static AcDbDatabase* Working();
  // The object id of a handle in the working drawing (looked up, never created); null for 0, an
  // unknown handle or no drawing.
  static AcDbObjectId IdFromHandle(std::int64_t handle);
  // Null unless the session id names an object of a drawing that is open.
  static AcDbObjectId IdFromSessionId(std::int64_t sessionId);
  static std::int64_t HandleOf(AcDbObjectId id);
  static std::int64_t SessionIdOf(AcDbObjectId id) { return id.asOldId(); }
};

// An object opened for the length of a scope: closed when the scope ends, unless released.
template <class T>
class CGrAcadOpened {
public:
  CGrAcadOpened() = default;
  CGrAcadOpened(AcDbObjectId id, AcDb::OpenMode mode, bool openErased = false) { Open(id, mode, openErased); }
  ~CGrAcadOpened() { Close(); }
  CGrAcadOpened(const CGrAcadOpened&) = delete;
  CGrAcadOpened& operator=(const CGrAcadOpened&) = delete;

  Acad::ErrorStatus Open(AcDbObjectId id, AcDb::OpenMode mode, bool openErased = false) {
    Close();
    m_status = acdbOpenObject(m_object, id, mode, openErased);
    return m_status;
  }
  Acad::ErrorStatus Close() {
    Acad::ErrorStatus es = Acad::eOk;
    if (m_object != nullptr) es = m_object->close();
    m_object = nullptr;
    return es;
  }
  // Hands the open object over; the caller closes it.
  T* Release() {
    T* object = m_object;
    m_object = nullptr;
    return object;
  }
  T* get() const { return m_object; }
  T* operator->() const { return m_object; }
  explicit operator bool() const { return m_object != nullptr; }
  Acad::ErrorStatus Status() const { return m_status; }

private:
  T* m_object = nullptr;
  Acad::ErrorStatus m_status = Acad::eNullObjectId;
};

// The working drawing's block table and its "*Model_Space" record, opened for write and both
// kept open until the scope ends.
class CGrAcadModelSpace {
public:
  CGrAcadModelSpace();
  ~CGrAcadModelSpace();
  CGrAcadModelSpace(const CGrAcadModelSpace&) = delete;
  CGrAcadModelSpace& operator=(const CGrAcadModelSpace&) = delete;

  // Null when the record could not be had.
  AcDbBlockTableRecord* Record() const { return m_record; }
  AcDbBlockTable* Table() const { return m_table; }

private:
  AcDbBlockTable* m_table = nullptr;
  AcDbBlockTableRecord* m_record = nullptr;
};
