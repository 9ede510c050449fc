// Symbol tables, their records and iterators; appending entities to block table records.
#include <cwchar>
#include <cwctype>
#include <string>

#include "headless/acad/ImpDatabase.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbsymtb.h"
#include "platform/acad/dbtable.h"

namespace {

std::wstring Upper(const ACHAR* text) {
  std::wstring upper;
  for (const ACHAR* p = text; *p != L'\0'; ++p) upper.push_back(static_cast<ACHAR>(std::towupper(static_cast<wint_t>(*p))));
  return upper;
}

ACHAR* CopyText(const std::wstring& text) {
  auto* copy = new ACHAR[text.size() + 1];
  std::wmemcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

// AutoCAD's symbol names may not hold these; block names may start with "*".
Acad::ErrorStatus CheckName(const ACHAR* name, bool isBlock) {
  if (name == nullptr || *name == L'\0') return Acad::eInvalidInput;
  static const std::wstring kForbidden = L"<>/\\\":;?*|,=`";
  for (const ACHAR* p = name; *p != L'\0'; ++p) {
    if (*p == L'*' && isBlock && p == name) continue;
    if (kForbidden.find(*p) != std::wstring::npos) return Acad::eInvalidSymbolTableName;
  }
  return Acad::eOk;
}

const AcDbSymbolTableRecord* LiveRecord(AcDbObjectId id) {
  const AcDbStub* stub = AcDbImpDatabase::lookup(id);
  if (stub == nullptr || stub->erased) return nullptr;
  return static_cast<const AcDbSymbolTableRecord*>(stub->object.get());
}

// Which records a table holds.
bool Holds(const AcDbSymbolTable& table, const AcDbSymbolTableRecord& record) {
  if (AcDbBlockTable::cast(&table)) return AcDbBlockTableRecord::cast(&record) != nullptr;
  if (AcDbLayerTable::cast(&table)) return AcDbLayerTableRecord::cast(&record) != nullptr;
  if (AcDbLinetypeTable::cast(&table)) return AcDbLinetypeTableRecord::cast(&record) != nullptr;
  if (AcDbTextStyleTable::cast(&table)) return AcDbTextStyleTableRecord::cast(&record) != nullptr;
  if (AcDbRegAppTable::cast(&table)) return AcDbRegAppTableRecord::cast(&record) != nullptr;
  if (AcDbDimStyleTable::cast(&table)) return AcDbDimStyleTableRecord::cast(&record) != nullptr;
  if (AcDbViewportTable::cast(&table)) return AcDbViewportTableRecord::cast(&record) != nullptr;
  return false;
}

}  // namespace

// --- AcDbSymbolTable ----------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbSymbolTable, AcDbObject, L"TABLE")

AcDbSymbolTable::AcDbSymbolTable() = default;
AcDbSymbolTable::~AcDbSymbolTable() = default;

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* entryName, AcDbObjectId& recordId, bool getErasedRecord) const {
  recordId.setNull();
  if (entryName == nullptr) return Acad::eInvalidInput;
  const std::wstring key = Upper(entryName);
  for (const AcDbObjectId& id : m_records) {
    const AcDbStub* stub = AcDbImpDatabase::lookup(id);
    if (stub == nullptr || (stub->erased && !getErasedRecord)) continue;
    const ACHAR* name = nullptr;
    static_cast<const AcDbSymbolTableRecord*>(stub->object.get())->getName(name);
    if (Upper(name) == key) {
      recordId = id;
      return Acad::eOk;
    }
  }
  return Acad::eKeyNotFound;
}

Acad::ErrorStatus AcDbSymbolTable::getRecordAt(const ACHAR* entryName, AcDbObject*& pRec, AcDb::OpenMode openMode,
                                               bool openErasedRec) const {
  pRec = nullptr;
  AcDbObjectId id;
  if (Acad::ErrorStatus es = getAt(entryName, id, openErasedRec); es != Acad::eOk) return es;
  return acdbOpenAcDbObject(pRec, id, openMode, openErasedRec);
}

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* entryName, AcDbSymbolTableRecord*& pRec,
                                         AcDb::OpenMode openMode, bool openErasedRec) const {
  AcDbObject* object = nullptr;
  const Acad::ErrorStatus es = getRecordAt(entryName, object, openMode, openErasedRec);
  pRec = AcDbSymbolTableRecord::cast(object);
  return es;
}

