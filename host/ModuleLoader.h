// Loads the module the way the real host does: at run time, by path, its four exports by name.
#pragma once

#include <memory>
#include <string>

#include "module/interface/Civil3dExports.h"

namespace host {

class ModuleLoader {
public:
  // Opens the library and resolves the exports; check ok() and error() afterwards.
  explicit ModuleLoader(const std::string& path);
  ~ModuleLoader();
  ModuleLoader(const ModuleLoader&) = delete;
  ModuleLoader& operator=(const ModuleLoader&) = delete;

  bool ok() const { return error_.empty(); }
  const std::string& error() const { return error_; }
  const std::string& path() const { return path_; }

  int InterfaceVersion() const;
  // The platform code, read through a buffer of the given capacity (pre-filled with zeros).
  std::wstring InterfacePlatform(int capacity = 16) const;
  ICivil3dObject* CreateSession() const;
  void FreeSession(ICivil3dObject** session) const;

  static constexpr int kExpectedVersion = 3;
  static constexpr const wchar_t* kExpectedPlatform = L"F000";

private:
  std::string path_;
  std::string error_;
  void* handle_ = nullptr;
  PFN_GetInterfaceVersion getVersion_ = nullptr;
  PFN_GetInterfacePlatform getPlatform_ = nullptr;
  PFN_GetCivil3dObject getObject_ = nullptr;
  PFN_FreeCivil3dObject freeObject_ = nullptr;
};

// The module's file name next to the running program.
std::string DefaultModulePath();

}  // namespace host
