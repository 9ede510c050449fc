// Text, 3D faces, block references and the markers of a block.
#include <cmath>
#include <cwchar>
#include <memory>

#include "headless/acad/ImpDatabase.h"
#include "headless/acad/Pieces.h"
#include "headless/acad/RxDefine.h"
#include "platform/acad/dbents.h"
#include "platform/acad/dbsymtb.h"

using headless::geom::kTwoPi;

namespace {

AcGeVector3d Column(const AcGeMatrix3d& m, int c) { return {m.entry[0][c], m.entry[1][c], m.entry[2][c]}; }

AcGeVector3d TransformedNormal(const AcGeVector3d& normal, const AcGeMatrix3d& xform) {
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(normal);
  return (xform * Column(ocs, 0)).crossProduct(xform * Column(ocs, 1)).normal();
}

// The angle of a direction in the plane of normal, measured from that plane's OCS x axis.
double AngleInPlane(const AcGeVector3d& direction, const AcGeVector3d& normal) {
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(normal);
  double a = std::atan2(direction.dotProduct(Column(ocs, 1)), direction.dotProduct(Column(ocs, 0)));
  if (a < 0.0) a += kTwoPi;
  return a >= kTwoPi ? 0.0 : a;
}

// The x direction of something rotated by angle in the plane of normal.
AcGeVector3d DirectionInPlane(double angle, const AcGeVector3d& normal) {
  const AcGeMatrix3d ocs = AcGeMatrix3d::planeToWorld(normal);
  return Column(ocs, 0) * std::cos(angle) + Column(ocs, 1) * std::sin(angle);
}

ACHAR* CopyText(const std::wstring& text) {
  auto* copy = new ACHAR[text.size() + 1];
  std::wmemcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

}  // namespace

// --- Text ---------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbText, AcDbEntity, L"TEXT")

AcDbText::AcDbText() = default;
AcDbText::AcDbText(const AcGePoint3d& position, const ACHAR* text, AcDbObjectId style, double height, double rotation)
    : m_position(position), m_alignmentPoint(position), m_text(text == nullptr ? L"" : text), m_style(style),
      m_height(height > 0.0 ? height : 0.0), m_rotation(rotation) {}
AcDbText::~AcDbText() = default;

Acad::ErrorStatus AcDbText::setPosition(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_position = pt;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setAlignmentPoint(const AcGePoint3d& pt) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_alignmentPoint = pt;
  return Acad::eOk;
}
Adesk::Boolean AcDbText::isDefaultAlignment() const {
  return m_horzMode == AcDb::kTextLeft && m_vertMode == AcDb::kTextBase;
}
ACHAR* AcDbText::textString() const { return CopyText(m_text); }
Acad::ErrorStatus AcDbText::setTextString(const ACHAR* text) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (text == nullptr) return Acad::eInvalidInput;
  m_text = text;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setTextStyle(AcDbObjectId id) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!id.isNull() && AcDbTextStyleTableRecord::cast(AcDbImpDatabase::peek(id)) == nullptr) return Acad::eInvalidInput;
  m_style = id;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setHeight(double height) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(height > 0.0)) return Acad::eInvalidInput;
  m_height = height;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setWidthFactor(double widthFactor) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!(widthFactor > 0.0)) return Acad::eInvalidInput;
  m_widthFactor = widthFactor;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setOblique(double angle) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_oblique = angle;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setRotation(double angle) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_rotation = angle;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setHorizontalMode(AcDb::TextHorzMode mode) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (mode < AcDb::kTextLeft || mode > AcDb::kTextFit) return Acad::eInvalidInput;
  m_horzMode = mode;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setVerticalMode(AcDb::TextVertMode mode) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (mode < AcDb::kTextBase || mode > AcDb::kTextTop) return Acad::eInvalidInput;
  m_vertMode = mode;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setNormal(const AcGeVector3d& nrm) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (nrm.isZeroLength()) return Acad::eInvalidInput;
  m_normal = nrm.normal();
  return Acad::eOk;
}
Acad::ErrorStatus AcDbText::setThickness(double val) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_thickness = val;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbText::getGeomExtents(AcDbExtents& extents) const { return headless::geom::ExtentsOf(*this, extents); }

