// The DXF reader: builds a drawing from the default drawing's objects and the file's, giving every
// object the handle it has in the file (the default objects take the handles of their
// counterparts by name and role).
#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <cwctype>
#include <functional>
#include <map>
#include <set>
#include <numbers>
#include <sstream>
#include <unordered_map>
#include <unordered_set>

#include "headless/acad/Dxf.h"
#include "headless/acad/DxfAcis.h"
#include "headless/acad/DxfFormat.h"
#include "headless/acad/ImpAccess.h"
#include "headless/acad/ImpDatabase.h"
#include "headless/acad/Resbuf.h"
#include "platform/acad/acutads.h"
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

struct Tag {
  int code;
  std::string_view value;
};

// One object of the file: its tags after the 0 tag.
struct Record {
  std::string_view type;
  std::size_t begin = 0;
  std::size_t end = 0;
};

std::string_view Trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
  return s;
}

double ToReal(std::string_view s) {
  s = Trim(s);
  double v = 0.0;
  std::from_chars(s.data(), s.data() + s.size(), v);
  return v;
}

long long ToInt(std::string_view s) {
  s = Trim(s);
  long long v = 0;
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  std::from_chars(s.data(), s.data() + s.size(), v);
  return v;
}

std::uint64_t ToHandle(std::string_view s) {
  s = Trim(s);
  std::uint64_t v = 0;
  std::from_chars(s.data(), s.data() + s.size(), v, 16);
  return v;
}

bool Tokenize(const std::string& text, std::vector<Tag>& tags, std::string& error) {
  std::size_t at = 0;
  const auto line = [&](std::string_view& out) {
    if (at >= text.size()) return false;
    std::size_t end = text.find('\n', at);
    if (end == std::string::npos) end = text.size();
    out = std::string_view(text).substr(at, end - at);
    if (!out.empty() && out.back() == '\r') out.remove_suffix(1);
    at = end + 1;
    return true;
  };
  std::string_view code;
  std::string_view value;
  while (line(code)) {
    if (Trim(code).empty() && at >= text.size()) break;
    if (!line(value)) {
      error = "the file ends inside a group";
      return false;
    }
    const std::string_view c = Trim(code);
    int n = 0;
    auto [ptr, ec] = std::from_chars(c.data(), c.data() + c.size(), n);
    if (ec != std::errc() || ptr != c.data() + c.size()) {
      error = "not a DXF group code: \"" + std::string(c.substr(0, 20)) + "\"";
      return false;
    }
    tags.push_back({n, value});
  }
  return true;
}

// The tags of one record, with its handle, owner and extension dictionary picked out.
class View {
public:
  View(const std::vector<Tag>& tags, const Record& record) : m_tags(tags), m_record(record) {
    int depth = 0;
    std::string_view group;
    for (std::size_t i = record.begin; i < record.end; ++i) {
      const Tag& t = tags[i];
      if (t.code == 102) {
        const std::string_view v = Trim(t.value);
        if (!v.empty() && v.front() == '{') {
          ++depth;
          group = v;
        } else if (v == "}") {
          depth = std::max(0, depth - 1);
        }
        continue;
      }
      if (depth > 0) {
        if (group == "{ACAD_XDICTIONARY" && t.code == 360) xdict = ToHandle(t.value);
        continue;
      }
      if ((t.code == 5 || t.code == 105) && handle == 0) handle = ToHandle(t.value);
      if (t.code == 330 && owner == 0 && !ownerSeen) {
        owner = ToHandle(t.value);
        ownerSeen = true;
      }
    }
  }

  std::string_view type() const { return m_record.type; }
  // The first value of the code outside brace groups, after `from` (an index into the tags).
  const Tag* Find(int code, std::size_t from = 0) const {
    int depth = 0;
    for (std::size_t i = std::max(from, m_record.begin); i < m_record.end; ++i) {
      const Tag& t = m_tags[i];
      if (t.code == 102) {
        const std::string_view v = Trim(t.value);
        depth += (!v.empty() && v.front() == '{') ? 1 : (v == "}" ? -1 : 0);
        continue;
      }
      if (depth == 0 && t.code == code) return &t;
    }
    return nullptr;
  }
  double Real(int code, double fallback = 0.0) const {
    const Tag* t = Find(code);
    return t == nullptr ? fallback : ToReal(t->value);
  }
  long long Int(int code, long long fallback = 0) const {
    const Tag* t = Find(code);
    return t == nullptr ? fallback : ToInt(t->value);
  }
  std::wstring Text(int code) const {
    const Tag* t = Find(code);
    return t == nullptr ? std::wstring() : Decode(t->value);
  }
  AcGePoint3d Point(int code, const AcGePoint3d& fallback = AcGePoint3d::kOrigin) const {
    const Tag* x = Find(code);
    if (x == nullptr) return fallback;
    const std::size_t at = static_cast<std::size_t>(x - m_tags.data());
    const Tag* y = Find(code + 10, at);
    const Tag* z = Find(code + 20, at);
    return AcGePoint3d(ToReal(x->value), y == nullptr ? 0.0 : ToReal(y->value), z == nullptr ? 0.0 : ToReal(z->value));
  }
  AcGeVector3d Normal() const {
    const AcGePoint3d n = Point(210, AcGePoint3d(0, 0, 1));
    return AcGeVector3d(n.x, n.y, n.z);
  }
  // Tags outside brace groups, from the subclass marker `after` on (all when null).
  std::vector<Tag> Body(const char* after = nullptr) const {
    std::vector<Tag> out;
    bool started = after == nullptr;
    int depth = 0;
    for (std::size_t i = m_record.begin; i < m_record.end; ++i) {
      const Tag& t = m_tags[i];
      if (t.code == 102) {
        const std::string_view v = Trim(t.value);
        depth += (!v.empty() && v.front() == '{') ? 1 : (v == "}" ? -1 : 0);
        continue;
      }
      if (depth > 0) continue;
      if (!started) {
        started = t.code == 100 && Trim(t.value) == after;
        continue;
      }
      out.push_back(t);
    }
    return out;
  }

