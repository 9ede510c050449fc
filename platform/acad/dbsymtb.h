// Symbol tables and their records (dbsymtb.h): blocks, layers, line types, text styles, and the
// tables a drawing carries without this platform using them (registered applications, dimension
// styles, viewports, views, user coordinate systems).
//
// Record names are compared without regard to case and may not contain < > / \ " : ; ? * | , = `
// (eInvalidSymbolTableName); block names may start with "*" (model and paper space, anonymous
// blocks: a block named "*U" is given the next free "*U<n>").
#pragma once

#if defined(_WIN32)
#  include <dbsymtb.h>
#else

#include <string>
#include <vector>

#include "platform/acad/dbmain.h"

class AcDbSymbolTableIterator;
class AcDbSymbolTableRecord;
class AcDbBlockTableIterator;
class AcDbBlockTableRecord;
class AcDbBlockTableRecordIterator;
class AcDbLayerTableIterator;
class AcDbLayerTableRecord;
class AcDbLinetypeTableIterator;
class AcDbLinetypeTableRecord;
class AcDbTextStyleTableIterator;
class AcDbTextStyleTableRecord;

class KD_PLATFORM_API AcDbSymbolTable : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbSymbolTable);
  ~AcDbSymbolTable() override;

  // Opens the record of that name: eKeyNotFound when there is none (erased records count only
  // with openErasedRec).
  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbSymbolTableRecord*& pRec, AcDb::OpenMode openMode,
                          bool openErasedRec = false) const;
  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbObjectId& recordId, bool getErasedRecord = false) const;
  bool has(const ACHAR* name) const;
  bool has(AcDbObjectId id) const;
  // Adds a new record (it must have a name; eDuplicateRecordName when the table has one of that
  // name). The table must be open for write; the record comes back in the database, open for
  // write.
  Acad::ErrorStatus add(AcDbSymbolTableRecord* pRecord);
  Acad::ErrorStatus add(AcDbObjectId& recordId, AcDbSymbolTableRecord* pRecord);
  Acad::ErrorStatus newIterator(AcDbSymbolTableIterator*& pIterator, bool atBeginning = true,
                                bool skipDeleted = true) const;

  // The platform's own: the records in the order they were added.
  const AcDbObjectIdArray& recordIds() const { return m_records; }

protected:
  AcDbSymbolTable();
  Acad::ErrorStatus getRecordAt(const ACHAR* entryName, AcDbObject*& pRec, AcDb::OpenMode openMode,
                                bool openErasedRec) const;

private:
  friend class AcDbSymbolTableRecord;
  AcDbObjectIdArray m_records;
};

class KD_PLATFORM_API AcDbSymbolTableRecord : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbSymbolTableRecord);
  ~AcDbSymbolTableRecord() override;

  // A copy the caller frees with acutDelString.
  Acad::ErrorStatus getName(ACHAR*& pName) const;
  // The record's own text, valid while it is open.
  Acad::ErrorStatus getName(const ACHAR*& pName) const;
  // eInvalidSymbolTableName for a bad name, eDuplicateRecordName when another record of the
  // table has it.
  Acad::ErrorStatus setName(const ACHAR* pName);
  bool isDependent() const { return false; }

protected:
  AcDbSymbolTableRecord();
  AcDbSymbolTableRecord(const AcDbSymbolTableRecord& other);

private:
  friend class AcDbSymbolTable;
  std::wstring m_name;
};

class KD_PLATFORM_API AcDbSymbolTableIterator : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbSymbolTableIterator);
  ~AcDbSymbolTableIterator() override;

  void start(bool atBeginning = true, bool skipDeleted = true);
  bool done() const;
  void step(bool forward = true, bool skipDeleted = true);
  Acad::ErrorStatus getRecordId(AcDbObjectId& id) const;
  Acad::ErrorStatus getRecord(AcDbSymbolTableRecord*& pRecord, AcDb::OpenMode openMode = AcDb::kForRead,
                              bool openErasedRecord = false) const;

