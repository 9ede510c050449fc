// Units of a LandXML document: the linear unit every length is held in, and the angular units
// the file writes angles and directions in (the model itself holds radians).
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace landxml {

enum class LinearUnit {
  Metre,
  Foot,          // international foot, 0.3048 m
  UsSurveyFoot,  // 1200/3937 m
};

enum class AngularUnit {
  Radians,
  Degrees,    // "decimal degrees"
  Grads,      // 400 to the circle
  DegMinSec,  // "decimal dd.mm.ss": 45.3025 is 45 degrees 30 minutes 25 seconds
};

struct CUnits {
  // Unit of every coordinate, length, radius, station and elevation in the model.
  LinearUnit linear = LinearUnit::Metre;
  // Unit the file wrote lengths in (equal to `linear` unless the reader was asked to convert).
  LinearUnit fileLinear = LinearUnit::Metre;
  // Units the file writes angles (deflections, spiral angles) and directions in. The model holds
  // both in radians; the writer converts back to these.
  AngularUnit angular = AngularUnit::Radians;
  AngularUnit direction = AngularUnit::Radians;
  // Set when the file did not say and the schema's default was taken.
  bool linearDefaulted = false;
  bool angularDefaulted = false;
  bool directionDefaulted = false;

  bool IsImperial() const { return linear != LinearUnit::Metre; }
};

// Metres in one of `unit`.
double MetresPer(LinearUnit unit);
// Multiply a length in `from` by this to have it in `to`.
double LinearFactor(LinearUnit from, LinearUnit to);

// Names as LandXML writes them ("meter", "foot", "USSurveyFoot"; "radians", "decimal degrees",
// "grads", "decimal dd.mm.ss").
std::string_view LinearUnitName(LinearUnit unit);
std::string_view AngularUnitName(AngularUnit unit);
// Reads a unit name, ignoring letter case; also takes the common spellings "metre", "feet",
// "degrees", "gon" and "dd.mm.ss". Nothing when the name is not one of these.
std::optional<LinearUnit> ParseLinearUnit(std::string_view name);
std::optional<AngularUnit> ParseAngularUnit(std::string_view name);

// An angle written in `unit` as radians. Nothing for a dd.mmss value whose minutes or seconds
// are 60 or more, or for a value that is not finite.
std::optional<double> AngleToRadians(double value, AngularUnit unit);
// Radians as the value to write in `unit`; for dd.mmss the seconds carry into minutes and
// degrees so that no field reaches 60.
double AngleFromRadians(double radians, AngularUnit unit);

}  // namespace landxml
