#include "headless/aecc/model/AlignmentEntity.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace headless::land {
namespace {

constexpr CurveKind T = CurveKind::Tangent;
constexpr CurveKind C = CurveKind::Arc;
constexpr CurveKind S = CurveKind::Spiral;

constexpr std::array<CurveKind, 1> kTangent = {T};
constexpr std::array<CurveKind, 1> kArc = {C};
constexpr std::array<CurveKind, 1> kSpiral = {S};
constexpr std::array<CurveKind, 3> kScs = {S, C, S};
constexpr std::array<CurveKind, 3> kSts = {S, T, S};
constexpr std::array<CurveKind, 2> kSt = {S, T};
constexpr std::array<CurveKind, 2> kTs = {T, S};
constexpr std::array<CurveKind, 2> kSc = {S, C};
constexpr std::array<CurveKind, 2> kCs = {C, S};
constexpr std::array<CurveKind, 3> kSsc = {S, S, C};
constexpr std::array<CurveKind, 3> kCss = {C, S, S};
constexpr std::array<CurveKind, 5> kScscs = {S, C, S, C, S};
constexpr std::array<CurveKind, 6> kScsscs = {S, C, S, S, C, S};
constexpr std::array<CurveKind, 2> kSs = {S, S};

bool Joins(const AlignmentCurve& before, const AlignmentCurve& after, const GroupTolerance& tolerance) {
  if (Distance(before.EndPoint(), after.StartPoint()) > tolerance.position) return false;
  if (std::abs(WrapAngle(after.StartDirection() - before.EndDirection())) > tolerance.directionRad) return false;
  const double k0 = before.CurvatureAt(before.Length());
  const double k1 = after.CurvatureAt(0.0);
  return std::abs(k1 - k0) <= tolerance.curvatureRatio * std::max(std::abs(k0), std::abs(k1));
}

}  // namespace

std::span<const CurveKind> EntityLayout(AlignmentEntityType type) {
  switch (type) {
    case AlignmentEntityType::Tangent: return kTangent;
    case AlignmentEntityType::Arc: return kArc;
    case AlignmentEntityType::Spiral: return kSpiral;
    case AlignmentEntityType::SpiralCurveSpiral: return kScs;
    case AlignmentEntityType::SpiralTangentSpiral: return kSts;
    case AlignmentEntityType::SpiralTangent: return kSt;
    case AlignmentEntityType::TangentSpiral: return kTs;
    case AlignmentEntityType::SpiralCurve: return kSc;
    case AlignmentEntityType::CurveSpiral: return kCs;
    case AlignmentEntityType::SpiralSpiralCurve: return kSsc;
    case AlignmentEntityType::CurveSpiralSpiral: return kCss;
    case AlignmentEntityType::SpiralCurveSpiralCurveSpiral: return kScscs;
    case AlignmentEntityType::SpiralCurveSpiralSpiralCurveSpiral: return kScsscs;
    case AlignmentEntityType::SpiralSpiral: return kSs;
  }
  return {};
}

AlignmentEntity::AlignmentEntity(AlignmentEntityType type, std::vector<AlignmentCurve> parts)
    : type_(type), parts_(std::move(parts)) {
  for (const AlignmentCurve& part : parts_) length_ += part.Length();
}

AlignmentEntity AlignmentEntity::MakeSimple(AlignmentCurve curve) {
  AlignmentEntityType type = AlignmentEntityType::Tangent;
  if (curve.Kind() == CurveKind::Arc) type = AlignmentEntityType::Arc;
  if (curve.Kind() == CurveKind::Spiral) type = AlignmentEntityType::Spiral;
  return AlignmentEntity(type, {std::move(curve)});
}

Outcome<AlignmentEntity> AlignmentEntity::MakeGroup(AlignmentEntityType type, std::vector<AlignmentCurve> parts,
                                                    const GroupTolerance& tolerance) {
  const std::span<const CurveKind> layout = EntityLayout(type);
  if (layout.size() < 2 || layout.size() != parts.size()) return LandError::InvalidArgument;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (parts[i].Kind() != layout[i]) return LandError::InvalidArgument;
  }
  for (std::size_t i = 1; i < parts.size(); ++i) {
    if (!Joins(parts[i - 1], parts[i], tolerance)) return LandError::Discontinuous;
  }
  return AlignmentEntity(type, std::move(parts));
}

const AlignmentCurve* AlignmentEntity::SubEntity(int index) const {
  if (index < 0 || index >= SubEntityCount()) return nullptr;
  return &parts_[static_cast<std::size_t>(index)];
}

std::pair<const AlignmentCurve*, double> AlignmentEntity::Locate(double s) const {
  s = std::clamp(s, 0.0, length_);
  for (std::size_t i = 0; i + 1 < parts_.size(); ++i) {
    if (s <= parts_[i].Length()) return {&parts_[i], s};
    s -= parts_[i].Length();
  }
  return {&parts_.back(), s};
}

Point2 AlignmentEntity::PointAt(double s) const {
  const auto [part, local] = Locate(s);
  return part->PointAt(local);
}

double AlignmentEntity::DirectionAt(double s) const {
  const auto [part, local] = Locate(s);
  return part->DirectionAt(local);
}

double AlignmentEntity::ClosestDistance(Point2 p) const {
  double before = 0.0;
  double best = 0.0;
  double bestDistance = INFINITY;
  for (const AlignmentCurve& part : parts_) {
    const double s = part.ClosestDistance(p);
    const double d = Distance(part.PointAt(s), p);
    if (d < bestDistance) {
      bestDistance = d;
      best = before + s;
    }
    before += part.Length();
  }
  return best;
}

}  // namespace headless::land
