// The DXF writer: walks a drawing's objects (AcDbImpDatabase::stubs) and writes the header, the
// classes, the symbol tables, the blocks, model space and the objects, with every object's
// handle, owner and extension dictionary.
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <unordered_map>
#include <unordered_set>

#include <unistd.h>

#include "headless/acad/Dxf.h"
#include "headless/acad/DxfAcis.h"
#include "headless/acad/DxfFormat.h"
#include "headless/acad/ImpAccess.h"
#include "headless/acad/ImpDatabase.h"
#include "headless/acad/Resbuf.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbelipse.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbgroup.h"
#include "platform/acad/dbhatch.h"
#include "platform/acad/dblayout.h"
#include "platform/acad/dbpl.h"
#include "platform/acad/dbsol3d.h"
#include "platform/acad/dbsymtb.h"
#include "platform/acad/dbtable.h"
#include "platform/acad/dbtablestyle.h"
#include "platform/acad/dbxrecrd.h"

namespace headless::dxf {

namespace {

std::string Narrow(const ACHAR* text) { return Out::Encode(text == nullptr ? L"" : text); }

template <class T>
T* Peek(AcDbObjectId id) {
  return T::cast(AcDbImpDatabase::peek(id));
}

double Deg(double rad) { return rad * kRadToDeg; }

// Degrees in [0, 360).
double Deg360(double rad) {
  double d = std::fmod(Deg(rad), 360.0);
  if (d < 0.0) d += 360.0;
  return d;
}

class Writer {
public:
  Writer(AcDbDatabase& face, std::string& text)
      : m_face(face), m_db(*AcDbImpDatabase::of(&face)), m_buffer(text), m_out(text) {
    m_nextHandle = m_db.handseed();
    for (const auto& stub : m_db.stubs()) m_stubs.emplace(stub->id, stub.get());
  }

  void Run() {
    CollectTables();
    Header();
    Classes();
    Tables();
    Blocks();
    Entities();
    Objects();
    m_out.Str(0, "EOF");
  }

private:
  const AcDbStub* StubOf(AcDbObjectId id) const {
    auto found = m_stubs.find(id.asOldId());
    return found == m_stubs.end() ? nullptr : found->second;
  }
  std::uint64_t HandleOf(AcDbObjectId id) const {
    const AcDbStub* stub = StubOf(id);
    return stub == nullptr ? 0 : stub->handle;
  }
  bool Live(AcDbObjectId id) const {
    const AcDbStub* stub = StubOf(id);
    return stub != nullptr && !stub->erased;
  }
  std::uint64_t NewHandle() { return m_nextHandle++; }

  // --- Common parts -----------------------------------------------------------------------------

  // Handle, extension dictionary, reactors and owner: what every object starts with.
  void Head(const char* type, const AcDbStub& stub, int handleCode = 5) {
    m_out.Str(0, type);
    m_out.Handle(handleCode, stub.handle);
    if (Live(stub.extensionDictionary)) {
      m_xdictQueue.push_back(stub.extensionDictionary);
      m_out.Str(102, "{ACAD_XDICTIONARY");
      m_out.Handle(360, HandleOf(stub.extensionDictionary));
      m_out.Str(102, "}");
    }
    if (const AcDbStub* owner = StubOf(stub.owner); owner != nullptr && AcDbDictionary::cast(owner->object.get())) {
      m_out.Str(102, "{ACAD_REACTORS");
      m_out.Handle(330, owner->handle);
      m_out.Str(102, "}");
    }
    m_out.Handle(330, StubOf(stub.owner) != nullptr ? StubOf(stub.owner)->handle : 0);
  }

  const std::string& NameOfRecord(AcDbObjectId id) {
    auto found = m_names.find(id.asOldId());
    if (found != m_names.end()) return found->second;
    const ACHAR* name = nullptr;
    if (auto* record = Peek<AcDbSymbolTableRecord>(id)) record->getName(name);
    return m_names.emplace(id.asOldId(), Narrow(name)).first->second;
  }

  void Color(const AcCmColor& color, bool off = false) {
    int index = 256;
    if (color.isByBlock()) {
      index = 0;
    } else if (color.isForeground()) {
      index = 7;
    } else if (color.isByACI() || color.isByColor()) {
      index = color.colorIndex();
    }
    if (index != 256 || off) m_out.Int(62, off ? -index : index);
    if (color.isByColor()) {
      m_out.Int(420, (static_cast<long long>(color.red()) << 16) | (color.green() << 8) | color.blue());
    }
  }

  void EntityHead(const char* type, const AcDbEntity& entity, const AcDbStub& stub, const char* subclass) {
    Head(type, stub);
    m_out.Str(100, "AcDbEntity");
    if (m_paperSpace) m_out.Int(67, 1);
    m_out.Str(8, entity.layerId().isNull() ? std::string("0") : NameOfRecord(entity.layerId()));
    if (!entity.linetypeId().isNull() && entity.linetypeId() != m_face.byLayerLinetype()) {
      m_out.Str(6, NameOfRecord(entity.linetypeId()));
    }
    Color(entity.color());
    if (entity.linetypeScale() != 1.0) m_out.Real(48, entity.linetypeScale());
    if (entity.visibility() == AcDb::kInvisible) m_out.Int(60, 1);
    if (subclass != nullptr) m_out.Str(100, subclass);
  }

  void Normal(const AcGeVector3d& n) {
    if (n.x != 0.0 || n.y != 0.0 || n.z != 1.0) m_out.Point(210, n.x, n.y, n.z);
  }

  // --- Sections ---------------------------------------------------------------------------------

  void CollectTables() {
    const auto& roots = m_db.roots();
    for (AcDbObjectId id : {roots.layouts}) {
      if (auto* layouts = Peek<AcDbDictionary>(id)) {
        AcDbDictionaryIterator* it = layouts->newIterator();
        for (; !it->done(); it->next()) {
          if (auto* layout = Peek<AcDbLayout>(it->objectId())) {
            m_layoutOf[layout->getBlockTableRecordId().asOldId()] = HandleOf(it->objectId());
          }
        }
        delete it;
      }
    }
    // Tables write a block of their own to show what they hold (AutoCAD's "*T" blocks).
    if (auto* blocks = Peek<AcDbBlockTable>(roots.blockTable)) {
      for (AcDbObjectId id : blocks->recordIds()) {
        auto* record = Peek<AcDbBlockTableRecord>(id);
        if (record == nullptr || !Live(id)) continue;
        for (AcDbObjectId entityId : record->entityIds()) {
          if (Live(entityId) && Peek<AcDbTable>(entityId) != nullptr) {
            TableBlock block;
            block.record = NewHandle();
            block.begin = NewHandle();
            block.end = NewHandle();
            block.name = "*T" + std::to_string(m_tableBlocks.size() + 1);
            m_tableBlocks.emplace(entityId.asOldId(), block);
            m_tableBlockOrder.push_back(entityId);
          }
        }
      }
    }
  }

