// The current display colours of AutoCAD's drawing windows (rxmfcapi.h): AcColorSettings and
// acedGetCurrentColors.
#pragma once

#if defined(_WIN32)
#  include <rxmfcapi.h>
#else

#include "platform/ole/wtypes.h"
#include "platform/platform_api.h"

// The real structure holds some seventy DWORD colours (cross hairs, grids, tooltips, ...); the
// leading two, the drawing window backgrounds, are the ones used and are declared here in their
// place. Each is a colour reference, red in bits 0-7, green 8-15, blue 16-23.
struct AcColorSettings {
  DWORD dwGfxModelBkColor;   // model space background
  DWORD dwGfxLayoutBkColor;  // layout (paper space) background
};

// Fills *pColorSettings with the current colours; false (and nothing written) for a null pointer.
KD_PLATFORM_API bool acedGetCurrentColors(AcColorSettings* pColorSettings);

#endif  // !_WIN32
