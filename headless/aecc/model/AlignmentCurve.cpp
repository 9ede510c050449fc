#include "headless/aecc/model/AlignmentCurve.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace headless::land {
namespace {

// Angle from a to b in the given rotation, in [0, 2 pi).
double TurnBetween(double fromRad, double toRad, bool clockwise) {
  double turn = clockwise ? fromRad - toRad : toRad - fromRad;
  turn = std::fmod(turn, kTwoPi);
  if (turn < 0.0) turn += kTwoPi;
  return turn;
}

double AngleOf(Point2 p, Point2 centre) { return std::atan2(p.y - centre.y, p.x - centre.x); }

}  // namespace

Outcome<AlignmentCurve> AlignmentCurve::MakeTangent(Point2 start, Point2 end) {
  if (!IsFinite(start) || !IsFinite(end)) return LandError::InvalidArgument;
  const double length = Distance(start, end);
  if (length < kPointTolerance) return LandError::Degenerate;
  AlignmentCurve curve;
  curve.kind_ = CurveKind::Tangent;
  curve.start_ = start;
  curve.end_ = end;
  curve.length_ = length;
  curve.direction_ = std::atan2(end.y - start.y, end.x - start.x);
  return curve;
}

Outcome<AlignmentCurve> AlignmentCurve::MakeArcThroughPoints(Point2 start, Point2 middle, Point2 end) {
  if (!IsFinite(start) || !IsFinite(middle) || !IsFinite(end)) return LandError::InvalidArgument;
  if (Distance(start, middle) < kPointTolerance || Distance(middle, end) < kPointTolerance ||
      Distance(start, end) < kPointTolerance) {
    return LandError::Degenerate;
  }
  // Circumcentre, relative to the start so that large coordinates keep their digits.
  const Point2 b = middle - start;
  const Point2 c = end - start;
  const double twiceArea = Cross(b, c);
  const double chord = Distance(start, end);
  if (std::abs(twiceArea) / chord <= kCollinearRatio * chord) return LandError::Degenerate;
  const double bb = Dot(b, b);
  const double cc = Dot(c, c);
  const Point2 u{(c.y * bb - b.y * cc) / (2.0 * twiceArea), (b.x * cc - c.x * bb) / (2.0 * twiceArea)};

  AlignmentCurve curve;
  curve.kind_ = CurveKind::Arc;
  curve.start_ = start;
  curve.end_ = end;
  curve.centre_ = start + u;
  curve.radius_ = std::hypot(u.x, u.y);
  // Start, middle, end turning clockwise put the middle on the clockwise way round.
  const bool clockwise = twiceArea < 0.0;
  curve.startAngle_ = AngleOf(start, curve.centre_);
  const double turn = TurnBetween(curve.startAngle_, AngleOf(end, curve.centre_), clockwise);
  curve.sweep_ = clockwise ? -turn : turn;
  curve.length_ = curve.radius_ * turn;
  return curve;
}

Outcome<AlignmentCurve> AlignmentCurve::MakeArcAboutCentre(Point2 start, Point2 centre, Point2 end, bool clockwise,
                                                           double radiusTolerance) {
  if (!IsFinite(start) || !IsFinite(centre) || !IsFinite(end) || !std::isfinite(radiusTolerance)) {
    return LandError::InvalidArgument;
  }
  const double radius = Distance(start, centre);
  if (radius < kPointTolerance || Distance(start, end) < kPointTolerance) return LandError::Degenerate;
  if (std::abs(Distance(end, centre) - radius) > radiusTolerance) return LandError::InvalidArgument;
  AlignmentCurve curve;
  curve.kind_ = CurveKind::Arc;
  curve.start_ = start;
  curve.end_ = end;
  curve.centre_ = centre;
  curve.radius_ = radius;
  curve.startAngle_ = AngleOf(start, centre);
  const double turn = TurnBetween(curve.startAngle_, AngleOf(end, centre), clockwise);
  curve.sweep_ = clockwise ? -turn : turn;
  curve.length_ = radius * turn;
  return curve;
}

