#include "module/acad/GrAcadLayer.h"

#include <cwctype>
#include <numeric>

#include "module/acad/GrAcadDb.h"
#include "module/acad/GrAcadPlatformColor.h"
#include "platform/acad/acutmem.h"
#include "platform/acad/dbsymtb.h"

namespace {

struct LineTypeDef {
  std::int32_t code;
  const wchar_t* name;
  const wchar_t* description;
  std::vector<double> dashes;  // acad.lin: dashes positive, gaps negative, dots 0
};

const std::vector<LineTypeDef>& LineTypes() {
  static const std::vector<LineTypeDef> defs = {
      {-1, L"ByBlock", L"", {}},
      {0, L"ByLayer", L"", {}},
      {1, L"Continuous", L"Solid line", {}},
      {2, L"DASHED", L"Dashed __ __ __ __ __ __ __ __ __ __ __ __ __ _", {0.5, -0.25}},
      {3, L"HIDDEN", L"Hidden __ __ __ __ __ __ __ __ __ __ __ __ __ __", {0.25, -0.125}},
      {4, L"CENTER", L"Center ____ _ ____ _ ____ _ ____ _ ____ _ ____", {1.25, -0.25, 0.25, -0.25}},
      {5, L"PHANTOM", L"Phantom ______  __  __  ______  __  __  ______", {1.25, -0.25, 0.25, -0.25, 0.25, -0.25}},
      {6, L"DOT", L"Dot . . . . . . . . . . . . . . . . . . . . . . . .", {0.0, -0.25}},
      {7, L"DASHDOT", L"Dash dot __ . __ . __ . __ . __ . __ . __ . __", {0.5, -0.25, 0.0, -0.25}},
      {8, L"DIVIDE", L"Divide ____ . . ____ . . ____ . . ____ . . ____", {0.5, -0.25, 0.0, -0.25, 0.0, -0.25}},
      {9, L"BORDER", L"Border __ __ . __ __ . __ __ . __ __ . __ __ .", {0.5, -0.25, 0.5, -0.25, 0.0, -0.25}},
  };
  return defs;
}

bool SameName(const wchar_t* a, const wchar_t* b) {
  if (a == nullptr || b == nullptr) return false;
  for (; *a != 0 && *b != 0; ++a, ++b) {
    if (std::towupper(static_cast<wint_t>(*a)) != std::towupper(static_cast<wint_t>(*b))) return false;
  }
  return *a == *b;
}

const LineTypeDef* DefOf(std::int32_t code) {
  for (const auto& def : LineTypes())
    if (def.code == code) return &def;
  return nullptr;
}

AcDbDatabase* OrWorking(AcDbDatabase* db) { return db != nullptr ? db : CGrAcadDb::Working(); }

std::wstring Take(ACHAR* text) {
  std::wstring copy = text == nullptr ? L"" : text;
  acutDelString(text);
  return copy;
}

template <class Setter>
int ChangeLayer(AcDbObjectId id, Setter setter) {
  CGrAcadOpened<AcDbLayerTableRecord> layer(id, AcDb::kForWrite);
  if (!layer) return layer.Status();
  return setter(*layer.get());
}

}  // namespace

// --- Line types ---------------------------------------------------------------------------------

const wchar_t* CGrAcadLineType::NameOf(std::int32_t code) {
  const LineTypeDef* def = DefOf(code);
  return def != nullptr ? def->name : L"ByLayer";
}

std::int32_t CGrAcadLineType::CodeOf(const wchar_t* name) {
  for (const auto& def : LineTypes())
    if (SameName(def.name, name)) return def.code;
  return kByLayer;
}

