#include "landxml/Units.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace landxml {
namespace {

bool SameName(std::string_view a, std::string_view b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    auto lower = [](char c) { return (c >= 'A' && c <= 'Z') ? static_cast<char>(c - 'A' + 'a') : c; };
    if (lower(a[i]) != lower(b[i])) return false;
  }
  return true;
}

std::string_view Trimmed(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t' || s.front() == '\r' || s.front() == '\n'))
    s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r' || s.back() == '\n'))
    s.remove_suffix(1);
  return s;
}

// A dd.mmss minute field computed as 29.9999999997 is 30: writers round to their last digit.
constexpr double kMinuteFieldSlack = 1e-7;

}  // namespace

double MetresPer(LinearUnit unit) {
  switch (unit) {
    case LinearUnit::Metre:
      return 1.0;
    case LinearUnit::Foot:
      return 0.3048;
    case LinearUnit::UsSurveyFoot:
      return 1200.0 / 3937.0;
  }
  return 1.0;
}

double LinearFactor(LinearUnit from, LinearUnit to) {
  if (from == to) return 1.0;
  return MetresPer(from) / MetresPer(to);
}

std::string_view LinearUnitName(LinearUnit unit) {
  switch (unit) {
    case LinearUnit::Metre:
      return "meter";
    case LinearUnit::Foot:
      return "foot";
    case LinearUnit::UsSurveyFoot:
      return "USSurveyFoot";
  }
  return "meter";
}

std::string_view AngularUnitName(AngularUnit unit) {
  switch (unit) {
    case AngularUnit::Radians:
      return "radians";
    case AngularUnit::Degrees:
      return "decimal degrees";
    case AngularUnit::Grads:
      return "grads";
    case AngularUnit::DegMinSec:
      return "decimal dd.mm.ss";
  }
  return "radians";
}

std::optional<LinearUnit> ParseLinearUnit(std::string_view name) {
  name = Trimmed(name);
  for (std::string_view n : {"meter", "metre", "meters", "metres"})
    if (SameName(name, n)) return LinearUnit::Metre;
  for (std::string_view n : {"foot", "feet", "internationalFoot"})
    if (SameName(name, n)) return LinearUnit::Foot;
  for (std::string_view n : {"USSurveyFoot", "USSurveyFeet", "surveyFoot"})
    if (SameName(name, n)) return LinearUnit::UsSurveyFoot;
  return std::nullopt;
}

std::optional<AngularUnit> ParseAngularUnit(std::string_view name) {
  name = Trimmed(name);
  for (std::string_view n : {"radians", "radian"})
    if (SameName(name, n)) return AngularUnit::Radians;
  for (std::string_view n : {"decimal degrees", "degrees", "degree"})
    if (SameName(name, n)) return AngularUnit::Degrees;
  for (std::string_view n : {"grads", "grad", "gon", "gons"})
    if (SameName(name, n)) return AngularUnit::Grads;
  for (std::string_view n : {"decimal dd.mm.ss", "dd.mm.ss", "dd.mmss"})
    if (SameName(name, n)) return AngularUnit::DegMinSec;
  return std::nullopt;
}

std::optional<double> AngleToRadians(double value, AngularUnit unit) {
  using std::numbers::pi;
  if (!std::isfinite(value)) return std::nullopt;
  switch (unit) {
    case AngularUnit::Radians:
      return value;
    case AngularUnit::Degrees:
      return value * (pi / 180.0);
    case AngularUnit::Grads:
      return value * (pi / 200.0);
    case AngularUnit::DegMinSec: {
      const double magnitude = std::fabs(value);
      const double degrees = std::floor(magnitude);
      const double minuteField = (magnitude - degrees) * 100.0;
      const double minutes = std::floor(minuteField + kMinuteFieldSlack);
      const double seconds = std::max(0.0, (minuteField - minutes) * 100.0);
      if (minutes >= 60.0 || seconds >= 60.0) return std::nullopt;
      const double decimal = degrees + minutes / 60.0 + seconds / 3600.0;
      return std::copysign(decimal * (pi / 180.0), value);
    }
  }
  return std::nullopt;
}

double AngleFromRadians(double radians, AngularUnit unit) {
  using std::numbers::pi;
  switch (unit) {
    case AngularUnit::Radians:
      return radians;
    case AngularUnit::Degrees:
      return radians * (180.0 / pi);
    case AngularUnit::Grads:
      return radians * (200.0 / pi);
    case AngularUnit::DegMinSec: {
      const double decimal = std::fabs(radians) * (180.0 / pi);
      double degrees = std::floor(decimal);
      const double minuteValue = (decimal - degrees) * 60.0;
      double minutes = std::floor(minuteValue);
      double seconds = (minuteValue - minutes) * 60.0;
      if (seconds >= 60.0) {
        seconds -= 60.0;
        minutes += 1.0;
      }
      if (minutes >= 60.0) {
        minutes -= 60.0;
        degrees += 1.0;
      }
      return std::copysign(degrees + minutes / 100.0 + seconds / 10000.0, radians);
    }
  }
  return radians;
}

}  // namespace landxml
