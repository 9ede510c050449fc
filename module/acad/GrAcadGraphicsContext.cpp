#include "module/acad/GrAcadGraphicsContext.h"

#include "module/acad/GrAcadBlockDc.h"
#include "module/acad/GrAcadCurveDc.h"
#include "module/acad/GrAcadFaceDc.h"
#include "module/acad/GrAcadHatchDc.h"
#include "module/acad/GrAcadLayer.h"
#include "module/acad/GrAcadPlatformColor.h"
#include "module/acad/GrAcadPolylineDc.h"
#include "module/acad/GrAcadSolidDc.h"
#include "module/acad/GrAcadTextDc.h"
#include "module/acad/GrAcadTextStyle.h"
#include "module/graphics/GrKinds.h"
#include "module/graphics/GrPlatformColor.h"
#include "platform/acad/acedads.h"
#include "platform/acad/dbelipse.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbgroup.h"
#include "platform/acad/dbhatch.h"
#include "platform/acad/dbpl.h"

namespace {

// Slots of m_dcs, in the context's field order.
enum Slot { kLine, kArc, kCircle, kPolyline, kBlock, kText, kGroup, kHatch, kRectangle, kTriangle, kTable, kCylinder,
            kShallow, kMesh, kEllipse };

}  // namespace

CGrAcadGraphicsContext::CGrAcadGraphicsContext(void* opaque) : m_opaque(opaque) {
  m_dcs[kLine] = std::make_unique<CGrAcadLineDc>(this);
  m_dcs[kArc] = std::make_unique<CGrAcadArcDc>(this);
  m_dcs[kCircle] = std::make_unique<CGrAcadCircleDc>(this);
  m_dcs[kPolyline] = std::make_unique<CGrAcadPolylineDc>(this);
  m_dcs[kBlock] = std::make_unique<CGrAcadElementBlockDc>(this);
  m_dcs[kText] = std::make_unique<CGrAcadTextDc>(this);
  m_dcs[kGroup] = std::make_unique<CGrAcadGroupDc>(this);
  m_dcs[kHatch] = std::make_unique<CGrAcadHatchDc>(this);
  m_dcs[kRectangle] = std::make_unique<CGrAcadRectangleFaceDc>(this);
  m_dcs[kTriangle] = std::make_unique<CGrAcadTriangleFaceDc>(this);
  m_dcs[kTable] = std::make_unique<CGrAcadTableDc>(this);
  m_dcs[kCylinder] = std::make_unique<CGrAcadCylinderDc>(this);
  m_dcs[kShallow] = std::make_unique<CGrAcadShallowElementDc>(this);
  m_dcs[kMesh] = std::make_unique<CGrAcadMeshDc>(this);
  m_dcs[kEllipse] = std::make_unique<CGrAcadEllipseDc>(this);
}

CGrAcadGraphicsContext::~CGrAcadGraphicsContext() = default;

CGrAcadDc* CGrAcadGraphicsContext::DcForKind(int kind) const {
  switch (kind) {
    case grkind::kLine: return m_dcs[kLine].get();
    case grkind::kArc: return m_dcs[kArc].get();
    case grkind::kCircle: return m_dcs[kCircle].get();
    case grkind::kPolyline: return m_dcs[kPolyline].get();
    case grkind::kElementBlock: return m_dcs[kBlock].get();
    case grkind::kText: return m_dcs[kText].get();
    case grkind::kGroup: return m_dcs[kGroup].get();
    case grkind::kHatch: return m_dcs[kHatch].get();
    case grkind::kRectangleFace: return m_dcs[kRectangle].get();
    case grkind::kTriangleFace: return m_dcs[kTriangle].get();
    case grkind::kTable: return m_dcs[kTable].get();
    case grkind::kCylinder: return m_dcs[kCylinder].get();
    case grkind::kShallow: return m_dcs[kShallow].get();
    case grkind::kMesh: return m_dcs[kMesh].get();
    case grkind::kEllipse: return m_dcs[kEllipse].get();
    default: return nullptr;
  }
}

int CGrAcadGraphicsContext::KindOf(const AcDbObject* object) {
  if (object == nullptr) return 0;
  if (object->isKindOf(AcDbLine::desc())) return grkind::kLine;
  // Arcs before circles: an arc is never read as a circle.
  if (object->isKindOf(AcDbArc::desc())) return grkind::kArc;
  if (object->isKindOf(AcDbCircle::desc())) return grkind::kCircle;
  if (object->isKindOf(AcDbPolyline::desc()) || object->isKindOf(AcDb2dPolyline::desc()) ||
      object->isKindOf(AcDb3dPolyline::desc()))
    return grkind::kPolyline;
  if (object->isKindOf(AcDbBlockReference::desc())) return grkind::kElementBlock;
  if (object->isKindOf(AcDbGroup::desc())) return grkind::kGroup;
  if (object->isKindOf(AcDbText::desc())) return grkind::kText;
  if (object->isKindOf(AcDbHatch::desc())) return grkind::kHatch;
  if (const AcDbFace* face = AcDbFace::cast(object)) {
    AcGePoint3d third;
    AcGePoint3d fourth;
    face->getVertexAt(2, third);
    face->getVertexAt(3, fourth);
    return third.isEqualTo(fourth) ? grkind::kTriangleFace : grkind::kRectangleFace;
  }
  if (object->isKindOf(AcDbPolyFaceMesh::desc())) return grkind::kMesh;
  if (object->isKindOf(AcDbEllipse::desc())) return grkind::kEllipse;
  return 0;
}

