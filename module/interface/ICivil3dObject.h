// ICivil3dObject: the session object, the host's single entry into the module.
//
// Made by GetCivil3dObject, destroyed by FreeCivil3dObject; the host calls Initialize (slot 0)
// before anything else. All calls come from the AutoCAD application thread.
//
// Ownership across the boundary:
// - strings passed in are the caller's, zero-terminated wchar_t text;
// - every array returned through an out-parameter is allocated by the module with array new and
//   is the host's until it passes it back to the matching Free... slot (29 to 35), which frees
//   it and nulls the host's pointer; the Free... slots never test the outer pointer for null;
// - handles returned by Get... (alignment, surface, corridor) are the host's, deleted through
//   their virtual destructor.
// Failures are false, 0 or null; the corridor-building slots (16 to 28) return nothing and let
// the corridor engine's exceptions pass to the host.
//
// The slot numbers are those of the host's compiler (Microsoft's C++ ABI): one slot for the
// virtual destructor, and overloads of one name grouped at the first declaration's place in
// reverse order of declaration. The overload pairs are therefore declared in opposite orders
// for the two ABIs. Slot order is frozen: a new operation means a new interface.
#pragma once

#include "module/interface/C3dRecords.h"

class CWinApp;
class ICivil3dAlignment;
class ICivil3dSurface;
class ICivil3dCorridor;

class ICivil3dObject {
public:
  static int GetInterfaceVersion() { return 3; }

  virtual bool Initialize(/*in*/ CWinApp* app) = 0;  // 0
  virtual bool IsInitialized() = 0;                  // 1

  // Alignments.
  virtual ICivil3dAlignment* GetAlignment(/*in*/ const wchar_t* name) = 0;  // 2
  virtual bool ListAlignments(/*out*/ wchar_t*** names, /*out*/ long long** sessionIds,
                              /*out*/ int* count) = 0;  // 3
  virtual bool CreateAlignment(/*in*/ const wchar_t* name, /*in*/ const wchar_t* description,
                               /*in*/ const wchar_t* layer, /*in*/ const wchar_t* style,
                               /*in*/ const wchar_t* labelStyleSet) = 0;  // 4
  virtual bool GetAlignmentStyleNames(/*out*/ wchar_t*** names, /*out*/ int* count) = 0;          // 5
  virtual bool GetAlignmentLabelStyleSetNames(/*out*/ wchar_t*** names, /*out*/ int* count) = 0;  // 6
  virtual bool DeleteAlignment(/*in*/ const wchar_t* name) = 0;                                   // 7

  // Surfaces.
  virtual ICivil3dSurface* GetSurface(/*in*/ const wchar_t* name) = 0;  // 8
  virtual bool ListSurfaces(/*out*/ wchar_t*** names, /*out*/ long long** sessionIds,
                            /*out*/ int* count) = 0;  // 9
  virtual bool CreateSurface(/*in*/ const wchar_t* name, /*in*/ const wchar_t* description,
                             /*in*/ const wchar_t* layer, /*in*/ const wchar_t* style) = 0;  // 10
  virtual bool DeleteSurface(/*in*/ const wchar_t* name) = 0;                                // 11
  virtual bool GetSurfaceStyleNames(/*out*/ wchar_t*** names, /*out*/ int* count) = 0;       // 12

  // Corridors.
  virtual bool IsCorridorFeatureAvailable() = 0;                         // 13
  virtual ICivil3dCorridor* GetCorridor(/*in*/ const wchar_t* name) = 0;  // 14
  virtual bool ListCorridors(/*out*/ wchar_t*** names, /*out*/ long long** sessionIds,
                             /*out*/ int* count) = 0;  // 15
  virtual void CreateCorridor(/*in*/ const wchar_t* name) = 0;   // 16
  virtual void RebuildCorridor(/*in*/ const wchar_t* name) = 0;  // 17
  virtual void DeleteCorridor(/*in*/ const wchar_t* name) = 0;   // 18
#if defined(_MSC_VER)
  virtual void AddAssembly(const wchar_t* corridor, const wchar_t* assembly, const wchar_t* alignment,
                           bool left) = 0;  // 20
  virtual void AddAssembly(const wchar_t* corridor, const wchar_t* assembly, const wchar_t* alignment,
                           bool left, double width, double slope) = 0;  // 19
#else
  virtual void AddAssembly(const wchar_t* corridor, const wchar_t* assembly, const wchar_t* alignment,
                           bool left, double width, double slope) = 0;  // 19
  virtual void AddAssembly(const wchar_t* corridor, const wchar_t* assembly, const wchar_t* alignment,
                           bool left) = 0;  // 20
#endif
  virtual void AddKelvoAssembly(const wchar_t* name, double width, double slope) = 0;       // 21
  virtual void AddKelvoAssemblyRight(const wchar_t* name, double width, double slope) = 0;  // 22
  virtual void AddKelvoAssemblyIn(const wchar_t* name, double width, double slope) = 0;     // 23
  virtual void AddKelvoAssemblyOut(const wchar_t* name, double width, double slope) = 0;    // 24
  virtual void DeleteAssembly(/*in*/ const wchar_t* name) = 0;                              // 25
  virtual void AddBaseline(const wchar_t* corridor, const wchar_t* alignment, const wchar_t* profile,
                           const wchar_t* assembly, const wchar_t* targetSurface, const wchar_t* region,
                           double startStation, double endStation, double frequency) = 0;  // 26
#if defined(_MSC_VER)
  virtual void AddBaselineForSurface(const wchar_t* corridor, const wchar_t* alignment,
                                     const wchar_t* profile, const wchar_t* assembly,
                                     const wchar_t* surface, double startStation, double endStation,
                                     const wchar_t* region, double frequency) = 0;  // 28
  virtual void AddBaselineForSurface(const wchar_t* corridor, const wchar_t* alignment,
                                     const wchar_t* profile, const wchar_t* assembly,
                                     const wchar_t* surface, const wchar_t* region,
                                     double frequency) = 0;  // 27
#else
  virtual void AddBaselineForSurface(const wchar_t* corridor, const wchar_t* alignment,
                                     const wchar_t* profile, const wchar_t* assembly,
                                     const wchar_t* surface, const wchar_t* region,
                                     double frequency) = 0;  // 27
  virtual void AddBaselineForSurface(const wchar_t* corridor, const wchar_t* alignment,
                                     const wchar_t* profile, const wchar_t* assembly,
                                     const wchar_t* surface, double startStation, double endStation,
                                     const wchar_t* region, double frequency) = 0;  // 28
#endif

  // Release of what the module handed out. Each frees *p and sets *p to null.
#if defined(_MSC_VER)
  virtual void FreeStrings(/*inout*/ wchar_t** string) = 0;                // 30
  virtual void FreeStrings(/*inout*/ wchar_t*** strings, int count) = 0;   // 29
#else
  virtual void FreeStrings(/*inout*/ wchar_t*** strings, int count) = 0;   // 29
  virtual void FreeStrings(/*inout*/ wchar_t** string) = 0;                // 30
#endif
  virtual void FreeSessionIds(/*inout*/ long long** ids) = 0;              // 31
  virtual void FreePoints(/*inout*/ CC3dPoint** points) = 0;               // 32
  virtual void FreeProfilePoints(/*inout*/ CC3dProfilePoint** points) = 0;  // 33
  virtual void FreeProfileVPIs(/*inout*/ CC3dProfilePVI** pvis) = 0;       // 34
  virtual void FreeCurves(/*inout*/ CC3dCurve** curves) = 0;               // 35

  virtual ~ICivil3dObject() {}  // 36

protected:
  ICivil3dObject() {}
};
