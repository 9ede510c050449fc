// ATL's CComSafeArray<T>: owns a SAFEARRAY of T and keeps it locked while it holds it, so elements
// are reached directly. Elements of BSTR, VARIANT and interface arrays are seen through their ATL
// wrappers (CComBSTR&, CComVariant&, CComPtr<>&), so assigning to one frees or releases the old
// content. Header-only; on Windows this is the system's atlsafe.h.
//
// Where ATL only asserts (bad index, no array), these answer DISP_E_BADINDEX / E_INVALIDARG, and
// GetAt / operator[] throw CAtlException, so a mistake never reads outside the array.
#pragma once

#if defined(_WIN32)
#  include <atlsafe.h>
#else

#include <type_traits>

#include "platform/ole/atlbase.h"

namespace ATL {

namespace detail {

// How an element of type T is stored, viewed and copied.
template <class T>
struct SafeArrayElement {
  using Wrapper = T;
  static void* PutArgument(const T& t) noexcept { return const_cast<T*>(&t); }
  static HRESULT Assign(T& slot, const T& t, BOOL /*bCopy*/) noexcept {
    slot = t;
    return S_OK;
  }
};

template <>
struct SafeArrayElement<BSTR> {
  using Wrapper = CComBSTR;
  static void* PutArgument(const BSTR& t) noexcept { return t; }
  static HRESULT Assign(BSTR& slot, const BSTR& t, BOOL bCopy) noexcept {
    BSTR value = t;
    if (bCopy && t != nullptr) {
      value = ::SysAllocStringByteLen(reinterpret_cast<const char*>(t), ::SysStringByteLen(t));
      if (value == nullptr) return E_OUTOFMEMORY;
    }
    if (slot != value) ::SysFreeString(slot);
    slot = value;
    return S_OK;
  }
};

template <>
struct SafeArrayElement<VARIANT> {
  using Wrapper = CComVariant;
  static void* PutArgument(const VARIANT& t) noexcept { return const_cast<VARIANT*>(&t); }
  static HRESULT Assign(VARIANT& slot, const VARIANT& t, BOOL bCopy) noexcept {
    if (!bCopy) {
      const HRESULT hr = ::VariantClear(&slot);
      if (SUCCEEDED(hr)) slot = t;
      return hr;
    }
    // A copy reads through a reference, as VariantCopyInd does.
    if (t.vt & VT_BYREF) return ::VariantChangeType(&slot, &t, 0, static_cast<VARTYPE>(t.vt & ~VT_BYREF));
    return ::VariantCopy(&slot, &t);
  }
};

template <class I>
struct SafeArrayInterfaceElement {
  using Wrapper = CComPtr<I>;
  static void* PutArgument(I* const& t) noexcept { return t; }
  static HRESULT Assign(I*& slot, I* const& t, BOOL bCopy) noexcept {
    if (bCopy && t != nullptr) t->AddRef();
    I* old = slot;
    slot = t;
    if (old != nullptr) old->Release();
    return S_OK;
  }
};
template <> struct SafeArrayElement<IUnknown*> : SafeArrayInterfaceElement<IUnknown> {};
template <> struct SafeArrayElement<IDispatch*> : SafeArrayInterfaceElement<IDispatch> {};

}  // namespace detail

template <class T, VARTYPE _vartype = CVarTypeInfo<T>::VT>
class CComSafeArray {
  using Element = detail::SafeArrayElement<T>;
  using Wrapper = typename Element::Wrapper;
  static_assert(sizeof(Wrapper) == sizeof(T), "an element and its wrapper share one layout");

 public:
  LPSAFEARRAY m_psa;

  CComSafeArray() noexcept : m_psa(nullptr) {}
  explicit CComSafeArray(const SAFEARRAYBOUND& bound) : m_psa(nullptr) { Throw(Create(&bound)); }
  explicit CComSafeArray(ULONG ulCount, LONG lLBound = 0) : m_psa(nullptr) { Throw(Create(ulCount, lLBound)); }
  CComSafeArray(const SAFEARRAYBOUND* pBound, UINT uDims = 1) : m_psa(nullptr) { Throw(Create(pBound, uDims)); }
  CComSafeArray(const SAFEARRAY* psaSrc) : m_psa(nullptr) { Throw(CopyFrom(psaSrc)); }
  CComSafeArray(const SAFEARRAY& saSrc) : m_psa(nullptr) { Throw(CopyFrom(&saSrc)); }
  CComSafeArray(const CComSafeArray& saSrc) : m_psa(nullptr) {
    if (saSrc.m_psa != nullptr) Throw(CopyFrom(saSrc.m_psa));
  }
  CComSafeArray(CComSafeArray&& saSrc) noexcept : m_psa(saSrc.m_psa) { saSrc.m_psa = nullptr; }
  ~CComSafeArray() {
    const HRESULT hr = Destroy();
    ATLASSERT(SUCCEEDED(hr));
    (void)hr;
  }

