#include "module/acad/GrAcadPlatformColor.h"

#include <array>
#include <cmath>
#include <limits>
#include <new>

#include "platform/acad/acedcolors.h"
#include "platform/acad/dbcolor.h"

namespace {

constexpr std::uint32_t kForegroundIndex = 7;
constexpr std::uint32_t kFirstCandidate = 1;
constexpr std::uint32_t kLastCandidate = 254;
// Channels below this count as this in the nearest-index search.
constexpr std::uint32_t kChannelFloor = 30;
constexpr std::int32_t kBrightnessLight = 129;

// AutoCAD's 0x00RRGGBB into the packed layout, red low.
std::uint32_t PackedFromPalette(std::uint32_t palette) {
  return ((palette >> 16) & 0xFFu) | (palette & 0xFF00u) | ((palette & 0xFFu) << 16);
}

std::uint32_t PaletteRgb(std::uint32_t index) {
  return AcCmEntityColor::lookUpRGB(static_cast<Adesk::UInt8>(index));
}

struct Hsv {
  float hue;  // -1 for an achromatic colour
  float saturation;
  float value;
};

// Hue, saturation and value in single precision, channels raised to the floor first.
Hsv HsvOf(std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
  const float r = static_cast<float>(red < kChannelFloor ? kChannelFloor : red) / 255.0f;
  const float g = static_cast<float>(green < kChannelFloor ? kChannelFloor : green) / 255.0f;
  const float b = static_cast<float>(blue < kChannelFloor ? kChannelFloor : blue) / 255.0f;
  const float largest = std::fmax(r, std::fmax(g, b));
  const float delta = largest - std::fmin(r, std::fmin(g, b));
  if (largest <= 0.0001f) return {-1.0f, 0.0f, largest};
  const float saturation = delta / largest;
  if (saturation < 0.0001f) return {-1.0f, 0.0f, largest};
  float sector = 0.0f;
  if (std::fabs(r - largest) <= 0.0001f) {
    sector = (g - b) / delta;
  } else if (std::fabs(g - largest) <= 0.0001f) {
    sector = (b - r) / delta + 2.0f;
  } else {
    sector = (r - g) / delta + 4.0f;
  }
  float hue = 60.0f * sector;
  while (hue < 0.0f) hue += 360.0f;
  while (hue > 360.0f) hue -= 360.0f;
  return {hue, saturation, largest};
}

Hsv HsvOfPacked(std::uint32_t rgb) { return HsvOf(rgb & 0xFFu, (rgb >> 8) & 0xFFu, (rgb >> 16) & 0xFFu); }

// Distance weights of saturation, hue and value: the hue counts only when both colours have a
// saturation (0.0001 or more).
constexpr double kChromaticWeights[3] = {0.33333, 0.33334, 0.33333};
constexpr double kAchromaticWeights[3] = {0.5, 0.0, 0.5};

bool IsAchromatic(const Hsv& hsv) { return hsv.saturation < 0.0001f; }

constexpr std::size_t kSlots = 256;

// The candidates' colours, taken from the palette once (it never changes), laid out for the
// search loop.
struct Candidates {
  std::size_t count = 0;
  std::array<std::uint32_t, kSlots> index{};
  std::array<float, kSlots> hue{};
  std::array<float, kSlots> saturation{};
  std::array<float, kSlots> value{};
  // Each candidate's weights against a chromatic colour (achromatic where the candidate is).
  std::array<double, kSlots> ws{};
  std::array<double, kSlots> wh{};
  std::array<double, kSlots> wv{};
  // Every candidate's weights against an achromatic colour: 0.5 for saturation and value, 0 for
  // the hue.
  std::array<double, kSlots> achromatic{};
  std::array<double, kSlots> zero{};
};

const Candidates& PaletteCandidates() {
  static const Candidates candidates = [] {
    Candidates c;
    for (std::uint32_t i = kFirstCandidate; i <= kLastCandidate; ++i) {
      if (i == kForegroundIndex) continue;
      const Hsv hsv = HsvOfPacked(PackedFromPalette(PaletteRgb(i)));
      const double* weights = IsAchromatic(hsv) ? kAchromaticWeights : kChromaticWeights;
      c.index[c.count] = i;
      c.hue[c.count] = hsv.hue;
      c.saturation[c.count] = hsv.saturation;
      c.value[c.count] = hsv.value;
      c.ws[c.count] = weights[0];
      c.wh[c.count] = weights[1];
      c.wv[c.count] = weights[2];
      c.achromatic[c.count] = kAchromaticWeights[0];
      ++c.count;
    }
    return c;
  }();
  return candidates;
}

}  // namespace

