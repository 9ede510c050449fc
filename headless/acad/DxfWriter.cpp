// The DXF writer: walks a drawing's objects (AcDbImpDatabase::stubs) and writes the header, the
// classes, the symbol tables, the blocks, model space and the objects, with every object's
// handle, owner and extension dictionary.
#include "headless/acad/DxfWriter.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

namespace headless::dxf::detail {

void Writer::Run() {
  CollectTables();
  Header();
  Classes();
  Tables();
  Blocks();
  Entities();
  Objects();
  m_out.Str(0, "EOF");
}

// Handle, extension dictionary, reactors and owner: what every object starts with.
void Writer::Head(const char* type, const AcDbStub& stub, int handleCode) {
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

const std::string& Writer::NameOfRecord(AcDbObjectId id) {
  auto found = m_names.find(id.asOldId());
  if (found != m_names.end()) return found->second;
  const ACHAR* name = nullptr;
  if (auto* record = Peek<AcDbSymbolTableRecord>(id)) record->getName(name);
  return m_names.emplace(id.asOldId(), Narrow(name)).first->second;
}

void Writer::Color(const AcCmColor& color, bool off) {
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

void Writer::EntityHead(const char* type, const AcDbEntity& entity, const AcDbStub& stub, const char* subclass) {
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

void Writer::Normal(const AcGeVector3d& n) {
  if (n.x != 0.0 || n.y != 0.0 || n.z != 1.0) m_out.Point(210, n.x, n.y, n.z);
}

void Writer::CollectTables() {
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

void Writer::Header() {
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

AcDbExtents Writer::ModelExtents() {
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

void Writer::Class(const char* dxfName, const char* cppName, int instances, bool entity) {
  m_out.Str(0, "CLASS");
  m_out.Str(1, dxfName);
  m_out.Str(2, cppName);
  m_out.Str(3, "ObjectDBX Classes");
  m_out.Int(90, entity ? 1025 : 1153);
  m_out.Int(91, instances);
  m_out.Int(280, 0);
  m_out.Int(281, entity ? 1 : 0);
}

void Writer::Classes() {
  m_out.Str(0, "SECTION");
  m_out.Str(2, "CLASSES");
  Class("LAYOUT", "AcDbLayout", 0, false);
  Class("TABLESTYLE", "AcDbTableStyle", 0, false);
  Class("ACAD_TABLE", "AcDbTable", static_cast<int>(m_tableBlocks.size()), true);
  m_out.Str(0, "ENDSEC");
}

void Writer::RecordHead(const char* type, const AcDbStub& stub, const char* subclass,
                        const AcDbSymbolTableRecord& record, int flags, int handleCode) {
  Head(type, stub, handleCode);
  m_out.Str(100, "AcDbSymbolTableRecord");
  m_out.Str(100, subclass);
  const ACHAR* name = nullptr;
  record.getName(name);
  m_out.Str(2, Narrow(name));
  m_out.Int(70, flags);
}

void Writer::Tables() {
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
    m_out.Str(6,
              layer.linetypeObjectId().isNull() ? std::string("Continuous") : NameOfRecord(layer.linetypeObjectId()));
    m_out.Int(290, layer.isPlottable() ? 1 : 0);
    m_out.Int(370, -3);
  });
  Table("STYLE", roots.textStyleTable, 0, [&](const AcDbStub& stub, const AcDbSymbolTableRecord& record) {
    const auto& style = static_cast<const AcDbTextStyleTableRecord&>(record);
    RecordHead("STYLE", stub, "AcDbTextStyleTableRecord", record,
               (style.isShapeFile() ? 1 : 0) | (style.isVertical() ? 4 : 0));
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

// The objects in an order that depends on the drawing alone, not on the order its objects were
// made in: the named objects dictionary's tree, then each extension dictionary's tree in the
// order their owners were written.
void Writer::Objects() {
  m_out.Str(0, "SECTION");
  m_out.Str(2, "OBJECTS");
  Tree(m_db.roots().namedObjects);
  for (std::size_t i = 0; i < m_xdictQueue.size(); ++i) Tree(m_xdictQueue[i]);
  m_out.Str(0, "ENDSEC");
}

void Writer::Tree(AcDbObjectId id) {
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
bool Writer::OwnerWritten(const AcDbStub& stub) const {
  const AcDbStub* owner = StubOf(stub.owner);
  if (owner == nullptr) return true;
  if (owner->erased) return false;
  if (AcDbEntity::cast(owner->object.get()) != nullptr) return m_written.count(owner->handle) != 0;
  if (AcDbDictionary::cast(owner->object.get()) != nullptr) return OwnerWritten(*owner);
  return true;
}

void Writer::Object(const AcDbStub& stub) {
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

void Writer::XrecordItem(const AcDbXrecord::Item& item) {
  const int code = item.restype;
  switch (KindOfCode(code)) {
    case ResKind::Text:
      m_out.Wide(code, item.text);
      break;
    case ResKind::Point:
      if (code >= 1010) {
        m_out.Real(code, item.point[0]);
        m_out.Real(code + 10, item.point[1]);
        m_out.Real(code + 20, item.point[2]);
      } else {
        m_out.Point(code, item.point[0], item.point[1], item.point[2]);
      }
      break;
    case ResKind::Real:
      m_out.Real(code, item.real);
      break;
    case ResKind::Int16:
    case ResKind::Int32:
    case ResKind::Int64:
      m_out.Int(code, item.integer);
      break;
    case ResKind::Name:
      m_out.Handle(code, HandleOf(item.id));
      break;
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
    default:
      break;
  }
}

void Writer::Layout(const AcDbLayout& layout, const AcDbStub& stub) {
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

void Writer::TableStyle(const AcDbTableStyle& style, const AcDbStub& stub) {
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

}  // namespace headless::dxf::detail

namespace headless::dxf {

using detail::Writer;

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