  void Header() {
    m_out.Str(0, "SECTION");
    m_out.Str(2, "HEADER");
    m_out.Str(9, "$ACADVER");
    m_out.Str(1, kVersion);
    m_out.Str(9, "$ACADMAINTVER");
    m_out.Int(70, 0);
    m_out.Str(9, "$DWGCODEPAGE");
    m_out.Str(3, "ANSI_1252");
    m_out.Str(9, "$INSBASE");
    m_out.Point(10, 0, 0, 0);
    AcDbExtents extents = ModelExtents();
    const bool empty = extents.minPoint().x > extents.maxPoint().x;
    m_out.Str(9, "$EXTMIN");
    m_out.Point(10, empty ? 0 : extents.minPoint().x, empty ? 0 : extents.minPoint().y, empty ? 0 : extents.minPoint().z);
    m_out.Str(9, "$EXTMAX");
    m_out.Point(10, empty ? 0 : extents.maxPoint().x, empty ? 0 : extents.maxPoint().y, empty ? 0 : extents.maxPoint().z);
    auto& settings = m_db.settings();
    m_out.Str(9, "$CLAYER");
    m_out.Str(8, NameOfRecord(settings.clayer));
    m_out.Str(9, "$CELTYPE");
    m_out.Str(6, NameOfRecord(settings.celtype));
    m_out.Str(9, "$CECOLOR");
    m_out.Int(62, settings.cecolor.isByLayer() ? 256 : settings.cecolor.isByBlock() ? 0 : settings.cecolor.colorIndex());
    m_out.Str(9, "$CELTSCALE");
    m_out.Real(40, settings.celtscale);
    m_out.Str(9, "$TEXTSTYLE");
    m_out.Str(7, NameOfRecord(settings.textstyle));
    m_out.Str(9, "$TEXTSIZE");
    m_out.Real(40, settings.textsize);
    m_out.Str(9, "$HANDSEED");
    m_out.Handle(5, m_nextHandle);
    m_out.Str(0, "ENDSEC");
  }

  AcDbExtents ModelExtents() {
    AcDbExtents all;
    if (auto* model = Peek<AcDbBlockTableRecord>(m_db.roots().modelSpace)) {
      for (AcDbObjectId id : model->entityIds()) {
        if (!Live(id)) continue;
        AcDbExtents box;
        if (auto* entity = Peek<AcDbEntity>(id); entity != nullptr && entity->getGeomExtents(box) == Acad::eOk) {
          all.addExt(box);
        }
      }
    }
    return all;
  }

  void Class(const char* dxfName, const char* cppName, int instances, bool entity) {
    m_out.Str(0, "CLASS");
    m_out.Str(1, dxfName);
    m_out.Str(2, cppName);
    m_out.Str(3, "ObjectDBX Classes");
    m_out.Int(90, entity ? 1025 : 1153);
    m_out.Int(91, instances);
    m_out.Int(280, 0);
    m_out.Int(281, entity ? 1 : 0);
  }

  void Classes() {
    m_out.Str(0, "SECTION");
    m_out.Str(2, "CLASSES");
    Class("LAYOUT", "AcDbLayout", 0, false);
    Class("TABLESTYLE", "AcDbTableStyle", 0, false);
    Class("ACAD_TABLE", "AcDbTable", static_cast<int>(m_tableBlocks.size()), true);
    m_out.Str(0, "ENDSEC");
  }

  // --- Tables -----------------------------------------------------------------------------------

  template <class Body>
  void Table(const char* name, AcDbObjectId tableId, int extraRecords, Body body) {
    const AcDbStub* stub = StubOf(tableId);
    auto* table = Peek<AcDbSymbolTable>(tableId);
    if (stub == nullptr || table == nullptr) return;
    int count = extraRecords;
    for (AcDbObjectId id : table->recordIds()) count += Live(id) ? 1 : 0;
    m_out.Str(0, "TABLE");
    m_out.Str(2, name);
    m_out.Handle(5, stub->handle);
    m_out.Handle(330, 0);
    m_out.Str(100, "AcDbSymbolTable");
    m_out.Int(70, count);
    if (std::strcmp(name, "DIMSTYLE") == 0) m_out.Str(100, "AcDbDimStyleTable");
    for (AcDbObjectId id : table->recordIds()) {
      const AcDbStub* record = StubOf(id);
      if (record == nullptr || record->erased) continue;
      body(*record, *Peek<AcDbSymbolTableRecord>(id));
    }
    m_out.Str(0, "ENDTAB");
  }

  void RecordHead(const char* type, const AcDbStub& stub, const char* subclass, const AcDbSymbolTableRecord& record,
                  int flags, int handleCode = 5) {
    Head(type, stub, handleCode);
    m_out.Str(100, "AcDbSymbolTableRecord");
    m_out.Str(100, subclass);
    const ACHAR* name = nullptr;
    record.getName(name);
    m_out.Str(2, Narrow(name));
    m_out.Int(70, flags);
  }

