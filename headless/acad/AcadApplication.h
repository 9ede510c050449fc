// The AutoCAD application's automation object (AcadApplication), as a host reaches it through
// CWinApp::GetIDispatch.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "headless/acad/StartOptions.h"
#include "headless/ole/ComObject.h"
#include "platform/acad/acadi.h"

namespace headless {

class AcadApplication final : public ComObject<AcadApplication, IAcadApplication> {
public:
  // Makes an automation object that lives with this application (Civil 3D's applications and
  // their documents are per AutoCAD application, not per process).
  using InterfaceObjectFactory = std::function<HRESULT(AcadApplication& owner, IDispatch** object)>;

  explicit AcadApplication(const StartOptions& options);

  const StartOptions& Options() const { return options_; }

  // GetInterfaceObject answers progId (matched without regard to case) through factory.
  void RegisterInterfaceObject(const std::wstring& progId, InterfaceObjectFactory factory);
  // Every object made here is released; called when the application ends.
  void Shutdown();

  HRESULT STDMETHODCALLTYPE get_ActiveDocument(IAcadDocument** pActiveDoc) override;
  HRESULT STDMETHODCALLTYPE ListArx(VARIANT* pVarListArray) override;
  HRESULT STDMETHODCALLTYPE GetInterfaceObject(BSTR ProgID, IDispatch** pObj) override;

private:
  ~AcadApplication() override = default;

  StartOptions options_;
  std::vector<std::wstring> loadedModules_;
  std::map<std::wstring, InterfaceObjectFactory> factories_;  // keyed by the lower-case ProgID
};

}  // namespace headless
