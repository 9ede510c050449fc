// Run-time classes, object ids and handles, AcDbObject and the open functions.
#include <cstring>
#include <cwchar>
#include <cwctype>

#include "headless/acad/ImpDatabase.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/acutmem.h"
#include "platform/acad/dbdict.h"

// --- Run-time classes ---------------------------------------------------------------------------

AcRxClass::AcRxClass(const ACHAR* className, const ACHAR* dxfName, AcRxClass* parent)
    : m_name(className), m_dxfName(dxfName == nullptr ? L"" : dxfName), m_parent(parent) {}

bool AcRxClass::isDerivedFrom(const AcRxClass* other) const {
  for (const AcRxClass* c = this; c != nullptr; c = c->m_parent)
    if (c == other) return true;
  return false;
}

AcRxObject::~AcRxObject() = default;

AcRxClass* AcRxObject::desc() {
  static AcRxClass description(L"AcRxObject", L"", nullptr);
  return &description;
}

AcRxClass* AcRxObject::isA() const { return AcRxObject::desc(); }

bool AcRxObject::isKindOf(const AcRxClass* aClass) const { return aClass != nullptr && isA()->isDerivedFrom(aClass); }

AcRxObject* AcRxObject::clone() const { return nullptr; }

// --- Strings handed to callers ------------------------------------------------------------------

void acutDelString(ACHAR*& pString) {
  delete[] pString;
  pString = nullptr;
}

const AcDbFullSubentPath kNullSubent;

// --- Handles and ids ----------------------------------------------------------------------------

AcDbHandle::AcDbHandle(const ACHAR* hexString) {
  if (hexString == nullptr || *hexString == L'\0' || std::wcslen(hexString) > 16) return;
  Adesk::UInt64 value = 0;
  for (const ACHAR* p = hexString; *p != L'\0'; ++p) {
    const wint_t c = std::towupper(static_cast<wint_t>(*p));
    unsigned digit;
    if (c >= L'0' && c <= L'9') {
      digit = static_cast<unsigned>(c - L'0');
    } else if (c >= L'A' && c <= L'F') {
      digit = static_cast<unsigned>(c - L'A' + 10);
    } else {
      return;
    }
    value = (value << 4) | digit;
  }
  m_value = value;
}

void AcDbHandle::getIntoAsciiBuffer(ACHAR* pBuf, size_t nBufLen) const {
  if (pBuf == nullptr || nBufLen == 0) return;
  if (nBufLen < 17) {
    pBuf[0] = L'\0';
    return;
  }
  std::swprintf(pBuf, nBufLen, L"%llX", static_cast<unsigned long long>(m_value));
}

const AcDbObjectId AcDbObjectId::kNull;

bool AcDbObjectId::isValid() const { return AcDbImpDatabase::lookup(*this) != nullptr; }

bool AcDbObjectId::isErased() const {
  const AcDbStub* stub = AcDbImpDatabase::lookup(*this);
  return stub != nullptr && stub->erased;
}

AcDbHandle AcDbObjectId::handle() const {
  AcDbHandle h;
  if (const AcDbStub* stub = AcDbImpDatabase::lookup(*this)) h = stub->handle;
  return h;
}

AcDbDatabase* AcDbObjectId::database() const {
  const AcDbStub* stub = AcDbImpDatabase::lookup(*this);
  return stub == nullptr ? nullptr : &stub->database->face();
}

AcRxClass* AcDbObjectId::objectClass() const {
  const AcDbStub* stub = AcDbImpDatabase::lookup(*this);
  return stub == nullptr ? nullptr : stub->object->isA();
}

// --- AcDbObject ---------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbObject, AcRxObject, L"")

AcDbObject::AcDbObject() = default;
AcDbObject::AcDbObject(const AcDbObject& other) : AcRxObject(other) {}
AcDbObject::~AcDbObject() = default;

AcDbObjectId AcDbObject::objectId() const { return m_pStub == nullptr ? AcDbObjectId::kNull : m_pStub->objectId(); }

AcDbObjectId AcDbObject::ownerId() const { return m_pStub == nullptr ? AcDbObjectId::kNull : m_pStub->owner; }

Acad::ErrorStatus AcDbObject::setOwnerId(AcDbObjectId objId) {
  if (m_pStub == nullptr) return Acad::eNotInDatabase;
  if (!m_pStub->writer) return Acad::eNotOpenForWrite;
  m_pStub->owner = objId;
  return Acad::eOk;
}

void AcDbObject::getAcDbHandle(AcDbHandle& handle) const {
  handle.setNull();
  if (m_pStub != nullptr) handle = m_pStub->handle;
}

AcDbDatabase* AcDbObject::database() const { return m_pStub == nullptr ? nullptr : &m_pStub->database->face(); }

Acad::ErrorStatus AcDbObject::checkWriteEnabled() const {
  return m_pStub == nullptr || m_pStub->writer ? Acad::eOk : Acad::eNotOpenForWrite;
}

Acad::ErrorStatus AcDbObject::createExtensionDictionary() {
  if (m_pStub == nullptr) return Acad::eNotInDatabase;
  if (!m_pStub->writer) return Acad::eNotOpenForWrite;
  if (!m_pStub->extensionDictionary.isNull()) return Acad::eAlreadyInDb;
  AcDbObjectId id;
  const Acad::ErrorStatus es = m_pStub->database->add(new AcDbDictionary, objectId(), &id, true);
  if (es != Acad::eOk) return es;
  m_pStub->extensionDictionary = id;
  return Acad::eOk;
}

