#include "module/graphics/GrColor.h"

#include <ostream>

#include "module/graphics/GrPlatformColor.h"

namespace {

IGrPlatformColor* g_translator = nullptr;

}  // namespace

IGrPlatformColor* IGrPlatformColor::Installed() { return g_translator; }

IGrPlatformColor* IGrPlatformColor::Install(IGrPlatformColor* translator) {
  IGrPlatformColor* previous = g_translator;
  g_translator = translator;
  return previous;
}

std::uint32_t CGrColor::Rgb() const {
  if (m_method != grcolor::kMethodByIndex) return m_rgb;
  const IGrPlatformColor* translator = IGrPlatformColor::Installed();
  return translator != nullptr ? translator->IndexToRgb(m_index) : m_rgb;
}

std::uint32_t CGrColor::Index() const {
  if (m_method != grcolor::kMethodRgb) return m_index;
  const IGrPlatformColor* translator = IGrPlatformColor::Installed();
  return translator != nullptr ? translator->RgbToIndex(m_rgb) : m_index;
}

std::ostream& operator<<(std::ostream& out, const CGrColor& color) {
  return out << "CGrColor{index " << color.StoredIndex() << ", rgb 0x" << std::hex << color.StoredRgb()
             << std::dec << ", method " << color.Method() << "}";
}
