// AcDbEntity's common properties and AcDbCurve's defaults.
#include <cwchar>
#include <cwctype>
#include <memory>

#include "headless/acad/ImpDatabase.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/dbapserv.h"
#include "platform/acad/dbcurve.h"
#include "platform/acad/dbsymtb.h"

namespace {

ACHAR* CopyText(const ACHAR* text) {
  const size_t n = std::wcslen(text);
  auto* copy = new ACHAR[n + 1];
  std::wmemcpy(copy, text, n + 1);
  return copy;
}

bool SameName(const ACHAR* a, const ACHAR* b) {
  for (; *a != L'\0' && *b != L'\0'; ++a, ++b)
    if (std::towupper(static_cast<wint_t>(*a)) != std::towupper(static_cast<wint_t>(*b))) return false;
  return *a == *b;
}

// The database whose tables an entity's names refer to: its own, else the working one.
AcDbDatabase* NamesDatabase(const AcDbEntity& entity) {
  if (AcDbDatabase* own = entity.database()) return own;
  return acdbHostApplicationServices()->workingDatabase();
}

// The record of that name in the table (without opening anything: the caller may hold the table
// open).
Acad::ErrorStatus FindRecord(AcDbObjectId tableId, const ACHAR* name, AcDbObjectId& id) {
  const auto* table = AcDbSymbolTable::cast(AcDbImpDatabase::peek(tableId));
  if (table == nullptr) return Acad::eNoDatabase;
  for (const AcDbObjectId& recordId : table->recordIds()) {
    const AcDbStub* stub = AcDbImpDatabase::lookup(recordId);
    if (stub == nullptr || stub->erased) continue;
    const ACHAR* recordName = nullptr;
    static_cast<const AcDbSymbolTableRecord*>(stub->object.get())->getName(recordName);
    if (SameName(recordName, name)) {
      id = recordId;
      return Acad::eOk;
    }
  }
  return Acad::eKeyNotFound;
}

ACHAR* RecordName(AcDbObjectId id) {
  const auto* record = AcDbSymbolTableRecord::cast(AcDbImpDatabase::peek(id));
  if (record == nullptr) return nullptr;
  const ACHAR* name = nullptr;
  record->getName(name);
  return CopyText(name);
}

// id names a live record of the table of that kind in db (or in any database when db is null).
Acad::ErrorStatus CheckRecord(AcDbObjectId id, const AcRxClass* recordClass, const AcDbDatabase* db) {
  if (id.isNull()) return Acad::eNullObjectId;
  const AcDbStub* stub = AcDbImpDatabase::lookup(id);
  if (stub == nullptr) return Acad::eInvalidObjectId;
  if (!stub->object->isKindOf(recordClass)) return Acad::eWrongObjectType;
  if (stub->erased) return Acad::eWasErased;
  if (db != nullptr && &stub->database->face() != db) return Acad::eWrongDatabase;
  return Acad::eOk;
}

}  // namespace

KD_ACRX_DEFINE_MEMBERS(AcDbEntity, AcDbObject, L"")

AcDbEntity::AcDbEntity() = default;
AcDbEntity::AcDbEntity(const AcDbEntity& other)
    : AcDbObject(other), m_color(other.m_color), m_layerId(other.m_layerId), m_linetypeId(other.m_linetypeId),
      m_linetypeScale(other.m_linetypeScale), m_visibility(other.m_visibility) {}
AcDbEntity::~AcDbEntity() = default;

AcDbObjectId AcDbEntity::blockId() const {
  const AcDbObjectId owner = ownerId();
  return AcDbBlockTableRecord::cast(AcDbImpDatabase::peek(owner)) != nullptr ? owner : AcDbObjectId::kNull;
}

Acad::ErrorStatus AcDbEntity::setColor(const AcCmColor& color, Adesk::Boolean) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_color = color;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setColorIndex(Adesk::UInt16 color, Adesk::Boolean) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (color > AcCmEntityColor::kACIbyLayer) return Acad::eOutOfRange;
  m_color.setColorIndex(color);
  return Acad::eOk;
}

ACHAR* AcDbEntity::layer() const { return RecordName(m_layerId); }

Acad::ErrorStatus AcDbEntity::setLayer(const ACHAR* newVal, Adesk::Boolean, bool) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (newVal == nullptr) return Acad::eInvalidInput;
  AcDbDatabase* db = NamesDatabase(*this);
  if (db == nullptr) return Acad::eNoDatabase;
  AcDbObjectId id;
  if (Acad::ErrorStatus es = FindRecord(db->layerTableId(), newVal, id); es != Acad::eOk) return es;
  m_layerId = id;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLayer(AcDbObjectId newVal, Adesk::Boolean, bool) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (Acad::ErrorStatus es = CheckRecord(newVal, AcDbLayerTableRecord::desc(), database()); es != Acad::eOk)
    return es;
  m_layerId = newVal;
  return Acad::eOk;
}