  void Tables() {
    const auto& roots = m_db.roots();
    m_out.Str(0, "SECTION");
    m_out.Str(2, "TABLES");
    Table("VPORT", roots.viewportTable, 0, [&](const AcDbStub& stub, const AcDbSymbolTableRecord& record) {
      RecordHead("VPORT", stub, "AcDbViewportTableRecord", record, 0);
      const AcDbExtents extents = ModelExtents();
      const bool empty = extents.minPoint().x > extents.maxPoint().x;
      const AcGePoint3d lo = empty ? AcGePoint3d(0, 0, 0) : extents.minPoint();
      const AcGePoint3d hi = empty ? AcGePoint3d(12, 9, 0) : extents.maxPoint();
      m_out.Point2(10, 0, 0);
      m_out.Point2(11, 1, 1);
      m_out.Point2(12, (lo.x + hi.x) / 2, (lo.y + hi.y) / 2);
      m_out.Point2(13, 0, 0);
      m_out.Point2(14, 0.5, 0.5);
      m_out.Point2(15, 0.5, 0.5);
      m_out.Point(16, 0, 0, 1);
      m_out.Point(17, 0, 0, 0);
      m_out.Real(40, std::max({hi.y - lo.y, (hi.x - lo.x) / 1.5, 1.0}) * 1.1);
      m_out.Real(41, 1.5);
      m_out.Real(42, 50);
      m_out.Real(43, 0);
      m_out.Real(44, 0);
      m_out.Real(50, 0);
      m_out.Real(51, 0);
      m_out.Int(71, 0);
      m_out.Int(72, 1000);
      m_out.Int(73, 1);
      m_out.Int(74, 3);
      m_out.Int(75, 0);
      m_out.Int(76, 0);
      m_out.Int(77, 0);
      m_out.Int(78, 0);
    });
    Table("LTYPE", roots.linetypeTable, 0, [&](const AcDbStub& stub, const AcDbSymbolTableRecord& record) {
      const auto& lt = static_cast<const AcDbLinetypeTableRecord&>(record);
      RecordHead("LTYPE", stub, "AcDbLinetypeTableRecord", record, 0);
      ACHAR* comments = nullptr;
      lt.comments(comments);
      m_out.Str(3, Narrow(comments));
      delete[] comments;
      m_out.Int(72, 65);
      m_out.Int(73, lt.numDashes());
      m_out.Real(40, lt.patternLength());
      for (int i = 0; i < lt.numDashes(); ++i) {
        m_out.Real(49, lt.dashLengthAt(i));
        m_out.Int(74, 0);
      }
    });
    Table("LAYER", roots.layerTable, 0, [&](const AcDbStub& stub, const AcDbSymbolTableRecord& record) {
      const auto& layer = static_cast<const AcDbLayerTableRecord&>(record);
      RecordHead("LAYER", stub, "AcDbLayerTableRecord", record, (layer.isFrozen() ? 1 : 0) | (layer.isLocked() ? 4 : 0));
      AcCmColor color = layer.color();
      if (color.isByLayer() || color.isByBlock()) color.setColorIndex(7);
      Color(color, layer.isOff());
      if (!layer.isOff() && color.colorIndex() == 256) m_out.Int(62, 7);
      m_out.Str(6, layer.linetypeObjectId().isNull() ? std::string("Continuous") : NameOfRecord(layer.linetypeObjectId()));
      m_out.Int(290, layer.isPlottable() ? 1 : 0);
      m_out.Int(370, -3);
    });
    Table("STYLE", roots.textStyleTable, 0, [&](const AcDbStub& stub, const AcDbSymbolTableRecord& record) {
      const auto& style = static_cast<const AcDbTextStyleTableRecord&>(record);
      RecordHead("STYLE", stub, "AcDbTextStyleTableRecord", record, (style.isShapeFile() ? 1 : 0) | (style.isVertical() ? 4 : 0));
      m_out.Real(40, style.textSize());
      m_out.Real(41, style.xScale());
      m_out.Real(50, Deg(style.obliquingAngle()));
      m_out.Int(71, 0);
      m_out.Real(42, style.priorSize());
      ACHAR* font = nullptr;
      ACHAR* bigFont = nullptr;
      style.fileName(font);
      style.bigFontFileName(bigFont);
      m_out.Str(3, Narrow(font));
      m_out.Str(4, Narrow(bigFont));
      delete[] font;
      delete[] bigFont;
    });
    Table("VIEW", roots.viewTable, 0, [](const AcDbStub&, const AcDbSymbolTableRecord&) {});
    Table("UCS", roots.ucsTable, 0, [](const AcDbStub&, const AcDbSymbolTableRecord&) {});
    Table("APPID", roots.regAppTable, 0, [&](const AcDbStub& stub, const AcDbSymbolTableRecord& record) {
      RecordHead("APPID", stub, "AcDbRegAppTableRecord", record, 0);
    });
    Table("DIMSTYLE", roots.dimStyleTable, 0, [&](const AcDbStub& stub, const AcDbSymbolTableRecord& record) {
      RecordHead("DIMSTYLE", stub, "AcDbDimStyleTableRecord", record, 0, 105);
    });
    Table("BLOCK_RECORD", roots.blockTable, static_cast<int>(m_tableBlocks.size()),
          [&](const AcDbStub& stub, const AcDbSymbolTableRecord& record) {
            RecordHead("BLOCK_RECORD", stub, "AcDbBlockTableRecord", record, 0);
            auto layout = m_layoutOf.find(stub.id);
            m_out.Handle(340, layout == m_layoutOf.end() ? 0 : layout->second);
            m_out.Int(280, 1);
            m_out.Int(281, 0);
          });
    // The "*T" records of the tables were counted above: they end the table.
    if (!m_tableBlocks.empty()) {
      const std::string end = "  0\nENDTAB\n";
      m_buffer.resize(m_buffer.size() - end.size());
      for (AcDbObjectId id : m_tableBlockOrder) {
        const TableBlock& block = m_tableBlocks.at(id.asOldId());
        m_out.Str(0, "BLOCK_RECORD");
        m_out.Handle(5, block.record);
        m_out.Handle(330, HandleOf(m_db.roots().blockTable));
        m_out.Str(100, "AcDbSymbolTableRecord");
        m_out.Str(100, "AcDbBlockTableRecord");
        m_out.Str(2, block.name);
        m_out.Int(70, 0);
        m_out.Handle(340, 0);
        m_out.Int(280, 1);
        m_out.Int(281, 0);
      }
      m_out.Str(0, "ENDTAB");
    }
    m_out.Str(0, "ENDSEC");
  }

  // --- Blocks and entities ----------------------------------------------------------------------

  void BlockBegin(std::uint64_t handle, std::uint64_t owner, const std::string& name, const AcGePoint3d& origin,
                  int flags, bool paper) {
    m_out.Str(0, "BLOCK");
    m_out.Handle(5, handle);
    m_out.Handle(330, owner);
    m_out.Str(100, "AcDbEntity");
    if (paper) m_out.Int(67, 1);
    m_out.Str(8, "0");
    m_out.Str(100, "AcDbBlockBegin");
    m_out.Str(2, name);
    m_out.Int(70, flags);
    m_out.Point(10, origin.x, origin.y, origin.z);
    m_out.Str(3, name);
    m_out.Str(1, "");
  }

