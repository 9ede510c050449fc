// The drawing database's state: the objects of one database with their ids, handles, owners,
// extension dictionaries and open state, and the process-wide register that turns an object id
// (a session id) into its object.
//
// AcDbDatabase and AcDbObject (platform/acad/dbmain.h) are the faces callers hold; each keeps a
// pointer to its state here. Headless code that needs more than the ObjectARX calls give (a DXF
// writer walking every object, the land model adding its own objects) uses this class.
#pragma once

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "platform/acad/dbmain.h"
#include "platform/ole/unknwn.h"

class AcDbDictionary;

// One object of a database. Lives as long as its database; erasing only marks it.
struct AcDbStub {
  Adesk::IntDbId id = 0;
  AcDbImpDatabase* database = nullptr;
  std::unique_ptr<AcDbObject> object;
  Adesk::UInt64 handle = 0;
  AcDbObjectId owner;
  AcDbObjectId extensionDictionary;
  bool erased = false;
  bool newObject = true;
  // Open state: the modes of the opens not yet closed, oldest first.
  std::vector<AcDb::OpenMode> opens;
  int readers = 0;
  bool writer = false;
  bool notifier = false;
  // Display state, not saved.
  bool highlighted = false;
  unsigned long graphicsModified = 0;
  // The object's automation face while one exists (not counted: the face clears it as it dies).
  IUnknown* automation = nullptr;

  AcDbObjectId objectId() const { return AcDbObjectId().setFromOldId(id); }
};

class AcDbImpDatabase {
public:
  // Readers per object that AutoCAD allows at once.
  static constexpr int kMaxReaders = 256;

  explicit AcDbImpDatabase(AcDbDatabase& face);
  ~AcDbImpDatabase();
  AcDbImpDatabase(const AcDbImpDatabase&) = delete;
  AcDbImpDatabase& operator=(const AcDbImpDatabase&) = delete;

  static AcDbImpDatabase* of(const AcDbDatabase* database);
  // The object's state, or null for an object not in a database.
  static AcDbStub* stubOf(const AcDbObject* object);
  // The state of the object an id names, or null when no live database has it.
  static AcDbStub* lookup(AcDbObjectId id);
  // The open object an id names, without opening it (for the platform's own reads of objects
  // that may be open already), or null.
  static AcDbObject* peek(AcDbObjectId id);
  // Walks the ids given (the vertices of a complex entity).
  static AcDbObjectIterator* newObjectIterator(const AcDbObjectIdArray& ids);

  AcDbDatabase& face() const { return m_face; }

  // Builds the tables and dictionaries every drawing has and, with defaultDrawing, the contents
  // of a new drawing from the standard template.
  void buildSkeleton(bool defaultDrawing);

  // Adds a new object owned by owner (null for none). It comes back open for write, unless
  // closed, in which case it comes in closed (owned parts: vertices, block markers).
  Acad::ErrorStatus add(AcDbObject* object, AcDbObjectId owner, AcDbObjectId* id, bool closed = false);
  Acad::ErrorStatus open(AcDbStub& stub, AcDb::OpenMode mode, bool openErased, AcDbObject*& object);
  Acad::ErrorStatus close(AcDbStub& stub);
  Acad::ErrorStatus upgradeOpen(AcDbStub& stub);
  Acad::ErrorStatus downgradeOpen(AcDbStub& stub);
  Acad::ErrorStatus erase(AcDbStub& stub, bool erasing);
  AcDbStub* findHandle(Adesk::UInt64 handle) const;
  // For reading a drawing file: gives the object the handle it has in the file (eInvalidInput
  // for 0, eHandleExists when another object holds it) and keeps the handle seed above it.
  Acad::ErrorStatus setHandle(AcDbStub& stub, Adesk::UInt64 handle);
  // The handle the next new object gets: eInvalidInput unless it is above every handle in use.
  Acad::ErrorStatus setHandseed(Adesk::UInt64 seed);

  // Whether the current execution context may change this database (its document's write lock);
  // a database without a document may always be changed.
  bool writeAllowed() const { return !m_writeAllowed || m_writeAllowed(); }
  void setWritePolicy(std::function<bool()> policy) { m_writeAllowed = std::move(policy); }

  // Every object in the order it was added, erased ones included: how a writer walks the
  // drawing (each stub has the object's id, handle, owner and extension dictionary).
  const std::vector<std::unique_ptr<AcDbStub>>& stubs() const { return m_stubs; }
  Adesk::UInt64 handseed() const { return m_handseed; }

  // The objects every drawing has.
  struct Roots {
    AcDbObjectId blockTable, layerTable, linetypeTable, textStyleTable, regAppTable, dimStyleTable,
        viewportTable, viewTable, ucsTable;
    AcDbObjectId namedObjects, groups, layouts, tableStyles;
    AcDbObjectId modelSpace, paperSpace, layerZero, byLayer, byBlock, continuous, standardTextStyle,
        standardTableStyle;
  };
  const Roots& roots() const { return m_roots; }

  // Current settings (the system variables CLAYER, CELTYPE, CECOLOR, CELTSCALE, TEXTSTYLE,
  // CTABLESTYLE, TEXTSIZE).
  struct Settings {
    AcDbObjectId clayer, celtype, textstyle, tablestyle;
    AcCmColor cecolor;
    double celtscale = 1.0;
    double textsize = 0.2;
  };
  Settings& settings() { return m_settings; }

  // Adds a record to a table, or an entry to a dictionary, through the ObjectARX calls, and
  // closes it; for building the skeleton.
  AcDbObjectId addRecord(AcDbObjectId table, AcDbObject* record);

private:
  bool isRoot(const AcDbStub& stub) const;
  void removeFromOwningDictionary(const AcDbStub& stub);

  AcDbDatabase& m_face;
  std::vector<std::unique_ptr<AcDbStub>> m_stubs;
  std::unordered_map<Adesk::UInt64, AcDbStub*> m_byHandle;
  Adesk::UInt64 m_handseed = 1;
  Roots m_roots;
  Settings m_settings;
  std::function<bool()> m_writeAllowed;
};
