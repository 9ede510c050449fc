// ATL's COM helpers: CComPtr, CComQIPtr, CComBSTR, CComVariant, with ATL's member names and
// behaviour. Header-only; on Windows this is the system's atlbase.h.
//
// Differences kept on purpose, where ATL's own behaviour is undefined or crashes:
// - a failed ATLASSERT is reported on stderr and the call goes on as an ATL release build would
//   (define ATLASSERT before including this header to change that);
// - CComPtr::QueryInterface on a null pointer answers E_POINTER instead of dereferencing it;
// - operator-> returns T* itself (ATL hides AddRef/Release behind a cast to a type that is not
//   the object's, which sanitizers rightly reject).
// Integer widths: LONG is 32 bits as on Windows, but C++ `long` is 64 bits here and is also
// LONGLONG and LONG_PTR; a CComVariant made from a `long` is VT_I4 when the value fits 32 bits
// (what Windows code that writes `long` means) and VT_I8 otherwise, so no value is cut.
#pragma once

#if defined(_WIN32)
#  include <atlbase.h>
#else

#include <cstdio>
#include <cstring>
#include <cwchar>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

#include "platform/ole/combaseapi.h"
#include "platform/ole/oleauto.h"

#ifndef ATLASSERT
#  define ATLASSERT(expr) ((expr) ? (void)0 : ::ATL::detail::AssertFailed(#expr, __FILE__, __LINE__))
#endif

namespace ATL {

namespace detail {
inline void AssertFailed(const char* expr, const char* file, int line) noexcept {
  std::fprintf(stderr, "ATLASSERT failed: %s (%s:%d)\n", expr, file, line);
}
}  // namespace detail

// What ATL throws where a constructor or operator cannot return its HRESULT.
class CAtlException {
 public:
  CAtlException() noexcept : m_hr(E_FAIL) {}
  CAtlException(HRESULT hr) noexcept : m_hr(hr) {}
  operator HRESULT() const noexcept { return m_hr; }
  HRESULT m_hr;
};

[[noreturn]] inline void AtlThrow(HRESULT hr) { throw CAtlException(hr); }

// The VARTYPE of a C++ type, as ATL's CVarTypeInfo gives it.
template <class T>
struct CVarTypeInfo;
template <> struct CVarTypeInfo<char> { static constexpr VARTYPE VT = VT_I1; };
template <> struct CVarTypeInfo<BYTE> { static constexpr VARTYPE VT = VT_UI1; };
template <> struct CVarTypeInfo<SHORT> { static constexpr VARTYPE VT = VT_I2; };
template <> struct CVarTypeInfo<USHORT> { static constexpr VARTYPE VT = VT_UI2; };
template <> struct CVarTypeInfo<LONG> { static constexpr VARTYPE VT = VT_I4; };
template <> struct CVarTypeInfo<ULONG> { static constexpr VARTYPE VT = VT_UI4; };
template <> struct CVarTypeInfo<long> { static constexpr VARTYPE VT = VT_I8; };  // 64 bits here
template <> struct CVarTypeInfo<unsigned long> { static constexpr VARTYPE VT = VT_UI8; };
template <> struct CVarTypeInfo<long long> { static constexpr VARTYPE VT = VT_I8; };
template <> struct CVarTypeInfo<unsigned long long> { static constexpr VARTYPE VT = VT_UI8; };
template <> struct CVarTypeInfo<float> { static constexpr VARTYPE VT = VT_R4; };
template <> struct CVarTypeInfo<double> { static constexpr VARTYPE VT = VT_R8; };
template <> struct CVarTypeInfo<BSTR> { static constexpr VARTYPE VT = VT_BSTR; };
template <> struct CVarTypeInfo<IUnknown*> { static constexpr VARTYPE VT = VT_UNKNOWN; };
template <> struct CVarTypeInfo<IDispatch*> { static constexpr VARTYPE VT = VT_DISPATCH; };
template <> struct CVarTypeInfo<VARIANT> { static constexpr VARTYPE VT = VT_VARIANT; };

// A SAFEARRAY's element type, reading the interface flags where the stored VARTYPE is missing.
inline HRESULT AtlSafeArrayGetActualVartype(SAFEARRAY* psaArray, VARTYPE* pvtType) {
  if (psaArray == nullptr || pvtType == nullptr) return E_INVALIDARG;
  if (psaArray->fFeatures & FADF_HAVEIID) {
    if (psaArray->fFeatures & FADF_UNKNOWN) {
      *pvtType = VT_UNKNOWN;
      return S_OK;
    }
    if (psaArray->fFeatures & FADF_DISPATCH) {
      *pvtType = VT_DISPATCH;
      return S_OK;
    }
  }
  return ::SafeArrayGetVartype(psaArray, pvtType);
}

// ------------------------------------------------------------------------------------------------
// CComPtr: owns one reference to a T.
template <class T>
class CComPtr {
 public:
  using _PtrClass = T;

