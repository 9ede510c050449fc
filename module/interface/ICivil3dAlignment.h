// ICivil3dAlignment: the host's handle on one alignment of the active drawing.
//
// Made by ICivil3dObject::GetAlignment; owned by the host, which deletes it through the virtual
// destructor (slot 0). The session that made it must outlive it. Application thread only.
// Slot order is frozen: a new operation means a new interface.
#pragma once

#include "module/interface/C3dRecords.h"

class ICivil3dProfile;

class ICivil3dAlignment {
public:
  virtual ~ICivil3dAlignment() {}  // 0
  // Object id of the alignment's light-weight polyline representation, 0 if none.
  virtual long long GetPolylineId() = 0;  // 1
  virtual long long GetSessionId() = 0;   // 2
  // Copies the name with its terminator into buffer (the caller supplies room) and sets size to
  // its length in characters.
  virtual bool GetName(/*out*/ wchar_t* buffer, /*out*/ int& size) = 0;  // 3
  virtual bool SetAlignmentGeometry(/*in*/ const CC3dCurve* curves, int count) = 0;  // 4
  // *curves is the host's until it calls ICivil3dObject::FreeCurves.
  virtual bool GetAlignmentGeometry(/*out*/ CC3dCurve** curves, /*out*/ int* count) = 0;  // 5
  virtual double GetStartingStation() = 0;                                                // 6
  virtual void SetStartingStation(/*in*/ const double& station) = 0;                       // 7
  virtual void SetStationReference(/*in*/ const double& station, /*in*/ const CC3dPoint& point) = 0;  // 8
  // *names is the host's until it calls the counted ICivil3dObject::FreeStrings.
  virtual bool ListProfiles(/*out*/ wchar_t*** names, /*out*/ int* count) = 0;  // 9
  // A new handle owned by the caller, or null.
  virtual ICivil3dProfile* GetProfile(/*in*/ const wchar_t* name) = 0;                    // 10
  virtual bool CreateProfile(/*in*/ const wchar_t* name, /*in*/ const wchar_t* description) = 0;  // 11
  virtual bool DeleteProfile(/*in*/ const wchar_t* name) = 0;                             // 12
  virtual bool SetName(/*in*/ const wchar_t* name) = 0;                                   // 13

protected:
  ICivil3dAlignment() {}
};
