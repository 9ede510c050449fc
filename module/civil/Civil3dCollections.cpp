// Surfaces, their styles, and corridors of the active document.
// Not built yet: each slot answers the contract's failure value (false or null) and leaves its
// out-parameters untouched.
#include "module/civil/Civil3dObject.h"

ICivil3dSurface* CCivil3dObject::GetSurface(const wchar_t*) { return nullptr; }
bool CCivil3dObject::ListSurfaces(wchar_t***, long long**, int*) { return false; }
bool CCivil3dObject::CreateSurface(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*) {
  return false;
}
bool CCivil3dObject::DeleteSurface(const wchar_t*) { return false; }
bool CCivil3dObject::GetSurfaceStyleNames(wchar_t***, int*) { return false; }

ICivil3dCorridor* CCivil3dObject::GetCorridor(const wchar_t*) { return nullptr; }
bool CCivil3dObject::ListCorridors(wchar_t***, long long**, int*) { return false; }