ACHAR* AcDbEntity::linetype() const { return RecordName(m_linetypeId); }

Acad::ErrorStatus AcDbEntity::setLinetype(const ACHAR* newVal, Adesk::Boolean) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (newVal == nullptr) return Acad::eInvalidInput;
  AcDbDatabase* db = NamesDatabase(*this);
  if (db == nullptr) return Acad::eNoDatabase;
  AcDbObjectId id;
  if (Acad::ErrorStatus es = FindRecord(db->linetypeTableId(), newVal, id); es != Acad::eOk) return es;
  m_linetypeId = id;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLinetype(AcDbObjectId newVal, Adesk::Boolean) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (Acad::ErrorStatus es = CheckRecord(newVal, AcDbLinetypeTableRecord::desc(), database()); es != Acad::eOk)
    return es;
  m_linetypeId = newVal;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLinetypeScale(double newval, Adesk::Boolean) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(newval > 0.0)) return Acad::eOutOfRange;
  m_linetypeScale = newval;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setVisibility(AcDb::Visibility newVal, Adesk::Boolean) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (newVal != AcDb::kVisible && newVal != AcDb::kInvisible) return Acad::eInvalidInput;
  m_visibility = newVal;
  return Acad::eOk;
}

void AcDbEntity::setDatabaseDefaults() { setDatabaseDefaults(NamesDatabase(*this)); }

void AcDbEntity::setDatabaseDefaults(AcDbDatabase* pDb) {
  if (pDb == nullptr || checkWriteEnabled() != Acad::eOk) return;
  m_layerId = pDb->clayer();
  m_linetypeId = pDb->celtype();
  m_color = pDb->cecolor();
  m_linetypeScale = pDb->celtscale();
}

Acad::ErrorStatus AcDbEntity::highlight(const AcDbFullSubentPath&, const Adesk::Boolean) const {
  AcDbStub* stub = AcDbImpDatabase::stubOf(this);
  if (stub == nullptr) return Acad::eNotInDatabase;
  if (!isReadEnabled()) return Acad::eNotOpenForRead;
  stub->highlighted = true;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::unhighlight(const AcDbFullSubentPath&, const Adesk::Boolean) const {
  AcDbStub* stub = AcDbImpDatabase::stubOf(this);
  if (stub == nullptr) return Acad::eNotInDatabase;
  if (!isReadEnabled()) return Acad::eNotOpenForRead;
  stub->highlighted = false;
  return Acad::eOk;
}

void AcDbEntity::recordGraphicsModified(Adesk::Boolean setModified) {
  if (AcDbStub* stub = AcDbImpDatabase::stubOf(this); stub != nullptr && setModified) ++stub->graphicsModified;
}

Acad::ErrorStatus AcDbEntity::getGeomExtents(AcDbExtents&) const { return Acad::eInvalidExtents; }
Acad::ErrorStatus AcDbEntity::transformBy(const AcGeMatrix3d&) { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbEntity::explode(AcDbVoidPtrArray&) const { return Acad::eNotApplicable; }

Acad::ErrorStatus AcDbEntity::getTransformedCopy(const AcGeMatrix3d& xform, AcDbEntity*& pEnt) const {
  pEnt = nullptr;
  std::unique_ptr<AcRxObject> copy(clone());
  auto* entity = AcDbEntity::cast(copy.get());
  if (entity == nullptr) return Acad::eNotApplicable;
  const Acad::ErrorStatus es = entity->transformBy(xform);
  if (es != Acad::eOk) return es;
  copy.release();
  pEnt = entity;
  return Acad::eOk;
}

// --- AcDbCurve ----------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbCurve, AcDbEntity, L"")

AcDbCurve::AcDbCurve() = default;
AcDbCurve::AcDbCurve(const AcDbCurve& other) = default;
AcDbCurve::~AcDbCurve() = default;

Adesk::Boolean AcDbCurve::isClosed() const { return false; }
Acad::ErrorStatus AcDbCurve::getStartParam(double&) const { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbCurve::getEndParam(double&) const { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbCurve::getStartPoint(AcGePoint3d&) const { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbCurve::getEndPoint(AcGePoint3d&) const { return Acad::eNotApplicable; }
Acad::ErrorStatus AcDbCurve::getPointAtParam(double, AcGePoint3d&) const { return Acad::eNotApplicable; }