AcDbObjectId CGrAcadLineType::Ensure(AcDbDatabase* db, std::int32_t code) {
  AcDbObjectId id;
  db = OrWorking(db);
  if (db == nullptr) return id;
  const LineTypeDef* def = DefOf(code);
  if (def == nullptr) def = DefOf(kByLayer);
  {
    CGrAcadOpened<AcDbLinetypeTable> table(db->linetypeTableId(), AcDb::kForRead);
    if (!table) return id;
    if (table->getAt(def->name, id) == Acad::eOk) return id;
    if (table->upgradeOpen() != Acad::eOk) return AcDbObjectId::kNull;
    auto* record = new AcDbLinetypeTableRecord;
    record->setName(def->name);
    record->setComments(def->description);
    record->setNumDashes(static_cast<int>(def->dashes.size()));
    double length = 0.0;
    for (std::size_t i = 0; i < def->dashes.size(); ++i) {
      record->setDashLengthAt(static_cast<int>(i), def->dashes[i]);
      length += def->dashes[i] < 0 ? -def->dashes[i] : def->dashes[i];
    }
    record->setPatternLength(length);
    if (table->add(id, record) != Acad::eOk) {
      delete record;
      return AcDbObjectId::kNull;
    }
    record->close();
  }
  return id;
}

// --- Colours ------------------------------------------------------------------------------------

AcCmColor GrAcadColorFromElement(const CGrColor& color) {
  AcCmColor result;  // by layer
  switch (color.Method()) {
    case grcolor::kMethodByIndex: {
      const std::int32_t index = CGrAcadPlatformColor::IndexFromCode(static_cast<std::int32_t>(color.StoredIndex()));
      if (index >= 0 && index <= AcCmEntityColor::kACIbyLayer) result.setColorIndex(static_cast<Adesk::UInt16>(index));
      break;
    }
    case grcolor::kMethodRgb:
    case grcolor::kMethodBoth: {
      const std::uint32_t rgb = color.StoredRgb();
      result.setRGB(static_cast<Adesk::UInt8>(rgb), static_cast<Adesk::UInt8>(rgb >> 8),
                    static_cast<Adesk::UInt8>(rgb >> 16));
      break;
    }
    default:
      break;
  }
  return result;
}

CGrColor GrElementColorFromAcad(const AcCmColor& color) {
  if (color.isByColor()) {
    return CGrColor(std::uint32_t(color.red()) | (std::uint32_t(color.green()) << 8) |
                    (std::uint32_t(color.blue()) << 16));
  }
  // By layer is what an element without a colour of its own gets.
  if (color.isByLayer()) return CGrColor();
  return CGrColor::FromIndex(static_cast<std::uint32_t>(CGrAcadPlatformColor::CodeFromIndex(color.colorIndex())));
}

// --- Layers -------------------------------------------------------------------------------------

std::wstring CGrAcadLayer::Name() const {
  CGrAcadOpened<AcDbLayerTableRecord> layer(m_id, AcDb::kForRead);
  const ACHAR* name = nullptr;
  if (!layer || layer->getName(name) != Acad::eOk || name == nullptr) return {};
  return name;
}

CGrColor CGrAcadLayer::Color() const {
  CGrAcadOpened<AcDbLayerTableRecord> layer(m_id, AcDb::kForRead);
  return layer ? GrElementColorFromAcad(layer->color()) : CGrColor();
}

std::int32_t CGrAcadLayer::LineType() const {
  AcDbObjectId lineType;
  {
    CGrAcadOpened<AcDbLayerTableRecord> layer(m_id, AcDb::kForRead);
    if (!layer) return CGrAcadLineType::kByLayer;
    lineType = layer->linetypeObjectId();
  }
  CGrAcadOpened<AcDbLinetypeTableRecord> record(lineType, AcDb::kForRead);
  const ACHAR* name = nullptr;
  if (!record || record->getName(name) != Acad::eOk) return CGrAcadLineType::kByLayer;
  return CGrAcadLineType::CodeOf(name);
}

bool CGrAcadLayer::IsOff() const {
  CGrAcadOpened<AcDbLayerTableRecord> layer(m_id, AcDb::kForRead);
  return layer && layer->isOff();
}

bool CGrAcadLayer::IsFrozen() const {
  CGrAcadOpened<AcDbLayerTableRecord> layer(m_id, AcDb::kForRead);
  return layer && layer->isFrozen();
}

bool CGrAcadLayer::IsLocked() const {
  CGrAcadOpened<AcDbLayerTableRecord> layer(m_id, AcDb::kForRead);
  return layer && layer->isLocked();
}

int CGrAcadLayer::SetColor(const CGrColor& color) {
  return ChangeLayer(m_id, [&](AcDbLayerTableRecord& layer) {
    layer.setColor(GrAcadColorFromElement(color));
    return 0;
  });
}

