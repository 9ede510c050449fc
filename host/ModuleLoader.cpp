#include "host/ModuleLoader.h"

#include <dlfcn.h>

#include <filesystem>
#include <vector>

namespace host {

namespace {

template <class F>
F Resolve(void* handle, const char* name, std::string& error) {
  void* symbol = dlsym(handle, name);
  if (symbol == nullptr && error.empty()) error = std::string("export not found: ") + name;
  return reinterpret_cast<F>(symbol);
}

}  // namespace

ModuleLoader::ModuleLoader(const std::string& path) : path_(path) {
  handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    const char* why = dlerror();
    error_ = "cannot load " + path + ": " + (why ? why : "unknown error");
    return;
  }
  getVersion_ = Resolve<PFN_GetInterfaceVersion>(handle_, "GetInterfaceVersion", error_);
  getPlatform_ = Resolve<PFN_GetInterfacePlatform>(handle_, "GetInterfacePlatform", error_);
  getObject_ = Resolve<PFN_GetCivil3dObject>(handle_, "GetCivil3dObject", error_);
  freeObject_ = Resolve<PFN_FreeCivil3dObject>(handle_, "FreeCivil3dObject", error_);
}

ModuleLoader::~ModuleLoader() {
  if (handle_ != nullptr) dlclose(handle_);
}

int ModuleLoader::InterfaceVersion() const { return getVersion_ ? getVersion_() : 0; }

std::wstring ModuleLoader::InterfacePlatform(int capacity) const {
  if (getPlatform_ == nullptr || capacity <= 0) return {};
  std::vector<wchar_t> buffer(static_cast<size_t>(capacity), L'\0');
  getPlatform_(buffer.data(), capacity);
  return std::wstring(buffer.data());
}

ICivil3dObject* ModuleLoader::CreateSession() const { return getObject_ ? getObject_() : nullptr; }

void ModuleLoader::FreeSession(ICivil3dObject** session) const {
  if (freeObject_ != nullptr) freeObject_(session);
}

std::string DefaultModulePath() {
  std::error_code ec;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", ec);
  const auto folder = ec ? std::filesystem::current_path() : self.parent_path();
  return (folder / "libKdCivil3d.so").string();
}

}  // namespace host
