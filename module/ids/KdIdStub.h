// IKdIdStub: the source of new identifiers, and CKdIdWindows, the platform's.
#pragma once

#include <string>

class IKdIdStub {
public:
  virtual ~IKdIdStub() = default;
  // A new identifier in the 38-character registry form "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}".
  virtual std::wstring NewId() = 0;
};

// Asks the platform for a new GUID (CoCreateGuid) and writes it in registry form
// (StringFromGUID2, upper-case digits). If the platform cannot make one, the text is the null
// identifier's.
class CKdIdWindows : public IKdIdStub {
public:
  std::wstring NewId() override;
};
