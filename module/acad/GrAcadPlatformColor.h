// CGrAcadPlatformColor: the colour translator for AutoCAD, between colour indices and packed
// RGB, over AutoCAD's palette and the current model-space background.
#pragma once

#include <cstdint>

#include "module/graphics/GrColor.h"
#include "module/graphics/GrPlatformColor.h"

// Packed RGB: red in bits 0-7, green 8-15, blue 16-23. AutoCAD's palette answers red in bits
// 16-23; every palette value is byte-swapped before it leaves the translator. The module
// installs one translator at load (GrAcadPlatformColor.cpp).
class CGrAcadPlatformColor : public IGrPlatformColor {
public:
  static constexpr CGrColor kWhite{0xFFFFFFu};
  static constexpr CGrColor kBlack{0x000000u};

  CGrAcadPlatformColor() = default;
  ~CGrAcadPlatformColor() override = default;

  // The palette colour of the index (indices above 255 are taken modulo 256, as the palette's
  // 8-bit argument takes them). Index 7, drawn against the background, reads the model-space
  // background B: below 256 (as a signed number) B is a palette index, and index 7 is white on
  // a dark one (brightness (r + g + b) / 3 below 129) and black on a light one; otherwise B
  // itself is the answer (kept on purpose).
  std::uint32_t IndexToRgb(const std::uint32_t& index) const override;
  // The nearest palette index by hue, saturation and value, in 1..254 and never 7. Channels
  // below 30 count as 30; ties go to the lower index.
  std::uint32_t RgbToIndex(const std::uint32_t& rgb) const override;

  // Methods 1 and 3: the colour's index; otherwise RgbToIndex of its RGB.
  std::uint32_t ColorToIndex(const CGrColor& color) const;
  // Methods 2 and 3: the colour's RGB; otherwise IndexToRgb of its index.
  std::uint32_t ColorToRgb(const CGrColor& color) const;

  // The element model's special colour codes and AutoCAD's indices: -1 is 0 (by block), -2 is
  // 256 (by layer), -3 is 7 (foreground); every other value maps to itself.
  static std::int32_t IndexFromCode(std::int32_t code);
  static std::int32_t CodeFromIndex(std::int32_t index);

  // Makes a fresh translator and installs it; the one installed before is dropped without being
  // deleted (kept on purpose: it may still be in use). Null, and nothing installed, when the
  // allocation fails.
  static CGrAcadPlatformColor* Install();
};
