// The drawing's layers and line types as the drawing classes use them: CGrAcadLayerTable finds and
// makes layers, CGrAcadLayer reads and changes one, CGrAcadLineType maps the element model's line
// type codes onto AutoCAD's line types.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "module/graphics/GrColor.h"
#include "platform/acad/dbmain.h"

// Line type codes of the element model and the AutoCAD line types they stand for. Codes other
// than these draw as "ByLayer"; line types other than these read back as 0.
//   -1 ByBlock, 0 ByLayer, 1 Continuous, 2 DASHED, 3 HIDDEN, 4 CENTER, 5 PHANTOM, 6 DOT,
//   7 DASHDOT, 8 DIVIDE, 9 BORDER
// The dashed kinds carry the dash patterns of AutoCAD's acad.lin and are added to a drawing
// that lacks them.
class CGrAcadLineType {
public:
  static constexpr std::int32_t kByBlock = -1;
  static constexpr std::int32_t kByLayer = 0;
  static constexpr std::int32_t kContinuous = 1;

  // "ByLayer" for an unknown code.
  static const wchar_t* NameOf(std::int32_t code);
  // Case ignored; 0 for a name that has no code.
  static std::int32_t CodeOf(const wchar_t* name);
  // The line type of the code in db, added when db lacks it (db must be open to writes then);
  // null when it cannot be had.
  static AcDbObjectId Ensure(AcDbDatabase* db, std::int32_t code);
};

class CGrAcadLayer {
public:
  explicit CGrAcadLayer(AcDbObjectId id) : m_id(id) {}

  AcDbObjectId Id() const { return m_id; }
  std::wstring Name() const;
  // By index (method 1) for a palette colour, RGB (method 2) for a true colour.
  CGrColor Color() const;
  std::int32_t LineType() const;
  bool IsOff() const;
  bool IsFrozen() const;
  bool IsLocked() const;

  // Statuses as the graphics context's: 0, or AutoCAD's status.
  int SetColor(const CGrColor& color);
  int SetLineType(std::int32_t code);
  int SetOff(bool off);
  int SetFrozen(bool frozen);
  int SetLocked(bool locked);

private:
  AcDbObjectId m_id;
};

class CGrAcadLayerTable {
public:
  // The layer table of db (the working drawing when null).
  explicit CGrAcadLayerTable(AcDbDatabase* db = nullptr);

  bool Has(const std::wstring& name) const;
  // Null when there is no such layer.
  std::unique_ptr<CGrAcadLayer> Find(const std::wstring& name) const;
  // The layer of that name, made (white, "Continuous") when missing; null when it cannot be had
  // (a bad name, no write lock).
  AcDbObjectId Ensure(const std::wstring& name);
  // Makes a layer with this colour and line type: 0, eDuplicateRecordName when it exists, or
  // another status.
  int Add(const std::wstring& name, const CGrColor& color, std::int32_t lineType);
  // The names of the layers that are not erased, in the order they were made.
  std::vector<std::wstring> Names() const;

private:
  AcDbDatabase* m_db;
};

// AutoCAD colours and the element model's: a palette index (with the special codes -1 by block,
// -2 by layer, -3 foreground) or a true colour (method 2; method 3 draws as its RGB too). By layer
// and the default colour (method 0, no colour of its own) are one: the default colour draws by
// layer and by layer reads back as the default colour. Index 7 reads back as code -3.
AcCmColor GrAcadColorFromElement(const CGrColor& color);
CGrColor GrElementColorFromAcad(const AcCmColor& color);