std::uint32_t CGrAcadPlatformColor::IndexToRgb(const std::uint32_t& index) const {
  if (index != kForegroundIndex) return PackedFromPalette(PaletteRgb(index));
  AcColorSettings colors{};
  acedGetCurrentColors(&colors);
  const auto background = static_cast<std::int32_t>(colors.dwGfxModelBkColor);
  if (background >= 256) return colors.dwGfxModelBkColor;
  const std::uint32_t palette = PaletteRgb(static_cast<std::uint32_t>(background));
  const auto brightness =
      static_cast<std::int32_t>(((palette >> 16) & 0xFFu) + ((palette >> 8) & 0xFFu) + (palette & 0xFFu)) / 3;
  return brightness < kBrightnessLight ? kWhite.Rgb() : kBlack.Rgb();
}

std::uint32_t CGrAcadPlatformColor::RgbToIndex(const std::uint32_t& rgb) const {
  const Candidates& c = PaletteCandidates();
  const Hsv target = HsvOfPacked(rgb);
  const bool achromatic = IsAchromatic(target);
  const double* ws = achromatic ? c.achromatic.data() : c.ws.data();
  const double* wh = achromatic ? c.zero.data() : c.wh.data();
  const double* wv = achromatic ? c.achromatic.data() : c.wv.data();
  // First every square, then the search: both loops stay short and predictable. With a zero
  // weight the hue term adds an exact 0, so the sums equal the two-term distance of achromatic
  // colours bit for bit. The slots past the candidates are computed and never looked at.
  std::array<double, kSlots> squared;
  for (std::size_t k = 0; k < kSlots; ++k) {
    const float ds = std::fabs(target.saturation - c.saturation[k]);
    const float dv = std::fabs(target.value - c.value[k]);
    float dh = std::fabs(target.hue - c.hue[k]);
    dh = dh > 180.0f ? 360.0f - dh : dh;
    dh /= 180.0f;
    squared[k] = ws[k] * ds * ds + wh[k] * dh * dh + wv[k] * dv * dv;
  }
  // Then the nearest: the distance is the root, which can only be smaller where the square is;
  // equal roots keep the lower index.
  double best = 1e100;
  double bestSquared = std::numeric_limits<double>::infinity();
  std::uint32_t bestIndex = kFirstCandidate;
  for (std::size_t k = 0; k < c.count; ++k) {
    if (squared[k] < bestSquared) {
      const double distance = std::sqrt(squared[k]);
      if (distance < best) {
        best = distance;
        bestSquared = squared[k];
        bestIndex = c.index[k];
      }
    }
  }
  return bestIndex;
}

std::uint32_t CGrAcadPlatformColor::ColorToIndex(const CGrColor& color) const {
  const std::int32_t method = color.Method();
  if (method == grcolor::kMethodByIndex || method == grcolor::kMethodBoth) return color.Index();
  return RgbToIndex(color.Rgb());
}

std::uint32_t CGrAcadPlatformColor::ColorToRgb(const CGrColor& color) const {
  const std::int32_t method = color.Method();
  if (method == grcolor::kMethodRgb || method == grcolor::kMethodBoth) return color.Rgb();
  return IndexToRgb(color.Index());
}

std::int32_t CGrAcadPlatformColor::IndexFromCode(std::int32_t code) {
  switch (code) {
    case -1: return AcCmEntityColor::kACIbyBlock;
    case -2: return AcCmEntityColor::kACIbyLayer;
    case -3: return AcCmEntityColor::kACIforeground;
    default: return code;
  }
}

std::int32_t CGrAcadPlatformColor::CodeFromIndex(std::int32_t index) {
  switch (index) {
    case AcCmEntityColor::kACIbyBlock: return -1;
    case AcCmEntityColor::kACIbyLayer: return -2;
    case AcCmEntityColor::kACIforeground: return -3;
    default: return index;
  }
}

CGrAcadPlatformColor* CGrAcadPlatformColor::Install() {
  auto* translator = new (std::nothrow) CGrAcadPlatformColor();
  IGrPlatformColor::Install(translator);
  return translator;
}

namespace {

// The translator made when the module loads lives as long as the module: a host that unloads
// the module gets it back, and finds no translator of the unloaded module left installed.
struct LoadTimeTranslator {
  CGrAcadPlatformColor* made = CGrAcadPlatformColor::Install();
  ~LoadTimeTranslator() {
    if (IGrPlatformColor::Installed() == made) IGrPlatformColor::Install(nullptr);
    delete made;
  }
  LoadTimeTranslator() = default;
  LoadTimeTranslator(const LoadTimeTranslator&) = delete;
  LoadTimeTranslator& operator=(const LoadTimeTranslator&) = delete;
};

const LoadTimeTranslator g_loadTimeTranslator;

}  // namespace

// Nothing in the module refers to this file, so every link of kd_acad asks for this symbol
// (module/acad/CMakeLists.txt) to keep the file and its initializer.
extern "C" const bool kdAcadPlatformColorInstalled;
const bool kdAcadPlatformColorInstalled = g_loadTimeTranslator.made != nullptr;
