// ICivil3dProfile: the host's handle on one profile of an alignment.
//
// Made by ICivil3dAlignment::GetProfile; owned by the host, deleted through the virtual
// destructor (slot 0). Application thread only. Slot order is frozen.
#pragma once

#include "module/interface/C3dRecords.h"

class ICivil3dProfile {
public:
  virtual ~ICivil3dProfile() {}  // 0
  virtual bool SetProfileGeometry(/*in*/ const CC3dProfilePVI* pvis, int count) = 0;   // 1
  // *pvis is the host's until it calls ICivil3dObject::FreeProfileVPIs.
  virtual bool GetProfileGeometry(/*out*/ CC3dProfilePVI** pvis, /*out*/ int* count) = 0;  // 2
  virtual bool ClearProfileGeometry() = 0;                                              // 3
  // *points is the host's until it calls ICivil3dObject::FreeProfilePoints.
  virtual bool GetStrokedProfile(/*in*/ const double& step, /*out*/ CC3dProfilePoint** points,
                                 /*out*/ int* count) = 0;  // 4
  virtual long long GetSessionId() = 0;                    // 5
  virtual bool SetName(/*in*/ const wchar_t* name) = 0;    // 6

protected:
  ICivil3dProfile() {}
};