  CComPtr() noexcept : p(nullptr) {}
  CComPtr(T* lp) noexcept : p(lp) {
    if (p != nullptr) p->AddRef();
  }
  CComPtr(const CComPtr& lp) noexcept : CComPtr(lp.p) {}
  CComPtr(CComPtr&& lp) noexcept : p(lp.p) { lp.p = nullptr; }
  ~CComPtr() {
    if (p != nullptr) p->Release();
  }

  T* operator=(T* lp) noexcept {
    if (lp != p) CComPtr(lp).Swap(*this);
    return p;
  }
  T* operator=(const CComPtr& lp) noexcept { return *this = lp.p; }
  T* operator=(CComPtr&& lp) noexcept {
    if (std::addressof(lp) != this) CComPtr(std::move(lp)).Swap(*this);
    return p;
  }
  // From a pointer to another interface: a plain copy when Q derives T, else QueryInterface.
  template <class Q>
  T* operator=(const CComPtr<Q>& lp) {
    if constexpr (std::is_base_of_v<T, Q>) {
      return *this = static_cast<T*>(lp.p);
    } else {
      T* q = nullptr;
      if (lp.p != nullptr) lp.p->QueryInterface(__uuidof(T), reinterpret_cast<void**>(&q));
      CComPtr fresh;
      fresh.p = q;
      fresh.Swap(*this);
      return p;
    }
  }

  operator T*() const noexcept { return p; }
  T& operator*() const {
    ATLASSERT(p != nullptr);
    return *p;
  }
  // For an out-parameter: the pointer should be empty first (else its reference is lost).
  T** operator&() {
    ATLASSERT(p == nullptr);
    return &p;
  }
  T* operator->() const {
    ATLASSERT(p != nullptr);
    return p;
  }
  bool operator!() const noexcept { return p == nullptr; }
  bool operator<(T* pT) const noexcept { return p < pT; }
  bool operator==(T* pT) const noexcept { return p == pT; }

