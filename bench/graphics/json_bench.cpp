// An element document of 100,000 mixed elements written to text and read back, against jsoncpp
// alone parsing and writing the same text (with the same reader and writer settings). The
// document is built once, outside the timed loops.
#include <benchmark/benchmark.h>

#include <string>

#include "module/geometry/KdConstants.h"
#include "module/graphics/GrArc.h"
#include "module/graphics/GrCircle.h"
#include "module/graphics/GrElementBlock.h"
#include "module/graphics/GrElementVector.h"
#include "module/graphics/GrFace.h"
#include "module/graphics/GrGroup.h"
#include "module/graphics/GrJson.h"
#include "module/graphics/GrLine.h"
#include "module/graphics/GrMesh.h"
#include "module/graphics/GrPolyline.h"
#include "module/graphics/GrText.h"

namespace {

constexpr int kElements = 100000;

CGrPolyline* Boundary(double x) {
  auto* polyline = new CGrPolyline();
  polyline->Add(new CGrLine(CKdPoint(x, 0, -10000), CKdPoint(x + 10, 0, -10000)));
  polyline->Add(new CGrArc(CKdPoint(x + 10, 5, -10000), 5, -kdgeo::kHalfPi, kdgeo::kPi));
  polyline->Add(new CGrLine(CKdPoint(x + 10, 10, -10000), CKdPoint(x, 10, -10000)));
  polyline->SetClosed(true);
  return polyline;
}

// Lines, arcs and polylines most of all, as surfaces draw them; the other kinds mixed in.
CGrElement* MixedElement(int i) {
  const double x = i * 1.25;
  CGrElement* element = nullptr;
  switch (i % 10) {
    case 0: case 1: case 2: element = new CGrLine(CKdPoint(x, 1.5, 2.25), CKdPoint(x + 3.125, -4.5, 2.25)); break;
    case 3: case 4: element = new CGrArc(CKdPoint(x, 7, 0), 2.5 + i % 7, 0.25, 1.75); break;
    case 5: element = Boundary(x); break;
    case 6: element = new CGrCircle(CKdPoint(x, -3, 1), 0.75); break;
    case 7: element = new CGrText(CKdPoint(x, 2, 0), 2.5, L"Station " + std::to_wstring(i)); break;
    case 8: element = new CGrTriangleFace(CKdPoint(x, 0, 1), CKdPoint(x + 1, 0, 2), CKdPoint(x, 1, 3)); break;
    default: {
      auto* group = new CGrGroup(L"Group " + std::to_wstring(i));
      group->Add(new CGrLine(CKdPoint(x, 0, 0), CKdPoint(x, 5, 0)));
      group->Add(new CGrCircle(CKdPoint(x, 5, 0), 0.5));
      element = group;
      break;
    }
  }
  element->SetColor(i % 3 == 0 ? CGrColor(0x00336699u) : CGrColor::FromIndex(i % 255 + 1));
  element->SetLayerName(L"C-TOPO-BRKL");
  element->SetIdTag(static_cast<std::uint32_t>(i));
  if (i % 4 == 0) element->SetTag(L"tag " + std::to_wstring(i));
  return element;
}

const CGrElementVector& Document() {
  static const CGrElementVector document = [] {
    CGrElementVector elements;
    for (int i = 0; i < kElements; ++i) elements.Add(MixedElement(i));
    return elements;
  }();
  return document;
}

const std::string& DocumentText() {
  static const std::string text = grjson::WriteElements(Document());
  return text;
}

// The element model's round trip: elements to values to text, then text to values to elements.
void BM_Elements_WriteAndReadBack(benchmark::State& state) {
  const CGrElementVector& document = Document();
  for (auto _ : state) {
    const std::string text = grjson::WriteElements(document);
    CGrElementVector read;
    grjson::ReadElements(text, read);
    benchmark::DoNotOptimize(read.Size());
  }
  state.SetItemsProcessed(state.iterations() * kElements);
  state.counters["text_MB"] = static_cast<double>(DocumentText().size()) / 1e6;
}

// The reference: jsoncpp alone parsing the same text and writing it again.
void BM_JsonOnly_ParseAndWrite(benchmark::State& state) {
  const std::string& text = DocumentText();
  for (auto _ : state) {
    GrJson::Value root;
    grjson::Parse(text, root);
    const std::string written = grjson::Write(root);
    benchmark::DoNotOptimize(written.size());
  }
  state.SetItemsProcessed(state.iterations() * kElements);
  state.counters["text_MB"] = static_cast<double>(text.size()) / 1e6;
}

BENCHMARK(BM_Elements_WriteAndReadBack)->Unit(benchmark::kMillisecond)->MinTime(2.0);
BENCHMARK(BM_JsonOnly_ParseAndWrite)->Unit(benchmark::kMillisecond)->MinTime(2.0);

}  // namespace
