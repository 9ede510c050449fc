// Collections of the active document: alignments, surfaces, their styles, corridors.
// Not built yet: each slot answers the contract's failure value (false or null) and leaves its
// out-parameters untouched.
#include "module/civil/Civil3dObject.h"

ICivil3dAlignment* CCivil3dObject::GetAlignment(const wchar_t*) { return nullptr; }
bool CCivil3dObject::ListAlignments(wchar_t***, long long**, int*) { return false; }
bool CCivil3dObject::CreateAlignment(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*,
                                     const wchar_t*) {
  return false;
}
bool CCivil3dObject::GetAlignmentStyleNames(wchar_t***, int*) { return false; }
bool CCivil3dObject::GetAlignmentLabelStyleSetNames(wchar_t***, int*) { return false; }
bool CCivil3dObject::DeleteAlignment(const wchar_t*) { return false; }

ICivil3dSurface* CCivil3dObject::GetSurface(const wchar_t*) { return nullptr; }
bool CCivil3dObject::ListSurfaces(wchar_t***, long long**, int*) { return false; }
bool CCivil3dObject::CreateSurface(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) {
  return false;
}
bool CCivil3dObject::DeleteSurface(const wchar_t*) { return false; }
bool CCivil3dObject::GetSurfaceStyleNames(wchar_t***, int*) { return false; }

ICivil3dCorridor* CCivil3dObject::GetCorridor(const wchar_t*) { return nullptr; }
bool CCivil3dObject::ListCorridors(wchar_t***, long long**, int*) { return false; }