bool AcDbSymbolTable::has(const ACHAR* name) const {
  AcDbObjectId id;
  return getAt(name, id) == Acad::eOk;
}

bool AcDbSymbolTable::has(AcDbObjectId id) const { return m_records.contains(id) && LiveRecord(id) != nullptr; }

Acad::ErrorStatus AcDbSymbolTable::add(AcDbSymbolTableRecord* pRecord) {
  AcDbObjectId unused;
  return add(unused, pRecord);
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbObjectId& recordId, AcDbSymbolTableRecord* pRecord) {
  recordId.setNull();
  AcDbStub* stub = AcDbImpDatabase::stubOf(this);
  if (stub == nullptr) return Acad::eNoDatabase;
  if (!stub->writer) return Acad::eNotOpenForWrite;
  if (pRecord == nullptr) return Acad::eNullObjectPointer;
  if (!pRecord->objectId().isNull()) return Acad::eAlreadyInDb;
  if (!Holds(*this, *pRecord)) return Acad::eWrongObjectType;
  const bool isBlock = AcDbBlockTableRecord::cast(pRecord) != nullptr;
  if (Acad::ErrorStatus es = CheckName(pRecord->m_name.c_str(), isBlock); es != Acad::eOk) return es;
  // "*U" (or any "*" and one letter) asks for the next free anonymous block name of that letter.
  if (isBlock && pRecord->m_name.size() == 2 && pRecord->m_name[0] == L'*') {
    const std::wstring prefix = Upper(pRecord->m_name.c_str());
    for (int n = 1;; ++n) {
      const std::wstring candidate = prefix + std::to_wstring(n);
      if (!has(candidate.c_str())) {
        pRecord->m_name = candidate;
        break;
      }
    }
  }
  if (has(pRecord->m_name.c_str())) return Acad::eDuplicateRecordName;
  AcDbObjectId id;
  const Acad::ErrorStatus es = stub->database->add(pRecord, stub->objectId(), &id);
  if (es != Acad::eOk) return es;
  m_records.append(id);
  recordId = id;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::newIterator(AcDbSymbolTableIterator*& pIterator, bool atBeginning,
                                               bool skipDeleted) const {
  pIterator = new AcDbSymbolTableIterator(m_records, atBeginning, skipDeleted);
  return Acad::eOk;
}

// --- AcDbSymbolTableRecord ----------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbSymbolTableRecord, AcDbObject, L"")

AcDbSymbolTableRecord::AcDbSymbolTableRecord() = default;
AcDbSymbolTableRecord::AcDbSymbolTableRecord(const AcDbSymbolTableRecord& other) = default;
AcDbSymbolTableRecord::~AcDbSymbolTableRecord() = default;

Acad::ErrorStatus AcDbSymbolTableRecord::getName(ACHAR*& pName) const {
  pName = CopyText(m_name);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::getName(const ACHAR*& pName) const {
  pName = m_name.c_str();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::setName(const ACHAR* pName) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (Acad::ErrorStatus es = CheckName(pName, AcDbBlockTableRecord::cast(this) != nullptr); es != Acad::eOk) return es;
  if (const auto* table = AcDbSymbolTable::cast(AcDbImpDatabase::peek(ownerId()))) {
    AcDbObjectId other;
    if (table->getAt(pName, other) == Acad::eOk && other != objectId()) return Acad::eDuplicateRecordName;
  }
  m_name = pName;
  return Acad::eOk;
}

// --- Iterators ----------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbSymbolTableIterator, AcRxObject, L"")

AcDbSymbolTableIterator::AcDbSymbolTableIterator(const AcDbObjectIdArray& ids, bool atBeginning, bool skipDeleted)
    : m_ids(ids) {
  start(atBeginning, skipDeleted);
}
AcDbSymbolTableIterator::~AcDbSymbolTableIterator() = default;

void AcDbSymbolTableIterator::skip(bool forward, bool skipDeleted) {
  while (skipDeleted && !done() && m_ids[m_index].isErased()) m_index += forward ? 1 : -1;
}
void AcDbSymbolTableIterator::start(bool atBeginning, bool skipDeleted) {
  m_index = atBeginning ? 0 : m_ids.length() - 1;
  skip(atBeginning, skipDeleted);
}
bool AcDbSymbolTableIterator::done() const { return m_index < 0 || m_index >= m_ids.length(); }
void AcDbSymbolTableIterator::step(bool forward, bool skipDeleted) {
  if (done()) return;
  m_index += forward ? 1 : -1;
  skip(forward, skipDeleted);
}
Acad::ErrorStatus AcDbSymbolTableIterator::getRecordId(AcDbObjectId& id) const {
  if (done()) return Acad::eIteratorDone;
  id = m_ids[m_index];
  return Acad::eOk;
}
Acad::ErrorStatus AcDbSymbolTableIterator::getRecord(AcDbSymbolTableRecord*& pRecord, AcDb::OpenMode openMode,
                                                     bool openErasedRecord) const {
  pRecord = nullptr;
  if (done()) return Acad::eIteratorDone;
  return acdbOpenObject(pRecord, m_ids[m_index], openMode, openErasedRecord);
}

#define KD_TYPED_ITERATOR(ITERATOR, RECORD)                                                               \
  KD_ACRX_DEFINE_MEMBERS(ITERATOR, AcDbSymbolTableIterator, L"")                                          \
  ITERATOR::~ITERATOR() = default;                                                                        \
  Acad::ErrorStatus ITERATOR::getRecord(RECORD*& pRecord, AcDb::OpenMode openMode, bool openErasedRecord) \
      const {                                                                                             \
    pRecord = nullptr;                                                                                    \
    if (done()) return Acad::eIteratorDone;                                                               \
    return acdbOpenObject(pRecord, m_ids[m_index], openMode, openErasedRecord);                           \
  }

#define KD_TYPED_TABLE(TABLE, RECORD, ITERATOR, DXF)                                                         \
  KD_ACRX_DEFINE_MEMBERS(TABLE, AcDbSymbolTable, DXF)                                                        \
  TABLE::TABLE() = default;                                                                                  \
  TABLE::~TABLE() = default;                                                                                 \
  Acad::ErrorStatus TABLE::getAt(const ACHAR* entryName, RECORD*& pRec, AcDb::OpenMode openMode,             \
                                 bool openErasedRec) const {                                                 \
    AcDbObject* object = nullptr;                                                                            \
    const Acad::ErrorStatus es = getRecordAt(entryName, object, openMode, openErasedRec);                    \
    pRec = RECORD::cast(object);                                                                             \
    return es;                                                                                               \
  }                                                                                                          \
  Acad::ErrorStatus TABLE::getAt(const ACHAR* entryName, AcDbObjectId& recordId, bool getErasedRec) const {  \
    return AcDbSymbolTable::getAt(entryName, recordId, getErasedRec);                                        \
  }                                                                                                          \
  Acad::ErrorStatus TABLE::add(RECORD* pRecord) { return AcDbSymbolTable::add(pRecord); }                    \
  Acad::ErrorStatus TABLE::add(AcDbObjectId& recordId, RECORD* pRecord) {                                    \
    return AcDbSymbolTable::add(recordId, pRecord);                                                          \
  }                                                                                                          \
  Acad::ErrorStatus TABLE::newIterator(ITERATOR*& pIterator, bool atBeginning, bool skipDeleted) const {     \
    pIterator = new ITERATOR(recordIds(), atBeginning, skipDeleted);                                         \
    return Acad::eOk;                                                                                        \
  }

KD_TYPED_ITERATOR(AcDbBlockTableIterator, AcDbBlockTableRecord)
KD_TYPED_ITERATOR(AcDbLayerTableIterator, AcDbLayerTableRecord)
KD_TYPED_ITERATOR(AcDbLinetypeTableIterator, AcDbLinetypeTableRecord)
KD_TYPED_ITERATOR(AcDbTextStyleTableIterator, AcDbTextStyleTableRecord)
KD_TYPED_TABLE(AcDbBlockTable, AcDbBlockTableRecord, AcDbBlockTableIterator, L"TABLE")
KD_TYPED_TABLE(AcDbLayerTable, AcDbLayerTableRecord, AcDbLayerTableIterator, L"TABLE")
KD_TYPED_TABLE(AcDbLinetypeTable, AcDbLinetypeTableRecord, AcDbLinetypeTableIterator, L"TABLE")
KD_TYPED_TABLE(AcDbTextStyleTable, AcDbTextStyleTableRecord, AcDbTextStyleTableIterator, L"TABLE")

// --- Block table records ------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbBlockTableRecord, AcDbSymbolTableRecord, L"BLOCK_RECORD")

AcDbBlockTableRecord::AcDbBlockTableRecord() = default;
AcDbBlockTableRecord::~AcDbBlockTableRecord() = default;

namespace {

// What an entity has not set, it takes from the database it joins (as AutoCAD gives a new entity
// the current layer, line type, text style and text size).
Acad::ErrorStatus TakeDefaults(AcDbEntity& entity, AcDbImpDatabase& db) {
  for (const AcDbObjectId& id : {entity.layerId(), entity.linetypeId()}) {
    const AcDbStub* stub = AcDbImpDatabase::lookup(id);
    if (!id.isNull() && (stub == nullptr || stub->database != &db)) return Acad::eWrongDatabase;
  }
  if (entity.layerId().isNull()) entity.setLayer(db.settings().clayer);
  if (entity.linetypeId().isNull()) entity.setLinetype(db.settings().celtype);
  if (auto* text = AcDbText::cast(&entity)) {
    if (text->height() <= 0.0) text->setHeight(db.settings().textsize);
    if (text->textStyle().isNull()) text->setTextStyle(db.settings().textstyle);
  }
  if (auto* table = AcDbTable::cast(&entity); table != nullptr && table->tableStyle().isNull())
    table->setTableStyle(db.settings().tablestyle);
  return Acad::eOk;
}

}  // namespace

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbEntity* pEntity) {
  AcDbObjectId unused;
  return appendAcDbEntity(unused, pEntity);
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& pOutputId, AcDbEntity* pEntity) {
  pOutputId.setNull();
  AcDbStub* stub = AcDbImpDatabase::stubOf(this);
  if (stub == nullptr) return Acad::eNoDatabase;
  if (!stub->writer) return Acad::eNotOpenForWrite;
  if (pEntity == nullptr) return Acad::eNullEntityPointer;
  if (!pEntity->objectId().isNull()) return Acad::eAlreadyInDb;
  if (Acad::ErrorStatus es = TakeDefaults(*pEntity, *stub->database); es != Acad::eOk) return es;
  AcDbObjectId id;
  const Acad::ErrorStatus es = stub->database->add(pEntity, stub->objectId(), &id);
  if (es != Acad::eOk) return es;
  m_entities.append(id);
  pOutputId = id;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& pIterator, bool atBeginning,
                                                    bool skipDeleted) const {
  pIterator = new AcDbBlockTableRecordIterator(m_entities, atBeginning, skipDeleted);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::setOrigin(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_origin = pt;
  return Acad::eOk;
}

bool AcDbBlockTableRecord::isLayout() const {
  const ACHAR* name = nullptr;
  getName(name);
  const std::wstring upper = Upper(name);
  return upper == L"*MODEL_SPACE" || upper.rfind(L"*PAPER_SPACE", 0) == 0;
}

bool AcDbBlockTableRecord::isAnonymous() const {
  const ACHAR* name = nullptr;
  getName(name);
  return name[0] == L'*' && !isLayout();
}

Acad::ErrorStatus AcDbBlockTableRecord::getBlockReferenceIds(AcDbObjectIdArray& ids, bool, bool) const {
  const AcDbStub* stub = AcDbImpDatabase::stubOf(this);
  if (stub == nullptr) return Acad::eNotInDatabase;
  const AcDbObjectId self = stub->objectId();
  for (const auto& other : stub->database->stubs()) {
    if (other->erased) continue;
    if (const auto* ref = AcDbBlockReference::cast(other->object.get()); ref != nullptr && ref->blockTableRecord() == self)
      ids.append(other->objectId());
  }
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::addOwnedObjects() {
  AcDbStub* stub = AcDbImpDatabase::stubOf(this);
  if (Acad::ErrorStatus es = stub->database->add(new AcDbBlockBegin, stub->objectId(), &m_blockBegin, true);
      es != Acad::eOk)
    return es;
  return stub->database->add(new AcDbBlockEnd, stub->objectId(), &m_blockEnd, true);
}

KD_ACRX_DEFINE_MEMBERS(AcDbBlockTableRecordIterator, AcRxObject, L"")

AcDbBlockTableRecordIterator::AcDbBlockTableRecordIterator(const AcDbObjectIdArray& ids, bool atBeginning,
                                                           bool skipDeleted)
    : m_ids(ids) {
  start(atBeginning, skipDeleted);
}
AcDbBlockTableRecordIterator::~AcDbBlockTableRecordIterator() = default;

void AcDbBlockTableRecordIterator::skip(bool forward, bool skipDeleted) {
  while (skipDeleted && !done() && m_ids[m_index].isErased()) m_index += forward ? 1 : -1;
}
void AcDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) {
  m_index = atBeginning ? 0 : m_ids.length() - 1;
  skip(atBeginning, skipDeleted);
}
bool AcDbBlockTableRecordIterator::done() const { return m_index < 0 || m_index >= m_ids.length(); }
void AcDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) {
  if (done()) return;
  m_index += forward ? 1 : -1;
  skip(forward, skipDeleted);
}
Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityId(AcDbObjectId& entityId) const {
  if (done()) return Acad::eIteratorDone;
  entityId = m_ids[m_index];
  return Acad::eOk;
}
Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntity(AcDbEntity*& pEntity, AcDb::OpenMode openMode,
                                                          bool openErasedEntity) const {
  pEntity = nullptr;
  if (done()) return Acad::eIteratorDone;
  return acdbOpenAcDbEntity(pEntity, m_ids[m_index], openMode, openErasedEntity);
}

// --- Layers -------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbLayerTableRecord, AcDbSymbolTableRecord, L"LAYER")

AcDbLayerTableRecord::AcDbLayerTableRecord() { m_color.setColorIndex(7); }
AcDbLayerTableRecord::~AcDbLayerTableRecord() = default;

void AcDbLayerTableRecord::setColor(const AcCmColor& color) {
  if (checkWriteEnabled() == Acad::eOk) m_color = color;
}
void AcDbLayerTableRecord::setIsOff(bool off) {
  if (checkWriteEnabled() == Acad::eOk) m_off = off;
}
Acad::ErrorStatus AcDbLayerTableRecord::setIsFrozen(bool frozen) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_frozen = frozen;
  return Acad::eOk;
}
void AcDbLayerTableRecord::setIsLocked(bool locked) {
  if (checkWriteEnabled() == Acad::eOk) m_locked = locked;
}
Acad::ErrorStatus AcDbLayerTableRecord::setIsPlottable(bool plot) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_plottable = plot;
  return Acad::eOk;
}
void AcDbLayerTableRecord::setLinetypeObjectId(AcDbObjectId id) {
  if (checkWriteEnabled() == Acad::eOk && AcDbLinetypeTableRecord::cast(AcDbImpDatabase::peek(id)) != nullptr)
    m_linetype = id;
}

