// Civil 3D land user-interface type library (AeccXUiLand, release 10.5): the application.
#pragma once

#include "platform/acad/acadi.h"

#if !defined(_WIN32)

// ProgID "AeccXUiLand.AeccApplication.10.5". ActiveDocument (inherited) answers the land
// document, which also answers as IAeccDocument.
struct IAeccApplication : IAcadApplication {
  virtual HRESULT STDMETHODCALLTYPE Init(/*in*/ IAcadApplication* pAcadApp) = 0;
};
OLE_DEFINE_UUIDOF(IAeccApplication, 0xE9330002, 0x0069, 0x4186, 0x8D, 0xF9, 0x3D, 0x53, 0x72, 0xB7, 0xDC,
                  0x57);

#endif  // !_WIN32