  void BlockEnd(std::uint64_t handle, std::uint64_t owner, bool paper) {
    m_out.Str(0, "ENDBLK");
    m_out.Handle(5, handle);
    m_out.Handle(330, owner);
    m_out.Str(100, "AcDbEntity");
    if (paper) m_out.Int(67, 1);
    m_out.Str(8, "0");
    m_out.Str(100, "AcDbBlockEnd");
  }

  void Blocks() {
    m_out.Str(0, "SECTION");
    m_out.Str(2, "BLOCKS");
    auto* blocks = Peek<AcDbBlockTable>(m_db.roots().blockTable);
    for (AcDbObjectId id : blocks->recordIds()) {
      const AcDbStub* stub = StubOf(id);
      auto* record = Peek<AcDbBlockTableRecord>(id);
      if (stub == nullptr || stub->erased || record == nullptr) continue;
      const bool paper = id == m_db.roots().paperSpace;
      const std::string& name = NameOfRecord(id);
      BlockBegin(HandleOf(record->blockBeginId()), stub->handle, name, record->origin(),
                 record->isAnonymous() ? 1 : 0, paper);
      if (!record->isLayout()) {
        for (AcDbObjectId entityId : record->entityIds()) Entity(entityId);
      }
      BlockEnd(HandleOf(record->blockEndId()), stub->handle, paper);
    }
    for (AcDbObjectId id : m_tableBlockOrder) TableGraphics(id);
    m_out.Str(0, "ENDSEC");
  }

  void Entities() {
    m_out.Str(0, "SECTION");
    m_out.Str(2, "ENTITIES");
    if (auto* model = Peek<AcDbBlockTableRecord>(m_db.roots().modelSpace)) {
      for (AcDbObjectId id : model->entityIds()) Entity(id);
    }
    if (auto* paper = Peek<AcDbBlockTableRecord>(m_db.roots().paperSpace)) {
      m_paperSpace = true;
      for (AcDbObjectId id : paper->entityIds()) Entity(id);
      m_paperSpace = false;
    }
    m_out.Str(0, "ENDSEC");
  }

  void Entity(AcDbObjectId id) {
    const AcDbStub* stub = StubOf(id);
    if (stub == nullptr || stub->erased) return;
    AcDbObject* object = stub->object.get();
    bool written = true;
    if (auto* line = AcDbLine::cast(object)) {
      EntityHead("LINE", *line, *stub, "AcDbLine");
      if (line->thickness() != 0.0) m_out.Real(39, line->thickness());
      m_out.Point(10, line->startPoint().x, line->startPoint().y, line->startPoint().z);
      m_out.Point(11, line->endPoint().x, line->endPoint().y, line->endPoint().z);
      Normal(line->normal());
    } else if (auto* arc = AcDbArc::cast(object)) {
      EntityHead("ARC", *arc, *stub, "AcDbCircle");
      Circle(arc->center(), arc->normal(), arc->radius(), arc->thickness());
      m_out.Str(100, "AcDbArc");
      m_out.Real(50, Deg(arc->startAngle()));
      m_out.Real(51, Deg(arc->endAngle()));
    } else if (auto* circle = AcDbCircle::cast(object)) {
      EntityHead("CIRCLE", *circle, *stub, "AcDbCircle");
      Circle(circle->center(), circle->normal(), circle->radius(), circle->thickness());
    } else if (auto* ellipse = AcDbEllipse::cast(object)) {
      EntityHead("ELLIPSE", *ellipse, *stub, "AcDbEllipse");
      const AcGePoint3d c = ellipse->center();
      const AcGeVector3d major = ellipse->majorAxis();
      const AcGeVector3d n = ellipse->normal();
      double start = 0.0;
      double end = 0.0;
      ellipse->getStartParam(start);
      ellipse->getEndParam(end);
      m_out.Point(10, c.x, c.y, c.z);
      m_out.Point(11, major.x, major.y, major.z);
      m_out.Point(210, n.x, n.y, n.z);
      m_out.Real(40, ellipse->radiusRatio());
      m_out.Real(41, start);
      m_out.Real(42, end);
    } else if (auto* light = AcDbPolyline::cast(object)) {
      LightweightPolyline(*light, *stub);
    } else if (auto* flat = AcDb2dPolyline::cast(object)) {
      Polyline2d(*flat, *stub);
    } else if (auto* spatial = AcDb3dPolyline::cast(object)) {
      Polyline3d(*spatial, *stub);
    } else if (auto* mesh = AcDbPolyFaceMesh::cast(object)) {
      PolyfaceMesh(*mesh, *stub);
    } else if (auto* table = AcDbTable::cast(object)) {
      TableEntity(*table, *stub);
    } else if (auto* insert = AcDbBlockReference::cast(object)) {
      EntityHead("INSERT", *insert, *stub, "AcDbBlockReference");
      m_out.Str(2, NameOfRecord(insert->blockTableRecord()));
      const AcGePoint3d p = insert->position();
      m_out.Point(10, p.x, p.y, p.z);
      const AcGeScale3d s = insert->scaleFactors();
      m_out.Real(41, s.sx);
      m_out.Real(42, s.sy);
      m_out.Real(43, s.sz);
      m_out.Real(50, Deg(insert->rotation()));
      Normal(insert->normal());
    } else if (auto* text = AcDbText::cast(object)) {
      Text(*text, *stub);
    } else if (auto* face = AcDbFace::cast(object)) {
      EntityHead("3DFACE", *face, *stub, "AcDbFace");
      int hidden = 0;
      for (Adesk::UInt16 i = 0; i < 4; ++i) {
        AcGePoint3d p;
        face->getVertexAt(i, p);
        m_out.Point(10 + i, p.x, p.y, p.z);
        Adesk::Boolean visible = true;
        face->isEdgeVisibleAt(i, visible);
        if (!visible) hidden |= 1 << i;
      }
      m_out.Int(70, hidden);
    } else if (auto* hatch = AcDbHatch::cast(object)) {
      Hatch(*hatch, *stub);
    } else if (auto* solid = AcDb3dSolid::cast(object)) {
      Solid(*solid, *stub);
    } else {
      // Objects of other applications (Civil 3D's) have no DXF form here.
      written = false;
    }
    if (written) m_written.insert(stub->handle);
  }

