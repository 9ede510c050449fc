// The host's side of a session with the module: a headless application, the module loaded by
// path, one session object initialised on the application, and the calls the run makes, each
// copying what the module hands out and giving the module's arrays straight back through its
// Free... slots. Handles are deleted as soon as a call is done with them.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "headless/api/headless.h"
#include "host/ModuleLoader.h"
#include "module/interface/ICivil3dAlignment.h"
#include "module/interface/ICivil3dProfile.h"

namespace host {

// How starting a session ended; the run's exit status follows from it.
enum class SessionStart {
  Started,
  NoApplication,  // the headless application did not start
  NoModule,       // the module did not load, or is not version 3 for platform "F000"
  NoSession,      // the module made no session object, or Initialize did not make it usable
};

struct CAlignmentEntry {
  std::wstring name;
  long long sessionId = 0;
};

class CModuleSession {
public:
  CModuleSession() = default;
  ~CModuleSession();
  CModuleSession(const CModuleSession&) = delete;
  CModuleSession& operator=(const CModuleSession&) = delete;

  // Starts the application, loads the module at `modulePath`, checks its version and platform,
  // makes the session and initialises it. On failure error() says why.
  SessionStart Start(const std::string& modulePath);
  const std::string& error() const { return error_; }
  HeadlessApp* application() const { return app_; }

  bool CreateAlignment(const std::wstring& name, const std::wstring& description);
  std::unique_ptr<ICivil3dAlignment> GetAlignment(const std::wstring& name);
  std::optional<std::vector<CAlignmentEntry>> ListAlignments();
  std::optional<std::vector<CC3dCurve>> AlignmentGeometry(ICivil3dAlignment& alignment);
  std::optional<std::vector<std::wstring>> ListProfiles(ICivil3dAlignment& alignment);
  std::optional<std::vector<CC3dProfilePVI>> ProfileGeometry(ICivil3dProfile& profile);
  std::optional<std::vector<CC3dProfilePoint>> StrokedProfile(ICivil3dProfile& profile, double step);

private:
  void Stop();

  HeadlessApp* app_ = nullptr;
  std::unique_ptr<ModuleLoader> module_;
  ICivil3dObject* session_ = nullptr;
  std::string error_;
};

}  // namespace host
