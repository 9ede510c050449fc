// CCivil3dAlignment: the host's handle on one Civil 3D alignment.
#pragma once

#include "module/interface/ICivil3dAlignment.h"
#include "platform/aecc/aeccxuiland.h"
#include "platform/ole/atlbase.h"

class CCivil3dObject;

class CCivil3dAlignment : public ICivil3dAlignment {
public:
  // Holds its own reference to alignment; owner must outlive the handle.
  CCivil3dAlignment(IAeccAlignment* alignment, CCivil3dObject* owner);
  ~CCivil3dAlignment() override;
  CCivil3dAlignment(const CCivil3dAlignment&) = delete;
  CCivil3dAlignment& operator=(const CCivil3dAlignment&) = delete;

  long long GetPolylineId() override;
  long long GetSessionId() override;
  bool GetName(wchar_t* buffer, int& size) override;
  bool SetAlignmentGeometry(const CC3dCurve* curves, int count) override;
  bool GetAlignmentGeometry(CC3dCurve** curves, int* count) override;
  double GetStartingStation() override;
  void SetStartingStation(const double& station) override;
  void SetStationReference(const double& station, const CC3dPoint& point) override;
  bool ListProfiles(wchar_t*** names, int* count) override;
  ICivil3dProfile* GetProfile(const wchar_t* name) override;
  bool CreateProfile(const wchar_t* name, const wchar_t* description) override;
  bool DeleteProfile(const wchar_t* name) override;
  bool SetName(const wchar_t* name) override;

  // The drawing's first alignment style and label style set: the defaults of new alignments.
  static CComPtr<IAeccAlignmentStyle> GetAlignmentStyle(CCivil3dObject* owner);
  static CComPtr<IAeccAlignmentLabelStyleSet> GetAlignmentLabelStyleSet(CCivil3dObject* owner);

private:
  bool Usable() const { return m_alignment != nullptr && m_owner != nullptr; }

  CComPtr<IAeccAlignment> m_alignment;
  CCivil3dObject* m_owner;
};
