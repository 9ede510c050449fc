// ICivil3dSurface: the host's handle on one TIN surface of the active drawing.
//
// Made by ICivil3dObject::GetSurface; owned by the host, deleted through the virtual destructor
// (slot 0). Application thread only. Slot order is frozen.
#pragma once

#include <set>

#include "module/interface/C3dRecords.h"

class ICivil3dSurface {
public:
  virtual ~ICivil3dSurface() {}  // 0
  virtual bool SetPoints(/*in*/ const CC3dPoint* points, int count) = 0;  // 1
  virtual bool DeletePoints() = 0;                                        // 2
  virtual bool Rebuild() = 0;                                             // 3
  virtual long long GetSessionId() = 0;                                   // 4
  // *curves is the host's until it calls ICivil3dObject::FreeCurves.
  virtual bool GetBoundary(/*out*/ CC3dCurve** curves, /*out*/ int* count) = 0;  // 5
  virtual bool GetIntersectionWithVector(/*in*/ const CC3dPoint& from, /*in*/ const CC3dPoint& direction,
                                         /*out*/ CC3dPoint& hit) = 0;  // 6
  // *points is the host's until it calls ICivil3dObject::FreePoints.
  virtual bool SampleElevations(/*in*/ const CC3dPoint& start, /*in*/ const CC3dPoint& end,
                                /*out*/ CC3dPoint** points, /*out*/ int* count) = 0;  // 7
  virtual bool SetBoundary(/*in*/ const CC3dCurve* curves, int count) = 0;            // 8
  virtual bool SetVoid(/*in*/ const wchar_t* name, /*in*/ const CC3dCurve* curves, int count) = 0;  // 9
  virtual bool DeleteBoundary() = 0;                                                  // 10
  virtual bool SetName(/*in*/ const wchar_t* name) = 0;                               // 11
  virtual int NumOfTriangles() = 0;                                                   // 12
  // Caller-allocated buffers sized from NumOfTriangles: distinct corners into points, and for
  // each triangle the indices of its three corners.
  virtual bool GetTriangles(/*out*/ CC3dPoint* points, /*out*/ int* numPoints, /*out*/ int* cornerA,
                            /*out*/ int* cornerB, /*out*/ int* cornerC, int numTriangles) = 0;  // 13
  virtual bool PasteSurface(/*in*/ const wchar_t* name) = 0;        // 14
  virtual bool AddBreakline(/*in*/ const CC3dCurve* curves, int count) = 0;  // 15
  virtual bool DeleteBreaklines() = 0;                                       // 16
  // Session ids of the drawing entities this surface drew (boundaries, breaklines).
  virtual std::set<unsigned long long> getAssetsSessionIds() = 0;  // 17

protected:
  ICivil3dSurface() {}
};
