#include "headless/aecc/model/TinSurface.h"

#include <cmath>

#include "headless/aecc/model/internal/TinBuildInput.h"
#include "headless/aecc/model/internal/TinGeometry.h"
#include "headless/aecc/model/internal/TinTriangulation.h"

namespace headless::land {
namespace {

bool IsFinite3(const Point3& p) { return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z); }

template <class T>
LandError EraseAt(std::vector<T>& items, int index) {
  if (index < 0 || index >= static_cast<int>(items.size())) return LandError::NotFound;
  items.erase(items.begin() + index);
  return LandError::None;
}

}  // namespace

TinSurface::TinSurface() = default;
TinSurface::~TinSurface() = default;
TinSurface::TinSurface(TinSurface&&) noexcept = default;
TinSurface& TinSurface::operator=(TinSurface&&) noexcept = default;

void TinSurface::SetPoints(std::vector<Point3> points) { points_ = std::move(points); }

Outcome<int> TinSurface::AddBreakline(std::vector<Point3> vertices) {
  if (vertices.size() < 2) return LandError::InvalidArgument;
  for (const Point3& v : vertices) {
    if (!IsFinite3(v)) return LandError::InvalidArgument;
  }
  breaklines_.push_back(std::move(vertices));
  return BreaklineCount() - 1;
}

const std::vector<Point3>* TinSurface::Breakline(int index) const {
  if (index < 0 || index >= BreaklineCount()) return nullptr;
  return &breaklines_[static_cast<std::size_t>(index)];
}

LandError TinSurface::RemoveBreakline(int index) { return EraseAt(breaklines_, index); }

Outcome<int> TinSurface::AddBoundary(SurfaceBoundary boundary) {
  switch (boundary.type) {
    case SurfaceBoundaryType::Show:
    case SurfaceBoundaryType::Hide:
    case SurfaceBoundaryType::Outer:
    case SurfaceBoundaryType::DataClip: break;
    default: return LandError::InvalidArgument;
  }
  for (const Point2& p : boundary.polygon) {
    if (!IsFinite(p)) return LandError::InvalidArgument;
  }
  if (tin::SurfacePolygon(boundary.polygon).IsDegenerate()) return LandError::Degenerate;
  boundaries_.push_back(std::move(boundary));
  return BoundaryCount() - 1;
}

const SurfaceBoundary* TinSurface::Boundary(int index) const {
  if (index < 0 || index >= BoundaryCount()) return nullptr;
  return &boundaries_[static_cast<std::size_t>(index)];
}

LandError TinSurface::RemoveBoundary(int index) { return EraseAt(boundaries_, index); }

Outcome<int> TinSurface::AddPaste(const TinSurface& other) {
  if (!other.built_ || other.built_->TriangleCount() == 0) return LandError::Empty;
  pastes_.push_back(other.built_);
  return PasteCount() - 1;
}

LandError TinSurface::RemovePaste(int index) { return EraseAt(pastes_, index); }

void TinSurface::Rebuild() {
  built_ = tin::TinTriangulation::Build(tin::PrepareBuild(points_, breaklines_, boundaries_, pastes_));
}

int TinSurface::TriangleCount() const { return built_ ? built_->TriangleCount() : 0; }
int TinSurface::VertexCount() const { return built_ ? built_->VertexCount() : 0; }
std::vector<double> TinSurface::Triangles() const { return built_ ? built_->Triangles() : std::vector<double>{}; }

Outcome<double> TinSurface::ElevationAt(double x, double y) const {
  if (!std::isfinite(x) || !std::isfinite(y)) return LandError::InvalidArgument;
  if (!built_) return LandError::Empty;
  return built_->ElevationAt({x, y});
}

Outcome<std::vector<Point3>> TinSurface::SampleSegment(Point2 from, Point2 to) const {
  if (!IsFinite(from) || !IsFinite(to)) return LandError::InvalidArgument;
  if (!built_) return LandError::Empty;
  return built_->SampleSegment(from, to);
}

std::vector<std::pair<double, double>> TinSurface::CoveredIntervals(Point2 from, Point2 to) const {
  if (!built_ || !IsFinite(from) || !IsFinite(to)) return {};
  return built_->CoveredIntervals(from, to);
}

Outcome<Point3> TinSurface::IntersectRay(const Point3& origin, const Point3& direction) const {
  if (!IsFinite3(origin) || !IsFinite3(direction)) return LandError::InvalidArgument;
  if (direction.x == 0.0 && direction.y == 0.0 && direction.z == 0.0) return LandError::InvalidArgument;
  if (!built_) return LandError::Empty;
  return built_->IntersectRay(origin, direction);
}

double TinSurface::Area2d() const { return built_ ? built_->Area2d() : 0.0; }
double TinSurface::Area3d() const { return built_ ? built_->Area3d() : 0.0; }

Outcome<ElevationRange> TinSurface::Elevations() const {
  if (!built_) return LandError::Empty;
  return built_->Elevations();
}

std::vector<std::vector<Point3>> TinSurface::Outline() const {
  return built_ ? built_->Outline() : std::vector<std::vector<Point3>>{};
}

bool TinSurface::IsValid() const { return !built_ || built_->IsValid(); }

}  // namespace headless::land
