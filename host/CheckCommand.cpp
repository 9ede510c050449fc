#include "host/CheckCommand.h"

#include <cstdio>

#include "headless/api/headless.h"
#include "host/ExitCodes.h"
#include "host/HostText.h"
#include "host/ModuleLoader.h"

namespace host {

int CheckModule(const std::string& modulePath, const std::string& options) {
  HeadlessApp* app = HeadlessStart(options.empty() ? nullptr : options.c_str());
  if (app == nullptr) {
    std::fprintf(stderr, "kdhost: cannot start the headless application: %s\n", HeadlessLastError(nullptr));
    return kExitSession;
  }
  std::printf("started a headless AutoCAD application%s%s\n", options.empty() ? "" : " with ", options.c_str());

  int status = kExitDone;
  {
    ModuleLoader module(modulePath);
    if (!module.ok()) {
      std::fprintf(stderr, "kdhost: %s\n", module.error().c_str());
      HeadlessStop(app);
      return kExitModule;
    }
    std::printf("loaded %s\n", module.path().c_str());

    const int version = module.InterfaceVersion();
    const std::wstring platform = module.InterfacePlatform();
    std::printf("interface version %d, platform \"%s\"\n", version, Narrow(platform).c_str());
    if (version != ModuleLoader::kExpectedVersion || platform != ModuleLoader::kExpectedPlatform) {
      std::fprintf(stderr, "kdhost: expected interface version %d and platform \"%s\"\n", ModuleLoader::kExpectedVersion,
                   Narrow(ModuleLoader::kExpectedPlatform).c_str());
      HeadlessStop(app);
      return kExitModule;
    }

    ICivil3dObject* session = module.CreateSession();
    if (session == nullptr) {
      std::fprintf(stderr, "kdhost: the module made no session object\n");
      HeadlessStop(app);
      return kExitSession;
    }
    std::printf("created a session object\n");
    const bool initialized = session->Initialize(static_cast<CWinApp*>(HeadlessGetWinApp(app)));
    std::printf("Initialize: %s; Civil 3D land and roadway applications %s\n", initialized ? "succeeded" : "failed",
                session->IsInitialized() ? "available" : "not available");
    std::printf("corridor feature %s\n", session->IsCorridorFeatureAvailable() ? "available" : "not available");
    module.FreeSession(&session);
    std::printf("freed the session object%s\n", session == nullptr ? "" : " (refused)");
    if (session != nullptr) status = kExitSession;
  }
  HeadlessStop(app);
  std::printf("stopped the headless application; %ld platform objects still alive\n", HeadlessLiveObjects());
  return status;
}

}  // namespace host
