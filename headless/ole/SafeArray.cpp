// SAFEARRAY with Windows' memory layout and rules.
//
// Layout: 16 bytes precede the descriptor. With FADF_HAVEIID they hold the element interface's IID;
// with FADF_HAVEVARTYPE the element VARTYPE sits in their last 4 bytes. The descriptor holds cDims
// bounds, stored right-to-left: rgsabound[0] is the rightmost dimension, rgsabound[cDims - 1] the
// leftmost (dimension 1 of GetLBound/GetUBound, and the one rgIndices[0] addresses).
// Data are in column-major order: the leftmost dimension varies fastest.
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "headless/ole/VarTypes.h"
#include "platform/ole/oleauto.h"

namespace {

using headless::ole::ElementSize;

constexpr std::size_t kPrefixBytes = 16;
constexpr ULONG kMaxLocks = 0xFFFF;  // the lock count is 16 bits wide on the wire
constexpr USHORT kNotOwnedData = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED;
constexpr USHORT kContentFlags = FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH | FADF_VARIANT;

unsigned char* PrefixOf(SAFEARRAY* psa) noexcept {
  return reinterpret_cast<unsigned char*>(psa) - kPrefixBytes;
}

std::size_t DescriptorBytes(UINT cDims) noexcept {
  return sizeof(SAFEARRAY) + (cDims - 1) * sizeof(SAFEARRAYBOUND);
}

SAFEARRAYBOUND& BoundOfDimension(SAFEARRAY* psa, UINT nDim) noexcept {
  return psa->rgsabound[psa->cDims - nDim];  // nDim is 1-based, leftmost first
}

// Number of cells, or false on overflow of size_t (or of the byte count).
bool CellCount(const SAFEARRAY* psa, std::size_t* cells) noexcept {
  std::size_t n = 1;
  for (USHORT i = 0; i < psa->cDims; ++i) {
    const std::size_t c = psa->rgsabound[i].cElements;
    if (c != 0 && n > std::numeric_limits<std::size_t>::max() / c) return false;
    n *= c;
  }
  if (psa->cbElements != 0 && n > std::numeric_limits<std::size_t>::max() / psa->cbElements) return false;
  *cells = n;
  return true;
}

std::size_t CellCountUnchecked(const SAFEARRAY* psa) noexcept {
  std::size_t n = 0;
  return CellCount(psa, &n) ? n : 0;
}

// Cell number of the element rgIndices names, or false when an index is out of its bounds.
bool CellOf(const SAFEARRAY* psa, const LONG* rgIndices, std::size_t* cell) noexcept {
  std::size_t offset = 0;
  std::size_t stride = 1;
  for (USHORT d = 0; d < psa->cDims; ++d) {
    const SAFEARRAYBOUND& bound = psa->rgsabound[psa->cDims - 1 - d];
    const long long relative = static_cast<long long>(rgIndices[d]) - bound.lLbound;
    if (relative < 0 || relative >= static_cast<long long>(bound.cElements)) return false;
    offset += static_cast<std::size_t>(relative) * stride;
    stride *= bound.cElements;
  }
  *cell = offset;
  return true;
}

void* CellAddress(const SAFEARRAY* psa, std::size_t cell) noexcept {
  return static_cast<unsigned char*>(psa->pvData) + cell * psa->cbElements;
}

// Frees what cells [first, first + count) hold and zeroes them.
void ClearCells(SAFEARRAY* psa, std::size_t first, std::size_t count) noexcept {
  if (psa->pvData == nullptr || count == 0) return;
  for (std::size_t i = first; i < first + count; ++i) {
    void* cell = CellAddress(psa, i);
    if (psa->fFeatures & FADF_BSTR) {
      SysFreeString(*static_cast<BSTR*>(cell));
    } else if (psa->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) {
      if (IUnknown* unknown = *static_cast<IUnknown**>(cell)) unknown->Release();
    } else if (psa->fFeatures & FADF_VARIANT) {
      VariantClear(static_cast<VARIANT*>(cell));
    }
  }
  std::memset(CellAddress(psa, first), 0, count * psa->cbElements);
}

// Copies one cell's content into `to`, which holds nothing that needs freeing.
HRESULT CopyCell(USHORT features, ULONG cbElements, const void* from, void* to) noexcept {
  if (features & FADF_BSTR) {
    BSTR source = *static_cast<const BSTR*>(from);
    BSTR copy = nullptr;
    if (source != nullptr) {
      copy = SysAllocStringByteLen(reinterpret_cast<const char*>(source), SysStringByteLen(source));
      if (copy == nullptr) return E_OUTOFMEMORY;
    }
    *static_cast<BSTR*>(to) = copy;
  } else if (features & (FADF_UNKNOWN | FADF_DISPATCH)) {
    IUnknown* unknown = *static_cast<IUnknown* const*>(from);
    if (unknown != nullptr) unknown->AddRef();
    *static_cast<IUnknown**>(to) = unknown;
  } else if (features & FADF_VARIANT) {
    VariantInit(static_cast<VARIANT*>(to));
    return VariantCopy(static_cast<VARIANT*>(to), static_cast<const VARIANT*>(from));
  } else {
    std::memcpy(to, from, cbElements);
  }
  return S_OK;
}

void* AllocateData(std::size_t bytes) noexcept { return std::calloc(1, bytes == 0 ? 1 : bytes); }

SAFEARRAY* AllocateDescriptor(UINT cDims) noexcept {
  auto* block = static_cast<unsigned char*>(std::calloc(1, kPrefixBytes + DescriptorBytes(cDims)));
  if (block == nullptr) return nullptr;
  return reinterpret_cast<SAFEARRAY*>(block + kPrefixBytes);
}

void FreeDescriptor(SAFEARRAY* psa) noexcept { std::free(PrefixOf(psa)); }

std::atomic_ref<ULONG> LockCount(SAFEARRAY* psa) noexcept { return std::atomic_ref<ULONG>(psa->cLocks); }

}  // namespace

