// 100,000 mixed elements drawn through the graphics context into a new drawing and saved as DXF,
// against ezdxf writing the same entities (same geometry, layers, colours and tags) in the same
// run. The elements and the reference's input are made once, outside the timed loop; the
// reference runs under Debian's /usr/bin/python3 on a generated script that times itself (its
// interpreter start and input parsing are left out). Counters: elements per second, the DXF size
// in bytes, and ratio = ezdxf's seconds / ours (target 10 or more).
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include <unistd.h>

#include "headless/api/headless.h"
#include "module/acad/GrAcadGraphicsContext.h"
#include "module/acad/GrLockDoc.h"
#include "module/graphics/GrArc.h"
#include "module/graphics/GrCircle.h"
#include "module/graphics/GrEllipse.h"
#include "module/graphics/GrFace.h"
#include "module/graphics/GrLine.h"
#include "module/graphics/GrPolyline.h"
#include "module/graphics/GrText.h"

namespace {

namespace fs = std::filesystem;

constexpr int kElements = 100000;
constexpr int kLayers = 10;
// One element in this many carries a tag.
constexpr int kTagEvery = 10;

double g_oursSeconds = 0.0;

fs::path Folder() {
  static const fs::path folder = [] {
    fs::path f = fs::temp_directory_path() / ("kd-bench-acad-" + std::to_string(::getpid()));
    fs::create_directories(f);
    return f;
  }();
  return folder;
}

// The elements, and one line per element for the reference script:
// kind layer colour tag numbers...
struct Workload {
  std::vector<std::unique_ptr<CGrElement>> elements;
  std::string script;
};

const Workload& Elements() {
  static const Workload workload = [] {
    Workload w;
    std::string data;
    char line[512];
    for (int i = 0; i < kElements; ++i) {
      const double x = (i % 317) * 10.0;
      const double y = (i / 317) * 10.0;
      const int layer = i % kLayers;
      const std::uint32_t colour = 1 + static_cast<std::uint32_t>(i % 250);
      std::unique_ptr<CGrElement> e;
      switch (i % 7) {
        case 0:
          e = std::make_unique<CGrLine>(CKdPoint(x, y, 0), CKdPoint(x + 7.5, y + 3.25, 1.5));
          std::snprintf(line, sizeof line, "L %.17g %.17g %.17g %.17g %.17g %.17g", x, y, 0.0, x + 7.5, y + 3.25, 1.5);
          break;
        case 1:
          e = std::make_unique<CGrArc>(CKdPoint(x, y, 0), 3.0, 0.25, 2.5);
          std::snprintf(line, sizeof line, "A %.17g %.17g 3 %.17g %.17g", x, y, 0.25 * 180 / std::numbers::pi,
                        2.75 * 180 / std::numbers::pi);
          break;
        case 2:
          e = std::make_unique<CGrCircle>(CKdPoint(x, y, 0), 2.5);
          std::snprintf(line, sizeof line, "C %.17g %.17g 2.5", x, y);
          break;
        case 3: {
          auto p = std::make_unique<CGrPolyline>();
          p->Add(new CGrLine(CKdPoint(x, y, 0), CKdPoint(x + 5, y, 0)));
          p->Add(new CGrLineArc(CKdPoint(x + 5, y + 2.5, 0), 2.5, 1.5 * std::numbers::pi, std::numbers::pi));
          p->Add(new CGrLine(CKdPoint(x + 5, y + 5, 0), CKdPoint(x, y + 5, 0)));
          p->SetClosed(true);
          e = std::move(p);
          std::snprintf(line, sizeof line, "P %.17g %.17g %.17g %.17g %.17g %.17g", x, y, x + 5, y, x + 5, y + 5);
          break;
        }
        case 4:
          e = std::make_unique<CGrText>(CKdPoint(x, y, 0), 1.5, L"Station " + std::to_wstring(i));
          std::snprintf(line, sizeof line, "T %.17g %.17g Station %d", x, y, i);
          break;
        case 5:
          e = std::make_unique<CGrTriangleFace>(CKdPoint(x, y, 0), CKdPoint(x + 4, y, 1), CKdPoint(x, y + 4, 2));
          std::snprintf(line, sizeof line, "F %.17g %.17g %.17g %.17g", x, y, x + 4, y + 4);
          break;
        default:
          e = std::make_unique<CGrEllipse>(CKdPoint(x, y, 0), CKdVector(0, 1, 0), CKdVector(3, 0, 0), 0.0, 0.0);
          std::snprintf(line, sizeof line, "E %.17g %.17g", x, y);
          break;
      }
      e->SetLayerName(L"LAYER-" + std::to_wstring(layer));
      e->SetColor(CGrColor::FromIndex(colour));
      if (i % kTagEvery == 0) e->SetTag(L"tag-" + std::to_wstring(i));
      data += std::to_string(layer) + " " + std::to_string(colour) + " " +
              (i % kTagEvery == 0 ? "tag-" + std::to_string(i) : std::string("-")) + " " + line + "\n";
      w.elements.push_back(std::move(e));
    }
    std::ofstream(Folder() / "elements.txt") << data;
    w.script = R"(import sys, time, math
import ezdxf
rows = [line.split() for line in open(sys.argv[1])]
start = time.perf_counter()
doc = ezdxf.new("R2004")
msp = doc.modelspace()
for n in range(10):
    doc.layers.add("LAYER-%d" % n)
for r in rows:
    attribs = {"layer": "LAYER-" + r[0], "color": int(r[1])}
    kind, v = r[3], r[4:]
    if kind == "L":
        e = msp.add_line((float(v[0]), float(v[1]), float(v[2])), (float(v[3]), float(v[4]), float(v[5])), dxfattribs=attribs)
    elif kind == "A":
        e = msp.add_arc((float(v[0]), float(v[1])), float(v[2]), float(v[3]), float(v[4]), dxfattribs=attribs)
    elif kind == "C":
        e = msp.add_circle((float(v[0]), float(v[1])), float(v[2]), dxfattribs=attribs)
    elif kind == "P":
        x0, y0, x1, y1, x2, y2 = map(float, v)
        e = msp.add_lwpolyline([(x0, y0, 0, 0, 0), (x1, y1, 0, 0, 1.0), (x2, y2, 0, 0, 0)], format="xyseb", close=True, dxfattribs=attribs)
    elif kind == "T":
        e = msp.add_text(" ".join(v[2:]), dxfattribs=dict(attribs, height=1.5, insert=(float(v[0]), float(v[1]))))
    elif kind == "F":
        x0, y0, x1, y1 = map(float, v)
        e = msp.add_3dface([(x0, y0, 0), (x1, y0, 1), (x0, y1, 2), (x0, y1, 2)], dxfattribs=attribs)
    else:
        e = msp.add_ellipse((float(v[0]), float(v[1])), major_axis=(3, 0, 0), ratio=1/3, dxfattribs=attribs)
    if r[2] != "-":
        xdict = e.new_extension_dict()
        xdict.add_xrecord("Tag").reset([(1, r[2])])
doc.saveas(sys.argv[2])
print(time.perf_counter() - start)
)";
    std::ofstream(Folder() / "reference.py") << w.script;
    return w;
  }();
  return workload;
}

