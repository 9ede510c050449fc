// The drawing database (dbmain.h): AcDbDatabase, the objects in it (AcDbObject, AcDbEntity),
// opening and closing them, and their extents.
//
// Opening follows AutoCAD's rules. An object may be open for read by up to 256 readers at once
// when it is not open for write or notify; for write when it is not open at all; for notify
// unless it already is. Every open is paired with a close. Opening an erased object fails with
// eWasErased unless openErased is true. In a document's database, opening for write (and
// anything that needs it) also needs a write lock on the document held by the current execution
// context (acdocman.h), else eLockViolation.
//
// A new object is owned by whoever made it and is open for write until it joins a database
// (appendAcDbEntity, AcDbDictionary::setAt, AcDbSymbolTable::add); from then on the database owns
// it and it is closed like any opened object. Closing an object that never joined a database
// deletes it. Setters that return a status answer eNotOpenForWrite, and change nothing, when the
// object is database resident and not open for write.
#pragma once

#if defined(_WIN32)
#  include <dbmain.h>
#else

#include "platform/acad/acadstrc.h"
#include "platform/acad/acdb.h"
#include "platform/acad/adsdef.h"
#include "platform/acad/dbcolor.h"
#include "platform/acad/dbid.h"
#include "platform/acad/dbidar.h"
#include "platform/acad/dbptrar.h"
#include "platform/acad/dbsubeid.h"
#include "platform/acad/gemat3d.h"
#include "platform/acad/gepnt3d.h"
#include "platform/acad/rxobject.h"

class AcDbBlockTable;
class AcDbDictionary;
class AcDbEntity;
class AcDbImpDatabase;
class AcDbLayerTable;
class AcDbLinetypeTable;
class AcDbTextStyleTable;
struct AcDbStub;

// An axis-aligned box. A new one is empty (its minimum above its maximum) until a point is added.
class KD_PLATFORM_API AcDbExtents {
public:
  AcDbExtents();
  AcDbExtents(const AcGePoint3d& min, const AcGePoint3d& max);

  AcGePoint3d minPoint() const { return m_min; }
  AcGePoint3d maxPoint() const { return m_max; }
  // eInvalidExtents, and no change, when min lies above max on some axis.
  Acad::ErrorStatus set(const AcGePoint3d& min, const AcGePoint3d& max);
  void addPoint(const AcGePoint3d& pt);
  void addExt(const AcDbExtents& src);
  void expandBy(const AcGeVector3d& vec);
  // The box of the transformed corners.
  void transformBy(const AcGeMatrix3d& mat);

private:
  AcGePoint3d m_min;
  AcGePoint3d m_max;
};

class KD_PLATFORM_API AcDbObject : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbObject);
  ~AcDbObject() override;
  AcDbObject& operator=(const AcDbObject&) = delete;

  // Null for an object that is not in a database.
  AcDbObjectId objectId() const;
  AcDbObjectId ownerId() const;
  // For an object in a database (eNotInDatabase) that is open for write.
  Acad::ErrorStatus setOwnerId(AcDbObjectId objId);
  void getAcDbHandle(AcDbHandle& handle) const;
  AcDbDatabase* database() const;

  // Gives the object an (empty) extension dictionary. The object must be in a database
  // (eNotInDatabase) and open for write (eNotOpenForWrite); eAlreadyInDb when it has one, erased
  // or not.
  Acad::ErrorStatus createExtensionDictionary();
  AcDbObjectId extensionDictionary() const;
  // Erases the extension dictionary and forgets it: eContainerNotEmpty while it has entries,
  // eNotApplicable when there is none.
  Acad::ErrorStatus releaseExtensionDictionary();

  // read -> write (eOk when it is open for write already): eHadMultipleReaders when other readers
  // hold it, eNotOpenForRead when it is not open.
  Acad::ErrorStatus upgradeOpen();
  // write -> read.
  Acad::ErrorStatus downgradeOpen();
  // Ends the most recent open (eInvalidOpenState when the object is not open).
  Acad::ErrorStatus close();
  // Erases (or with false unerases) the object; it must be open for write. eWasErased when it is
  // erased already, eWasNotErased when unerasing one that is not. Erasing an object removes its
  // entry from the dictionary that owns it (unerasing does not put it back) and erases its
  // extension dictionary too. The database's own tables, dictionaries, model and paper space,
  // layer 0 and the ByLayer and ByBlock line types refuse with eCannotBeErasedByCaller.
  Acad::ErrorStatus erase(Adesk::Boolean erasing = true);
  Adesk::Boolean isErased() const;
  Adesk::Boolean isReadEnabled() const;
  Adesk::Boolean isWriteEnabled() const;
  Adesk::Boolean isNotifyEnabled() const;
  // True from joining the database until the first close.
  Adesk::Boolean isNewObject() const;

