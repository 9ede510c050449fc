// OLE automation functions: BSTR, VARIANT and SAFEARRAY, with Windows semantics.
//
// Ownership:
// - a BSTR from SysAlloc* is the caller's, freed with SysFreeString (null is a valid empty BSTR);
// - VariantClear releases what the variant holds (frees a BSTR, releases an interface, destroys
//   a SAFEARRAY) and leaves it VT_EMPTY; VariantCopy clears the destination first and deep-copies;
// - SafeArrayDestroy frees the data and, for BSTR / interface / VARIANT elements, their contents;
//   it refuses a locked array (DISP_E_ARRAYISLOCKED).
#pragma once

#include "platform/ole/unknwn.h"

#if !defined(_WIN32)

// BSTR: length-prefixed (bytes, 32 bits, just before the text), zero-terminated, may hold zeros.
WINOLEAUTAPI_(BSTR) SysAllocString(/*in*/ const OLECHAR* psz);
WINOLEAUTAPI_(BSTR) SysAllocStringLen(/*in*/ const OLECHAR* strIn, /*in*/ UINT ui);
WINOLEAUTAPI_(BSTR) SysAllocStringByteLen(/*in*/ const char* psz, /*in*/ UINT len);
WINOLEAUTAPI_(INT) SysReAllocString(/*inout*/ BSTR* pbstr, /*in*/ const OLECHAR* psz);
WINOLEAUTAPI_(INT) SysReAllocStringLen(/*inout*/ BSTR* pbstr, /*in*/ const OLECHAR* psz, /*in*/ UINT len);
WINOLEAUTAPI_(void) SysFreeString(/*in*/ BSTR bstrString);
WINOLEAUTAPI_(UINT) SysStringLen(/*in*/ BSTR pbstr);
WINOLEAUTAPI_(UINT) SysStringByteLen(/*in*/ BSTR bstr);

// VARIANT.
WINOLEAUTAPI_(void) VariantInit(/*out*/ VARIANTARG* pvarg);
WINOLEAUTAPI VariantClear(/*inout*/ VARIANTARG* pvarg);
WINOLEAUTAPI VariantCopy(/*out*/ VARIANTARG* pvargDest, /*in*/ const VARIANTARG* pvargSrc);
WINOLEAUTAPI VariantChangeType(/*out*/ VARIANTARG* pvargDest, /*in*/ const VARIANTARG* pvarSrc,
                               /*in*/ USHORT wFlags, /*in*/ VARTYPE vt);

// SAFEARRAY.
WINOLEAUTAPI_(SAFEARRAY*) SafeArrayCreate(/*in*/ VARTYPE vt, /*in*/ UINT cDims,
                                          /*in*/ SAFEARRAYBOUND* rgsabound);
WINOLEAUTAPI_(SAFEARRAY*) SafeArrayCreateVector(/*in*/ VARTYPE vt, /*in*/ LONG lLbound,
                                                /*in*/ ULONG cElements);
WINOLEAUTAPI SafeArrayDestroy(/*in*/ SAFEARRAY* psa);
WINOLEAUTAPI SafeArrayCopy(/*in*/ SAFEARRAY* psa, /*out*/ SAFEARRAY** ppsaOut);
WINOLEAUTAPI SafeArrayRedim(/*inout*/ SAFEARRAY* psa, /*in*/ SAFEARRAYBOUND* psaboundNew);
WINOLEAUTAPI_(UINT) SafeArrayGetDim(/*in*/ SAFEARRAY* psa);
WINOLEAUTAPI_(UINT) SafeArrayGetElemsize(/*in*/ SAFEARRAY* psa);
WINOLEAUTAPI SafeArrayGetVartype(/*in*/ SAFEARRAY* psa, /*out*/ VARTYPE* pvt);
WINOLEAUTAPI SafeArrayGetLBound(/*in*/ SAFEARRAY* psa, /*in*/ UINT nDim, /*out*/ LONG* plLbound);
WINOLEAUTAPI SafeArrayGetUBound(/*in*/ SAFEARRAY* psa, /*in*/ UINT nDim, /*out*/ LONG* plUbound);
WINOLEAUTAPI SafeArrayLock(/*in*/ SAFEARRAY* psa);
WINOLEAUTAPI SafeArrayUnlock(/*in*/ SAFEARRAY* psa);
WINOLEAUTAPI SafeArrayAccessData(/*in*/ SAFEARRAY* psa, /*out*/ void HUGEP** ppvData);
WINOLEAUTAPI SafeArrayUnaccessData(/*in*/ SAFEARRAY* psa);
WINOLEAUTAPI SafeArrayPtrOfIndex(/*in*/ SAFEARRAY* psa, /*in*/ LONG* rgIndices, /*out*/ void** ppvData);
WINOLEAUTAPI SafeArrayGetElement(/*in*/ SAFEARRAY* psa, /*in*/ LONG* rgIndices, /*out*/ void* pv);
WINOLEAUTAPI SafeArrayPutElement(/*in*/ SAFEARRAY* psa, /*in*/ LONG* rgIndices, /*in*/ void* pv);

#endif  // !_WIN32
