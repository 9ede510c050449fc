#include "headless/api/headless.h"

#include <exception>
#include <new>
#include <string>

#include "headless/acad/AcadApplication.h"
#include "headless/acad/Dxf.h"
#include "headless/aecc/LandApplication.h"
#include "headless/aecc/LandXmlExchange.h"
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
  if (app->acad != nullptr) headless::land::Install(*app->acad);
  app->winApp = app->acad ? new (std::nothrow) HeadlessWinApp(app->acad) : nullptr;
  if (app->winApp == nullptr) {
    lastStartError = "out of memory";
    HeadlessStop(app);
    return nullptr;
  }
  lastStartError.clear();
  return app;
}

int HeadlessImportLandXml(HeadlessApp* app, const char* path, const char* options) {
  if (app == nullptr) return 1;
  if (path == nullptr || *path == '\0') {
    app->lastError = "no file to import";
    return 1;
  }
  try {
    std::string error;
    if (headless::land::ImportLandXml(*app->acad, path, options, error)) {
      app->lastError.clear();
      return 0;
    }
    app->lastError = error;
  } catch (const std::exception& e) {
    app->lastError = std::string(path) + ": " + e.what();
  }
  return 1;
}

int HeadlessExportLandXml(HeadlessApp* app, const char* path) {
  if (app == nullptr) return 1;
  if (path == nullptr || *path == '\0') {
    app->lastError = "no file to export to";
    return 1;
  }
  try {
    std::string error;
    if (headless::land::ExportLandXml(*app->acad, path, error)) {
      app->lastError.clear();
      return 0;
    }
    app->lastError = error;
  } catch (const std::exception& e) {
    app->lastError = std::string(path) + ": " + e.what();
  }
  return 1;
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

int HeadlessSaveDxf(HeadlessApp* app, const char* path) {
  if (app == nullptr) return 1;
  if (path == nullptr || *path == '\0') {
    app->lastError = "no file name";
    return 1;
  }
  const std::shared_ptr<headless::Document> document = app->acad->Documents().Active();
  if (document == nullptr) {
    app->lastError = "no drawing is open";
    return 1;
  }
  std::string error;
  if (!headless::dxf::Save(*document->database(), path, error)) {
    app->lastError = error;
    return 1;
  }
  app->lastError.clear();
  return 0;
}

int HeadlessOpenDxf(HeadlessApp* app, const char* path) {
  if (app == nullptr) return 1;
  if (path == nullptr || *path == '\0') {
    app->lastError = "no file name";
    return 1;
  }
  std::string error;
  std::unique_ptr<AcDbDatabase> database = headless::dxf::Open(path, error);
  if (database == nullptr) {
    app->lastError = error;
    return 1;
  }
  const std::string file(path);
  const std::string name = file.substr(file.find_last_of('/') == std::string::npos ? 0 : file.find_last_of('/') + 1);
  auto& documents = app->acad->Documents();
  documents.AddDocument(std::wstring(name.begin(), name.end()), std::move(database));
  documents.SetWorkingDatabase(nullptr);
  app->lastError.clear();
  return 0;
}

}  // extern "C"