  CComSafeArray& operator=(const CComSafeArray& saSrc) {
    if (this != &saSrc) *this = saSrc.m_psa;
    return *this;
  }
  CComSafeArray& operator=(const SAFEARRAY* psaSrc) {
    ATLASSERT(psaSrc != nullptr);
    if (psaSrc != m_psa) Throw(CopyFrom(psaSrc));
    return *this;
  }

  HRESULT Create(ULONG ulCount = 0, LONG lLBound = 0) noexcept {
    SAFEARRAYBOUND bound{ulCount, lLBound};
    return Create(&bound);
  }
  // Makes a new array and locks it. An array held before is destroyed (ATL would leak it).
  HRESULT Create(const SAFEARRAYBOUND* pBound, UINT uDims = 1) noexcept {
    ATLASSERT(m_psa == nullptr);
    if (pBound == nullptr || uDims == 0) return E_INVALIDARG;
    HRESULT hr = Destroy();
    if (FAILED(hr)) return hr;
    m_psa = ::SafeArrayCreate(_vartype, uDims, const_cast<LPSAFEARRAYBOUND>(pBound));
    if (m_psa == nullptr) return E_OUTOFMEMORY;
    return Lock();
  }
  // Unlocks and destroys the array held, if any.
  HRESULT Destroy() noexcept {
    if (m_psa == nullptr) return S_OK;
    // An array received through GetSafeArrayPtr() was never locked by this wrapper.
    if (m_psa->cLocks > 0) {
      const HRESULT hr = Unlock();
      if (FAILED(hr)) return hr;
    }
    const HRESULT hr = ::SafeArrayDestroy(m_psa);
    if (SUCCEEDED(hr)) m_psa = nullptr;
    return hr;
  }
  // Takes over psaSrc (same element type), locking it; E_INVALIDARG for another type.
  HRESULT Attach(const SAFEARRAY* psaSrc) noexcept {
    if (psaSrc == nullptr) return E_INVALIDARG;
    VARTYPE vt = VT_EMPTY;
    HRESULT hr = AtlSafeArrayGetActualVartype(const_cast<LPSAFEARRAY>(psaSrc), &vt);
    if (FAILED(hr)) return hr;
    if (vt != _vartype) return E_INVALIDARG;
    hr = Destroy();
    if (FAILED(hr)) return hr;
    m_psa = const_cast<LPSAFEARRAY>(psaSrc);
    return Lock();
  }
  // Hands the array back unlocked; the wrapper becomes empty.
  LPSAFEARRAY Detach() noexcept {
    ATLASSERT(m_psa != nullptr);
    if (m_psa != nullptr && m_psa->cLocks > 0) Unlock();
    LPSAFEARRAY temp = m_psa;
    m_psa = nullptr;
    return temp;
  }
  // Replaces the array held by a copy of psaSrc (same element type).
  HRESULT CopyFrom(const SAFEARRAY* psaSrc) noexcept {
    if (psaSrc == nullptr) return E_INVALIDARG;
    VARTYPE vt = VT_EMPTY;
    HRESULT hr = AtlSafeArrayGetActualVartype(const_cast<LPSAFEARRAY>(psaSrc), &vt);
    if (FAILED(hr)) return hr;
    if (vt != _vartype) return E_INVALIDARG;
    LPSAFEARRAY copy = nullptr;
    hr = ::SafeArrayCopy(const_cast<LPSAFEARRAY>(psaSrc), &copy);
    if (FAILED(hr)) return hr;
    hr = Destroy();
    if (FAILED(hr)) {
      ::SafeArrayDestroy(copy);
      return hr;
    }
    m_psa = copy;
    return Lock();
  }
  HRESULT CopyTo(LPSAFEARRAY* ppArray) const noexcept {
    if (ppArray == nullptr) return E_POINTER;
    if (m_psa == nullptr) return E_INVALIDARG;
    return ::SafeArrayCopy(m_psa, ppArray);
  }

