#include "module/graphics/GrElement.h"

#include <cmath>

#include "module/geometry/KdConstants.h"
#include "module/geometry/KdXform.h"
#include "module/graphics/GrElementVector.h"

namespace {

// Plain: elements live on the AutoCAD application thread.
std::uint64_t g_elementCount = 0;

}  // namespace

CGrElement::CGrElement() { ++g_elementCount; }

CGrElement::CGrElement(const CGrElement& other)
    : m_color(other.m_color),
      m_modified(true),
      m_rect(other.m_rect),
      m_rectStale(other.m_rectStale),
      m_layer(other.m_layer),
      m_lineType(other.m_lineType),
      m_lineTypeScale(other.m_lineTypeScale),
      m_display(other.m_display),
      m_tag(other.m_tag ? std::make_unique<std::wstring>(*other.m_tag) : nullptr),
      m_idTag(other.m_idTag),
      m_idTagChanged(true),
      m_sessionId(other.m_sessionId),
      m_handle(other.m_handle),
      m_placement(other.m_placement ? std::make_unique<CKdXform>(*other.m_placement) : nullptr) {
  ++g_elementCount;
}

CGrElement::~CGrElement() = default;

std::uint64_t CGrElement::Count() { return g_elementCount; }
void CGrElement::SetCount(std::uint64_t count) { g_elementCount = count; }

void CGrElement::ResetDrawn() {
  m_modified = true;
  m_idTagChanged = true;
  m_sessionId = 0;
  m_handle = 0;
}

bool CGrElement::AttributesEqual(const CGrElement& other) const {
  return m_color == other.m_color && m_lineType == other.m_lineType &&
         std::fabs(m_lineTypeScale - other.m_lineTypeScale) <= grgeo::kTolerance;
}

bool CGrElement::AttributesDiffer(const CGrElement& other) const { return !AttributesEqual(other); }

void CGrElement::SetColor(const CGrColor& color) {
  m_color = color;
  m_modified = true;
}

const CGrRect& CGrElement::BoundingRect() const {
  if (m_rectStale) {
    m_rect.Reset();
    ExtendRect(m_rect);
    m_rectStale = false;
  }
  return m_rect;
}

void CGrElement::BreakIntoCurves(CGrElementVector& pieces, std::optional<double> /*startAngle_rad*/) const {
  pieces.Add(Clone());
}

void CGrElement::SetLayerName(const std::wstring& layer) {
  m_layer = layer;
  m_modified = true;
}

void CGrElement::SetLineType(std::int32_t lineType) {
  m_lineType = lineType;
  m_modified = true;
}

void CGrElement::SetLineTypeScale(double scale) {
  m_lineTypeScale = scale;
  m_modified = true;
}

bool CGrElement::GetDisplay() const { return m_display; }

void CGrElement::SetDisplay(bool display) {
  if (display == m_display) return;
  m_display = display;
  m_modified = true;
}

void CGrElement::SetIdTag(std::uint32_t idTag) {
  m_idTag = idTag;
  m_idTagChanged = true;
  m_modified = true;
}

CGrElement* CGrElement::FindByTag(const std::wstring& tag) {
  return m_tag != nullptr && *m_tag == tag ? this : nullptr;
}

CGrElement* CGrElement::CloneByTag(const std::wstring& tag) const {
  return m_tag != nullptr && *m_tag == tag ? Clone() : nullptr;
}

void CGrElement::SetTag(const std::wstring& tag) {
  m_tag = std::make_unique<std::wstring>(tag);
  m_modified = true;
}

void CGrElement::ClearTag() {
  m_tag.reset();
  m_modified = true;
}

void CGrElement::SetPlacement(const CKdXform& placement) {
  m_placement = std::make_unique<CKdXform>(placement);
  m_modified = true;
}

void CGrElement::ClearPlacement() {
  m_placement.reset();
  m_modified = true;
}

void CGrElement::CopyDisplayAttributesTo(CGrElement& piece) const {
  piece.m_color = m_color;
  piece.m_layer = m_layer;
  piece.m_lineType = m_lineType;
  piece.m_lineTypeScale = m_lineTypeScale;
}

namespace grgeo {

CKdVector RotatedXY(const CKdVector& v, double angle_rad) {
  const double c = std::cos(angle_rad);
  const double s = std::sin(angle_rad);
  return {v.x * c - v.y * s, v.x * s + v.y * c, v.z};
}

bool IsEqual(double a, double b) { return std::fabs(a - b) <= kTolerance; }
bool IsEqual(const CKdPoint& a, const CKdPoint& b) { return a.IsEqual(b, kTolerance); }
bool IsEqual(const CKdVector& a, const CKdVector& b) { return a.IsEqual(b, kTolerance); }

bool AngleInSweep(double angle_rad, double start_rad, double sweep_rad) {
  if (!std::isfinite(angle_rad) || !std::isfinite(start_rad) || !std::isfinite(sweep_rad)) return false;
  if (std::fabs(sweep_rad) >= kdgeo::kTwoPi) return true;
  if (sweep_rad < 0.0) {
    start_rad += sweep_rad;
    sweep_rad = -sweep_rad;
  }
  const double offset = kdgeo::NormalizeAngle(angle_rad - start_rad);
  return offset <= sweep_rad;
}

}  // namespace grgeo
