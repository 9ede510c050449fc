// Dictionaries, Xrecords, groups and layouts.
#include <cstring>
#include <cwchar>
#include <cwctype>

#include "headless/acad/ImpDatabase.h"
#include "headless/acad/Resbuf.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/acutads.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbgroup.h"
#include "platform/acad/dblayout.h"
#include "platform/acad/dbxrecrd.h"

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

}  // namespace

// --- Dictionary ---------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbDictionary, AcDbObject, L"DICTIONARY")

AcDbDictionary::AcDbDictionary() = default;
AcDbDictionary::~AcDbDictionary() = default;

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* entryName, AcDbObjectId& entryObj) const {
  entryObj.setNull();
  if (entryName == nullptr) return Acad::eInvalidKey;
  const auto found = m_entries.find(Upper(entryName));
  if (found == m_entries.end()) return Acad::eKeyNotFound;
  entryObj = found->second.id;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* entryName, AcDbObject*& entryObj, AcDb::OpenMode mode) const {
  entryObj = nullptr;
  AcDbObjectId id;
  if (Acad::ErrorStatus es = getAt(entryName, id); es != Acad::eOk) return es;
  return acdbOpenAcDbObject(entryObj, id, mode);
}

Acad::ErrorStatus AcDbDictionary::nameAt(AcDbObjectId objId, ACHAR*& entryName) const {
  entryName = nullptr;
  for (const auto& [upper, entry] : m_entries) {
    if (entry.id == objId) {
      entryName = CopyText(entry.key);
      return Acad::eOk;
    }
  }
  return Acad::eKeyNotFound;
}

bool AcDbDictionary::has(const ACHAR* entryName) const {
  return entryName != nullptr && m_entries.count(Upper(entryName)) != 0;
}

bool AcDbDictionary::has(AcDbObjectId objId) const {
  for (const auto& [upper, entry] : m_entries)
    if (entry.id == objId) return true;
  return false;
}

Acad::ErrorStatus AcDbDictionary::setAt(const ACHAR* srchKey, AcDbObject* newValue, AcDbObjectId& retObjId) {
  retObjId.setNull();
  AcDbStub* stub = AcDbImpDatabase::stubOf(this);
  if (stub == nullptr) return Acad::eNoDatabase;
  if (!stub->writer) return Acad::eNotOpenForWrite;
  if (srchKey == nullptr || *srchKey == L'\0') return Acad::eInvalidKey;
  if (newValue == nullptr) return Acad::eNullObjectPointer;
  if (!newValue->objectId().isNull()) return Acad::eAlreadyInDb;
  std::wstring key = srchKey;
  const std::wstring upper = Upper(srchKey);
  if (upper == L"*" || upper == L"*A") {
    do {
      key = L"*A" + std::to_wstring(++m_anonymousCount);
    } while (m_entries.count(key) != 0);
  }
  // The object that had the key makes way: AutoCAD erases it.
  if (auto found = m_entries.find(Upper(key.c_str())); found != m_entries.end()) {
    if (AcDbStub* old = AcDbImpDatabase::lookup(found->second.id)) stub->database->erase(*old, true);
    m_entries.erase(Upper(key.c_str()));
  }
  AcDbObjectId id;
  const Acad::ErrorStatus es = stub->database->add(newValue, stub->objectId(), &id);
  if (es != Acad::eOk) return es;
  m_entries[Upper(key.c_str())] = Entry{key, id};
  retObjId = id;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* key) {
  AcDbObjectId unused;
  return remove(key, unused);
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* key, AcDbObjectId& returnId) {
  returnId.setNull();
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (key == nullptr) return Acad::eInvalidKey;
  const auto found = m_entries.find(Upper(key));
  if (found == m_entries.end()) return Acad::eKeyNotFound;
  returnId = found->second.id;
  if (AcDbStub* entry = AcDbImpDatabase::lookup(returnId)) entry->owner.setNull();
  m_entries.erase(found);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::remove(AcDbObjectId objId) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  for (auto it = m_entries.begin(); it != m_entries.end(); ++it) {
    if (it->second.id == objId) {
      if (AcDbStub* entry = AcDbImpDatabase::lookup(objId)) entry->owner.setNull();
      m_entries.erase(it);
      return Acad::eOk;
    }
  }
  return Acad::eKeyNotFound;
}

