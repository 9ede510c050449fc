// AcDbDatabase and AcDbExtents.
#include <algorithm>
#include <cfloat>

#include "headless/acad/ImpDatabase.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/dbdict.h"
#include "platform/acad/dbsymtb.h"

// --- Extents ------------------------------------------------------------------------------------

AcDbExtents::AcDbExtents() : m_min(DBL_MAX, DBL_MAX, DBL_MAX), m_max(-DBL_MAX, -DBL_MAX, -DBL_MAX) {}

AcDbExtents::AcDbExtents(const AcGePoint3d& min, const AcGePoint3d& max) : AcDbExtents() {
  addPoint(min);
  addPoint(max);
}

Acad::ErrorStatus AcDbExtents::set(const AcGePoint3d& min, const AcGePoint3d& max) {
  if (min.x > max.x || min.y > max.y || min.z > max.z) return Acad::eInvalidExtents;
  m_min = min;
  m_max = max;
  return Acad::eOk;
}

void AcDbExtents::addPoint(const AcGePoint3d& pt) {
  m_min.set(std::min(m_min.x, pt.x), std::min(m_min.y, pt.y), std::min(m_min.z, pt.z));
  m_max.set(std::max(m_max.x, pt.x), std::max(m_max.y, pt.y), std::max(m_max.z, pt.z));
}

void AcDbExtents::addExt(const AcDbExtents& src) {
  if (src.m_min.x > src.m_max.x) return;  // empty
  addPoint(src.m_min);
  addPoint(src.m_max);
}

void AcDbExtents::expandBy(const AcGeVector3d& vec) {
  addPoint(m_min + vec);
  addPoint(m_max + vec);
}

void AcDbExtents::transformBy(const AcGeMatrix3d& mat) {
  if (m_min.x > m_max.x) return;
  const AcGePoint3d lo = m_min;
  const AcGePoint3d hi = m_max;
  *this = AcDbExtents();
  for (int i = 0; i < 8; ++i) {
    AcGePoint3d corner((i & 1) ? hi.x : lo.x, (i & 2) ? hi.y : lo.y, (i & 4) ? hi.z : lo.z);
    addPoint(corner.transformBy(mat));
  }
}

// --- AcDbDatabase -------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbDatabase, AcRxObject, L"")

AcDbDatabase::AcDbDatabase(bool buildDefaultDrawing, bool) : m_pImpDb(new AcDbImpDatabase(*this)) {
  m_pImpDb->buildSkeleton(buildDefaultDrawing);
}

AcDbDatabase::~AcDbDatabase() { delete m_pImpDb; }

namespace {

template <class T>
Acad::ErrorStatus OpenRoot(AcDbObjectId id, T*& out, AcDb::OpenMode mode) {
  out = nullptr;
  if (id.isNull()) return Acad::eNullObjectId;
  return acdbOpenObject(out, id, mode);
}

}  // namespace

