// Sample elements of every kind and the comparisons the graphics tests share.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "module/geometry/KdConstants.h"
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
#include "module/graphics/GrShallowElement.h"
#include "module/graphics/GrTable.h"
#include "module/graphics/GrText.h"
#include "module/graphics/GrVertexPolyline.h"

namespace grtest {

inline testing::AssertionResult Near(const CKdPoint& actual, const CKdPoint& expected, double tolerance = 1e-9) {
  if (actual.IsEqual(expected, tolerance)) return testing::AssertionSuccess();
  return testing::AssertionFailure() << actual << " is not within " << tolerance << " of " << expected;
}

inline std::string Narrow(const std::wstring& text) { return std::string(text.begin(), text.end()); }

// Kind, attributes and geometry (AttributesEqual), and what AttributesEqual leaves out: layer,
// tag and id tag.
inline testing::AssertionResult SameElement(const CGrElement& actual, const CGrElement& expected) {
  if (actual.Type() != expected.Type()) {
    return testing::AssertionFailure() << "type " << actual.Type() << ", expected " << expected.Type();
  }
  if (!actual.AttributesEqual(expected)) return testing::AssertionFailure() << "attributes or geometry differ";
  if (actual.LayerName() != expected.LayerName()) return testing::AssertionFailure() << "layer differs";
  const bool tagged = actual.Tag() != nullptr;
  if (tagged != (expected.Tag() != nullptr) || (tagged && *actual.Tag() != *expected.Tag())) {
    return testing::AssertionFailure() << "tag differs";
  }
  if (actual.IdTag() != expected.IdTag()) return testing::AssertionFailure() << "id tag differs";
  return testing::AssertionSuccess();
}

// Colour, layer, line type and scale, tag and id tag, different for each seed.
inline void Decorate(CGrElement& element, int seed) {
  element.SetColor(seed % 2 == 0 ? CGrColor(0x00336699u + static_cast<unsigned>(seed)) : CGrColor::FromIndex(seed % 255 + 1));
  element.SetLayerName(L"C-TOPO-" + std::to_wstring(seed));
  element.SetLineType(seed % 5);
  element.SetLineTypeScale(0.5 + seed * 0.25);
  element.SetTag(L"tag-" + std::to_wstring(seed));
  element.SetIdTag(1000u + static_cast<unsigned>(seed));
}

inline std::unique_ptr<CGrPolyline> SamplePolyline(int seed) {
  auto polyline = std::make_unique<CGrPolyline>();
  const double d = seed;
  polyline->Add(new CGrLine(CKdPoint(d, 0, 1), CKdPoint(d + 10, 0, 1)));
  polyline->Add(new CGrArc(CKdPoint(d + 10, 5, 1), 5.0, -kdgeo::kHalfPi, kdgeo::kPi));
  polyline->Add(new CGrLine(CKdPoint(d + 10, 10, 1), CKdPoint(d, 0, 1)));
  polyline->SetClosed(true);
  return polyline;
}

// One element of every kind (the shallow one included), decorated, with geometry that differs
// from the defaults everywhere.
inline std::vector<std::unique_ptr<CGrElement>> SampleElements() {
  std::vector<std::unique_ptr<CGrElement>> all;
  auto text = std::make_unique<CGrText>(CKdPoint(1.5, 2.5, 3.5), 2.25, L"Station 0+100");
  text->SetRotation(0.75);
  text->SetStyleName(L"Romans");
  text->SetJustification(4);
  all.push_back(std::move(text));
  all.push_back(std::make_unique<CGrCircle>(CKdPoint(10, -20, 5), 7.5));
  all.push_back(std::make_unique<CGrLine>(CKdPoint(0.1, 0.2, 0.3), CKdPoint(-4, 5e6, -6)));
  all.push_back(SamplePolyline(3));
  auto block = std::make_unique<CGrElementBlock>();
  block->SetPosition(CKdPoint(100, 200, 0));
  block->SetRotation(0.5);
  block->SetScaleFactors(CKdVector(2, 3, 1));
  block->SetLabel(L"Manhole");
  block->Add(new CGrCircle(CKdPoint(0, 0, 0), 1.0));
  block->Add(new CGrLine(CKdPoint(-1, 0, 0), CKdPoint(1, 0, 0)));
  all.push_back(std::move(block));
  auto group = std::make_unique<CGrGroup>(L"Borehole logs");
  group->Add(new CGrText(CKdPoint(0, 0, 0), 1.0, L"BH1"));
  group->Add(SamplePolyline(7).release());
  all.push_back(std::move(group));
  auto hatch = std::make_unique<CGrHatch>(L"");
  hatch->AddBorder(SamplePolyline(11).release());
  hatch->AddBorder(new CGrCircle(CKdPoint(14, 4, 1), 1.0));
  all.push_back(std::move(hatch));
  all.push_back(std::make_unique<CGrRectangleFace>(CKdPoint(0, 0, 1), CKdPoint(4, 0, 2), CKdPoint(4, 3, 3),
                                                   CKdPoint(0, 3, 4)));
  all.push_back(std::make_unique<CGrTriangleFace>(CKdPoint(0, 0, 0), CKdPoint(2, 0, 1), CKdPoint(1, 2, 2)));
  all.push_back(std::make_unique<CGrVertexPolyline>(
      std::vector<CKdPoint>{{0, 0, 0}, {1, 1, 1}, {2, 0, 2}, {3, 1, 3}}, true));
  auto table = std::make_unique<CGrTable>();
  table->SetLocation(CKdPoint(5, 6, 7));
  table->SetTitle(L"Volumes");
  all.push_back(std::move(table));
  auto cylinder = std::make_unique<CGrCylinder>();
  cylinder->SetAxis(CKdPoint(0, 0, -2), CKdPoint(0, 0, 8));
  cylinder->SetTitle(L"Pile P1");
  all.push_back(std::move(cylinder));
  all.push_back(std::make_unique<CGrEllipse>(CKdPoint(3, 4, 5), CKdVector(0, 2, 0), CKdVector(6, 0, 0), 0.25, 4.5));
  all.push_back(std::make_unique<CGrArc>(CKdPoint(-3, 4, 2), 12.5, 1.25, -2.5));
  auto mesh = std::make_unique<CGrMesh>();
  mesh->SetVertices({{0, 0, 0}, {10, 0, 1}, {10, 10, 2}, {0, 10, 3}});
  mesh->SetFaces({{0, 1, 2}, {0, 2, 3}});
  CGrMeshMaterial grass;
  grass.name = L"Grass";
  grass.color = CGrColor::FromIndex(3);
  grass.transparency = 0.25;
  CGrMeshMaterial water;
  water.name = L"Water";
  water.color = CGrColor(0x00FF8000u);
  water.transparency = 0.5;
  mesh->SetMaterials({grass, water});
  all.push_back(std::move(mesh));
  all.push_back(std::make_unique<CGrShallowElement>());
  int seed = 1;
  for (auto& element : all) Decorate(*element, seed++);
  return all;
}

}  // namespace grtest
