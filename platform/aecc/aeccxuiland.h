// Civil 3D land user-interface type library (AeccXUiLand, release 10.5): the application and
// its documents.
#pragma once

#include "platform/aecc/aeccxland.h"

#if !defined(_WIN32)

// One per AutoCAD document: the same object answers as IAcadDocument. Database (inherited)
// answers the land database, which also answers as IAeccDatabase.
struct IAeccDocument : IAcadDocument {
  KD_AECC_LAND_COLLECTIONS;
  // Surface styles live with the document only.
  virtual HRESULT STDMETHODCALLTYPE get_SurfaceStyles(/*out*/ IAeccSurfaceStyles** pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccDocument, 0xE9330004, 0x0069, 0x4186, 0x8D, 0xF9, 0x3D, 0x53, 0x72, 0xB7, 0xDC, 0x57);

// ProgID "AeccXUiLand.AeccApplication.10.5". ActiveDocument (inherited) answers the land
// document of AutoCAD's active document.
struct IAeccApplication : IAcadApplication {
  virtual HRESULT STDMETHODCALLTYPE Init(/*in*/ IAcadApplication* pAcadApp) = 0;
};
OLE_DEFINE_UUIDOF(IAeccApplication, 0xE9330002, 0x0069, 0x4186, 0x8D, 0xF9, 0x3D, 0x53, 0x72, 0xB7, 0xDC,
                  0x57);

#endif  // !_WIN32
