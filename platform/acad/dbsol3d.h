// AcDb3dSolid (dbsol3d.h): a solid body. The platform builds frustums (cylinders and cones) only:
// createFrustum makes one on the origin with its axis along +Z, from z = -height/2 to +height/2,
// which transformBy then places.
#pragma once

#if defined(_WIN32)
#  include <dbsol3d.h>
#else

#include "platform/acad/dbmain.h"

class KD_PLATFORM_API AcDb3dSolid : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDb3dSolid);
  AcDb3dSolid();
  ~AcDb3dSolid() override;

  // The bottom is an ellipse of radii xRadius (along X) and yRadius, the top one of radius
  // topXRadius along X and yRadius * topXRadius / xRadius (topXRadius == xRadius: a cylinder,
  // 0: a cone). eInvalidInput unless height and the bottom radii are positive and topXRadius is
  // not negative. Replaces any body the solid had.
  Acad::ErrorStatus createFrustum(double height, double xRadius, double yRadius, double topXRadius);
  // True while the solid has no body.
  bool isNull() const { return !m_hasBody; }

  // eInvalidExtents for a solid without a body.
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  // Rigid motions and uniform scaling; eCannotScaleNonUniformly otherwise.
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  AcRxObject* clone() const override;

private:
  friend struct AcDbImpAccess;
  bool m_hasBody = false;
  double m_height = 0.0;
  double m_xRadius = 0.0;
  double m_yRadius = 0.0;
  double m_topXRadius = 0.0;
  AcGeMatrix3d m_placement;  // body coordinates to world
};

#endif  // !_WIN32