void BM_DrawAndSaveDxf(benchmark::State& state) {
  const Workload& workload = Elements();
  const fs::path path = Folder() / "ours.dxf";
  std::vector<std::unique_ptr<CGrElement>> copies;
  double seconds = 0.0;
  for (auto _ : state) {
    state.PauseTiming();
    copies.clear();
    for (const auto& e : workload.elements) copies.emplace_back(e->Clone());
    HeadlessApp* app = HeadlessStart(nullptr);
    state.ResumeTiming();
    const auto start = std::chrono::steady_clock::now();
    CGrLockDoc::Instance()->Lock(false);
    {
      CGrAcadGraphicsContext context;
      for (auto& e : copies) {
        if (context.Draw(e.get()) != 0) state.SkipWithError("draw failed");
      }
    }
    if (HeadlessSaveDxf(app, path.c_str()) != 0) state.SkipWithError(HeadlessLastError(app));
    CGrLockDoc::Instance()->Unlock(false);
    seconds += std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.PauseTiming();
    HeadlessStop(app);
    state.ResumeTiming();
  }
  g_oursSeconds = seconds / static_cast<double>(state.iterations());
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kElements);
  state.counters["elements"] = kElements;
  state.counters["dxf_bytes"] = static_cast<double>(fs::file_size(path));
}

// The reference, once: ezdxf's own timing of making the same entities and saving them.
void BM_EzdxfReference(benchmark::State& state) {
  Elements();
  const fs::path out = Folder() / "ezdxf.dxf";
  const fs::path timing = Folder() / "ezdxf-seconds.txt";
  const std::string command = "/usr/bin/python3 " + (Folder() / "reference.py").string() + " " +
                              (Folder() / "elements.txt").string() + " " + out.string() + " > " + timing.string();
  for (auto _ : state) {
    if (std::system(command.c_str()) != 0) {
      state.SkipWithError("ezdxf reference failed (python3-ezdxf installed?)");
      return;
    }
    double seconds = 0.0;
    std::ifstream(timing) >> seconds;
    state.SetIterationTime(seconds);
    state.counters["ratio"] = g_oursSeconds > 0.0 ? seconds / g_oursSeconds : 0.0;
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kElements);
  state.counters["dxf_bytes"] = static_cast<double>(fs::file_size(out));
}

}  // namespace

BENCHMARK(BM_DrawAndSaveDxf)->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(BM_EzdxfReference)->Unit(benchmark::kMillisecond)->Iterations(1)->UseManualTime();