bool AcDbDictionary::setName(const ACHAR* oldName, const ACHAR* newName) {
  if (checkWriteEnabled() != Acad::eOk || oldName == nullptr || newName == nullptr || *newName == L'\0') return false;
  const auto found = m_entries.find(Upper(oldName));
  if (found == m_entries.end()) return false;
  const std::wstring newUpper = Upper(newName);
  if (newUpper != found->first && m_entries.count(newUpper) != 0) return false;
  const AcDbObjectId id = found->second.id;
  m_entries.erase(found);
  m_entries[newUpper] = Entry{newName, id};
  return true;
}

AcDbDictionaryIterator* AcDbDictionary::newIterator() const { return new AcDbDictionaryIterator(*this); }

KD_ACRX_DEFINE_MEMBERS(AcDbDictionaryIterator, AcRxObject, L"")

AcDbDictionaryIterator::AcDbDictionaryIterator(const AcDbDictionary& dictionary) {
  for (const auto& [upper, entry] : dictionary.m_entries) m_items.push_back({entry.key, entry.id});
}
AcDbDictionaryIterator::~AcDbDictionaryIterator() = default;

const ACHAR* AcDbDictionaryIterator::name() const { return done() ? nullptr : m_items[m_index].key.c_str(); }
AcDbObjectId AcDbDictionaryIterator::objectId() const { return done() ? AcDbObjectId::kNull : m_items[m_index].id; }
Acad::ErrorStatus AcDbDictionaryIterator::getObject(AcDbObject*& pObject, AcDb::OpenMode mode) {
  pObject = nullptr;
  if (done()) return Acad::eIteratorDone;
  return acdbOpenAcDbObject(pObject, m_items[m_index].id, mode);
}
bool AcDbDictionaryIterator::done() const { return m_index >= m_items.size(); }
bool AcDbDictionaryIterator::next() {
  if (!done()) ++m_index;
  return !done();
}

// --- Xrecord ------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbXrecord, AcDbObject, L"XRECORD")

AcDbXrecord::AcDbXrecord() = default;
AcDbXrecord::~AcDbXrecord() = default;

using headless::KindOfCode;
using headless::ResKind;