SAFEARRAY* SafeArrayCreate(VARTYPE vt, UINT cDims, SAFEARRAYBOUND* rgsabound) {
  const ULONG elementSize = ElementSize(vt);
  if (rgsabound == nullptr || cDims == 0 || cDims > 0xFFFF || elementSize == 0) return nullptr;
  SAFEARRAY* psa = AllocateDescriptor(cDims);
  if (psa == nullptr) return nullptr;
  psa->cDims = static_cast<USHORT>(cDims);
  psa->cbElements = elementSize;
  for (UINT i = 0; i < cDims; ++i) psa->rgsabound[cDims - 1 - i] = rgsabound[i];

  // As Windows does: interface arrays record their IID, every other type its VARTYPE.
  if (vt == VT_DISPATCH || vt == VT_UNKNOWN) {
    psa->fFeatures = FADF_HAVEIID | (vt == VT_DISPATCH ? FADF_DISPATCH : FADF_UNKNOWN);
    const IID& iid = vt == VT_DISPATCH ? IID_IDispatch : IID_IUnknown;
    std::memcpy(PrefixOf(psa), &iid, sizeof iid);
  } else {
    psa->fFeatures = FADF_HAVEVARTYPE;
    if (vt == VT_BSTR) psa->fFeatures |= FADF_BSTR;
    if (vt == VT_VARIANT) psa->fFeatures |= FADF_VARIANT;
    const DWORD stored = vt;
    std::memcpy(PrefixOf(psa) + kPrefixBytes - sizeof stored, &stored, sizeof stored);
  }

  std::size_t cells = 0;
  if (!CellCount(psa, &cells) || (psa->pvData = AllocateData(cells * elementSize)) == nullptr) {
    FreeDescriptor(psa);
    return nullptr;
  }
  return psa;
}

SAFEARRAY* SafeArrayCreateVector(VARTYPE vt, LONG lLbound, ULONG cElements) {
  SAFEARRAYBOUND bound{cElements, lLbound};
  return SafeArrayCreate(vt, 1, &bound);
}

