#include "headless/acad/ImpDatabase.h"

#include <mutex>

#include "platform/acad/dbdict.h"
#include "platform/acad/dblayout.h"
#include "platform/acad/dbsymtb.h"
#include "platform/acad/dbtablestyle.h"

namespace {

// Object ids look like AutoCAD's (stub addresses): large and 16 apart, so that a handle or a
// count passed where an id belongs is told apart. They are never reused in the process.
constexpr Adesk::IntDbId kFirstObjectId = 0x7FF6'0000'0000;
constexpr Adesk::IntDbId kObjectIdStep = 16;

class ObjectIdRegister {
public:
  static ObjectIdRegister& instance() {
    static ObjectIdRegister* reg = new ObjectIdRegister;  // outlives every database
    return *reg;
  }
  Adesk::IntDbId enter(AcDbStub* stub) {
    std::lock_guard<std::mutex> lock(m_mutex);
    const Adesk::IntDbId id = m_next;
    m_next += kObjectIdStep;
    m_stubs.emplace(id, stub);
    return id;
  }
  void leave(Adesk::IntDbId id) {
    std::lock_guard<std::mutex> lock(m_mutex);
    m_stubs.erase(id);
  }
  AcDbStub* find(Adesk::IntDbId id) {
    std::lock_guard<std::mutex> lock(m_mutex);
    auto found = m_stubs.find(id);
    return found == m_stubs.end() ? nullptr : found->second;
  }

private:
  std::mutex m_mutex;
  std::unordered_map<Adesk::IntDbId, AcDbStub*> m_stubs;
  Adesk::IntDbId m_next = kFirstObjectId;
};

}  // namespace

AcDbImpDatabase::AcDbImpDatabase(AcDbDatabase& face) : m_face(face) {}

AcDbImpDatabase::~AcDbImpDatabase() {
  auto& reg = ObjectIdRegister::instance();
  for (const auto& stub : m_stubs) reg.leave(stub->id);
  // Objects go last to first: owned parts before their owners.
  while (!m_stubs.empty()) m_stubs.pop_back();
}

AcDbImpDatabase* AcDbImpDatabase::of(const AcDbDatabase* database) {
  return database == nullptr ? nullptr : database->m_pImpDb;
}

AcDbStub* AcDbImpDatabase::stubOf(const AcDbObject* object) { return object == nullptr ? nullptr : object->m_pStub; }

AcDbStub* AcDbImpDatabase::lookup(AcDbObjectId id) {
  if (id.isNull()) return nullptr;
  return ObjectIdRegister::instance().find(id.asOldId());
}

AcDbObject* AcDbImpDatabase::peek(AcDbObjectId id) {
  AcDbStub* stub = lookup(id);
  return stub == nullptr ? nullptr : stub->object.get();
}

AcDbObjectIterator* AcDbImpDatabase::newObjectIterator(const AcDbObjectIdArray& ids) {
  return new AcDbObjectIterator(ids);
}

Acad::ErrorStatus AcDbImpDatabase::add(AcDbObject* object, AcDbObjectId owner, AcDbObjectId* id, bool closed) {
  if (object == nullptr) return Acad::eNullObjectPointer;
  if (object->m_pStub != nullptr) return Acad::eAlreadyInDb;
  auto stub = std::make_unique<AcDbStub>();
  AcDbStub* raw = stub.get();
  raw->database = this;
  raw->object.reset(object);
  raw->handle = m_handseed++;
  raw->owner = owner;
  if (!closed) {
    raw->opens.push_back(AcDb::kForWrite);
    raw->writer = true;
  } else {
    raw->newObject = false;
  }
  raw->id = ObjectIdRegister::instance().enter(raw);
  object->m_pStub = raw;
  m_byHandle.emplace(raw->handle, raw);
  m_stubs.push_back(std::move(stub));
  if (id != nullptr) *id = raw->objectId();
  return object->addOwnedObjects();
}