Acad::ErrorStatus AcDbXrecord::setFromRbChain(const resbuf& pRb, AcDbDatabase*) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  std::vector<Item> items;
  for (const resbuf* rb = &pRb; rb != nullptr; rb = rb->rbnext) {
    const int code = rb->restype;
    const ResKind kind = KindOfCode(code);
    if (code >= 5000 || code < 1 || code == 5 || code == 105 || code == 1001 || kind == ResKind::Invalid ||
        kind == ResKind::None)
      return Acad::eInvalidResBuf;
    Item item{};
    item.restype = rb->restype;
    switch (kind) {
      case ResKind::Text: item.text = rb->resval.rstring == nullptr ? L"" : rb->resval.rstring; break;
      case ResKind::Point:
        for (int i = 0; i < 3; ++i) item.point[i] = rb->resval.rpoint[i];
        break;
      case ResKind::Real: item.real = rb->resval.rreal; break;
      case ResKind::Int16: item.integer = rb->resval.rint; break;
      case ResKind::Int32: item.integer = rb->resval.rlong; break;
      case ResKind::Int64: item.integer = rb->resval.mnInt64; break;
      case ResKind::Name: item.id.setFromOldId(rb->resval.rlname[0]); break;
      case ResKind::Binary:
        if (rb->resval.rbinary.clen > 0 && rb->resval.rbinary.buf != nullptr)
          item.binary.assign(rb->resval.rbinary.buf, rb->resval.rbinary.buf + rb->resval.rbinary.clen);
        break;
      default: break;
    }
    items.push_back(std::move(item));
  }
  m_items = std::move(items);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbXrecord::rbChain(resbuf** ppRb, AcDbDatabase*) const {
  if (ppRb == nullptr) return Acad::eInvalidInput;
  *ppRb = nullptr;
  resbuf* tail = nullptr;
  for (const Item& item : m_items) {
    resbuf* link = acutNewRb(item.restype);
    switch (KindOfCode(item.restype)) {
      case ResKind::Text: {
        link->resval.rstring = new ACHAR[item.text.size() + 1];
        std::wmemcpy(link->resval.rstring, item.text.c_str(), item.text.size() + 1);
        break;
      }
      case ResKind::Point:
        for (int i = 0; i < 3; ++i) link->resval.rpoint[i] = item.point[i];
        break;
      case ResKind::Real: link->resval.rreal = item.real; break;
      case ResKind::Int16: link->resval.rint = static_cast<short>(item.integer); break;
      case ResKind::Int32: link->resval.rlong = static_cast<Adesk::Int32>(item.integer); break;
      case ResKind::Int64: link->resval.mnInt64 = item.integer; break;
      case ResKind::Name: link->resval.rlname[0] = static_cast<Adesk::LongPtr>(item.id.asOldId()); break;
      case ResKind::Binary:
        if (!item.binary.empty()) {
          link->resval.rbinary.clen = static_cast<short>(item.binary.size());
          link->resval.rbinary.buf = new char[item.binary.size()];
          std::memcpy(link->resval.rbinary.buf, item.binary.data(), item.binary.size());
        }
        break;
      default: break;
    }
    if (tail == nullptr) {
      *ppRb = link;
    } else {
      tail->rbnext = link;
    }
    tail = link;
  }
  return Acad::eOk;
}

void AcDbXrecord::setXlateReferences(bool translate) {
  if (checkWriteEnabled() == Acad::eOk) m_xlateReferences = translate;
}

// --- Group --------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbGroup, AcDbObject, L"GROUP")

AcDbGroup::AcDbGroup(const ACHAR* grpDesc, bool selectable)
    : m_description(grpDesc == nullptr ? L"" : grpDesc), m_selectable(selectable) {}
AcDbGroup::~AcDbGroup() = default;

