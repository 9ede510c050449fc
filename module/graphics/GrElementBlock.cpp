#include "module/graphics/GrElementBlock.h"

#include <cmath>

#include "module/graphics/GrPolyline.h"

namespace {

bool NearZero(double value) { return std::fabs(value) <= grgeo::kTolerance; }
bool NearOne(double value) { return std::fabs(value - 1.0) <= grgeo::kTolerance; }

}  // namespace

CGrElementBlock::CGrElementBlock(const CGrElementBlock& other)
    : CGrElement(other),
      m_position(other.m_position),
      m_rotation(other.m_rotation),
      m_scale(other.m_scale),
      m_label(other.m_label),
      m_elements(other.m_elements) {}

CGrElementBlock::~CGrElementBlock() = default;

void CGrElementBlock::SetPosition(const CKdPoint& position) {
  m_position = position;
  MarkChanged();
  m_placedStale = true;
}

void CGrElementBlock::SetRotation(double angle_rad) {
  m_rotation = angle_rad;
  MarkChanged();
  m_placedStale = true;
}

void CGrElementBlock::SetScaleFactors(const CKdVector& factors) {
  m_scale = factors;
  MarkChanged();
  m_placedStale = true;
}

void CGrElementBlock::SetLabel(const std::wstring& label) {
  m_label = label;
  SetModified(true);
}

void CGrElementBlock::Add(CGrElement* element) {
  if (element == nullptr) return;
  m_elements.Add(element);
  MarkChanged();
  m_placedStale = true;
}

void CGrElementBlock::MarkPlacementStale() const {
  MarkRectStale();
  m_placedStale = true;
}

const CGrElementVector& CGrElementBlock::PlacedElements() const {
  if (m_placedStale) RebuildPlaced();
  return m_placed;
}

void CGrElementBlock::RebuildPlaced() const {
  m_placed.Clear();
  const CKdPoint origin;
  const CKdVector offset = m_position - origin;
  for (const auto& child : m_elements) {
    CGrElement* placed = child->Clone();
    placed->ScaleAxes(m_scale.x, m_scale.y, m_scale.z);
    placed->Rotate(origin, m_rotation);
    placed->Move(offset);
    m_placed.Add(placed);
  }
  m_placedStale = false;
}

CGrElement* CGrElementBlock::Clone() const { return new CGrElementBlock(*this); }
CKdElement* CGrElementBlock::MakeGeometry() const { return nullptr; }

void CGrElementBlock::Move(const CKdVector& offset) {
  if (NearZero(offset.x) && NearZero(offset.y) && NearZero(offset.z)) return;
  m_position += offset;
  MarkPlacementStale();
}

void CGrElementBlock::Rotate(const CKdPoint& base, double angle_rad) {
  m_position = m_position.RotatedXY(base, angle_rad);
  m_rotation += angle_rad;
  MarkChanged();
  m_placedStale = true;
}

void CGrElementBlock::ScaleAxes(double fx, double fy, double fz) {
  if (NearOne(fx) && NearOne(fy) && NearOne(fz)) return;
  m_position = grgeo::ScaledAxes(m_position, fx, fy, fz);
  m_scale = {m_scale.x * fx, m_scale.y * fy, m_scale.z * fz};
  MarkPlacementStale();
}

void CGrElementBlock::Scale(double factor) {
  if (NearOne(factor)) return;
  m_position = grgeo::Scaled(m_position, factor);
  m_scale = m_scale * factor;
  MarkPlacementStale();
}

bool CGrElementBlock::AttributesEqual(const CGrElement& other) const {
  const CGrElementBlock* block = SameKind(*this, other);
  if (block == nullptr || !CGrElement::AttributesEqual(other) || !grgeo::IsEqual(m_position, block->m_position) ||
      !grgeo::IsEqual(m_rotation, block->m_rotation) || !grgeo::IsEqual(m_scale, block->m_scale) ||
      m_label != block->m_label || m_elements.Size() != block->m_elements.Size()) {
    return false;
  }
  for (std::size_t i = 0; i < m_elements.Size(); ++i) {
    if (!m_elements.At(i)->AttributesEqual(*block->m_elements.At(i))) return false;
  }
  return true;
}

const CGrRect& CGrElementBlock::BoundingRect() const {
  CGrRect& rect = CachedRect();
  if (!IsRectStale() && !grgeo::IsDegenerate(rect)) return rect;
  rect.Reset();
  ExtendRect(rect);
  SetRectFresh();
  return rect;
}

void CGrElementBlock::ExtendRect(CGrRect& rect) const {
  RebuildPlaced();
  m_placed.ExtendRect(rect);
}

void CGrElementBlock::BreakIntoCurves(CGrElementVector& pieces, std::optional<double> startAngle_rad) const {
  for (const auto& placed : PlacedElements()) placed->BreakIntoCurves(pieces, startAngle_rad);
}

CGrElement* CGrElementBlock::FindByTag(const std::wstring& tag) {
  if (CGrElement* self = CGrElement::FindByTag(tag)) return self;
  return m_elements.FindByTag(tag);
}

CGrElement* CGrElementBlock::CloneByTag(const std::wstring& tag) const {
  if (CGrElement* self = CGrElement::CloneByTag(tag)) return self;
  return m_elements.CloneByTag(tag);
}
