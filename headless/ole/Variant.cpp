// VARIANT ownership: VariantInit, VariantClear, VariantCopy.
#include <cstring>

#include "headless/ole/VarTypes.h"
#include "platform/ole/oleauto.h"

using headless::ole::IsValidVariantType;
using headless::ole::kVtRecord;

namespace {

// Deep copy of src into out (which owns nothing yet). On failure out is left empty.
HRESULT CopyValue(VARIANT* out, const VARIANT* src) noexcept {
  std::memcpy(out, src, sizeof(VARIANT));
  const VARTYPE vt = src->vt;
  if (vt & VT_BYREF) return S_OK;  // a reference is copied as a reference
  HRESULT hr = S_OK;
  if (vt & VT_ARRAY) {
    hr = SafeArrayCopy(src->parray, &out->parray);
  } else if (vt == VT_BSTR) {
    if (src->bstrVal != nullptr) {
      out->bstrVal = SysAllocStringByteLen(reinterpret_cast<const char*>(src->bstrVal),
                                           SysStringByteLen(src->bstrVal));
      if (out->bstrVal == nullptr) hr = E_OUTOFMEMORY;
    }
  } else if (vt == VT_DISPATCH || vt == VT_UNKNOWN) {
    if (src->punkVal != nullptr) src->punkVal->AddRef();
  } else if (vt == kVtRecord) {
    hr = E_NOTIMPL;
  }
  if (FAILED(hr)) VariantInit(out);
  return hr;
}

}  // namespace

void VariantInit(VARIANTARG* pvarg) {
  if (pvarg == nullptr) return;
  pvarg->vt = VT_EMPTY;
  pvarg->wReserved1 = pvarg->wReserved2 = pvarg->wReserved3 = 0;
}

HRESULT VariantClear(VARIANTARG* pvarg) {
  if (pvarg == nullptr) return E_INVALIDARG;
  const VARTYPE vt = pvarg->vt;
  if (!IsValidVariantType(vt)) return DISP_E_BADVARTYPE;
  if (!(vt & VT_BYREF)) {
    if (vt & VT_ARRAY) {
      const HRESULT hr = SafeArrayDestroy(pvarg->parray);
      if (FAILED(hr)) return hr;  // a locked array stays where it is
    } else if (vt == kVtRecord) {
      return E_NOTIMPL;
    }
  }
  // Empty the variant before releasing what it held: a Release may reach this variant again.
  const VARIANT held = *pvarg;
  std::memset(pvarg, 0, sizeof(VARIANT));
  pvarg->vt = VT_EMPTY;
  if (!(vt & (VT_BYREF | VT_ARRAY))) {
    if (vt == VT_BSTR) {
      SysFreeString(held.bstrVal);
    } else if ((vt == VT_DISPATCH || vt == VT_UNKNOWN) && held.punkVal != nullptr) {
      held.punkVal->Release();
    }
  }
  return S_OK;
}

HRESULT VariantCopy(VARIANTARG* pvargDest, const VARIANTARG* pvargSrc) {
  if (pvargDest == nullptr || pvargSrc == nullptr) return E_INVALIDARG;
  if (pvargDest == pvargSrc) return S_OK;
  if (!IsValidVariantType(pvargSrc->vt)) return DISP_E_BADVARTYPE;
  // Copy first, clear after: the source may live inside what the destination owns.
  VARIANT copy;
  HRESULT hr = CopyValue(&copy, pvargSrc);
  if (FAILED(hr)) return hr;
  hr = VariantClear(pvargDest);
  if (FAILED(hr)) {
    VariantClear(&copy);
    return hr;
  }
  *pvargDest = copy;
  return S_OK;
}
