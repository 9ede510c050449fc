#include "module/civil/Civil3dObject.h"

#include <cwctype>

#include "module/civil/Civil3dConstants.h"
#include "platform/acad/afxwin.h"
#include "platform/ole/atlsafe.h"

using namespace civil3d;

namespace {

bool EqualsNoCase(const wchar_t* a, const wchar_t* b) {
  if (a == nullptr || b == nullptr) return a == b;
  for (; *a != L'\0' && *b != L'\0'; ++a, ++b)
    if (std::towlower(static_cast<wint_t>(*a)) != std::towlower(static_cast<wint_t>(*b))) return false;
  return *a == *b;
}

// Whether AutoCAD lists the Civil 3D base module among its loaded applications.
bool IsCivilModuleLoaded(IAcadApplication* acad) {
  CComVariant list;
  acad->ListArx(&list);  // an empty list answers the question as well as a failure does
  if ((list.vt & VT_ARRAY) == 0 || list.parray == nullptr) return false;
  CComSafeArray<BSTR> names;
  if (FAILED(names.Attach(list.parray))) return false;  // not an array of names
  // The wrapper destroys the array now; the variant must not.
  list.vt = VT_EMPTY;
  list.parray = nullptr;
  if (names.GetDimensions() != 1) return false;
  const LONG count = static_cast<LONG>(names.GetCount());
  const LONG lower = names.GetLowerBound();
  for (LONG i = 0; i < count; ++i)
    if (EqualsNoCase(names.GetAt(lower + i), REQUIRED_CIVIL_MODULE)) return true;
  return false;
}

template <class T>
void FreeArray(T** items) {
  delete[] *items;
  *items = nullptr;
}

}  // namespace

CCivil3dObject::CCivil3dObject() = default;

CCivil3dObject::~CCivil3dObject() {
  m_roadwayApp.Release();
  m_landApp.Release();
}

CString CCivil3dObject::GetCivil3dProductCode() { return CString(CIVIL3DPRODUCTCODE); }

// The result says only whether a step failed hard; IsInitialized says whether both Civil 3D
// applications are there. A null app, or one without an automation object, answers true.
bool CCivil3dObject::Initialize(CWinApp* app) {
  AddAssemblyHandlers();
  HRESULT hr = S_FALSE;
  if (app == nullptr) return hr >= 0;
  IDispatch* automation = app->GetIDispatch(FALSE);
  if (automation == nullptr) return hr >= 0;

  CComPtr<IAcadApplication> acad;
  hr = automation->QueryInterface(__uuidof(IAcadApplication), reinterpret_cast<void**>(&acad));
  if (hr != S_OK) return hr >= 0;
  if (!IsCivilModuleLoaded(acad)) return false;

  // A failure on the land side does not stop the roadway side, whose result then stands.
  {
    CComPtr<IDispatch> object;
    hr = acad->GetInterfaceObject(CComBSTR(AECCLANDAPP), &object);
    if (hr == S_OK && object != nullptr) {
      m_landApp.Release();
      hr = object->QueryInterface(__uuidof(IAeccApplication), reinterpret_cast<void**>(&m_landApp));
      if (hr == S_OK && m_landApp != nullptr) hr = m_landApp->Init(acad);
    }
  }
  {
    CComPtr<IDispatch> object;
    hr = acad->GetInterfaceObject(CComBSTR(AECCROADWAYAPP), &object);
    if (hr != S_OK || object == nullptr) return hr >= 0;
    m_roadwayApp.Release();
    hr = object->QueryInterface(__uuidof(IAeccRoadwayApplication), reinterpret_cast<void**>(&m_roadwayApp));
    if (hr != S_OK || m_roadwayApp == nullptr) return hr >= 0;
    hr = m_roadwayApp->Init(acad);
  }
  return hr >= 0;
}

bool CCivil3dObject::IsInitialized() { return m_landApp != nullptr && m_roadwayApp != nullptr; }

bool CCivil3dObject::IsCorridorFeatureAvailable() { return true; }

void CCivil3dObject::FreeStrings(wchar_t*** strings, int count) {
  if (*strings != nullptr) {
    for (int i = 0; i < count; ++i) {
      delete[] (*strings)[i];
      (*strings)[i] = nullptr;
    }
    delete[] *strings;
  }
  *strings = nullptr;
}

void CCivil3dObject::FreeStrings(wchar_t** string) { FreeArray(string); }
void CCivil3dObject::FreeSessionIds(long long** ids) { FreeArray(ids); }
void CCivil3dObject::FreePoints(CC3dPoint** points) { FreeArray(points); }
void CCivil3dObject::FreeProfilePoints(CC3dProfilePoint** points) { FreeArray(points); }
void CCivil3dObject::FreeProfileVPIs(CC3dProfilePVI** pvis) { FreeArray(pvis); }
void CCivil3dObject::FreeCurves(CC3dCurve** curves) { FreeArray(curves); }
