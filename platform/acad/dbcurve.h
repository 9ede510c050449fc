// AcDbCurve (dbcurve.h): the base of the entities that are one curve (lines, arcs, circles,
// ellipses, polylines), with their parametrisation. A line's parameter is the distance from its
// start, an arc's and a circle's the angle, an ellipse's its own parameter, a polyline's the
// vertex index (segment i runs from i to i + 1).
#pragma once

#if defined(_WIN32)
#  include <dbcurve.h>
#else

#include "platform/acad/dbmain.h"

class KD_PLATFORM_API AcDbCurve : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbCurve);
  ~AcDbCurve() override;

  virtual Adesk::Boolean isClosed() const;
  virtual Acad::ErrorStatus getStartParam(double& param) const;
  virtual Acad::ErrorStatus getEndParam(double& param) const;
  virtual Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const;
  virtual Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const;
  // The point at a parameter between the start and end parameters (eInvalidInput outside).
  virtual Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const;

protected:
  AcDbCurve();
  AcDbCurve(const AcDbCurve& other);
};

#endif  // !_WIN32