  UINT GetDimensions() const noexcept { return ::SafeArrayGetDim(m_psa); }
  // Elements in dimension uDim (0-based, leftmost first); 0 when there is no array.
  ULONG GetCount(UINT uDim = 0) const noexcept {
    LONG lower = 0, upper = -1;
    if (FAILED(::SafeArrayGetLBound(m_psa, uDim + 1, &lower)) || FAILED(::SafeArrayGetUBound(m_psa, uDim + 1, &upper)))
      return 0;
    return static_cast<ULONG>(static_cast<long long>(upper) - lower + 1);
  }
  LONG GetLowerBound(UINT uDim = 0) const {
    LONG lower = 0;
    Throw(::SafeArrayGetLBound(m_psa, uDim + 1, &lower));
    return lower;
  }
  LONG GetUpperBound(UINT uDim = 0) const {
    LONG upper = 0;
    Throw(::SafeArrayGetUBound(m_psa, uDim + 1, &upper));
    return upper;
  }
  VARTYPE GetType() const noexcept {
    VARTYPE vt = VT_EMPTY;
    AtlSafeArrayGetActualVartype(m_psa, &vt);
    return vt;
  }
  LPSAFEARRAY* GetSafeArrayPtr() noexcept { return &m_psa; }
  bool IsSizable() const {
    if (m_psa == nullptr) AtlThrow(E_FAIL);
    return (m_psa->fFeatures & FADF_FIXEDSIZE) == 0;
  }

  // Changes the rightmost dimension; makes the array when there is none yet.
  HRESULT Resize(ULONG ulCount, LONG lLBound = 0) noexcept {
    SAFEARRAYBOUND bound{ulCount, lLBound};
    return Resize(&bound);
  }
  HRESULT Resize(const SAFEARRAYBOUND* pBound) noexcept {
    if (pBound == nullptr) return E_INVALIDARG;
    if (m_psa == nullptr) return Create(pBound);
    HRESULT hr = Unlock();
    if (FAILED(hr)) return hr;
    hr = ::SafeArrayRedim(m_psa, const_cast<LPSAFEARRAYBOUND>(pBound));
    const HRESULT relock = Lock();
    return FAILED(hr) ? hr : relock;
  }
  // Appends one element (a copy when bCopy), making a one-element array when there is none.
  HRESULT Add(const T& t, BOOL bCopy = TRUE) noexcept {
    ULONG count = 0;
    LONG lower = 0;
    if (m_psa != nullptr) {
      if (GetDimensions() != 1) return E_INVALIDARG;
      count = GetCount();
      ::SafeArrayGetLBound(m_psa, 1, &lower);
    }
    HRESULT hr = Resize(count + 1, lower);
    if (FAILED(hr)) return hr;
    return SetAt(static_cast<LONG>(lower + static_cast<long long>(count)), t, bCopy);
  }
  HRESULT Add(ULONG ulCount, const T* pT, BOOL bCopy = TRUE) noexcept {
    if (pT == nullptr) return E_INVALIDARG;
    for (ULONG i = 0; i < ulCount; ++i) {
      const HRESULT hr = Add(pT[i], bCopy);
      if (FAILED(hr)) return hr;
    }
    return S_OK;
  }

  // The element at lIndex of a one-dimensional array; throws CAtlException(DISP_E_BADINDEX).
  Wrapper& GetAt(LONG lIndex) const {
    T* slot = Slot(lIndex);
    if (slot == nullptr) AtlThrow(DISP_E_BADINDEX);
    return *reinterpret_cast<Wrapper*>(slot);
  }
  HRESULT SetAt(LONG lIndex, const T& t, BOOL bCopy = TRUE) noexcept {
    T* slot = Slot(lIndex);
    if (slot == nullptr) return m_psa == nullptr ? E_INVALIDARG : DISP_E_BADINDEX;
    return Element::Assign(*slot, t, bCopy);
  }
  // alIndex[0] indexes the leftmost dimension. t receives a copy the caller owns.
  HRESULT MultiDimGetAt(const LONG* alIndex, T& t) noexcept {
    return ::SafeArrayGetElement(m_psa, const_cast<LONG*>(alIndex), &t);
  }
  HRESULT MultiDimSetAt(const LONG* alIndex, const T& t) noexcept {
    return ::SafeArrayPutElement(m_psa, const_cast<LONG*>(alIndex), Element::PutArgument(t));
  }

  template <class I>
    requires std::is_integral_v<I>
  Wrapper& operator[](I index) const {
    return GetAt(static_cast<LONG>(index));
  }
  operator LPSAFEARRAY() const noexcept { return m_psa; }

 private:
  HRESULT Lock() noexcept { return ::SafeArrayLock(m_psa); }
  HRESULT Unlock() noexcept { return ::SafeArrayUnlock(m_psa); }
  static void Throw(HRESULT hr) {
    if (FAILED(hr)) AtlThrow(hr);
  }
  T* Slot(LONG lIndex) const noexcept {
    if (m_psa == nullptr || m_psa->cDims != 1) return nullptr;
    const SAFEARRAYBOUND& bound = m_psa->rgsabound[0];
    const long long relative = static_cast<long long>(lIndex) - bound.lLbound;
    if (relative < 0 || relative >= static_cast<long long>(bound.cElements)) return nullptr;
    return static_cast<T*>(m_psa->pvData) + relative;
  }
};

}  // namespace ATL

#endif  // !_WIN32
