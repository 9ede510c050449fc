// The module as a separately built host sees it: loaded at run time by path, the four exports
// resolved by name. One copy per test binary, opened on first use.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "headless/api/headless.h"
#include "module/interface/Civil3dExports.h"

struct ModuleLibrary {
  void* handle = nullptr;
  PFN_GetInterfaceVersion getVersion = nullptr;
  PFN_GetInterfacePlatform getPlatform = nullptr;
  PFN_GetCivil3dObject getObject = nullptr;
  PFN_FreeCivil3dObject freeObject = nullptr;

  static const ModuleLibrary& Get() {
    static const ModuleLibrary library = [] {
      ModuleLibrary l;
      l.handle = dlopen(KD_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
      if (l.handle == nullptr) return l;
      l.getVersion = reinterpret_cast<PFN_GetInterfaceVersion>(dlsym(l.handle, "GetInterfaceVersion"));
      l.getPlatform = reinterpret_cast<PFN_GetInterfacePlatform>(dlsym(l.handle, "GetInterfacePlatform"));
      l.getObject = reinterpret_cast<PFN_GetCivil3dObject>(dlsym(l.handle, "GetCivil3dObject"));
      l.freeObject = reinterpret_cast<PFN_FreeCivil3dObject>(dlsym(l.handle, "FreeCivil3dObject"));
      return l;
    }();
    return library;
  }
  bool Complete() const { return handle && getVersion && getPlatform && getObject && freeObject; }
};

// A headless drawing with an initialised session on it, as a host has after start-up. Every
// platform object must be released by the end of each test.
class CivilSession : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(ModuleLibrary::Get().Complete()) << dlerror();
    liveBefore = HeadlessLiveObjects();
    app = HeadlessStart(StartOptions());
    ASSERT_NE(app, nullptr) << HeadlessLastError(nullptr);
    session = ModuleLibrary::Get().getObject();
    ASSERT_NE(session, nullptr);
    ASSERT_TRUE(session->Initialize(static_cast<CWinApp*>(HeadlessGetWinApp(app))));
    ASSERT_TRUE(session->IsInitialized());
  }
  void TearDown() override {
    if (session != nullptr) ModuleLibrary::Get().freeObject(&session);
    HeadlessStop(app);
    EXPECT_EQ(HeadlessLiveObjects(), liveBefore) << "a platform object outlived the test";
  }
  virtual const char* StartOptions() const { return nullptr; }

  long liveBefore = 0;
  HeadlessApp* app = nullptr;
  ICivil3dObject* session = nullptr;
};