Outcome<AlignmentCurve> AlignmentCurve::MakeArcFromDirection(Point2 start, double startDirectionRad, double radius,
                                                             double length, bool clockwise) {
  if (!IsFinite(start) || !std::isfinite(startDirectionRad) || !std::isfinite(radius) || !std::isfinite(length)) {
    return LandError::InvalidArgument;
  }
  if (radius < kPointTolerance || length < kPointTolerance) return LandError::InvalidArgument;
  if (length / radius >= kTwoPi) return LandError::InvalidArgument;  // no full circles
  AlignmentCurve curve;
  curve.kind_ = CurveKind::Arc;
  curve.start_ = start;
  curve.radius_ = radius;
  curve.length_ = length;
  const double side = clockwise ? -1.0 : 1.0;
  curve.centre_ = start + radius * UnitAt(startDirectionRad + side * 0.5 * kPi);
  curve.startAngle_ = startDirectionRad - side * 0.5 * kPi;
  curve.sweep_ = side * length / radius;
  curve.end_ = curve.centre_ + radius * UnitAt(curve.startAngle_ + curve.sweep_);
  return curve;
}

Outcome<AlignmentCurve> AlignmentCurve::MakeSpiral(Point2 start, double startDirectionRad, double length,
                                                   double radiusIn, double radiusOut, SpiralDirection direction) {
  const auto curvature = [](double radius) -> std::optional<double> {
    if (std::isinf(radius) && radius > 0.0) return 0.0;
    if (!std::isfinite(radius) || radius <= 0.0) return std::nullopt;
    return 1.0 / radius;
  };
  const std::optional<double> kIn = curvature(radiusIn);
  const std::optional<double> kOut = curvature(radiusOut);
  if (!kIn || !kOut) return LandError::InvalidArgument;
  const double side = direction == SpiralDirection::Left ? 1.0 : -1.0;
  Outcome<Clothoid> spiral = Clothoid::Make(start, startDirectionRad, length, side * *kIn, side * *kOut);
  if (!spiral) return spiral.Error();
  AlignmentCurve curve;
  curve.kind_ = CurveKind::Spiral;
  curve.start_ = start;
  curve.end_ = spiral.Value().End();
  curve.length_ = length;
  curve.spiral_ = std::move(spiral).Value();
  return curve;
}

Point2 AlignmentCurve::PointAt(double s) const {
  if (s <= 0.0) return start_;
  if (s >= length_) return end_;
  switch (kind_) {
    case CurveKind::Tangent: return start_ + s * UnitAt(direction_);
    case CurveKind::Arc: return centre_ + radius_ * UnitAt(startAngle_ + std::copysign(s / radius_, sweep_));
    case CurveKind::Spiral: return spiral_->PointAt(s);
  }
  return start_;
}

double AlignmentCurve::DirectionAt(double s) const {
  s = std::clamp(s, 0.0, length_);
  switch (kind_) {
    case CurveKind::Tangent: return direction_;
    case CurveKind::Arc: {
      const double turn = std::copysign(s / radius_, sweep_);
      return startAngle_ + turn + std::copysign(0.5 * kPi, sweep_);
    }
    case CurveKind::Spiral: return spiral_->DirectionAt(s);
  }
  return 0.0;
}

double AlignmentCurve::CurvatureAt(double s) const {
  switch (kind_) {
    case CurveKind::Tangent: return 0.0;
    case CurveKind::Arc: return std::copysign(1.0 / radius_, sweep_);
    case CurveKind::Spiral: return spiral_->CurvatureAt(s);
  }
  return 0.0;
}

double AlignmentCurve::ClosestDistance(Point2 p) const {
  switch (kind_) {
    case CurveKind::Tangent: return std::clamp(Dot(p - start_, UnitAt(direction_)), 0.0, length_);
    case CurveKind::Arc: {
      if (Distance(p, centre_) < kPointTolerance) return 0.0;  // every point is nearest: take the start
      const double turn = TurnBetween(startAngle_, AngleOf(p, centre_), sweep_ < 0.0);
      if (turn * radius_ <= length_) return turn * radius_;
      return Distance(p, start_) <= Distance(p, end_) ? 0.0 : length_;
    }
    case CurveKind::Spiral: return spiral_->ClosestDistance(p);
  }
  return 0.0;
}

double AlignmentCurve::RadiusIn() const {
  const double k = spiral_ ? spiral_->CurvatureStart() : 0.0;
  return k == 0.0 ? std::numeric_limits<double>::infinity() : 1.0 / std::abs(k);
}

double AlignmentCurve::RadiusOut() const {
  const double k = spiral_ ? spiral_->CurvatureEnd() : 0.0;
  return k == 0.0 ? std::numeric_limits<double>::infinity() : 1.0 / std::abs(k);
}

SpiralDirection AlignmentCurve::Direction() const {
  if (!spiral_) return SpiralDirection::Left;
  const double k = spiral_->CurvatureStart() != 0.0 ? spiral_->CurvatureStart() : spiral_->CurvatureEnd();
  return k > 0.0 ? SpiralDirection::Left : SpiralDirection::Right;
}

}  // namespace headless::land