HRESULT SafeArrayDestroy(SAFEARRAY* psa) {
  if (psa == nullptr) return S_OK;
  if (LockCount(psa).load() > 0) return DISP_E_ARRAYISLOCKED;
  ClearCells(psa, 0, CellCountUnchecked(psa));
  if (!(psa->fFeatures & kNotOwnedData)) {
    std::free(psa->pvData);
    FreeDescriptor(psa);
  }
  return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY* psa, SAFEARRAY** ppsaOut) {
  if (ppsaOut == nullptr) return E_INVALIDARG;
  *ppsaOut = nullptr;
  if (psa == nullptr) return S_OK;  // copying no array gives no array
  std::size_t cells = 0;
  if (psa->cDims == 0 || !CellCount(psa, &cells)) return E_INVALIDARG;

  SAFEARRAY* copy = AllocateDescriptor(psa->cDims);
  if (copy == nullptr) return E_OUTOFMEMORY;
  std::memcpy(PrefixOf(copy), PrefixOf(psa), kPrefixBytes + DescriptorBytes(psa->cDims));
  copy->cLocks = 0;
  copy->fFeatures &= static_cast<USHORT>(~kNotOwnedData);
  copy->pvData = AllocateData(cells * psa->cbElements);
  if (copy->pvData == nullptr) {
    FreeDescriptor(copy);
    return E_OUTOFMEMORY;
  }
  if (psa->pvData != nullptr) {
    for (std::size_t i = 0; i < cells; ++i) {
      const HRESULT hr = CopyCell(psa->fFeatures, psa->cbElements, CellAddress(psa, i), CellAddress(copy, i));
      if (FAILED(hr)) {
        SafeArrayDestroy(copy);
        return hr;
      }
    }
  }
  *ppsaOut = copy;
  return S_OK;
}

HRESULT SafeArrayRedim(SAFEARRAY* psa, SAFEARRAYBOUND* psaboundNew) {
  if (psa == nullptr || psaboundNew == nullptr || psa->cDims == 0) return E_INVALIDARG;
  if (LockCount(psa).load() > 0) return DISP_E_ARRAYISLOCKED;
  if (psa->fFeatures & (FADF_FIXEDSIZE | kNotOwnedData)) return E_INVALIDARG;

  // The rightmost dimension varies slowest, so resizing it keeps or drops a tail of the data.
  std::size_t inner = 1;
  for (USHORT i = 1; i < psa->cDims; ++i) inner *= psa->rgsabound[i].cElements;
  const std::size_t oldCells = inner * psa->rgsabound[0].cElements;
  SAFEARRAYBOUND previous = psa->rgsabound[0];
  psa->rgsabound[0] = *psaboundNew;
  std::size_t newCells = 0;
  if (!CellCount(psa, &newCells)) {
    psa->rgsabound[0] = previous;
    return E_OUTOFMEMORY;
  }
  if (newCells < oldCells) {
    psa->rgsabound[0] = previous;  // clear with the old shape in force
    ClearCells(psa, newCells, oldCells - newCells);
    psa->rgsabound[0] = *psaboundNew;
  }
  const std::size_t bytes = newCells * psa->cbElements;
  void* data = std::realloc(psa->pvData, bytes == 0 ? 1 : bytes);
  if (data == nullptr) {
    if (newCells >= oldCells) psa->rgsabound[0] = previous;
    return E_OUTOFMEMORY;
  }
  psa->pvData = data;
  if (newCells > oldCells)
    std::memset(CellAddress(psa, oldCells), 0, (newCells - oldCells) * psa->cbElements);
  return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* psa) { return psa ? psa->cDims : 0; }

UINT SafeArrayGetElemsize(SAFEARRAY* psa) { return psa ? psa->cbElements : 0; }

HRESULT SafeArrayGetVartype(SAFEARRAY* psa, VARTYPE* pvt) {
  if (psa == nullptr || pvt == nullptr) return E_INVALIDARG;
  if (psa->fFeatures & FADF_HAVEVARTYPE) {
    DWORD stored;
    std::memcpy(&stored, PrefixOf(psa) + kPrefixBytes - sizeof stored, sizeof stored);
    *pvt = static_cast<VARTYPE>(stored);
  } else if (psa->fFeatures & FADF_RECORD) {
    *pvt = headless::ole::kVtRecord;
  } else if (psa->fFeatures & FADF_DISPATCH) {
    *pvt = VT_DISPATCH;
  } else if (psa->fFeatures & FADF_UNKNOWN) {
    *pvt = VT_UNKNOWN;
  } else {
    return E_INVALIDARG;
  }
  return S_OK;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* psa, UINT nDim, LONG* plLbound) {
  if (psa == nullptr || plLbound == nullptr) return E_INVALIDARG;
  if (nDim == 0 || nDim > psa->cDims) return DISP_E_BADINDEX;
  *plLbound = BoundOfDimension(psa, nDim).lLbound;
  return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* psa, UINT nDim, LONG* plUbound) {
  if (psa == nullptr || plUbound == nullptr) return E_INVALIDARG;
  if (nDim == 0 || nDim > psa->cDims) return DISP_E_BADINDEX;
  const SAFEARRAYBOUND& bound = BoundOfDimension(psa, nDim);
  *plUbound = static_cast<LONG>(static_cast<long long>(bound.lLbound) + bound.cElements - 1);
  return S_OK;
}