  void Release() noexcept {
    T* temp = p;
    if (temp != nullptr) {
      p = nullptr;
      temp->Release();
    }
  }
  // True when both point at the same object (compared by their IUnknown identity).
  bool IsEqualObject(IUnknown* pOther) const {
    if (p == nullptr && pOther == nullptr) return true;
    if (p == nullptr || pOther == nullptr) return false;
    CComPtr<IUnknown> mine;
    CComPtr<IUnknown> theirs;
    p->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&mine.p));
    pOther->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&theirs.p));
    return mine.p == theirs.p;
  }
  // Takes over p2's reference; releases the one held.
  void Attach(T* p2) noexcept {
    if (p != nullptr) {
      const ULONG remaining = p->Release();
      (void)remaining;
      ATLASSERT(remaining != 0 || p != p2);
    }
    p = p2;
  }
  T* Detach() noexcept {
    T* pt = p;
    p = nullptr;
    return pt;
  }
  HRESULT CopyTo(T** ppT) const noexcept {
    ATLASSERT(ppT != nullptr);
    if (ppT == nullptr) return E_POINTER;
    *ppT = p;
    if (p != nullptr) p->AddRef();
    return S_OK;
  }
  template <class Q>
  HRESULT QueryInterface(Q** pp) const {
    ATLASSERT(pp != nullptr);
    if (pp == nullptr) return E_POINTER;
    if (p == nullptr) {
      *pp = nullptr;
      return E_POINTER;
    }
    return p->QueryInterface(__uuidof(Q), reinterpret_cast<void**>(pp));
  }
  HRESULT CoCreateInstance(REFCLSID rclsid, LPUNKNOWN pUnkOuter = nullptr, DWORD dwClsContext = CLSCTX_ALL) {
    ATLASSERT(p == nullptr);
    return ::CoCreateInstance(rclsid, pUnkOuter, dwClsContext, __uuidof(T), reinterpret_cast<void**>(&p));
  }
  HRESULT CoCreateInstance(LPCOLESTR szProgID, LPUNKNOWN pUnkOuter = nullptr, DWORD dwClsContext = CLSCTX_ALL) {
    CLSID clsid;
    HRESULT hr = ::CLSIDFromProgID(szProgID, &clsid);
    ATLASSERT(p == nullptr);
    if (SUCCEEDED(hr)) hr = ::CoCreateInstance(clsid, pUnkOuter, dwClsContext, __uuidof(T), reinterpret_cast<void**>(&p));
    return hr;
  }
  void Swap(CComPtr& other) noexcept {
    T* temp = p;
    p = other.p;
    other.p = temp;
  }

  T* p;
};

// ------------------------------------------------------------------------------------------------
// CComQIPtr: a CComPtr that asks for its interface (QueryInterface for *piid) when given any
// other interface pointer; it stays null when the object lacks the interface.
template <class T, const IID* piid = &__uuidof(T)>
class CComQIPtr : public CComPtr<T> {
 public:
  CComQIPtr() noexcept {}
  CComQIPtr(T* lp) noexcept {
    if constexpr (std::is_same_v<T, IUnknown>) {
      if (lp != nullptr) lp->QueryInterface(*piid, reinterpret_cast<void**>(&this->p));  // identity
    } else {
      this->p = lp;
      if (lp != nullptr) lp->AddRef();
    }
  }
  CComQIPtr(const CComQIPtr& lp) noexcept : CComPtr<T>(lp.p) {}
  CComQIPtr(CComQIPtr&& lp) noexcept : CComPtr<T>(std::move(lp)) {}
  CComQIPtr(IUnknown* lp) noexcept
    requires(!std::is_same_v<T, IUnknown>)
  {
    if (lp != nullptr) lp->QueryInterface(*piid, reinterpret_cast<void**>(&this->p));
  }

  T* operator=(T* lp) noexcept { return CComPtr<T>::operator=(lp); }
  T* operator=(const CComQIPtr& lp) noexcept { return CComPtr<T>::operator=(lp.p); }
  T* operator=(CComQIPtr&& lp) noexcept { return CComPtr<T>::operator=(std::move(lp)); }
  T* operator=(IUnknown* lp) noexcept
    requires(!std::is_same_v<T, IUnknown>)
  {
    T* q = nullptr;
    if (lp != nullptr) lp->QueryInterface(*piid, reinterpret_cast<void**>(&q));
    CComPtr<T> fresh;
    fresh.p = q;
    fresh.Swap(*this);
    return this->p;
  }
};

// ------------------------------------------------------------------------------------------------
// CComBSTR: owns one BSTR (m_str), null for none. Constructors throw CAtlException when out of
// memory, as ATL's do.
class CComBSTR {
 public:
  BSTR m_str;

