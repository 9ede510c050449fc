#include "module/acad/GrAcadSolidDc.h"

#include <cwchar>
#include <cwctype>
#include <string>

#include "module/acad/GrAcadCurveDc.h"
#include "module/geometry/KdLine.h"
#include "module/graphics/GrShallowElement.h"
#include "module/graphics/GrTable.h"
#include "platform/acad/acutads.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbsol3d.h"
#include "platform/acad/dbxrecrd.h"

namespace {

bool IsRadiusRow(const std::vector<std::wstring>& row) {
  if (row.size() < 2 || row[0].size() != std::wcslen(gracad::kRadiusRow)) return false;
  for (std::size_t i = 0; i < row[0].size(); ++i) {
    if (std::towlower(static_cast<wint_t>(row[0][i])) != std::towlower(static_cast<wint_t>(gracad::kRadiusRow[i])))
      return false;
  }
  return true;
}

double RadiusOf(const CGrCylinder& cylinder, double length) {
  for (const auto& row : cylinder.Rows()) {
    if (!IsRadiusRow(row)) continue;
    wchar_t* end = nullptr;
    const double radius = std::wcstod(row[1].c_str(), &end);
    if (end != row[1].c_str() && radius > 0.0) return radius;
  }
  return length / 10.0;
}

// Body coordinates (origin at the axis middle, +Z along the axis) to world.
AcGeMatrix3d Placement(const AcGePoint3d& start, const AcGePoint3d& end) {
  const AcGeVector3d z = (end - start).normal();
  const AcGeVector3d x = z.perpVector();
  const AcGeVector3d y = z.crossProduct(x);
  AcGeMatrix3d m;
  m.setCoordSystem(start + (end - start) * 0.5, x, y, z);
  return m;
}

Acad::ErrorStatus SetSolid(const CGrCylinder& cylinder, AcDb3dSolid& solid) {
  const CKdLine* axis = cylinder.Axis();
  if (axis == nullptr) return Acad::eInvalidInput;
  const AcGePoint3d start = gracad::ToAcad(axis->StartPoint());
  const AcGePoint3d end = gracad::ToAcad(axis->EndPoint());
  const double length = start.distanceTo(end);
  if (!(length > grgeo::kTolerance)) return Acad::eDegenerateGeometry;
  const double radius = RadiusOf(cylinder, length);
  // The primitive replaces the old body, centred on the origin; the placement moves it.
  Acad::ErrorStatus es = solid.createFrustum(length, radius, radius, radius);
  return es == Acad::eOk ? solid.transformBy(Placement(start, end)) : es;
}

// The element's data as a chain (see gracad::kCylinderKey).
resbuf* CylinderChain(const CGrCylinder& cylinder) {
  const CKdLine* axis = cylinder.Axis();
  const AcGePoint3d start = gracad::ToAcad(axis->StartPoint());
  const AcGePoint3d end = gracad::ToAcad(axis->EndPoint());
  const ads_point s = {start.x, start.y, start.z};
  const ads_point e = {end.x, end.y, end.z};
  resbuf* head = acutBuildList(10, s, 11, e, 40, RadiusOf(cylinder, start.distanceTo(end)), AcDb::kDxfText,
                               cylinder.Title().c_str(), 0);
  resbuf* tail = head;
  while (tail != nullptr && tail->rbnext != nullptr) tail = tail->rbnext;
  for (const auto& row : cylinder.Rows()) {
    if (tail == nullptr) break;
    tail->rbnext = acutBuildList(AcDb::kDxfInt32, static_cast<int>(row.size()), 0);
    tail = tail->rbnext;
    for (const auto& cell : row) {
      if (tail == nullptr) break;
      tail->rbnext = acutBuildList(AcDb::kDxfXTextString, cell.c_str(), 0);
      tail = tail->rbnext;
    }
  }
  return head;
}

Acad::ErrorStatus WriteCylinder(AcDbObject& solid, const CGrCylinder& cylinder) {
  const Acad::ErrorStatus created = solid.createExtensionDictionary();
  if (created != Acad::eOk && created != Acad::eAlreadyInDb) return created;
  CGrAcadOpened<AcDbDictionary> dictionary(solid.extensionDictionary(), AcDb::kForWrite, true);
  if (!dictionary) return dictionary.Status();
  if (dictionary->isErased()) dictionary->erase(false);
  resbuf* chain = CylinderChain(cylinder);
  if (chain == nullptr) return Acad::eOutOfMemory;
  auto* record = new AcDbXrecord;
  Acad::ErrorStatus es = record->setFromRbChain(*chain);
  acutRelRb(chain);
  AcDbObjectId id;
  if (es == Acad::eOk) es = dictionary->setAt(gracad::kCylinderKey, record, id);
  if (es != Acad::eOk) {
    delete record;
    return es;
  }
  return record->close();
}

}  // namespace

