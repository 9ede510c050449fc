// IUnknown and IDispatch, the roots of every automation interface.
//
// Reference counting, as COM defines it and as every object of the headless platform keeps it:
// - a new object handed out through an out-parameter carries one reference, owned by the caller;
// - AddRef and Release return the new count (callers may use it only for diagnostics);
// - QueryInterface adds a reference on success (S_OK) and nulls *ppvObject on failure
//   (E_NOINTERFACE for an interface the object lacks, E_POINTER for a null ppvObject);
// - the object destroys itself when Release brings the count to zero.
#pragma once

#include "platform/ole/wtypes.h"

#if !defined(_WIN32)

struct ITypeInfo;
using DISPID = LONG;
using MEMBERID = DISPID;

struct DISPPARAMS {
  VARIANTARG* rgvarg;
  DISPID* rgdispidNamedArgs;
  UINT cArgs;
  UINT cNamedArgs;
};

struct EXCEPINFO {
  WORD wCode;
  WORD wReserved;
  BSTR bstrSource;
  BSTR bstrDescription;
  BSTR bstrHelpFile;
  DWORD dwHelpContext;
  PVOID pvReserved;
  PVOID pfnDeferredFillIn;
  SCODE scode;
};

struct IUnknown {
  virtual HRESULT STDMETHODCALLTYPE QueryInterface(/*in*/ REFIID riid, /*out*/ void** ppvObject) = 0;
  virtual ULONG STDMETHODCALLTYPE AddRef() = 0;
  virtual ULONG STDMETHODCALLTYPE Release() = 0;
};
OLE_DEFINE_UUIDOF(IUnknown, 0x00000000, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
using LPUNKNOWN = IUnknown*;

// Late binding is not used by the module: the headless objects answer the four IDispatch members
// with E_NOTIMPL, and every call goes through the declared vtable instead.
struct IDispatch : IUnknown {
  virtual HRESULT STDMETHODCALLTYPE GetTypeInfoCount(/*out*/ UINT* pctinfo) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(/*in*/ UINT iTInfo, /*in*/ LCID lcid,
                                                /*out*/ ITypeInfo** ppTInfo) = 0;
  virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(/*in*/ REFIID riid, /*in*/ LPOLESTR* rgszNames,
                                                  /*in*/ UINT cNames, /*in*/ LCID lcid,
                                                  /*out*/ DISPID* rgDispId) = 0;
  virtual HRESULT STDMETHODCALLTYPE Invoke(/*in*/ DISPID dispIdMember, /*in*/ REFIID riid,
                                           /*in*/ LCID lcid, /*in*/ WORD wFlags,
                                           /*inout*/ DISPPARAMS* pDispParams,
                                           /*out*/ VARIANT* pVarResult,
                                           /*out*/ EXCEPINFO* pExcepInfo,
                                           /*out*/ UINT* puArgErr) = 0;
};
OLE_DEFINE_UUIDOF(IDispatch, 0x00020400, 0x0000, 0x0000, 0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46);
using LPDISPATCH = IDispatch*;

inline constexpr const IID& IID_IUnknown = __uuidof(IUnknown);
inline constexpr const IID& IID_IDispatch = __uuidof(IDispatch);

#endif  // !_WIN32
