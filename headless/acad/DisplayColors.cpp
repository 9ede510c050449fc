// AutoCAD's current display colours (acedGetCurrentColors) with a model-space background that
// hosts and tests set through HeadlessSetModelBackground.
#include <atomic>

#include "headless/api/headless.h"
#include "platform/acad/acedcolors.h"

namespace {

// Colour references, red in the low byte. AutoCAD's defaults since its dark theme: the model
// space is RGB 33, 40, 48; layouts are white. Display options are per process, as AutoCAD's are.
constexpr DWORD kDefaultModelBackground = 0x00302821;
constexpr DWORD kDefaultLayoutBackground = 0x00FFFFFF;

std::atomic<DWORD> g_modelBackground{kDefaultModelBackground};

}  // namespace

bool acedGetCurrentColors(AcColorSettings* pColorSettings) {
  if (pColorSettings == nullptr) return false;
  pColorSettings->dwGfxModelBkColor = g_modelBackground.load(std::memory_order_relaxed);
  pColorSettings->dwGfxLayoutBkColor = kDefaultLayoutBackground;
  return true;
}

extern "C" void HeadlessSetModelBackground(unsigned int colorValue) {
  g_modelBackground.store(static_cast<DWORD>(colorValue), std::memory_order_relaxed);
}
