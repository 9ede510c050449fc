#include "module/acad/GrAcadDb.h"

AcDbDatabase* CGrAcadDb::Working() { return acdbHostApplicationServices()->workingDatabase(); }

AcDbObjectId CGrAcadDb::IdFromHandle(std::int64_t handle) {
  AcDbObjectId id;
  AcDbDatabase* db = Working();
  if (db == nullptr || handle == 0) return id;
  AcDbHandle key;
  key = static_cast<Adesk::UInt64>(handle);
  if (db->getAcDbObjectId(id, false, key) != Acad::eOk) id.setNull();
  return id;
}

AcDbObjectId CGrAcadDb::IdFromSessionId(std::int64_t sessionId) {
  AcDbObjectId id;
  id.setFromOldId(sessionId);
  if (!id.isValid()) id.setNull();
  return id;
}

std::int64_t CGrAcadDb::HandleOf(AcDbObjectId id) {
  return static_cast<std::int64_t>(static_cast<Adesk::UInt64>(id.handle()));
}

CGrAcadModelSpace::CGrAcadModelSpace() {
  AcDbDatabase* db = CGrAcadDb::Working();
  if (db == nullptr || db->getBlockTable(m_table, AcDb::kForWrite) != Acad::eOk) {
    m_table = nullptr;
    return;
  }
  if (m_table->getAt(ACDB_MODEL_SPACE, m_record, AcDb::kForWrite) != Acad::eOk) m_record = nullptr;
}

CGrAcadModelSpace::~CGrAcadModelSpace() {
  if (m_record != nullptr) m_record->close();
  if (m_table != nullptr) m_table->close();
}
