// AcDbEllipse (dbelipse.h): an elliptical arc. A point at parameter t is
// center + cos(t) majorAxis + sin(t) minorAxis, with minorAxis = radiusRatio (normal x majorAxis).
// Angles are measured from the major axis counter-clockwise about the normal; the parameter of
// an angle a is atan2(sin a, radiusRatio cos a). Start and end angles equal (or a full turn
// apart) make a closed ellipse.
#pragma once

#if defined(_WIN32)
#  include <dbelipse.h>
#else

#include "platform/acad/dbcurve.h"

class KD_PLATFORM_API AcDbEllipse : public AcDbCurve {
public:
  ACRX_DECLARE_MEMBERS(AcDbEllipse);
  AcDbEllipse();
  // An ellipse that set() would refuse is left as the default unit circle.
  AcDbEllipse(const AcGePoint3d& center, const AcGeVector3d& unitNormal, const AcGeVector3d& majorAxis,
              double radiusRatio, double startAngle = 0.0, double endAngle = 6.28318530717958647692);
  ~AcDbEllipse() override;

  // eInvalidInput when the major axis is zero or not perpendicular to the normal, or the ratio
  // is not in (0, 1].
  Acad::ErrorStatus set(const AcGePoint3d& center, const AcGeVector3d& unitNormal, const AcGeVector3d& majorAxis,
                        double radiusRatio, double startAngle = 0.0, double endAngle = 6.28318530717958647692);

  AcGePoint3d center() const { return m_center; }
  Acad::ErrorStatus setCenter(const AcGePoint3d& center);
  AcGeVector3d normal() const { return m_normal; }
  AcGeVector3d majorAxis() const { return m_majorAxis; }
  AcGeVector3d minorAxis() const;
  double radiusRatio() const { return m_radiusRatio; }
  Acad::ErrorStatus setRadiusRatio(double ratio);
  double startAngle() const { return m_startAngle; }
  Acad::ErrorStatus setStartAngle(double startAngle);
  // In [0, 2 pi), except a closed ellipse's: start angle + 2 pi.
  double endAngle() const;
  Acad::ErrorStatus setEndAngle(double endAngle);
  double paramAtAngle(double angle) const;
  double angleAtParam(double param) const;

  Adesk::Boolean isClosed() const override;
  // Start parameter in [0, 2 pi); the end parameter is above it, by at most 2 pi.
  Acad::ErrorStatus getStartParam(double& param) const override;
  Acad::ErrorStatus getEndParam(double& param) const override;
  Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  AcRxObject* clone() const override;

private:
  AcGePoint3d m_center;
  AcGeVector3d m_normal{0.0, 0.0, 1.0};
  AcGeVector3d m_majorAxis{1.0, 0.0, 0.0};
  double m_radiusRatio = 1.0;
  double m_startAngle = 0.0;
  double m_endAngle = 6.28318530717958647692;  // start angle + sweep
};

#endif  // !_WIN32
