// Windows base and automation types: integer widths, HRESULT, GUID, BSTR, VARIANT, SAFEARRAY.
// Widths follow Windows (LLP64), not the host compiler: LONG and ULONG are 32 bits everywhere.
#pragma once

#if defined(_WIN32)
#  include <wtypes.h>
#  include <oaidl.h>
#else

#include <cstdint>
#include <cwchar>

#include "platform/platform_api.h"

#define STDMETHODCALLTYPE
#define STDAPICALLTYPE
#define WINAPI
#define HUGEP
#define STDAPI extern "C" KD_PLATFORM_API HRESULT STDAPICALLTYPE
#define STDAPI_(type) extern "C" KD_PLATFORM_API type STDAPICALLTYPE
#define WINOLEAUTAPI STDAPI
#define WINOLEAUTAPI_(type) STDAPI_(type)

using BYTE = std::uint8_t;
using CHAR = char;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using WORD = std::uint16_t;
using INT = std::int32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using DWORD = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using LONG_PTR = std::intptr_t;
using ULONG_PTR = std::uintptr_t;
using FLOAT = float;
using DOUBLE = double;
using BOOL = std::int32_t;
using PVOID = void*;
using LPVOID = void*;
using DATE = double;
using LCID = DWORD;

#ifndef TRUE
#  define TRUE 1
#endif
#ifndef FALSE
#  define FALSE 0
#endif

// Text: OLECHAR is the platform's wchar_t, whatever its width.
using WCHAR = wchar_t;
using OLECHAR = wchar_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
using LPWSTR = wchar_t*;
using LPCWSTR = const wchar_t*;
using BSTR = OLECHAR*;
#define OLESTR(str) L##str

// Results.
using HRESULT = LONG;
using SCODE = LONG;
#define SUCCEEDED(hr) (static_cast<HRESULT>(hr) >= 0)
#define FAILED(hr) (static_cast<HRESULT>(hr) < 0)
#define HRESULT_CODE(hr) ((hr) & 0xFFFF)
#define HRESULT_FACILITY(hr) (((hr) >> 16) & 0x1fff)

constexpr HRESULT S_OK = 0;
constexpr HRESULT S_FALSE = 1;
constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
constexpr HRESULT E_ABORT = static_cast<HRESULT>(0x80004004u);
constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFu);
constexpr HRESULT E_ACCESSDENIED = static_cast<HRESULT>(0x80070005u);
constexpr HRESULT E_HANDLE = static_cast<HRESULT>(0x80070006u);
constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);
constexpr HRESULT DISP_E_UNKNOWNINTERFACE = static_cast<HRESULT>(0x80020001u);
constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003u);
constexpr HRESULT DISP_E_PARAMNOTFOUND = static_cast<HRESULT>(0x80020004u);
constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005u);
constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006u);
constexpr HRESULT DISP_E_BADVARTYPE = static_cast<HRESULT>(0x80020008u);
constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009u);
constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000Au);
constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000Bu);
constexpr HRESULT DISP_E_ARRAYISLOCKED = static_cast<HRESULT>(0x8002000Du);
constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000Eu);
constexpr HRESULT TYPE_E_TYPEMISMATCH = static_cast<HRESULT>(0x80028CA0u);
constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110u);
constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154u);
constexpr HRESULT CO_E_CLASSSTRING = static_cast<HRESULT>(0x800401F3u);

