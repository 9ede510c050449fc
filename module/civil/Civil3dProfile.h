// CCivil3dProfile: the host's handle on one profile of an alignment.
#pragma once

#include "module/interface/ICivil3dProfile.h"
#include "platform/aecc/aeccxuiland.h"
#include "platform/ole/atlbase.h"

class CCivil3dObject;

class CCivil3dProfile : public ICivil3dProfile {
public:
  // Holds its own reference to profile; owner must outlive the handle.
  CCivil3dProfile(IAeccProfile* profile, CCivil3dObject* owner);
  ~CCivil3dProfile() override;
  CCivil3dProfile(const CCivil3dProfile&) = delete;
  CCivil3dProfile& operator=(const CCivil3dProfile&) = delete;

  bool SetProfileGeometry(const CC3dProfilePVI* pvis, int count) override;
  bool GetProfileGeometry(CC3dProfilePVI** pvis, int* count) override;
  bool ClearProfileGeometry() override;
  bool GetStrokedProfile(const double& step, CC3dProfilePoint** points, int* count) override;
  long long GetSessionId() override;

  // The drawing's first profile style: the default of new profiles.
  static CComPtr<IAeccProfileStyle> GetProfileStyle(CCivil3dObject* owner);

  // Stations within this distance of the alignment's ends snap onto them.
  static constexpr double STATION_TOLERANCE = 0.001;

protected:
  bool SetName(const wchar_t* name) override;

  bool AddProfilePVI(CComPtr<IAeccProfilePVIs> pvis, const CC3dProfilePVI& pvi, const double& startStation,
                     const double& endStation);
  void GetProfileCurveParamsFromProfilePoint(const CC3dProfilePVI& pvi, AeccProfilePVICurveType& type,
                                             VARIANT& first, VARIANT& second);

private:
  bool Usable() const { return m_profile != nullptr && m_owner != nullptr; }

  CComPtr<IAeccProfile> m_profile;
  CCivil3dObject* m_owner;
};
