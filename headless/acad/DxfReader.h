// The DXF reader's view of a file (its groups, records and the values in them) and the reader
// that builds a drawing from it, shared by DxfReader.cpp (tables and objects) and
// DxfReadEntities.cpp (entities).
#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cwctype>
#include <fstream>
#include <functional>
#include <map>
#include <numbers>
#include <set>
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

namespace headless::dxf::detail {

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

inline std::string_view Trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
  return s;
}

inline double ToReal(std::string_view s) {
  s = Trim(s);
  double v = 0.0;
  std::from_chars(s.data(), s.data() + s.size(), v);
  return v;
}

inline long long ToInt(std::string_view s) {
  s = Trim(s);
  long long v = 0;
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  std::from_chars(s.data(), s.data() + s.size(), v);
  return v;
}

inline std::uint64_t ToHandle(std::string_view s) {
  s = Trim(s);
  std::uint64_t v = 0;
  std::from_chars(s.data(), s.data() + s.size(), v, 16);
  return v;
}

inline bool Tokenize(const std::string& text, std::vector<Tag>& tags, std::string& error) {
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

inline AcCmColor ColorOf(const View& view) {
  AcCmColor color;
  const long long index = view.Int(62, 256);
  color.setColorIndex(static_cast<Adesk::UInt16>(std::clamp(std::llabs(index), 0LL, 256LL)));
  if (const Tag* rgb = view.Find(420)) {
    const long long v = ToInt(rgb->value);
    color.setRGB(static_cast<Adesk::UInt8>(v >> 16), static_cast<Adesk::UInt8>(v >> 8), static_cast<Adesk::UInt8>(v));
  }
  return color;
}

inline double Rad(double deg) { return deg * kDegToRad; }

class Reader {
public:
  Reader(const std::vector<Tag>& tags, std::string& error) : m_tags(tags), m_error(error) {}

  std::unique_ptr<AcDbDatabase> Run();

private:
  // --- The file's shape -------------------------------------------------------------------------

  void Split();

  // The default drawing's objects make room: their handles go past every handle of the file,
  // and take the file's as their counterparts are met.
  void ClearHandles();

  void Adopt(AcDbObjectId id, std::uint64_t handle);

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
  void TableBlocksToSkip();

  // --- Tables -----------------------------------------------------------------------------------

  void Tables();

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

  void TableRecord(AcDbObjectId table, std::string_view tableName, const View& view);

  AcDbObjectId LineType(const std::wstring& name);

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

  void Blocks();

  void Section(const char* name, AcDbObjectId defaultBlock);

  // Entities in file order; a POLYLINE takes the VERTEX records after it and its SEQEND.
  void AddEntities(const std::vector<Record>& records, AcDbObjectId block);

  void Common(AcDbEntity& entity, const View& view);

  // Appends the entity to the block and gives it (and its vertices) the file's handles.
  AcDbObjectId Append(AcDbEntity* entity, const View& view, AcDbObjectId block,
                      const std::vector<std::uint64_t>& parts = {}, std::uint64_t sequenceEnd = 0);

  void Entity(const Record& r, AcDbObjectId block);

  void Polyline(const Record& r, const std::vector<const Record*>& vertexRecords, const Record* end,
                AcDbObjectId block);

  void Hatch(const View& view, AcDbObjectId block);

  void Solid(const View& view, AcDbObjectId block);

  void Table(const View& view, AcDbObjectId block);

  // --- Objects ----------------------------------------------------------------------------------

  void Objects();

  // The entries of a dictionary of the file, into the drawing's dictionary `id`.
  void Dictionary(AcDbObjectId id, const View& view);

  void Entry(AcDbObjectId dictionaryId, const std::wstring& key, const View& view);

  const Record* FindRecord(std::uint64_t handle) const {
    auto found = m_objects.find(handle);
    return found == m_objects.end() ? nullptr : found->second;
  }

  // Each object's extension dictionary, made on the object and filled (objects found in it may
  // have their own).
  void ExtensionDictionaries();

  void FillXrecords();

  void Header();

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

}  // namespace headless::dxf::detail
