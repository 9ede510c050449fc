// One sample element of every kind the graphics context draws and reads back, shared by the
// drawing-class tests and the DXF tests.
#pragma once

#include <functional>
#include <memory>
#include <numbers>
#include <vector>

#include "module/acad/GrAcadPolylineDc.h"
#include "module/acad/GrAcadTextDc.h"
#include "tests/module/graphics/GraphicsTestUtil.h"

namespace acadtest {

constexpr double kPi = std::numbers::pi;

inline std::unique_ptr<CGrPolyline> Outline(double x, double z, int type, bool withArc) {
  auto polyline = std::make_unique<CGrPolyline>();
  polyline->Add(new CGrLine(CKdPoint(x, 0, z), CKdPoint(x + 10, 0, z)));
  if (withArc) {
    polyline->Add(new CGrLineArc(CKdPoint(x + 10, 5, z), 5.0, 1.5 * kPi, kPi));
  } else {
    polyline->Add(new CGrLine(CKdPoint(x + 10, 0, z), CKdPoint(x + 10, 10, z)));
  }
  polyline->Add(new CGrLine(CKdPoint(x + 10, 10, z), CKdPoint(x, 0, z)));
  polyline->SetClosed(true);
  polyline->SetPolylineType(type);
  return polyline;
}

struct Sample {
  const char* name;
  std::function<std::unique_ptr<CGrElement>()> make;
};

inline std::vector<Sample> Samples() {
  return {
      {"Line", [] { return std::make_unique<CGrLine>(CKdPoint(0.1, 0.2, 0.3), CKdPoint(-4, 5e6, -6)); }},
      {"Arc", [] { return std::make_unique<CGrArc>(CKdPoint(-3, 4, 2), 12.5, 0.5, 2.0); }},
      {"FullArc", [] { return std::make_unique<CGrArc>(CKdPoint(1, 1, 0), 2.0, 0.0, 2.0 * kPi); }},
      {"Circle", [] { return std::make_unique<CGrCircle>(CKdPoint(10, -20, 5), 7.5); }},
      {"Ellipse",
       [] { return std::make_unique<CGrEllipse>(CKdPoint(3, 4, 5), CKdVector(0, 2, 0), CKdVector(6, 0, 0), 0.25, 4.5); }},
      {"WholeEllipse",
       [] { return std::make_unique<CGrEllipse>(CKdPoint(0, 0, 0), CKdVector(-1, 1, 0), CKdVector(3, 3, 0), 0.0, 0.0); }},
      {"LightweightPolyline", [] { return Outline(3, 1, gracad::kLightweightPolyline, true); }},
      {"OpenPolylineWithLongArc",
       [] {
         auto polyline = std::make_unique<CGrPolyline>();
         polyline->Add(new CGrLine(CKdPoint(0, 0, 2), CKdPoint(10, 0, 2)));
         polyline->Add(new CGrLineArc(CKdPoint(10, 4, 2), 4.0, 1.5 * kPi, -1.5 * kPi));
         return polyline;
       }},
      {"Polyline2d", [] { return Outline(-50, 4, gracad::k2dPolyline, true); }},
      {"Polyline3d",
       [] {
         auto polyline = std::make_unique<CGrPolyline>();
         polyline->Add(new CGrLine(CKdPoint(0, 0, 0), CKdPoint(5, 0, 1)));
         polyline->Add(new CGrLine(CKdPoint(5, 0, 1), CKdPoint(5, 5, 3)));
         polyline->SetPolylineType(gracad::k3dPolyline);
         return polyline;
       }},
      {"Text",
       [] {
         auto text = std::make_unique<CGrText>(CKdPoint(1.5, 2.5, 3.5), 2.25, L"Station 0+100");
         text->SetRotation(0.75);
         text->SetStyleName(L"Romans");
         text->SetJustification(gracad::JustificationCode(AcDb::kTextMid, AcDb::kTextBase));
         return text;
       }},
      {"Hatch",
       [] {
         auto hatch = std::make_unique<CGrHatch>(L"ANSI31");
         hatch->AddBorder(Outline(0, 1, 0, true).release());
         auto island = std::make_unique<CGrPolyline>();
         island->Add(new CGrLine(CKdPoint(4, 1, 1), CKdPoint(6, 1, 1)));
         island->Add(new CGrLine(CKdPoint(6, 1, 1), CKdPoint(6, 2, 1)));
         island->Add(new CGrLine(CKdPoint(6, 2, 1), CKdPoint(4, 1, 1)));
         island->SetClosed(true);
         hatch->AddBorder(island.release());
         return hatch;
       }},
      {"RectangleFace",
       [] {
         return std::make_unique<CGrRectangleFace>(CKdPoint(0, 0, 1), CKdPoint(4, 0, 2), CKdPoint(4, 3, 3),
                                                   CKdPoint(0, 3, 4));
       }},
      {"TriangleFace",
       [] { return std::make_unique<CGrTriangleFace>(CKdPoint(0, 0, 0), CKdPoint(2, 0, 1), CKdPoint(1, 2, 2)); }},
      {"Mesh",
       [] {
         auto mesh = std::make_unique<CGrMesh>();
         mesh->SetVertices({{0, 0, 0}, {10, 0, 1}, {10, 10, 2}, {0, 10, 3}});
         mesh->SetFaces({{0, 1, 2}, {0, 2, 3}});
         return mesh;
       }},
      {"ElementBlock",
       [] {
         auto block = std::make_unique<CGrElementBlock>();
         block->SetPosition(CKdPoint(100, 200, 0));
         block->SetRotation(0.5);
         block->SetScaleFactors(CKdVector(2, 3, 1));
         block->SetLabel(L"Manhole");
         auto* ring = new CGrCircle(CKdPoint(0, 0, 0), 1.0);
         grtest::Decorate(*ring, 40);
         block->Add(ring);
         auto* bar = new CGrLine(CKdPoint(-1, 0, 0), CKdPoint(1, 0, 0));
         grtest::Decorate(*bar, 41);
         block->Add(bar);
         return block;
       }},
      {"AnonymousBlock",
       [] {
         auto block = std::make_unique<CGrElementBlock>();
         block->SetPosition(CKdPoint(-7, 3, 1));
         auto* face = new CGrTriangleFace(CKdPoint(0, 0, 0), CKdPoint(1, 0, 0), CKdPoint(0, 1, 0));
         face->SetLayerName(L"0");
         block->Add(face);
         return block;
       }},
  };
}

}  // namespace acadtest
