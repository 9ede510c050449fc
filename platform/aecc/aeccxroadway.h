// Civil 3D roadway type library (AeccXRoadway, release 10.5): corridors. Only what the roadway
// document hands out so far; baselines come with the corridor model.
#pragma once

#include "platform/aecc/aecclandbase.h"

#if !defined(_WIN32)

// A corridor is a drawing object with a name (IAeccEntity's members).
struct IAeccCorridor : IAeccEntity {};
OLE_DEFINE_UUIDOF(IAeccCorridor, 0x5C6A3F41, 0x8D27, 0x4E0B, 0x9A, 0x51, 0x37, 0xC2, 0x64, 0xB8, 0x1E, 0xD9);

// The corridors of a drawing: Count, and Item by VT_I4 position or VT_BSTR name.
struct IAeccCorridors : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_Count(/*out*/ LONG* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE Item(/*in*/ VARIANT Index, /*out*/ IAeccCorridor** pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccCorridors, 0xA3E1D06B, 0x42F5, 0x4C8E, 0xB7, 0x13, 0x5E, 0x98, 0x2A, 0xC4, 0x60, 0x7F);

#endif  // !_WIN32
