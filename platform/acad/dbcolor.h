// AutoCAD colours (dbcolor.h): an entity's colour as a method plus a value, and the colour index
// palette.
#pragma once

#if defined(_WIN32)
#  include <dbcolor.h>
#else

#include "platform/acad/adesk.h"

class KD_PLATFORM_API AcCmEntityColor {
public:
  enum ColorMethod : Adesk::UInt8 {
    kByLayer = 0xC0,
    kByBlock = 0xC1,
    kByColor = 0xC2,  // true colour
    kByACI = 0xC3,    // colour index
    kByPen = 0xC4,
    kForeground = 0xC5,
    kLayerOff = 0xC6,
    kLayerFrozen = 0xC7,
    kNone = 0xC8,
  };
  enum ACIcolorMethod : Adesk::UInt16 {
    kACIbyBlock = 0,
    kACIforeground = 7,
    kACIbyLayer = 256,
    kACIclear = 0,
    kACIRed = 1,
    kACIYellow = 2,
    kACIGreen = 3,
    kACICyan = 4,
    kACIBlue = 5,
    kACIMagenta = 6,
    kACIWhite = 7,
    kACIstandard = 7,
    kACImaxvalue = 255,
    kACInone = 257,
  };

  // Packed RGB of a palette index, red in bits 16-23, green 8-15, blue 0-7.
  static Adesk::UInt32 lookUpRGB(Adesk::UInt8 colorIndex);
  // The palette index nearest to an RGB colour.
  static Adesk::UInt8 lookUpACI(Adesk::UInt8 red, Adesk::UInt8 green, Adesk::UInt8 blue);
};

// A colour by method: by layer, by block, foreground, a palette index (1-255) or a true colour.
// Index 0 means by block, 256 by layer, 7 the foreground.
class AcCmColor {
public:
  AcCmColor() = default;

  AcCmEntityColor::ColorMethod colorMethod() const { return m_method; }
  void setColorMethod(AcCmEntityColor::ColorMethod method) { m_method = method; }

  bool isByColor() const { return m_method == AcCmEntityColor::kByColor; }
  bool isByLayer() const {
    return m_method == AcCmEntityColor::kByLayer ||
           (m_method == AcCmEntityColor::kByACI && m_index == AcCmEntityColor::kACIbyLayer);
  }
  bool isByBlock() const {
    return m_method == AcCmEntityColor::kByBlock ||
           (m_method == AcCmEntityColor::kByACI && m_index == AcCmEntityColor::kACIbyBlock);
  }
  bool isByACI() const { return m_method == AcCmEntityColor::kByACI; }
  bool isForeground() const {
    return m_method == AcCmEntityColor::kForeground ||
           (m_method == AcCmEntityColor::kByACI && m_index == AcCmEntityColor::kACIforeground);
  }
  bool isNone() const { return m_method == AcCmEntityColor::kNone; }

  // 0 gives by block, 256 by layer; anything else is kept as a palette index.
  void setColorIndex(Adesk::UInt16 index) {
    if (index == AcCmEntityColor::kACIbyBlock) {
      m_method = AcCmEntityColor::kByBlock;
    } else if (index == AcCmEntityColor::kACIbyLayer) {
      m_method = AcCmEntityColor::kByLayer;
    } else {
      m_method = AcCmEntityColor::kByACI;
    }
    m_index = index;
  }
  // The palette index; by layer 256, by block 0, foreground 7. A true colour answers its
  // nearest palette index.
  Adesk::UInt16 colorIndex() const {
    switch (m_method) {
      case AcCmEntityColor::kByLayer: return AcCmEntityColor::kACIbyLayer;
      case AcCmEntityColor::kByBlock: return AcCmEntityColor::kACIbyBlock;
      case AcCmEntityColor::kForeground: return AcCmEntityColor::kACIforeground;
      case AcCmEntityColor::kByColor: return AcCmEntityColor::lookUpACI(red(), green(), blue());
      case AcCmEntityColor::kNone: return AcCmEntityColor::kACInone;
      default: return m_index;
    }
  }

  void setRGB(Adesk::UInt8 r, Adesk::UInt8 g, Adesk::UInt8 b) {
    m_method = AcCmEntityColor::kByColor;
    m_rgb = (Adesk::UInt32(r) << 16) | (Adesk::UInt32(g) << 8) | b;
  }
  // A palette colour answers its palette RGB; by layer and by block answer 0.
  Adesk::UInt8 red() const { return Adesk::UInt8(Rgb() >> 16); }
  Adesk::UInt8 green() const { return Adesk::UInt8(Rgb() >> 8); }
  Adesk::UInt8 blue() const { return Adesk::UInt8(Rgb()); }

  // Packed as AutoCAD packs it: method in bits 24-31, then red, green, blue (or the index).
  Adesk::UInt32 color() const {
    return (Adesk::UInt32(m_method) << 24) | (m_method == AcCmEntityColor::kByColor ? m_rgb : m_index);
  }

  bool operator==(const AcCmColor& other) const { return color() == other.color(); }
  bool operator!=(const AcCmColor& other) const { return !(*this == other); }

private:
  Adesk::UInt32 Rgb() const {
    if (m_method == AcCmEntityColor::kByColor) return m_rgb;
    if (m_method == AcCmEntityColor::kByACI && m_index >= 1 && m_index <= 255)
      return AcCmEntityColor::lookUpRGB(Adesk::UInt8(m_index));
    return 0;
  }

  AcCmEntityColor::ColorMethod m_method = AcCmEntityColor::kByLayer;
  Adesk::UInt16 m_index = AcCmEntityColor::kACIbyLayer;
  Adesk::UInt32 m_rgb = 0;
};

#endif  // !_WIN32