// A new layer draws continuous lines unless given a line type.
Acad::ErrorStatus AcDbLayerTableRecord::addOwnedObjects() {
  if (m_linetype.isNull()) m_linetype = AcDbImpDatabase::stubOf(this)->database->roots().continuous;
  return Acad::eOk;
}

// --- Line types ---------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbLinetypeTableRecord, AcDbSymbolTableRecord, L"LTYPE")

AcDbLinetypeTableRecord::AcDbLinetypeTableRecord() = default;
AcDbLinetypeTableRecord::~AcDbLinetypeTableRecord() = default;

Acad::ErrorStatus AcDbLinetypeTableRecord::comments(ACHAR*& pString) const {
  pString = CopyText(m_comments);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbLinetypeTableRecord::setComments(const ACHAR* pString) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_comments = pString == nullptr ? L"" : pString;
  return Acad::eOk;
}
void AcDbLinetypeTableRecord::setPatternLength(double patternLength) {
  if (checkWriteEnabled() == Acad::eOk) m_patternLength = patternLength;
}
void AcDbLinetypeTableRecord::setNumDashes(int count) {
  if (checkWriteEnabled() == Acad::eOk && count >= 0) m_dashes.resize(static_cast<size_t>(count), 0.0);
}
double AcDbLinetypeTableRecord::dashLengthAt(int index) const {
  return index >= 0 && index < numDashes() ? m_dashes[static_cast<size_t>(index)] : 0.0;
}
Acad::ErrorStatus AcDbLinetypeTableRecord::setDashLengthAt(int index, double value) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (index < 0 || index >= numDashes()) return Acad::eInvalidIndex;
  m_dashes[static_cast<size_t>(index)] = value;
  return Acad::eOk;
}
void AcDbLinetypeTableRecord::setIsScaledToFit(bool scaledToFit) {
  if (checkWriteEnabled() == Acad::eOk) m_scaledToFit = scaledToFit;
}

