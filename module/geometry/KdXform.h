// CKdXform: an affine transform of space held as a 4x4 matrix acting on column vectors.
#pragma once

#include <optional>

#include "module/geometry/KdPoint.h"
#include "module/geometry/KdVector.h"

// p' = M * (x, y, z, 1); a vector transforms by the upper-left 3x3 block only. Angles follow
// the arcs' convention: radians, counter-clockwise when seen from the tip of the axis.
class CKdXform {
public:
  // The identity.
  CKdXform();
  CKdXform(const CKdXform&) = default;
  CKdXform& operator=(const CKdXform&) = default;
  virtual ~CKdXform() = default;

  static CKdXform Translation(const CKdVector& offset);
  // Turns about the vertical line through `about`.
  static CKdXform RotationZ(const CKdPoint& about, double angle_rad);
  // Turns about the line through axisPoint along axisDirection (right-hand rule); empty when
  // the direction is zero or not finite.
  static std::optional<CKdXform> RotationAboutAxis(const CKdPoint& axisPoint, const CKdVector& axisDirection,
                                                   double angle_rad);
  // Uniform scaling about a point.
  static CKdXform Scaling(const CKdPoint& about, double factor);
  // Scaling by factor along each axis, about the origin.
  static CKdXform Scaling(double factorX, double factorY, double factorZ);
  // Mirror in the x axis (y changes sign) and in the y axis (x changes sign), as the curves'
  // MirrorX and MirrorY.
  static CKdXform MirrorX();
  static CKdXform MirrorY();

  // Element of the matrix; 0.0 outside 0..3.
  double At(int row, int column) const;
  // The transform that applies `first`, then this one.
  CKdXform operator*(const CKdXform& first) const;
  // Empty when the linear part is singular or the result would not be finite.
  std::optional<CKdXform> Inverse() const;
  // Determinant of the linear (3x3) part.
  double Determinant() const;
  CKdPoint Apply(const CKdPoint& p) const;
  CKdVector Apply(const CKdVector& v) const;

  // Whether horizontal planes stay horizontal and the xy part is a uniform scale times a
  // rotation, possibly with a reflection; relTolerance is relative to the size of that part.
  // On success gives the scale factor and whether the xy plane is reflected.
  bool IsSimilarityXY(double relTolerance, double* scale, bool* reflects) const;
  // Every element within tolerance of the other's.
  bool IsEqual(const CKdXform& other, double tolerance) const;

private:
  double m_m[4][4];
};