  std::uint64_t handle = 0;
  std::uint64_t owner = 0;
  std::uint64_t xdict = 0;

private:
  const std::vector<Tag>& m_tags;
  const Record& m_record;
  bool ownerSeen = false;
};

// A walk over a run of tags in order (for the kinds whose codes repeat).
class Cursor {
public:
  explicit Cursor(std::vector<Tag> tags) : m_tags(std::move(tags)) {}
  bool Done() const { return m_at >= m_tags.size(); }
  const Tag& Peek() const { return m_tags[m_at]; }
  bool Is(int code) const { return !Done() && m_tags[m_at].code == code; }
  // Moves to the next tag of that code; false when there is none.
  bool Seek(int code) {
    while (!Done() && m_tags[m_at].code != code) ++m_at;
    return !Done();
  }
  double Real(int code, double fallback = 0.0) {
    if (!Is(code)) return fallback;
    return ToReal(m_tags[m_at++].value);
  }
  long long Int(int code, long long fallback = 0) {
    if (!Is(code)) return fallback;
    return ToInt(m_tags[m_at++].value);
  }
  void Skip() { ++m_at; }

private:
  std::vector<Tag> m_tags;
  std::size_t m_at = 0;
};

AcCmColor ColorOf(const View& view) {
  AcCmColor color;
  const long long index = view.Int(62, 256);
  color.setColorIndex(static_cast<Adesk::UInt16>(std::clamp(std::llabs(index), 0LL, 256LL)));
  if (const Tag* rgb = view.Find(420)) {
    const long long v = ToInt(rgb->value);
    color.setRGB(static_cast<Adesk::UInt8>(v >> 16), static_cast<Adesk::UInt8>(v >> 8), static_cast<Adesk::UInt8>(v));
  }
  return color;
}

double Rad(double deg) { return deg * kDegToRad; }

class Reader {
public:
  Reader(const std::vector<Tag>& tags, std::string& error) : m_tags(tags), m_error(error) {}

  std::unique_ptr<AcDbDatabase> Run() {
    Split();
    if (m_sections.count("ENTITIES") == 0 && m_sections.count("TABLES") == 0) {
      m_error = "no DXF drawing: neither tables nor entities";
      return nullptr;
    }
    m_face = std::make_unique<AcDbDatabase>(true);
    m_db = AcDbImpDatabase::of(m_face.get());
    ClearHandles();
    TableBlocksToSkip();
    Tables();
    Blocks();
    Section("ENTITIES", m_db->roots().modelSpace);
    Objects();
    ExtensionDictionaries();
    FillXrecords();
    Header();
    Acad::ErrorStatus es = m_db->setHandseed(std::max(m_handseed, MaxHandle() + 1));
    (void)es;
    return std::move(m_face);
  }

private:
  // --- The file's shape -------------------------------------------------------------------------

  void Split() {
    std::string section;
    std::size_t i = 0;
    while (i < m_tags.size()) {
      if (m_tags[i].code != 0) {
        ++i;
        continue;
      }
      Record record;
      record.type = Trim(m_tags[i].value);
      record.begin = i + 1;
      std::size_t j = i + 1;
      while (j < m_tags.size() && m_tags[j].code != 0) ++j;
      record.end = j;
      if (record.type == "SECTION") {
        for (std::size_t k = record.begin; k < record.end; ++k)
          if (m_tags[k].code == 2) section = std::string(Trim(m_tags[k].value));
      } else if (record.type == "ENDSEC") {
        section.clear();
      } else if (!section.empty()) {
        m_sections[section].push_back(record);
      }
      for (std::size_t k = record.begin; k < record.end; ++k) {
        if (m_tags[k].code == 5 || m_tags[k].code == 105) {
          m_maxFileHandle = std::max(m_maxFileHandle, ToHandle(m_tags[k].value));
          break;
        }
      }
      i = j;
    }
    if (auto header = m_sections.find("HEADER"); header != m_sections.end()) {
      for (const Record& r : header->second) {
        for (std::size_t k = r.begin; k + 1 < r.end; ++k) {
          if (m_tags[k].code == 9 && Trim(m_tags[k].value) == "$HANDSEED") m_handseed = ToHandle(m_tags[k + 1].value);
        }
      }
    }
  }

  // The default drawing's objects make room: their handles go past every handle of the file,
  // and take the file's as their counterparts are met.
  void ClearHandles() {
    std::uint64_t next = std::max({m_maxFileHandle, m_handseed, m_db->handseed()}) + 1;
    for (const auto& stub : m_db->stubs()) m_db->setHandle(*stub, next++);
  }

  void Adopt(AcDbObjectId id, std::uint64_t handle) {
    if (id.isNull() || handle == 0) return;
    if (AcDbStub* stub = AcDbImpDatabase::lookup(id)) {
      if (m_db->setHandle(*stub, handle) == Acad::eOk) m_ids[handle] = id;
    }
  }

  AcDbObjectId IdOf(std::uint64_t handle) const {
    auto found = m_ids.find(handle);
    return found == m_ids.end() ? AcDbObjectId::kNull : found->second;
  }

  std::uint64_t MaxHandle() const {
    std::uint64_t max = 0;
    for (const auto& stub : m_db->stubs()) max = std::max(max, stub->handle);
    return max;
  }

  const std::vector<Record>& SectionRecords(const char* name) const {
    static const std::vector<Record> none;
    auto found = m_sections.find(name);
    return found == m_sections.end() ? none : found->second;
  }