protected:
  AcDbObject();
  // A copy is a new object outside any database.
  AcDbObject(const AcDbObject& other);

  // eOk when the object may be changed now, else eNotOpenForWrite (setters start with this).
  Acad::ErrorStatus checkWriteEnabled() const;
  // Called by erase before the object's state changes; a failure stops the erase.
  virtual Acad::ErrorStatus subErase(Adesk::Boolean erasing);

private:
  friend class AcDbImpDatabase;
  // Called once the object has joined a database, so that it can bring in the objects it owns
  // that have no life of their own (vertices, the markers of a block).
  virtual Acad::ErrorStatus addOwnedObjects();

  AcDbStub* m_pStub = nullptr;
};

class KD_PLATFORM_API AcDbEntity : public AcDbObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbEntity);
  ~AcDbEntity() override;

  // The block table record that owns the entity.
  AcDbObjectId blockId() const;

  AcCmColor color() const { return m_color; }
  Acad::ErrorStatus setColor(const AcCmColor& color, Adesk::Boolean doSubents = true);
  // 0 by block, 256 by layer, 7 foreground; a true colour answers its nearest index.
  Adesk::UInt16 colorIndex() const { return m_color.colorIndex(); }
  // eOutOfRange above 256.
  Acad::ErrorStatus setColorIndex(Adesk::UInt16 color, Adesk::Boolean doSubents = true);

  // A copy of the layer's name that the caller frees with acutDelString; null when the entity
  // has no layer yet (a new entity before setLayer or setDatabaseDefaults).
  ACHAR* layer() const;
  AcDbObjectId layerId() const { return m_layerId; }
  // The layer by name, looked up in the entity's database or, for an entity not in one, in the
  // working database: eKeyNotFound when there is no such layer, eNoDatabase without a database.
  Acad::ErrorStatus setLayer(const ACHAR* newVal, Adesk::Boolean doSubents = true, bool allowHiddenLayer = false);
  Acad::ErrorStatus setLayer(AcDbObjectId newVal, Adesk::Boolean doSubents = true, bool allowHiddenLayer = false);

  ACHAR* linetype() const;
  AcDbObjectId linetypeId() const { return m_linetypeId; }
  // As setLayer, in the line type table ("ByLayer", "ByBlock", "Continuous", ...).
  Acad::ErrorStatus setLinetype(const ACHAR* newVal, Adesk::Boolean doSubents = true);
  Acad::ErrorStatus setLinetype(AcDbObjectId newVal, Adesk::Boolean doSubents = true);

  double linetypeScale() const { return m_linetypeScale; }
  // eOutOfRange unless positive.
  Acad::ErrorStatus setLinetypeScale(double newval, Adesk::Boolean doSubents = true);

  AcDb::Visibility visibility() const { return m_visibility; }
  Acad::ErrorStatus setVisibility(AcDb::Visibility newVal, Adesk::Boolean doSubents = true);

  // The current layer, line type, colour and line type scale of the entity's database (or the
  // working database, or pDb).
  void setDatabaseDefaults();
  void setDatabaseDefaults(AcDbDatabase* pDb);

  // Highlighting is display state: it needs the entity open (for read at least) and is not saved.
  Acad::ErrorStatus highlight(const AcDbFullSubentPath& subId = kNullSubent,
                              const Adesk::Boolean highlightAll = false) const;
  Acad::ErrorStatus unhighlight(const AcDbFullSubentPath& subId = kNullSubent,
                                const Adesk::Boolean highlightAll = false) const;
  // Marks the entity's graphics as changed, so that the display regenerates it.
  void recordGraphicsModified(Adesk::Boolean setModified = true);

  // The world-aligned box of the entity's geometry (exact for curves; text boxes use the
  // character cell of the style's height). eInvalidExtents when the entity has no geometry.
  virtual Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const;
  // Moves, rotates or scales the geometry. Circles, arcs, text and other kinds that cannot stretch
  // answer eCannotScaleNonUniformly to an uneven scaling and keep their geometry.
  virtual Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform);
  // A transformed copy outside any database, which the caller owns.
  virtual Acad::ErrorStatus getTransformedCopy(const AcGeMatrix3d& xform, AcDbEntity*& pEnt) const;
  // Appends the simpler entities the entity is made of (new, outside any database, owned by the
  // caller): a polyline gives lines and arcs, a block reference its block's entities placed.
  // eNotApplicable for kinds that do not break up.
  virtual Acad::ErrorStatus explode(AcDbVoidPtrArray& entitySet) const;

