#include "headless/ole/ClassRegistry.h"

#include <map>
#include <mutex>
#include <new>
#include <string>
#include <tuple>

namespace {

struct GuidLess {
  bool operator()(const GUID& a, const GUID& b) const noexcept {
    if (a.Data1 != b.Data1) return a.Data1 < b.Data1;
    if (a.Data2 != b.Data2) return a.Data2 < b.Data2;
    if (a.Data3 != b.Data3) return a.Data3 < b.Data3;
    for (int i = 0; i < 8; ++i)
      if (a.Data4[i] != b.Data4[i]) return a.Data4[i] < b.Data4[i];
    return false;
  }
};

struct ComClass {
  std::wstring progIdKey;  // folded, empty when none
  headless::ComClassFactory factory;
  DWORD contexts = 0;
};

struct Registry {
  std::mutex mutex;
  std::map<GUID, ComClass, GuidLess> classes;
  std::map<std::wstring, GUID> progIds;  // folded ProgID -> CLSID
};

Registry& TheRegistry() {
  static Registry* registry = new Registry;  // never destroyed: objects may outlive static teardown
  return *registry;
}

// Registry keys compare without regard to ASCII case.
std::wstring Fold(const wchar_t* text) {
  std::wstring key = text ? text : L"";
  for (wchar_t& c : key)
    if (c >= L'A' && c <= L'Z') c = static_cast<wchar_t>(c - L'A' + L'a');
  return key;
}

void Forget(Registry& r, const GUID& clsid) {
  auto found = r.classes.find(clsid);
  if (found == r.classes.end()) return;
  if (!found->second.progIdKey.empty()) {
    auto owner = r.progIds.find(found->second.progIdKey);
    if (owner != r.progIds.end() && IsEqualGUID(owner->second, clsid)) r.progIds.erase(owner);
  }
  r.classes.erase(found);
}

}  // namespace

namespace headless {

HRESULT RegisterComClass(REFCLSID clsid, const wchar_t* progId, ComClassFactory factory, DWORD contexts) {
  if (!factory || contexts == 0) return E_INVALIDARG;
  try {
    ComClass entry{Fold(progId), std::move(factory), contexts};
    Registry& r = TheRegistry();
    std::lock_guard lock(r.mutex);
    Forget(r, clsid);
    if (!entry.progIdKey.empty()) {
      // A ProgID names one class: the newest registration wins, as a registry write would.
      auto previous = r.progIds.find(entry.progIdKey);
      if (previous != r.progIds.end()) r.classes.at(previous->second).progIdKey.clear();
      r.progIds.erase(entry.progIdKey);
      r.progIds.insert({entry.progIdKey, clsid});
    }
    r.classes.emplace(clsid, std::move(entry));
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

HRESULT UnregisterComClass(REFCLSID clsid) {
  Registry& r = TheRegistry();
  std::lock_guard lock(r.mutex);
  if (r.classes.find(clsid) == r.classes.end()) return S_FALSE;
  Forget(r, clsid);
  return S_OK;
}

}  // namespace headless

HRESULT CLSIDFromProgID(LPCOLESTR lpszProgID, LPCLSID lpclsid) {
  if (lpszProgID == nullptr || lpclsid == nullptr) return E_INVALIDARG;
  *lpclsid = GUID_NULL;
  try {
    const std::wstring key = Fold(lpszProgID);
    Registry& r = TheRegistry();
    std::lock_guard lock(r.mutex);
    auto found = r.progIds.find(key);
    if (found == r.progIds.end()) return CO_E_CLASSSTRING;
    *lpclsid = found->second;
    return S_OK;
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

HRESULT CoCreateInstance(REFCLSID rclsid, LPUNKNOWN pUnkOuter, DWORD dwClsContext, REFIID riid, LPVOID* ppv) {
  if (ppv == nullptr) return E_POINTER;
  *ppv = nullptr;
  if (pUnkOuter != nullptr) return CLASS_E_NOAGGREGATION;  // no headless class aggregates
  try {
    headless::ComClassFactory factory;
    {
      Registry& r = TheRegistry();
      std::lock_guard lock(r.mutex);
      auto found = r.classes.find(rclsid);
      if (found == r.classes.end() || (found->second.contexts & dwClsContext) == 0) return REGDB_E_CLASSNOTREG;
      factory = found->second.factory;
    }
    // Outside the lock: a factory may itself create objects.
    const HRESULT hr = factory(riid, ppv);
    if (FAILED(hr)) *ppv = nullptr;
    return hr;
  } catch (const std::bad_alloc&) {
    *ppv = nullptr;
    return E_OUTOFMEMORY;
  } catch (...) {
    *ppv = nullptr;
    return E_UNEXPECTED;
  }
}