  // Tables bring a "*T" block that only shows them: it is not read.
  void TableBlocksToSkip() {
    for (const char* section : {"ENTITIES", "BLOCKS"}) {
      for (const Record& r : SectionRecords(section)) {
        if (r.type != "ACAD_TABLE") continue;
        View view(m_tags, r);
        if (const Tag* record = view.Find(343)) m_skipRecords.insert(ToHandle(record->value));
        m_skipNames.insert(view.Text(2));
      }
    }
  }

  // --- Tables -----------------------------------------------------------------------------------

  void Tables() {
    const auto& roots = m_db->roots();
    const std::map<std::string_view, AcDbObjectId> tableOf = {
        {"VPORT", roots.viewportTable}, {"LTYPE", roots.linetypeTable}, {"LAYER", roots.layerTable},
        {"STYLE", roots.textStyleTable}, {"VIEW", roots.viewTable},     {"UCS", roots.ucsTable},
        {"APPID", roots.regAppTable},   {"DIMSTYLE", roots.dimStyleTable}, {"BLOCK_RECORD", roots.blockTable}};
    const auto& records = SectionRecords("TABLES");
    // Line types first: layers name them.
    for (const char* pass : {"LTYPE", "*"}) {
      AcDbObjectId table;
      std::string_view tableName;
      for (const Record& r : records) {
        View view(m_tags, r);
        if (r.type == "TABLE") {
          tableName = Trim(view.Find(2) ? view.Find(2)->value : std::string_view());
          auto found = tableOf.find(tableName);
          table = found == tableOf.end() ? AcDbObjectId::kNull : found->second;
          if ((tableName == "LTYPE") == (std::string_view(pass) == "LTYPE")) {
            Adopt(table, view.handle);
            if (view.xdict != 0) m_xdicts.push_back({table, view.xdict});
          }
          continue;
        }
        if (r.type == "ENDTAB" || table.isNull()) continue;
        if ((tableName == "LTYPE") != (std::string_view(pass) == "LTYPE")) continue;
        TableRecord(table, tableName, view);
      }
    }
  }

  template <class Record>
  AcDbObjectId FindOrAdd(AcDbObjectId tableId, const std::wstring& name, bool& added) {
    added = false;
    AcDbSymbolTable* table = nullptr;
    if (acdbOpenObject(table, tableId, AcDb::kForWrite) != Acad::eOk) return AcDbObjectId::kNull;
    AcDbObjectId id;
    if (table->getAt(name.c_str(), id) != Acad::eOk) {
      auto* record = new Record;
      if (record->setName(name.c_str()) != Acad::eOk || table->add(id, record) != Acad::eOk) {
        delete record;
        id.setNull();
      } else {
        record->close();
        added = true;
      }
    }
    table->close();
    return id;
  }

  template <class T, class Body>
  void Change(AcDbObjectId id, Body body) {
    T* object = nullptr;
    if (acdbOpenObject(object, id, AcDb::kForWrite) != Acad::eOk) return;
    body(*object);
    object->close();
  }

  void TableRecord(AcDbObjectId table, std::string_view tableName, const View& view) {
    const std::wstring name = view.Text(2);
    if (name.empty()) return;
    bool added = false;
    AcDbObjectId id;
    if (tableName == "LTYPE") {
      id = FindOrAdd<AcDbLinetypeTableRecord>(table, name, added);
      Change<AcDbLinetypeTableRecord>(id, [&](AcDbLinetypeTableRecord& lt) {
        lt.setComments(view.Text(3).c_str());
        Cursor cursor(view.Body("AcDbLinetypeTableRecord"));
        std::vector<double> dashes;
        while (cursor.Seek(49)) dashes.push_back(cursor.Real(49));
        lt.setNumDashes(static_cast<int>(dashes.size()));
        for (std::size_t i = 0; i < dashes.size(); ++i) lt.setDashLengthAt(static_cast<int>(i), dashes[i]);
        lt.setPatternLength(view.Real(40));
      });
      m_lineTypes[name] = id;
    } else if (tableName == "LAYER") {
      id = FindOrAdd<AcDbLayerTableRecord>(table, name, added);
      Change<AcDbLayerTableRecord>(id, [&](AcDbLayerTableRecord& layer) {
        layer.setColor(ColorOf(view));
        layer.setIsOff(view.Int(62, 7) < 0);
        const long long flags = view.Int(70);
        layer.setIsFrozen((flags & 1) != 0);
        layer.setIsLocked((flags & 4) != 0);
        layer.setIsPlottable(view.Int(290, 1) != 0);
        if (AcDbObjectId lt = LineType(view.Text(6)); !lt.isNull()) layer.setLinetypeObjectId(lt);
      });
      m_layers[name] = id;
    } else if (tableName == "STYLE") {
      id = FindOrAdd<AcDbTextStyleTableRecord>(table, name, added);
      Change<AcDbTextStyleTableRecord>(id, [&](AcDbTextStyleTableRecord& style) {
        style.setTextSize(view.Real(40));
        style.setXScale(view.Real(41, 1.0));
        style.setObliquingAngle(Rad(view.Real(50)));
        style.setPriorSize(view.Real(42, 0.2));
        style.setFileName(view.Text(3).c_str());
        style.setBigFontFileName(view.Text(4).c_str());
        const long long flags = view.Int(70);
        style.setIsShapeFile((flags & 1) != 0);
        style.setIsVertical((flags & 4) != 0);
      });
      m_styles[name] = id;
    } else if (tableName == "APPID") {
      id = FindOrAdd<AcDbRegAppTableRecord>(table, name, added);
    } else if (tableName == "DIMSTYLE") {
      id = FindOrAdd<AcDbDimStyleTableRecord>(table, name, added);
    } else if (tableName == "VPORT") {
      id = FindOrAdd<AcDbViewportTableRecord>(table, name, added);
    } else if (tableName == "BLOCK_RECORD") {
      if (m_skipRecords.count(view.handle) != 0) return;
      id = FindOrAdd<AcDbBlockTableRecord>(table, name, added);
      m_blocks[name] = id;
    }
    Adopt(id, view.handle);
    if (view.xdict != 0) m_xdicts.push_back({id, view.xdict});
  }

