// An entity's geometry as simple pieces in world coordinates: line segments, conic arcs (circles,
// arcs and ellipses, as a centre and two axis vectors, which any affine placement keeps in
// shape) and filled areas. Extents and window selection are computed on pieces, so that every
// entity kind, placed by any chain of block references, answers both from its real geometry.
#pragma once

#include <vector>

#include "platform/acad/dbmain.h"
#include "platform/acad/gepnt2d.h"

namespace headless::geom {

constexpr double kTwoPi = 6.283185307179586476925;

struct Segment {
  AcGePoint3d a;
  AcGePoint3d b;
};

// center + cos(t) u + sin(t) v for t from t0 to t1 (t1 > t0; a full turn or more is closed).
struct Conic {
  AcGePoint3d center;
  AcGeVector3d u;
  AcGeVector3d v;
  double t0 = 0.0;
  double t1 = kTwoPi;

  AcGePoint3d at(double t) const;
  bool closed() const { return t1 - t0 >= kTwoPi - 1e-12; }
};

// A filled region: closed rings, inside by the even-odd rule in the world x-y plane. Only for
// "is this point inside": its outline comes as segments and conics of its own.
struct Area {
  std::vector<std::vector<AcGePoint3d>> rings;
};

struct Pieces {
  std::vector<Segment> segments;
  std::vector<Conic> conics;
  std::vector<Area> areas;

  bool empty() const { return segments.empty() && conics.empty() && areas.empty(); }
  void transformBy(const AcGeMatrix3d& xform);
  void append(Pieces&& other);
};

// A selection rectangle in the world x-y plane.
struct Window {
  double xmin;
  double ymin;
  double xmax;
  double ymax;
};

// Box of the pieces; false when there are none.
bool Extents(const Pieces& pieces, AcDbExtents& extents);
// Some piece lies inside or crosses the window, or the window lies in an area.
bool Crosses(const Pieces& pieces, const Window& window);
// Every piece lies inside the window.
bool Within(const Pieces& pieces, const Window& window);

// Builders. The arc runs counter-clockwise about the normal of the plane whose coordinate system
// (OCS) is ocs, from startAngle by sweep (negative: clockwise).
void AddArc(Pieces& pieces, const AcGeMatrix3d& ocs, const AcGePoint3d& ocsCenter, double radius, double startAngle,
            double sweep);
// The segment from a to b (OCS x and y at elevation) with the given bulge.
void AddBulgeSegment(Pieces& pieces, const AcGeMatrix3d& ocs, double elevation, const AcGePoint2d& a,
                     const AcGePoint2d& b, double bulge);
// A closed outline (polygon) as segments and as an area.
void AddOutline(Pieces& pieces, const std::vector<AcGePoint3d>& corners, bool filled);

// The circular arc a bulge stands for between a and b: centre, radius, start angle and signed
// sweep. False for a straight segment (bulge 0 or a and b equal).
struct BulgeArc {
  AcGePoint2d center;
  double radius;
  double startAngle;
  double sweep;
};
bool ArcOfBulge(const AcGePoint2d& a, const AcGePoint2d& b, double bulge, BulgeArc& arc);

// The pieces of an entity placed by xform (identity for its own place). Block references bring
// their block's entities; kinds the platform does not know give what they explode into, else
// their extents box. eSelfReference for a block that contains itself.
Acad::ErrorStatus Collect(const AcDbEntity& entity, const AcGeMatrix3d& xform, Pieces& out, int depth = 0);
// getGeomExtents of every platform entity: the box of its pieces (eInvalidExtents for none).
Acad::ErrorStatus ExtentsOf(const AcDbEntity& entity, AcDbExtents& extents);

}  // namespace headless::geom