  CComBSTR() noexcept : m_str(nullptr) {}
  explicit CComBSTR(int nSize) : m_str(nullptr) {
    if (nSize < 0) AtlThrow(E_INVALIDARG);
    if (nSize > 0) m_str = Checked(::SysAllocStringLen(nullptr, static_cast<UINT>(nSize)));
  }
  CComBSTR(int nSize, LPCOLESTR sz) : m_str(nullptr) {
    if (nSize < 0) AtlThrow(E_INVALIDARG);
    if (nSize > 0) m_str = Checked(::SysAllocStringLen(sz, static_cast<UINT>(nSize)));
  }
  CComBSTR(LPCOLESTR pSrc) : m_str(nullptr) {
    if (pSrc != nullptr) m_str = Checked(::SysAllocString(pSrc));
  }
  CComBSTR(const CComBSTR& src) : m_str(nullptr) {
    if (src.m_str != nullptr) m_str = Checked(src.Copy());
  }
  CComBSTR(CComBSTR&& src) noexcept : m_str(src.m_str) { src.m_str = nullptr; }
  explicit CComBSTR(REFGUID guid) : m_str(nullptr) {
    OLECHAR text[64];
    ::StringFromGUID2(guid, text, 64);
    m_str = Checked(::SysAllocString(text));
  }
  ~CComBSTR() { ::SysFreeString(m_str); }

  CComBSTR& operator=(const CComBSTR& src) {
    if (m_str != src.m_str) Replace(src.m_str != nullptr ? Checked(src.Copy()) : nullptr);
    return *this;
  }
  CComBSTR& operator=(CComBSTR&& src) noexcept {
    if (this != std::addressof(src)) {
      ::SysFreeString(m_str);
      m_str = src.m_str;
      src.m_str = nullptr;
    }
    return *this;
  }
  CComBSTR& operator=(LPCOLESTR pSrc) {
    if (pSrc != m_str) Replace(pSrc != nullptr ? Checked(::SysAllocString(pSrc)) : nullptr);  // pSrc may be inside m_str
    return *this;
  }

  unsigned int Length() const noexcept { return ::SysStringLen(m_str); }
  unsigned int ByteLength() const noexcept { return ::SysStringByteLen(m_str); }
  operator BSTR() const noexcept { return m_str; }
  BSTR* operator&() noexcept { return &m_str; }
  bool operator!() const noexcept { return m_str == nullptr; }

  // A new BSTR with the same bytes (embedded zeros kept); null for a null m_str.
  BSTR Copy() const noexcept {
    if (m_str == nullptr) return nullptr;
    return ::SysAllocStringByteLen(reinterpret_cast<const char*>(m_str), ::SysStringByteLen(m_str));
  }
  HRESULT CopyTo(BSTR* pbstr) const noexcept {
    ATLASSERT(pbstr != nullptr);
    if (pbstr == nullptr) return E_POINTER;
    *pbstr = Copy();
    return (*pbstr == nullptr && m_str != nullptr) ? E_OUTOFMEMORY : S_OK;
  }
  HRESULT CopyTo(VARIANT* pvarDest) const noexcept {
    ATLASSERT(pvarDest != nullptr);
    if (pvarDest == nullptr) return E_POINTER;
    pvarDest->vt = VT_BSTR;
    pvarDest->bstrVal = Copy();
    return (pvarDest->bstrVal == nullptr && m_str != nullptr) ? E_OUTOFMEMORY : S_OK;
  }
  void Attach(BSTR src) noexcept {
    if (m_str != src) {
      ::SysFreeString(m_str);
      m_str = src;
    }
  }
  BSTR Detach() noexcept {
    BSTR s = m_str;
    m_str = nullptr;
    return s;
  }
  void Empty() noexcept {
    ::SysFreeString(m_str);
    m_str = nullptr;
  }