CGrElement* CGrAcadGraphicsContext::ElementFromObject(AcDbObject* object) const {
  if (object == nullptr || object->isErased()) return nullptr;
  CGrAcadDc* dc = DcForKind(KindOf(object));
  if (dc == nullptr) return nullptr;
  CGrElement* element = dc->MakeElement(object);
  if (element != nullptr) {
    // Freshly read: the element and its entity agree.
    element->SetModified(false);
    element->SetIdTagChanged(false);
  }
  return element;
}

void CGrAcadGraphicsContext::ReconcileIds(CGrElement& element) {
  if (element.Handle() != 0 && element.SessionId() == 0) {
    element.SetSessionId(CGrAcadDb::SessionIdOf(CGrAcadDb::IdFromHandle(element.Handle())));
  } else if (element.SessionId() != 0 && element.Handle() == 0) {
    const AcDbObjectId id = CGrAcadDb::IdFromSessionId(element.SessionId());
    element.SetHandle(id.isNull() ? 0 : CGrAcadDb::HandleOf(id));
  }
}

int CGrAcadGraphicsContext::Draw(CGrElement* element) {
  if (element == nullptr) return gracad::kRefused;
  ReconcileIds(*element);
  CGrAcadDc* dc = DcForKind(element->Type());
  return dc == nullptr ? gracad::kRefused : dc->Draw(element);
}

CGrElement* CGrAcadGraphicsContext::MakeElementFromHandle(std::int64_t handle) {
  return MakeElementFromSessionId(CGrAcadDb::SessionIdOf(CGrAcadDb::IdFromHandle(handle)));
}

CGrElement* CGrAcadGraphicsContext::MakeElementFromSessionId(std::int64_t sessionId) {
  const AcDbObjectId id = CGrAcadDb::IdFromSessionId(sessionId);
  if (id.isNull()) return nullptr;
  CGrAcadOpened<AcDbObject> object(id, AcDb::kForRead);
  return object ? ElementFromObject(object.get()) : nullptr;
}

int CGrAcadGraphicsContext::EraseByHandle(const std::int64_t* handle) {
  if (handle == nullptr || *handle == 0) return gracad::kRefused;
  std::unique_ptr<CGrElement> element(MakeElementFromHandle(*handle));
  return element ? Erase(element.get()) : gracad::kRefused;
}

int CGrAcadGraphicsContext::Erase(CGrElement* element) {
  if (element == nullptr) return gracad::kRefused;
  ReconcileIds(*element);
  CGrAcadDc* dc = DcForKind(element->Type());
  return dc == nullptr ? gracad::kRefused : dc->Erase(element);
}

int CGrAcadGraphicsContext::DrawBlock(CGrElement* element) {
  if (element == nullptr) return gracad::kRefused;
  ReconcileIds(*element);
  return m_dcs[kBlock]->DrawBlock(element);
}

int CGrAcadGraphicsContext::Highlight(CGrElement* element, bool on) {
  CGrAcadDc* dc = element == nullptr ? nullptr : DcForKind(element->Type());
  return dc == nullptr ? gracad::kRefused : dc->Highlight(element, on);
}

int CGrAcadGraphicsContext::Explode(CGrElement* element, CGrElementVector& pieces) {
  CGrAcadDc* dc = element == nullptr ? nullptr : DcForKind(element->Type());
  return dc == nullptr ? gracad::kRefused : dc->Explode(element, pieces);
}

int CGrAcadGraphicsContext::UseColorTranslator(IGrPlatformColor* translator, int) {
  if (translator != nullptr) IGrPlatformColor::Install(translator);
  return gracad::kOk;
}

int CGrAcadGraphicsContext::UseColorTranslatorDefault(IGrPlatformColor* translator) {
  return UseColorTranslator(translator, 0);
}

std::uint32_t CGrAcadGraphicsContext::IndexToRgb(std::uint32_t index) {
  return CGrAcadPlatformColor().IndexToRgb(index);
}

std::uint32_t CGrAcadGraphicsContext::RgbToIndex(std::uint32_t rgb) { return CGrAcadPlatformColor().RgbToIndex(rgb); }

CGrAcadLayerTable* CGrAcadGraphicsContext::CreateLayerTable() { return new CGrAcadLayerTable(); }

CGrAcadTextStyle* CGrAcadGraphicsContext::CreateTextStyle(const std::wstring& name, const std::wstring& fontFile,
                                                          double height, double widthFactor) {
  auto style = std::make_unique<CGrAcadTextStyle>(name, fontFile, height, widthFactor);
  if (name.empty() || style->Apply() != gracad::kOk) return nullptr;
  return style.release();
}

int CGrAcadGraphicsContext::SelectCrossing(const CKdPoint& corner1, const CKdPoint& corner2,
                                           std::vector<std::int64_t>& handles) {
  const ads_point p1 = {corner1.x, corner1.y, corner1.z};
  const ads_point p2 = {corner2.x, corner2.y, corner2.z};
  ads_name set = {0, 0};
  if (acedSSGet(L"C", p1, p2, nullptr, set) != RTNORM) return gracad::kRefused;
  Adesk::Int32 length = 0;
  acedSSLength(set, &length);
  for (Adesk::Int32 i = 0; i < length; ++i) {
    ads_name name = {0, 0};
    AcDbObjectId id;
    if (acedSSName(set, i, name) == RTNORM && acdbGetObjectId(id, name) == Acad::eOk) {
      handles.push_back(CGrAcadDb::HandleOf(id));
    }
  }
  acedSSFree(set);
  return gracad::kOk;
}

int CGrAcadGraphicsContext::GetExtents(CGrElement* element, CGrRect& extents) {
  CGrAcadDc* dc = element == nullptr ? nullptr : DcForKind(element->Type());
  return dc == nullptr ? gracad::kRefused : dc->GetExtents(element, extents);
}
