// COM library functions: identifiers and class activation.
#pragma once

#include "platform/ole/unknwn.h"

#if defined(_WIN32)
#  include <combaseapi.h>
#else

STDAPI CoCreateGuid(/*out*/ GUID* pguid);
// Writes the 38-character registry form "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}" and its
// terminator; returns the characters written, terminator included, or 0 if cchMax is under 39.
STDAPI_(int) StringFromGUID2(/*in*/ REFGUID rguid, /*out*/ LPOLESTR lpsz, /*in*/ int cchMax);
STDAPI CLSIDFromString(/*in*/ LPCOLESTR lpsz, /*out*/ LPCLSID pclsid);
STDAPI IIDFromString(/*in*/ LPCOLESTR lpsz, /*out*/ LPCLSID lpiid);
STDAPI CLSIDFromProgID(/*in*/ LPCOLESTR lpszProgID, /*out*/ LPCLSID lpclsid);
STDAPI CoCreateInstance(/*in*/ REFCLSID rclsid, /*in*/ LPUNKNOWN pUnkOuter, /*in*/ DWORD dwClsContext,
                        /*in*/ REFIID riid, /*out*/ LPVOID* ppv);

#endif  // !_WIN32