protected:
  friend class AcDbSymbolTable;
  AcDbSymbolTableIterator(const AcDbObjectIdArray& ids, bool atBeginning, bool skipDeleted);
  AcDbObjectIdArray m_ids;
  int m_index = 0;

private:
  void skip(bool forward, bool skipDeleted);
};

// --- Blocks -----------------------------------------------------------------------------------

class KD_PLATFORM_API AcDbBlockTable : public AcDbSymbolTable {
public:
  ACRX_DECLARE_MEMBERS(AcDbBlockTable);
  AcDbBlockTable();
  ~AcDbBlockTable() override;

  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbBlockTableRecord*& pRec, AcDb::OpenMode openMode,
                          bool openErasedRec = false) const;
  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbObjectId& recordId, bool getErasedRec = false) const;
  Acad::ErrorStatus add(AcDbBlockTableRecord* pRecord);
  Acad::ErrorStatus add(AcDbObjectId& recordId, AcDbBlockTableRecord* pRecord);
  Acad::ErrorStatus newIterator(AcDbBlockTableIterator*& pIterator, bool atBeginning = true,
                                bool skipDeleted = true) const;
};

// A block definition: an origin and the entities appended to it, in order.
class KD_PLATFORM_API AcDbBlockTableRecord : public AcDbSymbolTableRecord {
public:
  ACRX_DECLARE_MEMBERS(AcDbBlockTableRecord);
  AcDbBlockTableRecord();
  ~AcDbBlockTableRecord() override;

  // Adds a new entity (the record must be in a database and open for write: eNotOpenForWrite,
  // eNoDatabase; eNullEntityPointer for null, eAlreadyInDb for an entity already in a database).
  // The entity takes the database's defaults for what it has not set and comes back in the
  // database, open for write.
  Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& pOutputId, AcDbEntity* pEntity);
  Acad::ErrorStatus appendAcDbEntity(AcDbEntity* pEntity);
  Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& pIterator, bool atBeginning = true,
                                bool skipDeleted = true) const;
  AcGePoint3d origin() const { return m_origin; }
  Acad::ErrorStatus setOrigin(const AcGePoint3d& pt);
  // Model and paper space.
  bool isLayout() const;
  bool isAnonymous() const;
  bool hasAttributeDefinitions() const { return false; }
  // The block references (not erased) that insert this block, in the whole database.
  Acad::ErrorStatus getBlockReferenceIds(AcDbObjectIdArray& ids, bool bDirectOnly = true,
                                         bool bForceValidity = false) const;

  // The platform's own: the entities in the order they were appended (erased ones included), and
  // the block's begin and end markers.
  const AcDbObjectIdArray& entityIds() const { return m_entities; }
  AcDbObjectId blockBeginId() const { return m_blockBegin; }
  AcDbObjectId blockEndId() const { return m_blockEnd; }

private:
  Acad::ErrorStatus addOwnedObjects() override;

  AcGePoint3d m_origin;
  AcDbObjectIdArray m_entities;
  AcDbObjectId m_blockBegin;
  AcDbObjectId m_blockEnd;
};

class KD_PLATFORM_API AcDbBlockTableIterator : public AcDbSymbolTableIterator {
public:
  ACRX_DECLARE_MEMBERS(AcDbBlockTableIterator);
  ~AcDbBlockTableIterator() override;
  Acad::ErrorStatus getRecord(AcDbBlockTableRecord*& pRecord, AcDb::OpenMode openMode = AcDb::kForRead,
                              bool openErasedRecord = false) const;

private:
  friend class AcDbBlockTable;
  using AcDbSymbolTableIterator::AcDbSymbolTableIterator;
};

