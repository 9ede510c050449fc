// The four functions the host finds by name in the module. Plain C names, the platform's
// default calling convention. Intended sequence:
//   GetInterfaceVersion() == 3, GetInterfacePlatform() == "F000", GetCivil3dObject(),
//   Initialize(app) on it, any number of calls, FreeCivil3dObject(&object).
#pragma once

#include "module/interface/ICivil3dObject.h"

#if defined(_WIN32)
#  if defined(KD_BUILDING_MODULE)
#    define KD_MODULE_EXPORT __declspec(dllexport)
#  else
#    define KD_MODULE_EXPORT __declspec(dllimport)
#  endif
#else
#  define KD_MODULE_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

// 3, the value of ICivil3dObject::GetInterfaceVersion().
KD_MODULE_EXPORT int GetInterfaceVersion();

// Writes the platform code "F000" and its terminator into buffer, but only when the code's
// length is strictly less than size - 1: a buffer of 6 characters or more is filled, one of 5
// (just enough) is refused. A refused buffer is left untouched and nothing signals it, so pass
// one that already holds a terminator.
KD_MODULE_EXPORT void GetInterfacePlatform(/*out*/ wchar_t* buffer, int size);

// A new, uninitialised session object (call Initialize next), or null if allocation fails.
KD_MODULE_EXPORT ICivil3dObject* GetCivil3dObject();

// Destroys a session object made by GetCivil3dObject and nulls *object. A null or foreign object
// is ignored and *object left as it was. object itself must not be null.
KD_MODULE_EXPORT void FreeCivil3dObject(/*inout*/ ICivil3dObject** object);

}  // extern "C"

// Signatures for hosts that resolve the exports at run time.
using PFN_GetInterfaceVersion = int (*)();
using PFN_GetInterfacePlatform = void (*)(wchar_t*, int);
using PFN_GetCivil3dObject = ICivil3dObject* (*)();
using PFN_FreeCivil3dObject = void (*)(ICivil3dObject**);
