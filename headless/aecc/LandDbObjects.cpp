#include "headless/aecc/LandDbObjects.h"

#include <algorithm>

#include "headless/acad/RxDefine.h"
#include "headless/aecc/LandDrawing.h"

namespace headless {

namespace {

// Erases (or brings back) the objects that go with an owner; when erasing, only those not erased
// already, and it remembers them, so that unerasing the owner brings back only what went with it.
Acad::ErrorStatus EraseAlong(const std::vector<AcDbObjectId>& candidates, bool erasing,
                             std::vector<AcDbObjectId>& along) {
  if (erasing) {
    along.clear();
    for (const AcDbObjectId id : candidates) {
      if (id.isErased()) continue;
      AcDbObject* object = nullptr;
      if (acdbOpenAcDbObject(object, id, AcDb::kForWrite) != Acad::eOk) continue;
      if (object->erase(true) == Acad::eOk) along.push_back(id);
      object->close();
    }
    return Acad::eOk;
  }
  for (const AcDbObjectId id : along) {
    AcDbObject* object = nullptr;
    if (acdbOpenAcDbObject(object, id, AcDb::kForWrite, true) != Acad::eOk) continue;
    object->erase(false);
    object->close();
  }
  along.clear();
  return Acad::eOk;
}

}  // namespace

// --- Styles ------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AeccDbStyle, AcDbObject, L"AECC_STYLE")

AeccDbStyle::AeccDbStyle(LandStyleKind kind, std::wstring name) : m_kind(kind), m_name(std::move(name)) {}
AeccDbStyle::~AeccDbStyle() = default;

Acad::ErrorStatus AeccDbStyle::setName(const std::wstring& name) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_name = name;
  return Acad::eOk;
}

Acad::ErrorStatus AeccDbStyle::setDescription(const std::wstring& description) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_description = description;
  return Acad::eOk;
}

// --- Sites -------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AeccDbSite, AcDbObject, L"AECC_SITE")

AeccDbSite::AeccDbSite(std::wstring name) : m_name(std::move(name)) {}
AeccDbSite::~AeccDbSite() = default;

Acad::ErrorStatus AeccDbSite::setName(const std::wstring& name) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_name = name;
  return Acad::eOk;
}

Acad::ErrorStatus AeccDbSite::subErase(Adesk::Boolean erasing) {
  std::vector<AcDbObjectId> members;
  if (erasing) members = land_drawing::Alignments(database(), objectId());
  return EraseAlong(members, erasing, m_erasedAlong);
}

// --- The registry of alignments ----------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AeccDbLandRegistry, AcDbObject, L"AECC_LAND_REGISTRY")

AeccDbLandRegistry::AeccDbLandRegistry() = default;
AeccDbLandRegistry::~AeccDbLandRegistry() = default;

Acad::ErrorStatus AeccDbLandRegistry::addAlignment(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_alignments.push_back(id);
  return Acad::eOk;
}

// --- Alignments --------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AeccDbAlignment, AcDbEntity, L"AECC_ALIGNMENT")

AeccDbAlignment::AeccDbAlignment() = default;
AeccDbAlignment::~AeccDbAlignment() = default;

Acad::ErrorStatus AeccDbAlignment::setName(const std::wstring& name) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_name = name;
  return Acad::eOk;
}

Acad::ErrorStatus AeccDbAlignment::setDescription(const std::wstring& description) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_description = description;
  return Acad::eOk;
}

Acad::ErrorStatus AeccDbAlignment::setStyleId(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_style = id;
  return Acad::eOk;
}

Acad::ErrorStatus AeccDbAlignment::setLabelSetId(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_labelSet = id;
  return Acad::eOk;
}

Acad::ErrorStatus AeccDbAlignment::setSiteId(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_site = id;
  return Acad::eOk;
}

land::AlignmentGeometry* AeccDbAlignment::geometryForWrite() {
  return checkWriteEnabled() == Acad::eOk ? &m_geometry : nullptr;
}

Acad::ErrorStatus AeccDbAlignment::addProfileId(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_profiles.push_back(id);
  return Acad::eOk;
}

Acad::ErrorStatus AeccDbAlignment::subErase(Adesk::Boolean erasing) {
  return EraseAlong(m_profiles, erasing, m_erasedAlong);
}

// --- Profiles ----------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AeccDbProfile, AcDbEntity, L"AECC_PROFILE")

AeccDbProfile::AeccDbProfile(AcDbObjectId alignment, land::ProfileType type)
    : m_alignment(alignment), m_geometry(type) {}
AeccDbProfile::~AeccDbProfile() = default;

Acad::ErrorStatus AeccDbProfile::setName(const std::wstring& name) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_name = name;
  return Acad::eOk;
}

Acad::ErrorStatus AeccDbProfile::setDescription(const std::wstring& description) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_description = description;
  return Acad::eOk;
}

Acad::ErrorStatus AeccDbProfile::setStyleId(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_style = id;
  return Acad::eOk;
}

land::ProfileGeometry* AeccDbProfile::geometryForWrite() {
  return checkWriteEnabled() == Acad::eOk ? &m_geometry : nullptr;
}

}  // namespace headless
