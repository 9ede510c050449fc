// Corridor building, forwarded to the companion corridor engine. Not built yet: the slots do
// nothing until the engine bridge exists.
#include "module/civil/Civil3dObject.h"

void CCivil3dObject::CreateCorridor(const wchar_t*) {}
void CCivil3dObject::RebuildCorridor(const wchar_t*) {}
void CCivil3dObject::DeleteCorridor(const wchar_t*) {}
void CCivil3dObject::AddAssembly(const wchar_t*, const wchar_t*, const wchar_t*, bool, double, double) {}
void CCivil3dObject::AddAssembly(const wchar_t*, const wchar_t*, const wchar_t*, bool) {}
void CCivil3dObject::AddKelvoAssembly(const wchar_t*, double, double) {}
void CCivil3dObject::AddKelvoAssemblyRight(const wchar_t*, double, double) {}
void CCivil3dObject::AddKelvoAssemblyIn(const wchar_t*, double, double) {}
void CCivil3dObject::AddKelvoAssemblyOut(const wchar_t*, double, double) {}
void CCivil3dObject::DeleteAssembly(const wchar_t*) {}
void CCivil3dObject::AddBaseline(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*,
                                 const wchar_t*, const wchar_t*, double, double, double) {}
void CCivil3dObject::AddBaselineForSurface(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*,
                                           const wchar_t*, const wchar_t*, double) {}
void CCivil3dObject::AddBaselineForSurface(const wchar_t*, const wchar_t*, const wchar_t*, const wchar_t*,
                                           const wchar_t*, double, double, const wchar_t*, double) {}

// The runtime's assembly resolution comes with the engine bridge; until then there is no
// handler to register.
void CCivil3dObject::AddAssemblyHandlers() {}
void CCivil3dObject::RemoveAssemblyHandlers() {}