AcDbEntity* CGrAcadCylinderDc::MakeEntity(CGrElement* element) {
  return MakeKindEntity<CGrCylinder, AcDb3dSolid>(element, SetSolid);
}

int CGrAcadCylinderDc::Draw(CGrElement* element) {
  const bool changed = element != nullptr && element->IsModified();
  const int status = CGrAcadDc::Draw(element);
  if (status != gracad::kOk || !changed) return status;
  CGrAcadOpened<AcDb3dSolid> solid(CGrAcadDb::IdFromSessionId(element->SessionId()), AcDb::kForWrite);
  if (!solid) return solid.Status();
  return WriteCylinder(*solid.get(), static_cast<const CGrCylinder&>(*element));
}

CGrElement* CGrAcadCylinderDc::MakeElement(AcDbObject* object) {
  const AcDb3dSolid* solid = AcDb3dSolid::cast(object);
  if (solid == nullptr || solid->extensionDictionary().isNull()) return nullptr;
  resbuf* chain = nullptr;
  {
    CGrAcadOpened<AcDbDictionary> dictionary(solid->extensionDictionary(), AcDb::kForRead);
    AcDbObject* record = nullptr;
    if (!dictionary || dictionary->getAt(gracad::kCylinderKey, record, AcDb::kForRead) != Acad::eOk) return nullptr;
    if (const AcDbXrecord* xrecord = AcDbXrecord::cast(record)) xrecord->rbChain(&chain);
    record->close();
  }
  auto* cylinder = new CGrCylinder;
  CKdPoint start;
  CKdPoint end;
  CGrCellRows rows;
  for (const resbuf* rb = chain; rb != nullptr; rb = rb->rbnext) {
    const ads_real* p = rb->resval.rpoint;
    switch (rb->restype) {
      case 10: start = CKdPoint(p[0], p[1], p[2]); break;
      case 11: end = CKdPoint(p[0], p[1], p[2]); break;
      case AcDb::kDxfText: cylinder->SetTitle(rb->resval.rstring); break;
      case AcDb::kDxfInt32: rows.emplace_back(); break;
      case AcDb::kDxfXTextString:
        if (!rows.empty()) rows.back().emplace_back(rb->resval.rstring);
        break;
      default: break;
    }
  }
  acutRelRb(chain);
  cylinder->SetAxis(start, end);
  cylinder->SetRows(rows);
  ReadCommonProperties(solid, cylinder);
  return cylinder;
}

AcDbEntity* CGrAcadShallowElementDc::MakeEntity(CGrElement* element) {
  if (element == nullptr || element->SessionId() == 0) return nullptr;
  AcDbEntity* entity = nullptr;
  if (acdbOpenAcDbEntity(entity, CGrAcadDb::IdFromSessionId(element->SessionId()), AcDb::kForWrite) != Acad::eOk)
    return nullptr;
  if (element->IsModified() && ApplyCommonProperties(element, entity) != gracad::kOk) {
    entity->close();
    return nullptr;
  }
  return entity;
}

CGrElement* CGrAcadShallowElementDc::MakeElement(AcDbObject* object) {
  const AcDbEntity* entity = AcDbEntity::cast(object);
  if (entity == nullptr) return nullptr;
  auto* element = new CGrShallowElement;
  ReadCommonProperties(entity, element);
  return element;
}
