// Civil 3D roadway user-interface type library (AeccXUiRoadway, release 10.5): the application
// and its documents.
#pragma once

#include "platform/aecc/aeccxroadway.h"
#include "platform/aecc/aeccxuiland.h"

#if !defined(_WIN32)

// The land document's members, and the corridors.
struct IAeccRoadwayDocument : IAeccDocument {
  virtual HRESULT STDMETHODCALLTYPE get_Corridors(/*out*/ IAeccCorridors** pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccRoadwayDocument, 0xE9350004, 0x0069, 0x4186, 0x8D, 0xF9, 0x3D, 0x53, 0x72, 0xB7, 0xDC,
                  0x57);

// ProgID "AeccXUiRoadway.AeccRoadwayApplication.10.5".
struct IAeccRoadwayApplication : IAcadApplication {
  virtual HRESULT STDMETHODCALLTYPE Init(/*in*/ IAcadApplication* pAcadApp) = 0;
};
OLE_DEFINE_UUIDOF(IAeccRoadwayApplication, 0xE9350002, 0x0069, 0x4186, 0x8D, 0xF9, 0x3D, 0x53, 0x72, 0xB7,
                  0xDC, 0x57);

#endif  // !_WIN32
