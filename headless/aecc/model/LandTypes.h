// Plain values shared by the land model: plane points, the named tolerances, the reasons an
// operation is refused, and the result type that carries either a value or such a reason.
// Nothing here knows COM; the adapters turn a LandError into the HRESULT Civil 3D would give.
#pragma once

#include <cmath>
#include <numbers>
#include <optional>
#include <ostream>
#include <utility>

#include "platform/platform_api.h"

namespace headless::land {

// Two points closer than this (drawing units) are one point: a tangent this short, or a
// three-point arc with two such points, is refused.
inline constexpr double kPointTolerance = 1e-9;
// A middle point whose distance from the chord is below this fraction of the chord is on the
// chord: the arc through it would have a radius above ~1e8 chords.
inline constexpr double kCollinearRatio = 1e-9;
// Stations closer than this (drawing units) are one station: the geometric tolerance of the
// module, far below its 0.001 PVI snap, and where a grade over the gap would be meaningless.
inline constexpr double kStationTolerance = 1e-6;

inline constexpr double kPi = std::numbers::pi;
inline constexpr double kTwoPi = 2.0 * std::numbers::pi;

struct Point2 {
  double x = 0.0;
  double y = 0.0;
  friend bool operator==(const Point2&, const Point2&) = default;
};

inline Point2 operator+(Point2 a, Point2 b) { return {a.x + b.x, a.y + b.y}; }
inline Point2 operator-(Point2 a, Point2 b) { return {a.x - b.x, a.y - b.y}; }
inline Point2 operator*(double k, Point2 a) { return {k * a.x, k * a.y}; }
inline double Dot(Point2 a, Point2 b) { return a.x * b.x + a.y * b.y; }
inline double Cross(Point2 a, Point2 b) { return a.x * b.y - a.y * b.x; }
inline double Distance(Point2 a, Point2 b) { return std::hypot(a.x - b.x, a.y - b.y); }
// Unit vector at `angleRad` counter-clockwise from +x.
inline Point2 UnitAt(double angleRad) { return {std::cos(angleRad), std::sin(angleRad)}; }
inline bool IsFinite(Point2 p) { return std::isfinite(p.x) && std::isfinite(p.y); }
// `angleRad` brought into (-pi, pi].
inline double WrapAngle(double angleRad) { return std::remainder(angleRad, kTwoPi); }

inline std::ostream& operator<<(std::ostream& out, Point2 p) { return out << '(' << p.x << ", " << p.y << ')'; }

enum class LandError {
  None,
  InvalidArgument,   // NaN or infinite input, non-positive length or radius, a kind that does not fit
  Degenerate,        // coincident or collinear points
  NotFound,          // no entity with that id, no PVI at that index
  Duplicate,         // a second PVI or station equation at an existing station
  OutOfRange,        // a station or distance outside the alignment's or the profile's range
  Discontinuous,     // the parts given for a spiral group do not join
  CurveDoesNotFit,   // a vertical curve reaching past a neighbouring PVI or into the next curve
  Empty,             // the alignment or profile has nothing to answer with
};

inline const char* LandErrorText(LandError error) {
  switch (error) {
    case LandError::None: return "no error";
    case LandError::InvalidArgument: return "invalid argument";
    case LandError::Degenerate: return "degenerate geometry";
    case LandError::NotFound: return "not found";
    case LandError::Duplicate: return "duplicate station";
    case LandError::OutOfRange: return "outside the station range";
    case LandError::Discontinuous: return "parts do not join";
    case LandError::CurveDoesNotFit: return "vertical curve does not fit between its neighbours";
    case LandError::Empty: return "empty";
  }
  return "unknown error";
}

// Either a value or the reason there is none. Never throws: Value() on a failed outcome is a
// precondition violation (checked by std::optional in debug builds of the standard library).
template <class T>
class Outcome {
public:
  Outcome(T value) : value_(std::move(value)) {}  // NOLINT: implicit on purpose, as a return value
  Outcome(LandError error) : error_(error == LandError::None ? LandError::InvalidArgument : error) {}  // NOLINT

  bool Ok() const noexcept { return value_.has_value(); }
  explicit operator bool() const noexcept { return Ok(); }
  LandError Error() const noexcept { return error_; }
  const T& Value() const& { return *value_; }
  T& Value() & { return *value_; }
  T&& Value() && { return std::move(*value_); }
  T ValueOr(T fallback) const { return value_ ? *value_ : fallback; }

private:
  std::optional<T> value_;
  LandError error_ = LandError::None;
};

}  // namespace headless::land