  void Circle(const AcGePoint3d& centre, const AcGeVector3d& normal, double radius, double thickness) {
    if (thickness != 0.0) m_out.Real(39, thickness);
    // The centre in the object coordinate system of the normal.
    const AcGePoint3d c = AcGePoint3d(centre).transformBy(AcGeMatrix3d::worldToPlane(normal));
    m_out.Point(10, c.x, c.y, c.z);
    m_out.Real(40, radius);
    Normal(normal);
  }

  void LightweightPolyline(const AcDbPolyline& pl, const AcDbStub& stub) {
    EntityHead("LWPOLYLINE", pl, stub, "AcDbPolyline");
    m_out.Int(90, pl.numVerts());
    m_out.Int(70, pl.isClosed() ? 1 : 0);
    double width = 0.0;
    if (pl.getConstantWidth(width) == Acad::eOk && width != 0.0) m_out.Real(43, width);
    if (pl.elevation() != 0.0) m_out.Real(38, pl.elevation());
    if (pl.thickness() != 0.0) m_out.Real(39, pl.thickness());
    for (unsigned i = 0; i < pl.numVerts(); ++i) {
      AcGePoint2d p;
      double bulge = 0.0;
      double sw = 0.0;
      double ew = 0.0;
      pl.getPointAt(i, p);
      pl.getBulgeAt(i, bulge);
      pl.getWidthsAt(i, sw, ew);
      m_out.Point2(10, p.x, p.y);
      if (sw != 0.0 || ew != 0.0) {
        m_out.Real(40, sw);
        m_out.Real(41, ew);
      }
      if (bulge != 0.0) m_out.Real(42, bulge);
    }
    Normal(pl.normal());
  }

  void Vertices(const AcDbImpComplexVertices& vertices, const AcDbEntity& owner, const AcDbStub& ownerStub,
                const std::function<void(const AcDbVertex&)>& body) {
    for (AcDbObjectId id : vertices.ids) {
      const AcDbStub* stub = StubOf(id);
      if (stub == nullptr || stub->erased) continue;
      auto* vertex = AcDbVertex::cast(stub->object.get());
      Head("VERTEX", *stub);
      m_out.Str(100, "AcDbEntity");
      if (m_paperSpace) m_out.Int(67, 1);
      m_out.Str(8, owner.layerId().isNull() ? std::string("0") : NameOfRecord(owner.layerId()));
      m_out.Str(100, "AcDbVertex");
      body(*vertex);
      m_written.insert(stub->handle);
    }
    if (const AcDbStub* end = StubOf(vertices.sequenceEnd)) {
      Head("SEQEND", *end);
      m_out.Str(100, "AcDbEntity");
      if (m_paperSpace) m_out.Int(67, 1);
      m_out.Str(8, owner.layerId().isNull() ? std::string("0") : NameOfRecord(owner.layerId()));
      m_written.insert(end->handle);
    }
    (void)ownerStub;
  }

  void Polyline2d(const AcDb2dPolyline& pl, const AcDbStub& stub) {
    EntityHead("POLYLINE", pl, stub, "AcDb2dPolyline");
    m_out.Int(66, 1);
    m_out.Point(10, 0, 0, pl.elevation());
    if (pl.thickness() != 0.0) m_out.Real(39, pl.thickness());
    m_out.Int(70, pl.isClosed() ? 1 : 0);
    if (pl.defaultStartWidth() != 0.0) m_out.Real(40, pl.defaultStartWidth());
    if (pl.defaultEndWidth() != 0.0) m_out.Real(41, pl.defaultEndWidth());
    Normal(pl.normal());
    Vertices(AcDbImpAccess::vertices(pl), pl, stub, [&](const AcDbVertex& v) {
      const auto& vertex = static_cast<const AcDb2dVertex&>(v);
      m_out.Str(100, "AcDb2dVertex");
      const AcGePoint3d p = vertex.position();
      m_out.Point(10, p.x, p.y, pl.elevation());
      if (vertex.startWidth() != 0.0) m_out.Real(40, vertex.startWidth());
      if (vertex.endWidth() != 0.0) m_out.Real(41, vertex.endWidth());
      if (vertex.bulge() != 0.0) m_out.Real(42, vertex.bulge());
      m_out.Int(70, 0);
    });
  }

  void Polyline3d(const AcDb3dPolyline& pl, const AcDbStub& stub) {
    EntityHead("POLYLINE", pl, stub, "AcDb3dPolyline");
    m_out.Int(66, 1);
    m_out.Point(10, 0, 0, 0);
    m_out.Int(70, 8 | (pl.isClosed() ? 1 : 0));
    Vertices(AcDbImpAccess::vertices(pl), pl, stub, [&](const AcDbVertex& v) {
      const auto& vertex = static_cast<const AcDb3dPolylineVertex&>(v);
      m_out.Str(100, "AcDb3dPolylineVertex");
      const AcGePoint3d p = vertex.position();
      m_out.Point(10, p.x, p.y, p.z);
      m_out.Int(70, 32);
    });
  }

  void PolyfaceMesh(const AcDbPolyFaceMesh& mesh, const AcDbStub& stub) {
    EntityHead("POLYLINE", mesh, stub, "AcDbPolyFaceMesh");
    m_out.Int(66, 1);
    m_out.Point(10, 0, 0, 0);
    m_out.Int(70, 64);
    m_out.Int(71, mesh.numVertices());
    m_out.Int(72, mesh.numFaces());
    Vertices(AcDbImpAccess::vertices(mesh), mesh, stub, [&](const AcDbVertex& v) {
      if (const auto* vertex = AcDbPolyFaceMeshVertex::cast(&v)) {
        m_out.Str(100, "AcDbPolyFaceMeshVertex");
        const AcGePoint3d p = vertex->position();
        m_out.Point(10, p.x, p.y, p.z);
        m_out.Int(70, 192);
      } else if (const auto* record = AcDbFaceRecord::cast(&v)) {
        m_out.Str(100, "AcDbFaceRecord");
        m_out.Point(10, 0, 0, 0);
        m_out.Int(70, 128);
        for (Adesk::UInt16 k = 0; k < 4; ++k) {
          Adesk::Int16 index = 0;
          Adesk::Boolean visible = true;
          record->getVertexAt(k, index);
          record->isEdgeVisibleAt(k, visible);
          if (index != 0) m_out.Int(71 + k, visible ? index : -index);
        }
      }
    });
  }