Acad::ErrorStatus AcDbImpDatabase::open(AcDbStub& stub, AcDb::OpenMode mode, bool openErased, AcDbObject*& object) {
  object = nullptr;
  if (stub.erased && !openErased) return Acad::eWasErased;
  switch (mode) {
    case AcDb::kForRead:
      if (stub.writer) return Acad::eWasOpenForWrite;
      if (stub.notifier) return Acad::eWasOpenForNotify;
      if (stub.readers >= kMaxReaders) return Acad::eAtMaxReaders;
      ++stub.readers;
      break;
    case AcDb::kForWrite:
      if (!writeAllowed()) return Acad::eLockViolation;
      if (stub.writer) return Acad::eWasOpenForWrite;
      if (stub.readers > 0) return Acad::eWasOpenForRead;
      if (stub.notifier) return Acad::eWasOpenForNotify;
      stub.writer = true;
      break;
    case AcDb::kForNotify:
      if (stub.notifier) return Acad::eWasOpenForNotify;
      stub.notifier = true;
      break;
    default:
      return Acad::eInvalidInput;
  }
  stub.opens.push_back(mode);
  object = stub.object.get();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbImpDatabase::close(AcDbStub& stub) {
  if (stub.opens.empty()) return Acad::eInvalidOpenState;
  switch (stub.opens.back()) {
    case AcDb::kForRead: --stub.readers; break;
    case AcDb::kForWrite: stub.writer = false; break;
    case AcDb::kForNotify: stub.notifier = false; break;
  }
  stub.opens.pop_back();
  if (stub.opens.empty()) stub.newObject = false;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbImpDatabase::upgradeOpen(AcDbStub& stub) {
  if (stub.writer) return Acad::eOk;
  if (stub.readers == 0) return Acad::eNotOpenForRead;
  if (stub.readers > 1) return Acad::eHadMultipleReaders;
  if (!writeAllowed()) return Acad::eLockViolation;
  for (auto it = stub.opens.rbegin(); it != stub.opens.rend(); ++it) {
    if (*it == AcDb::kForRead) {
      *it = AcDb::kForWrite;
      break;
    }
  }
  stub.readers = 0;
  stub.writer = true;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbImpDatabase::downgradeOpen(AcDbStub& stub) {
  if (!stub.writer) return Acad::eNotOpenForWrite;
  for (auto it = stub.opens.rbegin(); it != stub.opens.rend(); ++it) {
    if (*it == AcDb::kForWrite) {
      *it = AcDb::kForRead;
      break;
    }
  }
  stub.writer = false;
  stub.readers = 1;
  return Acad::eOk;
}

bool AcDbImpDatabase::isRoot(const AcDbStub& stub) const {
  const AcDbObjectId id = stub.objectId();
  const Roots& r = m_roots;
  for (const AcDbObjectId& root :
       {r.blockTable, r.layerTable, r.linetypeTable, r.textStyleTable, r.regAppTable, r.dimStyleTable,
        r.viewportTable, r.viewTable, r.ucsTable, r.namedObjects, r.groups, r.layouts, r.tableStyles, r.modelSpace,
        r.paperSpace, r.layerZero, r.byLayer, r.byBlock}) {
    if (root == id) return true;
  }
  return false;
}

// AutoCAD drops an erased object's entry from the dictionary that owns it; unerasing does not
// bring the entry back.
void AcDbImpDatabase::removeFromOwningDictionary(const AcDbStub& stub) {
  auto* dictionary = AcDbDictionary::cast(peek(stub.owner));
  if (dictionary == nullptr) return;
  const AcDbObjectId id = stub.objectId();
  for (auto it = dictionary->m_entries.begin(); it != dictionary->m_entries.end(); ++it) {
    if (it->second.id == id) {
      dictionary->m_entries.erase(it);
      return;
    }
  }
}

Acad::ErrorStatus AcDbImpDatabase::erase(AcDbStub& stub, bool erasing) {
  if (erasing && stub.erased) return Acad::eWasErased;
  if (!erasing && !stub.erased) return Acad::eWasNotErased;
  if (isRoot(stub)) return Acad::eCannotBeErasedByCaller;
  const Acad::ErrorStatus es = stub.object->subErase(erasing);
  if (es != Acad::eOk) return es;
  stub.erased = erasing;
  if (erasing) {
    removeFromOwningDictionary(stub);
    // The extension dictionary goes with its object (and stays erased if the object comes back).
    if (AcDbStub* dictionary = lookup(stub.extensionDictionary); dictionary != nullptr) dictionary->erased = true;
  }
  return Acad::eOk;
}

AcDbStub* AcDbImpDatabase::findHandle(Adesk::UInt64 handle) const {
  auto found = m_byHandle.find(handle);
  return found == m_byHandle.end() ? nullptr : found->second;
}

Acad::ErrorStatus AcDbImpDatabase::setHandle(AcDbStub& stub, Adesk::UInt64 handle) {
  if (handle == 0 || stub.database != this) return Acad::eInvalidInput;
  if (handle == stub.handle) return Acad::eOk;
  if (m_byHandle.count(handle) != 0) return Acad::eHandleExists;
  m_byHandle.erase(stub.handle);
  stub.handle = handle;
  m_byHandle.emplace(handle, &stub);
  if (handle >= m_handseed) m_handseed = handle + 1;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbImpDatabase::setHandseed(Adesk::UInt64 seed) {
  for (const auto& entry : m_byHandle) {
    if (entry.first >= seed) return Acad::eInvalidInput;
  }
  m_handseed = seed;
  return Acad::eOk;
}

AcDbObjectId AcDbImpDatabase::addRecord(AcDbObjectId table, AcDbObject* record) {
  AcDbObjectId id;
  AcDbObject* owner = nullptr;
  if (acdbOpenAcDbObject(owner, table, AcDb::kForWrite) != Acad::eOk) {
    delete record;
    return id;
  }
  Acad::ErrorStatus es = Acad::eNotApplicable;
  if (auto* symbolTable = AcDbSymbolTable::cast(owner)) {
    es = symbolTable->add(id, static_cast<AcDbSymbolTableRecord*>(record));
  }
  owner->close();
  if (es != Acad::eOk) {
    delete record;
    return AcDbObjectId::kNull;
  }
  record->close();
  return id;
}

namespace {

AcDbObjectId AddDictionaryEntry(AcDbObjectId dictionaryId, const ACHAR* key, AcDbObject* value) {
  AcDbDictionary* dictionary = nullptr;
  AcDbObjectId id;
  if (acdbOpenObject(dictionary, dictionaryId, AcDb::kForWrite) != Acad::eOk) {
    delete value;
    return id;
  }
  if (dictionary->setAt(key, value, id) == Acad::eOk) {
    value->close();
  } else {
    delete value;
  }
  dictionary->close();
  return id;
}

template <class Table>
AcDbObjectId AddTable(AcDbImpDatabase& db) {
  AcDbObjectId id;
  if (db.add(new Table, AcDbObjectId::kNull, &id, true) != Acad::eOk) return AcDbObjectId::kNull;
  return id;
}

template <class Record>
Record* Named(const ACHAR* name) {
  auto* record = new Record;
  record->setName(name);
  return record;
}

}  // namespace

void AcDbImpDatabase::buildSkeleton(bool defaultDrawing) {
  Roots& r = m_roots;
  r.blockTable = AddTable<AcDbBlockTable>(*this);
  r.layerTable = AddTable<AcDbLayerTable>(*this);
  r.textStyleTable = AddTable<AcDbTextStyleTable>(*this);
  r.linetypeTable = AddTable<AcDbLinetypeTable>(*this);
  r.viewTable = AddTable<AcDbViewTable>(*this);
  r.ucsTable = AddTable<AcDbUCSTable>(*this);
  r.viewportTable = AddTable<AcDbViewportTable>(*this);
  r.regAppTable = AddTable<AcDbRegAppTable>(*this);
  r.dimStyleTable = AddTable<AcDbDimStyleTable>(*this);
  add(new AcDbDictionary, AcDbObjectId::kNull, &r.namedObjects, true);
  r.groups = AddDictionaryEntry(r.namedObjects, ACDB_GROUP_DICTIONARY, new AcDbDictionary);
  r.layouts = AddDictionaryEntry(r.namedObjects, ACDB_LAYOUT_DICTIONARY, new AcDbDictionary);
  r.tableStyles = AddDictionaryEntry(r.namedObjects, ACDB_TABLESTYLE_DICTIONARY, new AcDbDictionary);
  if (!defaultDrawing) return;

  r.modelSpace = addRecord(r.blockTable, Named<AcDbBlockTableRecord>(ACDB_MODEL_SPACE));
  r.paperSpace = addRecord(r.blockTable, Named<AcDbBlockTableRecord>(ACDB_PAPER_SPACE));

  auto* byBlock = Named<AcDbLinetypeTableRecord>(L"ByBlock");
  r.byBlock = addRecord(r.linetypeTable, byBlock);
  r.byLayer = addRecord(r.linetypeTable, Named<AcDbLinetypeTableRecord>(L"ByLayer"));
  auto* continuous = Named<AcDbLinetypeTableRecord>(L"Continuous");
  continuous->setComments(L"Solid line");
  r.continuous = addRecord(r.linetypeTable, continuous);

  auto* zero = Named<AcDbLayerTableRecord>(L"0");
  AcCmColor white;
  white.setColorIndex(7);
  zero->setColor(white);
  zero->setLinetypeObjectId(r.continuous);
  r.layerZero = addRecord(r.layerTable, zero);

  r.standardTextStyle = addRecord(r.textStyleTable, Named<AcDbTextStyleTableRecord>(L"Standard"));
  addRecord(r.regAppTable, Named<AcDbRegAppTableRecord>(L"ACAD"));
  addRecord(r.dimStyleTable, Named<AcDbDimStyleTableRecord>(L"Standard"));
  addRecord(r.viewportTable, Named<AcDbViewportTableRecord>(L"*Active"));

  auto* model = new AcDbLayout;
  model->setLayoutName(L"Model");
  model->setTabOrder(0);
  model->setBlockTableRecordId(r.modelSpace);
  AddDictionaryEntry(r.layouts, L"Model", model);
  auto* layout = new AcDbLayout;
  layout->setLayoutName(L"Layout1");
  layout->setTabOrder(1);
  layout->setBlockTableRecordId(r.paperSpace);
  AddDictionaryEntry(r.layouts, L"Layout1", layout);

  auto* tableStyle = new AcDbTableStyle;
  tableStyle->setName(L"Standard");
  r.standardTableStyle = AddDictionaryEntry(r.tableStyles, L"Standard", tableStyle);

  m_settings.clayer = r.layerZero;
  m_settings.celtype = r.byLayer;
  m_settings.textstyle = r.standardTextStyle;
  m_settings.tablestyle = r.standardTableStyle;
}