class KD_PLATFORM_API AcDbBlockTableRecordIterator : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbBlockTableRecordIterator);
  ~AcDbBlockTableRecordIterator() override;

  void start(bool atBeginning = true, bool skipDeleted = true);
  bool done() const;
  void step(bool forward = true, bool skipDeleted = true);
  Acad::ErrorStatus getEntityId(AcDbObjectId& entityId) const;
  Acad::ErrorStatus getEntity(AcDbEntity*& pEntity, AcDb::OpenMode openMode = AcDb::kForRead,
                              bool openErasedEntity = false) const;

private:
  friend class AcDbBlockTableRecord;
  AcDbBlockTableRecordIterator(const AcDbObjectIdArray& ids, bool atBeginning, bool skipDeleted);
  void skip(bool forward, bool skipDeleted);

  AcDbObjectIdArray m_ids;
  int m_index = 0;
};

// --- Layers -----------------------------------------------------------------------------------

class KD_PLATFORM_API AcDbLayerTable : public AcDbSymbolTable {
public:
  ACRX_DECLARE_MEMBERS(AcDbLayerTable);
  AcDbLayerTable();
  ~AcDbLayerTable() override;

  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbLayerTableRecord*& pRec, AcDb::OpenMode openMode,
                          bool openErasedRec = false) const;
  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbObjectId& recordId, bool getErasedRec = false) const;
  Acad::ErrorStatus add(AcDbLayerTableRecord* pRecord);
  Acad::ErrorStatus add(AcDbObjectId& recordId, AcDbLayerTableRecord* pRecord);
  Acad::ErrorStatus newIterator(AcDbLayerTableIterator*& pIterator, bool atBeginning = true,
                                bool skipDeleted = true) const;
};

// A layer: colour (white, index 7, for a new layer), line type ("Continuous" once the layer is
// in a database, unless set), and whether it is off, frozen, locked, plotted.
class KD_PLATFORM_API AcDbLayerTableRecord : public AcDbSymbolTableRecord {
public:
  ACRX_DECLARE_MEMBERS(AcDbLayerTableRecord);
  AcDbLayerTableRecord();
  ~AcDbLayerTableRecord() override;

  AcCmColor color() const { return m_color; }
  void setColor(const AcCmColor& color);
  bool isOff() const { return m_off; }
  void setIsOff(bool off);
  bool isFrozen() const { return m_frozen; }
  Acad::ErrorStatus setIsFrozen(bool frozen);
  bool isLocked() const { return m_locked; }
  void setIsLocked(bool locked);
  bool isPlottable() const { return m_plottable; }
  Acad::ErrorStatus setIsPlottable(bool plot);
  AcDbObjectId linetypeObjectId() const { return m_linetype; }
  void setLinetypeObjectId(AcDbObjectId id);

private:
  Acad::ErrorStatus addOwnedObjects() override;

  AcCmColor m_color;
  bool m_off = false;
  bool m_frozen = false;
  bool m_locked = false;
  bool m_plottable = true;
  AcDbObjectId m_linetype;
};

class KD_PLATFORM_API AcDbLayerTableIterator : public AcDbSymbolTableIterator {
public:
  ACRX_DECLARE_MEMBERS(AcDbLayerTableIterator);
  ~AcDbLayerTableIterator() override;
  Acad::ErrorStatus getRecord(AcDbLayerTableRecord*& pRecord, AcDb::OpenMode openMode = AcDb::kForRead,
                              bool openErasedRecord = false) const;

private:
  friend class AcDbLayerTable;
  using AcDbSymbolTableIterator::AcDbSymbolTableIterator;
};

// --- Line types -------------------------------------------------------------------------------