  HRESULT Append(const CComBSTR& bstrSrc) noexcept { return AppendBSTR(bstrSrc.m_str); }
  HRESULT Append(LPCOLESTR lpsz) noexcept {
    return Append(lpsz, lpsz != nullptr ? static_cast<int>(std::wcslen(lpsz)) : 0);
  }
  HRESULT Append(LPCOLESTR lpsz, int nLen) noexcept {
    if (lpsz == nullptr || (m_str != nullptr && nLen == 0)) return S_OK;
    if (nLen < 0) return E_INVALIDARG;
    const unsigned int n1 = Length();
    if (static_cast<unsigned long long>(n1) + static_cast<unsigned int>(nLen) > std::numeric_limits<UINT>::max() / 8)
      return E_OUTOFMEMORY;
    BSTR joined = ::SysAllocStringLen(nullptr, n1 + static_cast<UINT>(nLen));
    if (joined == nullptr) return E_OUTOFMEMORY;
    if (n1 != 0) std::memcpy(joined, m_str, n1 * sizeof(OLECHAR));
    std::memcpy(joined + n1, lpsz, static_cast<std::size_t>(nLen) * sizeof(OLECHAR));
    ::SysFreeString(m_str);
    m_str = joined;
    return S_OK;
  }
  HRESULT Append(OLECHAR ch) noexcept { return Append(&ch, 1); }
  HRESULT AppendBSTR(BSTR p) noexcept {
    if (::SysStringLen(p) == 0) return S_OK;
    return Append(p, static_cast<int>(::SysStringLen(p)));
  }
  CComBSTR& operator+=(const CComBSTR& bstrSrc) {
    if (FAILED(AppendBSTR(bstrSrc.m_str))) AtlThrow(E_OUTOFMEMORY);
    return *this;
  }
  CComBSTR& operator+=(LPCOLESTR pszSrc) {
    if (FAILED(Append(pszSrc))) AtlThrow(E_OUTOFMEMORY);
    return *this;
  }

  // Whole-length comparison; a null BSTR equals an empty one, as VarBstrCmp has it.
  bool operator==(const CComBSTR& bstrSrc) const noexcept {
    const unsigned int n = Length();
    return n == bstrSrc.Length() && (n == 0 || std::wmemcmp(m_str, bstrSrc.m_str, n) == 0);
  }
  // Text comparison up to the first zero; null equals only null, as in ATL.
  bool operator==(LPCOLESTR pszSrc) const noexcept {
    if (pszSrc != nullptr && m_str != nullptr) return std::wcscmp(m_str, pszSrc) == 0;
    return pszSrc == m_str;
  }
  bool operator==(std::nullptr_t) const noexcept { return m_str == nullptr; }
  bool operator<(const CComBSTR& bstrSrc) const noexcept {
    const unsigned int n1 = Length(), n2 = bstrSrc.Length();
    for (unsigned int i = 0; i < n1 && i < n2; ++i)
      if (m_str[i] != bstrSrc.m_str[i]) return m_str[i] < bstrSrc.m_str[i];
    return n1 < n2;
  }

 private:
  static BSTR Checked(BSTR b) {
    if (b == nullptr) AtlThrow(E_OUTOFMEMORY);
    return b;
  }
  void Replace(BSTR fresh) noexcept {
    ::SysFreeString(m_str);
    m_str = fresh;
  }
};

template <> struct CVarTypeInfo<CComBSTR> { static constexpr VARTYPE VT = VT_BSTR; };

