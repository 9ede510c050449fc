// AcDbDictionary (dbdict.h): named references to objects it owns (Xrecords in an extension
// dictionary, groups in the group dictionary, ...). Keys are compared without regard to case and
// kept as given; iteration runs in key order.
#pragma once

#if defined(_WIN32)
#  include <dbdict.h>
#else

#include <map>
#include <string>
#include <vector>

#include "platform/acad/dbmain.h"

class AcDbDictionaryIterator;

class KD_PLATFORM_API AcDbDictionary : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbDictionary);
  AcDbDictionary();
  ~AcDbDictionary() override;

  // Opens the entry: eKeyNotFound when there is none.
  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbObject*& entryObj, AcDb::OpenMode mode) const;
  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbObjectId& entryObj) const;
  // A copy of the entry's key, which the caller frees with acutDelString; eKeyNotFound.
  Acad::ErrorStatus nameAt(AcDbObjectId objId, ACHAR*& entryName) const;
  bool has(const ACHAR* entryName) const;
  bool has(AcDbObjectId objId) const;
  Adesk::UInt32 numEntries() const { return static_cast<Adesk::UInt32>(m_entries.size()); }

  // Puts a new object (not yet in a database) under the key; an entry that had the key is erased
  // and replaced. The dictionary must be in a database (eNoDatabase) and open for write; the key
  // must not be empty (eInvalidKey); "*" alone, or a key starting with "*" followed by nothing
  // else than "A", gets the next free anonymous key "*A<n>". The object comes back in the
  // database, open for write, owned by the dictionary.
  Acad::ErrorStatus setAt(const ACHAR* srchKey, AcDbObject* newValue, AcDbObjectId& retObjId);
  // Takes the entry out (the object stays, without owner): eKeyNotFound.
  Acad::ErrorStatus remove(const ACHAR* key);
  Acad::ErrorStatus remove(const ACHAR* key, AcDbObjectId& returnId);
  Acad::ErrorStatus remove(AcDbObjectId objId);
  // Renames an entry: false when oldName is no key or newName is taken.
  bool setName(const ACHAR* oldName, const ACHAR* newName);
  // The caller deletes the iterator.
  AcDbDictionaryIterator* newIterator() const;

private:
  friend class AcDbDictionaryIterator;
  friend class AcDbGroup;
  friend class AcDbImpDatabase;
  struct Entry {
    std::wstring key;
    AcDbObjectId id;
  };
  std::map<std::wstring, Entry> m_entries;  // by the key in upper case
  Adesk::UInt32 m_anonymousCount = 0;
};

class KD_PLATFORM_API AcDbDictionaryIterator : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbDictionaryIterator);
  ~AcDbDictionaryIterator() override;

  const ACHAR* name() const;
  Acad::ErrorStatus getObject(AcDbObject*& pObject, AcDb::OpenMode mode);
  AcDbObjectId objectId() const;
  bool done() const;
  bool next();

private:
  friend class AcDbDictionary;
  explicit AcDbDictionaryIterator(const AcDbDictionary& dictionary);

  struct Item {
    std::wstring key;
    AcDbObjectId id;
  };
  std::vector<Item> m_items;
  size_t m_index = 0;
};

#endif  // !_WIN32
