// The headless AutoCAD application as the module meets it: the CWinApp a host passes, its
// automation object, the loaded-module list and activation by ProgID.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "headless/api/headless.h"
#include "headless/ole/ClassRegistry.h"
#include "headless/ole/ComObject.h"
#include "platform/acad/acadi.h"
#include "platform/acad/afxwin.h"
#include "platform/ole/atlbase.h"
#include "platform/ole/atlsafe.h"

namespace {

class HeadlessApplication : public ::testing::Test {
protected:
  void SetUp() override { liveBefore = HeadlessLiveObjects(); }
  void TearDown() override {
    acad.Release();
    HeadlessStop(app);
    EXPECT_EQ(HeadlessLiveObjects(), liveBefore) << "every platform object ends at zero references";
  }
  void Start(const char* options) {
    app = HeadlessStart(options);
    ASSERT_NE(app, nullptr) << HeadlessLastError(nullptr);
    auto* winApp = static_cast<CWinApp*>(HeadlessGetWinApp(app));
    ASSERT_NE(winApp, nullptr);
    IDispatch* automation = winApp->GetIDispatch(FALSE);
    ASSERT_NE(automation, nullptr);
    ASSERT_EQ(automation->QueryInterface(__uuidof(IAcadApplication), reinterpret_cast<void**>(&acad)), S_OK);
  }
  std::vector<std::wstring> LoadedModules() {
    CComVariant list;
    EXPECT_EQ(acad->ListArx(&list), S_OK);
    EXPECT_EQ(list.vt, VT_ARRAY | VT_BSTR);
    std::vector<std::wstring> names;
    CComSafeArray<BSTR> array;
    array.Attach(list.parray);
    list.vt = VT_EMPTY;
    for (LONG i = array.GetLowerBound(); i <= array.GetUpperBound(); ++i) names.emplace_back(array.GetAt(i));
    return names;
  }

  long liveBefore = 0;
  HeadlessApp* app = nullptr;
  CComPtr<IAcadApplication> acad;
};

TEST_F(HeadlessApplication, WinAppGivesItsAutomationObjectWithOrWithoutAReference) {
  Start(nullptr);
  auto* winApp = static_cast<CWinApp*>(HeadlessGetWinApp(app));
  IDispatch* borrowed = winApp->GetIDispatch(FALSE);
  IDispatch* owned = winApp->GetIDispatch(TRUE);
  EXPECT_EQ(borrowed, owned);
  // The borrowed pointer carries no reference: one AddRef/Release pair shows the count it has.
  const ULONG withOwned = owned->AddRef() - 1;
  owned->Release();
  owned->Release();
  const ULONG withoutOwned = borrowed->AddRef() - 1;
  borrowed->Release();
  EXPECT_EQ(withOwned, withoutOwned + 1);

  CComPtr<IUnknown> identity1, identity2;
  EXPECT_EQ(acad->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity1)), S_OK);
  EXPECT_EQ(borrowed->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(&identity2)), S_OK);
  EXPECT_EQ(identity1, identity2);
}

TEST_F(HeadlessApplication, LoadedModulesIncludeTheCivilBaseUnlessStartedWithout) {
  Start(nullptr);
  auto names = LoadedModules();
  EXPECT_NE(std::find(names.begin(), names.end(), L"AecBase.dbx"), names.end());
  acad.Release();
  HeadlessStop(app);

  Start("no-civil");
  names = LoadedModules();
  EXPECT_FALSE(names.empty());
  EXPECT_EQ(std::find(names.begin(), names.end(), L"AecBase.dbx"), names.end());
}

TEST_F(HeadlessApplication, UnknownProgIdFailsAsClassActivationDoes) {
  Start(nullptr);
  IDispatch* object = reinterpret_cast<IDispatch*>(0x1);
  EXPECT_EQ(acad->GetInterfaceObject(CComBSTR(L"No.Such.Thing.1"), &object), CO_E_CLASSSTRING);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(acad->GetInterfaceObject(CComBSTR(L"No.Such.Thing.1"), nullptr), E_POINTER);
  EXPECT_EQ(acad->GetInterfaceObject(nullptr, &object), E_INVALIDARG);
}