Acad::ErrorStatus AcDbDatabase::getBlockTable(AcDbBlockTable*& pTable, AcDb::OpenMode mode) {
  return OpenRoot(m_pImpDb->roots().blockTable, pTable, mode);
}
Acad::ErrorStatus AcDbDatabase::getLayerTable(AcDbLayerTable*& pTable, AcDb::OpenMode mode) {
  return OpenRoot(m_pImpDb->roots().layerTable, pTable, mode);
}
Acad::ErrorStatus AcDbDatabase::getLinetypeTable(AcDbLinetypeTable*& pTable, AcDb::OpenMode mode) {
  return OpenRoot(m_pImpDb->roots().linetypeTable, pTable, mode);
}
Acad::ErrorStatus AcDbDatabase::getTextStyleTable(AcDbTextStyleTable*& pTable, AcDb::OpenMode mode) {
  return OpenRoot(m_pImpDb->roots().textStyleTable, pTable, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbBlockTable*& pTable, AcDb::OpenMode mode) {
  return getBlockTable(pTable, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbLayerTable*& pTable, AcDb::OpenMode mode) {
  return getLayerTable(pTable, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbLinetypeTable*& pTable, AcDb::OpenMode mode) {
  return getLinetypeTable(pTable, mode);
}
Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbTextStyleTable*& pTable, AcDb::OpenMode mode) {
  return getTextStyleTable(pTable, mode);
}

AcDbObjectId AcDbDatabase::blockTableId() const { return m_pImpDb->roots().blockTable; }
AcDbObjectId AcDbDatabase::layerTableId() const { return m_pImpDb->roots().layerTable; }
AcDbObjectId AcDbDatabase::linetypeTableId() const { return m_pImpDb->roots().linetypeTable; }
AcDbObjectId AcDbDatabase::textStyleTableId() const { return m_pImpDb->roots().textStyleTable; }
AcDbObjectId AcDbDatabase::regAppTableId() const { return m_pImpDb->roots().regAppTable; }
AcDbObjectId AcDbDatabase::dimStyleTableId() const { return m_pImpDb->roots().dimStyleTable; }
AcDbObjectId AcDbDatabase::viewportTableId() const { return m_pImpDb->roots().viewportTable; }
AcDbObjectId AcDbDatabase::viewTableId() const { return m_pImpDb->roots().viewTable; }
AcDbObjectId AcDbDatabase::UCSTableId() const { return m_pImpDb->roots().ucsTable; }

Acad::ErrorStatus AcDbDatabase::getNamedObjectsDictionary(AcDbDictionary*& pDict, AcDb::OpenMode mode) {
  return OpenRoot(m_pImpDb->roots().namedObjects, pDict, mode);
}
AcDbObjectId AcDbDatabase::namedObjectsDictionaryId() const { return m_pImpDb->roots().namedObjects; }
Acad::ErrorStatus AcDbDatabase::getGroupDictionary(AcDbDictionary*& pDict, AcDb::OpenMode mode) {
  return OpenRoot(m_pImpDb->roots().groups, pDict, mode);
}
AcDbObjectId AcDbDatabase::groupDictionaryId() const { return m_pImpDb->roots().groups; }
Acad::ErrorStatus AcDbDatabase::getLayoutDictionary(AcDbDictionary*& pDict, AcDb::OpenMode mode) {
  return OpenRoot(m_pImpDb->roots().layouts, pDict, mode);
}
AcDbObjectId AcDbDatabase::layoutDictionaryId() const { return m_pImpDb->roots().layouts; }
Acad::ErrorStatus AcDbDatabase::getTableStyleDictionary(AcDbDictionary*& pDict, AcDb::OpenMode mode) {
  return OpenRoot(m_pImpDb->roots().tableStyles, pDict, mode);
}
AcDbObjectId AcDbDatabase::tableStyleDictionaryId() const { return m_pImpDb->roots().tableStyles; }

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& retId, bool createIfNotFound,
                                                const AcDbHandle& objHandle, Adesk::UInt32 xRefId) {
  retId.setNull();
  if (xRefId != 0) return Acad::eInvalidInput;
  if (objHandle.isNull()) return Acad::eNullHandle;
  if (const AcDbStub* stub = m_pImpDb->findHandle(objHandle)) {
    retId = stub->objectId();
    return Acad::eOk;
  }
  return createIfNotFound ? Acad::eNotImplementedYet : Acad::eUnknownHandle;
}

Acad::ErrorStatus AcDbDatabase::addAcDbObject(AcDbObjectId& objId, AcDbObject* pObj) {
  objId.setNull();
  if (pObj == nullptr) return Acad::eNullObjectPointer;
  if (!m_pImpDb->writeAllowed()) return Acad::eLockViolation;
  return m_pImpDb->add(pObj, AcDbObjectId::kNull, &objId);
}

Acad::ErrorStatus AcDbDatabase::addAcDbObject(AcDbObject* pObj) {
  AcDbObjectId unused;
  return addAcDbObject(unused, pObj);
}

namespace {

// A setting names a record of the right table of this database.
bool IsRecordOf(AcDbObjectId id, AcDbObjectId table) {
  const AcDbStub* stub = AcDbImpDatabase::lookup(id);
  return stub != nullptr && !stub->erased && stub->owner == table;
}

}  // namespace

AcDbObjectId AcDbDatabase::clayer() const { return m_pImpDb->settings().clayer; }
Acad::ErrorStatus AcDbDatabase::setClayer(AcDbObjectId objId) {
  if (!IsRecordOf(objId, m_pImpDb->roots().layerTable)) return Acad::eInvalidInput;
  m_pImpDb->settings().clayer = objId;
  return Acad::eOk;
}
AcDbObjectId AcDbDatabase::celtype() const { return m_pImpDb->settings().celtype; }
Acad::ErrorStatus AcDbDatabase::setCeltype(AcDbObjectId objId) {
  if (!IsRecordOf(objId, m_pImpDb->roots().linetypeTable)) return Acad::eInvalidInput;
  m_pImpDb->settings().celtype = objId;
  return Acad::eOk;
}
AcCmColor AcDbDatabase::cecolor() const { return m_pImpDb->settings().cecolor; }
Acad::ErrorStatus AcDbDatabase::setCecolor(const AcCmColor& color) {
  m_pImpDb->settings().cecolor = color;
  return Acad::eOk;
}
double AcDbDatabase::celtscale() const { return m_pImpDb->settings().celtscale; }
Acad::ErrorStatus AcDbDatabase::setCeltscale(double scale) {
  if (!(scale > 0.0)) return Acad::eOutOfRange;
  m_pImpDb->settings().celtscale = scale;
  return Acad::eOk;
}
AcDbObjectId AcDbDatabase::textstyle() const { return m_pImpDb->settings().textstyle; }
Acad::ErrorStatus AcDbDatabase::setTextstyle(AcDbObjectId objId) {
  if (!IsRecordOf(objId, m_pImpDb->roots().textStyleTable)) return Acad::eInvalidInput;
  m_pImpDb->settings().textstyle = objId;
  return Acad::eOk;
}
AcDbObjectId AcDbDatabase::tablestyle() const { return m_pImpDb->settings().tablestyle; }
AcDbObjectId AcDbDatabase::byLayerLinetype() const { return m_pImpDb->roots().byLayer; }
AcDbObjectId AcDbDatabase::byBlockLinetype() const { return m_pImpDb->roots().byBlock; }
AcDbObjectId AcDbDatabase::currentSpaceId() const { return m_pImpDb->roots().modelSpace; }

AcDbHandle AcDbDatabase::handseed() const {
  AcDbHandle h;
  h = m_pImpDb->handseed();
  return h;
}

Adesk::Int32 AcDbDatabase::approxNumObjects() const { return static_cast<Adesk::Int32>(m_pImpDb->stubs().size()); }