Acad::ErrorStatus AcDbText::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (!xform.isUniScaledOrtho()) return Acad::eCannotScaleNonUniformly;
  const AcGeVector3d direction = xform * DirectionInPlane(m_rotation, m_normal);
  m_position.transformBy(xform);
  m_alignmentPoint.transformBy(xform);
  m_height *= xform.scale();
  m_normal = TransformedNormal(m_normal, xform);
  m_rotation = AngleInPlane(direction, m_normal);
  return Acad::eOk;
}

AcRxObject* AcDbText::clone() const { return new AcDbText(*this); }

// --- 3D face ------------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbFace, AcDbEntity, L"3DFACE")

AcDbFace::AcDbFace() = default;
AcDbFace::AcDbFace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2, const AcGePoint3d& pt3,
                   Adesk::Boolean e0vis, Adesk::Boolean e1vis, Adesk::Boolean e2vis, Adesk::Boolean e3vis)
    : m_points{pt0, pt1, pt2, pt3}, m_edgeVisible{e0vis, e1vis, e2vis, e3vis} {}
AcDbFace::AcDbFace(const AcGePoint3d& pt0, const AcGePoint3d& pt1, const AcGePoint3d& pt2, Adesk::Boolean e0vis,
                   Adesk::Boolean e1vis, Adesk::Boolean e2vis, Adesk::Boolean e3vis)
    : AcDbFace(pt0, pt1, pt2, pt2, e0vis, e1vis, e2vis, e3vis) {}
AcDbFace::~AcDbFace() = default;

Acad::ErrorStatus AcDbFace::getVertexAt(Adesk::UInt16 index, AcGePoint3d& point) const {
  if (index > 3) return Acad::eInvalidIndex;
  point = m_points[index];
  return Acad::eOk;
}
Acad::ErrorStatus AcDbFace::setVertexAt(Adesk::UInt16 index, const AcGePoint3d& point) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (index > 3) return Acad::eInvalidIndex;
  m_points[index] = point;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbFace::isEdgeVisibleAt(Adesk::UInt16 index, Adesk::Boolean& visible) const {
  if (index > 3) return Acad::eInvalidIndex;
  visible = m_edgeVisible[index];
  return Acad::eOk;
}
Acad::ErrorStatus AcDbFace::makeEdgeVisibleAt(Adesk::UInt16 index) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (index > 3) return Acad::eInvalidIndex;
  m_edgeVisible[index] = true;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbFace::makeEdgeInvisibleAt(Adesk::UInt16 index) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (index > 3) return Acad::eInvalidIndex;
  m_edgeVisible[index] = false;
  return Acad::eOk;
}

Acad::ErrorStatus AcDbFace::getGeomExtents(AcDbExtents& extents) const { return headless::geom::ExtentsOf(*this, extents); }

Acad::ErrorStatus AcDbFace::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  for (AcGePoint3d& p : m_points) p.transformBy(xform);
  return Acad::eOk;
}

AcRxObject* AcDbFace::clone() const { return new AcDbFace(*this); }

// --- Block markers ------------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbBlockBegin, AcDbEntity, L"BLOCK")
AcDbBlockBegin::AcDbBlockBegin() = default;
AcDbBlockBegin::~AcDbBlockBegin() = default;

KD_ACRX_DEFINE_MEMBERS(AcDbBlockEnd, AcDbEntity, L"ENDBLK")
AcDbBlockEnd::AcDbBlockEnd() = default;
AcDbBlockEnd::~AcDbBlockEnd() = default;

// --- Block reference ----------------------------------------------------------------------------

KD_ACRX_DEFINE_MEMBERS(AcDbBlockReference, AcDbEntity, L"INSERT")

AcDbBlockReference::AcDbBlockReference() = default;
AcDbBlockReference::AcDbBlockReference(const AcGePoint3d& position, AcDbObjectId blockTableRec)
    : m_position(position), m_blockTableRecord(blockTableRec) {}
AcDbBlockReference::AcDbBlockReference(const AcDbBlockReference& other) = default;
AcDbBlockReference::~AcDbBlockReference() = default;

Acad::ErrorStatus AcDbBlockReference::setBlockTableRecord(AcDbObjectId newVal) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (AcDbBlockTableRecord::cast(AcDbImpDatabase::peek(newVal)) == nullptr) return Acad::eInvalidInput;
  m_blockTableRecord = newVal;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbBlockReference::setPosition(const AcGePoint3d& newVal) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_position = newVal;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbBlockReference::setScaleFactors(const AcGeScale3d& scale) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (scale.sx == 0.0 || scale.sy == 0.0 || scale.sz == 0.0) return Acad::eInvalidInput;
  m_scale = scale;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbBlockReference::setRotation(double newVal) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  m_rotation = newVal;
  return Acad::eOk;
}
Acad::ErrorStatus AcDbBlockReference::setNormal(const AcGeVector3d& newVal) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  if (newVal.isZeroLength()) return Acad::eInvalidInput;
  m_normal = newVal.normal();
  return Acad::eOk;
}

