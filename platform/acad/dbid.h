// AcDbObjectId (dbid.h): how code names a database object while the drawing is open.
//
// An id is valid from the object's creation until its database is destroyed, erased or not. Its
// integer form (asOldId) is the object's session id: a 64-bit value that no other object of any
// database of the process ever had or will have while the process lives, so an id that outlived
// its database is recognised as invalid instead of naming some other object. AutoCAD's ids are
// the addresses of their stubs; these have the same look (large, multiples of 16) but are handed
// out by the platform.
#pragma once

#if defined(_WIN32)
#  include <dbid.h>
#else

#include "platform/acad/dbhandle.h"

class AcDbDatabase;
class AcRxClass;

class KD_PLATFORM_API AcDbObjectId {
public:
  AcDbObjectId() = default;

  static const AcDbObjectId kNull;

  bool isNull() const { return m_id == 0; }
  void setNull() { m_id = 0; }
  // The id names an object of a database that still exists (erased objects included).
  bool isValid() const;
  bool isErased() const;
  // The object's handle; null for an invalid id.
  AcDbHandle handle() const;
  // The object's database; null for an invalid id.
  AcDbDatabase* database() const;
  // The run-time class of the object; null for an invalid id.
  AcRxClass* objectClass() const;

  Adesk::IntDbId asOldId() const { return m_id; }
  AcDbObjectId& setFromOldId(Adesk::IntDbId oldId) {
    m_id = oldId;
    return *this;
  }

  bool operator==(const AcDbObjectId& id) const { return m_id == id.m_id; }
  bool operator!=(const AcDbObjectId& id) const { return m_id != id.m_id; }
  bool operator<(const AcDbObjectId& id) const { return m_id < id.m_id; }
  bool operator>(const AcDbObjectId& id) const { return m_id > id.m_id; }

private:
  Adesk::IntDbId m_id = 0;
};

#endif  // !_WIN32