protected:
  AcDbEntity();
  AcDbEntity(const AcDbEntity& other);

private:
  AcCmColor m_color;
  AcDbObjectId m_layerId;
  AcDbObjectId m_linetypeId;
  double m_linetypeScale = 1.0;
  AcDb::Visibility m_visibility = AcDb::kVisible;
};

// Walks the objects a complex entity owns (the vertices of a polyline). The caller deletes it.
class KD_PLATFORM_API AcDbObjectIterator : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbObjectIterator);
  ~AcDbObjectIterator() override;

  bool done() const;
  void step(bool backwards = false, bool skipErasedObjects = true);
  void start(bool atEnd = false);
  AcDbObjectId objectId() const;

private:
  friend class AcDbImpDatabase;
  explicit AcDbObjectIterator(const AcDbObjectIdArray& ids);

  AcDbObjectIdArray m_ids;
  int m_index = 0;
};

class KD_PLATFORM_API AcDbDatabase : public AcRxObject {
public:
  ACRX_DECLARE_MEMBERS(AcDbDatabase);
  // A database that no document shows. buildDefaultDrawing gives it the contents of a new
  // drawing from the standard template (layer "0"; line types "ByBlock", "ByLayer" and
  // "Continuous"; text and table style "Standard"; model and paper space); without it the
  // database holds only its tables and dictionaries.
  explicit AcDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
  ~AcDbDatabase() override;
  AcDbDatabase(const AcDbDatabase&) = delete;
  AcDbDatabase& operator=(const AcDbDatabase&) = delete;