  void Text(const AcDbText& text, const AcDbStub& stub) {
    EntityHead("TEXT", text, stub, "AcDbText");
    const AcGeMatrix3d toPlane = AcGeMatrix3d::worldToPlane(text.normal());
    if (text.thickness() != 0.0) m_out.Real(39, text.thickness());
    const AcGePoint3d p = text.position().transformBy(toPlane);
    m_out.Point(10, p.x, p.y, p.z);
    m_out.Real(40, text.height());
    m_out.Wide(1, text.textStringConst());
    if (text.rotation() != 0.0) m_out.Real(50, Deg(text.rotation()));
    if (text.widthFactor() != 1.0) m_out.Real(41, text.widthFactor());
    if (text.oblique() != 0.0) m_out.Real(51, Deg(text.oblique()));
    m_out.Str(7, text.textStyle().isNull() ? std::string("Standard") : NameOfRecord(text.textStyle()));
    if (text.horizontalMode() != AcDb::kTextLeft) m_out.Int(72, text.horizontalMode());
    if (!text.isDefaultAlignment()) {
      const AcGePoint3d a = text.alignmentPoint().transformBy(toPlane);
      m_out.Point(11, a.x, a.y, a.z);
    }
    Normal(text.normal());
    m_out.Str(100, "AcDbText");
    if (text.verticalMode() != AcDb::kTextBase) m_out.Int(73, text.verticalMode());
  }

  // Pattern lines of the predefined patterns this platform knows, as acad.pat has them; others
  // are written without lines (the viewer fills them in from its own pattern file).
  void PatternLines(const AcDbHatch& hatch) {
    const std::wstring name = hatch.patternName();
    if (hatch.isSolidFill() || name != L"ANSI31") {
      m_out.Int(78, 0);
      return;
    }
    // ANSI31: lines at 45 degrees, 0.125 apart (the offset turns with the lines).
    const double angle = hatch.patternAngle() + std::atan(1.0);
    const double spacing = 0.125 * hatch.patternScale();
    m_out.Int(78, 1);
    m_out.Real(53, Deg(angle));
    m_out.Real(43, 0.0);
    m_out.Real(44, 0.0);
    m_out.Real(45, -spacing * std::sin(angle));
    m_out.Real(46, spacing * std::cos(angle));
    m_out.Int(79, 0);
  }

  void Hatch(const AcDbHatch& hatch, const AcDbStub& stub) {
    EntityHead("HATCH", hatch, stub, "AcDbHatch");
    m_out.Point(10, 0, 0, hatch.elevation());
    const AcGeVector3d n = hatch.normal();
    m_out.Point(210, n.x, n.y, n.z);
    m_out.Wide(2, hatch.patternName());
    m_out.Int(70, hatch.isSolidFill() ? 1 : 0);
    m_out.Int(71, 0);
    const auto& loops = hatch.loops();
    m_out.Int(91, static_cast<long long>(loops.size()));
    for (const AcDbHatch::Loop& loop : loops) {
      m_out.Int(92, loop.type & ~AcDbHatch::kPolyline);
      m_out.Int(93, static_cast<long long>(loop.edges.size()));
      for (const AcDbHatch::Edge& edge : loop.edges) {
        if (!edge.isArc) {
          m_out.Int(72, 1);
          m_out.Point2(10, edge.start.x, edge.start.y);
          m_out.Point2(11, edge.end.x, edge.end.y);
        } else {
          // A clockwise arc has its angles measured clockwise, as AcGeCircArc2d does.
          const bool ccw = edge.sweep >= 0.0;
          const double start = ccw ? edge.startAngle : -edge.startAngle;
          m_out.Int(72, 2);
          m_out.Point2(10, edge.center.x, edge.center.y);
          m_out.Real(40, edge.radius);
          const double from = Deg360(start);
          const double sweep = Deg(std::fabs(edge.sweep));
          m_out.Real(50, from);
          m_out.Real(51, sweep >= 360.0 ? from + 360.0 : Deg360(start + std::fabs(edge.sweep)));
          m_out.Int(73, ccw ? 1 : 0);
        }
      }
      m_out.Int(97, 0);
    }
    m_out.Int(75, hatch.hatchStyle());
    m_out.Int(76, hatch.patternType());
    if (!hatch.isSolidFill()) {
      m_out.Real(52, Deg(hatch.patternAngle()));
      m_out.Real(41, hatch.patternScale());
      m_out.Int(77, 0);
      PatternLines(hatch);
    }
    m_out.Int(98, 0);
  }

  void Solid(const AcDb3dSolid& solid, const AcDbStub& stub) {
    EntityHead("3DSOLID", solid, stub, "AcDbModelerGeometry");
    m_out.Int(70, 1);
    for (const std::string& line : FrustumSat(AcDbImpAccess::frustum(solid))) {
      const std::string coded = EscapeCarets(Crypt(line));
      // At most 255 characters a group; the rest follows in groups 3, never splitting a "^ ".
      constexpr std::size_t kChunk = 255;
      std::size_t at = 0;
      do {
        std::size_t size = std::min(kChunk, coded.size() - at);
        if (size == kChunk && coded[at + size - 1] == '^') --size;
        m_out.Str(at == 0 ? 1 : 3, std::string_view(coded).substr(at, size));
        at += size;
      } while (at < coded.size());
    }
    m_out.Str(100, "AcDb3dSolid");
  }