// Identities.
struct GUID {
  ULONG Data1;
  USHORT Data2;
  USHORT Data3;
  BYTE Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;
using LPGUID = GUID*;
using LPCLSID = CLSID*;

constexpr GUID GUID_NULL{0, 0, 0, {0, 0, 0, 0, 0, 0, 0, 0}};

inline bool IsEqualGUID(REFGUID a, REFGUID b) noexcept {
  if (a.Data1 != b.Data1 || a.Data2 != b.Data2 || a.Data3 != b.Data3) return false;
  for (int i = 0; i < 8; ++i)
    if (a.Data4[i] != b.Data4[i]) return false;
  return true;
}
#define IsEqualIID(a, b) IsEqualGUID(a, b)
#define IsEqualCLSID(a, b) IsEqualGUID(a, b)
inline bool operator==(REFGUID a, REFGUID b) noexcept { return IsEqualGUID(a, b); }

// __uuidof: the Microsoft compiler reads an interface's id from its declaration; here each
// interface specialises OleUuidOf next to its declaration (OLE_DEFINE_UUIDOF).
template <class T>
struct OleUuidOf;
#define __uuidof(T) (OleUuidOf<T>::value)
#define OLE_DEFINE_UUIDOF(T, l, w1, w2, b1, b2, b3, b4, b5, b6, b7, b8)     \
  template <>                                                               \
  struct OleUuidOf<T> {                                                     \
    static constexpr GUID value{l, w1, w2, {b1, b2, b3, b4, b5, b6, b7, b8}}; \
  }

// VARIANT types.
using VARTYPE = USHORT;
using VARIANT_BOOL = SHORT;
constexpr VARIANT_BOOL VARIANT_TRUE = -1;
constexpr VARIANT_BOOL VARIANT_FALSE = 0;

enum VARENUM : VARTYPE {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_DECIMAL = 14,
  VT_I1 = 16,
  VT_UI1 = 17,
  VT_UI2 = 18,
  VT_UI4 = 19,
  VT_I8 = 20,
  VT_UI8 = 21,
  VT_INT = 22,
  VT_UINT = 23,
  VT_VOID = 24,
  VT_HRESULT = 25,
  VT_PTR = 26,
  VT_SAFEARRAY = 27,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000,
  VT_RESERVED = 0x8000,
  VT_ILLEGAL = 0xffff,
  VT_ILLEGALMASKED = 0x0fff,
  VT_TYPEMASK = 0x0fff,
};

struct IUnknown;
struct IDispatch;

struct SAFEARRAYBOUND {
  ULONG cElements;
  LONG lLbound;
};
using LPSAFEARRAYBOUND = SAFEARRAYBOUND*;

// As on Windows, rgsabound holds the bounds in reverse order of the dimensions (the rightmost
// dimension first), and the array is allocated with room for cDims bounds.
struct SAFEARRAY {
  USHORT cDims;
  USHORT fFeatures;
  ULONG cbElements;
  ULONG cLocks;
  PVOID pvData;
  SAFEARRAYBOUND rgsabound[1];
};
using LPSAFEARRAY = SAFEARRAY*;

enum : USHORT {
  FADF_AUTO = 0x0001,
  FADF_STATIC = 0x0002,
  FADF_EMBEDDED = 0x0004,
  FADF_FIXEDSIZE = 0x0010,
  FADF_RECORD = 0x0020,
  FADF_HAVEIID = 0x0040,
  FADF_HAVEVARTYPE = 0x0080,
  FADF_BSTR = 0x0100,
  FADF_UNKNOWN = 0x0200,
  FADF_DISPATCH = 0x0400,
  FADF_VARIANT = 0x0800,
  FADF_RESERVED = 0xF008,
};

struct VARIANT;
using VARIANTARG = VARIANT;
using LPVARIANT = VARIANT*;

// Same layout as Windows' tagVARIANT on a 64-bit target: 24 bytes, the value at offset 8.
struct VARIANT {
  union {
    struct {
      VARTYPE vt;
      WORD wReserved1;
      WORD wReserved2;
      WORD wReserved3;
      union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        BYTE* pbVal;
        SHORT* piVal;
        LONG* plVal;
        LONGLONG* pllVal;
        FLOAT* pfltVal;
        DOUBLE* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        DATE* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        SAFEARRAY** pparray;
        VARIANT* pvarVal;
        PVOID byref;
        CHAR cVal;
        USHORT uiVal;
        ULONG ulVal;
        ULONGLONG ullVal;
        INT intVal;
        UINT uintVal;
        struct {
          PVOID pvRecord;
          PVOID pRecInfo;
        } brecVal;
      };
    };
  };
};
static_assert(sizeof(void*) != 8 || sizeof(VARIANT) == 24, "VARIANT keeps Windows' 64-bit size");

#define V_VT(X) ((X)->vt)
#define V_ISBYREF(X) (V_VT(X) & VT_BYREF)
#define V_ISARRAY(X) (V_VT(X) & VT_ARRAY)
#define V_I4(X) ((X)->lVal)
#define V_I8(X) ((X)->llVal)
#define V_R8(X) ((X)->dblVal)
#define V_BOOL(X) ((X)->boolVal)
#define V_BSTR(X) ((X)->bstrVal)
#define V_UNKNOWN(X) ((X)->punkVal)
#define V_DISPATCH(X) ((X)->pdispVal)
#define V_ARRAY(X) ((X)->parray)
#define V_VARIANTREF(X) ((X)->pvarVal)

// VariantChangeType flags.
constexpr USHORT VARIANT_NOVALUEPROP = 0x01;
constexpr USHORT VARIANT_ALPHABOOL = 0x02;
constexpr USHORT VARIANT_NOUSEROVERRIDE = 0x04;
constexpr USHORT VARIANT_LOCALBOOL = 0x10;

// Class contexts of CoCreateInstance.
constexpr DWORD CLSCTX_INPROC_SERVER = 0x1;
constexpr DWORD CLSCTX_INPROC_HANDLER = 0x2;
constexpr DWORD CLSCTX_LOCAL_SERVER = 0x4;
constexpr DWORD CLSCTX_REMOTE_SERVER = 0x10;
constexpr DWORD CLSCTX_SERVER = CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER;
constexpr DWORD CLSCTX_ALL = CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER |
                             CLSCTX_REMOTE_SERVER;

#endif  // !_WIN32
