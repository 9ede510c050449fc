// An entity of an alignment as Civil 3D lists it: a tangent, an arc, a spiral, or a spiral group
// (spiral-curve-spiral and its relatives) that holds its parts in order and is itself one entity
// with one id and one type code.
#pragma once

#include <span>
#include <vector>

#include "headless/aecc/model/AlignmentCurve.h"
#include "headless/aecc/model/LandTypes.h"

namespace headless::land {

// Civil 3D's AeccAlignmentEntityType codes. SpiralSpiral has no documented value; 14 follows
// the .NET enumeration's numbering (SpiralSpiral = 256 + 14).
enum class AlignmentEntityType : int {
  Tangent = 1,
  Arc = 2,
  Spiral = 3,
  SpiralCurveSpiral = 4,
  SpiralTangentSpiral = 5,
  SpiralTangent = 6,
  TangentSpiral = 7,
  SpiralCurve = 8,
  CurveSpiral = 9,
  SpiralSpiralCurve = 10,
  CurveSpiralSpiral = 11,
  SpiralCurveSpiralCurveSpiral = 12,
  SpiralCurveSpiralSpiralCurveSpiral = 13,
  SpiralSpiral = 14,
};

// The kinds of the parts an entity of this type holds, in order: one for a simple entity, two
// to six for a group; empty for a value outside the enumeration.
KD_PLATFORM_API std::span<const CurveKind> EntityLayout(AlignmentEntityType type);
inline bool IsGroupType(AlignmentEntityType type) { return EntityLayout(type).size() > 1; }

// How closely the parts of a group must join: position (drawing units), heading (radians) and
// curvature (relative to the larger of the two, so a tangent meets only a zero-curvature end).
struct GroupTolerance {
  double position = 1e-6;
  double directionRad = 1e-6;
  double curvatureRatio = 1e-6;
};

class KD_PLATFORM_API AlignmentEntity {
public:
  // A tangent, arc or spiral entity around one curve.
  static AlignmentEntity MakeSimple(AlignmentCurve curve);
  // A group of the given type. Refuses (InvalidArgument) parts whose kinds do not follow the
  // type's layout, and (Discontinuous) parts that do not join in position, heading and curvature.
  static Outcome<AlignmentEntity> MakeGroup(AlignmentEntityType type, std::vector<AlignmentCurve> parts,
                                            const GroupTolerance& tolerance = {});

  // Unique within its alignment; 0 until the alignment takes the entity.
  int Id() const { return id_; }
  AlignmentEntityType Type() const { return type_; }
  bool IsGroup() const { return parts_.size() > 1; }
  // Parts in order; a simple entity has one (its own curve). Parts carry no id of their own.
  int SubEntityCount() const { return static_cast<int>(parts_.size()); }
  const AlignmentCurve* SubEntity(int index) const;
  std::span<const AlignmentCurve> Parts() const { return parts_; }

  double Length() const { return length_; }
  Point2 StartPoint() const { return parts_.front().StartPoint(); }
  Point2 EndPoint() const { return parts_.back().EndPoint(); }
  double StartDirection() const { return parts_.front().StartDirection(); }
  double EndDirection() const { return parts_.back().EndDirection(); }

  // At distance s from the entity's start (clamped), through the part that holds it.
  Point2 PointAt(double s) const;
  double DirectionAt(double s) const;
  // The distance along the entity of its point nearest to p.
  double ClosestDistance(Point2 p) const;

private:
  friend class AlignmentGeometry;
  AlignmentEntity(AlignmentEntityType type, std::vector<AlignmentCurve> parts);
  // The part holding distance s, and s measured from that part's start.
  std::pair<const AlignmentCurve*, double> Locate(double s) const;

  int id_ = 0;
  AlignmentEntityType type_;
  std::vector<AlignmentCurve> parts_;
  double length_ = 0.0;
};

}  // namespace headless::land