  // A table: its cells, and the "*T" block that shows them in programs without tables.
  void TableEntity(const AcDbTable& table, const AcDbStub& stub) {
    const TableBlock& block = m_tableBlocks.at(stub.id);
    EntityHead("ACAD_TABLE", table, stub, "AcDbBlockReference");
    m_out.Str(2, block.name);
    const AcGePoint3d p = table.position();
    m_out.Point(10, p.x, p.y, p.z);
    m_out.Str(100, "AcDbTable");
    m_out.Int(280, 0);
    m_out.Handle(342, HandleOf(table.tableStyle()));
    m_out.Handle(343, block.record);
    const AcGeVector3d d = table.direction();
    m_out.Point(11, d.x, d.y, d.z);
    m_out.Int(90, 22);
    m_out.Int(91, table.numRows());
    m_out.Int(92, table.numColumns());
    m_out.Int(93, 0);
    m_out.Int(94, 0);
    m_out.Int(95, 0);
    m_out.Int(96, 0);
    for (int r = 0; r < table.numRows(); ++r) m_out.Real(141, table.rowHeight(r));
    for (int c = 0; c < table.numColumns(); ++c) m_out.Real(142, table.columnWidth(c));
    for (int r = 0; r < table.numRows(); ++r) {
      for (int c = 0; c < table.numColumns(); ++c) {
        m_out.Int(171, 1);
        m_out.Int(172, 0);
        m_out.Int(173, 0);
        m_out.Int(174, 0);
        m_out.Int(175, 1);
        m_out.Int(176, 1);
        m_out.Int(91, 0);
        m_out.Int(178, 0);
        m_out.Real(145, 0.0);
        ACHAR* text = table.textString(r, c);
        m_out.Wide(1, text == nullptr ? L"" : text);
        delete[] text;
      }
    }
  }

  void TableGraphics(AcDbObjectId tableId) {
    const TableBlock& block = m_tableBlocks.at(tableId.asOldId());
    auto* table = Peek<AcDbTable>(tableId);
    BlockBegin(block.begin, block.record, block.name, AcGePoint3d::kOrigin, 1, false);
    AcDbVoidPtrArray parts;
    table->explode(parts);
    // The pieces lie in drawing coordinates; the block is inserted at the table's position.
    const AcGeMatrix3d back = AcGeMatrix3d::translation(AcGePoint3d::kOrigin - table->position());
    for (void* part : parts) {
      std::unique_ptr<AcDbEntity> piece(static_cast<AcDbEntity*>(static_cast<AcRxObject*>(part)));
      piece->transformBy(back);
      const std::uint64_t handle = NewHandle();
      if (auto* line = AcDbLine::cast(piece.get())) {
        PieceHead("LINE", "AcDbLine", handle, block.record);
        m_out.Point(10, line->startPoint().x, line->startPoint().y, line->startPoint().z);
        m_out.Point(11, line->endPoint().x, line->endPoint().y, line->endPoint().z);
      } else if (auto* text = AcDbText::cast(piece.get())) {
        PieceHead("TEXT", "AcDbText", handle, block.record);
        const AcGePoint3d p = text->position();
        m_out.Point(10, p.x, p.y, p.z);
        m_out.Real(40, text->height());
        m_out.Wide(1, text->textStringConst());
        m_out.Str(7, "Standard");
        m_out.Int(72, text->horizontalMode());
        const AcGePoint3d a = text->alignmentPoint();
        m_out.Point(11, a.x, a.y, a.z);
        m_out.Str(100, "AcDbText");
      }
    }
    BlockEnd(block.end, block.record, false);
  }

  void PieceHead(const char* type, const char* subclass, std::uint64_t handle, std::uint64_t owner) {
    m_out.Str(0, type);
    m_out.Handle(5, handle);
    m_out.Handle(330, owner);
    m_out.Str(100, "AcDbEntity");
    m_out.Str(8, "0");
    m_out.Str(100, subclass);
  }

  // --- Objects ----------------------------------------------------------------------------------

  // The objects in an order that depends on the drawing alone, not on the order its objects were
  // made in: the named objects dictionary's tree, then each extension dictionary's tree in the
  // order their owners were written.
  void Objects() {
    m_out.Str(0, "SECTION");
    m_out.Str(2, "OBJECTS");
    Tree(m_db.roots().namedObjects);
    for (std::size_t i = 0; i < m_xdictQueue.size(); ++i) Tree(m_xdictQueue[i]);
    m_out.Str(0, "ENDSEC");
  }

  void Tree(AcDbObjectId id) {
    const AcDbStub* stub = StubOf(id);
    if (stub == nullptr || stub->erased || !m_objectsWritten.insert(stub->handle).second) return;
    Object(*stub);
    if (auto* dictionary = AcDbDictionary::cast(stub->object.get()); dictionary != nullptr && OwnerWritten(*stub)) {
      AcDbDictionaryIterator* it = dictionary->newIterator();
      for (; !it->done(); it->next()) Tree(it->objectId());
      delete it;
    }
  }

  // An object's owner was written (objects in extension dictionaries of objects with no DXF
  // form are left out with them).
  bool OwnerWritten(const AcDbStub& stub) const {
    const AcDbStub* owner = StubOf(stub.owner);
    if (owner == nullptr) return true;
    if (owner->erased) return false;
    if (AcDbEntity::cast(owner->object.get()) != nullptr) return m_written.count(owner->handle) != 0;
    if (AcDbDictionary::cast(owner->object.get()) != nullptr) return OwnerWritten(*owner);
    return true;
  }

  void Object(const AcDbStub& stub) {
    if (stub.erased || !OwnerWritten(stub)) return;
    AcDbObject* object = stub.object.get();
    if (auto* dictionary = AcDbDictionary::cast(object)) {
      Head("DICTIONARY", stub);
      m_out.Str(100, "AcDbDictionary");
      const bool hardOwner = StubOf(stub.owner) != nullptr && StubOf(stub.owner)->extensionDictionary == stub.objectId();
      if (hardOwner) m_out.Int(280, 1);
      m_out.Int(281, 1);
      AcDbDictionaryIterator* it = dictionary->newIterator();
      for (; !it->done(); it->next()) {
        const AcDbStub* entry = StubOf(it->objectId());
        if (entry == nullptr || entry->erased) continue;
        m_out.Wide(3, it->name());
        m_out.Handle(hardOwner ? 360 : 350, entry->handle);
      }
      delete it;
    } else if (auto* record = AcDbXrecord::cast(object)) {
      Head("XRECORD", stub);
      m_out.Str(100, "AcDbXrecord");
      m_out.Int(280, 1);
      for (const AcDbXrecord::Item& item : record->items()) XrecordItem(item);
    } else if (auto* group = AcDbGroup::cast(object)) {
      Head("GROUP", stub);
      m_out.Str(100, "AcDbGroup");
      m_out.Wide(300, group->description());
      m_out.Int(70, group->isAnonymous() ? 1 : 0);
      m_out.Int(71, group->isSelectable() ? 1 : 0);
      AcDbObjectIdArray members;
      group->allEntityIds(members);
      for (AcDbObjectId id : members) {
        if (m_written.count(HandleOf(id)) != 0) m_out.Handle(340, HandleOf(id));
      }
    } else if (auto* layout = AcDbLayout::cast(object)) {
      Layout(*layout, stub);
    } else if (auto* style = AcDbTableStyle::cast(object)) {
      TableStyle(*style, stub);
    }
  }

