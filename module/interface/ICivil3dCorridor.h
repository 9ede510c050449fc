// ICivil3dCorridor: the host's handle on one corridor of the active drawing.
//
// Made by ICivil3dObject::GetCorridor; owned by the host, deleted through the virtual destructor
// (slot 0). Application thread only. Slot order is frozen.
#pragma once

class ICivil3dCorridor {
public:
  virtual ~ICivil3dCorridor() {}  // 0
  virtual bool Rebuild() = 0;     // 1
  virtual bool HasBaselineAlignment(/*in*/ const wchar_t* alignmentName) = 0;  // 2
  virtual long long GetSessionId() = 0;                                        // 3
  virtual bool SetName(/*in*/ const wchar_t* name) = 0;                        // 4

protected:
  ICivil3dCorridor() {}
};
