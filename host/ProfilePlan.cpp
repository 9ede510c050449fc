#include "host/ProfilePlan.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "host/HostText.h"

namespace host {
namespace {

using Type = CC3dProfilePVI::ProfileCurveType;

double Grade(const CC3dProfilePVI& a, const CC3dProfilePVI& b) {
  const double run = b.GetStation() - a.GetStation();
  return run != 0.0 ? (b.GetElevation() - a.GetElevation()) / run : 0.0;
}

// The circle of a circular curve: tangent to the incoming grade at `begin`, to the outgoing one
// at `end`, below its centre in a sag and above it on a crest.
struct CVerticalCircle {
  double begin, end, centreStation, centreElevation, radius;
  bool sag;
};

CVerticalCircle Circle(const CC3dProfilePVI& pvi, double gIn, double gOut) {
  const double a1 = std::atan(gIn);
  const double a2 = std::atan(gOut);
  const double r = std::fabs(pvi.GetRadius());
  const double tangent = r * std::tan(std::fabs(a2 - a1) / 2.0);
  const double bx = pvi.GetStation() - tangent * std::cos(a1);
  const double by = pvi.GetElevation() - tangent * std::sin(a1);
  const bool sag = a2 > a1;
  const double side = sag ? 1.0 : -1.0;  // the centre lies on the side the grade turns to
  return {bx, pvi.GetStation() + tangent * std::cos(a2), bx - side * r * std::sin(a1), by + side * r * std::cos(a1), r,
          sag};
}

std::string PviName(const std::vector<CC3dProfilePVI>& pvis, std::size_t i) {
  return "PVI " + std::to_string(i + 1) + " (station " + Fixed(pvis[i].GetStation(), 3) + ")";
}

}  // namespace

CProfilePlan PlanProfile(const landxml::CProfAlign& layout) {
  CProfilePlan plan;
  for (const landxml::CProfileVertex& v : layout.vertices) {
    CC3dProfilePVI pvi;
    pvi.SetStation(v.station);
    pvi.SetElevation(v.elevation);
    switch (v.curve) {
      case landxml::VerticalCurve::None:
        break;
      case landxml::VerticalCurve::Parabolic:
        pvi.SetCurveType(Type::ParabolicCurve);
        pvi.SetCurveLength(v.length);
        break;
      case landxml::VerticalCurve::AsymmetricParabolic:
        pvi.SetCurveType(Type::AsymmetricParabolicCurve);
        pvi.SetLength1(v.lengthIn);
        pvi.SetLength2(v.lengthOut);
        break;
      case landxml::VerticalCurve::Circular:
        if (v.radius == 0.0) {
          plan.notCarried.push_back("CircCurve at station " + Fixed(v.station, 3) +
                                    " has radius 0; the interface carries a circular curve by its radius, so it goes as a plain PVI");
          break;
        }
        pvi.SetCurveType(Type::CircularCurve);
        pvi.SetRadius(std::fabs(v.radius));
        break;
    }
    plan.pvis.push_back(pvi);
  }
  if (plan.pvis.size() < 2)
    plan.notCarried.push_back("the profile has " + std::to_string(plan.pvis.size()) +
                              " PVI(s); the interface needs at least two");
  for (std::size_t i = 1; i + 1 < plan.pvis.size(); ++i) {
    const CCurveExtent here = CurveExtent(plan.pvis, i);
    if (here.begin < plan.pvis[i - 1].GetStation() || here.end > plan.pvis[i + 1].GetStation())
      plan.notes.push_back("the vertical curve at " + PviName(plan.pvis, i) + " reaches past a neighbouring PVI");
    if (i + 2 < plan.pvis.size()) {
      const CCurveExtent next = CurveExtent(plan.pvis, i + 1);
      if (next.begin < here.end && next.end > next.begin && here.end > here.begin)
        plan.notes.push_back("the vertical curves at " + PviName(plan.pvis, i) + " and " + PviName(plan.pvis, i + 1) +
                             " overlap between stations " + Fixed(next.begin, 3) + " and " + Fixed(here.end, 3));
    }
  }
  return plan;
}

std::string CurveText(const CC3dProfilePVI& pvi) {
  switch (pvi.GetType()) {
    case Type::ParabolicCurve:
      return "parabolic " + Short(pvi.GetCurveLength());
    case Type::AsymmetricParabolicCurve:
      return "asymmetric " + Short(pvi.GetLength1()) + "/" + Short(pvi.GetLength2());
    case Type::CircularCurve:
      return "circular R " + Short(pvi.GetRadius());
    default:
      return "";
  }
}

CCurveExtent CurveExtent(const std::vector<CC3dProfilePVI>& pvis, std::size_t i) {
  const CC3dProfilePVI& pvi = pvis[i];
  const double s = pvi.GetStation();
  if (i == 0 || i + 1 >= pvis.size()) return {s, s};
  switch (pvi.GetType()) {
    case Type::ParabolicCurve:
      return {s - pvi.GetCurveLength() / 2.0, s + pvi.GetCurveLength() / 2.0};
    case Type::AsymmetricParabolicCurve:
      return {s - pvi.GetLength1(), s + pvi.GetLength2()};
    case Type::CircularCurve: {
      const CVerticalCircle c = Circle(pvi, Grade(pvis[i - 1], pvi), Grade(pvi, pvis[i + 1]));
      return {c.begin, c.end};
    }
    default:
      return {s, s};
  }
}

double ProfileElevation(const std::vector<CC3dProfilePVI>& pvis, double station) {
  if (pvis.size() < 2) return 0.0;
  for (std::size_t i = 1; i + 1 < pvis.size(); ++i) {
    const CCurveExtent extent = CurveExtent(pvis, i);
    if (!(extent.end > extent.begin) || station < extent.begin || station > extent.end) continue;
    const CC3dProfilePVI& pvi = pvis[i];
    const double gIn = Grade(pvis[i - 1], pvi);
    const double gOut = Grade(pvi, pvis[i + 1]);
    const double s = pvi.GetStation();
    const double e = pvi.GetElevation();
    switch (pvi.GetType()) {
      case Type::ParabolicCurve: {
        const double length = pvi.GetCurveLength();
        const double x = station - extent.begin;
        return e - gIn * length / 2.0 + gIn * x + (gOut - gIn) * x * x / (2.0 * length);
      }
      case Type::AsymmetricParabolicCurve: {
        const double l1 = pvi.GetLength1();
        const double l2 = pvi.GetLength2();
        // Offset at the PVI where the two parabolas meet with a common tangent.
        const double middle = l1 * l2 * (gOut - gIn) / (2.0 * (l1 + l2));
        if (station <= s) {
          const double x = station - extent.begin;
          return e - gIn * l1 + gIn * x + middle * (x / l1) * (x / l1);
        }
        const double x = extent.end - station;
        return e + gOut * l2 - gOut * x + middle * (x / l2) * (x / l2);
      }
      case Type::CircularCurve: {
        const CVerticalCircle c = Circle(pvi, gIn, gOut);
        const double dx = station - c.centreStation;
        const double dy = std::sqrt(std::max(0.0, c.radius * c.radius - dx * dx));
        return c.sag ? c.centreElevation - dy : c.centreElevation + dy;
      }
      default:
        break;
    }
  }
  std::size_t k = 0;
  while (k + 2 < pvis.size() && station > pvis[k + 1].GetStation()) ++k;
  return pvis[k].GetElevation() + Grade(pvis[k], pvis[k + 1]) * (station - pvis[k].GetStation());
}

bool IsMissingSample(const std::vector<CC3dProfilePVI>& pvis, const CC3dProfilePoint& sample) {
  return sample.GetElevation() == 0.0 && std::fabs(ProfileElevation(pvis, sample.GetStation())) > 1e-6;
}

CProfileComparison CompareProfile(const std::vector<CC3dProfilePVI>& sent, const std::vector<CC3dProfilePVI>& readBack,
                                  const std::vector<CC3dProfilePoint>& samples) {
  CProfileComparison result;
  result.sent = static_cast<int>(sent.size());
  result.readBack = static_cast<int>(readBack.size());
  result.countsMatch = result.sent == result.readBack;
  if (!result.countsMatch) {
    result.station = result.elevation = result.curve = std::numeric_limits<double>::infinity();
    result.changes.push_back(std::to_string(result.sent) + " PVIs written, " + std::to_string(result.readBack) +
                             " read back");
  } else {
    for (std::size_t i = 0; i < sent.size(); ++i) {
      const CC3dProfilePVI& a = sent[i];
      const CC3dProfilePVI& b = readBack[i];
      result.station = std::max(result.station, std::fabs(a.GetStation() - b.GetStation()));
      result.elevation = std::max(result.elevation, std::fabs(a.GetElevation() - b.GetElevation()));
      const double curve = std::max({std::fabs(a.GetRadius() - b.GetRadius()),
                                     std::fabs(a.GetCurveLength() - b.GetCurveLength()),
                                     std::fabs(a.GetLength1() - b.GetLength1()), std::fabs(a.GetLength2() - b.GetLength2())});
      const bool sameKind = a.GetType() == b.GetType();
      // Parameters a curve type does not use are left out of the difference.
      if (sameKind) {
        double used = 0.0;
        switch (a.GetType()) {
          case Type::CircularCurve:
            used = std::fabs(a.GetRadius() - b.GetRadius());
            break;
          case Type::ParabolicCurve:
            used = std::fabs(a.GetCurveLength() - b.GetCurveLength());
            break;
          case Type::AsymmetricParabolicCurve:
            used = std::max(std::fabs(a.GetLength1() - b.GetLength1()), std::fabs(a.GetLength2() - b.GetLength2()));
            break;
          default:
            break;
        }
        result.curve = std::max(result.curve, used);
        if (used > 1e-6)
          result.changes.push_back(PviName(sent, i) + ": " + CurveText(a) + " came back as " + CurveText(b));
      } else {
        result.curve = std::max(result.curve, curve);
        const std::string before = CurveText(a).empty() ? "no curve" : CurveText(a);
        const std::string after = CurveText(b).empty() ? "no curve" : CurveText(b);
        result.changes.push_back(PviName(sent, i) + ": " + before + " came back as " + after);
      }
      const double moved = std::max(std::fabs(a.GetStation() - b.GetStation()), std::fabs(a.GetElevation() - b.GetElevation()));
      if (moved > 1e-6)
        result.changes.push_back(PviName(sent, i) + " came back at station " + Short(b.GetStation()) + ", elevation " +
                                 Short(b.GetElevation()));
    }
  }
  if (sent.size() >= 2) {
    const double first = sent.front().GetStation();
    const double last = sent.back().GetStation();
    for (const CC3dProfilePoint& p : samples) {
      if (p.GetStation() < first || p.GetStation() > last) continue;
      if (IsMissingSample(sent, p)) {
        if (result.missingSamples++ == 0) result.missingFrom = p.GetStation();
        result.missingTo = p.GetStation();
        continue;
      }
      result.alongProfile = std::max(result.alongProfile, std::fabs(ProfileElevation(sent, p.GetStation()) - p.GetElevation()));
    }
  }
  if (result.missingSamples > 0)
    result.changes.push_back(std::to_string(result.missingSamples) + " of the samples between stations " +
                             Fixed(result.missingFrom, 3) + " and " + Fixed(result.missingTo, 3) +
                             " came back at elevation 0: the module found no elevation there");
  return result;
}

}  // namespace host
