// Compiled only for x86_64-pc-windows-msvc, to make clang print the host compiler's vtable
// layouts of the contract's classes. Each use below makes the compiler lay out one vftable.
#include "module/interface/ICivil3dAlignment.h"
#include "module/interface/ICivil3dCorridor.h"
#include "module/interface/ICivil3dObject.h"
#include "module/interface/ICivil3dProfile.h"
#include "module/interface/ICivil3dSurface.h"

void LayOut(ICivil3dObject* o, ICivil3dAlignment* a, ICivil3dProfile* p, ICivil3dSurface* s,
            ICivil3dCorridor* c) {
  o->IsInitialized();
  a->GetSessionId();
  p->GetSessionId();
  s->GetSessionId();
  c->GetSessionId();
  CC3dPoint point;
  CC3dCurve curve;
  CC3dProfilePVI pvi;
  (void)(point == point);
  (void)curve.GetIsLine();
  (void)pvi.GetType();
}