// ------------------------------------------------------------------------------------------------
// CComVariant: a VARIANT that clears itself. Layout is VARIANT's, so arrays of VARIANT may be
// viewed as arrays of CComVariant.
class CComVariant : public VARIANT {
 public:
  CComVariant() noexcept { ::VariantInit(this); }
  ~CComVariant() {
    const HRESULT hr = Clear();
    ATLASSERT(SUCCEEDED(hr));
    (void)hr;
  }
  CComVariant(const VARIANT& varSrc) {
    ::VariantInit(this);
    Assign(varSrc);
  }
  CComVariant(const CComVariant& varSrc) : CComVariant(static_cast<const VARIANT&>(varSrc)) {}
  CComVariant(CComVariant&& varSrc) noexcept {
    *static_cast<VARIANT*>(this) = varSrc;
    varSrc.vt = VT_EMPTY;
  }
  CComVariant(LPCOLESTR lpszSrc) {
    ::VariantInit(this);
    *this = lpszSrc;
  }
  CComVariant(const CComBSTR& bstrSrc) {
    ::VariantInit(this);
    *this = bstrSrc;
  }
  CComVariant(bool bSrc) noexcept { Set(VT_BOOL, &VARIANT::boolVal, bSrc ? VARIANT_TRUE : VARIANT_FALSE); }
  CComVariant(int nSrc, VARTYPE vtSrc = VT_I4) noexcept {
    ATLASSERT(vtSrc == VT_I4 || vtSrc == VT_INT);
    Set(vtSrc == VT_INT ? VT_INT : VT_I4, &VARIANT::intVal, nSrc);
  }
  CComVariant(unsigned int nSrc, VARTYPE vtSrc = VT_UI4) noexcept {
    ATLASSERT(vtSrc == VT_UI4 || vtSrc == VT_UINT);
    Set(vtSrc == VT_UINT ? VT_UINT : VT_UI4, &VARIANT::uintVal, nSrc);
  }
  CComVariant(char cSrc) noexcept { Set(VT_I1, &VARIANT::cVal, cSrc); }
  CComVariant(BYTE nSrc) noexcept { Set(VT_UI1, &VARIANT::bVal, nSrc); }
  CComVariant(short nSrc) noexcept { Set(VT_I2, &VARIANT::iVal, nSrc); }
  CComVariant(unsigned short nSrc) noexcept { Set(VT_UI2, &VARIANT::uiVal, nSrc); }
  CComVariant(long nSrc) noexcept { SetSigned(nSrc); }
  CComVariant(unsigned long nSrc) noexcept { SetUnsigned(nSrc); }
  CComVariant(long long nSrc) noexcept { Set(VT_I8, &VARIANT::llVal, static_cast<LONGLONG>(nSrc)); }
  CComVariant(unsigned long long nSrc) noexcept { Set(VT_UI8, &VARIANT::ullVal, static_cast<ULONGLONG>(nSrc)); }
  CComVariant(float fltSrc) noexcept { Set(VT_R4, &VARIANT::fltVal, fltSrc); }
  CComVariant(double dblSrc, VARTYPE vtSrc = VT_R8) noexcept {
    ATLASSERT(vtSrc == VT_R8 || vtSrc == VT_DATE);
    Set(vtSrc == VT_DATE ? VT_DATE : VT_R8, &VARIANT::dblVal, dblSrc);
  }
  CComVariant(IDispatch* pSrc) noexcept {
    ::VariantInit(this);
    *this = pSrc;
  }
  CComVariant(IUnknown* pSrc) noexcept {
    ::VariantInit(this);
    *this = pSrc;
  }
  // Copies the array; vt becomes VT_ARRAY | its element type. Throws CAtlException on failure.
  CComVariant(const SAFEARRAY* pSrc) {
    ::VariantInit(this);
    *this = pSrc;
  }

