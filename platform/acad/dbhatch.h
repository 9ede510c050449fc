// AcDbHatch (dbhatch.h): a filled or patterned region bounded by loops in the plane of its normal
// at its elevation. Loop edges are 2D lines and circular arcs in that plane (OCS).
//
// Pattern lines are not generated: a hatch is its boundary and its pattern's name, scale and
// angle. evaluateHatch checks that every loop closes.
#pragma once

#if defined(_WIN32)
#  include <dbhatch.h>
#else

#include <string>
#include <vector>

#include "platform/acad/dbmain.h"
#include "platform/acad/gearc2d.h"
#include "platform/acad/gedblar.h"
#include "platform/acad/geintarr.h"
#include "platform/acad/gelnsg2d.h"
#include "platform/acad/gept2dar.h"
#include "platform/acad/gevptar.h"

class KD_PLATFORM_API AcDbHatch : public AcDbEntity {
public:
  ACRX_DECLARE_MEMBERS(AcDbHatch);
  AcDbHatch();
  ~AcDbHatch() override;

  enum HatchPatternType { kUserDefined = 0, kPreDefined = 1, kCustomDefined = 2 };
  enum HatchStyle { kNormal = 0, kOuter = 1, kIgnore = 2 };
  enum HatchLoopType {
    kDefault = 0,
    kExternal = 1,
    kPolyline = 2,
    kDerived = 4,
    kTextbox = 8,
    kOutermost = 0x10,
    kNotClosed = 0x20,
    kSelfIntersecting = 0x40,
    kTextIsland = 0x80,
    kDuplicate = 0x100,
  };
  enum HatchEdgeType { kLine = 1, kCirArc = 2, kEllArc = 3, kSpline = 4 };

  HatchPatternType patternType() const { return m_patternType; }
  const ACHAR* patternName() const { return m_patternName.c_str(); }
  // eInvalidInput for an empty name.
  Acad::ErrorStatus setPattern(HatchPatternType patType, const ACHAR* patName);
  bool isSolidFill() const;
  double patternAngle() const { return m_patternAngle; }
  Acad::ErrorStatus setPatternAngle(double angle);
  double patternScale() const { return m_patternScale; }
  // eInvalidInput unless positive.
  Acad::ErrorStatus setPatternScale(double scale);
  HatchStyle hatchStyle() const { return m_style; }
  Acad::ErrorStatus setHatchStyle(HatchStyle hstyle);
  double elevation() const { return m_elevation; }
  Acad::ErrorStatus setElevation(double elevation);
  AcGeVector3d normal() const { return m_normal; }
  Acad::ErrorStatus setNormal(const AcGeVector3d& normal);

  int numLoops() const { return static_cast<int>(m_loops.size()); }
  Adesk::Int32 loopTypeAt(int loopIndex) const;
  // Appends a loop of edges: edgeTypes[i] says what edgePtrs[i] points to (kLine:
  // AcGeLineSeg2d, kCirArc: AcGeCircArc2d). The edges are copied; the caller keeps its own.
  // eInvalidInput when the arrays differ in length or are empty, eNotImplementedYet for
  // elliptical and spline edges.
  Acad::ErrorStatus appendLoop(Adesk::Int32 loopType, const AcGeVoidPointerArray& edgePtrs,
                               const AcGeIntArray& edgeTypes);
  // Appends a polyline loop (kPolyline is added to loopType): bulges empty or one per vertex.
  Acad::ErrorStatus appendLoop(Adesk::Int32 loopType, const AcGePoint2dArray& vertices, const AcGeDoubleArray& bulges);
  Acad::ErrorStatus insertLoopAt(int loopIndex, Adesk::Int32 loopType, const AcGeVoidPointerArray& edgePtrs,
                                 const AcGeIntArray& edgeTypes);
  // The loop as edges: new AcGeLineSeg2d and AcGeCircArc2d objects that the caller deletes (a
  // polyline loop is given as its segments). eInvalidIndex for a bad index.
  Acad::ErrorStatus getLoopAt(int loopIndex, Adesk::Int32& loopType, AcGeVoidPointerArray& edgePtrs,
                              AcGeIntArray& edgeTypes) const;
  // The loop as vertices and bulges; eInvalidInput when its edges do not join end to start.
  Acad::ErrorStatus getLoopAt(int loopIndex, Adesk::Int32& loopType, AcGePoint2dArray& vertices,
                              AcGeDoubleArray& bulges) const;
  Acad::ErrorStatus removeLoopAt(int loopIndex);
  // eInvalidInput when a loop does not close (within the global point tolerance, scaled to the
  // loop's size) or the hatch has no loop.
  Acad::ErrorStatus evaluateHatch(bool underEstimateNumLines = false);

  Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const override;
  // Rigid motions and uniform scaling; eCannotScaleNonUniformly otherwise.
  Acad::ErrorStatus transformBy(const AcGeMatrix3d& xform) override;
  AcRxObject* clone() const override;

  // One edge in OCS: a line (start, end) or a circular arc (center, radius, start angle, sweep;
  // sweep negative for clockwise).
  struct Edge {
    bool isArc;
    AcGePoint2d start;
    AcGePoint2d end;
    AcGePoint2d center;
    double radius;
    double startAngle;
    double sweep;
  };
  struct Loop {
    Adesk::Int32 type;
    std::vector<Edge> edges;
  };
  // The platform's own (not an ObjectARX member): the loops as stored, for headless readers that
  // need the exact geometry.
  const std::vector<Loop>& loops() const { return m_loops; }

private:
  static Acad::ErrorStatus makeLoop(Adesk::Int32 loopType, const AcGeVoidPointerArray& edgePtrs,
                                    const AcGeIntArray& edgeTypes, Loop& loop);

  HatchPatternType m_patternType = kPreDefined;
  std::wstring m_patternName = L"SOLID";
  double m_patternAngle = 0.0;
  double m_patternScale = 1.0;
  HatchStyle m_style = kNormal;
  double m_elevation = 0.0;
  AcGeVector3d m_normal{0.0, 0.0, 1.0};
  std::vector<Loop> m_loops;
};

#endif  // !_WIN32
