// IGrPlatformColor: the process-wide translator between colour indices and RGB, implemented by
// the platform the elements are drawn on (CGrAcadPlatformColor for AutoCAD).
#pragma once

#include <cstdint>

// Packed RGB throughout: red in bits 0-7, green in bits 8-15, blue in bits 16-23.
// The virtual operations keep this declaration order: it is their slot order.
class IGrPlatformColor {
public:
  // Slot 0: the packed RGB that the platform shows for a colour index.
  virtual std::uint32_t IndexToRgb(const std::uint32_t& index) const = 0;
  // Slot 1: the colour index nearest to a packed RGB.
  virtual std::uint32_t RgbToIndex(const std::uint32_t& rgb) const = 0;
  virtual ~IGrPlatformColor() = default;

  // The installed translator; null when none is. Read without locking: it is set at module load.
  static IGrPlatformColor* Installed();
  // Stores `translator` (null uninstalls) and returns the one it replaces. Ownership does not
  // move either way: nothing is deleted here.
  static IGrPlatformColor* Install(IGrPlatformColor* translator);

protected:
  IGrPlatformColor() = default;
  IGrPlatformColor(const IGrPlatformColor&) = default;
  IGrPlatformColor& operator=(const IGrPlatformColor&) = default;
};