  Acad::ErrorStatus getBlockTable(AcDbBlockTable*& pTable, AcDb::OpenMode mode = AcDb::kForRead);
  Acad::ErrorStatus getLayerTable(AcDbLayerTable*& pTable, AcDb::OpenMode mode = AcDb::kForRead);
  Acad::ErrorStatus getLinetypeTable(AcDbLinetypeTable*& pTable, AcDb::OpenMode mode = AcDb::kForRead);
  Acad::ErrorStatus getTextStyleTable(AcDbTextStyleTable*& pTable, AcDb::OpenMode mode = AcDb::kForRead);
  Acad::ErrorStatus getSymbolTable(AcDbBlockTable*& pTable, AcDb::OpenMode mode);
  Acad::ErrorStatus getSymbolTable(AcDbLayerTable*& pTable, AcDb::OpenMode mode);
  Acad::ErrorStatus getSymbolTable(AcDbLinetypeTable*& pTable, AcDb::OpenMode mode);
  Acad::ErrorStatus getSymbolTable(AcDbTextStyleTable*& pTable, AcDb::OpenMode mode);
  AcDbObjectId blockTableId() const;
  AcDbObjectId layerTableId() const;
  AcDbObjectId linetypeTableId() const;
  AcDbObjectId textStyleTableId() const;
  AcDbObjectId regAppTableId() const;
  AcDbObjectId dimStyleTableId() const;
  AcDbObjectId viewportTableId() const;
  AcDbObjectId viewTableId() const;
  AcDbObjectId UCSTableId() const;

  Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& pDict, AcDb::OpenMode mode = AcDb::kForRead);
  AcDbObjectId namedObjectsDictionaryId() const;
  Acad::ErrorStatus getGroupDictionary(AcDbDictionary*& pDict, AcDb::OpenMode mode = AcDb::kForRead);
  AcDbObjectId groupDictionaryId() const;
  Acad::ErrorStatus getLayoutDictionary(AcDbDictionary*& pDict, AcDb::OpenMode mode = AcDb::kForRead);
  AcDbObjectId layoutDictionaryId() const;
  Acad::ErrorStatus getTableStyleDictionary(AcDbDictionary*& pDict, AcDb::OpenMode mode = AcDb::kForRead);
  AcDbObjectId tableStyleDictionaryId() const;

  // The id of the object with that handle, erased or not: eNullHandle for the null handle,
  // eUnknownHandle when the database has no such object. Making ids for unknown handles
  // (createIfNotFound) is not implemented: eNotImplementedYet. xRefId must be 0.
  Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& retId, bool createIfNotFound, const AcDbHandle& objHandle,
                                    Adesk::UInt32 xRefId = 0);
  // Adds an object that has no owner yet (the caller sets one with setOwnerId); it comes back
  // open for write.
  Acad::ErrorStatus addAcDbObject(AcDbObjectId& objId, AcDbObject* pObj);
  Acad::ErrorStatus addAcDbObject(AcDbObject* pObj);

  // Current settings, which setDatabaseDefaults gives new entities.
  AcDbObjectId clayer() const;
  Acad::ErrorStatus setClayer(AcDbObjectId objId);
  AcDbObjectId celtype() const;
  Acad::ErrorStatus setCeltype(AcDbObjectId objId);
  AcCmColor cecolor() const;
  Acad::ErrorStatus setCecolor(const AcCmColor& color);
  double celtscale() const;
  Acad::ErrorStatus setCeltscale(double scale);
  AcDbObjectId textstyle() const;
  Acad::ErrorStatus setTextstyle(AcDbObjectId objId);
  AcDbObjectId tablestyle() const;
  AcDbObjectId byLayerLinetype() const;
  AcDbObjectId byBlockLinetype() const;
  // Model space: this platform has no layouts to switch to.
  AcDbObjectId currentSpaceId() const;
  // The handle the next new object gets.
  AcDbHandle handseed() const;
  // Objects in the database, erased ones included.
  Adesk::Int32 approxNumObjects() const;

private:
  friend class AcDbImpDatabase;
  AcDbImpDatabase* m_pImpDb;
};

// Opens the object for read, write or notify; obj is null unless the status is eOk.
// eNullObjectId for a null id, eInvalidObjectId for an id of no live database, eWasErased for an
// erased object (unless openErasedObject), eLockViolation for write without the document lock,
// eWasOpenForRead / eWasOpenForWrite / eWasOpenForNotify / eAtMaxReaders as the rules above say.
KD_PLATFORM_API Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& pObj, AcDbObjectId id, AcDb::OpenMode mode,
                                                     bool openErasedObject = false);
// As acdbOpenAcDbObject; eNotAnEntity for an object that is no entity.
KD_PLATFORM_API Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& pEnt, AcDbObjectId id, AcDb::OpenMode mode,
                                                     bool openErasedEntity = false);

// Opens the object as a T_OBJECT: eNotThatKindOfClass, without opening, when it is of another
// class; otherwise as acdbOpenAcDbObject.
template <class T_OBJECT>
inline Acad::ErrorStatus acdbOpenObject(T_OBJECT*& pObj, AcDbObjectId id, AcDb::OpenMode mode,
                                        bool openErased = false) {
  pObj = nullptr;
  const AcRxClass* objectClass = id.objectClass();
  if (objectClass != nullptr && !objectClass->isDerivedFrom(T_OBJECT::desc())) return Acad::eNotThatKindOfClass;
  AcDbObject* pBase = nullptr;
  const Acad::ErrorStatus es = acdbOpenAcDbObject(pBase, id, mode, openErased);
  if (es == Acad::eOk) pObj = T_OBJECT::cast(pBase);
  return es;
}

// An entity name (ads_name) and an object id name the same object: the name holds the id's
// integer form. eInvalidAdsName for a name that holds no valid id.
KD_PLATFORM_API Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& objId, const ads_name objName);
KD_PLATFORM_API Acad::ErrorStatus acdbGetAdsName(ads_name& objName, AcDbObjectId objId);

#endif  // !_WIN32