// A registered automation class is reachable through GetInterfaceObject, case-insensitively.
class Widget final : public headless::ComObject<Widget, IDispatch> {};
constexpr CLSID kWidgetClsid{0x8a1d7c40, 0x5f1e, 0x4a8b, {0x9d, 0x33, 0x10, 0x22, 0x47, 0x61, 0x0b, 0x5e}};

TEST_F(HeadlessApplication, RegisteredClassesAreMadeByProgId) {
  Start(nullptr);
  ASSERT_EQ(headless::RegisterComClass(kWidgetClsid, L"Kd.TestWidget.1", headless::ComFactoryFor<Widget>()), S_OK);
  {
    CComPtr<IDispatch> widget;
    EXPECT_EQ(acad->GetInterfaceObject(CComBSTR(L"kd.testwidget.1"), &widget), S_OK);
    EXPECT_NE(widget, nullptr);
  }
  EXPECT_EQ(headless::UnregisterComClass(kWidgetClsid), S_OK);
  CComPtr<IDispatch> gone;
  EXPECT_EQ(acad->GetInterfaceObject(CComBSTR(L"Kd.TestWidget.1"), &gone), CO_E_CLASSSTRING);
}

TEST_F(HeadlessApplication, ActiveDocumentIsANewDrawingOfItsOwn) {
  Start(nullptr);
  CComPtr<IAcadDocument> document;
  ASSERT_EQ(acad->get_ActiveDocument(&document), S_OK);
  CComBSTR name;
  ASSERT_EQ(document->get_Name(&name), S_OK);
  EXPECT_STREQ(name, L"Drawing1.dwg");
  HeadlessApp* other = HeadlessStart(nullptr);
  CComPtr<IAcadApplication> otherAcad;
  static_cast<CWinApp*>(HeadlessGetWinApp(other))
      ->GetIDispatch(FALSE)
      ->QueryInterface(__uuidof(IAcadApplication), reinterpret_cast<void**>(&otherAcad));
  CComPtr<IAcadDocument> otherDocument;
  ASSERT_EQ(otherAcad->get_ActiveDocument(&otherDocument), S_OK);
  EXPECT_NE(otherDocument, document);
  otherDocument.Release();
  otherAcad.Release();
  HeadlessStop(other);
}

TEST(HeadlessStart, RejectsUnknownOptionsAndSaysWhy) {
  EXPECT_EQ(HeadlessStart("no-civil,fast"), nullptr);
  EXPECT_NE(std::string(HeadlessLastError(nullptr)).find("fast"), std::string::npos);
  EXPECT_EQ(HeadlessStart("root="), nullptr);

  HeadlessApp* app = HeadlessStart(" no-land , root=/tmp/kd ,no-roadway");
  ASSERT_NE(app, nullptr);
  EXPECT_STREQ(HeadlessLastError(nullptr), "");
  EXPECT_STREQ(HeadlessLastError(app), "");
  HeadlessStop(app);
  HeadlessStop(nullptr);
  EXPECT_EQ(HeadlessGetWinApp(nullptr), nullptr);
}

TEST(HeadlessStart, SeveralApplicationsHaveTheirOwnAutomationObjects) {
  HeadlessApp* first = HeadlessStart(nullptr);
  HeadlessApp* second = HeadlessStart("no-civil");
  ASSERT_NE(first, nullptr);
  ASSERT_NE(second, nullptr);
  EXPECT_NE(static_cast<CWinApp*>(HeadlessGetWinApp(first))->GetIDispatch(FALSE),
            static_cast<CWinApp*>(HeadlessGetWinApp(second))->GetIDispatch(FALSE));
  HeadlessStop(first);
  HeadlessStop(second);
}

}  // namespace
