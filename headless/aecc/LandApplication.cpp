// The land application (IAeccApplication, "AeccXUiLand.AeccApplication.10.5") and the roadway
// application (IAeccRoadwayApplication, "AeccXUiRoadway.AeccRoadwayApplication.10.5"). Both stand on
// the AutoCAD application that made them: their AutoCAD members answer what it answers, and their
// ActiveDocument is AutoCAD's active document, whose face is the land document.
#include "headless/aecc/LandApplication.h"

#include "headless/acad/AcadApplication.h"
#include "headless/aecc/LandFaces.h"

namespace headless::aecc {

namespace {

constexpr const wchar_t* kLandProgId = L"AeccXUiLand.AeccApplication.10.5";
constexpr const wchar_t* kRoadwayProgId = L"AeccXUiRoadway.AeccRoadwayApplication.10.5";

// Init is not needed before use (the object is made by, and belongs to, one AutoCAD
// application); it accepts only that application. Civil 3D's own Init is for clients outside
// AutoCAD's process.
template <class Derived, class I>
class CivilApplication : public ComObject<Derived, I> {
public:
  explicit CivilApplication(AcadApplication& acad) : acad_(&acad) { acad_->AddRef(); }

  HRESULT STDMETHODCALLTYPE Init(IAcadApplication* pAcadApp) override {
    if (pAcadApp == nullptr) return E_POINTER;
    CComPtr<IUnknown> given;
    CComPtr<IUnknown> own;
    pAcadApp->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&given));
    acad_->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&own));
    return given == own ? S_OK : E_INVALIDARG;
  }
  HRESULT STDMETHODCALLTYPE get_ActiveDocument(IAcadDocument** pActiveDoc) override {
    return acad_->get_ActiveDocument(pActiveDoc);
  }
  HRESULT STDMETHODCALLTYPE ListArx(VARIANT* pVarListArray) override { return acad_->ListArx(pVarListArray); }
  HRESULT STDMETHODCALLTYPE GetInterfaceObject(BSTR ProgID, IDispatch** pObj) override {
    return acad_->GetInterfaceObject(ProgID, pObj);
  }

protected:
  ~CivilApplication() override { acad_->Release(); }

private:
  AcadApplication* acad_;
};

class LandApplication final : public CivilApplication<LandApplication, IAeccApplication> {
public:
  using AlsoAnswers = Interfaces<IAcadApplication>;
  using CivilApplication::CivilApplication;
};

class RoadwayApplication final : public CivilApplication<RoadwayApplication, IAeccRoadwayApplication> {
public:
  using AlsoAnswers = Interfaces<IAcadApplication>;
  using CivilApplication::CivilApplication;
};

template <class T>
HRESULT MakeApplication(AcadApplication& owner, IDispatch** object) {
  return Make<T>(object, owner);
}

}  // namespace

}  // namespace headless::aecc

namespace headless::land {

void Install(AcadApplication& application) {
  const StartOptions& options = application.Options();
  if (options.landAvailable || options.roadwayAvailable) {
    application.SetDocumentFaceFactory(aecc::MakeDocumentFace);
    application.SetDatabaseFaceFactory(aecc::MakeDatabaseFace);
    application.RegisterObjectFace(AeccDbAlignment::desc(), aecc::MakeAlignmentFace);
    application.RegisterObjectFace(AeccDbProfile::desc(), aecc::MakeProfileFace);
    application.RegisterObjectFace(AeccDbSite::desc(), aecc::MakeSiteFace);
    application.RegisterObjectFace(AeccDbStyle::desc(), aecc::MakeStyleFace);
  }
  if (options.landAvailable)
    application.RegisterInterfaceObject(aecc::kLandProgId, aecc::MakeApplication<aecc::LandApplication>);
  if (options.roadwayAvailable)
    application.RegisterInterfaceObject(aecc::kRoadwayProgId, aecc::MakeApplication<aecc::RoadwayApplication>);
}

}  // namespace headless::land
