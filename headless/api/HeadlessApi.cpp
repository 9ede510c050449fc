#include "headless/api/headless.h"

#include <new>
#include <string>

#include "headless/acad/AcadApplication.h"
#include "headless/ole/ComObject.h"
#include "platform/acad/afxwin.h"

namespace {

// The MFC application object of a headless AutoCAD: its automation object is AcadApplication.
class HeadlessWinApp final : public CWinApp {
public:
  explicit HeadlessWinApp(IDispatch* automation) : CWinApp(L"acad") { EnableAutomation(automation); }
};

thread_local std::string lastStartError;

}  // namespace

struct HeadlessApp {
  headless::AcadApplication* acad = nullptr;  // one reference, the application's own
  HeadlessWinApp* winApp = nullptr;
  std::string lastError;
};

extern "C" {

HeadlessApp* HeadlessStart(const char* options) {
  std::string error;
  auto parsed = headless::StartOptions::Parse(options, error);
  if (!parsed) {
    lastStartError = error;
    return nullptr;
  }
  auto* app = new (std::nothrow) HeadlessApp;
  if (app == nullptr) {
    lastStartError = "out of memory";
    return nullptr;
  }
  app->acad = headless::MakeComObject<headless::AcadApplication>(*parsed);
  app->winApp = app->acad ? new (std::nothrow) HeadlessWinApp(app->acad) : nullptr;
  if (app->winApp == nullptr) {
    lastStartError = "out of memory";
    HeadlessStop(app);
    return nullptr;
  }
  lastStartError.clear();
  return app;
}

void* HeadlessGetWinApp(HeadlessApp* app) { return app ? static_cast<CWinApp*>(app->winApp) : nullptr; }

const char* HeadlessLastError(HeadlessApp* app) {
  return app ? app->lastError.c_str() : lastStartError.c_str();
}

void HeadlessStop(HeadlessApp* app) {
  if (app == nullptr) return;
  delete app->winApp;  // drops the automation reference it held
  if (app->acad != nullptr) {
    app->acad->Shutdown();
    app->acad->Release();
  }
  delete app;
}

long HeadlessLiveObjects(void) { return headless::LiveComObjects(); }

}  // extern "C"
