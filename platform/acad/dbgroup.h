// AcDbGroup (dbgroup.h): a named set of entities of one database, kept in the group dictionary
// (the group's name is its key there).
#pragma once

#if defined(_WIN32)
#  include <dbgroup.h>
#else

#include <string>

#include "platform/acad/dbmain.h"

class AcDbGroupIterator;

class KD_PLATFORM_API AcDbGroup : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbGroup);
  AcDbGroup(const ACHAR* grpDesc = nullptr, bool selectable = true);
  ~AcDbGroup() override;

  // Adds an entity of the group's database: the group must be in a database (eNotInDatabase)
  // and open for write; eWrongDatabase for another database's entity, eNotAnEntity,
  // eWasErased, eAlreadyInDb when it is a member already.
  Acad::ErrorStatus append(AcDbObjectId id);
  Acad::ErrorStatus append(const AcDbObjectIdArray& ids);
  // eKeyNotFound when the id is no member.
  Acad::ErrorStatus remove(AcDbObjectId id);
  Acad::ErrorStatus clear();
  // Members that are not erased.
  Adesk::UInt32 numEntities() const;
  bool has(const AcDbEntity* pEntity) const;
  Adesk::UInt32 allEntityIds(AcDbObjectIdArray& ids) const;
  // Walks the members that are not erased; the caller deletes the iterator.
  AcDbGroupIterator* newIterator();

  // The group's key in the group dictionary; null while it has none.
  const ACHAR* name() const;
  Acad::ErrorStatus getName(ACHAR*& name) const;
  // Renames the group's entry in the group dictionary (eDuplicateKey when taken).
  Acad::ErrorStatus setName(const ACHAR* newName);
  const ACHAR* description() const { return m_description.c_str(); }
  Acad::ErrorStatus setDescription(const ACHAR* grpDesc);
  bool isSelectable() const { return m_selectable; }
  Acad::ErrorStatus setSelectable(bool selectable);
  bool isAnonymous() const;

private:
  std::wstring m_description;
  bool m_selectable = true;
  AcDbObjectIdArray m_members;
  mutable std::wstring m_nameCache;
};

class KD_PLATFORM_API AcDbGroupIterator : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbGroupIterator);
  ~AcDbGroupIterator() override;

  bool done() const;
  bool next();
  AcDbObjectId objectId() const;
  Acad::ErrorStatus getObject(AcDbObject*& pObject, AcDb::OpenMode mode);

private:
  friend class AcDbGroup;
  explicit AcDbGroupIterator(const AcDbObjectIdArray& ids);

  AcDbObjectIdArray m_ids;
  int m_index = 0;
};

#endif  // !_WIN32