  CComVariant& operator=(const CComVariant& varSrc) {
    if (this != &varSrc) Assign(varSrc);
    return *this;
  }
  CComVariant& operator=(const VARIANT& varSrc) {
    if (static_cast<const VARIANT*>(this) != &varSrc) Assign(varSrc);
    return *this;
  }
  CComVariant& operator=(CComVariant&& varSrc) noexcept {
    if (this != &varSrc) {
      ClearQuietly();
      *static_cast<VARIANT*>(this) = varSrc;
      varSrc.vt = VT_EMPTY;
    }
    return *this;
  }
  CComVariant& operator=(LPCOLESTR lpszSrc) {
    if (vt == VT_BSTR && bstrVal == lpszSrc) return *this;
    BSTR copy = nullptr;
    if (lpszSrc != nullptr && (copy = ::SysAllocString(lpszSrc)) == nullptr) Fail(E_OUTOFMEMORY);
    ClearQuietly();
    vt = VT_BSTR;
    bstrVal = copy;
    return *this;
  }
  CComVariant& operator=(const CComBSTR& bstrSrc) {
    if (vt == VT_BSTR && bstrVal == bstrSrc.m_str) return *this;
    BSTR copy = bstrSrc.Copy();
    if (copy == nullptr && bstrSrc.m_str != nullptr) Fail(E_OUTOFMEMORY);
    ClearQuietly();
    vt = VT_BSTR;
    bstrVal = copy;
    return *this;
  }
  CComVariant& operator=(bool bSrc) noexcept { return Reset(VT_BOOL, &VARIANT::boolVal, bSrc ? VARIANT_TRUE : VARIANT_FALSE); }
  CComVariant& operator=(int nSrc) noexcept { return Reset(VT_I4, &VARIANT::intVal, nSrc); }
  CComVariant& operator=(unsigned int nSrc) noexcept { return Reset(VT_UI4, &VARIANT::uintVal, nSrc); }
  CComVariant& operator=(char cSrc) noexcept { return Reset(VT_I1, &VARIANT::cVal, cSrc); }
  CComVariant& operator=(BYTE nSrc) noexcept { return Reset(VT_UI1, &VARIANT::bVal, nSrc); }
  CComVariant& operator=(short nSrc) noexcept { return Reset(VT_I2, &VARIANT::iVal, nSrc); }
  CComVariant& operator=(unsigned short nSrc) noexcept { return Reset(VT_UI2, &VARIANT::uiVal, nSrc); }
  CComVariant& operator=(long nSrc) noexcept {
    ClearQuietly();
    SetSigned(nSrc);
    return *this;
  }
  CComVariant& operator=(unsigned long nSrc) noexcept {
    ClearQuietly();
    SetUnsigned(nSrc);
    return *this;
  }
  CComVariant& operator=(long long nSrc) noexcept { return Reset(VT_I8, &VARIANT::llVal, static_cast<LONGLONG>(nSrc)); }
  CComVariant& operator=(unsigned long long nSrc) noexcept {
    return Reset(VT_UI8, &VARIANT::ullVal, static_cast<ULONGLONG>(nSrc));
  }
  CComVariant& operator=(float fltSrc) noexcept { return Reset(VT_R4, &VARIANT::fltVal, fltSrc); }
  CComVariant& operator=(double dblSrc) noexcept { return Reset(VT_R8, &VARIANT::dblVal, dblSrc); }
  CComVariant& operator=(IDispatch* pSrc) noexcept {
    if (pSrc != nullptr) pSrc->AddRef();  // before clearing: it may be the object held now
    ClearQuietly();
    vt = VT_DISPATCH;
    pdispVal = pSrc;
    return *this;
  }
  CComVariant& operator=(IUnknown* pSrc) noexcept {
    if (pSrc != nullptr) pSrc->AddRef();
    ClearQuietly();
    vt = VT_UNKNOWN;
    punkVal = pSrc;
    return *this;
  }
  CComVariant& operator=(const SAFEARRAY* pSrc) {
    ATLASSERT(pSrc != nullptr);
    if (pSrc == nullptr) Fail(E_INVALIDARG);
    SAFEARRAY* source = const_cast<SAFEARRAY*>(pSrc);
    VARTYPE element = VT_EMPTY;
    HRESULT hr = AtlSafeArrayGetActualVartype(source, &element);
    SAFEARRAY* copy = nullptr;
    if (SUCCEEDED(hr)) hr = ::SafeArrayCopy(source, &copy);
    if (FAILED(hr)) Fail(hr);
    ClearQuietly();
    vt = static_cast<VARTYPE>(VT_ARRAY | element);
    parray = copy;
    return *this;
  }

