#include "module/acad/GrAcadTextStyle.h"

#include "module/acad/GrAcadDb.h"
#include "platform/acad/dbsymtb.h"

namespace {

AcDbDatabase* OrWorking(AcDbDatabase* db) { return db != nullptr ? db : CGrAcadDb::Working(); }

Acad::ErrorStatus Configure(AcDbTextStyleTableRecord& style, const CGrAcadTextStyle& settings) {
  if (Acad::ErrorStatus es = style.setFileName(settings.FontFile().c_str()); es != Acad::eOk) return es;
  if (Acad::ErrorStatus es = style.setTextSize(settings.Height()); es != Acad::eOk) return es;
  if (!(settings.WidthFactor() > 0.0)) return Acad::eInvalidInput;
  return style.setXScale(settings.WidthFactor());
}

}  // namespace

AcDbObjectId CGrAcadTextStyle::Find(const std::wstring& name, AcDbDatabase* db) {
  AcDbObjectId id;
  db = OrWorking(db);
  if (db == nullptr) return id;
  CGrAcadOpened<AcDbTextStyleTable> table(db->textStyleTableId(), AcDb::kForRead);
  if (!table || table->getAt(name.c_str(), id) != Acad::eOk) id.setNull();
  return id;
}

std::wstring CGrAcadTextStyle::NameOf(AcDbObjectId id) {
  CGrAcadOpened<AcDbTextStyleTableRecord> style(id, AcDb::kForRead);
  const ACHAR* name = nullptr;
  if (!style || style->getName(name) != Acad::eOk || name == nullptr) return {};
  return name;
}

AcDbObjectId CGrAcadTextStyle::Ensure(AcDbDatabase* db) const {
  db = OrWorking(db);
  const AcDbObjectId found = Find(m_name, db);
  if (!found.isNull() || db == nullptr) return found;
  CGrAcadOpened<AcDbTextStyleTable> table(db->textStyleTableId(), AcDb::kForWrite);
  if (!table) return AcDbObjectId::kNull;
  auto* style = new AcDbTextStyleTableRecord;
  AcDbObjectId id;
  Acad::ErrorStatus es = style->setName(m_name.c_str());
  if (es == Acad::eOk) es = Configure(*style, *this);
  if (es == Acad::eOk) es = table->add(id, style);
  if (es != Acad::eOk) {
    delete style;
    return AcDbObjectId::kNull;
  }
  style->close();
  return id;
}

int CGrAcadTextStyle::Apply(AcDbDatabase* db) const {
  db = OrWorking(db);
  const AcDbObjectId found = Find(m_name, db);
  if (found.isNull()) return Ensure(db).isNull() ? Acad::eInvalidInput : 0;
  CGrAcadOpened<AcDbTextStyleTableRecord> style(found, AcDb::kForWrite);
  if (!style) return style.Status();
  return Configure(*style.get(), *this);
}
