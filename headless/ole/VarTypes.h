// Facts about VARTYPEs shared by the VARIANT and SAFEARRAY code of headless/ole.
#pragma once

#include "platform/ole/oleauto.h"

namespace headless::ole {

// VT_RECORD (user-defined types through IRecordInfo) is valid in a VARIANT but not implemented here.
inline constexpr VARTYPE kVtRecord = 36;

// True for a vt that may stand in a VARIANT's vt field (as VARENUM marks them [V]).
constexpr bool IsValidVariantType(VARTYPE vt) noexcept {
  const VARTYPE base = vt & VT_TYPEMASK;
  const VARTYPE extra = vt & static_cast<VARTYPE>(~VT_TYPEMASK);
  if ((extra & ~(VT_ARRAY | VT_BYREF)) != 0) return false;
  switch (base) {
    case VT_EMPTY:
    case VT_NULL:
      return extra == 0;
    case VT_VARIANT:
      return extra != 0;
    case VT_I2: case VT_I4: case VT_R4: case VT_R8: case VT_CY: case VT_DATE: case VT_BSTR:
    case VT_DISPATCH: case VT_ERROR: case VT_BOOL: case VT_UNKNOWN: case VT_DECIMAL: case VT_I1:
    case VT_UI1: case VT_UI2: case VT_UI4: case VT_I8: case VT_UI8: case VT_INT: case VT_UINT:
    case kVtRecord:
      return true;
    default:
      return false;
  }
}

// Size of one SAFEARRAY element of type vt, or 0 when vt cannot be an element type here.
constexpr ULONG ElementSize(VARTYPE vt) noexcept {
  switch (vt) {
    case VT_I1: case VT_UI1:
      return 1;
    case VT_I2: case VT_UI2: case VT_BOOL:
      return 2;
    case VT_I4: case VT_UI4: case VT_INT: case VT_UINT: case VT_R4: case VT_ERROR:
      return 4;
    case VT_I8: case VT_UI8: case VT_R8: case VT_CY: case VT_DATE:
      return 8;
    case VT_BSTR: case VT_UNKNOWN: case VT_DISPATCH:
      return sizeof(void*);
    case VT_DECIMAL:
      return 16;
    case VT_VARIANT:
      return sizeof(VARIANT);
    default:
      return 0;
  }
}

}  // namespace headless::ole
