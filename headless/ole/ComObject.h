// A base for headless COM objects: reference counting, QueryInterface over the interfaces an
// object implements, and E_NOTIMPL answers for IDispatch's late-binding members.
//
//   class Document final : public headless::ComObject<Document, IAeccDocument> {
//    public:
//     // IAeccDocument derives IAcadDocument: name it so QueryInterface answers it too.
//     using AlsoAnswers = headless::Interfaces<IAcadDocument>;
//     ...the interface's own members...
//   };
//   Document* doc = headless::MakeComObject<Document>(args...);  // one reference, the caller's
//
// QueryInterface answers IUnknown, every listed base, IDispatch when a base derives it, and the
// types of an optional AlsoAnswers list (each must be a base of one of the listed bases). Every
// object counts in headless::LiveComObjects() from construction to destruction, so tests can show
// that all references were released.
#pragma once

#include <atomic>
#include <new>
#include <type_traits>
#include <utility>

#include "platform/ole/unknwn.h"

namespace headless {

// Objects made from ComObject that exist now, in the whole process.
KD_PLATFORM_API long LiveComObjects() noexcept;

namespace detail {
KD_PLATFORM_API void CountComObject(long delta) noexcept;

// Implements IDispatch's four members with E_NOTIMPL for an interface that derives IDispatch;
// a derived class may still override them.
template <class I, bool = std::is_base_of_v<IDispatch, I>>
class DispatchStubs : public I {};

template <class I>
class DispatchStubs<I, true> : public I {
 public:
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* pctinfo) override {
    if (pctinfo != nullptr) *pctinfo = 0;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo** ppTInfo) override {
    if (ppTInfo != nullptr) *ppTInfo = nullptr;
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*, UINT*) override {
    return E_NOTIMPL;
  }
};
}  // namespace detail

// A list of further interface types an object answers (see AlsoAnswers above).
template <class... I>
struct Interfaces {};

template <class Derived, class... Bases>
class ComObject : public detail::DispatchStubs<Bases>... {
  static_assert(sizeof...(Bases) > 0, "a COM object implements at least one interface");
  static_assert((std::is_base_of_v<IUnknown, Bases> && ...), "every base is a COM interface");

 public:
  ComObject() noexcept { detail::CountComObject(+1); }
  ComObject(const ComObject&) = delete;
  ComObject& operator=(const ComObject&) = delete;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID riid, void** ppvObject) override {
    if (ppvObject == nullptr) return E_POINTER;
    *ppvObject = nullptr;
    IUnknown* found = Find(riid);
    if (found == nullptr) return E_NOINTERFACE;
    found->AddRef();
    *ppvObject = found;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG remaining = --references_;
    if (remaining == 0) delete this;
    return remaining;
  }

  // The interface I of this object, without adding a reference (I must be a listed base or one
  // of their bases).
  template <class I>
  I* As() noexcept {
    return Via<I, Bases...>();
  }

 protected:
  virtual ~ComObject() { detail::CountComObject(-1); }

 private:
  template <class I, class First, class... Rest>
  I* Via() noexcept {
    if constexpr (std::is_base_of_v<I, First>) {
      return static_cast<I*>(static_cast<First*>(this));
    } else {
      static_assert(sizeof...(Rest) > 0, "the interface is not implemented by this object");
      return Via<I, Rest...>();
    }
  }

  template <class I>
  IUnknown* Match(REFIID riid) noexcept {
    if (!IsEqualIID(riid, __uuidof(I))) return nullptr;
    return As<I>();
  }

  template <class... I>
  IUnknown* MatchAny(REFIID riid, Interfaces<I...>) noexcept {
    IUnknown* found = nullptr;
    ((found = found != nullptr ? found : Match<I>(riid)), ...);
    return found;
  }

  IUnknown* Find(REFIID riid) noexcept {
    if (IsEqualIID(riid, IID_IUnknown)) return As<IUnknown>();  // one identity: the first base's
    if (IUnknown* found = MatchAny(riid, Interfaces<Bases...>{})) return found;
    if constexpr ((std::is_base_of_v<IDispatch, Bases> || ...)) {
      if (IsEqualIID(riid, IID_IDispatch)) return As<IDispatch>();
    }
    if constexpr (requires { typename Derived::AlsoAnswers; }) {
      return MatchAny(riid, typename Derived::AlsoAnswers{});
    }
    return nullptr;
  }

  std::atomic<ULONG> references_{1};
};

// Makes a T (derived from ComObject) holding one reference, the caller's; null when out of memory.
template <class T, class... Args>
T* MakeComObject(Args&&... args) noexcept(std::is_nothrow_constructible_v<T, Args...>) {
  return new (std::nothrow) T(std::forward<Args>(args)...);
}

// A class factory for RegisterComClass (ClassRegistry.h): makes a T from copies of args and
// answers the interface asked for.
template <class T, class... Args>
auto ComFactoryFor(Args... args) {
  return [=](REFIID riid, void** ppv) -> HRESULT {
    if (ppv == nullptr) return E_POINTER;
    *ppv = nullptr;
    T* object = MakeComObject<T>(args...);
    if (object == nullptr) return E_OUTOFMEMORY;
    const HRESULT hr = object->QueryInterface(riid, ppv);
    object->Release();  // the caller's reference is the one QueryInterface added
    return hr;
  };
}

}  // namespace headless
