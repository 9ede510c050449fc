#include "host/SpiralFit.h"

#include <algorithm>
#include <array>
#include <numbers>

namespace host {
namespace {

using std::numbers::pi;
using std::numbers::sqrt2;

// Ten-point Gauss-Legendre rule on [-1, 1]: abscissae and weights of the positive half.
constexpr std::array<double, 5> kNodes = {0.1488743389816312108848260, 0.4333953941292471907992659,
                                          0.6794095682990244062343274, 0.8650633666889845107320967,
                                          0.9739065285171717200779640};
constexpr std::array<double, 5> kWeights = {0.2955242247147528701738930, 0.2692667193099963550912269,
                                            0.2190863625159820439955349, 0.1494513491505805931457763,
                                            0.0666713443086881375935688};

// Largest heading change over one integration panel. Over a quarter radian the ten-point rule
// integrates cos and sin of the heading to rounding.
constexpr double kPanelTurn = 0.25;

// Samples per piece when a trial chain is measured, and the margin that covers what sampling
// can miss between samples (well under a percent at this density).
constexpr int kSamplesPerPiece = 32;
constexpr double kSamplingMargin = 0.99;

// A piece of length b next to the clothoid deviates from the arc through its ends and middle
// by about 0.0087 * rate * b^3 when its neighbours are laid out as FitSpiral lays them out.
constexpr double kPieceErrorFactor = 0.0087;

// The two arcs from (p0, h0) to (p1, h1) that meet tangentially at the joint nearest `target`.
// Every such joint lies on one circle through p0 and p1; the joint of the pair with equal
// tangent lengths gives its third point.
std::array<CKdPlanElement, 2> Biarc(CKdPlanPoint p0, double h0, CKdPlanPoint p1, double h1, CKdPlanPoint target) {
  const CKdPlanPoint t0 = Direction(h0);
  const CKdPlanPoint t1 = Direction(h1);
  const CKdPlanPoint v = p1 - p0;
  const CKdPlanPoint tSum = t0 + t1;
  // |v - d (t0 + t1)| = 2 d, solved for the positive d.
  const double a = 2.0 * (Dot(t0, t1) - 1.0);
  const double b = -2.0 * Dot(v, tSum);
  const double c = Dot(v, v);
  double d = 0.0;
  if (std::fabs(a) < 1e-14) {
    d = b < 0.0 ? -c / b : 0.5 * std::sqrt(c);
  } else {
    d = (-b - std::sqrt(std::max(0.0, b * b - 4.0 * a * c))) / (2.0 * a);
  }
  const CKdPlanPoint equalJoint = 0.5 * (p0 + d * t0 + p1 - d * t1);

  CKdPlanPoint joint = equalJoint;
  const CKdPlanPoint u = p1 - p0;
  const CKdPlanPoint w = equalJoint - p0;
  const double det = 2.0 * Cross(u, w);
  if (std::fabs(det) > 1e-12 * Dot(u, u)) {
    const CKdPlanPoint centre =
        p0 + CKdPlanPoint{(w.y * Dot(u, u) - u.y * Dot(w, w)) / det, (u.x * Dot(w, w) - w.x * Dot(u, u)) / det};
    const double radius = Distance(centre, p0);
    const double reach = Distance(centre, target);
    if (reach > 0.0) joint = centre + (radius / reach) * (target - centre);
  }
  return {CKdPlanElement::ArcFromTangent(p0, h0, joint), CKdPlanElement::ArcFromTangent(p1, h1 + pi, joint).Reversed()};
}

struct CTrial {
  std::vector<CKdPlanElement> elements;
  double deviation = 0.0;
};

// A chain of n >= 2 arcs on a clothoid that starts at the origin. Pieces run p, b, ..., b, p
// with p = b / sqrt(2): an arc that leaves a node along the spiral's heading then errs as much
// as one that takes the heading error an inner arc leaves behind, so every piece errs alike.
// The arcs up to the last node but one go from node to node; the last two form a biarc that
// reaches the end along the spiral's end heading.
CTrial Trial(const CKdClothoid& spiral, int n) {
  const double length = spiral.Length();
  const double inner = length / (n - 2 + sqrt2);
  const double outer = inner / sqrt2;
  std::vector<double> stations(static_cast<std::size_t>(n) + 1);
  stations[0] = 0.0;
  for (int k = 1; k < n; ++k) stations[k] = outer + (k - 1) * inner;
  stations[n] = length;
  std::vector<CKdPlanPoint> nodes(stations.size());
  nodes[0] = spiral.Start();
  for (int k = 1; k < n; ++k) nodes[k] = nodes[k - 1] + spiral.Advance(stations[k - 1], stations[k]);
  nodes[n] = spiral.End();

  CTrial trial;
  double heading = spiral.StartHeading();
  for (int k = 0; k + 2 < n; ++k) {
    trial.elements.push_back(CKdPlanElement::ArcFromTangent(nodes[k], heading, nodes[k + 1]));
    heading = trial.elements.back().EndHeading();
  }
  for (const CKdPlanElement& e : Biarc(nodes[n - 2], heading, nodes[n], spiral.EndHeading(), nodes[n - 1]))
    trial.elements.push_back(e);

  for (int k = 0; k < n; ++k) {
    const std::vector<CKdPlanPoint> samples = spiral.PointsBetween(stations[k], stations[k + 1], kSamplesPerPiece);
    for (const CKdPlanPoint& p : samples) {
      double nearest = trial.elements[k].DistanceTo(p);
      if (k > 0) nearest = std::min(nearest, trial.elements[k - 1].DistanceTo(p));
      if (k + 1 < n) nearest = std::min(nearest, trial.elements[k + 1].DistanceTo(p));
      trial.deviation = std::max(trial.deviation, nearest);
    }
  }
  return trial;
}

}  // namespace

CKdClothoid::CKdClothoid(CKdPlanPoint start, double startHeading, double length, double startCurvature,
                         double endCurvature)
    : start_(start),
      heading0_(startHeading),
      length_(length),
      k0_(startCurvature),
      rate_(length > 0.0 ? (endCurvature - startCurvature) / length : 0.0) {
  end_ = start_ + Advance(0.0, length_);
}

CKdPlanPoint CKdClothoid::Advance(double s0, double s1) const {
  if (!(s1 != s0)) return {};
  const double span = s1 - s0;
  const double steepest = std::max(std::fabs(CurvatureAt(s0)), std::fabs(CurvatureAt(s1)));
  const int panels = std::max(1, static_cast<int>(std::ceil(std::fabs(span) * steepest / kPanelTurn)));
  const double h = span / panels;
  CKdPlanPoint sum;
  for (int i = 0; i < panels; ++i) {
    const double middle = s0 + (i + 0.5) * h;
    for (std::size_t j = 0; j < kNodes.size(); ++j) {
      const double offset = 0.5 * h * kNodes[j];
      sum = sum + kWeights[j] * (Direction(HeadingAt(middle - offset)) + Direction(HeadingAt(middle + offset)));
    }
  }
  return (0.5 * h) * sum;
}

std::vector<CKdPlanPoint> CKdClothoid::PointsBetween(double s0, double s1, int count) const {
  count = std::max(count, 1);
  std::vector<CKdPlanPoint> points;
  points.reserve(static_cast<std::size_t>(count) + 1);
  CKdPlanPoint p = PointAt(s0);
  points.push_back(p);
  double previous = s0;
  for (int i = 1; i <= count; ++i) {
    const double s = s0 + (s1 - s0) * i / count;
    p = p + Advance(previous, s);
    points.push_back(p);
    previous = s;
  }
  return points;
}

double SpiralDeviation(const CKdClothoid& spiral, const std::vector<CKdPlanElement>& chain) {
  if (chain.empty()) return 0.0;
  const int samples = std::max(256, 64 * static_cast<int>(chain.size()));
  const std::vector<CKdPlanPoint> points = spiral.PointsBetween(0.0, spiral.Length(), samples);
  // The chain runs along the spiral, so the nearest element only moves forward.
  std::size_t j = 0;
  double worst = 0.0;
  for (const CKdPlanPoint& p : points) {
    double here = chain[j].DistanceTo(p);
    while (j + 1 < chain.size()) {
      const double next = chain[j + 1].DistanceTo(p);
      if (next > here) break;
      here = next;
      ++j;
    }
    if (j > 0) here = std::min(here, chain[j - 1].DistanceTo(p));
    if (j + 1 < chain.size()) here = std::min(here, chain[j + 1].DistanceTo(p));
    worst = std::max(worst, here);
  }
  return worst;
}

CSpiralFit FitSpiral(const CKdClothoid& spiral, double tolerance) {
  CSpiralFit fit;
  const double length = spiral.Length();
  if (!(length > 0.0) || !std::isfinite(length) || !(tolerance > 0.0) || !std::isfinite(tolerance)) return fit;

  // Work about the origin: the coordinates of a real drawing are large.
  const CKdPlanPoint origin = spiral.Start();
  const CKdClothoid local({0.0, 0.0}, spiral.StartHeading(), length, spiral.StartCurvature(), spiral.EndCurvature());
  const double rate = local.CurvatureRate();

  std::vector<CKdPlanElement> elements;
  if (rate == 0.0) {
    // Constant curvature: the spiral is a line or an arc already.
    const double k = local.StartCurvature();
    if (k == 0.0) {
      elements.push_back(CKdPlanElement::Line(local.Start(), local.End()));
    } else {
      const CKdPlanPoint centre = (1.0 / k) * LeftNormal(Direction(local.StartHeading()));
      elements.push_back(CKdPlanElement::Arc(centre, 1.0 / std::fabs(k), AngleAbout(local.Start(), centre), k * length));
      elements.back().end = local.End();
    }
  } else {
    const double pieceLength = std::cbrt(tolerance / (kPieceErrorFactor * std::fabs(rate)));
    const double estimate = std::ceil(length / pieceLength + 2.0 - sqrt2);
    int n = static_cast<int>(std::clamp(estimate, 2.0, static_cast<double>(kMaxFitArcs)));
    const double accepted = kSamplingMargin * tolerance;
    // The deviation falls as n grows. Find a passing count above the estimate if it fails,
    // then the smallest passing one by halving the gap from the largest known failure.
    int failing = 1;
    CTrial best = Trial(local, n);
    while (best.deviation > accepted) {
      if (n >= kMaxFitArcs) return fit;
      failing = n;
      n = std::min(kMaxFitArcs, n + n / 4 + 1);
      best = Trial(local, n);
    }
    while (n - failing > 1) {
      const int middle = failing + (n - failing) / 2;
      CTrial trial = Trial(local, middle);
      if (trial.deviation <= accepted) {
        best = std::move(trial);
        n = middle;
      } else {
        failing = middle;
      }
    }
    elements = std::move(best.elements);
  }

  fit.deviation = SpiralDeviation(local, elements);
  for (const CKdPlanElement& e : elements) fit.elements.push_back(e.Translated(origin));
  fit.ok = true;
  return fit;
}

}  // namespace host
