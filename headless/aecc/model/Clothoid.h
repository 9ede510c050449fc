// A clothoid (Euler spiral) segment: curvature runs linearly with arc length from curvatureStart
// to curvatureEnd. A complete spiral leaves a tangent (curvature 0) and ends at 1/R; an
// incomplete one joins two arcs of different radius. Curvatures are signed: positive turns left
// (counter-clockwise), negative turns right.
//
// Positions are the Fresnel-type integral x(s) + i y(s) = start + int_0^s exp(i theta(t)) dt,
// theta(t) = startDirection + k0 t + (k1 - k0) t^2 / (2 L), evaluated by composite 10-point
// Gauss-Legendre quadrature. Panels are cut so that the heading turns at most 1 rad over each;
// the quadrature error on such a panel is below 1e-20 of its width, so a point is exact to a few
// units in the last place of the coordinates (far inside 1e-9 of the length).
#pragma once

#include "headless/aecc/model/LandTypes.h"

namespace headless::land {

class KD_PLATFORM_API Clothoid {
public:
  // Total turning above this is not a road or rail spiral; refused rather than integrated.
  static constexpr double kMaxTurnRad = 1000.0;

  // Refuses non-finite input, a non-positive length, equal curvatures (an arc or a line, not a
  // spiral) and curvatures of opposite signs (a spiral turns one way; an S is two spirals).
  static Outcome<Clothoid> Make(Point2 start, double startDirectionRad, double length, double curvatureStart,
                                double curvatureEnd);

  double Length() const { return length_; }
  double CurvatureStart() const { return k0_; }
  double CurvatureEnd() const { return k1_; }
  Point2 Start() const { return start_; }
  double StartDirection() const { return direction0_; }
  Point2 End() const { return end_; }
  double EndDirection() const { return DirectionAt(length_); }
  // The clothoid's parameter A, with A^2 = R * (distance from the point of zero curvature):
  // sqrt(R L) for a complete spiral, sqrt(L / |k1 - k0|) in general.
  double A() const;

  // At distance s from the start, clamped to [0, Length()].
  Point2 PointAt(double s) const;
  double DirectionAt(double s) const;   // heading, radians counter-clockwise from +x, not wrapped
  double CurvatureAt(double s) const;

  // The distance along the spiral of the point nearest to p (the end nearest when no foot of a
  // perpendicular lies on it).
  double ClosestDistance(Point2 p) const;

private:
  Clothoid(Point2 start, double direction0, double length, double k0, double k1);
  double Clamp(double s) const;

  Point2 start_;
  double direction0_ = 0.0;
  double length_ = 0.0;
  double k0_ = 0.0;
  double k1_ = 0.0;
  Point2 end_;
};

}  // namespace headless::land