HRESULT SafeArrayLock(SAFEARRAY* psa) {
  if (psa == nullptr) return E_INVALIDARG;
  auto locks = LockCount(psa);
  ULONG current = locks.load();
  do {
    if (current >= kMaxLocks) return E_UNEXPECTED;
  } while (!locks.compare_exchange_weak(current, current + 1));
  return S_OK;
}

HRESULT SafeArrayUnlock(SAFEARRAY* psa) {
  if (psa == nullptr) return E_INVALIDARG;
  auto locks = LockCount(psa);
  ULONG current = locks.load();
  do {
    if (current == 0) return E_UNEXPECTED;
  } while (!locks.compare_exchange_weak(current, current - 1));
  return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* psa, void HUGEP** ppvData) {
  if (psa == nullptr || ppvData == nullptr) return E_INVALIDARG;
  const HRESULT hr = SafeArrayLock(psa);
  *ppvData = SUCCEEDED(hr) ? psa->pvData : nullptr;
  return hr;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* psa) { return SafeArrayUnlock(psa); }

HRESULT SafeArrayPtrOfIndex(SAFEARRAY* psa, LONG* rgIndices, void** ppvData) {
  if (psa == nullptr || rgIndices == nullptr || ppvData == nullptr) return E_INVALIDARG;
  std::size_t cell = 0;
  if (!CellOf(psa, rgIndices, &cell)) return DISP_E_BADINDEX;
  *ppvData = CellAddress(psa, cell);
  return S_OK;
}

HRESULT SafeArrayGetElement(SAFEARRAY* psa, LONG* rgIndices, void* pv) {
  if (psa == nullptr || rgIndices == nullptr || pv == nullptr) return E_INVALIDARG;
  std::size_t cell = 0;
  if (!CellOf(psa, rgIndices, &cell)) return DISP_E_BADINDEX;
  HRESULT hr = SafeArrayLock(psa);
  if (FAILED(hr)) return hr;
  // pv is an out-parameter: whatever it held is overwritten, never freed.
  hr = CopyCell(psa->fFeatures, psa->cbElements, CellAddress(psa, cell), pv);
  SafeArrayUnlock(psa);
  return hr;
}

HRESULT SafeArrayPutElement(SAFEARRAY* psa, LONG* rgIndices, void* pv) {
  if (psa == nullptr || rgIndices == nullptr) return E_INVALIDARG;
  // BSTR and interface elements are passed as the pointer itself (null allowed); others by address.
  const bool byPointer = (psa->fFeatures & (FADF_BSTR | FADF_UNKNOWN | FADF_DISPATCH)) != 0;
  if (pv == nullptr && !byPointer) return E_INVALIDARG;
  std::size_t cell = 0;
  if (!CellOf(psa, rgIndices, &cell)) return DISP_E_BADINDEX;
  HRESULT hr = SafeArrayLock(psa);
  if (FAILED(hr)) return hr;
  void* target = CellAddress(psa, cell);
  if (psa->fFeatures & FADF_BSTR) {
    BSTR source = static_cast<BSTR>(pv);
    BSTR copy = nullptr;
    if (source != nullptr) {
      copy = SysAllocStringByteLen(reinterpret_cast<const char*>(source), SysStringByteLen(source));
      if (copy == nullptr) hr = E_OUTOFMEMORY;
    }
    if (SUCCEEDED(hr)) {
      SysFreeString(*static_cast<BSTR*>(target));
      *static_cast<BSTR*>(target) = copy;
    }
  } else if (psa->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) {
    auto* incoming = static_cast<IUnknown*>(pv);
    if (incoming != nullptr) incoming->AddRef();  // before releasing: it may be the same object
    IUnknown* old = *static_cast<IUnknown**>(target);
    *static_cast<IUnknown**>(target) = incoming;
    if (old != nullptr) old->Release();
  } else if (psa->fFeatures & FADF_VARIANT) {
    hr = VariantCopy(static_cast<VARIANT*>(target), static_cast<const VARIANT*>(pv));
  } else {
    std::memmove(target, pv, psa->cbElements);
  }
  SafeArrayUnlock(psa);
  return hr;
}