class KD_PLATFORM_API AcDbLinetypeTable : public AcDbSymbolTable {
public:
  ACRX_DECLARE_MEMBERS(AcDbLinetypeTable);
  AcDbLinetypeTable();
  ~AcDbLinetypeTable() override;

  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbLinetypeTableRecord*& pRec, AcDb::OpenMode openMode,
                          bool openErasedRec = false) const;
  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbObjectId& recordId, bool getErasedRec = false) const;
  Acad::ErrorStatus add(AcDbLinetypeTableRecord* pRecord);
  Acad::ErrorStatus add(AcDbObjectId& recordId, AcDbLinetypeTableRecord* pRecord);
  Acad::ErrorStatus newIterator(AcDbLinetypeTableIterator*& pIterator, bool atBeginning = true,
                                bool skipDeleted = true) const;
};

// A line type: a description and a dash pattern (positive lengths are dashes, negative gaps,
// 0 dots; an empty pattern is a continuous line).
class KD_PLATFORM_API AcDbLinetypeTableRecord : public AcDbSymbolTableRecord {
public:
  ACRX_DECLARE_MEMBERS(AcDbLinetypeTableRecord);
  AcDbLinetypeTableRecord();
  ~AcDbLinetypeTableRecord() override;

  // A copy the caller frees with acutDelString.
  Acad::ErrorStatus comments(ACHAR*& pString) const;
  Acad::ErrorStatus setComments(const ACHAR* pString);
  double patternLength() const { return m_patternLength; }
  void setPatternLength(double patternLength);
  int numDashes() const { return static_cast<int>(m_dashes.size()); }
  void setNumDashes(int count);
  // 0 for a bad index.
  double dashLengthAt(int index) const;
  Acad::ErrorStatus setDashLengthAt(int index, double value);
  bool isScaledToFit() const { return m_scaledToFit; }
  void setIsScaledToFit(bool scaledToFit);

private:
  std::wstring m_comments;
  double m_patternLength = 0.0;
  std::vector<double> m_dashes;
  bool m_scaledToFit = false;
};

class KD_PLATFORM_API AcDbLinetypeTableIterator : public AcDbSymbolTableIterator {
public:
  ACRX_DECLARE_MEMBERS(AcDbLinetypeTableIterator);
  ~AcDbLinetypeTableIterator() override;
  Acad::ErrorStatus getRecord(AcDbLinetypeTableRecord*& pRecord, AcDb::OpenMode openMode = AcDb::kForRead,
                              bool openErasedRecord = false) const;

private:
  friend class AcDbLinetypeTable;
  using AcDbSymbolTableIterator::AcDbSymbolTableIterator;
};

// --- Text styles ------------------------------------------------------------------------------

class KD_PLATFORM_API AcDbTextStyleTable : public AcDbSymbolTable {
public:
  ACRX_DECLARE_MEMBERS(AcDbTextStyleTable);
  AcDbTextStyleTable();
  ~AcDbTextStyleTable() override;

  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbTextStyleTableRecord*& pRec, AcDb::OpenMode openMode,
                          bool openErasedRec = false) const;
  Acad::ErrorStatus getAt(const ACHAR* entryName, AcDbObjectId& recordId, bool getErasedRec = false) const;
  Acad::ErrorStatus add(AcDbTextStyleTableRecord* pRecord);
  Acad::ErrorStatus add(AcDbObjectId& recordId, AcDbTextStyleTableRecord* pRecord);
  Acad::ErrorStatus newIterator(AcDbTextStyleTableIterator*& pIterator, bool atBeginning = true,
                                bool skipDeleted = true) const;
};

// A text style: font file, fixed height (0: each text sets its own), width factor, obliquing
// angle.
class KD_PLATFORM_API AcDbTextStyleTableRecord : public AcDbSymbolTableRecord {
public:
  ACRX_DECLARE_MEMBERS(AcDbTextStyleTableRecord);
  AcDbTextStyleTableRecord();
  ~AcDbTextStyleTableRecord() override;