// Block point -> move the block's origin to 0, scale, rotate about the normal, lay into the
// normal's plane, move to the position.
AcGeMatrix3d AcDbBlockReference::blockTransform() const {
  AcGePoint3d origin;
  if (const auto* block = AcDbBlockTableRecord::cast(AcDbImpDatabase::peek(m_blockTableRecord)))
    origin = block->origin();
  AcGeMatrix3d scale;
  scale.entry[0][0] = m_scale.sx;
  scale.entry[1][1] = m_scale.sy;
  scale.entry[2][2] = m_scale.sz;
  return AcGeMatrix3d::translation(m_position.asVector()) * AcGeMatrix3d::planeToWorld(m_normal) *
         AcGeMatrix3d::rotation(m_rotation, AcGeVector3d::kZAxis) * scale *
         AcGeMatrix3d::translation(-origin.asVector());
}

Acad::ErrorStatus AcDbBlockReference::getGeomExtents(AcDbExtents& extents) const {
  return headless::geom::ExtentsOf(*this, extents);
}

// The placement after xform must again be scale, rotation and plane: the block's axes must stay
// perpendicular (eCannotScaleNonUniformly otherwise).
Acad::ErrorStatus AcDbBlockReference::transformBy(const AcGeMatrix3d& xform) {
  if (Acad::ErrorStatus es = checkWriteEnabled(); es != Acad::eOk) return es;
  const AcGeVector3d bx = DirectionInPlane(m_rotation, m_normal);
  const AcGeVector3d by = m_normal.crossProduct(bx);
  const AcGeVector3d c0 = xform * bx * m_scale.sx;
  const AcGeVector3d c1 = xform * by * m_scale.sy;
  const AcGeVector3d c2 = xform * m_normal * m_scale.sz;
  const double l0 = c0.length();
  const double l1 = c1.length();
  const double l2 = c2.length();
  if (l0 == 0.0 || l1 == 0.0 || l2 == 0.0) return Acad::eCannotScaleNonUniformly;
  constexpr double kSquareness = 1e-9;
  const AcGeVector3d n = c0.crossProduct(c1) / (l0 * l1);
  if (std::fabs(c0.dotProduct(c1)) > kSquareness * l0 * l1 || std::fabs(std::fabs(n.dotProduct(c2)) - l2) > kSquareness * l2)
    return Acad::eCannotScaleNonUniformly;
  // The new axes, in order, are c0, c1 (both in the plane of n, counter-clockwise) and c2 along
  // or against n: positive x and y scales, z's sign from c2.
  m_position.transformBy(xform);
  m_normal = n.normal();
  m_rotation = AngleInPlane(c0, m_normal);
  m_scale.set(l0, l1, (c2.dotProduct(m_normal) < 0.0 ? -1.0 : 1.0) * l2);
  return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockReference::explode(AcDbVoidPtrArray& entitySet) const {
  const auto* block = AcDbBlockTableRecord::cast(AcDbImpDatabase::peek(m_blockTableRecord));
  if (block == nullptr) return Acad::eInvalidInput;
  const AcGeMatrix3d placement = blockTransform();
  AcDbVoidPtrArray parts;
  for (const AcDbObjectId& id : block->entityIds()) {
    const AcDbStub* stub = AcDbImpDatabase::lookup(id);
    if (stub == nullptr || stub->erased) continue;
    const auto* entity = AcDbEntity::cast(stub->object.get());
    AcDbEntity* copy = nullptr;
    const Acad::ErrorStatus es = entity == nullptr ? Acad::eOk : entity->getTransformedCopy(placement, copy);
    if (es != Acad::eOk) {
      for (void* part : parts) delete static_cast<AcRxObject*>(part);
      return es;
    }
    if (copy != nullptr) parts.append(static_cast<AcRxObject*>(copy));
  }
  entitySet.append(parts);
  return Acad::eOk;
}

AcRxObject* AcDbBlockReference::clone() const { return new AcDbBlockReference(*this); }
