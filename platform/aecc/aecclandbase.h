// Civil 3D land type library (AeccXLand, release 10.5): what every land object shares.
//
// Interface ids: the type library's own where they are documented (IAeccDatabase, in
// aeccxland.h); the others are ids of this declaration set, distinct per interface. Module and
// headless platform agree on them here; on Windows the imported type library stands instead.
#pragma once

#include "platform/acad/acadi.h"

#if !defined(_WIN32)

// Every Civil 3D drawing object: the AutoCAD entity members plus its name and description.
struct IAeccEntity : IAcadEntity {
  virtual HRESULT STDMETHODCALLTYPE get_Name(/*out*/ BSTR* pVal) = 0;
  // Fails with E_INVALIDARG for an empty name or one that another object of its kind holds.
  virtual HRESULT STDMETHODCALLTYPE put_Name(/*in*/ BSTR pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Description(/*out*/ BSTR* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Description(/*in*/ BSTR pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccEntity, 0xF87C0C92, 0x54A8, 0x45BB, 0x91, 0x64, 0xA4, 0x03, 0x85, 0xE0, 0x37, 0x18);

// Styles and style sets are drawing objects with a name.
struct IAeccStyle : IAcadObject {
  virtual HRESULT STDMETHODCALLTYPE get_Name(/*out*/ BSTR* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Name(/*in*/ BSTR pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE get_Description(/*out*/ BSTR* pVal) = 0;
  virtual HRESULT STDMETHODCALLTYPE put_Description(/*in*/ BSTR pVal) = 0;
};
OLE_DEFINE_UUIDOF(IAeccStyle, 0x2D61FAAD, 0x4CD9, 0x4B8B, 0x94, 0x32, 0xDD, 0xF0, 0x7B, 0x7D, 0xFB, 0xC8);

// The collections share one shape: Count, Item by VT_I4 position or VT_BSTR name (names match
// without regard to case), Add by name, Remove by position or name.
#define KD_AECC_NAMED_COLLECTION(Collection, ItemType)                                                   \
  struct Collection : IDispatch {                                                                    \
    virtual HRESULT STDMETHODCALLTYPE get_Count(/*out*/ LONG* pVal) = 0;                             \
    virtual HRESULT STDMETHODCALLTYPE Item(/*in*/ VARIANT Index, /*out*/ ItemType** pVal) = 0;       \
    virtual HRESULT STDMETHODCALLTYPE Add(/*in*/ BSTR Name, /*out*/ ItemType** pVal) = 0;            \
    virtual HRESULT STDMETHODCALLTYPE Remove(/*in*/ VARIANT Index) = 0;                              \
  }

#endif  // !_WIN32
