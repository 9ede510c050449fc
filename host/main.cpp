// kdhost: loads the module as the real host does and drives it on a headless application.
#include <CLI/CLI.hpp>

#include <cstdio>
#include <string>

#include "headless/api/headless.h"
#include "host/ModuleLoader.h"

namespace {

std::string Narrow(const std::wstring& text) {
  std::string out;
  for (wchar_t ch : text) out += (ch >= 0 && ch < 0x80) ? static_cast<char>(ch) : '?';
  return out;
}

// Start-up and shut-down of one session, step by step, as a host runs them.
int RunCheck(const std::string& modulePath, const std::string& options) {
  HeadlessApp* app = HeadlessStart(options.empty() ? nullptr : options.c_str());
  if (app == nullptr) {
    std::fprintf(stderr, "kdhost: cannot start the headless application: %s\n", HeadlessLastError(nullptr));
    return 2;
  }
  std::printf("started a headless AutoCAD application%s%s\n", options.empty() ? "" : " with ",
              options.c_str());

  int status = 0;
  {
    host::ModuleLoader module(modulePath);
    if (!module.ok()) {
      std::fprintf(stderr, "kdhost: %s\n", module.error().c_str());
      HeadlessStop(app);
      return 2;
    }
    std::printf("loaded %s\n", module.path().c_str());

    const int version = module.InterfaceVersion();
    const std::wstring platform = module.InterfacePlatform();
    std::printf("interface version %d, platform \"%s\"\n", version, Narrow(platform).c_str());
    if (version != host::ModuleLoader::kExpectedVersion || platform != host::ModuleLoader::kExpectedPlatform) {
      std::fprintf(stderr, "kdhost: expected interface version %d and platform \"%s\"\n",
                   host::ModuleLoader::kExpectedVersion, Narrow(host::ModuleLoader::kExpectedPlatform).c_str());
      HeadlessStop(app);
      return 3;
    }

    ICivil3dObject* session = module.CreateSession();
    if (session == nullptr) {
      std::fprintf(stderr, "kdhost: the module made no session object\n");
      HeadlessStop(app);
      return 3;
    }
    std::printf("created a session object\n");
    const bool initialized = session->Initialize(static_cast<CWinApp*>(HeadlessGetWinApp(app)));
    std::printf("Initialize: %s; Civil 3D land and roadway applications %s\n",
                initialized ? "succeeded" : "failed",
                session->IsInitialized() ? "available" : "not available");
    std::printf("corridor feature %s\n", session->IsCorridorFeatureAvailable() ? "available" : "not available");
    module.FreeSession(&session);
    std::printf("freed the session object%s\n", session == nullptr ? "" : " (refused)");
    if (session != nullptr) status = 3;
  }
  HeadlessStop(app);
  std::printf("stopped the headless application; %ld platform objects still alive\n", HeadlessLiveObjects());
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App cli{"kdhost: loads the KdCivil3d module the way the real host does (by path, through its "
               "four exported functions) and drives it on a headless AutoCAD/Civil 3D application."};
  cli.require_subcommand(1);

  std::string modulePath = host::DefaultModulePath();
  std::string options;
  auto* check = cli.add_subcommand(
      "check",
      "Start a headless application, load the module, check interface version 3 and platform "
      "\"F000\", create and initialise a session, report what happened, free everything.\n"
      "Example: kdhost check --options no-roadway");
  check->add_option("--module", modulePath, "Path of the module library")->capture_default_str();
  check->add_option("--options", options,
                    "Start options of the headless application, comma-separated: no-civil, no-land, "
                    "no-roadway, root=DIR");

  CLI11_PARSE(cli, argc, argv);
  if (check->parsed()) return RunCheck(modulePath, options);
  return 1;
}