  void XrecordItem(const AcDbXrecord::Item& item) {
    const int code = item.restype;
    switch (KindOfCode(code)) {
      case ResKind::Text: m_out.Wide(code, item.text); break;
      case ResKind::Point:
        if (code >= 1010) {
          m_out.Real(code, item.point[0]);
          m_out.Real(code + 10, item.point[1]);
          m_out.Real(code + 20, item.point[2]);
        } else {
          m_out.Point(code, item.point[0], item.point[1], item.point[2]);
        }
        break;
      case ResKind::Real: m_out.Real(code, item.real); break;
      case ResKind::Int16:
      case ResKind::Int32:
      case ResKind::Int64: m_out.Int(code, item.integer); break;
      case ResKind::Name: m_out.Handle(code, HandleOf(item.id)); break;
      case ResKind::Binary: {
        static constexpr char kHex[] = "0123456789ABCDEF";
        std::string hex;
        for (char byte : item.binary) {
          hex.push_back(kHex[(static_cast<unsigned char>(byte) >> 4) & 0xF]);
          hex.push_back(kHex[static_cast<unsigned char>(byte) & 0xF]);
        }
        m_out.Str(code, hex);
        break;
      }
      default: break;
    }
  }

  void Layout(const AcDbLayout& layout, const AcDbStub& stub) {
    Head("LAYOUT", stub);
    m_out.Str(100, "AcDbPlotSettings");
    m_out.Str(1, "");
    m_out.Str(2, "none_device");
    m_out.Str(4, "");
    m_out.Str(6, "");
    for (int code = 40; code <= 47; ++code) m_out.Real(code, code == 44 ? 210.0 : code == 45 ? 297.0 : 0.0);
    m_out.Real(48, 0);
    m_out.Real(49, 0);
    m_out.Real(140, 0);
    m_out.Real(141, 0);
    m_out.Real(142, 1);
    m_out.Real(143, 1);
    m_out.Int(70, 688);
    m_out.Int(72, 1);
    m_out.Int(73, 0);
    m_out.Int(74, 5);
    m_out.Str(7, "");
    m_out.Int(75, 16);
    m_out.Real(147, 1);
    m_out.Point2(148, 0, 0);
    m_out.Str(100, "AcDbLayout");
    const ACHAR* name = nullptr;
    layout.getLayoutName(name);
    m_out.Wide(1, name == nullptr ? L"" : name);
    m_out.Int(70, 1);
    m_out.Int(71, layout.getTabOrder());
    m_out.Point2(10, 0, 0);
    m_out.Point2(11, 12, 9);
    m_out.Point(12, 0, 0, 0);
    m_out.Point(14, 0, 0, 0);
    m_out.Point(15, 0, 0, 0);
    m_out.Real(146, 0);
    m_out.Point(13, 0, 0, 0);
    m_out.Point(16, 1, 0, 0);
    m_out.Point(17, 0, 1, 0);
    m_out.Int(76, 0);
    m_out.Handle(330, HandleOf(layout.getBlockTableRecordId()));
  }

  void TableStyle(const AcDbTableStyle& style, const AcDbStub& stub) {
    Head("TABLESTYLE", stub);
    m_out.Str(100, "AcDbTableStyle");
    m_out.Wide(3, style.description());
    m_out.Int(70, 0);
    m_out.Int(71, 0);
    m_out.Real(40, 0.06);
    m_out.Real(41, 0.06);
    m_out.Int(280, 0);
    m_out.Int(281, 0);
    // Data, header and title cells, in that order.
    for (double height : {0.18, 0.25, 0.25}) {
      m_out.Str(7, "Standard");
      m_out.Real(140, height);
      m_out.Int(170, 5);
      m_out.Int(62, 0);
      m_out.Int(63, 7);
      m_out.Int(283, 0);
      m_out.Int(90, 0);
      m_out.Int(91, 0);
      for (int code = 274; code <= 279; ++code) m_out.Int(code, -2);
      for (int code = 284; code <= 289; ++code) m_out.Int(code, 1);
      for (int code = 64; code <= 69; ++code) m_out.Int(code, 0);
    }
  }

  struct TableBlock {
    std::uint64_t record = 0;
    std::uint64_t begin = 0;
    std::uint64_t end = 0;
    std::string name;
  };

  AcDbDatabase& m_face;
  AcDbImpDatabase& m_db;
  std::string& m_buffer;
  Out m_out;
  std::unordered_map<Adesk::IntDbId, const AcDbStub*> m_stubs;
  std::unordered_map<Adesk::IntDbId, std::string> m_names;
  std::unordered_map<Adesk::IntDbId, std::uint64_t> m_layoutOf;
  std::unordered_map<Adesk::IntDbId, TableBlock> m_tableBlocks;
  std::vector<AcDbObjectId> m_tableBlockOrder;
  std::unordered_set<std::uint64_t> m_written;
  std::unordered_set<std::uint64_t> m_objectsWritten;
  std::vector<AcDbObjectId> m_xdictQueue;
  std::uint64_t m_nextHandle = 1;
  bool m_paperSpace = false;
};

}  // namespace

std::string Write(AcDbDatabase& database) {
  std::string text;
  Writer(database, text).Run();
  return text;
}

bool Save(AcDbDatabase& database, const std::string& path, std::string& error) {
  if (path.empty()) {
    error = "no file name";
    return false;
  }
  const std::string text = Write(database);
  const std::string temporary = path + ".tmp" + std::to_string(::getpid());
  std::FILE* file = std::fopen(temporary.c_str(), "wb");
  if (file == nullptr) {
    error = "cannot write " + path + ": " + std::strerror(errno);
    return false;
  }
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  const int writeErrno = errno;
  const bool closed = std::fclose(file) == 0;
  if (!written || !closed) {
    error = "cannot write " + path + ": " + std::strerror(written ? errno : writeErrno);
    std::remove(temporary.c_str());
    return false;
  }
  if (std::rename(temporary.c_str(), path.c_str()) != 0) {
    error = "cannot write " + path + ": " + std::strerror(errno);
    std::remove(temporary.c_str());
    return false;
  }
  return true;
}

}  // namespace headless::dxf
