// CGrColor: an element's colour as a colour index, a packed RGB and the method that says which
// of the two counts.
#pragma once

#include <cstdint>
#include <iosfwd>

namespace grcolor {

// Colour methods.
inline constexpr std::int32_t kMethodNone = 0;     // default colour; resolves like true colour
inline constexpr std::int32_t kMethodByIndex = 1;  // the index counts
inline constexpr std::int32_t kMethodRgb = 2;      // the RGB counts (true colour)
inline constexpr std::int32_t kMethodBoth = 3;     // made from an index and an RGB; resolves by RGB

}  // namespace grcolor

// Packed RGB: red in bits 0-7, green 8-15, blue 16-23 (the Windows colour-reference layout).
class CGrColor {
public:
  // Index 0, RGB 0, method 0.
  constexpr CGrColor() = default;
  // A true colour: index 0, this RGB, method 2.
  constexpr explicit CGrColor(std::uint32_t rgb) : m_rgb(rgb), m_method(grcolor::kMethodRgb) {}
  // Both forms given: method 3 until set otherwise.
  constexpr CGrColor(std::uint32_t index, std::uint32_t rgb)
      : m_index(index), m_rgb(rgb), m_method(grcolor::kMethodBoth) {}
  // A colour by index (method 1), RGB 0.
  static constexpr CGrColor FromIndex(std::uint32_t index) {
    CGrColor color;
    color.m_index = index;
    color.m_method = grcolor::kMethodByIndex;
    return color;
  }

  // The stored fields, as they are.
  constexpr std::uint32_t StoredIndex() const { return m_index; }
  constexpr std::uint32_t StoredRgb() const { return m_rgb; }
  constexpr std::int32_t Method() const { return m_method; }

  void SetIndex(std::uint32_t index) { m_index = index; }
  void SetRgb(std::uint32_t rgb) { m_rgb = rgb; }
  void SetMethod(std::int32_t method) { m_method = method; }

  // The RGB the colour shows: by index (method 1) through the installed translator, otherwise
  // (or with no translator) the stored RGB.
  std::uint32_t Rgb() const;
  // The colour index: a true colour (method 2) through the installed translator, otherwise (or
  // with no translator) the stored index.
  std::uint32_t Index() const;

  friend constexpr bool operator==(const CGrColor&, const CGrColor&) = default;

private:
  std::uint32_t m_index = 0;
  std::uint32_t m_rgb = 0;
  std::int32_t m_method = grcolor::kMethodNone;
};

std::ostream& operator<<(std::ostream& out, const CGrColor& color);
