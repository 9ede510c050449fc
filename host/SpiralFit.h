// Clothoids and their replacement by circular arcs.
//
// The host interface carries alignments as lines and arcs only, so each transition spiral is
// replaced by a short chain of arcs that stays within a stated distance of it.
#pragma once

#include <vector>

#include "host/PlanGeometry.h"

namespace host {

// A clothoid: its curvature runs linearly with length from `startCurvature` to `endCurvature`
// (1/radius, positive turning left, 0 for an infinite radius). Positions come from integrating
// the heading numerically; the result is good to far better than 1e-9 of the length.
class CKdClothoid {
public:
  CKdClothoid(CKdPlanPoint start, double startHeading, double length, double startCurvature, double endCurvature);

  double Length() const { return length_; }
  double StartCurvature() const { return k0_; }
  double EndCurvature() const { return k0_ + rate_ * length_; }
  // Change of curvature per unit length.
  double CurvatureRate() const { return rate_; }
  double CurvatureAt(double s) const { return k0_ + rate_ * s; }
  double HeadingAt(double s) const { return heading0_ + s * (k0_ + 0.5 * rate_ * s); }
  CKdPlanPoint Start() const { return start_; }
  double StartHeading() const { return heading0_; }
  CKdPlanPoint End() const { return end_; }
  double EndHeading() const { return HeadingAt(length_); }
  CKdPlanPoint PointAt(double s) const { return start_ + Advance(0.0, s); }
  // The displacement from the point at s0 to the point at s1.
  CKdPlanPoint Advance(double s0, double s1) const;
  // Points at count + 1 equally spaced lengths from s0 to s1, both included.
  std::vector<CKdPlanPoint> PointsBetween(double s0, double s1, int count) const;

private:
  CKdPlanPoint start_;
  double heading0_;
  double length_;
  double k0_;
  double rate_;
  CKdPlanPoint end_;
};

struct CSpiralFit {
  // Arcs from the spiral's start to its end, in order (a line only where the spiral is
  // straight). Each starts where the previous one ends; they join tangentially, and the first
  // leaves and the last arrives along the spiral's own start and end headings, so the chain
  // joins its neighbours as the spiral did.
  std::vector<CKdPlanElement> elements;
  // Largest distance from the spiral to the chain.
  double deviation = 0.0;
  // False when the spiral is not a usable one (no length, a tolerance that is not positive) or
  // kMaxFitArcs arcs do not bring the chain within the tolerance.
  bool ok = false;
};

inline constexpr int kMaxFitArcs = 2000;

// The chain with the fewest arcs whose distance from the spiral stays within `tolerance`
// (drawing units). Nodes lie on the spiral; the arcs' lengths are chosen so that the errors of
// the pieces are about equal, which is what keeps the count low.
CSpiralFit FitSpiral(const CKdClothoid& spiral, double tolerance);

// Largest distance from the spiral to the chain, the spiral sampled densely. The chain need
// not come from FitSpiral.
double SpiralDeviation(const CKdClothoid& spiral, const std::vector<CKdPlanElement>& chain);

}  // namespace host
