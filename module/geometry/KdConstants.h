// Constants and angle helpers shared by the geometry kit.
// Angles are radians counter-clockwise from +x; a sweep is signed, positive counter-clockwise.
#pragma once

namespace kdgeo {

inline constexpr double kPi = 3.141592653589793;
inline constexpr double kHalfPi = 1.5707963267948966;
inline constexpr double kTwoPi = 6.283185307179586;
// Geometric tolerance in drawing units (and radians for angles) of every tolerant comparison.
inline constexpr double kTolerance = 1e-6;

// fmod(angle, 2*pi) unless the angle lies within kTolerance of 2*pi: exactly one full turn
// survives, and a negative angle keeps its sign.
double ReduceKeepingFullTurn(double angle_rad);

// The angle brought into [0, 2*pi) by whole turns. Non-finite input comes back as NaN.
double NormalizeAngle(double angle_rad);

// Signed sweep from startAngle to endAngle travelling counter-clockwise (>= 0) or clockwise
// (<= 0). The magnitude lies in [0, 2*pi]; equal angles give a zero sweep, never a full turn.
double SweepFromAngles(double startAngle_rad, double endAngle_rad, bool counterClockwise);

}  // namespace kdgeo
