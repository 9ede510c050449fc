// One geometric piece of an alignment: a tangent (straight line), a circular arc or a clothoid
// spiral, parameterised by the distance s from its start. It is what Civil 3D calls an
// alignment curve (IAeccAlignmentCurve): a simple entity holds one, a spiral group several.
#pragma once

#include <optional>

#include "headless/aecc/model/Clothoid.h"
#include "headless/aecc/model/LandTypes.h"

namespace headless::land {

enum class CurveKind { Tangent, Arc, Spiral };
enum class SpiralDirection { Left, Right };  // the side the spiral turns to, seen along the alignment
enum class SpiralType { Clothoid };           // the only spiral this model computes

class KD_PLATFORM_API AlignmentCurve {
public:
  // A tangent from start to end; refused when they are closer than kPointTolerance.
  static Outcome<AlignmentCurve> MakeTangent(Point2 start, Point2 end);
  // The arc from start through middle to end: the middle point decides the side (clockwise when
  // start, middle, end turn clockwise). Refuses coincident points (kPointTolerance) and a middle
  // point on the chord's line (kCollinearRatio).
  static Outcome<AlignmentCurve> MakeArcThroughPoints(Point2 start, Point2 middle, Point2 end);
  // The arc about centre from start to end in the given rotation (LandXML's form). The radius is
  // |start - centre|; end may be off that circle by up to radiusTolerance (drawing units) and is
  // kept as given. Refuses start == end (no full circles) and a centre on the start point.
  static Outcome<AlignmentCurve> MakeArcAboutCentre(Point2 start, Point2 centre, Point2 end, bool clockwise,
                                                    double radiusTolerance = 1e-6);
  // The arc leaving start in the given direction with radius and length (a group's arc, or an
  // arc continuing a chain).
  static Outcome<AlignmentCurve> MakeArcFromDirection(Point2 start, double startDirectionRad, double radius,
                                                      double length, bool clockwise);
  // A clothoid leaving start in the given direction. A radius of +infinity is a tangent's zero
  // curvature; otherwise radii must be positive and finite, and the two must differ.
  static Outcome<AlignmentCurve> MakeSpiral(Point2 start, double startDirectionRad, double length, double radiusIn,
                                            double radiusOut, SpiralDirection direction);

  CurveKind Kind() const { return kind_; }
  double Length() const { return length_; }
  Point2 StartPoint() const { return start_; }
  Point2 EndPoint() const { return end_; }
  double StartDirection() const { return DirectionAt(0.0); }  // radians counter-clockwise from +x
  double EndDirection() const { return DirectionAt(length_); }

  // At distance s from the start, clamped to [0, Length()]; the ends are the stored points.
  Point2 PointAt(double s) const;
  double DirectionAt(double s) const;
  double CurvatureAt(double s) const;  // signed: positive turns left
  // The distance along the curve of its point nearest to p.
  double ClosestDistance(Point2 p) const;

  // Arcs (zero or false for the other kinds).
  Point2 Centre() const { return centre_; }
  double Radius() const { return radius_; }
  bool Clockwise() const { return sweep_ < 0.0; }
  double Delta() const { return std::abs(sweep_); }       // the angle the arc turns through, radians
  double StartAngle() const { return startAngle_; }        // of the start point about the centre

  // Spirals (infinity, zero or Left for the other kinds). A zero curvature reads as +infinity.
  double RadiusIn() const;
  double RadiusOut() const;
  double A() const { return spiral_ ? spiral_->A() : 0.0; }
  SpiralDirection Direction() const;
  SpiralType Type() const { return SpiralType::Clothoid; }
  const Clothoid* Spiral() const { return spiral_ ? &*spiral_ : nullptr; }

private:
  AlignmentCurve() = default;

  CurveKind kind_ = CurveKind::Tangent;
  Point2 start_;
  Point2 end_;
  double length_ = 0.0;
  double direction_ = 0.0;   // tangents
  Point2 centre_;            // arcs
  double radius_ = 0.0;
  double startAngle_ = 0.0;
  double sweep_ = 0.0;       // signed, positive counter-clockwise
  std::optional<Clothoid> spiral_;
};

}  // namespace headless::land