  AcDbObjectId LineType(const std::wstring& name) {
    for (const auto& entry : m_lineTypes) {
      if (Same(entry.first, name)) return entry.second;
    }
    return AcDbObjectId::kNull;
  }

  static bool Same(const std::wstring& a, const std::wstring& b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](wchar_t x, wchar_t y) { return towupper(x) == towupper(y); });
  }

  template <class Map>
  static AcDbObjectId ByName(const Map& map, const std::wstring& name) {
    auto found = map.find(name);
    if (found != map.end()) return found->second;
    for (const auto& entry : map)
      if (Same(entry.first, name)) return entry.second;
    return AcDbObjectId::kNull;
  }

  // --- Blocks and entities ----------------------------------------------------------------------

  void Blocks() {
    const auto& records = SectionRecords("BLOCKS");
    AcDbObjectId block;
    bool skipping = false;
    std::vector<Record> entities;
    for (const Record& r : records) {
      View view(m_tags, r);
      if (r.type == "BLOCK") {
        skipping = m_skipRecords.count(view.owner) != 0 || m_skipNames.count(view.Text(2)) != 0;
        block = skipping ? AcDbObjectId::kNull : IdOf(view.owner);
        if (block.isNull()) block = ByName(m_blocks, view.Text(2));
        if (!block.isNull()) {
          Change<AcDbBlockTableRecord>(block, [&](AcDbBlockTableRecord& record) {
            record.setOrigin(view.Point(10));
            Adopt(record.blockBeginId(), view.handle);
          });
        }
        entities.clear();
      } else if (r.type == "ENDBLK") {
        if (!block.isNull()) {
          AddEntities(entities, block);
          Change<AcDbBlockTableRecord>(block, [&](AcDbBlockTableRecord& record) {
            Adopt(record.blockEndId(), view.handle);
          });
        }
        block.setNull();
      } else if (!block.isNull()) {
        entities.push_back(r);
      }
    }
  }

  void Section(const char* name, AcDbObjectId defaultBlock) {
    std::vector<Record> model;
    std::vector<Record> paper;
    for (const Record& r : SectionRecords(name)) {
      View view(m_tags, r);
      const bool inPaper = view.Int(67) == 1;
      (inPaper ? paper : model).push_back(r);
    }
    AddEntities(model, defaultBlock);
    AddEntities(paper, m_db->roots().paperSpace);
  }

  // Entities in file order; a POLYLINE takes the VERTEX records after it and its SEQEND.
  void AddEntities(const std::vector<Record>& records, AcDbObjectId block) {
    for (std::size_t i = 0; i < records.size(); ++i) {
      const Record& r = records[i];
      if (r.type == "POLYLINE") {
        std::size_t j = i + 1;
        std::vector<const Record*> vertices;
        while (j < records.size() && records[j].type == "VERTEX") vertices.push_back(&records[j++]);
        const Record* end = j < records.size() && records[j].type == "SEQEND" ? &records[j++] : nullptr;
        Polyline(r, vertices, end, block);
        i = j - 1;
      } else if (r.type != "VERTEX" && r.type != "SEQEND") {
        Entity(r, block);
      }
    }
  }

  void Common(AcDbEntity& entity, const View& view) {
    if (AcDbObjectId layer = ByName(m_layers, view.Text(8)); !layer.isNull()) entity.setLayer(layer);
    const std::wstring lineType = view.Text(6);
    if (AcDbObjectId lt = lineType.empty() ? m_face->byLayerLinetype() : LineType(lineType); !lt.isNull()) {
      entity.setLinetype(lt);
    }
    entity.setColor(ColorOf(view));
    entity.setLinetypeScale(view.Real(48, 1.0));
    entity.setVisibility(view.Int(60) == 1 ? AcDb::kInvisible : AcDb::kVisible);
  }

  // Appends the entity to the block and gives it (and its vertices) the file's handles.
  AcDbObjectId Append(AcDbEntity* entity, const View& view, AcDbObjectId block,
                      const std::vector<std::uint64_t>& parts = {}, std::uint64_t sequenceEnd = 0) {
    Common(*entity, view);
    AcDbBlockTableRecord* record = nullptr;
    AcDbObjectId id;
    if (acdbOpenObject(record, block, AcDb::kForWrite) != Acad::eOk) {
      delete entity;
      return id;
    }
    if (record->appendAcDbEntity(id, entity) != Acad::eOk) {
      delete entity;
      record->close();
      return AcDbObjectId::kNull;
    }
    record->close();
    Adopt(id, view.handle);
    const AcDbImpComplexVertices* vertices = nullptr;
    if (auto* pl2 = AcDb2dPolyline::cast(entity)) vertices = &AcDbImpAccess::vertices(*pl2);
    if (auto* pl3 = AcDb3dPolyline::cast(entity)) vertices = &AcDbImpAccess::vertices(*pl3);
    if (auto* mesh = AcDbPolyFaceMesh::cast(entity)) vertices = &AcDbImpAccess::vertices(*mesh);
    if (vertices != nullptr) {
      for (int k = 0; k < vertices->ids.length() && static_cast<std::size_t>(k) < parts.size(); ++k) {
        Adopt(vertices->ids[k], parts[static_cast<std::size_t>(k)]);
      }
      Adopt(vertices->sequenceEnd, sequenceEnd);
    }
    entity->close();
    if (view.xdict != 0) m_xdicts.push_back({id, view.xdict});
    return id;
  }

  void Entity(const Record& r, AcDbObjectId block) {
    View view(m_tags, r);
    const std::string_view type = r.type;
    const AcGeVector3d normal = view.Normal();
    const AcGeMatrix3d toWorld = AcGeMatrix3d::planeToWorld(normal);
    if (type == "LINE") {
      auto* line = new AcDbLine(view.Point(10), view.Point(11));
      line->setThickness(view.Real(39));
      line->setNormal(normal);
      Append(line, view, block);
    } else if (type == "CIRCLE" || type == "ARC") {
      const AcGePoint3d centre = view.Point(10).transformBy(toWorld);
      AcDbEntity* entity = nullptr;
      if (type == "CIRCLE") {
        auto* circle = new AcDbCircle(centre, normal, view.Real(40, 1.0));
        circle->setThickness(view.Real(39));
        entity = circle;
      } else {
        auto* arc = new AcDbArc(centre, normal, view.Real(40, 1.0), Rad(view.Real(50)), Rad(view.Real(51)));
        arc->setThickness(view.Real(39));
        entity = arc;
      }
      Append(entity, view, block);
    } else if (type == "ELLIPSE") {
      const AcGePoint3d major = view.Point(11, AcGePoint3d(1, 0, 0));
      const double ratio = view.Real(40, 1.0);
      const double start = view.Real(41);
      const double end = view.Real(42, 2.0 * std::numbers::pi);
      const auto angleOf = [ratio](double t) { return std::atan2(ratio * std::sin(t), std::cos(t)); };
      const bool closed = std::fabs(end - start - 2.0 * std::numbers::pi) < 1e-12 || end == start;
      auto* ellipse = new AcDbEllipse;
      ellipse->set(view.Point(10), normal, AcGeVector3d(major.x, major.y, major.z), ratio, angleOf(start),
                   closed ? angleOf(start) : angleOf(end));
      Append(ellipse, view, block);
    } else if (type == "LWPOLYLINE") {
      auto* pl = new AcDbPolyline;
      Cursor cursor(view.Body("AcDbPolyline"));
      unsigned index = 0;
      while (cursor.Seek(10)) {
        const double x = cursor.Real(10);
        const double y = cursor.Real(20);
        double sw = -1.0;
        double ew = -1.0;
        double bulge = 0.0;
        while (!cursor.Done() && !cursor.Is(10)) {
          const int code = cursor.Peek().code;
          if (code == 40) {
            sw = cursor.Real(40);
          } else if (code == 41) {
            ew = cursor.Real(41);
          } else if (code == 42) {
            bulge = cursor.Real(42);
          } else {
            cursor.Skip();
          }
        }
        pl->addVertexAt(index++, AcGePoint2d(x, y), bulge, sw, ew);
      }
      pl->setClosed((view.Int(70) & 1) != 0);
      pl->setElevation(view.Real(38));
      pl->setThickness(view.Real(39));
      if (view.Find(43) != nullptr) pl->setConstantWidth(view.Real(43));
      pl->setNormal(normal);
      Append(pl, view, block);
    } else if (type == "INSERT") {
      const AcDbObjectId definition = ByName(m_blocks, view.Text(2));
      if (definition.isNull()) return;
      auto* insert = new AcDbBlockReference(view.Point(10), definition);
      insert->setScaleFactors(AcGeScale3d(view.Real(41, 1.0), view.Real(42, 1.0), view.Real(43, 1.0)));
      insert->setRotation(Rad(view.Real(50)));
      insert->setNormal(normal);
      Append(insert, view, block);
    } else if (type == "TEXT") {
      auto* text = new AcDbText;
      text->setNormal(normal);
      text->setPosition(view.Point(10).transformBy(toWorld));
      text->setTextString(view.Text(1).c_str());
      text->setHeight(view.Real(40, 0.2));
      text->setRotation(Rad(view.Real(50)));
      text->setWidthFactor(view.Real(41, 1.0));
      text->setOblique(Rad(view.Real(51)));
      text->setHorizontalMode(static_cast<AcDb::TextHorzMode>(view.Int(72)));
      // The vertical mode sits in the second AcDbText subclass.
      Cursor second(view.Body("AcDbText"));
      if (second.Seek(100)) {
        second.Skip();
        if (second.Seek(73)) text->setVerticalMode(static_cast<AcDb::TextVertMode>(second.Int(73)));
      }
      if (view.Find(11) != nullptr) text->setAlignmentPoint(view.Point(11).transformBy(toWorld));
      if (AcDbObjectId style = ByName(m_styles, view.Text(7)); !style.isNull()) text->setTextStyle(style);
      text->setThickness(view.Real(39));
      Append(text, view, block);
    } else if (type == "3DFACE") {
      auto* face = new AcDbFace(view.Point(10), view.Point(11), view.Point(12), view.Point(13));
      const long long hidden = view.Int(70);
      for (Adesk::UInt16 i = 0; i < 4; ++i)
        if ((hidden & (1 << i)) != 0) face->makeEdgeInvisibleAt(i);
      Append(face, view, block);
    } else if (type == "HATCH") {
      Hatch(view, block);
    } else if (type == "3DSOLID") {
      Solid(view, block);
    } else if (type == "ACAD_TABLE") {
      Table(view, block);
    }
  }

  void Polyline(const Record& r, const std::vector<const Record*>& vertexRecords, const Record* end,
                AcDbObjectId block) {
    View view(m_tags, r);
    const long long flags = view.Int(70);
    std::vector<std::uint64_t> handles;
    for (const Record* v : vertexRecords) handles.push_back(View(m_tags, *v).handle);
    const std::uint64_t endHandle = end == nullptr ? 0 : View(m_tags, *end).handle;
    AcDbEntity* entity = nullptr;
    if ((flags & 64) != 0) {
      auto* mesh = new AcDbPolyFaceMesh;
      for (const Record* v : vertexRecords) {
        View vertex(m_tags, *v);
        if ((vertex.Int(70) & 64) != 0) {
          mesh->appendVertex(new AcDbPolyFaceMeshVertex(vertex.Point(10)));
        } else {
          mesh->appendFaceRecord(new AcDbFaceRecord(
              static_cast<Adesk::Int16>(vertex.Int(71)), static_cast<Adesk::Int16>(vertex.Int(72)),
              static_cast<Adesk::Int16>(vertex.Int(73)), static_cast<Adesk::Int16>(vertex.Int(74))));
        }
      }
      entity = mesh;
    } else if ((flags & 8) != 0) {
      auto* pl = new AcDb3dPolyline;
      for (const Record* v : vertexRecords) pl->appendVertex(new AcDb3dPolylineVertex(View(m_tags, *v).Point(10)));
      pl->setClosed((flags & 1) != 0);
      entity = pl;
    } else if ((flags & 16) == 0) {
      auto* pl = new AcDb2dPolyline;
      pl->setNormal(view.Normal());
      pl->setElevation(view.Point(10).z);
      pl->setThickness(view.Real(39));
      pl->setDefaultStartWidth(view.Real(40));
      pl->setDefaultEndWidth(view.Real(41));
      for (const Record* v : vertexRecords) {
        View vertex(m_tags, *v);
        pl->appendVertex(new AcDb2dVertex(vertex.Point(10), vertex.Real(42), vertex.Real(40), vertex.Real(41)));
      }
      pl->setClosed((flags & 1) != 0);
      entity = pl;
    }
    if (entity != nullptr) Append(entity, view, block, handles, endHandle);
  }

  void Hatch(const View& view, AcDbObjectId block) {
    auto* hatch = new AcDbHatch;
    hatch->setNormal(view.Normal());
    hatch->setElevation(view.Point(10).z);
    Cursor cursor(view.Body("AcDbHatch"));
    cursor.Seek(91);
    const long long loops = cursor.Int(91);
    for (long long l = 0; l < loops && cursor.Seek(92); ++l) {
      const auto type = static_cast<Adesk::Int32>(cursor.Int(92));
      if ((type & AcDbHatch::kPolyline) != 0) {
        const bool bulged = cursor.Int(72) != 0;
        cursor.Int(73);
        const long long n = cursor.Int(93);
        AcGePoint2dArray points;
        AcGeDoubleArray bulges;
        for (long long k = 0; k < n && cursor.Seek(10); ++k) {
          const double x = cursor.Real(10);
          const double y = cursor.Real(20);
          points.append(AcGePoint2d(x, y));
          bulges.append(bulged ? cursor.Real(42) : 0.0);
        }
        hatch->appendLoop(type, points, bulges);
        continue;
      }
      const long long n = cursor.Int(93);
      std::vector<std::unique_ptr<AcGeLineSeg2d>> lines;
      std::vector<std::unique_ptr<AcGeCircArc2d>> arcs;
      AcGeVoidPointerArray edges;
      AcGeIntArray types;
      for (long long k = 0; k < n && cursor.Seek(72); ++k) {
        const long long edgeType = cursor.Int(72);
        if (edgeType == 1) {
          const double x1 = cursor.Real(10);
          const double y1 = cursor.Real(20);
          const double x2 = cursor.Real(11);
          const double y2 = cursor.Real(21);
          lines.push_back(std::make_unique<AcGeLineSeg2d>(AcGePoint2d(x1, y1), AcGePoint2d(x2, y2)));
          edges.append(lines.back().get());
          types.append(AcDbHatch::kLine);
        } else if (edgeType == 2) {
          const double x = cursor.Real(10);
          const double y = cursor.Real(20);
          const double r = cursor.Real(40);
          const double a0 = Rad(cursor.Real(50));
          double a1 = Rad(cursor.Real(51));
          // Angles in [0, 360): an end at or before the start goes round past 0.
          while (a1 <= a0) a1 += 2.0 * std::numbers::pi;
          const bool ccw = cursor.Int(73, 1) != 0;
          arcs.push_back(
              std::make_unique<AcGeCircArc2d>(AcGePoint2d(x, y), r, a0, a1, AcGeVector2d::kXAxis, !ccw));
          edges.append(arcs.back().get());
          types.append(AcDbHatch::kCirArc);
        }
      }
      if (!edges.isEmpty()) hatch->appendLoop(type, edges, types);
    }
    const std::wstring pattern = view.Text(2);
    hatch->setPattern(static_cast<AcDbHatch::HatchPatternType>(view.Int(76, 1)), pattern.empty() ? L"SOLID" : pattern.c_str());
    hatch->setHatchStyle(static_cast<AcDbHatch::HatchStyle>(view.Int(75)));
    if (cursor.Seek(52)) hatch->setPatternAngle(Rad(cursor.Real(52)));
    if (cursor.Seek(41)) hatch->setPatternScale(cursor.Real(41, 1.0));
    Append(hatch, view, block);
  }

  void Solid(const View& view, AcDbObjectId block) {
    std::vector<std::string> lines;
    for (const Tag& t : view.Body("AcDbModelerGeometry")) {
      if (t.code == 1) {
        lines.push_back(Crypt(UnescapeCarets(t.value)));
      } else if (t.code == 3 && !lines.empty()) {
        lines.back() += Crypt(UnescapeCarets(t.value));
      }
    }
    AcDbImpAccess::Frustum frustum{};
    if (!FrustumFromSat(lines, frustum)) return;  // ACIS bodies of other shapes are not read
    auto* solid = new AcDb3dSolid;
    if (solid->createFrustum(frustum.height, frustum.xRadius, frustum.yRadius, frustum.topXRadius) != Acad::eOk ||
        solid->transformBy(frustum.placement) != Acad::eOk) {
      delete solid;
      return;
    }
    Append(solid, view, block);
  }

  void Table(const View& view, AcDbObjectId block) {
    auto* table = new AcDbTable;
    Cursor cursor(view.Body("AcDbTable"));
    cursor.Seek(91);
    const int rows = static_cast<int>(cursor.Int(91));
    const int columns = static_cast<int>(cursor.Int(92));
    if (rows <= 0 || columns <= 0 || table->setSize(rows, columns) != Acad::eOk) {
      delete table;
      return;
    }
    if (AcDbObjectId style = IdOf(view.Find(342) ? ToHandle(view.Find(342)->value) : 0); !style.isNull()) {
      table->setTableStyle(style);
    }
    table->setPosition(view.Point(10));
    const AcGePoint3d d = view.Point(11, AcGePoint3d(1, 0, 0));
    table->setDirection(AcGeVector3d(d.x, d.y, d.z));
    cursor.Seek(141);
    for (int r = 0; r < rows && cursor.Is(141); ++r) table->setRowHeight(r, cursor.Real(141));
    cursor.Seek(142);
    for (int c = 0; c < columns && cursor.Is(142); ++c) table->setColumnWidth(c, cursor.Real(142));
    for (int cell = 0; cell < rows * columns && cursor.Seek(171); ++cell) {
      cursor.Skip();
      std::wstring text;
      while (!cursor.Done() && !cursor.Is(171)) {
        if (cursor.Is(1) || cursor.Is(2) || cursor.Is(3)) text += Decode(cursor.Peek().value);
        cursor.Skip();
      }
      table->setTextString(cell / columns, cell % columns, text.c_str());
    }
    Append(table, view, block);
  }

  // --- Objects ----------------------------------------------------------------------------------

  void Objects() {
    for (const Record& r : SectionRecords("OBJECTS")) m_objects.emplace(View(m_tags, r).handle, &r);
    for (const Record& r : SectionRecords("OBJECTS")) {
      View view(m_tags, r);
      if (r.type == "DICTIONARY" && view.owner == 0) {
        Adopt(m_db->roots().namedObjects, view.handle);
        Dictionary(m_db->roots().namedObjects, view);
        break;
      }
    }
  }

  // The entries of a dictionary of the file, into the drawing's dictionary `id`.
  void Dictionary(AcDbObjectId id, const View& view) {
    if (view.xdict != 0) m_xdicts.push_back({id, view.xdict});
    std::vector<std::pair<std::wstring, std::uint64_t>> entries;
    Cursor cursor(view.Body("AcDbDictionary"));
    while (cursor.Seek(3)) {
      std::wstring key = Decode(cursor.Peek().value);
      cursor.Skip();
      if (cursor.Is(350) || cursor.Is(360)) {
        entries.emplace_back(std::move(key), ToHandle(cursor.Peek().value));
        cursor.Skip();
      }
    }
    for (const auto& [key, handle] : entries) {
      auto found = m_objects.find(handle);
      if (found == m_objects.end()) continue;
      Entry(id, key, View(m_tags, *found->second));
    }
  }

  void Entry(AcDbObjectId dictionaryId, const std::wstring& key, const View& view) {
    AcDbDictionary* dictionary = nullptr;
    if (acdbOpenObject(dictionary, dictionaryId, AcDb::kForWrite) != Acad::eOk) return;
    AcDbObjectId existing;
    const bool has = dictionary->getAt(key.c_str(), existing) == Acad::eOk;
    AcDbObjectId id;
    const std::string_view type = view.type();
    if (type == "DICTIONARY") {
      if (has && AcDbDictionary::cast(AcDbImpDatabase::peek(existing)) != nullptr) {
        id = existing;
      } else {
        auto* child = new AcDbDictionary;
        if (dictionary->setAt(key.c_str(), child, id) == Acad::eOk) child->close(); else delete child;
      }
    } else if (type == "XRECORD") {
      auto* record = new AcDbXrecord;
      if (dictionary->setAt(key.c_str(), record, id) == Acad::eOk) {
        record->close();
        m_xrecords.push_back({id, FindRecord(view.handle)});
      } else {
        delete record;
      }
    } else if (type == "GROUP") {
      auto* group = new AcDbGroup(view.Text(300).c_str(), view.Int(71, 1) != 0);
      if (dictionary->setAt(key.c_str(), group, id) == Acad::eOk) {
        AcDbObjectIdArray members;
        for (const Tag& t : view.Body("AcDbGroup")) {
          if (t.code != 340) continue;
          const AcDbObjectId member = IdOf(ToHandle(t.value));
          if (!member.isNull()) members.append(member);
        }
        if (!members.isEmpty()) group->append(members);
        group->close();
      } else {
        delete group;
      }
    } else if (type == "LAYOUT" || type == "TABLESTYLE") {
      if (has) {
        id = existing;
      } else if (type == "TABLESTYLE") {
        auto* style = new AcDbTableStyle;
        style->setName(key.c_str());
        style->setDescription(view.Text(3).c_str());
        if (dictionary->setAt(key.c_str(), style, id) == Acad::eOk) style->close(); else delete style;
      }
    }
    dictionary->close();
    Adopt(id, view.handle);
    if (type == "DICTIONARY" && !id.isNull()) {
      Dictionary(id, view);
    } else if (view.xdict != 0 && !id.isNull()) {
      m_xdicts.push_back({id, view.xdict});
    }
  }

  const Record* FindRecord(std::uint64_t handle) const {
    auto found = m_objects.find(handle);
    return found == m_objects.end() ? nullptr : found->second;
  }

  // Each object's extension dictionary, made on the object and filled (objects found in it may
  // have their own).
  void ExtensionDictionaries() {
    for (std::size_t i = 0; i < m_xdicts.size(); ++i) {
      const auto [owner, handle] = m_xdicts[i];
      const Record* record = FindRecord(handle);
      if (record == nullptr || owner.isNull()) continue;
      AcDbObject* object = nullptr;
      if (acdbOpenAcDbObject(object, owner, AcDb::kForWrite) != Acad::eOk) continue;
      object->createExtensionDictionary();
      const AcDbObjectId dictionary = object->extensionDictionary();
      object->close();
      Adopt(dictionary, handle);
      Dictionary(dictionary, View(m_tags, *record));
    }
  }

  void FillXrecords() {
    for (const auto& [id, record] : m_xrecords) {
      if (record == nullptr) continue;
      View view(m_tags, *record);
      Cursor cursor(view.Body("AcDbXrecord"));
      resbuf head{};
      resbuf* tail = &head;
      while (!cursor.Done()) {
        const Tag t = cursor.Peek();
        cursor.Skip();
        if (t.code == 280 && tail == &head) continue;  // the cloning flag precedes the data
        const ResKind kind = KindOfCode(t.code);
        if (kind == ResKind::Invalid || kind == ResKind::None) continue;
        resbuf* rb = acutNewRb(t.code);
        switch (kind) {
          case ResKind::Text: {
            const std::wstring text = Decode(t.value);
            rb->resval.rstring = new ACHAR[text.size() + 1];
            std::copy(text.c_str(), text.c_str() + text.size() + 1, rb->resval.rstring);
            break;
          }
          case ResKind::Point: {
            const int step = 10;
            rb->resval.rpoint[0] = ToReal(t.value);
            rb->resval.rpoint[1] = cursor.Is(t.code + step) ? cursor.Real(t.code + step) : 0.0;
            rb->resval.rpoint[2] = cursor.Is(t.code + 2 * step) ? cursor.Real(t.code + 2 * step) : 0.0;
            break;
          }
          case ResKind::Real: rb->resval.rreal = ToReal(t.value); break;
          case ResKind::Int16: rb->resval.rint = static_cast<short>(ToInt(t.value)); break;
          case ResKind::Int32: rb->resval.rlong = static_cast<Adesk::Int32>(ToInt(t.value)); break;
          case ResKind::Int64: rb->resval.mnInt64 = ToInt(t.value); break;
          case ResKind::Name: rb->resval.rlname[0] = IdOf(ToHandle(t.value)).asOldId(); break;
          case ResKind::Binary: {
            const std::string_view hex = Trim(t.value);
            rb->resval.rbinary.clen = static_cast<short>(hex.size() / 2);
            rb->resval.rbinary.buf = new char[hex.size() / 2 + 1];
            for (std::size_t k = 0; k + 1 < hex.size(); k += 2) {
              unsigned byte = 0;
              std::from_chars(hex.data() + k, hex.data() + k + 2, byte, 16);
              rb->resval.rbinary.buf[k / 2] = static_cast<char>(byte);
            }
            break;
          }
          default: break;
        }
        tail->rbnext = rb;
        tail = rb;
      }
      AcDbXrecord* xrecord = nullptr;
      if (head.rbnext != nullptr && acdbOpenObject(xrecord, id, AcDb::kForWrite) == Acad::eOk) {
        xrecord->setFromRbChain(*head.rbnext);
        xrecord->close();
      }
      acutRelRb(head.rbnext);
    }
  }

  void Header() {
    auto& settings = m_db->settings();
    for (const Record& r : SectionRecords("HEADER")) {
      for (std::size_t k = r.begin; k + 1 < r.end; ++k) {
        if (m_tags[k].code != 9) continue;
        const std::string_view name = Trim(m_tags[k].value);
        const Tag& value = m_tags[k + 1];
        if (name == "$CLAYER") {
          if (AcDbObjectId id = ByName(m_layers, Decode(value.value)); !id.isNull()) settings.clayer = id;
        } else if (name == "$CELTYPE") {
          if (AcDbObjectId id = LineType(Decode(value.value)); !id.isNull()) settings.celtype = id;
        } else if (name == "$TEXTSTYLE") {
          if (AcDbObjectId id = ByName(m_styles, Decode(value.value)); !id.isNull()) settings.textstyle = id;
        } else if (name == "$CECOLOR") {
          settings.cecolor.setColorIndex(static_cast<Adesk::UInt16>(std::clamp(ToInt(value.value), 0LL, 256LL)));
        } else if (name == "$CELTSCALE") {
          if (ToReal(value.value) > 0.0) settings.celtscale = ToReal(value.value);
        } else if (name == "$TEXTSIZE") {
          if (ToReal(value.value) > 0.0) settings.textsize = ToReal(value.value);
        }
      }
    }
  }

  const std::vector<Tag>& m_tags;
  std::string& m_error;
  std::map<std::string, std::vector<Record>> m_sections;
  std::unique_ptr<AcDbDatabase> m_face;
  AcDbImpDatabase* m_db = nullptr;
  std::uint64_t m_maxFileHandle = 0;
  std::uint64_t m_handseed = 0;
  std::unordered_map<std::uint64_t, AcDbObjectId> m_ids;
  std::unordered_map<std::uint64_t, const Record*> m_objects;
  std::map<std::wstring, AcDbObjectId> m_lineTypes, m_layers, m_styles, m_blocks;
  std::unordered_set<std::uint64_t> m_skipRecords;
  std::set<std::wstring> m_skipNames;
  std::vector<std::pair<AcDbObjectId, std::uint64_t>> m_xdicts;
  std::vector<std::pair<AcDbObjectId, const Record*>> m_xrecords;
};

}  // namespace

std::unique_ptr<AcDbDatabase> Read(const std::string& text, std::string& error) {
  std::vector<Tag> tags;
  if (!Tokenize(text, tags, error)) return nullptr;
  return Reader(tags, error).Run();
}

std::unique_ptr<AcDbDatabase> Open(const std::string& path, std::string& error) {
  std::ifstream in(path, std::ios::binary);
  if (!in) {
    error = "cannot open " + path;
    return nullptr;
  }
  std::ostringstream text;
  text << in.rdbuf();
  std::unique_ptr<AcDbDatabase> db = Read(text.str(), error);
  if (db == nullptr && error.empty()) error = "cannot read " + path;
  if (db == nullptr) error = path + ": " + error;
  return db;
}

}  // namespace headless::dxf
