// AcGeMatrix3d (gemat3d.h): an affine transformation of space as a 4x4 matrix acting on column
// vectors (entry[row][column]; the translation is the last column).
#pragma once

#if defined(_WIN32)
#  include <gemat3d.h>
#else

#include "platform/acad/gepnt3d.h"

class KD_PLATFORM_API AcGeMatrix3d {
public:
  AcGeMatrix3d();  // identity

  static const AcGeMatrix3d kIdentity;

  static AcGeMatrix3d translation(const AcGeVector3d& vec);
  // Rotation by angle (radians, counter-clockwise looking down the axis) about the line through
  // center along axis.
  static AcGeMatrix3d rotation(double angle, const AcGeVector3d& axis,
                               const AcGePoint3d& center = AcGePoint3d::kOrigin);
  static AcGeMatrix3d scaling(double scaleAll, const AcGePoint3d& center = AcGePoint3d::kOrigin);
  // From the plane's coordinate system (the arbitrary-axis system of normal) to world, and back.
  static AcGeMatrix3d planeToWorld(const AcGeVector3d& normal);
  static AcGeMatrix3d worldToPlane(const AcGeVector3d& normal);
  // Maps the world coordinate system onto the system given by origin and axes.
  static AcGeMatrix3d alignCoordSys(const AcGePoint3d& fromOrigin, const AcGeVector3d& fromXAxis,
                                    const AcGeVector3d& fromYAxis, const AcGeVector3d& fromZAxis,
                                    const AcGePoint3d& toOrigin, const AcGeVector3d& toXAxis,
                                    const AcGeVector3d& toYAxis, const AcGeVector3d& toZAxis);

  AcGeMatrix3d& setToIdentity();
  AcGeMatrix3d& setToTranslation(const AcGeVector3d& vec);
  AcGeMatrix3d& setToRotation(double angle, const AcGeVector3d& axis,
                              const AcGePoint3d& center = AcGePoint3d::kOrigin);
  AcGeMatrix3d& setToScaling(double scaleAll, const AcGePoint3d& center = AcGePoint3d::kOrigin);
  // Columns: the axes, then the origin.
  AcGeMatrix3d& setCoordSystem(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                               const AcGeVector3d& yAxis, const AcGeVector3d& zAxis);
  void getCoordSystem(AcGePoint3d& origin, AcGeVector3d& xAxis, AcGeVector3d& yAxis,
                      AcGeVector3d& zAxis) const;
  AcGeMatrix3d& setTranslation(const AcGeVector3d& vec);
  AcGeVector3d translation() const;

  AcGeMatrix3d& preMultBy(const AcGeMatrix3d& leftSide);
  AcGeMatrix3d& postMultBy(const AcGeMatrix3d& rightSide);
  AcGeMatrix3d& setToProduct(const AcGeMatrix3d& mat1, const AcGeMatrix3d& mat2);
  // The inverse; a singular matrix answers itself unchanged (inverse(inv, tol) says false).
  AcGeMatrix3d inverse() const;
  AcGeMatrix3d& invert();
  bool inverse(AcGeMatrix3d& inv, double tol) const;
  bool isSingular(const AcGeTol& tol = AcGeContext::gTol) const;
  AcGeMatrix3d& transposeIt();
  AcGeMatrix3d transpose() const;
  double det() const;
  // The length of the longest of the three axis columns (the scale factor of a uniform scaling).
  double scale() const;
  // True when the linear part is a rotation (or reflection) times one scale factor.
  bool isUniScaledOrtho(const AcGeTol& tol = AcGeContext::gTol) const;
  bool isEqualTo(const AcGeMatrix3d& mat, const AcGeTol& tol = AcGeContext::gTol) const;

  AcGeMatrix3d operator*(const AcGeMatrix3d& mat) const;
  AcGeMatrix3d& operator*=(const AcGeMatrix3d& mat);
  bool operator==(const AcGeMatrix3d& mat) const { return isEqualTo(mat); }
  bool operator!=(const AcGeMatrix3d& mat) const { return !isEqualTo(mat); }
  double operator()(unsigned int row, unsigned int column) const { return entry[row][column]; }
  double& operator()(unsigned int row, unsigned int column) { return entry[row][column]; }

  double entry[4][4];
};

#endif  // !_WIN32
