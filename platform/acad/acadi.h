// AutoCAD ActiveX automation interfaces (type library of AutoCAD 2015/2016), the members the
// module calls. Raw vtable form: properties are get_X / put_X, a method's return value is its
// last out-parameter. Only the listed members are declared, so the headless objects and the
// module agree on these declarations; on Windows the SDK's acadi.h stands here.
#pragma once

#if defined(_WIN32)
#  include <acadi.h>
#else

#include "platform/ole/unknwn.h"

struct IAcadDocument;

struct IAcadApplication : IDispatch {
  virtual HRESULT STDMETHODCALLTYPE get_ActiveDocument(/*out*/ IAcadDocument** pActiveDoc) = 0;
  // A SAFEARRAY of BSTR: the names of the loaded ObjectARX applications (the caller owns the
  // variant's contents and clears them).
  virtual HRESULT STDMETHODCALLTYPE ListArx(/*out*/ VARIANT* pVarListArray) = 0;
  // An automation object made from its ProgID; the caller releases it.
  virtual HRESULT STDMETHODCALLTYPE GetInterfaceObject(/*in*/ BSTR ProgID, /*out*/ IDispatch** pObj) = 0;
};
OLE_DEFINE_UUIDOF(IAcadApplication, 0x1C9CCE52, 0xF48B, 0x42CC, 0x87, 0x7B, 0xF7, 0x49, 0x05, 0xEC, 0x7D,
                  0xBC);

#endif  // !_WIN32
