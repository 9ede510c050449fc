#include "module/ids/KdId.h"
#include "module/ids/KdIdStub.h"
#include "platform/ole/combaseapi.h"

std::wstring CKdIdWindows::NewId() {
  GUID guid{};
  if (FAILED(CoCreateGuid(&guid))) return kKdNullIdText;
  OLECHAR buffer[256];
  const int written = StringFromGUID2(guid, buffer, 256);  // the terminator included
  if (written <= 1) return kKdNullIdText;
  return std::wstring(buffer, static_cast<std::size_t>(written - 1));
}
