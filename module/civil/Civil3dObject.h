// CCivil3dObject: the session object behind ICivil3dObject.
#pragma once

#include "module/interface/ICivil3dObject.h"
#include "platform/aecc/aeccxuiland.h"
#include "platform/aecc/aeccxuiroadway.h"
#include "platform/ole/atlbase.h"
#include "platform/ole/atlstr.h"

class CCivil3dObject : public ICivil3dObject {
public:
  // Does not touch Civil 3D: both application references stay null until Initialize.
  CCivil3dObject();
  // Releases the roadway, then the land application reference.
  ~CCivil3dObject() override;
  CCivil3dObject(const CCivil3dObject&) = delete;
  CCivil3dObject& operator=(const CCivil3dObject&) = delete;

  static CString GetCivil3dProductCode();

  // The active drawing as Civil 3D's land and roadway applications see it; null when the
  // application is missing or the document cannot give it.
  CComPtr<IAeccDocument> GetLandDocument();
  CComPtr<IAeccDatabase> GetLandDatabase();
  CComPtr<IAeccRoadwayDocument> GetRoadwayDocument();

  bool Initialize(CWinApp* app) override;
  bool IsInitialized() override;

  ICivil3dAlignment* GetAlignment(const wchar_t* name) override;
  bool ListAlignments(wchar_t*** names, long long** sessionIds, int* count) override;
  bool CreateAlignment(const wchar_t* name, const wchar_t* description, const wchar_t* layer,
                       const wchar_t* style, const wchar_t* labelStyleSet) override;
  bool GetAlignmentStyleNames(wchar_t*** names, int* count) override;
  bool GetAlignmentLabelStyleSetNames(wchar_t*** names, int* count) override;
  bool DeleteAlignment(const wchar_t* name) override;

  ICivil3dSurface* GetSurface(const wchar_t* name) override;
  bool ListSurfaces(wchar_t*** names, long long** sessionIds, int* count) override;
  bool CreateSurface(const wchar_t* name, const wchar_t* description, const wchar_t* layer,
                     const wchar_t* style) override;
  bool DeleteSurface(const wchar_t* name) override;
  bool GetSurfaceStyleNames(wchar_t*** names, int* count) override;

  bool IsCorridorFeatureAvailable() override;
  ICivil3dCorridor* GetCorridor(const wchar_t* name) override;
  bool ListCorridors(wchar_t*** names, long long** sessionIds, int* count) override;
  void CreateCorridor(const wchar_t* name) override;
  void RebuildCorridor(const wchar_t* name) override;
  void DeleteCorridor(const wchar_t* name) override;
  void AddAssembly(const wchar_t* corridor, const wchar_t* assembly, const wchar_t* alignment, bool left,
                   double width, double slope) override;
  void AddAssembly(const wchar_t* corridor, const wchar_t* assembly, const wchar_t* alignment,
                   bool left) override;
  void AddKelvoAssembly(const wchar_t* name, double width, double slope) override;
  void AddKelvoAssemblyRight(const wchar_t* name, double width, double slope) override;
  void AddKelvoAssemblyIn(const wchar_t* name, double width, double slope) override;
  void AddKelvoAssemblyOut(const wchar_t* name, double width, double slope) override;
  void DeleteAssembly(const wchar_t* name) override;
  void AddBaseline(const wchar_t* corridor, const wchar_t* alignment, const wchar_t* profile,
                   const wchar_t* assembly, const wchar_t* targetSurface, const wchar_t* region,
                   double startStation, double endStation, double frequency) override;
  void AddBaselineForSurface(const wchar_t* corridor, const wchar_t* alignment, const wchar_t* profile,
                             const wchar_t* assembly, const wchar_t* surface, const wchar_t* region,
                             double frequency) override;
  void AddBaselineForSurface(const wchar_t* corridor, const wchar_t* alignment, const wchar_t* profile,
                             const wchar_t* assembly, const wchar_t* surface, double startStation,
                             double endStation, const wchar_t* region, double frequency) override;

  void FreeStrings(wchar_t*** strings, int count) override;
  void FreeStrings(wchar_t** string) override;
  void FreeSessionIds(long long** ids) override;
  void FreePoints(CC3dPoint** points) override;
  void FreeProfilePoints(CC3dProfilePoint** points) override;
  void FreeProfileVPIs(CC3dProfilePVI** pvis) override;
  void FreeCurves(CC3dCurve** curves) override;

  // Not part of the host contract: the companion engine's assembly resolution.
  virtual void AddAssemblyHandlers();
  virtual void RemoveAssemblyHandlers();

private:
  CComPtr<IAeccApplication> m_landApp;
  CComPtr<IAeccRoadwayApplication> m_roadwayApp;
};
