// The DXF reader: builds a drawing from the default drawing's objects and the file's, giving every
// object the handle it has in the file (the default objects take the handles of their
// counterparts by name and role).
#include "headless/acad/DxfReader.h"

namespace headless::dxf::detail {

std::unique_ptr<AcDbDatabase> Reader::Run() {
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

void Reader::Split() {
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
      for (std::size_t k = record.begin; k < record.end; ++k) {
        if (m_tags[k].code == 2) {
          section = std::string(Trim(m_tags[k].value));
          break;
        }
      }
      // The header variables sit in the SECTION record itself.
      if (section == "HEADER") m_sections[section].push_back(record);
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
void Reader::ClearHandles() {
  std::uint64_t next = std::max({m_maxFileHandle, m_handseed, m_db->handseed()}) + 1;
  for (const auto& stub : m_db->stubs()) m_db->setHandle(*stub, next++);
}

void Reader::Adopt(AcDbObjectId id, std::uint64_t handle) {
  if (id.isNull() || handle == 0) return;
  if (AcDbStub* stub = AcDbImpDatabase::lookup(id)) {
    if (m_db->setHandle(*stub, handle) == Acad::eOk) m_ids[handle] = id;
  }
}

// Tables bring a "*T" block that only shows them: it is not read.
void Reader::TableBlocksToSkip() {
  for (const char* section : {"ENTITIES", "BLOCKS"}) {
    for (const Record& r : SectionRecords(section)) {
      if (r.type != "ACAD_TABLE") continue;
      View view(m_tags, r);
      if (const Tag* record = view.Find(343)) m_skipRecords.insert(ToHandle(record->value));
      m_skipNames.insert(view.Text(2));
    }
  }
}

void Reader::Tables() {
  const auto& roots = m_db->roots();
  const std::map<std::string_view, AcDbObjectId> tableOf = {
      {"VPORT", roots.viewportTable},  {"LTYPE", roots.linetypeTable},    {"LAYER", roots.layerTable},
      {"STYLE", roots.textStyleTable}, {"VIEW", roots.viewTable},         {"UCS", roots.ucsTable},
      {"APPID", roots.regAppTable},    {"DIMSTYLE", roots.dimStyleTable}, {"BLOCK_RECORD", roots.blockTable}};
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

void Reader::TableRecord(AcDbObjectId table, std::string_view tableName, const View& view) {
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

AcDbObjectId Reader::LineType(const std::wstring& name) {
  for (const auto& entry : m_lineTypes) {
    if (Same(entry.first, name)) return entry.second;
  }
  return AcDbObjectId::kNull;
}

void Reader::Objects() {
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
void Reader::Dictionary(AcDbObjectId id, const View& view) {
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

void Reader::Entry(AcDbObjectId dictionaryId, const std::wstring& key, const View& view) {
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
      if (dictionary->setAt(key.c_str(), child, id) == Acad::eOk)
        child->close();
      else
        delete child;
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
      if (dictionary->setAt(key.c_str(), style, id) == Acad::eOk)
        style->close();
      else
        delete style;
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

// Each object's extension dictionary, made on the object and filled (objects found in it may
// have their own).
void Reader::ExtensionDictionaries() {
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

void Reader::FillXrecords() {
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
        case ResKind::Real:
          rb->resval.rreal = ToReal(t.value);
          break;
        case ResKind::Int16:
          rb->resval.rint = static_cast<short>(ToInt(t.value));
          break;
        case ResKind::Int32:
          rb->resval.rlong = static_cast<Adesk::Int32>(ToInt(t.value));
          break;
        case ResKind::Int64:
          rb->resval.mnInt64 = ToInt(t.value);
          break;
        case ResKind::Name:
          rb->resval.rlname[0] = IdOf(ToHandle(t.value)).asOldId();
          break;
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
        default:
          break;
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

void Reader::Header() {
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

}  // namespace headless::dxf::detail

namespace headless::dxf {

using detail::Reader;
using detail::Tag;
using detail::Tokenize;

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
