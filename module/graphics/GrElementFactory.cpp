#include "module/graphics/GrElementFactory.h"

#include "module/graphics/GrArc.h"
#include "module/graphics/GrCircle.h"
#include "module/graphics/GrElementBlock.h"
#include "module/graphics/GrEllipse.h"
#include "module/graphics/GrFace.h"
#include "module/graphics/GrGroup.h"
#include "module/graphics/GrHatch.h"
#include "module/graphics/GrLine.h"
#include "module/graphics/GrMesh.h"
#include "module/graphics/GrPolyline.h"
#include "module/graphics/GrText.h"

CGrElement* CGrElementFactory::Make(int typeCode) {
  if (typeCode < grkind::kText || typeCode > grkind::kMesh) return nullptr;
  switch (typeCode) {
    case grkind::kText: return new CGrText();
    case grkind::kCircle: return new CGrCircle();
    case grkind::kLine: return new CGrLine();
    case grkind::kPolyline: return new CGrPolyline();
    case grkind::kElementBlock: return new CGrElementBlock();
    case grkind::kGroup: return new CGrGroup(L"");
    case grkind::kHatch: return new CGrHatch(L"");
    case grkind::kRectangleFace: return new CGrRectangleFace();
    case grkind::kTriangleFace: return new CGrTriangleFace();
    case grkind::kEllipse: return new CGrEllipse();
    case grkind::kArc: return new CGrArc();
    case grkind::kMesh: return new CGrMesh();
    default: return nullptr;  // the vertex polyline, table and cylinder are not made here
  }
}