Acad::ErrorStatus AcDbGroup::append(AcDbObjectId id) {
  const AcDbStub* self = AcDbImpDatabase::stubOf(this);
  if (self == nullptr) return Acad::eNotInDatabase;
  if (!self->writer) return Acad::eNotOpenForWrite;
  const AcDbStub* member = AcDbImpDatabase::lookup(id);
  if (member == nullptr) return id.isNull() ? Acad::eNullObjectId : Acad::eInvalidObjectId;
  if (member->database != self->database) return Acad::eWrongDatabase;
  if (AcDbEntity::cast(member->object.get()) == nullptr) return Acad::eNotAnEntity;
  if (member->erased) return Acad::eWasErased;
  if (m_members.contains(id)) return Acad::eAlreadyInDb;
  m_members.append(id);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::append(const AcDbObjectIdArray& ids) {
  for (const AcDbObjectId& id : ids)
    if (Acad::ErrorStatus es = append(id); es != Acad::eOk) return es;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::remove(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  return m_members.remove(id) ? Acad::eOk : Acad::eKeyNotFound;
}

Acad::ErrorStatus AcDbGroup::clear() {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_members.removeAll();
  return Acad::eOk;
}

Adesk::UInt32 AcDbGroup::allEntityIds(AcDbObjectIdArray& ids) const {
  Adesk::UInt32 n = 0;
  for (const AcDbObjectId& id : m_members) {
    if (id.isErased() || !id.isValid()) continue;
    ids.append(id);
    ++n;
  }
  return n;
}

Adesk::UInt32 AcDbGroup::numEntities() const {
  AcDbObjectIdArray ids;
  return allEntityIds(ids);
}

bool AcDbGroup::has(const AcDbEntity* pEntity) const {
  return pEntity != nullptr && !pEntity->objectId().isNull() && m_members.contains(pEntity->objectId());
}

AcDbGroupIterator* AcDbGroup::newIterator() {
  AcDbObjectIdArray ids;
  allEntityIds(ids);
  return new AcDbGroupIterator(ids);
}

const ACHAR* AcDbGroup::name() const {
  const auto* dictionary = AcDbDictionary::cast(AcDbImpDatabase::peek(ownerId()));
  ACHAR* key = nullptr;
  if (dictionary == nullptr || dictionary->nameAt(objectId(), key) != Acad::eOk) return nullptr;
  m_nameCache = key;
  delete[] key;
  return m_nameCache.c_str();
}

Acad::ErrorStatus AcDbGroup::getName(ACHAR*& name) const {
  const ACHAR* own = this->name();
  name = own == nullptr ? nullptr : CopyText(own);
  return own == nullptr ? Acad::eNotInDatabase : Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::setName(const ACHAR* newName) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  auto* dictionary = AcDbDictionary::cast(AcDbImpDatabase::peek(ownerId()));
  const ACHAR* old = name();
  if (dictionary == nullptr || old == nullptr) return Acad::eNotInDatabase;
  if (newName == nullptr || *newName == L'\0') return Acad::eInvalidInput;
  // The group renames its own entry; the dictionary need not be open.
  const std::wstring oldUpper = Upper(old);
  const std::wstring newUpper = Upper(newName);
  if (newUpper != oldUpper && dictionary->m_entries.count(newUpper) != 0) return Acad::eDuplicateKey;
  const AcDbObjectId id = objectId();
  dictionary->m_entries.erase(oldUpper);
  dictionary->m_entries[newUpper] = AcDbDictionary::Entry{newName, id};
  return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::setDescription(const ACHAR* grpDesc) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_description = grpDesc == nullptr ? L"" : grpDesc;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbGroup::setSelectable(bool selectable) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_selectable = selectable;
  return Acad::eOk;
}

bool AcDbGroup::isAnonymous() const {
  const ACHAR* own = name();
  return own != nullptr && own[0] == L'*';
}

KD_ACRX_DEFINE_MEMBERS(AcDbGroupIterator, AcRxObject, L"")

AcDbGroupIterator::AcDbGroupIterator(const AcDbObjectIdArray& ids) : m_ids(ids) {}
AcDbGroupIterator::~AcDbGroupIterator() = default;
bool AcDbGroupIterator::done() const { return m_index >= m_ids.length(); }
bool AcDbGroupIterator::next() {
  if (!done()) ++m_index;
  return !done();
}
AcDbObjectId AcDbGroupIterator::objectId() const { return done() ? AcDbObjectId::kNull : m_ids[m_index]; }
Acad::ErrorStatus AcDbGroupIterator::getObject(AcDbObject*& pObject, AcDb::OpenMode mode) {
  pObject = nullptr;
  if (done()) return Acad::eIteratorDone;
  return acdbOpenAcDbObject(pObject, m_ids[m_index], mode);
}

// --- Layout -------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbLayout, AcDbObject, L"LAYOUT")

AcDbLayout::AcDbLayout() = default;
AcDbLayout::~AcDbLayout() = default;

Acad::ErrorStatus AcDbLayout::getLayoutName(const ACHAR*& layoutName) const {
  layoutName = m_name.c_str();
  return Acad::eOk;
}
Acad::ErrorStatus AcDbLayout::setLayoutName(const ACHAR* layoutName) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (layoutName == nullptr || *layoutName == L'\0') return Acad::eInvalidInput;
  m_name = layoutName;
  return Acad::eOk;
}
void AcDbLayout::setTabOrder(int newOrder) {
  if (checkWriteEnabled() == Acad::eOk) m_tabOrder = newOrder;
}
Acad::ErrorStatus AcDbLayout::setBlockTableRecordId(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_blockTableRecord = id;
  return Acad::eOk;
}
