#include "module/graphics/GrPolyline.h"

#include "module/geometry/KdArc.h"
#include "module/geometry/KdPolyline.h"
#include "module/graphics/GrArc.h"
#include "module/graphics/GrElementVector.h"

CGrPolyline::CGrPolyline(const CGrPolyline& other)
    : CGrElement(other), m_closed(other.m_closed), m_polylineType(other.m_polylineType) {
  m_curves.reserve(other.m_curves.size());
  for (const auto& curve : other.m_curves) m_curves.emplace_back(curve->CloneCurve());
}

CGrPolyline::~CGrPolyline() = default;

void CGrPolyline::SetClosed(bool closed) {
  m_closed = closed;
  MarkChanged();
}

void CGrPolyline::SetPolylineType(std::int32_t type) {
  m_polylineType = type;
  SetModified(true);
}

IGrCurve* CGrPolyline::Curve(std::size_t index) {
  return index < m_curves.size() ? m_curves[index].get() : nullptr;
}

const IGrCurve* CGrPolyline::Curve(std::size_t index) const {
  return index < m_curves.size() ? m_curves[index].get() : nullptr;
}

void CGrPolyline::Add(IGrCurve* curve) {
  if (curve == nullptr) return;
  m_curves.emplace_back(curve);
  MarkChanged();
}

CGrElement* CGrPolyline::Clone() const { return new CGrPolyline(*this); }

CKdElement* CGrPolyline::MakeGeometry() const {
  std::vector<CKdPoint> vertices;
  std::vector<double> bulges;
  for (const auto& curve : m_curves) {
    const CKdPoint start = curve->CurveStart();
    if (vertices.empty() || !grgeo::IsEqual(vertices.back(), start)) {
      vertices.push_back(start);
      bulges.push_back(0.0);
    }
    if (const auto* arc = dynamic_cast<const CGrArc*>(curve.get())) {
      bulges.back() = CKdArc(arc->Center(), arc->Radius(), arc->StartAngle(), arc->Sweep()).Bulge();
    }
    vertices.push_back(curve->CurveEnd());
    bulges.push_back(0.0);
  }
  // A closed chain that already returns to its start needs no closing vertex.
  if (m_closed && vertices.size() > 2 && grgeo::IsEqual(vertices.back(), vertices.front())) {
    vertices.pop_back();
    bulges.pop_back();
  }
  return new CKdPolyline(std::move(vertices), std::move(bulges), m_closed);
}

void CGrPolyline::Move(const CKdVector& offset) {
  for (const auto& curve : m_curves) curve->MoveCurve(offset);
  MarkChanged();
}

void CGrPolyline::Rotate(const CKdPoint& base, double angle_rad) {
  for (const auto& curve : m_curves) curve->RotateCurve(base, angle_rad);
  MarkChanged();
}

void CGrPolyline::ScaleAxes(double fx, double fy, double fz) {
  for (const auto& curve : m_curves) curve->ScaleCurveAxes(fx, fy, fz);
  MarkChanged();
}

void CGrPolyline::Scale(double factor) {
  for (const auto& curve : m_curves) curve->ScaleCurve(factor);
  MarkChanged();
}

bool CGrPolyline::AttributesEqual(const CGrElement& other) const {
  const CGrPolyline* polyline = SameKind(*this, other);
  if (polyline == nullptr || !CGrElement::AttributesEqual(other) || m_closed != polyline->m_closed ||
      m_curves.size() != polyline->m_curves.size()) {
    return false;
  }
  for (std::size_t i = 0; i < m_curves.size(); ++i) {
    if (!m_curves[i]->CurveElement()->AttributesEqual(*polyline->m_curves[i]->CurveElement())) return false;
  }
  return true;
}

void CGrPolyline::SetColor(const CGrColor& color) {
  CGrElement::SetColor(color);
  for (const auto& curve : m_curves) curve->SetCurveColor(color);
}

const CGrRect& CGrPolyline::BoundingRect() const {
  CGrRect& rect = CachedRect();
  if (!IsRectStale() && !grgeo::IsDegenerate(rect)) return rect;
  rect.Reset();
  ExtendRect(rect);
  SetRectFresh();
  return rect;
}

void CGrPolyline::ExtendRect(CGrRect& rect) const {
  for (const auto& curve : m_curves) curve->ExtendCurveRect(rect);
}

void CGrPolyline::BreakIntoCurves(CGrElementVector& pieces, std::optional<double> /*startAngle_rad*/) const {
  for (const auto& curve : m_curves) pieces.Add(curve->CloneCurve()->CurveElement());
}

CGrElement* CGrPolyline::FindByTag(const std::wstring& tag) {
  if (CGrElement* self = CGrElement::FindByTag(tag)) return self;
  for (const auto& curve : m_curves) {
    if (CGrElement* found = curve->CurveElement()->FindByTag(tag)) return found;
  }
  return nullptr;
}

CGrElement* CGrPolyline::CloneByTag(const std::wstring& tag) const {
  if (CGrElement* self = CGrElement::CloneByTag(tag)) return self;
  for (const auto& curve : m_curves) {
    if (CGrElement* clone = curve->CurveElement()->CloneByTag(tag)) return clone;
  }
  return nullptr;
}
