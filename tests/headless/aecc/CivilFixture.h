// Fixtures of the Civil 3D face tests: a headless application reached as the module reaches it
// (CWinApp -> IAcadApplication -> GetInterfaceObject -> IAeccApplication -> ActiveDocument), and
// small helpers to build alignments and read them back through the platform declarations only.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "headless/api/headless.h"
#include "platform/acad/afxwin.h"
#include "platform/aecc/aeccxuiroadway.h"
#include "platform/ole/atlbase.h"
#include "platform/ole/oleauto.h"

namespace kdtest {

inline constexpr const wchar_t* kLandProgId = L"AeccXUiLand.AeccApplication.10.5";
inline constexpr const wchar_t* kRoadwayProgId = L"AeccXUiRoadway.AeccRoadwayApplication.10.5";

// A VARIANT holding a SAFEARRAY of doubles, as callers pass points.
inline CComVariant Doubles(std::vector<double> values) {
  CComVariant v;
  SAFEARRAY* array = SafeArrayCreateVector(VT_R8, 0, static_cast<ULONG>(values.size()));
  double* data = nullptr;
  SafeArrayAccessData(array, reinterpret_cast<void**>(&data));
  for (size_t i = 0; i < values.size(); ++i) data[i] = values[i];
  SafeArrayUnaccessData(array);
  v.vt = VT_ARRAY | VT_R8;
  v.parray = array;
  return v;
}
inline CComVariant Point(double x, double y) { return Doubles({x, y, 0.0}); }

inline std::vector<double> ReadDoubles(const VARIANT& v) {
  std::vector<double> out;
  if (v.vt != (VT_ARRAY | VT_R8) || v.parray == nullptr) return out;
  LONG lower = 0, upper = -1;
  SafeArrayGetLBound(v.parray, 1, &lower);
  SafeArrayGetUBound(v.parray, 1, &upper);
  for (LONG i = lower; i <= upper; ++i) {
    double d = 0.0;
    SafeArrayGetElement(v.parray, &i, &d);
    out.push_back(d);
  }
  return out;
}

inline CComVariant Index(LONG i) {
  CComVariant v;
  v.vt = VT_I4;
  v.lVal = i;
  return v;
}
inline CComVariant Name(const wchar_t* name) { return CComVariant(name); }

inline std::wstring NameOf(IAeccEntity* entity) {
  CComBSTR name;
  if (entity != nullptr) entity->get_Name(&name);
  return name.m_str == nullptr ? std::wstring() : std::wstring(name.m_str, name.Length());
}

template <class I>
CComPtr<I> As(IUnknown* object) {
  CComPtr<I> face;
  if (object != nullptr) object->QueryInterface(__uuidof(I), reinterpret_cast<void**>(&face));
  return face;
}

// A started headless application with the land application and its document at hand. Every
// platform object must be released by the end of each test.
class CivilDrawing : public ::testing::Test {
protected:
  void SetUp() override {
    liveBefore = HeadlessLiveObjects();
    app = HeadlessStart(Options());
    ASSERT_NE(app, nullptr) << HeadlessLastError(nullptr);
    auto* winApp = static_cast<CWinApp*>(HeadlessGetWinApp(app));
    ASSERT_EQ(winApp->GetIDispatch(FALSE)->QueryInterface(__uuidof(IAcadApplication), reinterpret_cast<void**>(&acad)),
              S_OK);
    CComPtr<IDispatch> object;
    if (acad->GetInterfaceObject(CComBSTR(kLandProgId), &object) == S_OK) {
      land = As<IAeccApplication>(object);
      ASSERT_NE(land, nullptr);
      ASSERT_EQ(land->Init(acad), S_OK);
      CComPtr<IAcadDocument> active;
      ASSERT_EQ(land->get_ActiveDocument(&active), S_OK);
      document = As<IAeccDocument>(active);
      ASSERT_NE(document, nullptr);
    }
  }
  void TearDown() override {
    document.Release();
    land.Release();
    acad.Release();
    HeadlessStop(app);
    EXPECT_EQ(HeadlessLiveObjects(), liveBefore) << "a platform object outlived the test";
  }
  virtual const char* Options() const { return nullptr; }

  CComPtr<IAeccAlignmentsSiteless> Siteless() {
    CComPtr<IAeccAlignmentsSiteless> alignments;
    EXPECT_EQ(document->get_AlignmentsSiteless(&alignments), S_OK);
    return alignments;
  }
  // A new siteless alignment with the template's first styles.
  CComPtr<IAeccAlignment> AddAlignment(const wchar_t* name, const wchar_t* layer = L"0") {
    CComPtr<IAeccAlignment> alignment;
    EXPECT_EQ(Siteless()->Add(CComBSTR(name), CComBSTR(layer), Name(L"Basic"), Name(L"_No Labels"), &alignment), S_OK);
    return alignment;
  }
  CComPtr<IAeccAlignmentEntities> EntitiesOf(IAeccAlignment* alignment) {
    CComPtr<IAeccAlignmentEntities> entities;
    EXPECT_EQ(alignment->get_Entities(&entities), S_OK);
    return entities;
  }
  CComPtr<IAeccAlignment> FindAlignment(const wchar_t* name) {
    CComPtr<IAeccAlignment> alignment;
    Siteless()->Item(Name(name), &alignment);
    return alignment;
  }

  long liveBefore = 0;
  HeadlessApp* app = nullptr;
  CComPtr<IAcadApplication> acad;
  CComPtr<IAeccApplication> land;
  CComPtr<IAeccDocument> document;
};

}  // namespace kdtest