  double textSize() const { return m_textSize; }
  // eInvalidInput when negative.
  Acad::ErrorStatus setTextSize(double size);
  double xScale() const { return m_xScale; }
  Acad::ErrorStatus setXScale(double xScale);
  double obliquingAngle() const { return m_obliquingAngle; }
  Acad::ErrorStatus setObliquingAngle(double obliquingAngle);
  double priorSize() const { return m_priorSize; }
  Acad::ErrorStatus setPriorSize(double priorSize);
  bool isShapeFile() const { return m_shapeFile; }
  void setIsShapeFile(bool shape);
  bool isVertical() const { return m_vertical; }
  void setIsVertical(bool vertical);
  // Copies the caller frees with acutDelString.
  Acad::ErrorStatus fileName(ACHAR*& fileName) const;
  Acad::ErrorStatus setFileName(const ACHAR* fileName);
  Acad::ErrorStatus bigFontFileName(ACHAR*& fileName) const;
  Acad::ErrorStatus setBigFontFileName(const ACHAR* fileName);

private:
  double m_textSize = 0.0;
  double m_xScale = 1.0;
  double m_obliquingAngle = 0.0;
  double m_priorSize = 0.2;
  bool m_shapeFile = false;
  bool m_vertical = false;
  std::wstring m_fileName = L"txt";
  std::wstring m_bigFontFileName;
};

class KD_PLATFORM_API AcDbTextStyleTableIterator : public AcDbSymbolTableIterator {
public:
  ACRX_DECLARE_MEMBERS(AcDbTextStyleTableIterator);
  ~AcDbTextStyleTableIterator() override;
  Acad::ErrorStatus getRecord(AcDbTextStyleTableRecord*& pRecord, AcDb::OpenMode openMode = AcDb::kForRead,
                              bool openErasedRecord = false) const;

private:
  friend class AcDbTextStyleTable;
  using AcDbSymbolTableIterator::AcDbSymbolTableIterator;
};

// --- Tables a drawing carries: their records are names only here -------------------------------

class KD_PLATFORM_API AcDbRegAppTable : public AcDbSymbolTable {
public:
  ACRX_DECLARE_MEMBERS(AcDbRegAppTable);
  AcDbRegAppTable();
  ~AcDbRegAppTable() override;
};
class KD_PLATFORM_API AcDbRegAppTableRecord : public AcDbSymbolTableRecord {
public:
  ACRX_DECLARE_MEMBERS(AcDbRegAppTableRecord);
  AcDbRegAppTableRecord();
  ~AcDbRegAppTableRecord() override;
};
class KD_PLATFORM_API AcDbDimStyleTable : public AcDbSymbolTable {
public:
  ACRX_DECLARE_MEMBERS(AcDbDimStyleTable);
  AcDbDimStyleTable();
  ~AcDbDimStyleTable() override;
};
class KD_PLATFORM_API AcDbDimStyleTableRecord : public AcDbSymbolTableRecord {
public:
  ACRX_DECLARE_MEMBERS(AcDbDimStyleTableRecord);
  AcDbDimStyleTableRecord();
  ~AcDbDimStyleTableRecord() override;
};
class KD_PLATFORM_API AcDbViewportTable : public AcDbSymbolTable {
public:
  ACRX_DECLARE_MEMBERS(AcDbViewportTable);
  AcDbViewportTable();
  ~AcDbViewportTable() override;
};
class KD_PLATFORM_API AcDbViewportTableRecord : public AcDbSymbolTableRecord {
public:
  ACRX_DECLARE_MEMBERS(AcDbViewportTableRecord);
  AcDbViewportTableRecord();
  ~AcDbViewportTableRecord() override;
};
class KD_PLATFORM_API AcDbViewTable : public AcDbSymbolTable {
public:
  ACRX_DECLARE_MEMBERS(AcDbViewTable);
  AcDbViewTable();
  ~AcDbViewTable() override;
};
class KD_PLATFORM_API AcDbUCSTable : public AcDbSymbolTable {
public:
  ACRX_DECLARE_MEMBERS(AcDbUCSTable);
  AcDbUCSTable();
  ~AcDbUCSTable() override;
};

#endif  // !_WIN32
