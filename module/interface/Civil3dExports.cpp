#include "module/interface/Civil3dExports.h"

#include <cwchar>
#include <new>

#include "module/civil/Civil3dObject.h"

int GetInterfaceVersion() { return ICivil3dObject::GetInterfaceVersion(); }

// Refuses a buffer of exactly length + 1 characters as well: the one-character surplus is the
// contract hosts were built against.
void GetInterfacePlatform(wchar_t* buffer, int size) {
  const CString code = CCivil3dObject::GetCivil3dProductCode();
  if (code.GetLength() < size - 1) std::wcscpy(buffer, code.GetString());
}

ICivil3dObject* GetCivil3dObject() { return new (std::nothrow) CCivil3dObject(); }

void FreeCivil3dObject(ICivil3dObject** object) {
  if (auto* session = dynamic_cast<CCivil3dObject*>(*object)) {
    delete session;
    *object = nullptr;
  }
}
