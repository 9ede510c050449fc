// The hatch's drawing class: a CGrHatch as an AcDbHatch of loops of lines and circular arcs.
#pragma once

#include "module/acad/GrAcadDc.h"

// Each border element is one loop, made of the lines and arcs it breaks into (a circle is one
// full arc); a border that breaks into anything else, or a loop that does not close, is refused.
// The hatch lies at the elevation of its first point, with the element's pattern ("SOLID" when it
// names none). An update removes the entity's loops before it appends the new ones. Reading gives
// one closed CGrPolyline of lines and line-arcs per loop.
class CGrAcadHatchDc : public CGrAcadDc {
public:
  using CGrAcadDc::CGrAcadDc;
  AcDbEntity* MakeEntity(CGrElement* element) override;
  CGrElement* MakeElement(AcDbObject* object) override;
};