int CGrAcadLayer::SetLineType(std::int32_t code) {
  const AcDbObjectId lineType = CGrAcadLineType::Ensure(m_id.database(), code);
  if (lineType.isNull()) return Acad::eKeyNotFound;
  return ChangeLayer(m_id, [&](AcDbLayerTableRecord& layer) {
    layer.setLinetypeObjectId(lineType);
    return 0;
  });
}

int CGrAcadLayer::SetOff(bool off) {
  return ChangeLayer(m_id, [&](AcDbLayerTableRecord& layer) {
    layer.setIsOff(off);
    return 0;
  });
}

int CGrAcadLayer::SetFrozen(bool frozen) {
  return ChangeLayer(m_id, [&](AcDbLayerTableRecord& layer) { return static_cast<int>(layer.setIsFrozen(frozen)); });
}

int CGrAcadLayer::SetLocked(bool locked) {
  return ChangeLayer(m_id, [&](AcDbLayerTableRecord& layer) {
    layer.setIsLocked(locked);
    return 0;
  });
}

CGrAcadLayerTable::CGrAcadLayerTable(AcDbDatabase* db) : m_db(OrWorking(db)) {}

bool CGrAcadLayerTable::Has(const std::wstring& name) const {
  if (m_db == nullptr) return false;
  CGrAcadOpened<AcDbLayerTable> table(m_db->layerTableId(), AcDb::kForRead);
  return table && table->has(name.c_str());
}

std::unique_ptr<CGrAcadLayer> CGrAcadLayerTable::Find(const std::wstring& name) const {
  if (m_db == nullptr) return nullptr;
  CGrAcadOpened<AcDbLayerTable> table(m_db->layerTableId(), AcDb::kForRead);
  AcDbObjectId id;
  if (!table || table->getAt(name.c_str(), id) != Acad::eOk) return nullptr;
  return std::make_unique<CGrAcadLayer>(id);
}

AcDbObjectId CGrAcadLayerTable::Ensure(const std::wstring& name) {
  if (std::unique_ptr<CGrAcadLayer> layer = Find(name)) return layer->Id();
  if (Add(name, CGrColor::FromIndex(7), CGrAcadLineType::kContinuous) != 0) return AcDbObjectId::kNull;
  std::unique_ptr<CGrAcadLayer> layer = Find(name);
  return layer ? layer->Id() : AcDbObjectId::kNull;
}

int CGrAcadLayerTable::Add(const std::wstring& name, const CGrColor& color, std::int32_t lineType) {
  if (m_db == nullptr) return Acad::eNoDatabase;
  const AcDbObjectId lineTypeId = CGrAcadLineType::Ensure(m_db, lineType);
  CGrAcadOpened<AcDbLayerTable> table(m_db->layerTableId(), AcDb::kForWrite);
  if (!table) return table.Status();
  if (table->has(name.c_str())) return Acad::eDuplicateRecordName;
  auto* layer = new AcDbLayerTableRecord;
  Acad::ErrorStatus es = layer->setName(name.c_str());
  if (es == Acad::eOk) {
    layer->setColor(GrAcadColorFromElement(color));
    if (!lineTypeId.isNull()) layer->setLinetypeObjectId(lineTypeId);
    es = table->add(layer);
  }
  if (es != Acad::eOk) {
    delete layer;
    return es;
  }
  layer->close();
  return 0;
}

std::vector<std::wstring> CGrAcadLayerTable::Names() const {
  std::vector<std::wstring> names;
  if (m_db == nullptr) return names;
  CGrAcadOpened<AcDbLayerTable> table(m_db->layerTableId(), AcDb::kForRead);
  if (!table) return names;
  AcDbLayerTableIterator* it = nullptr;
  if (table->newIterator(it) != Acad::eOk || it == nullptr) return names;
  for (; !it->done(); it->step()) {
    AcDbLayerTableRecord* layer = nullptr;
    if (it->getRecord(layer, AcDb::kForRead) != Acad::eOk) continue;
    ACHAR* name = nullptr;
    layer->getName(name);
    names.push_back(Take(name));
    layer->close();
  }
  delete it;
  return names;
}
