#include "headless/aecc/LandDrawing.h"

#include <algorithm>
#include <cwctype>

#include "headless/acad/ImpDatabase.h"
#include "platform/acad/acdb.h"
#include "platform/acad/acutmem.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbsymtb.h"

namespace headless::land_drawing {

namespace {

constexpr const ACHAR* kLandKey = L"AECC_LAND";
constexpr const ACHAR* kAlignmentStylesKey = L"ALIGNMENT_STYLES";
constexpr const ACHAR* kLabelSetsKey = L"ALIGNMENT_LABEL_SETS";
constexpr const ACHAR* kProfileStylesKey = L"PROFILE_STYLES";
constexpr const ACHAR* kSitesKey = L"SITES";
constexpr const ACHAR* kRegistryKey = L"REGISTRY";

wint_t Lower(wchar_t c) { return std::towlower(static_cast<wint_t>(c)); }

template <class T>
T* Peek(AcDbObjectId id) {
  return T::cast(AcDbImpDatabase::peek(id));
}

bool Live(AcDbObjectId id) { return id.isValid() && !id.isErased(); }

AcDbObjectId EntryOf(AcDbObjectId dictionaryId, const ACHAR* key) {
  AcDbObjectId id;
  if (const auto* dictionary = Peek<AcDbDictionary>(dictionaryId)) dictionary->getAt(key, id);
  return id;
}

// The objects of a dictionary in list order (by name, see NameBefore).
template <class T>
std::vector<AcDbObjectId> Listed(AcDbObjectId dictionaryId) {
  std::vector<std::pair<std::wstring, AcDbObjectId>> entries;
  const auto* dictionary = Peek<AcDbDictionary>(dictionaryId);
  if (dictionary == nullptr) return {};
  AcDbDictionaryIterator* it = dictionary->newIterator();
  for (; !it->done(); it->next()) {
    const AcDbObjectId id = it->objectId();
    if (const T* object = Peek<T>(id); object != nullptr && Live(id)) entries.emplace_back(object->name(), id);
  }
  delete it;
  std::stable_sort(entries.begin(), entries.end(),
                   [](const auto& a, const auto& b) { return NameBefore(a.first, b.first); });
  std::vector<AcDbObjectId> ids;
  ids.reserve(entries.size());
  for (const auto& entry : entries) ids.push_back(entry.second);
  return ids;
}

// Adds a new object under key to an open dictionary and closes it.
Acad::ErrorStatus Put(AcDbDictionary* dictionary, const ACHAR* key, AcDbObject* object, AcDbObjectId& id) {
  const Acad::ErrorStatus es = dictionary->setAt(key, object, id);
  if (es != Acad::eOk) {
    delete object;
    return es;
  }
  object->close();
  return Acad::eOk;
}

Acad::ErrorStatus AddNamed(AcDbObjectId dictionaryId, const std::wstring& name, AcDbObject* object,
                           AcDbObjectId& id) {
  AcDbDictionary* dictionary = nullptr;
  Acad::ErrorStatus es = acdbOpenObject(dictionary, dictionaryId, AcDb::kForWrite);
  if (es != Acad::eOk) {
    delete object;
    return es;
  }
  es = Put(dictionary, name.c_str(), object, id);
  dictionary->close();
  return es;
}

// Renames the object and its entry in the dictionary that owns it, unless `clash` objects.
template <class T>
Acad::ErrorStatus Rename(AcDbObjectId id, const std::wstring& name, const std::function<bool(const T&)>& clash) {
  if (name.empty()) return Acad::eInvalidInput;
  T* object = nullptr;
  Acad::ErrorStatus es = acdbOpenObject(object, id, AcDb::kForWrite);
  if (es != Acad::eOk) return es;
  if (clash(*object)) {
    object->close();
    return Acad::eDuplicateRecordName;
  }
  AcDbDictionary* owner = nullptr;
  if (acdbOpenObject(owner, object->ownerId(), AcDb::kForWrite) == Acad::eOk) {
    ACHAR* key = nullptr;
    if (owner->nameAt(id, key) == Acad::eOk) {
      if (!owner->setName(key, name.c_str()) && !SameName(key, name)) es = Acad::eDuplicateRecordName;
      acutDelString(key);
    }
    owner->close();
  }
  if (es == Acad::eOk) es = object->setName(name);
  object->close();
  return es;
}

// The layer an alignment goes on: made when the drawing lacks it.
Acad::ErrorStatus MakeLayer(AcDbDatabase* db, const std::wstring& name) {
  AcDbLayerTable* table = nullptr;
  Acad::ErrorStatus es = db->getLayerTable(table, AcDb::kForRead);
  if (es != Acad::eOk) return es;
  const bool present = table->has(name.c_str());
  table->close();
  if (present) return Acad::eOk;
  if ((es = db->getLayerTable(table, AcDb::kForWrite)) != Acad::eOk) return es;
  auto* layer = new AcDbLayerTableRecord;
  es = layer->setName(name.c_str());
  if (es == Acad::eOk) es = table->add(layer);
  if (es == Acad::eOk) {
    layer->close();
  } else {
    delete layer;
  }
  table->close();
  return es;
}

}  // namespace

bool SameName(std::wstring_view a, std::wstring_view b) {
  if (a.size() != b.size()) return false;
  for (size_t i = 0; i < a.size(); ++i)
    if (Lower(a[i]) != Lower(b[i])) return false;
  return true;
}

bool NameBefore(std::wstring_view a, std::wstring_view b) {
  const size_t n = std::min(a.size(), b.size());
  for (size_t i = 0; i < n; ++i) {
    const wint_t x = Lower(a[i]);
    const wint_t y = Lower(b[i]);
    if (x != y) return x < y;
  }
  return a.size() < b.size();
}

std::wstring FreeName(const std::wstring& base, const std::function<bool(const std::wstring&)>& taken) {
  if (!taken(base)) return base;
  for (int n = 1;; ++n) {
    std::wstring candidate = base + L" (" + std::to_wstring(n) + L")";
    if (!taken(candidate)) return candidate;
  }
}

// From the "_Autodesk Civil 3D (Metric) NCS" template, in list order; "Standard" is the style
// Civil 3D falls back on and is in every drawing it has touched.
const std::vector<std::wstring>& TemplateStyles(LandStyleKind kind) {
  static const std::vector<std::wstring> alignment = {L"Basic",    L"Design Style", L"Existing",
                                                      L"Layout",   L"Proposed",     L"Standard"};
  static const std::vector<std::wstring> labelSets = {L"_No Labels", L"All Labels", L"Major and Minor only",
                                                      L"Major Minor and Geometry Points", L"Standard"};
  static const std::vector<std::wstring> profile = {L"Basic", L"Design Profile", L"Existing Ground Profile",
                                                    L"Layout", L"Standard"};
  switch (kind) {
    case LandStyleKind::Alignment: return alignment;
    case LandStyleKind::AlignmentLabelSet: return labelSets;
    case LandStyleKind::Profile: return profile;
  }
  return alignment;
}

bool Roots::Complete() const {
  return !alignmentStyles.isNull() && !labelSets.isNull() && !profileStyles.isNull() && !sites.isNull() &&
         !registry.isNull();
}

AcDbObjectId Roots::Styles(LandStyleKind kind) const {
  switch (kind) {
    case LandStyleKind::Alignment: return alignmentStyles;
    case LandStyleKind::AlignmentLabelSet: return labelSets;
    case LandStyleKind::Profile: return profileStyles;
  }
  return AcDbObjectId::kNull;
}

Roots Find(const AcDbDatabase* db) {
  Roots roots;
  if (db == nullptr) return roots;
  const AcDbObjectId land = EntryOf(db->namedObjectsDictionaryId(), kLandKey);
  if (land.isNull()) return roots;
  roots.alignmentStyles = EntryOf(land, kAlignmentStylesKey);
  roots.labelSets = EntryOf(land, kLabelSetsKey);
  roots.profileStyles = EntryOf(land, kProfileStylesKey);
  roots.sites = EntryOf(land, kSitesKey);
  roots.registry = EntryOf(land, kRegistryKey);
  return roots;
}

Acad::ErrorStatus Ensure(AcDbDatabase* db, Roots& roots) {
  roots = Find(db);
  if (roots.Complete()) return Acad::eOk;
  if (db == nullptr) return Acad::eNoDatabase;
  AcDbDictionary* named = nullptr;
  Acad::ErrorStatus es = db->getNamedObjectsDictionary(named, AcDb::kForWrite);
  if (es != Acad::eOk) return es;
  AcDbObjectId landId;
  named->getAt(kLandKey, landId);
  AcDbDictionary* land = nullptr;
  if (landId.isNull()) {
    land = new AcDbDictionary;
    es = named->setAt(kLandKey, land, landId);
    if (es != Acad::eOk) delete land;
  } else {
    es = acdbOpenObject(land, landId, AcDb::kForWrite);
  }
  named->close();
  if (es != Acad::eOk) return es;

  const struct {
    const ACHAR* key;
    LandStyleKind kind;
  } styleDictionaries[] = {{kAlignmentStylesKey, LandStyleKind::Alignment},
                           {kLabelSetsKey, LandStyleKind::AlignmentLabelSet},
                           {kProfileStylesKey, LandStyleKind::Profile}};
  for (const auto& entry : styleDictionaries) {
    if (land->has(entry.key) || es != Acad::eOk) continue;
    auto* styles = new AcDbDictionary;
    AcDbObjectId stylesId;
    es = land->setAt(entry.key, styles, stylesId);
    if (es != Acad::eOk) {
      delete styles;
      break;
    }
    for (const std::wstring& name : TemplateStyles(entry.kind)) {
      AcDbObjectId styleId;
      if ((es = Put(styles, name.c_str(), new AeccDbStyle(entry.kind, name), styleId)) != Acad::eOk) break;
    }
    styles->close();
  }
  if (es == Acad::eOk && !land->has(kSitesKey)) {
    AcDbObjectId id;
    es = Put(land, kSitesKey, new AcDbDictionary, id);
  }
  if (es == Acad::eOk && !land->has(kRegistryKey)) {
    AcDbObjectId id;
    es = Put(land, kRegistryKey, new AeccDbLandRegistry, id);
  }
  land->close();
  roots = Find(db);
  return es == Acad::eOk && !roots.Complete() ? Acad::eNotApplicable : es;
}

std::vector<AcDbObjectId> Styles(const AcDbDatabase* db, LandStyleKind kind) {
  return Listed<AeccDbStyle>(Find(db).Styles(kind));
}

AcDbObjectId FindStyle(const AcDbDatabase* db, LandStyleKind kind, std::wstring_view name) {
  for (const AcDbObjectId id : Styles(db, kind))
    if (SameName(Peek<AeccDbStyle>(id)->name(), name)) return id;
  return AcDbObjectId::kNull;
}

Acad::ErrorStatus AddStyle(AcDbDatabase* db, LandStyleKind kind, const std::wstring& name, AcDbObjectId& id) {
  if (name.empty()) return Acad::eInvalidInput;
  if (!FindStyle(db, kind, name).isNull()) return Acad::eDuplicateRecordName;
  Roots roots;
  if (Acad::ErrorStatus es = Ensure(db, roots); es != Acad::eOk) return es;
  return AddNamed(roots.Styles(kind), name, new AeccDbStyle(kind, name), id);
}

bool StyleInUse(const AcDbDatabase* db, AcDbObjectId style) {
  for (const AcDbObjectId id : AllAlignments(db)) {
    const auto* alignment = Peek<AeccDbAlignment>(id);
    if (alignment->styleId() == style || alignment->labelSetId() == style) return true;
    for (const AcDbObjectId profile : Profiles(id))
      if (Peek<AeccDbProfile>(profile)->styleId() == style) return true;
  }
  return false;
}

Acad::ErrorStatus RenameStyle(AcDbObjectId style, const std::wstring& name) {
  return Rename<AeccDbStyle>(style, name, [&](const AeccDbStyle& s) {
    const AcDbObjectId other = FindStyle(s.database(), s.kind(), name);
    return !other.isNull() && other != style;
  });
}

std::vector<AcDbObjectId> Sites(const AcDbDatabase* db) { return Listed<AeccDbSite>(Find(db).sites); }

AcDbObjectId FindSite(const AcDbDatabase* db, std::wstring_view name) {
  for (const AcDbObjectId id : Sites(db))
    if (SameName(Peek<AeccDbSite>(id)->name(), name)) return id;
  return AcDbObjectId::kNull;
}

Acad::ErrorStatus AddSite(AcDbDatabase* db, const std::wstring& name, AcDbObjectId& id) {
  if (name.empty()) return Acad::eInvalidInput;
  if (!FindSite(db, name).isNull()) return Acad::eDuplicateRecordName;
  Roots roots;
  if (Acad::ErrorStatus es = Ensure(db, roots); es != Acad::eOk) return es;
  return AddNamed(roots.sites, name, new AeccDbSite(name), id);
}

Acad::ErrorStatus RenameSite(AcDbObjectId site, const std::wstring& name) {
  return Rename<AeccDbSite>(site, name, [&](const AeccDbSite& s) {
    const AcDbObjectId other = FindSite(s.database(), name);
    return !other.isNull() && other != site;
  });
}

std::vector<AcDbObjectId> AllAlignments(const AcDbDatabase* db) {
  std::vector<AcDbObjectId> ids;
  const auto* registry = Peek<AeccDbLandRegistry>(Find(db).registry);
  if (registry == nullptr) return ids;
  for (const AcDbObjectId id : registry->alignments())
    if (Live(id) && Peek<AeccDbAlignment>(id) != nullptr) ids.push_back(id);
  return ids;
}

std::vector<AcDbObjectId> Alignments(const AcDbDatabase* db, AcDbObjectId site) {
  std::vector<AcDbObjectId> ids;
  for (const AcDbObjectId id : AllAlignments(db))
    if (Peek<AeccDbAlignment>(id)->siteId() == site) ids.push_back(id);
  return ids;
}

AcDbObjectId FindAlignment(const AcDbDatabase* db, AcDbObjectId site, std::wstring_view name) {
  for (const AcDbObjectId id : Alignments(db, site))
    if (SameName(Peek<AeccDbAlignment>(id)->name(), name)) return id;
  return AcDbObjectId::kNull;
}

bool AlignmentNameTaken(const AcDbDatabase* db, std::wstring_view name, AcDbObjectId except) {
  for (const AcDbObjectId id : AllAlignments(db))
    if (id != except && SameName(Peek<AeccDbAlignment>(id)->name(), name)) return true;
  return false;
}

Acad::ErrorStatus AddAlignment(AcDbDatabase* db, const NewAlignment& request, AcDbObjectId& id,
                               land::AlignmentGeometry* geometry) {
  if (request.name.empty()) return Acad::eInvalidInput;
  if (AlignmentNameTaken(db, request.name)) return Acad::eDuplicateRecordName;
  Roots roots;
  Acad::ErrorStatus es = Ensure(db, roots);
  if (es != Acad::eOk) return es;
  if (!request.layer.empty() && (es = MakeLayer(db, request.layer)) != Acad::eOk) return es;

  auto* alignment = new AeccDbAlignment;
  alignment->setName(request.name);
  alignment->setDescription(request.description);
  alignment->setStyleId(request.style);
  alignment->setLabelSetId(request.labelSet);
  alignment->setSiteId(request.site);
  if (geometry != nullptr) *alignment->geometryForWrite() = std::move(*geometry);
  if ((es = AppendToModelSpace(db, alignment, request.layer, id)) != Acad::eOk) return es;

  AeccDbLandRegistry* registry = nullptr;
  if ((es = acdbOpenObject(registry, roots.registry, AcDb::kForWrite)) == Acad::eOk) {
    es = registry->addAlignment(id);
    registry->close();
  }
  if (es != Acad::eOk) {
    // Not listed, so not kept.
    AcDbObject* made = nullptr;
    if (acdbOpenAcDbObject(made, id, AcDb::kForWrite) == Acad::eOk) {
      made->erase();
      made->close();
    }
  }
  return es;
}

Acad::ErrorStatus AppendToModelSpace(AcDbDatabase* db, AcDbEntity* entity, const std::wstring& layer,
                                     AcDbObjectId& id) {
  AcDbBlockTable* blocks = nullptr;
  Acad::ErrorStatus es = db->getBlockTable(blocks, AcDb::kForRead);
  if (es != Acad::eOk) {
    delete entity;
    return es;
  }
  AcDbBlockTableRecord* model = nullptr;
  es = blocks->getAt(ACDB_MODEL_SPACE, model, AcDb::kForWrite);
  blocks->close();
  if (es != Acad::eOk) {
    delete entity;
    return es;
  }
  entity->setDatabaseDefaults(db);
  if (!layer.empty()) es = entity->setLayer(layer.c_str());
  if (es == Acad::eOk) es = model->appendAcDbEntity(id, entity);
  model->close();
  if (es != Acad::eOk) {
    delete entity;
    return es;
  }
  entity->close();
  return Acad::eOk;
}

std::vector<AcDbObjectId> Profiles(AcDbObjectId alignment) {
  std::vector<AcDbObjectId> ids;
  const auto* owner = Peek<AeccDbAlignment>(alignment);
  if (owner == nullptr) return ids;
  for (const AcDbObjectId id : owner->profileIds())
    if (Live(id) && Peek<AeccDbProfile>(id) != nullptr) ids.push_back(id);
  return ids;
}

AcDbObjectId FindProfile(AcDbObjectId alignment, std::wstring_view name) {
  for (const AcDbObjectId id : Profiles(alignment))
    if (SameName(Peek<AeccDbProfile>(id)->name(), name)) return id;
  return AcDbObjectId::kNull;
}

bool ProfileNameTaken(AcDbObjectId alignment, std::wstring_view name, AcDbObjectId except) {
  const AcDbObjectId found = FindProfile(alignment, name);
  return !found.isNull() && found != except;
}

Acad::ErrorStatus AddProfile(AcDbObjectId alignmentId, const NewProfile& request, AcDbObjectId& id,
                             land::ProfileGeometry* geometry) {
  if (request.name.empty()) return Acad::eInvalidInput;
  if (ProfileNameTaken(alignmentId, request.name)) return Acad::eDuplicateRecordName;
  AeccDbAlignment* alignment = nullptr;
  Acad::ErrorStatus es = acdbOpenObject(alignment, alignmentId, AcDb::kForWrite);
  if (es != Acad::eOk) return es;
  ACHAR* layer = alignment->layer();
  const std::wstring layerName = layer == nullptr ? L"" : layer;
  acutDelString(layer);

  auto* profile = new AeccDbProfile(alignmentId, request.type);
  profile->setName(request.name);
  profile->setDescription(request.description);
  profile->setStyleId(request.style);
  if (geometry != nullptr) *profile->geometryForWrite() = std::move(*geometry);
  es = AppendToModelSpace(alignment->database(), profile, layerName, id);
  if (es == Acad::eOk) es = alignment->addProfileId(id);
  alignment->close();
  return es;
}

}  // namespace headless::land_drawing
