// Selection sets (acedSSGet and the rest): window and crossing selection on the entities' real
// geometry, as AutoCAD picks them in a plan view of the world coordinate system.
#include <algorithm>
#include <cwctype>
#include <string>

#include "headless/acad/AcadApplication.h"
#include "headless/acad/DocManager.h"
#include "headless/acad/ImpDatabase.h"
#include "headless/acad/Pieces.h"
#include "platform/acad/acedads.h"
#include "platform/acad/dbsymtb.h"

namespace {

headless::DocumentManager* Manager() {
  headless::AcadApplication* app = headless::CurrentApplication();
  return app == nullptr ? nullptr : &app->Documents();
}

// Entities on layers that are off or frozen are not there to pick.
bool OnShownLayer(const AcDbEntity& entity) {
  const auto* layer = AcDbLayerTableRecord::cast(AcDbImpDatabase::peek(entity.layerId()));
  return layer == nullptr || (!layer->isOff() && !layer->isFrozen());
}

enum class Mode { Crossing, Window, All };

}  // namespace

int acedSSGet(const ACHAR* str, const void* pt1, const void* pt2, const resbuf* filter, ads_name ss) {
  if (ss == nullptr) return RTERROR;
  ss[0] = ss[1] = 0;
  headless::DocumentManager* manager = Manager();
  if (manager == nullptr || str == nullptr || filter != nullptr) return RTERROR;
  std::wstring mode;
  for (const ACHAR* p = str; *p != L'\0'; ++p) mode.push_back(static_cast<ACHAR>(std::towupper(static_cast<wint_t>(*p))));
  Mode how;
  if (mode == L"C") {
    how = Mode::Crossing;
  } else if (mode == L"W") {
    how = Mode::Window;
  } else if (mode == L"X") {
    how = Mode::All;
  } else {
    return RTERROR;
  }
  headless::geom::Window window{};
  if (how != Mode::All) {
    if (pt1 == nullptr || pt2 == nullptr) return RTERROR;
    const auto* a = static_cast<const double*>(pt1);
    const auto* b = static_cast<const double*>(pt2);
    window = {std::min(a[X], b[X]), std::min(a[Y], b[Y]), std::max(a[X], b[X]), std::max(a[Y], b[Y])};
  }
  const AcApDocument* document = manager->curDocument();
  if (document == nullptr) return RTERROR;
  const auto* space = AcDbBlockTableRecord::cast(AcDbImpDatabase::peek(document->database()->currentSpaceId()));
  if (space == nullptr) return RTERROR;

  std::vector<AcDbObjectId> picked;
  for (const AcDbObjectId& id : space->entityIds()) {
    const AcDbStub* stub = AcDbImpDatabase::lookup(id);
    if (stub == nullptr || stub->erased) continue;
    const auto* entity = AcDbEntity::cast(stub->object.get());
    if (entity == nullptr) continue;
    if (how == Mode::All) {
      picked.push_back(id);
      continue;
    }
    if (entity->visibility() != AcDb::kVisible || !OnShownLayer(*entity)) continue;
    headless::geom::Pieces pieces;
    if (headless::geom::Collect(*entity, AcGeMatrix3d::kIdentity, pieces) != Acad::eOk) continue;
    const bool hit = how == Mode::Crossing ? headless::geom::Crosses(pieces, window)
                                           : headless::geom::Within(pieces, window);
    if (hit) picked.push_back(id);
  }
  if (picked.empty()) return RTERROR;
  Adesk::LongPtr name = 0;
  if (!manager->NewSelectionSet(std::move(picked), name)) return RTERROR;
  ss[0] = name;
  return RTNORM;
}

int acedSSLength(const ads_name sname, Adesk::Int32* len) {
  headless::DocumentManager* manager = Manager();
  if (manager == nullptr || sname == nullptr || len == nullptr) return RTERROR;
  const auto* set = manager->SelectionSet(sname[0]);
  if (set == nullptr) return RTERROR;
  *len = static_cast<Adesk::Int32>(set->size());
  return RTNORM;
}

int acedSSName(const ads_name ss, Adesk::Int32 i, ads_name entres) {
  headless::DocumentManager* manager = Manager();
  if (manager == nullptr || ss == nullptr || entres == nullptr) return RTERROR;
  const auto* set = manager->SelectionSet(ss[0]);
  if (set == nullptr || i < 0 || static_cast<size_t>(i) >= set->size()) return RTERROR;
  entres[0] = static_cast<Adesk::LongPtr>((*set)[static_cast<size_t>(i)].asOldId());
  entres[1] = 0;
  return RTNORM;
}

int acedSSFree(const ads_name sname) {
  headless::DocumentManager* manager = Manager();
  if (manager == nullptr || sname == nullptr) return RTERROR;
  return manager->FreeSelectionSet(sname[0]) ? RTNORM : RTERROR;
}
