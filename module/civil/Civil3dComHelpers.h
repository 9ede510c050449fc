// Small conversions between the exchange records and what Civil 3D's COM members take.
#pragma once

#include <cstring>
#include <cwchar>

#include "platform/ole/atlbase.h"
#include "platform/ole/oleauto.h"

namespace civil3d {

// A point as Civil 3D takes it: a VARIANT holding a SAFEARRAY of three doubles (x, y, z) with
// lower bound 0, VT_ARRAY | VT_R8.
inline CComVariant MakePointVariant(double x, double y, double z) {
  CComVariant point;
  point.ChangeType(VT_SAFEARRAY);  // refused for an empty variant; the assignment sets the type
  SAFEARRAY* coordinates = SafeArrayCreateVector(VT_R8, 0, 3);
  if (coordinates == nullptr) return point;
  double* data = nullptr;
  if (SUCCEEDED(SafeArrayAccessData(coordinates, reinterpret_cast<void**>(&data)))) {
    data[0] = x;
    data[1] = y;
    data[2] = z;
    SafeArrayUnaccessData(coordinates);
  }
  point = coordinates;  // copies the array
  SafeArrayDestroy(coordinates);
  return point;
}

inline CComVariant IndexVariant(LONG index) {
  CComVariant v;
  v.vt = VT_I4;
  v.lVal = index;
  return v;
}

// A copy made with array new, as the release slots free it; length + 1 characters.
inline wchar_t* CopyName(const wchar_t* text, UINT length) {
  auto* copy = new wchar_t[length + 1];
  if (length > 0) std::wmemcpy(copy, text, length);
  copy[length] = L'\0';
  return copy;
}

inline wchar_t* CopyName(BSTR text) { return CopyName(text ? text : L"", SysStringLen(text)); }

}  // namespace civil3d
