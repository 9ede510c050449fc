// The class registry behind CLSIDFromProgID, CLSIDFromString and CoCreateInstance: what the
// Windows registry's HKEY_CLASSES_ROOT\CLSID and ProgID keys are for in-process activation.
// Headless parts register their coclasses here at start-up; the module never sees this header.
#pragma once

#include <functional>

#include "platform/ole/combaseapi.h"

namespace headless {

// Makes a new object and hands out its riid interface in *ppv with one reference, as
// IClassFactory::CreateInstance does; E_NOINTERFACE (and *ppv null) when it lacks riid.
using ComClassFactory = std::function<HRESULT(REFIID riid, void** ppv)>;

// Registers (or replaces) a class. progId may be null or empty for a class without one; it is
// matched without regard to case, as registry keys are. contexts are the CLSCTX values the class
// answers (an out-of-process application would give CLSCTX_LOCAL_SERVER).
// E_INVALIDARG for an empty factory or no context.
KD_PLATFORM_API HRESULT RegisterComClass(REFCLSID clsid, const wchar_t* progId, ComClassFactory factory,
                                         DWORD contexts = CLSCTX_INPROC_SERVER);

// Removes a class and its ProgID: S_OK, or S_FALSE when it was not registered.
KD_PLATFORM_API HRESULT UnregisterComClass(REFCLSID clsid);

}  // namespace headless