AcDbObjectId AcDbObject::extensionDictionary() const {
  return m_pStub == nullptr ? AcDbObjectId::kNull : m_pStub->extensionDictionary;
}

Acad::ErrorStatus AcDbObject::releaseExtensionDictionary() {
  if (m_pStub == nullptr) return Acad::eNotInDatabase;
  if (!m_pStub->writer) return Acad::eNotOpenForWrite;
  AcDbStub* dictionary = AcDbImpDatabase::lookup(m_pStub->extensionDictionary);
  if (dictionary == nullptr) return Acad::eNotApplicable;
  if (auto* dict = AcDbDictionary::cast(dictionary->object.get()); dict != nullptr && dict->numEntries() > 0)
    return Acad::eContainerNotEmpty;
  dictionary->erased = true;
  m_pStub->extensionDictionary.setNull();
  return Acad::eOk;
}

Acad::ErrorStatus AcDbObject::upgradeOpen() {
  return m_pStub == nullptr ? Acad::eOk : m_pStub->database->upgradeOpen(*m_pStub);
}

Acad::ErrorStatus AcDbObject::downgradeOpen() {
  return m_pStub == nullptr ? Acad::eOk : m_pStub->database->downgradeOpen(*m_pStub);
}

// An object that never joined a database is its maker's; closing it ends it, as the smart
// pointers of ObjectARX end such objects.
Acad::ErrorStatus AcDbObject::close() {
  if (m_pStub == nullptr) {
    delete this;
    return Acad::eOk;
  }
  return m_pStub->database->close(*m_pStub);
}

Acad::ErrorStatus AcDbObject::erase(Adesk::Boolean erasing) {
  if (m_pStub == nullptr) return Acad::eNotInDatabase;
  if (!m_pStub->writer) return Acad::eNotOpenForWrite;
  return m_pStub->database->erase(*m_pStub, erasing);
}

Adesk::Boolean AcDbObject::isErased() const { return m_pStub != nullptr && m_pStub->erased; }
Adesk::Boolean AcDbObject::isReadEnabled() const {
  return m_pStub == nullptr || m_pStub->readers > 0 || m_pStub->writer;
}
Adesk::Boolean AcDbObject::isWriteEnabled() const { return m_pStub == nullptr || m_pStub->writer; }
Adesk::Boolean AcDbObject::isNotifyEnabled() const { return m_pStub != nullptr && m_pStub->notifier; }
Adesk::Boolean AcDbObject::isNewObject() const { return m_pStub != nullptr && m_pStub->newObject; }

Acad::ErrorStatus AcDbObject::subErase(Adesk::Boolean) { return Acad::eOk; }
Acad::ErrorStatus AcDbObject::addOwnedObjects() { return Acad::eOk; }

// --- Opening ------------------------------------------------------------------------------------

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& pObj, AcDbObjectId id, AcDb::OpenMode mode, bool openErasedObject) {
  pObj = nullptr;
  if (id.isNull()) return Acad::eNullObjectId;
  AcDbStub* stub = AcDbImpDatabase::lookup(id);
  if (stub == nullptr) return Acad::eInvalidObjectId;
  return stub->database->open(*stub, mode, openErasedObject, pObj);
}

Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& pEnt, AcDbObjectId id, AcDb::OpenMode mode, bool openErasedEntity) {
  pEnt = nullptr;
  const AcRxClass* objectClass = id.objectClass();
  if (objectClass != nullptr && !objectClass->isDerivedFrom(AcDbEntity::desc())) return Acad::eNotAnEntity;
  AcDbObject* object = nullptr;
  const Acad::ErrorStatus es = acdbOpenAcDbObject(object, id, mode, openErasedEntity);
  if (es == Acad::eOk) pEnt = AcDbEntity::cast(object);
  return es;
}

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& objId, const ads_name objName) {
  objId.setNull();
  if (objName == nullptr) return Acad::eInvalidAdsName;
  AcDbObjectId id;
  id.setFromOldId(objName[0]);
  if (!id.isValid()) return Acad::eInvalidAdsName;
  objId = id;
  return Acad::eOk;
}

Acad::ErrorStatus acdbGetAdsName(ads_name& objName, AcDbObjectId objId) {
  objName[0] = objName[1] = 0;
  if (objId.isNull()) return Acad::eNullObjectId;
  if (!objId.isValid()) return Acad::eInvalidObjectId;
  objName[0] = static_cast<Adesk::LongPtr>(objId.asOldId());
  return Acad::eOk;
}

// --- Iterating owned objects --------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbObjectIterator, AcRxObject, L"")

AcDbObjectIterator::AcDbObjectIterator(const AcDbObjectIdArray& ids) : m_ids(ids) { start(); }
AcDbObjectIterator::~AcDbObjectIterator() = default;

bool AcDbObjectIterator::done() const { return m_index < 0 || m_index >= m_ids.length(); }

void AcDbObjectIterator::start(bool atEnd) {
  m_index = atEnd ? m_ids.length() - 1 : 0;
  while (!done() && m_ids[m_index].isErased()) m_index += atEnd ? -1 : 1;
}

void AcDbObjectIterator::step(bool backwards, bool skipErasedObjects) {
  do {
    m_index += backwards ? -1 : 1;
  } while (skipErasedObjects && !done() && m_ids[m_index].isErased());
}

AcDbObjectId AcDbObjectIterator::objectId() const { return done() ? AcDbObjectId::kNull : m_ids[m_index]; }