  HRESULT Clear() noexcept { return ::VariantClear(this); }
  HRESULT Copy(const VARIANT* pSrc) noexcept { return ::VariantCopy(this, pSrc); }
  // A copy of the held BSTR; DISP_E_TYPEMISMATCH when the variant holds something else.
  HRESULT CopyTo(BSTR* pstrDest) const noexcept {
    ATLASSERT(pstrDest != nullptr && vt == VT_BSTR);
    if (pstrDest == nullptr) return E_POINTER;
    if (vt != VT_BSTR) return DISP_E_TYPEMISMATCH;
    *pstrDest = ::SysAllocStringByteLen(reinterpret_cast<const char*>(bstrVal), ::SysStringByteLen(bstrVal));
    return *pstrDest == nullptr ? E_OUTOFMEMORY : S_OK;
  }
  // Takes over pSrc's content and leaves pSrc VT_EMPTY.
  HRESULT Attach(VARIANT* pSrc) noexcept {
    if (pSrc == nullptr) return E_INVALIDARG;
    const HRESULT hr = Clear();
    if (FAILED(hr)) return hr;
    *static_cast<VARIANT*>(this) = *pSrc;
    pSrc->vt = VT_EMPTY;
    return S_OK;
  }
  // Hands the content to pDest (cleared first) and becomes VT_EMPTY.
  HRESULT Detach(VARIANT* pDest) noexcept {
    ATLASSERT(pDest != nullptr);
    if (pDest == nullptr) return E_POINTER;
    const HRESULT hr = ::VariantClear(pDest);
    if (FAILED(hr)) return hr;
    *pDest = *static_cast<VARIANT*>(this);
    vt = VT_EMPTY;
    return S_OK;
  }
  HRESULT ChangeType(VARTYPE vtNew, const VARIANT* pSrc = nullptr) noexcept {
    const VARIANT* source = pSrc != nullptr ? pSrc : this;
    return ::VariantChangeType(this, source, 0, vtNew);
  }
  template <class T>
  void SetByRef(T* pT) noexcept {
    ClearQuietly();
    vt = static_cast<VARTYPE>(CVarTypeInfo<T>::VT | VT_BYREF);
    byref = pT;
  }

 private:
  template <class V, class M>
  void Set(VARTYPE type, M VARIANT::*field, V value) noexcept {
    ::VariantInit(this);
    vt = type;
    this->*field = static_cast<M>(value);
  }
  template <class V, class M>
  CComVariant& Reset(VARTYPE type, M VARIANT::*field, V value) noexcept {
    ClearQuietly();
    vt = type;
    this->*field = static_cast<M>(value);
    return *this;
  }
  void SetSigned(long value) noexcept {
    if (value >= std::numeric_limits<LONG>::min() && value <= std::numeric_limits<LONG>::max())
      Set(VT_I4, &VARIANT::lVal, value);
    else
      Set(VT_I8, &VARIANT::llVal, value);
  }
  void SetUnsigned(unsigned long value) noexcept {
    if (value <= std::numeric_limits<ULONG>::max())
      Set(VT_UI4, &VARIANT::ulVal, value);
    else
      Set(VT_UI8, &VARIANT::ullVal, value);
  }
  void ClearQuietly() noexcept {
    const HRESULT hr = Clear();
    ATLASSERT(SUCCEEDED(hr));
    (void)hr;
  }
  void Assign(const VARIANT& source) {
    const HRESULT hr = ::VariantCopy(this, &source);
    if (FAILED(hr)) Fail(hr);
  }
  // As ATL: the variant is left holding the error, then the error is thrown.
  [[noreturn]] void Fail(HRESULT hr) {
    ClearQuietly();
    vt = VT_ERROR;
    scode = hr;
    AtlThrow(hr);
  }
};

template <> struct CVarTypeInfo<CComVariant> { static constexpr VARTYPE VT = VT_VARIANT; };

}  // namespace ATL

#ifndef _ATL_NO_AUTOMATIC_NAMESPACE
using namespace ATL;
#endif

#endif  // !_WIN32