// --- Text styles --------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbTextStyleTableRecord, AcDbSymbolTableRecord, L"STYLE")

AcDbTextStyleTableRecord::AcDbTextStyleTableRecord() = default;
AcDbTextStyleTableRecord::~AcDbTextStyleTableRecord() = default;

Acad::ErrorStatus AcDbTextStyleTableRecord::setTextSize(double size) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (size < 0.0) return Acad::eInvalidInput;
  m_textSize = size;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setXScale(double xScale) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(xScale > 0.0)) return Acad::eInvalidInput;
  m_xScale = xScale;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setObliquingAngle(double obliquingAngle) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_obliquingAngle = obliquingAngle;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setPriorSize(double priorSize) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(priorSize > 0.0)) return Acad::eInvalidInput;
  m_priorSize = priorSize;
  return Acad::eOk;
}
void AcDbTextStyleTableRecord::setIsShapeFile(bool shape) {
  if (checkWriteEnabled() == Acad::eOk) m_shapeFile = shape;
}
void AcDbTextStyleTableRecord::setIsVertical(bool vertical) {
  if (checkWriteEnabled() == Acad::eOk) m_vertical = vertical;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::fileName(ACHAR*& fileName) const {
  fileName = CopyText(m_fileName);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setFileName(const ACHAR* fileName) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_fileName = fileName == nullptr ? L"" : fileName;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::bigFontFileName(ACHAR*& fileName) const {
  fileName = CopyText(m_bigFontFileName);
  return Acad::eOk;
}
Acad::ErrorStatus AcDbTextStyleTableRecord::setBigFontFileName(const ACHAR* fileName) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_bigFontFileName = fileName == nullptr ? L"" : fileName;
  return Acad::eOk;
}

// --- Tables whose records are names only --------------------------------------------------------

#define KD_PLAIN_CLASS(CLASS, PARENT, DXF) \
  KD_ACRX_DEFINE_MEMBERS(CLASS, PARENT, DXF) \
  CLASS::CLASS() = default;                  \
  CLASS::~CLASS() = default;

KD_PLAIN_CLASS(AcDbRegAppTable, AcDbSymbolTable, L"TABLE")
KD_PLAIN_CLASS(AcDbRegAppTableRecord, AcDbSymbolTableRecord, L"APPID")
KD_PLAIN_CLASS(AcDbDimStyleTable, AcDbSymbolTable, L"TABLE")
KD_PLAIN_CLASS(AcDbDimStyleTableRecord, AcDbSymbolTableRecord, L"DIMSTYLE")
KD_PLAIN_CLASS(AcDbViewportTable, AcDbSymbolTable, L"TABLE")
KD_PLAIN_CLASS(AcDbViewportTableRecord, AcDbSymbolTableRecord, L"VPORT")
KD_PLAIN_CLASS(AcDbViewTable, AcDbSymbolTable, L"TABLE")
KD_PLAIN_CLASS(AcDbUCSTable, AcDbSymbolTable, L"TABLE")
