// AcDbPolyline (dbpl.h): the light-weight polyline: 2D vertices in the plane of its normal at its
// elevation, each with the bulge of the segment that starts there (0 straight, else the tangent
// of a quarter of the arc's included angle, positive counter-clockwise).
#pragma once

#if defined(_WIN32)
#  include <dbpl.h>
#else

#include <vector>

#include "platform/acad/dbcurve.h"
#include "platform/acad/gepnt2d.h"

class KD_PLATFORM_API AcDbPolyline : public AcDbCurve {
public:
  ACRX_DECLARE_MEMBERS(AcDbPolyline);
  // num_verts only reserves room; a new polyline has no vertices.
  explicit AcDbPolyline(unsigned int num_verts = 0);
  ~AcDbPolyline() override;

  enum SegType { kLine = 0, kArc = 1, kCoincident = 2, kPoint = 3, kEmpty = 4 };

  // Inserts before index (index == numVerts appends); eInvalidIndex beyond that. Negative widths
  // take the constant width.
  Acad::ErrorStatus addVertexAt(unsigned int index, const AcGePoint2d& pt, double bulge = 0., double startWidth = -1.,
                                double endWidth = -1.);
  Acad::ErrorStatus removeVertexAt(unsigned int index);
  unsigned int numVerts() const { return static_cast<unsigned int>(m_vertices.size()); }
  // In the polyline's plane (OCS x and y).
  Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint2d& pt) const;
  // In world coordinates.
  Acad::ErrorStatus getPointAt(unsigned int index, AcGePoint3d& pt) const;
  Acad::ErrorStatus setPointAt(unsigned int index, const AcGePoint2d& pt);
  Acad::ErrorStatus getBulgeAt(unsigned int index, double& bulge) const;
  Acad::ErrorStatus setBulgeAt(unsigned int index, double bulge);
  Acad::ErrorStatus getWidthsAt(unsigned int index, double& startWidth, double& endWidth) const;
  Acad::ErrorStatus setWidthsAt(unsigned int index, double startWidth, double endWidth);
  // The kind of the segment that starts at index (the last vertex of an open polyline starts
  // none: kEmpty).
  SegType segType(unsigned int index) const;
  // Drops every vertex (reuse false) or all from newSize on.
  void reset(Adesk::Boolean reuse, unsigned int newSize);

  void setClosed(Adesk::Boolean closed);
  double elevation() const { return m_elevation; }
  void setElevation(double elev);
  AcGeVector3d normal() const { return m_normal; }
  void setNormal(const AcGeVector3d& nrm);
  double thickness() const { return m_thickness; }
  Acad::ErrorStatus setThickness(double thickness);
  Acad::ErrorStatus getConstantWidth(double& width) const;
  Acad::ErrorStatus setConstantWidth(double width);

  Adesk::Boolean isClosed() const override { return m_closed; }
  Acad::ErrorStatus getStartParam(double& param) const override;
  Acad::ErrorStatus getEndParam(double& param) const override;
  Acad::ErrorStatus getStartPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getEndPoint(AcGePoint3d& point) const override;
  Acad::ErrorStatus getPointAtParam(double param, AcGePoint3d& point) const override;
  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  Acad::ErrorStatus explode(AcDbVoidPtrArray& entitySet) const override;
  AcRxObject* clone() const override;

private:
  struct Vertex {
    AcGePoint2d point;
    double bulge;
    double startWidth;
    double endWidth;
  };

  std::vector<Vertex> m_vertices;
  bool m_closed = false;
  double m_elevation = 0.0;
  AcGeVector3d m_normal{0.0, 0.0, 1.0};
  double m_thickness = 0.0;
  double m_constantWidth = 0.0;
};

#endif  // !_WIN32
